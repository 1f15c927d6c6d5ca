#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""texts.py FOLDER OUT [--without MANIFEST...]: gathers lines of text from what `fetch` unpacked into FOLDER.

OUT is JSON: {"train": {kind: [line]}, "held-out": {"code": [line]}}; the kinds are those of texts.txt. What stands in a MANIFEST of
pictures to measure with is left out, as a line and as four words in a row, so that nothing is measured that was learnt by heart.
"""
import argparse
import fnmatch
import gzip
import html
import json
import os
import random
import re

HERE = os.path.dirname(os.path.abspath(__file__))

# So many lines of a package at most, or a large one would be all there is.
MOST_LINES = 40000
# Longer lines are cut into pieces by the writer; beyond this they are data, not text.
LONGEST = 400


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


def lines_of(kind, path):
    text = content(path)
    found = manual(text) if kind == "manual" else page(text) if kind == "page" else text.split("\n")
    for line in found:
        line = line.expandtabs(4).rstrip()
        if 1 <= len(line.strip()) <= LONGEST:
            yield line


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
    for package, kind, pattern in kinds():
        rng = random.Random(package)
        paths = sorted(os.path.join(folder, name) for folder, _, names in os.walk(os.path.join(options.folder, "packages", package)) for name in names)
        paths = [path for path in paths if fnmatch.fnmatch(path, pattern) and os.path.isfile(path)]
        rng.shuffle(paths)
        kept = set()
        for path in paths:
            for line in lines_of(kind, path):
                words = line.split()
                if " ".join(words) not in lines and not any(" ".join(words[i:i + 4]) in runs for i in range(len(words) - 3)):
                    kept.add(line)
            if len(kept) > 4 * MOST_LINES:
                break
        kept = sorted(kept)
        rng.shuffle(kept)
        part, pool = ("held-out", "code") if kind == "held-out" else ("train", kind)
        result[part].setdefault(pool, []).extend(kept[:MOST_LINES])
        print(f"{package}: {len(paths)} files, {len(kept[:MOST_LINES])} lines", flush=True)
    with open(options.out, "w", encoding="utf-8") as file:
        json.dump(result, file, ensure_ascii=False)


if __name__ == "__main__":
    main()
