// SPDX-License-Identifier: MIT
#include "Platform/Wayland/PlasmaPopupPlacement.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/PanelProbe.h"
#include "Platform/Wayland/QtWayland.h"

#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>
#include <wayland-client.h>
#include <wayland-plasma-shell.h>

namespace {
/// The version that leaves windows out of the window switcher too.
constexpr quint32 wantedVersion = 5;
/// KWin's decorations have 30 to 37 points in their usual sizes and fonts.
constexpr int titleBarHeight = 40;
} // namespace

PlasmaPopupPlacement::PlasmaPopupPlacement(const Screens &screens, AvailableRect availableRect)
    : m_screens(screens)
    , m_availableRect(std::move(availableRect))
{
    if (wl_display *display = qtWaylandDisplay()) {
        m_queue = wl_display_create_queue(display);
        m_shell = static_cast<org_kde_plasma_shell *>(
            bindOnQtConnection(org_kde_plasma_shell_interface, wantedVersion, m_queue));
    }
}

PlasmaPopupPlacement::~PlasmaPopupPlacement()
{
    dropSurface();
    if (m_shell) {
        org_kde_plasma_shell_destroy(m_shell);
    }
    if (m_queue) {
        wl_event_queue_destroy(m_queue);
    }
}

void PlasmaPopupPlacement::dropSurface()
{
    if (m_surface) {
        org_kde_plasma_surface_destroy(m_surface);
        m_surface = nullptr;
    }
}

void PlasmaPopupPlacement::makeFloating(QWidget &window)
{
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    dropSurface();
    m_floating = &window;
}

CocoaRect PlasmaPopupPlacement::visibleFrame(const Screen &screen) const
{
    const QScreen *output = qtScreen(screen);
    if (!output) {
        return screen.visibleFrame;
    }
    const QRect whole = screen.geometry;
    QRect visible = m_availableRect(output->name()).value_or(whole) & whole;
    if (const auto size = sizeBesideLayers(*output)) {
        visible.setRight(std::min(visible.right(), whole.x() + size->width() - 1));
        visible.setBottom(std::min(visible.bottom(), whole.y() + size->height() - 1));
    }
    return visible.isEmpty() ? screen.visibleFrame : m_screens.fromQt(QRectF(visible));
}

CocoaSize PlasmaPopupPlacement::frameSize(const QWidget &window) const
{
    return {double(window.width()), double(window.height() + titleBarHeight)};
}

CocoaRect PlasmaPopupPlacement::frame(const QWidget &window) const
{
    const CocoaSize size = frameSize(window);
    return m_screens.fromQt(QRectF(m_topLeft, QSizeF(size.width, size.height)));
}

void PlasmaPopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    m_topLeft = m_screens.toQt({origin.x, origin.y + frameSize(window).height}).toPoint();
    if (m_surface) {
        org_kde_plasma_surface_set_position(m_surface, m_topLeft.x(), m_topLeft.y());
    }
}

void PlasmaPopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    if (window.isVisible()) {
        m_activation.activate(window);
        return;
    }
    dropSurface();
    window.winId();
    wl_surface *surface = qtWaylandSurface(*window.windowHandle());
    if (m_shell && surface) {
        m_surface = org_kde_plasma_shell_get_surface(m_shell, surface);
        org_kde_plasma_surface_set_position(m_surface, m_topLeft.x(), m_topLeft.y());
        const bool isFloating = m_floating == &window;
        const quint32 version = org_kde_plasma_shell_get_version(m_shell);
        if (isFloating && version >= ORG_KDE_PLASMA_SURFACE_SET_SKIP_TASKBAR_SINCE_VERSION) {
            org_kde_plasma_surface_set_skip_taskbar(m_surface, 1);
        }
        if (isFloating && version >= ORG_KDE_PLASMA_SURFACE_SET_SKIP_SWITCHER_SINCE_VERSION) {
            org_kde_plasma_surface_set_skip_switcher(m_surface, 1);
        }
    }
    // The compositor gives a new window the keyboard.
    window.show();
}
