// SPDX-License-Identifier: MIT
#include "AboutBlock.h"
#include "AppIcon.h"
#include "FormColors.h"
#include "FormSection.h"
#include "HotkeyRecorder.h"
#include "PlainButton.h"
#include "Publisher.h"
#include "Settings.h"
#include "SettingsView.h"
#include "SettingsWindowFixture.h"

#include <QAccessible>
#include <QBuffer>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

/// The form in the settings window.
class SettingsFormTest : public SettingsWindowFixture
{
    Q_OBJECT

public Q_SLOTS:
    /// What the link opens, in place of a browser.
    void visit(const QUrl &address) { m_visited << address.toString(); }

private Q_SLOTS:
    void hasFiveSections();
    void showsTheStore();
    void writesAtOnce();
    void followsChangesFromElsewhere();
    void showsTheShortcutRowOnlyWhileOn();
    void showsTheKeysThatTheDesktopGave();
    void dropsARecordingWithItsRow();
    void recordsIntoTheStore();
    void picksByArrowKeys();
    void picksByArrowKeysMirrored();
    void togglesBySpaceAndByTheWholeRow();
    void goesRoundByTab();
    void showsTheVersion();
    void opensTheWebSite();
    void checksForUpdates();
    void leavesOutUpdatesWithoutAnUpdater();
    void namesEveryControl();
    void mirrorsWhenRightToLeft();
    void loadsAnIcon();
    void loadsTheDesktopsIconWithoutItsOwn_data();
    void loadsTheDesktopsIconWithoutItsOwn();
    void laysOutTheAboutBlock();

private:
    QStringList m_visited;
};

void SettingsFormTest::hasFiveSections()
{
    show();
    QStringList headers;
    int lastTop = -1;
    for (auto *section : view()->findChildren<FormSection *>()) {
        // The one about a missing status item is there only while it is missing.
        if (section->isHidden()) {
            continue;
        }
        headers << section->accessibleName();
        QVERIFY(section->y() > lastTop);
        lastTop = section->y();
    }
    QCOMPARE(headers, (QStringList{u"Output"_s, u"Capture"_s, u"Keyboard Shortcut"_s, u"General"_s,
                                   u"About"_s}));
    QStringList toggles;
    for (auto *box : window()->findChildren<QCheckBox *>()) {
        toggles << plain(box->text());
    }
    QCOMPARE(toggles, (QStringList{u"Shutter sound"_s, u"Show notification when copied"_s,
                                   u"Enable global hotkey"_s, u"Launch at login"_s}));
    QStringList segments;
    for (auto *button : window()->findChildren<QRadioButton *>()) {
        segments << button->text();
    }
    QCOMPARE(segments, (QStringList{u"Clipboard Only"_s, u"Popup Only"_s, u"Both"_s}));
    QVERIFY(view()->minimumSizeHint().width() >= 320);
    QVERIFY(view()->minimumSizeHint().height() >= 380);
}

void SettingsFormTest::showsTheStore()
{
    Settings::shared().setOutputMode(OutputMode::popupOnly);
    Settings::shared().setShutterSound(false);
    Settings::shared().setHotkeyEnabled(true);
    Settings::shared().setHotkeyString(u"ctrl+alt+5"_s);
    show();
    QVERIFY(segment(u"Popup Only"_s)->isChecked());
    QVERIFY(!segment(u"Both"_s)->isChecked());
    QVERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(toggle(u"Show notification when copied"_s)->isChecked());
    QVERIFY(toggle(u"Enable global hotkey"_s)->isChecked());
    QVERIFY(!toggle(u"Launch at login"_s)->isChecked());
    QCOMPARE(recorder()->text(), u"⌃⌥5"_s);
    QCOMPARE(recorder()->size(), QSize(160, 24));
}

void SettingsFormTest::writesAtOnce()
{
    show();
    QTest::mouseClick(segment(u"Popup Only"_s), Qt::LeftButton);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QCOMPARE(m_platform->userDefaults().string(u"outputMode"_s), u"popup"_s);
    QTest::mouseClick(segment(u"Clipboard Only"_s), Qt::LeftButton);
    QCOMPARE(m_platform->userDefaults().string(u"outputMode"_s), u"clipboard"_s);

    QTest::mouseClick(toggle(u"Shutter sound"_s), Qt::LeftButton);
    QVERIFY(!Settings::shared().shutterSound());
    QTest::mouseClick(toggle(u"Show notification when copied"_s), Qt::LeftButton);
    QVERIFY(!Settings::shared().showNotification());
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QVERIFY(Settings::shared().hotkeyEnabled());
    QTest::mouseClick(toggle(u"Launch at login"_s), Qt::LeftButton);
    QVERIFY(Settings::shared().launchAtLogin());
    QCOMPARE(m_platform->loginItem.requests, QStringList{u"register"_s});
    QTest::mouseClick(toggle(u"Launch at login"_s), Qt::LeftButton);
    QCOMPARE(m_platform->loginItem.requests, (QStringList{u"register"_s, u"unregister"_s}));
}

void SettingsFormTest::followsChangesFromElsewhere()
{
    show();
    int changes = 0;
    const auto counter =
        connect(&Settings::shared(), &Settings::objectWillChange, this, [&] { ++changes; });
    Settings::shared().setShutterSound(false);
    Settings::shared().setOutputMode(OutputMode::clipboardOnly);
    Settings::shared().setHotkeyEnabled(true);
    QCOMPARE(changes, 3);
    QTRY_VERIFY(segment(u"Clipboard Only"_s)->isChecked());
    QVERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(recorder());
    Settings::shared().setHotkeyString(u"ctrl+x"_s);
    QTRY_COMPARE(recorder()->text(), u"⌃X"_s);
    // Showing a value does not store it again.
    QCOMPARE(changes, 4);
    disconnect(counter);
}

void SettingsFormTest::showsTheShortcutRowOnlyWhileOn()
{
    show();
    QVERIFY(!recorder());
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QTRY_VERIFY(recorder());
    QVERIFY(recorder()->isVisible());
    QCOMPARE(recorder()->text(), u"⌘⇧O"_s);
    bool labelled = false;
    for (const auto *label : window()->findChildren<QLabel *>()) {
        labelled = labelled || plain(label->text()) == u"Shortcut:";
    }
    QVERIFY(labelled);
    QTest::mouseClick(toggle(u"Enable global hotkey"_s), Qt::LeftButton);
    QTRY_VERIFY(!recorder());
    for (const auto *label : window()->findChildren<QLabel *>()) {
        QVERIFY(plain(label->text()) != u"Shortcut:");
    }
}

void SettingsFormTest::showsTheKeysThatTheDesktopGave()
{
    const auto sentences = [] {
        QStringList texts;
        for (auto *label : window()->findChildren<QLabel *>()) {
            if (label->isVisible() && label->text().startsWith(u"The desktop"_s)) {
                texts << label->text();
            }
        }
        return texts;
    };
    const QStringList told{u"The desktop listens to: Press <Control>F9"_s};
    m_platform->keyTap.give(u"Press <Control>F9"_s);
    show();
    QCOMPARE(sentences(), QStringList());
    Settings::shared().setHotkeyEnabled(true);
    QTRY_COMPARE(sentences(), told);
    m_platform->keyTap.give({});
    QCOMPARE(sentences(), QStringList());
    m_platform->keyTap.give(u"Press <Control>F9"_s);
    QCOMPARE(sentences(), told);
    const QString problem = u"The desktop binds no keys. Bind <Control>F9 yourself."_s;
    m_platform->keyTap.setProblem(problem);
    QCOMPARE(sentences(), QStringList{problem});
    m_platform->keyTap.setProblem({});
    QCOMPARE(sentences(), told);
    Settings::shared().setHotkeyEnabled(false);
    QTRY_COMPARE(sentences(), QStringList());
}

void SettingsFormTest::dropsARecordingWithItsRow()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    const QPointer<HotkeyRecorderField> field = recorder();
    QTest::mouseClick(field, Qt::LeftButton);
    QVERIFY(field->isRecording());
    // Any other change leaves it recording.
    Settings::shared().setShutterSound(false);
    QTRY_VERIFY(!toggle(u"Shutter sound"_s)->isChecked());
    QVERIFY(field->isRecording());
    Settings::shared().setHotkeyEnabled(false);
    QTRY_VERIFY(!field);
    Settings::shared().setHotkeyEnabled(true);
    QTRY_VERIFY(recorder());
    QVERIFY(!recorder()->isRecording());
    QCOMPARE(recorder()->text(), u"⌘⇧O"_s);
}

void SettingsFormTest::recordsIntoTheStore()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    QTest::mouseClick(recorder(), Qt::LeftButton);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_K,
                    Qt::MetaModifier | Qt::ControlModifier | Qt::AltModifier, 40, 0, 0);
    QCoreApplication::sendEvent(recorder(), &press);
    QCOMPARE(Settings::shared().hotkeyString(), u"cmd+ctrl+alt+k"_s);
    QCOMPARE(m_platform->userDefaults().string(u"hotkeyString"_s), u"cmd+ctrl+alt+k"_s);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(recorder()->text(), u"⌘⌃⌥K"_s);
}

void SettingsFormTest::picksByArrowKeys()
{
    show();
    segment(u"Both"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::clipboardOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::clipboardOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::both);
    QCOMPARE(QApplication::focusWidget(), segment(u"Both"_s));
}

void SettingsFormTest::picksByArrowKeysMirrored()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    show();
    segment(u"Both"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::popupOnly);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(Settings::shared().outputMode(), OutputMode::both);
}

void SettingsFormTest::togglesBySpaceAndByTheWholeRow()
{
    show();
    QCheckBox *sound = toggle(u"Shutter sound"_s);
    QTest::keyClick(sound, Qt::Key_Space);
    QVERIFY(!Settings::shared().shutterSound());
    QTest::mouseClick(sound, Qt::LeftButton, {}, sound->rect().center());
    QVERIFY(Settings::shared().shutterSound());
    QTest::mouseClick(sound, Qt::LeftButton, {}, QPoint(sound->width() - 20, sound->height() / 2));
    QVERIFY(!Settings::shared().shutterSound());
    QTest::keyClick(window()->windowHandle(), Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(Settings::shared().shutterSound());
}

void SettingsFormTest::goesRoundByTab()
{
    Settings::shared().setHotkeyEnabled(false);
    show(m_updater.get());
    // The row that comes later takes its place in the order too.
    Settings::shared().setHotkeyEnabled(true);
    QTRY_VERIFY(recorder());
    segment(u"Both"_s)->setFocus(Qt::TabFocusReason);
    QStringList order;
    for (int count = 0; count < 8; ++count) {
        const QWidget *focused = QApplication::focusWidget();
        const auto *button = qobject_cast<const QAbstractButton *>(focused);
        order << (button ? plain(button->text()) : focused->accessibleName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order, (QStringList{u"Both"_s, u"Shutter sound"_s, u"Show notification when copied"_s,
                                 u"Enable global hotkey"_s, u"Shortcut"_s, u"Launch at login"_s,
                                 Publisher::webSiteName, u"Check for Updates"_s}));
    QCOMPARE(QApplication::focusWidget(), segment(u"Both"_s));
}

void SettingsFormTest::showsTheVersion()
{
    QCOMPARE(SettingsView::versionText(u"1.2.3"_s), u"v1.2.3"_s);
    QCOMPARE(SettingsView::versionText(std::nullopt), u"v?"_s);
    const auto shows = [this](const QString &text) {
        return std::ranges::any_of(window()->findChildren<QLabel *>(),
                                   [&](const QLabel *label) { return label->text() == text; });
    };
    show();
    QVERIFY(shows(u"v?"_s));
    close();
    QCoreApplication::setApplicationVersion(u"9.8"_s);
    show();
    QCoreApplication::setApplicationVersion(QString());
    QVERIFY(shows(u"v9.8"_s));
    QVERIFY(shows(u"Vellora"_s));
    QVERIFY(shows(QString::fromUtf8(Publisher::creditLine)));
    QVERIFY(shows(QString::fromUtf8(Publisher::noticeLine)));
}

void SettingsFormTest::opensTheWebSite()
{
    QDesktopServices::setUrlHandler(u"https"_s, this, "visit");
    show();
    auto *link = window()->findChild<LinkButton *>();
    QTest::mouseClick(link, Qt::LeftButton);
    QTest::keyClick(link, Qt::Key_Space);
    QAccessible::queryAccessibleInterface(link)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QDesktopServices::unsetUrlHandler(u"https"_s);
    QCOMPARE(m_visited, QStringList(3, Publisher::webSiteAddress));
    QVERIFY(QUrl(Publisher::webSiteAddress, QUrl::StrictMode).isValid());
}

void SettingsFormTest::checksForUpdates()
{
    show(m_updater.get());
    QTest::mouseClick(window()->findChildren<PlainButton *>().last(), Qt::LeftButton);
    QCOMPARE(m_platform->updateSource.looks, {UpdateSource::Look::ForUser});
    QCOMPARE(m_platform->updateSource.startCount, 0);
}

void SettingsFormTest::leavesOutUpdatesWithoutAnUpdater()
{
    show(nullptr);
    QCOMPARE(window()->findChildren<PlainButton *>().size(), 1);
    QVERIFY(qobject_cast<LinkButton *>(window()->findChild<PlainButton *>()));
}

void SettingsFormTest::namesEveryControl()
{
    Settings::shared().setHotkeyEnabled(true);
    show(m_updater.get());
    QStringList controls;
    for (QWidget *widget : window()->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) {
            continue;
        }
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY(accessible);
        controls << u"%1 %2"_s.arg(int(accessible->role()))
                        .arg(plain(accessible->text(QAccessible::Name)));
    }
    const auto control = [](QAccessible::Role role, const QString &name) {
        return u"%1 %2"_s.arg(int(role)).arg(name);
    };
    QCOMPARE(controls,
             (QStringList{control(QAccessible::RadioButton, u"Clipboard Only"_s),
                          control(QAccessible::RadioButton, u"Popup Only"_s),
                          control(QAccessible::RadioButton, u"Both"_s),
                          control(QAccessible::CheckBox, u"Shutter sound"_s),
                          control(QAccessible::CheckBox, u"Show notification when copied"_s),
                          control(QAccessible::CheckBox, u"Enable global hotkey"_s),
                          control(QAccessible::EditableText, u"Shortcut"_s),
                          control(QAccessible::CheckBox, u"Launch at login"_s),
                          control(QAccessible::Link, Publisher::webSiteName),
                          control(QAccessible::Button, u"Check for Updates"_s)}));
    QWidget *picker = segment(u"Both"_s)->parentWidget();
    QAccessibleInterface *group = QAccessible::queryAccessibleInterface(picker);
    QCOMPARE(group->role(), QAccessible::Grouping);
    QCOMPARE(group->text(QAccessible::Name), u"After OCR"_s);
}

void SettingsFormTest::mirrorsWhenRightToLeft()
{
    Settings::shared().setHotkeyEnabled(true);
    show();
    const auto middle = [this](const QWidget *widget) {
        return widget->mapTo(window(), widget->rect().center()).x();
    };
    QVERIFY(middle(segment(u"Clipboard Only"_s)) < middle(segment(u"Both"_s)));
    QVERIFY(middle(recorder()) > window()->width() / 2);
    close();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    show();
    QVERIFY(middle(segment(u"Clipboard Only"_s)) > middle(segment(u"Both"_s)));
    QVERIFY(middle(recorder()) < window()->width() / 2);
    QVERIFY(middle(window()->findChild<AppIconView *>()) > window()->width() / 2);
}

void SettingsFormTest::loadsAnIcon()
{
    show();
    QCOMPARE(window()->findChild<AppIconView *>()->size(), QSize(44, 44));
    // The build tree holds the icon where an installation does.
    QVERIFY(!loadedAppIcon().isNull());
    // Each window's own would draw the same pictures once more into Qt's cache.
    QCOMPARE(loadedAppIcon().cacheKey(), loadedAppIcon().cacheKey());
    const QImage shown = window()->findChild<AppIconView *>()->grab().toImage();
    QCOMPARE(shown.size(), QSize(44, 44) * shown.devicePixelRatio());
    QSet<QRgb> colours;
    for (int x = 0; x < shown.width(); ++x) {
        colours << shown.pixel(x, shown.height() / 2);
    }
    QVERIFY(colours.size() > 3);
}

void SettingsFormTest::loadsTheDesktopsIconWithoutItsOwn_data()
{
    QTest::addColumn<QByteArray>("ownIcon");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("no picture") << QByteArray("This is no picture.");
}

void SettingsFormTest::loadsTheDesktopsIconWithoutItsOwn()
{
    QFETCH(QByteArray, ownIcon);
    const QTemporaryDir folder;
    const auto write = [&](const QString &name, const QByteArray &content) {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write(u"bundle/README"_s, "A bundle.");
    if (!ownIcon.isEmpty()) {
        write(u"bundle/AppIcon.svg"_s, ownIcon);
    }
    QPixmap icon(48, 48);
    icon.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    QVERIFY(icon.save(&buffer, "PNG"));
    write(u"icons/theme/48x48/apps/%1.png"_s.arg(Publisher::applicationId), png);
    write(u"icons/theme/index.theme"_s, "[Icon Theme]\nName=theme\nDirectories=48x48/apps\n"
                                        "[48x48/apps]\nSize=48\n");
    const QStringList searchPaths = QIcon::themeSearchPaths();
    const QString themeName = QIcon::themeName();
    QIcon::setThemeSearchPaths({folder.filePath(u"icons"_s)});
    QIcon::setThemeName(u"theme"_s);
    const auto bundle = Bundle::open(folder.filePath(u"bundle"_s));
    QVERIFY(bundle);
    const QImage shown = loadedAppIcon(*bundle).pixmap(44).toImage();
    QIcon::setThemeName(themeName);
    QIcon::setThemeSearchPaths(searchPaths);
    QVERIFY(!shown.isNull());
    QCOMPARE(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(Qt::red));
}

void SettingsFormTest::laysOutTheAboutBlock()
{
    show(m_updater.get());
    const auto block = window()->findChild<AboutBlock *>();
    const auto labels = block->findChildren<QLabel *>();
    // The name, the version, the credit and the notice.
    QCOMPARE(labels.size(), 4);
    const auto icon = block->findChild<AppIconView *>();
    const auto link = block->findChild<LinkButton *>();
    QCOMPARE(labels[0]->text(), Publisher::applicationName);
    QCOMPARE(labels[0]->font().weight(), int(QFont::DemiBold));
    const QList<QWidget *> texts{labels[0], labels[1], labels[2], link, labels[3]};
    QList<int> sizes;
    for (const QWidget *text : texts) {
        sizes << text->font().pixelSize();
    }
    QCOMPARE(sizes, QList<int>({14, 11, 12, 12, 11}));

    const auto ink = [](const QWidget *text) {
        return text->palette().color(QPalette::WindowText);
    };
    const QPalette palette = block->palette();
    QCOMPARE(ink(labels[0]), palette.color(QPalette::WindowText));
    QCOMPARE(ink(labels[1]), FormColors::tertiaryLabel(palette));
    QCOMPARE(ink(labels[2]), FormColors::secondaryLabel(palette));
    QCOMPARE(ink(labels[3]), FormColors::tertiaryLabel(palette));

    // The gaps, as seen: none of these has margins of its own.
    QCOMPARE(labels[0]->x() - (icon->x() + icon->width()), 14);
    QCOMPARE(labels[1]->x() - (labels[0]->x() + labels[0]->width()), 6);
    QCOMPARE(labels[2]->y() -
                 std::max(labels[0]->geometry().bottom(), labels[1]->geometry().bottom()) - 1,
             3);
    QCOMPARE(labels[0]->geometry().center().y(), labels[1]->geometry().center().y());
    QVERIFY(std::abs(icon->geometry().center().y() - block->rect().center().y()) <= 1);

    const auto buttons = window()->findChildren<PlainButton *>();
    const auto update = std::ranges::find(buttons, u"Check for Updates"_s,
                                          [](const auto *button) { return plain(button->text()); });
    QVERIFY(update != buttons.end());
    QCOMPARE((*update)->font().pixelSize(), 12);
}

QTEST_MAIN(SettingsFormTest)
#include "SettingsFormTest.moc"
