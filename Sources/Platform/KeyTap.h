// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/GivenKeys.h"

#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <optional>

class QKeyEvent;
class QWindow;

/// Event-flag bits of the modifier keys, as Core Graphics numbers them.
namespace KeyFlags {
inline constexpr quint64 shift = 0x20000;
inline constexpr quint64 control = 0x40000;
/// Alt on a PC keyboard.
inline constexpr quint64 option = 0x80000;
/// Super (the Windows key) on a PC keyboard.
inline constexpr quint64 command = 0x100000;
/// What two combinations are compared under; other bits say nothing about a combination.
inline constexpr quint64 mask = shift | control | option | command;
} // namespace KeyFlags

/// A key with the modifiers that are held with it.
struct KeyCombination
{
    /// Virtual key code: the key's position, numbered as on an ANSI keyboard, whatever the layout
    /// in use prints on it.
    quint16 keyCode = 0;
    /// Bits of `KeyFlags`.
    quint64 flags = 0;

    bool operator==(const KeyCombination &) const = default;
};

/// Listens to the keyboard of the whole session. Main thread only.
class KeyTap
{
public:
    /// Answers whether the key press is swallowed, so that the application in front never sees
    /// it. Called from the event loop, for repeated presses of a held key too. It must return
    /// soon, and not destroy its tap.
    ///
    /// A desktop that delivers one combination only has taken the press already: there, a press
    /// that is not swallowed is lost.
    using Callback = std::function<bool(const KeyCombination &)>;

    /// A running tap; destroying it ends it and frees the key.
    class Tap
    {
    public:
        /// Why a tap hears nothing any more.
        enum class End {
            Denied, ///< the user was asked, and said no
            Failed,
        };

        virtual ~Tap() = default;

        /// Called once at most, from the event loop: desktops that ask the user answer after
        /// `createTap` has returned. It must not destroy its tap.
        std::function<void(End)> onEnd;

        /// Listens to another combination from now on. False when that cannot be had; the tap
        /// then hears nothing until it is given one that can.
        virtual bool setCombination(const KeyCombination &combination) = 0;
    };

    /// Keeps the session's shortcuts, the tap's own too, from acting while a window of ours has the
    /// keyboard; destroying it gives them back.
    class Inhibitor
    {
    public:
        Inhibitor() = default;
        virtual ~Inhibitor() = default;
        Inhibitor(const Inhibitor &) = delete;
        Inhibitor &operator=(const Inhibitor &) = delete;
    };

    virtual ~KeyTap() = default;

    /// Whether the desktop lets us listen.
    virtual bool isProcessTrusted() const = 0;

    /// The same; if not, the desktop leads the user to where it can be allowed.
    virtual bool isProcessTrustedWithPrompt() = 0;

    /// Starts listening. Null when it cannot, such as for a combination that another program has.
    virtual std::unique_ptr<Tap> createTap(const KeyCombination &combination,
                                           Callback callback) = 0;

    /// What was pressed, for a key press in a window of ours; absent for a key without a virtual
    /// key code.
    virtual std::optional<KeyCombination> combination(const QKeyEvent &event) const = 0;

    /// Lets `window`, which has the keyboard, hear every key. Null where the desktop keeps some to
    /// itself. It must go before the window loses the keyboard.
    virtual std::unique_ptr<Inhibitor> inhibitShortcuts(QWindow & /*window*/) { return nullptr; }

    /// What the layout in use prints on a key, such as "Щ" for 31; empty when it is not known.
    virtual QString keyLabel(quint16 keyCode) const = 0;

    /// What the running tap really listens to, where that is something else.
    const GivenKeys &givenKeys() const { return m_givenKeys; }

    /// Tells why the tap that was asked for hears nothing, where the tap itself has not told it;
    /// empty text once there is no such tap any more.
    void setProblem(const QString &problem)
    {
        if (problem.isEmpty() || m_givenKeys.problem().isEmpty()) {
            m_givenKeys.setProblem(problem);
        }
    }

protected:
    GivenKeys m_givenKeys;
};
