// SPDX-License-Identifier: MIT
#include "Beam.h"

#include <algorithm>

namespace recognition {

std::size_t Beam::worst() const
{
    return std::size_t(
        std::min_element(begin(), end(),
                         [](const Node &a, const Node &b) { return a.score < b.score; }) -
        begin());
}

bool Beam::takes(float score, int width) const
{
    return m_size < width || score > m_nodes[worst()].score;
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
        if (node.score > same->score) {
            *same = node;
        }
    } else if (m_size < width) {
        m_nodes[std::size_t(m_size++)] = node;
    } else {
        m_nodes[worst()] = node;
    }
}

} // namespace recognition
