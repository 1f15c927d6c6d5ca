// SPDX-License-Identifier: MIT
#include "Apostrophe.h"

#include <array>
#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

namespace recognition {

namespace {

/// Darker pixels are ink.
constexpr int ink = 165;

/// Less high, in pixels, no lean can be measured.
constexpr int leastHeight = 5;

constexpr QChar straight = u'\'';
constexpr QChar curled = u'\u2019';

/// The curled ones of 40 pictures leaned by -0.07 or more, of a light serif type by -0.02; the
/// straight ones by -0.05 at most.
constexpr double curledLean = -0.06;
constexpr double straightLean = -0.01;

/// The ink pixel of the upper rows that is nearest to the middle of `place`.
std::optional<std::pair<int, int>> inkNearMiddle(const GreyImage &line, const Box &place,
                                                 int bottom)
{
    std::optional<std::pair<int, int>> found;
    int nearest = place.width();
    for (int y = place.top; y < bottom; ++y) {
        for (int x = place.left; x < place.right; ++x) {
            const int distance = std::abs(2 * x - place.centreX2());
            if (line.at(x, y) < ink && distance < nearest) {
                nearest = distance;
                found = {x, y};
            }
        }
    }
    return found;
}

} // namespace

std::optional<double> leanOfApostrophe(const GreyImage &line, const Box &outer)
{
    const Box place{std::max(outer.left, 0), std::max(outer.top, 0),
                    std::min(outer.right, line.width), std::min(outer.bottom, line.height)};
    // Apostrophes stand above the middle of the line.
    const int bottom = place.top + place.height() * 6 / 10;
    const auto start = inkNearMiddle(line, place, bottom);
    if (!start) {
        return std::nullopt;
    }
    std::set<std::pair<int, int>> pixels{*start};
    std::vector<std::pair<int, int>> next{*start};
    Box box{start->first, start->second, start->first + 1, start->second + 1};
    while (!next.empty()) {
        const auto [x, y] = next.back();
        next.pop_back();
        box.unite({x, y, x + 1, y + 1});
        if (box.bottom >= bottom || box.width() > place.height() / 3) {
            return std::nullopt;
        }
        for (const auto &[dx, dy] :
             std::array<std::pair<int, int>, 4>{{{-1, 0}, {1, 0}, {0, -1}, {0, 1}}}) {
            const std::pair at{x + dx, y + dy};
            if (at.first >= 0 && at.first < line.width && at.second >= place.top &&
                at.second < place.bottom && line.at(at.first, at.second) < ink &&
                pixels.insert(at).second) {
                next.push_back(at);
            }
        }
    }
    if (box.height() < leastHeight) {
        return std::nullopt;
    }
    const auto middleOf = [&](int top, int end) {
        double weight = 0;
        double sum = 0;
        for (const auto &[x, y] : pixels) {
            if (y >= top && y < end) {
                weight += 255 - line.at(x, y);
                sum += x * (255.0 - line.at(x, y));
            }
        }
        return weight > 0 ? sum / weight : 0;
    };
    const int third = box.height() / 3;
    return (middleOf(box.bottom - third, box.bottom) - middleOf(box.top, box.top + third)) /
           box.height();
}

bool isApostrophe(const QString &character)
{
    return character.size() == 1 && (character.front() == straight || character.front() == curled);
}

void Apostrophes::settle(QList<QString> &words) const
{
    bool hasStraight = false;
    bool hasCurled = false;
    for (const std::optional<double> &lean : m_leans) {
        hasStraight = hasStraight || (lean && *lean > straightLean);
        hasCurled = hasCurled || (lean && *lean < curledLean);
    }
    qsizetype at = 0;
    for (QString &word : words) {
        for (QChar &character : word) {
            if ((character != straight && character != curled) || at == m_leans.size()) {
                continue;
            }
            const std::optional<double> &lean = m_leans[at++];
            if (lean ? *lean < curledLean : hasCurled && !hasStraight) {
                character = curled;
            } else if (lean ? *lean > straightLean : hasStraight && !hasCurled) {
                character = straight;
            }
        }
    }
}

} // namespace recognition
