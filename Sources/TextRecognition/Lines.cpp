// SPDX-License-Identifier: MIT
#include "Lines.h"

#include "Effort.h"
#include "RowSplit.h"

#include <cstddef>
#include <cstdlib>
#include <map>

namespace recognition {

namespace {

/// A gap wider than this many letter heights separates columns or cells. Words stand a third of
/// it apart; a full stop of Japanese or Chinese is followed by one letter height of nothing.
constexpr double columnGap = 1.3;

/// The smallest height of a letter, with its edges: 9 px type has letters of 5 to 7 pixels.
constexpr int smallestLetter = 5;

int middleHeight(std::vector<int> heights, double share)
{
    if (heights.empty()) {
        return 0;
    }
    const auto at = heights.begin() + std::ptrdiff_t(double(heights.size() - 1) * share);
    std::nth_element(heights.begin(), at, heights.end());
    return *at;
}

/// Boxes by the horizontal bands they touch, to find neighbours without comparing all with all.
class Bands
{
public:
    explicit Bands(const std::vector<Box> &boxes)
        : m_boxes(boxes)
    {
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            for (int band = boxes[i].top / height; band <= boxes[i].bottom / height; ++band) {
                m_bands[band].push_back(i);
            }
        }
        for (auto &[band, members] : m_bands) {
            std::sort(members.begin(), members.end(), [&boxes](std::size_t a, std::size_t b) {
                return boxes[a].left < boxes[b].left;
            });
        }
    }

    /// Calls `visit` with each pair whose columns overlap or lie at most `reach(a)` apart, the
    /// one further left first. Pairs in several bands come several times.
    template <typename Reach, typename Visit>
    void forEachPair(Reach reach, Visit visit) const
    {
        for (const auto &[band, members] : m_bands) {
            for (std::size_t i = 0; i < members.size(); ++i) {
                checkpoint();
                const int limit = m_boxes[members[i]].right + reach(members[i]);
                for (std::size_t k = i + 1; k < members.size(); ++k) {
                    if (m_boxes[members[k]].left > limit) {
                        break;
                    }
                    visit(members[i], members[k]);
                }
            }
        }
    }

private:
    static constexpr int height = 32;

    const std::vector<Box> &m_boxes;
    std::map<int, std::vector<std::size_t>> m_bands;
};

class Groups
{
public:
    explicit Groups(std::size_t count)
        : m_parents(count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            m_parents[i] = i;
        }
    }
    std::size_t find(std::size_t a)
    {
        while (m_parents[a] != a) {
            a = m_parents[a] = m_parents[m_parents[a]];
        }
        return a;
    }
    void join(std::size_t a, std::size_t b) { m_parents[find(a)] = find(b); }

private:
    std::vector<std::size_t> m_parents;
};

/// Whether two marks stand side by side as letters of one line do.
bool areNeighbours(const Box &a, const Box &b)
{
    const int high = std::max(a.height(), b.height());
    const int low = std::min(a.height(), b.height());
    if (low < smallestLetter || 20 * low < 9 * high) {
        return false;
    }
    if (2 * verticalOverlap(a, b) < low) {
        return false;
    }
    return -horizontalOverlap(a, b) <= columnGap * high;
}

std::vector<TextLine> linesOfLetters(const std::vector<Mark> &marks, std::vector<Mark> &alone)
{
    std::vector<Box> boxes;
    boxes.reserve(marks.size());
    for (const Mark &mark : marks) {
        boxes.push_back(mark.box);
    }
    Groups groups(marks.size());
    Bands(boxes).forEachPair(
        [&boxes](std::size_t i) { return int(boxes[i].height() * columnGap * 2.3); },
        [&](std::size_t i, std::size_t k) {
            if (areNeighbours(boxes[i], boxes[k])) {
                groups.join(i, k);
            }
        });
    std::map<std::size_t, std::vector<Mark>> members;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        members[groups.find(i)].push_back(marks[i]);
    }
    std::vector<TextLine> lines;
    for (auto &[name, group] : members) {
        if (group.size() == 1 && group[0].box.height() < 7) {
            alone.push_back(group[0]);
        } else {
            lines.push_back(lineOf(std::move(group)));
        }
    }
    return lines;
}

/// Gives dots, accents and punctuation to the line they stand next to.
void attach(std::vector<TextLine> &lines, const std::vector<Mark> &small)
{
    // Lines by band, so that only those near are looked at.
    constexpr int band = 64;
    std::map<int, std::vector<std::size_t>> near;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Box &box = lines[i].box;
        for (int b = (box.top - band) / band; b <= (box.bottom + band) / band; ++b) {
            near[b].push_back(i);
        }
    }
    std::vector<std::vector<Mark>> added(lines.size());
    for (const Mark &mark : small) {
        checkpoint();
        const auto candidates = near.find(mark.box.centreY2() / 2 / band);
        if (candidates == near.end()) {
            continue;
        }
        double best = 1e9;
        std::size_t owner = 0;
        for (const std::size_t i : candidates->second) {
            const TextLine &line = lines[i];
            const int height = std::max(line.letterHeight, 1);
            if (mark.box.height() > 1.2 * height) {
                continue;
            }
            const double apart = std::max(0, -horizontalOverlap(mark.box, line.box));
            const double above = std::max(0, -verticalOverlap(mark.box, line.box));
            if (apart > columnGap * height || above > 0.4 * height) {
                continue;
            }
            const double distance = apart + 2 * above;
            if (distance < best) {
                best = distance;
                owner = i;
            }
        }
        if (best < 1e9) {
            added[owner].push_back(mark);
        }
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (added[i].empty()) {
            continue;
        }
        const int height = lines[i].letterHeight;
        std::vector<Mark> marks = std::move(lines[i].marks);
        marks.insert(marks.end(), added[i].begin(), added[i].end());
        lines[i] = lineOf(std::move(marks));
        lines[i].letterHeight = height;
    }
}

/// Drops the shapes of a photograph that stand in line with letters on it but are fainter.
void dropTexture(std::vector<TextLine> &lines)
{
    for (TextLine &line : lines) {
        checkpoint();
        int strongest = 0;
        for (const Mark &mark : line.marks) {
            strongest = std::max(strongest, mark.strength);
        }
        std::vector<Mark> letters;
        for (const Mark &mark : line.marks) {
            if (!mark.textured || 5 * mark.strength >= 3 * strongest) {
                letters.push_back(mark);
            }
        }
        if (letters.size() < line.marks.size()) {
            line = lineOf(std::move(letters));
        }
    }
}

/// Joins pieces of one line that letters alone did not tie: across a dash, an ellipsis, a small
/// word beside a big one.
void joinPieces(std::vector<TextLine> &lines)
{
    while (true) {
        std::vector<Box> boxes;
        boxes.reserve(lines.size());
        for (const TextLine &line : lines) {
            boxes.push_back(line.box);
        }
        Groups groups(lines.size());
        Bands(boxes).forEachPair(
            [&](std::size_t i) { return int(lines[i].letterHeight * columnGap * 2); },
            [&](std::size_t i, std::size_t k) {
                const int high = std::max(lines[i].letterHeight, lines[k].letterHeight);
                const int low = std::min(lines[i].letterHeight, lines[k].letterHeight);
                const int gap = -horizontalOverlap(boxes[i], boxes[k]);
                const int shared = verticalOverlap(boxes[i], boxes[k]);
                const int lower = std::min(boxes[i].height(), boxes[k].height());
                Box both = boxes[i];
                both.unite(boxes[k]);
                const int higher = std::max(boxes[i].height(), boxes[k].height());
                const double reach = 2 * low < high ? 0.7 * columnGap : columnGap;
                if (gap <= reach * high && 5 * shared >= 3 * lower &&
                    both.height() <= std::max(1.35 * higher, 1.6 * high)) {
                    groups.join(i, k);
                }
            });
        std::map<std::size_t, std::vector<std::size_t>> members;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            members[groups.find(i)].push_back(i);
        }
        if (members.size() == lines.size()) {
            break;
        }
        std::vector<TextLine> joined;
        for (const auto &[name, group] : members) {
            if (group.size() == 1) {
                joined.push_back(std::move(lines[group[0]]));
                continue;
            }
            std::vector<Mark> marks;
            for (const std::size_t i : group) {
                marks.insert(marks.end(), lines[i].marks.begin(), lines[i].marks.end());
            }
            joined.push_back(lineOf(std::move(marks)));
        }
        lines = std::move(joined);
    }
}

/// Whether most marks lie within others that lie within others, as the angles of a hatching do; a
/// stroke of a letter has one frame around it at most.
bool isNested(const TextLine &line)
{
    if (line.marks.size() < 6 || line.marks.size() > 200) {
        return false;
    }
    std::size_t nested = 0;
    for (const Mark &mark : line.marks) {
        nested += std::count_if(line.marks.begin(), line.marks.end(), [&mark](const Mark &other) {
                      return other.box.contains(mark.box);
                  }) > 2;
    }
    return 2 * nested > line.marks.size();
}

} // namespace

TextLine lineOf(std::vector<Mark> marks)
{
    TextLine line;
    std::sort(marks.begin(), marks.end(),
              [](const Mark &a, const Mark &b) { return a.box.left < b.box.left; });
    line.box = marks.front().box;
    std::vector<int> heights;
    int high = 0;
    for (const Mark &mark : marks) {
        line.box.unite(mark.box);
        high = std::max(high, mark.box.height());
    }
    for (const Mark &mark : marks) {
        if (3 * mark.box.height() >= high) {
            heights.push_back(mark.box.height());
        }
    }
    line.letterHeight = middleHeight(heights, 0.6);
    line.marks = std::move(marks);
    return line;
}

std::vector<TextLine> findLines(const std::vector<Mark> &marks)
{
    std::vector<Mark> letters;
    std::vector<Mark> small;
    for (const Mark &mark : marks) {
        (mark.box.height() >= smallestLetter ? letters : small).push_back(mark);
    }
    std::vector<TextLine> lines = linesOfLetters(letters, small);
    dropTexture(lines);
    splitRows(lines);
    attach(lines, small);
    joinPieces(lines);
    // A column of icons joins the rows beside it.
    splitRows(lines);
    std::erase_if(lines, [](const TextLine &line) {
        return line.box.height() < smallestLetter || line.box.width() < 3 || isNested(line);
    });
    return lines;
}

} // namespace recognition
