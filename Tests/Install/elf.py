# SPDX-License-Identifier: MIT
"""What a program's ELF headers say of how it was linked, as readelf tells it."""

import re
import subprocess


def readelf(*arguments):
    return subprocess.run(["readelf", "--wide", *map(str, arguments)], capture_output=True,
                          text=True, check=True).stdout


def needed_libraries(program):
    return re.findall(r"\(NEEDED\).*\[(.+)\]", readelf("--dynamic", program))


def problems_of_linking(program):
    """Sentences on what is missing; none for a program that is linked as it should be."""
    dynamic = readelf("--dynamic", program)
    segments = readelf("--program-headers", program)
    header = readelf("--file-header", program)
    found = []
    if not re.search(r"Type:\s+DYN", header) or "PIE" not in dynamic:
        found.append("not a position-independent executable")
    if "GNU_RELRO" not in segments:
        found.append("no RELRO")
    if "BIND_NOW" not in dynamic and not re.search(r"FLAGS_1.*NOW", dynamic):
        found.append("no BIND_NOW")
    if re.search(r"\((RPATH|RUNPATH)\)", dynamic):
        found.append("a path for libraries (RPATH or RUNPATH)")
    if re.search(r"GNU_STACK.*RWE", segments):
        found.append("an executable stack")
    return found


def imported_functions(program):
    return set(re.findall(r"UND (\w+)", readelf("--dyn-syms", program)))
