// SPDX-License-Identifier: MIT
#include "Platform/Wayland/PlasmaPopupPlacement.h"

#include "Platform/ScreenImage.h"
#include "Platform/Wayland/PanelProbe.h"
#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QPoint>
#include <QPointer>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <utility>
#include <wayland-plasma-shell.h>

namespace {
/// The version that leaves windows out of the window switcher too.
constexpr quint32 wantedVersion = 5;
/// KWin's decorations have 30 to 37 points in their usual sizes and fonts.
constexpr int titleBarHeight = 40;
} // namespace

struct PlasmaPopupPlacement::Placed
{
    QPointer<QWidget> window;
    bool isFloating = false;
    QPoint topLeft;
    WaylandPointer<org_kde_plasma_surface, org_kde_plasma_surface_destroy> surface;
};

PlasmaPopupPlacement::PlasmaPopupPlacement(const Screens &screens, AvailableRect availableRect,
                                           FrameOfTitle frameOfTitle)
    : m_screens(screens)
    , m_availableRect(std::move(availableRect))
    , m_frameOfTitle(std::move(frameOfTitle))
{
    if (wl_display *display = qtWaylandDisplay()) {
        m_queue = wl_display_create_queue(display);
        m_shell = static_cast<org_kde_plasma_shell *>(
            bindOnQtConnection(org_kde_plasma_shell_interface, wantedVersion, m_queue));
    }
}

PlasmaPopupPlacement::~PlasmaPopupPlacement()
{
    m_placed.clear();
    if (m_shell) {
        org_kde_plasma_shell_destroy(m_shell);
    }
    if (m_queue) {
        wl_event_queue_destroy(m_queue);
    }
}

PlasmaPopupPlacement::Placed &PlasmaPopupPlacement::placed(QWidget &window)
{
    std::erase_if(m_placed, [](const Placed &each) { return !each.window; });
    const auto known = std::ranges::find_if(
        m_placed, [&](const Placed &each) { return each.window.data() == &window; });
    if (known != m_placed.end()) {
        return *known;
    }
    m_placed.push_back({&window, false, {}, {}});
    return m_placed.back();
}

const PlasmaPopupPlacement::Placed *PlasmaPopupPlacement::find(const QWidget &window) const
{
    const auto known = std::ranges::find_if(
        m_placed, [&](const Placed &each) { return each.window.data() == &window; });
    return known == m_placed.end() ? nullptr : &*known;
}

void PlasmaPopupPlacement::makeFloating(QWidget &window)
{
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    placed(window).isFloating = true;
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
    const Placed *known = find(window);
    const auto told = known && !known->isFloating && window.isVisible()
                          ? m_frameOfTitle(window.windowTitle())
                          : std::nullopt;
    const QPoint topLeft = told ? told->topLeft() : known ? known->topLeft : QPoint();
    // The compositor's own size is the one of before while the window is being resized.
    const CocoaSize size = frameSize(window);
    return m_screens.fromQt(QRectF(topLeft, QSizeF(size.width, size.height)));
}

void PlasmaPopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    Placed &known = placed(window);
    known.topLeft = m_screens.toQt({origin.x, origin.y + frameSize(window).height}).toPoint();
    if (known.surface) {
        org_kde_plasma_surface_set_position(known.surface.get(), known.topLeft.x(),
                                            known.topLeft.y());
    }
}

void PlasmaPopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    if (window.isVisible()) {
        m_activation.activate(window);
        return;
    }
    window.winId();
    wl_surface *surface = qtWaylandSurface(*window.windowHandle());
    if (m_shell && surface && find(window)) {
        giveSurface(placed(window), *surface);
    }
    // The compositor gives a new window the keyboard.
    window.show();
}

void PlasmaPopupPlacement::giveSurface(Placed &placed, wl_surface &surface)
{
    placed.surface.reset();
    placed.surface.reset(org_kde_plasma_shell_get_surface(m_shell, &surface));
    org_kde_plasma_surface *given = placed.surface.get();
    org_kde_plasma_surface_set_position(given, placed.topLeft.x(), placed.topLeft.y());
    const quint32 version = org_kde_plasma_shell_get_version(m_shell);
    if (placed.isFloating && version >= ORG_KDE_PLASMA_SURFACE_SET_SKIP_TASKBAR_SINCE_VERSION) {
        org_kde_plasma_surface_set_skip_taskbar(given, 1);
    }
    if (placed.isFloating && version >= ORG_KDE_PLASMA_SURFACE_SET_SKIP_SWITCHER_SINCE_VERSION) {
        org_kde_plasma_surface_set_skip_switcher(given, 1);
    }
}
