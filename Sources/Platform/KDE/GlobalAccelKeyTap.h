// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// Shortcuts by kglobalaccel, which swallows a press that it tells of.
class GlobalAccelKeyTap : public KeyTap
{
public:
    /// Whether the compositor itself serves it: started by a program on another desktop it would
    /// hear of no key.
    static bool isUsable();

    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;
};
