# SPDX-License-Identifier: MIT
"""The real PackageKit without root: on a system bus, an apt and a dpkg of its own.

`PackageKit` holds the bus, which starts the service when it is asked, and a played polkit.
`Repository` is a signed package source beside it, served over HTTP.
"""

import fcntl
import functools
import gzip
import http.server
import os
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
from contextlib import contextmanager
from pathlib import Path

from .waiting import is_listening, wait_until

PACKAGE = "vellora"
SERVICE = "/usr/libexec/packagekitd"
TOOLS = "apt-ftparchive", "apt-get", "dpkg", "dpkg-deb", "gpg", "dbus-daemon"
SKIPPED = 77

BUS = """<busconfig>
  <listen>unix:path={folder}/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}/services</servicedir>
  <policy context="default">
    <allow send_destination="*"/><allow own="*"/><allow user="*"/><allow receive_sender="*"/>
  </policy>
</busconfig>
"""
APT = """Dir::State "{folder}/state";
Dir::State::status "{folder}/system/var/lib/dpkg/status";
Dir::Cache "{folder}/cache";
Dir::Log "{folder}/state";
Dir::Etc::sourcelist "{folder}/etc/sources.list";
Dir::Etc::sourceparts "{folder}/etc/sources.list.d";
Dir::Etc::trustedparts "{folder}/etc/trusted";
Dir::Etc::preferences "{folder}/etc/preferences";
Dir::Etc::preferencesparts "{folder}/etc/preferences.d";
APT::Sandbox::User "";
APT::Architecture "amd64";
APT::Architectures {{ "amd64"; }};
Acquire::Retries "0";
#clear DPkg::Pre-Install-Pkgs;
#clear DPkg::Pre-Invoke;
#clear DPkg::Post-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
Dpkg::Options {{ {options} }};
"""


def skip_unless_possible():
    """Ends the test as a skipped one where the system has other package tools."""
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    missing += [] if Path(SERVICE).exists() else [SERVICE]
    if missing:
        print("not installed:", *missing, file=sys.stderr)
        sys.exit(1 if os.environ.get("CI") == "true" else SKIPPED)


def run(*command, **options):
    """What the command wrote; with all of that in the error when it failed."""
    result = subprocess.run([str(each) for each in command], text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            **{"input": "", **options})
    assert result.returncode == 0, f"{command}: {result.stdout}"
    return result.stdout


class PackageKit:
    """Use as a context manager. `exists` tells whether the bus knows the service at all."""

    def __init__(self, exists=True):
        # A short path: sockets have no long ones.
        self.folder = Path(tempfile.mkdtemp(prefix="packagekit-", dir="/tmp"))
        self.address = f"unix:path={self.folder}/bus"
        self.environment = {"DBUS_SYSTEM_BUS_ADDRESS": self.address}
        self._exists = exists
        self._answer = self.folder / "polkit"
        self.answer("yes")

    def __enter__(self):
        for each in ("system/var/lib/dpkg/info", "system/var/lib/dpkg/updates", "system/tmp",
                     "system/var/lib/dpkg/triggers", "state/lists/partial", "services",
                     "cache/archives/partial", "etc/sources.list.d", "etc/trusted", "etc/preferences.d"):
            (self.folder / each).mkdir(parents=True)
        for each in ("status", "available"):
            (self.folder / "system/var/lib/dpkg" / each).touch()
        options = " ".join(f'"{option}";' for option in self._dpkg_options())
        self._write("apt.conf", APT.format(folder=self.folder, options=options))
        self._write("bus.conf", BUS.format(folder=self.folder))
        authority = Path(__file__).with_name("polkit_authority.py")
        self._add_service("org.freedesktop.PolicyKit1",
                          f"/usr/bin/python3 -B {authority} {self._answer}")
        if self._exists:
            self._add_service("org.freedesktop.PackageKit",
                              f"{SERVICE} --keep-environment --verbose")
        log = open(self.folder / "log", "wb")
        # A process group of its own: what the bus starts ends with it.
        self._bus = subprocess.Popen(
            ["dbus-daemon", f"--config-file={self.folder}/bus.conf", "--nofork"],
            env={**os.environ, **self.environment, "APT_CONFIG": str(self.folder / "apt.conf")},
            stdout=log, stderr=log, start_new_session=True)
        log.close()
        wait_until("the private system bus", lambda: is_listening(self.folder / "bus"))
        return self

    def __exit__(self, kind, *_):
        if kind is not None:
            print((self.folder / "log").read_text(errors="replace")[-6000:], file=sys.stderr)
        os.killpg(self._bus.pid, signal.SIGTERM)
        self._bus.wait(60)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _write(self, name, text):
        (self.folder / name).write_text(text)

    def _add_service(self, name, command):
        self._write(f"services/{name}.service", f"[D-BUS Service]\nName={name}\nExec={command}\n")

    def _dpkg_options(self):
        return (f"--root={self.folder}/system", "--force-not-root", "--force-script-chrootless",
                "--force-bad-path", f"--log={self.folder}/dpkg.log")

    def answer(self, word):
        """What polkit says from now on: "yes", "no" or "challenge"."""
        self._answer.write_text(word)

    def install(self, file):
        """Installs a package file by hand, as its user would."""
        run("dpkg", *self._dpkg_options(), "-i", file)

    def installed_version(self, package=PACKAGE):
        return run("dpkg-query", f"--admindir={self.folder}/system/var/lib/dpkg",
                   "--showformat=${Version}", "--show", package)

    def hold(self, package):
        run("dpkg", *self._dpkg_options(), "--set-selections", input=f"{package} hold\n")

    def add_source(self, repository):
        self._write("etc/sources.list.d/vellora.sources",
                    f"Types: deb\nURIs: {repository.address}\nSuites: ./\n"
                    f"Signed-By: {repository.folder}/key.gpg\n")

    def break_source(self):
        """Where the source was, nobody is any more."""
        self._write("etc/sources.list.d/vellora.sources",
                    "Types: deb\nURIs: file:/nonexistent\nSuites: ./\nTrusted: yes\n")

    def call(self, path, method, *arguments):
        """An answer of the bus itself or of a service on it."""
        return run("gdbus", "call", "--address", self.address, *path, "--method", method,
                   *arguments)

    def pid(self):
        """The service's process; 0 while there is none."""
        bus = "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus"
        name = "org.freedesktop.PackageKit"
        if "true" not in self.call(bus, "org.freedesktop.DBus.NameHasOwner", name):
            return 0
        answer = self.call(bus, "org.freedesktop.DBus.GetConnectionUnixProcessID", name)
        return int(answer.strip("(),\n").split()[1])

    def kill(self):
        # 0 would be the test itself.
        process = self.pid()
        assert process, "there is no service to kill"
        os.kill(process, signal.SIGKILL)

    @contextmanager
    def locked(self, file):
        """Another program holds this lock, as apt and dpkg do: "system/var/lib/dpkg/lock-frontend"
        while it installs something, "state/lists/lock" while it renews the lists."""
        with open(self.folder / file, "w") as lock:
            whole_file = struct.pack("hhqqi", fcntl.F_WRLCK, os.SEEK_SET, 0, 0, 0)
            fcntl.fcntl(lock, fcntl.F_SETLK, whole_file)
            yield


class _Handler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, format, *arguments):
        pass

    def handle(self):
        try:
            super().handle()
        except ConnectionError:
            # Whoever asked has been killed, or has changed their mind.
            pass

    def do_GET(self):
        self.server.requests.append(self.path)
        self.server.gate.wait()
        super().do_GET()


class Repository:
    """A signed source of packages, served over HTTP. Use as a context manager."""

    def __init__(self, folder):
        self.folder = Path(folder)
        (self.folder / "www/pool").mkdir(parents=True)
        self._home = self.folder / "gnupg"
        self._home.mkdir(mode=0o700)
        self._versions = []
        # In the past, so that no answer comes from the future.
        self._signed_at = int(time.time()) - 3600

    def __enter__(self):
        self._make_key("key.gpg", "Vellora test archive")
        self._make_key("other.gpg", "Somebody else")
        handler = functools.partial(_Handler, directory=str(self.folder / "www"))
        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self._server.daemon_threads = True
        self._server.requests = []
        self._server.gate = threading.Event()
        self._server.gate.set()
        self.address = f"http://127.0.0.1:{self._server.server_port}"
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.go_offline()
        run("gpgconf", "--homedir", self._home, "--kill", "all")

    def go_offline(self):
        """From here on nobody answers at the address."""
        if self._server:
            self._server.gate.set()
            self._server.shutdown()
            self._server.server_close()
            self._server = None

    @contextmanager
    def held(self):
        """Requests wait for their answers."""
        self._server.gate.clear()
        yield
        self._server.gate.set()

    @property
    def requests(self):
        return self._server.requests

    def _gpg(self, *arguments):
        return run("gpg", "--homedir", self._home, "--quiet", "--batch", "--yes",
                   "--pinentry-mode", "loopback", "--passphrase", "", *arguments)

    def _make_key(self, file, owner):
        self._gpg("--quick-gen-key", f"{owner} <archive@example.org>", "ed25519", "sign", "never")
        self._gpg("--output", self.folder / file, "--export", owner)

    def build(self, version, package=PACKAGE, notes=None, files=None, depends="", conflicts=""):
        """A package file: `files` maps paths on the system to bytes or to files."""
        tree = self.folder / "tree"
        shutil.rmtree(tree, ignore_errors=True)
        for path, content in (files or {f"/usr/bin/{package}": b"#!/bin/sh\n"}).items():
            target = tree / path.lstrip("/")
            target.parent.mkdir(parents=True, exist_ok=True)
            if isinstance(content, bytes):
                target.write_bytes(content)
            else:
                shutil.copy(content, target)
            target.chmod(0o755)
        documents = tree / f"usr/share/doc/{package}"
        documents.mkdir(parents=True)
        (documents / "changelog.gz").write_bytes(gzip.compress(
            self._changelog(package, [*self._versions, (version, notes)]).encode()))
        control = {"Package": package, "Version": version, "Architecture": "all",
                   "Maintainer": "Vellora test archive <archive@example.org>",
                   "Depends": depends, "Conflicts": conflicts,
                   "Description": "a package of the tests"}
        (tree / "DEBIAN").mkdir()
        (tree / "DEBIAN/control").write_text(
            "".join(f"{name}: {value}\n" for name, value in control.items() if value))
        file = self.folder / f"{package}_{version}_all.deb"
        # Uncompressed: the built program is large under the sanitizers.
        run("dpkg-deb", "--root-owner-group", "-Znone", "-b", tree, file)
        return file

    @staticmethod
    def _changelog(package, versions):
        return "\n".join(
            f"{package} ({version}) stable; urgency=medium\n\n  * {notes or 'Notes.'}\n\n"
            " -- Vellora test archive <archive@example.org>  Sun, 22 Nov 2026 10:00:00 +0000\n"
            for version, notes in reversed(versions))

    def withdraw_all(self):
        """Offers nothing any more, and has never offered anything."""
        self._versions.clear()
        for file in (self.folder / "www/pool").iterdir():
            file.unlink()

    def publish(self, *files, notes=None, signed_by="Vellora test archive"):
        """Offers these package files besides those that were published before."""
        www = self.folder / "www"
        for file in files:
            shutil.copy(file, www / "pool")
            package, version, _ = file.stem.split("_")
            if package == PACKAGE:
                self._versions.append((version, notes))
        log = www / f"changelogs/{PACKAGE}"
        log.parent.mkdir(exist_ok=True)
        log.write_text(self._changelog(PACKAGE, self._versions))
        (www / "Packages").write_text(run("apt-ftparchive", "packages", "pool", cwd=www))
        self.sign(signed_by)

    def sign(self, owner="Vellora test archive"):
        www = self.folder / "www"
        fields = {"Origin": "Vellora", "Label": "Vellora", "Suite": "stable"}
        options = [part for name, value in fields.items()
                   for part in ("-o", f"APT::FTPArchive::Release::{name}={value}")]
        for each in ("Release", "InRelease"):
            (www / each).unlink(missing_ok=True)
        text = run("apt-ftparchive", *options, "release", ".", cwd=www)
        # A field that apt reads and apt-ftparchive does not write.
        changelogs = f"Changelogs: {self.address}/changelogs/{PACKAGE}?@CHANGEPATH@\n"
        (www / "Release").write_text(changelogs + text)
        self._gpg("--local-user", owner, "--output", www / "InRelease", "--clearsign",
                  www / "Release")
        # A web server tells the time of a change in whole seconds, and apt asks for what is newer.
        self._signed_at += 60
        for file in www.rglob("*"):
            os.utime(file, (self._signed_at, self._signed_at))
