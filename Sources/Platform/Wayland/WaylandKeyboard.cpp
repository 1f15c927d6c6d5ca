// SPDX-License-Identifier: MIT
#include "Platform/Wayland/WaylandKeyboard.h"

#include "Platform/AnsiKeys.h"
#include "Platform/KeyTap.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <QKeyEvent>

#include <chrono>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

namespace {
constexpr std::chrono::milliseconds patience(1000);
constexpr quint16 escapeKeyCode = 53;

struct XkbUnref
{
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap *keymap) const { xkb_keymap_unref(keymap); }
};

template <typename Object>
using XkbPointer = std::unique_ptr<Object, XkbUnref>;

void keepKeymap(void *data, wl_keyboard *, uint32_t format, int32_t file, uint32_t size)
{
    // Private, as later versions of the interface want it.
    void *memory = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 && size > 0
                       ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0)
                       : MAP_FAILED;
    if (memory != MAP_FAILED) {
        const char *text = static_cast<const char *>(memory);
        *static_cast<QByteArray *>(data) =
            QByteArray(text, static_cast<qsizetype>(qstrnlen(text, size)));
        munmap(memory, size);
    }
    close(file);
}

/// The keymap of the seat's keyboard, as text; empty when the seat has none.
QByteArray seatKeymap()
{
    WaylandConnection connection;
    const WaylandPointer<wl_seat, wl_seat_destroy> seat(
        connection.bindFirst<wl_seat>(wl_seat_interface, 1));
    if (!seat) {
        return {};
    }
    uint32_t capabilities = 0;
    static const wl_seat_listener seatListener{
        .capabilities = [](void *data, wl_seat *,
                           uint32_t offered) { *static_cast<uint32_t *>(data) = offered; },
        .name = [](void *, wl_seat *, const char *) {},
    };
    wl_seat_add_listener(seat.get(), &seatListener, &capabilities);
    connection.roundtrip(QDeadlineTimer(patience));
    if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) == 0) {
        return {};
    }
    QByteArray keymap;
    static const wl_keyboard_listener keyboardListener{
        .keymap = keepKeymap,
        .enter = [](void *, wl_keyboard *, uint32_t, wl_surface *, wl_array *) {},
        .leave = [](void *, wl_keyboard *, uint32_t, wl_surface *) {},
        .key = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t) {},
        .modifiers = [](void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) {},
        .repeat_info = [](void *, wl_keyboard *, int32_t, int32_t) {},
    };
    const WaylandPointer<wl_keyboard, wl_keyboard_destroy> keyboard(
        wl_seat_get_keyboard(seat.get()));
    wl_keyboard_add_listener(keyboard.get(), &keyboardListener, &keymap);
    connection.roundtrip(QDeadlineTimer(patience));
    return keymap;
}

QString keysymName(xkb_keysym_t symbol)
{
    char name[64] = "";
    xkb_keysym_get_name(symbol, name, sizeof name);
    return QString::fromUtf8(name);
}

/// What the key gives on a level of a layout (1 is with Shift); absent unless it is one symbol.
std::optional<xkb_keysym_t> symbolOf(xkb_keymap *keymap, xkb_keycode_t keycode,
                                     xkb_layout_index_t layout, xkb_level_index_t level)
{
    const xkb_keysym_t *symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, level, &symbols);
    return count == 1 ? std::optional(symbols[0]) : std::nullopt;
}
} // namespace

WaylandKeyboard::WaylandKeyboard()
{
    const XkbPointer<xkb_context> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context) {
        return;
    }
    const QByteArray text = seatKeymap();
    const XkbPointer<xkb_keymap> keymap(
        text.isEmpty()
            ? xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)
            : xkb_keymap_new_from_string(context.get(), text.constData(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                         XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) {
        return;
    }
    for (const AnsiKey &key : ansiKeys()) {
        const xkb_keycode_t keycode = xkb_keymap_key_by_name(keymap.get(), key.xkbName);
        if (keycode == XKB_KEYCODE_INVALID) {
            continue;
        }
        m_keycodes.insert(key.keyCode, keycode);
        for (xkb_layout_index_t layout = 0;
             layout < xkb_keymap_num_layouts_for_key(keymap.get(), keycode); ++layout) {
            const auto symbol = symbolOf(keymap.get(), keycode, layout, 0);
            if (!symbol) {
                continue;
            }
            m_names[key.keyCode] << keysymName(*symbol);
            const char32_t letter = xkb_keysym_to_utf32(*symbol);
            if (letter <= U' ') {
                continue;
            }
            if (layout == 0) {
                m_labels.insert(key.keyCode, QString::fromUcs4(&letter, 1).toUpper());
            }
            const auto shifted = symbolOf(keymap.get(), keycode, layout, 1);
            m_characters[key.keyCode]
                << Characters{letter, shifted ? xkb_keysym_to_utf32(*shifted) : 0};
        }
    }
}

std::optional<quint32> WaylandKeyboard::keycode(quint16 virtualKeyCode) const
{
    const auto found = m_keycodes.constFind(virtualKeyCode);
    return found == m_keycodes.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<KeyCombination> WaylandKeyboard::combination(const QKeyEvent &event) const
{
    KeyCombination combination;
    if (event.key() == Qt::Key_Escape) {
        // Wherever the user has put it.
        combination.keyCode = escapeKeyCode;
    } else {
        // On Wayland Qt's scan code is XKB's key code.
        const auto found =
            std::find(m_keycodes.cbegin(), m_keycodes.cend(), event.nativeScanCode());
        if (found == m_keycodes.cend()) {
            return std::nullopt;
        }
        combination.keyCode = found.key();
    }
    const auto add = [&](Qt::KeyboardModifier modifier, quint64 flag) {
        combination.flags |= event.modifiers().testFlag(modifier) ? flag : 0;
    };
    add(Qt::ShiftModifier, KeyFlags::shift);
    add(Qt::ControlModifier, KeyFlags::control);
    add(Qt::AltModifier, KeyFlags::option);
    add(Qt::MetaModifier, KeyFlags::command);
    return combination;
}
