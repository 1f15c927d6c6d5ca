# SPDX-License-Identifier: MIT
"""The sway of a private desktop: headless, drawn in software, without any input device."""

import json
import os
import struct
import subprocess

from waybar import COLOUR, start_waybar

# Sway does not run as the superuser; this one owns nothing.
NOBODY = 65534

CONFIGURATION = """
xwayland enable
default_border normal
default_floating_border normal
floating_modifier Mod1 normal
focus_follows_mouse no
output * bg #{wallpaper:06x} solid_color
seat * xcursor_theme {cursors} 24
set $mod Mod4
bindsym $mod+Shift+d nop taken
"""

# Without a graphics card sway paints the pointer into what everybody sees. These are its shapes
# that sway, Qt and GTK ask for.
CURSORS = "vellora-unseen"
CURSOR_NAMES = ("default", "left_ptr", "arrow", "cross", "crosshair", "tcross", "text", "xterm",
                "ibeam", "pointer", "hand1", "hand2", "pointing_hand", "wait", "watch", "grab",
                "grabbing", "fleur", "move", "n-resize", "s-resize", "e-resize", "w-resize",
                "ne-resize", "nw-resize", "se-resize", "sw-resize")


def unseen_cursor():
    """A file in the format of xcursor(3) with one picture of one transparent pixel."""
    kind, size, start = 0xfffd0002, 24, 28
    header = struct.pack("<4s3I", b"Xcur", 16, 0x10000, 1)
    contents = struct.pack("<3I", kind, size, start)
    picture = struct.pack("<10I", 36, kind, size, 1, 1, 1, 0, 0, 0, 0)
    return header + contents + picture


class SwaySession:
    """Started by the session of Scripts/in-desktop, which ends what it starts."""

    def __init__(self, session, wallpaper):
        self._session, self._wallpaper = session, wallpaper
        # Its own, because it has to belong to whom sway runs as.
        self._runtime = session.folder / "sway"
        self._pixel = (wallpaper >> 16 & 0xff, wallpaper >> 8 & 0xff, wallpaper & 0xff)

    def prepare(self):
        """Nothing of it has to be there before the session bus is."""

    def start(self):
        session = self._session
        as_nobody = self._as_nobody()
        self._hide_pointer()
        process = session.spawn("sway", *as_nobody, "sway", "--unsupported-gpu", "-c",
                                str(self._configure()), environment=self._environment())
        session.server = process
        session.wait("sway", lambda: self._sockets() and self._outputs_are_there(), process)
        session.wait("the wallpaper", self._shows_wallpaper, process)
        return process

    def _as_nobody(self):
        self._runtime.mkdir(mode=0o700)
        if os.getuid() != 0:
            return []
        self._session.require("setpriv")
        os.chown(self._runtime, NOBODY, NOBODY)
        # Searched on the way to the socket, but not listed.
        os.chmod(self._session.folder, 0o711)
        return ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
                "--pdeathsig", "KILL"]

    def _hide_pointer(self):
        folder = self._runtime / "icons" / CURSORS / "cursors"
        folder.mkdir(parents=True)
        for name in CURSOR_NAMES:
            (folder / name).write_bytes(unseen_cursor())
        self._session.environment.update({"XCURSOR_PATH": str(self._runtime / "icons"),
                                          "XCURSOR_THEME": CURSORS, "XCURSOR_SIZE": "24"})

    def _environment(self):
        count = str(len(self._session.screens))
        return {"XDG_RUNTIME_DIR": str(self._runtime), "HOME": str(self._runtime),
                "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
                "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_HEADLESS_OUTPUTS": count}

    def _configure(self):
        text, left = CONFIGURATION.format(wallpaper=self._wallpaper,
                                         cursors=CURSORS), 0
        scale = self._session.scale
        for number, (width, height) in enumerate(self._session.screens, 1):
            text += (f"output HEADLESS-{number} mode --custom {width}x{height} "
                     f"position {left} 0 scale {scale:g}\n")
            left += round(width / scale)
        # Where nobody may read it.
        file = self._runtime / "config"
        file.write_text(text)
        file.chmod(0o644)
        return file

    def _sockets(self):
        """The sockets, told to the session once they are there."""
        command = sorted(self._runtime.glob("sway-ipc.*.sock"))
        display = [path for path in sorted(self._runtime.glob("wayland-*"))
                   if path.suffix != ".lock"]
        if not command or not display:
            return False
        self._session.environment.update({"SWAYSOCK": str(command[0]),
                                          "WAYLAND_DISPLAY": str(display[0])})
        return True

    def _tell(self, *command):
        """What the command says; nothing when sway is too busy to let it."""
        try:
            return subprocess.run(command, capture_output=True, env=self._session.environment,
                                  timeout=20, check=False).stdout
        except subprocess.TimeoutExpired:
            return b""

    def _outputs_are_there(self):
        try:
            outputs = json.loads(self._tell("swaymsg", "-r", "-t", "get_outputs"))
        except ValueError:
            return False
        return len([each for each in outputs if each["active"]]) == len(self._session.screens)

    def _shows_wallpaper(self):
        lefts, left = [], 0
        for width, _ in self._session.screens:
            lefts.append(left)
            left += round(width / self._session.scale)
        return all(self._tell("grim", "-t", "ppm", "-g", f"{left + 5},5 1x1", "-")[-3:]
                   == bytes(self._pixel) for left in lefts)

    def start_panel(self):
        process = start_waybar(self._session, "HEADLESS-1")
        self._session.wait("the bar", lambda: self._tell("grim", "-t", "ppm", "-g", self._bar(),
                                                         "-")[-3:] == COLOUR.to_bytes(3, "big"),
                           process)

    def _bar(self):
        """A point of the bar, in sway's coordinates."""
        scale = self._session.scale
        width, height = self._session.screens[0]
        return f"{width / scale / 2:.0f},{height / scale - 10:.0f} 1x1"
