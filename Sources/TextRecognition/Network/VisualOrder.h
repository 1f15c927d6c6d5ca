// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace recognition {

/// Brings words as they stand on the screen, from the left, letter by letter, into the order in
/// which they are read and stored: the numbers of the words in reading order, and their texts
/// turned in place. Words without letters from right to left stay as they are. Brackets are given
/// as the characters that they stand for, whichever way they look, and stay so.
QList<int> toReadingOrder(QList<QString> &words);

} // namespace recognition
