// SPDX-License-Identifier: MIT
// A lasting pointer and keyboard for Wayland compositors that let programs bring some. It is to
// stay as long as a test: programs see no pointer or keyboard at all while a seat has none.
//
//   wayland-input      reads lines, and answers each with "done" once the compositor has it:
//     move X Y W H     the pointer, to a place in a desktop of W x H pixels
//     press B, release B   a button (left 272, middle 274, right 273)
//     key CODE 1|0     a key, by its number in linux/input-event-codes.h, down or up
//     modifiers MASK   those held down: 1 Shift, 4 Control, 8 Alt, 64 Super; the keys do not tell

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wayland-virtual-keyboard-unstable-v1.h>
#include <wayland-wlr-virtual-pointer-unstable-v1.h>
#include <xkbcommon/xkbcommon.h>

namespace {
struct Globals
{
    zwlr_virtual_pointer_manager_v1 *pointers = nullptr;
    zwp_virtual_keyboard_manager_v1 *keyboards = nullptr;
    wl_seat *seat = nullptr;
};

template <typename Proxy>
void bind(Proxy *&proxy, wl_registry *registry, uint32_t name, const char *offered,
          const wl_interface &interface)
{
    if (!proxy && std::strcmp(offered, interface.name) == 0) {
        proxy = static_cast<Proxy *>(wl_registry_bind(registry, name, &interface, 1));
    }
}

const wl_registry_listener registryListener{
    .global =
        [](void *data, wl_registry *registry, uint32_t name, const char *interface, uint32_t) {
            auto &globals = *static_cast<Globals *>(data);
            bind(globals.pointers, registry, name, interface,
                 zwlr_virtual_pointer_manager_v1_interface);
            bind(globals.keyboards, registry, name, interface,
                 zwp_virtual_keyboard_manager_v1_interface);
            bind(globals.seat, registry, name, interface, wl_seat_interface);
        },
    .global_remove = [](void *, wl_registry *, uint32_t) {},
};

uint32_t now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

/// Gives the keyboard the default keymap.
bool setKeymap(zwp_virtual_keyboard_v1 *keyboard)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap *keymap = xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
    char *text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const std::size_t size = std::strlen(text) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    const bool isWritten = write(file, text, size) == static_cast<ssize_t>(size);
    zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                   static_cast<uint32_t>(size));
    std::free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
    return isWritten;
}

bool perform(std::istringstream &line, zwlr_virtual_pointer_v1 *pointer,
             zwp_virtual_keyboard_v1 *keyboard)
{
    std::string verb;
    uint32_t first = 0;
    uint32_t second = 0;
    line >> verb >> first;
    if (verb == "move") {
        uint32_t width = 0;
        uint32_t height = 0;
        line >> second >> width >> height;
        zwlr_virtual_pointer_v1_motion_absolute(pointer, now(), first, second, width, height);
        zwlr_virtual_pointer_v1_frame(pointer);
    } else if (verb == "press" || verb == "release") {
        zwlr_virtual_pointer_v1_button(pointer, now(), first, verb == "press" ? 1 : 0);
        zwlr_virtual_pointer_v1_frame(pointer);
    } else if (verb == "key") {
        line >> second;
        zwp_virtual_keyboard_v1_key(keyboard, now(), first, second);
    } else if (verb == "modifiers") {
        zwp_virtual_keyboard_v1_modifiers(keyboard, first, 0, 0, 0);
    } else {
        return false;
    }
    return !line.fail();
}
} // namespace

int main()
{
    wl_display *display = wl_display_connect(nullptr);
    if (!display) {
        std::fputs("wayland-input: no compositor\n", stderr);
        return 1;
    }
    Globals globals;
    wl_registry_add_listener(wl_display_get_registry(display), &registryListener, &globals);
    wl_display_roundtrip(display);
    if (!globals.pointers || !globals.keyboards || !globals.seat) {
        std::fputs("wayland-input: the compositor takes no pointer and keyboard\n", stderr);
        return 1;
    }
    auto *pointer =
        zwlr_virtual_pointer_manager_v1_create_virtual_pointer(globals.pointers, globals.seat);
    auto *keyboard =
        zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals.keyboards, globals.seat);
    if (!setKeymap(keyboard)) {
        return 1;
    }
    wl_display_roundtrip(display);
    std::cout << "done" << std::endl;
    for (std::string text; std::getline(std::cin, text);) {
        std::istringstream line(text);
        if (!perform(line, pointer, keyboard)) {
            std::fprintf(stderr, "wayland-input: what is \"%s\"?\n", text.c_str());
            return 1;
        }
        if (wl_display_roundtrip(display) < 0) {
            return 1;
        }
        std::cout << "done" << std::endl;
    }
    return 0;
}
