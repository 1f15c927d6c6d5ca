# SPDX-License-Identifier: MIT
"""What the end-to-end tests are written with: the desktop as a person sees and touches it."""

import unittest

# The name of the test that runs.
current_test = "none"


class _Result(unittest.TextTestResult):
    def startTest(self, test):
        global current_test
        current_test = test.id().rpartition(".")[2]
        super().startTest(test)


def main():
    """Runs the calling module's tests and names each of them."""
    unittest.main(testRunner=unittest.TextTestRunner(verbosity=2, resultclass=_Result))
