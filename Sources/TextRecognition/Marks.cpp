// SPDX-License-Identifier: MIT
#include "Marks.h"

#include "BoxGrid.h"
#include "Components.h"
#include "Controls.h"
#include "Edges.h"
#include "Effort.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace recognition {

namespace {

/// Grey steps at which things are taken apart; the first sees text of 12 grey levels' contrast.
constexpr std::array<int, 6> thresholds{10, 22, 40, 64, 96, 136};

/// The tallest letters looked for: 120 px type.
constexpr int tallest = 150;

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
        for (int y = part.box.top; y < part.box.bottom; ++y) {
            covered[std::size_t(y - box.top)] += part.box.width();
        }
    }
    const auto begin = covered.begin();
    const auto height = std::ptrdiff_t(covered.size());
    const int most = *std::max_element(begin, covered.end());
    return 6 * *std::min_element(begin + height / 4, begin + height * 3 / 4) <= most;
}

/// Removes what goes around other marks without being a plain outline: a button with a shadow, a
/// badge of which only the ends stand out.
void dropFrames(std::vector<Mark> &marks, const GreyImage &image)
{
    BoxGrid grid(image.width, image.height);
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const Box &box = marks[i].box;
        // One place is enough to find what a frame holds whole.
        grid.add(i, {box.left, box.top, box.left, box.top});
    }
    std::vector<std::size_t> frames;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        checkpoint();
        const Box &box = marks[i].box;
        if (box.height() < 14 || 10 * box.width() < 22 * box.height()) {
            continue;
        }
        int inside = 0;
        grid.forEachNear(box, [&](std::size_t k) {
            const Box &o = marks[k].box;
            if (o.left > box.left && o.right < box.right && o.top > box.top &&
                o.bottom < box.bottom && 3 * o.height() >= box.height()) {
                inside += o.width();
            }
        });
        if (4 * inside >= box.width()) {
            frames.push_back(i);
        }
    }
    std::vector<Mark> others;
    others.reserve(marks.size());
    auto frame = frames.begin();
    for (std::size_t i = 0; i < marks.size(); ++i) {
        if (frame != frames.end() && *frame == i) {
            ++frame;
        } else {
            others.push_back(std::move(marks[i]));
        }
    }
    marks = std::move(others);
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
        for (const Component &component : connectedComponents(runs)) {
            take(component, 0, false);
        }
        dropFrames(m_marks, m_image);
        return std::move(m_marks);
    }

private:
    void take(const Component &component, std::size_t level, bool textured)
    {
        checkpoint();
        if (isOutline(component) || isSwitch(component, m_strength) ||
            isSolid(component, m_image)) {
            return;
        }
        if (level == 0 && hasRules(component)) {
            for (const Component &part : connectedComponents(withoutRules(component))) {
                if (!joinsRules(part)) {
                    take(part, level, textured);
                }
            }
            return;
        }
        if (const auto parts = fusedParts(component, level); !parts.empty()) {
            for (const Component &part : parts) {
                take(part, level, textured);
            }
            return;
        }
        const bool tooBig = isTooBig(component);
        if (!tooBig && (!textured || isStable(component, level))) {
            add(component, textured);
            return;
        }
        if (level + 1 == thresholds.size()) {
            if (!tooBig) {
                add(component, textured);
            }
            return;
        }
        for (const Component &part : connectedComponents(above(component, thresholds[level + 1]))) {
            take(part, level + 1, true);
        }
    }

    void add(const Component &component, bool textured)
    {
        int strength = 0;
        std::vector<int> rows(std::size_t(component.box.height()), 0);
        for (const Run &run : component.runs) {
            rows[std::size_t(run.y - component.box.top)] += run.right - run.left;
            const std::uint8_t *line = m_strength.row(run.y);
            for (int x = run.left; x < run.right; ++x) {
                strength = std::max(strength, int(line[x]));
            }
        }
        m_marks.push_back({component.box, textured, strength, std::move(rows)});
    }

    /// The parts of a component in which lines have run together, as the ringing around letters in
    /// a JPEG picture makes them, at the first level that parts them; nothing if it is better left
    /// whole.
    std::vector<Component> fusedParts(const Component &component, std::size_t &level) const
    {
        const Box &box = component.box;
        if (box.height() < 20 || 2 * box.width() < 3 * box.height()) {
            return {};
        }
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
            if (4 * pixels < component.pixels) {
                break;
            }
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
            for (int x = run.left; x < run.right; ++x) {
                if (isRule(x, run.y)) {
                    return true;
                }
            }
            return false;
        });
    }

    std::vector<Run> withoutRules(const Component &component) const
    {
        std::vector<Run> runs;
        for (const Run &run : component.runs) {
            split(
                run, [this, y = run.y](int x) { return !isRule(x, y); }, runs);
        }
        return runs;
    }

    /// Whether the pixel is part of a rule and of nothing else.
    bool isRule(int x, int y) const
    {
        return rules(y)[x] && !(goesOn(x, y, -1) && goesOn(x, y, 1));
    }

    /// Whether a letter goes on beyond the rule at (x, y), upwards if `step` is negative: lines
    /// through or under letters must not cut them.
    bool goesOn(int x, int y, int step) const
    {
        constexpr int thickest = 6;
        for (int i = 0; i < thickest; ++i) {
            y += step;
            if (y < 0 || y >= m_image.height) {
                return false;
            }
            if (!rules(y)[x]) {
                return m_strength.at(x, y) > thresholds[0];
            }
        }
        return false;
    }

    /// Whether what is left of a component without its rules is the short side of a frame, the end
    /// of a selection or a round corner: small, with rules at two of its sides.
    bool joinsRules(const Component &part) const
    {
        const Box &box = part.box;
        const auto hasRule = [this](const Box &at) {
            for (int y = std::max(0, at.top); y < std::min(at.bottom, m_image.height); ++y) {
                const std::uint8_t *rule = rules(y);
                for (int x = std::max(0, at.left); x < std::min(at.right, m_image.width); ++x) {
                    if (rule[x]) {
                        return true;
                    }
                }
            }
            return false;
        };
        const Box wide{box.left - 2, box.top - 2, box.right + 2, box.bottom + 2};
        const bool above = hasRule({wide.left, wide.top, wide.right, box.top + 2});
        const bool below = hasRule({wide.left, box.bottom - 2, wide.right, wide.bottom});
        if (box.width() <= 6 && box.height() >= 8) {
            return above && below;
        }
        if (box.width() > 8 || box.height() > 8) {
            return false;
        }
        return (hasRule({box.left, wide.top, box.right, box.top}) ||
                hasRule({box.left, box.bottom, box.right, wide.bottom})) &&
               (hasRule({wide.left, box.top, box.left, box.bottom}) ||
                hasRule({box.right, box.top, wide.right, box.bottom}));
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
            while (x < run.right && !keep(x)) {
                ++x;
            }
            const int start = x;
            while (x < run.right && keep(x)) {
                ++x;
            }
            if (x > start) {
                runs.push_back({run.y, start, x});
            }
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
        if (level + 1 == thresholds.size()) {
            return true;
        }
        int left = 0;
        for (const Run &run : component.runs) {
            const std::uint8_t *line = m_strength.row(run.y);
            for (int x = run.left; x < run.right; ++x) {
                left += line[x] > thresholds[level + 1];
            }
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
    if (image.width < 3 || image.height < 3) {
        return {};
    }
    const GreyImage strength = edgeStrength(image);
    return MarkFinder(image, strength).find();
}

} // namespace recognition
