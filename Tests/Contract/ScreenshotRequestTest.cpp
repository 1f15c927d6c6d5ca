// SPDX-License-Identifier: MIT
// One call of the Screenshot portal, which a small object plays here in the ways that portals have.

#include "Platform/Portal/ScreenshotRequest.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <optional>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;

QDBusConnection portalBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
}
} // namespace

class Portal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")

public:
    uint response = 0;
    QString uri;
    bool isSilent = false;
    /// As portals before 0.9 did: they made up the place of the answer, and told it first.
    bool ignoresTokens = false;
    QString parentWindow;
    QVariantMap options;

public Q_SLOTS:
    QDBusObjectPath Screenshot(const QString &parent, const QVariantMap &given)
    {
        parentWindow = parent;
        options = given;
        QString sender = message().service().mid(1);
        const QString token =
            ignoresTokens ? u"made_up"_s : given.value(u"handle_token"_s).toString();
        const QString request = u"%1/request/%2/%3"_s.arg(path, sender.replace(u'.', u'_'), token);
        QDBusMessage answer =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        answer << response << QVariantMap{{u"uri"_s, uri}};
        if (isSilent) {
            QTimer::singleShot(100, [] { portalBus().unregisterService(service); });
        } else if (ignoresTokens) {
            QTimer::singleShot(100, this, [answer] { portalBus().send(answer); });
        } else {
            // Before the call returns.
            connection().send(answer);
        }
        return QDBusObjectPath(request);
    }
};

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

    std::unique_ptr<Portal> m_portal;
    QTemporaryDir m_folder;
    QImage m_picture;
};

void ScreenshotRequestTest::init()
{
    m_picture = QImage(40, 30, QImage::Format_RGB32);
    m_picture.fill(QColor(10, 200, 30));
    m_portal = std::make_unique<Portal>();
    QVERIFY(portalBus().registerObject(path, m_portal.get(), QDBusConnection::ExportAllSlots));
    QVERIFY(portalBus().registerService(service));
}

void ScreenshotRequestTest::cleanup()
{
    portalBus().unregisterService(service);
    portalBus().unregisterObject(path);
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
    ScreenshotRequest request([&answers](const QImage &image) { answers << image; });
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
    m_portal->isSilent = true;
    QCOMPARE(answer(), std::optional(QImage()));
}

void ScreenshotRequestTest::noPortal()
{
    portalBus().unregisterObject(path);
    QCOMPARE(answer(), std::optional(QImage()));
}

QTEST_GUILESS_MAIN(ScreenshotRequestTest)
#include "ScreenshotRequestTest.moc"
