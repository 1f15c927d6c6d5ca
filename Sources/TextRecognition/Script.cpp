// SPDX-License-Identifier: MIT
#include "Script.h"

#include <QChar>
#include <QList>

namespace recognition {

namespace {

constexpr bool within(char32_t c, char32_t first, char32_t last)
{
    return c >= first && c <= last;
}

} // namespace

bool isArabic(char32_t c)
{
    return within(c, 0x0600, 0x06ff) || within(c, 0x0750, 0x077f) || within(c, 0xfb50, 0xfdff) ||
           within(c, 0xfe70, 0xfefe);
}

bool isCyrillic(char32_t c)
{
    return within(c, 0x0400, 0x052f);
}

bool isLatin(char32_t c)
{
    return within(c, U'A', U'Z') || within(c, U'a', U'z') ||
           (within(c, 0x00c0, 0x024f) && c != 0xd7 && c != 0xf7) || within(c, 0x1e00, 0x1eff);
}

bool isHangul(char32_t c)
{
    return within(c, 0xac00, 0xd7a3) || within(c, 0x1100, 0x11ff) || within(c, 0x3130, 0x318f);
}

bool isKana(char32_t c)
{
    return within(c, 0x3041, 0x30ff) || within(c, 0x31f0, 0x31ff) || within(c, 0xff66, 0xff9d);
}

bool isHan(char32_t c)
{
    return within(c, 0x3400, 0x9fff) || within(c, 0xf900, 0xfaff) || within(c, 0x20000, 0x2ffff) ||
           c == 0x3005;
}

bool isWideEastAsian(char32_t c)
{
    return within(c, 0x3000, 0x30ff) || isHan(c) || within(c, 0xff00, 0xffef);
}

bool isDigit(char32_t c)
{
    return within(c, U'0', U'9') || within(c, 0x0660, 0x0669) || within(c, 0x06f0, 0x06f9);
}

bool belongsTo(char32_t c, Script script)
{
    switch (script) {
    case Script::Latin:
        return isLatin(c);
    case Script::Arabic:
        return isArabic(c) && !isDigit(c) && QChar::isLetter(c);
    case Script::Cyrillic:
        return isCyrillic(c);
    case Script::Japanese:
        return isKana(c) || isHan(c);
    case Script::SimplifiedHan:
    case Script::TraditionalHan:
        return isHan(c);
    case Script::Korean:
        return isHangul(c);
    }
    return false;
}

LetterCount countLetters(const QString &text, Script script)
{
    LetterCount count;
    for (const char32_t c : text.toUcs4()) {
        if (isLatin(c)) {
            ++count.latin;
        } else if (belongsTo(c, script)) {
            ++count.own;
        } else if (isDigit(c)) {
            ++count.digits;
        } else if (QChar::isLetter(c)) {
            ++count.other;
        }
    }
    return count;
}

} // namespace recognition
