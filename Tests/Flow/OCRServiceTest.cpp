// SPDX-License-Identifier: MIT
#include "OCRService.h"

#include "Support/FakePlatform.h"

#include <QTest>
#include <QThread>

#include <pthread.h>
#include <stdexcept>
#include <system_error>

using namespace Qt::StringLiterals;

/// How the recognizer is asked, and what is made of its answer.
class OCRServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void joinsTheLinesInTheRecognizersOrder();
    void answersLaterOnTheMainThread();
    void asksForAccuracyCorrectionAndDetection();
    void asksForTheSupportedLanguagesInItsOwnOrder_data();
    void asksForTheSupportedLanguagesInItsOwnOrder();
    void takesTheBestCandidateAndSkipsLinesWithout();
    void reportsNoText_data();
    void reportsNoText();
    void keepsWhiteSpace();
    void reportsTheRecognizersErrors_data();
    void reportsTheRecognizersErrors();
    void runsSeveralAtOnce();
    void tellsFailuresInSentences_data();
    void tellsFailuresInSentences();
    void tellsThatThereIsNoThread();
    void endsWhenItIsStopped();
    void answersNoMoreOnceItIsStopped();

private:
    void recognize(const std::stop_token &stop = {});

    std::unique_ptr<FakePlatform> m_platform;
    QList<RecognitionOutcome> m_outcomes;
};

void OCRServiceTest::init()
{
    m_platform = std::make_unique<FakePlatform>();
    m_outcomes.clear();
}

void OCRServiceTest::recognize(const std::stop_token &stop)
{
    OCRService::recognize(
        m_platform->screenRecording.nextImage,
        [this](const RecognitionOutcome &outcome) { m_outcomes << outcome; }, stop);
}

void OCRServiceTest::joinsTheLinesInTheRecognizersOrder()
{
    auto lower = FakeTextRecognizer::line(u"second"_s);
    lower.boundingBox = QRectF(0, 0, 10, 10);
    auto upper = FakeTextRecognizer::line(u"first"_s);
    upper.boundingBox = QRectF(0, 90, 10, 10);
    m_platform->textRecognizer.nextResults = {upper, lower};
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<QString>(m_outcomes[0]), u"first\nsecond"_s);
}

void OCRServiceTest::answersLaterOnTheMainThread()
{
    QThread *thread = nullptr;
    bool returned = false;
    bool answeredWithin = false;
    OCRService::recognize(m_platform->screenRecording.nextImage, [&](const RecognitionOutcome &) {
        thread = QThread::currentThread();
        answeredWithin = !returned;
    });
    returned = true;
    QTRY_VERIFY(thread);
    QCOMPARE(thread, qApp->thread());
    QVERIFY(!answeredWithin);
}

void OCRServiceTest::asksForAccuracyCorrectionAndDetection()
{
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    const TextRecognitionRequest request = m_platform->textRecognizer.lastRequest();
    QCOMPARE(request.recognitionLevel, RecognitionLevel::Accurate);
    QVERIFY(request.usesLanguageCorrection);
    QVERIFY(request.automaticallyDetectsLanguage);
}

void OCRServiceTest::asksForTheSupportedLanguagesInItsOwnOrder_data()
{
    QTest::addColumn<QStringList>("supported");
    QTest::addColumn<bool>("fails");
    QTest::addColumn<QStringList>("asked");
    QTest::newRow("Arabic before English")
        << QStringList{u"en-US"_s, u"ar-SA"_s} << false << QStringList{u"ar-SA"_s, u"en-US"_s};
    QTest::newRow("all") << QStringList{u"nl-NL"_s,   u"tr-TR"_s,   u"ko-KR"_s, u"ja-JP"_s,
                                        u"zh-Hant"_s, u"zh-Hans"_s, u"ru-RU"_s, u"pt-BR"_s,
                                        u"it-IT"_s,   u"es-ES"_s,   u"de-DE"_s, u"fr-FR"_s,
                                        u"en-US"_s,   u"ars-SA"_s,  u"ar-SA"_s}
                         << false << QStringList{u"ar-SA"_s, u"ars-SA"_s,  u"en-US"_s,   u"fr-FR"_s,
                                                 u"de-DE"_s, u"es-ES"_s,   u"it-IT"_s,   u"pt-BR"_s,
                                                 u"ru-RU"_s, u"zh-Hans"_s, u"zh-Hant"_s, u"ja-JP"_s,
                                                 u"ko-KR"_s, u"tr-TR"_s,   u"nl-NL"_s};
    QTest::newRow("exact spelling")
        << QStringList{u"EN-US"_s, u"de"_s, u"fr-FR"_s} << false << QStringList{u"fr-FR"_s};
    QTest::newRow("none of ours") << QStringList{u"uk-UA"_s} << false << QStringList();
    QTest::newRow("the question fails") << QStringList{u"en-US"_s} << true << QStringList();
}

void OCRServiceTest::asksForTheSupportedLanguagesInItsOwnOrder()
{
    QFETCH(QStringList, supported);
    QFETCH(bool, fails);
    QFETCH(QStringList, asked);
    m_platform->textRecognizer.supported = supported;
    if (fails) {
        m_platform->textRecognizer.supportedError = RecognitionError(u"unknown"_s);
    }
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<QString>(m_outcomes[0]), u"text"_s);
    QCOMPARE(m_platform->textRecognizer.lastRequest().recognitionLanguages, asked);
}

void OCRServiceTest::takesTheBestCandidateAndSkipsLinesWithout()
{
    m_platform->textRecognizer.nextResults = {
        {QRectF(), {{u"best"_s, 0.4}, {u"other"_s, 0.9}}},
        {QRectF(), {}},
        {QRectF(), {{u"uncertain"_s, 0.01}}},
    };
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<QString>(m_outcomes[0]), u"best\nuncertain"_s);
}

void OCRServiceTest::reportsNoText_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("no lines") << QStringList();
    QTest::newRow("one empty line") << QStringList{QString()};
}

void OCRServiceTest::reportsNoText()
{
    QFETCH(QStringList, lines);
    for (const QString &line : lines) {
        m_platform->textRecognizer.nextResults << FakeTextRecognizer::line(line);
    }
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<OCRError>(m_outcomes[0]).value(), OCRError::Case::noText);
}

void OCRServiceTest::keepsWhiteSpace()
{
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"  "_s)};
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<QString>(m_outcomes[0]), u"  "_s);
}

void OCRServiceTest::reportsTheRecognizersErrors_data()
{
    QTest::addColumn<bool>("handsError");
    QTest::addColumn<bool>("throwsError");
    QTest::addColumn<int>("reports");
    QTest::newRow("handed to the completion handler") << true << false << 1;
    QTest::newRow("thrown") << false << true << 1;
    QTest::newRow("both: told twice") << true << true << 2;
}

void OCRServiceTest::reportsTheRecognizersErrors()
{
    QFETCH(bool, handsError);
    QFETCH(bool, throwsError);
    QFETCH(int, reports);
    const RecognitionError error(u"No language models are installed."_s);
    if (handsError) {
        m_platform->textRecognizer.nextError = error;
    }
    if (throwsError) {
        m_platform->textRecognizer.nextThrow = error;
    }
    recognize();
    QTRY_COMPARE(m_outcomes.size(), reports);
    // Whatever else the worker would deliver is delivered by now.
    OCRService::waitForDone();
    QCoreApplication::sendPostedEvents();
    QCOMPARE(m_outcomes.size(), reports);
    for (const RecognitionOutcome &outcome : m_outcomes) {
        QCOMPARE(std::get<OCRError>(outcome).value(), OCRError::Case::vision);
        QCOMPARE(std::get<OCRError>(outcome).underlying()->localizedDescription(),
                 u"No language models are installed."_s);
    }
}

void OCRServiceTest::runsSeveralAtOnce()
{
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    m_platform->textRecognizer.hold();
    recognize();
    recognize();
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 2);
    QVERIFY(m_outcomes.isEmpty());
    m_platform->textRecognizer.release();
    m_platform->textRecognizer.release();
    QTRY_COMPARE(m_outcomes.size(), 2);
}

void OCRServiceTest::tellsFailuresInSentences_data()
{
    QTest::addColumn<std::function<void()>>("fail");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("no memory") << std::function<void()>([] {
        throw std::bad_alloc();
    }) << u"There is not enough memory to read the picture. Close some programs and try again."_s;
    QTest::newRow("no thread") << std::function<void()>([] {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }) << u"The system cannot start any more work. Close some programs and try again."_s;
    QTest::newRow("anything else")
        << std::function<void()>([] { throw std::logic_error("vector::_M_range_check"); })
        << u"Reading the picture failed unexpectedly."_s;
}

void OCRServiceTest::tellsFailuresInSentences()
{
    QFETCH(std::function<void()>, fail);
    QFETCH(QString, sentence);
    m_platform->textRecognizer.throwFailure = fail;
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 1);
    const auto error = std::get<OCRError>(m_outcomes[0]);
    QCOMPARE(error.value(), OCRError::Case::vision);
    QCOMPARE(error.underlying()->localizedDescription(), sentence);
}

void OCRServiceTest::tellsThatThereIsNoThread()
{
    // No address space holds such a stack, so that no thread can be started.
    pthread_attr_t usual;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    pthread_attr_t endless = usual;
    QCOMPARE(pthread_attr_setstacksize(&endless, std::size_t(1) << 50), 0);
    QCOMPARE(pthread_setattr_default_np(&endless), 0);
    recognize();
    QCOMPARE(pthread_setattr_default_np(&usual), 0);
    QVERIFY(m_outcomes.isEmpty());
    QTRY_COMPARE(m_outcomes.size(), 1);
    QCOMPARE(std::get<OCRError>(m_outcomes[0]).value(), OCRError::Case::vision);
    QCOMPARE(m_platform->textRecognizer.performCount(), 0);
    // Nothing is left that a quit would wait for, and the next one is read.
    OCRService::waitForDone();
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    recognize();
    QTRY_COMPARE(m_outcomes.size(), 2);
    QCOMPARE(std::get<QString>(m_outcomes[1]), u"text"_s);
}

void OCRServiceTest::endsWhenItIsStopped()
{
    m_platform->textRecognizer.hold();
    std::stop_source source;
    recognize(source.get_token());
    QTRY_COMPARE(m_platform->textRecognizer.performCount(), 1);
    source.request_stop();
    OCRService::waitForDone();
    QCOMPARE(m_platform->textRecognizer.stopCount(), 1);
    QCoreApplication::sendPostedEvents();
    QVERIFY(m_outcomes.isEmpty());
}

void OCRServiceTest::answersNoMoreOnceItIsStopped()
{
    std::stop_source source;
    m_platform->textRecognizer.nextResults = {FakeTextRecognizer::line(u"text"_s)};
    recognize(source.get_token());
    // Its outcome waits for the main thread's turn.
    OCRService::waitForDone();
    source.request_stop();
    QCoreApplication::sendPostedEvents();
    QVERIFY(m_outcomes.isEmpty());
}

QTEST_MAIN(OCRServiceTest)
#include "OCRServiceTest.moc"
