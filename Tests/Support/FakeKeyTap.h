// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/KeyTap.h"

#include <QKeyEvent>
#include <QList>
#include <QMap>

/// A keyboard that tests press. It delivers every press, as a desktop with one tap for all keys
/// does, so that what is heard is decided by who listens.
class FakeKeyTap : public KeyTap
{
public:
    bool trusted = true;
    /// What other programs have.
    QList<KeyCombination> taken;
    /// Set: there are no taps at all, for this reason.
    QString unboundReason;
    /// What the layout prints on keys; others are not known.
    QMap<quint16, QString> labels;
    /// Called when a tap is asked for, if set.
    std::function<void()> onCreate;
    int promptCount = 0;
    mutable int checkCount = 0;
    int createCount = 0;

    /// What a desktop that chooses the keys tells of them.
    void give(const QString &description) { m_givenKeys.setDescription(description); }

    /// How many taps run.
    int tapCount() const { return static_cast<int>(m_taps.size()); }
    /// What the only tap listens to.
    KeyCombination tapped() const { return m_taps.first()->combination; }

    /// Whether a tap swallowed the press.
    bool press(const KeyCombination &combination)
    {
        bool swallowed = false;
        for (const Running *tap : m_taps) {
            swallowed = tap->callback(combination) || swallowed;
        }
        return swallowed;
    }

    /// What a desktop tells the only tap that has asked its user meanwhile.
    void end(Tap::End end) { m_taps.first()->onEnd(end); }

    bool isProcessTrusted() const override
    {
        ++checkCount;
        return trusted;
    }
    bool isProcessTrustedWithPrompt() override
    {
        ++promptCount;
        return trusted;
    }

    std::unique_ptr<Tap> createTap(const KeyCombination &combination, Callback callback) override
    {
        ++createCount;
        if (onCreate) {
            onCreate();
        }
        setProblem(unboundReason);
        if (taken.contains(combination) || !unboundReason.isEmpty()) {
            return nullptr;
        }
        return std::make_unique<Running>(*this, combination, std::move(callback));
    }

    /// Tests give the virtual key code as the event's scan code; 0xffff stands for a key without.
    std::optional<KeyCombination> combination(const QKeyEvent &event) const override
    {
        if (event.nativeScanCode() == 0xffff) {
            return std::nullopt;
        }
        KeyCombination combination{static_cast<quint16>(event.nativeScanCode()), 0};
        const auto add = [&](Qt::KeyboardModifier modifier, quint64 flag) {
            combination.flags |= event.modifiers().testFlag(modifier) ? flag : 0;
        };
        add(Qt::ShiftModifier, KeyFlags::shift);
        add(Qt::ControlModifier, KeyFlags::control);
        add(Qt::AltModifier, KeyFlags::option);
        add(Qt::MetaModifier, KeyFlags::command);
        return combination;
    }

    QString keyLabel(quint16 keyCode) const override { return labels.value(keyCode); }

    std::unique_ptr<Inhibitor> inhibitShortcuts(QWindow &window) override
    {
        return std::make_unique<Inhibiting>(inhibited, window);
    }

    /// The window that hears all keys now.
    QWindow *inhibited = nullptr;

private:
    struct Inhibiting : Inhibitor
    {
        Inhibiting(QWindow *&inhibitedWindow, QWindow &window)
            : inhibited(inhibitedWindow)
        {
            inhibited = &window;
        }
        ~Inhibiting() override { inhibited = nullptr; }

        QWindow *&inhibited;
    };

    struct Running : Tap
    {
        Running(FakeKeyTap &keyTap, const KeyCombination &wanted, Callback handler)
            : owner(keyTap)
            , combination(wanted)
            , callback(std::move(handler))
        {
            owner.m_taps << this;
        }
        ~Running() override { owner.m_taps.removeAll(this); }

        bool setCombination(const KeyCombination &wanted) override
        {
            combination = wanted;
            return !owner.taken.contains(wanted);
        }

        FakeKeyTap &owner;
        KeyCombination combination;
        Callback callback;
    };

    QList<Running *> m_taps;
};
