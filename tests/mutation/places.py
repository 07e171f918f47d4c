# SPDX-License-Identifier: MIT
"""Finds the places at which the code can be changed, with Clang's syntax tree.

A place is one change of one line, written as one or several spots: a piece of a file and what is compiled instead of
it, in which both the piece and its change stand behind a switch. The tests choose the change when they run.
"""
import collections
import dataclasses
import json
import re
import shlex

from clang import cindex

Kind = cindex.CursorKind
Type = cindex.TypeKind

COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
CONNECTIVES = {"&&": "||", "||": "&&"}
ARITHMETIC = {"+": "-", "-": "+", "*": "+", "/": "*", "+=": "-=", "-=": "+=", "|": "&", "&": "|", "<<": ">>",
              ">>": "<<"}

EXPRESSION = "(AT_MUTANT(@ID@) ? (@AFTER@) : (@INNER@))"
CONDITION = "(AT_MUTANT(@ID@) ? !(@AFTER@) : static_cast<bool>(@INNER@))"
NEGATION = "(AT_MUTANT(@ID@) ? static_cast<bool>(@AFTER@) : (@INNER@))"
STATEMENT = "{ if (AT_MUTANT(@ID@)) { @AFTER@ } else @INNER@ }"
CONSTANT = "(AT_MUTANT(@ID@) ? static_cast<std::decay_t<decltype(@INNER@)>>(@AFTER@) : @INNER@)"
# Where the compiler may be asked to work something out, in which case nothing is changed.
OR_CONSTANT = ("AT_MUTANT(", "AT_MUTANT_OR_CONSTANT(")

NUMBERS = {Type.INT, Type.UINT, Type.LONG, Type.ULONG, Type.LONGLONG, Type.ULONGLONG, Type.SHORT, Type.USHORT,
           Type.CHAR_S, Type.UCHAR, Type.CHAR32, Type.POINTER}
DROPPED = {Kind.CALL_EXPR, Kind.UNARY_OPERATOR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR,
           Kind.UNEXPOSED_EXPR, Kind.BREAK_STMT, Kind.CONTINUE_STMT}
LAST = {Kind.FOR_STMT, Kind.CXX_FOR_RANGE_STMT, Kind.WHILE_STMT, Kind.CASE_STMT, Kind.DEFAULT_STMT}  # the body is
CONSTANT_ONLY = {Kind.STATIC_ASSERT, Kind.ENUM_DECL, Kind.PARM_DECL, Kind.TEMPLATE_TYPE_PARAMETER,
                 Kind.TEMPLATE_NON_TYPE_PARAMETER, Kind.TYPEDEF_DECL, Kind.TYPE_ALIAS_DECL, Kind.USING_DECLARATION}

INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)([uUlL]*)$")
STRING = r'(?:"(?:[^"\\\n]|\\.)*"\s*)+'
LOG_CALL = re.compile(r'ATLog\(\s*(\w+|' + STRING + r'),\s*(' + STRING + r')([,)])')


@dataclasses.dataclass(frozen=True)
class Spot:
    file: str
    start: int  # bytes from the start of the file
    end: int
    pattern: str  # with @ID@, @AFTER@ and @INNER@
    after: str


@dataclasses.dataclass
class Place:
    file: str
    line: int
    text: str  # of the line
    kind: str
    before: str
    after: str
    spots: list
    table: tuple = None  # the place of a "constexpr" that must become "const" for the change to be possible
    nth: int = 1  # among the same changes of lines that read the same

    def key(self):
        return (self.file, self.text, self.kind, f"{self.before} → {self.after}", str(self.nth))


def one_line(code):
    """The code without comments, on one line, so that lines keep their numbers."""
    string_or_comment = r'("(?:[^"\\\n]|\\.)*")|//[^\n]*|/\*.*?\*/'
    code = re.sub(string_or_comment, lambda found: found.group(1) or "", code, flags=re.DOTALL)
    return re.sub(r"\s*\n\s*", " ", code).strip()


def shortened(code):
    code = one_line(code)
    return code if len(code) <= 60 else code[:57] + "..."


def end_of_parentheses(text, position):
    """Behind the parenthesis that closes the one at `position`."""
    depth = 0
    for token in re.finditer(r'"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\\n]|\\.)+\'|[()]', text[position:]):
        depth += {"(": 1, ")": -1}.get(token.group(), 0)
        if depth == 0:
            return position + token.end()
    return len(text)


class File:
    """A source file: its text, a character for each byte, and where its log calls are."""

    def __init__(self, top, name):
        self.name = name
        self.text = (top / name).read_bytes().decode("latin-1")
        self.log_calls = []
        for found in re.finditer(r"\bATLog\(", self.text):
            if not self.line_text(found.start()).startswith("#define"):
                self.log_calls.append((found.start(), end_of_parentheses(self.text, found.end() - 1)))

    def line_of(self, position):
        return self.text.count("\n", 0, position) + 1

    def line_text(self, position):
        start = self.text.rfind("\n", 0, position) + 1
        return self.text[start:(self.text + "\n").find("\n", position)].strip().encode("latin-1").decode()

    def is_format(self, position):
        """Whether a format stands there, which the compiler reads: the whole call is changed."""
        return re.search(r"fmt::format\(\s*$", self.text[:position])

    def is_logged(self, start, end):
        return any(first <= start and end <= last for first, last in self.log_calls)


class Finder:
    """Walks over the syntax trees and collects places."""

    def __init__(self, top, names):
        self.top = top
        self.files = {str(top / name): File(top, name) for name in names}
        self.visited = set()
        self.places = {}
        self.constants = {}  # places of named constants, by the declaration's file and position
        self.table = None
        self.in_constexpr = False

    def add(self, kind, file, start, end, pattern, after, before=None, shown=None):
        pattern = pattern.replace(*OR_CONSTANT) if self.in_constexpr else pattern
        before = file.text[start:end] if before is None else before
        spot = Spot(file.name, start, end, pattern, one_line(after))
        place = Place(file.name, file.line_of(start), file.line_text(start), kind, shortened(before),
                      shortened(after if shown is None else shown), [spot], self.table)
        self.places.setdefault((file.name, start, end, kind, place.before, place.after), place)

    def visit_unit(self, unit):
        """The parts of a translation unit whose files were not seen before."""
        seen = set()
        for cursor in unit.cursor.get_children():
            name = cursor.location.file.name if cursor.location.file else None
            if name in self.files and name not in self.visited:
                seen.add(name)
                self.in_constexpr = False
                self.visit(cursor, self.files[name], None)
        self.visited |= seen

    def visit(self, cursor, file, parent):
        kind = cursor.kind
        if kind in CONSTANT_ONLY or kind.is_attribute():
            return
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        children = list(cursor.get_children())
        if kind == Kind.LAMBDA_EXPR:
            self.table = None
        if kind in (Kind.VAR_DECL, Kind.FIELD_DECL):
            return self.visit_variable(cursor, file, children, start, end)
        if kind == Kind.IF_STMT and re.match(r"if\s+constexpr", file.text[start:end]):
            children = children[1:]
        elif kind == Kind.CASE_STMT:
            children = children[1:]
        if not file.is_logged(start, end):
            self.look_at(cursor, file, children, start, end)
        if kind in (Kind.FUNCTION_DECL, Kind.CXX_METHOD):
            self.in_constexpr = bool(re.search(r"\bconstexpr\b", file.text[start:cursor.location.offset]))
        for position, child in enumerate(children):
            is_last = kind in LAST and child == children[-1]
            if kind == Kind.COMPOUND_STMT or kind == Kind.IF_STMT and position > 0 or is_last:
                self.drop(child, file)
            self.visit(child, file, cursor)
        return None

    def visit_variable(self, cursor, file, children, start, end):
        head = file.text[start:cursor.location.offset]
        body = [child for child in children if child.kind.is_expression()]
        if cursor.type.kind in (Type.CONSTANTARRAY, Type.INCOMPLETEARRAY):
            body = [child for child in body if child.kind != Kind.INTEGER_LITERAL]
        if not re.search(r"\bconstexpr\b", head):
            for child in body:
                self.visit(child, file, cursor)
        elif body and self.is_simple(file.text[body[-1].extent.start.offset:end]):
            self.add_constant(cursor, file, body[-1].extent.start.offset, end)
        elif body:
            self.table = (file.name, start + head.index("constexpr"))
            self.visit(body[-1], file, cursor)
            self.table = None

    @staticmethod
    def is_simple(text):
        return re.fullmatch(STRING, text) or re.fullmatch(r"true|false|[\w\s:{}*<]*[0-9][\w\s:{}*<]*", text)

    def add_constant(self, cursor, file, start, end):
        value = file.text[start:end]
        after = value + ' "~"' if value.startswith('"') else f"({value}) + 1"
        place = Place(file.name, file.line_of(start), file.line_text(start), "constant", shortened(value),
                      shortened(after), [])
        self.constants[file.name, cursor.location.offset] = (place, one_line(after))

    def look_at(self, cursor, file, children, start, end):
        """The changes of this node of the tree."""
        kind = cursor.kind
        text = file.text[start:end]
        if kind == Kind.INTEGER_LITERAL and INTEGER.match(text):
            number = int(INTEGER.match(text).group(1).replace("'", ""), 0) + 1
            self.add("constant", file, start, end, EXPRESSION, str(number) + INTEGER.match(text).group(2))
        elif kind == Kind.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            self.add("constant", file, start, end, EXPRESSION, "false" if text == "true" else "true")
        elif kind == Kind.CHARACTER_LITERAL and text.startswith("'"):
            self.add("constant", file, start, end, EXPRESSION, f"static_cast<char>({text} + 1)")
        elif kind == Kind.STRING_LITERAL and re.fullmatch(STRING, text) and not file.is_format(start):
            self.add("text", file, start, end, EXPRESSION, text + ' "~"')
        elif kind in (Kind.DECL_REF_EXPR, Kind.MEMBER_REF_EXPR):
            self.refer(cursor, file, start, end)
        elif kind == Kind.UNARY_OPERATOR and text.startswith("!") and text[1:2] != "=":
            self.add("condition", file, start, end, NEGATION, text[1:])
        elif kind == Kind.CALL_EXPR and re.match(r"fmt::format\(\s*" + STRING, text):
            head = re.match(r"fmt::format\(\s*" + STRING, text).group()
            self.add("text", file, start, end, EXPRESSION, head + '"~"' + text[len(head):])
        if kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR):
            self.negate(cursor, file, children, start)
        self.operate(cursor, file, children)

    def negate(self, cursor, file, children, start):
        condition = next((child for child in children if child.kind.is_expression()), None)
        if condition is None:
            return
        first, last = condition.extent.start.offset, condition.extent.end.offset
        text = file.text[first:last]
        if cursor.kind != Kind.CONDITIONAL_OPERATOR:
            if not re.search(r"[(;]\s*$", file.text[start:first]) or not re.match(r"\s*\)", file.text[last:]):
                return
        parts = list(condition.get_children())
        between = file.text[parts[0].extent.end.offset:parts[-1].extent.start.offset].strip() if parts else ""
        if between not in ("==", "!=") and (not text.startswith("!") or "&&" in text or "||" in text):
            self.add("condition", file, first, last, CONDITION, text, shown=f"!({text})")

    def operate(self, cursor, file, children):
        """Another operator between the two operands."""
        if len(children) < 2 or not cursor.kind.is_expression():
            return
        left, right = children[0], children[-1]
        first, last = left.extent.end.offset, right.extent.start.offset
        operator = one_line(file.text[first:last]) if first < last else ""
        number = cursor.type.get_canonical().kind in NUMBERS
        kind, table = next(((kind, table) for kind, table, fits in (
            ("comparison", COMPARISONS, True), ("logic", CONNECTIVES, True), ("arithmetic", ARITHMETIC, number))
            if operator in table and fits), (None, None))
        start, end = left.extent.start.offset, right.extent.end.offset
        if kind is None or (start, end) != (cursor.extent.start.offset, cursor.extent.end.offset):
            return
        changed = f"{file.text[start:first]} {table[operator]} {file.text[last:end]}"
        self.add(kind, file, start, end, EXPRESSION, changed)

    def refer(self, cursor, file, start, end):
        declaration = cursor.referenced
        if declaration is None or declaration.location.file is None or declaration.location.file.name not in self.files:
            return
        found = self.constants.get((self.files[declaration.location.file.name].name, declaration.location.offset))
        if found and file.text[start:end].endswith(cursor.spelling):
            place, after = found
            pattern = CONSTANT if self.table else CONSTANT.replace(*OR_CONSTANT)
            place.spots.append(Spot(file.name, start, end, pattern, after))

    def drop(self, cursor, file):
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        semicolon = re.match(r"\s*;", file.text[end:])
        if cursor.kind not in DROPPED or not semicolon or file.is_logged(start, end):
            return
        self.add("drop", file, start, end + semicolon.end(), STATEMENT, "", before=file.text[start:end], shown="nothing")

    def add_log_calls(self):
        for file in self.files.values():
            for start, end in file.log_calls:
                if not file.text[end:].startswith(";"):
                    continue
                call = file.text[start:end]
                self.add("drop", file, start, end + 1, STATEMENT, "", before=call, shown="nothing")
                parts = LOG_CALL.match(call)
                if not parts:
                    continue
                for kind, group in (("text", 2), ("signature", 1)):
                    first, last = parts.span(group)
                    name = call[first:last]
                    changed = f'{name} "~"' if name.startswith('"') else f'std::string({name}) + "~"'
                    self.add(kind, file, start, end + 1, STATEMENT, call[:first] + changed + call[last:] + ";",
                             before=call[first:last], shown=changed)

    def result(self):
        """All places, ordered, each with its number among the same changes of lines that read the same."""
        self.add_log_calls()
        places = list(self.places.values()) + [place for place, _ in self.constants.values() if place.spots]
        places.sort(key=lambda place: (place.file, place.line, place.spots[0].start, place.kind, place.after))
        counts = collections.Counter()
        for place in places:
            same = place.key()[:4]
            counts[same] += 1
            place.nth = counts[same]
        return places


def arguments_of(command):
    """What a compiler is told about the language and where to look, without the names of files."""
    words = shlex.split(command)
    return [word for word in words[1:] if word.startswith(("-I", "-D", "-std=", "-isystem", "/")) and
            not word.endswith((".cpp", ".o"))]


def find_places(top, database, names):
    """Those in the files of these names in the folder `top`. `database`: what CMake exports of the compilations."""
    finder = Finder(top, names)
    index = cindex.Index.create()
    units = []
    for entry in json.loads(database.read_text()):
        if entry["file"] in finder.files:
            unit = index.parse(entry["file"], arguments_of(entry["command"]))
            errors = [str(each) for each in unit.diagnostics if each.severity >= cindex.Diagnostic.Error]
            if errors:
                raise SystemExit(f"Clang cannot read {entry['file']}: {errors[0]}")
            units.append(unit)
    # Uses of a named constant are found after its declaration: those of a header in every unit that includes it.
    for unit in units:
        finder.visit_unit(unit)
    return finder.result()
