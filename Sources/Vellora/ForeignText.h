// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// A text from outside as it may be shown where nothing is read as markup: no longer than `limit`
/// characters, with an ellipsis at its end where something was cut off, without control
/// characters other than line ends and tabs, and without those that turn the direction of what
/// follows them.
QString foreignText(const QString &text, qsizetype limit);

/// The same in one line.
QString foreignLine(const QString &text, qsizetype limit);
