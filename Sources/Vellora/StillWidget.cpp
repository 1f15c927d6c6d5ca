// SPDX-License-Identifier: MIT
#include "StillWidget.h"

#include <QEvent>

bool StillWidget::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Paint:
        m_isPainted = true;
        break;
    case QEvent::Hide:
        m_isPainted = false;
        break;
    case QEvent::UpdateLater:
        // Qt posts it with each showing. On Wayland everything has been painted before it arrives.
        if (m_isPainted) {
            return true;
        }
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void StillWidget::focusInEvent(QFocusEvent *)
{
}

void StillWidget::focusOutEvent(QFocusEvent *)
{
}
