// SPDX-License-Identifier: MIT
// The settings file: what is damaged, missing or forbidden reads as absent, and never costs the
// keys beside it.

#include "Platform/UserDefaults.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
/// While it lives, no file of this process can grow: writing fails as on a disk without room, for
/// the superuser too.
class FullDisk
{
public:
    FullDisk()
        : m_signal(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit none{.rlim_cur = 0, .rlim_max = m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_signal);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    void (*m_signal)(int);
    rlimit m_limit{};
};
} // namespace

class UserDefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void standsInTheConfigurationFolder();
    void missingFileIsEmpty();
    void valuesSurvive();
    void textIsKept_data();
    void textIsKept();
    void booleans_data();
    void booleans();
    void unquotedSizeIsText();
    void damagedLinesCostNothingElse();
    void damagedFileIsCopiedOnce();
    void binaryFileReadsAsEmpty();
    void unreadableFileReadsAsEmpty();
    void readOnlyFolderChangesNothing();
    void folderInPlaceOfTheFile();
    void gatheredValuesAreReadAtOnce();
    void gatheredValuesComeWithTime();
    void laterWritesWin();
    void aFailedWriteIsToldOnce();
    void aFullDiskLosesNothing();
    void aDamagedFileOnAFullDiskStays();
    void anEarlierCopyOutlivesAFullDisk();

private:
    QString path() const { return m_folder->filePath(u"vellora/vellora.ini"_s); }

    void put(const QByteArray &content) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }

    QByteArray content(const QString &suffix = {}) const
    {
        QFile file(path() + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void UserDefaultsTest::standsInTheConfigurationFolder()
{
    const UserDefaults defaults;
    QCOMPARE(defaults.filePath(),
             QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                 u"/vellora/vellora.ini"_s);
}

void UserDefaultsTest::missingFileIsEmpty()
{
    const UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"outputMode"_s));
    QCOMPARE(defaults.string(u"outputMode"_s), std::nullopt);
    QVERIFY(!defaults.boolean(u"shutterSound"_s));
    QVERIFY2(!QFileInfo::exists(path()), "reading makes no file");
}

void UserDefaultsTest::valuesSurvive()
{
    {
        UserDefaults defaults(path());
        defaults.set(u"outputMode"_s, u"popup"_s);
        defaults.set(u"shutterSound"_s, false);
        defaults.set(u"hotkeyEnabled"_s, true);
        QVERIFY2(content().contains("outputMode=popup"), "written at once");
    }
    const UserDefaults defaults(path());
    QCOMPARE(defaults.string(u"outputMode"_s), u"popup"_s);
    QVERIFY(defaults.contains(u"shutterSound"_s));
    QVERIFY(!defaults.boolean(u"shutterSound"_s));
    QVERIFY(defaults.boolean(u"hotkeyEnabled"_s));
}

void UserDefaultsTest::textIsKept_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("size") << u"{360, 240}"_s;
    QTest::newRow("signs") << u"a=b;c\"d\\e%20@Invalid() [x]\n\t"_s;
    QTest::newRow("many scripts") << u"⌘⇧Ж 漢字 עברית 🙂"_s;
    QTest::newRow("huge") << QString(1'000'000, u'x');
}

void UserDefaultsTest::textIsKept()
{
    QFETCH(const QString, text);
    UserDefaults(path()).set(u"key"_s, text);
    QCOMPARE(UserDefaults(path()).string(u"key"_s), text);
}

void UserDefaultsTest::booleans_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<bool>("read");
    for (const char *yes : {"true", "TRUE", "Yes", "1", "-3", "0.5", " true "}) {
        QTest::newRow(yes) << QByteArray(yes) << true;
    }
    for (const char *no : {"false", "no", "0", "0.0", "", "on", "maybe", "truer", "{1, 2}"}) {
        QTest::newRow(qPrintable(u"not: "_s + QLatin1StringView(no))) << QByteArray(no) << false;
    }
}

void UserDefaultsTest::booleans()
{
    QFETCH(const QByteArray, written);
    put("[General]\nkey=" + written + "\n");
    QTEST(UserDefaults(path()).boolean(u"key"_s), "read");
}

void UserDefaultsTest::unquotedSizeIsText()
{
    put("[General]\nresultPopupSize={360, 240}\n");
    QCOMPARE(UserDefaults(path()).string(u"resultPopupSize"_s), u"{360, 240}"_s);
}

void UserDefaultsTest::damagedLinesCostNothingElse()
{
    put("[General]\noutputMode=popup\nthis line is none\n]]][\nshutterSound=false\n");
    UserDefaults defaults(path());
    QCOMPARE(defaults.string(u"outputMode"_s), u"popup"_s);
    QVERIFY(defaults.contains(u"shutterSound"_s));
    defaults.set(u"hotkeyEnabled"_s, true);
    const UserDefaults again(path());
    QCOMPARE(again.string(u"outputMode"_s), u"popup"_s);
    QVERIFY(again.boolean(u"hotkeyEnabled"_s));
}

void UserDefaultsTest::damagedFileIsCopiedOnce()
{
    const QByteArray damaged = "[General]\noutputMode=popup\nthis line is none\n";
    put(damaged);
    UserDefaults defaults(path());
    QVERIFY2(content(u".damaged"_s).isEmpty(), "reading copies nothing");
    defaults.set(u"a"_s, true);
    QCOMPARE(content(u".damaged"_s), damaged);
    defaults.set(u"b"_s, true);
    QCOMPARE(content(u".damaged"_s), damaged);
}

void UserDefaultsTest::binaryFileReadsAsEmpty()
{
    QByteArray noise;
    for (int i = 0; i < 100'000; ++i) {
        noise.append(static_cast<char>((i * 7919) >> 3));
    }
    put(noise);
    UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"outputMode"_s));
    defaults.set(u"outputMode"_s, u"both"_s);
    QCOMPARE(UserDefaults(path()).string(u"outputMode"_s), u"both"_s);
}

void UserDefaultsTest::unreadableFileReadsAsEmpty()
{
    if (geteuid() == 0) {
        QSKIP("nothing is forbidden to the superuser");
    }
    put("[General]\noutputMode=popup\n");
    QVERIFY(QFile::setPermissions(path(), {}));
    QVERIFY(!UserDefaults(path()).contains(u"outputMode"_s));
}

void UserDefaultsTest::readOnlyFolderChangesNothing()
{
    // A path that cannot be written, for the superuser too: its folder is a file.
    QFile blocker(m_folder->filePath(u"vellora"_s));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"outputMode"_s));
    defaults.set(u"outputMode"_s, u"both"_s);
    QVERIFY2(defaults.string(u"outputMode"_s) == u"both"_s, "kept for this run");
    QVERIFY(!QFileInfo::exists(path()));
    QVERIFY(QFileInfo(blocker).isFile());
}

void UserDefaultsTest::folderInPlaceOfTheFile()
{
    QVERIFY(QDir().mkpath(path() + u"/inside"_s));
    UserDefaults defaults(path());
    QVERIFY(!defaults.contains(u"outputMode"_s));
    defaults.set(u"outputMode"_s, u"both"_s);
    QVERIFY(QFileInfo(path() + u"/inside"_s).isDir());
}

void UserDefaultsTest::gatheredValuesAreReadAtOnce()
{
    {
        UserDefaults defaults(path());
        for (int i = 0; i < 1000; ++i) {
            defaults.setGathered(u"frame"_s, QString::number(i));
        }
        QVERIFY(defaults.contains(u"frame"_s));
        QCOMPARE(defaults.string(u"frame"_s), u"999"_s);
        QVERIFY2(!QFileInfo::exists(path()), "no disk was waited for");
    }
    QCOMPARE(UserDefaults(path()).string(u"frame"_s), u"999"_s);
}

void UserDefaultsTest::gatheredValuesComeWithTime()
{
    UserDefaults defaults(path());
    defaults.setGathered(u"frame"_s, u"1"_s);
    QTRY_VERIFY(content().contains("frame=1"));
}

void UserDefaultsTest::laterWritesWin()
{
    UserDefaults defaults(path());
    defaults.setGathered(u"frame"_s, u"gathered"_s);
    defaults.set(u"frame"_s, u"at once"_s);
    defaults.flush();
    QCOMPARE(UserDefaults(path()).string(u"frame"_s), u"at once"_s);
}

void UserDefaultsTest::aFailedWriteIsToldOnce()
{
    QFile blocker(m_folder->filePath(u"vellora"_s));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    UserDefaults defaults(path());
    int told = 0;
    defaults.writeDidFail = [&told] {
        ++told;
    };
    QCOMPARE(told, 0);
    defaults.set(u"outputMode"_s, u"both"_s);
    QCOMPARE(told, 1);
    defaults.set(u"outputMode"_s, u"popup"_s);
    QCOMPARE(told, 1);
    QCOMPARE(defaults.string(u"outputMode"_s), u"popup"_s);
}

void UserDefaultsTest::aFullDiskLosesNothing()
{
    put("[General]\na=1\noutputMode=popup\n");
    UserDefaults defaults(path());
    {
        const FullDisk fullDisk;
        QVERIFY(!defaults.set(u"outputMode"_s, u"both"_s));
        QCOMPARE(defaults.string(u"outputMode"_s), u"both"_s);
        QVERIFY(!defaults.set(u"b"_s, true));
        QCOMPARE(content(), "[General]\na=1\noutputMode=popup\n");
        defaults.revert(u"outputMode"_s);
        QCOMPARE(defaults.string(u"outputMode"_s), u"popup"_s);
    }
    // Once there is room again, what was taken back is not written after all; the rest is.
    QVERIFY(defaults.set(u"c"_s, true));
    defaults.flush();
    UserDefaults again(path());
    QCOMPARE(again.string(u"outputMode"_s), u"popup"_s);
    QCOMPARE(again.string(u"a"_s), u"1"_s);
    QVERIFY(again.boolean(u"b"_s));
    QVERIFY(again.boolean(u"c"_s));
}

void UserDefaultsTest::aDamagedFileOnAFullDiskStays()
{
    const QByteArray damaged = "[General]\noutputMode=popup\nthis line is none\n";
    put(damaged);
    UserDefaults defaults(path());
    {
        const FullDisk fullDisk;
        QVERIFY(!defaults.set(u"a"_s, true));
        QCOMPARE(content(), damaged);
        QVERIFY(content(u".damaged"_s).isEmpty());
    }
    QVERIFY(defaults.set(u"a"_s, true));
    QCOMPARE(content(u".damaged"_s), damaged);
}

void UserDefaultsTest::anEarlierCopyOutlivesAFullDisk()
{
    put("[General]\nthis line is none\n");
    QVERIFY(UserDefaults(path()).set(u"a"_s, true));
    const QByteArray copy = content(u".damaged"_s);
    QVERIFY(!copy.isEmpty());
    put("[General]\nneither is this\n");
    UserDefaults defaults(path());
    const FullDisk fullDisk;
    QVERIFY(!defaults.set(u"a"_s, false));
    QCOMPARE(content(u".damaged"_s), copy);
}

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "UserDefaultsTest.moc"
