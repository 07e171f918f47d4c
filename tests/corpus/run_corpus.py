#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the tool on real PPDs, as they are and with each updater spliced in, and counts what became of them by reason.

As they are: the bytes must come back, but where the rules of reading say otherwise; the reasons are found by an
independent model of the tool (tests/model/model.py), whose output must be the same byte for byte.

Spliced (--splice): a `*QZPPDUpdaters` line, a media option in its group and factory profiles are added to each PPD that
is read whole; for every updater and three devices, libcups must open the result wherever it opens the input.
"""
import argparse
import collections
import concurrent.futures
import ctypes
import itertools
import json
import os
import pathlib
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "model")]
import model  # noqa: E402
import ppdarchive  # noqa: E402

URI = "socket://192.0.2.10:9100"
UPDATERS = ("ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater", "ATMediaTypePCL3Qualifier3PPDUpdater",
            "ATMediaTypePCL3Qualifier1PPDUpdater", "ATGlossyProfilePCL3PPDUpdater", "ATPDLCommandTypePPDUpdater")
SPLICED_STATEMENTS = b"""*QZPPDUpdaters: "@UPDATER@"
*cupsICCQualifier1: "QZGlossEnhancerSimplified"
*cupsICCQualifier3: "OutputMode"
*QZValueAttributes MediaType.VRPlain: "glossy=YES;defaultGE='False'"
*cupsICCProfile False.VRPlain.VRBest/Plain: "/p/plain.icc"
*QZcupsICCProfile False.VRPlain.VRBest/Plain: "Plain;;/p/plain.icc"
*QZcupsICCProfile True.VRPlain.VRBest/Plain GE: "Plain GE;;/p/plain-ge.icc"
"""
SPLICED_GROUP = b"""*OpenGroup: QZImagingOptions/Imaging Options
*OpenUI *MediaType/Media Type: PickOne
*DefaultMediaType: VRPlain
*MediaType VRPlain/Plain: "(1001)"
*CloseUI: *MediaType
*OpenUI *QZGlossEnhancerSimplified/Gloss: Boolean
*DefaultQZGlossEnhancerSimplified: False
*QZGlossEnhancerSimplified True/On: ""
*QZGlossEnhancerSimplified False/Off: ""
*CloseUI: *QZGlossEnhancerSimplified
*CloseGroup: QZImagingOptions
"""


def medium(name, media_id, category, *profiles, **more):
    return {"Name": name, "MediumID": media_id, "CategoryName": "Media", "CategoryID": category,
            "ICCProfiles": list(profiles), **more}


def profile(path, name, gloss):
    return {"URL": f"file://{path}", "ICCName": name, "GlossEnhancer": gloss, "OutputMode": "VRBest"}


DEVICES = {
    "no media": {},
    "factory media": {"a": medium("Plain", "1001", "PHOTO", profile("/c/p.icc", "Calibrated", "OFF"))},
    "custom media": {
        "a": medium("Canvas", "4711", "CUSTOM", profile("/c/c.icc", "Canvas", "OFF"), ParentID="1001"),
        "b": medium("Film", "4712", "QZ_EXTENDED_MEDIA", profile("/c/f.icc", "Film", "FULLPAGE"),
                    PropertiesInfo={"DefaultGlossEnhancer": "FULLPAGE"})},
}


class Tool:
    def __init__(self, options):
        self.path = options.tool
        self.environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir)}

    def run(self, ppd, snapshot=None):
        environment = {**self.environment, **({"QZVORANTISMODEL_SNAPSHOT": str(snapshot)} if snapshot else {})}
        result = subprocess.run([self.path, URI, ppd], env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                                timeout=60, check=False)
        if result.stderr or result.returncode not in (0, 1):
            sys.exit(f"{ppd}: exit status {result.returncode}, standard error {result.stderr!r}")
        return result.returncode, result.stdout


def is_utf8(data):
    try:
        data.decode()
        return True
    except UnicodeDecodeError:
        return False


def reason_for(ppd, status, output, given):
    """Why the output is as it is; the run fails when the independent model does not say the same."""
    if status == 0 and output == given and is_utf8(given):
        return "comes back byte for byte"
    expected_status, expected, _ = model.run([URI.encode(), os.fsencode(ppd)], None, True)
    if (status, output) != (expected_status, expected):
        return "NOT AS EXPECTED"
    if status == 1:
        return "is refused: a malformed line"
    if given.startswith(output) and not is_utf8(given):
        return "is read up to a line that is not UTF-8"
    return "loses lines behind an option outside every group"


def check_unchanged(tool, ppds):
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        results = list(pool.map(tool.run, ppds))
    reasons = collections.defaultdict(list)
    for ppd, (status, output) in zip(ppds, results):
        reasons[reason_for(ppd, status, output, ppd.read_bytes())].append(ppd)
    for reason, files in sorted(reasons.items(), key=lambda item: -len(item[1])):
        print(f"{len(files):5}  {reason}")
        for ppd in files if len(files) <= 20 else []:
            print(f"         {ppd.name}")
    return reasons


class LibCups:
    def __init__(self):
        self.library = ctypes.CDLL("libcups.so.2")
        self.library.ppdOpenFile.restype = ctypes.c_void_p
        self.library.ppdClose.argtypes = [ctypes.c_void_p]

    def opens(self, path):
        ppd = self.library.ppdOpenFile(os.fsencode(path))
        if ppd:
            self.library.ppdClose(ppd)
        return bool(ppd)


def spliced(data, updater):
    """The PPD with our statements behind its first line and our group at its end."""
    line_end = b"\r\n" if b"\r\n" in data else b"\n"
    first, rest = data.split(b"\n", 1)
    statements = SPLICED_STATEMENTS.replace(b"@UPDATER@", updater.encode()).replace(b"\n", line_end)
    if not rest.endswith(b"\n"):
        rest += line_end
    return first + b"\n" + statements + rest + SPLICED_GROUP.replace(b"\n", line_end)


def check_spliced(tool, ppds, folder):
    libcups = LibCups()
    snapshots = {}
    for name, media in DEVICES.items():
        snapshots[name] = folder / f"{name}.json"
        device = {"dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "1", "MediaInfo": media}}}
        snapshots[name].write_text(json.dumps(
            {"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [device]}))
    counts = collections.Counter()
    for ppd, updater in itertools.product(ppds, UPDATERS):
        source = folder / "spliced.ppd"
        source.write_bytes(spliced(ppd.read_bytes(), updater))
        input_opens = libcups.opens(source)
        for name, snapshot in snapshots.items():
            status, output = tool.run(source, snapshot)
            if status != 0:
                counts["refused: a malformed line"] += 1
                continue
            result = folder / "result.ppd"
            result.write_bytes(output)
            if input_opens and not libcups.opens(result):
                print(f"NOT OPENED by libcups: {ppd.name}, {updater}, {name}")
                counts["NOT AS EXPECTED"] += 1
            counts["set up, and opened by libcups" if input_opens else "set up (libcups does not open the input)"] += 1
    for reason, count in counts.most_common():
        print(f"{count:6}  {reason}")
    return counts


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    parser.add_argument("--folder", required=True, help="where the PPDs are unpacked to, and kept")
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--splice", type=int, default=0, metavar="N", help="also splice updaters into N of the PPDs")
    options = parser.parse_args()
    if not os.path.exists(ppdarchive.ARCHIVE):
        sys.exit("the package openprinting-ppds is not installed")
    tool = Tool(options)
    ppds = ppdarchive.extract(options.folder, options.count)
    print(f"{len(ppds)} real PPDs, as they are:")
    reasons = check_unchanged(tool, ppds)
    failed = len(reasons["NOT AS EXPECTED"])
    if options.splice:
        whole = reasons["comes back byte for byte"][:]
        chosen = whole[:: max(1, len(whole) // options.splice)][:options.splice]
        print(f"{len(chosen)} of them, each with {len(UPDATERS)} updaters spliced in and {len(DEVICES)} devices:")
        with tempfile.TemporaryDirectory() as folder:
            failed += check_spliced(tool, chosen, pathlib.Path(folder))["NOT AS EXPECTED"]
    print(f"{len(ppds) - failed} passed, {failed} failed")
    return 1 if failed or len(ppds) < options.count else 0


if __name__ == "__main__":
    sys.exit(main())
