#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the programs with a device-model library that prints, exits or closes files, at each place where it is called:
what they write to standard output is the same as with a library that behaves, or nothing with status 1. So it is with
a library that is there and that the loader passes over without a word."""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

URI = "socket://192.0.2.10:9100"
LIBRARY = "libQZVorantisModel.so.1"
ENDED = "int main(int, const char **): The device-model library has ended the process"
PLACES = ("load", "entry", "question", "release")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("tool", "explain", "capture", "library-dir", "ppd"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--log", type=pathlib.Path, help="the log file of a diagnostic build")
    options = parser.parse_args()
    failed = 0

    def run(command, place="", deed="", library_dir=options.library_dir, **more):
        environment = {**os.environ, "LD_LIBRARY_PATH": str(library_dir), "AT_ODD_PLACE": place, "AT_ODD_DEED": deed}
        done = subprocess.run([str(word) for word in command], env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60, check=False, **more)
        return done.returncode, done.stdout

    def expect(what, holds):
        nonlocal failed
        failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}", flush=True)

    tool = [options.tool, URI, options.ppd]
    commands = tempfile.NamedTemporaryFile(suffix=".ppd")
    commands.write(b'*PPD-Adobe: "4.3"\n*% Canvas\n*QZPPDUpdaters: "ATPDLCommandTypePPDUpdater"\n')
    commands.flush()
    programs = {"the tool": tool, "the tool, which asks for the family": [options.tool, URI, commands.name], "the report": [options.explain, "--format=json", URI, options.ppd],
                "the snapshot": [options.capture, URI]}
    for name, command in programs.items():
        right = run(command)
        expect(f"{name}: status 0 with a library that behaves", right[0] == 0 and b"Canvas" in right[1])
        for place in PLACES if "family" not in name else ("load", "entry", "release"):  # other questions than that one
            expect(f"{name}, a library that prints ({place}): the same", run(command, place, "print") == right)
            expect(f"{name}, a library that closes standard output ({place}): the same", run(command, place, "close") == right)
            for deed in ("exit", "exit-in-thread"):
                expect(f"{name}, a library that exits ({place}, {deed}): status 1, nothing written",
                       run(command, place, deed) == (1, b""))
    for place in PLACES:
        expect(f"the tool, a library that closes every file ({place}): status 1, nothing written",
               run(tool, place, "close-all") == (1, b""))
        expect(f"the tool without a standard output, a library that prints ({place}): status 1",
               run(tool, place, "print", preexec_fn=lambda: os.close(1)) == (1, b""))
    if options.log:
        options.log.touch()
        run(tool, "question", "exit")
        expect("the log of a tool whose library exits ends with that", options.log.read_text().splitlines()[-1] == ENDED)
        options.log.unlink()
    with tempfile.TemporaryDirectory() as folder:
        library = pathlib.Path(folder) / LIBRARY
        expect("the tool without a library: status 0", run(tool, library_dir=folder)[0] == 0)
        library.symlink_to(library)
        expect("the tool, a link to itself for a library: status 1", run(tool, library_dir=folder) == (1, b""))
        library.unlink()
        foreign = bytearray((options.library_dir / LIBRARY).read_bytes())
        foreign[18:20] = b"\xba\xfe"  # which processor it is for
        library.write_bytes(foreign)
        expect("the tool, a library for another processor: status 1", run(tool, library_dir=folder) == (1, b""))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
