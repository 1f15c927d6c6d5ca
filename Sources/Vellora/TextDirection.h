// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

/// Whether the first character that is not white space belongs to the Hebrew or Arabic blocks, so
/// that the text is shown right-to-left. Nothing after that character counts.
bool containsRTL(QStringView text);
