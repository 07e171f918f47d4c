#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Edits PPDs at random, a little each, and asks libcups itself whether the report on each tells the truth.

For each edited PPD the program that explains a run makes its report and the result. Then
- a result that libcups refuses has the verdict "refused", with libcups' own words and line, and no other result has it;
- the verdict is "good" only when libcups opens the result;
- the report comes in time, with exit status 0 or 1, and is JSON.

The PPDs are those of the examples, with their devices, and, with --ppds, those of a folder, with the devices of the
examples in turn. The same seed makes the same edits. What fails stays in a folder that is named at the end.
"""
import argparse
import ctypes
import ctypes.util
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
LONGEST = 60  # seconds for a report

# What is put in: what means something in a PPD, and what nobody expects.
PIECES = [b"\"", b":", b"/", b"*", b" ", b"\n", b"\r", b"\t", b"\0", b"%", b"<", b"\xe4", b"\xc3\xa4", b"\xef\xbb\xbf", b"x" * 300,
          b"*End\n", b"*OpenGroup: Other/Other\n", b"*CloseGroup: Other\n", b"*OpenUI *Other/Other: PickOne\n", b"*CloseUI: *Other\n",
          b"*OpenSubGroup: Sub\n", b"*JCLOpenUI *Other/Other: PickOne\n", b"*JCLCloseUI: *Other\n",
          b"*OrderDependency: 10 AnySetup\n", b"*OrderDependency: 10 AnySetup *MediaType\n", b"*UIConstraints: *PageSize A4\n",
          b"*UIConstraints: *PageSize *MediaType\n", b"*NonUIConstraints: *A\n", b"*ParamCustomPageSize Width: 1 points\n",
          b"*CustomPageSize True: \"pop\"\n", b"*ParamCustomMediaType A: 1 string 1\n", b"*PPD-Adobe: \"4.3\"\n",
          b"*PPD-Adobe: \"5.0\"\n", b"*Include: \"x\"\n", b"*A/B: \"c\"\n", b"*" + b"k" * 45 + b": 1\n", b"*" + b"k" * 45 + b"\n",
          b"*%APLWORKSET START\n", b"*DefaultPageSize: Gone\n", b"*cupsUIResolver c: \"*A b\"\n", b"stray\n", b"*Emulators: a b\n",
          b"*JobPatchFile 1: \"x\"\n", b"*JobPatchFile: \"x\"\n", b"*cupsMarkerName x: \"y\"\n", b"*cupsFilter: \"x\"\n", b"*HWMargins: 1\n",
          b"*VariablePaperSize: True\n", b"*ColorDevice: Maybe\n", b"*LanguageEncoding: None\n"]


def lines_of(data):
    return data.splitlines(keepends=True) or [b""]


def edit_bytes(data, chance):
    place = chance.randrange(len(data) + 1)
    kind = chance.randrange(4)
    if kind == 0:
        return data[:place] + chance.choice(PIECES) + data[place:]
    if kind == 1:
        return data[:place] + data[place + chance.randint(1, 3):]
    if kind == 2:
        return data[:place] + bytes([chance.randrange(256)]) + data[place + 1:]
    return data[:place] + data[place:place + 1].swapcase() + data[place + 1:]


def edit_lines(data, chance):
    lines = lines_of(data)
    place, other = chance.randrange(len(lines)), chance.randrange(len(lines))
    kind = chance.randrange(6)
    if kind == 0:
        del lines[place]
    elif kind == 1:
        lines.insert(other, lines[place])
    elif kind == 2:
        lines.insert(other, lines.pop(place))
    elif kind == 3:
        lines.insert(place, chance.choice(PIECES))
    elif kind == 4:
        lines[place] = lines[place].rstrip(b"\r\n")
    else:
        word = chance.choice(lines[place].split() or [b""])
        lines[place] = lines[place].replace(word, b"", 1)
    return b"".join(lines)


def edited(data, chance):
    for _ in range(chance.randint(1, 3)):
        data = chance.choice([edit_bytes, edit_lines])(data, chance)
    if chance.random() < 0.02:
        data = data[:chance.randrange(len(data) + 1)]
    return data


def answer_as_libcups():
    """The process that opens PPDs: of each path on a line, "opened", or "refused LINE WORDS"."""
    cups = ctypes.CDLL(ctypes.util.find_library("cups"))
    cups.ppdOpenFile.restype = ctypes.c_void_p
    cups.ppdClose.argtypes = [ctypes.c_void_p]
    cups.ppdErrorString.restype = ctypes.c_char_p
    for path in sys.stdin:
        ppd = cups.ppdOpenFile(path.strip().encode())
        line = ctypes.c_int()
        status = cups.ppdLastError(ctypes.byref(line))
        if ppd:
            cups.ppdClose(ppd)
        print("opened" if ppd else f"refused {line.value} {cups.ppdErrorString(status).decode()}", flush=True)


class LibCUPS:
    """libcups, in a process that is started again after a crash."""

    def __init__(self):
        self.process = None

    def says(self, path):
        """As above, or "failed"."""
        if self.process is None or self.process.poll() is not None:
            environment = {**os.environ, "LC_ALL": "C", "LANG": "en", "SOFTWARE": "CUPS"}
            self.process = subprocess.Popen([sys.executable, __file__, "--libcups"], stdin=subprocess.PIPE,  # pylint: disable=consider-using-with
                                            stdout=subprocess.PIPE, text=True, env=environment)
        try:
            self.process.stdin.write(f"{path}\n")
            self.process.stdin.flush()
            answer = self.process.stdout.readline().strip()
        except BrokenPipeError:
            answer = ""
        if answer:
            return answer
        self.process.wait()
        return "failed"

    def end(self):
        if self.process is not None:
            self.process.stdin.close()
            self.process.stdout.close()
            self.process.wait()


class Explainer:
    def __init__(self, options, folder):
        self.options, self.folder = options, folder
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("QZVORANTISMODEL_")}
        self.environment.update({"LC_ALL": "C.UTF-8", "LD_LIBRARY_PATH": options.library_dir})

    def report(self, ppd, snapshot):
        """The exit status, the report or what came instead of it, and the result's path."""
        result = self.folder / "result.ppd"
        result.unlink(missing_ok=True)
        environment = {**self.environment, "QZVORANTISMODEL_SNAPSHOT": str(snapshot)}
        run = subprocess.run([self.options.explain, "--format=json", f"--output={result}", URI, str(ppd)],
                             capture_output=True, env=environment, stdin=subprocess.DEVNULL, timeout=LONGEST, check=False)
        try:
            return run.returncode, json.loads(run.stdout), result
        except ValueError:
            return run.returncode, (run.stdout + run.stderr).decode(errors="replace"), result


def faults(status, report, said):
    """`said`: of libcups, or None when nothing was written."""
    if status not in (0, 1) or not isinstance(report, dict):
        return [f"exit status {status}: {str(report)[-300:]}"]
    colour = report["verdict"]["colour"]
    if said is None:
        return [] if status == 1 and colour == "bad" else [f"nothing is written, exit status {status}, verdict {colour}"]
    wrong = []
    if said != "opened" and colour == "good":
        wrong.append(f"libcups {said}, the verdict is good")
    if said.startswith("refused") != (colour == "refused"):
        wrong.append(f"libcups {said}, the verdict is {colour}")
    told = report["CUPS"]["refusal"]
    if said.startswith("refused") and (told is None or f"refused {told['line']} {told['words']}" != said):
        wrong.append(f"libcups {said}, the report says {told}")
    return wrong


def device_of(example, folder):
    """A device like the example's with nothing to warn of: without profiles, whose files are not here."""
    snapshot = json.loads((example / "snapshot.json").read_text())
    for device in snapshot["devices"]:
        for medium in device.get("dataStore", {}).get("VMCustomMediaStorage", {}).get("MediaInfo", {}).values():
            medium.update(ICCProfiles=[], Name=medium["Name"].replace(":", ""))
    path = folder / f"{example.name}.json"
    path.write_text(json.dumps(snapshot))
    return path


def sources(options, folder):
    """Pairs of PPD and snapshot."""
    folders = [each for each in sorted(pathlib.Path(options.examples).iterdir()) if (each / "input.ppd").exists()]
    examples = [(each / "input.ppd", each / "snapshot.json") for each in folders]
    examples += [(each / "input.ppd", device_of(each, folder)) for each in folders]
    others = sorted(pathlib.Path(options.ppds).glob("*.ppd")) if options.ppds else []
    return examples + [(ppd, examples[index % len(examples)][1]) for index, ppd in enumerate(others)]


def run(options, folder):
    chance = random.Random(options.seed)
    all_sources = [(ppd.read_bytes(), ppd, snapshot) for ppd, snapshot in sources(options, folder)]
    explainer, libcups = Explainer(options, folder), LibCUPS()
    counts = {"written": 0, "refused": 0, "good": 0}
    failed = 0
    for number in range(options.count):
        data, origin, snapshot = chance.choice(all_sources)
        ppd = folder / "input.ppd"
        ppd.write_bytes(edited(data, chance))
        status, report, result = explainer.report(ppd, snapshot)
        said = libcups.says(result) if result.exists() else None
        counts["written"] += said is not None
        counts["refused"] += said is not None and said != "opened"
        counts["good"] += isinstance(report, dict) and report["verdict"]["colour"] == "good"
        wrong = faults(status, report, said)
        if wrong:
            failed += 1
            kept = pathlib.Path(tempfile.gettempdir()) / f"edit-{options.seed}-{number}.ppd"
            shutil.copyfile(ppd, kept)
            print(f"edit {number} of {origin.parent.name}/{origin.name}, kept as {kept}:", *wrong, sep="\n  ")
    libcups.end()
    print(f"{options.count} edits: {counts['written']} results, of which libcups refuses {counts['refused']}; {counts['good']} verdicts "
          f"good; {failed} reports that are wrong")
    return failed == 0 and counts["refused"] > 0 and counts["good"] > 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--explain", help="vorantis-autosetup-explain")
    parser.add_argument("--library-dir", help="the folder of the stored device-model library")
    parser.add_argument("--examples", help="folder of example folders, each with input.ppd and snapshot.json")
    parser.add_argument("--ppds", help="folder of more PPDs")
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--libcups", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.libcups:
        answer_as_libcups()
        return
    with tempfile.TemporaryDirectory() as folder:
        sys.exit(0 if run(options, pathlib.Path(folder)) else 1)


main()
