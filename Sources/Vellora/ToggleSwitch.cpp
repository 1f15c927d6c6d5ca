// SPDX-License-Identifier: MIT
#include "ToggleSwitch.h"

#include "FocusRing.h"
#include "FormColors.h"
#include "FormSection.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace {
// In points.
constexpr QSize switchSize(38, 22);
constexpr int knobInset = 2;
constexpr int gap = 12;
} // namespace

ToggleSwitch::ToggleSwitch(const QString &text, QWidget *parent)
    : QCheckBox(text, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const
{
    const QSize textSize = fontMetrics().size(Qt::TextShowMnemonic, text());
    return {2 * FormSection::rowInset + textSize.width() + gap + switchSize.width(),
            qMax(textSize.height() + FormSection::rowInset, FormSection::rowHeight)};
}

bool ToggleSwitch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

void ToggleSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionButton option;
    initStyleOption(&option);

    const QRect row = rect().adjusted(FormSection::rowInset, 0, -FormSection::rowInset, 0);
    const int mnemonic = style()->styleHint(QStyle::SH_UnderlineShortcut, &option, this) != 0
                             ? Qt::TextShowMnemonic
                             : Qt::TextHideMnemonic;
    const auto alignment =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter);
    style()->drawItemText(&painter,
                          QStyle::visualRect(layoutDirection(), row,
                                             row.adjusted(0, 0, -switchSize.width() - gap, 0)),
                          static_cast<int>(alignment) | mnemonic, palette(), isEnabled(), text(),
                          QPalette::WindowText);

    const QRect track = QStyle::alignedRect(layoutDirection(), Qt::AlignTrailing | Qt::AlignVCenter,
                                            switchSize, row);
    const qreal radius = track.height() / 2.0;
    const bool on = isChecked();
    QColor fill = on ? palette().color(QPalette::Highlight) : FormColors::trough(palette());
    if (isDown()) {
        fill = fill.darker(110);
    }
    painter.setPen(on ? Qt::NoPen : QPen(FormColors::separator(palette())));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(track).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);

    const bool knobAtRight = on != isRightToLeft();
    QRectF knob(0, 0, track.height() - 2 * knobInset, track.height() - 2 * knobInset);
    knob.moveCenter(QPointF(knobAtRight ? track.right() + 1 - radius : track.left() + radius,
                            track.top() + radius));
    painter.setPen(QPen(QColor(0, 0, 0, 40)));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob.adjusted(0.5, 0.5, -0.5, -0.5));

    if (showsFocus(*this)) {
        drawFocusRing(painter, QRectF(track), radius, palette());
    }
}
