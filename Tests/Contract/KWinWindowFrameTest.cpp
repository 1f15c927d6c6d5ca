// SPDX-License-Identifier: MIT
// Where KWin tells that a window of ours is. The main thread waits for its answers, so KWin is
// played on another one.

#include "Platform/KDE/KWinWindowFrame.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QTest>
#include <QThread>

#include <limits>

using namespace Qt::StringLiterals;

namespace {
const QString kwin = u"org.kde.KWin"_s;
const QString ourId = u"org.vellora.Vellora"_s;
const QString title = u"Vellora Settings"_s;
const QString ours = u"{7cc86c51-92c9-4e8c-8ded-08a6dcb6b0c5}"_s;
const QString other = u"{bf4206e4-a061-40d0-a198-92debc5676d9}"_s;

QVariantMap window(const QString &id, const QString &caption, const QRect &frame)
{
    return {{u"desktopFile"_s, id},
            {u"caption"_s, caption},
            {u"x"_s, double(frame.x())},
            {u"y"_s, double(frame.y())},
            {u"width"_s, double(frame.width())},
            {u"height"_s, double(frame.height())}};
}
} // namespace

/// What a search finds, as KRunner wants it.
struct RunnerMatch
{
    QString id;
    QString text;
};
Q_DECLARE_METATYPE(RunnerMatch)

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << QString() << 100U << 0.8 << QVariantMap();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text;
    argument.endStructure();
    return argument;
}

class PlayedKWin : public QDBusVirtualObject
{
    Q_OBJECT

public:
    QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        const QString argument = message.arguments().value(0).toString();
        if (message.path() == u"/WindowsRunner" && message.member() == u"Match") {
            ++searches;
            bus.send(message.createReply(found.isValid() ? found : matches(argument)));
            return true;
        }
        if (message.path() == u"/KWin" && message.member() == u"getWindowInfo") {
            if (!isSilent) {
                bus.send(message.createReply(told.isValid() ? told : windows.value(argument)));
            }
            return true;
        }
        return false;
    }

    QVariant matches(const QString &search) const
    {
        QList<RunnerMatch> list;
        for (auto each = windows.begin(); each != windows.end(); ++each) {
            if (each->value(u"caption"_s).toString().contains(search)) {
                list.append({u"0_"_s + each.key(), each->value(u"caption"_s).toString()});
            }
        }
        return QVariant::fromValue(list);
    }

    QMap<QString, QVariantMap> windows;
    bool isSilent = false;
    /// In place of the answers that belong to the windows.
    QVariant found;
    QVariant told;
    int searches = 0;
};

class KWinWindowFrameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void frameIsTold();
    void windowsOfOthersAreNotOurs();
    void moveIsTold();
    void newWindowIsLookedFor();
    void silenceLeavesTheFrame();
    void withoutKWin();
    void garbage_data();
    void garbage();

private:
    QThread m_thread;
    PlayedKWin *m_kwin = nullptr;
    KWinWindowFrame m_frame;
};

void KWinWindowFrameTest::initTestCase()
{
    QGuiApplication::setDesktopFileName(ourId);
    qDBusRegisterMetaType<RunnerMatch>();
    qDBusRegisterMetaType<QList<RunnerMatch>>();
}

void KWinWindowFrameTest::init()
{
    m_frame = {};
    m_kwin = new PlayedKWin;
    m_kwin->windows[ours] = window(ourId, title, {450, 148, 380, 457});
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, kwin);
    QVERIFY(bus.registerVirtualObject(u"/"_s, m_kwin, QDBusConnection::SubPath));
    connect(&m_thread, &QThread::finished, m_kwin, &QObject::deleteLater);
    m_kwin->moveToThread(&m_thread);
    m_thread.start();
    QVERIFY(bus.registerService(kwin));
}

void KWinWindowFrameTest::cleanup()
{
    QDBusConnection::disconnectFromBus(kwin);
    m_thread.quit();
    m_thread.wait();
}

void KWinWindowFrameTest::frameIsTold()
{
    QCOMPARE(m_frame.ofTitle(title), QRect(450, 148, 380, 457));
    QCOMPARE(m_frame.ofTitle(u"Vellora — Recognized Text"_s), std::nullopt);
}

void KWinWindowFrameTest::windowsOfOthersAreNotOurs()
{
    m_kwin->windows[ours][u"caption"_s] = u"Vellora Settings <2>"_s;
    m_kwin->windows[other] = window(u"org.kde.kate"_s, title, {1, 2, 300, 400});
    QCOMPARE(m_frame.ofTitle(title), QRect(450, 148, 380, 457));
    m_kwin->windows.remove(ours);
    QCOMPARE(m_frame.ofTitle(title), std::nullopt);
}

void KWinWindowFrameTest::moveIsTold()
{
    QVERIFY(m_frame.ofTitle(title));
    m_kwin->windows[ours] = window(ourId, title, {-20, 30, 500, 450});
    QCOMPARE(m_frame.ofTitle(title), QRect(-20, 30, 500, 450));
    QCOMPARE(m_kwin->searches, 1);
}

void KWinWindowFrameTest::newWindowIsLookedFor()
{
    QVERIFY(m_frame.ofTitle(title));
    m_kwin->windows.clear();
    m_kwin->windows[other] = window(ourId, title, {7, 8, 380, 457});
    QCOMPARE(m_frame.ofTitle(title), QRect(7, 8, 380, 457));
}

void KWinWindowFrameTest::silenceLeavesTheFrame()
{
    QVERIFY(m_frame.ofTitle(title));
    m_kwin->isSilent = true;
    QCOMPARE(m_frame.ofTitle(title), QRect(450, 148, 380, 457));
}

void KWinWindowFrameTest::withoutKWin()
{
    QDBusConnection::disconnectFromBus(kwin);
    QCOMPARE(m_frame.ofTitle(title), std::nullopt);
}

void KWinWindowFrameTest::garbage_data()
{
    QTest::addColumn<QVariant>("found");
    QTest::addColumn<QVariant>("told");
    const QVariant truth;
    QTest::newRow("found: a text") << QVariant(u"0_"_s + ours) << truth;
    QTest::newRow("found: texts") << QVariant(QStringList{u"0_"_s + ours}) << truth;
    QTest::newRow("found: nothing") << QVariant::fromValue(QList<RunnerMatch>()) << truth;
    QTest::newRow("found: no number")
        << QVariant::fromValue(QList<RunnerMatch>{{u"0_"_s, {}}, {{}, {}}}) << truth;
    QTest::newRow("found: no such window")
        << QVariant::fromValue(QList<RunnerMatch>{{u"0_{0}"_s, {}}}) << truth;
    QTest::newRow("told: a number") << truth << QVariant(5);
    for (const QVariant &side :
         {QVariant(u"wide"_s), QVariant(-5.0), QVariant(0), QVariant(1e300),
          QVariant(std::numeric_limits<double>::infinity()),
          QVariant(std::numeric_limits<double>::quiet_NaN()), QVariant(QStringList{u"5"_s})}) {
        QVariantMap told = window(ourId, title, {450, 148, 380, 457});
        told[u"width"_s] = side;
        QTest::addRow("told: a width of %s", qPrintable(side.toString()))
            << truth << QVariant(told);
    }
    QTest::newRow("told: no sides")
        << truth << QVariant(QVariantMap{{u"desktopFile"_s, ourId}, {u"caption"_s, title}});
}

void KWinWindowFrameTest::garbage()
{
    QFETCH(const QVariant, found);
    QFETCH(const QVariant, told);
    m_kwin->found = found;
    m_kwin->told = told;
    QCOMPARE(m_frame.ofTitle(title), std::nullopt);
    m_kwin->found = {};
    m_kwin->told = {};
    QCOMPARE(m_frame.ofTitle(title), QRect(450, 148, 380, 457));
}

QTEST_MAIN(KWinWindowFrameTest)
#include "KWinWindowFrameTest.moc"
