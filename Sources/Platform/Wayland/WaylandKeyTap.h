// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// What taps have in common on Wayland, where they differ in whom they ask for the keys: whoever
/// that is, it asks for no trust first, and the layout is the compositor's.
class WaylandKeyTap : public KeyTap
{
public:
    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;
    std::unique_ptr<Inhibitor> inhibitShortcuts(QWindow &window) override;
};
