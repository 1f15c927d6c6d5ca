// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"
#include "Platform/Sway/SwayBindings.h"
#include "Platform/Sway/SwayConnection.h"
#include "Platform/Sway/SwayEvents.h"

#include <QObject>

#include <optional>

/// One combination, bound at run time to a command that does nothing but be told of.
///
/// Sway forgets such bindings when it reads its configuration again; they are made anew then. A
/// program that is killed leaves its binding behind until that, or until its next start removes it.
class SwayKeyBinding : public KeyTap::Tap
{
public:
    explicit SwayKeyBinding(KeyTap::Callback callback);
    /// The key is free when this returns.
    ~SwayKeyBinding() override;

    bool setCombination(const KeyCombination &combination) override;

    /// Takes away the binding that a program that was killed left in this sway, unless the user's
    /// configuration binds the combination by now.
    static void removeLeftover();

private:
    bool bind();
    void unbind();
    void handle(SwayEvents::Type type, const QJsonObject &event);

    KeyTap::Callback m_callback;
    SwayConnection m_connection;
    /// What bindings of ours run: no two taps have the same.
    QString m_command;
    KeyCombination m_combination;
    /// What is bound now.
    std::optional<SwayKey> m_bound;
    SwayEvents m_events;
};
