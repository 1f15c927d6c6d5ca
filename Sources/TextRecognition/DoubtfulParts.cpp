// SPDX-License-Identifier: MIT
#include "DoubtfulParts.h"

#include "LineImage.h"

#include <algorithm>

namespace recognition {

namespace {

/// A word between two doubtful ones is doubtful too if it is less sure than this: a word of another
/// script is often read as several, and some of them by chance with confidence.
constexpr double sureBetween = 90;

/// How far words' places may be off, and how wide gaps between words mostly are, in columns.
constexpr int reach = preparedLetterHeight / 2;
constexpr int wideGap = preparedLetterHeight / 4;

/// Whether another script's model is to be asked about a word though its own model is sure: about
/// Cyrillic or Latin ones that are in no list, and about numbers. The models of Latin script read
/// those best; others see 9 in a 0 with a stroke, or more digits in a per cent sign.
bool isWorthAsking(const ReadWord &word, TwoScripts scripts)
{
    const int letters = countLetters(word.text, scripts.first).all();
    if (scripts.first == Script::Cyrillic) {
        // Of SSD it is sure as $$0.
        return !word.isListed && (letters > 1 || word.text.contains(u'$'));
    }
    if (scripts.first == Script::Latin) {
        return scripts.second == Script::Cyrillic && !word.isListed && letters > 2;
    }
    return isNumber({word}) && word.text.size() > 1;
}

/// Quotation marks and brackets, which belong to what they stand beside.
bool isEnclosing(const ReadWord &word)
{
    return std::all_of(word.text.cbegin(), word.text.cend(), [](QChar c) {
        return c == u'\'' || c == u'"' || c.category() == QChar::Punctuation_Open ||
               c.category() == QChar::Punctuation_Close ||
               c.category() == QChar::Punctuation_InitialQuote ||
               c.category() == QChar::Punctuation_FinalQuote;
    });
}

struct Gap
{
    int middle = 0;
    int width = 0;
};

/// The widest gap in the ink from column `left` to `right`.
Gap widestGap(const GreyImage &picture, int left, int right)
{
    Gap widest{(left + right) / 2, 0};
    int start = left;
    for (int x = left; x <= right; ++x) {
        if (x < right && isBlankColumn(picture, x)) {
            continue;
        }
        if (x - start > widest.width) {
            widest = {(start + x) / 2, x - start};
        }
        start = x + 1;
    }
    return widest;
}

/// Where one word ends and the next one begins: in the widest gap between their places, as between
/// two words may stand what the model did not read. The places may be a few columns off, so that a
/// gap near them is taken if it is wide for one between words.
int borderBetween(const GreyImage &picture, const ReadWord &word, const ReadWord &next)
{
    const int left = std::min(word.box.right, next.box.left);
    const int right = std::max(word.box.right, next.box.left);
    const Gap between = widestGap(picture, left, right);
    const Gap near = widestGap(picture, std::max(word.box.left, left - reach),
                               std::min(next.box.right, right + reach));
    return near.width >= wideGap && near.width > 2 * between.width ? near.middle : between.middle;
}

/// Which of `words`, from the left, are doubtful.
std::vector<bool> doubtsOf(const QList<ReadWord> &words, TwoScripts scripts, double sure)
{
    std::vector<bool> asked;
    for (const ReadWord &word : words) {
        asked.push_back(word.confidence < sure || isWorthAsking(word, scripts));
    }
    std::vector<bool> doubts = asked;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const ReadWord &word = words[qsizetype(i)];
        const bool before = i > 0 && asked[i - 1];
        const bool after = i + 1 < asked.size() && asked[i + 1];
        if ((before && after && word.confidence < sureBetween) ||
            ((before || after) && isEnclosing(word))) {
            doubts[i] = true;
        }
    }
    return doubts;
}

} // namespace

bool isNumber(const QList<ReadWord> &words)
{
    bool hasDigit = false;
    for (const ReadWord &word : words) {
        for (const QChar c : word.text) {
            if (c.isLetter() || (c.isDigit() && c > u'9')) {
                return false;
            }
            hasDigit = hasDigit || c.isDigit();
        }
    }
    return hasDigit;
}

std::vector<LinePart> doubtfulParts(QList<ReadWord> words, TwoScripts scripts,
                                    const GreyImage &picture, double sure)
{
    std::stable_sort(words.begin(), words.end(), [](const ReadWord &a, const ReadWord &b) {
        return a.box.centreX2() < b.box.centreX2();
    });
    const std::vector<bool> doubts = doubtsOf(words, scripts, sure);
    std::vector<LinePart> parts;
    int border = 0;
    bool goesOn = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const int left = border;
        border = i + 1 < words.size()
                     ? std::max(left, borderBetween(picture, words[i], words[i + 1]))
                     : picture.width;
        if (!doubts[std::size_t(i)] || border == left) {
            goesOn = goesOn && border == left;
            continue;
        }
        if (!goesOn) {
            parts.push_back({left, border, false});
        }
        goesOn = true;
        parts.back().right = border;
        parts.back().hasNumber = parts.back().hasNumber || isNumber({words[i]});
    }
    return parts;
}

} // namespace recognition
