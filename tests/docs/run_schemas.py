#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the JSON schemas in docs/ against what the programs read and write.

Snapshots: the schema must accept every snapshot with which a case or an example succeeds, may refuse only one with which
the tool fails, and must refuse those of the cases about a snapshot's form. Then one example is changed in one place at a
time: the schema must say of each what is written here, and so must the tool, which ends with 1 when it is refused.

Another schema is one more function that main calls with a Schema.
"""
import argparse
import copy
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    sys.exit(f"NOT TESTED: {sys.executable} has no module jsonschema; the package is python3-jsonschema")

URI = "socket://192.0.2.10:9100"
DEEPEST = 64

# Cases whose snapshot is JSON, but of another form: outside the data store, where the library refuses it, and inside it,
# where every setup by a media updater ends with 1.
REFUSED_FORMS = {f"device/{name}" for name in """
    device_that_is_no_object_fails devices_that_are_no_list_fail snapshot_of_another_format_fails
    snapshot_of_another_version_fails snapshot_that_is_a_list_fails snapshot_without_a_format_fails
    snapshot_without_a_version_fails snapshot_without_devices_fails
    gloss_default_that_is_a_number_fails id_that_is_a_number_cannot_be_searched item_that_is_a_text_fails
    media_info_that_is_a_list_fails media_info_that_is_a_text_fails name_that_is_a_number_fails
    parent_that_is_a_number_fails properties_that_are_no_map_fail represented_object_that_is_a_list_fails
    version_that_is_a_number_fails""".split()} | {
    "pcl3/media_name_that_is_a_number_ends_the_run", "pcl3/unusable_snapshot_ends_the_run",
    "pdl/identification_of_another_type_ends_the_run"}
# Cases whose snapshot no schema gets to see: it is no JSON text that the library reads.
NO_JSON = {f"device/{name}" for name in """
    cut_snapshot_fails empty_snapshot_fails snapshot_nested_too_deeply_fails snapshot_not_utf8_fails
    snapshot_that_is_no_json_fails snapshot_with_a_lone_surrogate_fails text_behind_the_snapshot_fails""".split()} | {
    "pdl/unusable_snapshot_ends_the_run"}

REMOVED = object()
MEDIUM = ("devices", 0, "dataStore", "VMCustomMediaStorage", "MediaInfo", "4711")
FACTORY_MEDIUM = (*MEDIUM[:-1], "1001")
STORAGE = MEDIUM[:-2]
# What is changed in examples/pcl3/snapshot.json: the member, its new value, whether the snapshot is still good.
CHANGES = [
    (("format",), "vorantis-snapshot", False),
    (("format",), None, False),
    (("format",), REMOVED, False),
    (("formatVersion",), "1", False),
    (("formatVersion",), 2, False),
    (("formatVersion",), True, False),
    (("formatVersion",), REMOVED, False),
    (("offersServiceInfoWithSpec",), "true", False),
    (("offersServiceInfoWithSpec",), 1, False),
    (("offersServiceInfoWithSpec",), False, True),
    (("offersServiceInfoWithSpec",), None, True),
    (("offersServiceInfoWithSpec",), REMOVED, True),
    (("devices",), {}, False),
    (("devices",), None, False),
    (("devices",), [], True),
    (("devices",), [None], True),
    (("devices",), [[]], False),
    (("comment",), ["anything"], True),
    (("devices", 0, "uri"), 9100, False),
    (("devices", 0, "uri"), None, True),
    (("devices", 0, "uri"), REMOVED, True),
    (("devices", 0, "modelName"), ["Vorantis"], False),
    (("devices", 0, "modelName"), None, True),
    (("devices", 0, "deviceFamilyName"), {}, False),
    (("devices", 0, "deviceFamilyName"), None, True),
    (("devices", 0, "serial"), 12, True),
    (("devices", 0, "dataStore"), [], False),
    (("devices", 0, "dataStore"), "store", False),
    (("devices", 0, "dataStore"), None, True),
    (("devices", 0, "dataStore"), {}, True),
    (("devices", 0, "dataStore", "Other"), 17, True),
    (STORAGE, [], False),
    (STORAGE, None, True),
    ((*STORAGE, "MediumListVersion"), 8, False),
    ((*STORAGE, "MediumListVersion"), None, True),
    ((*STORAGE, "MediumListVersion"), "", True),
    ((*STORAGE, "MediaInfo"), [], False),
    ((*STORAGE, "MediaInfo"), None, True),
    (MEDIUM, "My Canvas", False),
    (MEDIUM, None, True),
    (MEDIUM, {}, True),
    ((*MEDIUM, "Name"), 4711, False),
    ((*MEDIUM, "Name"), None, True),
    ((*FACTORY_MEDIUM, "Name"), 1001, True),
    ((*MEDIUM, "MediumID"), 4711, True),
    ((*MEDIUM, "CategoryName"), 17, True),
    ((*MEDIUM, "CategoryID"), 17, True),
    ((*MEDIUM, "ICCProfiles"), "none", True),
    ((*MEDIUM, "ParentID"), 1002, False),
    ((*MEDIUM, "ParentID"), None, True),
    ((*FACTORY_MEDIUM, "ParentID"), 1002, True),
    ((*MEDIUM, "PropertiesInfo"), "FULLPAGE", False),
    ((*MEDIUM, "PropertiesInfo"), [], False),
    ((*MEDIUM, "PropertiesInfo"), {}, True),
    ((*MEDIUM, "PropertiesInfo"), {"DefaultGlossEnhancer": 1}, False),
    ((*MEDIUM, "PropertiesInfo"), {"DefaultGlossEnhancer": None}, True),
    ((*MEDIUM, "PropertiesInfo"), {"DefaultGlossEnhancer": "FULLPAGE", "Other": 1}, True),
    ((*FACTORY_MEDIUM, "PropertiesInfo"), 17, False),
    (MEDIUM, {"Name": "C", "MediumID": 4711, "PropertiesInfo": {"DefaultGlossEnhancer": "OFF"}}, False),
    (MEDIUM, {"Name": "C", "MediumID": 4711, "PropertiesInfo": {"DefaultGlossEnhancer": ""}}, True),
    (MEDIUM, {"Name": 17, "MediumID": "4711", "CategoryID": "CUSTOM"}, True),
    (MEDIUM, {"Name": 17, "MediumID": "4711", "CategoryName": None, "CategoryID": "CUSTOM"}, True),
    (MEDIUM, {"MediumID": 4711, "PropertiesInfo": {"DefaultGlossEnhancer": "OFF"}}, True),
]


class Checks:
    def __init__(self):
        self.passed = self.failed = 0

    def expect(self, what, holds, why=""):
        self.passed += bool(holds)
        self.failed += not holds
        if not holds:
            print(f"FAILED  {what}{': ' + why if why else ''}")


class Schema:
    def __init__(self, path):
        self.schema = json.loads(path.read_text())
        jsonschema.Draft202012Validator.check_schema(self.schema)
        self.validator = jsonschema.Draft202012Validator(self.schema)

    def objection(self, value):
        """What the schema has against the value, and where; empty when it accepts the value."""
        error = jsonschema.exceptions.best_match(self.validator.iter_errors(value))
        return f"{error.json_path}: {error.message}" if error else ""


def depth(value):
    parts = value.values() if isinstance(value, dict) else value if isinstance(value, list) else ()
    return 1 + max(map(depth, parts), default=0) if isinstance(value, (dict, list)) else 0


def refuse_constant(name):
    raise ValueError(f"{name} is no number")


def json_of(path):
    """The value of a JSON file. Throws ValueError for what the stored library does not take for JSON."""
    value = json.loads(path.read_bytes().decode("utf-8"), parse_constant=refuse_constant)
    json.dumps(value, ensure_ascii=False).encode("utf-8")  # throws for half a surrogate pair
    if depth(value) > DEEPEST:
        raise ValueError("nested too deeply")
    return value


def changed(value, path, new):
    value = copy.deepcopy(value)
    *parents, last = path
    place = value
    for name in parents:
        place = place[name]
    if new is REMOVED:
        del place[last]
    else:
        place[last] = new
    return value


def stored_cases(checks, schema, cases):
    """Cases of the whole tool, in which a snapshot is read."""
    seen = set()
    for path in sorted(cases.glob("*/*/snapshot.json")):
        case, name = path.parent, "/".join(path.parent.parts[-2:])
        succeeds = (case / "expected.status").read_text() == "0\n"
        if succeeds and (case / "capture").exists():  # the snapshot cannot be used, and the run does not need it
            continue
        try:
            value = json_of(path)
        except ValueError as error:
            checks.expect(f"{name} is JSON", name in NO_JSON, str(error))
            checks.expect(f"{name} fails", not succeeds)
            seen.add(name)
            continue
        objection = schema.objection(value)
        if succeeds:
            checks.expect(f"{name} is accepted", not objection, objection)
        if name in REFUSED_FORMS:
            checks.expect(f"{name} is refused", objection)
            seen.add(name)
    checks.expect("the named cases are there", seen == NO_JSON | REFUSED_FORMS, " ".join(seen ^ (NO_JSON | REFUSED_FORMS)))


def run_tool(options, snapshot, ppd):
    environment = {**os.environ, "LD_LIBRARY_PATH": options.library_dir, "QZVORANTISMODEL_SNAPSHOT": str(snapshot)}
    result = subprocess.run([options.tool, URI, ppd], env=environment, stdout=subprocess.PIPE, timeout=60, check=False)
    return result.returncode, result.stdout


def members(schema):
    """The names of all members that a schema knows."""
    names = {name for key in ("properties", "$defs") for name in schema.get(key, {})} - set(schema.get("$defs", ()))
    return names.union(*(members(part) for part in schema.values() if isinstance(part, dict)))


def documented(checks, schema, options):
    """Document and manual page tell of every member; the document's example gives what is said of it there."""
    document = (options.root / "docs/device-snapshot.md").read_text()
    page = (options.root / "man/vorantis-device-snapshot.5.in").read_text()
    for name in members(schema.schema):
        checks.expect(f"docs/device-snapshot.md and the manual page tell of {name}", f"`{name}`" in document and
                      re.search(rf"^\.B {name}$|member\n\.BR {name} ", page, re.MULTILINE))
    example = re.search(r"```json\n(.*?)```", document, re.DOTALL)[1]
    objection = schema.objection(json.loads(example))
    checks.expect("docs/device-snapshot.md: the example is accepted", not objection, objection)
    with tempfile.TemporaryDirectory() as folder:
        snapshot = pathlib.Path(folder) / "snapshot.json"
        snapshot.write_text(example)
        status, output = run_tool(options, snapshot, options.root / "examples/pcl3/input.ppd")
    checks.expect("docs/device-snapshot.md: the example's status", status == 0, str(status))
    for line in (b'*MediaType Custom1/My Canvas: "', b"*QZValueAttributes MediaType.Custom1: \"glossy=YES;",
                 b'*cupsICCProfile .Custom1./My Canvas: "/usr/share/color/icc/canvas satin.icc"'):
        checks.expect(f"docs/device-snapshot.md: the example gives {line.decode()}", line in output)


def snapshots(checks, schema, options):
    examples = sorted(options.root.glob("examples/**/*.json"))
    checks.expect("there are examples", len(examples) > 5)
    for path in examples:
        objection = schema.objection(json_of(path))
        checks.expect(f"{path.relative_to(options.root)} is accepted", not objection, objection)
    stored_cases(checks, schema, options.root / "tests/cases")
    documented(checks, schema, options)
    example = options.root / "examples/pcl3"
    original = json_of(example / "snapshot.json")
    with tempfile.TemporaryDirectory() as folder:
        snapshot = pathlib.Path(folder) / "snapshot.json"
        for path, new, is_good in CHANGES:
            value = changed(original, path, new)
            snapshot.write_text(json.dumps(value))
            what = f"{'.'.join(map(str, path))} {'removed' if new is REMOVED else json.dumps(new)}"
            objection = schema.objection(value)
            checks.expect(f"{what}: the schema {'accepts' if is_good else 'refuses'} it", bool(objection) != is_good,
                          objection)
            status, _ = run_tool(options, snapshot, example / "input.ppd")
            checks.expect(f"{what}: the tool's status", status == (0 if is_good else 1), str(status))


# What is changed in the document's file of queues: the member of a queue, its new value, whether it is still good.
QUEUE_CHANGES = [
    ("name", "a b", False), ("name", "", False), ("name", REMOVED, False), ("name", "a/b", False), ("name", "q", True),
    ("name", "n" * 127, True), ("name", "n" * 128, False), ("uri", "192.0.2.10", False), ("uri", 9100, False),
    ("uri", REMOVED, False), ("snapshot", "", False), ("snapshot", REMOVED, False), ("ppd", "", False),
    ("ppd", REMOVED, False), ("device", 2, True), ("device", 0, False), ("device", "2", False), ("device", 1.5, False),
    ("info", REMOVED, True), ("info", "", True), ("info", 7, False), ("location", None, False), ("ifno", "", False)]


def queues(checks, schema, options):
    """The schema and vorantis-queues agree on files of queues; without a scheduler a good one is all that it gets to."""
    document = (options.root / "docs/queues.md").read_text()
    example = json.loads(re.search(r"```json\n(.*?)```", document, re.DOTALL)[1])
    for name in schema.schema["properties"]["queues"]["items"]["properties"]:
        checks.expect(f"the schema of queues says what {name} is", "description" in
                      schema.schema["properties"]["queues"]["items"]["properties"][name] or name == "location")
    files = [("the document's file", example, True), ("no queues", {**example, "queues": []}, True),
             ("another format", {**example, "format": "queues"}, False), ("a list", [], False),
             ("another version", {**example, "formatVersion": 2}, False), ("no list", {**example, "queues": {}}, False),
             ("a queue that is a text", {**example, "queues": ["q"]}, False)]
    for member, new, is_good in QUEUE_CHANGES:
        files.append((f"{member} {'removed' if new is REMOVED else json.dumps(new)}",
                      changed(example, ("queues", 0, member), new), is_good))
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "queues.json"
        for what, value, is_good in files:
            file.write_text(json.dumps(value))
            objection = schema.objection(value)
            checks.expect(f"queues: {what}: the schema {'accepts' if is_good else 'refuses'} it", bool(objection) != is_good, objection)
            said = subprocess.run([options.queues, "-h", "127.0.0.1:1", "apply", "--dry-run", file], capture_output=True,
                                  text=True, timeout=60, check=False).stderr
            reached = "does not answer" in said or (said == "" and not value.get("queues"))
            checks.expect(f"queues: {what}: so does vorantis-queues", reached == is_good, said)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    parser.add_argument("--queues", help="vorantis-queues, where it is made")
    parser.add_argument("root", type=pathlib.Path, help="the project's top folder")
    options = parser.parse_args()
    options.root = options.root.resolve()
    checks = Checks()
    snapshots(checks, Schema(options.root / "docs/device-snapshot.schema.json"), options)
    if options.queues:
        queues(checks, Schema(options.root / "docs/queues.schema.json"), options)
    print(f"{checks.passed} passed, {checks.failed} failed")
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
