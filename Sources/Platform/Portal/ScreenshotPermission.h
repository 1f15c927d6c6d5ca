// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"

#include <QObject>

/// What the user has answered to the desktop's question whether this program may take pictures of
/// the screen. The desktop keeps it, and changes it in its settings.
enum class ScreenshotPermission {
    Yes,
    No,
    /// Not asked yet; nothing is kept that can be understood counts as that.
    Unanswered,
};

/// The answer that is kept now, read without asking anybody.
ScreenshotPermission storedScreenshotPermission();

/// What becomes of a "no", which the desktop keeps, and where the user changes it.
ScreenRecordingRefusal deniedScreenshots();

/// What is told of a question that has ended without an answer that the desktop keeps.
ScreenRecordingRefusal unansweredScreenshots();

/// Tells when the desktop keeps another answer than before, of whichever program.
class ScreenshotPermissionWatch : public QObject
{
    Q_OBJECT

public:
    ScreenshotPermissionWatch();

Q_SIGNALS:
    void changed();
};
