// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

struct KeyCombination;
class WaylandKeyboard;

/// The combination as kglobalaccel counts it: a `Qt::Key` and `Qt::KeyboardModifiers` in one
/// number each. Several, because it knows keys by what they give in the layout in use; empty for a
/// key that gives no character.
QList<int> globalAccelKeys(const KeyCombination &combination, const WaylandKeyboard &keyboard);
