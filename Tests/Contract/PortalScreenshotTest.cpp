// SPDX-License-Identifier: MIT
// Grabs by the Screenshot portal, for which the main thread waits; so the portal is played on
// another one.

#include "Platform/Portal/PortalScreenshot.h"

#include "Support/FakeServices.h"
#include "Support/ScreenshotPortal.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
const QColor left(10, 200, 30);
const QColor right(200, 10, 30);
/// More than the portal of this test ever takes.
constexpr auto patience = 60s;
} // namespace

class PortalScreenshotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void screensAreCutFromOnePicture();
    void mixedScalesAreCutByPlace_data();
    void mixedScalesAreCutByPlace();
    void noPicture_data();
    void noPicture();
    void noAnswer();
    void portalEnds();
    void nextGrabAsksAnew();
    void menuIsWaitedFor();
    void restlessScreenIsTakenAsItIs();
    void refusalIsNotAskedAgain();

private:
    QString writePicture();
    QString write(const QString &name, const QColor &colour);

    FakeScreens m_screens;
    FakeSystemLog m_log;
    std::shared_ptr<PanelMenu> m_panelMenu = std::make_shared<PanelMenu>();
    QThread m_thread;
    ScreenshotPortal *m_portal = nullptr;
    QTemporaryDir m_folder;
};

void PortalScreenshotTest::init()
{
    m_log.lines.clear();
    m_screens.list = {FakeScreens::screen(1, {{0, 0}, {40, 30}}, 30),
                      FakeScreens::screen(2, {{40, 0}, {20, 30}}, 30)};
    m_portal = new ScreenshotPortal;
    connect(&m_thread, &QThread::finished, m_portal, &QObject::deleteLater);
    m_portal->moveToThread(&m_thread);
    m_thread.start();
    QVERIFY(m_portal->start());
}

void PortalScreenshotTest::cleanup()
{
    ScreenshotPortal::end();
    m_thread.quit();
    m_thread.wait();
}

/// A picture of both screens, of which the portal will tell; the file's path.
QString PortalScreenshotTest::writePicture()
{
    QImage picture(60, 30, QImage::Format_RGB32);
    picture.fill(left);
    for (int y = 0; y < 30; ++y) {
        for (int x = 40; x < 60; ++x) {
            picture.setPixelColor(x, y, right);
        }
    }
    QString file = m_folder.filePath(u"both.png"_s);
    picture.save(file);
    m_portal->uri = QUrl::fromLocalFile(file).toString();
    return file;
}

/// Where the portal finds a picture of one colour.
QString PortalScreenshotTest::write(const QString &name, const QColor &colour)
{
    QImage picture(60, 30, QImage::Format_RGB32);
    picture.fill(colour);
    const QString file = m_folder.filePath(name);
    picture.save(file, "PNG");
    return QUrl::fromLocalFile(file).toString();
}

void PortalScreenshotTest::screensAreCutFromOnePicture()
{
    const QString file = writePicture();
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience});
    const QImage first = recording.createImage(1, QRectF(0, 0, 40, 30));
    QCOMPARE(first.size(), QSize(40, 30));
    QCOMPARE(first.pixelColor(39, 29), left);
    // The portal has no other picture.
    QVERIFY(!QFile::exists(file));
    const QImage second = recording.createImage(2, QRectF(5, 10, 10, 10));
    QCOMPARE(second.size(), QSize(10, 10));
    QCOMPARE(second.pixelColor(0, 0), right);
    QVERIFY(recording.createImage(3, QRectF(0, 0, 40, 30)).isNull());
    QCOMPARE(m_log.lines, QStringList());
}

void PortalScreenshotTest::mixedScalesAreCutByPlace_data()
{
    QTest::addColumn<QRect>("dense");
    QTest::addColumn<QRect>("plain");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("ofDense");
    QTest::addColumn<QRect>("ofPlain");
    // What the desktop counts places in: pixels, or points, which a picture of all screens has as
    // many pixels of as the densest one.
    QTest::newRow("pixels") << QRect(0, 0, 160, 120) << QRect(160, 0, 100, 90) << QSize(260, 120)
                            << QRect(20, 40, 60, 20) << QRect(170, 20, 30, 10);
    QTest::newRow("points") << QRect(0, 0, 80, 60) << QRect(80, 0, 100, 90) << QSize(360, 180)
                            << QRect(20, 40, 60, 20) << QRect(180, 40, 60, 20);
    QTest::newRow("dense one on the right and below")
        << QRect(100, 30, 80, 60) << QRect(0, 0, 100, 90) << QSize(360, 180)
        << QRect(220, 100, 60, 20) << QRect(20, 40, 60, 20);
    QTest::newRow("left of the origin")
        << QRect(-80, -10, 80, 60) << QRect(0, 0, 100, 90) << QSize(360, 200)
        << QRect(20, 40, 60, 20) << QRect(180, 60, 60, 20);
}

void PortalScreenshotTest::mixedScalesAreCutByPlace()
{
    QFETCH(const QRect, dense);
    QFETCH(const QRect, plain);
    QFETCH(const QSize, size);
    QFETCH(const QRect, ofDense);
    QFETCH(const QRect, ofPlain);
    const auto screen = [](quint32 number, QRect place, CocoaSize points) {
        const CocoaRect frame{{double(place.x()), double(-place.y())}, points};
        return Screen{frame, frame, number, place, place};
    };
    m_screens.list = {screen(1, dense, {80, 60}), screen(2, plain, {100, 90})};
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            picture.setPixel(x, y, qRgb(x & 0xff, y, x >> 8));
        }
    }
    const QString file = m_folder.filePath(u"mixed.png"_s);
    picture.save(file);
    m_portal->uri = QUrl::fromLocalFile(file).toString();
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience});
    QCOMPARE(recording.createImage(1, QRectF(10, 20, 30, 10)), picture.copy(ofDense));
    QCOMPARE(recording.createImage(2, QRectF(10, 20, 30, 10)), picture.copy(ofPlain));
}

void PortalScreenshotTest::noPicture_data()
{
    QTest::addColumn<int>("response");
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QString>("line");
    const QString none = u"The portal took no picture of the screen"_s;
    const QString unreadable = u"The portal's picture of the screen, “%1”, cannot be read: "_s;
    QTest::newRow("denied") << 1 << QString() << none + u": denied"_s;
    QTest::newRow("failed") << 2 << QString() << none;
    QTest::newRow("nowhere") << 0 << QString() << unreadable.arg(QString()) + u"not a file"_s;
    const QString nonsense = u"no:\\uri//%%"_s;
    QTest::newRow("nonsense") << 0 << nonsense << unreadable.arg(nonsense) + u"not a file"_s;
    const QString elsewhere = u"https://example.org/picture.png"_s;
    QTest::newRow("elsewhere") << 0 << elsewhere << unreadable.arg(elsewhere) + u"not a file"_s;
    const QString missing = QUrl::fromLocalFile(m_folder.filePath(u"missing.png"_s)).toString();
    QTest::newRow("missing") << 0 << missing
                             << unreadable.arg(missing) + u"No such file or directory"_s;
    const QString folder = QUrl::fromLocalFile(m_folder.path()).toString();
    QTest::newRow("folder") << 0 << folder << unreadable.arg(folder) + u"not a file"_s;
    const QString damaged = QUrl::fromLocalFile(m_folder.filePath(u"damaged.png"_s)).toString();
    QTest::newRow("damaged") << 0 << damaged << unreadable.arg(damaged);
}

void PortalScreenshotTest::noPicture()
{
    QFETCH(const int, response);
    QFETCH(const QString, uri);
    QFETCH(const QString, line);
    QFile damaged(m_folder.filePath(u"damaged.png"_s));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("no picture");
    damaged.close();

    m_portal->response = static_cast<uint>(response);
    m_portal->uri = uri;
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience});
    QVERIFY(recording.createImage(1, QRectF(0, 0, 40, 30)).isNull());
    QCOMPARE(m_log.lines.size(), 1);
    QVERIFY2(m_log.lines.first().startsWith(line), qUtf8Printable(m_log.lines.first()));
    QVERIFY(QFile::exists(m_folder.path()));
}

void PortalScreenshotTest::noAnswer()
{
    m_portal->isSilent = true;
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {50ms});
    QVERIFY(recording.createImage(1, QRectF(0, 0, 40, 30)).isNull());
    QCOMPARE(m_log.lines, QStringList{u"The portal took no picture of the screen"_s});
}

void PortalScreenshotTest::portalEnds()
{
    m_portal->endsSilently = true;
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience});
    QVERIFY(recording.createImage(1, QRectF(0, 0, 40, 30)).isNull());
    QCOMPARE(m_log.lines, QStringList{u"The portal took no picture of the screen"_s});
}

void PortalScreenshotTest::nextGrabAsksAnew()
{
    m_portal->uri = QUrl::fromLocalFile(m_folder.filePath(u"missing.png"_s)).toString();
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience});
    QVERIFY(recording.createImage(1, QRectF(0, 0, 40, 30)).isNull());
    writePicture();
    QVERIFY(!recording.createImage(1, QRectF(0, 0, 40, 30)).isNull());
    const QString file = writePicture();
    // A later event.
    QTRY_VERIFY(!recording.createImage(2, QRectF(0, 0, 20, 30)).isNull() && !QFile::exists(file));
}

void PortalScreenshotTest::menuIsWaitedFor()
{
    m_portal->uri = write(u"menu"_s, Qt::black);
    m_portal->laterUris = {write(u"fading"_s, Qt::darkGray), write(u"gone"_s, left),
                           write(u"still gone"_s, left), write(u"later"_s, right)};
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience, patience});
    QImage image;
    m_panelMenu->carryOut([&] { image = recording.createImage(1, QRectF(0, 0, 40, 30)); });
    QCOMPARE(image.pixelColor(0, 0), left);
    // For both screens.
    QCOMPARE(recording.createImage(2, QRectF(0, 0, 20, 30)).pixelColor(0, 0), left);
    QVERIFY2(m_portal->laterUris.isEmpty(), "four pictures were taken");
    QVERIFY2(QFile::exists(m_folder.filePath(u"later"_s)), "and no fifth");
    QCOMPARE(m_log.lines, QStringList());
}

void PortalScreenshotTest::restlessScreenIsTakenAsItIs()
{
    m_portal->uri = write(u"menu"_s, Qt::black);
    m_portal->laterUris = {write(u"film"_s, left), write(u"next"_s, right)};
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience, 0ms});
    QImage image;
    m_panelMenu->carryOut([&] { image = recording.createImage(1, QRectF(0, 0, 40, 30)); });
    QCOMPARE(image.pixelColor(0, 0), left);
    QVERIFY(QFile::exists(m_folder.filePath(u"next"_s)));
}

void PortalScreenshotTest::refusalIsNotAskedAgain()
{
    m_portal->response = 1;
    m_portal->laterUris = {u"first"_s, u"second"_s};
    PortalScreenshot recording(m_screens, m_log, m_panelMenu, {patience, patience});
    m_panelMenu->carryOut(
        [&] { QVERIFY(recording.createImage(1, QRectF(0, 0, 40, 30)).isNull()); });
    QCOMPARE(m_portal->laterUris, QStringList{u"second"_s});
}

QTEST_MAIN(PortalScreenshotTest)
#include "PortalScreenshotTest.moc"
