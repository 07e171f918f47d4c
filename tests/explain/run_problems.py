#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs problems that a support engineer meets through the program that explains a run, as text and as JSON.

A problem folder is named after the problem and holds input.ppd, snapshot.json when there is a device, and problem.json:
    learn          what a support engineer must learn from the report, in a sentence
    arguments      of the program, "@PPD" for the path of input.ppd and "@FOLDER" for that of the folder; default: the
                   URI socket://192.0.2.10:9100 and the PPD
    environment    variables to set, or with null to unset; default: the snapshot, when the folder has one
    library        "stored" (the default), "none", "broken" (a file that is no shared object), or "foreign" (a shared
                   object that is no device-model library)
    make           what is made of the folder's files for the run: a function of this program
    status         the exit status, 0 or 1
    colour         of the verdict: "good", "odd" or "bad"
    warnings       exactly those that are told: code and count
    media          of the verdict: null; its counts, of which those that stand here must be so; or "nothing" for null
                   or zeros
    firstScreen    what must stand in the first 24 lines of the text; of a list, one
    notAnywhere    what must stand nowhere in the text
    inInput        the codes whose warnings must all be marked as in the PPD already
    restored       the specs that all updaters together must say that they restored
    longestReport  how many lines the text may have

Each folder is copied to a temporary one of a short path first, so that no line is broken inside a path.
"""
import argparse
import dataclasses
import gzip
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import json_schema  # pylint: disable=wrong-import-position

URI = "socket://192.0.2.10:9100"
FIRST_SCREEN = 24
WIDTH = 80
LIBRARY = "libQZVorantisModel.so.1"

# The codes in the order of the program's own table.
TABLE = pathlib.Path(__file__).resolve().parents[2] / "explain/report/WarningCode.cpp"
GRAVITY = {code: place for place, code in enumerate(re.findall(r'\{Code::\w+,\s*"([a-z0-9-]+)"', TABLE.read_text()))}

# Those that are always about a medium, which they name.
OF_A_MEDIUM = {"medium-left-out", "record-incomplete", "category-unknown", "id-not-found", "id-inside-code",
               "profile-list-failed", "profile-skipped", "choice-not-written", "name-not-shown", "postscript-string",
               "profile-leaves-folder", "profile-elsewhere", "profile-missing", "profile-no-file", "profile-no-icc"}

# Control characters but the line feed, and characters that turn the direction of text or are invisible.
FORBIDDEN = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff]")


def make_gzip_cut_off(folder):
    """Without compression, so that every library reads the same part: all but the end of the last line."""
    ppd = folder / "input.ppd"
    trailer, cut = 8, 30
    ppd.write_bytes(gzip.compress(ppd.read_bytes(), 0, mtime=0)[:-trailer - cut])


def make_gzip_damaged(folder):
    """The header of a gzip file, and a first block of a kind that there is not."""
    ppd = folder / "input.ppd"
    header = 10
    packed = gzip.compress(ppd.read_bytes(), 0, mtime=0)
    ppd.write_bytes(packed[:header] + b"\xff" + packed[header + 1:])


def make_300_media(folder):
    """A device with 300 custom media, each with a profile of its own whose file is not here."""
    media = {}
    for number in range(1, 301):
        profile = {"ICCName": f"Medium {number}", "URL": f"file:///no/such/profiles/{number}.icc"}
        media[f"medium-{number}"] = {"Name": f"Medium {number}", "MediumID": f"{9000 + number}",
                                     "CategoryName": "Custom", "CategoryID": "CUSTOM", "ICCProfiles": [profile]}
    store = {"VMCustomMediaStorage": {"MediumListVersion": "7", "MediaInfo": media}}
    snapshot = {"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [{"uri": URI, "dataStore": store}]}
    (folder / "snapshot.json").write_text(json.dumps(snapshot))


MAKERS = {"gzip cut off": make_gzip_cut_off, "gzip damaged": make_gzip_damaged, "300 media": make_300_media}


@dataclasses.dataclass
class Result:
    status: int
    output: bytes
    errors: bytes

    @property
    def text(self):
        return self.output.decode(errors="replace")


def folded(text):
    return " ".join(text.split())


def word(code):
    """Matches the code, but not inside a longer one."""
    return rf"(?<![\w-]){re.escape(code)}(?![\w-])"


def show(text):
    """To a terminal, of which nothing is known and which the text must not turn round."""
    print(text.encode("ascii", "backslashreplace").decode())


def check(what, expected, actual):
    return [] if expected == actual else [f"{what}: expected {expected!r}, came {actual!r}"]


class Problem:
    """A problem's copy, and the calls of the program for it."""

    def __init__(self, folder, copy, options):
        self.folder, self.options = copy, options
        self.data = json.loads((folder / "problem.json").read_text())
        for file in folder.iterdir():
            if file.name != "problem.json":
                shutil.copyfile(file, copy / file.name)
        if "make" in self.data:
            MAKERS[self.data["make"]](copy)

    def filled_in(self, text):
        return text.replace("@PPD", str(self.folder / "input.ppd")).replace("@FOLDER", str(self.folder))

    def library_dir(self, beside):
        """Where the dynamic loader looks first; `beside` is an empty folder."""
        kind = self.data.get("library", "stored")
        if kind == "stored":
            return self.options.library_dir
        if kind == "broken":
            (beside / LIBRARY).write_text("This is no shared object, but a text.\n" * 99)
        elif kind == "foreign":
            shutil.copyfile(self.options.foreign_library, beside / LIBRARY)
        elif kind != "none":
            raise ValueError(f"no such library: {kind}")
        return beside

    def environment(self, beside):
        environment = {name: value for name, value in os.environ.items() if not name.startswith("QZVORANTISMODEL_")}
        for name in ("COLUMNS", "PAGER", "LESS", "LANG", "LANGUAGE"):
            environment.pop(name, None)
        environment.update({"LC_ALL": "C.UTF-8", "LD_LIBRARY_PATH": str(self.library_dir(beside))})
        if (self.folder / "snapshot.json").exists():
            environment["QZVORANTISMODEL_SNAPSHOT"] = str(self.folder / "snapshot.json")
        for name, value in self.data.get("environment", {}).items():
            environment.pop(name, None)
            if value is not None:
                environment[name] = self.filled_in(value)
        return environment

    def call(self, *more):
        arguments = [self.filled_in(each) for each in self.data.get("arguments", [URI, "@PPD"])]
        with tempfile.TemporaryDirectory() as beside:
            result = subprocess.run([str(self.options.explain), *more, "--", *arguments], capture_output=True,
                                    env=self.environment(pathlib.Path(beside)), stdin=subprocess.DEVNULL, timeout=60,
                                    check=False)
        return Result(result.returncode, result.stdout, result.stderr)


class Checks:
    """What is wrong with the reports on one problem, in words."""

    def __init__(self, problem, schema):
        self.problem, self.expected, self.schema = problem, problem.data, schema
        self.wrong = []

    def run(self):
        as_json = self.problem.call("--format=json")
        self.status("JSON", as_json, self.expected["status"])
        self.characters("JSON", as_json)
        strict = self.expected["status"] == 0
        as_text = self.problem.call("--format=text", *(["--strict"] if strict else []))
        self.status("text", as_text, 3 if strict and self.expected["warnings"] else self.expected["status"])
        self.characters("text", as_text)
        self.text(as_text.text)
        try:
            report = json.loads(as_json.output)
        except ValueError as error:
            self.wrong.append(f"the JSON report is no JSON: {error}")
        else:
            self.json(report)
        self.wrong = list(dict.fromkeys(self.wrong))  # 300 media have the same fault once
        if self.wrong:
            screen = as_text.text.split("\n")[:FIRST_SCREEN]
            self.wrong.append("first screen:\n" + "".join(f"    {line}\n" for line in screen))
        return self.wrong

    def expect(self, holds, otherwise):
        if not holds:
            self.wrong.append(otherwise)

    def status(self, what, result, expected):
        self.wrong += check(f"exit status ({what})", expected, result.status)
        self.wrong += check(f"standard error ({what})", b"", result.errors)

    def characters(self, what, result):
        for stream, written in (("standard output", result.output), ("standard error", result.errors)):
            try:
                found = sorted(set(FORBIDDEN.findall(written.decode())))
            except UnicodeDecodeError as error:
                self.wrong.append(f"{stream} ({what}) is not UTF-8: {error}")
            else:
                self.expect(not found, f"{stream} ({what}) holds {', '.join(f'U+{ord(each):04X}' for each in found)}")

    # The text

    def text(self, text):
        lines = text.removesuffix("\n").split("\n")
        screen = folded("\n".join(lines[:FIRST_SCREEN]))
        for wanted in self.expected["firstScreen"]:
            choices = wanted if isinstance(wanted, list) else [wanted]
            holds = any(folded(each) in screen for each in choices)
            self.expect(holds, f"not on the first screen: {' or '.join(choices)}")
        for unwanted in self.expected.get("notAnywhere", []):
            self.expect(unwanted not in folded(text), f"in the text, which must not be: {unwanted}")
        wide = [line for line in lines if len(line) > WIDTH]
        self.expect(not wide, f"lines of more than {WIDTH} columns: {wide[:3]!r}")
        longest = self.expected.get("longestReport", len(lines))
        self.expect(len(lines) <= longest, f"a report of {len(lines)} lines, not {longest} at most")
        self.verdict_in(lines)
        self.warnings_in(text)

    def verdict_in(self, lines):
        """The fields, in their order, and each code with its count when it is told more than once."""
        head = lines[:lines.index("")] if "" in lines else lines
        fields = [line.split()[0] for line in head if line and not line.startswith(" ")]
        expected = ["Result", "Media", "Warnings", "Device", "PPD"]
        optional = {"Media"} if self.expected["media"] in (None, "nothing") else set()
        optional |= set() if self.expected["warnings"] else {"Warnings"}
        required = [field for field in expected if field not in optional]
        self.wrong += check("fields", required, [field for field in fields if field in required])
        self.wrong += check("first field", "Result", fields[0] if fields else "")
        verdict = folded(" ".join(head))
        for code, count in self.expected["warnings"].items():
            told = rf"\b{count}\W+{word(code)}|{word(code)}\W+{count}\b" if count > 1 else word(code)
            self.expect(re.search(told, verdict), f"not in the verdict: {count} {code}")

    def warnings_in(self, text):
        """Each code that is expected and no other, behind the verdict, the gravest first."""
        behind = text.partition("\n\n")[2]
        places = {code: match.start() for code in GRAVITY if (match := re.search(word(code), behind))}
        self.wrong += check("codes in the text", sorted(self.expected["warnings"]), sorted(places))
        self.order_in_text = sorted(places, key=places.get)

    def gravest_first(self, warnings):
        """Groups of a cause and what follows from it: the cause comes first, and the gravest of a group counts."""
        groups = {}
        for warning in warnings:
            code, cause = warning["code"], warning["because"] or warning["code"]
            self.expect(code == cause or cause in groups, f"{code} does not stand behind {cause}")
            self.expect(cause not in groups or list(groups)[-1] == cause, f"{code} does not stand with {cause}")
            groups.setdefault(cause, []).append(GRAVITY.get(code, -1))
        gravities = [min(each) for each in groups.values()]
        self.expect(gravities == sorted(gravities), f"not the gravest first: {', '.join(groups)}")
        codes = list(dict.fromkeys(warning["code"] for warning in warnings))
        self.wrong += check("the order of the codes in the text", codes, self.order_in_text)

    # JSON

    def json(self, report):
        self.against_schema(report)
        self.wrong += check("member succeeded", self.expected["status"] == 0, report.get("succeeded"))
        self.failure(report)
        warnings = report["warnings"]
        counts = {}
        for warning in warnings:
            counts[warning["code"]] = counts.get(warning["code"], 0) + 1
            self.warning(warning)
        self.wrong += check("warnings", self.expected["warnings"], counts)
        self.gravest_first(warnings)
        if "restored" in self.expected:
            restored = [spec for updater in report["updaters"] for spec in updater["restoredProfiles"]]
            self.wrong += check("restored profiles", self.expected["restored"], restored)
        self.expect("verdict" in report, "there is no member verdict")
        if "verdict" in report:
            self.verdict(report["verdict"])

    def against_schema(self, report):
        self.wrong += json_schema.problems_of(report, self.schema)

    def failure(self, report):
        """A reason in words, when and only when the run fails, and one for each updater that an error ended."""
        reason = report.get("failure")
        if self.expected["status"] == 0:
            self.wrong += check("failure", "", reason)
            return
        self.expect(reason and not reason.rstrip().endswith(":"), f"no reason of the failure: {reason!r}")
        for updater in report["updaters"]:
            self.expect(updater["outcome"] != "threw" or updater["error"], f"no error of {updater['name']}")

    def warning(self, warning):
        members = {"code", "text", "remedy", "facts", "because", "inInput", "medium"}
        self.expect(members <= set(warning), f"a warning lacks {', '.join(sorted(members - set(warning)))}: {warning}")
        code = warning["code"]
        self.expect(code in GRAVITY, f"a code that nobody knows: {code}")
        self.expect(warning["text"], f"a warning without a text: {code}")
        self.expect(code not in OF_A_MEDIUM or warning.get("medium"), f"it does not say of which medium: {code}")
        if code in self.expected.get("inInput", []):
            self.expect(warning["inInput"] is True, f"not marked as in the PPD already: {code}")

    def verdict(self, verdict):
        self.wrong += check("colour", self.expected["colour"], verdict.get("colour"))
        self.wrong += check("warnings of the verdict", self.expected["warnings"], verdict.get("warnings"))
        self.expect(verdict.get("outcome"), "the verdict has no outcome in words")
        expected, media = self.expected["media"], verdict.get("media")
        if expected == "nothing":
            is_nothing = media is None or not any(media.values())
            self.expect(is_nothing, f"media of the verdict: expected none, came {media!r}")
        elif expected is None or media is None:
            self.wrong += check("media of the verdict", expected, media)
        else:
            self.wrong += check("media of the verdict", expected, {name: media.get(name) for name in expected})


def run(folder, options, schema):
    with tempfile.TemporaryDirectory(prefix="p") as copy:
        problem = Problem(folder, pathlib.Path(copy), options)
        return problem.data["learn"], Checks(problem, schema).run()


def run_all(options):
    schema = json_schema.validator(options.schema)
    folders = sorted(file.parent for root in options.folders for file in root.rglob("problem.json"))
    if not folders:
        sys.exit("no problems found")
    failed = 0
    for folder in folders:
        learn, wrong = run(folder.resolve(), options, schema)
        failed += bool(wrong)
        if wrong or options.verbose:
            show(f"{'FAILED' if wrong else 'passed'} {folder}")
        for each in [f"to learn: {learn}", *wrong] if wrong else []:
            show(f"  {each}")
    print(f"{len(folders) - failed} passed, {failed} failed")
    return 1 if failed else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--explain", type=pathlib.Path, required=True, help="the program that explains a run")
    parser.add_argument("--library-dir", type=pathlib.Path, required=True, help=f"where {LIBRARY} is")
    parser.add_argument("--foreign-library", type=pathlib.Path, required=True,
                        help="a shared object that is no device-model library")
    parser.add_argument("--schema", type=pathlib.Path, required=True, help="the JSON schema that every JSON report must follow")
    parser.add_argument("--verbose", action="store_true", help="name the problems that pass, too")
    parser.add_argument("folders", type=pathlib.Path, nargs="+", help="problem folders, or folders of them")
    return run_all(parser.parse_args())


if __name__ == "__main__":
    sys.exit(main())
