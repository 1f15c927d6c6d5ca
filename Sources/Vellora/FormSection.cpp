// SPDX-License-Identifier: MIT
#include "FormSection.h"

#include "AccessibleGroup.h"
#include "FormColors.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

namespace {
// In points.
constexpr int cardRadius = 8;
constexpr int headerGap = 6;
} // namespace

FormSection::FormSection(const QString &header, QWidget *parent)
    : QWidget(parent)
    , m_header(header)
    , m_rows(new QVBoxLayout(this))
{
    QAccessible::installFactory(accessibleGroup<FormSection>);
    setAccessibleName(header);
    m_rows->setSpacing(1);
    updateHeader();
}

QFont FormSection::headerFont() const
{
    QFont headerFont = font();
    headerFont.setWeight(QFont::DemiBold);
    return headerFont;
}

void FormSection::updateHeader()
{
    const int headerHeight = QFontMetrics(headerFont()).height() + headerGap;
    m_rows->setContentsMargins(1, headerHeight + 1, 1, 1);
}

QRect FormSection::cardRect() const
{
    return rect().adjusted(0, m_rows->contentsMargins().top() - 1, 0, 0);
}

void FormSection::addRow(QWidget *row)
{
    m_rows->addWidget(row);
    row->show();
    update();
}

void FormSection::removeRow(QWidget *row)
{
    m_rows->removeWidget(row);
    row->hide();
    // Later: the row may be handling an event.
    row->deleteLater();
    update();
}

void FormSection::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        updateHeader();
    }
    QWidget::changeEvent(event);
}

void FormSection::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setFont(headerFont());
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect header(rowInset, 0, width() - 2 * rowInset, cardRect().top());
    painter.drawText(header,
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(),
                                                              Qt::AlignLeading | Qt::AlignTop)),
                     m_header);

    painter.setPen(FormColors::separator(palette()));
    painter.setBrush(FormColors::card(palette()));
    painter.drawRoundedRect(QRectF(cardRect()).adjusted(0.5, 0.5, -0.5, -0.5), cardRadius,
                            cardRadius);
    for (int index = 1; index < m_rows->count(); ++index) {
        const int y = m_rows->itemAt(index)->geometry().top();
        painter.drawLine(QPointF(rowInset, y - 0.5), QPointF(width() - rowInset, y - 0.5));
    }
}
