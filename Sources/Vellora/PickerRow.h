// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QBoxLayout;
class QLabel;

/// A row of a form: a label, and a picker beside it or, where that is too narrow, beneath it.
class PickerRow : public QWidget
{
    Q_OBJECT

public:
    /// Takes `picker` over and names it for screen readers.
    PickerRow(const QString &label, QWidget *picker, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Whether both fit side by side in `width`.
    bool fits(int width) const;

    QLabel *m_label;
    QWidget *m_picker;
    QBoxLayout *m_layout;
};
