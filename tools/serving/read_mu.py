"""Reads a folder with mu."""
import json
import re
import tempfile
from pathlib import Path

import hosts

FIELDS = re.compile(r"\A(?:(?:From|To|Subject|Date|Attachments): .*\n)+")


def shows(type):
    return type == "text/plain"


def read(folder, mails):
    home = f"--muhome={hosts.SRV / 'mu'}"
    hosts.run("mu", "init", home, f"--maildir={folder}")
    hosts.run("mu", "index", home, "--quiet")
    found = {}
    for mail in json.loads(hosts.run("mu", "find", home, "--format=json", "")):
        path = mail[":path"]
        saved = extract(home, path)
        found[f"<{mail[':message-id']}>"] = {
            "subject": mail.get(":subject", ""),
            "to": [[one.get(":name", ""), one[":email"]] for one in mail.get(":to", [])],
            "body": FIELDS.sub("", hosts.run("mu", "view", home, path).decode()),
            "names": [name for name, _ in saved],
            "files": [data for _, data in saved],
        }
    return found


def extract(home, path):
    listed = hosts.run("mu", "extract", home, path).decode()
    found = []
    for number, name in re.findall(r"^  (\d+) (.*) \S+/\S+ \[attachment\]", listed, re.M):
        with tempfile.TemporaryDirectory() as folder:
            hosts.run("mu", "extract", home, f"--parts={number}", f"--target-dir={folder}", path)
            saved, = Path(folder).iterdir()
            found.append(["" if name == "<none>" else name, saved.read_bytes()])
    return found
