// SPDX-License-Identifier: MIT
#include "PickerRow.h"

#include "FormSection.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QResizeEvent>

namespace {
// In points.
constexpr int verticalInset = 8;
constexpr int gap = 10;
constexpr int stackedGap = 6;
} // namespace

PickerRow::PickerRow(const QString &label, QWidget *picker, QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(label, this))
    , m_picker(picker)
    , m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this))
{
    m_label->setBuddy(m_picker);
    QString name = label;
    m_picker->setAccessibleName(name.remove(u'&'));
    m_layout->setContentsMargins(FormSection::rowInset, verticalInset, FormSection::rowInset,
                                 verticalInset);
    m_layout->setSpacing(gap);
    m_layout->addWidget(m_label);
    m_layout->addWidget(m_picker);
}

bool PickerRow::fits(int width) const
{
    return width >= 2 * FormSection::rowInset + m_label->sizeHint().width() + gap +
                        m_picker->sizeHint().width();
}

QSize PickerRow::minimumSizeHint() const
{
    const int width = qMax(m_label->sizeHint().width(), m_picker->minimumSizeHint().width()) +
                      2 * FormSection::rowInset;
    return {width, QWidget::minimumSizeHint().height()};
}

void PickerRow::resizeEvent(QResizeEvent *event)
{
    const bool beside = fits(event->size().width());
    m_layout->setDirection(beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_layout->setSpacing(beside ? gap : stackedGap);
}
