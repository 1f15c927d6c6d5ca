// SPDX-License-Identifier: MIT
#include "Platform/Wayland/LayerShell.h"

#include "Platform/Wayland/LayerShellProtocol.h"
#include "Platform/Wayland/QtWayland.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

#include <utility>
#include <wayland-client.h>

namespace {
/// One is what a compositor needs; a busy one may answer with the next.
constexpr int mostRoundtrips = 10;
/// Panels and docks do not push the layer aside.
constexpr int32_t beneathPanelsToo = -1;
} // namespace

LayerSurface::LayerSurface(zwlr_layer_surface_v1 *role, QWidget &window)
    : m_role(role)
    , m_window(&window)
{
    window.installEventFilter(this);
}

LayerSurface::~LayerSurface()
{
    dropRole();
}

bool LayerSurface::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        // Qt closes all windows when the program ends, and their surfaces with that. A surface that
        // goes before its role is an error to compositors, which end the connection for it.
        dropRole();
    }
    return false;
}

void LayerSurface::dropRole()
{
    if (m_role) {
        zwlr_layer_surface_v1_destroy(std::exchange(m_role, nullptr));
    }
}

void LayerSurface::configure(quint32 serial, QSize size)
{
    zwlr_layer_surface_v1_ack_configure(m_role, serial);
    m_size = size;
    if (m_window && !size.isEmpty()) {
        m_window->resize(size);
    }
}

LayerShell::LayerShell()
{
    wl_display *display = qtWaylandDisplay();
    if (!display) {
        return;
    }
    m_queue = wl_display_create_queue(display);
    m_shell = static_cast<zwlr_layer_shell_v1 *>(bindOnQtConnection(
        zwlr_layer_shell_v1_interface, LayerShellProtocol::destroyableVersion, m_queue));
}

LayerShell::~LayerShell()
{
    if (m_shell &&
        zwlr_layer_shell_v1_get_version(m_shell) >= LayerShellProtocol::destroyableVersion) {
        zwlr_layer_shell_v1_destroy(m_shell);
    } else if (m_shell) {
        wl_proxy_destroy(reinterpret_cast<wl_proxy *>(m_shell));
    }
    if (m_queue) {
        wl_event_queue_destroy(m_queue);
    }
}

bool LayerShell::isUsable() const
{
    return m_shell && areQtWindowsLeftWithoutRole();
}

std::unique_ptr<LayerSurface> LayerShell::cover(QWidget &window, QScreen &screen)
{
    wl_surface *surface = makeQtWaylandSurface(window, screen);
    wl_output *output = qtWaylandOutput(screen);
    if (!isUsable() || !surface || !output) {
        return nullptr;
    }
    static const zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void *data, zwlr_layer_surface_v1 *, uint32_t serial, uint32_t width,
               uint32_t height) {
                static_cast<LayerSurface *>(data)->configure(
                    serial, QSize(static_cast<int>(width), static_cast<int>(height)));
            },
        // The output is gone: the screens have changed, and the selection ends with that.
        .closed = [](void *, zwlr_layer_surface_v1 *) {},
    };
    zwlr_layer_surface_v1 *role = zwlr_layer_shell_v1_get_layer_surface(
        m_shell, surface, output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "vellora-overlay");
    auto layer = std::make_unique<LayerSurface>(role, window);
    zwlr_layer_surface_v1_add_listener(role, &listener, layer.get());
    zwlr_layer_surface_v1_set_anchor(role, LayerShellProtocol::everyEdge);
    zwlr_layer_surface_v1_set_exclusive_zone(role, beneathPanelsToo);
    // 1 is "exclusive" in later versions: the keyboard at once, and no other window gets it.
    zwlr_layer_surface_v1_set_keyboard_interactivity(role, 1);
    wl_surface_commit(surface);
    for (int i = 0; i < mostRoundtrips && layer->size().isEmpty(); ++i) {
        roundtrip();
    }
    if (layer->size().isEmpty()) {
        return nullptr;
    }
    // From here on the main thread handles its events with those of Qt's.
    wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(role), nullptr);
    return layer;
}

void LayerShell::roundtrip()
{
    if (m_queue) {
        wl_display_roundtrip_queue(qtWaylandDisplay(), m_queue);
    }
}
