# SPDX-License-Identifier: MIT
"""A picture that takes long to read."""

import os
import random
from pathlib import Path

from .desktop import Box, points
from .page import Page

# Nonsense in several scripts: each line is tried with every model, and read surely by none.
_LETTERS = "жщыюфЯДЦضصثقغعهخحجسшбوלظ字語漢電話機動車国学校한글조선말日本АВЕКМНabcxyzQRS#%&@"
_WORDS = 900
_BOX = Box(points(20), points(20), points(1240), points(540))


def nonsense():
    """What takes long to read."""
    generator = random.Random(1)
    return " ".join("".join(generator.choices(_LETTERS, k=generator.randrange(2, 9)))
                    for _ in range(_WORDS))


def slow_page():
    """A window full of it."""
    return Page(nonsense(), _BOX, points(12))


def reading_time(program):
    """Seconds of processor time that the threads beside the main one have taken."""
    ticks = 0
    for task in Path(f"/proc/{program.process.pid}/task").iterdir():
        if int(task.name) == program.process.pid:
            continue
        try:
            fields = (task / "stat").read_text().rpartition(")")[2].split()
        except (FileNotFoundError, ProcessLookupError):
            continue
        ticks += int(fields[11]) + int(fields[12])
    return ticks / os.sysconf("SC_CLK_TCK")
