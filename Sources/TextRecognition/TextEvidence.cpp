// SPDX-License-Identifier: MIT
#include "TextEvidence.h"

#include <QSet>

namespace recognition {

bool isSurelyText(const Reading &reading)
{
    constexpr double sure = 80;
    constexpr qsizetype fewestLetters = 3;
    if (reading.confidence() < sure) {
        return false;
    }
    QSet<QChar> letters;
    for (const ReadWord &word : reading.words) {
        for (const QChar c : word.text) {
            if (c.isLetter()) {
                letters.insert(c.toLower());
            }
        }
    }
    return letters.size() >= fewestLetters;
}

} // namespace recognition
