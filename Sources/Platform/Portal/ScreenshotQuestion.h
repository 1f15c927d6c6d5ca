// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Portal/PermissionWindow.h"
#include "Platform/Portal/ScreenshotPermission.h"
#include "Platform/Portal/ScreenshotRequest.h"
#include "Platform/Wayland/ForeignWindow.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

/// The desktop's question whether the program may see the screen, asked by way of a picture from
/// the portal.
///
/// GNOME's shell shows it only while a window of the program that asks has the keyboard, and of a
/// question that it refuses to show the portal (1.16) tells nobody. Neither does it tell of an
/// answer that took longer than 25 seconds, which it does not keep either. So there is a window of
/// ours, and whether the desktop's dialog is there shows in who has the keyboard.
class ScreenshotQuestion : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        /// A desktop whose dialog has not taken the keyboard by then has refused to show it.
        std::chrono::milliseconds dialog = std::chrono::seconds(5);
        /// Once the dialog is gone, an answer is kept within this, or none.
        std::chrono::milliseconds answer = std::chrono::seconds(2);
        /// The picture that the portal was asked for comes within this, once it is granted.
        std::chrono::milliseconds picture = std::chrono::seconds(10);
    };

    /// Called once, with whether pictures are granted. It may destroy the question.
    using Handler = std::function<void(bool isGranted)>;

    ScreenshotQuestion(Handler handler, Limits limits);

    ~ScreenshotQuestion() override;

    /// Brings the window to the front and has the question asked, anew if it was asked before. An
    /// answer to an earlier one still counts.
    void ask();

    /// Whether pictures are granted and the first one is still being taken: GNOME's shell refuses a
    /// second one meanwhile.
    bool awaitsPicture() const { return m_awaitsPicture; }

    /// Whether the portal has ended the question, with neither a picture nor an answer that is
    /// kept; the window then offers to have it asked again.
    bool hasEnded() const { return m_hasEnded; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void closeWindow();
    void windowDidActivate();
    void request();
    void answered(bool isGranted);
    void permissionChanged();
    void giveUpWaiting();
    void showUnanswered();
    void finish(bool isGranted);

    Handler m_handler;
    Limits m_limits;
    ScreenshotPermissionWatch m_permission;
    std::unique_ptr<PermissionWindow> m_window;
    /// Under this name the portal knows the window, which outlives it.
    std::unique_ptr<ForeignWindow> m_name;
    /// Requests that are unanswered. An earlier one is not called off: the portal (1.16) answers
    /// nobody for 25 seconds when it is, while the dialog is there.
    std::vector<std::unique_ptr<ScreenshotRequest>> m_requests;
    /// Whether `request` has been called since `ask`.
    bool m_isAsked = false;
    /// Whether something else, the dialog that is, had the keyboard since.
    bool m_hadDialog = false;
    /// Whether it has been asked once more than the user wanted, for an answer that came to
    /// nothing.
    bool m_wasRepeated = false;
    bool m_awaitsPicture = false;
    bool m_hasEnded = false;
    QTimer m_wait;
};
