# SPDX-License-Identifier: MIT
"""A weston without a screen, and without portals: a desktop that offers programs nothing."""

from pathlib import Path


class WestonSession:
    """Started by the session of Scripts/in-desktop, which ends what it starts."""

    def __init__(self, session):
        self._session = session

    def prepare(self):
        """Portals of other desktops that are installed are not this one's."""
        portals = self._session.folder / "portals"
        portals.mkdir()
        self._session.environment["XDG_DESKTOP_PORTAL_DIR"] = str(portals)

    def start(self):
        session = self._session
        width, height = session.screens[0]
        # Without pixman the headless weston draws nothing at all.
        process = session.spawn("weston", "weston", "--backend=headless-backend.so",
                                "--use-pixman", f"--width={width}", f"--height={height}",
                                "--socket=wayland-weston", "--no-config", "--idle-time=0")
        session.server = process
        socket = Path(session.environment["XDG_RUNTIME_DIR"]) / "wayland-weston"
        session.wait("weston", socket.exists, process)
        session.environment["WAYLAND_DISPLAY"] = "wayland-weston"
