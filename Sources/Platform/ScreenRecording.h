// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <optional>

/// Why the screen may not be grabbed, and what the user can do about it: whole sentences.
struct ScreenRecordingRefusal
{
    /// In the user's language.
    QString message;
    /// In English.
    QString logText;
};

/// Grabbing what the screens show, and the permission for it. Main thread only.
class ScreenRecording
{
public:
    virtual ~ScreenRecording() = default;

    /// Whether the screen may be grabbed now. Never asks the user.
    virtual bool preflightAccess() const = 0;

    /// Lets the desktop ask the user, if it has to. Whether the screen may be grabbed now.
    virtual bool requestAccess() = 0;

    /// Why the last look or request found no access. Absent where there is access, and as long as
    /// the user may still give it by answering a question that the desktop asks.
    virtual std::optional<ScreenRecordingRefusal> refusal() const { return std::nullopt; }

    /// What one display shows in `rect`, without any overlay of ours that was ordered out before.
    ///
    /// `display` is a `Screen::displayNumber`; `rect` is in points of that display, origin at its
    /// top-left corner, y down. The picture has the display's own pixel density and holds what of
    /// `rect` lies on the display; null when there is nothing or grabbing failed.
    virtual QImage createImage(quint32 display, const QRectF &rect) = 0;
};
