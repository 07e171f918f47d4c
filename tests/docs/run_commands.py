#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Types what README.md and CONTRIBUTING.md tell users to type, in their order, and adds the updater that CONTRIBUTING.md
shows to a copy of the project.

README's commands run in a fresh copy of the project whose path has blanks, in a home folder of its own and with a private
CUPS scheduler. Both commands are also tried on machines that lack something.
CONTRIBUTING's use the debug build of this folder, in which ./test has built and tested it. ./test itself is left out:
it is what runs this.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "cups"))
from scheduler import Scheduler  # noqa: E402

EXAMPLE_FILES = ("updaters/ATMediaTypeIDPPDUpdater.h", "tests/updaters/ATMediaTypeIDPPDUpdaterTest.cpp")
TRIED_ELSEWHERE = "## Building by hand"  # what follows is typed on a bare system, by the step "bare"
FACTORY = "updaters/ATPPDUpdatersFactory.cpp"


class Checks:
    def __init__(self):
        self.passed = self.failed = 0

    def expect(self, what, holds, output=""):
        self.passed += bool(holds)
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}", flush=True)
        if not holds:
            print(output)


class Shell:
    """A shell that is typed into: what one command exports, the next one sees."""

    def __init__(self, folder, environment):
        self.process = subprocess.Popen(["bash"], cwd=folder, env=environment, text=True, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    def type(self, command):
        """Exit status and output. The command's own standard input is empty."""
        self.process.stdin.write(f"{{ {command}\n}} </dev/null\necho \"~~ended $?\"\n")
        self.process.stdin.flush()
        lines = []
        for line in self.process.stdout:
            head, ended, status = line.partition("~~ended ")
            lines.append(head)
            if ended:
                return int(status), "".join(lines)
        return None, "".join(lines)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()


def shell_blocks(document):
    return [line.split("  #")[0].strip() for block in re.findall(r"```sh\n(.*?)```", document, re.DOTALL)
            for line in block.splitlines()]


def copy_of(project, folder):
    """The project as it stands, without what was built."""
    shutil.copytree(project, folder, ignore=lambda path, names: {"build", ".git", "__pycache__"} & set(names)
                    if pathlib.Path(path) == project else {"__pycache__"} & set(names))


def readme(checks, project, folder):
    environment = {**os.environ, "HOME": str(folder)}
    for name in ("LD_LIBRARY_PATH", "QZVORANTISMODEL_SNAPSHOT", "QZVORANTISMODEL_LOG"):
        environment.pop(name, None)
    outputs = {}
    with tempfile.TemporaryDirectory() as name, Scheduler(pathlib.Path(name)) as scheduler:
        environment["CUPS_SERVER"] = scheduler.address
        with Shell(project, environment) as shell:
            for command in shell_blocks((project / "README.md").read_text().split(TRIED_ELSEWHERE)[0]):
                if command == "./test":
                    continue
                status, outputs[command] = shell.type(command)
                checks.expect(f"README.md: {command}", status == 0, outputs[command])
    checks.expect("README.md: the queue has the device's media", "Custom1" in outputs.get("lpoptions -p plotter -l", ""))
    checks.expect("README.md: the captured device is replayed",
                  "is the choice Custom1" in outputs[max(outputs, key=lambda command: "=device.json" in command)])


def contributing_commands(checks, project):
    text = re.sub(r"```.*?```", "", (project / "CONTRIBUTING.md").read_text(), flags=re.DOTALL)
    commands = re.findall(r"`((?:python3 |cmake --preset |build/debug/|gdb )[^`]*)`", text)
    environment = {**os.environ, "LD_LIBRARY_PATH": str(project / "build/debug/library")}
    for command in commands:
        typed = command.replace("gdb ", "gdb -batch -ex run ")  # nobody sits there
        done = subprocess.run(["bash", "-c", typed], cwd=project, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        checks.expect(f"CONTRIBUTING.md: {command}", done.returncode == 0, done.stdout)
    checks.expect("CONTRIBUTING.md names commands", len(commands) >= 4)


def contributing_example(checks, project):
    """The updater that is shown, in the files that it names."""
    text = (project / "CONTRIBUTING.md").read_text()
    for name in EXAMPLE_FILES:
        shown = re.search(rf"This is\s+`{re.escape(name)}`:\n\n```cpp\n(.*?)```", text, re.DOTALL)
        checks.expect(f"CONTRIBUTING.md shows {name}", shown)
        if shown:
            (project / name).write_text(shown[1])
    entry = re.search(r"add the line `([^`]+)`", text)[1]
    factory = (project / FACTORY).read_text()
    factory = factory.replace("namespace {", f'#include "{EXAMPLE_FILES[0]}"\n\nnamespace {{', 1)
    (project / FACTORY).write_text(factory.replace("kKinds[] = {\n", f"kKinds[] = {{\n{entry}\n", 1))
    for command in ("cmake --preset debug", "cmake --build --preset debug --target updaters_tests",
                    "build/debug/tests/updaters_tests --gtest_filter='ATMediaTypeIDPPDUpdater.*:ATPPDUpdatersFactory*'"):
        done = subprocess.run(["bash", "-c", command], cwd=project, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False)
        checks.expect(f"the updater of CONTRIBUTING.md: {command}", done.returncode == 0, done.stdout)
    checks.expect("the updater of CONTRIBUTING.md: its test ran", "[  PASSED  ]" in done.stdout and
                  "ATMediaTypeIDPPDUpdater" in done.stdout, done.stdout)


class PoorMachine:
    """A folder of programs in which some are missing or fail, and a copy of the two commands."""

    def __init__(self, project, folder):
        self.folder, self.user = folder, None
        self.project = folder / "project"
        (self.project / "scripts").mkdir(parents=True)
        for name in ("test", "demo", "scripts/setup.sh"):
            shutil.copy(project / name, self.project / name)
        (self.project / "examples/postscript").mkdir(parents=True)
        (self.project / "examples/postscript/input.ppd").touch()
        self.bin = folder / "bin"
        self.bin.mkdir()
        for name in ("bash", "cat", "dirname", "env", "find", "grep", "ls", "stat", "mkdir", "sed", "tee", "xargs", "awk"):
            (self.bin / name).symlink_to(shutil.which(name))

    def has(self, name, does):
        (self.bin / name).write_text(f"#!{self.bin}/bash\n{does}\n")
        (self.bin / name).chmod(0o755)

    def run(self, command):
        done = subprocess.run([f"./{command}"], cwd=self.project, env={"PATH": str(self.bin), "HOME": str(self.folder)},
                              user=self.user, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout


def poor_machines(checks, project, folder):
    """What is missing is said in one sentence that says what to do, and the exit status is not 0."""
    def nothing(machine):
        pass

    def not_written(machine):
        (machine.project / "build").touch()

    def anothers(machine):
        (machine.project / "build").mkdir(mode=0o555)
        machine.folder.chmod(0o755)
        machine.has("id", "echo me")
        machine.user = 65534 if os.getuid() == 0 else None

    def no_rights(machine):
        machine.has("dpkg-query", "exit 1")
        machine.has("apt-get", "exit 0")
        machine.has("id", "echo 1000")

    def no_network(machine):
        no_rights(machine)
        machine.has("id", "echo 0")
        machine.has("apt-get", "echo 'E: Failed to fetch' >&2; exit 100")

    def other_build(machine):
        no_network(machine)
        machine.has("dpkg-query", "echo install ok installed")
        for preset in ("release", "debug"):
            (machine.project / "build" / preset).mkdir(parents=True)
            (machine.project / "build" / preset / "CMakeCache.txt").write_text("CMAKE_HOME_DIRECTORY:INTERNAL=/another/folder\n")

    def no_compiler(machine):
        no_network(machine)
        machine.has("dpkg-query", "echo install ok installed")
        machine.has("cmake", "echo 'CMake Error: your CXX compiler was not found'; exit 1")

    for what, prepare, said in (("no apt-get", nothing, "build by hand: README.md says how"),
                                ("a checkout that cannot be written to", not_written, "Copy the project to a folder of your own"),
                                ("what sudo has made", anothers, "To have all of build/: sudo chown -R me build"),
                                ("neither root nor sudo", no_rights, "Have an administrator run: apt-get install"),
                                ("no network", no_network, "Is there a network? Needed: "),
                                ("a build folder of another checkout", other_build, "Remove it and try again: rm -r build/"),
                                ("no compiler", no_compiler, "your CXX compiler was not found")):
        for command in ("demo", "test"):
            with tempfile.TemporaryDirectory(dir=folder) as name:
                machine = PoorMachine(project, pathlib.Path(name))
                prepare(machine)
                status, output = machine.run(command)
                checks.expect(f"./{command}, {what}: {said!r}", status != 0 and said in output, output)


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    folder = project / "build/commands"
    subprocess.run(["rm", "-rf", folder], check=True)
    copy = folder / "a project with blanks"
    copy_of(project, copy)
    checks = Checks()
    poor_machines(checks, project, folder)
    readme(checks, copy, folder)
    contributing_example(checks, copy)
    contributing_commands(checks, project)
    print(f"{checks.passed} passed, {checks.failed} failed")
    return 1 if checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
