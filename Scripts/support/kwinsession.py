# SPDX-License-Identifier: MIT
"""The KWin of a private desktop on Wayland: drawn in software, without a screen or a device."""

import os
import re
import shutil
import subprocess
from pathlib import Path

from plasma import start_plasma
from waybar import start_waybar

# What a window fades or slides through is in nobody's way. KWin 6 finds no entry, and so none that
# lets a program do something, without a menu that has it.
SETTINGS = {"kdeglobals": "[KDE]\nAnimationDurationFactor=0\n",
            "kwinrc": "[Windows]\nBorderlessMaximizedWindows=false\n"
                      "[Plugins]\nscreenedgeEnabled=false\n",
            "menus/applications.menu":
                "<Menu><Name>Applications</Name><Include><All/></Include></Menu>\n"}

# KWin lets a program see the screen if an entry like this says so.
EYES = """[Desktop Entry]
Type=Application
Name=Eyes of the tests
Exec={program}
NoDisplay=true
X-KDE-DBUS-Restricted-Interfaces=org.kde.KWin.ScreenShot2
"""

# In a session that is all of KDE's, KWin 6 cannot do without Plasma's theme.
ENVIRONMENT = {"QT_QPA_PLATFORM": "", "KDE_FULL_SESSION": None}

# From this version on KWin draws with OpenGL on what has a render node alone, and takes pictures
# only then.
NEEDS_RENDER_NODE = 6


class KWinSession:
    """Started by the session of Scripts/in-desktop, which ends what it starts."""

    def __init__(self, session, wallpaper, failure, missing, has_xwayland):
        self._session, self._wallpaper = session, wallpaper
        self._failure, self._missing = failure, missing
        self._has_xwayland = has_xwayland

    def prepare(self):
        """Nothing of it has to be there before the session bus is."""

    def start(self):
        session = self._session
        if len(set(session.screens)) != 1:
            raise self._failure("KWin's virtual screens are all of one size")
        program = self._program()
        self._require_opengl(program)
        self._configure()
        # In points.
        width, height = (round(side / session.scale) for side in session.screens[0])
        process = session.spawn("kwin", program, "--virtual", "--width", str(width),
                                "--height", str(height), "--output-count",
                                str(len(session.screens)), "--scale", f"{session.scale:g}",
                                "--socket", "wayland-kwin", "--no-lockscreen",
                                *self._xwayland(),
                                environment=ENVIRONMENT)
        session.server = process
        socket = Path(session.environment["XDG_RUNTIME_DIR"]) / "wayland-kwin"
        session.wait("KWin", socket.exists, process)
        session.environment["WAYLAND_DISPLAY"] = "wayland-kwin"
        if self._has_xwayland:
            self._await_xwayland()
        # Only with OpenGL, which takes its time to start in software.
        session.wait("KWin on the session bus",
                     lambda: session.has_bus_name("org.kde.KWin.ScreenShot2"), process)
        # What the bus starts, the portals among it, shows windows too; the bus was there before.
        session.require("dbus-update-activation-environment")
        subprocess.run(["dbus-update-activation-environment", "--all"], env=session.environment,
                       capture_output=True, check=True)
        if session.panel != "plasma":
            session.spawn("wallpaper", "swaybg", "-c", f"#{self._wallpaper:06x}")

    def _configure(self):
        for name, text in SETTINGS.items():
            file = Path(self._session.environment["XDG_CONFIG_HOME"]) / name
            file.parent.mkdir(exist_ok=True)
            file.write_text(text)
        folder = Path(self._session.environment["XDG_DATA_HOME"]) / "applications"
        folder.mkdir(parents=True)
        program = os.path.realpath("/usr/bin/python3")
        # The name of the distribution's entry for it: KWin takes the first that it finds.
        (folder / f"{Path(program).name}.desktop").write_text(EYES.format(program=program))

    def _xwayland(self):
        """With Xwayland, the arguments for it: what KWin starts tells its display."""
        if not self._has_xwayland:
            return []
        told = self._session.folder / "x11"
        script = self._session.folder / "tell-x11"
        script.write_text(f"#!/bin/sh\nprintenv DISPLAY > {told}.part && mv {told}.part {told}\n")
        script.chmod(0o755)
        return ["--xwayland", str(script)]

    def _await_xwayland(self):
        told = self._session.folder / "x11"
        self._session.wait("Xwayland", told.exists, self._session.server)
        self._session.environment["DISPLAY"] = told.read_text().strip()

    def _program(self):
        """KWin, or a copy where the system does not let it have the capability of its file."""
        try:
            subprocess.run(["kwin_wayland", "--version"], capture_output=True, check=False,
                           timeout=60)
            return "kwin_wayland"
        except PermissionError:
            copy = self._session.folder / "kwin_wayland"
            shutil.copyfile(shutil.which("kwin_wayland"), copy)
            copy.chmod(0o755)
            return str(copy)

    def _require_opengl(self, program):
        self._session.spawn("kwin-version", program, "--version", environment=ENVIRONMENT).wait(60)
        version = re.search(r"^kwin (\d+)", (self._session.logs / "kwin-version.log").read_text(),
                            re.MULTILINE)
        if version and int(version[1]) >= NEEDS_RENDER_NODE \
                and not any(Path("/dev/dri").glob("renderD*")):
            raise self._missing(f"KWin {version[1]} takes no pictures without a render node "
                                "(/dev/dri/renderD*)")

    def start_panel(self):
        if self._session.panel == "plasma":
            start_plasma(self._session, self._wallpaper)
        else:
            start_waybar(self._session, "Virtual-0")
