# SPDX-License-Identifier: MIT
"""The desktop entry of a program that is not installed, as Scripts/run makes it."""

import contextlib
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

from .program import APPLICATION_ID, binary

SCRIPT = Path(__file__).resolve().parents[3] / "Scripts/support/desktop-entry"
FILE = Path(os.environ["XDG_DATA_HOME"]) / f"applications/{APPLICATION_ID}.desktop"
# Of the program as it is built, or installed.
TEMPLATE = Path(binary()).parents[1] / f"share/applications/{APPLICATION_ID}.desktop"


def copied_program():
    """The same program under a name that no entry has."""
    folder = Path(tempfile.mkdtemp(dir=os.environ["XDG_RUNTIME_DIR"])).resolve()
    built = Path(binary()).parents[1]
    for part in ("share", "Vellora_Vellora.bundle"):
        (folder / part).symlink_to(built / part)
    (folder / "bin").mkdir()
    return Path(shutil.copy2(binary(), folder / "bin"))


def add(program):
    return _run("add", str(TEMPLATE), str(program))


def remove():
    return _run("remove")


@contextlib.contextmanager
def with_entry(program):
    done = add(program)
    assert done.returncode == 0, done.stderr
    try:
        yield
    finally:
        remove()


def _run(*arguments):
    return subprocess.run([str(SCRIPT), *arguments], capture_output=True, text=True, timeout=60,
                          check=False)
