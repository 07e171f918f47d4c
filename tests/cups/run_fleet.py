#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the playbook of examples/fleet for two print servers: two private CUPS schedulers on loopback ports, each with
folders and a driver program of its own.

The first run makes the queues; the second changes nothing. A changed snapshot changes the queue that is made from it, and
nothing else. A run in which a setup failed is made up for by the next one, and what an administrator has done to a queue
stays. The task that installs packages is left out: that would change the machine.
"""
import argparse
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from checks import Checks
from driver_folder import CLEAN, DriverFolder, without_statement
from scheduler import CUPSD, Scheduler

PLAYBOOK = "ansible-playbook"
QUEUES = {"print1.example.org": ("plotter1", "plotter2"), "print2.example.org": ("plotter3",)}


class Host:
    """A print server: its scheduler, and the driver program with folders that the playbook fills."""

    def __init__(self, folder, options):
        folder.mkdir()
        folder.chmod(0o755)
        self.folder = folder
        self.driver = DriverFolder(folder, options)
        shutil.rmtree(self.driver.settings)  # the playbook makes it
        self.scheduler = Scheduler(folder / "cupsd", CLEAN, server_bin=self.driver.server_bin)

    def variables(self):
        return {"ansible_connection": "local", "ansible_python_interpreter": sys.executable,
                "ansible_become": False, "vorantis_folder": str(self.driver.settings),
                "vorantis_state": str(self.folder / "state"), "vorantis_cups_server": self.scheduler.address}

    def ppds(self):
        """The queues' PPDs, each with what tells that the file was written again."""
        files = sorted((self.scheduler.folder / "etc/ppd").glob("*.ppd"))
        return {path.stem: (path.read_bytes(), path.stat().st_mtime_ns, path.stat().st_ino) for path in files}


class Run:
    """What a run of the playbook said."""

    def __init__(self, result):
        self.output, self.status = result.stdout + result.stderr, result.returncode
        self.counts = {host: dict((name, int(count)) for name, count in re.findall(r"(\w+)=(\d+)", counts))
                       for host, counts in re.findall(r"^(print\S+) +: (ok=.*)$", self.output, re.MULTILINE)}
        self.changes, task = set(), ""
        for line in self.output.splitlines():
            if line.startswith("TASK ["):
                task = line[6:].split("]")[0]
            if changed := re.match(r"changed: \[(\S+)\](?: => \(item=(.*)\))?", line):
                self.changes.add((changed[1], task, changed[2]))

    def changed(self):
        return {host: counts["changed"] for host, counts in self.counts.items()}


class Fleet:
    def __init__(self, folder, options, hosts):
        self.site, self.options, self.hosts = folder / "site", options, hosts
        shutil.copytree(options.examples / "fleet", self.site)
        names = {"all": {"hosts": {name: host.variables() for name, host in hosts.items()}}}
        (self.site / "inventory-test.json").write_text(json.dumps(names))
        self.environment = {**os.environ, "HOME": str(folder), "ANSIBLE_LOCAL_TEMP": str(folder / "ansible"),
                            "ANSIBLE_REMOTE_TEMP": str(folder / "ansible"), "ANSIBLE_NOCOLOR": "1", "LC_ALL": "C.UTF-8"}

    def run(self, *arguments):
        command = [PLAYBOOK, "-i", "inventory.yml", "-i", "inventory-test.json", *arguments, "site.yml"]
        return Run(subprocess.run(command, cwd=self.site, env=self.environment, stdin=subprocess.DEVNULL, text=True,
                                  capture_output=True, timeout=600, check=False))

    def ppds(self):
        return {queue: ppd for host in self.hosts.values() for queue, ppd in host.ppds().items()}

    def expected(self, queue):
        """What the tool itself makes of the base PPD for the queue's device."""
        snapshot = self.site / f"files/devices/{queue}.json"
        environment = {**CLEAN, "LD_LIBRARY_PATH": str(self.options.library_dir), "QZVORANTISMODEL_SNAPSHOT": str(snapshot)}
        return subprocess.run([self.options.tool, json.loads(snapshot.read_text())["devices"][0]["uri"],
                               self.site / "files/ppd/z6.ppd"], env=environment, stdout=subprocess.PIPE, timeout=60,
                              check=True).stdout

    def rename_medium(self, snapshot, name):
        path = self.site / f"files/devices/{snapshot}.json"
        value = json.loads(path.read_text())
        media = value["devices"][0]["dataStore"]["VMCustomMediaStorage"]["MediaInfo"]
        next(iter(media.values()))["Name"] = name
        path.write_text(json.dumps(value))


class Trial:
    def __init__(self, checks, fleet):
        self.checks, self.fleet = checks, fleet
        self.first, self.second = fleet.hosts.values()

    def expect_run(self, what, run, changed, status=0):
        """Checks what a run said, and shows all of it when it is something else."""
        self.checks.expect_same(f"{what}: exit status", run.status, status)
        self.checks.expect_same(f"{what}: changed", run.changed(), dict(zip(QUEUES, changed)))
        if (run.status, run.changed()) != (status, dict(zip(QUEUES, changed))):
            print(run.output)

    def expect_written(self, what, before, queues):
        after = self.fleet.ppds()
        self.checks.expect_same(f"{what}: PPDs written", {name for name in after if after[name] != before.get(name)}, set(queues))

    def first_runs(self):
        run = self.fleet.run("--check")
        outside = {item for _, task, item in run.changes if task == "Make the folders"
                   and not pathlib.Path(item).is_relative_to(self.fleet.site.parent)}
        if outside:
            sys.exit(f"the playbook would change this machine: {outside}\n{run.output}")
        self.checks.expect("a trial run says so and makes no queue", run.status == 0 and not self.fleet.ppds() and
                           all(count > 0 for count in run.changed().values()))
        run = self.fleet.run()
        self.checks.expect_same("first run: exit status", run.status, 0)
        if run.status != 0:
            print(run.output)
        for host, queues in zip(self.fleet.hosts.values(), QUEUES.values()):
            self.checks.expect_same(f"the queues of a server: {' '.join(queues)}", tuple(host.ppds()), queues)
            for queue in queues:
                self.checks.expect(f"{queue}: its PPD is the tool's output",
                                   without_statement(host.scheduler.ppd_of(queue)) == self.fleet.expected(queue))
                self.checks.expect(f"{queue}: it lists the media", "Custom1" in host.scheduler.choices(queue, "MediaType"))
        before = self.fleet.ppds()
        self.expect_run("second run", self.fleet.run(), (0, 0))
        self.expect_written("second run", before, ())

    def changed_snapshot(self):
        """The administrator's default, and a queue that was stopped, survive a new setup."""
        self.first.scheduler.command("lpadmin", "-p", "plotter1", "-o", "MediaType=Custom2")
        self.first.scheduler.command("cupsdisable", "plotter1")
        self.fleet.rename_medium("plotter1", "Linen")
        before = self.fleet.ppds()
        run = self.fleet.run()
        self.expect_run("changed snapshot", run, (3, 0))
        self.checks.expect_same("changed snapshot: what changed", {(task, item) for _, task, item in run.changes},
                                {("Copy the snapshots", "plotter1.json"), ("Set a queue up again", None),
                                 ("Note what the queue was made from", None)})
        self.expect_written("changed snapshot", before, ["plotter1"])
        ppd = self.first.scheduler.ppd_of("plotter1")
        self.checks.expect("changed snapshot: the queue has the new name", b"Custom1/Linen" in ppd)
        self.checks.expect("changed snapshot: the default stays", b"*DefaultMediaType: Custom2" in ppd)
        status = self.first.scheduler.command("lpstat", "-p", "plotter1")
        self.checks.expect("changed snapshot: a stopped queue stays so", "disabled" in status)
        self.expect_run("run after it", self.fleet.run(), (0, 0))

    def changed_texts(self):
        """The administrator's default survives these, too."""
        inventory = self.fleet.site / "inventory.yml"
        inventory.write_text(inventory.read_text().replace("info: Canvas", "info: Linen and canvas"))
        self.expect_run("changed texts", self.fleet.run(), (2, 0))
        self.checks.expect("changed texts: the queue has them",
                           "Linen and canvas" in self.first.scheduler.command("lpstat", "-l", "-p", "plotter1"))
        self.checks.expect("changed texts: the default stays",
                           b"*DefaultMediaType: Custom2" in self.first.scheduler.ppd_of("plotter1"))

    def again(self):
        before = self.fleet.ppds()
        self.expect_run("setup of all again", self.fleet.run("-e", "vorantis_again=true"), (2, 1))
        self.expect_written("setup of all again", before, [queue for queues in QUEUES.values() for queue in queues])

    def failed_setup(self):
        """While the driver program finds no library, a new medium cannot reach the queue."""
        self.fleet.rename_medium("plotter2", "Mesh")
        before = self.fleet.ppds()
        self.first.driver.write_wrapper(libraries="")
        run = self.fleet.run()
        self.expect_run("failed setup", run, (1, 0), status=2)
        self.checks.expect("failed setup: it is named", "Not set up: plotter2." in run.output)
        self.expect_written("failed setup", before, ())
        self.first.driver.write_wrapper()
        self.expect_run("run after it", self.fleet.run(), (2, 0))
        self.expect_written("run after it", before, ["plotter2"])
        self.checks.expect("run after it: the queue has the new name", b"/Mesh" in self.first.scheduler.ppd_of("plotter2"))

    def removed_queue(self):
        before = self.fleet.ppds()
        self.second.scheduler.command("lpadmin", "-x", "plotter3")
        self.expect_run("removed queue", self.fleet.run(), (0, 1))
        self.expect_written("removed queue", before, ["plotter3"])


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--program", type=pathlib.Path, required=True, help="the driver program")
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    options = parser.parse_args()
    for program, package in ((CUPSD, "cups-daemon"), ("lpadmin", "cups-client"), (PLAYBOOK, "ansible-core")):
        if shutil.which(program) is None:
            sys.exit(f"NOT TESTED: {program} is not installed (package {package})")
    checks = Checks()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        hosts = {name: Host(folder / name, options) for name in QUEUES}
        first, second = hosts.values()
        with first.scheduler, second.scheduler:
            trial = Trial(checks, Fleet(folder, options, hosts))
            trial.first_runs()
            trial.changed_snapshot()
            trial.changed_texts()
            trial.failed_setup()
            trial.removed_queue()
            trial.again()
            for name, host in hosts.items():
                checks.expect(f"{name}: the scheduler loads every PPD", "cannot be loaded" not in host.scheduler.log())
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
