// SPDX-License-Identifier: MIT
#include "Beam.h"

#include <algorithm>

namespace recognition {

void Beam::findWorst()
{
    m_worst = int(std::min_element(begin(), end(),
                                   [](const Node &a, const Node &b) { return a.score < b.score; }) -
                  begin());
}

void Beam::push(const Node &node, int width)
{
    if (!takes(node.score, width)) {
        return;
    }
    const auto last = m_nodes.begin() + m_size;
    const auto same = std::find_if(m_nodes.begin(), last, [&node](const Node &other) {
        return other.code == node.code && other.hash == node.hash && other.kind == node.kind &&
               other.mayStartWord == node.mayStartWord;
    });
    if (same != last) {
        if (node.score <= same->score) {
            return;
        }
        *same = node;
    } else if (m_size < width) {
        m_nodes[std::size_t(m_size++)] = node;
    } else {
        m_nodes[std::size_t(m_worst)] = node;
    }
    findWorst();
}

} // namespace recognition
