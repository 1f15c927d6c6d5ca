// SPDX-License-Identifier: MIT
// The services of a desktop as a whole: all of them where the program can work, a reason where it
// cannot.

#include "Platform/DesktopPlatform.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

class DesktopPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyServiceIsThereOrTheReason();
};

void DesktopPlatformTest::everyServiceIsThereOrTheReason()
{
    const DesktopPlatformOptions options{.applicationId = u"org.example.Test"_s,
                                         .displayName = u"Test"_s};
    if (QGuiApplication::platformName() != u"xcb") {
        try {
            makeDesktopPlatform(options);
            QFAIL("there is no screen to read");
        } catch (const UnsupportedDesktop &reason) {
            QVERIFY(reason.message().contains(QGuiApplication::platformName()));
            QVERIFY(reason.message().contains(u"Log in to an X11 session"_s));
        }
        return;
    }
    const auto platform = makeDesktopPlatform(options);
    QCOMPARE(&Platform::current(), platform.get());
    QVERIFY(platform->mainQueue);
    QVERIFY(platform->systemLog);
    QVERIFY(platform->userDefaults);
    QVERIFY(platform->screens);
    QVERIFY(platform->screenRecording);
    QVERIFY(platform->overlaySurface);
    QVERIFY(platform->eventMonitor);
    QVERIFY(platform->keyTap);
    QVERIFY(platform->pasteboard);
    QVERIFY(platform->popupPlacement);
    QVERIFY(platform->statusBar);
    QVERIFY(platform->textRecognizer);
    QVERIFY(platform->systemSounds);
    QVERIFY(platform->loginItem);
    QVERIFY(platform->updateSource);
    QVERIFY(platform->applicationService);
    QVERIFY(platform->programRestart);
    const auto item = platform->statusBar->makeStatusItem();
    QVERIFY2(item->button(), "also without a panel");
}

QTEST_MAIN(DesktopPlatformTest)
#include "DesktopPlatformTest.moc"
