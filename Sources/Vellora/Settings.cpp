// SPDX-License-Identifier: MIT
#include "Settings.h"

#include "Platform/Platform.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
const QString outputModeKey = u"outputMode"_s;
const QString shutterSoundKey = u"shutterSound"_s;
const QString showNotificationKey = u"showNotification"_s;
const QString launchAtLoginKey = u"launchAtLogin"_s;
const QString hotkeyEnabledKey = u"hotkeyEnabled"_s;
const QString hotkeyStringKey = u"hotkeyString"_s;

UserDefaults &defaults()
{
    return *Platform::current().userDefaults;
}

/// Anything but the two exact texts means both, so that no stored text leaves the store without
/// a mode.
OutputMode loadedOutputMode()
{
    const QString text = defaults().string(outputModeKey).value_or(QString());
    if (text == u"clipboard") {
        return OutputMode::clipboardOnly;
    }
    return text == u"popup" ? OutputMode::popupOnly : OutputMode::both;
}

/// On unless a false is stored.
bool loadedSwitch(const QString &key)
{
    return !defaults().contains(key) || defaults().boolean(key);
}
} // namespace

QString rawValue(OutputMode mode)
{
    switch (mode) {
    case OutputMode::clipboardOnly:
        return u"clipboard"_s;
    case OutputMode::popupOnly:
        return u"popup"_s;
    case OutputMode::both:
        break;
    }
    return u"both"_s;
}

std::optional<OutputMode> outputModeFromRawValue(const QString &text)
{
    for (const OutputMode mode : allOutputModes) {
        if (rawValue(mode) == text) {
            return mode;
        }
    }
    return std::nullopt;
}

QString displayTitle(OutputMode mode)
{
    switch (mode) {
    case OutputMode::clipboardOnly:
        return QCoreApplication::translate("OutputMode", "Clipboard Only");
    case OutputMode::popupOnly:
        return QCoreApplication::translate("OutputMode", "Popup Only");
    case OutputMode::both:
        break;
    }
    return QCoreApplication::translate("OutputMode", "Both");
}

void LaunchAtLogin::update(bool enabled)
{
    Platform &platform = Platform::current();
    const auto error =
        enabled ? platform.loginItem->registerItem() : platform.loginItem->unregisterItem();
    if (error) {
        platform.systemLog->log(u"LaunchAtLogin toggle failed: "_s + *error);
    }
}

Settings &Settings::shared()
{
    static Settings settings;
    return settings;
}

Settings::Settings()
    : m_outputMode(loadedOutputMode())
    , m_shutterSound(loadedSwitch(shutterSoundKey))
    , m_showNotification(loadedSwitch(showNotificationKey))
    , m_launchAtLogin(defaults().boolean(launchAtLoginKey))
    , m_hotkeyEnabled(defaults().boolean(hotkeyEnabledKey))
    , m_hotkeyString(defaults().string(hotkeyStringKey).value_or(u"cmd+shift+o"_s))
{
}

void Settings::setOutputMode(OutputMode mode)
{
    Q_EMIT objectWillChange();
    Q_EMIT outputModeWillChange(mode);
    m_outputMode = mode;
    defaults().set(outputModeKey, rawValue(mode));
}

void Settings::setShutterSound(bool on)
{
    Q_EMIT objectWillChange();
    Q_EMIT shutterSoundWillChange(on);
    m_shutterSound = on;
    defaults().set(shutterSoundKey, on);
}

void Settings::setShowNotification(bool on)
{
    Q_EMIT objectWillChange();
    Q_EMIT showNotificationWillChange(on);
    m_showNotification = on;
    defaults().set(showNotificationKey, on);
}

void Settings::setLaunchAtLogin(bool on)
{
    Q_EMIT objectWillChange();
    Q_EMIT launchAtLoginWillChange(on);
    m_launchAtLogin = on;
    defaults().set(launchAtLoginKey, on);
    LaunchAtLogin::update(on);
}

void Settings::setHotkeyEnabled(bool on)
{
    Q_EMIT objectWillChange();
    Q_EMIT hotkeyEnabledWillChange(on);
    m_hotkeyEnabled = on;
    defaults().set(hotkeyEnabledKey, on);
}

void Settings::setHotkeyString(const QString &hotkeyString)
{
    Q_EMIT objectWillChange();
    Q_EMIT hotkeyStringWillChange(hotkeyString);
    m_hotkeyString = hotkeyString;
    defaults().set(hotkeyStringKey, hotkeyString);
}
