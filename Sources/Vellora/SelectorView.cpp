// SPDX-License-Identifier: MIT
#include "SelectorView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {
/// A selection narrower or lower than this many points is taken for a click.
constexpr double smallestSide = 3;
constexpr double outlineWidth = 1.5;
constexpr double outlineInset = 0.5;
/// The system blue of the light appearance, 95 % opaque.
constexpr QColor outlineColor(0, 122, 255, 242);
} // namespace

SelectorView::SelectorView(QWidget *parent)
    : StillWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
}

CocoaPoint SelectorView::viewPoint(const QMouseEvent &event) const
{
    return {event.position().x(), height() - event.position().y()};
}

void SelectorView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    startPoint = viewPoint(*event);
    currentRect = CocoaRect{*startPoint, {}};
    update();
}

void SelectorView::mouseMoveEvent(QMouseEvent *event)
{
    if (!startPoint) {
        return;
    }
    const CocoaPoint point = viewPoint(*event);
    currentRect = CocoaRect{{std::min(point.x, startPoint->x), std::min(point.y, startPoint->y)},
                            {std::abs(startPoint->x - point.x), std::abs(startPoint->y - point.y)}};
    update();
}

void SelectorView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    report();
    startPoint.reset();
    currentRect.reset();
    update();
}

void SelectorView::report()
{
    const bool isLargeEnough = currentRect && currentRect->size.width >= smallestSide &&
                               currentRect->size.height >= smallestSide;
    if (!isLargeEnough) {
        if (onCancel) {
            onCancel();
        }
        return;
    }
    if (onSelection) {
        CocoaRect selection = *currentRect;
        selection.origin.x += screenOriginInGlobalCocoa.x;
        selection.origin.y += screenOriginInGlobalCocoa.y;
        onSelection(selection);
    }
}

void SelectorView::keyPressEvent(QKeyEvent *event)
{
    // Every key ends here: none is passed on.
    if (event->key() == Qt::Key_Escape && onCancel) {
        onCancel();
    }
}

void SelectorView::paintEvent(QPaintEvent *)
{
    if (!currentRect) {
        return;
    }
    const QRectF rect(currentRect->minX(), height() - currentRect->maxY(), currentRect->size.width,
                      currentRect->size.height);
    QPainter painter(this);
    if (!painter.isActive()) {
        // The panel around it cannot be painted either, and tells.
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect, m_backdrop.isNull() ? QBrush(Qt::transparent) : QBrush(m_backdrop));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(QPen(outlineColor, outlineWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawRect(rect.adjusted(outlineInset, outlineInset, -outlineInset, -outlineInset));
}
