// SPDX-License-Identifier: MIT
#include "Platform/Wayland/FrozenScreenRecording.h"

#include "Support/FakeServices.h"

#include <QPixmap>
#include <QTest>

/// What overlays show that the desktop cannot show through.
class FrozenScreenRecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void grabsPlainPixelsOfWhatIsFrozen();
    void allPanelsShareOnePicture();
    void showsNothingOfAScreenThatCannotBeGrabbed();

private:
    static constexpr quint32 number = 7;

    FakeScreens m_screens;
    FakeScreenRecording *m_live = nullptr;
    std::unique_ptr<FrozenScreenRecording> m_frozen;
};

void FrozenScreenRecordingTest::init()
{
    // Two pixels a point: what a picture is shown with differs from what it is grabbed with.
    m_screens.list = {FakeScreens::screen(number, {{0, 0}, {320, 200}}, 200, 2)};
    auto live = std::make_unique<FakeScreenRecording>();
    m_live = live.get();
    m_live->nextImage = QImage(640, 400, QImage::Format_RGB32);
    m_live->nextImage.fill(Qt::green);
    m_frozen = std::make_unique<FrozenScreenRecording>(std::move(live), m_screens);
}

void FrozenScreenRecordingTest::grabsPlainPixelsOfWhatIsFrozen()
{
    m_frozen->freeze();
    m_live->nextImage.fill(Qt::red);
    for (const QRectF &rect : {QRectF(0, 0, 320, 200), QRectF(10, 10, 20, 30)}) {
        const QImage image = m_frozen->createImage(number, rect);
        QCOMPARE(image.size(), (rect.size() * 2).toSize());
        QCOMPARE(image.devicePixelRatio(), 1.0);
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::green));
    }
    m_frozen->thaw();
    QCOMPARE(m_frozen->createImage(number, {0, 0, 320, 200}).pixelColor(5, 5), QColor(Qt::red));
}

void FrozenScreenRecordingTest::allPanelsShareOnePicture()
{
    m_frozen->freeze();
    const QPixmap first = QPixmap::fromImage(m_frozen->picture(number));
    m_frozen->freeze();
    const QPixmap second = QPixmap::fromImage(m_frozen->picture(number));
    QCOMPARE(first.deviceIndependentSize(), QSizeF(320, 200));
    QCOMPARE(first.toImage().constBits(), m_frozen->picture(number).constBits());
    QCOMPARE(second.toImage().constBits(), m_frozen->picture(number).constBits());
}

void FrozenScreenRecordingTest::showsNothingOfAScreenThatCannotBeGrabbed()
{
    m_live->nextImage = {};
    m_frozen->freeze();
    QVERIFY(m_frozen->picture(number).isNull());
    QVERIFY(m_frozen->picture(number + 1).isNull());
    QVERIFY(m_frozen->createImage(number + 1, {0, 0, 10, 10}).isNull());
}

QTEST_MAIN(FrozenScreenRecordingTest)
#include "FrozenScreenRecordingTest.moc"
