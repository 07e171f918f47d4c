#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Calls the program that explains a run as people do: its options, its exit status and what it writes where."""
import argparse
import fcntl
import json
import os
import pathlib
import pty
import struct
import subprocess
import sys
import tempfile
import termios

URI = "socket://192.0.2.10:9100"


class Checks:
    def __init__(self, options):
        self.options, self.failed, self.status = options, 0, None
        self.example = options.examples / "pcl3"
        self.environment = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
        self.environment.update({"LD_LIBRARY_PATH": str(options.library_dir), "TERM": "xterm",
                                 "PAGER": "", "QZVORANTISMODEL_SNAPSHOT": str(self.example / "snapshot.json")})

    def call(self, *arguments, **more):
        return subprocess.run([self.options.explain, *arguments], env={**self.environment, **more}, capture_output=True,
                              stdin=subprocess.DEVNULL, check=False)

    def on_terminal(self, *arguments, columns=0, **more):
        """What is written to a terminal of so many columns; a variable that is None is unset."""
        ours, theirs = pty.openpty()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        environment = {name: value for name, value in {**self.environment, **more}.items() if value is not None}
        process = subprocess.Popen([self.options.explain, *arguments], env=environment, stdout=theirs)
        os.close(theirs)
        output = b""
        try:
            while chunk := os.read(ours, 65536):
                output += chunk
        except OSError:  # the end, on Linux
            pass
        os.close(ours)
        self.status = process.wait()
        return output

    def expect(self, what, holds):
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}")

    def views(self, folder, ppd):
        """What the options leave out, and the width of the terminal."""
        again = str(folder / "again.ppd")
        self.call("-o", again, URI, ppd)
        usual, full = self.call(URI, again).stdout, self.call("--full", URI, again).stdout
        summary, warnings = self.call("--summary", URI, ppd).stdout, self.call("--warnings", URI, ppd).stdout
        self.expect("--full: nothing is only counted", b"(--full)" in usual and b"(--full)" not in full and len(full) > len(usual))
        self.expect("--summary: a line for each code", b"\n  3 profile-missing: " in summary and summary.count(b"\n") < 10)
        self.expect("--warnings: every one, and no details", warnings.count(b"[profile-missing]") == 3 and b"Reading" not in warnings)
        for wanted in ("4711", "My Canvas"):
            one = self.call("--medium", wanted, URI, ppd).stdout
            self.expect(f"--medium={wanted}: that one only", b'"My Canvas" (4711)' in one and b"Proof White" not in one)
        none = self.call("--medium=Roll", URI, ppd)
        self.expect("--medium: one that is not there, status 2", none.returncode == 2 and b"no medium" in none.stderr)
        for columns, width in {0: 80, 40: 60, 100: 100, 300: 200}.items():
            lines = self.on_terminal(URI, ppd, columns=columns, NO_COLOR="1", PAGER="").decode().splitlines()
            self.expect(f"a terminal of {columns} columns: at most {width}", width - 30 < max(map(len, lines)) <= width)

    def lost_media(self, folder, ppd):
        """The line of docs/explain.md that tells which media of a folder of reports were lost, and why."""
        (folder / "reports").mkdir()
        other = folder / "other.ppd"  # its medium has no place for a profile of the device
        other.write_text(pathlib.Path(ppd).read_text().replace("*cupsICCProfile .Plain.", "*Other .Plain."))
        for number, path in enumerate([ppd, other]):
            (folder / f"reports/{number}.json").write_bytes(self.call("-f", "json", URI, str(path)).stdout)
        document = (self.options.examples.parent / "docs/explain.md").read_text()
        command = next(line for line in document.split("\n") if line.startswith("jq "))
        told = subprocess.run(["bash", "-c", command], cwd=folder, capture_output=True, text=True, check=False)
        self.expect("jq tells what was lost and why", told.stdout == f"{URI} Plain Paper: profile-skipped\n")

    def pager(self, folder, ppd):
        """A pager is used on a terminal only, and its failure loses nothing."""
        paged = folder / "paged"
        keep = f"cat > '{paged}'; echo LESS=$LESS"
        self.expect("PAGER gets the report on a terminal", b"LESS=FRX" in self.on_terminal(URI, ppd, PAGER=keep, LESS=None) and
                    b"Custom1" in paged.read_bytes())
        self.expect("LESS stays as it is set", b"LESS=S" in self.on_terminal(URI, ppd, PAGER=keep, LESS="S"))
        paged.unlink()
        self.call(URI, ppd, PAGER=keep)
        self.on_terminal("-f", "json", URI, ppd, PAGER=keep)
        self.expect("no pager for a file, nor for JSON", not paged.exists())
        for what, pager in {"an empty PAGER": "", "PAGER=cat": "cat", "a pager that is not there": "/no/such/pager 2>/dev/null"}.items():
            self.expect(f"{what}: the report itself", b"Custom1" in self.on_terminal(URI, ppd, PAGER=pager))
        self.expect("a pager that is left early: the run's status", self.status_on_terminal(URI, ppd, PAGER="true") == 0)

    def status_on_terminal(self, *arguments, **more):
        self.on_terminal(*arguments, **more)
        return self.status

    def run(self, folder):
        ppd = str(self.example / "input.ppd")
        report = self.call(URI, ppd)
        self.expect("a report, status 0, silent", report.returncode == 0 and b"Custom1" in report.stdout and not report.stderr)
        self.expect("no colours in a file", b"\x1b" not in report.stdout)
        self.expect("colours on a terminal", b"\x1b[" in self.on_terminal(URI, ppd))
        self.expect("no colours with NO_COLOR", b"\x1b" not in self.on_terminal(URI, ppd, NO_COLOR="1"))
        self.expect("no colours on a dumb terminal", b"\x1b" not in self.on_terminal(URI, ppd, TERM="dumb"))
        self.views(folder, ppd)
        self.pager(folder, ppd)
        self.expect("JSON", json.loads(self.call("--format=json", URI, ppd).stdout)["succeeded"])
        self.lost_media(folder, ppd)
        self.expect("HTML", self.call("-f", "html", URI, ppd).stdout.startswith(b"<!DOCTYPE html>"))
        written = folder / "written.ppd"
        tool = subprocess.run([self.options.tool, URI, ppd], env=self.environment, capture_output=True, check=True).stdout
        self.call("-o", str(written), URI, ppd)
        self.expect("-o writes what the tool writes", written.read_bytes() == tool)

        no_device = {"QZVORANTISMODEL_SNAPSHOT": ""}
        odd = self.call(URI, ppd, **no_device)
        self.expect("a device that nobody knows: said within the first lines, and not in green",
                    odd.returncode == 0 and b"look below" in odd.stdout and b"no-device" in b"".join(odd.stdout.splitlines()[:5]))
        self.expect("--strict: status 3 with warnings", self.call("--strict", URI, ppd, **no_device).returncode == 3)

        malformed = folder / "malformed.ppd"
        malformed.write_text("text\n")
        unwritten = folder / "unwritten.ppd"
        failed = self.call("-o", str(unwritten), URI, str(malformed))
        self.expect("a failed run: status 1, a report, no file",
                    failed.returncode == 1 and b"Line 1 is malformed" in failed.stdout and not unwritten.exists())
        for what, arguments in {"no arguments": [], "one argument": [URI], "four arguments": [URI, ppd, "id", "more"],
                                "an unknown option": ["--what", URI, ppd], "an unknown format": ["-f", "pdf", URI, ppd],
                                "a file that cannot be written": ["-o", "/no/such/folder/a", URI, ppd]}.items():
            result = self.call(*arguments)
            self.expect(f"{what}: status 2, said on standard error", result.returncode == 2 and result.stderr != b"")
        unsafe = self.call("-f", "a\x1b[31m\u202eb\n", URI, ppd).stderr
        self.expect("what was typed reaches standard error in visible characters only", b"a\\x1b[31m\\u202eb\\n" in unsafe)
        self.expect("--help", self.call("--help").stdout.startswith(b"Usage: ") and self.call("--help").returncode == 0)
        self.expect("-h and -V", (self.call("-h").stdout, self.call("-V").stdout) ==
                    (self.call("--help").stdout, self.call("--version").stdout))
        self.expect("--version", self.call("--version").stdout.startswith(b"vorantis-autosetup-explain "))
        words = "vorantis-autosetup-explain --format = h"
        script = (f'. "{self.options.examples.parent}/completions/vorantis-autosetup-explain.bash"; COMP_WORDS=({words}); '
                  'COMP_CWORD=3; _vorantis_autosetup_explain; echo "${COMPREPLY[*]}"')
        completed = subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=False).stdout
        self.expect("completion of a format", completed == "html\n")
        full = subprocess.run([self.options.explain, URI, ppd], env=self.environment, stdout=open("/dev/full", "wb"),
                              stderr=subprocess.PIPE, check=False)
        self.expect("a full disk: status 2", full.returncode == 2)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    for name in ("tool", "explain", "library-dir", "examples"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    checks = Checks(parser.parse_args())
    with tempfile.TemporaryDirectory() as folder:
        checks.run(pathlib.Path(folder))
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
