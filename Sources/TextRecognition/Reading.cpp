// SPDX-License-Identifier: MIT
#include "Reading.h"

namespace recognition {

QString Reading::text() const
{
    QString text;
    for (const ReadWord &word : words) {
        if (!text.isEmpty() && word.afterBlank) {
            text += u' ';
        }
        text += word.text;
    }
    return text;
}

int Reading::characters() const
{
    qsizetype count = 0;
    for (const ReadWord &word : words) {
        count += word.text.size();
    }
    return int(count);
}

double Reading::confidence() const
{
    double sum = 0;
    for (const ReadWord &word : words) {
        sum += word.confidence * double(word.text.size());
    }
    const int count = characters();
    return count > 0 ? sum / count : 0;
}

double Reading::leastConfidence() const
{
    double least = words.isEmpty() ? 0 : 100;
    for (const ReadWord &word : words) {
        least = std::min(least, word.confidence);
    }
    return least;
}

} // namespace recognition
