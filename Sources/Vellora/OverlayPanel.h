// SPDX-License-Identifier: MIT
#pragma once

#include "StillWidget.h"

#include <QPixmap>

#include <functional>

class SelectorView;

/// The borderless panel that dims one whole screen.
class OverlayPanel : public StillWidget
{
    Q_OBJECT

public:
    OverlayPanel();

    SelectorView &contentView() const { return *m_contentView; }

    /// A picture of the screen to show beneath the dim; null where the desktop shines through.
    void setBackdrop(const QPixmap &backdrop);

    /// Called a moment after the panel could not be painted, which is so when there is no memory
    /// for what it shows.
    std::function<void()> onPaintFailure;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    SelectorView *m_contentView;
    QPixmap m_backdrop;
};
