// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// Listens to one combination at a time by a key binding of sway's.
///
/// Sway lets any program bind keys, so the process is always trusted. A combination that the
/// user's configuration file binds cannot be had: sway itself would give it to us silently.
class SwayKeyTap : public KeyTap
{
public:
    /// Whether there is a sway to ask.
    static bool isUsable();

    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;
};
