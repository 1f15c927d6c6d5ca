// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/CocoaGeometry.h"
#include "StillWidget.h"

#include <QPixmap>

#include <functional>
#include <optional>

/// Covers one screen's overlay panel: follows one press, drag and release of the primary button,
/// shows the dragged rectangle as a clear hole with a thin blue outline in the panel's dim, and
/// reports the outcome.
///
/// View coordinates are points with the origin at the view's bottom-left corner, y upwards.
class SelectorView : public StillWidget
{
    Q_OBJECT

public:
    explicit SelectorView(QWidget *parent = nullptr);

    /// The lower-left corner of the view's screen, in global Cocoa coordinates.
    CocoaPoint screenOriginInGlobalCocoa;
    /// Called with a selection of at least 3 × 3 points, in global Cocoa coordinates.
    std::function<void(const CocoaRect &)> onSelection;
    /// Called when the interaction ends without a usable rectangle.
    std::function<void()> onCancel;

    /// What a clear place shows where the desktop itself cannot shine through; null where it can.
    void setBackdrop(const QPixmap &backdrop) { m_backdrop = backdrop; }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    CocoaPoint viewPoint(const QMouseEvent &event) const;
    void report();

    /// Where the button went down, in view coordinates.
    std::optional<CocoaPoint> startPoint;
    /// From `startPoint` to the latest place of the drag, in view coordinates; not clamped to
    /// the view, so that a drag onto another screen spans both.
    std::optional<CocoaRect> currentRect;
    QPixmap m_backdrop;
};
