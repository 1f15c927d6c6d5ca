# SPDX-License-Identifier: MIT
"""Waiting for conditions, never for time."""

import socket
import time


class TimedOut(AssertionError):
    """What was waited for did not come; an assertion like any other."""


# Seconds, generous: tests run on machines that have ten times as much to do as they can.
PATIENCE = 45


def wait_until(what, condition, seconds=PATIENCE):
    """Polls until `condition()` is true and returns its value; TimedOut says what was missing."""
    limit = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > limit:
            raise TimedOut(f"waited {seconds} s for {what}")
        time.sleep(0.01)


def holds_for(what, condition, seconds):
    """For what must not happen: `condition()` has to stay true all the time."""
    limit = time.monotonic() + seconds
    while time.monotonic() < limit:
        if not condition():
            raise AssertionError(f"within {seconds} s: no longer {what}")
        time.sleep(0.01)


def is_listening(path):
    """Whether somebody accepts connections at this socket."""
    with socket.socket(socket.AF_UNIX) as client:
        try:
            client.connect(str(path))
        except OSError:
            return False
    return True
