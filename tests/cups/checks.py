# SPDX-License-Identifier: MIT
"""Counts what held and what did not, a line each."""


class Checks:
    def __init__(self):
        self.passed = self.failed = 0

    def expect(self, what, holds):
        self.passed += bool(holds)
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}", flush=True)

    def expect_same(self, what, found, expected):
        """The same, and says what was found when it is something else."""
        self.expect(what if found == expected else f"{what}: found {found!r}, expected {expected!r}", found == expected)

    def status(self):
        print(f"{self.passed} passed, {self.failed} failed")
        return 1 if self.failed else 0
