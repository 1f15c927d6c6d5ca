// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"

#include <QElapsedTimer>

/// Grabs by KWin's org.kde.KWin.ScreenShot2. KWin lets a program whose desktop entry names that
/// interface in X-KDE-DBUS-Restricted-Interfaces, and the program's own file in Exec; it asks
/// nobody.
class KWinScreenShot : public ScreenRecording
{
public:
    /// `screens` outlives the object.
    explicit KWinScreenShot(const Screens &screens);

    /// Whether KWin offers the service, let us use it or not. It needs KWin to draw with OpenGL.
    static bool isOffered();

    /// Asks KWin each time: the desktop entry may be installed later.
    bool preflightAccess() const override;
    /// The same: there is nobody to ask.
    bool requestAccess() override;
    std::optional<ScreenRecordingRefusal> refusal() const override;
    QImage createImage(quint32 display, const QRectF &rect) override;

private:
    const Screens &m_screens;
    /// Runs since KWin answered first that it does not know us; invalid after any other answer.
    mutable QElapsedTimer m_refused;
};
