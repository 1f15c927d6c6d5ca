// SPDX-License-Identifier: MIT
#pragma once

#include "GlobalHotkey.h"
#include "OCRService.h"
#include "Platform/CocoaGeometry.h"
#include "Platform/MainQueue.h"
#include "Platform/StatusItem.h"
#include "ResultPopup.h"
#include "UpdaterController.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <stop_token>
#include <variant>

/// Wires the program together at launch and conducts every capture. Main thread only.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    AppDelegate();
    ~AppDelegate() override;

    /// The launch sequence; called once, when the event loop is about to run.
    void applicationDidFinishLaunching();

    /// Lets the user select a rectangle and delivers its text; asks for the permission to record
    /// the screen first, if it is missing.
    void startCapture();

    void openSettings();
    void checkForUpdates();

    /// Whether nothing of the program is in use: no window of it is shown, and no text is on its
    /// way.
    bool isIdle() const;

    /// Says on the status item, for a moment, and in the log why a capture gave no text.
    void showOCRError(const OCRError &error);

    /// What the user wanted was given up for want of memory, and says so.
    void memoryDidEnd();

    /// Does what a desktop action of this name stands for; unknown names do nothing.
    void performAction(const QString &name);

private:
    void installMainMenu();
    void setupStatusItem();
    void setupGlobalHotkey();
    /// What the user chose does not hold; that is told once.
    void settingsWriteDidFail();
    /// Says in the settings how to use the program, if no panel shows the status item in time.
    void watchForPanels();
    void hotkeyStringWillChange(const QString &hotkeyString);
    void hotkeyEnabledWillChange(bool enabled);
    void handleClick(const StatusItemEvent &event);
    void showContextMenu(const StatusItemEvent &event);
    void captureFromMenu();

    using CaptureHold = std::shared_ptr<const std::monostate>;

    void selectionDidFinish(const std::optional<CocoaRect> &rect, const CaptureHold &hold);
    void recognitionDidFinish(const RecognitionOutcome &outcome, const CocoaRect &captureRect);
    void deliverResult(const QString &text, const CocoaRect &captureRect);
    void textWasCopied(bool isCopied);
    /// The error mark, and a line in the log, for a failure that a desktop is to blame for. `text`
    /// is a source of a translation.
    void showFailure(const char *text);
    void showCopiedNotification();
    static void playShutterSound();

    void requestScreenPermission();
    void startPermissionPolling();
    void checkPermission(RepeatingTimer &timer);
    void permissionPollingDidTimeOut();
    /// The mark at once, and a line in the log, if the desktop tells why; once per request.
    void showPermissionRefusal();
    void showPermissionNeeded();

    std::shared_ptr<StatusItemButton> statusItemButton() const;

    std::unique_ptr<StatusItem> statusItem;
    /// Whether a panel has ever shown the status item; one that goes comes back.
    bool statusItemWasSeen = false;
    std::shared_ptr<GlobalHotkey> globalHotkey;
    ResultPopup resultPopup;
    /// Stops the recognition of the last picture, the only one under way that is still wanted.
    std::stop_source recognition;
    /// The subscriptions to the two settings of the shortcut.
    QMetaObject::Connection hotkeyCancellable;
    QMetaObject::Connection hotkeyEnabledCancellable;
    UpdaterController updaterController;
    std::shared_ptr<RepeatingTimer> permissionCheckTimer;
    bool permissionRefusalShown = false;
    /// Held by each capture from the dim until its text is delivered, so that one that is given up
    /// on the way, by whatever it meets, is under way no longer.
    const CaptureHold captureHold = std::make_shared<const std::monostate>();
};
