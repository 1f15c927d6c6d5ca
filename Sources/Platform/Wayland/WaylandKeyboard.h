// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QKeyEvent;
struct KeyCombination;

/// The seat's keyboard as it is set up now: a snapshot. A seat without a keyboard has the default
/// keymap of the system.
class WaylandKeyboard
{
public:
    /// What a key gives in one layout, alone and with Shift; 0 where that is no character.
    struct Characters
    {
        char32_t plain = 0;
        char32_t shifted = 0;
    };

    WaylandKeyboard();

    /// XKB's number of the key of a virtual key code.
    std::optional<quint32> keycode(quint16 virtualKeyCode) const;

    /// What was pressed, for a key press in a window of ours.
    std::optional<KeyCombination> combination(const QKeyEvent &event) const;

    /// What the key gives without modifiers in the first layout, in upper case.
    QString label(quint16 virtualKeyCode) const { return m_labels.value(virtualKeyCode); }

    /// XKB's names of what the key gives without modifiers, one for each layout.
    QStringList keysymNames(quint16 virtualKeyCode) const { return m_names.value(virtualKeyCode); }

    /// Its characters, one entry for each layout in which it gives one without modifiers.
    QList<Characters> characters(quint16 virtualKeyCode) const
    {
        return m_characters.value(virtualKeyCode);
    }

private:
    QHash<quint16, quint32> m_keycodes;
    QHash<quint16, QString> m_labels;
    QHash<quint16, QStringList> m_names;
    QHash<quint16, QList<Characters>> m_characters;
};
