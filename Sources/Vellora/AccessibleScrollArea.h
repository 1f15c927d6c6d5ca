// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>
#include <QScrollArea>

/// For `QAccessible::installFactory`: scroll areas with the children of any widget. Those of Qt 6.4
/// end the program when a screen reader asks for a child that is no longer there, such as a scroll
/// bar that was hidden after the reader had counted it.
inline QAccessibleInterface *accessibleScrollArea(const QString &, QObject *object)
{
    // Not of the text views, which derive from other scroll areas and are known as texts.
    auto *area = qobject_cast<QScrollArea *>(object);
    return area ? new QAccessibleWidget(area, QAccessible::Client) : nullptr;
}
