// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"
#include "Platform/SystemLog.h"

/// For a compositor that gives programs no keys of other windows: it says how the user can bind
/// one.
class UnboundKeyTap : public KeyTap
{
public:
    /// `log` outlives the object.
    explicit UnboundKeyTap(SystemLog &log);

    bool isProcessTrusted() const override { return true; }
    bool isProcessTrustedWithPrompt() override { return true; }
    /// Always null; the log names the command to bind.
    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override;
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override;
    QString keyLabel(quint16 keyCode) const override;

private:
    SystemLog &m_log;
};
