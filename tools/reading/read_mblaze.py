"""Reads mails with mblaze's commands: a line of JSON for each."""
import base64
import json
import re
import subprocess
import sys


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout


def lines(*command):
    return run(*command).decode(errors="replace").removesuffix("\n").split("\n")


def address(line):
    """maddr prints a name as it would stand in a mail: in quotes where it needs them."""
    name, address = re.fullmatch(r"(?:(.*) )?<?(.*?)>?", line, re.DOTALL).groups()
    if name and name[0] == name[-1] == '"' != name:
        name = re.sub(r"\\(.)", r"\1", name[1:-1])
    return [name, address]


for path in sys.argv[1:]:
    # The mail itself is listed first, then what it is made of, if it is more than a text.
    parts = lines("mshow", "-t", path)[1:]
    found = {
        "mail": path,
        "subject": "\n".join(lines("mhdr", "-d", "-h", "subject", path)),
        "to": [address(line) for line in lines("maddr", "-h", "to", path)],
        "cc": [address(line) for line in lines("maddr", "-h", "cc", path)],
        "references": "\n".join(lines("mhdr", "-h", "references", path)),
        "bytes": base64.b64encode(run("mshow", "-O", path, str(min(len(parts), 2)))).decode(),
    }
    if len(parts) > 2:
        found["filename"] = re.sub(r'.*? size=\d+(?: name="(.*)")?', r"\1", parts[2])
        found["data"] = base64.b64encode(run("mshow", "-O", path, "3")).decode()
    print(json.dumps(found))
