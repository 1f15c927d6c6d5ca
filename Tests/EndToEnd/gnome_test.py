# SPDX-License-Identifier: MIT
"""What is different on GNOME: the question for pictures of the screen, and windows at places of its
own choice."""

import os
import signal
import unittest
from pathlib import Path

from gi.repository import Gio

from support import desktop, main
from support.comparing import (settled_screenshot, stays_unchanged, wait_until_dimmed,
                               wait_until_unchanged)
from support.desktop import Box, Clipboard, Pointer, difference, key, screenshot
from support.gnome import grabbed_keys, set_permission, tray_icons
from support.gnome_dialogs import allow_shortcut, answer, has_shortcuts_portal
from support.page import Page
from support.pressing import NOT_CREATED, QT_O, assert_captures
from support.program import Program, activate_action, is_on_bus
from support.waiting import holds_for, wait_until
from support.wayland_tests import TEXT, ClipboardTests

MEDIA_KEYS = "org.gnome.settings-daemon.plugins.media-keys"
OUR_PLACE = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/vellora/"
PICTURES = Path(os.environ["HOME"]) / "Pictures"

def drawn_box(window, before, least_height):
    """Where the window is, once the screens show the whole of it; all of it differs from what was
    there before."""
    box = desktop.frame_box(window)
    seen = difference(box.of(before), box.of(screenshot()))
    return box if box.height > least_height and seen == Box(0, 0, box.width, box.height) else None


class GnomeTest(ClipboardTests, unittest.TestCase):
    def tearDown(self):
        set_permission("yes")

    def test_the_permission_is_asked_for_and_the_capture_follows(self):
        set_permission(None)
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}):
            Clipboard.put("before")
            wait_until("the program on the session bus", is_on_bus)
            before = settled_screenshot()
            activate_action("capture")
            answer("Allow")
            wait_until_dimmed(before)
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            self.assertEqual(list(PICTURES.iterdir()), [])

    def test_a_denial_ends_it(self):
        set_permission(None)
        with Page(TEXT), Program({"outputMode": "clipboard"}) as program:
            wait_until("the program on the session bus", is_on_bus)
            before = settled_screenshot()
            activate_action("capture")
            answer("Deny")
            wait_until_unchanged("the screen of before", before)
            program.logged("Vellora: Screen Recording permission not granted: It was denied[ ;].*")
            # Longer than a look at what the user may have changed.
            stays_unchanged("without an overlay", before, 2)
            # The settings allow it later: the program sees that by itself.
            set_permission("yes")
            wait_until_dimmed(before)
            key("Escape")
            wait_until_unchanged("the overlay's end", before)
            self.assertTrue(program.is_running())

    def test_the_icon_stays(self):
        wait_until("the end of earlier programs' icons", lambda: not tray_icons())
        with Program({}) as program:
            program.status_item()
            # The extension reads the item once more a second after it has shown it.
            holds_for("the icon in the panel", desktop.find_tray_icon, 3)

    def test_shortcut(self):
        with Page(TEXT) as page:
            others = wait_until("the settings daemon's own keys", grabbed_keys)
            with Program({"outputMode": "clipboard", "hotkeyEnabled": "true"}):
                allow_shortcut()
                wait_until("the shortcut", lambda: grabbed_keys() == others + 1)
                assert_captures("super+shift+o")
                self.assertEqual(page.said(f"key {QT_O}"), [])
            wait_until("the shortcut to be free", lambda: grabbed_keys() == others)

    @unittest.skipIf(has_shortcuts_portal(), "the portal asks the user for another")
    def test_shortcut_that_is_taken(self):
        others = wait_until("the settings daemon's own keys", grabbed_keys)
        # GNOME's own, which locks the screen.
        with Program({"hotkeyEnabled": "true", "hotkeyString": "cmd+l"}) as program:
            program.logged(NOT_CREATED)
            self.assertEqual(grabbed_keys(), others)

    def test_shortcut_is_freed_after_a_kill(self):
        others = wait_until("the settings daemon's own keys", grabbed_keys)
        killed = Program({"hotkeyEnabled": "true"})
        killed.start()
        wait_until("the shortcut", lambda: grabbed_keys() == others + 1)
        killed.process.send_signal(signal.SIGKILL)
        killed.wait_for_end()
        wait_until("the name's release", lambda: not is_on_bus())
        self.assertEqual(grabbed_keys(), others + 1)
        with Program({}):
            wait_until("the shortcut to be free", lambda: grabbed_keys() == others)

    def test_a_key_of_the_users_at_our_place_stays(self):
        mine = Gio.Settings.new_with_path(f"{MEDIA_KEYS}.custom-keybinding", OUR_PLACE)
        listed = Gio.Settings.new(MEDIA_KEYS)
        others = wait_until("the settings daemon's own keys", grabbed_keys)
        mine.set_string("command", "true")
        mine.set_string("binding", "<Control><Alt>k")
        listed.set_strv("custom-keybindings", [OUR_PLACE])
        Gio.Settings.sync()
        wait_until("the user's key", lambda: grabbed_keys() == others + 1)
        with Program({"hotkeyEnabled": "true"}):
            wait_until("the shortcut", lambda: grabbed_keys() == others + 2)
        wait_until("the user's key alone", lambda: grabbed_keys() == others + 1)
        self.assertEqual(mine.get_string("command"), "true")
        self.assertEqual(listed.get_strv("custom-keybindings"), [OUR_PLACE])
        listed.reset("custom-keybindings")
        Gio.Settings.sync()
        wait_until("no key of the user's", lambda: grabbed_keys() == others)

    def test_no_picture_is_left_behind(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            self.assertEqual(list(PICTURES.iterdir()), [])

    def test_no_window_is_left_of_a_copy(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until("no window but the page",
                       lambda: list(desktop.listed_windows().values()) == ["Text page"])

    def test_result_window(self):
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            popup = program.popup()
            # The shell gives a window the keyboard before it draws it, and clicks only what it drew.
            # The content is 240 points high; the program adds a title bar when it gets to it.
            frame = wait_until("the result window with its title bar",
                               lambda: drawn_box(popup, before, 260))
            self.assertEqual(Clipboard.text(), "before")
            # As far from the lower right corner as the window's border is wide, which it draws.
            Pointer.click(frame.right - 58, frame.bottom - 25)
            wait_until("the copied text", lambda: Clipboard.text() == TEXT)
            key("Escape")
            wait_until_unchanged("the result window's end", before)


if __name__ == "__main__":
    main()
