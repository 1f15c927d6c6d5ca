// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QString>

/// A picture as StatusNotifierItem sends it: ARGB32, not premultiplied, most significant byte
/// first.
struct StatusNotifierPixmap
{
    int width = 0;
    int height = 0;
    QByteArray bytes;

    static StatusNotifierPixmap fromImage(const QImage &image);
};
using StatusNotifierPixmaps = QList<StatusNotifierPixmap>;

struct StatusNotifierToolTip
{
    QString iconName;
    StatusNotifierPixmaps iconPixmap;
    QString title;
    QString description;
};

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip);

/// Makes the types known to QtDBus; needed once before they are sent or received.
void registerStatusNotifierTypes();

Q_DECLARE_METATYPE(StatusNotifierPixmap)
Q_DECLARE_METATYPE(StatusNotifierToolTip)
