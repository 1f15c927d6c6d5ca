# SPDX-License-Identifier: MIT
"""Makes up lines that hold Arabic as interfaces, pages and messages show them: with Latin names, both kinds of digits and vowel marks."""
import re
import unicodedata

VOWELS = "\u064b\u064c\u064d\u064e\u064f\u0650\u0651\u0652"
LETTERS = "".join(map(chr, range(0x621, 0x63b))) + "".join(map(chr, range(0x641, 0x64b)))
# Letters that join the next one, so that the line between them can be drawn out.
JOINING = "بتثجحخسشصضطظعغفقكلمنهي"
INDIC_DIGITS = {48 + digit: 0x660 + digit for digit in range(10)}
ALPHABET = "".join(map(chr, range(32, 127))) + LETTERS + VOWELS + "\u0670ـ،؛؟٪پچڤگ" + "".join(map(chr, INDIC_DIGITS.values())) + "©®€£°×«»‘’“”…–—•éèêüöäçñßáíóú"
# Letters and marks that look like those of the alphabet, and are as good.
ALIKE = str.maketrans({"\u00a0": " ", "\u202f": " ", "ﬁ": "fi", "ﬂ": "fl", "‐": "-", "‑": "-", "−": "-", "ی": "ي", "ک": "ك", "ھ": "ه", "ﻻ": "لا", "٬": "،", "ٱ": "ا"})
# What a piece of a text may be cut to, in characters: shorter lines are learnt from more cheaply.
LENGTHS, LENGTH_WEIGHTS = (8, 14, 20, 28, 36, 60, 90), (16, 20, 22, 16, 12, 10, 4)
NAMES = "Firefox GNOME KDE Linux Windows Android iPhone Wi-Fi USB PDF HTML Google Chrome YouTube WhatsApp Excel Word Python GitHub Debian Ubuntu Bluetooth VPN IP API DVD SSD HDMI 4K MB GB Ctrl Alt Shift OK CPU Netflix Amazon Samsung Galaxy Pro Max Office Teams Zoom Mail".split()


class Writer:
    def __init__(self, texts, alphabet, rng):
        """`texts`: lines by kind; `alphabet`: what may stand in a line."""
        self.texts, self.alphabet, self.rng = texts, set(alphabet), rng

    def piece(self, kind, most):
        """Words of a text in a row, of at most `most` characters if the first is no longer."""
        words = self.rng.choice(self.texts[kind]).translate(ALIKE).split()
        at = self.rng.randrange(len(words)) if len(words) > 3 and self.rng.random() < .6 else 0
        text = words[at]
        for word in words[at + 1:]:
            if len(text) + 1 + len(word) > most:
                break
            text += " " + word
        return text

    def length(self):
        return self.rng.choices(LENGTHS, LENGTH_WEIGHTS)[0]

    def latin(self, most=12):
        """A name as it stands among Arabic words."""
        r = self.rng
        return r.choice([lambda: r.choice(NAMES), lambda: self.piece("english", most), lambda: f"{r.choice(NAMES)} {r.randrange(1, 100)}", lambda: f"{r.choice(NAMES)} {r.choice(NAMES)}",
                         lambda: f"{self.piece('english', 8).lower()}@{r.choice(NAMES).lower()}.com", lambda: f"www.{r.choice(NAMES).lower()}.org", lambda: f"{self.piece('english', 10).lower()}.{r.choice(['pdf', 'txt', 'docx', 'png', 'zip', 'py'])}"])()

    def number(self):
        r = self.rng
        return r.choice([lambda: str(r.randrange(10)), lambda: str(r.randrange(10 ** r.randrange(1, 7))), lambda: f"{r.randrange(1000)}.{r.randrange(100)}", lambda: f"{r.randrange(24):02}:{r.randrange(60):02}", lambda: f"{r.randrange(101)}%",
                         lambda: f"{r.randrange(1, 32)}/{r.randrange(1, 13)}/{r.randrange(1990, 2035)}", lambda: f"{r.randrange(1990, 2035)}-{r.randrange(1, 13):02}-{r.randrange(1, 29):02}", lambda: f"{r.randrange(1990, 2035)}",
                         lambda: f"{r.randrange(1, 1000)},{r.randrange(1000):03}", lambda: f"({r.randrange(100)})", lambda: f"+{r.randrange(1, 1000)} {r.randrange(100, 1000)} {r.randrange(1000, 10000)}", lambda: f"v{r.randrange(20)}.{r.randrange(20)}", lambda: f"{r.randrange(1, 100)} {r.choice(['MB', 'GB', 'KB', 'ms', 'px'])}"])()

    def voweled(self, text):
        """With marks on a part of its letters, as in books for the young and on ambiguous words."""
        share = self.rng.choice([.1, .3, .8])
        return "".join(c + (self.rng.choice(VOWELS) if c in LETTERS and self.rng.random() < share and not unicodedata.combining(text[i + 1:i + 2] or "x") else "") for i, c in enumerate(text))

    def stretched(self, text):
        return "".join(c + ("ـ" * self.rng.randrange(1, 4) if c in JOINING and self.rng.random() < .15 and text[i + 1:i + 2] in LETTERS[1:] else "") for i, c in enumerate(text))

    def arabic(self):
        r = self.rng
        x = r.random()
        if x < .08:
            text = " ".join(r.choice(self.texts.get("arabic-words") or [self.piece("arabic", 1)]) for _ in range(r.randrange(1, 5)))
        else:
            text = self.piece("arabic", self.length())
        x = r.random()
        if x < .16:
            text = r.choice(["{0} {1}", "{1} {0}", "{0} ({1})", "{0} {1} {2}", "{0}، {1}", "{0}: {1}", "{0} {1}، {2}", "«{1}» {0}", "{0} \"{1}\" {2}", "{1} - {0}", "{0} / {1}", "{1}، {0}"]).format(text, self.latin(), self.piece("arabic", 14))
        elif x < .34:
            text = r.choice(["{0} {1}", "{1} {0}", "{0}: {1}", "{0} ({1})", "{1}. {0}", "{0} {1} {2}", "{0} {1} - {3}", "{0}، {1}"]).format(text, self.number(), self.piece("arabic", 14), self.number())
        elif x < .40:
            text = r.choice(["«{}»", "“{}”", "\"{}\"", "({})", "[{}]", "{}…", "{}...", "{}:", "{}،", "{}؟", "{}!", "• {}", "- {}", "{}؛", "{}."]).format(text)
        if r.random() < .4:
            text = text.translate(INDIC_DIGITS)
            if r.random() < .5:
                text = text.replace("%", "٪")
        if r.random() < .1:
            text = self.voweled(text)
        if r.random() < .02:
            text = self.stretched(text)
        return text

    def line(self):
        """A line of the alphabet, and whether it stands among lines that are read from the right."""
        r = self.rng
        while True:
            x = r.random()
            if x < .8:
                text = self.arabic()
            elif x < .92:
                text = self.piece("english", self.length())
                text = r.choice([text, text, text.upper(), f"{text} {self.number()}", f"{text}:"])
            else:
                text = " ".join(self.number() for _ in range(r.randrange(1, 4)))
                if r.random() < .5:
                    text = text.translate(INDIC_DIGITS)
            text = unicodedata.normalize("NFC", " ".join(text.split()))
            if not text or not all(c in self.alphabet for c in text):
                continue
            is_from_right = bool(re.search(f"[{LETTERS}]", text)) and r.random() < .8
            return text, is_from_right
