// SPDX-License-Identifier: MIT
#include "CaptureFixture.h"

#include "OCRService.h"
#include "OverlayPanel.h"
#include "SelectorView.h"
#include "Settings.h"

#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void CaptureFixture::initTestCase()
{
    FakePlatform platform;
    Settings::shared();
}

void CaptureFixture::init()
{
    m_platform = std::make_unique<FakePlatform>();
    Settings::shared().setOutputMode(OutputMode::both);
    Settings::shared().setShutterSound(true);
    Settings::shared().setShowNotification(true);
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"Hello"_s),
                                              FakeTextRecognizer::line(u"world"_s)};
    m_delegate = std::make_unique<AppDelegate>();
    m_delegate->applicationDidFinishLaunching();
    m_platform->mainQueue.advance(5s);
}

void CaptureFixture::cleanup()
{
    m_platform->endSelections();
    m_delegate.reset();
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_platform.reset();
}

void CaptureFixture::cleanupTestCase()
{
    OCRService::waitForDone();
}

void CaptureFixture::select()
{
    auto *panel = qobject_cast<OverlayPanel *>(m_platform->overlaySurface.shown.last());
    SelectorView &view = panel->contentView();
    QTest::mousePress(&view, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&view, {300, 150});
    QTest::mouseRelease(&view, Qt::LeftButton, {}, {300, 150});
}

void CaptureFixture::settle()
{
    OCRService::waitForDone();
    QCoreApplication::sendPostedEvents();
}

void CaptureFixture::capture()
{
    button().leftClick();
    select();
    settle();
}
