// SPDX-License-Identifier: MIT
#include "Marks.h"

#include "Components.h"
#include "Edges.h"

#include <array>
#include <cstdint>

namespace recognition {

namespace {

/// Grey steps at which things are taken apart; the first sees text of 12 grey levels' contrast.
constexpr std::array<int, 6> thresholds{10, 22, 40, 64, 96, 136};

/// The tallest letters looked for: 120 px type.
constexpr int tallest = 150;

struct Sides
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    /// Share of the component's pixels that lie within the margin of its box.
    double atBorder = 0;
};

/// Which part of each side of its box a component covers within `margin` pixels of it.
Sides coveredSides(const Component &component, int margin)
{
    const Box &box = component.box;
    std::vector<std::uint8_t> rows(std::size_t(box.height()) * 2, 0);
    std::vector<std::uint8_t> columns(std::size_t(box.width()) * 2, 0);
    int border = 0;
    for (const Run &run : component.runs) {
        const std::size_t row = std::size_t(run.y - box.top) * 2;
        if (run.left < box.left + margin)
            rows[row] = 1;
        if (run.right > box.right - margin)
            rows[row + 1] = 1;
        const bool top = run.y < box.top + margin;
        const bool bottom = run.y >= box.bottom - margin;
        for (int x = run.left; (top || bottom) && x < run.right; ++x) {
            const std::size_t column = std::size_t(x - box.left) * 2;
            if (top)
                columns[column] = 1;
            if (bottom)
                columns[column + 1] = 1;
        }
        if (top || bottom) {
            border += run.right - run.left;
        } else {
            border += std::max(0, std::min(run.right, box.left + margin) - run.left);
            border += std::max(0, run.right - std::max(run.left, box.right - margin));
        }
    }
    Sides sides;
    for (std::size_t i = 0; i < rows.size(); i += 2) {
        sides.left += rows[i];
        sides.right += rows[i + 1];
    }
    for (std::size_t i = 0; i < columns.size(); i += 2) {
        sides.top += columns[i];
        sides.bottom += columns[i + 1];
    }
    sides.left /= box.height();
    sides.right /= box.height();
    sides.top /= box.width();
    sides.bottom /= box.width();
    sides.atBorder = double(border) / component.pixels;
    return sides;
}

/// Whether a component is an outline with nothing of its own inside: a button, a text field, a
/// card, a check box, a switch. Letters that are outlines too (O, 0, 口) are about as wide as
/// high and stand among others, so square outlines count only from a size on.
bool isOutline(const Component &component)
{
    const Box &box = component.box;
    if (box.height() < 10 || box.width() < 10)
        return false;
    const int shorter = std::min(box.width(), box.height());
    const bool square = box.width() < 1.6 * box.height();
    if (square && shorter < 60)
        return false;
    const int margin = std::clamp(shorter / 4, 3, 12);
    const Sides sides = coveredSides(component, margin);
    // Round ends cover their sides in part only.
    return sides.atBorder > 0.97 && sides.top > 0.7 && sides.bottom > 0.7 &&
           (sides.left > 0.3 || sides.right > 0.3);
}

bool isTooBig(const Component &component)
{
    const Box &box = component.box;
    return box.height() > tallest || (box.width() > 12 * box.height() && box.width() > 600);
}

/// Whether rows that hardly any part crosses lie across the middle of `box`: between two lines,
/// not within the strokes of big letters.
bool haveValley(const std::vector<Component> &parts, const Box &box)
{
    std::vector<int> covered(std::size_t(box.height()), 0);
    for (const Component &part : parts) {
        for (int y = part.box.top; y < part.box.bottom; ++y)
            covered[std::size_t(y - box.top)] += part.box.width();
    }
    const auto begin = covered.begin();
    const auto height = std::ptrdiff_t(covered.size());
    const int most = *std::max_element(begin, covered.end());
    return 6 * *std::min_element(begin + height / 4, begin + height * 3 / 4) <= most;
}

/// Removes what goes around other marks without being a plain outline: a button with a shadow, a
/// badge of which only the ends stand out.
void dropFrames(std::vector<Mark> &marks)
{
    std::vector<std::size_t> frames;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const Box &box = marks[i].box;
        if (box.height() < 14 || 10 * box.width() < 22 * box.height())
            continue;
        int inside = 0;
        for (const Mark &other : marks) {
            const Box &o = other.box;
            if (o.left > box.left && o.right < box.right && o.top > box.top &&
                o.bottom < box.bottom && 3 * o.height() >= box.height())
                inside += o.width();
        }
        if (4 * inside >= box.width())
            frames.push_back(i);
    }
    for (auto i = frames.rbegin(); i != frames.rend(); ++i)
        marks.erase(marks.begin() + std::ptrdiff_t(*i));
}

class MarkFinder
{
public:
    MarkFinder(const GreyImage &image, const GreyImage &strength)
        : m_image(image)
        , m_strength(strength)
        , m_rules(straightRules(image, thresholds[0]))
    {
    }

    std::vector<Mark> find()
    {
        const auto runs = edgeRuns(m_strength, thresholds[0]);
        for (const Component &component : connectedComponents(runs))
            take(component, 0, false);
        dropFrames(m_marks);
        return std::move(m_marks);
    }

private:
    void take(const Component &component, std::size_t level, bool textured)
    {
        if (isOutline(component))
            return;
        if (level == 0 && hasRules(component)) {
            for (const Component &part : connectedComponents(withoutRules(component))) {
                if (!joinsRules(part))
                    take(part, level, textured);
            }
            return;
        }
        if (const auto parts = fusedParts(component, level); !parts.empty()) {
            for (const Component &part : parts)
                take(part, level, textured);
            return;
        }
        const bool tooBig = isTooBig(component);
        if (!tooBig && (!textured || isStable(component, level))) {
            add(component, textured);
            return;
        }
        if (level + 1 == thresholds.size()) {
            if (!tooBig)
                add(component, textured);
            return;
        }
        for (const Component &part : connectedComponents(above(component, thresholds[level + 1])))
            take(part, level + 1, true);
    }

    void add(const Component &component, bool textured)
    {
        int strength = 0;
        for (const Run &run : component.runs) {
            const std::uint8_t *line = m_strength.row(run.y);
            for (int x = run.left; x < run.right; ++x)
                strength = std::max(strength, int(line[x]));
        }
        m_marks.push_back({component.box, textured, strength});
    }

    /// The parts of a component in which lines have run together, as the ringing around letters in
    /// a JPEG picture makes them, at the first level that parts them; nothing if it is better left
    /// whole.
    std::vector<Component> fusedParts(const Component &component, std::size_t &level) const
    {
        const Box &box = component.box;
        if (box.height() < 20 || 2 * box.width() < 3 * box.height())
            return {};
        for (std::size_t next = level + 1; next < thresholds.size(); ++next) {
            std::vector<Component> parts = connectedComponents(above(component, thresholds[next]));
            int highest = 0;
            int letters = 0;
            int pixels = 0;
            for (const Component &part : parts) {
                highest = std::max(highest, part.box.height());
                letters += part.box.height() >= 5;
                pixels += part.pixels;
            }
            if (4 * pixels < component.pixels)
                break;
            if (letters >= 4 && 20 * highest <= 12 * box.height() && haveValley(parts, box)) {
                level = next;
                return parts;
            }
        }
        return {};
    }

    bool hasRules(const Component &component) const
    {
        return std::any_of(component.runs.begin(), component.runs.end(), [this](const Run &run) {
            const std::uint8_t *rule = rules(run.y);
            return std::find(rule + run.left, rule + run.right, 1) != rule + run.right;
        });
    }

    std::vector<Run> withoutRules(const Component &component) const
    {
        std::vector<Run> runs;
        for (const Run &run : component.runs)
            split(
                run, [rule = rules(run.y)](int x) { return !rule[x]; }, runs);
        return runs;
    }

    /// Whether what is left of a component without its rules is the short side of a frame or the
    /// end of a selection: thin, with a rule at either end.
    bool joinsRules(const Component &part) const
    {
        const Box &box = part.box;
        if (box.width() > 6 || box.height() < 8)
            return false;
        const auto hasRule = [&](int first, int last) {
            for (int y = std::max(0, first); y <= std::min(last, m_image.height - 1); ++y) {
                const std::uint8_t *rule = rules(y);
                const int right = std::min(m_image.width, box.right + 2);
                for (int x = std::max(0, box.left - 2); x < right; ++x) {
                    if (rule[x])
                        return true;
                }
            }
            return false;
        };
        return hasRule(box.top - 2, box.top + 1) && hasRule(box.bottom - 2, box.bottom + 1);
    }

    const std::uint8_t *rules(int y) const
    {
        return m_rules.data() + std::size_t(y) * std::size_t(m_image.width);
    }

    /// Appends the parts of `run` where `keep` holds.
    template <typename Keep>
    static void split(const Run &run, Keep keep, std::vector<Run> &runs)
    {
        for (int x = run.left; x < run.right;) {
            while (x < run.right && !keep(x))
                ++x;
            const int start = x;
            while (x < run.right && keep(x))
                ++x;
            if (x > start)
                runs.push_back({run.y, start, x});
        }
    }

    std::vector<Run> above(const Component &component, int threshold) const
    {
        std::vector<Run> runs;
        for (const Run &run : component.runs) {
            const std::uint8_t *line = m_strength.row(run.y);
            split(
                run, [line, threshold](int x) { return line[x] > threshold; }, runs);
        }
        return runs;
    }

    /// The edges of letters are as sharp as the letters' contrast; those of a texture fade, so
    /// that less than half is left at the next threshold.
    bool isStable(const Component &component, std::size_t level) const
    {
        if (level + 1 == thresholds.size())
            return true;
        int left = 0;
        for (const Run &run : component.runs) {
            const std::uint8_t *line = m_strength.row(run.y);
            for (int x = run.left; x < run.right; ++x)
                left += line[x] > thresholds[level + 1];
        }
        return 2 * left >= component.pixels;
    }

    const GreyImage &m_image;
    const GreyImage &m_strength;
    const std::vector<std::uint8_t> m_rules;
    std::vector<Mark> m_marks;
};

} // namespace

std::vector<Mark> findMarks(const GreyImage &image)
{
    if (image.width < 3 || image.height < 3)
        return {};
    const GreyImage strength = edgeStrength(image);
    return MarkFinder(image, strength).find();
}

} // namespace recognition
