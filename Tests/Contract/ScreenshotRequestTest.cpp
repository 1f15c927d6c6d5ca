// SPDX-License-Identifier: MIT
// One call of the Screenshot portal, which a small object plays here in the ways that portals have.

#include "Platform/Portal/ScreenshotRequest.h"

#include "Support/ScreenshotPortal.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <optional>

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
        QTest::qWaitFor([&answers] { return !answers.isEmpty(); });
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
    QVERIFY(!file.exists());
    m_portal->uri = u"https://example.org/picture.png"_s;
    QCOMPARE(answer(), std::optional(QImage()));
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
