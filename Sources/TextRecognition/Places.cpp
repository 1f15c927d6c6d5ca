// SPDX-License-Identifier: MIT
#include "Places.h"

#include <algorithm>

namespace recognition {

namespace {

bool standTogether(const Box &a, const Box &b)
{
    return 10 * horizontalOverlap(a, b) > 4 * std::min(a.width(), b.width());
}

} // namespace

std::vector<Place> placesOf(const Reading &base, const Reading &other)
{
    std::vector<Place> places;
    const auto add = [&places](const ReadWord &word, QList<ReadWord> Place::*list) {
        Place mine;
        mine.box = word.box;
        std::vector<Place> apart;
        for (Place &place : places) {
            if (!standTogether(place.box, mine.box)) {
                apart.push_back(std::move(place));
                continue;
            }
            mine.box.unite(place.box);
            mine.base.append(place.base);
            mine.other.append(place.other);
        }
        (mine.*list).append(word);
        apart.push_back(std::move(mine));
        places = std::move(apart);
    };
    for (const ReadWord &word : base.words) {
        add(word, &Place::base);
    }
    for (const ReadWord &word : other.words) {
        add(word, &Place::other);
    }
    return places;
}

double confidence(const QList<ReadWord> &words)
{
    return Reading{{}, words}.confidence();
}

} // namespace recognition
