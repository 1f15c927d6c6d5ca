// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace recognition {

/// The writing systems that the models are chosen by.
enum class Script { Latin, Arabic, Cyrillic, Japanese, SimplifiedHan, TraditionalHan, Korean };

bool isArabic(char32_t c);
bool isCyrillic(char32_t c);
bool isLatin(char32_t c);
bool isHangul(char32_t c);
bool isKana(char32_t c);
bool isHan(char32_t c);
/// What Chinese and Japanese set without blanks: ideographs, kana and full-width marks.
bool isWideEastAsian(char32_t c);
bool isDigit(char32_t c);

/// Whether `c` is a letter of `script`'s own, not one that any of its texts may borrow.
bool belongsTo(char32_t c, Script script);

/// How many letters and digits of a text belong where.
struct LetterCount
{
    int latin = 0;
    /// Letters of the script asked for.
    int own = 0;
    int digits = 0;
    int other = 0;

    int all() const { return latin + own + digits + other; }
};

/// Counts `text`; for Latin script `own` stays 0.
LetterCount countLetters(const QString &text, Script script);

} // namespace recognition
