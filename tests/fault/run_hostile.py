#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the tool on PPDs of up to 10 MB and snapshots of up to 64 MiB that nobody's device or driver has, each made so
that one step meets another as often as it can; prints a table of time and memory.

Whatever comes in, a run ends within 10 s of CPU and 1 GB: with status 0 and a result, or with status 1 and nothing.
Each input is tried in three sizes, since a smaller one may get further.
"""
import argparse
import gzip
import json
import os
import pathlib
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
MEBIBYTE = 1 << 20
SECONDS, BYTES = 20, 1e9  # a busy or slow machine takes twice the 10 s that are promised; what is not bounded takes minutes
SIZES = (1, 8, 64)  # what the largest size is divided by

HEAD = '*PPD-Adobe: "4.3"\n*ModelName: "Z9"\n'
PROFILE = '*cupsICCProfile {0}/P: "/p.icc"\n'
FACTORY = '*QZcupsICCProfile {0}/P: "P;;/p.icc"\n'
QUALIFIERS = '*cupsICCQualifier1: "QZGlossEnhancerSimplified"\n*cupsICCQualifier3: "OutputMode"\n'


def names(*updaters):
    """The statement that names the updaters, a few on each line."""
    full = {"PDL": "ATPDLCommandTypePPDUpdater", "Glossy": "ATGlossyProfilePCL3PPDUpdater"}
    words = [full.get(word, f"ATMediaType{word}PPDUpdater") for word in updaters]
    return '*QZPPDUpdaters: "' + in_lines(words) + '"\n*End\n'


def in_lines(words, separator=" "):
    lines, line = [], ""
    for word in words:
        if len(line) + len(word) > 200:
            lines.append(line)
            line = ""
        line += word + separator
    return "\n".join(lines + [line])


def long_value(size, letter="x"):
    return (letter * 200 + "\n") * (size // 201)


def option(name, choices="", default="Plain", group=None):
    return (f"*OpenGroup: {group or name + 'Group'}/Group\n*OpenUI *{name}/Option: PickOne\n*Default{name}: {default}\n"
            f"{choices}*CloseUI: *{name}\n*CloseGroup: {group or name + 'Group'}/Group\n")


def media_types(choices='*MediaType Plain/Plain: "QZMediaID(12)"\n'):
    return option("MediaType", choices, group="QZImagingOptions")


def languages(count):
    return '*cupsLanguages: "' + in_lines([f"l{number}" for number in range(count)]) + '"\n*End\n'


def profiles(count, name="P", gloss="OFF"):
    return [{"URL": f"/p/{number}.icc", "ICCName": name, "GlossEnhancer": gloss, "OutputMode": "Best"} for number in range(count)]


def custom(number, **more):
    return {"Name": f"n{number}", "MediumID": f"i{number}", "CategoryName": "c", "CategoryID": "CUSTOM", "ICCProfiles": [], **more}


def factory(ID, **more):
    return {"Name": "f", "MediumID": ID, "CategoryName": "c", "CategoryID": "FACTORY", "ICCProfiles": [], **more}


def device(media=(), **more):
    store = {"VMCustomMediaStorage": {"MediaInfo": {str(number): item for number, item in enumerate(media)}}}
    return snapshot({"dataStore": store, **more})


def snapshot(given):
    return json.dumps({"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [given]}, separators=(",", ":"))


def many(count, line):
    return "".join(line.format(number) for number in range(count))


SMALL_DEVICE = device([custom(number, ICCProfiles=profiles(3)) for number in range(10)])
GLOSS = option("QZGlossEnhancerSimplified", default="False")

# name: from a divisor, the PPD and the snapshot
INPUTS = {
    "command updaters, named again and again": lambda n: (HEAD + names(*["PDL"] * (300_000 // n)), device()),
    "media updaters, named again and again, no media": lambda n: (HEAD + media_types() + names(*["PS"] * (300_000 // n)), device()),
    "  with ten media": lambda n: (HEAD + media_types() + names(*["PCL3"] * (300_000 // n)), SMALL_DEVICE),
    "  with factory media": lambda n: (
        HEAD + QUALIFIERS + media_types() + GLOSS + PROFILE.format("False.Plain.Best") + FACTORY.format("False.Plain.Best") +
        names(*["PCL3Qualifier1"] * (200_000 // n)), device([factory("12", ICCProfiles=profiles(1))] * 10)),
    "  with gloss defaults to restore": lambda n: (
        HEAD + media_types() + GLOSS + many(100_000 // n, '*QZValueAttributes MediaType.M{}: "glossy=YES;defaultGE=1"\n') +
        names(*["PS"] * (100_000 // n)), device()),
    "  with a large store to read": lambda n: (HEAD + media_types() + names(*["PS"] * (1000 // n)), device([{}] * (1_000_000 // n))),
    "  with a long family name": lambda n: (
        HEAD + names(*["PDL"] * (1000 // n)), device(deviceFamilyName="MFG:" + "x" * (60 * MEBIBYTE // n))),
    "all updaters a hundred times": lambda n: (
        HEAD + languages(20) + QUALIFIERS + media_types() + GLOSS +
        names(*["PS", "PCL3", "PCL3Qualifier3", "PCL3Qualifier1", "Glossy", "PDL"] * (100 // n + 1)),
        device([custom(number, ICCProfiles=profiles(3), DefaultGlossEnhancer="FULLPAGE") for number in range(1000)])),
    "listed names x statements without a name": lambda n: (
        HEAD + names("PCL3") + "*: 1\n" * (500_000 // n) + '*QZMediaTypeGroup CustomMedia-category/C: "' +
        in_lines([f"C{number}" for number in range(700_000 // n)], ",\n") + '"\n*End\n', device()),
    "listed names of no bytes x profiles": lambda n: (
        HEAD + names("PCL3") + many(100_000 // n, PROFILE.format(".M{}.")) + '*QZMediaTypeGroup CustomMedia-category/C: "' +
        ",\n" * (1_000_000 // n) + '"\n*End\n', device()),
    "listed names of two bytes x profiles": lambda n: (
        HEAD + names("PCL3") + many(100_000 // n, PROFILE.format(".M{}.")) + '*QZMediaTypeGroup CustomMedia-category/C: "' +
        "M1,\nXX,\n" * (500_000 // n) + '"\n*End\n', device()),
    "languages x factory profiles": lambda n: (
        HEAD + languages(90_000 // n) + names("PCL3Qualifier3") + many(100_000 // n, FACTORY.format(".M{}.Best")), device()),
    "too many languages": lambda n: (HEAD + languages(1_000_000 // n) + media_types() + names("PCL3"), SMALL_DEVICE),
    "qualifier-1 media x factory profiles with refused names": lambda n: (
        HEAD + QUALIFIERS + media_types() + GLOSS + names("PCL3Qualifier1") +
        many(100_000 // n, '*QZcupsICCProfile True.Plain.M{}: "a:b;;/p"\n'),
        device([factory("12", ICCProfiles=profiles(1))] * (200_000 // n))),
    "  with good names": lambda n: (
        HEAD + QUALIFIERS + media_types() + GLOSS + names("PCL3Qualifier1") +
        many(100_000 // n, '*QZcupsICCProfile True.Plain.M{}: "P;;/p"\n'),
        device([factory("12", ICCProfiles=profiles(1))] * (200_000 // n))),
    "profiles of True x languages": lambda n: (
        HEAD + languages(90_000 // n) + QUALIFIERS + names("PCL3Qualifier1") + many(100_000 // n, PROFILE.format("True.M{}.Best")),
        device()),
    "factory statements of one spec x profiles": lambda n: (
        HEAD + names("PCL3") + PROFILE.format(".M.") * (150_000 // n) + FACTORY.format(".M.") * (150_000 // n), device()),
    "profiles of one spec x profiles of the device": lambda n: (
        HEAD + media_types() + names("PCL3") + PROFILE.format(".Plain.") * (250_000 // n),
        device([factory("12", ICCProfiles=profiles(700_000 // n))])),
    "media x groups": lambda n: (
        HEAD + names("PS") + many(150_000 // n, "*OpenGroup: G{0}/G\n*CloseGroup: G{0}/G\n") + media_types(),
        device([custom(number, DefaultGlossEnhancer="OFF") for number in range(400_000 // n)])),
    "media x options": lambda n: (
        HEAD + names("PS") + "*OpenGroup: G/G\n" + many(90_000 // n, "*OpenUI *O{0}: PickOne\n*DefaultO{0}: 1\n*CloseUI: *O{0}\n") +
        "*CloseGroup: G/G\n" + media_types(), device([custom(number, DefaultGlossEnhancer="OFF") for number in range(400_000 // n)])),
    "media x statements without a name": lambda n: (
        HEAD + names("PCL3") + "*: 1\n" * (1_500_000 // n) + media_types(),
        device([custom(number, ParentID="12", ICCProfiles=profiles(1)) for number in range(200_000 // n)])),
    "media x statements without a spec": lambda n: (
        HEAD + names("PCL3") + "*QZValueAttributes: 1\n" * (400_000 // n) + media_types(),
        device([custom(number, ParentID="12", ICCProfiles=profiles(1)) for number in range(200_000 // n)])),
    "choices x IDs of one byte": lambda n: (
        HEAD + names("PS") + media_types(many(300_000 // n, '*MediaType M{}/M: "abc"\n')),
        device([factory("x", DefaultGlossEnhancer="OFF")] * (500_000 // n))),
    "choices x IDs of two bytes": lambda n: (
        HEAD + names("PS") + media_types(many(300_000 // n, '*MediaType M{}/M: "abc"\n')),
        device([factory("ab" if number % 2 else "zz", DefaultGlossEnhancer="OFF") for number in range(500_000 // n)])),
    "choices x numbers for IDs": lambda n: (
        HEAD + names("PS") + media_types(many(500_000 // n, "*MediaType M{}/M: 1\n")),
        device([factory(12, DefaultGlossEnhancer="OFF")] * (500_000 // n))),
    "choices of the third qualifier x media": lambda n: (
        HEAD + QUALIFIERS + names("PCL3Qualifier3") + media_types() + option("OutputMode", many(300_000 // n, '*OutputMode M{}: ""\n')),
        device([factory("12", ICCProfiles=profiles(1))] * (200_000 // n))),
    "gloss defaults of many parts": lambda n: (
        HEAD + option("QZGlossEnhancer", default="x" * 200) + '*QZValueAttributes MediaType.M: "glossy=YES;' +
        "defaultGE;" * (900_000 // n) + '"\n' + names("PS", "PS", "PS"), device()),
    "an ID of 60 MiB": lambda n: (
        HEAD + names("PS") + media_types('*MediaType M/M: "aaaa"\n'), device([custom(1, MediumID="a" * (60 * MEBIBYTE // n))] )),
    "a profile name of 60 MiB": lambda n: (
        HEAD + names("PCL3") + media_types(), device([custom(1, ICCProfiles=profiles(1, "a" * (60 * MEBIBYTE // n)))])),
    "75,000 profiles in 30 languages": lambda n: (
        HEAD + languages(30) + names("PCL3") + media_types(), device([custom(1, ICCProfiles=profiles(600_000 // n))])),
    "1,000 media in 10,000 languages": lambda n: (
        HEAD + languages(10_000) + names("PS") + media_types(), device([custom(number) for number in range(8_000 // n)])),
    "a megabyte that each medium inherits": lambda n: (
        HEAD + names("PS") + media_types() + '*QZValueAttributes MediaType.Plain: "' + ("x" * 200 + "\n") * (40_000 // n) + '"\n',
        device([custom(number, ParentID="12") for number in range(20_000)])),
    "a list of numbers of 64 MiB": lambda n: (
        HEAD + names("PCL3") + media_types(), device([custom(1, ICCProfiles=[1] * (33_000_000 // n))])),
    "empty maps of 64 MiB": lambda n: (
        HEAD + names("PCL3") + media_types(), device([custom(1, ICCProfiles=[{}] * (22_000_000 // n))])),
    "a map of three million members": lambda n: (
        HEAD + names("PCL3") + media_types(), device([custom(1, **{f"m{number}": 1 for number in range(3_000_000 // n)})])),
    "one long language x profiles": lambda n: (
        HEAD + '*cupsLanguages: "' + long_value(9_000_000 // n) + '"\n*End\n' + media_types() + names("PCL3"),
        device([custom(1, ICCProfiles=profiles(20_000))])),
    "languages x media without the option": lambda n: (
        HEAD + languages(95_000 // n) + names("PS"), device([custom(number) for number in range(20_000)])),
    "languages behind the updaters, not quoted, x profiles": lambda n: (
        HEAD + names("PCL3") + "*cupsLanguages: x\n" + long_value(9_000_000 // n) + media_types(),
        device([custom(1, ICCProfiles=profiles(50_000))])),
    "a long factory profile x updaters": lambda n: (
        HEAD + '*QZcupsICCProfile .M./P: "P;;' + long_value(5_000_000 // n) + '"\n*End\n' + names(*["PCL3"] * 20_000), device()),
    "long properties x updaters": lambda n: (
        HEAD + '*QZValueAttributes MediaType.M: "' + long_value(5_000_000 // n, "d") + '"\n*End\n' + names(*["PS"] * 20_000), device()),
    "long properties x profiles": lambda n: (
        HEAD + QUALIFIERS + media_types() + '*QZValueAttributes MediaType.Plain: "' + long_value(9_000_000 // n, "g") + '"\n*End\n' +
        names("Glossy"), device([factory("12", ICCProfiles=profiles(50_000))])),
    "a long third qualifier x media": lambda n: (
        HEAD + '*cupsICCQualifier3: "' + long_value(9_000_000 // n) + '"\n*End\n' + media_types() + names("PCL3Qualifier3"),
        device([factory("12")] * 20_000)),
    "a long opposite profile x media": lambda n: (
        HEAD + QUALIFIERS + media_types() + '*QZcupsICCProfile True.Plain.X: "P;;' + long_value(9_000_000 // n) + '"\n*End\n' +
        names("PCL3Qualifier1"), device([factory("12", ICCProfiles=profiles(1))] * 20_000)),
    "a name of 60 MiB x languages": lambda n: (
        HEAD + languages(30) + names("PS") + media_types(), device([custom(1, Name=":" + "x" * (60 * MEBIBYTE // n))])),
    "an ID of 15 MiB x choices of the third qualifier": lambda n: (
        HEAD + QUALIFIERS + media_types() + option("OutputMode", many(100, '*OutputMode M{}: ""\n')) + names("PCL3Qualifier3"),
        device([factory("x" * (15 * MEBIBYTE // n))])),
    "line ends and further lines, and empty maps": lambda n: (
        HEAD + names("PCL3") + media_types() + "\n" * (5_990_000 // n) + '*A: "\n' + "a\n" * (1_900_000 // n),
        device([custom(1, ICCProfiles=[{}] * (3_900_000 // n))])),
    "line ends in a group": lambda n: (
        HEAD + names("PS") + "*OpenGroup: A/B\n" + "\n" * (9_900_000 // n) + "*CloseGroup: A\n", SMALL_DEVICE),
    "line ends": lambda n: ("\n" * (10_000_000 // n), ""),
    "twice as many line ends": lambda n: ("\n" * (20_000_000 // n), ""),
    "statements of four bytes": lambda n: ("*A:\n" * (2_500_000 // n), ""),
    "  with an updater": lambda n: (HEAD + names("PCL3") + "*A:\n" * (2_500_000 // n), SMALL_DEVICE),
    "statements of different names": lambda n: (HEAD + names("PCL3") + many(800_000 // n, "*A{}: 1\n"), SMALL_DEVICE),
    "profiles of different specs": lambda n: (HEAD + names("PCL3") + many(230_000 // n, PROFILE.format("True.M{}.Best")), SMALL_DEVICE),
    "further lines of a statement": lambda n: ("*A: \"\n" + "a\n" * (5_000_000 // n), ""),
    "options": lambda n: ("*OpenUI\n*CloseUI:\n" * (550_000 // n), ""),
    "groups": lambda n: ("*OpenGroup:\n*CloseGroup:\n" * (400_000 // n), ""),
    "choices of three bytes": lambda n: ("*OpenUI *A: PickOne\n" + "*A\n" * (3_300_000 // n), ""),
}


# In a small process: what a large one has taken would count as its child's memory.
MEASURE = """import resource, subprocess, sys
with open(sys.argv[1], "wb") as output:
    status = subprocess.run(sys.argv[2:], stdout=output, stderr=output).returncode
usage = resource.getrusage(resource.RUSAGE_CHILDREN)
print(status, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024)
"""


class Hostile:
    def __init__(self, options, folder):
        self.tool, self.folder, self.failed, self.passed = options.tool, folder, 0, 0
        self.environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir)}

    def run(self, ppd, device_snapshot):
        """Exit status, seconds of CPU, bytes of memory, bytes written."""
        paths = [self.folder / "hostile.ppd", self.folder / "hostile.json"]
        paths[0].write_bytes(ppd)
        paths[1].write_text(device_snapshot)
        environment = {**self.environment, "QZVORANTISMODEL_SNAPSHOT": str(paths[1]) if device_snapshot else ""}
        with tempfile.NamedTemporaryFile() as output:
            command = [sys.executable, "-c", MEASURE, output.name, self.tool, URI, str(paths[0])]
            result = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=True)
            status, seconds, memory = result.stdout.split()
            return int(status), float(seconds), int(memory), os.path.getsize(output.name)

    def row(self, name, ppd, device_snapshot):
        status, seconds, memory, written = self.run(ppd, device_snapshot)
        good = (status == 0 and written > 0) or (status == 1 and written == 0)
        good = good and seconds < SECONDS and memory < BYTES
        self.passed += good
        self.failed += not good
        print(f"{'passed' if good else 'FAILED'}  {name:58} {len(ppd) / 1e6:7.2f} {len(device_snapshot) / 1e6:7.2f} {status:4} "
              f"{seconds:7.2f} {memory / 1e6:8.0f} {written / 1e6:8.1f}", flush=True)

    def table(self, only):
        print(f"{'':8}{'input':58} {'PPD, MB':>7} {'device':>7} {'exit':>4} {'seconds':>7} {'memory':>8} {'result':>8}")
        for name, make in INPUTS.items():
            for divisor in SIZES if only in name else ():
                ppd, device_snapshot = make(divisor)
                self.row(name, ppd.encode(), device_snapshot)
        if not only:
            ppd, device_snapshot = INPUTS["command updaters, named again and again"](1)
            self.row("the first one in gzip", gzip.compress(ppd.encode(), mtime=0), device_snapshot)
            self.row("60 million lines in gzip", gzip.compress(b'*A: "\n' + b"a\n" * 60_000_000, 1, mtime=0), device_snapshot)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    parser.add_argument("--only", default="", help="inputs whose name contains this")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        hostile = Hostile(options, pathlib.Path(folder))
        hostile.table(options.only)
    print(f"{hostile.passed} passed, {hostile.failed} failed")
    return 1 if hostile.failed else 0


if __name__ == "__main__":
    sys.exit(main())
