// SPDX-License-Identifier: MIT
#include "Platform/CocoaGeometry.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {
/// Longer text is no size or rectangle that was ever written, and is not searched.
constexpr qsizetype longestText = 1024;

template <std::size_t Count>
std::array<double, Count> numbersIn(const QString &text)
{
    std::array<double, Count> numbers{};
    if (text.size() > longestText) {
        return numbers;
    }
    static const QRegularExpression number(uR"([-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?)"_s);
    auto matches = number.globalMatch(text);
    for (double &value : numbers) {
        if (!matches.hasNext()) {
            return {};
        }
        value = matches.next().captured().toDouble();
        if (!std::isfinite(value)) {
            return {};
        }
    }
    return numbers;
}

QString pair(double first, double second)
{
    // 17 significant digits carry any double there and back.
    return u"{%1, %2}"_s.arg(QString::number(first, 'g', 17), QString::number(second, 'g', 17));
}
} // namespace

bool CocoaRect::contains(CocoaPoint point) const
{
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
}

bool CocoaRect::contains(const CocoaRect &other) const
{
    return other.minX() >= minX() && other.maxX() <= maxX() && other.minY() >= minY() &&
           other.maxY() <= maxY();
}

CocoaRect CocoaRect::intersection(const CocoaRect &other) const
{
    const double left = std::max(minX(), other.minX());
    const double right = std::min(maxX(), other.maxX());
    const double bottom = std::max(minY(), other.minY());
    const double top = std::min(maxY(), other.maxY());
    if (!(right > left) || !(top > bottom)) {
        return {};
    }
    return {{left, bottom}, {right - left, top - bottom}};
}

QString stringFromSize(CocoaSize size)
{
    return pair(size.width, size.height);
}

CocoaSize sizeFromString(const QString &text)
{
    const auto [width, height] = numbersIn<2>(text);
    return {width, height};
}

QString stringFromRect(const CocoaRect &rect)
{
    return u"{%1, %2}"_s.arg(pair(rect.origin.x, rect.origin.y),
                             pair(rect.size.width, rect.size.height));
}

CocoaRect rectFromString(const QString &text)
{
    const auto [x, y, width, height] = numbersIn<4>(text);
    return {{x, y}, {width, height}};
}
