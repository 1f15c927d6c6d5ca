// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/PanelMenu.h"
#include "Platform/Portal/ScreenshotQuestion.h"
#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"
#include "Platform/SystemLog.h"

#include <QThread>

#include <chrono>
#include <memory>

/// Grabs by the Screenshot portal, which gives a picture of all screens at once. The desktop asks
/// the user once and remembers what the answer was, for good.
class PortalScreenshot : public QObject, public ScreenRecording
{
public:
    struct Limits
    {
        /// A portal that takes longer for a picture is given up on: GNOME's plays a sound and lets
        /// the screen flash first, and without a graphics card it was seen to take more than five
        /// seconds on a busy machine.
        std::chrono::milliseconds answer = std::chrono::seconds(10);
        /// A screen that does not come to rest is taken as it is: GNOME's menus fade for 150 ms,
        /// and other things may never stand still.
        std::chrono::milliseconds rest = std::chrono::milliseconds(1500);
        ScreenshotQuestion::Limits question = {};
    };

    /// `screens` and `log` outlive the object.
    PortalScreenshot(const Screens &screens, SystemLog &log, std::shared_ptr<PanelMenu> panelMenu,
                     Limits limits);
    ~PortalScreenshot() override;

    /// Whether there is a portal that takes pictures of the screen. Starts it where need be.
    static bool isOffered();

    /// By the permission that is stored, which a portal without any replaces by its first picture.
    bool preflightAccess() const override;
    /// Has the user asked, and asked anew where an earlier question has no answer yet; the answer
    /// comes later. False until then.
    bool requestAccess() override;
    std::optional<ScreenRecordingRefusal> refusal() const override;
    /// Waits for the portal. Grabs of one event are cut from one picture. The log says why there is
    /// none.
    QImage createImage(quint32 display, const QRectF &rect) override;

private:
    QImage takePicture();
    /// Without the panel's menu: while that is leaving, pictures are taken until one is like the
    /// one before.
    QImage takeSettledPicture();

    const Screens &m_screens;
    SystemLog &m_log;
    std::shared_ptr<PanelMenu> m_panelMenu;
    Limits m_limits;
    /// Where answers are awaited while the main thread waits.
    QThread m_thread;
    std::unique_ptr<ScreenshotQuestion> m_question;
    bool m_wasGranted = false;
    /// Whether the last question ended with nothing that the desktop keeps.
    bool m_wasUnanswered = false;
    QImage m_picture;
};
