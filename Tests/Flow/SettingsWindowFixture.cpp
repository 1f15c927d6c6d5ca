// SPDX-License-Identifier: MIT
#include "SettingsWindowFixture.h"

#include "HotkeyRecorder.h"
#include "Settings.h"
#include "SettingsView.h"
#include "SettingsWindow.h"

#include <QTest>

using namespace Qt::StringLiterals;

void SettingsWindowFixture::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void SettingsWindowFixture::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_updater = std::make_unique<Updater>();
    Settings::shared().setOutputMode(OutputMode::both);
    Settings::shared().setShutterSound(true);
    Settings::shared().setShowNotification(true);
    Settings::shared().setLaunchAtLogin(false);
    Settings::shared().setHotkeyEnabled(false);
    Settings::shared().setHotkeyString(u"cmd+shift+o"_s);
    m_platform->loginItem.requests.clear();
}

void SettingsWindowFixture::cleanup()
{
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    close();
    m_updater.reset();
    m_platform.reset();
}

QWidget *SettingsWindowFixture::show(Updater *updater)
{
    SettingsWindowController::show(updater);
    if (!QTest::qWaitForWindowActive(window(), testPatience)) {
        QTest::qFail("the window is not active", __FILE__, __LINE__);
    }
    return window();
}

QWidget *SettingsWindowFixture::window()
{
    return SettingsWindowController::window();
}

SettingsView *SettingsWindowFixture::view()
{
    return window()->findChild<SettingsView *>();
}

HotkeyRecorderField *SettingsWindowFixture::recorder()
{
    return window()->findChild<HotkeyRecorderField *>();
}

void SettingsWindowFixture::close()
{
    if (window()) {
        window()->close();
    }
}

QCheckBox *SettingsWindowFixture::toggle(const QString &text)
{
    for (auto *box : window()->findChildren<QCheckBox *>()) {
        if (plain(box->text()) == text) {
            return box;
        }
    }
    return nullptr;
}

QRadioButton *SettingsWindowFixture::segment(const QString &text)
{
    for (auto *button : window()->findChildren<QRadioButton *>()) {
        if (button->text() == text) {
            return button;
        }
    }
    return nullptr;
}
