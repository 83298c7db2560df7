"""Sends mails through two servers each, and finds what became of them."""
import email.parser
import email.policy
import re
import smtplib
import subprocess
import time
from pathlib import Path

import hosts

# The servers of each way, and the port of the first.
WAYS = {"Postfix, then Exim": hosts.POSTFIX, "Exim, then Postfix": hosts.EXIM}
NEW = hosts.SRV / "delivered/new"
PATIENCE = 60  # seconds without a mail


def is_for_msmtp(mail):
    """Whether msmtp can find the recipients in the fields, and knows what the addresses need."""
    return not mail.undisclosed and not mail.needs_smtputf8()


def send(path, mail, port):
    """To the first server of a way: by msmtp, or by Python, which asks for SMTPUTF8."""
    sender = mail.sender[1]
    if is_for_msmtp(mail):
        with open(path, "rb") as file:
            subprocess.run(["msmtp", "-C", "/dev/null", "--host=127.0.0.1", f"--port={port}",
                            f"--from={sender}", "--domain=msmtp.example", "-t"],
                           stdin=file, check=True)
        return
    recipients = [to_ascii_domain(address) for _, address in mail.to]
    options = ["SMTPUTF8", "BODY=8BITMIME"] if mail.needs_smtputf8() else []
    with smtplib.SMTP("127.0.0.1", port, "python.example") as client:
        client.sendmail(sender, recipients, path.read_bytes(), options)


def to_ascii_domain(address):
    local, _, domain = address.rpartition("@")
    return address if domain.startswith("[") else f"{local}@{domain.encode('idna').decode()}"


def wait_for(count):
    """Waits until so many mails were delivered, or none for a while."""
    last, since = -1, time.monotonic()
    while (found := len(list(NEW.iterdir()))) < count and time.monotonic() < since + PATIENCE:
        if found != last:
            last, since = found, time.monotonic()
        time.sleep(0.2)


def field(name, path):
    return re.search(rf"^{name}: *(.*)\r$", path.read_bytes().decode(), re.M)[1]


class Delivered:
    """A mail as it lies in a folder: what the servers put in front, and the rest."""

    def __init__(self, path):
        self.path = path
        whole = path.read_bytes()
        self.id = re.search(rb"^Message-ID: *(\S+)", whole, re.M | re.I)[1].decode()
        end = re.search(rb"^Date: ", whole, re.M).start()
        self.front, self.rest = whole[:end], whole[end:]
        fields = email.parser.BytesHeaderParser(policy=email.policy.compat32).parsebytes(self.front)
        self.way = list(WAYS)[0 if fields["Envelope-to"] else 1]  # which only Exim writes
        front = self.front.decode()
        self.recipient = re.search(r"^(?:Envelope-to|X-Original-To): (.*)", front, re.M)[1]


def collect():
    """What was delivered, by way and Message-ID. Bounces are there, too."""
    found = {}
    for path in NEW.iterdir():
        one = Delivered(path)
        found.setdefault((one.way, one.id), []).append(one)
    return found


def verified(paths):
    """Those whose signature is good."""
    command = ["opendkim", "-x", hosts.HERE / "verify.conf", "-t", ",".join(map(str, paths))]
    told = subprocess.run(command, stdout=subprocess.PIPE).stdout
    good = re.findall(rb"^opendkim: (\S+): verification \(.*d=example.org, .*\) succeeded$", told,
                      re.M)
    return {Path(path.decode()) for path in good}
