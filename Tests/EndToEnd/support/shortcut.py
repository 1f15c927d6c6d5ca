# SPDX-License-Identifier: MIT
"""Shortcuts as other programs on the X server meet them."""

import os
import subprocess
import threading

from .program import activate_action, is_on_bus
from .waiting import wait_until

# The server's numbers on an evdev keyboard.
O_KEY, K_KEY = 32, 45
SHIFT, CONTROL, ALT, SUPER = 1, 4, 8, 64


class KeyHolder:
    """Another program that asks for a shortcut; as a context manager it keeps it."""

    def __init__(self, key, modifiers):
        self._command = [os.environ["VELLORA_KEY_HOLDER"], str(key), str(modifiers)]
        self.presses = 0

    def __enter__(self):
        self._process = subprocess.Popen(self._command, stdout=subprocess.PIPE, text=True)
        self.granted = self._process.stdout.readline() == "granted\n"
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        return self

    def _read(self):
        for _ in self._process.stdout:
            self.presses += 1

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(60)
        self._reader.join(60)
        self._process.stdout.close()


def is_free(key, modifiers):
    with KeyHolder(key, modifiers) as holder:
        return holder.granted


def is_taken(key=O_KEY, modifiers=SHIFT | SUPER):
    """Not to be polled: the program may ask for the key just while this asks."""
    return not is_free(key, modifiers)


def wait_until_taken(key=O_KEY, modifiers=SHIFT | SUPER):
    """For a program that has been started with the shortcut on."""
    wait_until("the program on the session bus", is_on_bus)
    # What it is asked is answered by its event loop: the second answer comes after the launch.
    for _ in range(2):
        activate_action("no-such-action")
    assert is_taken(key, modifiers), "the shortcut is free"


def wait_until_free(key=O_KEY, modifiers=SHIFT | SUPER):
    wait_until("the shortcut to be free", lambda: is_free(key, modifiers))
