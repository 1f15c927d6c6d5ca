// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QHash>
#include <QString>

#include <functional>
#include <memory>

/// Runs an action when the user presses the shortcut, whatever application is in front, which
/// never sees that key press.
///
/// Stopped until `start`. The owner calls `stop` before it lets go of a running listener. Main
/// thread only.
class GlobalHotkey : public std::enable_shared_from_this<GlobalHotkey>
{
public:
    using Action = std::function<void()>;

    /// A stopped listener for Command-Shift-O.
    static std::shared_ptr<GlobalHotkey> make(Action action);

    /// The names of keys and their virtual key codes.
    static const QHash<QString, quint16> &keyMap();

    /// Listens for another shortcut from now on, stopped or running. Any text is a shortcut.
    void configure(const QString &hotkeyString);

    /// Starts listening; asks the user for leave, if that takes one. A running listener stays as
    /// it is. A failure is logged; a refusal is told to `onPermissionDenied` too. Both may come
    /// later, from a desktop that asks the user meanwhile; the listener is stopped by then.
    void start();
    /// Frees the key.
    void stop();

    bool isRunning() const { return eventTap != nullptr; }

    quint16 keyCode() const { return combination.keyCode; }
    void setKeyCode(quint16 keyCode);
    /// Bits of `KeyFlags` that have to be held, and no others of them.
    quint64 modifiers() const { return combination.flags; }
    void setModifiers(quint64 modifiers);

    /// What the shortcut does.
    Action action;
    /// Called when the desktop does not let us listen.
    std::function<void()> onPermissionDenied;

private:
    explicit GlobalHotkey(Action action);

    void setCombination(const KeyCombination &newCombination);
    void tapFailed(const QString &problem) const;
    void denyPermission() const;
    void tapDidEnd(KeyTap::Tap::End end);
    /// Whether the press is swallowed.
    bool handleKeyDown(const KeyCombination &pressed);

    std::unique_ptr<KeyTap::Tap> eventTap;
    KeyCombination combination{31, KeyFlags::command | KeyFlags::shift};
};
