// SPDX-License-Identifier: MIT
// Screens as Qt's offscreen platform can be told to have them, each set in a process of its own:
// started again with "--layout NAME", this program tells what it sees.
#include "Platform/Qt/QtScreens.h"

#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {
QString text(const CocoaRect &rect)
{
    return u"%1,%2 %3x%4"_s.arg(rect.origin.x)
        .arg(rect.origin.y)
        .arg(rect.size.width)
        .arg(rect.size.height);
}

QString text(const QRect &rect)
{
    return u"%1,%2 %3x%4"_s.arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

/// One line a screen: its frame, its place for Qt and its pixels.
void tell(QtScreens::Origins origins, const QtScreens::PixelGeometry &pixelGeometry)
{
    const QtScreens screens(origins, pixelGeometry);
    for (const Screen &screen : screens.screens()) {
        std::puts(qPrintable(u"%1 | %2 | %3"_s.arg(text(screen.frame), text(screen.geometry),
                                                   text(screen.pixelGeometry))));
    }
}

QStringList told(const QString &configuration, const QString &scaleFactors, const QString &origins)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"screens.json"_s));
    if (!file.open(QIODevice::WriteOnly)) {
        return {};
    }
    file.write(configuration.toUtf8());
    file.close();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen:configfile="_s + file.fileName());
    environment.insert(u"QT_SCREEN_SCALE_FACTORS"_s, scaleFactors);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {u"--tell"_s, origins});
    if (!process.waitForFinished(testPatience) || process.exitCode() != 0) {
        return {};
    }
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

QString screen(const QString &name, const QRect &rect)
{
    return uR"({"name": "%1", "x": %2, "y": %3, "width": %4, "height": %5,
                "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1})"_s.arg(name)
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

QString screens(const QStringList &all)
{
    return u"{\"screens\": ["_s + all.join(u',') + u"]}"_s;
}
} // namespace

class QtScreensTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layouts_data();
    void layouts();
    void numbersStay();
    void mainScreen();
    void exactPixels();
};

void QtScreensTest::layouts_data()
{
    QTest::addColumn<QString>("configuration");
    QTest::addColumn<QString>("scaleFactors");
    QTest::addColumn<QString>("origins");
    QTest::addColumn<QStringList>("expected");

    const QString one = screens({screen(u"A"_s, {0, 0, 1280, 800})});
    QTest::newRow("one") << one << QString() << u"pixels"_s
                         << QStringList{u"0,0 1280x800 | 0,0 1280x800 | 0,0 1280x800"_s};
    QTest::newRow("one, dense") << one << u"A=2"_s << u"pixels"_s
                                << QStringList{u"0,0 640x400 | 0,0 640x400 | 0,0 1280x800"_s};

    // Left of and lower than the primary one: the frame's lower edge is below 0.
    const QString left =
        screens({screen(u"A"_s, {0, 0, 1280, 800}), screen(u"B"_s, {-1440, 200, 1440, 900})});
    QTest::newRow("to the left") << left << QString() << u"pixels"_s
                                 << QStringList{u"0,0 1280x800 | 0,0 1280x800 | 0,0 1280x800"_s,
                                                u"-1440,-300 1440x900 | -1440,200 1440x900 | "
                                                "-1440,200 1440x900"_s};

    // Screens that touch in pixels touch in points.
    const QString side =
        screens({screen(u"A"_s, {0, 0, 2000, 1000}), screen(u"B"_s, {2000, 0, 1000, 800})});
    QTest::newRow("side by side, dense")
        << side << u"A=2;B=2"_s << u"pixels"_s
        << QStringList{u"0,0 1000x500 | 0,0 1000x500 | 0,0 2000x1000"_s,
                       u"1000,100 500x400 | 2000,0 500x400 | 2000,0 1000x800"_s};
    // One dense beside one that is not: Qt's places are kept, with a gap.
    QTest::newRow("side by side, mixed")
        << side << u"A=2;B=1"_s << u"pixels"_s
        << QStringList{u"0,0 1000x500 | 0,0 1000x500 | 0,0 2000x1000"_s,
                       u"2000,-300 1000x800 | 2000,0 1000x800 | 2000,0 1000x800"_s};
    // What Qt takes for points there are the pixels.
    QTest::newRow("counted in pixels, dense")
        << one << u"A=2"_s << u"counted"_s
        << QStringList{u"0,0 320x200 | 0,0 640x400 | 0,0 640x400"_s};
    QTest::newRow("counted in pixels")
        << one << QString() << u"counted"_s
        << QStringList{u"0,0 1280x800 | 0,0 1280x800 | 0,0 1280x800"_s};
    QTest::newRow("origins in points")
        << left << QString() << u"points"_s
        << QStringList{u"0,0 1280x800 | 0,0 1280x800 | 0,0 1280x800"_s,
                       u"-1440,-300 1440x900 | -1440,200 1440x900 | -1440,200 1440x900"_s};
}

void QtScreensTest::layouts()
{
    QFETCH(const QString, configuration);
    QFETCH(const QString, scaleFactors);
    QFETCH(const QString, origins);
    QFETCH(const QStringList, expected);
    QCOMPARE(told(configuration, scaleFactors, origins), expected);
}

void QtScreensTest::numbersStay()
{
    const QtScreens screens(QtScreens::Origins::Pixels, {});
    const QList<Screen> first = screens.screens();
    QCOMPARE(first.size(), 1);
    QVERIFY(first.first().displayNumber.has_value());
    QCOMPARE(screens.screens(), first);
}

void QtScreensTest::mainScreen()
{
    const QtScreens screens(QtScreens::Origins::Pixels, {});
    QCOMPARE(screens.mainScreen(), std::optional(screens.screens().first()));
}

void QtScreensTest::exactPixels()
{
    // What Qt rounded to whole points is told exactly by someone who knows.
    const QtScreens screens(QtScreens::Origins::Pixels,
                            [](const QScreen &) { return QRect(0, 0, 801, 599); });
    QCOMPARE(screens.screens().first().pixelGeometry, QRect(0, 0, 801, 599));
    const QtScreens without(QtScreens::Origins::Pixels, [](const QScreen &) { return QRect(); });
    QCOMPARE(without.screens().first().pixelGeometry.size(),
             QGuiApplication::primaryScreen()->size());
}

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--tell"_L1) {
        const bool isCounted = arguments.value(2) == "counted"_L1;
        tell(isCounted || arguments.value(2) == "points"_L1 ? QtScreens::Origins::Points
                                                            : QtScreens::Origins::Pixels,
             isCounted ? [](const QScreen &screen) { return screen.geometry(); }
                       : QtScreens::PixelGeometry());
        return 0;
    }
    QtScreensTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "QtScreensTest.moc"
