// SPDX-License-Identifier: MIT
#include "HanChooser.h"

#include "Places.h"

#include <algorithm>

namespace recognition {

namespace {

/// One kana among so many characters makes a page Japanese, if it has at least a few.
constexpr qsizetype charactersPerKana = 5;
constexpr int fewestKana = 3;

/// Words are counted from this confidence of the Japanese model.
constexpr double sureJapanese = 70;

/// Lines that tell Chinese from Japanese, and how much kana make it surer.
constexpr std::size_t hanLines = 4;
constexpr double kanaBonus = 10;

/// A line counts against a model by no more than this, or one with foreign words would decide.
constexpr double mostHanDoubt = 10;

/// A place counts by no more than this for either form: a word of several characters is only as
/// sure as the least sure of them, which may be one that both read alike.
constexpr double mostFormLead = 20;

/// Lines that tell simplified from traditional characters.
constexpr std::size_t formLines = 8;

/// By less than this in all, neither form leads.
constexpr double clearFormLead = 3;

/// Japanese readings with this share of characters that simplified Chinese does not write, and at
/// least so many, are of text that is not simplified. Of simplified text they have less than half.
constexpr double unsimplifiedShare = 0.18;
constexpr int fewestUnsimplified = 3;

/// Whether simplified Chinese writes `c` otherwise. The commonest characters of menus, messages
/// and prose only.
bool writtenInFull(QChar c)
{
    static const QString characters = QStringLiteral(
        u"電車東見長門問間開閉聞閱書馬風話語設計記認試該請議護讀調課論證許訪評詞詳說誤諾謝"
        u"譯變讓貝負財貨質資賓購貼貴費買賣賽贊軍軌軟載輕輪輸轉辦農運過達違遠適選還邊鄉郵鄰"
        u"醫釋針釣鈕鉛銀銅鋪錄錢錯鍵鎖鏈鏡鐘鐵鑑鑰陳陰陽隊階際隨險隱雙雜離難雲靈靜響頁頂項"
        u"順須預頭題額顏願類顯飛飯飲館驗驅體鬆魚鳥麗點黨齊齒齡龍個們倉備傳債傾僅優儲兒內兩"
        u"冊凍創劃劇動務勝勞勢區協單卻參員嗎嘗嚴國圍園圓圖團執報場塊壓壞壯夠夢奪奮婦媽學寫"
        u"寧實審對導將專尋屬島嶺師帳帶幫幹廣廢應張強彈後從徵德態慣憶戲戶拋換損搖擇擊擔據擴"
        u"擺攝敗數斷於時晉會條業極構標樣樂樓機檔檢檯檻權歐歲歷歸殘殺氣決沒況減測準溫滅滾滿"
        u"漢潔濟灣為無煙營牆狀獎獨獲現環產畢異發盡監盤眾矚確碼禮種積穩窗競筆節範築簡簽籠紀"
        u"約紅級紙細終組結給統經綜綠維網緊線練編緩縮總績織繪繼續缺羅義習聯聲職聽肅脈腦腳膽"
        u"臨與興舉舊艙芻莊華萬葉號處虛蘭術補裝製複襲規視親覺覽觀觸訂");
    return characters.contains(c);
}

bool hasHan(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return isHan(c.unicode()); });
}

int kanaIn(const QString &text)
{
    return int(
        std::count_if(text.cbegin(), text.cend(), [](QChar c) { return isKana(c.unicode()); }));
}

/// What the Japanese model reads in samples of several lines.
struct JapaneseText
{
    QString all;
    /// The words that it is sure of.
    QString sure;

    /// Whether there are so many kana that it cannot be Chinese.
    bool isJapanese() const
    {
        const qsizetype kana = kanaIn(sure);
        return kana >= fewestKana && charactersPerKana * kana >= sure.size();
    }
    /// Whether there are so many full forms that it cannot be simplified Chinese.
    bool isUnsimplified() const
    {
        const auto isHanCharacter = [](QChar c) {
            return isHan(c.unicode());
        };
        const auto full = std::count_if(all.cbegin(), all.cend(), writtenInFull);
        const auto han = std::count_if(all.cbegin(), all.cend(), isHanCharacter);
        return full >= fewestUnsimplified && double(full) >= unsimplifiedShare * double(han);
    }
};

JapaneseText japaneseText(const std::vector<LineTask *> &tasks, std::size_t lines,
                          const QString &model, EngineCache &engines, Workers &workers)
{
    std::vector<Reading> readings(lines);
    workers.forEach(lines, [&](std::size_t i) {
        readings[i] = tasks[i]->sample(engines, model, hanSampleLength, false);
    });
    JapaneseText text;
    for (const Reading &reading : readings) {
        for (const ReadWord &word : reading.words) {
            text.all += word.text;
            if (word.confidence >= sureJapanese) {
                text.sure += word.text;
            }
        }
    }
    return text;
}

/// How much surer one Chinese model is than the other at the places that they read differently:
/// where they agree, neither says anything of which form is written.
double formEvidence(const Reading &mine, const Reading &others)
{
    double sum = 0;
    for (const Place &place : placesOf(mine, others)) {
        const QString a = Reading{{}, place.base}.text();
        const QString b = Reading{{}, place.other}.text();
        if (a.isEmpty() || b.isEmpty() || a == b || !hasHan(a) || !hasHan(b)) {
            continue;
        }
        const double lead = confidence(place.base) - confidence(place.other);
        sum += std::clamp(lead, -mostFormLead, mostFormLead);
    }
    return sum;
}

/// The Chinese model among `models` that is surer of the forms of characters; `best` unless both
/// are there and one is clearly surer.
QString chineseModel(const std::vector<LineTask *> &tasks, const QStringList &models,
                     const QString &best, EngineCache &engines)
{
    QString other;
    for (const QString &model : models) {
        if (model != best && Languages::scriptOf(model) != Script::Japanese) {
            other = model;
        }
    }
    if (other.isEmpty()) {
        return best;
    }
    double evidence = 0;
    for (std::size_t line = 0; line < std::min(tasks.size(), formLines); ++line) {
        LineTask &task = *tasks[line];
        const auto reading = [&](const QString &model) {
            return task.length() <= hanSampleLength
                       ? task.read(engines, model)
                       : task.sample(engines, model, hanSampleLength, false);
        };
        evidence += formEvidence(reading(best), reading(other));
    }
    return evidence < -clearFormLead ? other : best;
}

} // namespace

QString hanModel(const std::vector<LineTask *> &tasks, const QStringList &candidates,
                 EngineCache &engines, Workers &workers)
{
    const std::size_t lines = std::min(tasks.size(), formLines);
    QStringList models = candidates;
    for (const QString &model : candidates) {
        if (Languages::scriptOf(model) != Script::Japanese || candidates.size() == 1) {
            continue;
        }
        const JapaneseText text = japaneseText(tasks, lines, model, engines, workers);
        if (text.isJapanese()) {
            return model;
        }
        if (text.isUnsimplified()) {
            models.removeIf([](const QString &other) {
                return Languages::scriptOf(other) == Script::SimplifiedHan;
            });
        }
    }
    const auto count = std::size_t(models.size());
    std::vector<double> scores(lines * count, 0);
    // Model by model: a copy of each is enough, and they are big.
    workers.forEach(count, [&](std::size_t k) {
        const QString &model = models[qsizetype(k)];
        for (std::size_t line = 0; line < lines; ++line) {
            const Reading reading = tasks[line]->sample(engines, model, hanSampleLength, false);
            const int kana = kanaIn(reading.text());
            // A Chinese model cannot read kana, and the Japanese one sees few in Chinese.
            const bool japanese = Languages::scriptOf(model) == Script::Japanese;
            const double bonus =
                japanese && charactersPerKana * kana > reading.characters() ? kanaBonus : 0;
            scores[line * count + k] = reading.confidence() + bonus;
        }
    });
    std::vector<double> sums(count, 0);
    for (std::size_t line = 0; line < lines; ++line) {
        const auto first = scores.begin() + std::ptrdiff_t(line * count);
        const double best = *std::max_element(first, first + std::ptrdiff_t(count));
        const double weight = std::min(20.0, tasks[line]->length());
        for (std::size_t k = 0; k < count; ++k) {
            sums[k] -= weight * std::min(mostHanDoubt, best - scores[line * count + k]);
        }
    }
    const QString &best = models[std::max_element(sums.begin(), sums.end()) - sums.begin()];
    return Languages::scriptOf(best) == Script::Japanese
               ? best
               : chineseModel(tasks, models, best, engines);
}

} // namespace recognition
