// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/StatusItem.h"

#include <chrono>
#include <memory>
#include <optional>

/// A passing change of the status item, the program's one place for feedback.
struct StatusMark
{
    /// A system symbol and what a screen reader says of it.
    QString symbolName;
    QString accessibilityDescription;
    /// Shown while the mark is; without one the tooltip is not touched, also not afterwards.
    std::optional<QString> toolTip;
    std::chrono::milliseconds duration;
    /// A line for the log, in English, as `SystemLog::log` takes it; written between the change of
    /// the image and that of the tooltip. Empty for none.
    QString logLine = {};
};

/// The tooltip while there is no mark.
QString defaultToolTip();

/// Shows `mark`, then puts back the image that was there when it began, which may be that of
/// another mark, and the default tooltip if the mark had one of its own. What the desktop's panel
/// does not show of it, its text or all, is posted as a passing notification too.
void show(const StatusMark &mark, const std::shared_ptr<StatusItemButton> &button);
