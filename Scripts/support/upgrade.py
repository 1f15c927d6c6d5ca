# SPDX-License-Identifier: MIT
"""An update as a person makes it, through the program's own window, and the removal of the program
while it runs; for `Scripts/try-package`."""

import os
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent.parent / "Tests/EndToEnd"))
from support import accessibility, desktop  # noqa: E402 (the path must be known first)
from support.comparing import settled_screenshot  # noqa: E402
from support.installed import InstalledProgram, activate, tell_bus  # noqa: E402
from support.program import activate_action  # noqa: E402
from support.update_window import LABEL, check_for_updates, click, says  # noqa: E402
from support.waiting import wait_until  # noqa: E402

PROGRAM = "/usr/bin/vellora"
SETTINGS = "Vellora Settings"
# Seconds for what the network and dpkg do.
PATIENCE = 300


def main():
    new, folder = sys.argv[1], Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)

    def keep(name):
        desktop.save(settled_screenshot(), folder / f"{name}.png")

    # What the bus starts is to be seen by a screen reader.
    os.environ.update(accessibility.ENVIRONMENT)
    tell_bus()
    with InstalledProgram({}, activate) as program:
        executable = Path(f"/proc/{program.process_id}/exe")
        program.status_item()
        keep("1-started")
        check_for_updates()
        says(f"Vellora {new} is available", PATIENCE)
        keep("2-available")
        click("Install")
        says(f"Vellora {new} is installed", PATIENCE)
        keep("3-installed")
        assert os.readlink(executable) == f"{PROGRAM} (deleted)", os.readlink(executable)
        click("Restart Vellora")
        wait_until("the new program", lambda: os.readlink(executable) == PROGRAM)
        activate_action("settings")
        wait_until("the new version",
                   lambda: accessibility.has_control(SETTINGS, LABEL, f"v{new}"))
        # In the panel again, with nothing above it.
        program.find_status_item_again()
        keep("4-updated")
        subprocess.run(["apt-get", "-q", "remove", "-y", "vellora"], check=True)
        program.wait_for_end()
        keep("5-removed")
    left = [path for path in (PROGRAM, "/usr/share/vellora") if Path(path).exists()]
    assert not left, f"left behind: {left}"
    print(f"\nPictures of every step: {folder}")


if __name__ == "__main__":
    main()
