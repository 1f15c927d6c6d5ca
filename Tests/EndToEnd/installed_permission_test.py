# SPDX-License-Identifier: MIT
"""GNOME's question for pictures of the screen, as users meet it first: the installed program, started
by the shell from its list of programs as the unit that systemd makes of it, and asked about by the
shell's own dialog."""

import unittest
from contextlib import contextmanager

from support import main
from support.comparing import settled_screenshot, wait_until_dimmed, wait_until_unchanged
from support.desktop import Clipboard, Pointer
from support.gnome import set_permission, stored_permission
from support.gnome_dialogs import answer, dialog_button
from support.installed import InstalledProgram, launch, launch_in, tell_bus
from support.page import Page
from support.program import APPLICATION_ID
from support.scope import Unit
from support.status_notifier import read
from support.waiting import wait_until

TEXT = "As it is at home"
DENIED = ("Vellora: Screen Recording permission not granted: It was denied; this changes it: "
          "Settings, Applications, Vellora, Screenshots.")


@contextmanager
def started():
    """The program, started from the shell's list."""
    with Unit(f"app-{APPLICATION_ID}.service") as unit, \
            InstalledProgram({"outputMode": "clipboard"}, lambda: launch_in(unit)) as program:
        program.status_item()
        yield program


class InstalledPermissionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        tell_bus()

    def setUp(self):
        set_permission(None)

    def tearDown(self):
        set_permission("yes")

    def assert_asks(self):
        """Chosen once more in the list it captures; so it has to ask."""
        launch()
        wait_until("the question", lambda: dialog_button("Allow"))

    def test_allow(self):
        with Page(TEXT) as page, started():
            before = settled_screenshot()
            Clipboard.put("before")
            self.assert_asks()
            answer("Allow")
            wait_until_dimmed(before)
            self.assertEqual(stored_permission(), {APPLICATION_ID: ["yes"]})
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    def test_deny(self):
        with started() as program:
            before = settled_screenshot()
            self.assert_asks()
            answer("Deny")
            # Looked for at once, as it goes after three seconds.
            wait_until("the mark", lambda: "Permission needed" in read("Title"))
            program.logged(DENIED)
            wait_until_unchanged("what was there before", before)
            self.assertEqual(stored_permission(), {APPLICATION_ID: ["no"]})


if __name__ == "__main__":
    main()
