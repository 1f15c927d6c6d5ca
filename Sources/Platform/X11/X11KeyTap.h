// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

/// Listens to one combination at a time by a passive grab on the server's root windows.
///
/// X lets any program listen, so the process is always trusted. A combination that another
/// program has grabbed cannot be had. While a program holds the whole keyboard (a screen lock, a
/// virtual machine, a menu of most toolkits) the server gives every key to that one alone.
class X11KeyTap : public KeyTap
{
public:
    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;
    std::unique_ptr<Inhibitor> inhibitShortcuts(QWindow &window) override;
};
