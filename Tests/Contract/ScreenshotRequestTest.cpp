// SPDX-License-Identifier: MIT
// One call of the Screenshot portal, which a small object plays here in the ways that portals have.

#include "Platform/Portal/ScreenshotRequest.h"

#include "Platform/Portal/AwaitedPictures.h"
#include "Support/FakeServices.h"
#include "Support/ScreenshotPortal.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <optional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class ScreenshotRequestTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void pictureIsTakenAndItsFileDeleted();
    void portalWithoutTokens();
    void userSaysNo();
    void damagedFile();
    void fileThatIsNotOurs_data();
    void fileThatIsNotOurs();
    void noteLastsUntilTheAnswer();
    void pictureThatNobodyDeleted_data();
    void pictureThatNobodyDeleted();
    void portalEnds();
    void noPortal();

private:
    QString writePicture();
    std::optional<QImage> answer();

    std::unique_ptr<ScreenshotPortal> m_portal;
    QTemporaryDir m_folder;
    QImage m_picture;
};

void ScreenshotRequestTest::init()
{
    m_picture = QImage(40, 30, QImage::Format_RGB32);
    m_picture.fill(QColor(10, 200, 30));
    m_portal = std::make_unique<ScreenshotPortal>();
    QVERIFY(m_portal->start());
}

void ScreenshotRequestTest::cleanup()
{
    ScreenshotPortal::end();
    m_portal.reset();
}

/// The file's path; the portal will tell of it.
QString ScreenshotRequestTest::writePicture()
{
    // Names of files in users' folders are anything but plain.
    QString file = m_folder.filePath(u"Bildschirmfoto 1 %20 ü.png"_s);
    m_picture.save(file);
    m_portal->uri = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    return file;
}

/// What the handler was called with, if it was, and that once.
std::optional<QImage> ScreenshotRequestTest::answer()
{
    QList<QImage> answers;
    ScreenshotRequest request(
        [&answers](const QImage &image, const QString &) { answers << image; });
    request.start();
    [[maybe_unused]] const bool isAnswered =
        QTest::qWaitFor([&answers] { return !answers.isEmpty(); }, testPatience);
    return answers.size() == 1 ? std::optional(answers.first()) : std::nullopt;
}

void ScreenshotRequestTest::pictureIsTakenAndItsFileDeleted()
{
    const QString file = writePicture();
    QCOMPARE(answer(), std::optional(m_picture));
    QVERIFY(!QFile::exists(file));
    QCOMPARE(m_portal->parentWindow, QString());
    QCOMPARE(m_portal->options.value(u"interactive"_s), QVariant(false));
    const QVariant token = m_portal->options.value(u"handle_token"_s);
    QVERIFY(!token.toString().isEmpty());

    writePicture();
    QCOMPARE(answer(), std::optional(m_picture));
    QVERIFY(m_portal->options.value(u"handle_token"_s) != token);
}

void ScreenshotRequestTest::portalWithoutTokens()
{
    m_portal->ignoresTokens = true;
    writePicture();
    QCOMPARE(answer(), std::optional(m_picture));
}

void ScreenshotRequestTest::userSaysNo()
{
    m_portal->response = 1;
    QCOMPARE(answer(), std::optional(QImage()));
}

void ScreenshotRequestTest::damagedFile()
{
    QFile file(m_folder.filePath(u"damaged.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no picture");
    file.close();
    m_portal->uri = QUrl::fromLocalFile(file.fileName()).toString();
    QCOMPARE(answer(), std::optional(QImage()));
    QVERIFY2(file.exists(), "it was no picture");
    m_portal->uri = u"https://example.org/picture.png"_s;
    QCOMPARE(answer(), std::optional(QImage()));
}

void ScreenshotRequestTest::fileThatIsNotOurs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("older than the question") << u"old"_s << true;
    QTest::newRow("where no portal saves") << u"elsewhere"_s << true;
    QTest::newRow("link to another file") << u"link"_s << false;
    QTest::newRow("pipe that nobody writes to") << u"pipe"_s << false;
}

void ScreenshotRequestTest::fileThatIsNotOurs()
{
    QFETCH(const QString, kind);
    QFETCH(const bool, isRead);
    QString file = writePicture();
    if (kind == u"old") {
        m_portal->savesNow = false;
        QFile old(file);
        QVERIFY(old.open(QIODevice::ReadWrite));
        QVERIFY(old.setFileTime(QDateTime::currentDateTime().addSecs(-60),
                                QFileDevice::FileModificationTime));
    } else if (kind == u"elsewhere") {
        const QString folder = QDir::homePath() + u"/Documents"_s;
        QVERIFY(QDir().mkpath(folder));
        file = folder + u"/holiday.png"_s;
        QVERIFY(m_picture.save(file));
    } else {
        const QString other = m_folder.filePath(u"other"_s);
        const QByteArray name = QFile::encodeName(other);
        QFile::remove(other);
        QVERIFY(kind == u"pipe" ? mkfifo(name.constData(), 0600) == 0 : QFile::link(file, other));
        file = other;
    }
    m_portal->uri = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
    QCOMPARE(answer(), std::optional(isRead ? m_picture : QImage()));
    QVERIFY(QFileInfo::exists(file));
}

void ScreenshotRequestTest::noteLastsUntilTheAnswer()
{
    const auto notes = [] {
        return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                    u"/vellora/awaited-pictures"_s)
            .entryList(QDir::Files);
    };
    FakeSystemLog log;
    removeLeftPictures(log);
    QCOMPARE(notes(), QStringList());
    writePicture();
    {
        ScreenshotRequest request([](const QImage &, const QString &) {});
        QCOMPARE(notes().size(), 1);
    }
    QCOMPARE(answer(), std::optional(m_picture));
    QCOMPARE(notes().size(), 1);
    removeLeftPictures(log);
    QCOMPARE(notes(), QStringList());
    QCOMPARE(log.lines, QStringList());
}

void ScreenshotRequestTest::pictureThatNobodyDeleted_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("secondsAfter");
    QTest::addColumn<bool>("isRemoved");
    QTest::newRow("GNOME's") << QStringList{u"Screenshot-3.png"_s} << 1 << true;
    QTest::newRow("KDE's") << QStringList{u"Screenshot_20230131_235959.png"_s} << 1 << true;
    QTest::newRow("the user's") << QStringList{u"Screenshot from 2023-01-31 23-59-59.png"_s} << 1
                                << false;
    QTest::newRow("older") << QStringList{u"Screenshot.png"_s} << -60 << false;
    QTest::newRow("much later") << QStringList{u"Screenshot.png"_s} << 60 << false;
    QTest::newRow("one of two") << QStringList{u"Screenshot.png"_s, u"Screenshot-1.png"_s} << 1
                                << false;
}

void ScreenshotRequestTest::pictureThatNobodyDeleted()
{
    QFETCH(const QStringList, names);
    QFETCH(const int, secondsAfter);
    QFETCH(const bool, isRemoved);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QVERIFY(QDir().mkpath(folder));
    // The run that asked, and ended at once.
    const AwaitedPicture awaited;
    QStringList files;
    for (const QString &name : names) {
        files << folder + u'/' + name;
        QVERIFY(m_picture.save(files.constLast()));
        QFile file(files.constLast());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(awaited.askedAt().addSecs(secondsAfter),
                                 QFileDevice::FileModificationTime));
    }
    FakeSystemLog log;
    removeLeftPictures(log);
    QCOMPARE(log.lines.size(), isRemoved ? 1 : 0);
    for (const QString &file : std::as_const(files)) {
        QCOMPARE(QFile::exists(file), !isRemoved);
        QFile::remove(file);
    }
    // Told and done once.
    log.lines.clear();
    removeLeftPictures(log);
    QCOMPARE(log.lines, QStringList());
}

void ScreenshotRequestTest::portalEnds()
{
    m_portal->endsSilently = true;
    QCOMPARE(answer(), std::optional(QImage()));
}

void ScreenshotRequestTest::noPortal()
{
    ScreenshotPortal::leavePlace();
    QCOMPARE(answer(), std::optional(QImage()));
}

QTEST_GUILESS_MAIN(ScreenshotRequestTest)
#include "ScreenshotRequestTest.moc"
