// SPDX-License-Identifier: MIT
#include "Platform/X11/X11PopupPlacement.h"

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
    // The server does not know yet where a window that is not shown will be: the window manager is
    // told first.
    const QPointF client = window.isVisible()
                               ? QPointF(m_windowManager->clientGeometry(native).topLeft())
                               : m_screens.toPixels(m_screens.fromQt(window.geometry().topLeft()));
    const QPointF topLeft = client - QPointF(extents.left(), extents.top());
    const CocoaPoint corner = m_screens.fromPixels(topLeft);
    const CocoaSize size = frameSize(window);
    return {{corner.x, corner.y - size.height}, size};
}

void X11PopupPlacement::setFrameOrigin(QWidget &window, CocoaPoint origin)
{
    const CocoaPoint topLeft{origin.x, origin.y + frameSize(window).height};
    if (!qtXcbConnection()) {
        window.move(m_screens.toQt(topLeft).toPoint());
        return;
    }
    const xcb_window_t native = nativeWindow(window);
    const QMargins extents = m_windowManager->frameExtents(native);
    const QPoint client =
        m_screens.toPixels(topLeft).toPoint() + QPoint(extents.left(), extents.top());
    // Tells Qt and the window manager that the place is wanted, and that it is the client area's.
    window.setGeometry(
        QRect(m_screens.toQt(m_screens.fromPixels(client)).toPoint(), window.size()));
    // Qt's places are whole points, also when it shows the window.
    m_windowManager->moveClient(native, client);
    m_wish = {&window, client};
}

void X11PopupPlacement::makeKeyAndOrderFront(QWidget &window)
{
    window.show();
    window.raise();
    if (qtXcbConnection()) {
        if (m_wish.window == &window) {
            m_windowManager->moveClient(nativeWindow(window), m_wish.pixels);
        }
        // The server has dealt with what Qt has sent so far once it answers there: the window
        // manager hears of the window before it is asked to activate it.
        focusedWindow(qtXcbConnection());
        m_windowManager->activate(nativeWindow(window));
    } else {
        window.activateWindow();
    }
}
