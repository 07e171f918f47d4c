#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The last message of a diagnostic build whose run ends in `main`: a lack of memory, an exception of the device-model
library, and a standard output that is full or closed."""
import argparse
import os
import pathlib
import subprocess
import sys

URI = "socket://192.0.2.10:9100"
EXCEPTION = "int main(int, const char **): Exception caught in autosetup, name: "
NOT_WRITTEN = "-[ATAutoSetupTool run]: Stdout writing error."


def run(options, snapshot, **more):
    """Exit status and the last line of the log."""
    environment = {"LD_LIBRARY_PATH": str(options.library_dir), "QZVORANTISMODEL_SNAPSHOT": str(snapshot), **more.pop("set", {})}
    more.setdefault("stdout", subprocess.DEVNULL)
    status = subprocess.run([options.tool, URI, options.example / "input.ppd"], env=environment, check=False, **more).returncode
    lines = options.log.read_text().splitlines()
    return status, lines[-1] if lines else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("tool", "library-dir", "preload", "log", "example"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    options = parser.parse_args()
    snapshot = options.example / "snapshot.json"
    options.log.touch()
    failed = 0
    with open("/dev/full", "wb") as full:
        for what, (status, line), expected in (
                ("no memory", run(options, snapshot, set={"LD_PRELOAD": str(options.preload), "AT_FAIL_AT": "400"}),
                 EXCEPTION + "std::exception, reason: std::bad_alloc, info: (null)"),
                ("no snapshot", run(options, "/nowhere"), EXCEPTION + "ATDeviceModelLibraryException, reason: /nowhere: "
                 "cannot be opened: No such file or directory, info: (null)"),
                ("a full disk", run(options, snapshot, stdout=full), NOT_WRITTEN),
                ("no standard output", run(options, snapshot, stdout=None, preexec_fn=lambda: os.close(1)), NOT_WRITTEN)):
            holds = status == 1 and line == expected
            failed += not holds
            print(f"{'passed' if holds else 'FAILED'}  {what}: {line}")
    options.log.unlink()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
