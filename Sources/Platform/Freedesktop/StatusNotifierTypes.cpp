// SPDX-License-Identifier: MIT
#include "Platform/Freedesktop/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

StatusNotifierPixmap StatusNotifierPixmap::fromImage(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierPixmap pixmap{pixels.width(), pixels.height(), {}};
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const quint32 *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            const quint32 pixel = qToBigEndian(line[x]);
            pixmap.bytes.append(reinterpret_cast<const char *>(&pixel), sizeof pixel);
        }
    }
    return pixmap;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.bytes;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.bytes;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.iconPixmap << toolTip.title << toolTip.description;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.iconPixmap >> toolTip.title >> toolTip.description;
    argument.endStructure();
    return argument;
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<StatusNotifierPixmap>();
    qDBusRegisterMetaType<StatusNotifierPixmaps>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
}
