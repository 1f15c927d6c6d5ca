# SPDX-License-Identifier: MIT
"""What the packages of every kind say, compared with the one place that each thing is decided in."""

import html
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["VELLORA_SOURCE"])
VERSION = os.environ["VELLORA_VERSION"]
PACKAGING = SOURCE / "Packaging"

# What every machine that builds packages has, and what only people need.
NOT_FOR_BUILDING = {"g++", "git", "qt6-base-dev-tools"}
# Read, but worth its 89 megabytes to few.
SUGGESTED = {"tesseract-ocr-script-latn"}


def read(name):
    return (PACKAGING / name).read_text()


def dependencies(distribution, group, environment=None):
    return set(subprocess.run([str(SOURCE / "Scripts/dependencies"), "--for", distribution, group],
                              env={**os.environ, **(environment or {})},
                              capture_output=True, text=True, check=True).stdout.split())


def field(name):
    """The packages of a field of debian/control, without versions and conditions."""
    text = re.search(rf"^{name}:(.*(?:\n .*)*)", read("debian/control"), re.MULTILINE)[1]
    return {entry.split()[0] for entry in text.split(",") if entry.strip()}


class VersionTest(unittest.TestCase):
    def test_every_package_has_the_programs(self):
        for name, pattern in {
                "debian/changelog": r"^vellora \((.+)\)",
                "org.vellora.Vellora.metainfo.xml": r'<release version="([^"]+)"',
                "rpm/vellora.spec": r"(?m)^Version:\s*(\S+)",
                "arch/PKGBUILD": r"(?m)^pkgver=(\S+)"}.items():
            with self.subTest(file=name):
                # The package's own tree may be built as another version, for trying an update.
                if name == "debian/changelog" and (SOURCE / "debian").is_dir():
                    text = (SOURCE / "debian/changelog").read_text()
                else:
                    text = read(name)
                self.assertEqual(re.search(pattern, text)[1], VERSION)


class DependenciesTest(unittest.TestCase):
    def test_debian_builds_with_what_is_named(self):
        named = dependencies("debian", "build") - NOT_FOR_BUILDING
        self.assertEqual(named - field("Build-Depends"), set())
        others = field("Build-Depends") - named - {"debhelper-compat"}
        self.assertEqual(others - dependencies("debian", "package"), set())

    def test_models_are_depended_on(self):
        models = {name for name in dependencies("debian", "run") if name.startswith("tesseract-")}
        self.assertEqual(field("Depends") & models, models - SUGGESTED)
        self.assertEqual(field("Suggests") & models, SUGGESTED)

    def test_a_package_that_is_only_named_is_not_asked_for(self):
        # apt knows the name from what another package depends on, shows nothing and succeeds.
        with tempfile.TemporaryDirectory() as folder:
            apt_cache = Path(folder) / "apt-cache"
            for shown, asked_for in (("", False), ("echo Package: qt6-svg-plugins", True)):
                apt_cache.write_text(f"#!/bin/sh\n{shown}\n")
                apt_cache.chmod(0o755)
                path = {"PATH": f"{folder}:{os.environ['PATH']}"}
                names = dependencies("debian", "run", path)
                self.assertEqual("qt6-svg-plugins" in names, asked_for)

    def test_models_elsewhere(self):
        for distribution, file, unneeded in (
                ("fedora", "rpm/vellora.spec", "tesseract-script-latin"),
                ("arch", "arch/PKGBUILD", "tesseract-data-lat")):
            text = read(file)
            for name in dependencies(distribution, "run"):
                if name.startswith("tesseract-") and name != unneeded:
                    self.assertRegex(text, rf"\b{name}\b")


class LicenceTest(unittest.TestCase):
    def test_every_package_names_the_licences(self):
        # Debian has a name of its own for one of them.
        licences = {"MIT" if name == "Expat" else name for name in
                    re.findall(r"(?m)^License: (\S+)$", read("debian/copyright"))}
        self.assertIn("Apache-2.0", licences)
        for name, pattern, separator in (
                ("rpm/vellora.spec", r"(?m)^License:\s*(.+)$", " AND "),
                ("arch/PKGBUILD", r"(?m)^license=\((.+)\)$", " "),
                ("org.vellora.Vellora.metainfo.xml", "<project_license>(.+)<", " AND ")):
            with self.subTest(file=name):
                self.assertEqual(set(re.search(pattern, read(name))[1].split(separator)), licences)

    def test_holders_of_the_protocols_are_named(self):
        paragraphs = read("debian/copyright").split("\n\n")
        protocols = [*SOURCE.glob("Sources/**/*.xml"), *SOURCE.glob("Tests/**/*.xml")]
        self.assertTrue(protocols)
        for protocol in protocols:
            name = str(protocol.relative_to(SOURCE))
            about = "".join(each for each in paragraphs if name in each.split())
            for holder in re.findall(r"Copyright © [-\d, ]+ (\S.*)", protocol.read_text()):
                with self.subTest(protocol=name):
                    self.assertIn(html.unescape(holder.strip()), about)

    def test_texts_of_the_licences_are_packaged(self):
        documents = ("LICENSE", "Packaging/debian/copyright", "Resources/models/Apache-2.0.txt",
                     "Resources/models/README.md")
        for document in documents:
            self.assertTrue((SOURCE / document).is_file(), document)
        # Debian's package has its copyright file, and the text of the Apache License is Debian's.
        for name, command in (("rpm/vellora.spec", "%license"),
                              ("arch/PKGBUILD", "install -Dm644"),
                              ("flatpak/org.vellora.Vellora.yml", "install -Dm644")):
            # Commands may go on on the next line.
            text = re.sub(r"\s*\\?\n {4,}", " ", read(name))
            installed = {word for line in text.splitlines() if command in line
                         for word in line.split()}
            with self.subTest(file=name):
                self.assertEqual(set(documents) - installed, set())


class ManifestTest(unittest.TestCase):
    @unittest.skipUnless(shutil.which("flatpak-builder"), "flatpak-builder is not installed")
    def test_flatpak_builder_reads_it(self):
        # It complains on standard error only, and succeeds.
        shown = subprocess.run(
            ["flatpak-builder", "--show-manifest", str(PACKAGING / "flatpak/org.vellora.Vellora.yml")],
            capture_output=True, text=True, check=True)
        self.assertEqual(shown.stderr, "")
        self.assertIn('"org.vellora.Vellora"', shown.stdout)

    def test_the_sandbox_lets_through_what_is_no_portals(self):
        """The services of the desktop that the program calls by name, beside portals."""
        called = set()
        for file in (SOURCE / "Sources/Platform/Freedesktop").glob("*.cpp"):
            called |= set(re.findall(r'[sS]ervice = u"([\w.]+)"', file.read_text()))
        self.assertIn("org.freedesktop.Notifications", called)
        self.assertEqual(set(re.findall(r"--talk-name=(\S+)",
                                        read("flatpak/org.vellora.Vellora.yml"))), called)


if __name__ == "__main__":
    unittest.main()
