# SPDX-License-Identifier: MIT
"""A capture as a person would make it, for `Scripts/run` where there is no desktop."""

import sys
from html.parser import HTMLParser
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "Tests/EndToEnd"))
from support import desktop  # noqa: E402 (the path must be known first)
from support.desktop import Box, Clipboard, Pointer, difference, screenshot  # noqa: E402
from support.page import Page  # noqa: E402
from support.program import Program  # noqa: E402
from support.waiting import wait_until  # noqa: E402


class Paragraphs(HTMLParser):
    """What the page says, a text per paragraph or heading."""

    def __init__(self, html):
        super().__init__()
        self.texts = []
        self._inside = False
        self.feed(html)

    def handle_starttag(self, tag, _attributes):
        if tag in ("p", "h2"):
            self._inside = True
            self.texts.append("")

    def handle_endtag(self, tag):
        if tag in ("p", "h2"):
            self._inside = False

    def handle_data(self, data):
        if self._inside:
            self.texts[-1] += data


def folded(text):
    return " ".join(text.split())


def wrong(page, read):
    """The paragraphs of `page`, a text of HTML, that `read` has not to the letter; lines may wrap."""
    return [text for text in Paragraphs(page).texts if folded(text) not in folded(read)]


def main():
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)

    def keep(name):
        desktop.save(screenshot(), folder / name)

    with Page(str(HERE / "demonstration.html"), Box(60, 40, 860, 520), 20) as page, \
            Program({"outputMode": "both"}) as program:
        Clipboard.put("nothing yet")
        program.start_capture()
        keep("1-dim.png")
        selection = page.box.inset(6)
        dim = screenshot()
        Pointer.drag((selection.x, selection.y), (selection.right, selection.bottom),
                     release=False)
        wait_until("the selection", lambda: difference(dim, screenshot()) is not None
                   and selection.inset(4).of(screenshot()).max() == 255)
        keep("2-selection.png")
        Pointer.release()
        wait_until("the text on the clipboard", lambda: Clipboard.text() != "nothing yet", 60)
        popup = program.popup()
        # Drawn when its text is there: dark pixels on its light ground.
        wait_until("the text in the result window",
                   lambda: desktop.window_box(popup).of(screenshot()).min() < 100)
        keep("3-result.png")

        print("\nWhat xclip, another program, reads from the clipboard:\n")
        read = Clipboard.text()
        print(read)
        print(f"\nPictures of the dim, the selection and the result: {folder}")
        missed = wrong((HERE / "demonstration.html").read_text(encoding="utf-8"), read)
        for text in missed:
            print(f"Read wrong: {text}", file=sys.stderr)
        return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
