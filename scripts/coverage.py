#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints which lines of the tool's layers the tests ran, from the counts that a build with AT_COVERAGE left behind."""
import collections
import gzip
import json
import os
import pathlib
import subprocess
import sys

LAYERS = ("base", "driver", "ppd", "readers", "updaters")


def counts_of(build):
    """For each source of the layers: line number -> how often it ran."""
    counts = collections.defaultdict(collections.Counter)
    for data in build.rglob("*.gcda"):
        result = subprocess.run(["gcov", "--json-format", "--stdout", str(data)], cwd=build, capture_output=True, check=True)
        raw = result.stdout
        report = json.loads(gzip.decompress(raw) if raw[:2] == b"\x1f\x8b" else raw.splitlines()[0])
        for source in report["files"]:
            path = source["file"]  # relative to the project's top folder, since paths are mapped so in the build
            if os.path.isabs(path):
                continue
            path = os.path.normpath(path)
            if path.split("/")[0] in LAYERS:
                for line in source["lines"]:
                    counts[path][line["line_number"]] += line["count"]
    return counts


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    totals = collections.defaultdict(lambda: [0, 0])
    for path, lines in sorted(counts_of(build).items()):
        ran = sum(1 for count in lines.values() if count)
        missed = [str(number) for number, count in sorted(lines.items()) if not count]
        for name in (path.split("/")[0], "all layers"):
            totals[name][0] += ran
            totals[name][1] += len(lines)
        if missed:
            print(f"{path}: not run: {', '.join(missed)}")
    if not totals:
        sys.exit("no counts: build with AT_COVERAGE and run the tests first")
    for name, (ran, lines) in totals.items():
        print(f"{name:12} {ran:5} of {lines:5} lines, {100 * ran / lines:.1f} %")


if __name__ == "__main__":
    main()
