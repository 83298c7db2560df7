"""Has mutt print a folder, decoded, from a terminal of its own."""
import email.utils
import os
import pty
import re

import hosts

# What is typed: all mails, each printed by itself.
SETTINGS = """
set charset=utf-8 mailcap_path=/dev/null wait_key=no
set print=yes print_decode=yes print_split=yes print_command='cat >"$(mktemp /srv/mutt/XXXXXX)"'
ignore *
unignore message-id to subject
push "<tag-pattern>~A<enter><tag-prefix><print-message><exit>"
"""


def shows(type):
    return type != "text/html"


def read(folder, mails):
    printed = hosts.SRV / "mutt"
    printed.mkdir()
    settings = hosts.SRV / "muttrc"
    settings.write_text(SETTINGS)
    os.environ |= {"TERM": "xterm", "LC_ALL": "C.UTF-8"}
    with open(hosts.SRV / "mutt-screen", "wb") as screen:
        def keep(terminal):
            data = os.read(terminal, 1024)
            screen.write(data)
            return data[:0] or b"."  # an empty one would be the end
        stdout = os.dup(1)
        os.dup2(os.open(os.devnull, os.O_WRONLY), 1)
        pty.spawn(["timeout", "--foreground", "60", "mutt", "-n", "-R", "-F", str(settings), "-f",
                   str(folder)], keep, lambda _: b"")
        os.dup2(stdout, 1)
    return dict(map(parse, printed.iterdir()))


def parse(path):
    head, _, body = path.read_bytes().decode().partition("\n\n")
    fields = dict(field.split(": ", 1) for field in re.split(r"\n(?! )", head) if ": " in field)
    fields = {name: value.replace("\n", "") for name, value in fields.items()}
    addresses = email.utils.getaddresses([fields.get("To", "")])
    return fields["Message-ID"], {
        "subject": fields.get("Subject", ""),
        "to": [list(one) for one in addresses if one[1]],
        "body": body.removesuffix("\f"),
    }
