// SPDX-License-Identifier: MIT
// Lines drawn in several scripts, read with the models that are installed.

#include "TextRecognition/Network/Engine.h"

#include "DrawnLine.h"
#include "SampleWord.h"

#include <QFontInfo>
#include <QTest>

#include <future>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

std::shared_ptr<const Engine> engineOf(const QString &model,
                                       Dictionary dictionary = Dictionary::With)
{
    return Engine::load(ModelFolder(), model, dictionary);
}

} // namespace

class EngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (!ModelFolder().has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
    }

    void linesAreRead_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("text");
        const auto row = [](const QString &model, const QString &family, const QString &text) {
            QTest::newRow(qPrintable(model + u' ' + text)) << model << family << text;
        };
        row(u"eng"_s, u"DejaVu Sans"_s, u"The folder could not be opened."_s);
        row(u"eng"_s, u"DejaVu Serif"_s, u"Total: 1,250.75 (12%)"_s);
        row(u"arabic"_s, u"DejaVu Sans"_s, u"تعذر فتح الملف"_s);
        row(u"jpn"_s, u"Noto Sans CJK JP"_s, u"設定を保存しました"_s);
        row(u"kor"_s, u"Noto Sans CJK KR"_s, u"파일을 열 수 없습니다"_s);
    }

    void linesAreRead()
    {
        QFETCH(QString, model);
        QFETCH(QString, family);
        QFETCH(QString, text);
        if (QFontInfo(QFont(family)).family() != family) {
            QSKIP("needs the font");
        }
        const auto engine = engineOf(model);
        if (!engine) {
            QSKIP("needs the model");
        }
        const Reading reading = engine->read(drawnLine(text, family));
        QCOMPARE(reading.model, model);
        QString found = reading.text();
        // Japanese has no blanks; the reading may have some between its words.
        if (model == u"jpn"_s) {
            found.remove(u' ');
        }
        QCOMPARE(found, text);
        QVERIFY(reading.confidence() > 80);
    }

    void unsureLinesAreReadAgain()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        const GreyImage line = drawnLine(u"seen clearly"_s, u"DejaVu Sans"_s);
        Reading first{u"eng"_s, {}};
        ReadWord word;
        word.text = u"something"_s;
        word.confidence = 95;
        first.words.append(word);
        QCOMPARE(engine->readAgain(line, first).text(), u"something"_s);
        first.words.first().confidence = 20;
        QCOMPARE(engine->readAgain(line, first).text(), u"seen clearly"_s);
        // What is read less surely again stays as it was.
        const GreyImage blank(200, 40, 255);
        QCOMPARE(engine->readAgain(blank, first).text(), u"something"_s);
    }

    void linesReadTogetherAreReadAsAlone()
    {
        const QString family = u"DejaVu Sans"_s;
        const std::vector<GreyImage> lines{drawnLine(u"the quick brown fox"_s, family),
                                           GreyImage(200, 40, 255), drawnLine(u"xq"_s, family),
                                           drawnLine(u"jumps over a lazy dog, twice"_s, family)};
        const auto engine = Engine::load(ModelFolder(), u"eng"_s, Dictionary::With);
        QVERIFY(engine);
        Engine::Pictures pictures;
        std::vector<Reading> doubtful;
        for (const GreyImage &line : lines) {
            pictures.push_back(&line);
            doubtful.push_back({u"eng"_s, {word(u"none"_s, 0, 0, 10)}});
        }
        const std::vector<Reading> together = engine->read(pictures);
        const std::vector<Reading> again = engine->readAgain(pictures, doubtful);
        QCOMPARE(together.size(), lines.size());
        QCOMPARE(again.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const Reading alone = engine->read(lines[i]);
            QCOMPARE(together[i].text(), alone.text());
            QCOMPARE(together[i].confidence(), alone.confidence());
            QCOMPARE(again[i].text(), engine->readAgain(lines[i], doubtful[i]).text());
        }
        QCOMPARE(together[0].text(), u"the quick brown fox"_s);
        QVERIFY(together[1].isEmpty());
        QCOMPARE(again[1].text(), u"none"_s);
        QVERIFY(engine->read(Engine::Pictures{}).empty());
    }

    void linesWithSureWordsAreNotReadAgain()
    {
        QVERIFY(
            Engine::isSure({u"eng"_s, {word(u"one"_s, 91, 0, 10), word(u"two"_s, 91, 20, 30)}}));
        QVERIFY(
            Engine::isSure({u"eng"_s, {word(u"a"_s, 50, 0, 1), word(u"sentence"_s, 100, 20, 30)}}));
        QVERIFY(
            !Engine::isSure({u"eng"_s, {word(u"one"_s, 98, 0, 9), word(u"two"_s, 85, 20, 30)}}));
        QVERIFY(!Engine::isSure({u"eng"_s, {}}));
    }

    void wordsStandWhereTheyAreSeen()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        const GreyImage line = drawnLine(u"left right"_s, u"DejaVu Sans"_s);
        const Reading reading = engine->read(line);
        QCOMPARE(reading.words.size(), 2);
        const Box &left = reading.words[0].box;
        const Box &right = reading.words[1].box;
        QVERIFY(left.left >= 15 && left.left <= 30);
        QVERIFY(left.right < right.left);
        QVERIFY(right.right >= line.width - 30 && right.right <= line.width - 15);
        QVERIFY(left.top > 0 && left.bottom < line.height);
    }

    void whiteLinesAreEmpty()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        QVERIFY(engine->read(GreyImage(200, 40, 255)).isEmpty());
        QVERIFY(engine->read(GreyImage(1, 1, 255)).isEmpty());
        QVERIFY(engine->read(GreyImage(0, 0, 255)).isEmpty());
    }

    void linesOfAnyShapeAreRead()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        for (const auto &[width, height] :
             {std::pair{1, 1}, {1, 300}, {300, 1}, {2, 2}, {40, 40}}) {
            const Reading reading = engine->read(GreyImage(width, height, 0));
            for (const ReadWord &word : reading.words) {
                QVERIFY(word.box.left >= 0 && word.box.right <= width);
                QVERIFY(word.confidence >= 0 && word.confidence <= 100);
            }
        }
    }

    void dictionariesAreAsked()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        QVERIFY(engine->knows(u"house"_s));
        QVERIFY(!engine->knows(u"hxuse"_s));
        QVERIFY(!engine->knows(QString()));
        QVERIFY(!engine->knows(u"漢字"_s));
        const auto without = engineOf(u"eng"_s, Dictionary::Without);
        QVERIFY(without);
        QVERIFY(!without->knows(u"house"_s));
        QCOMPARE(without->read(drawnLine(u"house"_s, u"DejaVu Sans"_s)).text(), u"house"_s);
    }

    void threadsShareAnEngine()
    {
        const auto engine = engineOf(u"eng"_s);
        QVERIFY(engine);
        const GreyImage line = drawnLine(u"read by several at once"_s, u"DejaVu Sans"_s);
        std::vector<std::future<QString>> texts;
        for (int i = 0; i < 4; ++i) {
            texts.push_back(
                std::async(std::launch::async, [&] { return engine->read(line).text(); }));
        }
        for (auto &text : texts) {
            QCOMPARE(text.get(), u"read by several at once"_s);
        }
    }
};

QTEST_MAIN(EngineTest)
#include "EngineTest.moc"
