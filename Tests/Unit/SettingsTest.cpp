// SPDX-License-Identifier: MIT
#include "Settings.h"

#include "Support/FakePlatform.h"

#include <QFile>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

class SettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void loadsDefaultsAndWritesNothing();
    void loadsOutputModes_data();
    void loadsOutputModes();
    void loadsSwitches_data();
    void loadsSwitches();
    void loadsTheShortcutAsItIs_data();
    void loadsTheShortcutAsItIs();
    void doesNotRewriteDamagedValues();
    void survivesADamagedFile();
    void emitsBeforeItHolds();
    void emitsTheWillChangeFirst();
    void writesAtOnce();
    void repeatsEveryStepForTheSameValue();
    void togglesTheLoginItem();
    void storesBeforeItRegistersTheLoginItem();
    void logsAFailingLoginItem();
    void isOneSharedInstance();
    void namesOutputModes();

private:
    /// Makes the file's only section hold these lines, and loads it.
    void store(const QByteArray &lines);
    QByteArray stored() const;

    std::unique_ptr<FakePlatform> m_platform;
};

void SettingsTest::init()
{
    m_platform.reset();
    m_platform = std::make_unique<FakePlatform>();
}

void SettingsTest::store(const QByteArray &lines)
{
    QFile file(m_platform->userDefaults().filePath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[General]\n" + lines + "\n");
    file.close();
    m_platform->reloadUserDefaults();
}

QByteArray SettingsTest::stored() const
{
    QFile file(m_platform->userDefaults().filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SettingsTest::loadsDefaultsAndWritesNothing()
{
    const Settings settings;
    QCOMPARE(settings.outputMode(), OutputMode::both);
    QVERIFY(settings.shutterSound());
    QVERIFY(settings.showNotification());
    QVERIFY(!settings.launchAtLogin());
    QVERIFY(!settings.hotkeyEnabled());
    QCOMPARE(settings.hotkeyString(), u"cmd+shift+o"_s);
    QVERIFY(!QFile::exists(m_platform->userDefaults().filePath()));
    QVERIFY(m_platform->loginItem.requests.isEmpty());
}

void SettingsTest::loadsOutputModes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("mode");
    const auto row = [](const char *text, OutputMode mode) {
        QTest::newRow(text) << QByteArray(text) << static_cast<int>(mode);
    };
    row("clipboard", OutputMode::clipboardOnly);
    row("popup", OutputMode::popupOnly);
    row("both", OutputMode::both);
    row("Popup", OutputMode::both);
    row("CLIPBOARD", OutputMode::both);
    row("clipboardOnly", OutputMode::both);
    row("\"\"", OutputMode::both);
    row("\" popup\"", OutputMode::both);
    row("7", OutputMode::both);
    row("@Invalid()", OutputMode::both);
    row("@ByteArray(popup", OutputMode::both);
}

void SettingsTest::loadsOutputModes()
{
    QFETCH(const QByteArray, text);
    store("outputMode=" + text);
    const QByteArray before = stored();
    QTEST(static_cast<int>(Settings().outputMode()), "mode");
    QCOMPARE(stored(), before);
}

void SettingsTest::loadsSwitches_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("on");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("YES") << QByteArray("YES") << true;
    QTest::newRow("no") << QByteArray("no") << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("other text") << QByteArray("perhaps") << false;
}

void SettingsTest::loadsSwitches()
{
    QFETCH(const QByteArray, text);
    store("shutterSound=" + text + "\nshowNotification=" + text + "\nlaunchAtLogin=" + text +
          "\nhotkeyEnabled=" + text);
    const Settings settings;
    QTEST(settings.shutterSound(), "on");
    QTEST(settings.showNotification(), "on");
    QTEST(settings.launchAtLogin(), "on");
    QTEST(settings.hotkeyEnabled(), "on");
    QVERIFY(m_platform->loginItem.requests.isEmpty());
}

void SettingsTest::loadsTheShortcutAsItIs_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("hotkeyString");
    QTest::newRow("another") << QByteArray("ctrl+alt+5") << u"ctrl+alt+5"_s;
    QTest::newRow("upper case") << QByteArray("CMD+O") << u"CMD+O"_s;
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("nonsense") << QByteArray("+++ %% \\x3a9") << u"+++ %% Ω"_s;
    QTest::newRow("null") << QByteArray(R"("a\0+b")") << u"a\0+b"_s;
    QTest::newRow("long") << QByteArray(100000, 'x') << QString(100000, u'x');
}

void SettingsTest::loadsTheShortcutAsItIs()
{
    QFETCH(const QByteArray, text);
    store("hotkeyString=" + text);
    QTEST(Settings().hotkeyString(), "hotkeyString");
}

void SettingsTest::doesNotRewriteDamagedValues()
{
    store("outputMode=sideways\nshutterSound=perhaps\nhotkeyString=@Invalid()");
    const QByteArray before = stored();
    const Settings settings;
    QCOMPARE(settings.hotkeyString(), u"cmd+shift+o"_s);
    QCOMPARE(stored(), before);
}

void SettingsTest::survivesADamagedFile()
{
    store("shutterSound=false\n\0\xff\xfe ]\nno equals sign\n=nothing\noutputMode=popup\n[[["_ba);
    const Settings settings;
    QVERIFY(!settings.shutterSound());
    QCOMPARE(settings.outputMode(), OutputMode::popupOnly);
}

void SettingsTest::emitsBeforeItHolds()
{
    Settings settings;
    QStringList seen;
    connect(&settings, &Settings::hotkeyStringWillChange, this, [&](const QString &delivered) {
        seen << delivered << settings.hotkeyString()
             << m_platform->userDefaults().string(u"hotkeyString"_s).value_or(u"-"_s);
    });
    settings.setHotkeyString(u"ctrl+a"_s);
    QCOMPARE(seen, (QStringList{u"ctrl+a"_s, u"cmd+shift+o"_s, u"-"_s}));
    QCOMPARE(settings.hotkeyString(), u"ctrl+a"_s);

    connect(&settings, &Settings::hotkeyEnabledWillChange, this,
            [&](bool delivered) { QVERIFY(delivered != settings.hotkeyEnabled()); });
    connect(&settings, &Settings::outputModeWillChange, this,
            [&](OutputMode delivered) { QVERIFY(delivered != settings.outputMode()); });
    settings.setHotkeyEnabled(true);
    settings.setOutputMode(OutputMode::popupOnly);
    QVERIFY(settings.hotkeyEnabled());
    QCOMPARE(settings.outputMode(), OutputMode::popupOnly);
}

void SettingsTest::emitsTheWillChangeFirst()
{
    Settings settings;
    QStringList order;
    connect(&settings, &Settings::objectWillChange, this, [&] { order << u"object"_s; });
    connect(&settings, &Settings::outputModeWillChange, this, [&] { order << u"outputMode"_s; });
    connect(&settings, &Settings::shutterSoundWillChange, this, [&] { order << u"sound"_s; });
    connect(&settings, &Settings::showNotificationWillChange, this, [&] { order << u"mark"_s; });
    connect(&settings, &Settings::launchAtLoginWillChange, this, [&] { order << u"login"_s; });
    connect(&settings, &Settings::hotkeyEnabledWillChange, this, [&] { order << u"on"_s; });
    connect(&settings, &Settings::hotkeyStringWillChange, this, [&] { order << u"text"_s; });
    settings.setOutputMode(OutputMode::both);
    settings.setShutterSound(false);
    settings.setShowNotification(false);
    settings.setLaunchAtLogin(true);
    settings.setHotkeyEnabled(true);
    settings.setHotkeyString(u"a"_s);
    QCOMPARE(order, (QStringList{u"object"_s, u"outputMode"_s, u"object"_s, u"sound"_s, u"object"_s,
                                 u"mark"_s, u"object"_s, u"login"_s, u"object"_s, u"on"_s,
                                 u"object"_s, u"text"_s}));
}

void SettingsTest::writesAtOnce()
{
    Settings settings;
    settings.setOutputMode(OutputMode::popupOnly);
    settings.setShutterSound(false);
    settings.setShowNotification(false);
    settings.setLaunchAtLogin(true);
    settings.setHotkeyEnabled(true);
    settings.setHotkeyString(u"cmd+ctrl+alt+k"_s);
    // What another process reads.
    const QSettings file(m_platform->userDefaults().filePath(), QSettings::IniFormat);
    QCOMPARE(file.value(u"outputMode"_s).toString(), u"popup"_s);
    QCOMPARE(file.value(u"shutterSound"_s).toString(), u"false"_s);
    QCOMPARE(file.value(u"showNotification"_s).toString(), u"false"_s);
    QCOMPARE(file.value(u"launchAtLogin"_s).toString(), u"true"_s);
    QCOMPARE(file.value(u"hotkeyEnabled"_s).toString(), u"true"_s);
    QCOMPARE(file.value(u"hotkeyString"_s).toString(), u"cmd+ctrl+alt+k"_s);
    m_platform->reloadUserDefaults();
    const Settings again;
    QCOMPARE(again.outputMode(), OutputMode::popupOnly);
    QVERIFY(!again.shutterSound());
    QVERIFY(!again.showNotification());
    QVERIFY(again.launchAtLogin());
    QVERIFY(again.hotkeyEnabled());
    QCOMPARE(again.hotkeyString(), u"cmd+ctrl+alt+k"_s);
}

void SettingsTest::repeatsEveryStepForTheSameValue()
{
    Settings settings;
    int changes = 0;
    connect(&settings, &Settings::objectWillChange, this, [&] { ++changes; });
    settings.setLaunchAtLogin(true);
    settings.setLaunchAtLogin(true);
    QCOMPARE(changes, 2);
    QCOMPARE(m_platform->loginItem.requests, (QStringList{u"register"_s, u"register"_s}));
}

void SettingsTest::togglesTheLoginItem()
{
    Settings settings;
    m_platform->loginItem.requests.clear();
    settings.setLaunchAtLogin(true);
    settings.setLaunchAtLogin(false);
    QCOMPARE(m_platform->loginItem.requests, (QStringList{u"register"_s, u"unregister"_s}));
    settings.setShutterSound(false);
    settings.setHotkeyEnabled(true);
    QCOMPARE(m_platform->loginItem.requests.size(), 2);
    QVERIFY(m_platform->systemLog.lines.isEmpty());
}

void SettingsTest::storesBeforeItRegistersTheLoginItem()
{
    Settings settings;
    int asked = 0;
    m_platform->loginItem.onRequest = [&] {
        ++asked;
        QVERIFY(m_platform->userDefaults().boolean(u"launchAtLogin"_s));
    };
    settings.setLaunchAtLogin(true);
    QCOMPARE(asked, 1);
}

void SettingsTest::logsAFailingLoginItem()
{
    m_platform->loginItem.error = u"no such folder"_s;
    Settings settings;
    settings.setLaunchAtLogin(true);
    QCOMPARE(m_platform->systemLog.lines,
             QStringList{u"LaunchAtLogin toggle failed: no such folder"_s});
    QVERIFY(settings.launchAtLogin());
    QVERIFY(m_platform->userDefaults().boolean(u"launchAtLogin"_s));
}

void SettingsTest::isOneSharedInstance()
{
    QCOMPARE(&Settings::shared(), &Settings::shared());
}

void SettingsTest::namesOutputModes()
{
    QCOMPARE(rawValue(allOutputModes[0]), u"clipboard"_s);
    QCOMPARE(rawValue(allOutputModes[1]), u"popup"_s);
    QCOMPARE(rawValue(allOutputModes[2]), u"both"_s);
    QCOMPARE(displayTitle(OutputMode::clipboardOnly), u"Clipboard Only"_s);
    QCOMPARE(displayTitle(OutputMode::popupOnly), u"Popup Only"_s);
    QCOMPARE(displayTitle(OutputMode::both), u"Both"_s);
    QVERIFY(outputModeFromRawValue(u"popup"_s) == OutputMode::popupOnly);
    for (const QString &text : {u"Popup"_s, u"popupOnly"_s, u""_s, u" both"_s}) {
        QVERIFY(!outputModeFromRawValue(text));
    }
}

QTEST_MAIN(SettingsTest)
#include "SettingsTest.moc"
