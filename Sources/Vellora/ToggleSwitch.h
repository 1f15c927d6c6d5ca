// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>

/// A row of a form that is one check box: its text at the leading edge, a sliding switch at the
/// trailing one. The whole row is clickable.
class ToggleSwitch : public QCheckBox
{
    Q_OBJECT

public:
    explicit ToggleSwitch(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;
};
