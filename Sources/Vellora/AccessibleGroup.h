// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>

/// For `QAccessible::installFactory`: makes widgets of a class known as groups, by their
/// accessible names.
template <typename Widget>
QAccessibleInterface *accessibleGroup(const QString &, QObject *object)
{
    auto *widget = qobject_cast<Widget *>(object);
    return widget ? new QAccessibleWidget(widget, QAccessible::Grouping) : nullptr;
}
