# SPDX-License-Identifier: MIT
"""Updates through the real PackageKit, on a system bus, an apt and a dpkg of its own."""

import tempfile
import unittest

from support import main
from support.packagekit import PACKAGE, PackageKit, Repository, skip_unless_possible
from support.update_probe import UpdateProbe
from support.waiting import holds_for, wait_until

OLD, NEW = "0.1.0-1", "0.2.0-1"
NEW_ID = f"{PACKAGE};{NEW};all;"


class PackageKitTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        skip_unless_possible()

    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory(prefix="repository-", dir="/tmp"))
        self.repository = self.enterContext(Repository(folder))
        self.packagekit = self.enterContext(PackageKit())
        self.probe = self.enterContext(UpdateProbe("packagekit", PACKAGE,
                                            environment=self.packagekit.environment))

    def install_old(self):
        """The old version, installed from a source that has it."""
        old = self.repository.build(OLD)
        self.repository.publish(old)
        self.packagekit.add_source(self.repository)
        self.packagekit.install(old)

    def publish_new(self, **options):
        new = self.repository.build(NEW, notes="Reads faster.", **options)
        self.repository.publish(new, notes="Reads faster.")
        return new

    def assert_failed(self, result, problem):
        self.assertEqual((result["result"], result.get("problem")), ("failed", problem), result)
        if problem not in ("not installed", "no source"):
            self.assertIn(f"apt install --only-upgrade {PACKAGE}", result["command"])

    def test_finds_and_installs(self):
        self.install_old()
        self.assertEqual(self.probe.ask("look"), {"result": "up to date"})
        self.publish_new()
        result = self.probe.ask("look")
        self.assertEqual((result["result"], result["version"]), ("available", NEW), result)
        self.assertIn("Reads faster.", result["notes"])
        self.assertNotIn(OLD, result["notes"])
        self.assertEqual((result["installs"], result["updates"], result["removes"]), ([], [], []))
        self.assertEqual(self.packagekit.installed_version(), OLD)
        self.assertEqual(self.probe.ask("install"), {"result": "installed"})
        self.assertEqual(self.packagekit.installed_version(), NEW)
        # The service gathers its changes, so that a phase of a small package may not be told of.
        self.assertIn("preparing", [step["progress"] for step in self.probe.steps])
        for step in self.probe.steps:
            if step["progress"] in ("preparing", "waiting for others"):
                self.assertEqual(step["percentage"], -1)
        self.assertEqual(self.probe.ask("look"), {"result": "up to date"})

    def test_tells_what_else_changes(self):
        self.install_old()
        helper = self.repository.build("1.0", package="vellora-helper")
        rival = self.repository.build("1.0", package="rival")
        self.packagekit.install(rival)
        new = self.repository.build(NEW, depends="vellora-helper", conflicts="rival")
        self.repository.publish(new, helper, rival)
        result = self.probe.ask("look")
        if result["result"] == "failed":
            # What PackageKit does not offer as an update is not up to date either.
            self.assert_failed(result, "held back")
        else:
            self.assertEqual(result["installs"], ["vellora-helper"])
            self.assertEqual(result["removes"], ["rival"])

    def test_looks_in_the_background_without_traffic(self):
        self.install_old()
        self.probe.ask("look")
        self.publish_new()
        self.repository.requests.clear()
        self.assertEqual(self.probe.ask("look-in-background"), {"result": "up to date"})
        self.assertEqual(self.repository.requests, [])
        self.probe.tell("start")
        self.assertTrue(self.probe.wait_for("started")["started"])
        # Another program renews the lists through PackageKit.
        with UpdateProbe("packagekit", PACKAGE,
                         environment=self.packagekit.environment) as other:
            other.ask("look")
        self.probe.wait_for("changed")
        self.repository.requests.clear()
        result = self.probe.ask("look-in-background")
        self.assertEqual((result["result"], result["version"]), ("available", NEW))
        self.assertEqual(self.repository.requests, [])

    def test_start_does_not_start_the_service(self):
        self.probe.tell("start")
        self.assertTrue(self.probe.wait_for("started")["started"])
        self.assertEqual(self.packagekit.pid(), 0)

    def test_package_that_no_source_follows(self):
        self.packagekit.install(self.repository.build(OLD))
        self.assert_failed(self.probe.ask("look"), "no source")

    def test_package_that_is_not_installed(self):
        self.assert_failed(self.probe.ask("look"), "not installed")

    def test_no_network(self):
        self.install_old()
        self.probe.ask("look")
        self.repository.go_offline()
        result = self.probe.ask("look")
        self.assert_failed(result, "sources unreadable")
        self.assertTrue(result["details"])

    def test_other_source_unreadable(self):
        """One that is not ours: what was found is offered all the same."""
        self.install_old()
        self.publish_new()
        (self.packagekit.folder / "etc/sources.list").write_text(
            "deb [trusted=yes] file:/nonexistent ./\n")
        self.assertEqual(self.probe.ask("look")["result"], "available")

    def test_signed_by_somebody_else(self):
        self.install_old()
        self.probe.ask("look")
        self.publish_new()
        self.repository.sign("Somebody else")
        self.assert_failed(self.probe.ask("look"), "sources unreadable")

    def test_not_signed(self):
        self.install_old()
        self.probe.ask("look")
        self.publish_new()
        (self.repository.folder / "www/InRelease").unlink()
        self.assert_failed(self.probe.ask("look"), "sources unreadable")

    def test_another_file_than_promised(self):
        self.install_old()
        new = self.publish_new()
        self.assertEqual(self.probe.ask("look")["result"], "available")
        offered = self.repository.folder / "www/pool" / new.name
        content = bytearray(offered.read_bytes())
        content[-1] ^= 1
        offered.write_bytes(content)
        self.assert_failed(self.probe.ask("install"), "download failed")
        self.assertEqual(self.packagekit.installed_version(), OLD)

    def test_not_authorized_to_install(self):
        self.install_old()
        self.publish_new()
        self.assertEqual(self.probe.ask("look")["result"], "available")
        for word in ("no", "challenge"):
            with self.subTest(word=word):
                self.packagekit.answer(word)
                self.assert_failed(self.probe.ask("install"), "not authorized")
                self.assertEqual(self.packagekit.installed_version(), OLD)

    def test_not_authorized_to_look(self):
        """What is known already is offered; that nothing newer is known is no answer."""
        self.install_old()
        self.packagekit.answer("no")
        self.assert_failed(self.probe.ask("look"), "not authorized")
        self.packagekit.answer("yes")
        self.publish_new()
        self.probe.ask("look")
        self.packagekit.answer("no")
        self.assertEqual(self.probe.ask("look")["result"], "available")

    def test_waits_for_another_installation(self):
        self.install_old()
        self.publish_new()
        self.assertEqual(self.probe.ask("look")["result"], "available")
        with self.packagekit.locked("system/var/lib/dpkg/lock"):
            self.probe.tell("install")
            wait_until("waiting for the other one",
                       lambda: any(step.get("progress") == "waiting for others"
                                   for step in self.probe.said), 60)
            self.assertEqual(self.packagekit.installed_version(), OLD)
        self.assertEqual(self.probe.wait_for("result"), {"result": "installed"})
        self.assertEqual(self.packagekit.installed_version(), NEW)

    def test_lists_locked_by_another_program(self):
        self.install_old()
        self.probe.ask("look")
        with self.packagekit.locked("state/lists/lock"):
            self.assert_failed(self.probe.ask("look"), "sources unreadable")
        self.assertEqual(self.probe.ask("look"), {"result": "up to date"})

    def test_version_that_is_gone(self):
        self.install_old()
        self.probe.ask("look")
        self.assert_failed(self.probe.ask("install gone;9.9-1;all;vellora-stable-"), "gone")
        # A version that nobody has is a success that does nothing.
        self.assert_failed(self.probe.ask(f"install {PACKAGE};9.9-1;all;vellora-stable-"),
                           "nothing done")
        self.assertEqual(self.packagekit.installed_version(), OLD)

    def test_cancelled_download(self):
        self.install_old()
        self.publish_new()
        self.assertEqual(self.probe.ask("look")["result"], "available")
        with self.repository.held():
            self.probe.tell("install")
            wait_until("the download", lambda: any(each.endswith(f"{NEW}_all.deb")
                                                   for each in self.repository.requests), 60)
            self.probe.tell("cancel")
            self.assertEqual(self.probe.wait_for("result"), {"result": "cancelled"})
        self.assertEqual(self.packagekit.installed_version(), OLD)
        self.assertEqual(self.probe.ask("install"), {"result": "installed"})

    def test_dropped_look(self):
        self.install_old()
        with self.repository.held():
            self.probe.tell("look")
            wait_until("the first request", lambda: self.repository.requests, 60)
            self.probe.tell("drop")
            self.probe.wait_for("dropped")
        self.assertEqual(self.probe.ask("look"), {"result": "up to date"})

    def test_killed_while_looking(self):
        self.install_old()
        with self.repository.held():
            self.probe.tell("look")
            wait_until("the first request", lambda: self.repository.requests, 60)
            self.packagekit.kill()
            self.assert_failed(self.probe.wait_for("result"), "service ended")
        # The next one is served by a new service.
        self.assertEqual(self.probe.ask("look"), {"result": "up to date"})

    def test_killed_while_downloading(self):
        self.install_old()
        self.publish_new()
        self.assertEqual(self.probe.ask("look")["result"], "available")
        with self.repository.held():
            self.probe.tell("install")
            wait_until("the download", lambda: any(each.endswith(f"{NEW}_all.deb")
                                                   for each in self.repository.requests), 60)
            self.packagekit.kill()
            self.assert_failed(self.probe.wait_for("result"), "service ended")
        self.assertEqual(self.packagekit.installed_version(), OLD)
        self.assertEqual(self.probe.ask("look")["result"], "available")
        self.assertEqual(self.probe.ask("install"), {"result": "installed"})

    def test_held_by_the_user(self):
        """A package that its user holds is no update; installing one by its id would override."""
        self.install_old()
        self.publish_new()
        self.packagekit.hold(PACKAGE)
        self.assertIn(self.probe.ask("look")["result"], ("up to date", "failed"))

    def test_silent_until_asked(self):
        self.install_old()
        self.probe.tell("start")
        self.probe.wait_for("started")
        holds_for("without a service", lambda: self.packagekit.pid() == 0, 0.5)


class NoPackageKitTest(unittest.TestCase):
    def assert_no_service(self, environment):
        with UpdateProbe("packagekit", PACKAGE, environment=environment) as probe:
            for command in ("look", "look-in-background", "install a;b;c;d"):
                result = probe.ask(command)
                self.assertEqual((result["result"], result["problem"]), ("failed", "no service"))

    def test_without_packagekit(self):
        skip_unless_possible()
        with PackageKit(exists=False) as packagekit:
            self.assert_no_service(packagekit.environment)

    def test_without_a_system_bus(self):
        self.assert_no_service({"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus"})


if __name__ == "__main__":
    main()
