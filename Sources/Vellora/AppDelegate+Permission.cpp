// SPDX-License-Identifier: MIT
#include "AppDelegate.h"
#include "Platform/Platform.h"
#include "StatusMark.h"

#include <QPointer>

#include <chrono>

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
    if (Platform::current().screenRecording->requestAccess()) {
        startCapture();
    } else {
        startPermissionPolling();
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
    if (const auto button = statusItemButton()) {
        show(StatusMark{u"lock.shield"_s, tr("Permission needed"),
                        tr("Screen Recording permission not granted — left-click to try again"),
                        3000ms},
             button);
    }
}
