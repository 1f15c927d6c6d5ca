// SPDX-License-Identifier: MIT
// What is made of the models' readings: scripts, languages, mixed lines, marks and icons.

#include "SampleWord.h"
#include "TextRecognition/Indentation.h"
#include "TextRecognition/LanguageGuess.h"
#include "TextRecognition/Languages.h"
#include "TextRecognition/MixedScripts.h"
#include "TextRecognition/Model.h"
#include "TextRecognition/Reading.h"
#include "TextRecognition/Script.h"
#include "TextRecognition/TextEvidence.h"
#include "TextRecognition/TextRepair.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

namespace {

Reading words(const QStringList &texts)
{
    Reading reading;
    for (const QString &text : texts) {
        reading.words.append(word(text, 90, 0, 0));
    }
    return reading;
}

} // namespace

class TextRecognitionTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lettersAreCountedByScript()
    {
        const LetterCount count = countLetters(u"Диск (USB 3.0) 語"_s, Script::Cyrillic);
        QCOMPARE(count.own, 4);
        QCOMPARE(count.latin, 3);
        QCOMPARE(count.digits, 2);
        QCOMPARE(count.other, 1);
        QCOMPARE(count.all(), 10);
        QCOMPARE(countLetters(u"كلمة ١٢"_s, Script::Arabic).own, 4);
        QCOMPARE(countLetters(u"カナ漢"_s, Script::Japanese).own, 3);
        QCOMPARE(countLetters(u"カナ漢"_s, Script::SimplifiedHan).own, 1);
    }

    void confidenceIsWeightedByLength()
    {
        Reading reading;
        reading.words = {word(u"a"_s, 0, 0, 1), word(u"bcd"_s, 80, 2, 5)};
        QCOMPARE(reading.confidence(), 60.0);
        QCOMPARE(reading.leastConfidence(), 0.0);
        QCOMPARE(reading.text(), u"a bcd"_s);
        QCOMPARE(reading.characters(), 4);
        QCOMPARE(Reading().confidence(), 0.0);
    }

    void manyLettersOrDigitsAreSurelyText()
    {
        QVERIFY(isSurelyText(words({u"Sum"_s})));
        QVERIFY(isSurelyText(words({u"4,127.19"_s, u"96.52"_s})));
        // What dots and rules are read as.
        QVERIFY(!isSurelyText(words({u"o0o"_s, u"00"_s, u"110"_s})));
        Reading unsure = words({u"Summary"_s});
        unsure.words.front().confidence = 40;
        QVERIFY(!isSurelyText(unsure));
    }

    void wordsWithoutBlanksStayTogether()
    {
        Reading reading = words({u"漢字"_s, u"仮名"_s, u"PDF"_s});
        reading.words[1].afterBlank = false;
        QCOMPARE(reading.text(), u"漢字仮名 PDF"_s);
    }

    void languagesAreToldByTheirLetters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("model");
        QTest::newRow("eng") << u"The file could not be opened because it was removed"_s
                             << u"eng"_s;
        QTest::newRow("fra") << u"Le fichier n’a pas pu être ouvert car il a été supprimé"_s
                             << u"fra"_s;
        QTest::newRow("deu") << u"Die Datei konnte nicht geöffnet werden, weil sie gelöscht wurde"_s
                             << u"deu"_s;
        QTest::newRow("spa") << u"No se pudo abrir el archivo porque se ha eliminado la carpeta"_s
                             << u"spa"_s;
        QTest::newRow("ita") << u"Impossibile aprire il file perché la cartella è stata eliminata"_s
                             << u"ita"_s;
        QTest::newRow("por") << u"Não foi possível abrir o arquivo porque a pasta foi excluída"_s
                             << u"por"_s;
        QTest::newRow("tur") << u"Dosya silindiği için açılamadı, lütfen yeniden deneyin"_s
                             << u"tur"_s;
        QTest::newRow("nld") << u"Het bestand kon niet worden geopend omdat het is verwijderd"_s
                             << u"nld"_s;
    }

    void languagesAreToldByTheirLetters()
    {
        QFETCH(QString, text);
        QFETCH(QString, model);
        QCOMPARE(guessLanguage(text).first().model, model);
    }

    void noLettersTellNothing()
    {
        const QList<LanguageScore> scores = guessLanguage(u"1234 — 漢字"_s);
        QCOMPARE(scores.size(), 8);
        QCOMPARE(scores.first().bits, scores.last().bits);
    }

    void surerForeignWordsAreTaken()
    {
        Reading russian;
        russian.words = {word(u"Команда"_s, 95, 0, 100), word(u"{ор"_s, 40, 110, 150)};
        Reading english;
        english.words = {word(u"KomaHga"_s, 30, 0, 100), word(u"top"_s, 92, 110, 150)};
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), u"Команда top"_s);
    }

    void ownWordsAreKept()
    {
        Reading russian;
        russian.words = {word(u"Сохранить"_s, 80, 0, 100), word(u"файл"_s, 78, 110, 150)};
        Reading english;
        english.words = {word(u"CoxpaHuTb"_s, 70, 0, 100), word(u"gain"_s, 80, 110, 150)};
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), russian.text());
    }

    void capitalsThatLookAlikeAreLatin()
    {
        Reading russian;
        russian.words = {word(u"Флаги"_s, 95, 0, 100), word(u"СТК"_s, 90, 110, 150)};
        Reading english;
        english.words = {word(u"®nary"_s, 30, 0, 100), word(u"GTK"_s, 85, 110, 150)};
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), u"Флаги GTK"_s);
    }

    void listedWordsAreTakenAgainstUnlistedOnes()
    {
        Reading russian;
        russian.words = {word(u"Клавиша"_s, 95, 0, 100), word(u"Ноте"_s, 92, 110, 150)};
        russian.words.first().isListed = true;
        Reading english;
        english.words = {word(u"Knabuwa"_s, 40, 0, 100), word(u"Home"_s, 88, 110, 150)};
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), russian.text());
        english.words.last().isListed = true;
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), u"Клавиша Home"_s);
        russian.words.last().isListed = true;
        QCOMPARE(mergedReading(russian, english, Script::Cyrillic).text(), russian.text());
    }

    void numbersAreThoseOfTheLatinModel()
    {
        Reading chinese;
        chinese.words = {word(u"2918-98-95"_s, 90, 0, 100), word(u"資料"_s, 90, 110, 150)};
        Reading english;
        english.words = {word(u"2018-08-05"_s, 88, 0, 100), word(u"BR"_s, 30, 110, 150)};
        QCOMPARE(mergedReading(chinese, english, Script::TraditionalHan).text(),
                 u"2018-08-05 資料"_s);
        english.words.first().confidence = 70;
        QCOMPARE(mergedReading(chinese, english, Script::TraditionalHan).text(), chinese.text());
    }

    void datesInArabicAreInOrder()
    {
        const auto repaired = [](const QStringList &parts) {
            return repairedText(words(parts), Script::Arabic);
        };
        QCOMPARE(repaired({u"شريط"_s, u"23-09-2016"_s}), u"شريط 2016-09-23"_s);
        QCOMPARE(repaired({u"شريط"_s, u"8/9/2007"_s}), u"شريط 8/9/2007"_s);
        QCOMPARE(repaired({u"2016-09-23"_s, u"شريط"_s}), u"2016-09-23 شريط"_s);
        QCOMPARE(repaired({u"شريط"_s, u"KVM"_s, u"1-2"_s}), u"شريط KVM 1-2"_s);
    }

    void blanksBetweenIdeographsGo()
    {
        QCOMPARE(repairedText(words({u"漢字"_s, u"仮名"_s}), Script::Japanese), u"漢字仮名"_s);
        QCOMPARE(repairedText(words({u"打开"_s, u"PDF"_s, u"文件"_s}), Script::SimplifiedHan),
                 u"打开 PDF 文件"_s);
        QCOMPARE(repairedText(words({u"파일"_s, u"열기"_s}), Script::Korean), u"파일 열기"_s);
    }

    void chineseMarksAreWideWhereThereIsRoom()
    {
        const auto placed = [](const QString &text, int left, int right) {
            ReadWord result = word(text, 90, left, right);
            result.box.top = 0;
            result.box.bottom = 30;
            return result;
        };
        const auto repaired = [](const QList<ReadWord> &list, Script script) {
            return repairedText(Reading{{}, list}, script);
        };
        const ReadWord last = placed(u"容量"_s, 90, 150);
        QCOMPARE(
            repaired({placed(u"新增"_s, 0, 60), placed(u","_s, 62, 66), placed(u"容量"_s, 70, 130)},
                     Script::TraditionalHan),
            u"新增 , 容量"_s);
        QCOMPARE(repaired({placed(u"新增,"_s, 0, 65), last}, Script::TraditionalHan),
                 u"新增，容量"_s);
        QCOMPARE(repaired({placed(u"新"_s, 0, 30), placed(u","_s, 40, 44), last},
                          Script::TraditionalHan),
                 u"新，容量"_s);
        QCOMPARE(repaired({placed(u"新增,"_s, 0, 86), last}, Script::SimplifiedHan),
                 u"新增, 容量"_s);
        QCOMPARE(repaired({placed(u"尺寸:"_s, 0, 70)}, Script::SimplifiedHan), u"尺寸："_s);
        QCOMPARE(repaired({placed(u"變更:"_s, 0, 70), placed(u"60%"_s, 90, 140)},
                          Script::TraditionalHan),
                 u"變更: 60%"_s);
        QCOMPARE(repaired({placed(u"影:"_s, 0, 40)}, Script::Japanese), u"影:"_s);
    }

    void directionMarksGo()
    {
        QCOMPARE(repairedText(words({u"\u200fنص\u200e"_s}), Script::Arabic), u"نص"_s);
    }

    void codeKeepsItsIndentation()
    {
        const auto placed = [](int column, int row, const QString &text) {
            return PlacedText{
                {10 + 8 * column, 20 * row, 10 + 8 * (column + int(text.size())), 20 * row + 14},
                text};
        };
        QCOMPARE(
            indentations({placed(0, 0, u"def width(self):"_s), placed(4, 1, u"if self.empty():"_s),
                          placed(8, 2, u"return 0"_s), placed(4, 3, u"return self.right"_s)}),
            (std::vector<int>{0, 4, 8, 4}));
    }

    void noughtsOfSourceCodeArePutRight()
    {
        const auto repaired = [](const QString &text) {
            return repairedText(words({text}), Script::Latin);
        };
        QCOMPARE(repaired(u"mask & Ox49f;"_s), u"mask & 0x49f;"_s);
        QCOMPARE(repaired(u"*at != '\\@'"_s), u"*at != '\\0'"_s);
        QCOMPARE(repaired(u"list[@] ?? @;"_s), u"list[0] ?? 0;"_s);
        QCOMPARE(repaired(u"while (n > O && m)"_s), u"while (n > 0 && m)"_s);
        for (const QString &right : {u"name@host"_s, u"\"${list[@]}\""_s, u"Oxford"_s, u"5 × O2"_s,
                                     u"@ home"_s, u"BoxO1"_s}) {
            QCOMPARE(repaired(right), right);
        }
    }

    void dotsAreThreeOrOne()
    {
        QCOMPARE(repairedText(words({u"삭제"_s, u"중.…"_s}), Script::Korean), u"삭제 중..."_s);
        QCOMPARE(repairedText(words({u"Open…"_s}), Script::Latin), u"Open…"_s);
    }

    void linesFromTheRightAreNotIndented()
    {
        // Their left ends differ as right ends of others do.
        QCOMPARE(indentations({{{60, 0, 220, 14}, u"بدل شريط البحث هنا"_s},
                               {{90, 20, 220, 34}, u"منزلقات لعرضها"_s},
                               {{40, 40, 220, 54}, u"استخدام المعالج الآن"_s}}),
                 (std::vector<int>{0, 0, 0}));
    }

    void proseIsNotIndented()
    {
        QCOMPARE(indentations({{{10, 0, 210, 14}, u"A centred heading"_s},
                               {{40, 20, 180, 34}, u"with a line below it"_s},
                               {{60, 40, 250, 54}, u"and one more of them"_s}}),
                 (std::vector<int>{0, 0, 0}));
    }

    void tagsFollowTheModels()
    {
        const Languages languages({u"eng"_s, u"arabic"_s, u"osd"_s, u"Latin"_s, u"jpn_vert"_s});
        QCOMPARE(languages.tags(), (QStringList{u"ar-SA"_s, u"ars-SA"_s, u"en-US"_s}));
        QCOMPARE(languages.scripts(), (QList<Script>{Script::Arabic, Script::Latin}));
        QVERIFY(Languages({u"osd"_s}).isEmpty());
    }

    void unknownTagsRestrictNothing()
    {
        const Languages all({u"eng"_s, u"deu"_s, u"rus"_s});
        QCOMPARE(all.restrictedTo({u"xx-XX"_s}).tags(), all.tags());
        QCOMPARE(all.restrictedTo({}).tags(), all.tags());
        QCOMPARE(all.restrictedTo({u"de-DE"_s, u"fr-FR"_s}).tags(), QStringList{u"de-DE"_s});
    }

    void modelsAreSeenWhenTheyAppear()
    {
        const QTemporaryDir folder;
        const ModelFolder models(folder.path());
        QVERIFY(models.installed().isEmpty());
        QVERIFY(!models.has(u"eng"_s));
        QFile file(folder.filePath(u"eng.traineddata"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("not a model");
        file.close();
        QCOMPARE(models.installed(), QStringList{u"eng"_s});
        QVERIFY(models.has(u"eng"_s));
        QVERIFY(models.read(u"eng"_s, Dictionary::Without).part(TrainedData::Network).empty());
        QVERIFY(models.read(u"deu"_s, Dictionary::With).part(TrainedData::Network).empty());
    }

    void modelsOfTheUserComeFirst()
    {
        const QTemporaryDir home;
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
        const auto restore = qScopeGuard([] { qunsetenv("XDG_DATA_HOME"); });
        const QString own = QCoreApplication::applicationDirPath() + u"/../share/vellora/models"_s;
        const QString users = home.filePath(u"vellora/models"_s);
        QCOMPARE(ModelFolder().path(), users);

        const auto put = [](const QString &folder) {
            const QString path = folder + u"/invented.traineddata"_s;
            QFile file(path);
            return QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) ? path : QString();
        };
        const QString inPrefix = put(QDir::cleanPath(own));
        const auto remove = qScopeGuard([&inPrefix] { QFile::remove(inPrefix); });
        QCOMPARE(ModelFolder().fileOf(u"invented"_s), inPrefix);
        const QString inHome = put(users);
        QCOMPARE(ModelFolder().fileOf(u"invented"_s), inHome);
        QCOMPARE(ModelFolder().installed().count(u"invented"_s), 1);
    }

    void dictionariesAreLeftOut()
    {
        const ModelFolder models;
        if (!models.has(u"eng"_s)) {
            QSKIP("needs the English model");
        }
        const TrainedData whole = models.read(u"eng"_s, Dictionary::With);
        const TrainedData small = models.read(u"eng"_s, Dictionary::Without);
        QVERIFY(!whole.part(TrainedData::Words).empty());
        QVERIFY(small.part(TrainedData::Words).empty());
        QVERIFY(small.part(TrainedData::Numbers).empty());
        QVERIFY(small.part(TrainedData::Punctuation).empty());
        QVERIFY(!small.part(TrainedData::Network).empty());
        QCOMPARE(small.part(TrainedData::Network).size(), whole.part(TrainedData::Network).size());
    }
};

QTEST_GUILESS_MAIN(TextRecognitionTextTest)
#include "TextRecognitionTextTest.moc"
