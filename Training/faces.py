# SPDX-License-Identifier: MIT
"""The families that lines are drawn in, by what they are for and whether they are trained on.

Families that are not there are left out. Those kept out of training are drawn for the held-out set
only, so that what is reported is not what was learnt by heart.
"""
import subprocess

# Weighted by how often they stand on screens: what is named three times is drawn three times as often.
FIXED = """
DejaVu Sans Mono|DejaVu Sans Mono|DejaVu Sans Mono|Liberation Mono|Liberation Mono|Noto Sans Mono|Noto Sans Mono|Noto Mono
Hack|Hack|JetBrains Mono|JetBrains Mono|Fira Code|Fira Code|Ubuntu Mono|Inconsolata|Inconsolata|PT Mono|PT Mono
Nimbus Mono PS|Nimbus Mono PS|Nimbus Mono PS|Go Mono|Fantasque Sans Mono|Cousine|FreeMono|Agave|agave|Aurulent Sans Mono|Courier Prime
IBM 3270|Hermit|League Mono|monofur|Monoid|M+ 1m|M+ 1 Code|M PLUS 1 Code|M+ 2m|NanumGothicCoding|D2Coding|Oxygen Mono
Ricty Diminished|Latin Modern Mono|LM Mono 10|CMU Typewriter Text|Tlwg Mono|Tlwg Typewriter|Tlwg Typist|VL Gothic
Cascadia Code|Noto Sans Mono CJK JP
"""
FIXED_HELD_OUT = "mononoki|Anonymous Pro|B612 Mono|Overpass Mono|Comfortaa Mono"
PROPORTIONAL = """
Noto Sans|Noto Sans|DejaVu Sans|DejaVu Sans|Cantarell|Inter|Roboto|Open Sans|Liberation Sans|Liberation Serif
Liberation Sans Narrow|DejaVu Serif|Lato|PT Sans|PT Serif|Nimbus Sans|Nimbus Roman|C059|Noto Serif|Arimo|Tinos|FreeSans
Roboto Slab|Oxygen-Sans
"""
PROPORTIONAL_HELD_OUT = "Aurulent Sans|Overpass|B612"

ARABIC = """
Noto Sans Arabic|Noto Sans Arabic|Noto Sans Arabic|Noto Sans Arabic|Noto Sans Arabic|Noto Sans Arabic|Noto Sans Arabic UI|Noto Sans Arabic UI|Noto Sans Arabic UI
DejaVu Sans|DejaVu Sans|DejaVu Sans|DejaVu Sans|DejaVu Sans|DejaVu Sans|DejaVu Sans Mono|DejaVu Sans Mono
Noto Naskh Arabic|Noto Naskh Arabic|Noto Naskh Arabic|Noto Naskh Arabic|Noto Naskh Arabic UI|Noto Naskh Arabic UI|Noto Kufi Arabic|Noto Kufi Arabic
Amiri|Amiri|Amiri|Scheherazade|Scheherazade|Scheherazade|Lateef|Lemonada|FreeSerif|FreeSerif|FreeMono|FreeFarsi|Nazli|Nazli|Homa|Titr
AlArabiya|AlArabiya|AlArabiya|KacstBook|KacstBook|KacstBook|KacstNaskh|KacstOffice|KacstOffice|KacstScreen|KacstLetter|KacstFarsi|KacstDigital|KacstPen|KacstTitle
KacstPoster|KacstQurn|mry_KacstQurn|Arab|AlBattar|AlHor|AlManzomah|AlYarmook|Cortoba|Electron|Furat|Furat|Granada|Hani|Kayrawan|Khalid|Mashq|Metal|Nagham
Ostorah|Petra|Rehan|Salem|Sharjah|Sindbad|Tarablus|Tholoth
"""
ARABIC_HELD_OUT = "Harmattan|Nada|Thabit|Jet"


def listed(names):
    """The names of a list that fontconfig has."""
    known = set()
    for line in subprocess.run(["fc-list", ":", "family"], capture_output=True, text=True, check=True).stdout.split("\n"):
        known.update(name.strip() for name in line.split(","))
    return [name for name in names.strip().replace("\n", "|").split("|") if name in known]


def code(part):
    """(fixed-pitch, proportional) families of "train" or "held-out"."""
    names = (FIXED, PROPORTIONAL) if part == "train" else (FIXED_HELD_OUT, PROPORTIONAL_HELD_OUT)
    return tuple(listed(n) for n in names)


def arabic(part):
    """The same for lines that hold Arabic: lists of families, the first that has a character draws it. Interfaces name the Latin one
    first as often as not."""
    latin = [name for name in listed(PROPORTIONAL) if name not in ("DejaVu Sans", "FreeSans")]
    names = listed(ARABIC if part == "train" else ARABIC_HELD_OUT)
    return [], [f"{one}, {other}" for name in names for family in latin for one, other in ((name, family), (family, name))]
