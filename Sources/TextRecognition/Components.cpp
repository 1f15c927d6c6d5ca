// SPDX-License-Identifier: MIT
#include "Components.h"

#include "Effort.h"

#include <cstddef>

namespace recognition {

namespace {

class DisjointSets
{
public:
    int add()
    {
        m_parents.push_back(int(m_parents.size()));
        return m_parents.back();
    }
    int find(int a)
    {
        while (at(a) != a) {
            a = at(a) = at(at(a));
        }
        return a;
    }
    void join(int a, int b)
    {
        a = find(a);
        b = find(b);
        at(std::max(a, b)) = std::min(a, b);
    }
    std::size_t size() const { return m_parents.size(); }

private:
    int &at(int a) { return m_parents[std::size_t(a)]; }

    std::vector<int> m_parents;
};

} // namespace

std::vector<Component> connectedComponents(const std::vector<Run> &runs)
{
    DisjointSets sets;
    std::vector<int> names(runs.size());
    std::size_t above = 0;
    std::size_t aboveEnd = 0;
    for (std::size_t begin = 0; begin < runs.size();) {
        checkpoint();
        std::size_t end = begin;
        while (end < runs.size() && runs[end].y == runs[begin].y) {
            ++end;
        }
        if (aboveEnd > above && runs[aboveEnd - 1].y != runs[begin].y - 1) {
            above = aboveEnd;
        }
        for (std::size_t i = begin; i < end; ++i) {
            int name = -1;
            while (above < aboveEnd && runs[above].right < runs[i].left) {
                ++above;
            }
            for (std::size_t k = above; k < aboveEnd && runs[k].left <= runs[i].right; ++k) {
                if (name < 0) {
                    name = names[k];
                } else {
                    sets.join(name, names[k]);
                }
            }
            names[i] = name < 0 ? sets.add() : name;
        }
        above = begin;
        aboveEnd = end;
        begin = end;
    }

    std::vector<int> places(sets.size(), -1);
    std::vector<Component> components;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        checkpoint();
        const Run &run = runs[i];
        int &place = places[std::size_t(sets.find(names[i]))];
        const Box box{run.left, run.y, run.right, run.y + 1};
        if (place < 0) {
            place = int(components.size());
            components.push_back({box, 0, {}});
        }
        Component &component = components[std::size_t(place)];
        component.box.unite(box);
        component.pixels += box.width();
        component.runs.push_back(run);
    }
    return components;
}

} // namespace recognition
