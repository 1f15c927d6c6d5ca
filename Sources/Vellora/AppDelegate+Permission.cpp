// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "Platform/Platform.h"
#include "StatusMark.h"

#include <QPointer>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto pollInterval = 1500ms;
constexpr auto pollingWindow = 120s;
/// Time for the user to see that the permission was noticed before the screens dim.
constexpr auto captureDelay = 500ms;
} // namespace

void AppDelegate::requestScreenPermission()
{
    permissionRefusalShown = false;
    if (Platform::current().screenRecording->requestAccess()) {
        startCapture();
    } else {
        startPermissionPolling();
        showPermissionRefusal();
    }
}

void AppDelegate::startPermissionPolling()
{
    if (permissionCheckTimer) {
        permissionCheckTimer->invalidate();
    }
    MainQueue &mainQueue = *Platform::current().mainQueue;
    permissionCheckTimer =
        mainQueue.scheduledTimer(pollInterval, [self = QPointer(this)](RepeatingTimer &timer) {
            if (self) {
                self->checkPermission(timer);
            }
        });
    // Not tied to its own timer: it ends whatever polling runs by then.
    mainQueue.asyncAfter(pollingWindow, [self = QPointer(this)] {
        if (self) {
            self->permissionPollingDidTimeOut();
        }
    });
}

void AppDelegate::checkPermission(RepeatingTimer &timer)
{
    if (!Platform::current().screenRecording->preflightAccess()) {
        // The desktop may have answered meanwhile, and not as hoped.
        showPermissionRefusal();
        return;
    }
    timer.invalidate();
    permissionCheckTimer.reset();
    showCopiedNotification();
    Platform::current().mainQueue->asyncAfter(captureDelay, [self = QPointer(this)] {
        if (self) {
            self->startCapture();
        }
    });
}

void AppDelegate::permissionPollingDidTimeOut()
{
    if (!permissionCheckTimer || !permissionCheckTimer->isValid()) {
        return;
    }
    permissionCheckTimer->invalidate();
    permissionCheckTimer.reset();
    showPermissionNeeded();
}

void AppDelegate::showPermissionRefusal()
{
    const auto refusal = Platform::current().screenRecording->refusal();
    // One that is taken back, as the desktop is asking once more, may come again.
    const bool wasShown = std::exchange(permissionRefusalShown, refusal.has_value());
    if (wasShown || !refusal) {
        return;
    }
    Platform::current().systemLog->logVerbatim(
        u"Vellora: Screen Recording permission not granted: "_s + refusal->logText);
    showPermissionNeeded();
}

void AppDelegate::showPermissionNeeded()
{
    const auto button = statusItemButton();
    if (!button) {
        return;
    }
    QString text = tr("Screen Recording permission not granted — left-click to try again");
    if (const auto refusal = Platform::current().screenRecording->refusal()) {
        text += u'\n' + refusal->message;
    }
    show(StatusMark{u"lock.shield"_s, tr("Permission needed"), text, 3000ms}, button);
}
