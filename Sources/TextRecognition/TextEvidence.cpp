// SPDX-License-Identifier: MIT
#include "TextEvidence.h"

#include <QSet>

namespace recognition {

bool isSurelyText(const Reading &reading)
{
    constexpr double sure = 80;
    constexpr qsizetype fewestLetters = 3;
    // Dots and rules are read as a nought or a one again and again.
    constexpr qsizetype fewestDigits = 4;
    if (reading.confidence() < sure) {
        return false;
    }
    QSet<QChar> letters;
    QSet<QChar> digits;
    for (const ReadWord &word : reading.words) {
        for (const QChar c : word.text) {
            if (c.isLetter()) {
                letters.insert(c.toLower());
            } else if (c.isDigit()) {
                digits.insert(c);
            }
        }
    }
    return letters.size() >= fewestLetters || digits.size() >= fewestDigits;
}

} // namespace recognition
