// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <QColor>
#include <QImage>

/// Turns the status item's pictures into pixels and into names of an icon theme.
///
/// They are drawn on a canvas of 18 units with a margin of 1 around 16 units that count. Lines lie
/// on whole units, so the picture is put on whole or half multiples of 16 pixels, which keeps it
/// crisp, rather than stretched over all of a slot.
class StatusItemArtwork
{
public:
    /// `iconThemeFolder` holds the same pictures as icons of the application `applicationId`, see
    /// `DesktopPlatformOptions`.
    explicit StatusItemArtwork(QString iconThemeFolder, QString applicationId = {});

    QString iconThemeFolder() const { return m_iconThemeFolder; }

    /// The picture's name in the icon theme, for panels that tint it; empty when it is not there.
    QString iconName(const StatusItemImage &image) const;

    /// A square of `extent` pixels with the picture in `colour`, transparent around it; empty
    /// when its data cannot be read. A picture of the theme is preferred to the data: it is drawn
    /// for every size.
    QImage render(const StatusItemImage &image, int extent, const QColor &colour) const;

    /// The same for hosts that draw it as it is, on a panel of unknown colour: white with a dark
    /// edge.
    QImage renderEdged(const StatusItemImage &image, int extent) const;

private:
    QString themedFile(const QString &name) const;

    QString m_iconThemeFolder;
    QString m_applicationId;
};
