# SPDX-License-Identifier: MIT
"""What a picture of the status item shows, on a panel of one colour."""

import numpy


def _ink(look):
    """Where the picture is drawn, as far as it reaches; None without any."""
    inked = abs(look - look[0, 0]).max(axis=2) > 60
    rows, columns = inked.any(axis=1).nonzero()[0], inked.any(axis=0).nonzero()[0]
    if len(rows) < 8 or len(columns) < 8:
        return None
    return inked[rows[0]:rows[-1] + 1, columns[0]:columns[-1] + 1]


def _is_drawn(ink, places):
    """Whether each of the places, in shares of the width and the height, is drawn as it says."""
    height, width = ink.shape
    return all(bool(ink[int(y * height), int(x * width)]) == expected
               for x, y, expected in places)


def tint(look):
    """(r, g, b) of what is drawn: the colour that is furthest from the panel's."""
    distance = abs(look - look[0, 0]).sum(axis=2)
    return look[numpy.unravel_index(distance.argmax(), distance.shape)]


def shows_copied(look):
    """A disc with a check mark cut out of it."""
    ink = _ink(look)
    return ink is not None and _is_drawn(ink, [
        (0.05, 0.05, False), (0.95, 0.05, False), (0.05, 0.95, False), (0.95, 0.95, False),
        (0.50, 0.10, True), (0.50, 0.90, True), (0.10, 0.50, True), (0.90, 0.50, True),
        # The check mark's two arms and its corner, and what is beside it.
        (0.74, 0.33, False), (0.28, 0.53, False), (0.43, 0.67, False),
        (0.28, 0.33, True), (0.72, 0.67, True)])


def shows_error(look):
    """A triangle around an exclamation mark."""
    ink = _ink(look)
    return ink is not None and _is_drawn(ink, [
        (0.05, 0.05, False), (0.95, 0.05, False), (0.10, 0.40, False), (0.90, 0.40, False),
        (0.50, 0.05, True), (0.20, 0.95, True), (0.50, 0.95, True), (0.80, 0.95, True),
        # The exclamation mark, and what is beside it.
        (0.50, 0.45, True), (0.34, 0.75, False), (0.66, 0.75, False)])
