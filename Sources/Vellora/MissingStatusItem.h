// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What the user is told where no panel shows the status item: how to use the program all the same.
namespace MissingStatusItem {
/// Whether no panel shows it now.
bool isMissing();

/// What to do, in whole sentences.
QString message();

/// Whether the user has seen the message and closed it; kept between runs.
bool wasDismissed();
void dismiss();
} // namespace MissingStatusItem
