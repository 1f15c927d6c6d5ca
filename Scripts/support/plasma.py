# SPDX-License-Identifier: MIT
"""Plasma's shell in a private session of KWin, with the panel that a new user gets."""

import shutil
import subprocess

# What the shell shows behind the windows; the panel stays as it is.
WALLPAPER = """
desktops().forEach(desktop => {{
    desktop.wallpaperPlugin = "org.kde.color";
    desktop.currentConfigGroup = ["Wallpaper", "org.kde.color", "General"];
    desktop.writeConfig("Color", "{red},{green},{blue}");
}});
print(panels().length);
"""


def start_plasma(session, wallpaper):
    """Starts the services that know of status items, and the shell; waits for its panel."""
    # Named after its version, of which there is one.
    daemon = "kded6" if shutil.which("kded6") else "kded5"
    session.require(daemon, "plasmashell", "dbus-send")
    kded = session.spawn(daemon, daemon)
    session.wait("the status notifier watcher",
                 lambda: session.has_bus_name("org.kde.StatusNotifierWatcher"), kded)
    shell = session.spawn("plasmashell", "plasmashell", "--no-respawn")
    session.wait("Plasma's shell", lambda: session.has_bus_name("org.kde.plasmashell"), shell)
    script = WALLPAPER.format(red=wallpaper >> 16, green=wallpaper >> 8 & 0xff,
                              blue=wallpaper & 0xff)
    # The shell is on the bus before it has loaded what it shows.
    session.wait("Plasma's panel", lambda: _evaluated(session, script) == "1", shell)


def _evaluated(session, script):
    """What the script prints; the shell says nothing while it cannot run it."""
    answer = subprocess.run(
        ["dbus-send", "--session", "--print-reply=literal", "--dest=org.kde.plasmashell",
         "/PlasmaShell", "org.kde.PlasmaShell.evaluateScript", f"string:{script}"],
        capture_output=True, text=True, env=session.environment, check=False)
    return answer.stdout.strip()
