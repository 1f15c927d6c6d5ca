# SPDX-License-Identifier: MIT
"""A capture from the click to the clipboard and the result window, with real pointer events."""

import unittest

from support import desktop, main
from support.comparing import dimmed, is_unchanged, wait_until_unchanged
from support.desktop import Box, Clipboard, Pointer, key, points, screenshot
from support.page import Page
from support.program import Program
from support.waiting import wait_until

TEXT = "The quick brown fox\njumps over 13 lazy dogs"
OUTLINE = points(2)  # 1.5 points wide, half of it on each side of a path half a point inside


def shows_selection(before, box):
    """Whether `box` is a clear hole with a blue outline, and all around it is dim."""
    now = screenshot()
    inner = box.inset(OUTLINE)
    if (inner.of(now) != inner.of(before)).any():
        return False
    outer = box.inset(-OUTLINE)
    around = now.copy()
    around[outer.y:outer.bottom, outer.x:outer.right] = \
        dimmed(before)[outer.y:outer.bottom, outer.x:outer.right]
    for number in range(len(desktop.SCREENS)):
        area = desktop.beside_panel(number)
        if (abs(area.of(around) - dimmed(area.of(before))) > 2).any():
            return False
    sides = [Box(box.x - 1, box.y + box.height // 2, 4, 1),
             Box(box.right - 3, box.y + box.height // 2, 4, 1),
             Box(box.x + box.width // 2, box.y - 1, 1, 4),
             Box(box.x + box.width // 2, box.bottom - 3, 1, 4)]
    return all(is_blue(side.of(now)) for side in sides)


def is_blue(pixels):
    red, green, blue = pixels[..., 0], pixels[..., 1], pixels[..., 2]
    return ((blue - red > 100) & (blue - green > 60)).any()


class CaptureTest(unittest.TestCase):
    def test_text_reaches_the_clipboard(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            before = program.start_capture()
            box = page.box.inset(points(4))
            Pointer.drag((box.x, box.y), (box.right, box.bottom), release=False)
            wait_until("the clear, outlined hole", lambda: shows_selection(before, box))
            Pointer.release()
            wait_until_unchanged("the overlay's end", before)
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            self.assertTrue(is_unchanged(before))
            self.assertEqual(desktop.windows_titled("Vellora — Recognized Text"), [])

    def test_drag_may_go_up_and_left(self):
        with Page(TEXT) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            before = program.start_capture()
            box = page.box.inset(points(4))
            Pointer.drag((box.right, box.bottom), (box.x, box.y), release=False)
            wait_until("the clear, outlined hole", lambda: shows_selection(before, box))
            Pointer.release()
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)

    def test_every_screen_can_be_captured(self):
        for screen in desktop.SCREENS:
            box = Page.usual_box()
            box = box._replace(x=screen.x + box.x)
            with self.subTest(screen=screen), Page(TEXT, box) as page, \
                    Program({"outputMode": "clipboard"}) as program:
                Clipboard.put("before")
                before = program.capture(page.box)
                wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
                wait_until_unchanged("the overlay's end", before)

    @unittest.skipIf(len(desktop.SCREENS) < 2, "there is one screen")
    def test_drag_from_one_screen_onto_another(self):
        # The text is on one of them, with most of the rectangle: xfwm4 keeps the page on the first.
        second = desktop.SCREENS[1]
        box = Page.usual_box()
        box = box._replace(x=second.x + box.x)
        with Page(TEXT, box) as page, Program({"outputMode": "clipboard"}) as program:
            Clipboard.put("before")
            before = program.start_capture()
            left = min(page.box.x, second.x - points(40))
            right = max(page.box.right, second.x + points(40))
            Pointer.drag((left, page.box.y), (right, page.box.bottom))
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            wait_until_unchanged("the overlay's end", before)

    def test_result_window(self):
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            popup = program.popup()

            # 8 points below the capture, its left edge at the capture's middle.
            place = page.box.middle[0], page.box.bottom + points(8)
            wait_until(f"the result window at {place}, not at {desktop.frame_box(popup)}",
                       lambda: all(abs(is_at - should) <= 1 for is_at, should in
                                   zip(desktop.frame_box(popup), place)))
            if desktop.NAME == "gnome":
                # The shell does not tell what of the frame is the content: see gnome_test.
                return
            content = desktop.window_box(popup)
            self.assertEqual((content.width, content.height), (points(360), points(240)))
            self.assertEqual(Clipboard.text(), "before")

            # The button: 90 x 28 points, 10 from the right and 8 from the bottom.
            Pointer.click(content.right - points(55), content.bottom - points(22))
            wait_until("the copied text", lambda: Clipboard.text() == TEXT)

            key("Escape")
            wait_until_unchanged("the result window's end", before)

    def test_both_and_a_click_elsewhere(self):
        with Page(TEXT) as page, Program({"outputMode": "both"}) as program:
            Clipboard.put("before")
            before = program.capture(page.box)
            program.popup()
            wait_until("the text on the clipboard", lambda: Clipboard.text() == TEXT)
            Pointer.click(page.box.x + points(20), page.box.bottom - points(10))
            wait_until_unchanged("the result window's end", before)
            wait_until("the click in the other program", lambda: page.said(r"click \d+ \d+"))

    def test_a_new_result_replaces_the_old_one(self):
        with Page(TEXT) as page, Program({"outputMode": "popup"}) as program:
            program.capture(page.box)
            first = program.popup()
            program.ask_for_capture()
            # The first result is above the panel still, so the dim is told by the wallpaper.
            dark = round(desktop.WALLPAPER * 0.75)
            x, y = desktop.SCREENS[0].right - 9, desktop.SCREENS[0].bottom - points(60)
            wait_until("the dim", lambda: abs(screenshot()[y, x] - dark).max() <= 2)
            Pointer.drag((page.box.x, page.box.y), (page.box.right, page.box.bottom))
            wait_until("another result window",
                       lambda: first not in desktop.windows_titled("Vellora — Recognized Text"))
            program.popup()


if __name__ == "__main__":
    main()
