// SPDX-License-Identifier: MIT
// The frame of a popup stands exactly where it was put, as seen by another process.
#include "Platform/Platform.h"
#include "Platform/Qt/QtScreens.h"
#include "Platform/X11/X11Platform.h"
#include "Support/Desktop.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
/// The window's frame in pixels, from what the server and the window manager tell others.
QRect frameSeenFromOutside(const QWidget &window)
{
    const QString id = QString::number(window.winId());
    const QString info = outputOf(u"xwininfo"_s, {u"-id"_s, id});
    const auto number = [&info](const QString &label) {
        const QRegularExpression line(label + uR"(:\s+(-?\d+))"_s);
        return line.match(info).captured(1).toInt();
    };
    const QRect client(number(u"Absolute upper-left X"_s), number(u"Absolute upper-left Y"_s),
                       number(u"Width"_s), number(u"Height"_s));
    const QString property =
        outputOf(u"xprop"_s, {u"-id"_s, id, u"_NET_FRAME_EXTENTS"_s}).section(u'=', 1);
    const QStringList extents = property.split(u',');
    if (extents.size() != 4) {
        return client;
    }
    return client.adjusted(-extents[0].toInt(), -extents[2].toInt(), extents[1].toInt(),
                           extents[3].toInt());
}

QString text(const QRect &rect)
{
    return u"%1x%2+%3+%4"_s.arg(rect.width()).arg(rect.height()).arg(rect.x()).arg(rect.y());
}
} // namespace

class PopupPlacementTest : public QObject
{
    Q_OBJECT

private:
    QRect pixels(const CocoaRect &rect) const;

    Platform m_platform;
    std::unique_ptr<Peer> m_peer;

private Q_SLOTS:
    void initTestCase();
    void standsWhereItWasPut_data();
    void standsWhereItWasPut();
    void movesWhileShown();
    void becomesActive();
    void isNotInTheTaskbar();
    void cleanupTestCase() { m_peer.reset(); }
};

void PopupPlacementTest::initTestCase()
{
    QVERIFY(isX11Desktop());
    m_platform.screens = std::make_unique<QtScreens>(x11PixelGeometry());
    addX11Services(m_platform);
    m_peer = std::make_unique<Peer>();
    m_peer->showWindow({600, 300, 300, 200});
}

QRect PopupPlacementTest::pixels(const CocoaRect &rect) const
{
    const QPointF topLeft = m_platform.screens->toPixels({rect.minX(), rect.maxY()});
    const QSizeF scale = m_platform.screens->screens().first().scale();
    return {topLeft.toPoint(),
            QSizeF(rect.size.width * scale.width(), rect.size.height * scale.height()).toSize()};
}

void PopupPlacementTest::standsWhereItWasPut_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("in the middle") << 150.0 << 100.0;
    QTest::newRow("in the lower left corner") << 0.0 << 0.0;
    QTest::newRow("between two points") << 150.5 << 100.5;
    QTest::newRow("elsewhere") << 231.0 << 37.0;
}

void PopupPlacementTest::standsWhereItWasPut()
{
    QFETCH(const double, x);
    QFETCH(const double, y);
    PopupPlacement &placement = *m_platform.popupPlacement;
    QWidget window;
    window.setWindowTitle(u"Popup"_s);
    window.resize(360, 240);
    placement.makeFloating(window);
    const CocoaSize size = placement.frameSize(window);
    placement.setFrameOrigin(window, {x, y});
    const CocoaRect before = placement.frame(window);
    placement.makeKeyAndOrderFront(window);
    QVERIFY(QTest::qWaitForWindowExposed(&window, testPatience));

    const QRect asked = pixels({{x, y}, size});
    QTRY_COMPARE(text(frameSeenFromOutside(window)), text(asked));
    // Before it was shown, the place was told to the point.
    QVERIFY2((pixels(before).topLeft() - asked.topLeft()).manhattanLength() <= 2,
             qPrintable(text(pixels(before))));
    // And we see it there ourselves.
    QTRY_COMPARE(text(pixels(placement.frame(window))), text(asked));
    QCOMPARE(window.size(), QSize(360, 240));
    if (qEnvironmentVariable("VELLORA_DESKTOP") != "none"_L1) {
        QVERIFY2(size.height > 240, "it has a title bar");
    }
    // It stays there.
    QTest::qWait(200);
    QCOMPARE(text(frameSeenFromOutside(window)), text(asked));
}

void PopupPlacementTest::movesWhileShown()
{
    PopupPlacement &placement = *m_platform.popupPlacement;
    QWidget window;
    window.resize(300, 200);
    placement.makeFloating(window);
    placement.setFrameOrigin(window, {50, 50});
    placement.makeKeyAndOrderFront(window);
    QVERIFY(QTest::qWaitForWindowExposed(&window, testPatience));
    placement.setFrameOrigin(window, {90, 70});
    QTRY_COMPARE(text(frameSeenFromOutside(window)),
                 text(pixels({{90, 70}, placement.frameSize(window)})));
}

void PopupPlacementTest::becomesActive()
{
    for (int cycle = 0; cycle < 5; ++cycle) {
        // The user works in another program.
        m_peer->activate();
        outputOf(u"xdotool"_s, {u"mousemove"_s, u"700"_s, u"400"_s, u"click"_s, u"1"_s});
        QVERIFY(m_peer->says(u"press 700 400"_s));
        QTRY_VERIFY(QGuiApplication::focusWindow() == nullptr);

        QLineEdit window;
        window.resize(300, 200);
        m_platform.popupPlacement->makeFloating(window);
        m_platform.popupPlacement->setFrameOrigin(window, {50, 50});
        m_platform.popupPlacement->makeKeyAndOrderFront(window);
        QVERIFY(QTest::qWaitForWindowActive(&window, testPatience));
        outputOf(u"xdotool"_s, {u"key"_s, u"x"_s});
        QTRY_COMPARE(window.text(), u"x"_s);
    }
}

void PopupPlacementTest::isNotInTheTaskbar()
{
    if (qEnvironmentVariable("VELLORA_DESKTOP") == "none"_L1) {
        QSKIP("needs a window manager, which keeps the state");
    }
    QWidget window;
    m_platform.popupPlacement->makeFloating(window);
    m_platform.popupPlacement->setFrameOrigin(window, {50, 50});
    m_platform.popupPlacement->makeKeyAndOrderFront(window);
    QVERIFY(QTest::qWaitForWindowExposed(&window, testPatience));
    for (const QString &state : {u"_NET_WM_STATE_SKIP_TASKBAR"_s, u"_NET_WM_STATE_SKIP_PAGER"_s,
                                 u"_NET_WM_STATE_ABOVE"_s}) {
        QTRY_VERIFY2(
            outputOf(u"xprop"_s, {u"-id"_s, QString::number(window.winId()), u"_NET_WM_STATE"_s})
                .contains(state),
            qPrintable(state));
    }
}

QTEST_MAIN(PopupPlacementTest)
#include "PopupPlacementTest.moc"
