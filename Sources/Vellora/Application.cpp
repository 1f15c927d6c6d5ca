// SPDX-License-Identifier: MIT
#include "Application.h"

#include <QThread>

#include <new>

bool Application::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc &) {
        // What the handler had has been given back by now, so that there is some to tell of it.
        tellMemoryDidEnd();
        return true;
    }
}

void Application::tellMemoryDidEnd()
{
    try {
        if (QThread::currentThread() != thread()) {
            QMetaObject::invokeMethod(
                this, [this] { tellMemoryDidEnd(); }, Qt::QueuedConnection);
        } else if (memoryDidEnd) {
            memoryDidEnd();
        }
    } catch (const std::bad_alloc &) {
        // Not even for that; whatever the user does next may tell of it.
    }
}
