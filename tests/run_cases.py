#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs whole-tool cases: folders with an input, arguments and a device snapshot, and what must come out.

A case folder is named after what it shows and holds
    about            what the case shows, and why the result is so
    input.ppd        the PPD (none when the case is about a file that is not there)
    snapshot.json    the device snapshot (none: the stored library has no devices)
    arguments        the arguments, one a line, "@PPD@" for the path of input.ppd and "@DIR@" for the case folder; none:
                     the URI socket://192.0.2.10:9100 and the PPD; an empty file: no arguments at all
    library          the word "absent" when no device-model library may be found
    capture          the word "fails" when the snapshot cannot be used, but the run does not need it
    expected.ppd     the bytes on standard output (none when nothing may be written)
    expected.status  the exit status
    expected.log     the messages of the diagnostic build, "@TOOL@" for the tool and "@PPD@" for the PPD

Standard error must be empty.
"""
import argparse
import difflib
import fcntl
import json
import os
import pathlib
import subprocess
import sys
import tempfile

import json_schema

DEFAULT_URI = b"socket://192.0.2.10:9100"


def read(path):
    return path.read_bytes() if path.exists() else None


def arguments_of(case):
    ppd = os.fsencode(case / "input.ppd")
    given = read(case / "arguments")
    if given is None:
        return [DEFAULT_URI, ppd]
    lines = given.removesuffix(b"\n").split(b"\n") if given else []
    return [line.replace(b"@PPD@", ppd).replace(b"@DIR@", os.fsencode(case)) for line in lines]


def environment_of(case, options):
    environment = {name: value for name, value in os.environ.items() if not name.startswith("QZVORANTISMODEL_")}
    environment.pop("LD_LIBRARY_PATH", None)
    if read(case / "library") is None:
        environment.update(library_of(options))
    if (case / "snapshot.json").exists():
        environment["QZVORANTISMODEL_SNAPSHOT"] = str(case / "snapshot.json")
    return environment


def library_of(options):
    """The environment in which the programs find the device-model library."""
    if options.framework:
        return {"AT_TEST_FRAMEWORK": str(options.framework)}
    return {"LD_LIBRARY_PATH": str(options.library_dir)}


def difference(name, expected, actual):
    def lines(data):
        return [repr(line) for line in data.splitlines(keepends=True)] if isinstance(data, bytes) else [repr(data)]
    return "\n".join(difflib.unified_diff(lines(expected), lines(actual), f"expected {name}", f"actual {name}", lineterm=""))


def check(name, expected, actual):
    return [] if expected == actual else [difference(name, expected, actual)]


class Runner:
    def __init__(self, options):
        self.tool = options.tool
        self.options = options
        self.log = options.log
        self.explain = options.explain
        self.schema = json_schema.validator(options.schema) if options.explain else None
        self.capture = options.capture

    def call(self, case, arguments):
        command = [*self.wrapper(), os.fsencode(self.tool), *arguments]
        result = subprocess.run(command, env=environment_of(case, self.options), stdin=subprocess.DEVNULL,
                                capture_output=True, timeout=60, check=False)
        return result.returncode, result.stdout, result.stderr

    @staticmethod
    def wrapper():
        return os.fsencode(os.environ.get("AT_CASE_WRAPPER", "")).split()

    def run(self, case):
        """What is wrong with the case, as a list of texts."""
        status, output, errors = self.call(case, arguments_of(case))
        expected_output = read(case / "expected.ppd") or b""
        problems = check("status", read(case / "expected.status"), b"%d\n" % status)
        problems += check("output", expected_output, output)
        problems += check("standard error", b"", errors)
        if self.log:
            problems += self.check_log(case)
        if self.explain and len(arguments_of(case)) in (2, 3):
            problems += self.check_explained(case, arguments_of(case))
        if self.capture and self.explain and len(arguments_of(case)) in (2, 3):
            problems += self.check_captured(case, arguments_of(case))
        return problems

    def check_captured(self, case, arguments):
        """With the snapshot that is captured of the case's device, the tool must write the same."""
        environment = environment_of(case, self.options)
        report = subprocess.run([os.fsencode(self.explain), b"--format=json", b"--", *arguments], env=environment,
                                capture_output=True, timeout=60, check=False).stdout
        model_name = (json.loads(report)["parse"] or {}).get("modelName")
        device = [arguments[-1] if len(arguments) == 3 else arguments[0]]
        device += [model_name.encode()] if model_name is not None and len(arguments) == 2 else []
        with tempfile.TemporaryDirectory() as folder:
            snapshot = pathlib.Path(folder) / "snapshot.json"
            captured = subprocess.run([os.fsencode(self.capture), b"--allow-empty", b"--", *device], env=environment, capture_output=True,
                                      timeout=60, check=False)
            if captured.returncode != 0:
                return self.check_refused(case, device, captured)
            snapshot.write_bytes(captured.stdout)
            environment["QZVORANTISMODEL_SNAPSHOT"] = str(snapshot)
            environment.update(library_of(self.options))
            result = subprocess.run([os.fsencode(self.tool), *arguments], env=environment, stdin=subprocess.DEVNULL,
                                    capture_output=True, timeout=60, check=False)
        return check("status, replayed", read(case / "expected.status"), b"%d\n" % result.returncode) + \
            check("output, replayed", read(case / "expected.ppd") or b"", result.stdout)

    @staticmethod
    def check_refused(case, device, captured):
        """Only a device that nobody can know is not captured; what is wrong is said."""
        def is_text(argument):
            return argument.decode(errors="replace").encode() == argument
        unusable = (case / "library").exists() or (case / "capture").exists() or read(case / "expected.status") == b"1\n"
        problems = check("status, captured", 1 if all(map(is_text, device)) else 2, captured.returncode)
        problems += check("nothing, captured", b"", captured.stdout)
        if not unusable and all(map(is_text, device)) or not captured.stderr:
            problems.append(f"not captured: {captured.stderr!r}")
        return problems

    def check_explained(self, case, arguments):
        """The program that explains a run must do the same run: the same status and the same bytes."""
        with tempfile.TemporaryDirectory() as folder:
            written = pathlib.Path(folder) / "written.ppd"
            command = [os.fsencode(self.explain), b"--format=json", b"--output=" + os.fsencode(written), b"--", *arguments]
            result = subprocess.run(command, env=environment_of(case, self.options), stdin=subprocess.DEVNULL,
                                    capture_output=True, timeout=60, check=False)
            problems = check("status, explained", read(case / "expected.status"), b"%d\n" % result.returncode)
            problems += check("output, explained", read(case / "expected.ppd") or b"", read(written) or b"")
            problems += check("standard error, explained", b"", result.stderr)
        report = json.loads(result.stdout)
        problems += json_schema.problems_of(report, self.schema)
        succeeded = report["succeeded"]
        return problems + check("success, explained", b"%d" % (result.returncode == 0), b"%d" % succeeded)

    def check_log(self, case):
        expected = read(case / "expected.log")
        if expected is None:
            return []
        expected = expected.replace(b"@TOOL@", os.fsencode(self.tool)).replace(b"@PPD@", os.fsencode(case / "input.ppd"))
        return check("log", expected.replace(b"@DIR@", os.fsencode(case)), self.log.read_bytes())


class DiagnosticLog:
    """The log file of the diagnostic build, made for the time of the tests and locked against other test programs."""

    def __init__(self, path):
        self.path = path

    def __enter__(self):
        self.made = not self.path.exists()
        self.lock = open(self.path, "ab")
        fcntl.flock(self.lock, fcntl.LOCK_EX)

    def __exit__(self, *_):
        if self.made:
            self.path.unlink()
        self.lock.close()


def run_all(options):
    runner = Runner(options)
    cases = sorted(case.parent for root in options.cases for case in root.rglob("expected.status"))
    if not cases:
        sys.exit("no cases found")
    failed = 0
    for case in cases:
        problems = runner.run(case.resolve())
        failed += bool(problems)
        if problems or options.verbose:
            print(f"{'FAILED' if problems else 'passed'} {case}")
        for problem in problems:
            print(problem)
    print(f"{len(cases) - failed} passed, {failed} failed")
    return 1 if failed else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", type=pathlib.Path, required=True)
    library = parser.add_mutually_exclusive_group(required=True)
    library.add_argument("--library-dir", type=pathlib.Path, help="where libQZVorantisModel.so.1 is")
    library.add_argument("--framework", type=pathlib.Path, help="an Objective-C framework, for programs that use one")
    parser.add_argument("--log", type=pathlib.Path, help="where a diagnostic build of the tool writes its messages: check them too")
    parser.add_argument("--explain", type=pathlib.Path, help="the program that explains a run, which must agree")
    parser.add_argument("--schema", type=pathlib.Path, help="the JSON schema that its reports must follow; needed with --explain")
    parser.add_argument("--capture", type=pathlib.Path, help="the program that captures a device, for replays")
    parser.add_argument("--verbose", action="store_true", help="name the cases that pass, too")
    parser.add_argument("cases", type=pathlib.Path, nargs="+", help="case folders, or folders of them")
    options = parser.parse_args()
    if options.explain and not options.schema:
        parser.error("--explain needs --schema")
    if not options.log:
        return run_all(options)
    with DiagnosticLog(options.log):
        return run_all(options)


if __name__ == "__main__":
    sys.exit(main())
