// SPDX-License-Identifier: MIT
#include "Translations.h"
#include "UpdateFixture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;
using Phase = UpdateProgress::Phase;
using Kind = UpdateResult::Kind;

/// The window of an update, from the question to the restart.
class UpdateWindowTest : public UpdateFixture
{
    Q_OBJECT

private Q_SLOTS:
    void looksAndIsUpToDate();
    void cancelsTheLook();
    void offersAndInstalls();
    void goesBackToTheOfferWhenCancelled();
    void keepsInstallingWithoutItsWindow();
    void staysWithWhatTheUserDoesLater();
    void tellsWhyItCouldNotLook_data();
    void tellsWhyItCouldNotLook();
    void tellsWhyItWasNotInstalled();
    void copiesTheCommand();
    void neverReadsMarkup();
    void bindsLongTexts();
    void isReadByScreenReaders();
    void isUsedByKeyboard();
    void keepsMnemonicsApart_data();
    void keepsMnemonicsApart();
    void goesWithTheUpdater();
};

void UpdateWindowTest::looksAndIsUpToDate()
{
    m_updater->checkForUpdates();
    QVERIFY(window());
    QVERIFY(!window()->isModal());
    QCOMPARE(source().looks, {UpdateSource::Look::ForUser});
    QVERIFY(texts().contains(u"Looking for updates"_s));
    QCOMPARE(buttons(), {u"Cancel"_s});
    const auto *bar = window()->findChild<QProgressBar *>();
    QVERIFY(bar->isVisible());
    QCOMPARE(bar->maximum(), 0);
    // Asked again, it does not begin again.
    m_updater->checkForUpdates();
    QCOMPARE(source().looks.size(), 1);

    source().answer(ended(Kind::UpToDate));
    QVERIFY(texts().contains(u"Vellora is up to date"_s));
    QVERIFY(!bar->isVisible());
    QCOMPARE(buttons(), {u"Close"_s});
    QCOMPARE(source().taskCount, 0);
    // An answer is as old as its question.
    m_updater->checkForUpdates();
    QCOMPARE(source().looks.size(), 2);
}

void UpdateWindowTest::cancelsTheLook()
{
    m_updater->checkForUpdates();
    button(u"Cancel"_s)->click();
    QVERIFY(!window());
    QCOMPARE(source().taskCount, 0);
    m_updater->checkForUpdates();
    QVERIFY(window());
    window()->close();
    QCOMPARE(source().taskCount, 0);
    QCOMPARE(source().looks.size(), 2);
}

void UpdateWindowTest::offersAndInstalls()
{
    m_updater->checkForUpdates();
    Update update = newVersion();
    update.installs = {u"libnew"_s};
    update.updates = {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s, u"h"_s, u"i"_s};
    update.removes = {u"libold"_s};
    source().answer(available(update));
    QVERIFY(texts().contains(u"Vellora 0.2.0 is available"_s));
    QVERIFY(texts().contains(u"You have version 0.1.0."_s));
    QVERIFY(texts().contains(u"Also installs: libnew\nAlso updates: a, b, c, d, e, f, g, h and 1 "
                             "more\nRemoves: libold"_s));
    QCOMPARE(window()->findChild<QPlainTextEdit *>()->toPlainText(), u"Reads faster."_s);
    QCOMPARE(buttons(), QStringList({u"Later"_s, u"Install"_s}));

    button(u"Install"_s)->click();
    QCOMPARE(source().installs.size(), 1);
    QCOMPARE(source().installs.first().id, update.id);
    QVERIFY(texts().contains(u"Installing Vellora 0.2.0"_s));
    const auto *bar = window()->findChild<QProgressBar *>();
    source().tell({Phase::WaitingForOthers, std::nullopt, true});
    QVERIFY(texts().contains(u"Waiting until another installation has ended…"_s));
    source().tell({Phase::WaitingForAuthentication, std::nullopt, true});
    QVERIFY(texts().contains(u"Waiting for your password…"_s));
    QCOMPARE(bar->maximum(), 0);
    source().tell({Phase::Downloading, 40, true});
    QVERIFY(texts().contains(u"Downloading…"_s));
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(bar->value(), 40);
    source().tell({Phase::Installing, 500, false});
    QVERIFY(texts().contains(u"Installing…"_s));
    QCOMPARE(bar->value(), 100);
    QVERIFY(!button(u"Cancel"_s)->isEnabled());

    source().answer(ended(Kind::Installed));
    QVERIFY(texts().contains(u"Vellora 0.2.0 is installed"_s));
    QCOMPARE(buttons(), QStringList({u"Later"_s, u"Restart Vellora"_s}));
    button(u"Restart Vellora"_s)->click();
    QVERIFY(m_platform->programRestart.isRequested());
}

void UpdateWindowTest::goesBackToTheOfferWhenCancelled()
{
    m_updater->checkForUpdates();
    source().answer(available());
    button(u"Install"_s)->click();
    source().tell({Phase::Downloading, 10, true});
    button(u"Cancel"_s)->click();
    QCOMPARE(source().cancelCount, 1);
    // Until the source answers it may have been too late.
    QVERIFY(button(u"Cancel"_s));
    source().answer(ended(Kind::Cancelled));
    QVERIFY(texts().contains(u"Vellora 0.2.0 is available"_s));
    button(u"Install"_s)->click();
    QCOMPARE(source().installs.size(), 2);
}

void UpdateWindowTest::keepsInstallingWithoutItsWindow()
{
    m_updater->checkForUpdates();
    source().answer(available());
    button(u"Install"_s)->click();
    window()->close();
    QVERIFY(!window());
    QCOMPARE(source().taskCount, 1);
    m_updater->checkForUpdates();
    QVERIFY(texts().contains(u"Installing Vellora 0.2.0"_s));
    window()->close();
    source().answer(failed(UpdateProblem::DownloadFailed));
    QVERIFY(!window());
    // What happened meanwhile is told before anything else is done.
    m_updater->checkForUpdates();
    QVERIFY(texts().contains(u"The update was not installed"_s));
    QCOMPARE(source().looks.size(), 1);
    button(u"Try Again"_s)->click();
    QCOMPARE(source().looks.size(), 2);
}

void UpdateWindowTest::staysWithWhatTheUserDoesLater()
{
    m_updater->checkForUpdates();
    source().answer(available());
    button(u"Later"_s)->click();
    QVERIFY(!window());
    m_updater->checkForUpdates();
    QCOMPARE(source().looks.size(), 2);
    source().answer(available());
    button(u"Install"_s)->click();
    source().answer(ended(Kind::Installed));
    button(u"Later"_s)->click();
    m_updater->checkForUpdates();
    QCOMPARE(buttons(), QStringList({u"Later"_s, u"Restart Vellora"_s}));
    QCOMPARE(source().looks.size(), 2);
}

void UpdateWindowTest::tellsWhyItCouldNotLook_data()
{
    QTest::addColumn<UpdateProblem>("problem");
    QTest::addColumn<bool>("isForGood");
    for (int number = 0; number <= static_cast<int>(UpdateProblem::Other); ++number) {
        const auto problem = static_cast<UpdateProblem>(number);
        QTest::addRow("problem %d", number)
            << problem
            << (problem == UpdateProblem::NotFromPackage || problem == UpdateProblem::NotInstalled);
    }
}

void UpdateWindowTest::tellsWhyItCouldNotLook()
{
    QFETCH(const UpdateProblem, problem);
    QFETCH(const bool, isForGood);
    m_updater->checkForUpdates();
    source().answer(failed(problem, u"in its own words"_s, u"sudo do-it"_s));
    QVERIFY(texts().contains(u"Vellora cannot look for updates."_s));
    QVERIFY(texts().contains(u"in its own words"_s));
    QVERIFY(texts().filter(u"up to date"_s).isEmpty());
    // The heading, the sentence of this problem, the command's, and the service's words.
    QCOMPARE(texts().size(), 4);
    QCOMPARE(window()->findChild<QLineEdit *>()->text(), u"sudo do-it"_s);
    QStringList expected{u"Close"_s, u"Copy"_s, u"Try Again"_s};
    if (isForGood) {
        expected.removeAll(u"Try Again"_s);
    }
    QStringList found = buttons();
    found.sort();
    QCOMPARE(found, expected);
}

void UpdateWindowTest::tellsWhyItWasNotInstalled()
{
    m_updater->checkForUpdates();
    source().answer(available());
    button(u"Install"_s)->click();
    source().answer(failed(UpdateProblem::NotAuthorized));
    QVERIFY(texts().contains(u"The update was not installed"_s));
    QVERIFY(!window()->findChild<QLineEdit *>()->isVisible());
    button(u"Try Again"_s)->click();
    source().answer(available());
    QVERIFY(texts().contains(u"Vellora 0.2.0 is available"_s));
}

void UpdateWindowTest::copiesTheCommand()
{
    m_updater->checkForUpdates();
    source().answer(failed(UpdateProblem::NoService, {}, u"sudo apt install vellora"_s));
    button(u"Copy"_s)->click();
    QCOMPARE(m_platform->pasteboard.text, u"sudo apt install vellora"_s);
    QVERIFY(window());
}

void UpdateWindowTest::neverReadsMarkup()
{
    const QString markup = u"<a href=\"https://evil.example\">Click</a> <b>&amp;</b>"_s;
    m_updater->checkForUpdates();
    Update update = newVersion();
    update.notes = markup;
    update.version = u"<i>9</i>-1"_s;
    update.installs = {markup};
    source().answer(available(update));
    QCOMPARE(window()->findChild<QPlainTextEdit *>()->toPlainText(), markup);
    for (const auto *label : window()->findChildren<QLabel *>()) {
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QVERIFY(!label->openExternalLinks());
    }
    QVERIFY(texts().contains(u"Vellora <i>9</i> is available"_s));
    window()->close();
    m_updater->checkForUpdates();
    source().answer(failed(UpdateProblem::Other, markup));
    QVERIFY(texts().contains(markup));
}

void UpdateWindowTest::bindsLongTexts()
{
    const QString endless(10'000'000, u'x');
    m_updater->checkForUpdates();
    Update update;
    update.notes = endless;
    update.version = endless;
    update.installs = QStringList(100000, endless.left(5000));
    source().answer(available(update));
    QVERIFY(window()->findChild<QPlainTextEdit *>()->toPlainText().size() < 21000);
    QVERIFY(window()->height() < 800);
    QVERIFY(window()->width() < 800);
    window()->close();
    m_updater->checkForUpdates();
    source().answer(failed(UpdateProblem::Other, endless, u"command"_s));
    QVERIFY(window()->width() < 800);
    QVERIFY(window()->height() < 500);
    window()->close();
    m_updater->checkForUpdates();
    source().answer(failed(UpdateProblem::Other, u"a line\n"_s.repeated(1000), u"command"_s));
    QVERIFY(window()->height() < 500);
}

void UpdateWindowTest::isReadByScreenReaders()
{
    m_updater->checkForUpdates();
    QVERIFY(QTest::qWaitForWindowActive(window(), testPatience));
    source().answer(available());
    for (QWidget *widget : window()->findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) {
            continue;
        }
        auto *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), widget->metaObject()->className());
    }
    // What has the focus tells what happened.
    QCOMPARE(QApplication::focusWidget(), button(u"Install"_s));
    const QString told =
        QAccessible::queryAccessibleInterface(button(u"Install"_s))->text(QAccessible::Description);
    QVERIFY2(told.startsWith(u"Vellora 0.2.0 is available\nYou have"), qPrintable(told));
}

void UpdateWindowTest::isUsedByKeyboard()
{
    m_updater->checkForUpdates();
    QVERIFY(QTest::qWaitForWindowActive(window(), testPatience));
    source().answer(available());
    // Buttons and notes alike are reached, and left again.
    QSet<QWidget *> reached;
    for (int count = 0; count < 3; ++count) {
        reached << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(reached.size(), 3);
    QCOMPARE(QApplication::focusWidget(), button(u"Install"_s));
    QTest::keyClick(window(), Qt::Key_Return);
    QCOMPARE(source().installs.size(), 1);
    source().answer(failed(UpdateProblem::Busy, {}, u"sudo do-it"_s));
    QCOMPARE(QApplication::focusWidget(), button(u"Try Again"_s));
    // The command is seen from its beginning, whatever had the focus in between.
    QCOMPARE(window()->findChild<QLineEdit *>()->cursorPosition(), 0);
    QVERIFY(!window()->findChild<QLineEdit *>()->hasSelectedText());
    QTest::keyClick(window(), Qt::Key_Escape);
    QVERIFY(!window());
}

void UpdateWindowTest::keepsMnemonicsApart_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("English") << u"en"_s;
    QTest::newRow("German") << u"de"_s;
    QTest::newRow("Arabic") << u"ar"_s;
}

void UpdateWindowTest::keepsMnemonicsApart()
{
    QFETCH(const QString, locale);
    installTranslations(QLocale(locale));
    m_updater->checkForUpdates();
    QStringList keys;
    for (const auto *each : window()->findChildren<QPushButton *>()) {
        keys << QKeySequence::mnemonic(each->text()).toString();
    }
    keys.removeAll(QString());
    // Underlining a letter would tear an Arabic word apart.
    QCOMPARE(keys.size(), locale == u"ar" ? 0 : 7);
    QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
    for (auto *translator : qApp->findChildren<QTranslator *>()) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

void UpdateWindowTest::goesWithTheUpdater()
{
    m_updater->checkForUpdates();
    source().answer(available());
    button(u"Install"_s)->click();
    m_updater.reset();
    QVERIFY(!window());
    QCOMPARE(source().taskCount, 0);
    // Too late, and for nobody.
    source().tell({Phase::Downloading, 1, true});
    source().answer(ended(Kind::Installed));
}

QTEST_MAIN(UpdateWindowTest)
#include "UpdateWindowTest.moc"
