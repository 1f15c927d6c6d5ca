// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FullScreenShell.h"

#include "Platform/Wayland/QtWayland.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>

#include <utility>
#include <wayland-client.h>
#include <wayland-xdg-shell.h>

FullScreenWindow::FullScreenWindow(xdg_wm_base *shell, wl_surface *surface, wl_output *output,
                                   QWidget &window)
    : m_window(&window)
    , m_role(xdg_wm_base_get_xdg_surface(shell, surface))
    , m_toplevel(xdg_surface_get_toplevel(m_role))
{
    static const xdg_surface_listener roleListener{
        .configure =
            [](void *data, xdg_surface *, uint32_t serial) {
                static_cast<FullScreenWindow *>(data)->configure(serial);
            },
    };
    static const xdg_toplevel_listener toplevelListener{
        .configure = [](void *, xdg_toplevel *, int32_t, int32_t, wl_array *) {},
        // A key of the window manager's. The overlay has its own.
        .close = [](void *, xdg_toplevel *) {},
        .configure_bounds = [](void *, xdg_toplevel *, int32_t, int32_t) {},
        .wm_capabilities = [](void *, xdg_toplevel *, wl_array *) {},
    };
    xdg_surface_add_listener(m_role, &roleListener, this);
    xdg_toplevel_add_listener(m_toplevel, &toplevelListener, this);
    xdg_toplevel_set_title(m_toplevel, QGuiApplication::applicationDisplayName().toUtf8());
    xdg_toplevel_set_app_id(m_toplevel, QGuiApplication::desktopFileName().toUtf8());
    xdg_toplevel_set_fullscreen(m_toplevel, output);
    window.installEventFilter(this);
    wl_surface_commit(surface);
}

FullScreenWindow::~FullScreenWindow()
{
    dropRole();
}

void FullScreenWindow::configure(quint32 serial)
{
    m_serial = serial;
    if (!m_window) {
        return;
    }
    if (m_window->isVisible()) {
        m_window->update();
    } else {
        m_window->show();
    }
}

bool FullScreenWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Paint && m_serial) {
        xdg_surface_ack_configure(m_role, *std::exchange(m_serial, std::nullopt));
        xdg_surface_set_window_geometry(m_role, 0, 0, m_window->width(), m_window->height());
    } else if (event->type() == QEvent::Close) {
        // Qt closes all windows when the program ends. GNOME forgets a role with its surface, and
        // takes its end after that for an error.
        dropRole();
    }
    return false;
}

void FullScreenWindow::dropRole()
{
    if (m_role) {
        xdg_toplevel_destroy(m_toplevel);
        xdg_surface_destroy(std::exchange(m_role, nullptr));
        m_serial.reset();
    }
}

FullScreenShell::FullScreenShell()
{
    wl_display *display = qtWaylandDisplay();
    if (!display) {
        return;
    }
    wl_event_queue *queue = wl_display_create_queue(display);
    constexpr quint32 version = 1;
    m_shell = static_cast<xdg_wm_base *>(bindOnQtConnection(xdg_wm_base_interface, version, queue));
    if (m_shell) {
        static const xdg_wm_base_listener listener{
            .ping = [](void *, xdg_wm_base *shell,
                       uint32_t serial) { xdg_wm_base_pong(shell, serial); },
        };
        xdg_wm_base_add_listener(m_shell, &listener, nullptr);
        // The main thread handles its events, and those of what it makes, with Qt's.
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(m_shell), nullptr);
    }
    wl_event_queue_destroy(queue);
}

FullScreenShell::~FullScreenShell()
{
    if (m_shell) {
        xdg_wm_base_destroy(m_shell);
    }
}

bool FullScreenShell::isUsable() const
{
    return m_shell && areQtWindowsLeftWithoutRole();
}

std::unique_ptr<FullScreenWindow> FullScreenShell::show(QWidget &window, QScreen &screen)
{
    wl_surface *surface = makeQtWaylandSurface(window, screen);
    wl_output *output = qtWaylandOutput(screen);
    if (!isUsable() || !surface || !output) {
        return nullptr;
    }
    return std::make_unique<FullScreenWindow>(m_shell, surface, output, window);
}
