// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

/// A widget that is painted when it is shown and when it asks for it with `update()`, outside of a
/// paint event, but not once more because it was just shown, or because the keyboard comes or goes.
/// Each painting of a whole screen takes a buffer of its size, on Wayland a further one while the
/// compositor has not given back the last.
class StillWidget : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    bool m_isPainted = false;
};
