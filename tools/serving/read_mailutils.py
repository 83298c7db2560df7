"""Reads a folder with the mail command of GNU Mailutils."""
import re

import hosts

FRAME = re.compile(rb"\+-{70,}\+\n\| Message=.*\n\| Type=.*\n\| Encoding=.*\n\+-+\+\n")
END = b"== the end of a mail ==\n"


def read(folder, mails):
    copy = hosts.copy(folder, "mailutils")
    commands = ["set nocrt", "set toplines=80", "set columns=9000", "set headline=%s"]
    for number in range(1, len(list((copy / "cur").iterdir())) + 1):
        commands += [f"top {number}", f"headers {number}", f"decode {number}",
                     f"echo {END.decode().strip()}"]
    script = hosts.SRV / "mailutils-script"
    script.write_text("\n".join([*commands, "exit\n"]))
    with open(script) as commands:
        told = hosts.run("mail.mailutils", "-n", "-N", "-f", f"maildir:{copy}", stdin=commands)
    return dict(parse(one) for one in told.split(END)[:-1])


def parse(told):
    top, *parts = FRAME.split(told)
    found = {"subject": top.decode(errors="replace").split("\n")[-2], "texts": []}
    for part in parts:
        fields, _, content = part.partition(b"\n\n")
        if not re.search(rb"^Content-Disposition: attachment", fields, re.M):
            charset = re.search(rb"^Content-Type:.*charset=(\S+)", fields, re.M | re.S)[1]
            found["texts"].append(content.decode(charset.decode()))
    return re.search(rb"^Message-ID: (.*)", top, re.M)[1].decode(), found
