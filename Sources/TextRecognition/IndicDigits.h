// SPDX-License-Identifier: MIT
#pragma once

#include "DigitShape.h"

#include <QString>

#include <vector>

namespace recognition {

/// A number in Arabic-Indic digits in a prepared line.
struct IndicNumber
{
    /// Around its ink, in pixels of the prepared line.
    Box box;
    /// In logical order, among text from right to left.
    QString text;
    /// By how much its glyphs look more like it than like other writing: the logarithm of odds,
    /// of which marks, and digits that have doubles in other writing, give little.
    double odds = 0;

    /// Whether it can hardly be other writing.
    bool isUnmistakable() const { return odds >= 3.5; }
};

/// The numbers in Arabic-Indic digits, with their marks, that may stand in a prepared
/// line with letters `letters` pixels high, from the left.
std::vector<IndicNumber> indicNumbers(const GreyImage &picture, int letters);

/// What is seen from the left, a number with its marks among text from right to left, in the order
/// in which it is written: groups of digits come from the right, brackets face the other way.
QString writtenNumber(const QString &seen);

} // namespace recognition
