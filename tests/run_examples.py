#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Sets each example up and lets CUPS judge the result; a second setup on it must leave it acceptable too."""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

# The profile files belong to the printer's software, and only custom media have translations in the examples.
JUDGE = ["cupstestppd", "-q", "-I", "profiles", "-W", "translations"]


def set_up(options, example, ppd):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir),
                   "QZVORANTISMODEL_SNAPSHOT": str(example / "snapshot.json")}
    return subprocess.run([options.tool, "socket://192.0.2.10:9100", ppd], env=environment, capture_output=True,
                          timeout=60, check=False)


def problem_of(options, example, folder):
    ppd = example / "input.ppd"
    for name in ("first", "second"):
        done = set_up(options, example, ppd)
        if done.returncode != 0 or done.stderr or done.stdout == ppd.read_bytes():
            return f"{name} setup: status {done.returncode}, {done.stderr!r}, or nothing changed"
        ppd = folder / f"{example.name}-{name}.ppd"
        ppd.write_bytes(done.stdout)
        if subprocess.run([*JUDGE, ppd], check=False).returncode != 0:
            return f"{name} setup: cupstestppd refuses it"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("examples", type=pathlib.Path)
    options = parser.parse_args()
    failed = 0
    examples = sorted(path.parent for path in options.examples.glob("*/input.ppd"))
    with tempfile.TemporaryDirectory() as folder:
        for example in examples:
            problem = problem_of(options, example, pathlib.Path(folder))
            failed += problem is not None
            print(f"{'FAILED' if problem else 'passed'}  {example.name}{': ' + problem if problem else ''}")
    print(f"{len(examples) - failed} passed, {failed} failed")
    return 1 if failed or not examples else 0


if __name__ == "__main__":
    sys.exit(main())
