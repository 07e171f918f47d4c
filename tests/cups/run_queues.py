#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Gives queues of a real, private scheduler to vorantis-queues, as an administrator would.

Weeks of random changes of a device must leave every default and every waiting job with the medium that was meant, or
held, also when this program or the scheduler is killed at any of its steps; the jobs are printed to a socket, and what
comes out there says which medium it was. Then come mistakes, the file of queues, and what 500 queues cost.
"""
import argparse
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

try:
    import jsonschema
except ImportError:
    sys.exit(f"NOT TESTED: {sys.executable} has no module jsonschema; the package is python3-jsonschema")

from checks import Checks
from driver_folder import CLEAN, SCHEME, DriverFolder
from scheduler import CUPSD, Scheduler

SETTLE = 3  # seconds; the scheduler is told to write what it knows within one
FILTER = """#!/bin/sh
# Prints which medium the job is for: what the PPD's code for the chosen medium says.
[ -n "$6" ] || cat >/dev/null
choice=$(printf '%s\\n' "$5" | tr ' ' '\\n' | sed -n 's/^MediaType=//p' | tail -n 1)
[ -n "$choice" ] || choice=$(sed -n 's/^\\*DefaultMediaType: *//p' "$PPD" | tr -d '\\r')
case $choice in Custom*) code=$(grep "^\\*MediaType $choice/" "$PPD" | sed 's/.*QZMediaID(\\([^)]*\\)).*/\\1/') ;; esac
echo "$3 on ${code:-$choice}"
"""


class Printer:
    """Receives jobs on a socket; each is a line "TITLE on MEDIUM"."""

    def __init__(self):
        self.lines, self.server = [], socket.create_server(("127.0.0.1", 0))
        self.uri = f"socket://127.0.0.1:{self.server.getsockname()[1]}"
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            connection, _ = self.server.accept()
            with connection:
                data = b""
                while block := connection.recv(4096):
                    data += block
                connection.shutdown(socket.SHUT_WR)
            if data:
                self.lines.append(data.decode().strip())

    def printed(self):
        return dict(line.split(" on ") for line in list(self.lines))


class Server:
    """A private scheduler with the driver program, and vorantis-queues for it."""

    def __init__(self, folder, options):
        self.folder, self.options = folder, options
        self.driver = DriverFolder(folder, options)
        (self.driver.server_bin / "filter").unlink()
        (self.driver.server_bin / "filter").mkdir()
        self.filter = self.driver.server_bin / "filter/tellmedium"
        self.filter.write_text(FILTER)
        self.filter.chmod(0o755)
        self.driver.clear()
        base = re.sub(rb"^\*cupsFilter2?:.*\n", b"", self.driver.base, flags=re.MULTILINE)
        self.driver.ppd("z6.ppd", base.replace(b"*FormatVersion:", b'*cupsFilter: "text/plain 0 tellmedium"\n*FormatVersion:', 1))
        self.printer = Printer()
        self.scheduler = Scheduler(folder / "cupsd", CLEAN, as_root=True, server_bin=self.driver.server_bin)
        programs = options.queues.resolve().parent.parent  # in the build folder, each in its own
        self.environment = {**CLEAN, **self.driver.environment(), "PATH": f"{programs}/explain:{os.environ['PATH']}",
                            "VORANTIS_AUTOSETUP_STATE": str(folder / "state")}

    def command(self, *arguments):
        return [self.options.queues, "-h", self.scheduler.address, *arguments]

    def call(self, *arguments, timeout=300, prefix=(), **environment):
        return subprocess.run([*prefix, *self.command(*arguments)], env={**self.environment, **environment}, text=True,
                              capture_output=True, timeout=timeout, check=False)

    def refresh(self, *arguments, **more):
        return self.call("refresh", *(arguments or ("--all",)), "--settle", str(SETTLE), **more)

    def write_quickly(self):
        """Lets the scheduler write its state after a second, not after 30."""
        conf = self.scheduler.folder / "etc/cupsd.conf"
        conf.write_text("DirtyCleanInterval 1\nMultipleOperationTimeout 30\n" + conf.read_text())
        self.restart(signal.SIGTERM)

    def restart(self, with_signal=signal.SIGKILL):
        if self.scheduler.process.poll() is None:
            self.scheduler.process.send_signal(with_signal)
        self.scheduler.process.wait()
        folder = self.scheduler.folder
        self.scheduler.process = subprocess.Popen(
            [CUPSD, "-f", "-c", folder / "etc/cupsd.conf", "-s", folder / "etc/cups-files.conf"], env=CLEAN,
            stderr=subprocess.DEVNULL)
        for _ in range(500):
            if self.scheduler.attempt("lpstat", "-r").stdout.startswith("scheduler is running"):
                return
            time.sleep(0.02)
        sys.exit("the private scheduler does not come back")

    def device(self, name, media):
        """A snapshot whose custom media are these: (ID, name, profiles)."""
        def change(devices):
            information = devices[0]["dataStore"]["VMCustomMediaStorage"]["MediaInfo"]
            standard = [record for record in information.values() if record["CategoryID"] not in ("CUSTOM", "QZ_EXTENDED_MEDIA")]
            records = [{"Name": text, "MediumID": number, "CategoryName": "Custom", "CategoryID": "CUSTOM",
                        "ParentID": "1002", "ICCProfiles": profiles} for number, text, profiles in media] + standard
            devices[0]["dataStore"]["VMCustomMediaStorage"]["MediaInfo"] = {f"k{index}": record for index, record
                                                                            in enumerate(records)}
        self.driver.snapshot(name, change)

    def make_queue(self, name, snapshot):
        self.scheduler.command("lpadmin", "-p", name, "-v", self.printer.uri, "-m", f"{SCHEME}:{snapshot}/z6.ppd",
                               "-o", "printer-error-policy=retry-job", "-E")

    def submit(self, queue, title, *options):
        made = self.scheduler.command("lp", "-d", queue, "-t", title, "-o", "document-format=text/plain",
                                      *[part for option in options for part in ("-o", option)], "/etc/hostname")
        return int(re.search(r"-(\d+) ", made)[1])

    def choices(self, queue):
        """The custom media of the queue's PPD, choice by ID, and its default choice."""
        text = self.scheduler.ppd_of(queue).decode()
        found = re.findall(r"^\*MediaType (Custom\S+?)/[^:]*: \".*QZMediaID\((.*?)\)", text, re.MULTILINE)
        return {number: choice for choice, number in found}, re.search(r"^\*DefaultMediaType: *(\S+)", text, re.MULTILINE)[1]

    def default_of(self, queue):
        choices, default = self.choices(queue)
        return next((number for number, choice in choices.items() if choice == default), default)

    def held(self, queue):
        listed = self.scheduler.attempt("lpstat", "-l", "-W", "not-completed", "-o", queue).stdout
        return {int(number) for number, rest in re.findall(r"^\S+-(\d+) .*\n((?:\t.*\n)*)", listed, re.MULTILINE)
                if "hold" in rest}


class Device:
    """Custom media that change every week."""

    def __init__(self, chance):
        self.chance, self.next, self.media = chance, 4720, [(str(4711 + index), f"Medium {index}", []) for index in range(4)]

    def change(self):
        for _ in range(self.chance.randint(1, 3)):
            getattr(self, self.chance.choice(["add", "remove", "remove", "rename", "reorder", "replace", "profiles"]))()

    def add(self):
        self.next += 1
        self.media.insert(self.chance.randint(0, len(self.media)), (str(self.next), f"Medium {self.next}", []))

    def remove(self):
        if len(self.media) > 2:
            self.media.pop(self.chance.randrange(len(self.media)))

    def rename(self):
        self.edit(lambda number, name, profiles: (number, name + " new", profiles))

    def reorder(self):
        self.chance.shuffle(self.media)

    def replace(self):
        self.remove()
        self.add()

    def profiles(self):
        url = f"file:///usr/share/color/icc/{self.chance.randint(1, 99)}.icc"
        self.edit(lambda number, name, _: (number, name, [{"URL": url, "ICCName": "P"}]))

    def edit(self, change):
        place = self.chance.randrange(len(self.media))
        self.media[place] = change(*self.media[place])

    def numbers(self):
        return [number for number, _, _ in self.media]


def option_for(chance, choice):
    """One of the forms in which a job may name a medium."""
    name = re.sub(r"(?<=[^0-9])(?=[0-9])", "-", choice.lower())
    return chance.choice([f"MediaType={choice}", f"media-col={{media-type={name}}}"])


def submit_some(server, chance, queue, jobs):
    """Jobs that wait: each with the ID that it is meant for."""
    choices, _ = server.choices(queue)
    for _ in range(chance.randint(1, 3)):
        title = f"{queue}-{len(jobs)}"
        number = chance.choice([*choices, None])
        options = ["job-hold-until=indefinite"] if chance.random() < 0.4 else []
        if number is None:
            number = server.default_of(queue)
        else:
            options.append(option_for(chance, choices[number]))
        jobs[title] = (server.submit(queue, title, *options), number)


def check_weeks(checks, server, weeks, seed):
    """One queue is stopped, so that its jobs wait; the other has a default of each kind."""
    chance = random.Random(seed)
    device = Device(chance)
    server.device("weekly", device.media)
    for queue in ("waiting", "defaults"):
        server.make_queue(queue, "weekly")
    server.scheduler.command("cupsdisable", "waiting")
    jobs, wrong = {}, []
    server.scheduler.command("lpadmin", "-p", "defaults", "-o", "PageSize=A1")
    for week in range(weeks):
        choices, _ = server.choices("defaults")
        if chance.random() < 0.6:
            default = chance.choice([*choices.values(), "Plain"])
            server.scheduler.command("lpadmin", "-p", "defaults", "-o", f"MediaType={default}")
        submit_some(server, chance, "waiting", jobs)
        before = {queue: server.default_of(queue) for queue in ("waiting", "defaults")}
        device.change()
        server.device("weekly", device.media)
        result = server.refresh()
        text = result.stdout + result.stderr
        for queue, was in before.items():
            choices, _ = server.choices(queue)
            if list(choices) != device.numbers():
                wrong.append(f"week {week}: {queue} has {list(choices)}, the device {device.numbers()}")
            now = server.default_of(queue)
            if now != was and f"{queue}: the default MediaType was" not in text:
                wrong.append(f"week {week}: the default of {queue} was {was}, is {now}, and nobody said so")
        if result.returncode != 0:
            wrong.append(f"week {week}: status {result.returncode}: {text}")
        if "*DefaultPageSize: A1" not in server.scheduler.ppd_of("defaults").decode():
            wrong.append(f"week {week}: the page size is another")
    checks.expect_same(f"{weeks} weeks of changes: every medium and every default is right", wrong, [])
    expect_prints(checks, server, "waiting", jobs, f"{weeks} weeks of changes")


def expect_prints(checks, server, queue, jobs, what):
    """Lets the queue print all, and compares what comes out with what was meant."""
    gone = set()
    for number in server.held(queue):
        attributes = server.job(number)
        if "medium-gone" in attributes:
            gone.add(number)
        else:
            server.scheduler.command("lp", "-i", str(number), "-H", "resume")
    server.scheduler.command("cupsenable", queue)
    expected = {title: number for title, (job, number) in jobs.items() if job not in gone}
    for _ in range(3000):  # a busy machine takes seconds for a job
        if expected.keys() <= server.printer.printed().keys():
            break
        time.sleep(0.1)
    printed = {title: medium for title, medium in server.printer.printed().items() if title in jobs}
    checks.expect_same(f"{what}: {len(printed)} jobs came out on their medium, {len(gone)} are held", printed, expected)


def job_attributes(server, number):
    test = ('{ OPERATION Get-Job-Attributes GROUP operation-attributes-tag ATTR charset attributes-charset utf-8 '
            f'ATTR naturalLanguage attributes-natural-language en ATTR uri job-uri ipp://{server.scheduler.address}/jobs/{number} '
            'ATTR name requesting-user-name root }')
    return subprocess.run(["ipptool", "-tv", f"ipp://{server.scheduler.address}/jobs/{number}", "/dev/stdin"], input=test, text=True,
                          capture_output=True, check=False).stdout


Server.job = job_attributes

# What the program sends to the scheduler is a step; strace ends the program before or behind the one of this number.
STEPS = "sendto"


def trace_of(server, number, how):
    return ["strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={STEPS}", "-e", f"inject={STEPS}:{how}:when={number}"]


def check_kills(checks, server, scheduler_too, seed):
    """The program, and then the scheduler too, are killed at each step of a refresh in turn."""
    chance = random.Random(seed)
    device = Device(chance)
    queue = f"killed{int(scheduler_too)}"
    server.device(queue, device.media)
    server.make_queue(queue, queue)
    jobs, wrong, kills = {}, [], 0
    step, done = 0, False
    while not done and step < 200:
        step += 1
        server.scheduler.command("cupsdisable", queue)
        choices, _ = server.choices(queue)
        number = chance.choice(list(choices))
        title = f"{queue}-{step}"
        jobs[title] = (server.submit(queue, title, f"MediaType={choices[number]}", "job-hold-until=indefinite"), number)
        server.scheduler.command("cupsenable", queue)
        device.change()
        server.device(queue, device.media)
        time.sleep(2.1)  # a source that was just written is waited for
        if scheduler_too:
            time.sleep(1.5)  # what came before the refresh is written
        result = server.refresh(queue, prefix=trace_of(server, step, "signal=KILL"))
        killed = result.returncode in (-9, 137)
        kills += killed
        done = not killed
        if scheduler_too and killed:
            server.restart()
        again = server.refresh(queue)
        choices, _ = server.choices(queue)
        if sorted(choices) != sorted(device.numbers()):
            wrong.append(f"step {step}: {queue} has {list(choices)}, the device {device.numbers()}: {again.stderr}")
        if again.returncode != 0 or "disabled" in server.scheduler.command("lpstat", "-p", queue):
            wrong.append(f"step {step}: status {again.returncode}, or the queue does not print: {again.stderr}")
    what = "the scheduler is killed too" if scheduler_too else "the program is killed"
    checks.expect(f"{what}: at {kills} steps", kills > 10 and done)
    checks.expect_same(f"{what}: the next call brings the queue to its state", wrong, [])
    expect_prints(checks, server, queue, jobs, what)


def check_statuses(checks, server):
    device = Device(random.Random(1))
    server.device("states", device.media)
    server.make_queue("states", "states")

    def expect(what, status, words):
        result = server.call("status", "states")
        checks.expect(f"status of a queue {what}: {status}, {result.stdout.strip()!r}",
                      result.returncode == status and words in result.stdout)
    expect("that is current", 0, "states: current")
    snapshot = server.driver.settings / "states.json"
    kept = snapshot.read_bytes()
    device.rename()
    server.device("states", device.media)
    expect("whose medium was renamed", 1, "is renamed to")
    snapshot.write_text("{")
    expect("whose snapshot is damaged", 2, "a setup would fail")
    refreshed = server.refresh("states")
    checks.expect(f"such a queue keeps its PPD: {refreshed.stderr.strip()!r}", refreshed.returncode == 2 and
                  "states: a setup would fail" in refreshed.stderr and len(server.choices("states")[0]) == 4)
    snapshot.unlink()
    expect("whose snapshot is gone", 2, "its source is gone")
    snapshot.write_bytes(kept)
    ppd = server.folder / "edited.ppd"
    ppd.write_bytes(server.scheduler.ppd_of("states").replace(b"Medium 1", b"Medium one"))
    server.scheduler.command("lpadmin", "-p", "states", "-P", ppd)
    expect("that was edited by hand", 1, "edited by hand")
    everything = server.refresh()
    checks.expect("refresh --all leaves it alone and says so", b"Medium one" in server.scheduler.ppd_of("states") and
                  "states: edited by hand" in everything.stderr and everything.returncode == 1)
    checks.expect("refresh by its name undoes that", server.refresh("states").returncode == 0 and
                  b"Medium one" not in server.scheduler.ppd_of("states"))
    server.scheduler.command("lpadmin", "-p", "states", "-o", "MediaType=Custom2", "-o", "PageSize=A1")
    expect("with other defaults", 0, "states: current")
    for option in ("--json", "--openmetrics"):
        result = server.call("status", option)
        checks.expect(f"status {option} names the queue", '"states"' in result.stdout and result.returncode == 0)
    schema = json.loads((server.options.root / "docs/queues-status.schema.json").read_text())
    device.remove()
    server.device("states", device.media)
    stale = json.loads(server.call("status", "--json").stdout)
    checks.expect_same("status --json is as its schema says", list(jsonschema.Draft202012Validator(schema).iter_errors(stale)), [])
    checks.expect("and tells what would change", {change["kind"] for change in stale["queues"][0]["changes"]} >= {"gone"})
    server.refresh("states")
    explained = server.call("explain", "states", "--format=json")
    checks.expect(f"explain gives the report of the queue's own snapshot {explained.stderr.strip()!r}", explained.returncode == 0 and
                  "Medium 2" in explained.stdout)
    server.scheduler.command("lpadmin", "-x", "states")


def check_mistakes(checks, server):
    server.scheduler.command("lpadmin", "-p", "other", "-v", "socket://192.0.2.9", "-P",
                             server.driver.settings / "ppd/z6.ppd", "-E")
    (server.folder / "bad.json").write_text('{"format": "vorantis-queues", "formatVersion": 1, "queues": [{"name": "a b"}]}')
    for what, arguments, words in (
            ("an unknown queue", ("status", "none"), "none: there is no such queue"),
            ("an unknown queue", ("refresh", "none"), "none: there is no such queue"),
            ("a queue of another driver", ("refresh", "other"), "other: not made by the driver program"),
            ("no queue", ("refresh",), "name queues, or call refresh --all"),
            ("a file with a mistake", ("apply", str(server.folder / "bad.json")), "queue 1 has a name that CUPS does not take"),
            ("no such file", ("apply", "/nowhere/queues.json"), "cannot be read"),
            ("no sub-command", (), "subcommand is required"),
            ("an unknown option", ("status", "--jsno"), "--jsno")):
        result = server.call(*arguments)
        checks.expect(f"{what}: status 3 and why: {result.stderr.strip()!r}", result.returncode == 3 and
                      words in result.stderr)
    listed = server.call("status")
    checks.expect("queues of other drivers are not listed", "other" not in listed.stdout)
    checks.expect("unless asked for", "other: not made by" in server.call("status", "--all-drivers").stdout)
    for host, words in (("127.0.0.1:1", "does not answer"), ("print.example.org:631", "is on another machine")):
        result = subprocess.run([server.options.queues, "-h", host, "status"], env=server.environment, text=True,
                                capture_output=True, timeout=60, check=False)
        checks.expect(f"scheduler {host}: status 3 and why: {result.stderr.strip()!r}", result.returncode == 3 and
                      words in result.stderr)
    server.scheduler.command("lpadmin", "-x", "other")


def check_two_at_once(checks, server):
    device = Device(random.Random(2))
    server.device("twice", device.media)
    server.make_queue("twice", "twice")
    device.remove()
    server.device("twice", device.media)
    both = [subprocess.Popen(server.command("refresh", "--all"), env=server.environment, text=True, stderr=subprocess.PIPE)
            for _ in range(2)]
    said = [process.communicate(timeout=120)[1] for process in both]
    checks.expect("two at once: the second waits and says so", [process.returncode for process in both] == [0, 0] and
                  sum("waits for it" in text for text in said) == 1 and sum("is refreshed" in text for text in said) == 1)
    server.scheduler.command("lpadmin", "-x", "twice")


def check_apply(checks, server):
    server.device("applied", Device(random.Random(3)).media)
    file = server.folder / "queues.json"

    def apply(queues, *options):
        file.write_text(json.dumps({"format": "vorantis-queues", "formatVersion": 1, "queues": queues}))
        return server.call("apply", str(file), *options)

    def queue(name, **more):
        return {"name": name, "uri": "socket://192.0.2.1:9100", "snapshot": "applied", "ppd": "z6.ppd", **more}

    result = apply([queue("ap1", info="One"), queue("ap2")], "--dry-run")
    checks.expect("apply --dry-run says what it would do and makes nothing", result.returncode == 1 and
                  "ap1: would be made" in result.stderr and "ap1" not in server.scheduler.attempt("lpstat", "-v").stdout)
    result = apply([queue("ap1", info="One"), queue("ap2")])
    checks.expect(f"apply makes queues: {result.stderr.strip()!r}", result.returncode == 0 and
                  "idle" in server.scheduler.command("lpstat", "-p", "ap1"))
    result = apply([queue("ap1", info="One"), queue("ap2")])
    checks.expect_same("the second time it changes nothing", (result.returncode, result.stderr), (0, ""))
    result = apply([queue("ap1", info="Other", uri="socket://192.0.2.2:9100"), queue("ap2", snapshot="nowhere")])
    checks.expect("a changed one is changed, and one that fails stops no other", result.returncode == 2 and
                  "ap2: its source is gone" in result.stderr and "192.0.2.2" in server.scheduler.command("lpstat", "-v", "ap1"))
    result = apply([queue("ap1", info="Other", uri="socket://192.0.2.2:9100")], "--prune")
    checks.expect("--prune removes what it made", result.returncode == 0 and "ap2: is removed" in result.stderr and
                  server.scheduler.attempt("lpstat", "-p", "ap2").returncode != 0)
    server.scheduler.command("lpadmin", "-x", "ap1")


def check_cost(checks, server, count):
    """What looking at many queues costs, against fetching their PPDs."""
    device = Device(random.Random(4))
    for number in range(count):
        server.device(f"cost{number}", device.media)
    queues = [{"name": f"cost{number}", "uri": "socket://192.0.2.1:9100", "snapshot": f"cost{number}", "ppd": "z6.ppd"}
              for number in range(count)]
    file = server.folder / "many.json"
    file.write_text(json.dumps({"format": "vorantis-queues", "formatVersion": 1, "queues": queues}))
    started = time.monotonic()
    made = server.call("apply", str(file), timeout=1200)
    checks.expect(f"{count} queues are made in {time.monotonic() - started:.1f} s", made.returncode == 0)
    time.sleep(3)
    started = time.monotonic()
    for number in range(count):
        server.scheduler.ppd_of(f"cost{number}")
    fetching = time.monotonic() - started
    for arguments in (("status",), ("refresh", "--all", "--dry-run")):
        started = time.monotonic()
        result = server.call(*arguments, timeout=1200)
        seconds = time.monotonic() - started
        print(f"        figure: {' '.join(arguments)} of {count} queues took {seconds:.2f} s, fetching their PPDs {fetching:.2f} s")
        checks.expect(f"{' '.join(arguments)} costs at most twice what fetching costs", result.returncode == 0 and
                      seconds <= 2 * fetching)
    print(f"        figure: the largest process took {resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss} KiB")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--queues", type=pathlib.Path, required=True, help="vorantis-queues")
    parser.add_argument("--program", type=pathlib.Path, required=True, help="the driver program")
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    parser.add_argument("--weeks", type=int, default=20)
    parser.add_argument("--count", type=int, default=500, help="queues whose cost is measured")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", help="parts of the test, with commas")
    options = parser.parse_args()
    options.root = pathlib.Path(__file__).resolve().parents[2]
    for program in (CUPSD, "lpadmin", "lp", "ipptool", "strace"):
        if shutil.which(program) is None:
            sys.exit(f"NOT TESTED: {program} is not installed (packages cups-daemon, cups-client, cups-ipp-utils, strace)")
    checks = Checks()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        server = Server(folder, options)
        parts = {"statuses": lambda: check_statuses(checks, server), "mistakes": lambda: check_mistakes(checks, server),
                 "apply": lambda: check_apply(checks, server), "twice": lambda: check_two_at_once(checks, server),
                 "weeks": lambda: check_weeks(checks, server, options.weeks, options.seed),
                 "kills": lambda: check_kills(checks, server, False, options.seed),
                 "scheduler": lambda: check_kills(checks, server, True, options.seed),
                 "cost": lambda: check_cost(checks, server, options.count)}
        with server.scheduler:
            server.write_quickly()
            for part in options.only.split(",") if options.only else parts:
                started = time.monotonic()
                parts[part]()
                print(f"        figure: {part} took {time.monotonic() - started:.1f} s", flush=True)
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
