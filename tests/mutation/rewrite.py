# SPDX-License-Identifier: MIT
"""Writes a copy of the source in which each place of change stands behind its switch."""
import collections
import re
import shutil

SWITCH = "mutation_switch.h"
INCLUDE = f'#include "{SWITCH}"'


class Rewriting:
    """One file with its spots: the text, and where each spot begins and ends in it."""

    def __init__(self, text, spots, tables):
        # At the same place, the last one stands outermost.
        self.spots = sorted(spots, key=lambda each: (each[1].start, -each[1].end))
        self.source = text
        self.tables = sorted(tables)
        self.pieces = []
        self.size = 0
        self.placed = []  # start, end and number of each spot in the result
        self.crossing = []  # numbers of spots that do not nest
        self.next = 0
        self.render(0, len(text))
        self.text = "".join(self.pieces)

    def emit(self, text):
        self.pieces.append(text)
        self.size += len(text)

    def copy(self, start, end):
        """The source, in which the tables that hold changes are no longer constants of the compiler."""
        for table in self.tables:
            if start <= table < end:
                self.emit(self.source[start:table] + "const")
                start = table + len("constexpr")
        self.emit(self.source[start:end])

    def render(self, start, end):
        while self.next < len(self.spots) and self.spots[self.next][1].start < end:
            number, spot = self.spots[self.next]
            self.next += 1
            if spot.start < start or spot.end > end:
                self.crossing.append(number)
                continue
            self.copy(start, spot.start)
            self.wrap(number, spot)
            start = spot.end
        self.copy(start, end)

    def wrap(self, number, spot):
        first = self.size
        head, tail = self.filled(number, spot).split("@INNER@", maxsplit=1)
        if "@INNER@" in tail:  # a name, which has no spots inside
            self.emit(self.filled(number, spot).replace("@INNER@", self.source[spot.start:spot.end]))
        else:
            self.emit(head)
            self.render(spot.start, spot.end)
            self.emit(tail)
        self.placed.append((first, self.size, number))

    @staticmethod
    def filled(number, spot):
        values = {"@ID@": str(number), "@AFTER@": spot.after}
        return re.sub("@ID@|@AFTER@", lambda found: values[found.group()], spot.pattern)

    def at(self, line, column):
        """The number of the innermost spot there; those of all on the line without a column, or without a spot there."""
        lines = self.text.split("\n")
        start = sum(len(each) + 1 for each in lines[:line - 1])
        position = start + (column or 1) - 1
        around = [(last - first, number) for first, last, number in self.placed if column and first <= position < last]
        if around:
            return {min(around)[1]}
        end = start + len(lines[line - 1])
        return {number for first, last, number in self.placed if first <= end and last >= start}


def write_if_changed(path, data):
    if not path.exists() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def rewrite(top, copy, names, switch, places):
    """Writes the files to the folder `copy`; `places` have their numbers. The rewritten files, by name."""
    spots, tables = collections.defaultdict(list), collections.defaultdict(set)
    for number, place in places.items():
        for spot in place.spots:
            spots[spot.file].append((number, spot))
        if place.table:
            tables[place.table[0]].add(place.table[1])
    rewritten = {}
    for name in names:
        text = (top / name).read_bytes()
        if name in spots:
            rewritten[name] = Rewriting(text.decode("latin-1"), spots[name], tables[name])
            lines = rewritten[name].text.split("\n")
            if not lines[0].startswith("//"):
                raise SystemExit(f"{name} does not begin with a comment, whose line is needed")
            text = "\n".join([INCLUDE] + lines[1:]).encode("latin-1")
        write_if_changed(copy / name, text)
        shutil.copymode(top / name, copy / name)
    write_if_changed(copy / SWITCH, switch.read_bytes())
    known = {*names, SWITCH}
    for path in list(copy.rglob("*")):
        if path.is_file() and str(path.relative_to(copy)) not in known:
            path.unlink()
    return rewritten
