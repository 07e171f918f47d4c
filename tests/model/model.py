#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reference model of VorantisAutosetupTool, for differential tests.

Simple rather than fast: lists and naive searches everywhere. Absent values are None.

    python3 model.py [--log FILE] [--library absent] ARG...

ARG... are the tool's arguments after argv[0]. The PPD goes to standard output, the diagnostic messages are appended
to FILE, one line "SIGNATURE: MESSAGE" each. QZVORANTISMODEL_SNAPSHOT names the device snapshot.

In messages "<RECORD>" stands for a record, map, list or error and "<ANY>" for texts that each build words itself.
"""

import copy
import gzip
import json
import os
import re
import sys

# ---------------------------------------------------------------------------------------------------------------------
# Characters

WHITE_SPACE = "\t \u00a0\u1680" + "".join(chr(c) for c in range(0x2000, 0x200B)) + "\u202f\u205f\u3000"
LINE_ENDS = "\n\x0b\x0c\r\x85\u2028\u2029"
SPACE_AND_ENDS = WHITE_SPACE + LINE_ENDS


def fold(s):
    """Letter case of ASCII letters only."""
    return "".join(chr(ord(c) + 32) if "A" <= c <= "Z" else c for c in s)


def split_at_characters(s, characters):
    """Splits at every single character of the set; empty parts are kept."""
    parts = [""]
    for c in s:
        if c in characters:
            parts.append("")
        else:
            parts[-1] += c
    return parts


def decode(data):
    """The text of strict UTF-8, or None."""
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return None


# ---------------------------------------------------------------------------------------------------------------------
# Values: str, bool, int, float, list, dict or None


class ModelError(Exception):
    """What the tool's one handler and the two guarded operations catch."""


class ProgrammingError(ModelError):
    pass


class LibraryError(ModelError):
    pass


def show(value):
    """What "%@" makes of a value."""
    if value is None:
        return "(null)"
    if isinstance(value, str):
        return value
    if isinstance(value, bool):
        return "1" if value else "0"
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        shown = repr(value)
        return shown[:-2] if shown.endswith(".0") else shown
    return "<RECORD>"


def composed(form, *values):
    """Composes a text: each %@ of the form takes the next value."""
    parts = form.split("%@")
    assert len(parts) == len(values) + 1
    result = parts[0]
    for value, part in zip(values, parts[1:]):
        result += show(value) + part
    return result


def as_text(value):
    """A value that is used as text: a string or None; any other type is a programming error."""
    if value is None or isinstance(value, str):
        return value
    raise ProgrammingError("text needed, not %r" % (value,))


def same(a, b):
    """Equality with a string; false for values of another type and for absent ones."""
    return isinstance(a, str) and isinstance(b, str) and a == b


def contains(haystack, needle):
    """Whether the haystack contains the needle. The empty string is contained in nothing."""
    haystack = as_text(haystack)
    if haystack is None:
        return False
    needle = as_text(needle)
    if not needle:
        return False
    return needle in haystack


def is_empty(value):
    """Absent or empty."""
    return not as_text(value)


def key_of(mapping, key):
    """The value of a key; an absent map has none; anything but a map is a programming error."""
    if mapping is None:
        return None
    if not isinstance(mapping, dict):
        raise ProgrammingError("map needed, not %r" % (mapping,))
    return mapping.get(key)


# ---------------------------------------------------------------------------------------------------------------------
# Diagnostic log

log_lines = []


def at_log(signature, form, *values):
    log_lines.append(signature + ": " + composed(form, *values))


# ---------------------------------------------------------------------------------------------------------------------
# Token scan


class Scanner:
    def __init__(self, s):
        self.s = s
        self.pos = 0

    def skip(self):
        while self.pos < len(self.s) and self.s[self.pos] in SPACE_AND_ENDS:
            self.pos += 1

    def token(self, token):
        """Skips white space and line ends, then takes the token, if it is there."""
        if token is None:
            return False
        self.skip()
        found = self.s[self.pos:self.pos + len(token)]
        if fold(found) != fold(token):
            return False
        self.pos += len(token)
        return True

    def up_to(self, stops):
        """Skips white space and line ends, then takes all up to a stop or the end; "" when nothing was taken."""
        self.skip()
        start = self.pos
        while self.pos < len(self.s) and self.s[self.pos] not in stops:
            self.pos += 1
        return self.s[start:self.pos]


# ---------------------------------------------------------------------------------------------------------------------
# PPDExtentions: tests of single lines


def has_asterisk_prefix(s):
    return s.startswith("*")


def is_ppd_comment(s):
    return s.startswith("*%")


def is_new_line(s):
    return s.strip(LINE_ENDS) == ""


def is_default_choice(s):
    return s.startswith("*Default")


def is_end_statement(s):
    return s.startswith("*End")


def is_statement_named(s, name):
    scanner = Scanner(s)
    return scanner.token("*") and scanner.token(name) and scanner.token(":")


def is_open_group(s):
    return is_statement_named(s, "OpenGroup")


def is_close_group(s):
    return is_statement_named(s, "CloseGroup")


def is_close_ui(s):
    return is_statement_named(s, "CloseUI")


def is_order_dependency(s):
    return is_statement_named(s, "OrderDependency")


def is_open_ui(s):
    scanner = Scanner(s)
    return scanner.token("*") and scanner.token("OpenUI")


def is_statement_closed(s):
    colon = s.find(":")
    if colon < 0:
        return False
    first_quote = s.find('"', colon + 1)
    if first_quote < 0:
        return True
    return s.find('"', first_quote + 1) >= 0


def is_terminated_by_quote(s):
    return s.strip(SPACE_AND_ENDS).endswith('"')


# PPDExtentions: values and validity

EMPTY_QUOTED_VALUE = '""'


def quoted_value_content(s):
    if s is None:
        return None
    first = s.find('"')
    last = s.rfind('"')
    if first == last:
        return None
    return s[first + 1:last]


def byte_count(s):
    return len(s.encode("utf-8"))


def is_valid_line_length(s):
    s = as_text(s)
    return s is not None and 1 <= byte_count(s) <= 255


def is_valid_text_length(s):
    s = as_text(s)
    return s is not None and 1 <= byte_count(s) <= 80


def is_valid_name_length(s):
    s = as_text(s)
    return s is not None and 1 <= byte_count(s) <= 40


def is_valid_keyword(s):
    return all(33 <= ord(c) <= 126 and c not in "/:" for c in s)


def is_valid_text(s):
    s = as_text(s)
    if s is None:
        return False
    valid = True
    units = s.encode("utf-16-le")
    for i in range(0, len(units), 2):
        unit = units[i] + 256 * units[i + 1]
        if not 32 <= unit <= 255 or unit in (34, 58, 60, 62):
            at_log("-[PPDExtentions isValidPPDText]", 'The text: "%@" is not valid PPD text.', s)
            valid = False
    return valid


# ---------------------------------------------------------------------------------------------------------------------
# Parser

COMMENT, STATEMENT, CONTINUATION, END, OPEN_GROUP, CLOSE_GROUP, OPEN_UI, CLOSE_UI = range(1, 9)
ORDER_DEPENDENCY, DEFAULT_CHOICE, CHOICE, NEW_LINE, CHOICE_CONTINUATION, CHOICE_END = range(9, 15)


def pieces_of(data):
    """The pieces that the CUPS line reader makes with a buffer of 256 bytes."""
    if len(data) >= 10 and data[:3] == b"\x1f\x8b\x08" and not data[3] & 0xE0:
        data = gzip.decompress(data)  # damaged gzip is outside this model: it raises an error of Python's
    pieces = []
    pos = 0
    while pos < len(data):
        piece = b""
        while len(piece) < 254 and pos < len(data):
            byte = data[pos:pos + 1]
            piece += byte
            pos += 1
            if byte == b"\r":
                if data[pos:pos + 1] == b"\n":
                    piece += b"\n"
                    pos += 1
                break
            if byte == b"\n":
                break
        pieces.append(piece)
    return pieces


class Parser:
    def __init__(self, delegate):
        self.delegate = delegate
        self.last_line_type = 0
        self.last_statement_closed = True
        self.line_number = 1

    def parse_file(self, path):
        signature = "-[ATPPDParser parsePPDFileAtPath:]"
        if path is None or not os.path.exists(path.encode("utf-8")):
            self.report_error(1)
            at_log(signature, "Cannot find PPD at %@", path)
            return False
        try:
            if os.path.isdir(path.encode("utf-8")):
                data = b""
            else:
                with open(path.encode("utf-8"), "rb") as file:
                    data = file.read()
        except OSError:
            self.report_error(2)
            at_log(signature, "cupsFileOpen fails with PPD %@", path)
            return False
        for piece in pieces_of(data):
            line = decode(piece)
            if line is None:
                break
            if not self.recognize(line):
                return False
        return True

    def recognize(self, line):
        line_type = self.type_of(line)
        if line_type == 0:
            return False
        if line_type not in (COMMENT, NEW_LINE):
            self.last_line_type = line_type
            if line_type == STATEMENT:
                self.last_statement_closed = is_statement_closed(line)
            if line_type == CONTINUATION:
                self.last_statement_closed = is_terminated_by_quote(line)
        self.line_number += 1
        self.delegate.did_recognize_string(line, line_type)
        return True

    def type_of(self, s):
        last = self.last_line_type
        if is_ppd_comment(s):
            return COMMENT
        if is_new_line(s):
            return NEW_LINE
        if last in (END, CLOSE_UI) and is_close_group(s):
            return CLOSE_GROUP
        if last in (0, CLOSE_GROUP, END, CLOSE_UI):
            if not has_asterisk_prefix(s):
                return self.malformed(3)
            if is_end_statement(s):
                return self.malformed(6)
            if is_close_group(s):
                return self.malformed(7)
            return self.statement_tail(s)
        if last == OPEN_GROUP:
            if is_open_ui(s):
                return OPEN_UI
            if is_close_group(s):
                return CLOSE_GROUP
            if has_asterisk_prefix(s):
                return STATEMENT
            return self.malformed(4)
        if last in (STATEMENT, CONTINUATION):
            return self.statement_tail(s)
        if last in (OPEN_UI, ORDER_DEPENDENCY, DEFAULT_CHOICE, CHOICE_END):
            return self.ui_tail(s)
        if last == CHOICE:
            if not has_asterisk_prefix(s):
                return CHOICE_CONTINUATION
            return self.ui_tail(s)
        if last == CHOICE_CONTINUATION:
            if is_end_statement(s):
                return CHOICE_END
            if not has_asterisk_prefix(s):
                return CHOICE_CONTINUATION
            return self.ui_tail(s)
        return 0

    def statement_tail(self, s):
        if is_end_statement(s):
            return END if self.last_statement_closed else self.malformed(6)
        if not has_asterisk_prefix(s):
            return CONTINUATION
        if is_open_group(s):
            return OPEN_GROUP
        if is_open_ui(s):
            return OPEN_UI
        if is_close_group(s):
            return CLOSE_GROUP
        return STATEMENT if self.last_statement_closed else CONTINUATION

    def ui_tail(self, s):
        if is_default_choice(s):
            return DEFAULT_CHOICE
        if is_order_dependency(s):
            return ORDER_DEPENDENCY
        if is_close_ui(s):
            return CLOSE_UI
        if has_asterisk_prefix(s):
            return CHOICE
        return self.malformed(5)

    def malformed(self, code):
        self.report_error(code, {"Line Number": self.line_number})
        return 0

    def report_error(self, code, user_info=None):
        self.delegate.did_fail_with_error(("PPDParserErrorDomain", code, user_info))


# ---------------------------------------------------------------------------------------------------------------------
# Object tree


def position(items, item):
    """The index of the very same object, or -1."""
    for i, other in enumerate(items):
        if other is item:
            return i
    return -1


class PlainObject:
    """ATPPDObject"""

    def __init__(self):
        self.container = []

    @staticmethod
    def object_with_string(s, line_type):
        result = PlainObject()
        result.add_string(s, line_type)
        return result

    def add_string(self, s, line_type):
        self.container.append(s)

    def strings(self):
        return list(self.container)


class CompoundObject:
    """ATPPDCompoundObject"""

    def __init__(self):
        self.objects = []

    def add_string(self, s, line_type):
        raise ProgrammingError("addString:ofType: is abstract")

    def strings(self):
        result = []
        for child in self.objects:
            result += child.strings()
        return result

    def remove_object(self, child):
        index = position(self.objects, child)
        if child is not None and index >= 0:
            del self.objects[index]

    def hand_to_last(self, s, line_type):
        if self.objects:
            self.objects[-1].add_string(s, line_type)


class Attribute(PlainObject):
    """ATPPDAttribute. Setting a part to the very same stored string is not modelled: no operation does it."""

    def __init__(self):
        super().__init__()
        self.held_name = None
        self.held_spec = None
        self.held_text = None
        self.held_value = None
        self.attribute_string = None

    @staticmethod
    def with_string(s):
        result = Attribute()
        result.add_string(s, STATEMENT)
        return result

    @staticmethod
    def with_parts(name, spec, text, value):
        result = Attribute()
        return result if result.init_with_parts(name, spec, text, value) else None

    def init_with_parts(self, name, spec, text, value):
        if is_empty(name):
            return False
        self.held_name = name
        self.held_spec = spec
        self.held_text = text
        self.held_value = EMPTY_QUOTED_VALUE if is_empty(value) else value
        self.update_attribute_string()
        self.add_string(self.attribute_string, STATEMENT)
        return True

    def strings(self):
        if self.attribute_string is not None:
            return [self.attribute_string]
        return super().strings()

    def name(self):
        if self.held_name is None and self.strings():
            self.held_name = self.name_from(self.strings()[0])
        return self.held_name

    def spec(self):
        if self.held_spec is None and self.strings():
            self.held_spec = self.spec_from(self.strings()[0])
        return self.held_spec

    def text(self):
        if self.held_text is None and self.strings():
            self.held_text = self.text_from(self.strings()[0])
        return self.held_text

    def value(self):
        if self.held_value is None:
            lines = self.strings()
            if len(lines) == 1:
                self.held_value = self.value_from(lines[0])
            else:
                self.held_value = self.value_from_lines(lines)
        return self.held_value

    def set_text(self, text):
        self.held_text = text
        self.update_attribute_string()

    def set_value(self, value):
        self.held_value = value
        self.update_attribute_string()

    def name_from(self, line):
        scanner = Scanner(line)
        if not scanner.token("*"):
            return None
        return scanner.up_to(WHITE_SPACE + ":") or None

    def spec_from(self, line):
        scanner = Scanner(line)
        if not scanner.token("*") or not scanner.token(self.name()):
            return None
        taken = scanner.up_to("/:")
        return taken.strip(WHITE_SPACE) if taken else None

    def text_from(self, line):
        a = Scanner(line)
        b = Scanner(line)
        if not a.token("*") or not a.token(self.name()) or not b.token("*") or not b.token(self.name()):
            return None
        if not a.up_to(":") or not b.up_to("/"):
            return None
        if a.pos <= b.pos:
            return None
        return line[b.pos + 1:a.pos]

    def value_from(self, line):
        scanner = Scanner(line)
        if not scanner.up_to(":") or scanner.pos == len(line):
            return None
        return line[scanner.pos + 1:].strip(SPACE_AND_ENDS)

    def value_from_lines(self, lines):
        if not lines:
            return None
        value = composed("%@\n", self.value_from(lines[0]))
        for i, line in enumerate(lines):
            if i > 0:
                value += line
            if value != '"\n' and is_terminated_by_quote(line):
                break
        return value.strip(LINE_ENDS)

    def update_attribute_string(self):
        middle = ""
        if not is_empty(self.spec()):
            middle = composed(" %@", self.spec())
            if not is_empty(self.text()):
                middle += composed("/%@", self.text())
        self.attribute_string = composed("*%@%@: %@\n", self.name(), middle, self.value())


class Choice(PlainObject):
    """ATPPDChoice"""

    def __init__(self):
        super().__init__()
        self.held_name = None
        self.held_code = None

    @staticmethod
    def with_string(s):
        result = Choice()
        result.add_string(s, CHOICE)
        return result

    @staticmethod
    def with_parts(name, text, code, option_name, localizations):
        result = Choice()
        statement = result.choice_string(name, option_name, text, code)
        if statement is None:
            return None
        result.held_name = name
        result.held_code = code
        result.add_string(statement, CHOICE)
        for language, localized in localizations.items():
            keyword = composed("%@.%@", language, option_name)
            result.add_string(composed('*%@ %@/%@: "%@"\n', keyword, name, localized, ""), CHOICE)
        return result

    def choice_string(self, name, option_name, text, code):
        signature = "-[ATPPDChoice choiceStringWithName:optionName:text:code:]"
        if not is_valid_name_length(name) or is_empty(option_name):
            at_log(signature, "Cannot create ATPPDChoice from name: %@, option: %@, text: %@", name, option_name, text)
            return None
        statement = composed('*%@ %@/%@: "%@"\n', option_name, name, text, "" if code is None else code)
        for part in split_at_characters(statement, LINE_ENDS):
            if part != "" and not is_valid_line_length(part):
                at_log(signature, "Not valid component %@, string: %@", part, statement)
                return None
        return statement

    def name(self):
        if self.held_name is None and self.container:
            scanner = Scanner(self.container[0])
            scanner.up_to(WHITE_SPACE)
            self.held_name = scanner.up_to("/:").strip(WHITE_SPACE)
        return self.held_name

    def code(self):
        if self.held_code is None and self.container:
            self.held_code = quoted_value_content(self.container[0])
        return self.held_code


class Option(CompoundObject):
    """ATPPDOption"""

    def __init__(self):
        super().__init__()
        self.def_choice = None
        self.held_name = None
        self.choices = []
        self.held_default_value = None

    @staticmethod
    def with_string(s):
        result = Option()
        result.add_string(s, OPEN_UI)
        return result

    def add_string(self, s, line_type):
        if line_type in (COMMENT, OPEN_UI, CLOSE_UI, ORDER_DEPENDENCY, NEW_LINE):
            self.objects.append(PlainObject.object_with_string(s, line_type))
        elif line_type == DEFAULT_CHOICE:
            self.def_choice = s
            self.objects.append(PlainObject.object_with_string(s, line_type))
        elif line_type == CHOICE:
            choice = Choice.with_string(s)
            self.choices.append(choice)
            self.objects.append(choice)
        elif line_type in (CHOICE_CONTINUATION, CHOICE_END):
            self.hand_to_last(s, line_type)
        else:
            at_log("-[ATPPDOption addString:ofType:]", "String %@ of type %@ is ignored!", s, line_type)

    def name(self):
        if self.held_name is None:
            scanner = Scanner(self.def_choice or "")
            scanner.skip()
            if self.def_choice is not None and self.def_choice.startswith("*Default", scanner.pos):
                scanner.pos += len("*Default")
                self.held_name = scanner.up_to(":").strip(WHITE_SPACE)
            else:
                self.held_name = ""
        return self.held_name

    def default_value(self):
        if self.held_default_value is None and self.def_choice is not None:
            colon = self.def_choice.find(":")
            if colon >= 0:
                self.held_default_value = self.def_choice[colon + 1:].strip(SPACE_AND_ENDS)
        return self.held_default_value

    def add_choice(self, choice):
        at_log("-[ATPPDOption addChoice:]", "Adding choice %@", choice.name())
        if position(self.choices, choice) >= 0:
            return
        self.choices.append(choice)
        if len(self.objects) >= 2:
            last_strings = self.objects[-1].strings()
            if last_strings and is_close_ui(last_strings[0]):
                self.objects.insert(len(self.objects) - 1, choice)

    def remove_choice(self, choice):
        name = choice.name() if choice is not None else None
        at_log("-[ATPPDOption removeChoice:]", "%@, removing choice %@...", self.name(), name)
        index = position(self.choices, choice)
        if choice is not None and index >= 0:
            del self.choices[index]
        self.remove_object(choice)

    def choice_for_name(self, name):
        for choice in self.choices:
            if same(choice.name(), name):
                return choice
        return None


class Group(CompoundObject):
    """ATPPDGroup"""

    def __init__(self):
        super().__init__()
        self.held_name = None
        self.options = []

    @staticmethod
    def with_string(s):
        result = Group()
        result.add_string(s, OPEN_GROUP)
        return result

    def add_string(self, s, line_type):
        if line_type in (COMMENT, NEW_LINE) or CLOSE_UI <= line_type <= CHOICE_END:
            self.hand_to_last(s, line_type)
        elif STATEMENT <= line_type <= CLOSE_GROUP:
            self.objects.append(PlainObject.object_with_string(s, line_type))
        elif line_type == OPEN_UI:
            option = Option.with_string(s)
            self.objects.append(option)
            self.options.append(option)
        else:
            at_log("-[ATPPDGroup addString:ofType:]", "String %@ of type %@ is ignored!", s, line_type)

    def name(self):
        if self.held_name is None:
            lines = self.strings()
            if not lines:
                raise ProgrammingError("index out of range")
            scanner = Scanner(lines[0])
            scanner.up_to(":")
            scanner.token(":")
            taken = scanner.up_to("/")
            if taken == "":
                taken = scanner.up_to(SPACE_AND_ENDS)
            self.held_name = taken.strip(WHITE_SPACE)
        return self.held_name

    def option_for_name(self, name):
        for option in self.options:
            if same(option.name(), name):
                return option
        return None


class Document(CompoundObject):
    """ATPPD"""

    def __init__(self):
        super().__init__()
        self.attributes = []
        self.groups = []
        self.held_localizations = None
        self.group_opened = False

    def add_string(self, s, line_type):
        if line_type in (COMMENT, NEW_LINE) and not self.group_opened:
            self.objects.append(PlainObject())
            self.hand_to_last(s, line_type)
        elif line_type == STATEMENT and not self.group_opened:
            attribute = Attribute()
            self.objects.append(attribute)
            self.attributes.append(attribute)
            attribute.add_string(s, line_type)
        elif line_type == OPEN_UI and not self.group_opened:
            self.objects.append(Option())
            self.hand_to_last(s, line_type)
        elif line_type == OPEN_GROUP:
            group = Group.with_string(s)
            self.objects.append(group)
            self.groups.append(group)
            self.group_opened = True
        elif COMMENT <= line_type <= CHOICE_END:
            self.hand_to_last(s, line_type)
            if line_type == CLOSE_GROUP:
                self.group_opened = False
        else:
            at_log("-[ATPPD addString:ofType:]", "ERROR: String %@ of type %@ is ignored!", s, line_type)

    def attribute_for(self, name, spec=None):
        for attribute in self.attributes:
            if same(attribute.name(), name) and (spec is None or same(attribute.spec(), spec)):
                return attribute
        return None

    def value_for(self, name, spec=None):
        attribute = self.attribute_for(name, spec)
        return attribute.value() if attribute is not None else None

    def attributes_for(self, name):
        return [attribute for attribute in self.attributes if same(attribute.name(), name)]

    def localizations_for(self, name, spec):
        names = [composed("%@.%@", language, name) for language in self.supported_localizations() or []]
        result = []
        for attribute in self.attributes:
            if attribute.name() in names and (spec is None or same(attribute.spec(), spec)):
                result.append(attribute)
        return result

    def group_for_name(self, name):
        for group in self.groups:
            if same(group.name(), name):
                return group
        return None

    def option_for_name(self, name):
        for group in self.groups:
            option = group.option_for_name(name)
            if option is not None:
                return option
        return None

    def supported_localizations(self):
        if self.held_localizations is None:
            content = quoted_value_content(self.value_for("cupsLanguages"))
            if content is not None:
                self.held_localizations = split_at_characters(content, WHITE_SPACE)
        return self.held_localizations

    def add_attribute(self, attribute):
        if attribute is None:
            return
        at_log("-[ATPPD addPPDAttribute:]", "Adding %@ attribute with value %@", attribute.name(), attribute.value())
        if self.attributes:
            index = position(self.objects, self.attributes[-1])
            if index >= 0:
                self.objects.insert(index + 1, attribute)
        else:
            self.objects.append(attribute)
        self.attributes.append(attribute)

    def remove_attribute(self, attribute):
        name = attribute.name() if attribute is not None else None
        at_log("-[ATPPD removePPDAttribute:]", "Removing attribute %@...", name)
        index = position(self.attributes, attribute)
        if attribute is not None and index >= 0:
            del self.attributes[index]
        self.remove_object(attribute)

    def remove_attribute_with_localizations(self, attribute):
        localizations = self.localizations_for(attribute.name(), attribute.spec())
        self.remove_attribute(attribute)
        for localization in localizations:
            self.remove_attribute(localization)


# ---------------------------------------------------------------------------------------------------------------------
# Device-model library: the stored one, which answers from a snapshot


def without_nulls(value):
    if isinstance(value, dict):
        return {key: without_nulls(member) for key, member in value.items() if member is not None}
    if isinstance(value, list):
        return [without_nulls(element) for element in value if element is not None]
    return value


def check_json(value, level):
    """Refuses what a snapshot must not hold: too deep nesting, lone surrogates, numbers without a value."""
    if isinstance(value, (dict, list)) and level > 64:
        raise LibraryError("nested too deep")
    if isinstance(value, dict):
        for key, member in value.items():
            check_json(key, level)
            check_json(member, level + 1)
    elif isinstance(value, list):
        for element in value:
            check_json(element, level + 1)
    elif isinstance(value, str):
        if any(0xD800 <= ord(c) <= 0xDFFF for c in value):
            raise LibraryError("lone surrogate")
    elif isinstance(value, float) and value in (float("inf"), float("-inf")):
        raise LibraryError("number out of range")


def parsed_integer(digits):
    """Integers beyond 64 bits are real numbers."""
    if len(digits) < 30 and -2**63 <= int(digits) < 2**64:
        return int(digits)
    return float(digits)


def refused_constant(name):
    raise ValueError(name)


class Library:
    def __init__(self, snapshot_path, present):
        self.snapshot_path = snapshot_path
        self.present = present
        self.loaded = None

    def snapshot(self):
        """The snapshot's map, read at the first question."""
        if self.loaded is None:
            if self.snapshot_path:
                self.loaded = self.read()
            else:
                self.loaded = {"devices": []}
        return self.loaded

    def read(self):
        try:
            with open(self.snapshot_path, "rb") as file:
                data = file.read()
            if len(data) > 64 * 1024 * 1024:
                raise LibraryError("too large")
            top = json.loads(data.decode("utf-8"), parse_int=parsed_integer, parse_constant=refused_constant)
        except (OSError, ValueError, RecursionError) as error:
            raise LibraryError(str(error)) from error
        check_json(top, 1)
        top = without_nulls(top)
        if not isinstance(top, dict) or top.get("format") != "vorantis-device-snapshot":
            raise LibraryError("format")
        version = top.get("formatVersion")
        if not isinstance(version, int) or isinstance(version, bool) or version != 1:
            raise LibraryError("formatVersion")
        if not isinstance(top.get("offersServiceInfoWithSpec", True), bool):
            raise LibraryError("offersServiceInfoWithSpec")
        if not isinstance(top.get("devices"), list):
            raise LibraryError("devices")
        for device in top["devices"]:
            if not isinstance(device, dict):
                raise LibraryError("device")
            for key in ("uri", "modelName", "deviceFamilyName"):
                if not isinstance(device.get(key, ""), str):
                    raise LibraryError(key)
            if not isinstance(device.get("dataStore", {}), dict):
                raise LibraryError("dataStore")
        return top

    def offers_spec(self):
        return self.snapshot().get("offersServiceInfoWithSpec", True)

    def device(self, uri, model_name):
        """The first device that matches, or None; absent URI and model name count as empty ones."""
        for device in self.snapshot()["devices"]:
            if device.get("uri", uri or "") == (uri or "") \
                    and device.get("modelName", model_name or "") == (model_name or ""):
                return device
        return None

    def represented_object(self, device, item_key):
        store = key_of(device, "dataStore")
        return copy.deepcopy(key_of(store, item_key))

    def family_name(self, device):
        return key_of(device, "deviceFamilyName")


# ---------------------------------------------------------------------------------------------------------------------
# Readers

MEDIA_KEY = "VMCustomMediaStorage"


class DeviceReader:
    """ATDeviceDataReader; after start-up its registry holds only the custom media reader."""

    def __init__(self, library, uri, model_name):
        self.library = library
        self.uri = uri
        self.model_name = model_name

    def data_for_key(self, key):
        if key == MEDIA_KEY:
            return custom_media(self.library, self.uri, self.model_name)
        return None

    def printer_uri(self):
        return self.uri


class PrinterIDReader:
    """ATPPDDataReader"""

    def __init__(self, printer_id):
        self.printer_id = printer_id

    def data_for_key(self, key):
        return None

    def printer_uri(self):
        return self.printer_id


def custom_media(library, uri, model_name):
    """ATCustomMediaTypesReaderImpl dataFromDevice:modelName:"""
    signature = "-[ATCustomMediaTypesReaderImpl dataFromDevice:modelName:]"
    if not library.present:
        at_log(signature, "QZVorantisModel framework is not loaded")
        return {}
    if library.offers_spec():
        device = library.device(uri, model_name)
        at_log(signature, "Service info was created using serviceInfoWithSpec, URI is %@, model name is %@",
               uri, model_name)
    else:
        device = library.device(uri, "")
        at_log(signature, "Service info was created using serviceInfoWithURI:")
    represented = library.represented_object(device, MEDIA_KEY)
    media = key_of(represented, "MediaInfo")
    version = key_of(represented, "MediumListVersion")
    at_log(signature, "Media list version in VMF DataStore %@", version)
    if media is not None and not isinstance(media, dict):
        raise ProgrammingError("MediaInfo is no map")
    items = list(media.values()) if media is not None else []
    at_log(signature, "Found %@ custom media in VMF DataStore", len(items))
    at_log(signature, "Media dictionary from DataStore: %@", media)
    result = {}
    if version is not None:
        result["MedaListVersion"] = version
    result["MediaList"] = [media_record(item) for item in items]
    return result


def media_record(item):
    record = {}
    for key, item_key in (("MediaName", "Name"), ("ID", "MediumID"), ("CategoryName", "CategoryName"),
                          ("CategoryID", "CategoryID"), ("ICCProfiles", "ICCProfiles")):
        value = key_of(item, item_key)
        if value is None:
            break
        record[key] = value
    parent = key_of(item, "ParentID")
    if parent is not None:
        record["ParentID"] = parent
    gloss = key_of(key_of(item, "PropertiesInfo"), "DefaultGlossEnhancer")
    if gloss is not None:
        record["DefaultGlossEnhancer"] = gloss
    return record


# ---------------------------------------------------------------------------------------------------------------------
# URL to path (RFC 3986); what has no scheme is a plain path

HEX = "[0-9A-Fa-f]"
PCT = "%" + HEX + HEX
UNRESERVED = r"A-Za-z0-9\-._~"
SUB_DELIMS = "!$&'()*+,;="
PCHAR = "(?:[" + UNRESERVED + SUB_DELIMS + ":@]|" + PCT + ")"
OCTET = "(?:25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9][0-9]|[0-9])"
IPV4 = OCTET + r"(?:\." + OCTET + "){3}"
H16 = HEX + "{1,4}"
LS32 = "(?:" + H16 + ":" + H16 + "|" + IPV4 + ")"
IPV6 = "(?:" + "|".join(
    ["(?:" + H16 + ":){6}" + LS32]
    + ["(?:(?:" + H16 + ":){0," + str(before - 1) + "}" + H16 + ")?::(?:" + H16 + ":){" + str(5 - before) + "}" + LS32
       if before > 0 else "::(?:" + H16 + ":){5}" + LS32 for before in range(0, 6)]
    + ["(?:(?:" + H16 + ":){0,5}" + H16 + ")?::" + H16, "(?:(?:" + H16 + ":){0,6}" + H16 + ")?::"]) + ")"
IP_FUTURE = "[vV]" + HEX + r"+\.[" + UNRESERVED + SUB_DELIMS + ":]+"
REG_NAME = "(?:[" + UNRESERVED + SUB_DELIMS + "]|" + PCT + ")*"
USER_INFO = "(?:[" + UNRESERVED + SUB_DELIMS + ":]|" + PCT + ")*"
AUTHORITY = "(?:" + USER_INFO + r"@)?(?:\[(?:" + IPV6 + "|" + IP_FUTURE + r")\]|" + REG_NAME + ")(?::[0-9]*)?"
SEGMENTS = "(?:/" + PCHAR + "*)*"
TAIL = r"(?:\?(?:" + PCHAR + r"|[/?])*)?(?:#(?:" + PCHAR + "|[/?])*)?"
SCHEME = "[A-Za-z][A-Za-z0-9+.-]*:"
WITH_AUTHORITY = SCHEME + "//" + AUTHORITY + "(" + SEGMENTS + ")" + TAIL
ABSOLUTE = SCHEME + "(/(?:" + PCHAR + "+" + SEGMENTS + ")?)" + TAIL
ROOTLESS = SCHEME + "((?:" + PCHAR + "+" + SEGMENTS + ")?)" + TAIL


def path_of_url(url):
    url = as_text(url)
    if url is None:
        return None
    if not re.match(SCHEME, url):
        return url or None
    for form in (WITH_AUTHORITY, ABSOLUTE, ROOTLESS):
        match = re.fullmatch(form, url, re.ASCII)
        if match:
            data = b""
            rest = match.group(1)
            while rest:
                if rest[0] == "%":
                    data += bytes([int(rest[1:3], 16)])
                    rest = rest[3:]
                else:
                    data += rest[0].encode("ascii")
                    rest = rest[1:]
            return decode(data) or None
    return None


# ---------------------------------------------------------------------------------------------------------------------
# Media type updaters


class MediaTypeUpdater:
    """ATMediaTypePPDUpdater"""

    def __init__(self, library):
        self.library = library

    def update(self, ppd, reader):
        signature = "-[ATMediaTypePPDUpdater updatePPD:usingDataReader:]"
        if ppd is None or reader is None:
            return False
        data = reader.data_for_key(MEDIA_KEY)
        version = key_of(data, "MedaListVersion")
        media_list = key_of(data, "MediaList")
        if media_list is None:
            return True
        if version is None:
            version = "MEDIUM_LIST_VERSION_UNKNOWN"
        self.cleanup(ppd)
        custom = []
        extended = []
        counter = 1
        for record in media_list:
            at_log(signature, "Processing media data: %@", record)
            if self.is_custom(record):
                added = self.add_ppd_name(counter, record)
                if self.add_media(added, ppd):
                    self.add_icc_profile(added, ppd)
                    if same(record.get("CategoryID"), "QZ_EXTENDED_MEDIA"):
                        extended.append(added["PPDName"])
                    else:
                        custom.append(added["PPDName"])
                    counter += 1
            else:
                self.set_icc_profile(record, ppd)
            self.update_default_gloss(record, ppd)
        if custom:
            ppd.add_attribute(self.group_attribute("CustomMedia-category", custom))
        if extended:
            ppd.add_attribute(self.group_attribute("ExtendedCustomMedia-category", extended))
        ppd.add_attribute(Attribute.with_parts("QZMediaListVersion", None, None, version))
        return True

    def cleanup(self, ppd):
        self.restore_factory_profiles(ppd)
        version = ppd.attribute_for("QZMediaListVersion")
        if version is not None:
            ppd.remove_attribute(version)
        self.remove_media_in_group(ppd.attribute_for("QZMediaTypeGroup", "CustomMedia-category"), ppd)
        self.remove_media_in_group(ppd.attribute_for("QZMediaTypeGroup", "ExtendedCustomMedia-category"), ppd)
        self.restore_default_gloss(ppd)

    # Hooks of the profile updaters

    def restore_factory_profiles(self, ppd):
        pass

    def add_icc_profile(self, record, ppd):
        return True

    def set_icc_profile(self, record, ppd):
        pass

    def choice_code(self, name, media_id):
        raise ProgrammingError("mediaTypeChoiceCodeWithName:ID: is abstract")

    # Custom media

    def remove_media_in_group(self, group_attribute, ppd):
        if group_attribute is None:
            return
        value = group_attribute.value()
        if value is not None:
            for name in value.strip('"').split(",\n"):
                self.remove_inclusions(name, ppd)
        ppd.remove_attribute(group_attribute)

    def remove_inclusions(self, name, ppd):
        option = self.media_option(ppd)
        if option is not None:
            while True:
                choice = option.choice_for_name(name)
                if choice is None:
                    break
                option.remove_choice(choice)
        attribute = ppd.attribute_for("QZValueAttributes", "MediaType." + name)
        if attribute is not None:
            ppd.remove_attribute(attribute)

    def media_option(self, ppd):
        group = ppd.group_for_name("QZImagingOptions")
        return group.option_for_name("MediaType") if group is not None else None

    def is_custom(self, record):
        category = key_of(record, "CategoryID")
        return same(category, "CUSTOM") or same(category, "QZ_EXTENDED_MEDIA")

    def add_ppd_name(self, index, record):
        result = dict(record)
        result["PPDName"] = "Custom%x" % (index & 0xFFFFFFFF)
        return result

    def add_media(self, record, ppd):
        ppd_name = record.get("PPDName")
        media_id = record.get("ID")
        media_name = record.get("MediaName")
        code = self.choice_code(ppd_name, media_id)
        at_log("-[ATMediaTypePPDUpdater addMediaWithData:toPPD:]", "Adding %@ with ID %@", media_name, media_id)
        if ppd_name is None or media_id is None or media_name is None or code is None:
            return False
        localizations = self.localized_names(media_name, ppd)
        text = media_name
        if not self.is_valid_ui_name(media_name):
            text = ""
            localizations["en"] = media_name
        choice = Choice.with_parts(ppd_name, text, code, "MediaType", localizations)
        if choice is None:
            return False
        option = self.media_option(ppd)
        if option is not None:
            option.add_choice(choice)
        self.add_attributes(record, ppd)
        return True

    def localized_names(self, media_name, ppd):
        return {language: media_name for language in ppd.supported_localizations() or [] if language != "en"}

    def is_valid_ui_name(self, name):
        name = as_text(name)
        if not name:
            return False
        allowed = {chr(c) for c in range(32, 32 + 126)} | set("\t\n\r ")
        allowed -= set("\n\r:")
        return all(c in allowed for c in name)

    def ppd_name_for_id(self, media_id, ppd):
        if media_id is None:
            return None
        option = self.media_option(ppd)
        if option is not None:
            for choice in option.choices:
                if contains(choice.code(), media_id):
                    return choice.name()
        return media_id

    def add_attributes(self, record, ppd):
        signature = "-[ATMediaTypePPDUpdater addAttributesForMediaWithData:toPPD:]"
        parent_id = record.get("ParentID")
        ppd_name = record.get("PPDName")
        at_log(signature, "For %@ parent media has ID %@", record.get("MediaName"), parent_id)
        if parent_id is None or ppd_name is None:
            return
        parent_name = self.ppd_name_for_id(parent_id, ppd)
        value = ppd.value_for("QZValueAttributes", composed("MediaType.%@", parent_name))
        at_log(signature, "Parent media name: %@ attributes: %@", parent_name, value)
        if value is not None:
            attribute = Attribute.with_parts("QZValueAttributes", composed("MediaType.%@", ppd_name), None, value)
            at_log(signature, "Adding attributes for %@: %@", ppd_name, value)
            ppd.add_attribute(attribute)

    def group_attribute(self, spec, names):
        value = '"' + ",\n".join(names) + '"\n*End\n'
        return Attribute.with_parts("QZMediaTypeGroup", spec, "Custom Paper", value)

    # Gloss enhancer defaults

    def is_glossy(self, properties):
        return contains(properties, "glossy=YES") or contains(properties, "GESupport=YES")

    def gloss_choice(self, value, ppd):
        if ppd.option_for_name("QZGlossEnhancer") is not None:
            return "whole-page-ge" if same(value, "FULLPAGE") else "off-ge"
        if ppd.option_for_name("QZGlossEnhancerSimplified") is not None:
            return "True" if same(value, "FULLPAGE") else "False"
        return None

    def change_default_gloss(self, choice, properties):
        signature = "-[ATMediaTypePPDUpdater changeDefaultGlossEnhancer:inMediaTypeProperties:]"
        content = quoted_value_content(properties)
        built = ""
        for part in content.split(";") if content is not None else []:
            if built != "":
                built += ";"
            if part.startswith("defaultGE"):
                changed = composed("%@='%@'", "defaultGE", choice)
                at_log(signature, "Changing GE from %@ to %@", part, changed)
                part = changed
            built += part
        return '"' + built + '"'

    def restore_default_gloss(self, ppd):
        option = ppd.option_for_name("QZGlossEnhancer")
        if option is None:
            option = ppd.option_for_name("QZGlossEnhancerSimplified")
        glossy_default = option.default_value() if option is not None else None
        off_choice = self.gloss_choice("OFF", ppd)
        for attribute in ppd.attributes_for("QZValueAttributes"):
            value = attribute.value()
            if contains(value, "defaultGE"):
                at_log("-[ATMediaTypePPDUpdater restoreDefaultGlossEnhancerMediaPropertyInPPD:]",
                       "Restoring property for %@", attribute.spec())
                choice = glossy_default if self.is_glossy(value) else off_choice
                attribute.set_value(self.change_default_gloss(choice, value))

    def update_default_gloss(self, record, ppd):
        gloss = key_of(record, "DefaultGlossEnhancer")
        if is_empty(gloss):
            return
        name = self.ppd_name_for_id(record.get("ID"), ppd)
        at_log("-[ATMediaTypePPDUpdater updateDefaultGlossEnhancerForMediaWithData:inPPD:]",
               "Set default GE: %@ for %@", gloss, name)
        if name is None:
            return
        attribute = ppd.attribute_for("QZValueAttributes", composed("%@.%@", "MediaType", name))
        if attribute is not None:
            choice = self.gloss_choice(gloss, ppd)
            attribute.set_value(self.change_default_gloss(choice, attribute.value()))


class PostScriptUpdater(MediaTypeUpdater):
    """ATMediaTypePSPPDUpdater"""

    def choice_code(self, name, media_id):
        return composed("/QZDict /ProcSet findresource /SetMediaId get (%@) exch exec", media_id)


# ---------------------------------------------------------------------------------------------------------------------
# ICC profile updaters


class FactoryProfile(Attribute):
    """ATQZProfilePPDAttributeWrapper"""

    def __init__(self):
        super().__init__()
        self.held_profile_name = None
        self.held_path = None

    @staticmethod
    def with_attribute(attribute):
        wrapper = FactoryProfile()
        if not wrapper.init_with_parts(attribute.name(), attribute.spec(), attribute.text(), attribute.value()):
            return None
        return wrapper if same(attribute.name(), "QZcupsICCProfile") else None

    def factory_path(self):
        if self.held_path is None:
            self.calculate()
        return self.held_path

    def factory_profile_name(self):
        if self.held_profile_name is None:
            self.calculate()
        return self.held_profile_name

    def calculate(self):
        parts = self.components()
        if len(parts) == 2:
            self.held_profile_name, self.held_path = parts

    def components(self):
        content = quoted_value_content(self.value())
        parts = content.split(";;") if content is not None else None
        at_log("-[ATQZProfilePPDAttributeWrapper factoryProfileComponents]", "Input %@, parsed %@",
               self.value(), parts)
        return parts if parts is not None else []

    def reset(self):
        self.held_profile_name = None
        self.held_path = None

    def set_text(self, text):
        self.reset()
        super().set_text(text)

    def set_value(self, value):
        self.reset()
        super().set_value(value)


class PCL3Updater(MediaTypeUpdater):
    """ATMediaTypePCL3PPDUpdater"""

    def choice_code(self, name, media_id):
        return composed("<</MediaType(%@)/QZMediaID(%@)>>setpagedevice", name, media_id)

    def media_qualifier(self, record, ppd):
        name = key_of(record, "PPDName")
        return name if name is not None else self.ppd_name_for_id(key_of(record, "ID"), ppd)

    def general_spec(self, record, ppd):
        return composed(".%@.", self.media_qualifier(record, ppd))

    def profile_spec(self, record, entry, ppd):
        return self.general_spec(record, ppd)

    def profile_attributes(self, name, spec, url, ppd):
        signature = "-[ATMediaTypePCL3PPDUpdater cupsICCProfileAttributesWithName:spec:url:ppd:]"
        key = composed("cupsICCProfile %@/%@", spec, name)
        line = composed('*%@: "%@"\n', key, path_of_url(url))
        if not is_valid_line_length(line):
            at_log(signature, "INFO: Skip profile %@ - line length > 256 bytes: %@", name, line)
            return None
        result = [Attribute.with_string(line)]
        for language in ppd.supported_localizations() or []:
            if language == "en":
                continue
            line = composed('*%@.%@: ""\n', language, key)
            if not is_valid_line_length(line):
                at_log(signature, "INFO: Skip profile %@, locale %@ > 256 bytes limit: %@", name, language, line)
                return None
            result.append(Attribute.with_string(line))
        return result

    def add_icc_profile(self, record, ppd):
        signature = "-[ATMediaTypePCL3PPDUpdater addICCProfileForMediaWithData:toPPD:]"
        profiles = key_of(record, "ICCProfiles")
        if not isinstance(profiles, list) or not profiles:
            at_log(signature, "INFO: Cannot add profile from %@", record)
            return False
        for entry in profiles:
            url = key_of(entry, "URL")
            name = key_of(entry, "ICCName")
            path = path_of_url(url)
            if is_valid_text_length(name) and is_valid_text(name) and is_valid_text(path):
                spec = self.profile_spec(record, entry, ppd)
                if not is_valid_name_length(spec):
                    at_log(signature, "INFO: Ignore profile %@ with qualifier (> 41 bytes): %@", name, spec)
                    continue
                for attribute in self.profile_attributes(name, spec, url, ppd) or []:
                    ppd.add_attribute(attribute)
            else:
                at_log(signature, "INFO: Skip profile: %@", name)
        return True

    def set_icc_profile(self, record, ppd):
        signature = "-[ATMediaTypePCL3PPDUpdater setICCProfileForMediaWithData:inPPD:]"
        profiles = key_of(record, "ICCProfiles")
        if not isinstance(profiles, list) or not profiles:
            at_log(signature, "INFO: Cannot set profile from %@", record)
            return
        for entry in profiles:
            path = path_of_url(key_of(entry, "URL"))
            spec = self.profile_spec(record, entry, ppd)
            name = key_of(entry, "ICCName")
            if is_valid_text_length(name) and is_valid_text(name) and is_valid_text(path):
                attribute = ppd.attribute_for("cupsICCProfile", spec)
                if attribute is not None:
                    at_log(signature, "Found factory ICC profile: %@", spec)
                    attribute.set_text(name)
                    attribute.set_value(composed('"%@"', path))
                    for localization in ppd.localizations_for("cupsICCProfile", spec):
                        localization.set_text(name)
            else:
                at_log(signature, "INFO: Skip profile: %@", name)

    def restore_factory_profiles(self, ppd):
        for attribute in ppd.attributes_for("QZcupsICCProfile"):
            wrapper = FactoryProfile.with_attribute(attribute)
            if wrapper is not None and wrapper.factory_path() is not None:
                self.update_profile(ppd.attribute_for("cupsICCProfile", wrapper.spec()), ppd, wrapper)

    def update_profile(self, profile, ppd, wrapper):
        if profile is None:
            return
        if same(wrapper.factory_path(), profile.value()):
            return
        profile.set_value(composed('"%@"', wrapper.factory_path()))
        profile.set_text(wrapper.factory_profile_name())
        for localization in ppd.localizations_for("cupsICCProfile", wrapper.spec()):
            localization.set_text(wrapper.factory_profile_name())

    def remove_inclusions(self, name, ppd):
        for attribute in ppd.attributes_for("cupsICCProfile"):
            if contains(attribute.spec(), name):
                at_log("-[ATMediaTypePCL3PPDUpdater removeInclusionsOfMediaWithID:fromPPD:]",
                       "Removing profile %@", attribute.spec())
                for localization in ppd.localizations_for("cupsICCProfile", attribute.spec()):
                    ppd.remove_attribute(localization)
                ppd.remove_attribute(attribute)
        super().remove_inclusions(name, ppd)


def content_or_value(value):
    """The quoted content, or the value as it stands when it holds fewer than two double quotes."""
    content = quoted_value_content(value)
    return content if content is not None else value


class Qualifier3Updater(PCL3Updater):
    """ATMediaTypePCL3Qualifier3PPDUpdater"""

    def two_component_spec(self, spec):
        if spec is None or "." not in spec:
            raise ProgrammingError("range error")
        return spec[:spec.rfind(".") + 1]

    def two_component_specs_to_remove(self, factory_attributes):
        candidates = []
        kept = []
        for attribute in factory_attributes:
            spec = attribute.spec()
            general = self.two_component_spec(spec)
            (kept if general == spec else candidates).append(general)
        result = []
        for spec in candidates:
            if spec not in kept and spec not in result:
                result.append(spec)
        return result

    def restore_factory_profiles(self, ppd):
        for spec in self.two_component_specs_to_remove(ppd.attributes_for("QZcupsICCProfile")):
            attribute = ppd.attribute_for("cupsICCProfile", spec)
            if attribute is not None:
                ppd.remove_attribute_with_localizations(attribute)
        super().restore_factory_profiles(ppd)

    def update_profile(self, profile, ppd, wrapper):
        if profile is not None:
            super().update_profile(profile, ppd, wrapper)
            return
        name = wrapper.factory_profile_name()
        for attribute in self.profile_attributes(name, wrapper.spec(), wrapper.factory_path(), ppd) or []:
            ppd.add_attribute(attribute)

    def possible_specs(self, record, ppd):
        qualifier = self.media_qualifier(record, ppd)
        if qualifier is None:
            return None
        value = ppd.value_for("cupsICCQualifier3")
        if value is None:
            return None
        option = ppd.option_for_name(content_or_value(value))
        choices = option.choices if option is not None else []
        return [composed(".%@.%@", qualifier, choice.name()) for choice in choices]

    def remove_specialized(self, ppd, record):
        for spec in self.possible_specs(record, ppd) or []:
            attribute = ppd.attribute_for("cupsICCProfile", spec)
            if attribute is not None:
                ppd.remove_attribute_with_localizations(attribute)

    def set_icc_profile(self, record, ppd):
        spec = self.general_spec(record, ppd)
        self.remove_specialized(ppd, record)
        if ppd.attribute_for("cupsICCProfile", spec) is None:
            self.add_icc_profile(record, ppd)
        else:
            super().set_icc_profile(record, ppd)


def gloss_of(entry):
    """The gloss value of a profile entry; an entry without one cannot be rewritten."""
    gloss = key_of(entry, "GlossEnhancer")
    if gloss is None:
        raise ProgrammingError("profile entry without a gloss value")
    return gloss


class Qualifier1Updater(Qualifier3Updater):
    """ATMediaTypePCL3Qualifier1PPDUpdater"""

    SIGNATURE = "-[ATMediaTypePCL3Qualifier1PPDUpdater "

    def is_applicable(self, ppd):
        return same(content_or_value(ppd.value_for("cupsICCQualifier1")), "QZGlossEnhancerSimplified") \
            and same(content_or_value(ppd.value_for("cupsICCQualifier3")), "OutputMode")

    def adjusted(self, record, ppd):
        qualifier = self.media_qualifier(record, ppd)
        if not self.is_applicable(ppd) or is_empty(qualifier):
            return record
        result = dict(record)
        profiles = result.get("ICCProfiles")
        if not isinstance(profiles, list):
            return result
        for entry in profiles:
            gloss = gloss_of(entry)
            if same(gloss, "OFF"):
                gloss = "False"
            elif same(gloss, "FULLPAGE"):
                gloss = "True"
            entry["GlossEnhancer"] = gloss
        if len(profiles) != 1:
            return result
        first_gloss = profiles[0]["GlossEnhancer"]
        for attribute in ppd.attributes_for("QZcupsICCProfile"):
            parts = attribute.spec().split(".") if attribute.spec() is not None else []
            if len(parts) != 3 or not same(parts[1], qualifier) or same(parts[0], first_gloss):
                continue
            wrapper = FactoryProfile.with_attribute(attribute)
            if wrapper is None or is_empty(wrapper.factory_path()) or is_empty(wrapper.factory_profile_name()):
                continue
            profiles.append({"GlossEnhancer": "True" if same(first_gloss, "False") else "False",
                             "URL": wrapper.factory_path(), "ICCName": wrapper.factory_profile_name(),
                             "OutputMode": parts[2]})
        return result

    def profile_spec(self, record, entry, ppd):
        spec = super().profile_spec(record, entry, ppd)
        gloss = key_of(entry, "GlossEnhancer")
        output_mode = key_of(entry, "OutputMode")
        return (show(gloss) if gloss is not None else "") + spec \
            + (show(output_mode) if output_mode is not None else "")

    def add_icc_profile(self, record, ppd):
        try:
            return super().add_icc_profile(self.adjusted(record, ppd), ppd)
        except ModelError:
            at_log(self.SIGNATURE + "addICCProfileForMediaWithData:toPPD:]",
                   "INFO: Cannot add profile from %@, reason: %@", record, "<ANY>")
            return False

    def set_icc_profile(self, record, ppd):
        try:
            super().set_icc_profile(self.adjusted(record, ppd), ppd)
        except ModelError:
            at_log(self.SIGNATURE + "setICCProfileForMediaWithData:inPPD:]",
                   "INFO: Cannot set profile from %@, reason: %@", record, "<ANY>")

    def remove_specialized(self, ppd, record):
        qualifier = self.media_qualifier(record, ppd)
        if qualifier is not None:
            for attribute in ppd.attributes_for("cupsICCProfile"):
                parts = attribute.spec().split(".") if attribute.spec() is not None else []
                if len(parts) == 3 and same(parts[1], qualifier):
                    ppd.remove_attribute_with_localizations(attribute)
        super().remove_specialized(ppd, record)

    def restore_factory_profiles(self, ppd):
        for attribute in ppd.attributes_for("cupsICCProfile"):
            if attribute.spec() is not None and attribute.spec().split(".")[0] in ("False", "True"):
                ppd.remove_attribute_with_localizations(attribute)
        super().restore_factory_profiles(ppd)


class GlossyUpdater(PCL3Updater):
    """ATGlossyProfilePCL3PPDUpdater"""

    SIGNATURE = "-[ATGlossyProfilePCL3PPDUpdater "

    def converted(self, record):
        result = dict(record)
        profiles = result.get("ICCProfiles")
        if not isinstance(profiles, list):
            return result
        whole_page = None
        ink_seen = False
        for entry in profiles:
            gloss = gloss_of(entry)
            if same(gloss, "OFF"):
                gloss = "off-ge"
            elif same(gloss, "INKEDAREA"):
                gloss = "economode-ge"
                ink_seen = True
            elif same(gloss, "FULLPAGE"):
                gloss = "whole-page-ge"
                whole_page = entry
            entry["GlossEnhancer"] = gloss
        if whole_page is not None and not ink_seen:
            economy = dict(whole_page)
            economy["GlossEnhancer"] = "economode-ge"
            profiles.append(economy)
        return result

    def profile_spec(self, record, entry, ppd):
        qualifier = self.media_qualifier(record, ppd)
        suffix = ""
        glossy = self.is_glossy(ppd.value_for("QZValueAttributes", composed("MediaType.%@", qualifier)))
        if ppd.attribute_for("cupsICCQualifier3") is not None and glossy:
            gloss = key_of(entry, "GlossEnhancer")
            if gloss is not None:
                suffix = gloss
        return composed(".%@.%@", qualifier, suffix)

    def add_icc_profile(self, record, ppd):
        try:
            return super().add_icc_profile(self.converted(record), ppd)
        except ModelError:
            at_log(self.SIGNATURE + "addICCProfileForMediaWithData:toPPD:]",
                   "INFO: Cannot add profile from %@, reason: %@", record, "<ANY>")
            return False

    def set_icc_profile(self, record, ppd):
        try:
            super().set_icc_profile(self.converted(record), ppd)
        except ModelError:
            at_log(self.SIGNATURE + "setICCProfileForMediaWithData:inPPD:]",
                   "INFO: Cannot set profile from %@, reason: %@", record, "<ANY>")


# ---------------------------------------------------------------------------------------------------------------------
# PDL command updater

FIRST_SET = (
    ("initial-reset", "pdl-flush-raster pdl-reset pdl-end-job-pjl"),
    ("pjl-job-header", "pdl-string-code-set pdl-job-name pdl-job-attr6-app-name pdl-job-attr11-system-version"
     " pdl-job-attr14-driver-version pdl-pjl-born-on-date"),
    ("pcl-job-header", "pdl-language-version pdl-pcl-media-source pdl-media-type velmor-pdl-media-type"
     " pdl-print-quality pdl-page-count pdl-color-mode pdl-pcl-color-space-mode pcl-cutter pcl-inkedarea"
     " pdl-media-size pdl-resolution velmor-pdl-paper-width-height"),
    ("begin-page", "pdl-max-raster-width pdl-raster-data-format-vorantis-rgb pdl-raster-cmd-start"),
    ("end-page", "pdl-raster-end pdl-form-feed"),
    ("job-aborting", "pdl-flush-raster pdl-cancel"),
    ("job-final-reset", "pdl-reset pdl-end-job pdl-pjl-end-job"),
)

SECOND_SET = (
    ("initial-reset", "pdl-flush-raster pdl-form-feed pdl-reset pdl-end-job-pjl pdl-job"),
    ("pjl-job-header", "pdl-string-code-set pdl-set-jobname pdl-pjl-born-on-date pdl-job-attr1-user-name"
     " pdl-job-attr2-client-name pdl-job-attr3-domain-name pdl-job-attr4-timestamp pdl-job-attr5-uuid"
     " pdl-job-attr6-app-name pdl-job-attr8-account-id pdl-job-attr11-system-version pdl-job-attr14-driver-version"
     " pdl-driver-usage-metrics pdl-media-source pdl-paper-width-height pdl-set-printarea pdl-margin-layout"
     " pdl-set-margins-size pdl-set-margins pdl-set-borderless-method pdl-set-cutter pdl-set-y-cutter"
     " pdl-set-mediaid pdl-max-detail pdl-set-gloss-enahncer pdl-extrapasses pdl-render-mode pdl-color-space-mode"
     " pdl-rendering-intent pdl-lightness-adjustment pdl-red-adjustment pdl-green-adjustment pdl-blue-adjustment"
     " pdl-cropmarks"),
    ("pcl-job-header", "pdl-language-version pdl-print-quality pdl-resolution"),
    ("begin-page", "pdl-max-raster-width pdl-raster-data-format-tavik-rgb pdl-raster-cmd-start"),
    ("end-page", "pdl-raster-end pdl-form-feed"),
    ("job-aborting", "pdl-flush-raster pdl-cancel"),
    ("job-final-reset", "pdl-reset pdl-end-job pdl-pjl-end-job"),
)


class PDLCommandUpdater:
    """ATPDLCommandTypePPDUpdater"""

    def __init__(self, library):
        self.library = library

    def update(self, ppd, reader):
        if ppd is None or reader is None:
            return False
        uri = reader.printer_uri()
        if is_empty(uri):
            return True
        if self.family(uri) in ("QZVR2PCLS", "QZVRPCLS"):
            self.add_commands(ppd, "VR-K-410", FIRST_SET)
        else:
            self.add_commands(ppd, "VR-K-Q", SECOND_SET)
        return True

    def family(self, uri):
        signature = "-[ATPDLCommandTypePPDUpdater getDeviceFamilyName:]"
        message = "pinwax ==> ATAutoSetupTool == getDeviceFamilyName == Family name extracted %@"
        if not self.library.present:
            at_log(signature, "QZVorantisModel framework is not loaded")
            return ""
        self.library.offers_spec()  # either way of making service information gives the URI and no model name
        name = as_text(self.library.family_name(self.library.device(uri, "")))
        for part in name.split(";") if name else []:
            pieces = part.split(":")
            if "CID:" in part and len(pieces) == 2:
                at_log(signature, message, pieces[1])
                return pieces[1]
        at_log(signature, message, "")
        return ""

    def add_commands(self, ppd, family, command_set):
        ppd.add_attribute(Attribute.with_parts("QZVorantisFamily", None, None, '"' + family + '"'))
        for key, names in command_set:
            value = '"' + ";;\n".join(names.split(" ")) + '"\n*End'
            ppd.add_attribute(Attribute.with_parts("QZPDLCommand " + key, None, None, value))


UPDATERS = {
    "ATMediaTypePPDUpdater": MediaTypeUpdater,
    "ATMediaTypePSPPDUpdater": PostScriptUpdater,
    "ATMediaTypePCL3PPDUpdater": PCL3Updater,
    "ATMediaTypePCL3Qualifier3PPDUpdater": Qualifier3Updater,
    "ATMediaTypePCL3Qualifier1PPDUpdater": Qualifier1Updater,
    "ATGlossyProfilePCL3PPDUpdater": GlossyUpdater,
    "ATPDLCommandTypePPDUpdater": PDLCommandUpdater,
}


def updaters_for(ppd, library):
    content = quoted_value_content(ppd.value_for("QZPPDUpdaters"))
    if content is None:
        return []
    return [UPDATERS[name](library) for name in split_at_characters(content, WHITE_SPACE) if name in UPDATERS]


# ---------------------------------------------------------------------------------------------------------------------
# Tool

TOOL_NAME = "VorantisAutosetupTool"


class Tool:
    """ATAutoSetupTool"""

    def __init__(self, library):
        self.library = library
        self.printer_uri = None
        self.ppd_path = None
        self.printer_id = None
        self.ppd = None
        self.parse_error = None
        self.output = b""

    def init_with_arguments(self, arguments):
        """Whether the arguments after argv[0] are acceptable."""
        signature = "-[ATAutoSetupTool initWithArgc:argv:]"
        if len(arguments) not in (2, 3):
            at_log(signature, "AutoSetupTool was launched with incorrect arguments")
            return False
        self.printer_uri = decode(arguments[0])
        self.ppd_path = decode(arguments[1])
        at_log(signature, "Launched Autosetup Tool (%@) for device: %@", TOOL_NAME, self.printer_uri)
        at_log(signature, "Processed PPD: %@", self.ppd_path)
        if len(arguments) == 3:
            self.printer_id = decode(arguments[2])
            at_log(signature, "Printer ID: %@", self.printer_id)
        if self.ppd_path is not None and (self.printer_uri is not None or self.printer_id is not None):
            self.ppd = Document()
            return True
        at_log(signature, "Invalid args (PPDPath: %@, printerURI: %@, printerID: %@)",
               self.ppd_path, self.printer_uri, self.printer_id)
        return False

    def did_recognize_string(self, s, line_type):
        self.ppd.add_string(s, line_type)

    def did_fail_with_error(self, error):
        self.parse_error = error

    def reader(self):
        if self.printer_id is not None:
            return PrinterIDReader(self.printer_id) if self.printer_id != "" else None
        model_name = self.ppd.value_for("ModelName")
        return DeviceReader(self.library, self.printer_uri, model_name) if self.printer_uri else None

    def run(self):
        signature = "-[ATAutoSetupTool run]"
        if not Parser(self).parse_file(self.ppd_path):
            at_log(signature, "Failed to parse PPD file: %@", list(self.parse_error))
            return False
        updaters = updaters_for(self.ppd, self.library)
        if updaters:
            reader = self.reader()
            for updater in updaters:
                if not updater.update(self.ppd, reader):
                    at_log(signature, "ERROR: Updater(s) cannot update PPD file.")
                    return False
        self.output = "".join(self.ppd.strings()).encode("utf-8")
        return True


def run(args, snapshot_path=None, library_present=True):
    """Runs the tool. Returns the exit status, the bytes on standard output and the messages.

    args are the arguments (bytes) after argv[0].
    """
    log_lines.clear()
    tool = Tool(Library(snapshot_path, library_present))
    try:
        success = tool.init_with_arguments(args) and tool.run()
    except ModelError:
        at_log("int main(int, const char **)", "Exception caught in autosetup, name: %@, reason: %@, info: %@",
               "<ANY>", "<ANY>", "<ANY>")
        success = False
    return (0 if success else 1), tool.output if success else b"", list(log_lines)


def main(arguments):
    log_path = None
    present = True
    while arguments and arguments[0] in (b"--log", b"--library"):
        if arguments[0] == b"--log":
            log_path = arguments[1]
        else:
            present = arguments[1] != b"absent"
        arguments = arguments[2:]
    status, output, messages = run(arguments, os.environ.get("QZVORANTISMODEL_SNAPSHOT"), present)
    if log_path is not None:
        with open(log_path, "ab") as file:
            for message in messages:
                file.write(message.encode("utf-8") + b"\n")
    sys.stdout.buffer.write(output)
    sys.stdout.buffer.flush()
    return status


if __name__ == "__main__":
    sys.exit(main([os.fsencode(argument) for argument in sys.argv[1:]]))
