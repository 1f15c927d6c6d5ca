# SPDX-License-Identifier: MIT
"""Captures in one process, in random order with what else users do."""

import os

from support import comparing, desktop, program
from support.page import Page
from support.waiting import wait_until

from . import measures
from .rounds import SETTINGS, Rounds

OTHER_WORDS = "Something else"
# Below all wallpaper that is captured.
OTHER_BOX = desktop.Box(60, 500, 520, 150)

# The first captures load the models and every library: what follows is compared with them.
WARM_UP = 20
REPORT_EVERY = 50


class Captures(Rounds):
    def __init__(self, options):
        super().__init__(options)
        self.captures = self.cancelled = 0

    def capture(self, run, page):
        before = run.capture(page.box)
        self.captures += 1
        # Else what the next one shall dim is not yet on the screens.
        self.until("the overlay's end", lambda: comparing.is_unchanged(before))

    def text(self, run):
        desktop.Clipboard.put("before")
        self.capture(run, self.page)
        self.until("the text", lambda: desktop.Clipboard.text() == self.words)

    def two(self, run):
        desktop.Clipboard.put("before")
        self.capture(run, self.page)
        self.capture(run, self.other)
        self.until("the newer text", lambda: desktop.Clipboard.text() == OTHER_WORDS)

    def wallpaper(self, run):
        screen, box = desktop.SCREENS[0], self.page.box
        top = box.bottom + 10
        x, y = self.random.randrange(10, screen.right - 300), self.random.randrange(top, top + 60)
        run.start_capture()
        desktop.Pointer.drag((x, y), (x + self.random.randrange(5, 280), y + 150))
        self.captures += 1
        # There is only wallpaper: nothing is found, as the log says.
        run.logged("Vellora OCR: No text found")

    def cancel(self, run):
        run.start_capture()
        self.cancelled += 1
        if self.random.random() < 0.5:
            desktop.key("Escape")
        else:
            desktop.Pointer.click(*self.page.box.middle)

    def settings(self, _run):
        program.activate_action("settings")
        window, = wait_until("the settings", lambda: desktop.windows_titled("Vellora Settings"))
        desktop.tool(os.environ["VELLORA_CLOSE_WINDOW"], window)
        self.until("the settings' end", lambda: not desktop.windows_titled("Vellora Settings"))

    def run(self):
        rounds = [self.text] * 5 + [self.wallpaper, self.cancel, self.two, self.settings]
        with Page(self.words) as self.page, Page(OTHER_WORDS, OTHER_BOX) as self.other, \
                program.Program(SETTINGS) as run:
            run.status_item()
            process = measures.Measures(run.process.pid)
            idle = process.now()
            print("idle:", measures.line(idle), flush=True)
            untouched = comparing.settled_screenshot()
            first, shown = None, 0
            while not self.is_over():
                self.number += 1
                try:
                    self.random.choice(rounds)(run)
                except AssertionError as problem:
                    self.problem(problem)
                    desktop.key("Escape")
                self.until("the screens of before", lambda: comparing.is_unchanged(untouched))
                if first is None and self.captures >= WARM_UP:
                    first = process.now()
                    print(f"after {self.captures} captures:", measures.line(first), flush=True)
                if self.captures >= shown + REPORT_EVERY:
                    shown = self.captures
                    print(f"after {self.captures} captures:", measures.line(process.now()),
                          flush=True)
            self.judge(process, idle, first or idle)
        print(f"\n{self.captures} captures and {self.cancelled} cancelled ones in "
              f"{self.minutes():.0f} minutes (seed {self.options.seed})")
        return self.verdict()

    def is_over(self):
        if self.options.minutes:
            return self.minutes() >= self.options.minutes
        return self.captures >= self.options.captures
