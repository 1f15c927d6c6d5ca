// SPDX-License-Identifier: MIT
// A lasting pointer and keyboard for Wayland compositors that let programs bring some. It is to
// stay as long as a test: programs see no pointer or keyboard at all while a seat has none.
//
//   wayland-input      reads lines, and answers each with "done" once the compositor has it:
//     move X Y W H     the pointer, to a place in a desktop of W x H pixels
//     press B, release B   a button (left 272, middle 274, right 273)
//     click B              both, with no pause between them that could be a long press
//     key CODE 1|0     a key, by its number in linux/input-event-codes.h, down or up
//     modifiers MASK   those held down: 1 Shift, 4 Control, 8 Alt, 64 Super, where keys do not tell

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wayland-fake-input.h>
#include <wayland-virtual-keyboard-unstable-v1.h>
#include <wayland-wlr-virtual-pointer-unstable-v1.h>
#include <xkbcommon/xkbcommon.h>

namespace {
struct Globals
{
    zwlr_virtual_pointer_manager_v1 *pointers = nullptr;
    zwp_virtual_keyboard_manager_v1 *keyboards = nullptr;
    wl_seat *seat = nullptr;
    org_kde_kwin_fake_input *fakeInput = nullptr;
};

template <typename Proxy>
void bind(Proxy *&proxy, wl_registry *registry, uint32_t name, const char *offered,
          const wl_interface &interface, uint32_t version = 1)
{
    if (!proxy && std::strcmp(offered, interface.name) == 0) {
        proxy = static_cast<Proxy *>(wl_registry_bind(registry, name, &interface, version));
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
            bind(globals.fakeInput, registry, name, interface, org_kde_kwin_fake_input_interface,
                 ORG_KDE_KWIN_FAKE_INPUT_KEYBOARD_KEY_SINCE_VERSION);
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

/// What the lines are carried out with.
class Hands
{
public:
    virtual ~Hands() = default;
    virtual void move(uint32_t x, uint32_t y, uint32_t width, uint32_t height) = 0;
    virtual void button(uint32_t number, bool isDown) = 0;
    virtual void key(uint32_t code, bool isDown) = 0;
    virtual void modifiers(uint32_t mask) = 0;
};

/// Devices of our own, as wlroots lets programs have them.
class VirtualHands : public Hands
{
public:
    VirtualHands(zwlr_virtual_pointer_v1 *pointer, zwp_virtual_keyboard_v1 *keyboard)
        : m_pointer(pointer)
        , m_keyboard(keyboard)
    {
    }

    void move(uint32_t x, uint32_t y, uint32_t width, uint32_t height) override
    {
        zwlr_virtual_pointer_v1_motion_absolute(m_pointer, now(), x, y, width, height);
        zwlr_virtual_pointer_v1_frame(m_pointer);
    }
    void button(uint32_t number, bool isDown) override
    {
        zwlr_virtual_pointer_v1_button(m_pointer, now(), number, isDown ? 1 : 0);
        zwlr_virtual_pointer_v1_frame(m_pointer);
    }
    void key(uint32_t code, bool isDown) override
    {
        zwp_virtual_keyboard_v1_key(m_keyboard, now(), code, isDown ? 1 : 0);
    }
    void modifiers(uint32_t mask) override
    {
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, mask, 0, 0, 0);
    }

private:
    zwlr_virtual_pointer_v1 *m_pointer;
    zwp_virtual_keyboard_v1 *m_keyboard;
};

/// KWin's own device, moved by us.
class FakeHands final : public Hands
{
public:
    explicit FakeHands(org_kde_kwin_fake_input *input)
        : m_input(input)
    {
        org_kde_kwin_fake_input_authenticate(m_input, "tests", "tests");
        // The device is made with the first event, which nobody hears of.
        key(leftShift, true);
        key(leftShift, false);
    }

    void move(uint32_t x, uint32_t y, uint32_t /*width*/, uint32_t /*height*/) override
    {
        org_kde_kwin_fake_input_pointer_motion_absolute(m_input,
                                                        wl_fixed_from_int(static_cast<int>(x)),
                                                        wl_fixed_from_int(static_cast<int>(y)));
    }
    void button(uint32_t number, bool isDown) override
    {
        org_kde_kwin_fake_input_button(m_input, number, isDown ? 1 : 0);
    }
    void key(uint32_t code, bool isDown) override
    {
        org_kde_kwin_fake_input_keyboard_key(m_input, code, isDown ? 1 : 0);
    }
    /// The keys have told.
    void modifiers(uint32_t /*mask*/) override {}

private:
    static constexpr uint32_t leftShift = 42;

    org_kde_kwin_fake_input *m_input;
};

/// Null when the compositor takes no pointer and keyboard from us.
std::unique_ptr<Hands> makeHands(const Globals &globals)
{
    if (globals.fakeInput) {
        return std::make_unique<FakeHands>(globals.fakeInput);
    }
    if (!globals.pointers || !globals.keyboards || !globals.seat) {
        return nullptr;
    }
    auto *pointer =
        zwlr_virtual_pointer_manager_v1_create_virtual_pointer(globals.pointers, globals.seat);
    auto *keyboard =
        zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals.keyboards, globals.seat);
    return setKeymap(keyboard) ? std::make_unique<VirtualHands>(pointer, keyboard) : nullptr;
}

bool perform(std::istringstream &line, Hands &hands)
{
    std::string verb;
    uint32_t first = 0;
    uint32_t second = 0;
    line >> verb >> first;
    if (verb == "move") {
        uint32_t width = 0;
        uint32_t height = 0;
        line >> second >> width >> height;
        hands.move(first, second, width, height);
    } else if (verb == "press" || verb == "release") {
        hands.button(first, verb == "press");
    } else if (verb == "click") {
        hands.button(first, true);
        hands.button(first, false);
    } else if (verb == "key") {
        line >> second;
        hands.key(first, second != 0);
    } else if (verb == "modifiers") {
        hands.modifiers(first);
    } else {
        return false;
    }
    return !line.fail();
}
} // namespace

int main()
{
    // For the life of the process, with all that is made on it.
    static wl_display *const display = wl_display_connect(nullptr);
    if (!display) {
        std::fputs("wayland-input: no compositor\n", stderr);
        return 1;
    }
    Globals globals;
    wl_registry_add_listener(wl_display_get_registry(display), &registryListener, &globals);
    wl_display_roundtrip(display);
    const std::unique_ptr<Hands> hands = makeHands(globals);
    if (!hands) {
        std::fputs("wayland-input: the compositor takes no pointer and keyboard\n", stderr);
        return 1;
    }
    wl_display_roundtrip(display);
    std::cout << "done" << std::endl;
    for (std::string text; std::getline(std::cin, text);) {
        std::istringstream line(text);
        if (!perform(line, *hands)) {
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
