#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Calls the program that captures a device as people do: its options, its exit status and what it writes where."""
import argparse
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"


def check_tables(call, expect, folder, example):
    """A snapshot that is made of a table is judged, and used by a setup."""
    table, made, ppd = folder / "media.csv", folder / "made.json", example / "input.ppd"
    table.write_text('Name,MediumID,ParentID\n"24"" Canvas",4711,1002\n')
    result = call("--from-table", table, "--ppd", ppd, URI, LD_LIBRARY_PATH="/nowhere")
    made.write_bytes(result.stdout)
    expect("a snapshot of a table, without a library", result.returncode == 0 and not result.stderr and
           json.loads(result.stdout)["devices"][0]["modelName"] == '"Vorantis Z6 44in"')
    good = call("--check", made, ppd)
    expect("--check: nothing odd", (good.returncode, good.stdout) == (0, f"{URI}: nothing odd\n".encode()))
    table.write_text("Name,MediumID,ParentID,ICCName,URL\nA: B,4711,10,Canvas,file:///no/such.icc\n")
    made.write_bytes(call("--from-table", table, "--ppd", ppd, URI).stdout)
    odd = call("--check", made, ppd)
    expect("--check: what is odd, with the codes of the report", odd.returncode == 1 and not odd.stderr and
           all(code in odd.stdout for code in (b"[id-inside-code]", b"[profile-missing]", b"[name-otherwise]")))
    other = call("--check", made, example.parent / "glossy/input.ppd")
    expect("--check: a PPD of another model", other.returncode == 1 and b"[no-device]" in other.stdout)
    codes = re.findall(rb"\[([a-z-]+)\]", odd.stdout)
    few = call("--check", "--ignore=profile-missing", "--ignore", "id-inside-code", made, ppd)
    left = [code for code in codes if code not in (b"profile-missing", b"id-inside-code")]
    expect("--check --ignore leaves warnings of these codes out", len(left) < len(codes) and left and few.returncode == 1 and
           re.findall(rb"\[([a-z-]+)\]", few.stdout) == left)
    table.write_text("Name,MediumID,ICCName,URL\n" + "".join(f"M{i},{i},P,file:///no/such.icc\n" for i in range(5000, 5300)))
    many = folder / "many.json"
    many.write_bytes(call("--from-table", table, "--ppd", ppd, URI).stdout)
    lines = call("--check", many, ppd).stdout.splitlines()
    expect("--check: many warnings of a code are one line with a count", len(lines) < 5 and any(line.endswith(b"(and 299 more) [profile-missing]") for line in lines))
    for name in sorted(path.parent for path in example.parent.glob("*/input.ppd")):
        result = call("--check", "--ignore=profile-missing", name / "snapshot.json", name / "input.ppd")
        expect(f"--check --ignore=profile-missing: {name.name} is as it should be", result.returncode == 0)
    table.write_text('Name,MediumID\nA,"4,71E+03"\n')
    rounded = call(f"--from-table={table}", URI)
    expect("a number that was rounded is warned of, with its line", rounded.returncode == 0 and
           b"line 2 of the table: the MediumID 4,71E+03" in rounded.stderr)
    for what, text in (("semicolons", b"Name;MediumID\nA;1\n"), ("UTF-16", "Name,MediumID\nA,1\n".encode("utf-16")),
                       ("no media", b"Name,MediumID\n")):
        table.write_bytes(text)
        result = call(f"--from-table={table}", URI)
        expect(f"a table with {what}: status 1, one line, nothing written",
               result.returncode == 1 and not result.stdout and result.stderr.count(b"\n") == 1)
    expect("--check: a missing profile does not hide that nothing would be written",
           b"Nothing would be written: " in call("--check", made, ppd, LD_LIBRARY_PATH=str(broken_library(folder))).stdout)
    (folder / "bad.json").write_text("{")
    for what, status, result in (("a table that is not there", 1, call("--from-table=/no/such.csv", URI)),
                                 ("a table that is a directory", 1, call(f"--from-table={folder}", URI)),
                                 ("--check with a snapshot that is none", 1, call("--check", folder / "bad.json", ppd)),
                                 ("--check with a PPD that is not there", 1, call("--check", made, "/no/such.ppd")),
                                 ("--check with one argument", 2, call("--check", made)),
                                 ("--ignore without --check", 2, call("--ignore=profile-missing", URI)),
                                 ("--ignore with a code that is none", 2, call("--check", "--ignore=what", made, ppd)),
                                 ("--ppd without a name", 2, call("--ppd=", URI)),
                                 ("--check and a table", 2, call("--check", "--from-table=a.csv", made, ppd))):
        expect(f"{what}: status {status}, said on standard error, nothing written",
               result.returncode == status and result.stderr and not result.stdout)


def broken_library(folder):
    (folder / "libQZVorantisModel.so.1").write_text("no library\n")
    return folder


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    for name in ("capture", "library-dir", "examples"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    options = parser.parse_args()
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir),
                   "QZVORANTISMODEL_SNAPSHOT": str(options.examples / "pcl3/snapshot.json")}
    failed = 0

    def call(*arguments, **more):
        return subprocess.run([options.capture, *arguments], env={**environment, **more}, capture_output=True, check=False)

    def expect(what, holds):
        nonlocal failed
        failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}")

    captured = call(URI, '"Vorantis Z6 44in"')
    devices = json.loads(captured.stdout)["devices"]
    expect("a snapshot with the device's media, silent", captured.returncode == 0 and not captured.stderr and
           "MediaInfo" in devices[0]["dataStore"]["VMCustomMediaStorage"])
    expect("the PPD instead of the model name", call("--ppd", options.examples / "pcl3/input.ppd", URI).stdout == captured.stdout)
    unquoted = call(URI, "Vorantis Z6 44in")
    expect("a model name without its quotes: status 1, said with the question, nothing written", unquoted.returncode == 1 and
           b"no device" in unquoted.stderr and b"Vorantis Z6 44in" in unquoted.stderr and not unquoted.stdout)
    expect("another model has none, when that is allowed",
           "dataStore" not in json.loads(call("--allow-empty", URI, '"Other"').stdout)["devices"][0])
    for what, status, result in (("no arguments", 2, call()), ("three arguments", 2, call(URI, "model", "more")),
                                 ("an unknown option", 2, call("--what", URI)),
                                 ("a model name and a PPD", 2, call("--ppd=a.ppd", URI, "model")),
                                 ("a PPD that is not there", 1, call("--ppd=/no/such.ppd", URI)),
                                 ("arguments that are not UTF-8", 2, call(b"\xff")),
                                 ("no library", 1, call(URI, LD_LIBRARY_PATH="/nowhere")),
                                 ("a snapshot that cannot be read", 1, call(URI, QZVORANTISMODEL_SNAPSHOT="/no/such/file"))):
        expect(f"{what}: status {status}, said on standard error, nothing written",
               result.returncode == status and result.stderr and not result.stdout)
    with tempfile.TemporaryDirectory() as folder:
        check_tables(call, expect, pathlib.Path(folder), options.examples / "pcl3")
    full = subprocess.run([options.capture, "--allow-empty", URI], env=environment, stdout=open("/dev/full", "wb"), stderr=subprocess.PIPE,
                          check=False)
    expect("a full disk: status 1", full.returncode == 1)
    expect("--help", call("--help").returncode == 0 and call("--help").stdout.startswith(b"Usage: "))
    expect("-h and -V", (call("-h").stdout, call("-V").stdout) == (call("--help").stdout, call("--version").stdout))
    expect("--version", call("--version").stdout.startswith(b"vorantis-device-snapshot "))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
