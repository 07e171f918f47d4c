#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the tool with frameworks that lack something, or answer what they should not.

Two runs are made with each: one for a device with a list of media, found by its URI and its model name, and one for a
device whose identification asks for the first command set. What may come out of them is known from whole-tool cases.
"""
import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
CASES = pathlib.Path(__file__).resolve().parent.parent / "cases"
MEDIA = CASES / "device" / "model_name_matches_with_its_quotes"
COMMANDS = CASES / "pdl" / "family_QZVR2PCLS_gets_the_first_set"
OUTCOMES = {
    "media": (0, MEDIA / "expected.ppd"),
    "no media": (0, CASES / "device" / "no_store" / "expected.ppd"),
    "unchanged": (0, MEDIA / "input.ppd"),
    "first set": (0, COMMANDS / "expected.ppd"),
    "second set": (0, CASES / "pdl" / "no_library_gets_the_second_set" / "expected.ppd"),
    "failure": (1, None),
}

# Framework (none: not installed), what comes of the media, what of the commands.
LACKING = [
    (None, "unchanged", "second set"),
    ("Whole", "media", "first set"),
    ("WITHOUT_DATA_STORE_FACTORY", "unchanged", "second set"),
    ("WITHOUT_SERVICE_INFO", "no media", "second set"),
    ("WITHOUT_CORE_FACTORY", "media", "second set"),
    ("WITHOUT_STATUS_PROTOCOL", "media", "second set"),
    ("WITHOUT_SPEC", "no media", "first set"),  # found by URI alone, the device has no model name
    ("WITHOUT_URI_KEY", "failure", "failure"),  # else another printer may answer
    ("WITHOUT_MODEL_NAME_KEY", "no media", "first set"),
    ("WITHOUT_SKIP_KEY", "media", "first set"),
]

# Operation, what it answers instead (see TestObjects.m), what comes of the media, what of the commands (none: it is
# never asked).
MEDIA_CHAIN = ["defaultSystemDataStoreFactory", "registeredStoreForServiceInfo:", "itemForKey:", "representedObject"]
STATUS_CHAIN = ["newStatusFactory", "interfaceForProtocol:serviceInfo:", "deviceFamilyName"]
EXCEPTIONS = ["throw", "throw-bare", "throw-surrogate", "throw-text", "throw-hostile", "throw-cyclic", "throw-map"]
OTHER_KINDS = ["object", "date", "data", "null", "url", "class", "hostile-object"]
TEXTS_AND_NUMBERS = ["text", "yes", "real", "unsigned", "list", "nested-64"]
NO_END = ["cyclic-map", "cyclic-list", "shared", "endless-map", "endless-map-of-nothing", "throwing-map"]
UNUSABLE = ["lone-surrogate", "map-with-date", "list-of-dates", "nested-65"]
ANSWERS = [
    ("respondsToSelector:", "nil", "no media", "first set"),
    ("respondsToSelector:", "throw", "failure", "failure"),
    ("serviceInfoWithSpec:", "nil", "no media", "second set"),
    *[("serviceInfoWithSpec:", answer, "failure", "failure") for answer in EXCEPTIONS + OTHER_KINDS],
    *[(step, "nil", "no media", None) for step in MEDIA_CHAIN],
    *[(step, answer, "failure", None) for step in MEDIA_CHAIN for answer in EXCEPTIONS + OTHER_KINDS],
    *[("representedObject", answer, "failure", None) for answer in TEXTS_AND_NUMBERS + NO_END + UNUSABLE],
    ("representedObject", "empty-map", "no media", None),
    ("representedObject", "ordered-map", "no media", None),
    # It takes its place, and nobody looks for it.
    *[("representedObject", f"map-with-{odd}", "no media", None) for odd in ("number-key", "surrogate-key", "surrogate")],
    *[(step, "nil", None, "second set") for step in STATUS_CHAIN],
    *[(step, answer, None, "failure") for step in STATUS_CHAIN for answer in EXCEPTIONS + OTHER_KINDS],
    *[("deviceFamilyName", answer, None, "failure")
      for answer in ["yes", "real", "list", "empty-map", "cyclic-map", "shared", "lone-surrogate"]],
    ("deviceFamilyName", "text", None, "second set"),
    ("deviceFamilyName", "empty-text", None, "second set"),
    ("deviceFamilyName", "text-with-zero", None, "second set"),
]

# The same of a framework that has no serviceInfoWithSpec:.
OLDER_ANSWERS = [
    ("serviceInfoWithURI:", "nil", "no media", "second set"),
    *[("serviceInfoWithURI:", answer, "failure", "failure") for answer in EXCEPTIONS + OTHER_KINDS],
]


class Runner:
    def __init__(self, options):
        self.options = options
        self.failed = self.passed = 0

    def environment(self, framework, answer):
        environment = dict(os.environ, AVM_TEST_ANSWER=answer)
        environment.pop("LD_LIBRARY_PATH", None)
        if framework:
            environment["AT_TEST_FRAMEWORK"] = str(self.options.frameworks / f"{framework}.so")
        return environment

    def call(self, ppd, environment, snapshot):
        result = subprocess.run([self.options.tool, URI, ppd], env=dict(environment, QZVORANTISMODEL_SNAPSHOT=str(snapshot)),
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=120, check=False)
        return result.returncode, result.stdout, result.stderr

    def judge(self, name, expected, actual):
        if actual == expected:
            self.passed += 1
            return
        self.failed += 1
        print(f"FAILED {name}\n  expected {expected}\n  actual   {actual}")

    def run(self, framework, answer, media, commands):
        environment = self.environment(framework, answer)
        for case, outcome in ((MEDIA, media), (COMMANDS, commands)):
            if outcome is None:
                continue
            status, output = OUTCOMES[outcome]
            actual = self.call(case / "input.ppd", environment, case / "snapshot.json")
            self.judge(f"{framework or 'no framework'}, {answer or 'the truth'}: {outcome}",
                       (status, output.read_bytes() if output else b"", b""), actual)

    def run_large(self):
        """Ten megabytes of media give what the stored library's snapshot of the same media gives."""
        media = {str(index): {"Name": f"Paper {index}", "MediumID": str(100000 + index), "CategoryName": "Custom",
                              "CategoryID": "CUSTOM", "ICCProfiles": []} for index in range(40000)}
        snapshot = {"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [
            {"dataStore": {"VMCustomMediaStorage": {"MediaInfo": media}}}]}
        ppd = MEDIA / "input.ppd"
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "large.json"
            path.write_text(json.dumps(snapshot))
            expected = self.call(ppd, self.environment("Whole", ""), path)
        actual = self.call(ppd, self.environment("Whole", "representedObject large-storage"), MEDIA / "snapshot.json")
        self.judge("large storage: as many choices as media", 40000, actual[1].count(b"*MediaType Custom"))
        self.judge("large storage: the same as from a snapshot", True, actual == expected)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", type=pathlib.Path, required=True, help="the tool that uses an Objective-C framework")
    parser.add_argument("--frameworks", type=pathlib.Path, required=True, help="the folder of the frameworks")
    options = parser.parse_args()
    runner = Runner(options)
    for framework, media, commands in LACKING:
        runner.run(framework, "", media, commands)
    for operation, answer, media, commands in ANSWERS:
        runner.run("Whole", f"{operation} {answer}", media, commands)
    for operation, answer, media, commands in OLDER_ANSWERS:
        runner.run("WITHOUT_SPEC", f"{operation} {answer}", media, commands)
    runner.run_large()
    print(f"{runner.passed} passed, {runner.failed} failed")
    return 1 if runner.failed else 0


if __name__ == "__main__":
    sys.exit(main())
