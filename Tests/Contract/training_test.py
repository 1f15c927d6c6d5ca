#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Lines are drawn, a network is trained on with them for a few steps, goes on where it was stopped, and is read by the program's engine.

Skipped where PyTorch or what draws is not installed: training is for those who renew a model.
"""
import json
import os
import random
import subprocess
import sys
import tempfile
import unittest

TRAINING = os.environ["VELLORA_TRAINING"]
TOOLS = os.environ["VELLORA_TOOLS"]
SKIPPED = 77

sys.path.insert(0, TRAINING)
try:
    import numpy as np
    import torch
    from PIL import Image

    import code_writer
    import export
    import faces
    import network
    import render
    import train
except (ImportError, ValueError) as missing:
    print(f"skipped: {missing}")
    sys.exit(SKIPPED)

START = os.path.join(os.environ.get("TESSDATA", "/usr/share/tesseract-ocr/5/tessdata"), "eng.traineddata")
if not os.path.exists(START) or "DejaVu Sans Mono" not in faces.listed("DejaVu Sans Mono"):
    print("skipped: needs the English model and DejaVu Sans Mono")
    sys.exit(SKIPPED)

TEXTS = {"train": {"code": ["for line in lines:", "    return value[0] + 8", "if (count == 0) {", "#include <string>", "x = y || z;", "The quick brown fox"]},
         "held-out": {"code": ["puts 'held out'", "end"]}}


class TrainingTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.shards = os.path.join(cls.folder.name, "shards")
        cls.texts = os.path.join(cls.folder.name, "texts.json")
        with open(cls.texts, "w", encoding="utf-8") as file:
            json.dump(TEXTS, file)
        render.main(["code", cls.texts, cls.shards, "--prepare", os.path.join(TOOLS, "prepare-lines"), "--count", "60"])
        cls.lines = train.load(os.path.join(cls.shards, "s00010000.npz"))

    def trained(self, minutes, *more):
        """Trains for so many minutes of processor time; what was stored."""
        model = os.path.join(self.folder.name, "model.pt")
        train.main(["code", self.shards, model, "--models", os.path.dirname(START), "--minutes", str(minutes), "--rate", "3e-4", *more])
        return model, torch.load(model, map_location="cpu")

    def read(self, model, pictures):
        """What the program's engine reads with a model of the folder."""
        paths = []
        for index, picture in enumerate(pictures):
            paths.append(os.path.join(self.folder.name, f"{index}.png"))
            Image.fromarray(picture).save(paths[-1])
        printed = subprocess.run([os.path.join(TOOLS, "read-lines"), self.folder.name, model, *paths], check=True, capture_output=True, text=True).stdout
        return [json.loads(line)["text"] for line in printed.splitlines()]

    @staticmethod
    def rows(net):
        """The weights of a network as they are written: what is added at the end of their rows."""
        with torch.no_grad():
            yield torch.cat([net.conv.weight.flatten(1), net.conv.bias[:, None]], 1)
            for lstm in (net.down, net.right, net.left, net.far):
                yield from network.gates_of(lstm)
            yield torch.cat([net.last.weight, net.last.bias[:, None]], 1)

    def test_lines_are_drawn_as_they_say(self):
        self.assertEqual(len(self.lines), 60)
        for picture, text, _ in self.lines:
            self.assertEqual(picture.shape[0], 36)
            self.assertLess(picture.min(), render.INK, text)
            self.assertTrue(set(text) <= set(code_writer.ALPHABET), text)

    def test_a_line_from_the_right_is_told_as_it_is_seen(self):
        page = render.Page(None, ([], ["DejaVu Sans"]), random.Random(1), 1)
        for text, is_from_right, seen in (
                ("فتح (Firefox 12)، ٢٠٢٣", True, "٢٠٢٣ ،)Firefox 12( حتف"),
                ("Firefox فتح", False, "Firefox حتف"),
                ("Firefox فتح", True, "حتف Firefox")):
            told, edges = page.lay_out(text, is_from_right)
            self.assertEqual(told, seen)
            self.assertEqual(len(edges), 2)
        self.assertEqual(page.lay_out("ab", False)[0], "ab")
        self.assertEqual(len(page.lay_out("ab", False)[1]), 3)

    def test_the_same_seed_draws_the_same(self):
        again = os.path.join(self.folder.name, "again")
        render.main(["code", self.texts, again, "--prepare", os.path.join(TOOLS, "prepare-lines"), "--count", "20"])
        for (picture, text, _), (other, other_text, _) in zip(self.lines, train.load(os.path.join(again, "s00010000.npz"))):
            self.assertEqual(text, other_text)
            self.assertTrue(np.array_equal(picture, other), text)

    def test_training_goes_on_and_is_read(self):
        model, first = self.trained(.01)
        self.assertGreater(first["state"]["step"], 0)
        # A longer curve that goes on from the steps, the optimiser and the lines of the first.
        _, second = self.trained(.025, "--resume")
        self.assertGreater(second["state"]["step"], first["state"]["step"])
        self.assertGreater(second["state"]["seen"], first["state"]["seen"])
        self.assertGreater(second["optimizer"]["state"][0]["step"], first["optimizer"]["state"][0]["step"])
        moved = [not torch.equal(first["net"][name], weights) for name, weights in second["net"].items()]
        self.assertTrue(any(moved))
        with open(model + ".curve", encoding="utf-8") as file:
            curve = [json.loads(line) for line in file]
        self.assertEqual([line["lines"] for line in curve], sorted(line["lines"] for line in curve))

        export.main(model, os.path.join(self.folder.name, "own.traineddata"))
        read = self.read("own", [picture for picture, _, _ in self.lines])
        truth = [text for _, text, _ in self.lines]
        right = sum(a == b for a, b in zip(read, truth))
        # It began as a model that reads most of them: trained on or not, it does if it was written well.
        self.assertGreater(right, len(truth) // 3, list(zip(truth, read)))

    def test_what_is_written_is_what_was_read(self):
        net = network.LineNet(START, code_writer.ALPHABET)
        path = os.path.join(self.folder.name, "same.traineddata")
        network.write_model(net, START, path, "test")
        again = network.LineNet(path)
        for rows, others in zip(self.rows(net), self.rows(again)):
            # A byte is a 127th of the greatest of its row.
            half_a_step = rows.abs().amax(1, keepdim=True) / 127 * .501
            self.assertTrue(((rows - others).abs() <= half_a_step).all())
        self.assertEqual({c: net.code_of[c] for c in net.code_of}, again.code_of)


if __name__ == "__main__":
    unittest.main(verbosity=2)
