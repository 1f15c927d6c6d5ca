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

template <typename Value>
void Settings::assign(Value &property, void (Settings::*willChange)(Argument<Value>),
                      const Value &value)
{
    Q_EMIT objectWillChange();
    Q_EMIT(this->*willChange)(value);
    property = value;
}

template <typename Value, typename Stored>
bool Settings::change(Value &property, void (Settings::*willChange)(Argument<Value>),
                      const Value &value, const QString &key, const Stored &stored)
{
    const Value before = property;
    assign(property, willChange, value);
    if (defaults().set(key, stored)) {
        return true;
    }
    // What cannot be stored is not the user's choice for long: nobody shall believe that it is.
    defaults().revert(key);
    assign(property, willChange, before);
    return false;
}

void Settings::setOutputMode(OutputMode mode)
{
    change(m_outputMode, &Settings::outputModeWillChange, mode, outputModeKey, rawValue(mode));
}

void Settings::setShutterSound(bool on)
{
    change(m_shutterSound, &Settings::shutterSoundWillChange, on, shutterSoundKey, on);
}

void Settings::setShowNotification(bool on)
{
    change(m_showNotification, &Settings::showNotificationWillChange, on, showNotificationKey, on);
}

void Settings::setLaunchAtLogin(bool on)
{
    if (change(m_launchAtLogin, &Settings::launchAtLoginWillChange, on, launchAtLoginKey, on)) {
        LaunchAtLogin::update(on);
    }
}

void Settings::setHotkeyEnabled(bool on)
{
    change(m_hotkeyEnabled, &Settings::hotkeyEnabledWillChange, on, hotkeyEnabledKey, on);
}

void Settings::setHotkeyString(const QString &hotkeyString)
{
    change(m_hotkeyString, &Settings::hotkeyStringWillChange, hotkeyString, hotkeyStringKey,
           hotkeyString);
}
