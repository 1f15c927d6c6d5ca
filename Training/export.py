#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""export.py MODEL OUT.traineddata: writes what train.py stored as a file of bytes, which the program's engine reads."""
import sys

import torch

from network import LineNet, write_model
from recipes import RECIPES


def main(model, out):
    stored = torch.load(model, map_location="cpu")
    net = LineNet(stored["start"], RECIPES[stored["recipe"]].alphabet)
    net.load_state_dict(stored["net"])
    size = write_model(net, stored["start"], out, f"vellora:{stored['recipe']}:{stored['state']['seen']} lines")
    print(f"{out}: {size} bytes, {stored['state']['seen']} lines seen")


if __name__ == "__main__":
    main(*sys.argv[1:])
