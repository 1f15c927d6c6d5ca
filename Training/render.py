#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""render.py RECIPE TEXTS FOLDER --prepare PREPARE-LINES: draws pages of lines as screens show them, cut into lines by the program's own code.

Writes FOLDER/sNNNN.npz one after another: `pixels` (all lines side by side, as high as the network reads them, dark on white), `ends` (last column
of each line, exclusive), `texts`, `faces`. Pango with cairo draws: its hinting, anti-aliasing and fallback are those of GTK, and Qt and browsers draw with the
same library; some pages are in the X server's bitmap faces. The same seed gives the same lines, where the same faces are there.
"""
import argparse
import dataclasses
import io
import json
import os
import random
import struct
import subprocess
import sys
import time

import cairo
import gi
import numpy as np
from PIL import Image, ImageFilter

import bitmaps
from recipes import RECIPES

gi.require_version("Pango", "1.0")
gi.require_version("PangoCairo", "1.0")
from gi.repository import Pango, PangoCairo  # noqa: E402

# Ink of a prepared line is darker than this; Glyph.h.
INK = 165
# The margins that Engine reads a line with: mostly the first.
MARGINS, MARGIN_WEIGHTS = (4, 7, 2), (80, 10, 10)
SIZES = (8, 9, 10, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 15, 15, 16, 17, 18, 20, 22, 24, 28, 32, 40, 48)
SIZE_WEIGHTS = (1, 2, 3) + (4,) * 14 + (2, 2, 2, 1, 1, .5, .4, .3)
# The colours of terminals, as usual schemes have them.
COLOURS = ((205, 49, 49), (13, 188, 121), (229, 229, 16), (36, 114, 200), (188, 63, 188), (17, 168, 205), (197, 15, 31), (19, 161, 14), (193, 156, 0), (59, 120, 255), (118, 118, 118), (204, 102, 102), (181, 189, 104), (129, 162, 190))


@dataclasses.dataclass
class Row:
    """A line of a page. In pixels of the page, y down."""
    # The ink's.
    top: float
    bottom: float
    # What is seen from the left; brackets among letters from right to left as they are stored.
    text: str
    # The left edges of its characters and the last one's right; of a line with letters from right to left only its own two.
    edges: list
    # The row's top.
    origin: float

    def scaled(self, factor):
        return Row(self.top * factor, self.bottom * factor, self.text, [edge * factor for edge in self.edges], self.origin * factor)

    def raised(self, distance):
        return Row(self.top - distance, self.bottom - distance, self.text, self.edges, self.origin - distance)

    def is_whole(self):
        """Whether it is only to be had as one, since the places of its characters are not known."""
        return len(self.edges) == 2 and len(self.text) > 1


class Page:
    """Rows of one style, drawn and damaged as screens and pictures of them are."""

    def __init__(self, writer, families, rng, proportional_share):
        self.rng, self.writer = rng, writer
        fixed, proportional = families
        self.is_fixed = bool(fixed) and (not proportional or rng.random() >= proportional_share)
        self.family = rng.choice(fixed if self.is_fixed else proportional)
        self.size = rng.choices(SIZES, SIZE_WEIGHTS)[0] * rng.choice([1, 1, 1, 1, 1.25, 1.333])
        font = Pango.FontDescription()
        font.set_family(self.family)
        font.set_absolute_size(self.size * Pango.SCALE)
        if rng.random() < .12:
            font.set_weight(Pango.Weight.BOLD)
        elif rng.random() < .08:
            font.set_weight(rng.choice([Pango.Weight.LIGHT, Pango.Weight.MEDIUM]))
        if rng.random() < .04:
            font.set_style(Pango.Style.ITALIC)
        options = cairo.FontOptions()
        options.set_antialias(rng.choices([cairo.ANTIALIAS_GRAY, cairo.ANTIALIAS_SUBPIXEL, cairo.ANTIALIAS_NONE], [68, 25, 7])[0])
        options.set_hint_style(rng.choice([cairo.HINT_STYLE_NONE, cairo.HINT_STYLE_SLIGHT, cairo.HINT_STYLE_SLIGHT, cairo.HINT_STYLE_FULL]))
        options.set_hint_metrics(rng.choice([cairo.HINT_METRICS_ON, cairo.HINT_METRICS_ON, cairo.HINT_METRICS_OFF]))
        self.context = PangoCairo.FontMap.get_default().create_context()
        PangoCairo.context_set_font_options(self.context, options)
        self.layout = Pango.Layout.new(self.context)
        self.layout.set_auto_dir(False)
        self.layout.set_font_description(font)
        self.layout.set_single_paragraph_mode(True)
        # Ligatures draw "->" as one arrow: half of who uses them sees that, and it still says "->".
        if rng.random() < .5:
            attributes = Pango.AttrList()
            attributes.insert(Pango.attr_font_features_new("liga=0, calt=0"))
            self.layout.set_attributes(attributes)

    def colours(self):
        """Of the ground, of a row's ink: a function."""
        r = self.rng
        dark = r.random() < .5
        low = r.randrange(0, 60) if r.random() < .6 else 0
        high = 255 - (r.randrange(0, 60) if r.random() < .5 else 0)
        if r.random() < .08:
            middle = r.randrange(40, 215)
            low, high = middle - 28, middle + 28
        tint = r.choice([0, 0, 14])
        def near(level):
            return tuple(min(255, max(0, level + r.randint(-tint, tint))) for _ in range(3))
        ground, ink = (near(low), near(high)) if dark else (near(high), near(low))
        coloured = r.random() < .4 and high - low > 120
        grey = sum(ground) / 3
        fitting = [c for c in COLOURS if abs(np.dot(c, (.299, .587, .114)) - grey) > 55]
        return ground, lambda: r.choice(fitting) if coloured and fitting and r.random() < .5 else ink

    def lay_out(self, text, is_from_right):
        """What is seen from the left, and the left edges of its characters with the last one's right, as of a row."""
        direction = Pango.Direction.RTL if is_from_right else Pango.Direction.LTR
        if self.context.get_base_dir() != direction:
            self.context.set_base_dir(direction)
            self.layout.context_changed()
        self.layout.set_text(text, -1)
        _, logical = self.layout.get_pixel_extents()
        stored, seen, has_turned = text.encode(), "", False
        for run in self.layout.get_line_readonly(0).runs:
            part = stored[run.item.offset:run.item.offset + run.item.length].decode()
            is_turned = run.item.analysis.level % 2 == 1
            seen += part[::-1] if is_turned else part
            has_turned = has_turned or is_turned
        if has_turned:
            return seen, [0, logical.width]
        at, edges = 0, []
        for character in text:
            edges.append(self.layout.index_to_pos(at).x / Pango.SCALE)
            at += len(character.encode())
        return text, [*edges, logical.width]

    def draw(self):
        """RGB pixels; rows."""
        r = self.rng
        lines = [self.writer.line() for _ in range(r.choice([4, 8, 12, 14]))]
        spacing = r.choice([1, 1, 1.05, 1.15, 1.3, 1.6])
        left = r.randrange(2, 30)
        rows, y, width = [], r.randrange(2, 12), 0
        for line in lines:
            seen, edges = self.lay_out(*line)
            ink, logical = self.layout.get_pixel_extents()
            rows.append(Row(y + ink.y, y + ink.y + ink.height, seen, [left + edge for edge in edges], y))
            width = max(width, left + logical.width)
            y += max(1, round(logical.height * spacing))
        width, height = int(width) + r.randrange(4, 40), y + r.randrange(2, 10)
        if width > 3000 or height > 3000:
            return None
        ground, ink_colour = self.colours()
        surface = cairo.ImageSurface(cairo.FORMAT_RGB24, width, height)
        context = cairo.Context(surface)
        context.set_source_rgb(*(v / 255 for v in ground))
        context.paint()
        for line, row in zip(lines, rows):
            context.set_source_rgb(*(v / 255 for v in ink_colour()))
            context.move_to(left, row.origin)
            self.lay_out(*line)
            PangoCairo.update_layout(context, self.layout)
            PangoCairo.show_layout(context, self.layout)
        surface.flush()
        pixels = np.ndarray((height, width, 4), np.uint8, surface.get_data(), strides=(surface.get_stride(), 4, 1))[:, :, 2::-1]
        return np.ascontiguousarray(pixels), rows

    def damaged(self, pixels, rows):
        """As JPEG, scaled, blurred or noisy pictures of a screen show it; edges cut."""
        r = self.rng
        x = r.random()
        if x < .08:
            buffer = io.BytesIO()
            Image.fromarray(pixels).save(buffer, "JPEG", quality=r.randrange(45, 92))
            pixels = np.asarray(Image.open(buffer))
        elif x < .14:
            factor = r.uniform(.8, 1.5)
            height, width = pixels.shape[:2]
            size = max(8, int(width * factor)), max(8, int(height * factor))
            pixels = np.asarray(Image.fromarray(pixels).resize(size, Image.BILINEAR))
            rows = [row.scaled(factor) for row in rows]
        elif x < .17:
            pixels = np.asarray(Image.fromarray(pixels).filter(ImageFilter.GaussianBlur(r.uniform(.3, .8))))
        elif x < .2:
            noise = np.random.default_rng(r.randrange(1 << 30)).normal(0, 4, pixels.shape)
            pixels = np.clip(pixels + noise, 0, 255).astype(np.uint8)
        if r.random() < .1:      # a selection that ends close to the text
            top = max(0, int(min(row.top for row in rows)) - r.randrange(0, 3))
            pixels = pixels[top:]
            rows = [row.raised(top) for row in rows]
        return np.ascontiguousarray(pixels), rows


class BitmapPage(Page):
    """Rows in a bitmap face."""

    def __init__(self, writer, face, rng):
        self.rng, self.writer, self.face = rng, writer, face
        self.is_fixed, self.family = True, face.name

    def draw(self):
        r, face = self.rng, self.face
        texts = [text for text, _ in (self.writer.line() for _ in range(r.choice([4, 8, 12, 14]))) if text.strip() and face.knows(text)]
        if not texts:
            return None
        left, y = r.randrange(2, 30), r.randrange(2, 12)
        spacing = face.height + r.choice([0, 0, 0, 1, 2])
        ground, ink_colour = self.colours()
        size = y + spacing * len(texts) + r.randrange(2, 10), left + face.width * max(map(len, texts)) + r.randrange(4, 40)
        pixels = np.full((*size, 3), ground, np.uint8)
        rows = []
        for text in texts:
            ink = face.draw(text)
            inked = np.flatnonzero(ink.any(1))
            pixels[y:y + face.height, left:left + ink.shape[1]][ink] = ink_colour()
            edges = [left + face.width * i for i in range(len(text) + 1)]
            rows.append(Row(y + inked[0], y + inked[-1] + 1, text, edges, y))
            y += spacing
        return pixels, rows


class Cutter:
    """The program's own code that finds and prepares lines."""

    def __init__(self, program, height):
        self.process = subprocess.Popen([program, str(height)], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()

    def cut(self, pixels, margin):
        """Lines: (left, top, right, bottom) on the page, column of the page's left edge, columns per pixel, picture."""
        height, width = pixels.shape[:2]
        self.process.stdin.write(struct.pack("<4i", width, height, margin, 0) + pixels.tobytes())
        self.process.stdin.flush()
        read = self.process.stdout.read
        for _ in range(struct.unpack("<i", read(4))[0]):
            left, top, right, bottom, columns, rows = struct.unpack("<6i", read(24))
            offset, scale = struct.unpack("<2d", read(16))
            yield (left, top, right, bottom), offset, scale, np.frombuffer(read(columns * rows), np.uint8).reshape(rows, columns)


def text_of(box, offset, scale, picture, rows):
    """What a line that was cut says; None if it is not sure: it holds parts of two rows, or misses what it should show."""
    left, top, right, bottom = box
    # A row is in it if more than a third of its ink's height is.
    inside = [row for row in rows if min(bottom, row.bottom) - max(top, row.top) > .35 * max(1, row.bottom - row.top)]
    if len(inside) != 1:
        return None
    row = inside[0]
    if row.is_whole():
        # The ink of its first and last letter may end before their edges do.
        spare = .6 * (row.bottom - row.top)
        is_there = left < row.edges[0] + spare and right > row.edges[1] - spare and top < row.top + 2 and bottom > row.bottom - 2
        return row.text if is_there else None
    inked = (picture < INK).any(0)
    shown = []
    for character, start, end in zip(row.text, row.edges, row.edges[1:]):
        if not left - .2 * (end - start) <= (start + end) / 2 <= right + .2 * (end - start):
            continue
        shown.append(character)
        if character != " ":
            a, b = int(offset + start * scale), int(offset + end * scale) + 1
            if not inked[max(0, a):max(0, b)].any():
                return None
    return " ".join("".join(shown).split()) or None


def grid_lines(pixels, rows, height):
    """Rows as GridReader prepares those of a block of fixed pitch: cell by cell dark on white, all of one height with a tenth of it white around."""
    grey = pixels @ np.array([.299, .587, .114])
    ground = np.median(grey)
    far = np.abs(grey - ground)
    top = min(row.top - row.origin for row in rows)
    bottom = max(row.bottom - row.origin for row in rows)
    bands = []
    for row in rows:
        text, edges = row.text, row.edges
        at = int(round(row.origin + top))
        end = at + int(round(bottom - top))
        if at < 0 or end > grey.shape[0] or end - at < 5:
            continue
        left, right = max(0, int(round(edges[0]))), min(grey.shape[1], int(round(edges[-1])))
        band = np.full((end - at, right - left), 255.)
        cells = [(max(left, int(round(a))), min(right, int(round(b)))) for a, b in zip(edges, edges[1:])]
        peaks = [far[at:end, a:b].max() if b > a else 0 for a, b in cells]
        for index, (a, b) in enumerate(cells):
            level = max(peaks[index], .6 * max(peaks[max(0, index - 2):index + 3]))
            if text[index] != " " and b > a and level > 10:
                band[:, a - left:b - left] = 255 - np.minimum(255, far[at:end, a:b] * (255 / level))
        bands.append((band, text))
    if not bands:
        return
    # The rows of pixels that hold ink in more than a twelfth of the lines.
    inked = np.mean([(band < 128).any(1) for band, _ in bands], 0) > .08
    if not inked.any():
        return
    first, last = np.flatnonzero(inked)[[0, -1]]
    white = max(1, round(.1 * (last + 1 - first)))
    for band, text in bands:
        picture = np.pad(band[first:last + 1], white, constant_values=255)
        width = max(3, round(picture.shape[1] * height / picture.shape[0]))
        text = " ".join(text.split())
        if text and width < 6000:
            yield np.asarray(Image.fromarray(picture.astype(np.uint8)).resize((width, height), Image.BICUBIC)), text


def lines(recipe, texts, part, seed, program, height, bitmap_faces=(), bitmap_share=0):
    """Without end: pictures, their texts and faces."""
    rng = random.Random(seed)
    writer = recipe.writer(texts["train"] if part == "train" else {kind: texts["held-out"][kind] for kind in recipe.held_out}, recipe.alphabet, rng)
    families = recipe.families(part)
    with Cutter(program, height) as cutter:
        while True:
            is_bitmap = bitmap_faces and rng.random() < bitmap_share
            page = BitmapPage(writer, rng.choice(bitmap_faces), rng) if is_bitmap else Page(writer, families, rng, recipe.proportional)
            drawn = page.draw()
            if drawn is None:
                continue
            pixels, rows = page.damaged(*drawn)
            if page.is_fixed and rng.random() < recipe.grids:
                for picture, text in grid_lines(pixels, rows, height):
                    yield picture, text, page.family
                continue
            margin = rng.choices(MARGINS, MARGIN_WEIGHTS)[0]
            for box, offset, scale, picture in cutter.cut(pixels, margin):
                text = text_of(box, offset, scale, picture, rows)
                # More than a character in nine rows' width is no reading of what is there.
                if text and picture.shape[1] >= 12 and picture.shape[1] >= height * len(text) / 9:
                    yield picture, text, page.family


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("recipe", choices=RECIPES)
    parser.add_argument("texts")
    parser.add_argument("folder")
    parser.add_argument("--prepare", required=True, metavar="PREPARE-LINES")
    parser.add_argument("--part", choices=("train", "held-out"), default="train")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=2000, help="lines a file")
    parser.add_argument("--files", type=int, default=1)
    parser.add_argument("--bitmaps", type=float, help="the share of pages in bitmap faces, if it is not to be the recipe's")
    options = parser.parse_args(arguments)
    recipe = RECIPES[options.recipe]
    bitmap_share = recipe.bitmaps if options.bitmaps is None else options.bitmaps
    # Beside the texts, as `fetch` has unpacked them.
    bitmap_faces = bitmaps.faces(os.path.dirname(os.path.abspath(options.texts)), options.part)
    os.makedirs(options.folder, exist_ok=True)
    with open(options.texts, encoding="utf-8") as file:
        texts = json.load(file)
    for number in range(options.files):
        seed = options.seed * 10000 + number
        path = os.path.join(options.folder, f"s{seed:08}.npz")
        if os.path.exists(path):
            continue
        began = time.time()
        source = lines(recipe, texts, options.part, seed, options.prepare, recipe.height, bitmap_faces, bitmap_share)
        batch = [next(source) for _ in range(options.count)]
        source.close()
        with open(path + ".new", "wb") as file:
            np.savez(file, pixels=np.concatenate([p for p, _, _ in batch], 1), ends=np.cumsum([p.shape[1] for p, _, _ in batch]),
                     texts=np.array([t for _, t, _ in batch]), faces=np.array([f for _, _, f in batch]))
        os.rename(path + ".new", path)
        print(f"{path}: {options.count} lines in {time.time() - began:.0f} s", file=sys.stderr, flush=True)


if __name__ == "__main__":
    main()
