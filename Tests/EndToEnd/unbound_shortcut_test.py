# SPDX-License-Identifier: MIT
"""The shortcut on a desktop that serves none to programs: sway without its IPC, and without a portal
that has shortcuts. The settings name the command that the user can bind to a key."""

import re
import unittest

from support import accessibility, desktop, main
from support.accessibility import control, has_control
from support.artifacts import keep
from support.comparing import settled_screenshot, wait_until_dimmed
from support.pressing import NOT_CREATED
from support.program import Program, activate_action, wait_until_launched
from support.waiting import wait_until

TITLE = "Vellora Settings"
ENVIRONMENT = {"SWAYSOCK": None, **accessibility.ENVIRONMENT}
COMMAND = "gapplication action org.vellora.Vellora capture"
SENTENCE = ("This desktop lets programs bind no keys. Bind one yourself, in its settings, to: "
            f"{COMMAND}")


class UnboundShortcutTest(unittest.TestCase):
    def test_the_settings_name_the_command_once_it_is_switched_on(self):
        with Program({"hotkeyEnabled": "false"}, ENVIRONMENT) as program:
            wait_until_launched()
            activate_action("settings")
            switch = control(TITLE, "check box", "Enable global hotkey")
            self.assertFalse(has_control(TITLE, "label", SENTENCE))
            switch.do("Toggle")
            program.logged(re.escape(SENTENCE))
            program.logged(NOT_CREATED)
            control(TITLE, "label", SENTENCE)
            wait_until("the sentence to be seen",
                       lambda: control(TITLE, "label", SENTENCE).is_showing)
            keep("unbound-shortcut")

    def test_so_they_do_after_a_start_with_it_switched_on(self):
        with Program({"hotkeyEnabled": "true"}, ENVIRONMENT) as program:
            program.logged(re.escape(SENTENCE))
            program.logged(NOT_CREATED)
            activate_action("settings")
            control(TITLE, "label", SENTENCE)

    def test_the_command_captures(self):
        with Program({}, ENVIRONMENT):
            wait_until_launched()
            before = settled_screenshot()
            desktop.tool(*COMMAND.split())
            wait_until_dimmed(before)


if __name__ == "__main__":
    main()
