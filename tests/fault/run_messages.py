#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The last message of a diagnostic build whose run ends in `main`: a lack of memory, an exception of the device-model
library, and a standard output that is full or closed."""
import argparse
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
EXCEPTION = "int main(int, const char **): Exception caught in autosetup, name: "
NOT_WRITTEN = "-[ATAutoSetupTool run]: Stdout writing error."
LIMIT = 1 << 24  # bytes


def limit():
    resource.setrlimit(resource.RLIMIT_FSIZE, (LIMIT, LIMIT))


def close_output():
    os.close(1)


def run(options, snapshot, **more):
    """Exit status and the last line of the log."""
    ppd = more.pop("ppd", options.example / "input.ppd")
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir), "QZVORANTISMODEL_SNAPSHOT": str(snapshot),
                   **more.pop("set", {})}
    more.setdefault("stdout", subprocess.DEVNULL)
    status = subprocess.run([options.tool, URI, ppd], env=environment, check=False, **more).returncode
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
    with open("/dev/full", "wb") as full, tempfile.TemporaryDirectory() as folder:
        small = pathlib.Path(folder) / "small.ppd"  # it is written when standard output is closed
        small.write_text('*PPD-Adobe: "4.3"\n')
        limited = open(pathlib.Path(folder) / "limited.ppd", "wb")  # which the log, a small file, does not feel
        limited.seek(LIMIT)
        for what, (status, line), expected in (
                ("no memory", run(options, snapshot, set={"LD_PRELOAD": str(options.preload), "AT_FAIL_AT": "1",
                                                          "AT_FAIL_AFTER_READ": "1"}),
                 EXCEPTION + "std::exception, reason: std::bad_alloc, info: (null)"),
                ("no snapshot", run(options, "/nowhere"), EXCEPTION + "ATDeviceModelLibraryException, reason: /nowhere: "
                 "cannot be opened: No such file or directory, info: (null)"),
                ("a full disk", run(options, snapshot, stdout=full), NOT_WRITTEN),
                ("a full disk, which shows at the end", run(options, snapshot, stdout=full, ppd=small), NOT_WRITTEN),
                ("a limited file size", run(options, snapshot, stdout=limited, preexec_fn=limit), NOT_WRITTEN),
                ("no standard output", run(options, snapshot, stdout=None, preexec_fn=close_output), NOT_WRITTEN),
                ("no standard output and no PPD", run(options, snapshot, stdout=None, preexec_fn=close_output, ppd="/nowhere"),
                 "-[ATAutoSetupTool run]: Failed to parse PPD file: PPDParserErrorDomain code 1"),
                ("an empty PPD and no standard output", run(options, snapshot, stdout=None, preexec_fn=close_output,
                                                            ppd="/dev/null"), NOT_WRITTEN)):
            holds = status == 1 and line == expected
            failed += not holds
            print(f"{'passed' if holds else 'FAILED'}  {what}: {line}")
    options.log.unlink()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
