// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <array>
#include <optional>
#include <type_traits>

/// Where recognized text goes.
enum class OutputMode { clipboardOnly, popupOnly, both };

/// All modes, in the order in which they are offered.
inline constexpr std::array allOutputModes{OutputMode::clipboardOnly, OutputMode::popupOnly,
                                           OutputMode::both};

/// The mode's stored form, which is also its identity: "clipboard", "popup" or "both".
QString rawValue(OutputMode mode);

/// The mode with exactly this stored form, if there is one.
std::optional<OutputMode> outputModeFromRawValue(const QString &text);

/// The mode's name for the user.
QString displayTitle(OutputMode mode);

/// Starting the program when the user logs in.
namespace LaunchAtLogin {
/// Registers the program as a login item, or takes it away again. A failure is only logged.
void update(bool enabled);
} // namespace LaunchAtLogin

/// The user's choices: loaded once, held in memory, written through at every assignment.
///
/// An assignment, also of the value already held, first emits `objectWillChange`, then the
/// property's own signal with the new value, while the property still holds the old one; then it
/// stores the value and writes it to the user defaults. A value that cannot be written is taken
/// back in the same way, so that a property always holds what is stored. Main thread only.
class Settings : public QObject
{
    Q_OBJECT

public:
    /// The one instance that the program uses, loaded on first use.
    static Settings &shared();

    /// Loads from the platform's user defaults; writes nothing.
    Settings();

    OutputMode outputMode() const { return m_outputMode; }
    void setOutputMode(OutputMode mode);

    bool shutterSound() const { return m_shutterSound; }
    void setShutterSound(bool on);

    /// Whether the status item shows a check mark when text was copied.
    bool showNotification() const { return m_showNotification; }
    void setShowNotification(bool on);

    bool launchAtLogin() const { return m_launchAtLogin; }
    void setLaunchAtLogin(bool on);

    bool hotkeyEnabled() const { return m_hotkeyEnabled; }
    void setHotkeyEnabled(bool on);

    /// The shortcut in its stored form, such as "cmd+shift+o"; not validated here.
    QString hotkeyString() const { return m_hotkeyString; }
    void setHotkeyString(const QString &hotkeyString);

Q_SIGNALS:
    void objectWillChange();
    void outputModeWillChange(OutputMode mode);
    void shutterSoundWillChange(bool on);
    void showNotificationWillChange(bool on);
    void launchAtLoginWillChange(bool on);
    void hotkeyEnabledWillChange(bool on);
    void hotkeyStringWillChange(const QString &hotkeyString);

private:
    /// As the properties' signals take a value.
    template <typename Value>
    using Argument = std::conditional_t<std::is_same_v<Value, QString>, const QString &, Value>;

    template <typename Value>
    void assign(Value &property, void (Settings::*willChange)(Argument<Value>), const Value &value);
    /// Whether the value is stored now.
    template <typename Value, typename Stored>
    bool change(Value &property, void (Settings::*willChange)(Argument<Value>), const Value &value,
                const QString &key, const Stored &stored);

    OutputMode m_outputMode;
    bool m_shutterSound;
    bool m_showNotification;
    bool m_launchAtLogin;
    bool m_hotkeyEnabled;
    QString m_hotkeyString;
};
