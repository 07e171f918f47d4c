# SPDX-License-Identifier: MIT
"""What a scheduler with the driver program needs: a ServerBin folder of its own, the program in a wrapper that names
the device-model library and the folder of snapshots and base PPDs, and that folder, made from an example."""
import gzip
import json
import os
import pathlib
import re
import shutil
import subprocess

from scheduler import SERVER_BIN

SCHEME = "vorantis-autosetup"
LIBRARY = "libQZVorantisModel.so.1"
URI = "socket://192.0.2.10:9100"
MODEL = "Vorantis Z6 44in"
OTHER_MODEL = "Vorantis Z5 24in"
UPDATERS = b"*QZPPDUpdaters:"
GOOD = f"{SCHEME}:plotter1/z6.ppd"
PACKED = f"{SCHEME}:plotter1/packed.ppd.gz"
CLEAN = {name: value for name, value in os.environ.items() if name in ("PATH", "LANG", "HOME", "TMPDIR")}


# What the program writes behind the first line, and the tool does not.
STATEMENT = re.compile(rb'\A([^\n]*\n)\*VorantisSetup: "[^"]*\n[0-9a-f]{64} [0-9a-f]{64} [^"\n]*"\n\*End\n')


def without_statement(ppd):
    """The PPD without the statement of its setup; None when it has none."""
    bare, count = STATEMENT.subn(rb"\1", ppd or b"")
    return bare if count == 1 else None


def without_updaters(ppd):
    return b"".join(line for line in ppd.splitlines(keepends=True) if not line.startswith(UPDATERS))


class DriverFolder:
    def __init__(self, folder, options):
        self.folder, self.tool = folder, options.tool
        self.example = json.loads((options.examples / "pcl3/snapshot.json").read_text())
        self.base = (options.examples / "pcl3/input.ppd").read_bytes()
        self.settings, self.server_bin = folder / "settings", folder / "serverbin"
        self.libraries, self.program = folder / "libraries", folder / "program" / SCHEME
        self.wrapper = self.server_bin / "driver" / SCHEME
        self.program.parent.mkdir()
        self.libraries.mkdir()
        shutil.copy(options.program, self.program)
        shutil.copy(options.library_dir / LIBRARY, self.libraries / LIBRARY)
        self.make_server_bin()
        self.write_wrapper()
        self.reset()

    def make_server_bin(self):
        """Links to the real one; of its backends only the one that asks no network, of its drivers none."""
        for name in ("driver", "backend"):
            (self.server_bin / name).mkdir(parents=True)
        for path in pathlib.Path(SERVER_BIN).iterdir():
            if path.name not in ("driver", "backend"):
                (self.server_bin / path.name).symlink_to(path)
        (self.server_bin / "backend/socket").symlink_to(pathlib.Path(SERVER_BIN) / "backend/socket")

    def environment(self, libraries=None):
        return {"VORANTIS_AUTOSETUP_FOLDER": str(self.settings), "LD_LIBRARY_PATH": str(libraries or self.libraries)}

    def write_wrapper(self, libraries=None):
        """The script in the driver folder, with the library's folder or, for an empty text, without one."""
        variables = self.environment(libraries)
        if libraries == "":
            del variables["LD_LIBRARY_PATH"]
        exports = " ".join(f"{name}='{value}'" for name, value in variables.items())
        self.wrapper.write_text(f"#!/bin/sh\nexport {exports}\nexec '{self.program}' \"$@\"\n")
        self.wrapper.chmod(0o755)

    def reset(self):
        """A folder in which two names are listed, one for either form of the base PPD, and three more are not."""
        self.clear()
        self.snapshot("plotter1")
        self.snapshot("storeless", lambda devices: devices[0].pop("dataStore"))
        self.ppd("z6.ppd", self.base)
        self.ppd("packed.ppd.gz", gzip.compress(self.base))
        self.ppd("other.ppd", self.of_model(OTHER_MODEL))
        self.ppd("plain.ppd", without_updaters(self.base))

    def clear(self):
        shutil.rmtree(self.settings, ignore_errors=True)
        (self.settings / "ppd").mkdir(parents=True)

    def of_model(self, model):
        """The base PPD, of another model."""
        return self.base.replace(MODEL.encode(), model.encode())

    def snapshot(self, name, change=lambda devices: None, folder=None):
        snapshot = json.loads(json.dumps(self.example))
        change(snapshot["devices"])
        ((folder or self.settings) / f"{name}.json").write_text(json.dumps(snapshot, indent=1))

    def ppd(self, name, content):
        (self.settings / "ppd" / name).write_bytes(content)

    def expected(self):
        """What the tool itself makes of the base PPD."""
        environment = {**CLEAN, "LD_LIBRARY_PATH": str(self.libraries),
                       "QZVORANTISMODEL_SNAPSHOT": str(self.settings / "plotter1.json")}
        return subprocess.run([self.tool, URI, self.settings / "ppd/z6.ppd"], env=environment,
                              stdout=subprocess.PIPE, timeout=60, check=True).stdout

    def call(self, *arguments, timeout=120):
        """Calls the wrapper as the scheduler does: as an ordinary user, with next to no environment."""
        return subprocess.run([*as_nobody(), "env", "-i", self.wrapper, *arguments], capture_output=True, env=CLEAN,
                              stdin=subprocess.DEVNULL, timeout=timeout, check=False)


def as_nobody():
    if os.getuid() != 0:
        return []
    return ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]
