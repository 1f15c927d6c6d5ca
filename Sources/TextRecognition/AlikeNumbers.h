// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace recognition {

/// How many numbers, and what they weigh together, are about as large as another: found without
/// looking at all of them, as a sheet has a cell for every few hundred pixels.
class AlikeNumbers
{
public:
    void add(double number, double weight) { m_numbers.emplace_back(number, weight); }

    /// To be called once all are added.
    void sort()
    {
        std::ranges::sort(m_numbers);
        m_weights.assign(1, 0);
        for (const auto &[number, weight] : m_numbers) {
            m_weights.push_back(m_weights.back() + weight);
        }
    }

    /// Of those that are less than a `share` of `number` away from it.
    double weight(double number, double share) const
    {
        const auto [first, last] = range(number, share);
        return m_weights[last] - m_weights[first];
    }
    std::size_t count(double number, double share) const
    {
        const auto [first, last] = range(number, share);
        return last - first;
    }

private:
    std::pair<std::size_t, std::size_t> range(double number, double share) const
    {
        const auto first = std::ranges::partition_point(m_numbers, [=](const auto &other) {
            return other.first < number && number - other.first >= share * number;
        });
        const auto last = std::partition_point(first, m_numbers.end(), [=](const auto &other) {
            return other.first - number < share * number;
        });
        return {std::size_t(first - m_numbers.begin()), std::size_t(last - m_numbers.begin())};
    }

    std::vector<std::pair<double, double>> m_numbers;
    /// Of the first so many together.
    std::vector<double> m_weights;
};

} // namespace recognition
