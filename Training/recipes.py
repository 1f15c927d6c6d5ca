#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The models that are trained here: what each begins from, what it may learn, and what it is shown."""
import dataclasses
import sys
from collections.abc import Callable

import arabic_writer
import code_writer
import faces


@dataclasses.dataclass(frozen=True)
class Recipe:
    # What it begins from, by its name without ".traineddata", and how high the lines are that it reads.
    start: str
    height: int
    # What may stand in a line.
    alphabet: str
    # Makes up lines: (texts by kind, alphabet, generator of random numbers).
    writer: Callable
    # Kinds of texts to report on, of those that are held out.
    held_out: tuple
    # (fixed-pitch, proportional) families of "train" or "held-out".
    families: Callable
    # Shares of pages: of all in families that are not of fixed pitch; of those of fixed pitch cut as blocks; of all in bitmap faces.
    proportional: float
    grids: float
    bitmaps: float


RECIPES = {
    "code": Recipe("eng", 36, code_writer.ALPHABET, code_writer.Writer, ("code",), faces.code, proportional=.1, grids=.7, bitmaps=.1),
    "arabic": Recipe("Arabic", 48, arabic_writer.ALPHABET, arabic_writer.Writer, ("arabic", "english"), faces.arabic, proportional=1, grids=0, bitmaps=0),
}


if __name__ == "__main__":
    # For `renew`: the model that a recipe begins from.
    print(RECIPES[sys.argv[1]].start)
