// SPDX-License-Identifier: MIT
#include "Indentation.h"

#include <cmath>
#include <cstdlib>

namespace recognition {

namespace {

/// Shorter lines do not tell the width of a character well enough.
constexpr qsizetype shortest = 8;

/// Fewer lines of one width may be chance.
constexpr std::size_t fewest = 3;

/// Lines of type of one width agree by a few percent (the last character's side bearings), those
/// of other type by chance only.
constexpr double tolerance = 0.05;

/// The width of a character if the line is long enough, else 0.
double advanceOf(const PlacedText &line)
{
    // What is read from the right begins there, however far its left end stands in.
    return line.text.size() < shortest || line.text.contains(u'\t') || line.text.isRightToLeft()
               ? 0
               : double(line.box.width()) / double(line.text.size());
}

double medianAdvance(const std::vector<PlacedText> &lines, std::size_t first, std::size_t last)
{
    std::vector<double> advances;
    for (std::size_t i = first; i < last; ++i) {
        if (const double advance = advanceOf(lines[i]); advance > 0) {
            advances.push_back(advance);
        }
    }
    if (advances.size() < fewest) {
        return 0;
    }
    const auto middle = advances.begin() + std::ptrdiff_t(advances.size() / 2);
    std::nth_element(advances.begin(), middle, advances.end());
    const double advance = *middle;
    const auto alike = std::count_if(advances.begin(), advances.end(), [advance](double a) {
        return std::fabs(a - advance) <= tolerance * advance;
    });
    return 10 * alike >= 8 * std::ptrdiff_t(advances.size()) ? advance : 0;
}

/// Whether `next` stands below `line` as the next line of the same block.
bool follows(const Box &line, const Box &next)
{
    const int height = std::max(line.height(), next.height());
    return next.top >= line.top && next.top - line.bottom < 3 * height &&
           horizontalOverlap(line, next) > -20 * height;
}

} // namespace

std::vector<int> indentations(const std::vector<PlacedText> &lines)
{
    std::vector<int> blanks(lines.size(), 0);
    for (std::size_t first = 0; first < lines.size();) {
        std::size_t last = first + 1;
        while (last < lines.size() && follows(lines[last - 1].box, lines[last].box)) {
            ++last;
        }
        if (const double advance = medianAdvance(lines, first, last); advance > 0) {
            int left = lines[first].box.left;
            for (std::size_t i = first; i < last; ++i) {
                left = std::min(left, lines[i].box.left);
            }
            for (std::size_t i = first; i < last; ++i) {
                blanks[i] = int(std::lround((lines[i].box.left - left) / advance));
            }
        }
        first = last;
    }
    return blanks;
}

} // namespace recognition
