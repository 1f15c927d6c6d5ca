// SPDX-License-Identifier: MIT
#include "Platform/FallbackRecording.h"

#include "Support/FakeServices.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Which of two ways to see the screen is taken, and what is told when neither is open.
class FallbackRecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void takesThePreferredOne();
    void takesTheOtherWhenThePreferredIsRefused();
    void returnsToThePreferredOne();
    void makesTheOtherOnceAndOnRequestAlone();
    void tellsWhyThereIsNeither();
    void tellsNothingWhileTheOtherAsks();
    void managesWithoutAnother();

private:
    std::unique_ptr<FallbackRecording> make()
    {
        auto preferred = std::make_unique<FakeScreenRecording>();
        m_preferred = preferred.get();
        m_preferred->preflight = false;
        return std::make_unique<FallbackRecording>(std::move(preferred), [this] {
            ++m_madeCount;
            auto other = std::make_unique<FakeScreenRecording>();
            m_other = other.get();
            m_other->preflight = m_otherIsOpen;
            m_other->request = m_otherIsOpen;
            return other;
        });
    }

    FakeScreenRecording *m_preferred = nullptr;
    FakeScreenRecording *m_other = nullptr;
    bool m_otherIsOpen = true;
    int m_madeCount = 0;
};

void FallbackRecordingTest::init()
{
    m_preferred = m_other = nullptr;
    m_otherIsOpen = true;
    m_madeCount = 0;
}

void FallbackRecordingTest::takesThePreferredOne()
{
    const auto recording = make();
    m_preferred->preflight = m_preferred->request = true;
    QVERIFY(recording->preflightAccess());
    QVERIFY(recording->requestAccess());
    recording->createImage(1, QRectF(0, 0, 2, 2));
    QCOMPARE(m_preferred->grabs.size(), 1);
    QCOMPARE(m_madeCount, 0);
}

void FallbackRecordingTest::takesTheOtherWhenThePreferredIsRefused()
{
    const auto recording = make();
    QVERIFY(!recording->preflightAccess());
    QVERIFY(recording->requestAccess());
    QVERIFY(recording->preflightAccess());
    recording->createImage(1, QRectF(0, 0, 2, 2));
    QCOMPARE(m_preferred->grabs.size(), 0);
    QCOMPARE(m_other->grabs.size(), 1);
}

void FallbackRecordingTest::returnsToThePreferredOne()
{
    const auto recording = make();
    QVERIFY(recording->requestAccess());
    m_preferred->preflight = true;
    QVERIFY(recording->preflightAccess());
    recording->createImage(1, QRectF(0, 0, 2, 2));
    QCOMPARE(m_preferred->grabs.size(), 1);
    QCOMPARE(m_other->grabs.size(), 0);
}

void FallbackRecordingTest::makesTheOtherOnceAndOnRequestAlone()
{
    m_otherIsOpen = false;
    const auto recording = make();
    QVERIFY(!recording->preflightAccess());
    QCOMPARE(m_madeCount, 0);
    QVERIFY(!recording->requestAccess());
    QVERIFY(!recording->requestAccess());
    QCOMPARE(m_madeCount, 1);
    QCOMPARE(m_other->requestCount, 2);
}

void FallbackRecordingTest::tellsWhyThereIsNeither()
{
    m_otherIsOpen = false;
    const auto recording = make();
    QVERIFY(!recording->refusal());
    m_preferred->refused = ScreenRecordingRefusal{u"Erstens."_s, u"First."_s};
    QVERIFY(!recording->requestAccess());
    m_other->refused = ScreenRecordingRefusal{u"Zweitens."_s, u"Second."_s};
    QCOMPARE(recording->refusal()->message, u"Erstens.\nZweitens."_s);
    QCOMPARE(recording->refusal()->logText, u"First. Second."_s);
}

void FallbackRecordingTest::tellsNothingWhileTheOtherAsks()
{
    m_otherIsOpen = false;
    const auto recording = make();
    m_preferred->refused = ScreenRecordingRefusal{u"Erstens."_s, u"First."_s};
    QVERIFY(!recording->requestAccess());
    QVERIFY(!recording->refusal());
}

void FallbackRecordingTest::managesWithoutAnother()
{
    auto preferred = std::make_unique<FakeScreenRecording>();
    preferred->preflight = false;
    preferred->refused = ScreenRecordingRefusal{u"Erstens."_s, u"First."_s};
    FallbackRecording recording(std::move(preferred), [] { return nullptr; });
    QVERIFY(!recording.requestAccess());
    QVERIFY(!recording.preflightAccess());
    QCOMPARE(recording.refusal()->logText, u"First."_s);
}

QTEST_MAIN(FallbackRecordingTest)
#include "FallbackRecordingTest.moc"
