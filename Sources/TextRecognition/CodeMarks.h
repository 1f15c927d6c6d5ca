// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace recognition {

/// Whether `text` is a mark of source code that hardly anything else looks like: of a comment, an
/// arrow, a logical and.
bool isMarkOfCode(const QString &text);

} // namespace recognition
