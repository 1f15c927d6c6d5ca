// SPDX-License-Identifier: MIT
#include "Platform/Qt/StatusItemArtwork.h"

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Units of the canvas, and of the part of it that counts.
constexpr int canvasUnits = 18;
constexpr int liveUnits = 16;

/// The edge of a picture that has to be seen on dark and on light, as in the theme's icons.
constexpr QColor edgeColour(0x20, 0x20, 0x20);

/// Pixels for the 16 units in a slot of `extent` pixels: the largest whole multiple of the units
/// with a margin around it, a half one where a whole one would look lost, or all of a slot that is
/// too small for a margin.
int livePixels(int extent)
{
    const int available = extent * liveUnits / canvasUnits;
    const int whole = available / liveUnits * liveUnits;
    const int half = available / (liveUnits / 2) * (liveUnits / 2);
    // 16 pixels in a slot of 26 look right, in one of 28 lost.
    const int fitting = whole * 5 >= extent * 3 ? whole : half;
    return std::max(fitting, std::min(extent, liveUnits));
}

} // namespace

StatusItemArtwork::StatusItemArtwork(QString iconThemeFolder, QString applicationId)
    : m_iconThemeFolder(std::move(iconThemeFolder))
    , m_applicationId(std::move(applicationId))
{
}

QString StatusItemArtwork::iconName(const StatusItemImage &image) const
{
    QString name = image.name;
    // Icons of one application begin with its id, or a sandbox does not show them to the desktop.
    name = m_applicationId + u'-' + name.replace(u'.', u'-') + u"-symbolic"_s;
    return QFileInfo::exists(themedFile(name)) ? name : QString();
}

QString StatusItemArtwork::themedFile(const QString &name) const
{
    return m_iconThemeFolder + u"/hicolor/symbolic/apps/"_s + name + u".svg"_s;
}

QImage StatusItemArtwork::render(const StatusItemImage &image, int extent,
                                 const QColor &colour) const
{
    QByteArray data = image.data;
    if (QFile themed(themedFile(iconName(image))); themed.open(QIODevice::ReadOnly)) {
        data = themed.readAll();
        // For those who cannot tint the picture.
        data.replace(R"(class="Edge")", "");
    }
    QImage pixels(extent, extent, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);

    const int live = livePixels(extent);
    const int margin = (extent - live) / 2;
    const qreal unit = qreal(live) / liveUnits;
    const QRectF canvas(margin - unit, margin - unit, unit * canvasUnits, unit * canvasUnits);
    if (QSvgRenderer drawing(data); drawing.isValid()) {
        // An icon of the theme has no margin of its own.
        const bool hasMargin = drawing.viewBox().width() == canvasUnits;
        drawing.render(&painter, hasMargin ? canvas : QRectF(margin, margin, live, live));
    } else if (const QImage picture = QImage::fromData(data); !picture.isNull()) {
        painter.drawImage(canvas, picture);
    } else {
        return {};
    }
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixels.rect(), colour);
    return pixels;
}

QImage StatusItemArtwork::renderEdged(const StatusItemImage &image, int extent) const
{
    const QImage dark = render(image, extent, edgeColour);
    QImage pixels = dark;
    if (pixels.isNull()) {
        return {};
    }
    QPainter painter(&pixels);
    const int edge = std::max(1, extent / canvasUnits);
    for (const int x : {-edge, 0, edge}) {
        for (const int y : {-edge, 0, edge}) {
            painter.drawImage(x, y, dark);
        }
    }
    painter.drawImage(0, 0, render(image, extent, Qt::white));
    return pixels;
}
