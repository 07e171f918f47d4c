#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures whole runs of the tool and prints the figures that the project watches.

  floor   on a PPD of 300 KB that names no updaters, the tool's time and instructions over those of a program that only
          reads the file with the CUPS reader and writes it back; and what each further byte costs, start-up subtracted,
          over what it costs libcups' ppdOpenFile; and the memory above the floor program's
  setup   on a PPD of 200 KB, for a device of real size (50 media, 10 languages) and a large one (200 media, 20
          languages), with 3 profiles for each medium, the tool's instructions over those that ppdOpenFile spends on
          reading the result once, for a first setup and for one on its result; and the memory above the floor program's
  growth  the exponent with which instructions grow in lines, media, profiles, languages, groups, options, choices,
          statements and in what an earlier setup left, from runs of three sizes each (1 is proportional); a quadratic
          share of a tenth at the largest size shows as 1.04

Times are the smallest of many runs that take turns with those they are compared with. Instructions are counted with
valgrind's callgrind and are the same in each run. The benchmark measures and never fails.
"""
import argparse
import json
import math
import os
import pathlib
import re
import subprocess
import tempfile

URI = "socket://192.0.2.10:9100"
LANGUAGES = "en de fr it es pt nl da sv fi no pl cs hu ru tr ja ko zh_CN zh_TW"
FACTORY = """*PPD-Adobe: "4.3"
*ModelName: "Z9"
*cupsLanguages: "{languages}
*QZPPDUpdaters: "{updater}"
*cupsICCQualifier1: "QZGlossEnhancerSimplified"
*cupsICCQualifier3: "OutputMode"
*QZValueAttributes MediaType.Plain: "glossy=YES;defaultGE='False'"
{statements}*OpenGroup: QZImagingOptions/Imaging Options
*OpenUI *MediaType/Media Type: PickOne
*DefaultMediaType: Plain
*MediaType Plain/Plain: "(factory-1001)"
{choices}*CloseUI: *MediaType
*OpenUI *QZGlossEnhancerSimplified/Gloss: Boolean
*DefaultQZGlossEnhancerSimplified: False
*CloseUI: *QZGlossEnhancerSimplified
*CloseGroup: QZImagingOptions
"""


UPDATERS = {
    "PostScript": "ATMediaTypePSPPDUpdater",
    "PCL3": "ATMediaTypePCL3PPDUpdater",
    "third qualifier": "ATMediaTypePCL3Qualifier3PPDUpdater",
    "first qualifier": "ATMediaTypePCL3Qualifier1PPDUpdater",
    "glossy": "ATGlossyProfilePCL3PPDUpdater",
}


class Bench:
    def __init__(self, options, folder):
        self.options = options
        self.folder = folder
        self.environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir)}

    def measure(self, runs, *commands, snapshot=None):
        """For each command: smallest wall time, median, smallest processor time (seconds), largest size (bytes)."""
        line = [str(self.options.measure), str(runs)]
        for index, command in enumerate(commands):
            line += (["--"] if index else []) + [str(word) for word in command]
        environment = {**self.environment, **({"QZVORANTISMODEL_SNAPSHOT": str(snapshot)} if snapshot else {})}
        output = subprocess.run(line, env=environment, stdout=subprocess.PIPE, check=True, text=True).stdout
        rows = [[float(word) for word in row.split()] for row in output.splitlines()]
        return [(row[0] / 1e6, row[1] / 1e6, row[2] / 1e6, row[3] * 1024) for row in rows]

    def tool(self, ppd):
        return [self.options.tool, URI, ppd]

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text)
        return path

    def floor(self):
        ppd = self.write("large.ppd", plain_ppd(300_000))
        empty = self.write("empty.ppd", "")
        size = ppd.stat().st_size
        small = self.write("small.ppd", plain_ppd(1_000))
        floor, tool, libcups, floor0, tool0, libcups0 = self.measure(
            self.options.runs, [self.options.floor, ppd], self.tool(ppd), [self.options.ppdopenfile, ppd],
            [self.options.floor, empty], self.tool(empty), [self.options.ppdopenfile, small])
        print(f"a PPD of {size} bytes that names no updaters, smallest of {self.options.runs} runs:")
        for name, whole, start in (("floor program", floor, floor0), ("tool", tool, tool0),
                                   ("ppdOpenFile", libcups, libcups0)):
            per_byte = (whole[0] - start[0]) / size * 1e9
            print(f"  {name:14} {whole[0] * 1e3:7.2f} ms  median {whole[1] * 1e3:7.2f} ms  processor {whole[2] * 1e3:6.2f} ms"
                  f"  start-up {start[0] * 1e3:5.2f} ms  each byte {per_byte:5.2f} ns")
        print(f"  time, tool / floor program: {tool[0] / floor[0]:.3f} (medians {tool[1] / floor[1]:.3f})")
        print(f"  time, tool / ppdOpenFile: {tool[0] / libcups[0]:.3f}")
        print(f"  time of each byte, tool / ppdOpenFile: {(tool[0] - tool0[0]) / (libcups[0] - libcups0[0]):.3f}")
        counted = [self.instructions(command) for command in (
            [self.options.floor, ppd], self.tool(ppd), [self.options.ppdopenfile, ppd], self.tool(empty),
            [self.options.ppdopenfile, small])]
        print(f"  instructions, tool / floor program: {counted[1] / counted[0]:.3f}")
        print(f"  instructions of each byte, tool / ppdOpenFile: "
              f"{(counted[1] - counted[3]) / (counted[2] - counted[4]):.3f}")
        print(f"  memory above the floor program: {(tool[3] - floor[3]) / size:.2f} times the PPD's size")

    def instructions(self, command, snapshot=None):
        """How many instructions one run takes."""
        environment = {**self.environment, **({"QZVORANTISMODEL_SNAPSHOT": str(snapshot)} if snapshot else {})}
        counts = self.folder / "callgrind.out"
        line = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={counts}", *map(str, command)]
        subprocess.run(line, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        return int(re.search(r"^summary: (\d+)", counts.read_text(), re.MULTILINE).group(1))

    def setups(self, media, languages):
        print(f"setups of {media} media with 3 profiles (none for PostScript) and {languages} languages:")
        for name, updater in UPDATERS.items():
            profiles = 0 if name == "PostScript" else 3
            ppd, snapshot = self.setup(updater, media, profiles, plain=200_000, languages=languages)
            once = [self.figures(ppd, snapshot)]
            again, _ = self.setup(updater, media, profiles, plain=200_000, languages=languages, twice=True)
            libcups = self.instructions([self.options.ppdopenfile, again])
            size = again.stat().st_size
            once.append(self.figures(again, snapshot))
            (first, memory), (second, memory_again) = once
            print(f"  {name:16} result {size} bytes   instructions / ppdOpenFile of the result {first / libcups:.2f}, again "
                  f"{second / libcups:.2f}   memory above the floor / result {memory / size:.1f}, again {memory_again / size:.1f}",
                  flush=True)

    def figures(self, ppd, snapshot):
        """Instructions of a run, and its memory above the floor program's."""
        floor = self.measure(20, [self.options.floor, ppd])[0][3]
        return self.instructions(self.tool(ppd), snapshot), self.measure(20, self.tool(ppd), snapshot=snapshot)[0][3] - floor

    def growth(self, name, sizes, make):
        """Prints the instructions for the sizes, and the exponent fitted to those above start-up."""
        start = self.instructions(self.tool(self.write("start.ppd", "")))
        points = []
        for size in sizes:
            ppd, snapshot = make(size)
            points.append((size, self.instructions(self.tool(ppd), snapshot) - start))
        counts = ", ".join(f"{size}: {count / 1e6:.0f}" for size, count in points)
        print(f"  {name:44} exponent {fitted_exponent(points):.2f}   millions {counts}", flush=True)

    def setup(self, updater, media, profiles=0, twice=False, statements="", plain=0, languages=20, choices=0):
        """A PPD and a snapshot with so many media; twice: the PPD is the result of an earlier setup; plain: how many
        bytes of other statements the PPD has."""
        listed = LANGUAGES.split()[:languages] + [f"l{number}" for number in range(20, languages)]
        lines = "\n".join(" ".join(listed[start:start + 20]) for start in range(0, len(listed), 20))
        more = "".join(f'*MediaType M{number}/M: "(factory-M{number})"\n' for number in range(choices))
        factory = FACTORY.format(languages=lines + ('"\n*End' if len(listed) > 20 else '"'), updater=updater, statements=statements, choices=more)
        factory += plain_ppd(plain).split("\n", maxsplit=4)[4] if plain else ""
        ppd = self.write("setup.ppd", factory)
        snapshot = self.write("setup.json", json.dumps(snapshot_of(media, profiles)))
        if twice:
            environment = {**self.environment, "QZVORANTISMODEL_SNAPSHOT": str(snapshot)}
            result = subprocess.run(self.tool(ppd), env=environment, stdout=subprocess.PIPE, check=True).stdout
            ppd = self.folder / "again.ppd"
            ppd.write_bytes(result)
        return ppd, snapshot


def plain_ppd(size):
    """A PPD of about this size: option blocks, constraints and comments in the proportions of a real one."""
    parts = ['*PPD-Adobe: "4.3"\n*ModelName: "Z9"\n*LanguageEncoding: ISOLatin1\n*LanguageVersion: English\n']
    length = len(parts[0])
    option = 0
    while length < size:
        lines = [f"*OpenUI *Feature{option}/Feature {option}: PickOne\n", f"*OrderDependency: {option} AnySetup *Feature{option}\n",
                 f"*DefaultFeature{option}: Choice0\n"]
        lines += [f'*Feature{option} Choice{i}/Choice number {i}: "<</Feature({i})>>setpagedevice"\n' for i in range(20)]
        lines += [f"*CloseUI: *Feature{option}\n", f"*% Constraints of feature {option}\n"]
        lines += [f"*UIConstraints: *Feature{option} Choice{i} *Feature0 Choice{i}\n" for i in range(12)]
        parts.append("".join(lines))
        length += len(parts[-1])
        option += 1
    return "".join(parts)


def snapshot_of(media, profiles):
    items = {}
    for number in range(media):
        entries = [{"URL": f"file:///p/{number}-{index}.icc", "ICCName": f"Profile {index}",
                    "GlossEnhancer": ("OFF", "FULLPAGE", "INKEDAREA")[index % 3], "OutputMode": f"Mode{index}"}
                   for index in range(profiles)]
        items[f"m{number}"] = {"Name": f"Medium {number}", "MediumID": f"id-{number}", "CategoryName": "Custom",
                               "CategoryID": "CUSTOM", "ICCProfiles": entries, "ParentID": "factory-1001",
                               "PropertiesInfo": {"DefaultGlossEnhancer": "FULLPAGE"}}
    device = {"dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "1", "MediaInfo": items}}}
    return {"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [device]}


def fitted_exponent(points):
    xs = [math.log(size) for size, _ in points]
    ys = [math.log(count) for _, count in points]
    mean_x, mean_y = sum(xs) / len(xs), sum(ys) / len(ys)
    return sum((x - mean_x) * (y - mean_y) for x, y in zip(xs, ys)) / sum((x - mean_x) ** 2 for x in xs)


def groups(count):
    return "".join(f"*OpenGroup: G{i}/G\n*CloseGroup: G{i}/G\n" for i in range(count))


def options_of_a_group(count):
    options = "".join(f"*OpenUI *O{i}/O: PickOne\n*DefaultO{i}: A\n*O{i} A/A: \"\"\n*CloseUI: *O{i}\n" for i in range(count))
    return f"*OpenGroup: G/G\n{options}*CloseGroup: G/G\n"


def factory_statements(count):
    return "".join(f'*cupsICCProfile False.M{i}.Best/P {i}: "/p/{i}.icc"\n*QZcupsICCProfile False.M{i}.Best/P {i}: "P {i};;/p/{i}.icc"\n'
                   for i in range(count))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    for name in ("tool", "floor", "ppdopenfile", "measure", "library-dir"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--runs", type=int, default=300)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        bench = Bench(options, pathlib.Path(folder))
        bench.floor()
        bench.setups(50, 10)
        bench.setups(200, 20)
        print("growth (the tool's instructions above start-up):")
        bench.growth("lines, no updaters", (10_000, 20_000, 40_000),
                     lambda n: (bench.write("lines.ppd", plain_ppd(n * 43)), None))
        media = (500, 1000, 2000)
        for name, updater in UPDATERS.items():
            profiles = 0 if name == "PostScript" else 3
            bench.growth(f"media, {name}", media, lambda n, u=updater, p=profiles: bench.setup(u, n, p))
            bench.growth(f"media on an earlier setup, {name}", media, lambda n, u=updater, p=profiles: bench.setup(u, n, p, twice=True))
        pcl3 = UPDATERS["PCL3"]
        bench.growth("profiles of 50 media", (10, 20, 40), lambda n: bench.setup(pcl3, 50, n))
        bench.growth("languages, 200 media", (25, 50, 100), lambda n: bench.setup(pcl3, 200, 3, languages=n))
        bench.growth("media and groups", media, lambda n: bench.setup(pcl3, n, 3, statements=groups(n)))
        bench.growth("media and options", media, lambda n: bench.setup(pcl3, n, 3, statements=options_of_a_group(n)))
        bench.growth("media and choices", media, lambda n: bench.setup(pcl3, n, 3, choices=n))
        bench.growth("media and statements", media, lambda n: bench.setup(pcl3, n, 3, statements=factory_statements(n)))
        bench.growth("factory profile statements, first qualifier", (1000, 2000, 4000),
                     lambda n: bench.setup(UPDATERS["first qualifier"], 1, 1, statements=factory_statements(n)))


if __name__ == "__main__":
    main()
