# SPDX-License-Identifier: MIT
"""Bitmap faces of the X server, as xterm draws with by default: Pango draws none."""
import glob
import gzip
import io
import os

import numpy as np
from PIL import PcfFontFile

# Files by the names of their faces. Weighted as those of faces.py: what is named twice is drawn twice as often.
TRAIN = """
6x13 6x13 6x13 6x13B 6x10 6x12 7x13 7x13 7x13B 7x14 8x13 8x13B 9x15 9x15 9x15B 10x20 6x9 5x8
ter-u12n ter-u14n ter-u14b ter-u16n ter-u16b ter-u18n ter-u20n ter-u24n
"""
HELD_OUT = "clR6x12 9x18 ter-u22n"


class Face:
    """One file: cells of one width and height."""

    def __init__(self, path):
        self.name = os.path.basename(path).split("-ISO")[0].split("_iso")[0]
        with gzip.open(path) as file:
            glyphs = PcfFontFile.PcfFontFile(io.BytesIO(file.read()), "iso8859-1").glyph
        self.cells = {chr(code): glyph for code, glyph in enumerate(glyphs) if glyph}
        self.width = self.cells["m"][0][0]
        self.ascent = max(-glyph[1][1] for glyph in self.cells.values())
        self.height = self.ascent + max(glyph[1][3] for glyph in self.cells.values())

    def knows(self, text):
        return all(character in self.cells for character in text)

    def draw(self, text):
        """True where there is ink; a cell a character."""
        ink = np.zeros((self.height, self.width * len(text)), bool)
        for index, character in enumerate(text):
            _, (left, top, right, bottom), _, picture = self.cells[character]
            glyph = np.asarray(picture, bool)
            row, column = self.ascent + top, index * self.width + left
            if glyph.size and column >= 0:
                part = ink[row:row + bottom - top, column:column + right - left]
                part |= glyph[:part.shape[0], :part.shape[1]]
        return ink


def faces(folder, part):
    """Of "train" or "held-out", as they are weighted, that stand below `folder`."""
    files = {}
    for suffix in ("-ISO8859-1.pcf.gz", "_iso-8859-1.pcf.gz"):
        for path in glob.glob(os.path.join(folder, "packages", "*", "usr/share/fonts/X11/misc", "*" + suffix)):
            files[os.path.basename(path).removesuffix(suffix)] = path
    return [Face(files[name]) for name in (TRAIN if part == "train" else HELD_OUT).split() if name in files]
