# SPDX-License-Identifier: MIT
"""What a process has of the system and of the X server, and whether that grows."""

import ctypes
import os
import subprocess
from pathlib import Path

from support.waiting import wait_until

MOST_GROWTH = {"descriptors": 2, "windows": 2, "resources": 20}


class ServerResources:
    """What the X server keeps for a process's connections, counted by its extension X-Resource."""

    class Client(ctypes.Structure):
        _fields_ = [("base", ctypes.c_ulong), ("mask", ctypes.c_ulong)]

    class Type(ctypes.Structure):
        _fields_ = [("atom", ctypes.c_ulong), ("count", ctypes.c_uint)]

    class IdSpec(ctypes.Structure):
        _fields_ = [("client", ctypes.c_ulong), ("mask", ctypes.c_uint)]

    class IdValue(ctypes.Structure):
        pass

    def __init__(self):
        self._x, self._res = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXRes.so.1")
        self.IdValue._fields_ = [("spec", self.IdSpec), ("length", ctypes.c_long),
                                 ("value", ctypes.c_void_p)]
        self._x.XOpenDisplay.restype = ctypes.c_void_p
        self._display = ctypes.c_void_p(self._x.XOpenDisplay(os.environ["DISPLAY"].encode()))
        self._res.XResGetClientPid.restype = ctypes.c_int

    def count(self, pid):
        clients, number = ctypes.POINTER(self.Client)(), ctypes.c_int()
        self._res.XResQueryClients(self._display, ctypes.byref(number), ctypes.byref(clients))
        return sum(self._of(clients[i].base) for i in range(number.value)
                   if self._process(clients[i].base) == pid)

    def _process(self, base):
        spec = self.IdSpec(base, 2)  # XRES_CLIENT_ID_PID_MASK
        number, values = ctypes.c_long(), ctypes.POINTER(self.IdValue)()
        self._res.XResQueryClientIds(self._display, 1, ctypes.byref(spec), ctypes.byref(number),
                                     ctypes.byref(values))
        return self._res.XResGetClientPid(ctypes.byref(values[0])) if number.value else 0

    def _of(self, base):
        types, number = ctypes.POINTER(self.Type)(), ctypes.c_int()
        self._res.XResQueryClientResources(self._display, ctypes.c_ulong(base),
                                           ctypes.byref(number), ctypes.byref(types))
        return sum(types[i].count for i in range(number.value))


def windows():
    """The tree of all windows; nothing if one has gone while it was listed."""
    listed = subprocess.run(["xwininfo", "-root", "-tree"], capture_output=True, text=True,
                            check=False)
    return listed.stdout if listed.returncode == 0 else ""


class Measures:
    """Of one process, at any time."""

    def __init__(self, pid):
        self._pid, self._resources = pid, ServerResources()

    def now(self):
        """Memory in MB of 10^6 bytes: what is its own, not in any file. The proportional share of
        libraries depends on who else runs."""
        status = dict(line.split(":", 1)
                      for line in Path(f"/proc/{self._pid}/status").read_text().splitlines())
        memory = sum(int(status[name].split()[0]) * 1024 / 1e6 for name in ("RssAnon", "RssShmem"))
        return {"memory": memory, "descriptors": len(os.listdir(f"/proc/{self._pid}/fd")),
                "threads": len(os.listdir(f"/proc/{self._pid}/task")),
                "windows": wait_until("the list of windows", windows).count('"vellora"'),
                "resources": self._resources.count(self._pid)}


def line(values):
    return (f"{values['memory']:.1f} MB, {values['descriptors']} descriptors, "
            f"{values['threads']} threads, {values['windows']} windows, "
            f"{values['resources']} resources")


def growth(first, last):
    return {name: last[name] - first[name] for name in last}


def too_much(first, last):
    """A sentence for each thing that grew by more than it may."""
    grown = growth(first, last)
    return [f"{name} grew by {grown[name]:.1f}" for name, most in MOST_GROWTH.items()
            if grown[name] > most]
