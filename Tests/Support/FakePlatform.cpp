// SPDX-License-Identifier: MIT
#include "Support/FakePlatform.h"

#include <QCoreApplication>

FakePlatform::FakePlatform()
    : mainQueue(install<FakeMainQueue>(m_platform.mainQueue))
    , systemLog(install<FakeSystemLog>(m_platform.systemLog))
    , screens(install<FakeScreens>(m_platform.screens))
    , screenRecording(install<FakeScreenRecording>(m_platform.screenRecording))
    , overlaySurface(install<FakeOverlaySurface>(m_platform.overlaySurface))
    , eventMonitor(install<FakeEventMonitor>(m_platform.eventMonitor))
    , keyTap(install<FakeKeyTap>(m_platform.keyTap))
    , pasteboard(install<FakePasteboard>(m_platform.pasteboard))
    , popupPlacement(install<FakePopupPlacement>(m_platform.popupPlacement))
    , statusBar(install<FakeStatusBar>(m_platform.statusBar))
    , notifications(install<FakeNotifications>(m_platform.notifications))
    , textRecognizer(install<FakeTextRecognizer>(m_platform.textRecognizer))
    , systemSounds(install<FakeSystemSounds>(m_platform.systemSounds))
    , loginItem(install<FakeLoginItem>(m_platform.loginItem))
    , updateSource(install<FakeUpdateSource>(m_platform.updateSource))
    , applicationService(install<FakeApplicationService>(m_platform.applicationService))
    , programRestart(install<FakeProgramRestart>(m_platform.programRestart))
    , programFile(install<FakeProgramFile>(m_platform.programFile))
{
    m_platform.userDefaults =
        std::make_unique<UserDefaults>(m_folder.filePath(QStringLiteral("vellora.ini")));
    const Screen screen = FakeScreens::screen(1, {{0, 0}, {1280, 800}}, 800);
    screens.list = {screen};
    screens.main = screen;
    screenRecording.nextImage = QImage(100, 50, QImage::Format_RGB32);
    screenRecording.nextImage.fill(Qt::white);
}

void FakePlatform::endSelections()
{
    eventMonitor.resignActive();
    mainQueue.advance(std::chrono::seconds(1));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void FakePlatform::reloadUserDefaults()
{
    const QString file = m_platform.userDefaults->filePath();
    // Files of the same path share what they have read for as long as one of them lives.
    m_platform.userDefaults.reset();
    m_platform.userDefaults = std::make_unique<UserDefaults>(file);
}
