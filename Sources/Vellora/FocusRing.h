// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <QWidget>

/// Whether the control has the keyboard and the user is at it: one who clicks needs no ring.
inline bool showsFocus(const QWidget &control)
{
    return control.hasFocus() && control.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

/// Draws the ring around a control that has the keyboard, just outside `control`. `radius` is that
/// of the control's own corners; both in points.
inline void drawFocusRing(QPainter &painter, const QRectF &control, qreal radius,
                          const QPalette &palette)
{
    constexpr qreal width = 2;
    // Off the control by its own width, so that it shows on a control of the same colour.
    constexpr qreal outset = width * 1.5;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.color(QPalette::Highlight), width));
    painter.drawRoundedRect(control.adjusted(-outset, -outset, outset, outset), radius + outset,
                            radius + outset);
}
