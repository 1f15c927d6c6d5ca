// SPDX-License-Identifier: MIT
#include "ChineseGuess.h"

#include "ChineseProfiles.h"

#include <QHash>

#include <utility>

namespace recognition {

namespace {

constexpr qsizetype pairLength = 2;

/// By pair, in simplified and in traditional Chinese.
QHash<QString, std::pair<int, int>> readProfiles()
{
    constexpr std::size_t itemLength = pairLength + 2;
    static_assert(chineseProfiles.size() % itemLength == 0);
    QHash<QString, std::pair<int, int>> profiles;
    for (std::size_t at = 0; at < chineseProfiles.size(); at += itemLength) {
        const auto *item = reinterpret_cast<const QChar *>(chineseProfiles.data()) + at;
        profiles.insert(QString(item, pairLength),
                        {item[pairLength].unicode() - u'a', item[pairLength + 1].unicode() - u'a'});
    }
    return profiles;
}

} // namespace

int familiarity(const QString &text, Script form)
{
    static const QHash<QString, std::pair<int, int>> profiles = readProfiles();
    int sum = 0;
    for (qsizetype i = 0; i + pairLength <= text.size(); ++i) {
        const auto [simplified, traditional] = profiles.value(text.mid(i, pairLength));
        sum += form == Script::SimplifiedHan ? simplified : traditional;
    }
    return sum;
}

} // namespace recognition
