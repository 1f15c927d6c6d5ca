# SPDX-License-Identifier: MIT
"""waybar with a tray, below on the first screen of a private Wayland desktop."""

import json
from pathlib import Path

HEIGHT = 28
COLOUR = 0xe0e0e0

_CONFIGURATION = {"layer": "top", "position": "bottom", "height": HEIGHT,
                  "modules-right": ["tray"], "tray": {"icon-size": 18, "spacing": 4}}
_STYLE = f"* {{ font-size: 12px; }} window#waybar {{ background: #{COLOUR:06x}; }}"


def start_waybar(session, output):
    """Returns its process once it has a place for status items. `output` is the first screen."""
    session.require("waybar")
    folder = Path(session.environment["XDG_CONFIG_HOME"]) / "waybar"
    folder.mkdir(parents=True)
    (folder / "config").write_text(json.dumps({**_CONFIGURATION, "output": output}))
    (folder / "style.css").write_text(_STYLE)
    process = session.spawn("waybar", "waybar", "-c", str(folder / "config"), "-s",
                            str(folder / "style.css"))
    session.wait("the status notifier watcher",
                 lambda: session.has_bus_name("org.kde.StatusNotifierWatcher"), process)
    return process
