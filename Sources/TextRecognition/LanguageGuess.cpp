// SPDX-License-Identifier: MIT
#include "LanguageGuess.h"

#include "LanguageProfiles.h"
#include "Script.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace recognition {

namespace {

constexpr qsizetype groupLength = 3;
using Levels = std::array<int, profileLanguages.size()>;

QHash<QString, Levels> readProfiles()
{
    constexpr std::size_t itemLength = groupLength + profileLanguages.size();
    static_assert(languageProfiles.size() % itemLength == 0);
    QHash<QString, Levels> profiles;
    for (std::size_t at = 0; at < languageProfiles.size(); at += itemLength) {
        Levels levels{};
        for (std::size_t i = 0; i < levels.size(); ++i) {
            levels[i] = languageProfiles[at + groupLength + i] - u'a';
        }
        profiles.insert(
            QString(reinterpret_cast<const QChar *>(languageProfiles.data()) + at, groupLength),
            levels);
    }
    return profiles;
}

/// The text's words in small letters with one blank before, between and after them.
QString words(const QString &text)
{
    QString result(u' ');
    for (QChar c : text) {
        // Its small letter would be two characters.
        if (c == QChar(0x130)) {
            c = u'i';
        }
        if (isLatin(c.unicode())) {
            result += c.toLower();
        } else if (!result.endsWith(u' ')) {
            result += u' ';
        }
    }
    return result + u' ';
}

} // namespace

QList<LanguageScore> guessLanguage(const QString &text)
{
    static const QHash<QString, Levels> profiles = readProfiles();
    Levels sums{};
    const QString letters = words(text);
    for (qsizetype i = 0; i + groupLength <= letters.size(); ++i) {
        const auto found = profiles.constFind(letters.mid(i, groupLength));
        if (found == profiles.constEnd()) {
            continue;
        }
        for (std::size_t k = 0; k < sums.size(); ++k) {
            sums[k] += (*found)[k];
        }
    }
    QList<LanguageScore> scores;
    for (std::size_t k = 0; k < sums.size(); ++k) {
        const std::string_view model = profileLanguages[k];
        scores.append(
            {QString::fromLatin1(model.data(), qsizetype(model.size())), double(sums[k])});
    }
    std::stable_sort(
        scores.begin(), scores.end(),
        [](const LanguageScore &a, const LanguageScore &b) { return a.bits > b.bits; });
    return scores;
}

} // namespace recognition
