#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lets one thing at a time fail in the tool's own process: each allocation in turn, single system calls, and more and
more address space. Only two outcomes are right: the right bytes with status 0, or nothing with status 1, and in either
case nothing on standard error.

Allocations fail by a preloaded library (failing_allocation.c), for every example and for a device-model library of
another maker; system calls by strace, which comes with every system that this runs on.
"""
import argparse
import collections
import concurrent.futures
import os
import pathlib
import resource
import shutil
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
MEBIBYTE = 1 << 20


class SingleFaults:
    def __init__(self, options, folder):
        self.options, self.folder, self.passed, self.failed = options, folder, 0, 0

    def expect(self, what, holds):
        self.passed += bool(holds)
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}", flush=True)

    def command(self, ppd):
        return [str(self.options.tool), URI, str(ppd)]

    def environment(self, example, library=None, **more):
        return {"LD_LIBRARY_PATH": str(library or self.options.library_dir), "PATH": os.environ["PATH"],
                "QZVORANTISMODEL_SNAPSHOT": str(example / "snapshot.json"), **more}

    @staticmethod
    def run(command, environment, **more):
        done = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=60,
                              check=False, **more)
        return done.returncode, done.stdout, done.stderr

    def with_failing_allocation(self, example, library, number):
        """Whether so many allocations were made, and the outcome of the run in which the last of them failed."""
        reading, writing = os.pipe()
        environment = self.environment(example, library, LD_PRELOAD=str(self.options.preload), AT_FAIL_AT=str(number),
                                       AT_FAIL_FD=str(writing))
        outcome = self.run(self.command(example / "input.ppd"), environment, pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading, "rb") as reached:
            return bool(reached.read(1)), outcome

    def allocations(self, example, library):
        right = self.run(self.command(example / "input.ppd"), self.environment(example, library))
        outcomes, wrong, first = collections.Counter(), [], 1
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            while True:
                numbers = range(first, first + 200)
                results = list(pool.map(lambda number: self.with_failing_allocation(example, library, number), numbers))
                for number, (reached, outcome) in zip(numbers, results):
                    if reached:
                        outcomes[outcome[0]] += 1
                        wrong += [] if outcome in (right, (1, b"", b"")) else [(number, outcome[0], outcome[2][:80])]
                if not results[-1][0]:
                    break
                first += 200
        named = f"{example.name}, {'another library' if library else 'the stored library'}"
        self.expect(f"{named}: each of {outcomes.total()} allocations fails ({dict(outcomes)}) {wrong[:3] or ''}",
                    outcomes.total() > 300 and outcomes[1] > 0.9 * outcomes.total() and not wrong and right[0] == 0)

    def address_space(self, example):
        """In steps from what starts the process to what lets it finish. Below that, the loader itself says why."""
        right = self.run(self.command(example / "input.ppd"), self.environment(example))
        statuses, wrong = collections.Counter(), []
        for mebibytes in range(8, 160):
            limit = mebibytes * MEBIBYTE // 2
            outcome = self.run(self.command(example / "input.ppd"), self.environment(example),
                               preexec_fn=lambda limit=limit: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            started = b"error while loading shared libraries" not in outcome[2] and outcome[0] >= 0
            statuses[outcome[0] if started else "not started"] += 1
            if started and outcome not in (right, (1, b"", b"")):
                wrong.append((limit, outcome[0], outcome[2][:80]))
        self.expect(f"{example.name}: less and less address space ({dict(statuses)}) {wrong[:3] or ''}",
                    statuses[0] and not wrong)

    def system_call(self, what, call, error, path, expected, when=1, example=None, ppd=None):
        example = example or self.options.examples / "pcl3"
        command = ["strace", "-f", "--quiet=all", "-o", str(self.folder / "trace"), "-e", f"trace={call}", "-e",
                   f"inject={call}:error={error}:when={when}", "-P", str(path), *self.command(ppd or example / "input.ppd")]
        outcome = self.run(command, self.environment(example))
        injected = "INJECTED" in (self.folder / "trace").read_text(errors="replace")
        holds = injected and outcome == expected
        self.expect(f"{what} ({call}: {error}): status {expected[0]}" +
                    ("" if holds else f", but {outcome[0]}, {len(outcome[1])} bytes, {outcome[2][:80]}, injected: {injected}"), holds)

    def system_calls(self):
        example = self.options.examples / "pcl3"
        ppd, snapshot = example / "input.ppd", example / "snapshot.json"
        library = self.options.library_dir / "libQZVorantisModel.so.1"
        right = self.run(self.command(ppd), self.environment(example))
        nothing = (1, b"", b"")
        for size in (1, 7, 4095):
            outcome = self.run(self.command(ppd), self.environment(example, LD_PRELOAD=str(self.options.preload),
                                                                   AT_SHORT_READS=str(size)))
            self.expect(f"reads of at most {size} bytes: status 0, the right bytes", outcome == right and right[0] == 0)
        self.system_call("an interrupted read of the PPD", "read", "EINTR", ppd, right)
        self.system_call("an interrupted read of the snapshot", "read", "EINTR", snapshot, nothing)
        self.system_call("the snapshot cannot be read", "read", "EIO", snapshot, nothing)
        for error in ("EACCES", "EMFILE", "ENOMEM", "EIO"):
            self.system_call("the PPD cannot be opened", "openat", error, ppd, nothing)
            self.system_call("the snapshot cannot be opened", "openat", error, snapshot, nothing)
        # The loader is asked twice, so what fails once does no harm. It says of what it cannot open that it is not there.
        for call, error in (("openat", "EMFILE"), ("openat", "ENOMEM"), ("openat", "EIO"), ("read", "EIO"), ("mmap", "ENOMEM")):
            self.system_call("the library cannot be loaded the first time", call, error, library, right)
        for call, error in (*(("openat", error) for error in ("EMFILE", "ENFILE", "ENOMEM", "EIO", "EACCES")), ("read", "EIO"),
                            ("mmap", "ENOMEM")):
            self.system_call("the library cannot be loaded", call, error, library, nothing, when="1+")
        self.system_call("standard output cannot be kept from the library", "openat", "EMFILE", "/dev/null", nothing)
        # What ends the bytes ends the file: reading goes on to no error that the tool could tell.
        cut = self.folder / "cut.ppd"
        large = self.folder / "large.ppd"
        large.write_bytes(ppd.read_bytes() + b"*% more\n" * 2000)
        for blocks in (0, 1, 2):
            cut.write_bytes(large.read_bytes()[:4096 * blocks])
            expected = self.run(self.command(cut), self.environment(example))
            self.system_call(f"the PPD cannot be read behind {4096 * blocks} bytes", "read", "EIO", large, expected,
                             when=f"{blocks + 1}+", example=example, ppd=large)

    def writes(self):
        """To a file, so that strace knows the write by its path. It is closed once before anything is written, when the
        device-model library has answered."""
        example = self.options.examples / "pcl3"
        large = self.folder / "large.ppd"
        large.write_bytes((example / "input.ppd").read_bytes() + b"*% more\n" * 4000)
        right = self.run(self.command(large), self.environment(example))[1]
        output = self.folder / "output"
        for call, error, when in (("write", "ENOSPC", 1), ("write", "EIO", 2), ("write", "EDQUOT", 3), ("close", "EIO", 2)):
            with open(output, "wb") as out:
                command = ["strace", "-f", "--quiet=all", "-o", str(self.folder / "trace"), "-e", f"trace={call}", "-e",
                           f"inject={call}:error={error}:when={when}", "-P", str(output), *self.command(large)]
                done = subprocess.run(command, env=self.environment(example), stdin=subprocess.DEVNULL, stdout=out,
                                      stderr=subprocess.PIPE, timeout=60, check=False)
            injected = "INJECTED" in (self.folder / "trace").read_text(errors="replace")
            self.expect(f"writing fails ({call} {when}: {error}): status 1, silent, and what is there is the beginning",
                        injected and (done.returncode, done.stderr) == (1, b"") and right.startswith(output.read_bytes()))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", type=pathlib.Path, required=True)
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("--other-library-dir", type=pathlib.Path, required=True, help="where another library is")
    parser.add_argument("--preload", type=pathlib.Path, required=True, help="failing_allocation.c, built")
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    options = parser.parse_args()
    for name in ("tool", "library_dir", "other_library_dir", "preload", "examples"):
        setattr(options, name, getattr(options, name).resolve())
    if shutil.which("strace") is None:
        sys.exit("NOT TESTED: strace is not installed")
    with tempfile.TemporaryDirectory() as folder:
        faults = SingleFaults(options, pathlib.Path(folder).resolve())
        faults.system_calls()
        faults.writes()
        for example in sorted(path.parent for path in options.examples.glob("*/input.ppd")):
            faults.allocations(example, None)
        faults.allocations(options.examples / "postscript", options.other_library_dir)
        faults.address_space(options.examples / "pcl3")
    print(f"{faults.passed} passed, {faults.failed} failed")
    return 1 if faults.failed else 0


if __name__ == "__main__":
    sys.exit(main())
