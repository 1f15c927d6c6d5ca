// SPDX-License-Identifier: MIT
#pragma once

#include "HotkeyRecorder.h"

#include <QPointer>
#include <QWidget>

#include <optional>

class FormSection;
class QLabel;
class SegmentedPicker;
class Settings;
class ToggleSwitch;
class Updater;

/// The form of all settings. Every control writes at once, and shows what the store holds,
/// whoever changed it.
class SettingsView : public QWidget
{
    Q_OBJECT

public:
    /// `settings` and `updater` outlive the form. Without an updater there is nothing to look for
    /// updates with.
    SettingsView(Settings &settings, Updater *updater, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

    /// "v" and the version, or "v?" when it is not known.
    static QString versionText(const std::optional<QString> &version);

private:
    FormSection *addSection(const QString &header);
    void addMissingStatusItem();
    void showMissingStatusItem();
    /// Ties a switch to a setting, which it writes when it is toggled.
    template <bool (Settings::*value)() const, void (Settings::*assign)(bool)>
    void bind(ToggleSwitch *control);
    void addOutput();
    void addCapture();
    void addKeyboardShortcut();
    void addGeneral();
    void addAbout();
    QWidget *makeShortcutRow();
    static QLabel *makeTextRow(FormSection *section);
    void showGivenKeys();

    void settingsWillChange();
    /// Shows what the store holds now.
    void rebuild();

    Settings &m_settings;
    Updater *m_updater;
    /// Seen only while no panel shows the status item.
    FormSection *m_missingSection = nullptr;
    QLabel *m_missingText = nullptr;
    SegmentedPicker *m_outputMode = nullptr;
    ToggleSwitch *m_shutterSound = nullptr;
    ToggleSwitch *m_showNotification = nullptr;
    FormSection *m_shortcutSection = nullptr;
    ToggleSwitch *m_hotkeyEnabled = nullptr;
    /// There only while the shortcut is on.
    QPointer<QWidget> m_shortcutRow;
    QPointer<HotkeyRecorderField> m_recorder;
    /// There only where the desktop gave the shortcut other keys.
    QPointer<QLabel> m_givenKeysRow;
    HotkeyRecorderView m_recorderView;
    ToggleSwitch *m_launchAtLogin = nullptr;
    bool m_rebuildPending = false;
};
