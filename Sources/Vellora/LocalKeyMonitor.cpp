// SPDX-License-Identifier: MIT
#include "LocalKeyMonitor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWindow>

LocalKeyMonitor::LocalKeyMonitor(Handler handler)
    : m_handler(std::move(handler))
{
    qApp->installEventFilter(this);
}

bool LocalKeyMonitor::eventFilter(QObject *watched, QEvent *event)
{
    const auto *window = qobject_cast<QWindow *>(watched);
    // An open menu gets its keys through the window that it belongs to.
    if (event->type() != QEvent::KeyPress || !window || QApplication::activePopupWidget()) {
        return false;
    }
    // A copy: the handler may destroy this monitor.
    const Handler handler = m_handler;
    return handler(static_cast<const QKeyEvent &>(*event), *window);
}
