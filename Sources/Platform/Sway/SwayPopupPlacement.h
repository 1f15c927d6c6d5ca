// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/Sway/SwayConnection.h"
#include "Platform/Sway/SwayEvents.h"

#include <QMargins>
#include <QPointer>

#include <optional>
#include <vector>

/// Windows of ours that have a place are floating windows of sway's, which gives them a title bar
/// and lets the user resize them. A layer could be put at an exact place by itself, but has
/// neither.
///
/// A new window's place can only be told to sway once it is there, and only then does sway tell how
/// high its title bar is. Until then it is held invisible, so that it is never seen elsewhere.
class SwayPopupPlacement : public PopupPlacement
{
public:
    /// `screens` outlives the object.
    explicit SwayPopupPlacement(const Screens &screens);

    void makeFloating(QWidget &window) override;
    /// Of the workspace that the screen shows, as sway tells it.
    CocoaRect visibleFrame(const Screen &screen) const override;
    /// With title bar and borders as the window before had them, until sway has told them.
    CocoaSize frameSize(const QWidget &window) const override;
    CocoaRect frame(const QWidget &window) const override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void place(QWidget &window, const Origin &origin) override;
    void setFrame(QWidget &window, const CocoaRect &frame) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    struct Placed
    {
        QPointer<QWidget> window;
        Origin origin;
        /// The frame's, where that is more than what the window asks for itself.
        std::optional<CocoaSize> size;
        /// Upper left corner of the frame, in Qt's global coordinates.
        QPoint topLeft;
        /// Sway's number of the window, while it is there.
        std::optional<qint64> container;
    };

    Placed &placed(QWidget &window);
    const Placed *find(const QWidget &window) const;
    QJsonObject container(qint64 number) const;
    void handle(const QJsonObject &event);
    void appear(Placed &placed, qint64 number);
    void move(Placed &placed);

    const Screens &m_screens;
    /// Mutable, because asking is a conversation.
    mutable SwayConnection m_connection;
    SwayEvents m_events;
    std::vector<Placed> m_placed;
    QMargins m_extents;
};
