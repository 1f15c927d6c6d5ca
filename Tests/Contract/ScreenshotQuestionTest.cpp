// SPDX-License-Identifier: MIT
// The question whether pictures of the screen may be taken, with a portal and a store of answers
// that the test plays on another thread: the program waits for the store.

#include "Platform/Portal/PermissionWindow.h"
#include "Platform/Portal/PortalScreenshot.h"
#include "Support/FakeServices.h"
#include "Support/ScreenshotPortal.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Permissions = QMap<QString, QStringList>;

namespace {
const QString storeName = u"org.freedesktop.impl.portal.PermissionStore"_s;

QDBusConnection storeBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"store"_s);
}
} // namespace

/// The desktop's store of answers.
class PermissionStore : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.impl.portal.PermissionStore")

public:
    /// By the id of the program; this test has none.
    Permissions permissions;

    bool start()
    {
        return storeBus().registerObject(u"/org/freedesktop/impl/portal/PermissionStore"_s, this,
                                         QDBusConnection::ExportAllContents) &&
               storeBus().registerService(storeName);
    }
    static void end() { storeBus().unregisterService(storeName); }

public Q_SLOTS:
    QMap<QString, QStringList> Lookup(const QString &table, const QString &id, QDBusVariant &data)
    {
        data = QDBusVariant(0);
        return table == id ? permissions : Permissions();
    }

Q_SIGNALS:
    void Changed(const QString &table, const QString &id, bool deleted, const QDBusVariant &data,
                 const QMap<QString, QStringList> &all);
};

class ScreenshotQuestionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<Permissions>(); }
    void init();
    void cleanup();
    void windowSaysWhatComes();
    void grant();
    void denialIsTold();
    void keptDenialIsNotAskedAgain();
    void grantThatIsKeptTakesTheWindowAway();
    void grantInTheSettings();
    void answerThatIsNeither_data();
    void answerThatIsNeither();
    void refusedQuestion();
    void nextClickAsksAnew();
    void earlierAnswerStillCounts();
    void dialogThatEndsWithoutAnAnswer();
    void endWithoutPictureIsTold_data();
    void endWithoutPictureIsTold();
    void dismissal_data();
    void dismissal();
    void endOfTheProgramMeanwhile();

private:
    /// Reads or changes what the other thread has.
    template <typename Function>
    auto there(Function function)
    {
        decltype(function()) value{};
        QMetaObject::invokeMethod(
            m_portal, [&] { value = function(); }, Qt::BlockingQueuedConnection);
        return value;
    }
    qsizetype requestCount()
    {
        return there([this] { return m_portal->requests.size(); });
    }
    void keep(const QStringList &answer)
    {
        there([&] {
            m_store->permissions[QString()] = answer;
            Q_EMIT m_store->Changed(u"screenshot"_s, u"screenshot"_s, false, QDBusVariant(0),
                                    m_store->permissions);
            return 0;
        });
    }
    static PermissionWindow *window();
    static QString text();
    static QPushButton *button(const QString &title);
    QString picture();

    FakeScreens m_screens;
    FakeSystemLog m_log;
    QThread m_thread;
    ScreenshotPortal *m_portal = nullptr;
    PermissionStore *m_store = nullptr;
    QTemporaryDir m_folder;
    std::unique_ptr<PortalScreenshot> m_recording;
};

void ScreenshotQuestionTest::init()
{
    m_portal = new ScreenshotPortal;
    m_portal->isSilent = true;
    m_store = new PermissionStore;
    for (QObject *each : QObjectList{m_portal, m_store}) {
        connect(&m_thread, &QThread::finished, each, &QObject::deleteLater);
        each->moveToThread(&m_thread);
    }
    m_thread.start();
    QVERIFY(there([this] { return m_portal->start() && m_store->start(); }));
    PortalScreenshot::Limits limits;
    // Never, unless a test wants it to be soon.
    limits.question = {1h, 1ms, 1h};
    m_recording =
        std::make_unique<PortalScreenshot>(m_screens, m_log, std::make_shared<PanelMenu>(), limits);
}

void ScreenshotQuestionTest::cleanup()
{
    m_recording.reset();
    ScreenshotPortal::end();
    PermissionStore::end();
    m_thread.quit();
    m_thread.wait();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window());
}

PermissionWindow *ScreenshotQuestionTest::window()
{
    for (QWidget *each : QApplication::topLevelWidgets()) {
        auto *found = qobject_cast<PermissionWindow *>(each);
        if (found && found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}

QString ScreenshotQuestionTest::text()
{
    QStringList texts;
    for (const QLabel *label : window()->findChildren<QLabel *>()) {
        texts << label->text();
    }
    return texts.join(u' ');
}

QPushButton *ScreenshotQuestionTest::button(const QString &title)
{
    for (QPushButton *each : window()->findChildren<QPushButton *>()) {
        if (each->isVisible() && each->text().remove(u'&') == title) {
            return each;
        }
    }
    return nullptr;
}

/// Where the portal finds a picture.
QString ScreenshotQuestionTest::picture()
{
    QImage image(60, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QString file = m_folder.filePath(u"picture.png"_s);
    image.save(file);
    return QUrl::fromLocalFile(file).toString();
}

void ScreenshotQuestionTest::windowSaysWhatComes()
{
    QVERIFY(!m_recording->preflightAccess());
    QVERIFY(!window());
    QVERIFY(!m_recording->requestAccess());
    QVERIFY(window());
    QVERIFY(text().contains(u" reads the screen only when you capture."_s));
    QVERIFY(window()->accessibleDescription().startsWith(text().left(20)));
    QVERIFY(!button(u"Ask Again"_s));
    QVERIFY(button(u"Not Now"_s));
    QTRY_COMPARE(requestCount(), 1);
    QVERIFY(!m_recording->refusal());
}

void ScreenshotQuestionTest::grant()
{
    m_portal->uri = picture();
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    there([this] { return m_portal->answer(0), 0; });
    QTRY_VERIFY(!window());
    // Though no answer is kept.
    QVERIFY(m_recording->preflightAccess());
    QVERIFY(m_recording->requestAccess());
    QCOMPARE(requestCount(), 1);
}

void ScreenshotQuestionTest::denialIsTold()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    keep({u"no"_s});
    m_portal->response = 2;
    there([this] { return m_portal->answer(0), 0; });
    QTRY_VERIFY(!window());
    QVERIFY(!m_recording->preflightAccess());
    QVERIFY(m_recording->refusal());
    QVERIFY(m_recording->refusal()->logText.contains(u"Start "_s));
}

void ScreenshotQuestionTest::keptDenialIsNotAskedAgain()
{
    keep({u"no"_s});
    QVERIFY(!m_recording->requestAccess());
    QVERIFY(!window());
    QVERIFY(m_recording->refusal());
    // Taken back in the settings.
    keep({u"yes"_s});
    QVERIFY(!m_recording->refusal());
    QVERIFY(m_recording->preflightAccess());
    QCOMPARE(requestCount(), 0);
}

void ScreenshotQuestionTest::grantThatIsKeptTakesTheWindowAway()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    // The portal's own picture is still being taken.
    keep({u"yes"_s});
    QTRY_VERIFY(!window());
    QVERIFY(!m_recording->preflightAccess());
    m_portal->uri = picture();
    there([this] { return m_portal->answer(0), 0; });
    QTRY_VERIFY(m_recording->preflightAccess());
}

void ScreenshotQuestionTest::grantInTheSettings()
{
    PortalScreenshot::Limits limits;
    limits.question = {1h, 1ms, 1ms};
    PortalScreenshot recording(m_screens, m_log, std::make_shared<PanelMenu>(), limits);
    recording.requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    // No picture comes of the question.
    keep({u"yes"_s});
    QTRY_VERIFY(!window());
    QTRY_VERIFY(recording.preflightAccess());
}

void ScreenshotQuestionTest::answerThatIsNeither_data()
{
    QTest::addColumn<QStringList>("answer");
    QTest::newRow("another word") << QStringList{u"maybe"_s};
    QTest::newRow("ask") << QStringList{u"ask"_s};
    QTest::newRow("empty word") << QStringList{QString()};
    QTest::newRow("no word") << QStringList();
    QTest::newRow("both") << QStringList{u"yes"_s, u"no"_s};
    QTest::newRow("many") << QStringList(1000, u"yes"_s);
}

void ScreenshotQuestionTest::answerThatIsNeither()
{
    QFETCH(const QStringList, answer);
    keep(answer);
    QVERIFY(!m_recording->preflightAccess());
    QVERIFY(!m_recording->refusal());
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
}

void ScreenshotQuestionTest::refusedQuestion()
{
    PortalScreenshot::Limits limits;
    limits.question = {1ms, 1ms, 1h};
    PortalScreenshot recording(m_screens, m_log, std::make_shared<PanelMenu>(), limits);
    recording.requestAccess();
    QTRY_VERIFY(button(u"Ask Again"_s));
    QVERIFY(text().contains(u"took no answer"_s));
    QTRY_COMPARE(requestCount(), 1);
    // The portal may still answer.
    QVERIFY(!recording.refusal());
    button(u"Ask Again"_s)->click();
    QTRY_COMPARE(requestCount(), 2);
}

void ScreenshotQuestionTest::nextClickAsksAnew()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 2);
    m_portal->uri = picture();
    there([this] { return m_portal->answer(1), 0; });
    QTRY_VERIFY(!window());
    QVERIFY(m_recording->preflightAccess());
}

void ScreenshotQuestionTest::earlierAnswerStillCounts()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 2);
    m_portal->uri = picture();
    there([this] { return m_portal->answer(0), 0; });
    QTRY_VERIFY(!window());
    QVERIFY(m_recording->preflightAccess());
}

void ScreenshotQuestionTest::dialogThatEndsWithoutAnAnswer()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    const auto showDialog = [] {
        QWidget dialog;
        dialog.show();
        dialog.activateWindow();
        QTRY_VERIFY(!window()->isActiveWindow());
        dialog.hide();
        window()->activateWindow();
        QTRY_VERIFY(window()->isActiveWindow());
    };
    showDialog();
    // Once more by itself, as the answer came too late for the portal.
    QTRY_COMPARE(requestCount(), 2);
    QVERIFY(!button(u"Ask Again"_s));
    showDialog();
    QTRY_VERIFY(button(u"Ask Again"_s));
    QCOMPARE(requestCount(), 2);
}

void ScreenshotQuestionTest::endWithoutPictureIsTold_data()
{
    QTest::addColumn<uint>("response");
    QTest::newRow("cancelled") << 1U;
    QTest::newRow("failed") << 2U;
}

void ScreenshotQuestionTest::endWithoutPictureIsTold()
{
    QFETCH(const uint, response);
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    QVERIFY(!m_recording->refusal());
    there([&] {
        m_portal->response = response;
        m_portal->answer(0);
        return 0;
    });
    QTRY_VERIFY(button(u"Ask Again"_s));
    QVERIFY(m_recording->refusal());
    QVERIFY(m_recording->refusal()->logText.contains(u"no picture"_s));
    // Granted in the settings.
    keep({u"yes"_s});
    QVERIFY(!m_recording->refusal());
}

void ScreenshotQuestionTest::dismissal_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("button") << 0;
    QTest::newRow("key") << 1;
    QTest::newRow("title bar") << 2;
}

void ScreenshotQuestionTest::dismissal()
{
    QFETCH(const int, way);
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    if (way == 0) {
        button(u"Not Now"_s)->click();
    } else if (way == 1) {
        QTest::keyClick(window(), Qt::Key_Escape);
    } else {
        window()->close();
    }
    QTRY_VERIFY(!window());
    QVERIFY(!m_recording->preflightAccess());
    QTRY_VERIFY(m_recording->refusal());
    QCoreApplication::processEvents();
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 2);
    QVERIFY(window());
    QVERIFY(!m_recording->refusal());
}

void ScreenshotQuestionTest::endOfTheProgramMeanwhile()
{
    m_recording->requestAccess();
    QTRY_COMPARE(requestCount(), 1);
    m_recording.reset();
    QVERIFY(!window());
    there([this] { return m_portal->answer(0), 0; });
    QCoreApplication::processEvents();
}

QTEST_MAIN(ScreenshotQuestionTest)
#include "ScreenshotQuestionTest.moc"
