// SPDX-License-Identifier: MIT
// The recognizer as the program sees it: its contract, a floor under its accuracy, and pictures
// that mean it harm.

#include "TextRecognition/TesseractTextRecognizer.h"

#include "TextRecognition/Effort.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QImage page(const QStringList &lines, int pixels = 14, const QString &family = u"DejaVu Sans"_s,
            const QColor &paper = Qt::white, const QColor &ink = Qt::black)
{
    QFont font(family);
    font.setPixelSize(pixels);
    const QFontMetrics metrics(font);
    int width = 0;
    for (const QString &line : lines) {
        width = std::max(width, metrics.horizontalAdvance(line));
    }
    QImage image(width + 40, int(lines.size()) * pixels * 2 + 20, QImage::Format_RGB32);
    image.fill(paper);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(ink);
    for (int i = 0; i < lines.size(); ++i) {
        const QRect place(20, 10 + i * pixels * 2, width, pixels * 2);
        painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, lines[i]);
    }
    return image;
}

QStringList read(TesseractTextRecognizer &recognizer, const QImage &image)
{
    TextRecognitionRequest request;
    request.recognitionLevel = RecognitionLevel::Accurate;
    request.usesLanguageCorrection = true;
    request.automaticallyDetectsLanguage = true;
    recognizer.perform(request, image);
    QStringList lines;
    for (const RecognizedTextObservation &observation : request.results) {
        lines.append(observation.topCandidates(1).value(0).string);
    }
    return lines;
}

/// The edits between two texts as a share of the first.
double errorRate(const QString &truth, const QString &text)
{
    std::vector<qsizetype> previous(std::size_t(text.size()) + 1);
    for (std::size_t i = 0; i < previous.size(); ++i) {
        previous[i] = qsizetype(i);
    }
    for (qsizetype i = 0; i < truth.size(); ++i) {
        std::vector<qsizetype> row(previous.size());
        row[0] = i + 1;
        for (qsizetype k = 0; k < text.size(); ++k) {
            const auto at = std::size_t(k);
            row[at + 1] = std::min(
                {previous[at + 1] + 1, row[at] + 1, previous[at] + (truth[i] == text[k] ? 0 : 1)});
        }
        previous = row;
    }
    return double(previous.back()) / double(std::max<qsizetype>(1, truth.size()));
}

/// Our own models lie in the tree, the others are installed.
QString modelFile(const QString &model)
{
    const QString own = QStringLiteral(QT_TESTCASE_SOURCEDIR) +
                        u"/../../Resources/models/%1.traineddata"_s.arg(model);
    if (QFile::exists(own)) {
        return own;
    }
    return u"/usr/share/tesseract-ocr/5/tessdata/%1.traineddata"_s.arg(model);
}

bool hasModels(const QStringList &models)
{
    return std::ranges::all_of(
        models, [](const QString &model) { return QFile::exists(modelFile(model)); });
}

bool install(const QTemporaryDir &folder, const QString &model)
{
    return QFile::link(modelFile(model), folder.filePath(model + u".traineddata"_s));
}

/// The first half of the model, as an installation that was broken off leaves it.
bool installDamaged(const QTemporaryDir &folder, const QString &model)
{
    QFile whole(modelFile(u"eng"_s));
    QFile damaged(folder.filePath(model + u".traineddata"_s));
    if (!whole.open(QIODevice::ReadOnly) || !damaged.open(QIODevice::WriteOnly)) {
        return false;
    }
    const QByteArray half = whole.read(whole.size() / 2);
    return damaged.write(half) == half.size();
}

constexpr std::chrono::nanoseconds endless = std::chrono::hours(1'000);
constexpr int never = -1;

/// A clock that runs by one on each thread that asks for it, and may stop a recognition then.
std::atomic<int> ticks = 0;
std::atomic<int> stopAt = never;
std::stop_source source;
std::chrono::nanoseconds budget = endless;

std::chrono::nanoseconds tickClock()
{
    thread_local int mine = 0;
    if (++ticks == stopAt) {
        source.request_stop();
    }
    return std::chrono::nanoseconds(++mine);
}

/// The same, but it stands still until text was found: finding lines asks for the time as often as
/// reading them, and takes far less of it.
std::chrono::nanoseconds readingClock()
{
    thread_local int mine = 0;
    const recognition::Effort *effort = recognition::Effort::current();
    if (effort && effort->hasText()) {
        ++mine;
        ++ticks;
    }
    return std::chrono::nanoseconds(mine);
}

constexpr int fullPageLines = 12;

QImage fullPage()
{
    QStringList lines;
    for (int i = 0; i < fullPageLines; ++i) {
        lines << u"The quick brown fox jumps over %1 lazy dogs"_s.arg(i + 10);
    }
    return page(lines);
}

/// How often reading the picture asks for the time.
int ticksOf(const QImage &image)
{
    TesseractTextRecognizer recognizer(
        {}, [](qint64) { return endless; }, &tickClock);
    ticks = 0;
    read(recognizer, image);
    return ticks;
}

} // namespace

class TesseractTextRecognizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!hasModels({u"eng"_s})) {
            QSKIP("needs the English model");
        }
    }

    void withoutModelsItSaysWhatToDo()
    {
        const QTemporaryDir empty;
        TesseractTextRecognizer recognizer(empty.path());
        recognizer.prepare();
        TextRecognitionRequest request;
        bool called = false;
        request.completionHandler = [&called](const TextRecognitionRequest &,
                                              const std::optional<RecognitionError> &) {
            called = true;
        };
        try {
            recognizer.perform(request, page({u"text"_s}));
            QFAIL("recognition without models must fail");
        } catch (const RecognitionError &error) {
            QVERIFY(error.localizedDescription().contains(u"language models"_s));
            QVERIFY(error.localizedDescription().contains(empty.path()));
            QVERIFY(error.localizedDescription().endsWith(u'.'));
        }
        QVERIFY(!called);
        QVERIFY_THROWS_EXCEPTION(RecognitionError,
                                 recognizer.supportedRecognitionLanguages(request));
    }

    void theSupportedListIsWhatIsInstalledNow()
    {
        const QTemporaryDir folder;
        TesseractTextRecognizer recognizer(folder.path());
        QVERIFY(install(folder, u"eng"_s));
        QCOMPARE(recognizer.supportedRecognitionLanguages({}), QStringList{u"en-US"_s});
        QVERIFY(install(folder, u"arabic"_s));
        QCOMPARE(recognizer.supportedRecognitionLanguages({}),
                 (QStringList{u"ar-SA"_s, u"ars-SA"_s, u"en-US"_s}));
    }

    void aDamagedModelIsNamed_data()
    {
        QTest::addColumn<QStringList>("damaged");
        QTest::addColumn<QStringList>("whole");
        QTest::newRow("the only one") << QStringList{u"eng"_s} << QStringList();
        QTest::newRow("all of several") << QStringList{u"deu"_s, u"eng"_s} << QStringList();
    }

    void aDamagedModelIsNamed()
    {
        QFETCH(QStringList, damaged);
        QFETCH(QStringList, whole);
        const QTemporaryDir folder;
        for (const QString &model : damaged) {
            QVERIFY(installDamaged(folder, model));
        }
        for (const QString &model : whole) {
            QVERIFY(install(folder, model));
        }
        TesseractTextRecognizer recognizer(folder.path());
        recognizer.prepare();
        // Each time, not only when the damage is found.
        for (int round = 0; round < 2; ++round) {
            try {
                const QStringList lines = read(recognizer, page({u"some text of words"_s}));
                QFAIL(qPrintable(u"read: "_s + lines.join(u' ')));
            } catch (const RecognitionError &error) {
                const QString sentence = error.localizedDescription();
                for (const QString &model : damaged) {
                    QVERIFY2(sentence.contains(u'“' + model + u'”'), qPrintable(sentence));
                }
                QVERIFY2(sentence.endsWith(u"again."_s), qPrintable(sentence));
            }
        }
    }

    void theOthersGoOnWithoutADamagedModel_data()
    {
        QTest::addColumn<QString>("whole");
        QTest::addColumn<QString>("text");
        QTest::newRow("of the same script")
            << u"deu"_s << u"Die Datei konnte nicht gelesen werden"_s;
        // It reads Latin letters, too.
        QTest::newRow("of another script") << u"arabic"_s << u"The file could not be read"_s;
    }

    void theOthersGoOnWithoutADamagedModel()
    {
        QFETCH(QString, whole);
        QFETCH(QString, text);
        if (!hasModels({whole})) {
            QSKIP("needs the model");
        }
        const QTemporaryDir folder;
        QVERIFY(installDamaged(folder, u"eng"_s));
        QVERIFY(installDamaged(folder, u"Latin"_s));
        QVERIFY(install(folder, whole));
        TesseractTextRecognizer recognizer(folder.path());
        QCOMPARE(read(recognizer, page({text})), QStringList{text});
        QVERIFY(!recognizer.supportedRecognitionLanguages({}).contains(u"en-US"_s));
    }

    void aStoppedRequestEndsWithoutAnAnswer()
    {
        TesseractTextRecognizer recognizer;
        TextRecognitionRequest request;
        bool called = false;
        request.completionHandler = [&called](const TextRecognitionRequest &,
                                              const std::optional<RecognitionError> &) {
            called = true;
        };
        std::stop_source source;
        source.request_stop();
        request.stop = source.get_token();
        recognizer.perform(request, page({u"some text"_s}));
        QVERIFY(!called);
        QVERIFY(request.results.isEmpty());
        // It is as good as before.
        QCOMPARE(read(recognizer, page({u"some text"_s})), QStringList{u"some text"_s});
    }

    void aRequestIsStoppedAnywhere()
    {
        const QImage image = fullPage();
        const int all = ticksOf(image);
        for (const int tenths : {0, 1, 2, 4, 6, 8, 9}) {
            TesseractTextRecognizer recognizer(
                {}, [](qint64) { return budget; }, &tickClock);
            TextRecognitionRequest request;
            bool called = false;
            request.completionHandler = [&called](const TextRecognitionRequest &,
                                                  const std::optional<RecognitionError> &) {
                called = true;
            };
            source = {};
            request.stop = source.get_token();
            ticks = 0;
            stopAt = all * tenths / 10 + 1;
            recognizer.perform(request, image);
            const int late = ticks - stopAt;
            stopAt = never;
            QVERIFY(source.stop_requested());
            QVERIFY(!called);
            // Every thread meets it at its next checkpoint, before it asks for the time again; it
            // does once more as it ends.
            QVERIFY2(late <= 4, qPrintable(QString::number(late)));
        }
    }

    void aSpentBudgetLeavesWhatWasRead()
    {
        const QImage image = fullPage();
        TesseractTextRecognizer bounded(
            {}, [](qint64) { return budget; }, &readingClock);
        ticks = 0;
        QCOMPARE(read(bounded, image).size(), fullPageLines);
        const int all = ticks;
        // What is left is cut in the middle of the reading.
        budget = std::chrono::nanoseconds(all / 2);
        ticks = 0;
        const QStringList some = read(bounded, image);
        budget = endless;
        QVERIFY2(ticks < all * 3 / 4, qPrintable(u"%1 of %2"_s.arg(ticks).arg(all)));
        QVERIFY2(!some.isEmpty(), "nothing of it was read");
        for (const QString &line : some) {
            QVERIFY2(line.startsWith(u"The quick brown"_s), qPrintable(line));
        }
        QCOMPARE(read(bounded, image).size(), fullPageLines);
    }

    void withoutABudgetNothingIsRead()
    {
        TesseractTextRecognizer recognizer(
            {}, [](qint64) { return std::chrono::nanoseconds(0); }, &tickClock);
        QCOMPARE(read(recognizer, fullPage()), QStringList());
    }

    void linesComeInOrderWithTheirPlaces()
    {
        TesseractTextRecognizer recognizer;
        TextRecognitionRequest request;
        int calls = 0;
        QList<RecognizedTextObservation> seen;
        request.completionHandler = [&](const TextRecognitionRequest &done,
                                        const std::optional<RecognitionError> &error) {
            ++calls;
            QVERIFY(!error);
            seen = done.results;
        };
        recognizer.perform(request, page({u"First line of text"_s, u"Second line"_s}));
        QCOMPARE(calls, 1);
        QCOMPARE(seen.size(), 2);
        QCOMPARE(seen[0].candidates.first().string, u"First line of text"_s);
        QCOMPARE(seen[1].candidates.first().string, u"Second line"_s);
        QVERIFY(seen[0].boundingBox.bottom() < seen[1].boundingBox.top());
        QVERIFY(QRectF(0, 0, 400, 76).contains(seen[0].boundingBox));
        for (const RecognizedTextObservation &observation : seen) {
            double last = 1;
            for (const RecognizedText &candidate : observation.candidates) {
                QVERIFY(!candidate.string.isEmpty());
                QVERIFY(candidate.confidence >= 0 && candidate.confidence <= last);
                last = candidate.confidence;
            }
        }
    }

    void otherReadingsAreCandidates()
    {
        if (!hasModels({u"eng"_s, u"deu"_s})) {
            QSKIP("needs the English and the German model");
        }
        // English is tried first and cannot read the umlauts.
        TesseractTextRecognizer recognizer;
        TextRecognitionRequest request;
        const QString truth = u"Die Größe der geöffneten Datei ändern"_s;
        recognizer.perform(request, page({truth}));
        QCOMPARE(request.results.size(), 1);
        const QList<RecognizedText> candidates = request.results[0].candidates;
        QVERIFY(candidates.size() >= 2);
        QCOMPARE(candidates[0].string, truth);
        QVERIFY(candidates[1].string != truth);
        QCOMPARE(request.results[0].topCandidates(1).size(), 1);
    }

    void nothingIsReadWhereNothingIsWritten_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::newRow("null") << QImage();
        for (const QSize size :
             {QSize(1, 1), QSize(1, 700), QSize(700, 1), QSize(3, 3), QSize(2, 5000)}) {
            QImage line(size, QImage::Format_RGB32);
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x) {
                    line.setPixel(x, y, (x + y) % 3 ? 0xffffffff : 0xff000000);
                }
            }
            QTest::addRow("%d by %d", size.width(), size.height()) << line;
        }
        for (const auto color : {Qt::white, Qt::black, Qt::red, Qt::transparent}) {
            QImage plain(300, 200, QImage::Format_ARGB32);
            plain.fill(color);
            QTest::addRow("plain %d", int(color)) << plain;
        }
        QImage noise(200, 150, QImage::Format_RGB32);
        QRandomGenerator random(1);
        random.fillRange(reinterpret_cast<quint32 *>(noise.bits()), noise.sizeInBytes() / 4);
        QTest::newRow("noise") << noise;
        QTest::newRow("16-bit noise") << noise.convertToFormat(QImage::Format_RGBA64);
        QImage checkers(320, 240, QImage::Format_Mono);
        for (int y = 0; y < 240; ++y) {
            for (int x = 0; x < 320; ++x) {
                checkers.setPixel(x, y, (x / 16 + y / 16) % 2);
            }
        }
        QTest::newRow("checkers") << checkers;
        QImage dots(200, 200, QImage::Format_Mono);
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 200; ++x) {
                dots.setPixel(x, y, (x + y) % 2);
            }
        }
        QTest::newRow("every other pixel") << dots;
    }

    void nothingIsReadWhereNothingIsWritten()
    {
        QFETCH(QImage, image);
        static TesseractTextRecognizer recognizer;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(read(recognizer, image), QStringList());
        // Far above what it takes: a hang, not a slow machine, is what this is to find.
        QVERIFY(timer.elapsed() < 30'000);
    }

    void aHugePictureIsReadInTime()
    {
        QImage image(7680, 4320, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter(&image).drawImage(4000, 2000, page({u"A few words on a huge screen"_s}, 28));
        TesseractTextRecognizer recognizer;
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(read(recognizer, image), QStringList{u"A few words on a huge screen"_s});
        QVERIFY(timer.elapsed() < 60'000);
    }

    void simpleScreensAreReadWell_data()
    {
        QTest::addColumn<QStringList>("models");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<double>("bound");
        const QString sans = u"DejaVu Sans"_s;
        const QString cjk = u"Noto Sans CJK JP"_s;
        QTest::newRow("English") << QStringList{u"eng"_s} << sans
                                 << QStringList{u"Open the file in a new window"_s, u"Cancel"_s}
                                 << 0.02;
        QTest::newRow("German") << QStringList{u"deu"_s} << sans
                                << QStringList{u"Die Datei konnte nicht geöffnet werden."_s,
                                               u"Größe ändern"_s}
                                << 0.04;
        QTest::newRow("French") << QStringList{u"fra"_s} << sans
                                << QStringList{u"Le fichier a été supprimé du dossier."_s,
                                               u"Fenêtre précédente"_s}
                                << 0.04;
        QTest::newRow("Turkish") << QStringList{u"tur"_s} << sans
                                 << QStringList{u"Dosya açılamadı, lütfen yeniden deneyin"_s,
                                                u"Sığdır ve kapat"_s}
                                 << 0.06;
        QTest::newRow("Russian") << QStringList{u"rus"_s} << sans
                                 << QStringList{u"Не удалось открыть выбранный файл"_s, u"Отмена"_s}
                                 << 0.04;
        QTest::newRow("Arabic") << QStringList{u"arabic"_s} << sans
                                << QStringList{u"تعذر فتح الملف المحدد"_s, u"إلغاء الأمر"_s}
                                << 0.12;
        QTest::newRow("Japanese") << QStringList{u"jpn"_s} << cjk
                                  << QStringList{u"選択したファイルを開けませんでした"_s} << 0.10;
        QTest::newRow("Chinese") << QStringList{u"chi_sim"_s} << u"Noto Sans CJK SC"_s
                                 << QStringList{u"无法打开所选文件，请稍后再试"_s} << 0.15;
        QTest::newRow("Korean") << QStringList{u"kor"_s} << u"Noto Sans CJK KR"_s
                                << QStringList{u"선택한 파일을 열 수 없습니다"_s} << 0.10;
        QTest::newRow("mixed") << QStringList{u"rus"_s, u"eng"_s} << sans
                               << QStringList{u"Не удалось запустить программу Firefox"_s,
                                              u"Поддержка протокола HTTP"_s}
                               << 0.08;
        QTest::newRow("Arabic with names")
            << QStringList{u"arabic"_s, u"eng"_s} << sans
            << QStringList{u"تعذر فتح Firefox"_s, u"المستند (PDF)"_s, u"ملف جديد 13:44"_s} << 0.12;
        QTest::newRow("Chinese with names")
            << QStringList{u"chi_sim"_s, u"chi_tra"_s, u"eng"_s} << u"Noto Sans CJK SC"_s
            << QStringList{u"文件选择器: GTK"_s, u"输入法 Firefox"_s} << 0.08;
        QTest::newRow("code") << QStringList{u"eng"_s} << u"DejaVu Sans Mono"_s
                              << QStringList{u"static int read_all(int list[0]) {"_s,
                                             u"return { index, mask & 0x4f };"_s, u"}"_s}
                              << 0.06;
        QTest::newRow("code with comments")
            << QStringList{u"rus"_s, u"eng"_s} << u"DejaVu Sans Mono"_s
            << QStringList{u"int width = 48; // направление"_s, u"return width; // удалить файл"_s}
            << 0.06;
    }

    void simpleScreensAreReadWell()
    {
        QFETCH(QStringList, models);
        QFETCH(QString, family);
        QFETCH(QStringList, lines);
        QFETCH(double, bound);
        if (!hasModels(models)) {
            QSKIP("needs the language's model");
        }
        if (!QFontInfo(QFont(family)).family().startsWith(family.left(8))) {
            QSKIP("needs the font");
        }
        static TesseractTextRecognizer recognizer;
        const QString truth = lines.join(u'\n');
        for (const bool dark : {false, true}) {
            const QImage image = dark ? page(lines, 15, family, QColor(35, 38, 41), Qt::white)
                                      : page(lines, 15, family);
            const QString text = read(recognizer, image).join(u'\n');
            const double error = errorRate(truth, text);
            QVERIFY2(error <= bound, qPrintable(u"%1 %: %2"_s.arg(error * 100).arg(text)));
        }
    }

    void cellsAreJoinedByTabs()
    {
        QImage image(500, 60, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.drawImage(0, 0, page({u"Name of file"_s}));
        painter.drawImage(250, 0, page({u"Date modified"_s}));
        painter.end();
        TesseractTextRecognizer recognizer;
        QCOMPARE(read(recognizer, image), QStringList{u"Name of file\tDate modified"_s});
    }

    void requestsMayRunTogether()
    {
        TesseractTextRecognizer recognizer;
        recognizer.prepare();
        const QString first = u"The first picture"_s;
        const QString second = u"Another text"_s;
        const QImage firstPage = page({first});
        const QImage secondPage = page({second});
        std::vector<std::future<QStringList>> results;
        for (int i = 0; i < 6; ++i) {
            results.push_back(std::async(std::launch::async, [&, i] {
                return read(recognizer, i % 2 ? secondPage : firstPage);
            }));
        }
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(results[std::size_t(i)].get(), QStringList{i % 2 ? second : first});
        }
    }

    void itMayGoAwayWhilePreparing()
    {
        for (int i = 0; i < 3; ++i) {
            TesseractTextRecognizer().prepare();
        }
    }
};

QTEST_MAIN(TesseractTextRecognizerTest)
#include "TesseractTextRecognizerTest.moc"
