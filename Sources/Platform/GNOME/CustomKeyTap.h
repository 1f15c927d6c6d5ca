// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// Shortcuts by GNOME's settings daemon.
class CustomKeyTap : public KeyTap
{
public:
    /// Whether the daemon's settings are there, and the shell that grabs keys for it.
    static bool isUsable();

    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    /// The callback is never called: a press comes as the action "capture" over the session bus.
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;
};
