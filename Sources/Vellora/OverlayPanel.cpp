// SPDX-License-Identifier: MIT
#include "OverlayPanel.h"

#include "SelectorView.h"

#include <QPainter>

namespace {
/// Black, 25 % opaque.
constexpr QColor dim(0, 0, 0, 64);
} // namespace

OverlayPanel::OverlayPanel()
    : m_contentView(new SelectorView(this))
{
    setFocusProxy(m_contentView);
}

void OverlayPanel::setBackdrop(const QPixmap &backdrop)
{
    m_backdrop = backdrop;
    m_contentView->setBackdrop(backdrop);
}

void OverlayPanel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!painter.isActive()) {
        // Later, as a panel must not go while Qt paints it.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (onPaintFailure) {
                    onPaintFailure();
                }
            },
            Qt::QueuedConnection);
        return;
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (m_backdrop.isNull()) {
        painter.fillRect(rect(), dim);
        return;
    }
    painter.drawPixmap(0, 0, m_backdrop);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.fillRect(rect(), dim);
}

void OverlayPanel::resizeEvent(QResizeEvent *)
{
    m_contentView->setGeometry(rect());
}
