// SPDX-License-Identifier: MIT
#include "SegmentedPicker.h"

#include "AccessibleGroup.h"
#include "FocusRing.h"
#include "FormColors.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace {
// In points.
constexpr int pickerHeight = 26;
constexpr int troughInset = 2;
constexpr int troughRadius = 7;
constexpr int textInset = 8;
} // namespace

class SegmentedPicker::Segment : public QRadioButton
{
public:
    Segment(const QString &title, SegmentedPicker *picker)
        : QRadioButton(title, picker)
        , m_picker(picker)
    {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override
    {
        return {fontMetrics().size(Qt::TextShowMnemonic, text()).width() + 2 * textInset,
                pickerHeight};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }

    void keyPressEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Left:
            m_picker->move(isRightToLeft() ? 1 : -1);
            break;
        case Qt::Key_Right:
            m_picker->move(isRightToLeft() ? -1 : 1);
            break;
        case Qt::Key_Up:
            m_picker->move(-1);
            break;
        case Qt::Key_Down:
            m_picker->move(1);
            break;
        default:
            QRadioButton::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF button = QRectF(rect()).adjusted(troughInset + 0.5, troughInset + 0.5,
                                                      -troughInset - 0.5, -troughInset - 0.5);
        constexpr qreal radius = troughRadius - troughInset;
        if (isChecked()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(palette().color(QPalette::Highlight));
            painter.drawRoundedRect(button, radius, radius);
        } else if (isDown()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(FormColors::separator(palette()));
            painter.drawRoundedRect(button, radius, radius);
        }
        const int mnemonic = style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0
                                 ? Qt::TextShowMnemonic
                                 : Qt::TextHideMnemonic;
        style()->drawItemText(&painter, rect(), Qt::AlignCenter | mnemonic, palette(), isEnabled(),
                              text(),
                              isChecked() ? QPalette::HighlightedText : QPalette::WindowText);
        if (showsFocus(*this)) {
            // Inside, as there is no room outside: in the text's colour to show on the highlight.
            painter.setBrush(Qt::NoBrush);
            QPen pen(
                palette().color(isChecked() ? QPalette::HighlightedText : QPalette::Highlight));
            pen.setWidthF(1.5);
            painter.setPen(pen);
            painter.drawRoundedRect(button.adjusted(2, 2, -2, -2), radius - 1.5, radius - 1.5);
        }
    }

private:
    SegmentedPicker *m_picker;
};

SegmentedPicker::SegmentedPicker(const QStringList &titles, QWidget *parent)
    : QWidget(parent)
{
    QAccessible::installFactory(accessibleGroup<SegmentedPicker>);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (const QString &title : titles) {
        auto *segment = new Segment(title, this);
        const auto index = static_cast<int>(m_segments.size());
        m_segments << segment;
        row->addWidget(segment);
        connect(segment, &QRadioButton::toggled, this, [this, index](bool on) {
            if (on && index != m_selected) {
                m_selected = index;
                setFocusProxy(m_segments.at(index));
                Q_EMIT selected(index);
            }
        });
    }
}

void SegmentedPicker::setSelectedIndex(int index)
{
    m_selected = index;
    setFocusProxy(m_segments.at(index));
    m_segments.at(index)->setChecked(true);
}

void SegmentedPicker::move(int steps)
{
    const int next = m_selected + steps;
    if (next >= 0 && next < m_segments.size()) {
        m_segments.at(next)->setFocus(Qt::OtherFocusReason);
        m_segments.at(next)->setChecked(true);
    }
}

void SegmentedPicker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(FormColors::trough(palette()));
    painter.drawRoundedRect(QRectF(rect()), troughRadius, troughRadius);
}
