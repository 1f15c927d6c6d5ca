// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <span>

/// A key of the ANSI keyboard under the two names that are used for its position.
struct AnsiKey
{
    /// The virtual key code.
    quint16 keyCode;
    /// The XKB key name, such as "AD09": the ninth key in the fourth row from below. It is the
    /// same for every layout and whatever key codes the server numbers its keys with.
    const char *xkbName;
};

/// The keys that have a virtual key code.
std::span<const AnsiKey> ansiKeys();

/// The XKB name of a virtual key code; null for one that is not in the table.
const char *xkbKeyName(quint16 keyCode);
