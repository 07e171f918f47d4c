#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes the code, a line at a time, and sees whether a test notices.

Comparisons, conditions, dropped statements, constants and texts of the tool and of the stored library are changed. All
changes are compiled at once, each behind a switch that is read at run time, so that trying one costs no build. Then,
for each change of a sample, the tests that reach it run until one fails, crashes or takes ten times as long as it
should.

A change that no test notices is named, with the file, the line and what became of it, and as a line for survivors.tsv,
which lists those that may live, each with its reason. Of the others, 98 % must be noticed.

    mutate.py                          tries a sample of 400
    mutate.py --all                    tries all
    mutate.py --listed                 tries those on the list, which no test may notice
    mutate.py --only base/Text.cpp:51  tries those of a file, or of a line of it
"""
import argparse
import collections
import json
import multiprocessing
import os
import pathlib
import random
import re
import resource
import subprocess
import sys
import time

sys.path.append("/usr/lib/python3/dist-packages")  # where Debian has Clang's bindings, also for another Python
import checks as tests
import places as search
import rewrite

HERE = pathlib.Path(__file__).resolve().parent
TOP = HERE.parent.parent
BUILD = TOP / "build/mutation"
FOLDERS = ("base", "driver", "ppd", "readers", "updaters", "library")
NOT_CHANGED = ("readers/framework/", "library/example/", "library/QZVorantisModel.h")
SHARE = 98  # per cent
MEMORY = 4 << 30  # bytes, for a change that makes a test take all
ROUNDS = 12  # of compilations, to find what cannot be compiled
PROGRAMS = ["VorantisAutosetupTool", "QZVorantisModel"]
TESTS = [f"{name}_tests" for name in tests.UNIT_TESTS] + ["whole_tool_tests"]
OPTIONS = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_C_FLAGS_DEBUG=-O0", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w",
           "-DCMAKE_UNITY_BUILD=ON", "-DBUILD_TESTING=ON", "-DAT_DIAGNOSTIC_LOG=ON", f"-DAT_LOG_FILE={tests.LOG}"]


def run(command, **more):
    return subprocess.run([str(word) for word in command], check=False, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, **more)


def configure(source, build, *options):
    result = run(["cmake", "-S", source, "-B", build, "-G", "Ninja", *options])
    if result.returncode != 0:
        raise SystemExit(result.stdout)


def all_files():
    """The names of the project's files."""
    for folder, folders, files in os.walk(TOP):
        folders[:] = [name for name in folders if not name.startswith(("build", ".git", "__pycache__"))]
        for name in files:
            yield str((pathlib.Path(folder) / name).relative_to(TOP))


def changed_files(names):
    return sorted(name for name in names if name.startswith(tuple(f"{folder}/" for folder in FOLDERS)) and
                  name.endswith((".h", ".cpp")) and not name.startswith(NOT_CHANGED))


def find_all(names):
    configure(TOP, BUILD / "places", "-DCMAKE_BUILD_TYPE=Debug", "-DAT_DIAGNOSTIC_LOG=ON",
              "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON")
    found = search.find_places(TOP, BUILD / "places/compile_commands.json", names)
    return dict(enumerate(found, start=1))


def culprits(output, rewritten, copy, whole_lines):
    """The numbers of the changes at which the compiler found errors."""
    found = set()
    complaint = r"(?: (?:fatal )?error:| note: \S+ was not|\s+required from here)"
    pattern = re.escape(str(copy)) + r"/([^\s:]+):(\d+):(\d+):" + complaint
    for name, line, column in set(re.findall(pattern, output)):
        if name in rewritten:
            found |= rewritten[name].at(int(line), None if whole_lines else int(column))
    return found


def build_once(names, places, targets, whole_lines):
    """The changes that kept the targets from being built: they do not nest with others, or do not compile."""
    copy, build = BUILD / "source", BUILD / "build"
    rewritten = rewrite.rewrite(TOP, copy, names, HERE / "switch.h", places)
    crossing = {number for each in rewritten.values() for number in each.crossing}
    if crossing:
        return crossing
    configure(copy, build, *OPTIONS)
    result = run(["cmake", "--build", build, "--parallel", "2", "--target", *targets, "--", "-k", "0"])
    if result.returncode == 0:
        return set()
    bad = culprits(result.stdout, rewritten, copy, whole_lines) & set(places)
    if not bad:
        raise SystemExit(result.stdout[-5000:])
    return bad


def build_all(names, places):
    """Builds all changes at once. Those that do not compile are taken out of `places`, and remembered."""
    memory = BUILD / "not-compiled.json"
    known = {tuple(key) for key in json.loads(memory.read_text())} if memory.exists() else set()
    found = len(places)
    left_out = {number for number, place in places.items() if place.key() in known}
    for targets in (PROGRAMS, PROGRAMS + TESTS):
        for attempt in range(ROUNDS):
            for number in left_out:
                known.add(places.pop(number).key())
            left_out = build_once(names, places, targets, attempt >= ROUNDS // 2)
            memory.write_text(json.dumps(sorted(known)))
            if not left_out:
                break
            print(f"{len(left_out)} changes do not compile", flush=True)
    if left_out:
        raise SystemExit("the changes cannot be built")
    return found - len(places)


def sample_of(places, count, seed):
    """So many of the places, in equal steps through the files and, in each, the kinds."""
    ordered = sorted(places, key=lambda number: (places[number].file, places[number].kind, number))
    if count >= len(ordered):
        return ordered
    start = random.Random(seed).random()
    return [ordered[int((start + step) * len(ordered) / count)] for step in range(count)]


def read_survivors():
    """The reasons of the changes that may live, by their keys."""
    survivors = {}
    for line in (HERE / "survivors.tsv").read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            *key, reason = line.split("\t")
            if len(key) != 5 or not reason or tuple(key) in survivors:
                raise SystemExit(f"survivors.tsv: six fields, and each change once, are expected: {line}")
            survivors[tuple(key)] = reason
    return survivors


class Trial:
    """Tries changes, in a folder for each process."""

    def __init__(self, checks, places, limit):
        self.checks = checks
        self.places = places
        self.limit = limit

    def prepare(self):
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    def __call__(self, number):
        """The number, the test that noticed the change, or None, and how many tests reach it."""
        folder = own_folder()
        chosen = tests.covering(self.checks, number, self.places[number].file.split("/")[0], self.limit)
        return number, next((each.name for each in chosen if each.notices(number, folder)), None), len(chosen)


def own_folder():
    folder = BUILD / f"worker-{os.getpid()}"
    (folder / "elsewhere").mkdir(parents=True, exist_ok=True)
    return folder


def learn(checks, count):
    """Runs each test once, to know what it reaches."""
    started = time.monotonic()
    for each in checks:
        each.learn(own_folder(), count)
    print(f"{len(checks)} tests ran with nothing changed, {time.monotonic() - started:.0f} s", flush=True)


def try_all(checks, places, numbers, survivors, options):
    """Tries the changes, and names those that live at once. What noticed each, and how many tests reach it."""
    trial = Trial(checks, places, options.cases)
    results = {}
    random.Random(options.seed).shuffle(numbers)  # the slow ones do not come all at once
    with multiprocessing.Pool(options.jobs, trial.prepare) as pool:
        for number, noticed, covering in pool.imap_unordered(trial, numbers):
            results[number] = (noticed, covering)
            if not noticed and places[number].key() not in survivors:
                report_survivor(places[number], covering)
            if len(results) % 50 == 0:
                print(f"{len(results)} of {len(numbers)} tried", flush=True)
    return results


def report_survivor(place, covering):
    why = f"noticed by none of {covering} tests" if covering else "reached by no test"
    print(f"\n{place.file}:{place.line}: {place.kind}, {why}")
    print(f"  {place.text}\n  {place.before} → {place.after}")
    print("\t".join([*place.key(), ""]), flush=True)


def report(places, results, survivors, options):
    """Prints what was found; whether it is good enough."""
    noticed = [number for number, (test, _) in results.items() if test]
    wrongly = [number for number in noticed if places[number].key() in survivors]
    for number in wrongly:
        print(f"\nlisted as a survivor, and noticed by {results[number][0]}: {places[number].key()}")
    unlisted = [number for number in results if places[number].key() not in survivors]
    passed = [number for number in unlisted if results[number][0]]
    share = 100 * len(passed) / len(unlisted) if unlisted else 100
    if options.verbose:
        for number in sorted(noticed):
            place = places[number]
            print(f"noticed by {results[number][0]}: {place.file}:{place.line} {place.before} → {place.after}")
    print("\nkind            tried  noticed")
    for kind, tried in sorted(collections.Counter(places[number].kind for number in results).items()):
        print(f"{kind:15} {tried:5} {sum(places[number].kind == kind for number in noticed):8}")
    print(f"{len(results)} changes tried, {len(results) - len(unlisted)} of them on the list; "
          f"of the others {len(passed)} of {len(unlisted)} noticed, {share:.1f} %")
    good = share >= SHARE and not wrongly
    print(f"{len(passed)} passed, {0 if good else len(unlisted) - len(passed) + len(wrongly)} failed")
    return good


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=400, help="how many changes are tried (400)")
    parser.add_argument("--all", action="store_true", help="try all")
    parser.add_argument("--only", metavar="FILE[:LINE]", help="try those of a file, or of a line of it")
    parser.add_argument("--listed", action="store_true", help="try those on the list")
    parser.add_argument("--seed", type=int, default=1, help="where the sample begins")
    parser.add_argument("--cases", type=int, default=40, help="how many whole-tool cases are tried on a change (40)")
    parser.add_argument("--jobs", type=int, default=2, help="how many changes are tried at once (2)")
    parser.add_argument("--verbose", action="store_true", help="say which test noticed")
    return parser.parse_args()


def chosen(places, survivors, options):
    if options.listed:
        return [number for number, place in places.items() if place.key() in survivors]
    if options.only:
        name, _, line = options.only.partition(":")
        return [number for number, place in places.items() if place.file == name and line in ("", str(place.line))]
    return sample_of(places, len(places) if options.all else options.count, options.seed)


def main():
    options = arguments()
    started = time.monotonic()
    BUILD.mkdir(parents=True, exist_ok=True)
    names = list(all_files())
    places = find_all(changed_files(names))
    highest = len(places) + 1
    print(f"{len(places)} places found, {time.monotonic() - started:.0f} s", flush=True)
    survivors = read_survivors()
    stale = set(survivors) - {place.key() for place in places.values()}
    for key in sorted(stale):
        print(f"on the list, and not in the code: {key}")
    left_out = build_all(names, places)
    print(f"{len(places)} changes compiled, {left_out} cannot be, {time.monotonic() - started:.0f} s", flush=True)
    checks = tests.all_checks(TOP, BUILD / "build")
    learn(checks, highest)
    good = report(places, try_all(checks, places, chosen(places, survivors, options), survivors, options), survivors, options)
    return 0 if good and not stale else 1


if __name__ == "__main__":
    sys.exit(main())
