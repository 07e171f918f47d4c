#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the tool where something fails around it, and on input of extreme size; prints a table of time and memory.

Writes that fail or are cut short, a file that changes while it is read, a broken device-model library, and sizes: the
run ends with the documented exit status, without a crash and with nothing on standard error, and memory stays in
proportion.
"""
import argparse
import json
import os
import pathlib
import resource
import signal
import subprocess
import sys
import tempfile
import threading
import time

URI = "socket://192.0.2.10:9100"
SMALL = b'*PPD-Adobe: "4.3"\n*ModelName: "Z9"\n'
MEBIBYTE = 1 << 20


class Faults:
    def __init__(self, options, folder):
        self.tool, self.folder, self.failed, self.passed = options.tool, folder, 0, 0
        self.environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir)}

    def expect(self, what, holds):
        self.passed += bool(holds)
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}")

    def file(self, name, *chunks):
        path = self.folder / name
        with open(path, "wb") as out:
            for chunk in chunks:
                out.write(chunk)
        return path

    def run(self, ppd, **more):
        more.setdefault("stdout", subprocess.DEVNULL)
        return subprocess.run([self.tool, URI, ppd], env=self.environment, stdin=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, timeout=300, check=False, **more)

    def failing_writes(self):
        small = self.file("small.ppd", SMALL)
        large = self.file("large.ppd", SMALL * 20000)
        for name, ppd in (("a small PPD", small), ("a large PPD", large)):
            with open("/dev/full", "wb") as full:
                result = self.run(ppd, stdout=full)
            self.expect(f"{name} to a full disk: status 1, silent", (result.returncode, result.stderr) == (1, b""))
            self.expect(f"{name} to a closed pipe, signal ignored: status 1", self.to_closed_pipe(ppd, True) == 1)
            self.expect(f"{name} to a closed pipe: ended by the signal", self.to_closed_pipe(ppd, False) == -signal.SIGPIPE)
            result = self.run(ppd, stdout=None, preexec_fn=lambda: os.close(1))
            self.expect(f"{name} without a standard output: status 1", result.returncode == 1)
        limited = self.folder / "limited"
        with open(limited, "wb") as out:
            result = self.run(large, stdout=out, preexec_fn=limit_file_size)
        self.expect("a file that may not grow: status 1", result.returncode == 1)
        self.expect("  what was written stays, and is the beginning", large.read_bytes().startswith(limited.read_bytes()))

    def to_closed_pipe(self, ppd, ignored):
        reading, writing = os.pipe()
        os.close(reading)
        action = signal.SIG_IGN if ignored else signal.SIG_DFL
        with os.fdopen(writing, "wb") as out:
            return self.run(ppd, stdout=out, restore_signals=False,
                            preexec_fn=lambda: signal.signal(signal.SIGPIPE, action)).returncode

    def changing_file(self):
        lines = SMALL * (30 * MEBIBYTE // len(SMALL))
        for what, change in (("is cut short", lambda path: os.truncate(path, MEBIBYTE)),
                             ("vanishes", os.unlink),
                             ("is overwritten", lambda path: path.write_bytes(b"no PPD\n" * MEBIBYTE))):
            ppd = self.file("changing.ppd", lines)
            timer = threading.Timer(0.02, change, [ppd])
            timer.start()
            result = self.run(ppd)
            timer.join()
            # Reading ends where the file does, with success; every line of each is one that may come next.
            self.expect(f"a PPD that {what} while it is read: status 0, silent",
                        (result.returncode, result.stderr) == (0, b""))

    def unusable_libraries(self):
        """Only a library that is not there at all is taken for absent; the tool must not do without one that is broken."""
        asking = self.file("asking.ppd", SMALL + b'*QZPPDUpdaters: "ATMediaTypePSPPDUpdater"\n')
        small = self.file("small.ppd", SMALL)
        libraries = self.folder / "libraries"
        libraries.mkdir()
        library = libraries / "libQZVorantisModel.so.1"
        environment = {**self.environment, "LD_LIBRARY_PATH": str(libraries)}
        self.expect("no library: status 0, the PPD unchanged", self.answer(asking, environment) == (0, asking.read_bytes(), b""))
        other = next(pathlib.Path("/usr/lib").glob("*/libz.so.1"))
        for what, contents in (("an empty file", b""), ("a text", b"no shared object\n" * 1000),
                               ("the beginning of a library", other.read_bytes()[:100]), ("a library of other entry points", other.read_bytes())):
            library.write_bytes(contents)
            self.expect(f"{what} for a library: status 1, nothing written, silent",
                        self.answer(asking, environment) == (1, b"", b""))
            self.expect("  a PPD that names no updaters does not need it", self.answer(small, environment) == (0, SMALL, b""))

    def answer(self, ppd, environment):
        result = subprocess.run([self.tool, URI, ppd], env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                                timeout=60, check=False)
        return result.returncode, result.stdout, result.stderr

    def sizes(self):
        line = b"*UIConstraints: *OptionA Choice1 *OptionB Choice2\n"
        device = {"dataStore": {"VMCustomMediaStorage": {"MediaInfo": {
            f"m{i}": {"Name": f"Medium {i}", "MediumID": f"id-{i}", "CategoryName": "Custom", "CategoryID": "CUSTOM",
                      "ICCProfiles": []} for i in range(300_000)}}}}
        snapshot = json.dumps({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [device]}).encode()
        snapshot += b" " * (64 * MEBIBYTE - len(snapshot))
        asking = b'*QZPPDUpdaters: "ATMediaTypePSPPDUpdater"\n'
        attributes = b"".join(b'*QZValueAttributes MediaType.M%d: "glossy=YES;defaultGE=\'x\'"\n' % i for i in range(1_000_000))
        rows = (("a PPD of 150 MB", self.file("huge.ppd", SMALL, line * (150 * MEBIBYTE // len(line))), None, 0, 6),
                ("a line of 100 MB", self.file("line.ppd", SMALL, b"*Long: \"", b"x" * 100 * MEBIBYTE, b"\"\n"), None, 0, 6),
                ("a million statements", self.file("many.ppd", SMALL, line * 1_000_000), None, 0, 6),
                ("a million statements, all edited", self.file("edited.ppd", SMALL, asking, attributes), b"{}", 1, 40),
                ("a snapshot of 64 MiB, 300000 media", self.file("media.ppd", SMALL, asking), snapshot, 0, 40),
                ("a snapshot of a byte more", self.file("media.ppd", SMALL, asking), snapshot + b" ", 1, 4))
        print(f"\n{'input':36} {'MB':>6} {'status':>6} {'seconds':>8} {'memory MB':>10} {'memory / input':>15}")
        for name, ppd, snapshot_bytes, status, most in rows:
            self.size(name, ppd, snapshot_bytes, status, most)

    def size(self, name, ppd, snapshot, status, most):
        environment, size = dict(self.environment), ppd.stat().st_size
        if snapshot is not None:
            if snapshot == b"{}":
                snapshot = json.dumps({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [
                    {"dataStore": {"VMCustomMediaStorage": {"MediaInfo": {}}}}]}).encode()
                status = 0
            environment["QZVORANTISMODEL_SNAPSHOT"] = str(self.file("sizes.json", snapshot))
            size += len(snapshot)
        start = time.monotonic()
        command = [sys.executable, "-c", MEASURE, str(self.tool), URI, str(ppd)]
        result = subprocess.run(command, env=environment, stdout=subprocess.PIPE, timeout=600, check=True, text=True)
        seconds = time.monotonic() - start
        actual, memory = (int(word) for word in result.stdout.split())
        print(f"{name:36} {size / 1e6:6.1f} {actual:6} {seconds:8.2f} {memory / 1e6:10.1f} {memory / size:15.2f}")
        self.expect(f"{name}: status {status}, memory at most {most} times the input", actual == status and memory < most * size)


MEASURE = """import os, resource, subprocess, sys
status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL).returncode
print(status, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024)
"""


def limit_file_size():
    signal.signal(signal.SIGXFSZ, signal.SIG_DFL)  # the tool itself has to turn the signal into a failed write
    resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, 100_000))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        faults = Faults(options, pathlib.Path(folder))
        faults.failing_writes()
        faults.changing_file()
        faults.unusable_libraries()
        faults.sizes()
    print(f"{faults.passed} passed, {faults.failed} failed")
    return 1 if faults.failed else 0


if __name__ == "__main__":
    sys.exit(main())
