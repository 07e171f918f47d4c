#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Gives the tool's output to a real CUPS scheduler, a private one on a loopback port with folders of its own.

For each example a queue is made from the result. The queue must list the custom media, the PPD read back over HTTP must
be the tool's output byte for byte, the scheduler's log must not say that the PPD cannot be loaded, and cupstestppd must
say nothing worse of the output than of the input. With a private colord the scheduler must register every profile of the
result whose file exists.
"""
import argparse
import os
import pathlib
import pwd
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import urllib.request

import colord

URI = "socket://192.0.2.10:9100"
CUPSD = "/usr/sbin/cupsd"
FILES_CONF = """ServerRoot {0}/etc
StateDir {0}/run
CacheDir {0}/cache
RequestRoot {0}/spool
TempDir {0}/spool/tmp
DocumentRoot /usr/share/cups/doc-root
DataDir /usr/share/cups
ServerBin /usr/lib/cups
AccessLog {0}/log/access_log
ErrorLog {0}/log/error_log
PageLog {0}/log/page_log
FileDevice Yes
SyncOnClose No
User {1}
Group {2}
SystemGroup root
"""
CUPSD_CONF = """LogLevel debug
MaxLogSize 0
Listen 127.0.0.1:{0}
Browsing Off
BrowseLocalProtocols none
DefaultAuthType None
DefaultEncryption Never
WebInterface No
IdleExitTimeout 0
<Location />
  Order allow,deny
  Allow 127.0.0.1
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Scheduler:
    """A private cupsd, as an ordinary user."""

    def __init__(self, folder, environment=None):
        self.folder, self.port, self.environment = folder, free_port(), environment
        self.address = f"127.0.0.1:{self.port}"

    def __enter__(self):
        for name in ("etc/ppd", "run/certs", "cache", "spool/tmp", "log"):
            (self.folder / name).mkdir(parents=True)
        self.folder.chmod(0o755)
        user, command = self.account()
        (self.folder / "etc/cups-files.conf").write_text(FILES_CONF.format(self.folder, *user))
        (self.folder / "etc/cupsd.conf").write_text(CUPSD_CONF.format(self.port))
        self.process = subprocess.Popen([*command, CUPSD, "-f", "-c", self.folder / "etc/cupsd.conf",
                                         "-s", self.folder / "etc/cups-files.conf"], env=self.environment,
                                        stderr=subprocess.DEVNULL)
        for _ in range(500):
            try:
                urllib.request.urlopen(f"http://{self.address}/", timeout=1).close()
                return self
            except urllib.error.HTTPError:
                return self
            except OSError:
                time.sleep(0.02)
        sys.exit("the private scheduler does not answer")

    def account(self):
        """The user and group of the configuration, and the command that makes the scheduler run as them. colord, which
        runs as root here, talks to root only."""
        if os.getuid() != 0:
            return (pwd.getpwuid(os.getuid()).pw_name, "nogroup"), []
        if self.environment is not None:
            return ("lp", "lp"), []
        for path in (self.folder, *self.folder.rglob("*")):
            os.chown(path, 65534, 65534)
        return ("nobody", "nogroup"), ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def command(self, program, *arguments):
        return subprocess.run([program, "-h", self.address, *arguments], capture_output=True, text=True, check=True).stdout

    def make_queue(self, name, ppd):
        self.command("lpadmin", "-p", name, "-v", "file:/dev/null", "-P", ppd, "-E")

    def choices(self, queue, option):
        for line in self.command("lpoptions", "-p", queue, "-l").splitlines():
            if line.startswith(option + "/"):
                return line.split(":", 1)[1].replace("*", "").split()
        return []

    def ppd_of(self, queue):
        with urllib.request.urlopen(f"http://{self.address}/printers/{queue}.ppd", timeout=10) as answer:
            return answer.read()

    def log(self):
        return (self.folder / "log/error_log").read_text(errors="replace")


def complaints(ppd):
    """What cupstestppd says against the PPD; profile files and translations belong to the printer's software."""
    result = subprocess.run(["cupstestppd", "-I", "profiles", "-W", "translations", ppd], capture_output=True, text=True,
                            check=False)
    return result.returncode, sorted(line.strip() for line in result.stdout.splitlines() if "FAIL" in line)


def expected_choices(output):
    """The choices of MediaType that stand in the PPD, in order."""
    lines = (line.split() for line in output.decode("latin-1").splitlines() if line.startswith("*MediaType "))
    return [words[1].split("/")[0].rstrip(":") for words in lines]


class Checks:
    def __init__(self):
        self.passed = self.failed = 0

    def expect(self, what, holds):
        self.passed += bool(holds)
        self.failed += not holds
        print(f"{'passed' if holds else 'FAILED'}  {what}")

    def status(self):
        print(f"{self.passed} passed, {self.failed} failed")
        return 1 if self.failed else 0


def set_up(options, example, result):
    environment = {**os.environ, "LD_LIBRARY_PATH": str(options.library_dir),
                   "QZVORANTISMODEL_SNAPSHOT": str(example / "snapshot.json")}
    output = subprocess.run([options.tool, URI, example / "input.ppd"], env=environment, stdout=subprocess.PIPE,
                            check=True).stdout
    result.write_bytes(output)
    return output


def check_example(checks, options, scheduler, example, folder):
    result = folder / f"{example.name}.ppd"
    output = set_up(options, example, result)
    scheduler.make_queue(example.name, result)
    choices = scheduler.choices(example.name, "MediaType")
    checks.expect(f"{example.name}: the queue lists {' '.join(choices)}",
                  "Custom1" in choices and choices == expected_choices(output))
    checks.expect(f"{example.name}: the PPD comes back byte for byte", scheduler.ppd_of(example.name) == output)
    checks.expect(f"{example.name}: cupstestppd says nothing worse of the output",
                  complaints(result)[0] <= complaints(example / "input.ppd")[0])


def check_profiles(checks, options, scheduler, daemon, example, folder):
    without_file = colord.with_files(example, folder / f"{example.name}-files")
    result = folder / f"{example.name}-files.ppd"
    output = set_up(options, folder / f"{example.name}-files", result)
    queue = f"{example.name}-profiles"
    scheduler.make_queue(queue, result)
    written = colord.statements(output)
    expected = {(f"{queue}-{spec}", path) for spec, path in written if path != without_file}
    found = daemon.registered(queue, expected)
    checks.expect(f"{example.name}: {len(found)} of {len(written)} profiles are registered, all whose file exists",
                  found == expected and len(expected) < len(written))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    options = parser.parse_args()
    for program in (CUPSD, "lpadmin", "lpoptions", "cupstestppd"):
        if shutil.which(program) is None:
            sys.exit(f"NOT TESTED: {program} is not installed (packages cups-daemon and cups-client)")
    checks = Checks()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        with Scheduler(folder / "cupsd") as scheduler:
            for example in sorted(options.examples.iterdir()):
                check_example(checks, options, scheduler, example, folder)
            checks.expect("the scheduler loads every PPD", "cannot be loaded" not in scheduler.log())
        if not colord.can_have_its_own_data():
            print("NOT TESTED: what colord registers: only root in a mount namespace can give its data base a place of its own")
            return checks.status()
        if colord.missing():
            sys.exit(f"NOT TESTED: not installed: {colord.missing()} (packages dbus-daemon and colord)")
        with colord.ColorDaemon(folder / "colord") as daemon, \
                Scheduler(folder / "cupsd-with-colord", daemon.environment) as scheduler:
            for example in sorted(options.examples.iterdir()):
                if b"cupsICCProfile" in (example / "input.ppd").read_bytes():
                    check_profiles(checks, options, scheduler, daemon, example, folder)
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
