// SPDX-License-Identifier: MIT
#pragma once

#include "Support/FakeKeyTap.h"
#include "Support/FakeMainQueue.h"
#include "Support/FakeServices.h"
#include "Support/FakeStatusItem.h"
#include "Support/FakeTextRecognizer.h"
#include "Support/FakeUpdates.h"

#include <QTemporaryDir>

/// A platform made of fakes, with one 1280 × 800 screen and settings in a temporary file.
class FakePlatform
{
public:
    FakePlatform();

private:
    QTemporaryDir m_folder;
    Platform m_platform;

    template <typename Fake, typename Service>
    static Fake &install(std::unique_ptr<Service> &service)
    {
        auto fake = std::make_unique<Fake>();
        Fake &installed = *fake;
        service = std::move(fake);
        return installed;
    }

public:
    FakeMainQueue &mainQueue;
    FakeSystemLog &systemLog;
    FakeScreens &screens;
    FakeScreenRecording &screenRecording;
    FakeOverlaySurface &overlaySurface;
    FakeEventMonitor &eventMonitor;
    FakeKeyTap &keyTap;
    FakePasteboard &pasteboard;
    FakePopupPlacement &popupPlacement;
    FakeStatusBar &statusBar;
    FakeNotifications &notifications;
    FakeTextRecognizer &textRecognizer;
    FakeSystemSounds &systemSounds;
    FakeLoginItem &loginItem;
    FakeUpdateSource &updateSource;
    FakeApplicationService &applicationService;
    FakeProgramRestart &programRestart;
    FakeProgramFile &programFile;

    /// Reads the file of the user defaults anew, as a restart does.
    void reloadUserDefaults();
    Leftovers &leftovers() { return m_platform.leftovers; }
    UserDefaults &userDefaults() { return *m_platform.userDefaults; }

    /// Cancels the selections that a test left open and lets what keeps them go.
    void endSelections();
};
