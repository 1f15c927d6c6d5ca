# SPDX-License-Identifier: MIT
"""The files of an installation: valid, the same for every prefix, and without a trace of the machine
that built them."""

import configparser
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

BUILD = Path(os.environ["VELLORA_BUILD"])
SOURCE = Path(os.environ["VELLORA_SOURCE"])
INSTALLED = Path(os.environ["VELLORA_INSTALLED"])
ID = "org.vellora.Vellora"

ENTRY = f"share/applications/{ID}.desktop"
BUS_SERVICE = f"share/dbus-1/services/{ID}.service"
UNIT = f"share/systemd/user/app-{ID}.service"
# What tells the program that a call on the bus has started it.
ACTIVATED = "VELLORA_ACTIVATED=1"
METAINFO = f"share/metainfo/{ID}.metainfo.xml"


def run(*command, **options):
    return subprocess.run([str(part) for part in command], capture_output=True, text=True,
                          check=False, **options)


def needs(program):
    """Skips a test for people who lack the program; the automatic check has every one."""
    missing = not shutil.which(program) and os.environ.get("CI") != "true"
    return unittest.skipIf(missing, f"{program} is not installed")


def keys(file):
    parser = configparser.RawConfigParser(strict=True, delimiters=("=",), interpolation=None)
    parser.optionxform = str
    parser.read_string(file.read_text())
    return parser


def files_of(tree):
    """Every file and link of the tree, by its place in it."""
    return sorted(str(path.relative_to(tree)) for path in tree.rglob("*") if not path.is_dir())


class ValidTest(unittest.TestCase):
    def assert_is_fine(self, *command):
        done = run(*command)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))

    @needs("desktop-file-validate")
    def test_desktop_entry(self):
        self.assert_is_fine("desktop-file-validate", INSTALLED / ENTRY)

    @needs("appstreamcli")
    def test_metainfo(self):
        done = run("appstreamcli", "validate", "--no-net", "--explain", INSTALLED / METAINFO)
        self.assertEqual(done.returncode, 0, done.stdout)
        tree = run("appstreamcli", "validate-tree", "--no-net", INSTALLED)
        self.assertEqual(tree.returncode, 0, tree.stdout)

    @needs("appstreamcli")
    def test_a_damaged_metainfo_is_told(self):
        # Only other programs read it: this check is what keeps damage from them.
        whole = (INSTALLED / METAINFO).read_bytes()
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / f"{ID}.metainfo.xml"
            for damage, content in {"cut off": whole[:len(whole) // 2], "empty": b"",
                                    "not UTF-8": whole.replace(b"<p>", b"<p>\xff", 1),
                                    "foreign markup": whole.replace(b"<p>", b"<p><b>", 1),
                                    "no release": re.sub(rb"(?s)<releases>.*</releases>",
                                                         b"<releases>", whole)}.items():
                with self.subTest(damage=damage):
                    self.assertNotEqual(content, whole)
                    file.write_bytes(content)
                    done = run("appstreamcli", "validate", "--no-net", file, errors="replace")
                    self.assertNotEqual(done.returncode, 0, done.stdout)

    @needs("man")
    def test_manual(self):
        for program in (INSTALLED / "bin").iterdir():
            with self.subTest(program=program.name):
                page = INSTALLED / f"share/man/man1/{program.name}.1"
                shown = run("man", "--warnings=w", "--local-file", page,
                            env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "80"})
                self.assertEqual((shown.returncode, shown.stderr), (0, ""))
                self.assertIn(f"{program.name} - ", shown.stdout)

    def test_every_action_has_a_name_and_a_command(self):
        entry = keys(INSTALLED / ENTRY)
        actions = entry["Desktop Entry"]["Actions"].rstrip(";").split(";")
        self.assertEqual(actions, ["capture", "settings", "check-for-updates", "quit"])
        for action in actions:
            group = entry[f"Desktop Action {action}"]
            self.assertTrue(group["Name"])
            self.assertEqual(group["Exec"], f"gapplication action {ID} {action}")

    def test_actions_are_named_as_in_the_menu(self):
        entry = keys(INSTALLED / ENTRY)
        for file in sorted((SOURCE / "Translations").glob("vellora_*.ts")):
            language = file.stem.partition("_")[2]
            menu = {message.findtext("source"): message.findtext("translation")
                    for context in ElementTree.parse(file).iter("context")
                    if context.findtext("name") == "AppDelegate"
                    for message in context.iter("message")}
            for action in entry["Desktop Entry"]["Actions"].rstrip(";").split(";"):
                group = entry[f"Desktop Action {action}"]
                with self.subTest(language=language, action=action):
                    self.assertEqual(group[f"Name[{language}]"], menu[group["Name"]])

    def test_a_start_by_the_bus_has_an_application_id(self):
        service = keys(INSTALLED / BUS_SERVICE)["D-BUS Service"]
        self.assertEqual(service["Name"], ID)
        # As portals read it from the unit's name.
        self.assertEqual(service["SystemdService"], f"app-{ID}.service")
        unit = keys(INSTALLED / UNIT)
        self.assertEqual(unit["Service"]["BusName"], ID)
        # A second start that nobody asked for begins no capture.
        self.assertEqual(unit["Service"]["Environment"], ACTIVATED)

    @needs("systemd-analyze")
    def test_unit(self):
        with tempfile.TemporaryDirectory() as folder:
            checked = run("systemd-analyze", "verify", "--user", "--man=no", INSTALLED / UNIT,
                          env={**os.environ, "XDG_RUNTIME_DIR": folder})
            about = [line for line in checked.stderr.splitlines() if "ellora" in line]
            self.assertEqual(about, [])

    def test_version(self):
        version = os.environ["VELLORA_VERSION"]
        newest = re.search(r'<release version="([^"]+)"', (INSTALLED / METAINFO).read_text())
        self.assertEqual(newest[1], version)

    def test_icons(self):
        theme = INSTALLED / "share/icons/hicolor"
        icons = [path for path in theme.rglob("*") if not path.is_dir()]
        self.assertTrue(icons)
        for icon in icons:
            # Whatever is named otherwise is not shown to the desktop by a sandbox.
            self.assertRegex(icon.name, rf"^{re.escape(ID)}(-[\w-]+-symbolic)?\.(png|svg)$")
            self.assertTrue(icon.is_file(), f"{icon} leads nowhere")
        contents = [icon.read_bytes() for icon in icons if not icon.is_symlink()
                    and icon.parent.parent.name != "scalable"]
        self.assertEqual(len(contents), len(set(contents)), "two icons are the same file")


class PrefixTest(unittest.TestCase):
    def setUp(self):
        # By its real path, as an entry names a program.
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()

    def install(self, prefix, **environment):
        done = run("cmake", "--install", BUILD, "--prefix", prefix,
                   env={**os.environ, **environment})
        self.assertEqual(done.returncode, 0, done.stderr)

    def assert_entries_name(self, tree, command):
        self.assertEqual(keys(tree / ENTRY)["Desktop Entry"]["Exec"], command)
        self.assertEqual(keys(tree / BUS_SERVICE)["D-BUS Service"]["Exec"],
                         f"/usr/bin/env {ACTIVATED} {command}")
        self.assertEqual(keys(tree / UNIT)["Service"]["ExecStart"], command)

    def test_any_prefix(self):
        for name in ("one", "another one"):
            prefix = self.folder / name
            self.install(prefix)
            self.assertEqual(files_of(prefix), files_of(INSTALLED))
            command = str(prefix / "bin/vellora")
            self.assert_entries_name(prefix, f'"{command}"' if " " in command else command)
            for file in files_of(prefix):
                if file not in (ENTRY, BUS_SERVICE, UNIT):
                    self.assertEqual((prefix / file).read_bytes(), (INSTALLED / file).read_bytes(),
                                     file)
        if shutil.which("desktop-file-validate"):
            self.assertEqual(run("desktop-file-validate", prefix / ENTRY).stdout, "")

    def test_a_link_on_the_way(self):
        (self.folder / "real").mkdir()
        (self.folder / "link").symlink_to("real")
        self.install(self.folder / "link")
        self.assert_entries_name(self.folder / "real", str(self.folder / "real/bin/vellora"))

    def test_staging_for_a_package(self):
        self.install("/usr", DESTDIR=str(self.folder))
        tree = self.folder / "usr"
        self.assertEqual(files_of(tree), files_of(INSTALLED))
        self.assert_entries_name(tree, "/usr/bin/vellora")

    def test_a_prefix_that_no_entry_can_name(self):
        done = run("cmake", "--install", BUILD, "--prefix", self.folder / 'quo"te')
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("An entry cannot name a program with this path", done.stderr)


class TracesTest(unittest.TestCase):
    def test_no_path_of_the_building_machine(self):
        debugging = os.environ["VELLORA_BUILD_TYPE"] == "Debug"
        own = str(INSTALLED / "bin/vellora").encode()
        for file in files_of(INSTALLED):
            content = (INSTALLED / file).read_bytes().replace(own, b"")
            for path in {SOURCE, SOURCE.resolve(), BUILD, BUILD.resolve()}:
                self.assertNotIn(str(path).encode("utf-16-le"), content, file)
                # Debuggers want it where they are meant to be used.
                if not (debugging and content.startswith(b"\x7fELF")):
                    self.assertNotIn(str(path).encode(), content, file)

    def test_nothing_else_is_installed(self):
        folders = {str(Path(file).parent) for file in files_of(INSTALLED)
                   if not file.startswith("share/icons/hicolor/")}
        self.assertEqual(folders, {
            "bin", "share/applications", "share/dbus-1/services", "share/man/man1",
            "share/metainfo", "share/systemd/user", "share/vellora",
            "share/vellora/Vellora_Vellora.bundle", "share/vellora/models"})


if __name__ == "__main__":
    unittest.main()
