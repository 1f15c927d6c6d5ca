// SPDX-License-Identifier: MIT
#include "Translations.h"

#include "Settings.h"
#include "SettingsView.h"
#include "Support/FakePlatform.h"
#include "Updater.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QProcess>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

/// The interface in other languages.
class TranslationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void speaksTheUsersLanguage_data();
    void speaksTheUsersLanguage();
    void keepsMnemonicsApart_data();
    void keepsMnemonicsApart();
    void fitsTheWindow_data();
    void fitsTheWindow();
    void isWhole();

private:
    std::unique_ptr<FakePlatform> m_platform;
};

void TranslationsTest::initTestCase()
{
    m_platform = std::make_unique<FakePlatform>();
    Settings::shared().setHotkeyEnabled(true);
}

void TranslationsTest::cleanup()
{
    for (auto *translator : qApp->findChildren<QTranslator *>()) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

void TranslationsTest::speaksTheUsersLanguage_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("isTranslated");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("German") << u"de_DE"_s << u"Nur Ablage"_s << true << Qt::LeftToRight;
    QTest::newRow("Swiss") << u"de_CH"_s << u"Nur Ablage"_s << true << Qt::LeftToRight;
    QTest::newRow("Arabic") << u"ar_EG"_s << u"الحافظة فقط"_s << true << Qt::RightToLeft;
    QTest::newRow("English") << u"en_GB"_s << u"Clipboard Only"_s << false << Qt::LeftToRight;
    // Not half in one language and half in another.
    QTest::newRow("French") << u"fr_FR"_s << u"Clipboard Only"_s << false << Qt::LeftToRight;
    QTest::newRow("Hebrew") << u"he_IL"_s << u"Clipboard Only"_s << false << Qt::LeftToRight;
    QTest::newRow("C") << u"C"_s << u"Clipboard Only"_s << false << Qt::LeftToRight;
}

void TranslationsTest::speaksTheUsersLanguage()
{
    QFETCH(const QString, locale);
    installTranslations(QLocale(locale));
    QTEST(displayTitle(OutputMode::clipboardOnly), "title");
    // Qt's own texts go along.
    QTEST(QCoreApplication::translate("QPlatformTheme", "Cancel") != u"Cancel", "isTranslated");
    QTEST(QGuiApplication::layoutDirection(), "direction");
}

void TranslationsTest::keepsMnemonicsApart_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("English") << u"en"_s;
    QTest::newRow("German") << u"de"_s;
    QTest::newRow("Arabic") << u"ar"_s;
}

void TranslationsTest::keepsMnemonicsApart()
{
    QFETCH(const QString, locale);
    installTranslations(QLocale(locale));
    Updater updater;
    const SettingsView view(Settings::shared(), &updater);
    QStringList keys;
    const auto collect = [&keys](const QString &text) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(text);
        if (!mnemonic.isEmpty()) {
            keys << mnemonic.toString();
        }
    };
    for (const auto *button : view.findChildren<QAbstractButton *>()) {
        collect(button->text());
    }
    for (const auto *label : view.findChildren<QLabel *>()) {
        collect(label->text());
    }
    // Underlining a letter would tear an Arabic word apart.
    QCOMPARE(keys.size(), locale == u"ar" ? 0 : 7);
    QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
}

void TranslationsTest::fitsTheWindow_data()
{
    keepsMnemonicsApart_data();
}

void TranslationsTest::fitsTheWindow()
{
    QFETCH(const QString, locale);
    installTranslations(QLocale(locale));
    // Qt's own on a desktop that names none. Other themes have larger letters, with which it
    // scrolls.
    QApplication::setFont(QFont(u"Sans Serif"_s, 9));
    Updater updater;
    SettingsView view(Settings::shared(), &updater);
    // What is left of 380 points beside a scroll bar.
    QVERIFY2(view.minimumSizeHint().width() <= 360,
             qPrintable(QString::number(view.minimumSizeHint().width())));
}

void TranslationsTest::isWhole()
{
    QProcess check;
    check.start(QStringLiteral(VELLORA_TRANSLATIONS_SCRIPT), {u"--check"_s});
    QVERIFY(check.waitForFinished(60000));
    QVERIFY2(check.exitCode() == 0, check.readAllStandardError().constData());
}

QTEST_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
