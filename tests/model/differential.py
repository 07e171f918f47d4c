#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs generated cases through the tool and through the reference model and compares what comes out.

    python3 differential.py --tool BIN --library-dir DIR [--model model.py] [--seeds A-B] [--jobs N] [--keep DIR]
    python3 differential.py --tool DIAGNOSTIC_BIN --log PATH ...     compares the messages too, one run at a time
    python3 differential.py --model-only [--model-lines] ...         no tool: statistics of what the cases reach
    python3 differential.py --replay DIR --tool BIN ...              one stored case, results printed
    python3 differential.py --minimize DIR --tool BIN ...            shrinks a stored case into DIR/minimized

The model offers `run(args, snapshot_path, library_present) -> (status, stdout_bytes, log_lines)`, `args` being the
arguments after the tool's name. In its messages "<RECORD>" and "<ANY>" match any text. The exit status is 0 when
nothing differs.
"""

import argparse
import collections
import difflib
import importlib.util
import inspect
import json
import multiprocessing
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import traceback

import generate

HERE = os.path.dirname(os.path.abspath(__file__))
WILD = re.compile("<RECORD>|<ANY>")
WILD_BYTES = re.compile(b"<RECORD>|<ANY>")
MESSAGE_START = re.compile(r"^(?=[-+]\[[\w ()]+ [\w:]+\]: |int main\(int, const char \*\*\): )", re.M)
CASE_FILES = ("input.ppd", "snapshot.json", "arguments", "library")

# Every message of the system: (class or function, format). A True at the end: no input reaches it in a whole-tool run.
MESSAGES = (
    ("main", "Exception caught in autosetup, name: %@, reason: %@, info: %@"),
    ("ATAutoSetupTool", "AutoSetupTool was launched with incorrect arguments"),
    ("ATAutoSetupTool", "Launched Autosetup Tool (%s) for device: %@"),
    ("ATAutoSetupTool", "Processed PPD: %@"),
    ("ATAutoSetupTool", "Printer ID: %@"),
    ("ATAutoSetupTool", "Invalid args (PPDPath: %@, printerURI: %@, printerID: %@)"),
    ("ATAutoSetupTool", "Failed to parse PPD file: %@"),
    ("ATAutoSetupTool", "ERROR: Updater(s) cannot update PPD file."),
    ("ATAutoSetupTool", "Stdout writing error.", True),
    ("ATPPDParser", "Cannot find PPD at %@"),
    ("ATPPDParser", "cupsFileOpen fails with PPD %@"),
    ("PPDExtentions", "The text: \"%@\" is not valid PPD text."),
    ("ATPPD", "ERROR: String %@ of type %d is ignored!", True),
    ("ATPPD", "Adding %@ attribute with value %@"),
    ("ATPPD", "Removing attribute %@..."),
    ("ATPPDOption", "String %@ of type %d is ignored!"),
    ("ATPPDOption", "Adding choice %@"),
    ("ATPPDOption", "%@, removing choice %@..."),
    ("ATPPDChoice", "Cannot create ATPPDChoice from name: %@, option: %@, text: %@", True),
    ("ATPPDChoice", "Not valid component %@, string: %@"),
    ("ATPPDGroup", "String %@ of type %d is ignored!", True),
    ("ATCustomMediaTypesReaderImpl", "QZVorantisModel framework is not loaded"),
    ("ATCustomMediaTypesReaderImpl", "Service info was created using serviceInfoWithSpec, URI is %@, model name is %@"),
    ("ATCustomMediaTypesReaderImpl", "Service info was created using serviceInfoWithURI:"),
    ("ATCustomMediaTypesReaderImpl", "Media list version in VMF DataStore %@"),
    ("ATCustomMediaTypesReaderImpl", "Found %d custom media in VMF DataStore"),
    ("ATCustomMediaTypesReaderImpl", "Media dictionary from DataStore: %@"),
    ("ATDeviceFamilyNameReaderImpl", "QZVorantisModel framework is not loaded", True),
    ("ATDeviceFamilyNameReaderImpl", "Service info was created using serviceInfoWithURI:", True),
    ("ATMediaTypePPDUpdater", "Processing media data: %@"),
    ("ATMediaTypePPDUpdater", "Adding %@ with ID %@"),
    ("ATMediaTypePPDUpdater", "For %@ parent media has ID %@"),
    ("ATMediaTypePPDUpdater", "Parent media name: %@ attributes: %@"),
    ("ATMediaTypePPDUpdater", "Adding attributes for %@: %@"),
    ("ATMediaTypePPDUpdater", "Changing GE from %@ to %@"),
    ("ATMediaTypePPDUpdater", "Restoring property for %@"),
    ("ATMediaTypePPDUpdater", "Set default GE: %@ for %@"),
    ("ATPDLCommandTypePPDUpdater", "QZVorantisModel framework is not loaded"),
    ("ATPDLCommandTypePPDUpdater", "pinwax ==> ATAutoSetupTool == getDeviceFamilyName == Family name extracted %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Cannot add profile from %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Ignore profile %@ with qualifier (> 41 bytes): %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Skip profile: %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Cannot set profile from %@"),
    ("ATMediaTypePCL3PPDUpdater", "Found factory ICC profile: %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Skip profile %@ - line length > 256 bytes: %@"),
    ("ATMediaTypePCL3PPDUpdater", "INFO: Skip profile %@, locale %@ > 256 bytes limit: %@"),
    ("ATMediaTypePCL3PPDUpdater", "Removing profile %@"),
    ("ATQZProfilePPDAttributeWrapper", "Input %@, parsed %@"),
    ("ATMediaTypePCL3Qualifier1PPDUpdater", "INFO: Cannot add profile from %@, reason: %@"),
    ("ATMediaTypePCL3Qualifier1PPDUpdater", "INFO: Cannot set profile from %@, reason: %@"),
    ("ATGlossyProfilePCL3PPDUpdater", "INFO: Cannot add profile from %@, reason: %@"),
    ("ATGlossyProfilePCL3PPDUpdater", "INFO: Cannot set profile from %@, reason: %@"),
)


def message_patterns():
    patterns = []
    for entry in MESSAGES:
        owner, text = entry[0], entry[1]
        start = r"int main\(" if owner == "main" else r"[-+]\[" + owner + r"(?:\([^)]*\))? "
        body = re.sub(r"%(?:@|d|s)", ".*?", re.escape(text).replace("\\%", "%"))
        patterns.append((owner + ": " + text, re.compile(start + r".*?: " + body, re.S), len(entry) > 2, len(text)))
    # The longest format first, so that a format that begins another one does not take its messages.
    return sorted(patterns, key=lambda pattern: -pattern[3])


PATTERNS = message_patterns()

STATES = {
    0: ("E3", "E6", "E7", "Statement", "OpenGroup", "OpenUI"),
    generate.CLOSE_GROUP: ("E3", "E6", "E7", "Statement", "Continuation", "OpenGroup", "OpenUI"),
    generate.END: ("E3", "E6", "CloseGroup", "Statement", "OpenGroup", "OpenUI"),
    generate.CLOSE_UI: ("E3", "E6", "CloseGroup", "Statement", "Continuation", "OpenGroup", "OpenUI"),
    generate.OPEN_GROUP: ("E4", "OpenUI", "CloseGroup", "Statement"),
    generate.STATEMENT: ("E6", "End", "Continuation", "OpenGroup", "OpenUI", "CloseGroup", "Statement"),
    generate.CONTINUATION: ("E6", "End", "Continuation", "OpenGroup", "OpenUI", "CloseGroup", "Statement"),
    generate.OPEN_UI: ("E5", "DefaultChoice", "OrderDependency", "CloseUI", "Choice"),
    generate.ORDER_DEPENDENCY: ("E5", "DefaultChoice", "OrderDependency", "CloseUI", "Choice"),
    generate.DEFAULT_CHOICE: ("E5", "DefaultChoice", "OrderDependency", "CloseUI", "Choice"),
    generate.CHOICE_END: ("E5", "DefaultChoice", "OrderDependency", "CloseUI", "Choice"),
    generate.CHOICE: ("ChoiceContinuation", "DefaultChoice", "OrderDependency", "CloseUI", "Choice"),
    generate.CHOICE_CONTINUATION: ("ChoiceEnd", "ChoiceContinuation", "DefaultChoice", "OrderDependency", "CloseUI",
                                   "Choice"),
}
REASONS = ("Exception caught in autosetup", "ERROR: Updater(s) cannot update PPD file.", "Failed to parse PPD file",
           "AutoSetupTool was launched with incorrect arguments", "Invalid args")


# --- Running ---------------------------------------------------------------------------------------------------------

def load_model(path):
    spec = importlib.util.spec_from_file_location("reference_model", path)
    module = importlib.util.module_from_spec(spec)
    sys.modules["reference_model"] = module
    spec.loader.exec_module(module)
    return module


class Result:
    def __init__(self, status, output, error=b"", log=None):
        self.status, self.output, self.error, self.log = status, output, error, log


class Runner:
    """Runs one case after the other in a directory of its own."""

    def __init__(self, options, model, directory):
        self.options, self.model = options, model
        self.directory = os.path.join(directory, "case")
        if len(inspect.signature(model.run).parameters) < 3:
            raise SystemExit("the model's run takes (args, snapshot_path, library_present)")

    def place(self, case):
        if os.path.isdir(self.directory):
            for name in CASE_FILES:
                path = os.path.join(self.directory, name)
                if os.path.exists(path):
                    os.remove(path)
        generate.write_case(case, self.directory)
        directory = os.fsencode(self.directory)
        ppd = os.path.join(directory, b"input.ppd")
        args = [argument.replace(generate.PLACE_HOLDER, ppd).replace(generate.DIRECTORY_PLACE_HOLDER, directory)
                for argument in case.args]
        return args, None if case.snapshot is None else os.path.join(self.directory, "snapshot.json")

    def run_tool(self, case):
        args, snapshot = self.place(case)
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith("QZVORANTISMODEL") and name != "LD_LIBRARY_PATH"}
        if case.library_present:
            environment["LD_LIBRARY_PATH"] = os.path.abspath(self.options.library_dir)
        if snapshot is not None:
            environment["QZVORANTISMODEL_SNAPSHOT"] = snapshot
        if self.options.log:
            with open(self.options.log, "wb"):
                pass
        # The tool logs its own name, so it gets the name that the model logs.
        name = getattr(self.model, "TOOL_NAME", "VorantisAutosetupTool")
        try:
            done = subprocess.run([os.fsencode(name)] + args, executable=os.path.abspath(self.options.tool),
                                  env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, timeout=self.options.timeout, check=False)
        except subprocess.TimeoutExpired:
            return Result("no end within %g s" % self.options.timeout, b"")
        log = None
        if self.options.log:
            with open(self.options.log, "rb") as file:
                log = file.read().decode("utf-8", "surrogateescape")
        return Result(done.returncode, done.stdout, done.stderr, log)

    def run_model(self, case):
        args, snapshot = self.place(case)
        try:
            status, output, lines = self.model.run(args, snapshot, case.library_present)
        except Exception:
            return Result("the model failed", b"", traceback.format_exc().encode())
        text = []
        for line in lines:
            if isinstance(line, tuple):
                line = "%s: %s" % line
            if isinstance(line, bytes):
                line = line.decode("utf-8", "surrogateescape")
            text.append(line + "\n")
        return Result(status, output, b"", "".join(text))


def messages(log):
    """The messages of a log; one message may hold several lines."""
    starts = [match.start() for match in MESSAGE_START.finditer(log)]
    if not starts:
        return [log] if log else []
    parts = [log[a:b] for a, b in zip(starts, starts[1:] + [len(log)])]
    return ([log[:starts[0]]] if starts[0] else []) + parts


def matches(expected, actual):
    """Whether a text matches one with wild cards."""
    if expected == actual:
        return True
    wild = WILD if isinstance(expected, str) else WILD_BYTES
    if not wild.search(expected):
        return False
    any_text = ".*?" if isinstance(expected, str) else b".*?"
    pattern = any_text.join(re.escape(part) for part in wild.split(expected))
    return re.compile(pattern, re.S).fullmatch(actual) is not None


def logs_match(expected, actual):
    ours, theirs = messages(expected), messages(actual)
    return len(ours) == len(theirs) and all(map(matches, ours, theirs))


def compare(tool, model):
    """The kinds of difference between the two results."""
    kinds = []
    if isinstance(model.status, str):
        kinds.append("model failure")
    if tool.status != model.status:
        kinds.append("status")
    if not matches(model.output, tool.output):
        kinds.append("output")
    if tool.error:
        kinds.append("standard error")
    if tool.log is not None and not logs_match(model.log or "", tool.log):
        kinds.append("log")
    return kinds


def self_check(case, model):
    """What the model answers against rules that need no tool."""
    kinds = []
    if isinstance(model.status, str):
        return ["model failure"]
    if model.status not in (0, 1):
        kinds.append("model status")
    if model.status == 1 and model.output:
        kinds.append("model writes and fails")
    if reads_ppd(case):
        _, error, _, _ = generate.read_lines(case.ppd)
        if error >= 0 and (error > 0) != ("Failed to parse PPD file" in model.log):
            kinds.append("line typing")
    return kinds


def reads_ppd(case):
    if case.ppd is None or len(case.args) not in (2, 3) or case.args[1] != generate.PLACE_HOLDER:
        return False
    for argument in case.args[:1] + case.args[2:]:
        try:
            argument.decode("utf-8")
            return True
        except UnicodeDecodeError:
            pass
    return False


# --- Statistics ------------------------------------------------------------------------------------------------------

def count(statistics, case, model):
    def add(group, name):
        statistics[(group, name)] += 1

    add("exit status", str(model.status))
    for tag in case.tags:
        add("case", tag)
    if not case.library_present:
        add("case", "library absent")
    log = model.log or ""
    if model.status == 1:
        for reason in REASONS:
            if reason in log:
                add("exit 1", reason)
                break
        else:
            add("exit 1", "other")
    seen = set()
    for message in messages(log):
        for name, pattern, _, _ in PATTERNS:
            if pattern.match(message):
                if name not in seen:
                    seen.add(name)
                    add("message", name)
                break
        else:
            add("unknown message", WILD.sub("", message)[:100].strip())
    signatures = {message.split(": ", 1)[0] for message in messages(log)}
    for signature in signatures:
        add("signature", signature)
    if model.status == 0 and case.ppd is not None:
        try:
            plain = generate.unpacked(case.ppd)
        except (OSError, EOFError):
            plain = b""
        add("output", "as the input" if model.output == plain else "changed")
    if not reads_ppd(case):
        return
    steps, error, _, cut = generate.read_lines(case.ppd)
    if cut:
        add("reading", "ended at a piece that is not UTF-8")
    if error < 0:
        add("reading", "damaged gzip")
    add("parse error", "none" if error <= 0 else str(error))
    pairs = {("open " if not closed else "closed ", last, "E%d" % code if code else generate.TYPE_NAMES[kind])
             for (last, closed), kind, code in steps}
    for closed, last, kind in pairs:
        add("line", generate.TYPE_NAMES[last] + " > " + kind)
    chain = re.search(rb'\*QZPPDUpdaters: "([^"]*)"', case.ppd)
    if chain and error == 0 and model.status == 0:
        names = [name for name in chain.group(1).decode("utf-8", "replace").split() if name in generate.UPDATERS]
        add("updaters of a chain", str(len(names)))
        for name in set(names):
            add("updater", name)


def print_statistics(statistics, total):
    groups = collections.defaultdict(dict)
    for (group, name), number in statistics.items():
        groups[group][name] = number
    for name, _, unreachable, _ in PATTERNS:
        if not unreachable:
            groups["message"].setdefault(name, 0)
    for code in range(3, 8):
        groups["parse error"].setdefault(str(code), 0)
    for name in generate.UPDATERS:
        groups["updater"].setdefault(name, 0)
    for reason in REASONS:
        groups["exit 1"].setdefault(reason, 0)
    for last, kinds in STATES.items():
        for kind in kinds:
            groups["line"].setdefault(generate.TYPE_NAMES[last] + " > " + kind, 0)
    print("\nOver %d cases (how many cases show it):" % total)
    for group in sorted(groups):
        if group == "signature":
            continue
        print("\n%s" % group)
        for name, number in sorted(groups[group].items(), key=lambda item: (-item[1], item[0])):
            print("  %7d  %s%s" % (number, name, "" if number else "   <-- never"))
    never = ["%s: %s" % (group, name) for group in sorted(groups) for name, number in sorted(groups[group].items())
             if not number]
    print("\nNever seen: %s" % ("nothing" if not never else ""))
    for name in never:
        print("  " + name)


# --- Lines of the model that ran -------------------------------------------------------------------------------------

class LineTrace:
    """Collects which lines of the model run."""

    def __init__(self, path):
        self.path, self.ran = path, set()

    def calls(self, frame, _event, _argument):
        if frame.f_code.co_filename != self.path:
            return None
        self.ran.add(frame.f_lineno)
        return self.lines

    def lines(self, frame, event, _argument):
        if event == "line":
            self.ran.add(frame.f_lineno)
        return self.lines

    def missing(self):
        with open(self.path, encoding="utf-8") as file:
            source = file.read()
        wanted, stack = set(), [compile(source, self.path, "exec")]
        while stack:
            code = stack.pop()
            if code.co_name != "<module>":
                wanted.update(line for _, _, line in code.co_lines() if line)
                wanted.discard(code.co_firstlineno)
            stack += [constant for constant in code.co_consts if hasattr(constant, "co_code")]
        lines = source.splitlines()
        return [(number, lines[number - 1]) for number in sorted(wanted - self.ran)
                if not lines[number - 1].strip().startswith(("def ", "class ", '"""', "@"))]


# --- Work ------------------------------------------------------------------------------------------------------------

WORKER = {}


def start_worker(options, directory):
    # Without a terminal "/dev/tty" exists and cannot be opened, for the model as for the tool.
    try:
        os.setsid()
    except OSError:
        pass
    place = tempfile.mkdtemp(dir=directory)
    path = os.path.abspath(options.model)
    WORKER["options"] = options
    WORKER["runner"] = Runner(options, load_model(path), place)
    WORKER["trace"] = LineTrace(path) if options.model_lines else None


def work(seeds):
    """Runs the seeds; returns (number of cases, statistics, failures, lines of the model that ran)."""
    options, runner, trace = WORKER["options"], WORKER["runner"], WORKER["trace"]
    statistics, failures = collections.Counter(), []
    for seed in seeds:
        case = generate.generate(seed)
        if trace:
            sys.settrace(trace.calls)
        model = runner.run_model(case)
        if trace:
            sys.settrace(None)
        kinds = self_check(case, model)
        tool = None
        if options.tool:
            tool = runner.run_tool(case)
            kinds += [kind for kind in compare(tool, model) if kind not in kinds]
        if kinds:
            failures.append((seed, kinds, tool, model))
        if not isinstance(model.status, str):
            count(statistics, case, model)
    return len(seeds), statistics, failures, trace.ran if trace else set()


def difference(name, model, tool):
    left = [repr(line) + "\n" for line in model]
    right = [repr(line) + "\n" for line in tool]
    return "".join(difflib.unified_diff(left, right, "model " + name, "tool " + name))


def split_lines(data):
    return re.findall(rb"[^\r\n]*(?:\r\n|\r|\n)|[^\r\n]+", data)


def report(case, kinds, tool, model):
    """The differences as text."""
    text = "differs in: %s\n" % ", ".join(kinds)
    text += "model status %s, tool status %s\n" % (model.status, tool.status if tool else "(not run)")
    if model.error:
        text += model.error.decode("utf-8", "replace")
    if tool is None:
        return text + "arguments: %r\n" % case.args
    if tool.error:
        text += "standard error of the tool: %r\n" % tool.error[:2000]
    if "output" in kinds:
        text += difference("output", split_lines(model.output), split_lines(tool.output))
    if "log" in kinds:
        ours, theirs = messages(model.log or ""), messages(tool.log)
        # Messages that match through a wild card are shown alike.
        shown = [next((other for other in theirs if matches(own, other)), own) for own in ours]
        text += difference("log", shown, theirs)
    return text


def keep(directory, case, kinds, tool, model):
    shutil.rmtree(directory, ignore_errors=True)
    generate.write_case(case, directory)
    files = {"difference.txt": report(case, kinds, tool, model).encode("utf-8", "replace"),
             "model.output": model.output,
             "model.status": b"%s\n" % str(model.status).encode(),
             "model.log": (model.log or "").encode("utf-8", "surrogateescape")}
    if tool:
        files.update({"tool.output": tool.output, "tool.error": tool.error,
                      "tool.status": b"%s\n" % str(tool.status).encode()})
        if tool.log is not None:
            files["tool.log"] = tool.log.encode("utf-8", "surrogateescape")
    for name, data in files.items():
        with open(os.path.join(directory, name), "wb") as file:
            file.write(data)


def run_seeds(options):
    first, _, last = options.seeds.partition("-")
    seeds = list(range(int(first), int(last or first) + 1))
    jobs = 1 if options.log else max(1, options.jobs)
    chunks = [seeds[at:at + 25] for at in range(0, len(seeds), 25)]
    statistics, failures, done, ran = collections.Counter(), 0, 0, set()
    started = shown = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="differential-") as directory:
        with multiprocessing.Pool(jobs, start_worker, (options, directory)) as pool:
            for number, more, failed, lines in pool.imap_unordered(work, chunks):
                done += number
                statistics.update(more)
                ran |= lines
                for seed, kinds, tool, model in failed:
                    failures += 1
                    if failures > options.max_failures:
                        break
                    place = os.path.join(options.keep, "seed-%d" % seed)
                    keep(place, generate.generate(seed), kinds, tool, model)
                    print("seed %d differs in: %s (%s)" % (seed, ", ".join(kinds), place), flush=True)
                if failures >= options.max_failures:
                    print("stopped after %d failures" % failures)
                    pool.terminate()
                    break
                if time.monotonic() - shown > 10:
                    shown = time.monotonic()
                    print("%d of %d cases, %d failures, %.0f s" % (done, len(seeds), failures, shown - started),
                          flush=True)
    if not options.quiet:
        print_statistics(statistics, done)
    if options.model_lines:
        trace = LineTrace(os.path.abspath(options.model))
        trace.ran = ran
        print("\nLines of the model that never ran:")
        for number, line in trace.missing():
            print("  %5d  %s" % (number, line.rstrip()))
    print("\n%d cases, %d failures, %.1f s" % (done, failures, time.monotonic() - started))
    return 1 if failures else 0


# --- Stored cases ----------------------------------------------------------------------------------------------------

class Comparison:
    def __init__(self, options, directory):
        start_worker(options, directory)
        self.options, self.runner = options, WORKER["runner"]

    def run(self, case):
        model = self.runner.run_model(case)
        kinds = self_check(case, model)
        tool = self.runner.run_tool(case) if self.options.tool else None
        if tool:
            kinds += [kind for kind in compare(tool, model) if kind not in kinds]
        return kinds, tool, model


def replay(options):
    failed = 0
    with tempfile.TemporaryDirectory(prefix="differential-") as directory:
        comparison = Comparison(options, directory)
        for place in options.replay:
            case = generate.read_case(place)
            kinds, tool, model = comparison.run(case)
            print("%s: %s" % (place, "same" if not kinds else ""))
            if kinds:
                failed = 1
                print(report(case, kinds, tool, model))
    return failed


def shrink_list(items, holds):
    """Deletes as many items as possible, in ever smaller runs, while `holds` of the rest stays true."""
    size = max(1, len(items) // 2)
    while items:
        at, changed = 0, False
        while at < len(items):
            rest = items[:at] + items[at + size:]
            if holds(rest):
                items, changed = rest, True
            else:
                at += size
        if size == 1 and not changed:
            return items
        size = max(1, size // 2)
    return items


def members(value, path=()):
    """The paths of all members of a JSON value, outer ones first."""
    items = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for key, inner in items:
        yield path + (key,)
        yield from members(inner, path + (key,))


def without(value, path):
    copy = json.loads(json.dumps(value))
    inner = copy
    for key in path[:-1]:
        inner = inner[key]
    del inner[path[-1]]
    return copy


def minimize(options):
    with tempfile.TemporaryDirectory(prefix="differential-") as directory:
        comparison = Comparison(options, directory)
        case = generate.read_case(options.minimize)
        wanted, _, _ = comparison.run(case)
        if not wanted:
            print("nothing differs")
            return 1
        print("differs in: %s" % ", ".join(wanted))

        def holds(**changes):
            trial = generate.Case(case.ppd, case.snapshot, case.args, case.library_present)
            for name, value in changes.items():
                setattr(trial, name, value)
            return bool(set(comparison.run(trial)[0]) & set(wanted))

        for _ in range(3):
            before = (case.ppd, case.snapshot)
            if case.ppd:
                lines = shrink_list(split_lines(case.ppd), lambda rest: holds(ppd=b"".join(rest)))
                case.ppd = b"".join(lines)
                plain = case.ppd.replace(b"\r\n", b"\n").replace(b"\r", b"\n")
                if plain != case.ppd and holds(ppd=plain):
                    case.ppd = plain
            if case.snapshot is not None:
                if holds(snapshot=None):
                    case.snapshot = None
                else:
                    shrink_snapshot(case, holds)
            if (case.ppd, case.snapshot) == before:
                break
        if not case.library_present and holds(library_present=True):
            case.library_present = True
        kinds, tool, model = comparison.run(case)
        place = os.path.join(options.minimize, "minimized")
        keep(place, case, kinds, tool, model)
        print("%s: %d bytes of PPD, %d of snapshot" % (place, len(case.ppd or b""), len(case.snapshot or b"")))
        print(report(case, kinds, tool, model))
    return 0


def shrink_snapshot(case, holds):
    try:
        value = json.loads(case.snapshot)
    except ValueError:
        return
    skipped = set()
    while True:
        for path in members(value):
            if path in skipped:
                continue
            trial = without(value, path)
            data = json.dumps(trial, indent=1).encode()
            if holds(snapshot=data):
                value, case.snapshot = trial, data
                break
            skipped.add(path)
        else:
            return


def main():
    parser = argparse.ArgumentParser(description="Compares the tool with the reference model on generated cases.")
    parser.add_argument("--tool", help="the tool's binary")
    parser.add_argument("--model", default=os.path.join(HERE, "model.py"), help="the model (default: %(default)s)")
    parser.add_argument("--library-dir", help="folder of libQZVorantisModel.so.1 (cases without one run without it)")
    parser.add_argument("--log", help="log file of a diagnostic build; compares messages, one run at a time")
    parser.add_argument("--seeds", default="1-1000", help="range of seeds A-B (default: %(default)s)")
    parser.add_argument("--jobs", type=int, default=2, help="parallel runs (default: %(default)s)")
    parser.add_argument("--keep", default="differential-failures", help="folder for failing cases")
    parser.add_argument("--max-failures", type=int, default=5, help="stop after so many (default: %(default)s)")
    parser.add_argument("--timeout", type=float, default=20.0, help="seconds that one run may take")
    parser.add_argument("--model-only", action="store_true", help="no tool: run the model and count")
    parser.add_argument("--model-lines", action="store_true", help="list the lines of the model that never ran")
    parser.add_argument("--quiet", action="store_true", help="no statistics")
    parser.add_argument("--replay", nargs="+", metavar="DIR", help="run stored cases and print what differs")
    parser.add_argument("--minimize", metavar="DIR", help="shrink a stored case that differs")
    options = parser.parse_args()
    if options.model_only:
        options.tool = options.log = None
    elif not options.tool or not options.library_dir:
        parser.error("--tool and --library-dir are needed (or --model-only)")
    if options.replay:
        return replay(options)
    if options.minimize:
        return minimize(options)
    return run_seeds(options)


if __name__ == "__main__":
    sys.exit(main())
