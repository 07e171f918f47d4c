#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the documents: links lead somewhere, and the commands that they name exist. run_commands.py runs them."""
import argparse
import json
import pathlib
import re
import sys

DOCUMENTS = ("README.md", "CONTRIBUTING.md", "SECURITY.md", "CHANGELOG.md", "docs/*.md")
# Commands that are steps of the test command themselves, that the step "commands" runs, or that need a Mac.
RUN_ELSEWHERE = ("jq ", "./demo", "./test", "gdb ", "lpadmin ", "lpoptions ", "export ", "cmake --preset debug && ",
                 "cmake -S . -B build/plain && ", "cmake --install", "sudo cmake --install", "apt-get ", "dpkg-buildpackage -b", "install -D ",
                 "scripts/platforms ", "scripts/release", "python3 ",
                 "cmake --build --preset release --target ", "VorantisAutosetupTool ", "vorantis-autosetup-explain",
                 "vorantis-device-snapshot", "QZVORANTISMODEL_SNAPSHOT=", "cmake --preset macos",
                 "cmake --build --preset macos", "ctest --preset macos",
                 "ansible-playbook -i inventory.yml ")


class Checks:
    def __init__(self, root):
        self.root, self.failed = root, 0
        self.documents = {path: path.read_text() for pattern in DOCUMENTS for path in sorted(root.glob(pattern))}

    def expect(self, what, holds):
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}")

    def links(self):
        for path, text in self.documents.items():
            for target in re.findall(r"\]\(([^)#]+)[^)]*\)", text):
                if "://" not in target:
                    self.expect(f"{path.relative_to(self.root)} links to {target}", (path.parent / target).exists())

    def commands(self):
        """Shell blocks, and inline code in the left-hand sense of a command: a word that names a program, then arguments."""
        for path, text in self.documents.items():
            blocks = re.findall(r"```sh\n(.*?)```", text, re.DOTALL)
            inline = re.findall(r"`((?:\./|python3 |cmake |scripts/|gdb )[^`]*)`", re.sub(r"```.*?```", "", text, flags=re.DOTALL))
            for command in [line.split("  #")[0].strip() for block in blocks for line in block.splitlines()] + inline:
                self.command(path.relative_to(self.root), command)

    def warnings(self):
        """Every warning of the report is explained, in the documents and in the manual page."""
        table = dict(re.findall(r'\{Code::(\w+),\s*"([a-z0-9-]+)"', (self.root / "explain/report/WarningCode.cpp").read_text()))
        codes = list(table.values())
        order = re.findall(r"^  (\w+),$", (self.root / "explain/report/WarningCode.h").read_text().split("enum class WarningCode")[1], re.MULTILINE)
        rooms = [path for room in ("watch", "judge") for path in (self.root / "explain" / room).glob("*.cpp")]
        used = set(re.findall(r"WarningCode::(\w+)", "".join(path.read_text() for path in rooms)))
        document = self.documents[self.root / "docs/explain.md"]
        page = (self.root / "man/vorantis-autosetup-explain.1.in").read_text().replace("\\-", "-")
        self.expect("warnings are found in the sources", len(codes) > 40 and len(used) > 40)
        self.expect("every warning of the table is one that a run can have", set(table) == used)
        self.expect("the table of the warnings is in the order of their codes", list(table) == order)
        schema = json.loads((self.root / "docs/explain.schema.json").read_text())
        self.expect("docs/explain.schema.json has the warnings", schema["$defs"]["code"]["enum"] == codes)
        table = re.findall(r"`([a-z0-9-]+)`", "".join(re.findall(r"^\| (`[^|]+) \|", document.split("## Warnings")[1], re.MULTILINE)))
        self.expect("docs/explain.md has the warnings in the order of reports", table[:len(codes)] == codes)
        for code in codes:
            self.expect(f"docs/explain.md and the manual page explain {code}", f"`{code}`" in document and code in page)

    def settings(self):
        """README's table of options names the defaults that CMake has."""
        readme = self.documents[self.root / "README.md"]
        for name, default in re.findall(r'^set\((AT_LOG_FILE) "([^"]+)"', (self.root / "CMakeLists.txt").read_text(), re.MULTILINE):
            self.expect(f"README.md: the default of {name}", f"`{name}`" in readme and f"`{default}`" in readme)

    def command(self, path, command):
        if command.startswith("./test ") or command == "./test":
            steps = [step.strip(",…`") for step in command.split()[1:]]
            known = re.findall(r"^step_(\w+)\(\)", (self.root / "test").read_text(), re.MULTILINE)
            self.expect(f"{path}: {command}: the steps exist", set(filter(None, steps)) <= {*known, "full", "long"})
        elif command.startswith("./demo ") and not command.startswith("./demo ["):
            self.expect(f"{path}: {command}: the example exists", (self.root / "examples" / command.split()[1]).is_dir())
        elif command.startswith("cmake --build --preset release --target "):
            target = command.split()[5].strip("`")
            self.expect(f"{path}: the target {target} exists", f"add_custom_target({target}" in
                        (self.root / "bench/CMakeLists.txt").read_text())
        else:
            self.expect(f"{path}: {command}: is run elsewhere", command.startswith(RUN_ELSEWHERE))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("root", type=pathlib.Path, help="the project's top folder")
    checks = Checks(parser.parse_args().root.resolve())
    checks.links()
    checks.commands()
    checks.settings()
    checks.warnings()
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
