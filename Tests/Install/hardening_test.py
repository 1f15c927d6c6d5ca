# SPDX-License-Identifier: MIT
"""How the program is built and linked: what a mistake in it, or a library that somebody has planted,
can do."""

import os
import platform
import subprocess
import tempfile
import unittest
from pathlib import Path

import elf

BUILD = Path(os.environ["VELLORA_BUILD"])
SOURCE = Path(os.environ["VELLORA_SOURCE"])
INSTALLED = Path(os.environ["VELLORA_INSTALLED"])

PLANT = """
#include <stdio.h>
__attribute__((constructor)) static void grow(void) { fputs("planted\\n", stderr); }
"""


def run(*command, **options):
    return subprocess.run([str(part) for part in command], capture_output=True, text=True,
                          check=False, **options)


class ProgramTest(unittest.TestCase):
    """The built and the installed programs, however they are built."""

    def programs(self):
        programs = [BUILD / "bin/vellora", *(INSTALLED / "bin").iterdir()]
        self.assertIn(INSTALLED / "bin/vellora", programs)
        return programs

    def test_linking(self):
        for program in self.programs():
            with self.subTest(program=program):
                self.assertEqual(elf.problems_of_linking(program), [])

    def test_no_library_for_the_network(self):
        for program in self.programs():
            with self.subTest(program=program):
                libraries = elf.needed_libraries(program)
                self.assertIn("libQt6Core.so.6", libraries)
                for name in ("Network", "WebSockets", "curl", "soup", "ssl", "gnutls", "nss3"):
                    self.assertEqual([each for each in libraries if name in each], [])

    def test_planted_libraries(self):
        for program in self.programs():
            with self.subTest(program=program), tempfile.TemporaryDirectory() as folder:
                libraries = [name for name in elf.needed_libraries(program)
                             if not name.startswith(("ld-linux", "libc.", "libasan", "libubsan",
                                                     "libtsan"))]
                self.assertIn("libQt6Core.so.6", libraries)
                source = Path(folder, "plant.c")
                source.write_text(PLANT)
                for name in libraries:
                    done = run("cc", "-shared", "-fPIC", "-o", Path(folder, name), source)
                    self.assertEqual(done.returncode, 0, done.stderr)
                places = self.places(program, folder)
                self.assertNotIn(folder, places)
                # The loader can be led there, so the plants would have been seen.
                misled = self.places(program, folder, LD_LIBRARY_PATH=".")
                for name in libraries:
                    self.assertIn(f"{name} => ./{name}", misled)
                started = run(program, cwd=folder, timeout=60,
                              env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
                self.assertNotIn("planted", started.stdout + started.stderr)

    @staticmethod
    def places(program, folder, **environment):
        """Where the loader finds the program's libraries when started in this folder."""
        listed = run(program, cwd=folder,
                     env={**os.environ, "LD_TRACE_LOADED_OBJECTS": "1", **environment})
        return listed.stdout


class ReleaseTest(unittest.TestCase):
    """A small program, built with the options of a release."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        build = Path(cls.folder.name, "build")
        # The compiler's cache would be asked for nothing: every build is in a folder of its own.
        for command in (
                ["cmake", "-G", "Ninja", "-S", SOURCE / "Tests/Install/hardening", "-B", build,
                 "-D", "CMAKE_BUILD_TYPE=Release"],
                ["cmake", "--build", build]):
            done = run(*command, env={**os.environ, "CMAKE_CXX_COMPILER_LAUNCHER": "",
                                      "CMAKE_C_COMPILER_LAUNCHER": ""})
            assert done.returncode == 0, done.stdout + done.stderr
        cls.build = build
        cls.probe = build / "probe"

    def test_linking(self):
        self.assertEqual(elf.problems_of_linking(self.probe), [])

    def test_sizes_known_to_the_compiler(self):
        # The compiler may take one function for the other.
        self.assertTrue({"__strcpy_chk", "__stpcpy_chk"} & elf.imported_functions(self.probe))
        self.assert_ended_by("copy", "buffer overflow detected")

    def test_stack(self):
        self.assert_ended_by("stack", "stack smashing detected")

    def test_indices(self):
        self.assert_ended_by("index", "Assertion '__n < this->size()' failed")

    @unittest.skipUnless(platform.machine() == "x86_64", "this processor has none")
    def test_control_flow(self):
        # Of the whole program only where every library that is linked into it has it too.
        code = subprocess.run(["objdump", "--disassemble=main", str(self.probe)],
                              capture_output=True, text=True, check=True).stdout
        self.assertIn("endbr64", code)

    def test_no_path_of_the_building_machine(self):
        self.assertEqual(run(self.probe).stdout, "./probe.cpp\n")
        content = self.probe.read_bytes()
        for path in (SOURCE, self.build):
            self.assertNotIn(str(path).encode(), content)

    def assert_ended_by(self, argument, message):
        done = run(self.probe, argument)
        self.assertLess(done.returncode, 0, "ended by a signal")
        self.assertIn(message, done.stderr)


if __name__ == "__main__":
    unittest.main()
