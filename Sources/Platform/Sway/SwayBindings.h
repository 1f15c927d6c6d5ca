// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// One key combination in sway's terms.
struct SwayKey
{
    /// Bits of `KeyFlags`.
    quint64 flags = 0;
    /// XKB's number of the key.
    quint32 keycode = 0;
    /// XKB's names of what the key gives without modifiers, in lower case.
    QStringList keysyms;

    bool operator==(const SwayKey &) const = default;
};

/// The combination as `bindcode` takes it, such as "Shift+Mod4+32", with more modifiers before.
QString swayKeyText(const SwayKey &key, const QStringList &locks = {});

/// Whether `config`, the text of sway's configuration file, binds the combination in the default
/// mode. Files that it includes are not seen.
bool swayConfigBinds(const QString &config, const SwayKey &key);
