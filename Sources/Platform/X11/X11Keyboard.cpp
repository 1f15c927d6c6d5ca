// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Keyboard.h"

#include "Platform/AnsiKeys.h"
#include "Platform/KeyTap.h"
#include "Platform/X11/X11Connection.h"

#include <xcb/xcb.h>

#include <memory>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace {
struct XkbUnref
{
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap *keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state *state) const { xkb_state_unref(state); }
};

template <typename Object>
using XkbPointer = std::unique_ptr<Object, XkbUnref>;

/// The eight modifiers of the core protocol, in the order of the modifier mapping.
constexpr int modifierCount = 8;
/// The first of those without a fixed meaning: Shift, Lock and Control come before it.
constexpr int firstFreeModifier = 3;
} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t *connection)
{
    if (!xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr)) {
        return;
    }
    readKeys(connection);
    readModifiers(connection);
}

void X11Keyboard::readKeys(xcb_connection_t *connection)
{
    const int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    const XkbPointer<xkb_context> context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const XkbPointer<xkb_keymap> keymap(
        context && device >= 0 ? xkb_x11_keymap_new_from_device(context.get(), connection, device,
                                                                XKB_KEYMAP_COMPILE_NO_FLAGS)
                               : nullptr);
    const XkbPointer<xkb_state> state(
        keymap ? xkb_x11_state_new_from_device(keymap.get(), connection, device) : nullptr);
    if (!state) {
        return;
    }
    for (const AnsiKey &key : ansiKeys()) {
        const xkb_keycode_t keycode = xkb_keymap_key_by_name(keymap.get(), key.xkbName);
        if (keycode == XKB_KEYCODE_INVALID || keycode > 255) {
            continue;
        }
        m_keycodes.insert(key.keyCode, static_cast<xcb_keycode_t>(keycode));
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(
            keymap.get(), keycode, xkb_state_key_get_layout(state.get(), keycode), 0, &symbols);
        const char32_t letter = count == 1 ? xkb_keysym_to_utf32(symbols[0]) : 0;
        if (letter > U' ') {
            m_labels.insert(key.keyCode, QString::fromUcs4(&letter, 1).toUpper());
        }
    }
}

void X11Keyboard::readModifiers(xcb_connection_t *connection)
{
    const xcb_setup_t *setup = xcb_get_setup(connection);
    const auto modifierCookie = xcb_get_modifier_mapping(connection);
    const auto keyboardCookie =
        xcb_get_keyboard_mapping(connection, setup->min_keycode,
                                 static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1));
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifierMap(
        xcb_get_modifier_mapping_reply(connection, modifierCookie, nullptr));
    const XcbReply<xcb_get_keyboard_mapping_reply_t> keyboardMap(
        xcb_get_keyboard_mapping_reply(connection, keyboardCookie, nullptr));
    if (!modifierMap || !keyboardMap) {
        return;
    }
    const xcb_keycode_t *modifierKeys = xcb_get_modifier_mapping_keycodes(modifierMap.get());
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(keyboardMap.get());
    quint16 meta = 0;
    // One bit a role: a shortcut asks for one modifier, not for every key that can give it.
    const auto assign = [](quint16 &role, quint16 bit) {
        role = role == 0 ? bit : role;
    };
    for (int modifier = firstFreeModifier; modifier < modifierCount; ++modifier) {
        const auto bit = static_cast<quint16>(1 << modifier);
        for (int key = 0; key < modifierMap->keycodes_per_modifier; ++key) {
            const xcb_keycode_t keycode =
                modifierKeys[modifier * modifierMap->keycodes_per_modifier + key];
            if (keycode < setup->min_keycode) {
                continue;
            }
            for (int column = 0; column < keyboardMap->keysyms_per_keycode; ++column) {
                switch (symbols[(keycode - setup->min_keycode) * keyboardMap->keysyms_per_keycode +
                                column]) {
                case XKB_KEY_Super_L:
                case XKB_KEY_Super_R:
                    assign(m_command, bit);
                    break;
                case XKB_KEY_Alt_L:
                case XKB_KEY_Alt_R:
                    assign(m_option, bit);
                    break;
                case XKB_KEY_Meta_L:
                case XKB_KEY_Meta_R:
                    assign(meta, bit);
                    break;
                case XKB_KEY_Num_Lock:
                    assign(m_numLock, bit);
                    break;
                case XKB_KEY_Scroll_Lock:
                    assign(m_scrollLock, bit);
                    break;
                default:
                    break;
                }
            }
        }
    }
    if (m_option == 0) {
        m_option = meta;
    }
}

std::optional<xcb_keycode_t> X11Keyboard::keycode(quint16 virtualKeyCode) const
{
    const auto found = m_keycodes.constFind(virtualKeyCode);
    return found == m_keycodes.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<quint16> X11Keyboard::virtualKeyCode(quint32 keycode) const
{
    for (auto key = m_keycodes.cbegin(); key != m_keycodes.cend(); ++key) {
        if (key.value() == keycode) {
            return key.key();
        }
    }
    return std::nullopt;
}

std::optional<quint16> X11Keyboard::modifiers(quint64 flags) const
{
    if (((flags & KeyFlags::command) && m_command == 0) ||
        ((flags & KeyFlags::option) && m_option == 0)) {
        return std::nullopt;
    }
    quint16 bits = 0;
    if (flags & KeyFlags::shift) {
        bits |= XCB_MOD_MASK_SHIFT;
    }
    if (flags & KeyFlags::control) {
        bits |= XCB_MOD_MASK_CONTROL;
    }
    if (flags & KeyFlags::option) {
        bits |= m_option;
    }
    if (flags & KeyFlags::command) {
        bits |= m_command;
    }
    return bits;
}

QList<quint16> X11Keyboard::lockVariants() const
{
    QList<quint16> variants{0};
    for (const quint16 lock : {quint16(XCB_MOD_MASK_LOCK), m_numLock, m_scrollLock}) {
        if (lock == 0) {
            continue;
        }
        const qsizetype count = variants.size();
        for (qsizetype index = 0; index < count; ++index) {
            variants << static_cast<quint16>(variants.at(index) | lock);
        }
    }
    return variants;
}
