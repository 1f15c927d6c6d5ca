// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ApplicationService.h"
#include "Platform/EventMonitor.h"
#include "Platform/KeyTap.h"
#include "Platform/Leftovers.h"
#include "Platform/LoginItem.h"
#include "Platform/MainQueue.h"
#include "Platform/Notifications.h"
#include "Platform/OverlaySurface.h"
#include "Platform/Pasteboard.h"
#include "Platform/PopupPlacement.h"
#include "Platform/ProgramFile.h"
#include "Platform/ProgramRestart.h"
#include "Platform/ScreenRecording.h"
#include "Platform/Screens.h"
#include "Platform/StatusItem.h"
#include "Platform/SystemLog.h"
#include "Platform/SystemSounds.h"
#include "Platform/TextRecognizer.h"
#include "Platform/UpdateSource.h"
#include "Platform/UserDefaults.h"

#include <memory>

/// What the desktop provides, one service a field. Every field is set.
///
/// There is one for the process, made in `main` for the desktop at hand or by a test with fakes;
/// it outlives everything that uses it.
struct Platform
{
    std::unique_ptr<MainQueue> mainQueue;
    std::unique_ptr<SystemLog> systemLog;
    std::unique_ptr<UserDefaults> userDefaults;
    std::unique_ptr<Screens> screens;
    std::unique_ptr<ScreenRecording> screenRecording;
    std::unique_ptr<OverlaySurface> overlaySurface;
    std::unique_ptr<EventMonitor> eventMonitor;
    std::unique_ptr<KeyTap> keyTap;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<PopupPlacement> popupPlacement;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<Notifications> notifications;
    std::unique_ptr<TextRecognizer> textRecognizer;
    std::unique_ptr<SystemSounds> systemSounds;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<UpdateSource> updateSource;
    std::unique_ptr<ApplicationService> applicationService;
    std::unique_ptr<ProgramRestart> programRestart;
    std::unique_ptr<ProgramFile> programFile;
    Leftovers leftovers;

    Platform();
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;
    /// Ends being the process's platform.
    ~Platform();

    /// The process's platform: the one constructed last and still alive.
    static Platform &current();
};
