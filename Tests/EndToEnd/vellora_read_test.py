# SPDX-License-Identifier: MIT
"""`vellora-read`, as scripts use it: what it prints where, and its exit status."""

import io
import json
import os
import struct
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

from PIL import Image, ImageDraw, ImageFont

from support import main

PROGRAM = os.environ["VELLORA_READ"]
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"
LINES = ["The quick brown fox", "jumps over the lazy dog"]
TEXT = "\n".join(LINES)
LEFT, TOP, LINE_HEIGHT = 20, 12, 30
TEXT_FOUND, NO_TEXT, TROUBLE = 0, 1, 2


def picture(text=TEXT, mode="RGB", ground="white", ink="black", size=(420, 90)):
    image = Image.new(mode, size, ground)
    draw = ImageDraw.Draw(image)
    for row, line in enumerate(text.split("\n")):
        draw.text((LEFT, TOP + row * LINE_HEIGHT), line, ink, ImageFont.truetype(FONT, 18))
    return image


def in_format(image, name, **options):
    file = io.BytesIO()
    image.save(file, name, **options)
    return file.getvalue()


def png_chunk(kind, content):
    return (struct.pack(">I", len(content)) + kind + content
            + struct.pack(">I", zlib.crc32(kind + content)))


def png_that_says_it_is(width, height, bits=8):
    """A few bytes that would unpack to `width` × `height` grey pixels."""
    return (b"\x89PNG\r\n\x1a\n"
            + png_chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, bits, 0, 0, 0, 0))
            + png_chunk(b"IDAT", zlib.compress(b"\0" * 1000)) + png_chunk(b"IEND", b""))


def read(*arguments, stdin=b"", environment=None):
    done = subprocess.run([PROGRAM, *arguments], input=stdin, capture_output=True, timeout=60,
                          env={**os.environ, **(environment or {})}, check=False)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


class VelloraReadTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def file(self, name, content=None):
        path = self.folder / name
        path.write_bytes(in_format(picture(), "PNG") if content is None else content)
        return str(path)

    def assert_refused(self, reason, *arguments, stdin=b""):
        status, output, errors = read(*arguments, stdin=stdin)
        self.assertEqual((status, output), (TROUBLE, ""))
        # A decoder may have printed a line of its own before ours.
        self.assertRegex(errors.splitlines()[-1], f"^vellora-read: .*: .*{reason}")
        self.assertLessEqual(errors.count("\n"), 2, errors)

    def test_text_is_printed(self):
        self.assertEqual(read(self.file("page.png")), (TEXT_FOUND, TEXT + "\n", ""))

    def test_standard_input_is_read(self):
        self.assertEqual(read("-", stdin=in_format(picture(), "PNG")), (TEXT_FOUND, TEXT + "\n", ""))

    def test_no_display_and_no_locale_are_needed(self):
        bare = {"DISPLAY": "", "WAYLAND_DISPLAY": "", "QT_QPA_PLATFORM": "none", "LC_ALL": "C"}
        text = "Ärger über größere Häuser"
        page = self.file("Häuser.png", in_format(picture(text), "PNG"))
        self.assertEqual(read(page, environment=bare), (TEXT_FOUND, text + "\n", ""))
        self.assertIn("Häuser.gif: ", read(str(self.folder / "Häuser.gif"), environment=bare)[2])

    def test_a_picture_without_text_is_no_error(self):
        page = self.file("empty.png", in_format(picture(""), "PNG"))
        self.assertEqual(read(page), (NO_TEXT, "", ""))
        status, output, errors = read("--json", page)
        self.assertEqual((status, errors), (NO_TEXT, ""))
        self.assertEqual((json.loads(output)["text"], json.loads(output)["lines"]), ("", []))

    def test_formats_are_told_by_content(self):
        for name in ("PNG", "JPEG", "GIF", "BMP", "PPM"):
            with self.subTest(format=name):
                page = self.file("page.txt", in_format(picture(), name))
                self.assertEqual(read(page), (TEXT_FOUND, TEXT + "\n", ""))

    def test_text_on_a_transparent_ground_is_read(self):
        for ink in ("black", "white"):
            with self.subTest(ink=ink):
                page = in_format(picture(mode="RGBA", ground=(0, 0, 0, 0), ink=ink), "PNG")
                self.assertEqual(read("-", stdin=page), (TEXT_FOUND, TEXT + "\n", ""))

    def test_a_photograph_that_says_it_lies_on_its_side_is_turned(self):
        exif = Image.Exif()
        exif[0x0112] = 6  # to be turned clockwise
        page = in_format(picture().rotate(90, expand=True), "JPEG", exif=exif, quality=95)
        self.assertEqual(read("-", stdin=page), (TEXT_FOUND, TEXT + "\n", ""))

    def test_json_tells_where_lines_stand(self):
        page = self.file("page.png")
        status, output, errors = read("--json", page)
        self.assertEqual((status, errors), (TEXT_FOUND, ""))
        answer = json.loads(output)
        self.assertEqual((answer["image"], answer["text"]), (page, TEXT))
        self.assertNotIn("error", answer)
        self.assertGreater(answer["ms"], 0)
        self.assertGreater(answer["cpu"], 0)
        self.assertFalse(answer["warm"])
        self.assertEqual([line["text"] for line in answer["lines"]], LINES)
        for row, line in enumerate(answer["lines"]):
            left, top, width, height = line["box"]
            self.assertAlmostEqual(left, LEFT, delta=4)
            self.assertGreaterEqual(top, TOP + row * LINE_HEIGHT)
            self.assertLessEqual(top + height, TOP + (row + 1) * LINE_HEIGHT)
            length = ImageFont.truetype(FONT, 18).getlength(LINES[row])
            self.assertAlmostEqual(width, length, delta=8)
            self.assertTrue(0.5 < line["confidence"] <= 1, line)

    def test_json_of_several_files_is_a_line_each(self):
        names = [self.file("one.png"), self.file('a "quoted"\nname.png'), self.file("three.png")]
        status, output, _ = read("--json", *names)
        answers = [json.loads(line) for line in output.splitlines()]
        self.assertEqual(status, TEXT_FOUND)
        self.assertEqual([answer["image"] for answer in answers], names)
        self.assertEqual([answer["text"] for answer in answers], [TEXT] * 3)
        self.assertEqual([answer["warm"] for answer in answers], [False, True, True])

    def test_a_bad_file_among_good_ones_is_named_and_the_others_are_read(self):
        bad = self.file("bad.png", b"no picture")
        files = [self.file("one.png"), bad, self.file("three.png")]
        status, output, errors = read(*files)
        self.assertEqual((status, output), (TROUBLE, f"{TEXT}\n{TEXT}\n"))
        self.assertEqual(errors, f"vellora-read: {bad}: not a picture of a known format\n")

        status, output, errors = read("--json", *files)
        answers = [json.loads(line) for line in output.splitlines()]
        self.assertEqual(status, TROUBLE)
        self.assertIn(bad, errors)
        self.assertEqual([answer["text"] for answer in answers], [TEXT, "", TEXT])
        self.assertEqual([answer.get("error") for answer in answers],
                         [None, "not a picture of a known format", None])

    def test_text_in_one_of_several_files_is_text(self):
        empty = self.file("empty.png", in_format(picture(""), "PNG"))
        self.assertEqual(read(empty, self.file("page.png"), empty), (TEXT_FOUND, TEXT + "\n", ""))

    def test_what_is_no_readable_file_is_refused(self):
        self.assert_refused("No such file or directory", str(self.folder / "missing.png"))
        self.assert_refused("Is a directory", str(self.folder))
        self.assert_refused("empty", self.file("empty", b""))
        self.assert_refused("empty", "-")
        self.assert_refused("larger than 256 MiB", "/dev/zero")

    def test_damaged_pictures_are_refused(self):
        page = in_format(picture(), "PNG")
        self.assert_refused("damaged", "-", stdin=page[:len(page) // 2])
        self.assert_refused("damaged", "-", stdin=page[:60] + bytes(200) + page[260:])
        self.assert_refused("damaged", "-", stdin=in_format(picture(), "GIF")[:40])
        # Of no size, whichever way the decoder sees it.
        self.assert_refused("picture", "-", stdin=png_that_says_it_is(0, 0))

    def test_pictures_that_would_fill_the_memory_are_refused(self):
        self.assert_refused("64 million pixels", "-", stdin=png_that_says_it_is(60000, 60000))
        self.assert_refused("64 million pixels", "-", stdin=png_that_says_it_is(20000, 20000, 1))
        self.assert_refused("damaged", "-", stdin=png_that_says_it_is(0x7fffffff, 0x7fffffff, 16))
        self.assert_refused("64 million pixels", "-",
                            stdin=b"P6 30000 30000 255\n" + bytes(1000))

    def test_drawings_are_refused(self):
        drawing = b'<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><text>a</text></svg>'
        self.assert_refused("picture", "-", stdin=drawing)
        self.assert_refused("picture", "-", stdin=b"%PDF-1.4\n" + bytes(1000))

    def test_a_name_that_is_no_text_can_be_read(self):
        path = os.fsencode(self.folder) + b"/\xff\xfe.png"
        with open(path, "wb") as file:
            file.write(in_format(picture(), "PNG"))
        self.assertEqual(read(path), (TEXT_FOUND, TEXT + "\n", ""))

    def test_output_that_cannot_be_written_is_an_error(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, self.file("page.png")], stdout=full, timeout=60,
                                  stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, TROUBLE)
        self.assertIn(b"cannot write", done.stderr)

    def test_options(self):
        status, output, errors = read("--help")
        self.assertEqual((status, errors), (0, ""))
        self.assertIn("--json", output)
        status, output, errors = read("--version")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, r"^vellora-read \d+\.\d+\.\d+\n$")
        for arguments in ([], ["--json"], ["--wrong", "-"]):
            status, output, errors = read(*arguments)
            self.assertEqual((status, output), (TROUBLE, ""))
            self.assertIn("vellora-read", errors)
        dashed = self.file("--json")
        done = subprocess.run([PROGRAM, "--", "--json"], cwd=self.folder, timeout=60,
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (TEXT_FOUND, TEXT + "\n"), dashed)


if __name__ == "__main__":
    main()
