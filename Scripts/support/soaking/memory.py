# SPDX-License-Identifier: MIT
"""Memory that ends while something is captured, and comes back: a sentence tells of it, nothing stays
on the screen, and the next capture works. The kernel's limit on a process's addresses plays it."""

import collections
import re
import resource
from pathlib import Path

from support import comparing, desktop, program
from support.page import Page
from support.waiting import wait_until

from .rounds import SETTINGS, Rounds

# Bytes of addresses that are left, at most: a capture takes no more than some forty megabytes, most
# of them the stacks of threads.
MOST_LEFT = 24 * 1024 * 1024
SENTENCES = (r"Vellora: out of memory",
             r"Vellora: The desktop let no overlay cover the screen",
             r"Vellora OCR: OCR error: There is not enough memory to read the picture\. "
             r"Close some programs and try again\.",
             r"Vellora OCR: OCR error: The system cannot start any more work\. "
             r"Close some programs and try again\.")
# Qt says first what it could not have, and may do without it.
QT_LINES = r"(qt\.qpa\.xcb: failed to mmap segment from X server|QPainter::|QWidget::paintEngine:).*"
WITHOUT_LIMIT = (resource.RLIM_INFINITY, resource.RLIM_INFINITY)


def addresses(run):
    """How many bytes of addresses the process has."""
    status = Path(f"/proc/{run.process.pid}/status").read_text()
    return int(re.search(r"VmSize:\s+(\d+) kB", status)[1]) * 1024


class Memory(Rounds):
    def __init__(self, options):
        super().__init__(options)
        self.seen = collections.Counter()

    def run(self):
        with Page(self.words) as self.page:
            while self.number < self.options.memory:
                run = program.Program(SETTINGS)
                run.start()
                try:
                    run.status_item()
                    self.untouched = comparing.settled_screenshot()
                    # Another one then, as what a process has had before it can have again.
                    for _ in range(2):
                        self.number += 1
                        self.end_once(run)
                    if run.is_running():
                        run.quit()
                except AssertionError as problem:
                    self.problem(problem)
                    run.process.kill()
                status = run.wait_for_end()
                if status != 0:
                    self.problem(f"status {status} after {run.log[-3:]}")
        print(f"\nmemory ended {self.number} times in {self.minutes():.0f} minutes "
              f"(seed {self.options.seed})")
        for what, times in self.seen.most_common():
            print(f"{times:5} times: {what}")
        return self.verdict()

    def end_once(self, run):
        """Memory ends before the overlay comes, or when it is there; or there was enough."""
        desktop.Clipboard.put("before")
        told = len(run.log)
        left = int(MOST_LEFT * self.random.random() ** 3)

        def lines():
            return [line for line in run.log[told:] if not re.fullmatch(QT_LINES, line)]

        def has_told():
            return lines() or not run.is_running()

        if self.random.random() < 0.5:
            self.limit(run, left)
            program.activate_action("capture")
            wait_until("the dim or a sentence",
                       lambda: has_told() or comparing.is_dimmed(self.untouched), 60)
        else:
            program.activate_action("capture")
            wait_until("the dim", lambda: comparing.is_dimmed(self.untouched), 60)
            self.limit(run, left)
        if not has_told():
            self.drag()
            wait_until("the text or a sentence",
                       lambda: has_told() or desktop.Clipboard.text() == self.words, 60)
        assert run.is_running(), f"ended with {left >> 10} KiB left: {run.log[told:]}"
        resource.prlimit(run.process.pid, resource.RLIMIT_AS, WITHOUT_LIMIT)
        for each in lines() or ["the text"]:
            self.seen[each] += 1
        for each in lines():
            if not any(re.fullmatch(program.LOG_PREFIX + sentence, each) for sentence in SENTENCES):
                self.problem(f"with {left >> 10} KiB left: logged {each!r}")
        self.until("the screens of before", lambda: comparing.is_unchanged(self.untouched))
        self.capture()

    def drag(self):
        box = self.page.box
        desktop.Pointer.drag((box.x, box.y), (box.right, box.bottom))

    def capture(self):
        desktop.Clipboard.put("before")
        program.activate_action("capture")
        wait_until("the dim", lambda: comparing.is_dimmed(self.untouched), 60)
        self.drag()
        self.until("the text", lambda: desktop.Clipboard.text() == self.words)
        self.until("the screens of before", lambda: comparing.is_unchanged(self.untouched))

    @staticmethod
    def limit(run, left):
        resource.prlimit(run.process.pid, resource.RLIMIT_AS,
                         (addresses(run) + left, resource.RLIM_INFINITY))
