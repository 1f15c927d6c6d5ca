# SPDX-License-Identifier: MIT
"""The private desktop's screens and pictures of them, whatever window system it has.

All places are pixels of the whole desktop, origin top-left, y down.
"""

import os
import subprocess
from typing import NamedTuple

import numpy
from PIL import Image

NAME = os.environ["VELLORA_DESKTOP"]
PANEL = os.environ["VELLORA_DESKTOP_PANEL"]
SCALE = float(os.environ["VELLORA_DESKTOP_SCALE"])
COMPOSITED = any(word in NAME for word in ("picom", "compositor"))
HAS_MANAGER = NAME != "none"
WALLPAPER = 0xC8


class Box(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def right(self):
        return self.x + self.width

    @property
    def bottom(self):
        return self.y + self.height

    @property
    def middle(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def inset(self, margin):
        return Box(self.x + margin, self.y + margin, self.width - 2 * margin,
                   self.height - 2 * margin)

    def of(self, picture):
        """This part of a screenshot."""
        return picture[max(self.y, 0):self.bottom, max(self.x, 0):self.right]


def _screens():
    left, boxes = 0, []
    for size in os.environ["VELLORA_DESKTOP_SCREENS"].split(","):
        width, height = (int(side) for side in size.split("x"))
        boxes.append(Box(left, 0, width, height))
        left += width
    return boxes


SCREENS = _screens()


# Where the first screen has its panel, which changes by the pointer's passing alone.
PANEL_IS_ABOVE = NAME.startswith("gnome")
# With its shadow.
_PANEL_HEIGHT = 36 if PANEL_IS_ABOVE else 60 if PANEL == "plasma" else 30


def beside_panel(number):
    """The place of a screen, less that of its panel."""
    screen = SCREENS[number]
    panel = points(_PANEL_HEIGHT) if number == 0 else 0
    return screen._replace(y=screen.y + (panel if PANEL_IS_ABOVE else 0),
                           height=screen.height - panel)


def points(count):
    """Points as the program counts them, in pixels."""
    return round(count * SCALE)


def save(picture, path):
    Image.fromarray(picture.astype(numpy.uint8)).save(path)


def difference(one, other, tolerance=0):
    """The box around the pixels of which a part differs by more, or None."""
    rows, columns = numpy.nonzero(numpy.any(abs(one - other) > tolerance, axis=2))
    if len(rows) == 0:
        return None
    return Box(int(columns.min()), int(rows.min()), int(columns.max() - columns.min() + 1),
               int(rows.max() - rows.min() + 1))


def on_screens(picture):
    """A picture less what lies on no screen, when screens differ in height."""
    return [screen.of(picture) for screen in SCREENS]


def tool(*command, given=None, check=True):
    done = subprocess.run(command, input=given, capture_output=True, text=True, timeout=60,
                          check=False)
    if check and done.returncode:
        raise AssertionError(f"{' '.join(command)}: {done.stderr.strip() or done.returncode}")
    return done.stdout
