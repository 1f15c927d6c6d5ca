# SPDX-License-Identifier: MIT
"""Screens as people capture them are read, by class, with no more errors than a bound.

pictures.json names the classes: for each the bound, in percent of characters, and its pictures with
what they say, line by line. In a class whose "blanks" are exact a line that is read counts only if
its blanks stand as they stood.
"""

import json
import os
import re
import subprocess
import unicodedata
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
CLASSES = json.loads((HERE / "pictures.json").read_text(encoding="utf-8"))
# They turn text round and cannot be seen.
DIRECTIONS = re.compile("[\u200b-\u200f\u202a-\u202e\u2060\u2066-\u2069\ufeff]")


def characters(lines, keeps_blanks):
    text = DIRECTIONS.sub("", unicodedata.normalize("NFC", "\n".join(lines)))
    return text if keeps_blanks else re.sub(r"\s+", " ", text).strip()


def distance(one, other):
    """Insertions, deletions and replacements that make `other` of `one`."""
    row = list(range(len(other) + 1))
    for i, a in enumerate(one, 1):
        above, row[0] = row[0], i
        for j, b in enumerate(other, 1):
            above, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, above + (a != b))
    return row[-1]


def without_ends(one, other):
    """Both without what they begin and end with alike, which has no errors."""
    start = len(os.path.commonprefix([one, other]))
    one, other = one[start:], other[start:]
    end = len(os.path.commonprefix([one[::-1], other[::-1]]))
    return one[:len(one) - end], other[:len(other) - end]


class RecognitionTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        files = [picture["file"] for each in CLASSES.values() for picture in each["pictures"]]
        reader = subprocess.run([os.environ["VELLORA_READ"], "--json",
                                 *(str(HERE / "pictures" / file) for file in files)],
                                capture_output=True, text=True, check=False)
        cls.read = {}
        for line in reader.stdout.splitlines():
            answer = json.loads(line)
            cls.read[Path(answer["image"]).name] = answer["text"].split("\n")
        assert set(cls.read) == set(files), reader.stderr

    def test_every_class_keeps_its_bound(self):
        for name, each in CLASSES.items():
            with self.subTest(name):
                errors = count = 0
                for picture in each["pictures"]:
                    keeps_blanks = each.get("blanks") == "exact"
                    expected = characters(picture["lines"], keeps_blanks)
                    found = characters(self.read[picture["file"]], keeps_blanks)
                    count += len(expected)
                    errors += distance(*without_ends(expected, found))
                if count == 0:
                    self.assertEqual(errors, 0, "text where there is none")
                else:
                    self.assertLessEqual(100 * errors / count, each["bound"])


if __name__ == "__main__":
    unittest.main()
