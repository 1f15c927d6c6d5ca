// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PopupPlacement.h"
#include "Platform/Screens.h"
#include "Platform/Sway/SwayConnection.h"
#include "Platform/Sway/SwayEvents.h"

#include <QMargins>
#include <QPointer>

#include <optional>

/// Popups are floating windows of sway's, which gives them a title bar and lets the user resize
/// them. A layer could be put at an exact place by itself, but has neither.
///
/// A new window's place can only be told to sway once it is there. Until then it is held
/// invisible, so that it is never seen elsewhere.
class SwayPopupPlacement : public PopupPlacement
{
public:
    /// `screens` outlives the object.
    explicit SwayPopupPlacement(const Screens &screens);

    void makeFloating(QWidget &window) override;
    /// With title bar and borders as the popup before had them, until sway has told them.
    CocoaSize frameSize(const QWidget &window) const override;
    CocoaRect frame(const QWidget &window) const override;
    void setFrameOrigin(QWidget &window, CocoaPoint origin) override;
    void makeKeyAndOrderFront(QWidget &window) override;

private:
    void handle(const QJsonObject &event);
    bool move(qint64 container);

    const Screens &m_screens;
    /// Mutable, because asking is a conversation.
    mutable SwayConnection m_connection;
    SwayEvents m_events;
    QPointer<QWidget> m_window;
    /// Sway's number of the window, once it is there.
    std::optional<qint64> m_container;
    /// Upper left corner of the frame, in Qt's global coordinates.
    QPoint m_topLeft;
    QMargins m_extents;
};
