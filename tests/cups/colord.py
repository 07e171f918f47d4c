# SPDX-License-Identifier: MIT
"""A private colord on a bus of its own, for what a scheduler registers of a queue's colour profiles."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

PROFILES = pathlib.Path("/usr/share/color/icc/colord")
DAEMON = "/usr/libexec/colord"
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={0}/bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/>
<allow send_destination="*" eavesdrop="true"/><allow receive_sender="*" eavesdrop="true"/></policy></busconfig>
"""
PROFILE_STATEMENT = re.compile(rb'^\*cupsICCProfile ([^/:]*)(?:/[^:]*)?: "([^"]*)"', re.MULTILINE)


def can_have_its_own_data():
    """Whether a mount namespace can be made here, in which another folder takes the place of colord's."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["unshare", "-m", "mount", "--bind", folder, folder]
        return os.getuid() == 0 and subprocess.run(command, stderr=subprocess.DEVNULL, check=False).returncode == 0


def missing():
    """The programs and data that are not installed, in words; empty when all are."""
    programs = ("dbus-daemon", DAEMON, "colormgr", "unshare", str(PROFILES))
    return " ".join(name for name in programs if shutil.which(name) is None and not os.path.isdir(name))


class ColorDaemon:
    def __init__(self, folder):
        self.folder = folder
        self.environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/bus"}

    def __enter__(self):
        (self.folder / "data").mkdir(parents=True)
        (self.folder / "bus.conf").write_text(BUS.format(self.folder))
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.bus = subprocess.Popen(["dbus-daemon", f"--config-file={self.folder}/bus.conf", "--nofork", "--nopidfile"],
                                    **quiet)
        wait_for((self.folder / "bus").exists)
        script = f"mount --bind {self.folder}/data /var/lib/colord && exec {DAEMON}"
        pathlib.Path("/var/lib/colord").mkdir(exist_ok=True)
        self.daemon = subprocess.Popen(["unshare", "-m", "bash", "-c", script], env=self.environment, **quiet)
        wait_for(lambda: self.ask("get-devices") is not None)
        return self

    def __exit__(self, *_):
        for process in (self.daemon, self.bus):
            process.terminate()
            process.wait()

    def ask(self, *arguments):
        """What colormgr prints; None when it fails."""
        result = subprocess.run(["colormgr", *arguments], env=self.environment, capture_output=True, text=True,
                                check=False)
        return result.stdout if result.returncode == 0 else None

    def registered(self, queue, expected):
        """The profile IDs and files registered for the queue; waits until they are the expected ones, at most 10 s."""
        found = set()
        for _ in range(100):
            lines = [line.strip() for line in (self.ask("find-device", f"cups-{queue}") or "").splitlines()]
            named = [(index, line.split(":", 1)[1].strip()) for index, line in enumerate(lines)
                     if re.match(r"Profile \d+:", line)]
            found = {(name, lines[index + 1]) for index, name in named
                     if index + 1 < len(lines) and lines[index + 1].startswith("/")}
            if found == expected:
                break
            time.sleep(0.1)
        return found


def wait_for(condition):
    for _ in range(200):
        if condition():
            return
        time.sleep(0.05)
    raise TimeoutError("the private bus or colord does not answer")


def statements(ppd):
    """(spec, file) of each profile statement."""
    return [(spec.decode().strip(), path.decode()) for spec, path in PROFILE_STATEMENT.findall(ppd)]


def with_files(example, folder):
    """A copy of the example whose profiles lie in the folder, with a real file for every profile but one; that one."""
    folder.mkdir()
    for name in ("input.ppd", "snapshot.json"):
        text = (example / name).read_text()
        (folder / name).write_text(text.replace("/Library/", f"{folder}/"))
    text = (folder / "input.ppd").read_text() + (folder / "snapshot.json").read_text().replace("%20", " ")
    paths = sorted(set(re.findall(re.escape(str(folder)) + r"/[^\";]*\.icc", text)))
    for path, source in zip(paths[1:], sorted(PROFILES.glob("*.icc"))):
        pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, path)
    return paths[0]
