// SPDX-License-Identifier: MIT
#include "Platform/X11/X11PopupPlacement.h"

#include <QWidget>
#include <QWindow>

#include <cmath>
#include <utility>

namespace {
xcb_window_t nativeWindow(const QWidget &window)
{
    return static_cast<xcb_window_t>(window.winId());
}
} // namespace

X11PopupPlacement::X11PopupPlacement(std::shared_ptr<X11Connection> connection,
                                     const Screens &screens)
    : m_connection(std::move(connection))
    , m_screens(screens)
    , m_windowManager(std::make_unique<X11WindowManager>(*m_connection))
{
}

void X11PopupPlacement::makeFloating(QWidget &window)
{
    window.setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
    if (qtXcbConnection()) {
        m_windowManager->skipTaskbar(nativeWindow(window));
    }
}

CocoaSize X11PopupPlacement::frameSize(const QWidget &window) const
{
    if (!qtXcbConnection()) {
        return {static_cast<double>(window.width()), static_cast<double>(window.height())};
    }
    const QMargins extents = m_windowManager->frameExtents(nativeWindow(window));
    const double scale = window.devicePixelRatio();
    return {window.width() + (extents.left() + extents.right()) / scale,
            window.height() + (extents.top() + extents.bottom()) / scale};
}

CocoaRect X11PopupPlacement::frame(const QWidget &window) const
{
    if (!qtXcbConnection()) {
        return m_screens.fromQt(QRectF(window.frameGeometry()));
    }
    const xcb_window_t native = nativeWindow(window);
    const QMargins extents = m_windowManager->frameExtents(native);
    QPoint topLeft = m_windowManager->clientGeometry(native).topLeft();
    if (m_windowManager->isMapped(native)) {
        topLeft -= QPoint(extents.left(), extents.top());
    }
    const CocoaPoint corner = m_screens.fromPixels(topLeft);
    const CocoaSize size = frameSize(window);
    return {{corner.x, corner.y - size.height}, size};
}

void X11PopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    const CocoaPoint topLeft{origin.x, origin.y + frameSize(window).height};
    // Tells Qt and the window manager that the place is wanted, in whole points.
    window.move(m_screens.toQt(topLeft).toPoint());
    if (qtXcbConnection()) {
        m_windowManager->moveFrame(nativeWindow(window), m_screens.toPixels(topLeft).toPoint());
    }
}

void X11PopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    window.show();
    window.raise();
    if (qtXcbConnection()) {
        // What Qt has sent so far is to reach the window manager first.
        xcb_flush(qtXcbConnection());
        m_windowManager->activate(nativeWindow(window));
    } else {
        window.activateWindow();
    }
}
