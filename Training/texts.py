#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""texts.py FOLDER OUT [--without MANIFEST...]: gathers lines of text from what `fetch` unpacked into FOLDER.

OUT is JSON: {"train": {kind: [line]}, "held-out": {kind: [line]}}; the kinds are those of texts.txt, and "english", the originals of translations.
What stands in a MANIFEST of pictures to measure with is left out, as a line and as four words in a row, so that nothing is measured that was learnt by heart.
"""
import argparse
import fnmatch
import gettext
import gzip
import html
import json
import os
import random
import re
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))

# So many lines of a package at most, or a large one would be all there is.
MOST_LINES = 40000
# Longer lines are cut into pieces by the writer; beyond this they are data, not text.
LONGEST = 400
ARABIC = re.compile(r"[\u0621-\u064a]")


def kinds():
    with open(os.path.join(HERE, "texts.txt"), encoding="utf-8") as file:
        for line in file:
            fields = line.split("#")[0].split()
            if fields:
                yield fields


def content(path):
    opened = gzip.open if path.endswith(".gz") else open
    try:
        with opened(path, "rt", encoding="utf-8", errors="strict") as file:
            return file.read(2_000_000)
    except (OSError, UnicodeDecodeError, EOFError):
        return ""


def manual(text):
    """The lines of a manual page without its markup."""
    text = re.sub(r"\\f[BIRP]|\\f\(..|\\[&|^/,]|\\s[-+]?\d", "", text)
    text = text.replace("\\-", "-").replace("\\(aq", "'").replace("\\(dq", '"').replace("\\e", "\\").replace("\\ti", "~").replace("\\(ha", "^")
    for line in text.split("\n"):
        if line.startswith((".\\", "'\\")):
            continue
        yield re.sub(r"^\.[A-Z]+\s*", "", line)


def page(text):
    """The lines of a page in HTML or Mallard without its tags."""
    yield from html.unescape(re.sub(r"<[^>]*>", "", re.sub(r"<(style|script)\b.*?</\1>", "", text, flags=re.S))).split("\n")


def messages(path):
    """The strings of a catalogue of translations, or of an archive with a browser's."""
    if path.endswith(".mo"):
        with open(path, "rb") as file:
            catalogue = gettext.GNUTranslations(file)._catalog
        for original, translation in catalogue.items():
            if isinstance(original, str):
                # Behind the context that it is translated for.
                yield original.rpartition("\x04")[2]
                yield translation
        return
    if path.endswith(".html"):
        yield from page(content(path))
        return
    with zipfile.ZipFile(path) as archive:
        for name in archive.namelist():
            if name.endswith((".ftl", ".properties")):
                yield from re.findall(r"= ?(.+)", archive.read(name).decode("utf-8", "replace"))


def shown(message):
    """The lines of a message as a program shows them; none of what holds places for values."""
    message = html.unescape(re.sub(r"<[^>]+>|\{[^}]*\}", "", message))
    for line in message.split("\n"):
        line = " ".join(re.sub(r"\(&\w\)|[&_~](?=\w)", "", line).split())
        if len(line) > 1 and not re.search(r"[<>{}\\$|\x00-\x1f]|https?:|%[a-z0-9]|[\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufffd\ufeff]", line):
            yield line


def lines_of(kind, path):
    """(kind, line)"""
    if kind == "arabic":
        for line in (line for message in messages(path) for line in shown(message)):
            yield "arabic" if ARABIC.search(line) else "english", line
        return
    text = content(path)
    if kind == "arabic-words":
        yield from ((kind, word) for word in re.findall(r"[\u0621-\u0652]{2,}", text))
        return
    found = manual(text) if kind == "manual" else page(text) if kind == "page" else text.split("\n")
    for line in found:
        line = line.expandtabs(4).rstrip()
        if line.strip():
            yield kind, line


def excluded(manifests):
    """The lines of pictures to measure with, and their runs of four words."""
    lines, runs = set(), set()
    for manifest in manifests:
        with open(manifest, encoding="utf-8") as file:
            entries = json.load(file)
        for words in (line.split() for entry in entries for line in entry["lines"]):
            lines.add(" ".join(words))
            runs.update(" ".join(words[i:i + 4]) for i in range(len(words) - 3))
    # A line of two characters says nothing, and is everywhere.
    return {line for line in lines if len(line) > 6}, runs


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder")
    parser.add_argument("out")
    parser.add_argument("--without", nargs="*", default=[], metavar="MANIFEST")
    options = parser.parse_args(arguments)
    lines, runs = excluded(options.without)
    result = {"train": {}, "held-out": {}}
    for package, kind, pattern, *held_out in kinds():
        rng = random.Random(package)
        paths = sorted(os.path.join(folder, name) for folder, _, names in os.walk(os.path.join(options.folder, "packages", package)) for name in names)
        paths = [path for path in paths if fnmatch.fnmatch(path, pattern) and os.path.isfile(path)]
        rng.shuffle(paths)
        kept = {}
        for path in paths:
            for pool, line in lines_of(kind, path):
                words = line.split()
                if len(line) <= LONGEST and " ".join(words) not in lines and not any(" ".join(words[i:i + 4]) in runs for i in range(len(words) - 3)):
                    kept.setdefault(pool, set()).add(line)
            if sum(map(len, kept.values())) > 4 * MOST_LINES:
                break
        part = result["held-out" if held_out else "train"]
        for pool, found in kept.items():
            found = sorted(found)
            rng.shuffle(found)
            part.setdefault(pool, []).extend(found[:MOST_LINES])
            print(f"{package}: {len(paths)} files, {len(found[:MOST_LINES])} lines of {pool}", flush=True)
    with open(options.out, "w", encoding="utf-8") as file:
        json.dump(result, file, ensure_ascii=False)


if __name__ == "__main__":
    main()
