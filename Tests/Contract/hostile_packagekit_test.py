# SPDX-License-Identifier: MIT
"""Updates through a PackageKit that answers with garbage, without end, or not at all."""

import unittest

from gi.repository import GLib

from support import main
from support.played_packagekit import PlayedPackageKit, detail, finished, package, properties
from support.played_service import PrivateBus
from support.update_probe import UpdateProbe
from support.waiting import wait_until

ID = "vellora;0.2.0-1;all;source"
OLD_ID = "vellora;0.1.0-1;all;manual:source"
INSTALLED, NORMAL, BLOCKED, INSTALLING = 1, 5, 9, 12
SEVERE = 5 << 16
V = GLib.Variant
GOOD = {"Resolve": [package(INSTALLED, OLD_ID), finished()],
        "GetUpdates": [package(NORMAL | SEVERE, ID), finished()],
        "GetUpdateDetail": [detail(ID, "Reads faster."), finished()]}
# In milliseconds: what a busy machine may take to answer, and what is waited for in vain.
PATIENCE = "60000"
SILENCE = "3000"


class HostilePackageKitTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.bus = cls.enterClassContext(PrivateBus())

    def probe(self, silence=PATIENCE):
        return UpdateProbe("packagekit", "vellora", silence,
                           environment={"DBUS_SYSTEM_BUS_ADDRESS": self.bus.address})

    def asked(self, answers, commands=("look",), silence=PATIENCE, **options):
        """What came of the last command, with these answers instead of good ones."""
        with PlayedPackageKit(self.bus, {**GOOD, **answers}, **options) as played, \
                self.probe(silence) as probe:
            for command in commands:
                result = probe.ask(command)
            self.calls, self.steps = played.calls, probe.steps
        return result

    def assert_problem(self, result, problem):
        self.assertEqual((result["result"], result.get("problem")), ("failed", problem), result)

    def test_good_answers(self):
        result = self.asked({})
        self.assertEqual((result["result"], result["version"], result["notes"]),
                         ("available", "0.2.0-1", "Reads faster."))

    def test_wrong_types(self):
        for name, body in (("Package", V("(s)", ("x",))), ("Package", V("(iss)", (5, ID, ""))),
                           ("Package", V("()", ())), ("Finished", V("(s)", ("success",))),
                           ("Finished", V("()", ())), ("ErrorCode", V("(ss)", ("x", "y"))),
                           ("Package", V("(uau)", (5, [1, 2])))):
            for method in ("Resolve", "GetUpdates", "RefreshCache"):
                with self.subTest(method=method, name=name, body=str(body)):
                    answers = {method: [(name, body), finished()]}
                    self.assert_problem(self.asked(answers), "nonsense")

    def test_wrong_types_that_do_no_harm(self):
        result = self.asked({"RefreshCache": [
            ("PropertiesChanged", V("(s)", ("x",))),
            ("PropertiesChanged", V("(sv)", ("x", V("s", "y")))),
            ("PropertiesChanged", V("(sa{ss}as)", ("x", {"Percentage": "many"}, []))),
            properties(Percentage=V("s", "many"), Status=V("i", -1), AllowCancel=V("u", 1)),
            ("NobodyKnowsThis", V("(v)", (V("s", ""),))), finished()],
            "GetUpdateDetail": [("UpdateDetail", V("(s)", (ID,))), finished()]})
        self.assertEqual((result["result"], result["notes"]), ("available", ""))

    def test_no_transaction(self):
        for body in (V("(s)", ("not a path",)), V("()", ()), V("(u)", (1,))):
            with self.subTest(body=str(body)):
                self.assert_problem(self.asked({}, transaction=body), "nonsense")

    def test_ids_that_are_none(self):
        bad = [package(NORMAL, each) for each in ("", ";", ";;;", "vellora", "vellora;1;all",
                                                  "vellora;1;all;x;y", "\u202e;1;2;3")]
        self.assertEqual(self.asked({"GetUpdates": [*bad, finished()]}), {"result": "up to date"})
        self.assert_problem(self.asked({"Resolve": [*bad, finished()]}), "not installed")

    def test_success_with_an_error_and_failure_without_one(self):
        error = "ErrorCode", V("(us)", (4, "internal"))
        self.assertEqual(self.asked({"GetUpdates": [error, finished()]}),
                         {"result": "up to date"})
        result = self.asked({"GetUpdates": [package(NORMAL, ID), finished(2)]})
        self.assert_problem(result, "other")
        self.assert_problem(self.asked({"GetUpdates": [finished(4711)]}), "other")

    def test_more_packages_than_anybody_has(self):
        many = [package(NORMAL, f"p{number};1;all;x") for number in range(20000)]
        self.assertEqual(self.asked({"GetUpdates": [*many, finished()]}),
                         {"result": "up to date"})
        others = [package(INSTALLING, f"p{number};1;all;x") for number in range(20000)]
        result = self.asked({"UpdatePackages": [*others, finished()]})
        self.assertLess(len(result["installs"]), 20000)

    def test_endless_notes(self):
        result = self.asked({"GetUpdateDetail": [detail(ID, "x" * 50_000_000), finished()]})
        self.assertEqual(result["result"], "available")
        self.assertLess(len(result["notes"]), 1_000_000)

    def test_held_back(self):
        self.assert_problem(self.asked({"GetUpdates": [package(BLOCKED, ID), finished()]}),
                            "held back")

    def test_percentages(self):
        self.asked({"RefreshCache": [
            properties(Status=V("u", 7), Percentage=V("u", 50)),
            properties(Status=V("u", 8), Percentage=V("u", 101)),
            properties(Percentage=V("u", 4_000_000_000)), properties(Percentage=V("u", 30)),
            finished()]})
        self.assertEqual([(step["progress"], step["percentage"]) for step in self.steps[:4]],
                         [("preparing", -1), ("downloading", -1), ("downloading", -1),
                          ("downloading", 30)])

    def test_phases_of_an_installation(self):
        waiting, asking, downloading, updating = 30, 31, 8, 10
        self.asked({"UpdatePackages": [
            properties(Status=V("u", asking)), properties(Status=V("u", waiting)),
            properties(Status=V("u", downloading), Percentage=V("u", 20)),
            properties(Status=V("u", updating), AllowCancel=V("b", False)), finished()]},
            ("look", "install"))
        self.assertEqual(
            [(step["progress"], step["percentage"], step["canCancel"]) for step in self.steps],
            [("waiting for authentication", -1, True), ("waiting for others", -1, True),
             ("downloading", 20, True), ("installing", 20, False)])

    def test_never_finishing(self):
        for method in ("RefreshCache", "Resolve", "GetUpdates"):
            with self.subTest(method=method):
                self.assert_problem(self.asked({method: None}, silence=SILENCE), "no answer")
                self.assertIn("Cancel", self.calls)

    def test_never_finishing_an_installation(self):
        with PlayedPackageKit(self.bus, {**GOOD, "UpdatePackages": None}) as played, \
                self.probe() as probe:
            # It may take any time, but not the possibility to give up.
            probe.tell(f"install {ID}")
            wait_until("the installation", lambda: "UpdatePackages" in played.calls)
            probe.tell("drop")
            probe.wait_for("dropped")
            wait_until("its end", lambda: "Cancel" in played.calls)

    def test_success_that_did_nothing(self):
        self.assert_problem(self.asked({}, ("look", "install")), "nothing done")

    def test_finished_twice(self):
        result = self.asked({"RefreshCache": [finished(), finished(2), finished()]})
        self.assertEqual(result["result"], "available")


if __name__ == "__main__":
    main()
