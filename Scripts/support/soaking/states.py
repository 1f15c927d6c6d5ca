# SPDX-License-Identifier: MIT
"""What the program may be at when something happens to it."""

from support import comparing, desktop, program
from support.slow import reading_time
from support.waiting import wait_until

READING = 0.1  # seconds of processor time, after which it surely reads


def idle(_run, _page):
    pass


def dimmed(run, _page):
    run.start_capture()


def dragging(run, page):
    run.start_capture()
    desktop.Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom),
                         release=False)


def reading(run, page):
    before = run.capture(page.box)
    wait_until("the overlay's end", lambda: comparing.is_unchanged(before), 60)
    # What was taken until now may have loaded models only.
    taken = reading_time(run)
    wait_until("the recognition", lambda: reading_time(run) > taken + READING, 60)


def settings(_run, _page):
    program.activate_action("settings")
    wait_until("the settings", lambda: desktop.windows_titled("Vellora Settings"), 60)


STATES_WITHOUT_A_BUS = (idle, dimmed, dragging, reading)
STATES = (*STATES_WITHOUT_A_BUS, settings)


def leave(state):
    """What a hand does to end the state."""
    if state is dragging:
        desktop.Pointer.release()
    if state in (dimmed, dragging):
        desktop.key("Escape")
