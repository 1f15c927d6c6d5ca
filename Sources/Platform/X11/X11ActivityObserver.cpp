// SPDX-License-Identifier: MIT
#include "Platform/X11/X11ActivityObserver.h"

#include "Platform/X11/X11Connection.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>

X11ActivityObserver::X11ActivityObserver(bool isActive, std::function<void()> handler)
    : m_handler(std::move(handler))
    , m_isActive(isActive)
{
    QCoreApplication::instance()->installNativeEventFilter(this);
    checkSoon();
}

X11ActivityObserver::~X11ActivityObserver()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool X11ActivityObserver::nativeEventFilter(const QByteArray &eventType, void *message,
                                            qintptr * /*result*/)
{
    if (eventType == "xcb_generic_event_t") {
        const int type = static_cast<const xcb_generic_event_t *>(message)->response_type & 0x7f;
        if (type == XCB_FOCUS_IN || type == XCB_FOCUS_OUT) {
            checkSoon();
        }
    }
    return false;
}

void X11ActivityObserver::checkSoon()
{
    if (!std::exchange(m_isCheckDue, true)) {
        // After Qt has dealt with it; several changes in a row are looked at once.
        QTimer::singleShot(0, this, &X11ActivityObserver::check);
    }
}

void X11ActivityObserver::check()
{
    m_isCheckDue = false;
    xcb_connection_t *qt = qtXcbConnection();
    if (!qt) {
        return;
    }
    const bool wasActive = std::exchange(m_isActive, isQtWindow(focusedWindow(qt)));
    if (wasActive && !m_isActive) {
        // A copy, because the handler may destroy this object.
        const auto handler = m_handler;
        handler();
    }
}
