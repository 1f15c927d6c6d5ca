// SPDX-License-Identifier: MIT
// Which of two readings is believed: words of two scripts on one place, the two forms of Chinese.

#include "SampleWord.h"
#include "TextRecognition/ChineseGuess.h"
#include "TextRecognition/HanChooser.h"
#include "TextRecognition/WordChoice.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace recognition;

Q_DECLARE_METATYPE(recognition::Script)

namespace {

Place place(const QString &base, double baseSure, const QString &other, double otherSure)
{
    return {{0, 0, 100, 30}, {word(base, baseSure, 0, 100)}, {word(other, otherSure, 0, 100)}};
}

Reading reading(const QString &text, double sure)
{
    return {{}, {word(text, sure, 0, 100)}};
}

constexpr auto simplified = "chi_sim"_L1;
constexpr auto traditional = "chi_tra"_L1;

} // namespace

class TextRecognitionChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLikelierWordIsTaken_data()
    {
        QTest::addColumn<Script>("script");
        QTest::addColumn<QString>("base");
        QTest::addColumn<double>("baseSure");
        QTest::addColumn<QString>("other");
        QTest::addColumn<double>("otherSure");
        QTest::addColumn<bool>("takes");
        QTest::newRow("capitals as currency")
            << Script::Cyrillic << u"($$0)"_s << 60.0 << u"(SSD)"_s << 93.0 << true;
        QTest::newRow("small letters that look alike")
            << Script::Cyrillic << u"уууу"_s << 92.0 << u"yyyy"_s << 90.0 << true;
        QTest::newRow("Korean number that is a name")
            << Script::Korean << u"550"_s << 92.0 << u"SSD"_s << 90.0 << true;
        QTest::newRow("Korean number")
            << Script::Korean << u"550"_s << 92.0 << u"55O"_s << 60.0 << false;
        QTest::newRow("end of a comment")
            << Script::Korean << u"*,"_s << 50.0 << u"*/"_s << 37.0 << true;
        QTest::newRow("no end of a comment")
            << Script::Korean << u"로그"_s << 92.0 << u"*/"_s << 37.0 << false;
    }

    void theLikelierWordIsTaken()
    {
        QFETCH(Script, script);
        QFETCH(QString, base);
        QFETCH(double, baseSure);
        QFETCH(QString, other);
        QFETCH(double, otherSure);
        QFETCH(bool, takes);
        QCOMPARE(takesOther(place(base, baseSure, other, otherSure), script), takes);
    }

    void smallLettersOfListedWordsAreCyrillic()
    {
        Place asked = place(u"ухо"_s, 90, u"yxo"_s, 88);
        QVERIFY(takesOther(asked, Script::Cyrillic));
        asked.base.front().isListed = true;
        QVERIFY(!takesOther(asked, Script::Cyrillic));
    }

    void wordsTellTheFormOfChinese()
    {
        // "Set the default file" as it is said where each form is written, and in the other form.
        QVERIFY(familiarity(u"设置默认文件"_s, Script::SimplifiedHan) >
                familiarity(u"設置默認文件"_s, Script::TraditionalHan));
        QVERIFY(familiarity(u"設定預設檔案"_s, Script::TraditionalHan) >
                familiarity(u"设定预设档案"_s, Script::SimplifiedHan));
        QCOMPARE(familiarity(u"HTML5 あ"_s, Script::SimplifiedHan), 0);
        QCOMPARE(familiarity(u""_s, Script::TraditionalHan), 0);
    }

    void formsAreToldByBothModels()
    {
        QVERIFY(simplifiedLead(reading(u"设置"_s, 90), reading(u"設置"_s, 90)) > 0);
        QVERIFY(simplifiedLead(reading(u"设定"_s, 90), reading(u"設定"_s, 90)) < 0);
        // Unknown words: the surer model.
        QVERIFY(simplifiedLead(reading(u"兰语"_s, 60), reading(u"蘭語"_s, 80)) < 0);
        QCOMPARE(simplifiedLead(reading(u"尼山"_s, 60), reading(u"尼山"_s, 80)), 0.0);
    }

    void theFormThatLeadsIsTaken()
    {
        const QStringList models{simplified, traditional, u"jpn"_s};
        const auto leadOf = [](double lead) {
            return [lead](const QString &, const QString &) {
                return lead;
            };
        };
        QCOMPARE(chineseModel(simplified, models, leadOf(-20)), traditional);
        QCOMPARE(chineseModel(traditional, models, leadOf(20)), simplified);
        QCOMPARE(chineseModel(traditional, models, leadOf(1)), traditional);
        QCOMPARE(chineseModel(u"jpn"_s, models, leadOf(20)), u"jpn"_s);
        QCOMPARE(chineseModel(simplified, {simplified}, leadOf(-20)), simplified);
    }
};

QTEST_GUILESS_MAIN(TextRecognitionChoiceTest)
#include "TextRecognitionChoiceTest.moc"
