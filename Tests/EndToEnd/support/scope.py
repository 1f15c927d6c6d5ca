# SPDX-License-Identifier: MIT
"""The control group that a desktop starts a program in: by its name the portal knows the program."""

import itertools
import os
import unittest
from contextlib import contextmanager, suppress
from pathlib import Path

from .waiting import wait_until

_numbers = itertools.count(os.getpid())


def _root():
    """Where the kernel's one hierarchy of control groups is mounted."""
    for line in Path("/proc/self/mountinfo").read_text().splitlines():
        mount, _, kind = line.partition(" - ")
        if kind.split()[0] == "cgroup2":
            return Path(mount.split()[4])
    return None


def _place_of(process):
    """The control group of a process, below the root."""
    return next(line.partition("::")[2] for line in
                Path(f"/proc/{process}/cgroup").read_text().splitlines() if line.startswith("0::"))


def _services():
    """The place of what the user's systemd starts, as that names it, also where there is none."""
    own = _place_of("self")
    manager = f"user@{os.getuid()}.service"
    above = own.partition(manager)[0] if manager in own else f"/user.slice/user-{os.getuid()}.slice/"
    return f"{above.lstrip('/')}{manager}/app.slice"


class Unit:
    """A unit of this name for one program, there while the `with` lasts. "%d" becomes a number of
    its own. Skips the test where nobody may make one."""

    def __init__(self, name):
        root = _root()
        self._folder = root / _services() / name.replace("%d", str(next(_numbers))) if root else None

    def __enter__(self):
        try:
            if not self._folder:
                raise OSError("there are no control groups")
            self._folder.mkdir(parents=True)
        except OSError as problem:
            raise unittest.SkipTest(f"no unit of our own: {problem}") from problem
        return self

    def __exit__(self, *_):
        def is_gone():
            try:
                self._folder.rmdir()
            except OSError:
                return False
            return True

        wait_until(f"the end of what runs in {self._folder.name}", is_gone)

    def command(self, program):
        """What starts the program in it."""
        return ["/bin/sh", "-c", 'echo $$ >"$0"/cgroup.procs && exec "$1"', str(self._folder),
                program]

    @contextmanager
    def starting(self, daemon):
        """In it for as long as the `with` lasts, this process starts what it starts there. Only what
        is told to `keep` stays. Skips the test where nobody may move it."""
        outside = _root() / _place_of(daemon).lstrip("/")
        try:
            self._move(daemon, self._folder)
        except OSError as problem:
            raise unittest.SkipTest(f"no unit for a service: {problem}") from problem
        kept = set()
        try:
            yield kept.add
        finally:
            self._move(daemon, outside)
            for process in self._processes() - kept:
                # It may have ended by itself.
                with suppress(ProcessLookupError):
                    self._move(process, outside)

    def _processes(self):
        return {int(line) for line in (self._folder / "cgroup.procs").read_text().split()}

    @staticmethod
    def _move(process, folder):
        (folder / "cgroup.procs").write_text(str(process))
