#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the tool on real PPDs, as they are and with each updater spliced in, and counts what became of them by reason.

As they are: the bytes must come back, but where the rules of reading say otherwise; the reasons are found by an
independent model of the tool (tests/model/model.py), whose output must be the same byte for byte.

Spliced (--splice): a `*QZPPDUpdaters` line, a media option in its group and factory profiles are added to each PPD that
is read whole; for every updater and three devices, the result must hold the device's media, and libcups must open it
wherever it opens the input.
"""
import argparse
import collections
import concurrent.futures
import ctypes
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "model")]
import model  # noqa: E402
import ppdarchive  # noqa: E402

URI = "socket://192.0.2.10:9100"
BASE_UPDATER, PDL_UPDATER = "ATMediaTypePPDUpdater", "ATPDLCommandTypePPDUpdater"
UPDATERS = (BASE_UPDATER, "ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater", "ATMediaTypePCL3Qualifier3PPDUpdater",
            "ATMediaTypePCL3Qualifier1PPDUpdater", "ATGlossyProfilePCL3PPDUpdater", PDL_UPDATER)
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


def reason_for(ppd, status, output, given):
    """Why the output is as it is; the run fails when the independent model does not say the same."""
    if status == 0 and output == given and ppdarchive.is_utf8(given):
        return "comes back byte for byte"
    expected_status, expected, _ = model.run([URI.encode(), os.fsencode(ppd)], None, True)
    if (status, output) != (expected_status, expected):
        return "NOT AS EXPECTED"
    if status == 1:
        return "is refused: a malformed line"
    if given.startswith(output) and not ppdarchive.is_utf8(given):
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


def check_spliced(options, ppds, folder):
    jobs = [(options, ppd, folder / str(number)) for number, ppd in enumerate(ppds)]
    with concurrent.futures.ProcessPoolExecutor(2) as pool:
        counts = sum(pool.map(check_spliced_ppd, jobs, chunksize=8), collections.Counter())
    for what, count in counts.most_common():
        print(f"{count:6}  {what}")
    return counts


def check_spliced_ppd(job):
    """Counts what became of one PPD, given each updater and each device."""
    options, ppd, folder = job
    folder.mkdir()
    tool, libcups = Tool(options), LibCups()
    counts = collections.Counter()
    source, result = folder / "spliced.ppd", folder / "result.ppd"
    for updater, (device, media) in itertools.product(UPDATERS, DEVICES.items()):
        source.write_bytes(spliced(ppd.read_bytes(), updater))
        snapshot = folder / "snapshot.json"
        snapshot.write_text(json.dumps(snapshot_of(media)))
        status, output = tool.run(source, snapshot)
        result.write_bytes(output)
        what = verdict(updater, media, status, source.read_bytes(), output)
        if what == "set up" and libcups.opens(source):
            what += ", and opened by libcups" if libcups.opens(result) else ", NOT AS EXPECTED: libcups does not open it"
        counts[what] += 1
        if "NOT AS EXPECTED" in what:
            print(f"{what}: {ppd.name}, {updater}, {device}")
    shutil.rmtree(folder)
    return counts


def verdict(updater, media, status, given, output):
    custom = sum(item["CategoryID"] != "PHOTO" for item in media.values())
    if updater == BASE_UPDATER and custom:
        return "ends with status 1: the base class has no choice code" if (status, output) == (1, b"") else \
            "NOT AS EXPECTED: the base class has no choice code"
    if status != 0:
        return "NOT AS EXPECTED: refused"
    if updater == PDL_UPDATER:
        return "set up" if b"*QZVorantisFamily: " in output else "NOT AS EXPECTED: no printer language commands"
    if given.count(b"\n*OpenUI") > given.count(b"\n*CloseUI"):
        custom = 0  # the group lies in a block that is never closed, and is none
    # Some PPDs have choices of these names already.
    names = [b"*MediaType Custom%x/" % number for number in range(1, 4)]
    added = [output.count(name) - given.count(name) for name in names]
    return "set up" if added == [1] * custom + [0] * (3 - custom) else "NOT AS EXPECTED: the media are not the device's"


def snapshot_of(media):
    device = {"dataStore": {"VMCustomMediaStorage": {"MediumListVersion": "1", "MediaInfo": media}}}
    return {"format": "vorantis-device-snapshot", "formatVersion": 1, "devices": [device]}


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
            counts = check_spliced(options, chosen, pathlib.Path(folder))
            failed += sum(count for what, count in counts.items() if "NOT AS EXPECTED" in what)
    print(f"{len(ppds) - failed} passed, {failed} failed")
    return 1 if failed or len(ppds) < options.count else 0


if __name__ == "__main__":
    sys.exit(main())
