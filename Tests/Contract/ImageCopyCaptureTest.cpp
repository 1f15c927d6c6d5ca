// SPDX-License-Identifier: MIT
// Grabs by ext_image_copy_capture_manager_v1, from a compositor that this test plays.

#include "Platform/Wayland/ImageCopyCapture.h"

#include "Platform/Qt/QtScreens.h"
#include "Support/CaptureCompositor.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <wayland-client-protocol.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// More than the compositor of this test ever takes.
constexpr auto patience = 60s;

/// A picture in which every pixel tells its place, of so many pixels a point.
QImage map(QSize points, int scale)
{
    QImage image(points * scale, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x & 0xff, y & 0xff, (x >> 8) << 4 | (y >> 8)));
        }
    }
    return image;
}
} // namespace

class ImageCopyCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictures_data();
    void pictures();
    void rectangleIsCutAtTheScreensEdge();
    void changedConstraintsAreTriedOnce_data();
    void changedConstraintsAreTriedOnce();
    void noPicture_data();
    void noPicture();
    void silenceIsGivenUpOn();
    void compositorEnds();
    void offersOfOthers();

private:
    CaptureCompositor::Script script(int scale = 1) const;

    QtScreens m_screens;
    QScreen *m_screen = QGuiApplication::primaryScreen();
    quint32 m_display = m_screens.screens().constFirst().displayNumber.value_or(0);
};

CaptureCompositor::Script ImageCopyCaptureTest::script(int scale) const
{
    CaptureCompositor::Script script;
    script.outputName = m_screen->name().toUtf8();
    script.picture = map(m_screen->size(), scale);
    script.formats = {WL_SHM_FORMAT_XRGB8888, WL_SHM_FORMAT_ARGB8888};
    return script;
}

void ImageCopyCaptureTest::pictures_data()
{
    QTest::addColumn<QList<quint32>>("formats");
    QTest::addColumn<int>("transform");
    QTest::addColumn<int>("scale");
    const QList<quint32> usual{WL_SHM_FORMAT_XRGB8888, WL_SHM_FORMAT_ARGB8888};
    QTest::newRow("XRGB") << usual << 0 << 1;
    QTest::newRow("ARGB") << QList<quint32>{WL_SHM_FORMAT_ARGB8888} << 0 << 1;
    QTest::newRow("XBGR") << QList<quint32>{WL_SHM_FORMAT_XBGR8888} << 0 << 1;
    QTest::newRow("three bytes") << QList<quint32>{WL_SHM_FORMAT_BGR888} << 0 << 1;
    QTest::newRow("unknown ones first")
        << QList<quint32>{WL_SHM_FORMAT_C8, WL_SHM_FORMAT_YUYV, WL_SHM_FORMAT_XRGB8888} << 0 << 1;
    QTest::newRow("dense") << usual << 0 << 2;
    for (int transform = 1; transform < 8; ++transform) {
        QTest::addRow("transform %d", transform) << usual << transform << 1;
    }
    QTest::newRow("dense and turned") << usual << int(WL_OUTPUT_TRANSFORM_FLIPPED_90) << 2;
}

void ImageCopyCaptureTest::pictures()
{
    QFETCH(const QList<quint32>, formats);
    QFETCH(const int, transform);
    QFETCH(const int, scale);
    CaptureCompositor::Script play = script(scale);
    play.formats = formats;
    play.transform = transform;
    CaptureCompositor compositor(play);
    QImage image;
    {
        ImageCopyCapture recording(m_screens, patience);
        QVERIFY(recording.preflightAccess());
        QVERIFY(recording.requestAccess());
        image = recording.createImage(m_display, QRectF(310, 20, 40, 30));
    }
    QCOMPARE(image.convertToFormat(QImage::Format_RGB32),
             play.picture.copy(310 * scale, 20 * scale, 40 * scale, 30 * scale));
    QCOMPARE(compositor.captures(), 1);
    QCOMPARE(compositor.complaint(), QByteArray());
}

void ImageCopyCaptureTest::rectangleIsCutAtTheScreensEdge()
{
    const CaptureCompositor::Script play = script();
    const CaptureCompositor compositor(play);
    ImageCopyCapture recording(m_screens, patience);
    const QSize size = m_screen->size();
    // Half a pixel counts as one.
    const QRectF corner(size.width() - 10.5, size.height() - 20.5, 100, 100);
    QCOMPARE(recording.createImage(m_display, corner),
             play.picture.copy(size.width() - 11, size.height() - 21, 11, 21));
    QVERIFY(recording.createImage(m_display, QRectF(size.width(), 0, 10, 10)).isNull());
    QVERIFY(recording.createImage(m_display + 1, QRectF(0, 0, 10, 10)).isNull());
    QCOMPARE(compositor.captures(), 1);
}

void ImageCopyCaptureTest::changedConstraintsAreTriedOnce_data()
{
    using enum CaptureAnswer;
    QTest::addColumn<QList<CaptureAnswer>>("answers");
    QTest::addColumn<bool>("isSeen");
    QTest::newRow("once") << QList{ChangedConstraints, Picture} << true;
    QTest::newRow("again and again") << QList{ChangedConstraints} << false;
    QTest::newRow("then a failure") << QList{ChangedConstraints, Failure} << false;
}

void ImageCopyCaptureTest::changedConstraintsAreTriedOnce()
{
    QFETCH(const QList<CaptureAnswer>, answers);
    QFETCH(const bool, isSeen);
    CaptureCompositor::Script play = script();
    play.answers = answers;
    CaptureCompositor compositor(play);
    QImage image;
    {
        ImageCopyCapture recording(m_screens, patience);
        image = recording.createImage(m_display, QRectF(10, 20, 40, 30));
    }
    // It has twice as many pixels since.
    QCOMPARE(image, isSeen ? play.picture.copy(10, 20, 40, 30).scaled(80, 60) : QImage());
    QCOMPARE(compositor.captures(), 2);
    QCOMPARE(compositor.complaint(), QByteArray());
}

void ImageCopyCaptureTest::noPicture_data()
{
    QTest::addColumn<CaptureCompositor::Script>("play");
    QTest::addColumn<int>("captures");
    const auto row = [this](const char *name, int captures, auto change) {
        CaptureCompositor::Script play = script();
        change(play);
        QTest::newRow(name) << play << captures;
    };
    using Script = CaptureCompositor::Script;
    row("failure", 1, [](Script &play) { play.answers = {CaptureAnswer::Failure}; });
    row("output unplugged", 1, [](Script &play) { play.answers = {CaptureAnswer::Stopped}; });
    row("session ended", 0, [](Script &play) { play.endsSessions = true; });
    row("no output", 0, [](Script &play) { play.hasOutput = false; });
    row("another output", 0, [](Script &play) { play.outputName = "elsewhere"; });
    row("no memory that is shared", 0, [](Script &play) { play.formats.clear(); });
    row("no known format", 0, [](Script &play) { play.formats = {WL_SHM_FORMAT_YUYV}; });
    row("no size", 0, [](Script &play) { play.picture = QImage(); });
}

void ImageCopyCaptureTest::noPicture()
{
    QFETCH(const CaptureCompositor::Script, play);
    QFETCH(const int, captures);
    CaptureCompositor compositor(play);
    {
        ImageCopyCapture recording(m_screens, patience);
        QVERIFY(recording.createImage(m_display, QRectF(10, 20, 40, 30)).isNull());
    }
    QCOMPARE(compositor.captures(), captures);
    QCOMPARE(compositor.complaint(), QByteArray());
}

void ImageCopyCaptureTest::silenceIsGivenUpOn()
{
    CaptureCompositor::Script play = script();
    play.answers = {CaptureAnswer::Silence, CaptureAnswer::Picture};
    CaptureCompositor compositor(play);
    ImageCopyCapture recording(m_screens, 200ms);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(recording.createImage(m_display, QRectF(10, 20, 40, 30)).isNull());
    QVERIFY(timer.elapsed() >= 200);
    QCOMPARE(compositor.captures(), 1);
}

void ImageCopyCaptureTest::compositorEnds()
{
    auto compositor = std::make_unique<CaptureCompositor>(script());
    ImageCopyCapture recording(m_screens, patience);
    QVERIFY(recording.preflightAccess());
    compositor.reset();
    QVERIFY(recording.createImage(m_display, QRectF(10, 20, 40, 30)).isNull());
    QVERIFY(!recording.preflightAccess());
}

void ImageCopyCaptureTest::offersOfOthers()
{
    // A compositor that lets windows be copied, but no outputs.
    CaptureCompositor::Script play = script();
    play.offersSources = false;
    const CaptureCompositor compositor(play);
    ImageCopyCapture recording(m_screens, patience);
    QVERIFY(!recording.preflightAccess());
    QVERIFY(!recording.requestAccess());
    QVERIFY(recording.createImage(m_display, QRectF(10, 20, 40, 30)).isNull());
}

QTEST_MAIN(ImageCopyCaptureTest)
#include "ImageCopyCaptureTest.moc"
