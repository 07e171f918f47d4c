#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the tool, in one run, with what else reads a PPD: the floor program (only reads and writes), libcups'
ppdOpenFile (reads into its model), python3-cups and ppdmerge (write it back), and augeas (inserts a line).

Prints a table of time and peak memory on a PPD of 300 KB, and of how many of 500 real PPDs each gives back byte for
byte; draws time against size with gnuplot. With --output FOLDER both are written there.
"""
import argparse
import os
import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "tests/corpus")]
import ppdarchive  # noqa: E402
import run_bench  # noqa: E402

PYTHON = "/usr/bin/python3"
WRITE_BACK = "import cups,sys; cups.PPD(sys.argv[1]).writeFd(1)"
AUGEAS = ("transform Simplelines.lns incl /etc/x.ppd\nload\n"
          "set /files/etc/x.ppd/999999 '*QZMediaListVersion: 17'\nsave\n")
SIZES = (10_000, 50_000, 100_000, 200_000, 300_000, 600_000)
PACKAGES = {PYTHON: "python3", "ppdmerge": "cups-ppdc", "augtool": "augeas-tools", "gnuplot": "gnuplot-nox"}


class Peer:
    """A program: the command for a PPD, and what it gives back of one (None: it writes none)."""

    def __init__(self, name, does, command, gives_back=None):
        self.name, self.does, self.command, self.gives_back = name, does, command, gives_back


def standard_output(command):
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          check=False).stdout


def peers(options, folder):
    script = folder / "augeas"
    script.write_text(AUGEAS)
    root = folder / "root"
    (root / "etc").mkdir(parents=True)

    def through_augeas(ppd):
        shutil.copyfile(ppd, root / "etc/x.ppd")
        return [shutil.which("augtool"), "-r", root, "--noautoload", "--new", "-f", script]

    def augeas_gives_back(ppd):
        new = root / "etc/x.ppd.augnew"
        new.unlink(missing_ok=True)
        standard_output(through_augeas(ppd))
        return new.read_bytes().removesuffix(b"*QZMediaListVersion: 17\n") if new.exists() else b""

    def merged(ppd):
        output = folder / "merged.ppd"
        output.unlink(missing_ok=True)
        standard_output([shutil.which("ppdmerge"), "-o", output, ppd])
        return output.read_bytes() if output.exists() else b""

    def written(command):
        return lambda ppd: standard_output(command(ppd))

    def tool(ppd):
        return [options.tool, run_bench.URI, ppd]

    def floor(ppd):
        return [options.floor, ppd]

    def cups(ppd):
        return [PYTHON, "-c", WRITE_BACK, ppd]

    return [Peer("floor program", "reads lines, writes them", floor, written(floor)),
            Peer("VorantisAutosetupTool", "model, writes it back", tool, written(tool)),
            Peer("ppdOpenFile", "model, writes nothing", lambda ppd: [options.ppdopenfile, ppd]),
            Peer("ppdmerge", "model, writes it back", lambda ppd: [shutil.which("ppdmerge"), "-o", folder / "m.ppd", ppd], merged),
            Peer("python3-cups", "model beside the lines", cups, written(cups)),
            Peer("augeas (Simplelines)", "lines, inserts one", through_augeas, augeas_gives_back)]


def given_back(peer, ppds):
    return sum(peer.gives_back(ppd) == ppd.read_bytes() for ppd in ppds)


def print_table(rows, ppds):
    text = sum(ppdarchive.is_utf8(ppd.read_bytes()) for ppd in ppds)
    print(f"| Program | What it does | Time, ms | Median, ms | Peak memory, MB | Of {len(ppds)} PPDs, back byte for byte |")
    print("|---|---|---:|---:|---:|---:|")
    for peer, (smallest, median, _, memory), back in rows:
        print(f"| {peer.name} | {peer.does} | {smallest * 1e3:.2f} | {median * 1e3:.2f} | {memory / 1e6:.1f} | "
              f"{'writes none' if back is None else back} |")
    print()
    print(f"{text} of the {len(ppds)} PPDs are UTF-8; at a line that is not, the tool's reading ends, as it is meant to.")


def draw(curves, path):
    data = path.with_suffix(".data")
    blocks = ("\n".join(f"{size / 1000} {seconds * 1e3}" for size, seconds in points) for _, points in curves)
    data.write_text("\n\n\n".join(blocks) + "\n")
    plots = ", ".join(f'"{data}" index {index} with linespoints title "{name}"' for index, (name, _) in enumerate(curves))
    subprocess.run(["gnuplot"], check=True, text=True, input=f"""
set terminal svg size 900,420 font "sans,13" background "white"
set output "{path}"
set title "A PPD read and, but for ppdOpenFile, written back"
set xlabel "size, KB"
set ylabel "time, ms"
set yrange [0:*]
set key outside right top
set grid
plot {plots}
""")
    data.unlink()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    for name in ("tool", "floor", "ppdopenfile", "measure", "library-dir"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    parser.add_argument("--corpus", type=pathlib.Path, required=True, help="where the real PPDs are unpacked to, and kept")
    parser.add_argument("--runs", type=int, default=100)
    parser.add_argument("--plot", type=pathlib.Path, required=True)
    options = parser.parse_args()
    missing = [package for program, package in PACKAGES.items() if shutil.which(program) is None]
    if missing or subprocess.run([PYTHON, "-c", "import cups"], check=False, stderr=subprocess.DEVNULL).returncode:
        sys.exit(f"NOT COMPARED: install {' '.join(missing + ['python3-cups', 'augeas-lenses'])}")
    ppds = ppdarchive.extract(options.corpus, 500)
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        bench = run_bench.Bench(options, folder)
        compared = peers(options, folder)
        ppd = bench.write("300.ppd", run_bench.plain_ppd(300_000))
        times = bench.measure(options.runs, *(peer.command(ppd) for peer in compared))
        rows = [(peer, time, peer.gives_back and given_back(peer, ppds)) for peer, time in zip(compared, times)]
        print_table(rows, ppds)
        compared = compared[:5]  # augeas would hide the others
        curves = [(peer.name, []) for peer in compared]
        for size in SIZES:
            ppd = bench.write(f"{size}.ppd", run_bench.plain_ppd(size))
            times = bench.measure(options.runs, *(peer.command(ppd) for peer in compared))
            for (_, points), time in zip(curves, times):
                points.append((size, time[0]))
        draw(curves, options.plot)
        print(f"plot: {options.plot}")
    print(f"({platform.system()} {platform.machine()}, {os.cpu_count()} processors, smallest of {options.runs} runs)")


if __name__ == "__main__":
    main()
