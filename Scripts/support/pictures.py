# SPDX-License-Identifier: MIT
"""Takes the pictures of the documentation, for `Scripts/pictures`: a capture as a person makes it."""

import os
import subprocess
import sys
from pathlib import Path

from PIL import Image

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "Tests/EndToEnd"))
from support import desktop  # noqa: E402 (the path must be known first)
from support.comparing import settled_screenshot  # noqa: E402
from support.desktop import Box, Clipboard, Pointer, frame_box, screenshot  # noqa: E402
from support.page import Page  # noqa: E402
from support.program import POPUP_TITLE, Program, activate_action  # noqa: E402
from support.waiting import wait_until  # noqa: E402

SKY = ("#2b5876", "#7fa6b8")
MARGIN = 40  # pixels of the desktop around a window
PLACE = Box(70, 70, 900, 320)
# The column with the opening hours.
SELECTION = Box(582, 186, 376, 180)
SETTINGS_TITLE = "Vellora Settings"


class Poster(Page):
    def _is_seen(self):
        return (self.box.of(screenshot()) < 64).any()


def paint_wallpaper():
    subprocess.run(["hsetroot", "-add", SKY[0], "-add", SKY[1], "-gradient", "0"], check=True)


def keep(picture, folder, name):
    Image.fromarray(picture.astype("uint8")).save(folder / name, optimize=True)


def around(box):
    screen = desktop.SCREENS[0]
    left, top = max(box.x - MARGIN, screen.x), max(box.y - MARGIN, screen.y)
    return Box(left, top, min(box.right + MARGIN, screen.right) - left,
               min(box.bottom + MARGIN, screen.bottom) - top)


def take_capture(folder, program):
    Clipboard.put("nothing yet")
    before = settled_screenshot()
    program.click()
    Pointer.rest()
    wait_until("the dim", lambda: screenshot()[PLACE.y, PLACE.x].sum()
               < before[PLACE.y, PLACE.x].sum())
    Pointer.drag((SELECTION.x, SELECTION.y), (SELECTION.right, SELECTION.bottom), release=False)
    keep(settled_screenshot(), folder, "dim.png")
    Pointer.release()
    wait_until("the text on the clipboard", lambda: Clipboard.text() != "nothing yet", 60)
    popup = program.popup()
    wait_until("the text in the result window",
               lambda: desktop.window_box(popup).of(screenshot()).min() < 100)
    keep(settled_screenshot(), folder, "result.png")
    print(Clipboard.text())
    desktop.key("Escape")
    wait_until("the result window's end", lambda: not desktop.windows_titled(POPUP_TITLE))


def take_settings(folder):
    activate_action("settings")
    window, = wait_until("the settings window", lambda: desktop.windows_titled(SETTINGS_TITLE))
    wait_until("the settings window in front", lambda: desktop.active_window() == int(window))
    picture = settled_screenshot()
    keep(around(frame_box(window)).of(picture), folder, "settings.png")


def main():
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    paint_wallpaper()
    poster = Poster(str(HERE / "pictures.html"), PLACE, 18,
                    ("--framed", "--title", "harbour-museum.jpg"))
    with Program({"outputMode": "both", "hotkeyEnabled": "true"}) as program:
        with poster:
            take_capture(folder, program)
        take_settings(folder)
    print(f"Pictures: {os.path.relpath(folder)}")


if __name__ == "__main__":
    main()
