# SPDX-License-Identifier: MIT
"""The source of packages that Scripts/package publishes, read by an apt of its own over HTTP."""

import functools
import http.server
import os
import shutil
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

SOURCE = Path(os.environ["VELLORA_SOURCE"])
PROGRAMS = ("apt-ftparchive", "apt-get", "dpkg-deb", "gpg")

CONTROL = """\
Package: vellora
Version: {version}
Architecture: amd64
Maintainer: Nobody <nobody@example.org>
Description: stands in for the program
"""
CHANGELOG = """\
vellora ({version}) unstable; urgency=medium

  * What is new in {version}.

 -- Nobody <nobody@example.org>  Sun, 22 Nov 2026 12:00:00 +0000
"""


class Handler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


def missing():
    return [program for program in PROGRAMS if not shutil.which(program)]


@unittest.skipIf(missing() and os.environ.get("CI") != "true", f"not installed: {missing()}")
class RepositoryTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.published = self.folder / "published"
        self.published.mkdir()
        # In the past, so that no answer comes from the future.
        self.published_at = int(time.time()) - 3600
        server = http.server.ThreadingHTTPServer(
            ("127.0.0.1", 0), functools.partial(Handler, directory=self.published))
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.url = f"http://127.0.0.1:{server.server_port}"
        # Where the agent that holds the keys makes its socket is told by their folder.
        self.addCleanup(subprocess.run, ["gpgconf", "--kill", "all"], check=False,
                        env={**os.environ, "GNUPGHOME": str(self.folder / "gnupg")})

    def publish(self, version):
        tree = self.folder / version
        (tree / "DEBIAN").mkdir(parents=True)
        (tree / "DEBIAN/control").write_text(CONTROL.format(version=version))
        documents = tree / "usr/share/doc/vellora"
        documents.mkdir(parents=True)
        (documents / "changelog").write_text(CHANGELOG.format(version=version))
        deb = self.folder / f"vellora_{version}_amd64.deb"
        for command in (["gzip", "-n", str(documents / "changelog")],
                        ["dpkg-deb", "--root-owner-group", "--build", str(tree), str(deb)],
                        [str(SOURCE / "Scripts/support/publish"), str(deb), str(self.published),
                         self.url]):
            done = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(done.returncode, 0, done.stderr)
        # A web server tells the time of a change in whole seconds, and apt asks for what is newer.
        self.published_at += 60
        for file in self.published.rglob("*"):
            os.utime(file, (self.published_at, self.published_at))

    def apt(self, program, *arguments):
        """Apt with nothing of this machine but the source that a user would add."""
        root = self.folder / "apt"
        for place in ("lists/partial", "cache/archives/partial", "etc/sources.list.d",
                      "etc/trusted.gpg.d", "etc/preferences.d"):
            (root / place).mkdir(parents=True, exist_ok=True)
        (root / "status").touch()
        shutil.copy(self.published / "vellora.sources", root / "etc/sources.list.d")
        options = {"Dir::State": root, "Dir::State::lists": root / "lists",
                   "Dir::State::status": root / "status", "Dir::Cache": root / "cache",
                   "Dir::Etc": root / "etc", "Dir::Etc::main": "/dev/null",
                   "APT::Architecture": "amd64", "APT::Sandbox::User": "",
                   "Acquire::Changelogs::AlwaysOnline": "true"}
        command = [program]
        for name, value in options.items():
            command += ["-o", f"{name}={value}"]
        done = subprocess.run([*command, *arguments], capture_output=True, text=True, check=False,
                              env={**os.environ, "LC_ALL": "C.UTF-8", "PAGER": "cat"})
        return done.returncode, done.stdout + done.stderr

    def test_versions_and_their_notes(self):
        self.publish("0.1.0")
        status, said = self.apt("apt-get", "update")
        self.assertEqual(status, 0, said)
        # Signed by the key in the file that the user adds, so no word of warning.
        self.assertNotIn("W:", said)
        self.assertIn("Candidate: 0.1.0", self.apt("apt-cache", "policy", "vellora")[1])

        self.publish("0.2.0")
        status, said = self.apt("apt-get", "update")
        self.assertEqual(status, 0, said)
        policy = self.apt("apt-cache", "policy", "vellora")[1]
        self.assertIn("Candidate: 0.2.0", policy)
        self.assertIn(" 0.1.0 ", policy)
        self.assertIn("What is new in 0.2.0.", self.apt("apt-get", "changelog", "vellora")[1])

    def test_a_changed_list_is_not_taken(self):
        self.publish("0.1.0")
        for packages in self.published.rglob("Packages*"):
            packages.write_bytes(packages.read_bytes() + b"\n")
        status, said = self.apt("apt-get", "update")
        self.assertNotEqual(status, 0, said)


if __name__ == "__main__":
    unittest.main()
