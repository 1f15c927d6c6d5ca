# SPDX-License-Identifier: MIT
"""What all kinds of soaking have in common: rounds, chance, and problems that do not end it."""

import random
import sys
import time

from support.waiting import wait_until

from . import measures

TEXTS = ("Again and again", "Rain over the harbour", "Seven quiet mornings", "Count what is left")
# Models that are no longer used are dropped after at most four and a half minutes.
MODELS_ARE_DROPPED = 330  # seconds
MOST_OVER_IDLE = 10  # MB, once they are
SETTINGS = {"outputMode": "clipboard", "showNotification": "false"}


class Rounds:
    def __init__(self, options):
        self.options = options
        self.random = random.Random(options.seed)
        self.words = self.random.choice(TEXTS)
        self.problems = []
        self.number = 0
        self.began = time.monotonic()

    def problem(self, what):
        self.problems.append(f"round {self.number}: {what}")
        print(self.problems[-1], file=sys.stderr, flush=True)

    def until(self, what, condition, seconds=60):
        """True once it is so; else it is a problem, and the rounds go on."""
        try:
            wait_until(what, condition, seconds)
        except AssertionError as problem:
            self.problem(problem)
            return False
        return True

    def judge(self, process, idle, first):
        """Compares what the process has now with what it had before the first round, and after the
        first rounds, in which every library is loaded."""
        for sentence in measures.too_much(first, process.now()):
            self.problem(sentence)
        # A thread waits to drop the models, and ends then.
        self.until("the models' end", lambda: process.now()["threads"] <= idle["threads"],
                   MODELS_ARE_DROPPED)
        last = process.now()
        # The sanitizers keep what was freed for a while.
        if self.options.preset == "release" and last["memory"] > idle["memory"] + MOST_OVER_IDLE:
            self.problem(f"{last['memory'] - idle['memory']:.1f} MB more than when idle")
        print("when idle:                  ", measures.line(idle))
        print("after the first rounds:     ", measures.line(first))
        print("once the models are dropped:", measures.line(last))

    def minutes(self):
        return (time.monotonic() - self.began) / 60

    def verdict(self):
        """The exit status."""
        print(f"{len(self.problems)} problems")
        return 1 if self.problems else 0
