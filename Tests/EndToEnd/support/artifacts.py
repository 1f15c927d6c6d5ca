# SPDX-License-Identifier: MIT
"""Pictures of the screens for people, beside the build."""

import os
from pathlib import Path

from . import desktop


def keep(name, picture=None):
    """That picture, or what the screens show now; returns the file."""
    folder = Path(os.environ.get("VELLORA_ARTIFACTS", "screenshots"))
    folder.mkdir(parents=True, exist_ok=True)
    file = folder / f"{name}.png"
    desktop.save(desktop.screenshot() if picture is None else picture, file)
    return file
