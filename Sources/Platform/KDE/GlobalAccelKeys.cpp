// SPDX-License-Identifier: MIT
#include "Platform/KDE/GlobalAccelKeys.h"

#include "Platform/KeyTap.h"
#include "Platform/Wayland/WaylandKeyboard.h"

#include <QString>

namespace {
int modifiers(quint64 flags)
{
    int bits = 0;
    const auto add = [&](quint64 flag, Qt::KeyboardModifier modifier) {
        bits |= flags & flag ? static_cast<int>(modifier) : 0;
    };
    add(KeyFlags::shift, Qt::ShiftModifier);
    add(KeyFlags::control, Qt::ControlModifier);
    add(KeyFlags::option, Qt::AltModifier);
    add(KeyFlags::command, Qt::MetaModifier);
    return bits;
}

/// `Qt::Key` numbers characters by their upper case.
int keyOf(char32_t character)
{
    return static_cast<int>(QChar::toUpper(character));
}
} // namespace

QList<int> globalAccelKeys(const KeyCombination &combination, const WaylandKeyboard &keyboard)
{
    const int held = modifiers(combination.flags);
    QList<int> keys;
    const auto add = [&keys](int key) {
        if (!keys.contains(key)) {
            keys << key;
        }
    };
    for (const WaylandKeyboard::Characters &given : keyboard.characters(combination.keyCode)) {
        add(held | keyOf(given.plain));
        // Shift that turns a digit into another character is used up by that; in the shortcut it
        // counts no more.
        if ((held & Qt::ShiftModifier) != 0 && given.shifted != 0 &&
            keyOf(given.shifted) != keyOf(given.plain)) {
            add((held & ~Qt::ShiftModifier) | keyOf(given.shifted));
        }
    }
    return keys;
}
