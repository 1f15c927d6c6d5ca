// SPDX-License-Identifier: MIT
#include "Platform/Wayland/ShortcutsInhibitor.h"

#include "Platform/Wayland/QtWayland.h"
#include "Platform/Wayland/WaylandConnection.h"

#include <wayland-keyboard-shortcuts-inhibit-unstable-v1.h>

namespace {
struct ShortcutsInhibitor : KeyTap::Inhibitor
{
    // In the order of their making: each is destroyed before what it was made by.
    WaylandPointer<wl_event_queue, wl_event_queue_destroy> queue;
    WaylandPointer<zwp_keyboard_shortcuts_inhibit_manager_v1,
                   zwp_keyboard_shortcuts_inhibit_manager_v1_destroy>
        manager;
    WaylandPointer<zwp_keyboard_shortcuts_inhibitor_v1, zwp_keyboard_shortcuts_inhibitor_v1_destroy>
        inhibitor;
};
} // namespace

std::unique_ptr<KeyTap::Inhibitor> inhibitWaylandShortcuts(QWindow &window)
{
    wl_display *display = qtWaylandDisplay();
    wl_seat *seat = qtWaylandSeat();
    wl_surface *surface = qtWaylandSurface(window);
    if (!display || !seat || !surface) {
        return nullptr;
    }
    auto made = std::make_unique<ShortcutsInhibitor>();
    made->queue.reset(wl_display_create_queue(display));
    made->manager.reset(static_cast<zwp_keyboard_shortcuts_inhibit_manager_v1 *>(bindOnQtConnection(
        zwp_keyboard_shortcuts_inhibit_manager_v1_interface, 1, made->queue.get())));
    if (!made->manager) {
        return nullptr;
    }
    made->inhibitor.reset(zwp_keyboard_shortcuts_inhibit_manager_v1_inhibit_shortcuts(
        made->manager.get(), surface, seat));
    // A shortcut that is pressed from now on counts.
    wl_display_roundtrip_queue(display, made->queue.get());
    return made;
}
