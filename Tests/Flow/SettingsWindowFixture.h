// SPDX-License-Identifier: MIT
#pragma once

#include "Support/FakePlatform.h"
#include "Updater.h"

#include <QCheckBox>
#include <QRadioButton>

#include <memory>

class HotkeyRecorderField;
class SettingsView;

/// The settings window over a fake platform, opened and closed anew by every test.
class SettingsWindowFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static QWidget *show(Updater *updater = nullptr);
    static void close();
    static QWidget *window();
    static SettingsView *view();
    static QCheckBox *toggle(const QString &text);
    static QRadioButton *segment(const QString &text);
    static HotkeyRecorderField *recorder();
    /// A control's text without its mnemonic.
    static QString plain(QString text) { return text.remove(u'&'); }

    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<Updater> m_updater;
};
