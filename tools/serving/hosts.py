"""Postfix, Exim, Dovecot and opendkim on the loopback interface, with all that they write in /srv.

What is mounted and started here is seen in the namespaces of this process only.
"""
import base64
import fcntl
import os
import shutil
import socket
import struct
import subprocess
import time
from pathlib import Path

HERE = Path(__file__).parent
SRV = Path("/srv")
USER = 2001  # to whom folders of mail belong
# Ports. Those that sign send on to the other server, to one of those that deliver.
POSTFIX, POSTFIX_DELIVERING, OPENDKIM = 2501, 2502, 2503
EXIM, EXIM_DELIVERING = 2511, 2512
IMAP = 2543


def run(*command, **more):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, **more).stdout


def raise_loopback():
    """As `ip link set lo up`."""
    with socket.socket() as any_socket:
        request = struct.pack("16sH14x", b"lo", 1 | 64)  # IFF_UP | IFF_RUNNING
        fcntl.ioctl(any_socket, 0x8914, request)  # SIOCSIFFLAGS


def lay_out(build):
    """Mounts an empty /srv from the build tree, and a list of users with Exim's."""
    root = build / "srv"
    shutil.rmtree(root, ignore_errors=True)
    root.mkdir()
    run("mount", "--bind", root, SRV)
    for name, entry in [("passwd", f"Debian-exim:x:{USER}:{USER}::/srv:/bin/false\n"),
                        ("group", f"Debian-exim:x:{USER}:\n")]:
        (SRV / name).write_text(Path("/etc", name).read_text() + entry)
        run("mount", "--bind", SRV / name, f"/etc/{name}")

    for folder in ["delivered/new", "delivered/cur", "delivered/tmp", "exim/spool", "dovecot"]:
        (SRV / folder).mkdir(parents=True)
    run("chown", "-R", f"{USER}:{USER}", SRV / "delivered", SRV / "exim/spool", SRV / "dovecot")
    shutil.copytree(build / "exim/usr", SRV / "exim/usr", symlinks=True)
    for folder in ["postfix", "postfix/queue", "postfix/data", "dkim"]:
        (SRV / folder).mkdir()
    shutil.chown(SRV / "postfix/data", "postfix")
    for name in ["main.cf", "master.cf"]:
        shutil.copy(HERE / name, SRV / "postfix")
    # Exim takes no configuration that others may write.
    shutil.copy(HERE / "exim.conf", SRV / "exim")
    os.chmod(SRV / "exim/exim.conf", 0o644)


def copy(folder, name):
    """A copy for a program that writes into what it reads."""
    shutil.copytree(folder, SRV / name)
    run("chown", "-R", f"{USER}:{USER}", SRV / name)
    return SRV / name


def make_keys():
    private = SRV / "dkim/private"
    run("openssl", "genrsa", "-out", private, "2048", stderr=subprocess.DEVNULL)
    key = run("openssl", "rsa", "-in", private, "-pubout", "-outform", "DER",
              stderr=subprocess.DEVNULL)
    record = f"v=DKIM1; k=rsa; p={base64.b64encode(key).decode()}"
    (SRV / "dkim/public").write_text(f"mail._domainkey.example.org {record}\n")
    shutil.chown(private, USER)


def wait_for(port):
    for _ in range(300):
        with socket.socket() as client:
            if client.connect_ex(("127.0.0.1", port)) == 0:
                return
        time.sleep(0.1)
    raise RuntimeError(f"nothing listens on port {port}")


class Hosts:
    """Started on entry, ended by their process ids on exit."""

    def __init__(self, build):
        self.build, self.processes = build, []

    def start(self, *command):
        with open(SRV / "output", "ab") as output:
            self.processes.append(subprocess.Popen(command, stdout=output, stderr=output))

    def __enter__(self):
        raise_loopback()
        lay_out(self.build)
        make_keys()
        self.start("opendkim", "-f", "-x", HERE / "sign.conf")
        self.start("postfix", "-c", SRV / "postfix", "start-fg")
        self.start(SRV / "exim/usr/sbin/exim4", "-C", SRV / "exim/exim.conf", "-bdf")
        self.start("dovecot", "-F", "-c", HERE / "dovecot.conf")
        for port in [OPENDKIM, POSTFIX, POSTFIX_DELIVERING, EXIM, EXIM_DELIVERING, IMAP]:
            wait_for(port)
        return self

    def __exit__(self, *_):
        for process in self.processes:
            process.terminate()
        for process in self.processes:
            try:
                process.wait(10)
            except subprocess.TimeoutExpired:
                process.kill()
