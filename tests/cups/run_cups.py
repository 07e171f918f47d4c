#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Gives the tool's output to a real CUPS scheduler, a private one on a loopback port with folders of its own.

For each example a queue is made from the result. The queue must list the custom media, the PPD read back over HTTP must
be the tool's output byte for byte, the scheduler's log must not say that the PPD cannot be loaded, and cupstestppd must
say nothing worse of the output than of the input. With a private colord the scheduler must register every profile of the
result whose file exists.
"""
import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import colord
from checks import Checks
from scheduler import CUPSD, Scheduler

URI = "socket://192.0.2.10:9100"


def complaints(ppd):
    """What cupstestppd says against the PPD; profile files and translations belong to the printer's software."""
    result = subprocess.run(["cupstestppd", "-I", "profiles", "-W", "translations", ppd], capture_output=True, text=True,
                            check=False)
    return result.returncode, sorted(line.strip() for line in result.stdout.splitlines() if "FAIL" in line)


def expected_choices(output):
    """The choices of MediaType that stand in the PPD, in order."""
    lines = (line.split() for line in output.decode("latin-1").splitlines() if line.startswith("*MediaType "))
    return [words[1].split("/")[0].rstrip(":") for words in lines]


def set_up(options, example, result):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir),
                   "QZVORANTISMODEL_SNAPSHOT": str(example / "snapshot.json")}
    output = subprocess.run([options.tool, URI, example / "input.ppd"], env=environment, stdout=subprocess.PIPE,
                            check=True).stdout
    result.write_bytes(output)
    return output


def check_example(checks, options, scheduler, example, folder):
    result = folder / f"{example.name}.ppd"
    output = set_up(options, example, result)
    scheduler.make_queue(example.name, result)
    choices = scheduler.choices(example.name, "MediaType")
    checks.expect(f"{example.name}: the queue lists {' '.join(choices)}",
                  "Custom1" in choices and choices == expected_choices(output))
    checks.expect(f"{example.name}: the PPD comes back byte for byte", scheduler.ppd_of(example.name) == output)
    checks.expect(f"{example.name}: cupstestppd says nothing worse of the output",
                  complaints(result)[0] <= complaints(example / "input.ppd")[0])


def check_profiles(checks, options, scheduler, daemon, example, folder):
    without_file = colord.with_files(example, folder / f"{example.name}-files")
    result = folder / f"{example.name}-files.ppd"
    output = set_up(options, folder / f"{example.name}-files", result)
    queue = f"{example.name}-profiles"
    scheduler.make_queue(queue, result)
    written = colord.statements(output)
    expected = {(f"{queue}-{spec}", path) for spec, path in written if path != without_file}
    found = daemon.registered(queue, expected)
    checks.expect(f"{example.name}: {len(found)} of {len(written)} profiles are registered, all whose file exists",
                  found == expected and len(expected) < len(written))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    options = parser.parse_args()
    for program in (CUPSD, "lpadmin", "lpoptions", "cupstestppd"):
        if shutil.which(program) is None:
            sys.exit(f"NOT TESTED: {program} is not installed (packages cups-daemon and cups-client)")
    checks = Checks()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        with Scheduler(folder / "cupsd") as scheduler:
            for example in sorted(path.parent for path in options.examples.glob("*/input.ppd")):
                check_example(checks, options, scheduler, example, folder)
            checks.expect("the scheduler loads every PPD", "cannot be loaded" not in scheduler.log())
        if not colord.can_have_its_own_data():
            print("NOT TESTED: what colord registers: only root in a mount namespace can give its data base a place of its own")
            return checks.status()
        if colord.missing():
            sys.exit(f"NOT TESTED: not installed: {colord.missing()} (packages dbus-daemon and colord)")
        # colord, which runs as root here, talks to root only.
        with colord.ColorDaemon(folder / "colord") as daemon, \
                Scheduler(folder / "cupsd-with-colord", daemon.environment, as_root=True) as scheduler:
            for example in sorted(path.parent for path in options.examples.glob("*/input.ppd")):
                if b"cupsICCProfile" in (example / "input.ppd").read_bytes():
                    check_profiles(checks, options, scheduler, daemon, example, folder)
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
