# SPDX-License-Identifier: MIT
"""A window with a known text: what is captured, and another program to turn to."""

import os
import re
import subprocess
import threading

from . import desktop
from .desktop import Box
from .waiting import TimedOut, wait_until


class Page:
    """Use as a context manager; `box` is where it stands."""

    def __init__(self, text, box=None, pixel_size=None, options=()):
        self._wanted = box or self.usual_box()
        unit = desktop.page_unit()
        self._command = [os.environ["VELLORA_TEXT_PAGE"], "--pixel-size",
                         str(round((pixel_size or desktop.points(36)) / unit)), "--place",
                         ",".join(str(round(side / unit)) for side in self._wanted), *options, text]
        self.lines = []

    @staticmethod
    def usual_box():
        """Well inside the first screen, with room for the popup below."""
        return Box(desktop.points(60), desktop.points(50), desktop.points(520),
                   desktop.points(150))

    @staticmethod
    def corner_box(above):
        """In the first screen's lower right corner, `above` points over its edge: the popup below
        it has no room there."""
        screen, box = desktop.SCREENS[0], Page.usual_box()
        return box._replace(x=screen.right - box.width - desktop.points(10),
                            y=screen.bottom - box.height - desktop.points(above))

    def __enter__(self):
        self._process = subprocess.Popen(self._command, stdout=subprocess.PIPE, text=True)
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()
        try:
            wait_until("the text page's window", lambda: self._place()
                       and desktop.place_page(self._process.pid, self._wanted))
            wait_until("the text page", self._is_seen)
        except TimedOut as error:
            raise TimedOut(f"{error}, which said {self.lines}") from error
        # A window manager gives a new window the focus when it gets to it; were that later, it
        # would be another program that comes to the front.
        if desktop.HAS_MANAGER:
            wait_until("the text page's focus", lambda: "active" in self.lines)
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(60)
        self._reader.join(60)
        self._process.stdout.close()
        # The compositor takes its window away when it gets to it.
        wait_until("the text page's end",
                   lambda: desktop.page_box(self._process.pid, None) is None)

    def _read(self):
        for line in self._process.stdout:
            self.lines.append(line.strip())

    def _place(self):
        shown = [line for line in self.lines if line.startswith("shown ")]
        said = Box(*(int(side) for side in shown[-1].split()[1:])) if shown else None
        return said and desktop.page_box(self._process.pid, said)

    def _is_seen(self):
        corners = self.box.of(desktop.screenshot())
        return (corners[1, 1] == 255).all() and (corners[-2, -2] == 255).all() \
            and (corners < 64).any()

    @property
    def box(self):
        return self._place()

    def said(self, pattern):
        return [line for line in self.lines if re.fullmatch(pattern, line)]
