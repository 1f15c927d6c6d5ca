// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QHash>
#include <QString>

#include <optional>

/// The text form of a shortcut, such as "cmd+shift+o": modifier words and key names joined by "+".
namespace HotkeyString {
/// The keys that a shortcut can have, "a" to "z" and "0" to "9", with their virtual key codes.
const QHash<QString, quint16> &keyMap();

/// The name of a virtual key code; absent for a key that a shortcut cannot have.
std::optional<QString> keyName(quint16 keyCode);

/// Reads a shortcut. Any text is one: case and order do not matter, unknown words are passed
/// over, of several keys the last one counts, and without one it is "o".
KeyCombination parsed(const QString &text);

/// The one text that is written for a combination: modifiers in the order "cmd", "shift", "ctrl",
/// "alt", then the key. Absent without a modifier and for a key without a name.
std::optional<QString> written(const KeyCombination &combination);

/// The shortcut as the user sees it, such as "⌘⇧O", in the text's own order. Unknown words are
/// shown too.
QString displayString(const QString &text);

/// The shortcut in the words on the keys of a PC, such as "Super + Shift + O".
QString spoken(const QString &text);
} // namespace HotkeyString
