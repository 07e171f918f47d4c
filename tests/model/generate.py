#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Seeded random generator of whole-tool cases: a PPD, a device snapshot and a command line.

    python3 generate.py SEED DIR      writes input.ppd, snapshot.json, arguments (and library) into DIR

The same seed gives the same case on every machine. Vocabularies are small on purpose: names, specs, IDs and values
collide often, so that look-ups, removals and first-match rules matter.
"""

import gzip
import json
import os
import random
import sys
from dataclasses import dataclass, field

WHITE_SPACE = frozenset("\t\u0020\u00a0\u1680\u202f\u205f\u3000" + "".join(map(chr, range(0x2000, 0x200b))))
LINE_ENDS = frozenset("\n\x0b\x0c\r\u0085\u2028\u2029")
BLANK = WHITE_SPACE | LINE_ENDS

PLACE_HOLDER = b"@PPD@"
DIRECTORY_PLACE_HOLDER = b"@DIR@"


@dataclass
class Case:
    """One call of the tool. `args` are the arguments after the tool's name; "@PPD@" stands for the PPD's path."""
    ppd: bytes | None
    snapshot: bytes | None
    args: list
    library_present: bool
    tags: list = field(default_factory=list)


# --- Reading: pieces and line types ----------------------------------------------------------------------------------

(INVALID, COMMENT, STATEMENT, CONTINUATION, END, OPEN_GROUP, CLOSE_GROUP, OPEN_UI, CLOSE_UI, ORDER_DEPENDENCY,
 DEFAULT_CHOICE, CHOICE, NEW_LINE, CHOICE_CONTINUATION, CHOICE_END) = range(15)
TYPE_NAMES = ("start", "Comment", "Statement", "Continuation", "End", "OpenGroup", "CloseGroup", "OpenUI", "CloseUI",
              "OrderDependency", "DefaultChoice", "Choice", "NewLine", "ChoiceContinuation", "ChoiceEnd")


def pieces(data):
    """The pieces in which the CUPS line reader hands out the data: up to 254 bytes, ended after LF, CR or CR LF."""
    position = 0
    while position < len(data):
        end = position
        while end < len(data) and end - position < 254:
            byte = data[end]
            end += 1
            if byte == 13:
                if end < len(data) and data[end] == 10:
                    end += 1
                break
            if byte == 10:
                break
        yield data[position:end]
        position = end


def scan(text, *tokens):
    """Whether the text begins with the tokens, blanks and line ends before each token left out, ASCII case folded."""
    position = 0
    for token in tokens:
        while position < len(text) and text[position] in BLANK:
            position += 1
        if text[position:position + len(token)].encode("utf-8", "replace").lower() != token.encode().lower():
            return False
        position += len(token)
    return True


def strip(text, characters):
    start, end = 0, len(text)
    while start < end and text[start] in characters:
        start += 1
    while end > start and text[end - 1] in characters:
        end -= 1
    return text[start:end]


def is_closed(text):
    colon = text.find(":")
    if colon < 0:
        return False
    quote = text.find('"', colon + 1)
    return quote < 0 or text.find('"', quote + 1) >= 0


class LineTyper:
    """Types lines as the parser does; `error` is the code of the line that was rejected."""

    def __init__(self):
        self.last, self.closed, self.line, self.error = 0, True, 1, 0

    def reject(self, code):
        self.error = code
        return INVALID

    def tail(self, text):
        if text.startswith("*End"):
            return END if self.closed else self.reject(6)
        if not text.startswith("*"):
            return CONTINUATION
        if scan(text, "*", "OpenGroup", ":"):
            return OPEN_GROUP
        if scan(text, "*", "OpenUI"):
            return OPEN_UI
        if scan(text, "*", "CloseGroup", ":"):
            return CLOSE_GROUP
        return STATEMENT if self.closed else CONTINUATION

    def ui_tail(self, text):
        if text.startswith("*Default"):
            return DEFAULT_CHOICE
        if scan(text, "*", "OrderDependency", ":"):
            return ORDER_DEPENDENCY
        if scan(text, "*", "CloseUI", ":"):
            return CLOSE_UI
        return CHOICE if text.startswith("*") else self.reject(5)

    def type_of(self, text):
        last, asterisk = self.last, text.startswith("*")
        if text.startswith("*%"):
            return COMMENT
        if not strip(text, LINE_ENDS):
            return NEW_LINE
        if last in (END, CLOSE_UI) and scan(text, "*", "CloseGroup", ":"):
            return CLOSE_GROUP
        if last in (0, CLOSE_GROUP, END, CLOSE_UI):
            if not asterisk:
                return self.reject(3)
            if text.startswith("*End"):
                return self.reject(6)
            if scan(text, "*", "CloseGroup", ":"):
                return self.reject(7)
            return self.tail(text)
        if last == OPEN_GROUP:
            if scan(text, "*", "OpenUI"):
                return OPEN_UI
            if scan(text, "*", "CloseGroup", ":"):
                return CLOSE_GROUP
            return STATEMENT if asterisk else self.reject(4)
        if last in (STATEMENT, CONTINUATION):
            return self.tail(text)
        if last == CHOICE and not asterisk:
            return CHOICE_CONTINUATION
        if last == CHOICE_CONTINUATION:
            if text.startswith("*End"):
                return CHOICE_END
            if not asterisk:
                return CHOICE_CONTINUATION
        return self.ui_tail(text)

    def take(self, text):
        """Types one line and moves on; returns the type, 0 when the line is rejected."""
        kind = self.type_of(text)
        if kind == INVALID:
            return kind
        if kind not in (COMMENT, NEW_LINE):
            self.last = kind
            if kind == STATEMENT:
                self.closed = is_closed(text)
            elif kind == CONTINUATION:
                self.closed = strip(text, BLANK).endswith('"')
        self.line += 1
        return kind


def unpacked(data):
    """The bytes that the line reader reads: it unpacks gzip."""
    return gzip.decompress(data) if data[:2] == b"\x1f\x8b" else data


def read_lines(data):
    """What reading the PPD comes to: (steps, error code, line number, cut), a step being (state before, type).

    `cut` tells that reading ended at a piece that is not UTF-8."""
    try:
        data = unpacked(data)
    except (OSError, EOFError):
        return [], -1, 0, False
    typer, steps = LineTyper(), []
    for piece in pieces(data):
        try:
            text = piece.decode("utf-8")
        except UnicodeDecodeError:
            return steps, 0, typer.line, True
        before = (typer.last, typer.closed)
        kind = typer.take(text)
        steps.append((before, kind, typer.error))
        if kind == INVALID:
            return steps, typer.error, typer.line, False
    return steps, 0, typer.line, False


# --- Vocabularies ----------------------------------------------------------------------------------------------------

UPDATERS = ("ATMediaTypePPDUpdater", "ATMediaTypePSPPDUpdater", "ATMediaTypePCL3PPDUpdater",
            "ATMediaTypePCL3Qualifier3PPDUpdater", "ATMediaTypePCL3Qualifier1PPDUpdater",
            "ATGlossyProfilePCL3PPDUpdater", "ATPDLCommandTypePPDUpdater")
BASE, PS, PCL3, Q3, Q1, GLOSSY, PDL = UPDATERS
UNKNOWN_UPDATERS = ("ATUnknownUpdater", "atmediatypepsppdupdater", "ATMediaTypePSPPDUpdaterX", "X",
                    "ATMediaTypePSPPDUpdater,ATPDLCommandTypePPDUpdater", "\"")
URIS = ("socket://192.0.2.10:9100", "usb://Vorantis/Z9?serial=A1", "ipp://192.0.2.11/ipp", "x")
MODELS = ('"Vorantis Z9 44in"', '"Vorantis Z6"', '"Z"', "Vorantis Z9", '""')
FAMILIES = ("MFG:Vorantis;CID:QZVR2PCLS;MDL:Z9;", "CID:QZVRPCLS", "CID:QZVRPSZ", "MFG:X;CID:QZVRPCLAT",
            "CID:QZVR2PCLAZ;CID:QZVR2PCLS", "CID:", "CID:a:b", "CID:a:b;CID:QZVR2PCLS", "MFG:X;MDL:Y", "XCID:QZVR2PCLS",
            "CID: QZVR2PCLS", "", ";", ";;CID:QZVRPCLS;", "XCID:;CID:QZVR2PCLS", "CID:QZVR2PCLS ", "cid:QZVR2PCLS",
            "CIDX:QZVR2PCLS;CID:QZVRPCLS", "MFG:é;CID:QZVR2PCLS", "QZVR2PCLS", "A:CID:;CID:QZVRPCLS")
MEDIA = ("Plain", "Glossy", "Canvas", "Photo", "12", "Custom1", "Custom12", "Custom2", "PlainX", "Plain.X")
IDS = ("12", "123", "4711", "47", "1", "Plain", "A", "QZMediaID", "0", "12)", "é7")
FAR_IDS = ("9999", "8888", "zz")
CATEGORIES = ("CUSTOM", "QZ_EXTENDED_MEDIA")
OTHER_CATEGORIES = ("FACTORY", "custom", "CUSTOM ", "QZ_EXTENDED_MEDI", "")
LANGUAGES = ("en", "de", "fr", "zh_TW", "EN", "en_US")
QUALITIES = ("Fast", "Normal", "Best")
GLOSS_CHOICES = ("off-ge", "whole-page-ge", "economode-ge")
GLOSS_VALUES = ("OFF", "FULLPAGE", "INKEDAREA")
ODD_GLOSS_VALUES = ("True", "False", "off-ge", "full", "", "OFF ", "RGB", "whole-page-ge")
THIRD = ("", "Best", "Normal", "Fast", "off-ge", "whole-page-ge", "economode-ge")
FIRST = ("", "True", "False", "RGB", "FULLPAGE", "OFF")
ODD_BLANKS = (" ", "  ", "\t", "\u00a0", "\u3000", " \t ", "\u2003", "\x0b", "\u2028")
SAFE_BLANKS = (" ", "  ", "\t", "\u00a0", "\u3000", "\u1680", "\u2003")
ODD_CHARACTERS = ("\u00e9", "\u20ac", "\U0001f600", "\u0085", "\u2028", "\u2029", "\x0b", "\x0c", "\x00", "\ufeff",
                  "\u009d", "\u009e", "\x7f", "e\u0301", "\u200b", "\u212a", "\u0130", "\xad")
PROFILE_NAMES = ("Plain Paper", "Glossy Best", "P", "Profil \u00e9\u00ff", "Plain")
ODD_PROFILE_NAMES = ("Euro \u20ac", "a:b", 'q"q', "", "Tab\tName", "<b>", "Line\nFeed", "\u0100\U0001f600", " ",
                     "a/b", "\u009d", "a>b:c\"", ";;", "100%")
MEDIA_NAMES = ("My Canvas", "Paper", "My Paper", "P", "Photo Satin")
ODD_MEDIA_NAMES = ("a:b", 'say "hi"', "two\nlines", "CR\rhere", "Caf\u00e9", "Euro \u20ac", "\U0001f600", "tab\tname",
                   "\u009d", "\u009e", "\u009d", "\u009e", "\x7f", "a/b", " ", " lead", "", "", "x\u2028y",
                    "\x1f", "\x01", "~", "*End", "%@",
                   "<b>", "two\r\nlines", "\x0bvt", "nel\u0085x")
PATHS = ("/Library/F/plain.icc", "/Library/F/gloss.icc", "/p/a.icc", "/a b/c.icc", "my profiles/50%.icc")
# Without a scheme, and what looks like one and is none; and with one.
RELATIVE_PATHS = ("p/a b.icc", " p.icc", "p/a#1.icc", "#p", "?p=q", "p?q", "p/a%20b.icc", "%2Fp", "%", "100%zz",
                  "p/\u00e9.icc", "\u20ac/\u00e9 #1%.icc", "\\p\\q", "1a:b", "-a:b", "_a:b", "a b:c", "a%41:b", ":b",
                  "../p [1].icc", "{p}|^`")
SCHEMED_PATHS = ("a:b", "C:\\x", "C:x", "c:/p q", "x-1.2+y:p%20q", "a:b c", "p:%zz", "file:p/a%20b.icc")
ODD_PATHS = ("", "rel.icc", "file:///x%20y.icc", "/p;x", "/Library/\u00e9.icc", "a b.icc", "/%41.icc", "/q\tx", "%zz",
             "/p:q", "/\u20ac", "/%zz") + RELATIVE_PATHS + SCHEMED_PATHS
URLS = ("file:///Library/Profiles/a.icc", "/Library/Profiles/b.icc", "file:///Library/My%20Profiles/c.icc",
        "file:///p/a.icc", "/p/a.icc", "my profiles/50%.icc")
ODD_URLS = ("", "file:///a b.icc", "/a b/\u00e9.icc", "file:///%zz", "file:///%FF.icc", "file://host", "mailto:a@b",
            "file:///a%3Ab.icc", "file:///%C3%A9.icc", "file:///%E2%82%AC.icc", "%2Fp%2Fq.icc", "//host/p.icc",
            "file:/x", "?q", "#f", "http://h/x.icc?q#f", "file:///%00", "http://[::1]/a", "http://[::1/a", "1:a", "a:b",
            "file:///a|b", "file:///a[b]", "file:///caf\u00e9.icc", "relative/d.icc", "./e.icc", "../f", "file:",
            "file:///a%2", "file:///%e2%82", "file:///a//b", "file:///a/../b", "http://u@h:80/x", "http://h:x/y",
            "/%41", "/\u20ac.icc", "/a:b", "/q\"q", "file:///%22", "+a:b", "a+b:/c", "file:///a^b", "/", "//", "///x",
            "file:///%ED%A0%80", "\u00e9", " /a", "/a\nb", "a%20b:c", ";x", "x;y=1/z", "@", "a@b/c", "file:///a%20") \
    + RELATIVE_PATHS + SCHEMED_PATHS


class Generator:
    def __init__(self, seed):
        self.r = random.Random(seed)
        self.tags = []
        self.theme = self.weighted((("ps", 3), ("pcl3", 4), ("q3", 5), ("q1", 6), ("glossy", 5), ("base", 1),
                                    ("pdl", 3), ("mixed", 5), ("none", 1)))
        self.odd = self.weighted(((0.02, 5), (0.08, 3), (0.25, 1)))
        self.main = {"ps": PS, "pcl3": PCL3, "q3": Q3, "q1": Q1, "glossy": GLOSSY, "base": BASE, "pdl": PDL,
                     "none": PS}.get(self.theme) or self.r.choice(UPDATERS)
        self.world()

    # Chances

    def chance(self, probability):
        return self.r.random() < probability

    def is_odd(self, factor=1.0):
        return self.r.random() < self.odd * factor

    def pick(self, values):
        return self.r.choice(values)

    def weighted(self, pairs):
        return self.r.choices([value for value, _ in pairs], [weight for _, weight in pairs])[0]

    def mostly(self, common, rare, factor=1.0):
        return self.pick(rare if self.is_odd(factor) else common)

    def tag(self, name):
        self.tags.append(name)

    # The printer and its media, which PPD and snapshot share

    def world(self):
        self.uri = self.weighted(tuple(zip(URIS, (8, 1, 1, 1))))
        self.model = self.weighted(tuple(zip(MODELS, (8, 2, 1, 1, 1))))
        count = self.weighted(((0, 1), (1, 3), (2, 5), (3, 5), (5, 2)))
        self.media = [(name, self.pick(IDS[:7]) if self.chance(0.9) else self.pick(IDS))
                      for name in self.r.sample(MEDIA, count)]
        if self.is_odd():
            long_name = "N" * self.pick((34, 37, 38, 38, 39, 39, 40, 43))
            self.media.append((long_name, self.pick(IDS)))
        self.third_option = self.weighted((("OutputMode", 6 if self.theme == "q1" else 3), ("Quality", 3),
                                           ("QZGlossEnhancer", 2), ("Missing", 1)))
        gloss = {"q1": (1, 5, 1, 1), "glossy": (5, 1, 1, 1)}.get(self.theme, (3, 3, 1, 2))
        self.gloss_options = self.weighted(tuple(zip((("QZGlossEnhancer",), ("QZGlossEnhancerSimplified",),
                                                      ("QZGlossEnhancer", "QZGlossEnhancerSimplified"), ()), gloss)))
        names = ["Custom1", "Custom2", "Customa", "Custom12"]
        self.earlier = names[:self.r.randrange(1, 5)] if self.chance(0.4) else []
        if self.earlier and self.chance(0.3):
            self.earlier.append("Custom1")
        self.specs = [self.spec() for _ in range(self.r.randrange(1, 7))]

    def media_name(self):
        if self.media and self.chance(0.75):
            return self.pick(self.media)[0]
        return self.pick(MEDIA + ("Custom1", "Custom2", "Custom3"))

    def spec(self):
        if self.is_odd(0.5):
            return self.pick(("Plain", ".Plain", "A.B.C.D", ".", "..", "...", "", "True.Plain", "x", "Plain.", "True",
                              "True..Best", "a b.Plain.c", "Plain/x", "M" * 41))
        if self.chance(0.3 if self.theme in ("pcl3", "glossy", "mixed") else 0.1):
            return ".%s." % self.media_name()
        first = {"q1": ("True", "False", "True", "False", ""), "q3": ("", "", "", "RGB")}.get(self.theme, FIRST)
        third = {"q1": QUALITIES + ("",), "q3": QUALITIES + ("",), "glossy": THIRD[4:] + ("", "")}.get(
            self.theme, THIRD)
        return "%s.%s.%s" % (self.pick(first), self.media_name(), self.pick(third))

    # Statements

    def gap(self):
        return self.pick(SAFE_BLANKS) if self.is_odd() else " "

    def statement(self, name, spec=None, text=None, value=""):
        """One statement; a value of several lines gives several lines."""
        keyword = "*" + name
        if self.is_odd(0.15):
            keyword = self.pick((keyword.lower(), keyword.upper(), "* " + name, "*" + name + "/Text", "*\u00a0" + name))
        middle = ""
        if spec is not None:
            middle = self.gap() + spec
            if text is not None:
                middle += "/" + text
        elif self.is_odd(0.2):
            middle = self.pick((" ", " /Text", "/Text", " Spec", "\t"))
        colon = ":"
        if self.is_odd(0.3):
            colon = self.pick((" :", "\t:", "::", " :\u00a0"))
        if self.is_odd(0.1):
            colon = ""
        blank = self.pick(("", "  ", "\t", "\u00a0", "\u3000")) if self.is_odd() else " "
        tail = self.pick((" ", "\t", "\u00a0", " x", "\u0085", "\x0b")) if self.is_odd(0.3) else ""
        return (keyword + middle + colon + blank + value + tail).split("\n")

    def quoted(self, content):
        if self.is_odd(0.3):
            return self.pick((content, content + '"', '"' + content, '""' + content + '"', '" "', '""', "",
                              '"' + content + '" "x"'))
        return '"' + content + '"'

    def multi(self, lines):
        """Lines of a statement of several lines, with its *End in most cases."""
        if self.is_odd(0.5):
            return lines
        return lines + [self.pick(("*End", "*End", "*End", "*EndX", "*End: x"))]

    def languages(self):
        count = self.weighted(((0, 1), (1, 2), (2, 4), (3, 4), (4, 2)))
        entries = [self.pick(LANGUAGES[:4]) if self.chance(0.9) else self.pick(LANGUAGES) for _ in range(count)]
        if self.is_odd(0.6):
            entries.insert(self.r.randrange(len(entries) + 1), self.pick(("", "\u00e9", "a.b", "de/x", "\x7f", "%")))
        if self.is_odd(0.7):
            entries.append("l" * (self.r.randrange(206, 222) if self.chance(0.6) else self.r.randrange(90, 215)))
            self.tag("long language")
        separator = self.pick(SAFE_BLANKS + ("\x0b", ",")) if self.is_odd() else " "
        text = separator.join(entries)
        if self.is_odd(0.5):
            text = self.pick((" " + text, text + " ", "\t" + text))
        if self.is_odd(0.4) and " " in text:
            first, rest = text.split(" ", 1)
            return self.multi(["*cupsLanguages: \"" + first, rest + '"'])
        return self.statement("cupsLanguages", value=self.quoted(text))

    def chain(self):
        if self.theme == "none":
            names = []
            if self.chance(0.5):
                return []
        elif self.theme == "mixed":
            names = [self.pick(UPDATERS[1:]) if self.chance(0.95) else BASE
                     for _ in range(self.weighted(((0, 1), (1, 2), (2, 5), (3, 4))))]
        else:
            names = [self.main]
            for _ in range(self.weighted(((0, 8), (1, 3), (2, 1)))):
                names.insert(self.r.randrange(len(names) + 1), self.weighted(((PDL, 3), (self.main, 2),
                                                                              (self.pick(UPDATERS), 3))))
        if self.is_odd(1.5):
            names.insert(self.r.randrange(len(names) + 1), self.pick(UNKNOWN_UPDATERS))
        separator = self.pick(SAFE_BLANKS + (" \t", ",", "\n", "\x0b")) if self.is_odd() else " "
        text = separator.join(names)
        if self.is_odd(0.5):
            text = self.pick((" " + text, text + " ", "\u3000" + text, text + "\n"))
        lines = self.statement("QZPPDUpdaters", value='"' + text + '"' if self.chance(0.985) else self.quoted(text))
        return lines + ["*End"] if len(lines) > 1 else lines

    def properties(self):
        parts = []
        if self.chance(0.8 if self.theme == "glossy" else 0.5):
            parts.append(self.pick(("glossy=YES", "GESupport=YES", "glossy=YES", "GESupport=YES", "glossy=NO",
                                    "glossy=YESX", "glossy=yes")))
        if self.chance(0.8):
            parts.append("defaultGE='%s'" % self.pick(GLOSS_CHOICES + ("True", "False")))
        for _ in range(self.r.randrange(3)):
            parts.append(self.pick(("a=b", "weight=12", "", "p=a/b", "x=defaultGE", "defaultGE", "defaultGEx=1",
                                    " defaultGE='True'", "defaultge='x'", "defaultGE='off-ge'", "k=\u00e9", "c:d")))
        self.r.shuffle(parts)
        if self.is_odd():
            parts.insert(0, "")
        return ";".join(parts)

    def value_attributes(self, name=None):
        name = name or (self.media_name() if self.chance(0.8) else
                self.pick(IDS + FAR_IDS + ("(null)", "(null)") + tuple(self.earlier)))
        text = self.pick(("Text", "a/b", " T ", "T", "")) if self.chance(0.25) else None
        spec = "MediaType." + name
        if self.is_odd(0.3):
            spec = self.pick(("MediaType", "MediaType.", "mediatype." + name, name, "MediaType.." + name))
        content = self.properties()
        if self.chance(0.08):
            cut = self.r.randrange(len(content) + 1)
            return self.multi(self.statement("QZValueAttributes", spec, text,
                                             '"%s\n%s"' % (content[:cut], content[cut:])))
        return self.statement("QZValueAttributes", spec, text, self.quoted(content))

    def localizations(self, keyword, spec, text):
        lines = []
        for language in self.r.sample(LANGUAGES[:4], self.r.randrange(4)):
            lines += self.statement(language + "." + keyword, spec, text, '""')
        return lines

    def profile_text(self):
        return self.mostly(PROFILE_NAMES, ("a/b", "\u20ac", "", "  x ", "<>", "T" * 81))

    def factory_profile(self):
        spec = self.pick(self.specs) if self.chance(0.8) else self.spec()
        if self.theme == "q1" and self.media and self.chance(0.4):
            spec = "%s.%s.%s" % (self.pick(("True", "False")), self.pick(self.media)[0], self.pick(QUALITIES))
        name, path = self.mostly(PROFILE_NAMES, ODD_PROFILE_NAMES[:4]), self.mostly(PATHS, ODD_PATHS)
        if self.is_odd(0.6):
            path = "/" + "f" * self.r.randrange(170, 235)
        content = name + ";;" + path
        if self.is_odd(2 if self.theme == "q1" else 1):
            content = self.pick((name, "a;;b;;c", ";;" + path, name + ";;", "", ";;", name + ";" + path,
                                 name + ";;;" + path, name + ";;;;" + path, 'a"b;;' + path))
        if self.chance(0.04):
            return self.multi(self.statement("QZcupsICCProfile", spec, "T", '"%s;;\n%s"' % (name, path)))
        chosen = spec if not self.is_odd(0.15) else None
        if chosen is None:
            self.tag("factory profile without a spec")
        return self.statement("QZcupsICCProfile", chosen, self.profile_text(), self.quoted(content))

    def profile(self):
        spec = self.pick(self.specs) if self.chance(0.8) else self.spec()
        path = self.mostly(PATHS, ODD_PATHS)
        value = path if self.chance(0.15) else self.quoted(path)
        lines = []
        if self.chance(0.15):
            lines += self.localizations("cupsICCProfile", spec, self.profile_text())
        text = self.profile_text() if self.chance(0.95) else None
        if self.chance(0.04):
            lines += self.multi(['*cupsICCProfile %s/%s: "' % (spec, text), path + '"'])
        else:
            lines += self.statement("cupsICCProfile", spec, text, value)
        if self.chance(0.5):
            lines += self.localizations("cupsICCProfile", spec, self.profile_text())
        return lines

    def qualifiers(self):
        blocks = []
        if self.chance(0.9 if self.theme == "q1" else 0.3):
            value = "QZGlossEnhancerSimplified" if self.chance(0.95) else self.pick(("QZGlossEnhancer", "ColorModel",
                                                                                    "qzglossenhancersimplified", ""))
            blocks.append(self.statement("cupsICCQualifier1", value=value if self.chance(0.15) else self.quoted(value)))
        if self.chance(0.9 if self.theme in ("q1", "q3", "glossy") else 0.4):
            value = "OutputMode" if self.theme == "q1" and self.chance(0.85) else self.third_option
            if self.is_odd(0.3):
                value = self.pick(("Resolution", "", "outputmode", " OutputMode", "OutputMode "))
            blocks.append(self.statement("cupsICCQualifier3", value=value if self.chance(0.15) else self.quoted(value)))
            if self.is_odd():
                blocks.append(self.statement("cupsICCQualifier3", value=self.quoted(self.third_option)))
        return blocks

    def group_attribute(self, spec, names):
        """A group statement as an earlier run writes it: names joined by a comma and a line end."""
        joint = ",\n" if not self.is_odd() else self.pick((", \n", ",", ",\n\n", "\n", ",\n,\n"))
        text = joint.join(names)
        style = self.weighted((("plain", 8), ("quotes", 1), ("unquoted", 1), ("empty", 1), ("no colon", 0.3)))
        if style == "quotes":
            text = '"' + text + '""'
        value = {"plain": '"' + text + '"', "quotes": '"' + text + '"', "unquoted": text.replace("\n", ""),
                 "empty": self.pick(('""', "", '"', "Custom1")), "no colon": ""}[style]
        if style == "no colon":
            return ["*QZMediaTypeGroup " + spec]
        lines = self.statement("QZMediaTypeGroup", spec, "Custom Paper", value)
        return self.multi(lines) if len(lines) > 1 or self.chance(0.2) else lines

    def earlier_setup(self):
        blocks = []
        if self.earlier or self.is_odd():
            names = list(self.earlier)
            if names and self.chance(0.3):
                names.append(self.pick(MEDIA + ("Custom3", "Custom")))
            if self.is_odd(0.5):
                names.append("")
            cut = self.r.randrange(len(names) + 1) if self.chance(0.4) else len(names)
            if names[:cut] or self.is_odd():
                blocks.append(self.group_attribute("CustomMedia-category", names[:cut]))
            if names[cut:]:
                blocks.append(self.group_attribute("ExtendedCustomMedia-category", names[cut:]))
            if self.is_odd():
                blocks.append(self.group_attribute(self.pick(("CustomMedia-category", "Other", "custommedia-category")),
                                                   names[:1]))
            for name in names:
                if self.chance(0.7):
                    blocks.append(self.statement("QZValueAttributes", "MediaType." + name,
                                                 value=self.quoted(self.properties())))
                if self.chance(0.6):
                    spec = self.pick((".%s.", "True.%s.Best", ".%s.whole-page-ge", ".%sx.", ".%s.", "%s")) % name
                    blocks.append(self.statement("cupsICCProfile", spec, "Old", self.quoted(self.pick(PATHS))) +
                                  self.localizations("cupsICCProfile", spec, "Old"))
        if (self.earlier and self.chance(0.9)) or self.chance(0.1):
            for _ in range(2 if self.chance(0.1) else 1):
                blocks.append(self.statement("QZMediaListVersion", value=self.pick(("16", "17", '"17"', "",
                                                                                  "MEDIUM_LIST_VERSION_UNKNOWN"))))
        if self.chance(0.1):
            blocks.append(self.statement("QZVorantisFamily", value='"VR-K-410"'))
            blocks.append(["*QZPDLCommand initial-reset: \"pdl-flush-raster;;", "pdl-reset\"", "*End"])
        return blocks

    # Options and groups

    def code(self, name, identifier):
        style = self.weighted((("pcl3", 6), ("ps", 2), ("bare", 1), ("empty", 0.5), ("other", 0.5)))
        return {"pcl3": "<</MediaType(%s)/QZMediaID(%s)>>setpagedevice" % (name, identifier),
                "ps": "/QZDict /ProcSet findresource /SetMediaId get (%s) exch exec" % identifier,
                "bare": identifier, "empty": "", "other": "<</Other 1>>setpagedevice"}[style]

    def choice(self, keyword, name, text, code):
        if self.chance(0.06) and len(code) > 4:
            cut = self.r.randrange(len(code))
            lines = ["*%s %s/%s: \"%s" % (keyword, name, text, code[:cut]), code[cut:] + '"']
            if not lines[1].startswith("*") and self.chance(0.85):
                lines.append("*End")
            return lines
        if self.is_odd(0.6):
            form = self.pick(('*{k} {n}: "{c}"', '*{k}  {n} / {t} : "{c}"', '*{k}\t{n}/{t}:"{c}"', '*{k} {n}/{t}: {c}',
                              '*{k}\u00a0{n}/{t}: "{c}"', '*{k}', '*{k} /{t}: "{c}"', '*{k} {n}/{t}: "{c}',
                              '* {k} {n}/{t}: "{c}"', '*{k}: "{c}"', '*{k} {n}/{t}: "{c}" "{c}"'))
            return [form.format(k=keyword, n=name, t=text, c=code)]
        return ["*%s %s/%s: \"%s\"" % (keyword, name, text, code)]

    def option(self, keyword, choices, default):
        """One UI block; `choices` are (name, text, code)."""
        lines = ["*OpenUI *%s/%s: PickOne" % (keyword, keyword)]
        if self.is_odd(0.4):
            lines[0] = self.pick((lines[0].lower(), " " + lines[0], "* OpenUI *%s: PickOne" % keyword, "*OpenUI",
                                  "*OpenUIX *%s: PickOne" % keyword, "\t" + lines[0]))
        body = []
        default_line = "*Default%s: %s" % (keyword, default)
        if self.is_odd():
            default_line = self.pick(("*Default%s:%s" % (keyword, default), "*Default%s : %s " % (keyword, default),
                                      "*Default %s: %s" % (keyword, default), "*Default%s" % keyword, "*Default: x",
                                      "*Default\u00a0%s\u3000:\u00a0%s" % (keyword, default),
                                      "*default%s: %s" % (keyword, default), "*Default%s: " % keyword, "*Default",
                                      "*Default%s: \"%s\"" % (keyword, default), "*DefaultOther: " + default))
        if self.chance(0.6):
            body.append(["*OrderDependency: 10 AnySetup *%s" % keyword])
        body.append([default_line] if not self.is_odd(0.5) else [])
        if self.is_odd(0.5):
            body.append(["*Default%s: %s" % (self.pick((keyword, "Other")), self.pick(("x", default)))])
        if self.chance(0.2):
            self.r.shuffle(body)
        for name, text, code in choices:
            body.append(self.choice(keyword, name, text, code))
            if self.chance(0.15):
                body.append(["*%s.%s %s/%s: \"\"" % (self.pick(LANGUAGES[:4]), keyword, name, text)])
            if self.is_odd(0.3):
                body.append([self.pick(("", "*% comment", "*End", "*OpenGroup: Inner/x", "*CloseGroup: Inner",
                                        "*OrderDependency: 20 AnySetup *X", "*closeui"))])
        if self.is_odd(0.6):
            body.append(body.pop(self.r.randrange(len(body))))
        for block in body:
            lines += block
        lines.append("*CloseUI: *" + keyword)
        if self.is_odd(0.4):
            lines[-1] = self.pick(("*CLOSEUI: *" + keyword, " *CloseUI: *" + keyword, "*CloseUI *" + keyword,
                                   "* CloseUI : *" + keyword, "*CloseUI :", "*CloseUI:"))
            if lines[-1].startswith(" ") or lines[-1] == "*CloseUI *" + keyword:
                lines.append("*CloseUI: *" + keyword)
        return lines

    def media_option(self):
        choices = [(name, name + " Paper", self.code(name, identifier)) for name, identifier in self.media]
        for name in self.earlier:
            if self.chance(0.85):
                choices.insert(self.r.randrange(len(choices) + 1) if self.chance(0.2) else len(choices),
                               (name, "Old", self.code(name, self.pick(IDS))))
        if self.is_odd():
            choices.append((self.pick(("", "Custom1", "Plain", "Custom2")), "Dup", self.code("Plain", "12")))
        default = choices[0][0] if choices else "None"
        return self.option("MediaType", choices, default)

    def simple_option(self, keyword, names):
        names = list(names)
        if self.chance(0.3):
            self.r.shuffle(names)
        if self.chance(0.2) and names:
            names.pop()
        if self.is_odd():
            names.append(self.pick(names) if names else "x")
        return self.option(keyword, [(name, name, "<<%s>>" % name) for name in names], names[0] if names else "None")

    def group(self, name, blocks):
        first = "*OpenGroup: %s/%s Options" % (name, name)
        if self.is_odd(0.5):
            first = self.pick(("*OpenGroup: " + name, "*OpenGroup:%s/x" % name, "*opengroup: %s/x" % name,
                               "*OpenGroup:  %s /x" % name, "*OpenGroup: /" + name, "*OpenGroup:", "*OpenGroup: ",
                               "* OpenGroup : %s/x" % name, "*OpenGroup:\u00a0%s\u00a0/x" % name, "*OpenGroup: /"))
        lines = [first]
        for block in blocks:
            if self.is_odd(0.6):
                lines.append(self.pick(("", "*% in a group", "*ModelName: \"In group\"", "*Statement: x",
                                        "*cupsICCProfile .Plain./G: \"/in/group.icc\"", "*Open: \"a")))
                if lines[-1].startswith("*Open:"):
                    lines += ['b"', "*End"]
            lines += block
        if self.is_odd(0.6):
            lines.append(self.pick(("", "*% at the end of a group", "*Statement: y")))
        close = "*CloseGroup: " + name
        if self.is_odd(0.3):
            close = self.pick(("*closegroup: " + name, " *CloseGroup: " + name, "*CloseGroup:", "* CloseGroup :"))
            if close.startswith(" ") and not lines[-1].startswith("*CloseUI"):
                close = close[1:]
        if not self.is_odd(0.25):
            lines.append(close)
        return lines

    def groups(self):
        blocks, loose = [], []
        imaging = []
        if not self.is_odd(0.5):
            imaging.append(self.media_option())
        others = [self.simple_option("Quality", QUALITIES)] if self.chance(0.6) else []
        if self.chance(0.9 if self.theme == "q1" else 0.5):
            others.append(self.simple_option("OutputMode", QUALITIES))
        for keyword in self.gloss_options:
            names = GLOSS_CHOICES if keyword == "QZGlossEnhancer" else ("True", "False")
            others.append(self.simple_option(keyword, names))
        elsewhere = []
        for block in others:
            self.weighted(((imaging, 7), (elsewhere, 3), (loose, 0.4)) if self.chance(0.9) else
                          ((loose, 1),)).append(block)
        self.r.shuffle(imaging)
        if self.is_odd():
            imaging.append(self.media_option())
        if imaging or self.chance(0.5):
            blocks.append(self.group("QZImagingOptions", imaging))
        if elsewhere or self.is_odd():
            name = self.pick(("General", "JCL", "QZImagingOptionsX"))
            blocks.insert(self.r.randrange(len(blocks) + 1), self.group(name, elsewhere))
        if self.is_odd(0.4):
            blocks.append(self.group("QZImagingOptions", [self.media_option()]))
        if self.is_odd(0.4):
            loose.append(self.media_option())
        if self.is_odd(0.3):
            loose[-1:] = [(loose[-1] if loose else self.simple_option("Loose", QUALITIES)) + ["*CloseGroup: Nothing"]]
        if self.is_odd(0.3):
            loose.append(self.pick((["*NoColon"], ['*Unclosed: "a'], ["*No Colon"])) +
                         self.simple_option("Quality", QUALITIES) + ["*Lost: 1", '*Found: "x"'])
            self.tag("open statement before an option")
        return blocks, loose

    # The PPD

    def lines(self):
        attributes = []
        if not self.is_odd(0.6):
            attributes.append(self.statement("ModelName", value=self.model))
        if self.is_odd(0.4):
            attributes.append(self.pick((self.statement("ModelName", "X", None, '"Vorantis Z6"'),
                                         ["*ModelName: \"Two", "lines\"", "*End"], ["*modelname: \"x\""])))
        if self.chance(0.85):
            attributes.append(self.languages())
        chain = self.chain()
        if chain:
            attributes.append(chain)
        if self.is_odd(0.3):
            attributes.append(self.chain() or ["*QZPPDUpdaters: \"" + PDL + "\""])
        attributes += self.qualifiers()
        for _ in range(self.r.randrange(4)):
            attributes.append(self.value_attributes())
        for name, _ in self.media:
            if self.chance(0.6 if self.theme == "glossy" else 0.3):
                attributes.append(self.value_attributes(name))
        profiles = self.theme in ("pcl3", "q3", "q1", "glossy", "mixed")
        for _ in range(self.r.randrange(7 if self.theme == "q1" else 5 if profiles else 2)):
            attributes.append(self.factory_profile())
        for _ in range(self.r.randrange(6 if profiles else 2)):
            attributes.append(self.profile())
        attributes += self.earlier_setup()
        if self.chance(0.3):
            attributes.append(list(self.pick((
                ['*Multi: "one', 'two', 'three"', '*End'], ['*Multi: "', 'two"', '*End'], ['*Multi: "', '"', '*End'],
                ['*JCLOpenUI *JCLX/Y: PickOne', '*JCLCloseUI: *JCLX'], ['*Foo/Text: Baz'], ['*Foo Bar: Baz'],
                ['*: x'], ['*'], ['* : ""'], ['*Multi: "a', '*NotAStatement: 1', 'b"', '*End'],
                ['*Multi: "a', '*% comment inside', '', 'b"', '*End'], ['*Plain: x', 'more x'],
                ['*Plain: x', 'more "', '*End'], ['*Multi: "x"', '*End'], ['*NoColon', '*Eaten: x', '"']))))
        if self.chance(0.6):
            first = ("*ModelName", "*cupsLang", "*QZPPDUp")
            head = [block for block in attributes if block[0].startswith(first)]
            rest = [block for block in attributes if not block[0].startswith(first)]
            self.r.shuffle(rest)
            attributes = head + rest
        else:
            self.r.shuffle(attributes)
        blocks, loose = self.groups()
        order = self.weighted((("groups last", 5), ("groups first", 1), ("between", 3), ("no groups", 0.3)))
        if order == "no groups":
            blocks = []
        parts = [["*PPD-Adobe: \"4.3\""], ["*% A PPD"]] if self.chance(0.6) else []
        if order == "groups first":
            body = blocks + attributes
        elif order == "between":
            body = list(attributes)
            for block in blocks:
                body.insert(self.r.randrange(len(body) + 1), block)
        else:
            body = attributes + blocks
        for block in loose:
            body.insert(self.r.randrange(len(body) + 1), block)
        if self.is_odd(0.6) and len(body) > 1:
            cut = self.r.randrange(len(body))
            body[cut] = self.long_block()
        if self.is_odd(0.6):
            body.insert(self.r.randrange(len(body) + 1), self.border_block())
        if self.is_odd(0.4) and blocks and blocks[0] in body:
            # Without a colon the value stays open, which only a group or an option ends.
            body.insert(body.index(blocks[0]), [self.pick(("*cupsICCQualifier3 ", "*QZMediaListVersion ", "*ModelName ",
                                                           "*cupsICCQualifier1 x", "*cupsLanguages ",
                                                           "*QZValueAttributes MediaType.Plain"))])
        lines = []
        filler = self.weighted(((0.0, 3), (0.03, 3), (0.15, 1)))
        for block in parts + body:
            lines += block
            if self.chance(filler):
                lines.append(self.pick(("", "*% comment", "*%", "*%% *End")))
        return lines

    def long_block(self):
        """A statement, comment or choice near or over the reader's buffer of 254 bytes."""
        self.tag("long line")
        size = self.weighted(((self.r.randrange(248, 262), 6), (self.r.randrange(500, 520), 2),
                              (self.r.randrange(262, 900), 2)))
        head = self.pick(('*Long: "', "*%", '*QZValueAttributes MediaType.Plain: "glossy=YES;defaultGE=\'off-ge\';',
                          '*cupsLanguages: "en ', "*Long: x", '*cupsICCProfile .Plain./T: "/', '*MediaType Plain/x: "'))
        filler = self.pick(("x", "x", "y ", "\u00e9", "\u20ac", "\U0001f600", "de ", "*", "*End "))
        text, tail = head, '"' if '"' in head and self.chance(0.8) else ""
        while len((text + filler + tail).encode()) <= size:
            text += filler
        text += "z" * (size - len((text + tail).encode())) if self.chance(0.5) else ""
        return [text + tail] + (["*End"] if tail and self.chance(0.6) else [])

    def border_block(self):
        """A line whose part after the reader's 254 bytes would be another line, or would be none, one byte on."""
        self.tag("long line")
        style = self.pick(("comment", "statement", "open", "updaters", "properties"))
        tail = self.pick(("*Tail: x", "*End", "text", '"', "*CloseGroup: X", "*OpenGroup: X/Y", "*OpenUI *X: PickOne",
                          "*", "*% c", " ", "\u00e9", "\u20ac\"", "*Default", "*CloseUI: *X"))
        head = {"comment": "*% ", "statement": '*Long: "x" ', "open": '*Long: "', "updaters": '*QZPPDUpdaters: "',
                "properties": '*QZValueAttributes MediaType.%s: "' % self.media_name()}[style]
        if style == "updaters":
            names = " ".join(UPDATERS[1:])
            head += " " * self.r.randrange(110, 200) if self.chance(0.5) else ""
            lines = [head + names + '"']
        elif style == "properties":
            filler = "x" * (self.r.randrange(225, 256) - len(head.encode()))
            lines = [head + filler + ";glossy=YES;defaultGE='off-ge';y\""]
        else:
            size = self.pick((252, 253, 254, 254, 255, 256))
            lines = [head + "x" * (size - len(head.encode())) + tail]
        return lines + (["*End"] if style in ("open", "updaters", "properties") and self.chance(0.7) else [])

    def soup(self):
        """Lines of every type in every state: mostly ones that the state takes, sometimes any."""
        self.tag("soup")
        typer, lines = LineTyper(), []
        vocabulary = ["*Statement: x", "*S Plain/T: \"v\"", "*S: \"open", "closed\"", "\"", "text", " ", "  *Blank: x",
                      "*End", "*EndX: \"", " *End", "*end", "*%c", "",
                      "*OpenGroup: QZImagingOptions/x", "*OpenGroup: G", "*CloseGroup: G",
                      "*CloseGroup", " *CloseGroup: G", "*closegroup:", "*OpenUI *MediaType/x: PickOne", "*OPENUI",
                      " *OpenUI *X: PickOne", "*OpenUIAnything", "*CloseUI: *MediaType", "*CloseUI", " *CloseUI: *X",
                      "*OrderDependency: 1 AnySetup *X", "*orderdependency:", "*OrderDependency 1",
                      "*DefaultMediaType: Plain", "*DefaultQZGlossEnhancer: off-ge", "*defaultX: y",
                      "*MediaType Plain/Plain: \"12\"", "*MediaType Custom1/C: \"(4711)",
                      "12\"", "*NoColon", "*S: a\"b",
                      "*QZMediaListVersion: 1", "*QZValueAttributes MediaType.Plain: \"glossy=YES;defaultGE='x'\"",
                      "*cupsICCProfile .Plain./P: \"/p.icc\"", "*QZcupsICCProfile .Plain./P: \"N;;/f.icc\"",
                      "*QZMediaTypeGroup CustomMedia-category/Custom Paper: \"Custom1,", "Custom2\"", "*: ", "*",
                      "\u00a0*S: x", "*\u00a0OpenUI", "*\nx", "*S:\u2028\"", "\u2028", "\x0b", "*S: \"\u0085"]
        if self.chance(0.75):
            lines += [line for block in (self.languages(), self.chain()) for line in block if line]
            for line in lines:
                typer.take(line + "\n")
        wild = self.pick((0.0, 0.0, 0.02, 0.1))
        for _ in range(self.r.randrange(3, 60)):
            for _ in range(20):
                line = self.pick(vocabulary)
                trial = LineTyper()
                trial.last, trial.closed = typer.last, typer.closed
                if trial.take(line + "\n") != INVALID or self.chance(wild):
                    break
            else:
                line = ""
            lines.append(line)
            typer.take(line + "\n")
        if self.chance(0.4):
            lines = lines[:self.r.randrange(len(lines) + 1)]
            lines.append(self.pick(("text", "*End", "*CloseGroup: X", " ", "*EndOfGroup", " *CloseGroup: X")))
        return lines

    def mutate(self, lines):
        """Odd lines spliced in and lines changed, at random places."""
        for _ in range(self.weighted(((1, 6), (2, 3), (4, 1)))):
            if not lines:
                lines.append("*X: y")
            at = self.r.randrange(len(lines))
            line = lines[at]
            kind = self.weighted((("insert", 8), ("delete", 3), ("double", 2), ("swap", 2), ("colon", 2), ("quote", 3),
                                  ("lead", 2), ("case", 3), ("character", 4), ("split", 2), ("long", 3), ("bytes", 2),
                                  ("truncate", 1), ("blank", 2)))
            self.tag("mutation:" + kind)
            if kind == "insert":
                lines.insert(at, self.pick(("text", " ", "*End", "*CloseGroup: X", "*CloseUI: *X", "*OpenGroup: X/Y",
                                            "*OpenUI *X/Y: PickOne", "", "*% c", "*NoColon", '*Open: "', '"',
                                            " *Lead: 1",
                                            "*end", "*Default", "*OrderDependency: 1 X *Y", "*", "\ufeff*BOM: 1",
                                            "\x00",
                                            "\u2028", "*Nul\x00: x", "*\u2028Sep: x", "x*End", "*EndOfFile: True",
                                            "*JCLOpenUI *X: PickOne", "*JCLCloseUI: *X", "*Include: \"x\"",
                                            "*CloseUIX: y", "*openui: x", "*CLOSEGROUP: x", "*% \"",
                                            "*de.ModelName: \"M\"",
                                            "*cupsLanguages: \"it\"", "*QZPPDUpdaters: \"%s\"" % self.pick(UPDATERS))))
            elif kind == "delete":
                del lines[at]
            elif kind == "double":
                lines.insert(self.r.randrange(len(lines)), line)
            elif kind == "swap":
                other = self.r.randrange(len(lines))
                lines[at], lines[other] = lines[other], line
            elif kind == "colon":
                lines[at] = line.replace(":", "", 1)
            elif kind == "quote":
                cut = line.rfind('"')
                lines[at] = line[:cut] + line[cut + 1:] if cut >= 0 else line + '"'
            elif kind == "lead":
                lines[at] = self.pick(ODD_BLANKS) + line
            elif kind == "case":
                lines[at] = self.pick((line.lower(), line.upper(), line.swapcase()))
            elif kind == "character":
                cut = self.r.randrange(len(line) + 1)
                lines[at] = line[:cut] + self.pick(ODD_CHARACTERS) + line[cut:]
            elif kind == "split":
                cut = self.r.randrange(len(line) + 1)
                lines[at:at + 1] = [line[:cut], line[cut:]]
            elif kind == "long":
                lines[at:at] = self.long_block()
            elif kind == "bytes":
                cut = self.r.randrange(len(line) + 1)
                lines[at] = line[:cut] + "\udcff" * self.r.randrange(1, 3) + line[cut:]
            elif kind == "truncate":
                cut = self.r.randrange(len(lines))
                del lines[cut + 1:]
                lines[cut] = lines[cut][:self.r.randrange(len(lines[cut]) + 1)]
            elif kind == "blank":
                lines[at] = line.replace(" ", self.pick(ODD_BLANKS), 1)
        return lines

    def file(self):
        if self.chance(0.01):
            self.tag("empty PPD")
            return b""
        kind = self.weighted((("plain", 12), ("mutated", 5), ("soup", 3)))
        lines = self.soup() if kind == "soup" else self.lines()
        if kind == "mutated":
            self.mutate(lines)
        self.tag("file:" + kind)
        style = self.weighted((("\n", 14), ("\r\n", 2), ("\r", 1), ("mix", 1)))
        ends = ("\n", "\n", "\r\n", "\r", "\n\r") if style == "mix" else (style,)
        self.tag("line ends:" + {"\n": "LF", "\r\n": "CR LF", "\r": "CR", "mix": "mixed"}[style])
        text = "".join(line + self.pick(ends) for line in lines)
        if self.is_odd(0.5) and text:
            text = strip(text, LINE_ENDS)
            self.tag("no final line end")
        if self.is_odd(0.1):
            text = "\ufeff" + text
            self.tag("BOM")
        data = text.encode("utf-8", "surrogateescape")
        if self.is_odd(0.05):
            bad = self.pick((b"\xff", b"\xc0\xaf", b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"\xc3", b"\x80",
                             b"\xf0\x9f\x98"))
            at = self.r.randrange(len(data) + 1)
            data = data[:at] + bad + data[at:]
        if self.chance(0.01):
            self.tag("gzip")
            data = gzip.compress(data, mtime=0)
        return data

    # The device

    def wrong_type(self):
        self.tag("wrong type")
        return self.pick((17, True, False, [], {}, ["x"], {"a": "b"}, 0, -3, [{}], None, None, 1.5))

    def sized(self, target, overhead):
        return max(1, target - overhead)

    def profile_name(self):
        if self.is_odd(0.5):
            size = self.pick((78, 79, 80, 80, 81, 81, 82))
            return self.pick(("n" * size, "\u00e9" * (size // 2) + "n" * (size % 2)))
        return self.mostly(PROFILE_NAMES, ODD_PROFILE_NAMES)

    def profile_entry(self, custom):
        entry = {}
        if not self.is_odd(0.5):
            entry["URL"] = self.mostly(URLS, ODD_URLS, 1.5)
        if not self.is_odd(0.5):
            entry["ICCName"] = self.profile_name()
        if not self.is_odd(0.7):
            entry["GlossEnhancer"] = self.mostly(GLOSS_VALUES, ODD_GLOSS_VALUES)
            if self.is_odd(0.4):
                entry["GlossEnhancer"] = "G" * self.pick((30, 31, 31, 32, 32, 33))
        if self.chance(0.7 if self.theme == "q1" else 0.5):
            entry["OutputMode"] = self.pick(QUALITIES) if not self.is_odd(0.5) else self.pick(
                ("", "Best/x", "a.b", "M" * self.pick((25, 26, 27, 28)), "M" * self.pick((26, 27)), "\u00e9"))
        if self.is_odd(0.4) and "ICCName" in entry:
            overhead = len("*cupsICCProfile .Custom1./: \"\"\n") + len(str(entry["ICCName"]).encode())
            entry["URL"] = "/" + "u" * (self.sized(self.pick((250, 254, 255, 255, 256, 256, 260)), overhead) - 1)
            self.tag("long profile path")
        if self.is_odd(0.2):
            entry[self.pick(("URL", "ICCName", "GlossEnhancer", "OutputMode"))] = self.wrong_type()
        if self.is_odd(0.1):
            entry["Extra"] = self.wrong_type()
        return entry

    def record(self):
        custom = self.chance(0.55)
        media = self.pick(self.media) if self.media and self.chance(0.8) else None
        record = {"Name": self.mostly(MEDIA_NAMES, ODD_MEDIA_NAMES, 2)}
        identifier = (media[1] if media and self.chance(0.85 if not custom else 0.4) else
                      self.pick(IDS + FAR_IDS) if self.chance(0.9) else self.pick(("", "I" * self.r.randrange(34, 42))))
        record["MediumID"] = identifier
        if self.is_odd(0.5):
            code = {PS: "/QZDict /ProcSet findresource /SetMediaId get (%s) exch exec"}.get(
                self.main, "<</MediaType(Custom1)/QZMediaID(%s)>>setpagedevice") % identifier
            overhead = len("*MediaType Custom1/: \"\"") + len(code.encode())
            record["Name"] = "L" * self.sized(self.pick((253, 254, 255, 255, 256, 256, 257)), overhead)
            self.tag("long media name")
        record["CategoryName"] = "Custom" if custom else "Factory"
        record["CategoryID"] = (self.weighted(((CATEGORIES[0], 3), (CATEGORIES[1], 1))) if custom else
                                self.mostly(OTHER_CATEGORIES[:1], OTHER_CATEGORIES))
        count = self.weighted(((0, 1), (1, 6), (2, 4), (3, 2)))
        record["ICCProfiles"] = [self.profile_entry(custom) for _ in range(count)]
        if self.chance(0.75 if custom else 0.1):
            record["ParentID"] = media[1] if media and self.chance(0.85) else self.pick(IDS + FAR_IDS + ("",))
        if self.chance(0.6):
            record["PropertiesInfo"] = {}
            if self.chance(0.8):
                record["PropertiesInfo"]["DefaultGlossEnhancer"] = self.mostly(GLOSS_VALUES, ODD_GLOSS_VALUES)
            if self.chance(0.2):
                record["PropertiesInfo"]["Other"] = "x"
        for key in list(record):
            if self.is_odd(0.25):
                del record[key]
        if self.is_odd(0.2) and "MediumID" in record:
            record["MediumID"] = self.pick((12, 0, True, False, 4711))
        if self.is_odd(0.3):
            key = self.pick(list(record) or ["Name"])
            record[key] = self.wrong_type()
        if self.is_odd(0.15) and isinstance(record.get("ICCProfiles"), list):
            record["ICCProfiles"].append(self.pick(("x", 5, [], True)))
            self.tag("wrong type")
        if self.is_odd(0.2) and isinstance(record.get("PropertiesInfo"), dict):
            record["PropertiesInfo"]["DefaultGlossEnhancer"] = self.wrong_type()
        if self.is_odd(0.1):
            record["PPDName"] = "Plain"
        if self.chance(0.1):
            items = list(record.items())
            self.r.shuffle(items)
            record = dict(items)
        return record

    def storage(self):
        storage = {}
        if not self.is_odd():
            storage["MediumListVersion"] = self.pick(("17", "18", "1.2.3")) if not self.is_odd() else self.pick(
                ("", 18, " ", "\u00e9", 'x"y', True, False, 0, -1, None, "a\nb", 2 ** 63 - 1, 2 ** 64 - 1, -2 ** 63))
        if not self.is_odd(0.7):
            count = self.weighted(((0, 1), (1, 5), (2, 6), (3, 4), (5, 2), (17, 0.3), (20, 0.3)))
            media = {}
            for number in range(count):
                media["m%d" % number if not self.is_odd(0.2) else self.pick(("", "\u00e9", "m0"))] = self.record()
            if self.is_odd(0.15):
                media["odd"] = self.pick((None, "x", [], 5, {}))
                self.tag("wrong type")
            storage["MediaInfo"] = media
        elif self.is_odd():
            storage["MediaInfo"] = self.wrong_type()
        return storage

    def device(self):
        device = {}
        if self.chance(0.75):
            device["uri"] = self.uri if self.chance(0.85) else self.pick(URIS + ("",))
        if self.chance(0.6):
            device["modelName"] = self.model if self.chance(0.8) else self.pick(MODELS + ("", "", ""))
        if self.chance(0.85):
            device["deviceFamilyName"] = self.pick(FAMILIES[:4]) if self.chance(0.4) else self.pick(FAMILIES)
        if not self.is_odd():
            device["dataStore"] = {}
            if not self.is_odd(0.6):
                device["dataStore"]["VMCustomMediaStorage"] = (self.storage() if not self.is_odd(0.3) else
                                                               self.pick((None, "x", [], {}, 5, {"MediaInfo": None})))
            if self.is_odd():
                device["dataStore"]["Other"] = {"x": 1}
        elif self.chance(0.2):
            device["dataStore"] = None
        for key in ("uri", "modelName", "deviceFamilyName"):
            if self.is_odd(0.05):
                device[key] = None
        return device

    def snapshot(self):
        if self.chance(0.03):
            self.tag("snapshot:none")
            return None
        count = self.weighted(((0, 0.4), (1, 10), (2, 2), (3, 0.5)))
        root = {"format": "vorantis-device-snapshot", "formatVersion": 1}
        if self.chance(0.4):
            root["offersServiceInfoWithSpec"] = self.chance(0.6)
        root["devices"] = [self.device() for _ in range(count)]
        if count and self.chance(0.7):
            # One that matches every question, so that a wrong URI or model name still finds media.
            root["devices"].append({"deviceFamilyName": self.pick(FAMILIES),
                                    "dataStore": {"VMCustomMediaStorage": self.storage()}})
        bad = self.chance(0.045)
        if bad:
            change = self.pick(("format", "version", "no format", "no devices", "devices", "device", "uri", "model",
                                "family", "offers", "version type", "null devices", "store", "null format"))
            self.tag("snapshot:bad " + change)
            first = root["devices"][0] if root["devices"] else {}
            root["devices"] = root["devices"] or [first]
            if change == "format":
                root["format"] = self.pick(("other", 1, "Vorantis-device-snapshot"))
            elif change == "null format":
                root["format"] = None
            elif change == "version":
                root["formatVersion"] = 2
            elif change == "version type":
                root["formatVersion"] = self.pick(("1", True, None))
            elif change == "no format":
                del root["format"]
            elif change == "no devices":
                del root["devices"]
            elif change == "null devices":
                root["devices"] = None
            elif change == "devices":
                root["devices"] = {"uri": "x"}
            elif change == "device":
                root["devices"].append("x")
            elif change == "offers":
                root["offersServiceInfoWithSpec"] = "no"
            else:
                first[{"model": "modelName", "family": "deviceFamilyName", "store": "dataStore"}.get(change, "uri")] = 5
        if self.is_odd(0.1):
            root["unknown"] = {"a": [1, 2]}
        text = json.dumps(root, ensure_ascii=self.chance(0.5), indent=self.pick((None, 1)))
        if self.chance(0.01) and '"Name": "' in text:
            self.tag("snapshot:repeated key")
            text = text.replace('"Name": "', '"Name": "First", "Name": "', 1)
        data = text.encode()
        if self.chance(0.025):
            change = self.pick(("number", "cut", "bytes", "surrogate", "surrogate key", "deep", "deep", "deep",
                                "empty", "garbage", "array", "comma", "NaN"))
            self.tag("snapshot:broken " + change)
            if change == "cut":
                data = data[:self.r.randrange(len(data))]
            elif change == "bytes":
                data = data.replace(b'"devices"', b'"x": "\xff", "devices"', 1)
            elif change == "surrogate":
                data = data.replace(b'"devices"', b'"x": "\\ud800", "devices"', 1)
            elif change == "deep":
                levels = self.pick((62, 63, 64, 80))
                data = data.replace(b'"devices"', b'"x": ' + b"[" * levels + b"]" * levels + b', "devices"', 1)
            elif change == "surrogate key":
                data = data.replace(b'"devices"', b'"\\udc00": 1, "devices"', 1)
            elif change == "number":
                data = data.replace(b'"devices"', b'"x": 1e999, "devices"', 1)
            elif change == "empty":
                data = b""
            elif change == "garbage":
                data += b" x"
            elif change == "array":
                data = b"[" + data + b"]"
            elif change == "comma":
                data = data[:-1] + b",}"
            elif change == "NaN":
                data = data.replace(b'"devices"', b'"x": NaN, "devices"', 1)
        return data

    # The command line

    def arguments(self):
        uri = self.uri.encode()
        kind = self.weighted((("two", 82), ("id", 9), ("empty uri", 2), ("bad uri", 1), ("bad id", 0.7),
                              ("empty id", 0.7), ("count", 1.5), ("path", 2), ("other uri", 2)))
        self.tag("arguments:" + kind)
        if kind == "two":
            return [uri, PLACE_HOLDER]
        if kind == "id":
            return [self.pick((uri, b"", b"\xff", b"other://x")), PLACE_HOLDER,
                    self.pick((b"PRN1", uri, "\u00e9".encode(), b" "))]
        if kind == "empty uri":
            return [b"", PLACE_HOLDER]
        if kind == "bad uri":
            return [self.pick((b"\xff", b"x\xc3", b"\xed\xa0\x80")), PLACE_HOLDER]
        if kind == "bad id":
            return [self.pick((uri, b"", b"\xff")), PLACE_HOLDER, self.pick((b"\xff", b"\xc0\x80"))]
        if kind == "empty id":
            return [uri, PLACE_HOLDER, b""]
        if kind == "count":
            return self.pick(([], [uri], [uri, PLACE_HOLDER, b"PRN1", b"x"], [uri, PLACE_HOLDER, b"", b"", b""], [b""]))
        if kind == "other uri":
            return [self.pick((b"other://x", " \u00e9".encode(), b"socket://192.0.2.10:91")), PLACE_HOLDER]
        path = self.pick((b"", DIRECTORY_PLACE_HOLDER, DIRECTORY_PLACE_HOLDER + b"/missing.ppd", PLACE_HOLDER + b"/x",
                          b"/dev/null", b"/dev/tty", b"\xff", PLACE_HOLDER + b"\xff", PLACE_HOLDER))
        if path == b"\xff" and self.chance(0.5):
            return [uri, path, b"PRN1"]
        return [uri, path]

    def case(self):
        ppd = self.file()
        snapshot = self.snapshot()
        arguments = self.arguments()
        present = not self.chance(0.04)
        if arguments and self.chance(0.004):
            self.tag("no PPD file")
            ppd = None
        return Case(ppd, snapshot, arguments, present, sorted(set(self.tags)))


def generate(seed: int) -> Case:
    """The case of this seed."""
    return Generator(seed).case()


def write_case(case, directory):
    """Writes the files of a case; files of an earlier case in the same directory go away."""
    os.makedirs(directory, exist_ok=True)
    arguments = b"".join(argument + b"\n" for argument in case.args)
    library = None if case.library_present else b"absent\n"
    for name, data in (("input.ppd", case.ppd), ("snapshot.json", case.snapshot), ("arguments", arguments),
                       ("library", library)):
        path = os.path.join(directory, name)
        if data is not None:
            with open(path, "wb") as file:
                file.write(data)
        elif os.path.exists(path):
            os.remove(path)


def read_case(directory):
    """Reads a case back from its directory."""
    def read(name):
        try:
            with open(os.path.join(directory, name), "rb") as file:
                return file.read()
        except FileNotFoundError:
            return None
    arguments = read("arguments")
    args = [URIS[0].encode(), PLACE_HOLDER] if arguments is None else arguments.split(b"\n")[:-1]
    if arguments and not arguments.endswith(b"\n"):
        args = arguments.split(b"\n")
    return Case(read("input.ppd"), read("snapshot.json"), args, (read("library") or b"").strip() != b"absent")


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: python3 generate.py SEED DIR")
    case = generate(int(sys.argv[1]))
    write_case(case, sys.argv[2])
    print("\n".join(case.tags))


if __name__ == "__main__":
    main()
