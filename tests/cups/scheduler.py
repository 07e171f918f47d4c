# SPDX-License-Identifier: MIT
"""A private CUPS scheduler, on a loopback port, with folders of its own."""
import os
import pwd
import socket
import subprocess
import sys
import time
import urllib.error
import urllib.request

CUPSD = "/usr/sbin/cupsd"
SERVER_BIN = "/usr/lib/cups"
FILES_CONF = """ServerRoot {0}/etc
StateDir {0}/run
CacheDir {0}/cache
RequestRoot {0}/spool
TempDir {0}/spool/tmp
DocumentRoot /usr/share/cups/doc-root
DataDir /usr/share/cups
ServerBin {3}
AccessLog {0}/log/access_log
ErrorLog {0}/log/error_log
PageLog {0}/log/page_log
Printcap
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
WebInterface {1}
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
    """A private cupsd, as an ordinary user; if the caller is root and wants that, as root, with lp for its helpers."""

    def __init__(self, folder, environment=None, as_root=False, server_bin=SERVER_BIN, web_interface=False):
        self.folder, self.port, self.environment, self.as_root = folder, free_port(), environment, as_root
        self.server_bin, self.web_interface = server_bin, "Yes" if web_interface else "No"
        self.address = f"127.0.0.1:{self.port}"

    def __enter__(self):
        for name in ("etc/ppd", "run/certs", "cache", "spool/tmp", "log"):
            (self.folder / name).mkdir(parents=True)
        self.folder.chmod(0o755)
        user, command = self.account()
        (self.folder / "etc/cups-files.conf").write_text(FILES_CONF.format(self.folder, *user, self.server_bin))
        (self.folder / "etc/cupsd.conf").write_text(CUPSD_CONF.format(self.port, self.web_interface))
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
        """The user and group of the configuration, and the command that makes the scheduler run as them."""
        if os.getuid() != 0:
            return (pwd.getpwuid(os.getuid()).pw_name, "nogroup"), []
        if self.as_root:
            return ("lp", "lp"), []
        for path in (self.folder, *self.folder.rglob("*")):
            os.chown(path, 65534, 65534)
        return ("nobody", "nogroup"), ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"]

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def attempt(self, program, *arguments):
        return subprocess.run([program, "-h", self.address, *arguments], capture_output=True, text=True,
                              errors="replace", timeout=120, check=False)

    def command(self, program, *arguments):
        result = self.attempt(program, *arguments)
        result.check_returncode()
        return result.stdout

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
