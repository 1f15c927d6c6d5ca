#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""train.py RECIPE SHARDS MODEL --models FOLDER --minutes M [--resume]: trains a network on with lines that `render` drew.

FOLDER: where the file is that it begins from. SHARDS: a folder of s*.npz; files that appear meanwhile are taken in. MODEL is stored every few minutes with its optimiser, its place on the curve of the learning
rate and how often each file was used, so that --resume goes on as if it had not been stopped. The curve: up for 200 steps, then down to nothing by the end (half a cosine).
MODEL.curve gets a line of JSON each time: lines seen, loss, errors of the held-out lines. On a GPU where there is one; otherwise with --threads.
"""
import argparse
import glob
import json
import math
import os
import random
import signal
import threading
import time

import numpy as np
import torch
from Levenshtein import distance
from torch.nn.functional import ctc_loss

from network import LineNet
from recipes import RECIPES

WARM_UP = 200
# Of each file to report on while training; evaluate.py reads all of them.
VALID_LINES = 150


def load(path):
    with np.load(path) as data:
        ends, pixels, texts, faces = data["ends"], data["pixels"], data["texts"], data["faces"]
    return [(pixels[:, start:end], str(text), str(face)) for start, end, text, face in zip(np.r_[0, ends[:-1]], ends, texts, faces)]


def batch_of(lines, rng=None):
    """Lines as the network takes them, of one width; with `rng` their contrast is varied."""
    width = -(-max(picture.shape[1] for picture, _, _ in lines) // 24) * 24
    batch = np.zeros((len(lines), 1, lines[0][0].shape[0], width), np.float32)
    for index, (picture, _, _) in enumerate(lines):
        ink = (255 - picture.astype(np.float32)) / 255
        if rng:
            ink = ink ** rng.choice((.8, .9, 1, 1, 1, 1.15, 1.3))
        batch[index, 0, :, :picture.shape[1]] = ink
    return torch.from_numpy(batch)


def texts_of(net, lines, device):
    """What the network reads, in the order of `lines`."""
    found = {}
    order = sorted(range(len(lines)), key=lambda i: lines[i][0].shape[1])
    with torch.no_grad():
        for at in range(0, len(order), 16):
            part = order[at:at + 16]
            for index, values in zip(part, net(batch_of([lines[i] for i in part]).to(device)).cpu()):
                found[index] = net.text(values[:lines[index][0].shape[1] // net.column_width]).strip()
    return [found[index] for index in range(len(lines))]


def errors(net, lines, device):
    """Percent of characters wrong, percent of lines right."""
    net.eval()
    texts = texts_of(net, lines, device)
    net.train()
    wrong = sum(distance(text, line[1]) for text, line in zip(texts, lines))
    return round(100 * wrong / sum(len(line[1]) for line in lines), 2), round(100 * sum(text == line[1] for text, line in zip(texts, lines)) / len(lines), 1)


def batches(folder, columns, widest, used, rng, ends):
    """Until `ends` is set: lines of like widths, about `columns` columns together, out of the file that was used least."""
    while not ends.is_set():
        paths = sorted(glob.glob(os.path.join(folder, "s*.npz")), key=lambda path: (used.get(os.path.basename(path), 0), path))
        if not paths:
            ends.wait(5)      # The renderer has not written its first file yet.
            continue
        name = os.path.basename(paths[0])
        used[name] = used.get(name, 0) + 1
        lines = sorted((line for line in load(paths[0]) if line[0].shape[1] <= widest), key=lambda line: line[0].shape[1])
        groups = []
        while lines:
            count = max(2, columns // max(64, lines[-1][0].shape[1]))
            groups.append(lines[-count:])
            lines = lines[:-count]
        rng.shuffle(groups)
        yield from groups


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("recipe", choices=RECIPES)
    parser.add_argument("shards")
    parser.add_argument("model")
    parser.add_argument("--models", required=True, metavar="FOLDER")
    parser.add_argument("--minutes", type=float, required=True, help="of processor time where there is no GPU: the curve is the same on a busy machine")
    parser.add_argument("--resume", action="store_true")
    parser.add_argument("--valid", nargs="*", default=[], metavar="FILE.npz", help="told by the name of its folder")
    parser.add_argument("--rate", type=float, default=1e-3)
    parser.add_argument("--columns", type=int, default=6000)
    parser.add_argument("--widest", type=int, default=1300)
    parser.add_argument("--threads", type=int, default=1)
    parser.add_argument("--every", type=float, default=2, help="minutes between checkpoints, as --minutes; it stores, too, when it is asked to end")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args(arguments)
    torch.set_num_threads(options.threads)
    torch.manual_seed(options.seed)
    rng = random.Random(options.seed)
    device = "cuda" if torch.cuda.is_available() else "cpu"
    recipe = RECIPES[options.recipe]
    start = os.path.join(options.models, recipe.start + ".traineddata")
    net = LineNet(start, recipe.alphabet).to(device)
    optimizer = torch.optim.AdamW(net.parameters(), lr=options.rate, betas=(.9, .98), weight_decay=1e-3)
    state = {"seen": 0, "step": 0, "spent": 0., "used": {}}
    if options.resume:
        stored = torch.load(options.model, map_location=device)
        net.load_state_dict(stored["net"])
        optimizer.load_state_dict(stored["optimizer"])
        state = stored["state"]
    valid = [(os.path.basename(os.path.dirname(path)), load(path)[:VALID_LINES]) for path in options.valid]
    ends = threading.Event()
    for asked in (signal.SIGINT, signal.SIGTERM):
        signal.signal(asked, lambda *_: ends.set())
    clock = time.time if device == "cuda" else time.process_time
    began, told, losses = clock() - state["spent"], None, []

    def store():
        line = {"minutes": round(state["spent"] / 60, 1), "lines": state["seen"], "steps": state["step"], "loss": round(float(np.mean(losses[-200:])), 4) if losses else None,
                **{name: errors(net, lines, device) for name, lines in valid}}
        torch.save({"net": net.state_dict(), "optimizer": optimizer.state_dict(), "state": state, "recipe": options.recipe, "start": start}, options.model + ".new")
        os.rename(options.model + ".new", options.model)
        with open(options.model + ".curve", "a", encoding="utf-8") as file:
            file.write(json.dumps(line) + "\n")
        print(json.dumps(line), flush=True)

    for group in batches(options.shards, options.columns, options.widest, state["used"], rng, ends):
        if told is None or clock() - told > 60 * options.every:
            before = clock()
            store()
            began += clock() - before      # Measuring is not training.
            told = clock()
        state["spent"] = clock() - began
        part = state["spent"] / (60 * options.minutes)
        if part >= 1 or ends.is_set():
            break
        for settings in optimizer.param_groups:
            settings["lr"] = options.rate * min(1, (state["step"] + 1) / WARM_UP) * (.5 + .5 * math.cos(math.pi * part))
        values = net(batch_of(group, rng).to(device))
        target = torch.tensor([net.code_of[c] for _, text, _ in group for c in text])
        lengths = torch.tensor([len(text) for _, text, _ in group])
        columns = torch.tensor([picture.shape[1] // net.column_width for picture, _, _ in group])
        loss = ctc_loss(values.transpose(0, 1), target.to(device), columns, lengths, blank=net.nothing, zero_infinity=True, reduction="sum") / lengths.sum()
        optimizer.zero_grad()
        loss.backward()
        torch.nn.utils.clip_grad_norm_(net.parameters(), 1.)
        optimizer.step()
        losses.append(loss.item())
        state["seen"] += len(group)
        state["step"] += 1
    store()


if __name__ == "__main__":
    main()
