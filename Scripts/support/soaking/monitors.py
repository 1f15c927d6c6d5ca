# SPDX-License-Identifier: MIT
"""Monitors that come and go while a rectangle is drawn: the selection ends, the next capture works."""

from support import comparing, desktop, program
from support.page import Page

from . import measures
from .rounds import SETTINGS, Rounds


class Monitors(Rounds):
    """The one screen is parted into two monitors, at another place each time, and made whole."""

    def __init__(self, options):
        super().__init__(options)
        self.is_parted = False

    def run(self):
        screen = desktop.SCREENS[0]
        with Page(self.words) as page, program.Program(SETTINGS) as run:
            run.status_item()
            process = measures.Measures(run.process.pid)
            idle, first = process.now(), None
            while self.number < self.options.monitors:
                self.number += 1
                try:
                    self.change_once(page, screen)
                except AssertionError as problem:
                    self.problem(problem)
                    desktop.Pointer.release()
                    desktop.key("Escape")
                if self.number % 10 == 0:
                    self.part_or_join(screen, False)
                    self.capture(page)
                    first = first or process.now()
            self.judge(process, idle, first or idle)
        print(f"\n{self.number} changes of monitors in {self.minutes():.0f} minutes "
              f"(seed {self.options.seed})")
        return self.verdict()

    def change_once(self, page, screen):
        desktop.Clipboard.put("before")
        before = comparing.settled_screenshot()
        # The panel may stand on the other monitor now, so not by a click.
        program.activate_action("capture")
        self.until("the dim", lambda: comparing.is_dimmed(before))
        x, y = page.box.x, page.box.y
        desktop.Pointer.move(x, y)
        desktop.Pointer.press()
        for _ in range(self.random.randrange(4)):
            desktop.Pointer.move(x + self.random.randrange(page.box.width),
                                 y + self.random.randrange(page.box.height))
        self.part_or_join(screen, not self.is_parted)
        self.until("the overlay's end", lambda: comparing.is_unchanged(before))
        desktop.Pointer.move(page.box.right, page.box.bottom)
        desktop.Pointer.release()
        if desktop.Clipboard.text() != "before":
            self.problem("another text on the clipboard")

    def part_or_join(self, screen, is_parted):
        if is_parted == self.is_parted:
            return
        self.is_parted = is_parted
        if not is_parted:
            desktop.tool("xrandr", "--delmonitor", "right")
            desktop.tool("xrandr", "--delmonitor", "left")
            return
        left = self.random.randrange(screen.width // 4, 3 * screen.width // 4)
        for name, width, x, output in (("left", left, 0, "screen"),
                                       ("right", screen.width - left, left, "none")):
            desktop.tool("xrandr", "--setmonitor", name,
                         f"{width}/200x{screen.height}/200+{x}+0", output)

    def capture(self, page):
        before = comparing.settled_screenshot()
        program.activate_action("capture")
        self.until("the dim", lambda: comparing.is_dimmed(before))
        desktop.Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
        self.until("the text", lambda: desktop.Clipboard.text() == self.words)
        self.until("the screens of before", lambda: comparing.is_unchanged(before))
