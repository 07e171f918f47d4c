# SPDX-License-Identifier: MIT
"""The tests that can notice a change. Each knows which changes it reaches, and how long it takes without any."""
import contextlib
import os
import pathlib
import signal
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent))
import run_cases  # noqa: E402  (a neighbour of this folder)

UNIT_TESTS = ("base", "ppd", "readers", "updaters", "driver", "library", "explain", "capture")
LOG = "VorantisAutosetupTool.log"  # in the folder in which the tool is called
SLOW = 1.5  # seconds


@contextlib.contextmanager
def variables(**values):
    os.environ.update(values)
    try:
        yield
    finally:
        for name in values:
            del os.environ[name]


def passes(command, seconds, folder):
    """Whether the command ends with status 0 in time. All that it has started ends with it."""
    nothing = subprocess.DEVNULL
    with subprocess.Popen(command, cwd=folder, stdin=nothing, stdout=nothing, stderr=nothing, start_new_session=True) as process:
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return False


class Check:
    """A test: `seconds` that it takes, and the numbers of the changes that it reaches."""

    def __init__(self, name):
        self.name = name
        self.seconds = 0.0
        self.reached = frozenset()

    def learn(self, folder, count):
        """Runs the test with no change on."""
        marks = folder / "reached"
        marks.write_bytes(bytes(count))
        started = time.monotonic()
        with variables(AT_MUTANT_REACHED=str(marks)):
            if not self.passes(folder, 600):
                raise SystemExit(f"{self.name} fails with nothing changed")
        self.seconds = time.monotonic() - started
        self.reached = frozenset(number for number, mark in enumerate(marks.read_bytes()) if mark)

    def notices(self, number, folder):
        with variables(AT_MUTANT=str(number)):
            return not self.passes(folder, 10 * self.seconds + 2)

    def passes(self, folder, seconds):
        raise NotImplementedError


class Program(Check):
    def __init__(self, name, command):
        super().__init__(name)
        self.command = [str(word) for word in command]

    def passes(self, folder, seconds):
        return passes(self.command, seconds, folder / "elsewhere")


class Messages(Program):
    """A test that needs the log of the tool, which is where the test is called."""

    def passes(self, folder, seconds):
        return passes(self.command, seconds, folder)


class Case(Check):
    """A whole-tool case, with its messages."""

    def __init__(self, path, tool, library):
        super().__init__(f"{path.parent.name}/{path.name}")
        self.path = path
        self.tool = tool
        self.library = library

    def passes(self, folder, seconds):
        log = folder / LOG
        log.touch()
        runner = CaseRunner(self.tool, self.library, log, seconds)
        try:
            return not runner.run(self.path)
        except subprocess.TimeoutExpired:
            return False


class CaseRunner(run_cases.Runner):
    def __init__(self, tool, library, log, seconds):
        self.tool = tool
        self.library_dir = library
        self.framework = self.explain = self.capture = None
        self.options = self
        self.log = log
        self.seconds = seconds

    def call(self, case, arguments):
        result = subprocess.run([os.fsencode(self.tool), *arguments], env=run_cases.environment_of(case, self),
                                cwd=self.log.parent, stdin=subprocess.DEVNULL, capture_output=True, timeout=self.seconds,
                                check=False)
        return result.returncode, result.stdout, result.stderr


def all_checks(top, build):
    tool, library, tests = build / "driver/VorantisAutosetupTool", build / "library", build / "tests"
    options = ["--gtest_brief=1", "--gtest_fail_fast"]
    with_log = ["--tool", tool, "--library-dir", library, "--log", LOG]
    checks = [Program(f"{name}_tests", [tests / f"{name}_tests", *options]) for name in UNIT_TESTS]
    checks.append(Program("small_world", [tests / "small_world", "3"]))
    checks.append(Messages("messages", [
        sys.executable, top / "tests/fault/run_messages.py", *with_log, "--preload", tests / "failing_allocation.so",
        "--example", top / "examples/pcl3"]))
    checks.append(Messages("model", [
        sys.executable, top / "tests/model/differential.py", *with_log, "--quiet", "--seeds", "1-200", "--max-failures", "1",
        "--timeout", "5", "--keep", "elsewhere"]))
    cases = sorted(path.parent for path in (top / "tests/cases").rglob("expected.status"))
    return checks + [Case(path, tool, library) for path in cases]


def covering(checks, number, folder, limit):
    """The tests that reach the change in this folder of the source: its unit tests, the other programs, fastest first,
    then so many whole-tool cases, in equal steps through all of them, and the slow programs."""
    programs = sorted((each for each in checks if number in each.reached and not isinstance(each, Case)),
                      key=lambda each: (each.name != f"{folder}_tests", each.seconds))
    slow = [each for each in programs if each.seconds > SLOW]
    cases = [each for each in checks if number in each.reached and isinstance(each, Case)]
    if len(cases) > limit:
        cases = [cases[position * len(cases) // limit] for position in range(limit)]
    return [each for each in programs if each not in slow] + cases + slow
