#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""evaluate.py LINES.npz... --models FILE.traineddata...: compares models, as they are stored, on lines that `render` drew.

Per file of lines and model: percent of characters wrong, percent of lines right, milliseconds a line; then what each takes for what, most often first.
"""
import argparse
import collections
import os
import time

import torch
from Levenshtein import distance, editops

from network import LineNet
from train import load, texts_of

# So many kinds of confusion are told.
TOLD = 24


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("lines", nargs="+")
    parser.add_argument("--models", nargs="+", required=True)
    options = parser.parse_args(arguments)
    torch.set_num_threads(1)
    for path in options.lines:
        lines = load(path)
        characters = sum(len(line[1]) for line in lines)
        print(f"{os.path.basename(os.path.dirname(path))}: {len(lines)} lines, {characters} characters")
        for model in options.models:
            net = LineNet(model).eval()
            began = time.process_time()
            texts = texts_of(net, lines, "cpu")
            spent = time.process_time() - began
            wrong = sum(distance(text, line[1]) for text, line in zip(texts, lines))
            right = sum(text == line[1] for text, line in zip(texts, lines))
            print(f"  {os.path.basename(model):28} {100 * wrong / characters:6.2f} % wrong {100 * right / len(lines):5.1f} % of lines right {1000 * spent / len(lines):6.1f} ms")
            confused = collections.Counter()
            for text, (_, truth, _) in zip(texts, lines):
                for kind, at, to in editops(truth, text):
                    confused[(truth[at] if kind != "insert" else "", text[to] if kind != "delete" else "")] += 1
            print("    " + "  ".join(f"{a or '+'}→{b or '–'} {n}" for (a, b), n in confused.most_common(TOLD)))


if __name__ == "__main__":
    main()
