#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Gives the CUPS driver program to a real scheduler, a private one on a loopback port with folders of its own.

What is listed must reach lpinfo, a queue made with a listed name must have the tool's own result as its PPD, a failure
must leave the queues as they were and its reason in the scheduler's log, names that are not listed must get nothing,
and the program may write no file and open no socket. With --browser a printer is added through the web interface too.
"""
import argparse
import gzip
import hashlib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import urllib.error

import browser
import driver_limits
from checks import Checks
from driver_folder import CLEAN, GOOD, LIBRARY, MODEL, OTHER_MODEL, PACKED, SCHEME, URI, DriverFolder, as_nobody
from driver_folder import without_statement, without_updaters
from scheduler import CUPSD, Scheduler

MAKE_AND_MODEL = f"{MODEL}, media of plotter1"
# Both base PPDs are of the same model, so their files tell them apart.
SHOWN = {name: f"{MAKE_AND_MODEL} ({name.rpartition('/')[2]})" for name in (PACKED, GOOD)}
LISTED = "".join(f'"{name}" en "Vorantis" "{shown}" "MFG:Vorantis;MDL:{MODEL};"\n' for name, shown in SHOWN.items())
CUSTOM_MEDIA = {"Custom1", "Custom2"}
PATIENCE = 10
REASON = re.compile(r"^E \[[^\]]*\] \[[^\]]*\] vorantis-autosetup: (.+)$", re.MULTILINE)
BAD_STATEMENT = b"*OrderDependency: none\n"
AT_ONCE = 50
PACKAGES = "cups-daemon, cups-client, strace, util-linux"


def add_queue(scheduler, queue, name):
    """What lpadmin says of the queue, and the seconds that it took."""
    started = time.monotonic()
    result = scheduler.attempt("lpadmin", "-p", queue, "-v", URI, "-m", name, "-E")
    return result, time.monotonic() - started


def ppd_of(scheduler, queue):
    """The queue's PPD; None without a queue."""
    try:
        return scheduler.ppd_of(queue)
    except urllib.error.HTTPError:
        return None


def media_of(scheduler, queue):
    """The choices of MediaType that the queue lists; none without a queue."""
    return scheduler.choices(queue, "MediaType") if ppd_of(scheduler, queue) else []


def own_models(scheduler):
    """The lines of lpinfo that come from the program."""
    lines = scheduler.command("lpinfo", "-m").splitlines()
    return sorted(line for line in lines if line.startswith(SCHEME + ":"))


def check_list(checks, driver, scheduler):
    listed = driver.call("list")
    checks.expect_same("list prints both forms of the base PPD, sorted, and nothing of what does not belong together",
                       (listed.returncode, listed.stdout.decode()), (0, LISTED))
    checks.expect_same("lpinfo -m shows the same", own_models(scheduler),
                       [f"{name} {shown}" for name, shown in SHOWN.items()])
    driver.snapshot("pair", lambda devices: devices.append({**devices[0], "uri": "socket://192.0.2.11:9100"}))
    names = re.findall(r'^"([^"]*/z6\.ppd)"', driver.call("list").stdout.decode(), re.MULTILINE)
    checks.expect_same("a snapshot's second device has a name of its own", sorted(names),
                       sorted([GOOD, f"{SCHEME}:pair/z6.ppd", f"{SCHEME}:pair+2/z6.ppd"]))
    driver.reset()


def check_queues(checks, driver, scheduler):
    expected = driver.expected()
    for queue, name in (("plotter", GOOD), ("packed", PACKED)):
        result, seconds = add_queue(scheduler, queue, name)
        checks.expect(f"{name} makes a queue, in {seconds:.2f} s", result.returncode == 0 and seconds < PATIENCE)
        choices = media_of(scheduler, queue)
        checks.expect(f"{name}: the queue lists {' '.join(choices)}", CUSTOM_MEDIA <= set(choices))
        checks.expect(f"{name}: its PPD is the tool's own result, byte for byte", without_statement(ppd_of(scheduler, queue)) == expected)


def change_devices(change):
    return lambda driver: driver.snapshot("plotter1", change)


def named_medium(name):
    def change(devices):
        devices[0]["dataStore"]["VMCustomMediaStorage"]["MediaInfo"]["4711"]["Name"] = name
    return change_devices(change)


def unusable_library(driver):
    folder = driver.folder / "unusable"
    folder.mkdir()
    (folder / LIBRARY).write_text("no library\n")
    driver.write_wrapper(folder)


FAILURES = {
    "a snapshot that is no JSON": lambda driver: (driver.settings / "plotter1.json").write_text("{"),
    "no snapshot": lambda driver: (driver.settings / "plotter1.json").unlink(),
    "no device": change_devices(lambda devices: devices.clear()),
    "a device without data store": change_devices(lambda devices: devices[0].pop("dataStore")),
    "no PPD": lambda driver: (driver.settings / "ppd/z6.ppd").unlink(),
    "a PPD of another model": lambda driver: driver.ppd("z6.ppd", driver.of_model(OTHER_MODEL)),
    "a PPD without updaters": lambda driver: driver.ppd("z6.ppd", without_updaters(driver.base)),
    "a PPD that CUPS does not load": lambda driver: driver.ppd("z6.ppd", driver.base + BAD_STATEMENT),
    "a PPD that was cut off": lambda driver: driver.ppd("z6.ppd", driver.base[:driver.base.rindex(b"*CloseUI")]),
    "a gzip PPD that was cut off": lambda driver: driver.ppd("z6.ppd", gzip.compress(driver.base)[:-9]),
    "a medium whose name is a command": named_medium('Canvas: ""\n*FoomaticRIPCommandLine: "touch /tmp/owned"'),
    "a medium whose name opens a quote": named_medium('Canvas: 24" roll'),
    # Where the library is installed, the loader finds it without the wrapper, and this fails: remove it there.
    "no library": lambda driver: driver.write_wrapper(""),
    "a library that cannot be used": unusable_library,
}


def reasons(scheduler, start, count):
    """The reasons logged after the log's first start characters; waits until there are so many, at most 5 s."""
    for _ in range(50):
        found = REASON.findall(scheduler.log()[start:])
        if len(found) >= count:
            break
        time.sleep(0.1)
    return found


def check_failure(checks, driver, scheduler, what, checksum):
    start = len(scheduler.log())
    results = [add_queue(scheduler, queue, GOOD)[0].returncode for queue in ("fresh", "plotter")]
    checks.expect(f"{what}: no queue is made", results[0] != 0 and ppd_of(scheduler, "fresh") is None and
                  "fresh" not in scheduler.attempt("lpstat", "-v").stdout)
    kept = ppd_of(scheduler, "plotter")
    checks.expect(f"{what}: a queue keeps its PPD", results[1] != 0 and kept is not None and
                  hashlib.sha256(kept).digest() == checksum)
    found = reasons(scheduler, start, 2)
    checks.expect(f"{what}: the scheduler logs why: {' | '.join(sorted(set(found))) or 'nothing'}", len(found) >= 2)
    direct = driver.call("cat", GOOD)
    errors = [line for line in direct.stderr.decode().splitlines() if line.startswith(f"ERROR: {SCHEME}: ")]
    checks.expect(f"{what}: called directly it prints nothing and one error", len(errors) == 1 and
                  (direct.returncode, direct.stdout) == (1, b""))


def check_failures(checks, driver, scheduler):
    checksum = hashlib.sha256(ppd_of(scheduler, "plotter")).digest()
    for what, spoil in FAILURES.items():
        spoil(driver)
        if spoil is FAILURES["a PPD that CUPS does not load"]:
            made = re.findall(rb"^\*MediaType (Custom\d+)/", driver.expected(), re.MULTILINE)
            checks.expect(f"{what}: the tool itself sets it up", len(made) == len(CUSTOM_MEDIA))
        check_failure(checks, driver, scheduler, what, checksum)
        driver.reset()
        driver.write_wrapper()
    again, _ = add_queue(scheduler, "fresh", GOOD)
    checks.expect("after that the same name makes a queue again", again.returncode == 0)


def unlisted_names(driver):
    """Names that no list has; those with a path lead to a snapshot and a PPD that are there."""
    outside = driver.folder / "outside"
    outside.mkdir()
    driver.snapshot("plotter2", folder=outside)
    (outside / "z6.ppd").write_bytes(driver.base)
    rests = ["", "plotter1", "plotter1/", "/z6.ppd", "plotter1/none.ppd", "none/z6.ppd", "plotter1/other.ppd",
             "plotter1/plain.ppd", "storeless/z6.ppd", "plotter1+1/z6.ppd", "plotter1+2/z6.ppd", "plotter1.json/z6.ppd",
             "plotter1/z6", "plotter1/packed.ppd", "plotter1//z6.ppd", "plotter1/z6.ppd/", "plotter1/z6.ppd\n",
             "plotter1/Z6.ppd", "plotter1/./z6.ppd", "./plotter1/z6.ppd", "../outside/plotter2/z6.ppd",
             "plotter1/../ppd/z6.ppd", "plotter1/../../outside/z6.ppd", "../settings/plotter1/z6.ppd",
             f"{outside}/plotter2/z6.ppd", f"plotter1/{outside}/z6.ppd", f"{driver.settings}/plotter1/z6.ppd",
             "/etc/passwd", "plotter1//etc/passwd", "*/z6.ppd", "plotter1/*.ppd", "n" * 5000 + "/z6.ppd"]
    names = ["", "plotter1/z6.ppd", "other:plotter1/z6.ppd", SCHEME, str(driver.settings / "ppd/z6.ppd"),
             "../settings/ppd/z6.ppd", " " + GOOD, GOOD.upper()]
    return [f"{SCHEME}:{rest}" for rest in rests] + names


def check_names(checks, driver):
    good = driver.call("cat", GOOD)
    checks.expect("called directly, a listed name gets the tool's own result",
                  (good.returncode, without_statement(good.stdout)) == (0, driver.expected()))
    for name in unlisted_names(driver):
        result = driver.call("cat", name)
        shown = name if len(name) < 100 else f"{name[:40]}… ({len(name)} characters)"
        checks.expect(f"not listed, so status 1 and nothing printed: {shown!r}",
                      (result.returncode, result.stdout) == (1, b"") and result.stderr.startswith(b"ERROR: "))
    for arguments in ((), ("cat",), ("list", "more"), ("cat", GOOD, "more"), ("show",), ("--list",)):
        result = driver.call(*arguments)
        checks.expect_same(f"wrong usage has status 2: {' '.join(arguments) or 'no argument'}",
                           (result.returncode, result.stdout), (2, b""))


CHANGING_CALLS = ["creat", "rename", "renameat", "renameat2", "unlink", "unlinkat", "mkdir", "mkdirat", "link",
                  "linkat", "symlink", "symlinkat", "mknod", "mknodat", "truncate", "ftruncate", "chmod", "fchmod",
                  "fchmodat"]
SOCKET_CALLS = ["socket", "socketpair", "connect"]
TRACED = ",".join("?" + name for name in ["open", "openat", "openat2", *CHANGING_CALLS, *SOCKET_CALLS])


def trace(driver, *command):
    """The traced system calls of a command run as an ordinary user, a line each, and its exit status."""
    folder = driver.folder / "trace"
    folder.mkdir(exist_ok=True)
    folder.chmod(0o777)
    file = folder / "calls"
    result = subprocess.run([*as_nobody(), "strace", "-f", "-o", file, "-e", f"trace={TRACED}", *command],
                            env={**CLEAN, **driver.environment()}, capture_output=True, timeout=120, check=False)
    calls = file.read_text(errors="replace").splitlines()
    file.unlink()
    return calls, result.returncode


def writes(calls):
    """The calls that write or change a file, /dev excepted, or try to."""
    changing = re.compile(rf"\b({'|'.join(CHANGING_CALLS)})\(")
    opening = re.compile(r"\bopen(at|at2)?\(.*\b(O_WRONLY|O_RDWR|O_CREAT)\b")
    return [call for call in calls if changing.search(call) or opening.search(call) and '"/dev/' not in call]


def sockets(calls):
    return [call for call in calls if re.search(rf"\b({'|'.join(SOCKET_CALLS)})\(", call)]


def check_traces(checks, driver):
    calls, _ = trace(driver, "cp", "/etc/hostname", driver.folder / "trace/copy")
    checks.expect("the trace shows a file that is written", len(writes(calls)) == 1)
    calls, _ = trace(driver, "bash", "-c", ": </dev/udp/127.0.0.1/9")
    checks.expect("the trace shows a socket", sockets(calls))
    for arguments, status in ((["list"], 0), (["cat", GOOD], 0), (["cat", PACKED], 0), (["cat", GOOD + "x"], 1)):
        calls, found = trace(driver, driver.program, *arguments)
        what = " ".join(arguments)
        used = any(str(driver.settings) in call or "plotter1.json" in call for call in calls)
        checks.expect(f"{what}: the trace shows that the folder is read; status {found}", used and found == status)
        opened = [call for call in calls if re.search(r"\bopen.*/ppd/z6\.ppd", call)]
        checks.expect(f"{what}: reads the base PPD once", arguments != ["cat", GOOD] or len(opened) == 1)
        checks.expect_same(f"{what}: writes no file", writes(calls), [])
        checks.expect_same(f"{what}: opens no socket", sockets(calls), [])


def check_many_queues(checks, driver, scheduler):
    started = time.monotonic()
    queues = [f"many{number}" for number in range(AT_ONCE)]
    running = [subprocess.Popen(["lpadmin", "-h", scheduler.address, "-p", queue, "-v", URI, "-m", GOOD, "-E"],
                                stderr=subprocess.DEVNULL) for queue in queues]
    ended = sum(process.wait() == 0 for process in running)
    seconds = time.monotonic() - started
    checks.expect(f"{ended} of {AT_ONCE} queues made at once, in {seconds:.1f} s", ended == AT_ONCE)
    expected = driver.expected()
    right = sum(without_statement(ppd_of(scheduler, queue)) == expected for queue in queues)
    checks.expect(f"{right} of them have the right PPD", right == AT_ONCE)


def check_large_folder(checks, driver, scheduler):
    lines = driver_limits.fill(driver)
    started = time.monotonic()
    listed = driver.call("list", timeout=600)
    seconds = time.monotonic() - started
    names = re.findall(r'^"([^"]*)" en "Vorantis" "', listed.stdout.decode(), re.MULTILINE)
    checks.expect_same("list with 100 snapshots of 100 media and 100 PPDs of 200 KB", len(names), lines)
    checks.expect("these are all different and sorted", names == sorted(set(names)) and listed.returncode == 0)
    print(f"        figure: list took {seconds:.2f} s for {lines} lines")
    started = time.monotonic()
    checks.expect_same("lpinfo -m shows them all", len(own_models(scheduler)), lines)
    print(f"        figure: lpinfo -m took {time.monotonic() - started:.2f} s")
    result, seconds = add_queue(scheduler, "large", names[len(names) // 2] if names else GOOD)
    choices = media_of(scheduler, "large")
    checks.expect(f"a queue made from among them lists {len(choices)} media", result.returncode == 0 and
                  len([name for name in choices if name.startswith("Custom")]) == driver_limits.MEDIA)
    print(f"        figure: lpadmin took {seconds:.2f} s, for which every other client waits")
    driver.reset()


def check_odd_names(checks, driver, scheduler):
    """The scheduler stops reading a driver's list at a line that it cannot take."""
    for what, spoil in driver_limits.ODDITIES.items():
        spoil(driver)
        shown = own_models(scheduler)
        checks.expect(f"{what}: the others are still shown, {len(shown)} in all",
                      {f"{name} {text}" for name, text in SHOWN.items()} <= set(shown))
        driver.reset()


def check_quoting(checks, driver, scheduler):
    """lpadmin puts backslashes into the name that it sends."""
    for number, snapshot in enumerate(("it's", "back\\slash", "two''s", "end\\")):
        driver.snapshot(snapshot)
        name = f"{SCHEME}:{snapshot}/z6.ppd"
        result, _ = add_queue(scheduler, f"quoted{number}", name)
        checks.expect(f"{name}: listed, and makes a queue", result.returncode == 0 and
                      any(line.startswith(f"{name} ") for line in own_models(scheduler)) and
                      CUSTOM_MEDIA <= set(media_of(scheduler, f"quoted{number}")))
    driver.reset()


def check_messages(checks, driver):
    """What is said names the setup, and is a few readable lines."""
    driver.snapshot("plotter1", lambda devices: driver_limits.with_media(devices, 300, MODEL))
    lines = driver.call("cat", GOOD).stderr.decode().splitlines()
    checks.expect("300 warnings are a line with a count, which names the setup", lines and len(lines) < 10 and
                  any(" (and 299 more) [" in line for line in lines) and
                  all(line.startswith(f"WARNING: {SCHEME}: plotter1/z6.ppd: ") and len(line) < 700 for line in lines))
    driver.reset()
    driver.ppd("cut.ppd", driver.base[:driver.base.rindex(b"*CloseUI")])
    (driver.settings / "bad.json").write_text("{")
    (driver.settings / "ppd/secret.ppd").write_bytes(driver.base)
    (driver.settings / "ppd/secret.ppd").chmod(0)
    said = driver.call("list").stderr.decode()
    for name in ("cut.ppd", "bad.json", "secret.ppd", "plain.ppd", "storeless.json"):
        checks.expect(f"list tells that it leaves out {name}", any(name in line for line in said.splitlines()))
    driver.reset()
    driver.settings.chmod(0)
    listed, cat = driver.call("list"), driver.call("cat", GOOD)
    driver.settings.chmod(0o755)
    checks.expect("a folder without permission says so", b"Permission denied" in listed.stderr and
                  b"Permission denied" in cat.stderr and cat.returncode == 1)


def check_browser(checks, driver, scheduler, folder):
    (driver.settings / "ppd/packed.ppd.gz").unlink()
    try:
        with browser.Browser(folder / "browser") as pages:
            models = browser.add_printer(pages, scheduler.address, "byhand", URI, "Vorantis", GOOD)
            media = browser.media_types(pages, scheduler.address, "byhand")
    except TimeoutError as problem:
        checks.expect(f"browser: {problem}", False)
        return
    checks.expect(f"browser: the model is offered once: {dict(models).get(GOOD)}",
                  [name for name, text in models if text.startswith(MAKE_AND_MODEL)] == [GOOD])
    names, texts = {name for name, _ in media}, {text for _, text in media}
    checks.expect(f"browser: the printer's options show {', '.join(text for _, text in media)}",
                  CUSTOM_MEDIA <= names and {"My Canvas", "Proof White"} <= texts)
    checks.expect("browser: the queue has the tool's own result as its PPD, byte for byte",
                  without_statement(ppd_of(scheduler, "byhand")) == driver.expected())
    driver.reset()


def run(checks, options, folder):
    driver = DriverFolder(folder, options)
    parts = [check_list, check_queues, check_failures, check_quoting, check_odd_names, check_many_queues, check_large_folder]
    with Scheduler(folder / "cupsd", CLEAN, as_root=True, server_bin=driver.server_bin,
                   web_interface=True) as scheduler:
        work = [(part.__name__, part, (driver, scheduler)) for part in parts]
        work += [(part.__name__, part, (driver,)) for part in (check_names, check_messages, check_traces)]
        if options.browser:
            work.append((check_browser.__name__, check_browser, (driver, scheduler, folder)))
        for name, part, arguments in work:
            started = time.monotonic()
            part(checks, *arguments)
            print(f"        figure: {name} took {time.monotonic() - started:.1f} s", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--program", type=pathlib.Path, required=True)
    parser.add_argument("--tool", required=True)
    parser.add_argument("--library-dir", type=pathlib.Path, required=True)
    parser.add_argument("--examples", type=pathlib.Path, required=True)
    parser.add_argument("--browser", action="store_true")
    options = parser.parse_args()
    for program in (CUPSD, "lpadmin", "lpinfo", "lpoptions", "strace", "setpriv"):
        if shutil.which(program) is None:
            sys.exit(f"NOT TESTED: {program} is not installed (packages {PACKAGES})")
    if options.browser and browser.missing():
        sys.exit(f"NOT TESTED: not installed: {browser.missing()} (packages {browser.PACKAGES})")
    checks = Checks()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        run(checks, options, folder)
    return checks.status()


if __name__ == "__main__":
    sys.exit(main())
