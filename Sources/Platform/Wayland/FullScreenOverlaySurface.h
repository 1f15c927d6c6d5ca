// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/OverlaySurface.h"
#include "Platform/Wayland/FrozenScreenRecording.h"
#include "Platform/Wayland/FullScreenShell.h"

#include <QObject>
#include <QPointer>
#include <QScreen>

#include <memory>
#include <vector>

/// Overlays as ordinary full-screen windows, which are black where they show nothing: they stand on
/// a picture of their screen. Compositors give a new window the keyboard.
class FullScreenOverlaySurface : public OverlaySurface
{
public:
    /// `recording` outlives every panel.
    explicit FullScreenOverlaySurface(FrozenScreenRecording &recording);

    std::optional<QPixmap> cover(QWidget &panel, const Screen &screen) override;
    /// Shows nothing where there is no picture of the screen.
    void orderFront(QWidget &panel) override;
    void makeKey(QWidget &panel) override;
    /// Grabs come from the pictures until the event being handled is.
    void orderOut(QWidget &panel) override;

private:
    struct Overlay
    {
        const QWidget *panel;
        QPointer<QScreen> screen;
        /// Null where Qt's own full-screen windows do, as on X11.
        std::unique_ptr<FullScreenWindow> window;
    };

    FrozenScreenRecording &m_recording;
    FullScreenShell m_shell;
    std::vector<Overlay> m_overlays;
    QObject m_context;
};
