#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Fails on an include against the direction of the layers. usage: layers.py PROJECT"""
import pathlib
import re
import sys

# What each folder, and each room in it, may include of the others.
MAY_INCLUDE = {
    "base": [],
    "ppd/lines": ["base", "ppd/lists/Budget.h"],
    "ppd/lists": ["base/ATException.h"],
    "ppd/document": ["base", "ppd/lines", "ppd/lists"],
    "readers": ["base", "library/QZVorantisModel.h"],
    "readers/framework": ["base", "readers"],
    "updaters": ["base", "ppd", "readers"],
    "driver": ["base", "ppd", "readers", "updaters"],
    "explain/report": ["base", "ppd/lines/PPDParserError.h", "updaters/UpdateObserver.h"],
    "explain/watch": ["base", "ppd", "readers", "updaters", "driver", "explain/report"],
    "explain/judge": ["base", "ppd", "readers", "updaters/PPDKeywords.h", "updaters/ATPPDUpdatersFactory.h", "explain/report", "explain/watch",
                      "library/Snapshot.h"],
    "explain/compare": ["base", "ppd", "updaters/PPDKeywords.h", "explain/report", "explain/watch"],
    "explain/show": ["base", "explain/compare", "explain/report"],
    "explain": ["base", "ppd", "readers", "updaters", "driver", "library/Snapshot.h"],
    "capture": ["base", "ppd", "readers", "updaters/PPDKeywords.h", "explain", "library/Snapshot.h"],
    "setup": ["base", "ppd", "updaters/PPDKeywords.h", "explain", "library/Snapshot.h"],
    "scheduler": ["explain"],
    "queues": ["base", "explain", "setup", "scheduler"],
    "library": [],
}
MAY_INCLUDE["readers"].append("readers/framework")  # on macOS its back end takes the place of the shared object's


def is_within(path, folder):
    return path == folder or path.startswith(folder + "/")


def main():
    top = pathlib.Path(sys.argv[1])
    checked = 0
    wrong = []
    for folder, allowed in MAY_INCLUDE.items():
        for file in sorted((top / folder).glob("*.*")):
            for included in re.findall(r'#(?:include|import) "([^"]+/[^"]+)"', file.read_text(encoding="utf-8")):
                checked += 1
                if not any(is_within(included, each) for each in [folder, *allowed]):
                    wrong.append(f"{file.relative_to(top)} includes {included}")
    print(*wrong, f"{checked} includes, {len(wrong)} against the direction of the layers", sep="\n")
    sys.exit(1 if wrong or checked < 100 else 0)


main()
