// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Sway/SwayBindings.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What of ours is bound in the sway that $SWAYSOCK names, kept in a file for as long as it is:
/// sway tells nobody which bindings it was given at run time, so that nothing else says what a
/// program that was killed left there. The file is in the user's run-time folder (XDG_RUNTIME_DIR),
/// which ends with the session as the binding does. Main thread only.
class SwayBindingRecord
{
public:
    /// Where no file can be written there is no record, and nothing else changes.
    static void write(const SwayKey &key);
    static void clear();

    /// What is recorded for this sway; absent where the file is another sway's, or damaged.
    static std::optional<SwayKey> read();

    /// The file's content for a key bound in the sway at `socket`.
    static QByteArray text(const SwayKey &key, const QByteArray &socket);
    /// The key that such a content tells of, if that is for the sway at `socket`.
    static std::optional<SwayKey> parsed(const QByteArray &text, const QByteArray &socket);
};
