// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>

namespace recognition {

/// The processor time, on all threads together, that a picture of so many pixels may take until
/// nothing more of it is read.
std::chrono::nanoseconds budgetFor(qint64 pixels);

} // namespace recognition
