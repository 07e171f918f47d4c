#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the playbook of examples/fleet for two print servers: two private CUPS schedulers on loopback ports, each with
folders and a driver program of its own.

The first run makes the queues; the second changes nothing. A trial run tells what would change. A changed snapshot changes
the queue that is made from it, and nothing else. A run in which a setup failed is made up for by the next one, what an
administrator set as a default stays, and what was done to a queue behind the playbook's back is seen. A server with many
queues costs as many tasks as one with a few. The task that installs packages is left out: that would change the machine.
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
        self.program = folder / "vorantis-queues"
        exports = f"export LD_LIBRARY_PATH='{self.driver.libraries}'"
        self.program.write_text(f"#!/bin/sh\n{exports}\nexec '{options.queues.resolve()}' \"$@\"\n")
        self.program.chmod(0o755)
        self.scheduler = Scheduler(folder / "cupsd", CLEAN, server_bin=self.driver.server_bin)

    def variables(self):
        return {"ansible_connection": "local", "ansible_python_interpreter": sys.executable,
                "ansible_become": False, "vorantis_folder": str(self.driver.settings),
                "vorantis_state": str(self.folder / "state"), "vorantis_cups_server": self.scheduler.address,
                "vorantis_program": str(self.program), "vorantis_owner": pathlib.Path(self.folder).owner(),
                "vorantis_profiles_folder": str(self.folder / "profiles")}

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
        self.changes, task, self.tasks = set(), "", 0
        for line in self.output.splitlines():
            if line.startswith("TASK ["):
                task = line[6:].split("]")[0].removeprefix("vorantis.autosetup.queues : ")
                self.tasks += 1
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

    def run(self, *arguments, native=False):
        command = [PLAYBOOK, "-i", "inventory.yml", "-i", "inventory-test.json", *arguments, "site.yml"]
        return Run(subprocess.run(command, cwd=self.site, stdin=subprocess.DEVNULL, text=True,
                                  capture_output=True, timeout=600, check=False,
                                  env={**self.environment, "ANSIBLE_JINJA2_NATIVE": str(native)}))

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
        self.tasks = 0  # of the first run

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
        outside = {item for _, task, item in run.changes if item and item.startswith("/")
                   and not pathlib.Path(item).is_relative_to(self.fleet.site.parent)}
        if outside:
            sys.exit(f"the playbook would change this machine: {outside}\n{run.output}")
        said = all(f"{queue}: would be made" in run.output for queues in QUEUES.values() for queue in queues)
        self.checks.expect("a trial run says so and makes no queue", run.status == 0 and said and not self.fleet.ppds() and
                           all(count > 0 for count in run.changed().values()))
        if run.status != 0:
            print(run.output)
        run = self.fleet.run()
        self.tasks = run.tasks
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
        self.expect_run("trial run behind it", self.fleet.run("--check"), (0, 0))
        self.expect_run("run with native types", self.fleet.run(native=True), (0, 0))
        self.expect_written("second run", before, ())

    def changed_snapshot(self):
        """The administrator's default, and a queue that was stopped, survive a new setup."""
        self.first.scheduler.command("lpadmin", "-p", "plotter1", "-o", "MediaType=Custom2")
        self.first.scheduler.command("cupsdisable", "plotter1")
        self.fleet.rename_medium("plotter1", "Linen")
        before = self.fleet.ppds()
        run = self.fleet.run("--check", "--diff")
        self.expect_run("trial run for a changed snapshot", run, (2, 0))
        self.checks.expect("it tells what would change", 'is renamed to Linen' in run.output and
                           "plotter1: would be refreshed" in run.output and '+' in run.output)
        self.expect_written("trial run for a changed snapshot", before, ())
        run = self.fleet.run()
        self.expect_run("changed snapshot", run, (2, 0))
        self.checks.expect_same("changed snapshot: what changed",
                                {(task, item and pathlib.Path(item).name) for _, task, item in run.changes},
                                {("Copy the snapshots", "plotter1.json"), ("Make the queues as the file says", None)})
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

    def failed_setup(self):
        """A snapshot that cannot be used, and one that is not there, stop their own queue and no other."""
        broken, absent = (self.fleet.site / f"files/devices/{name}.json" for name in ("plotter2", "plotter3"))
        good, gone = broken.read_text(), absent.read_text()
        broken.write_text(good[:100])
        absent.unlink()
        self.fleet.rename_medium("plotter1", "Mesh")
        before = self.fleet.ppds()
        run = self.fleet.run()
        # A task that failed is none that changed something, for Ansible.
        self.expect_run("failed setup", run, (1, 0), status=2)
        self.checks.expect("failed setup: it is named, with the reason", "plotter2: a setup would fail" in run.output)
        self.checks.expect("absent file: it is named", "Not here: " in run.output and "plotter3.json" in run.output)
        self.expect_written("failed setup: the other queue", before, ["plotter1"])
        broken.write_text(good)
        absent.write_text(gone)
        self.fleet.rename_medium("plotter2", "Mesh")
        before = self.fleet.ppds()
        self.expect_run("run after it", self.fleet.run(), (2, 0))
        self.expect_written("run after it", before, ["plotter2"])
        self.checks.expect("run after it: the queue has the new name", b"/Mesh" in self.first.scheduler.ppd_of("plotter2"))

    def drift(self):
        """What somebody did to the queues themselves."""
        before = self.fleet.ppds()
        self.second.scheduler.command("lpadmin", "-x", "plotter3")
        self.first.scheduler.command("lpadmin", "-p", "plotter2", "-v", "socket://192.0.2.99:9100")
        self.expect_run("drift", self.fleet.run(), (1, 1))
        self.expect_written("drift", before, ["plotter3"])
        self.checks.expect("drift: the URI is as the list says", "socket://192.0.2.12:9100" in
                           self.first.scheduler.command("lpstat", "-v", "plotter2"))

    def profiles(self):
        folder = self.fleet.site / "files/profiles"
        folder.mkdir()
        (folder / "canvas.icc").write_bytes(b"profile")
        (folder / "canvas.icc").chmod(0o666)
        self.expect_run("profiles", self.fleet.run("-e", f"vorantis_profiles={folder}"), (1, 1))
        copies = [host.folder / "profiles/canvas.icc" for host in self.fleet.hosts.values()]
        self.checks.expect("profiles: nobody else may write them", all(copy.stat().st_mode & 0o777 == 0o644 for copy in copies))

    def many_queues(self, count):
        """The second server gets many, all from one snapshot."""
        queues = [{"name": f"many{number}", "uri": "socket://192.0.2.14:9100", "snapshot": "plotter3", "ppd": "z6.ppd"}
                  for number in range(count)]
        inventory = json.loads((self.fleet.site / "inventory-test.json").read_text())
        inventory["all"]["hosts"]["print2.example.org"]["vorantis_queues"] = queues
        inventory["all"]["hosts"]["print2.example.org"]["vorantis_prune"] = True
        (self.fleet.site / "inventory-test.json").write_text(json.dumps(inventory))
        run = self.fleet.run()
        self.expect_run(f"{count} queues on a server", run, (0, 2))
        self.checks.expect_same(f"{count} queues cost as many tasks as one", run.tasks, self.tasks)
        self.checks.expect_same("the queues of the server, without the one that is no longer in the list",
                                set(self.second.ppds()), {queue["name"] for queue in queues})


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--program", type=pathlib.Path, required=True, help="the driver program")
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    parser.add_argument("--queues", type=pathlib.Path, required=True, help="vorantis-queues")
    parser.add_argument("--count", type=int, default=50, help="queues of the server that has many")
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
            trial.drift()
            trial.profiles()
            trial.many_queues(options.count)
            for name, host in hosts.items():
                checks.expect(f"{name}: the scheduler loads every PPD", "cannot be loaded" not in host.scheduler.log())
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
