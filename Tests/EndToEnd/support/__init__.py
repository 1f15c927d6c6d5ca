# SPDX-License-Identifier: MIT
"""What the end-to-end tests are written with: the desktop as a person sees and touches it."""

import unittest


def main():
    """Runs the calling module's tests and names each of them."""
    unittest.main(verbosity=2)
