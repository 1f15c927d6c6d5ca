# SPDX-License-Identifier: MIT
"""Files that are damaged, missing or nonsense: the program goes on, and says what a user can do."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import desktop, main
from support.comparing import wait_until_unchanged
from support.desktop import Clipboard, key
from support.page import Page
from support.program import Program, binary, settings_file
from support.waiting import wait_until

TEXT = "Still readable"

# An empty folder in place of each that may hold the language data, the program's own too, for one
# process only.
WITHOUT_LANGUAGE_DATA = ["unshare", "--mount", "sh", "-e", "-c", """
for folder in /usr/share/tesseract-ocr /usr/share/tesseract /usr/share/tessdata \\
    /usr/local/share/tessdata "${0%/*}/../share/vellora/models"; do
  [ ! -d "$folder" ] || mount -t tmpfs none "$folder"
done
exec "$0" "$@"
"""]


def can_hide_files():
    return subprocess.run([*WITHOUT_LANGUAGE_DATA, "true"], stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


def preloaded():
    """What takes the program's threads away, behind the sanitizers' library if it has one."""
    libraries = subprocess.run(["ldd", binary()], stdout=subprocess.PIPE, text=True,
                               check=True).stdout
    first = re.findall(r"(/\S*lib[at]san\S*)", libraries)
    return " ".join([*first, os.environ["VELLORA_NO_THREADS_LIBRARY"]])


class DamageTest(unittest.TestCase):
    def store(self, content):
        file = settings_file()
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)

    def assert_works_with_defaults(self):
        """Both outputs, which is what nothing stored means."""
        with Page(TEXT) as page, Program() as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            program.popup()
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            key("Escape")
            wait_until_unchanged("the result window's end", before)

    def test_no_settings(self):
        settings_file().unlink(missing_ok=True)
        self.assert_works_with_defaults()

    def test_empty_settings(self):
        self.store(b"")
        self.assert_works_with_defaults()

    def test_garbage_settings(self):
        self.store(bytes(range(256)) * 64)
        self.assert_works_with_defaults()

    def test_unknown_values(self):
        self.store(b"[General]\noutputMode=Popup\nshutterSound=maybe\nhotkeyString=\n"
                   b"launchAtLogin=@Invalid()\nresultPopupSize=@Size(1\n")
        self.assert_works_with_defaults()

    def test_damaged_sizes(self):
        for size in ("", '"{0, 0}"', '"{-5, 300}"', "x", '"{1e400, nan}"', '"' + "9" * 70000 + '"'):
            with self.subTest(size=size[:30]), Page(TEXT) as page, \
                    Program({"outputMode": "popup", "resultPopupSize": size}) as program:
                program.capture(page.box)
                content = desktop.window_box(program.popup())
                self.assertEqual((content.width, content.height),
                                 (desktop.points(360), desktop.points(240)))

    def test_huge_size(self):
        with Page(TEXT) as page, \
                Program({"outputMode": "popup", "resultPopupSize": '"{1e9, 1e9}"'}) as program:
            before = program.capture(page.box)
            program.popup()
            key("Escape")
            wait_until_unchanged("the result window's end", before)

    def test_settings_folder_is_a_file(self):
        folder = settings_file().parent
        shutil.rmtree(folder, ignore_errors=True)
        folder.parent.mkdir(parents=True, exist_ok=True)
        folder.write_text("in the way")
        self.addCleanup(folder.unlink)
        self.assert_works_with_defaults()

    def test_no_sound_server(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard",
                                          "shutterSound": "true"}) as program:
            program.capture(page.box)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    @unittest.skipUnless(can_hide_files(), "this system does not let a process hide files")
    def test_no_language_data(self):
        with Page(TEXT) as page, Program({}, command=[*WITHOUT_LANGUAGE_DATA, binary()]) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            # One sentence that a person understands, with the package's name in it.
            program.logged(r"Vellora OCR: OCR error: [A-Z].*tesseract-ocr.*")
            wait_until_unchanged("the overlay's end", before)
            self.assertEqual(Clipboard.text(), "before")

    def test_no_thread_left(self):
        with tempfile.TemporaryDirectory() as folder, Page(TEXT) as page:
            none_left = Path(folder) / "none-left"
            with Program({"outputMode": "clipboard"},
                         {"LD_PRELOAD": preloaded(), "VELLORA_NO_THREADS": str(none_left)}) as program:
                program.status_item()
                Clipboard.put("before")
                none_left.touch()
                before = program.capture(page.box)
                program.logged(r"Vellora OCR: OCR error: The system cannot start any more work\. "
                               r"Close some programs and try again\.")
                wait_until_unchanged("the overlay's end", before)
                self.assertEqual(Clipboard.text(), "before")
                none_left.unlink()
                program.capture(page.box)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT, 60)

    def test_unreadable_icon(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = shutil.copy(binary(), folder)
            bundle = Path(folder) / "Vellora_Vellora.bundle"
            bundle.mkdir()
            (bundle / "menubar_icon.png").write_bytes(b"not a picture")
            with Page(TEXT) as page, Program({"outputMode": "clipboard"},
                                             command=[copy]) as program:
                program.capture(page.box)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)


if __name__ == "__main__":
    main()
