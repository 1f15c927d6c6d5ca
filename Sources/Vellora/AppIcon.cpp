// SPDX-License-Identifier: MIT
#include "AppIcon.h"

#include "Publisher.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <utility>

using namespace Qt::StringLiterals;

namespace {
// In points.
constexpr int side = 44;
constexpr qreal cornerRadius = 10;

/// A rectangle whose edges bend into its corners without a jump in curvature: the usual Bézier
/// approximation of a continuous corner, in multiples of the radius.
QPainterPath continuousRoundedRect(const QRectF &rect, qreal radius)
{
    const auto corner = [radius](QPainterPath &path, const QTransform &place) {
        const auto at = [&](qreal x, qreal y) {
            return place.map(QPointF(x, y) * radius);
        };
        path.lineTo(at(1.52866483, 0));
        path.cubicTo(at(1.08849323, 0), at(0.86840694, 0), at(0.63149399, 0.07491100));
        path.cubicTo(at(0.37282392, 0.16906013), at(0.16906013, 0.37282392),
                     at(0.07491100, 0.63149399));
        path.cubicTo(at(0, 0.86840694), at(0, 1.08849323), at(0, 1.52866483));
    };
    QPainterPath path;
    path.moveTo(rect.center().x(), rect.top());
    // Counterclockwise from the top edge; each turn puts the next corner at the origin.
    QTransform place = QTransform::fromTranslate(rect.left(), rect.top());
    for (int index = 0; index < 4; ++index) {
        corner(path, place);
        place.translate(0, index % 2 == 0 ? rect.height() : rect.width());
        place.rotate(-90);
    }
    path.closeSubpath();
    return path;
}

/// One for each file: what an icon draws for a window stays in Qt's cache of pictures under the
/// icon's own key, so that one made anew for every window would fill that cache, of 10 MB.
QIcon &iconOf(const QString &file)
{
    // Never destroyed by an exit handler, because the display may be gone by then.
    static auto *icons = new QHash<QString, QIcon>;
    const auto found = icons->find(file);
    return found != icons->end() ? *found : *icons->insert(file, QIcon(file));
}
} // namespace

QIcon loadedAppIcon(const Bundle &bundle)
{
    const QString file = bundle.path(u"AppIcon"_s, u"svg"_s);
    if (!file.isEmpty()) {
        QIcon &icon = iconOf(file);
        if (!icon.pixmap(side).isNull()) {
            return icon;
        }
    }
    return QIcon::fromTheme(Publisher::applicationId,
                            QIcon::fromTheme(u"application-x-executable"_s));
}

AppIconView::AppIconView(QIcon icon, QWidget *parent)
    : QWidget(parent)
    , m_icon(std::move(icon))
{
    setFixedSize(side, side);
}

void AppIconView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setClipPath(continuousRoundedRect(rect(), cornerRadius));
    m_icon.paint(&painter, rect());
}
