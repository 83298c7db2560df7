"""Sends mails of the mail library through servers and has mail programs read what arrives.

usage: serve.py BUILD PAGE [--update]

Prints which programs change, refuse or read otherwise what. BUILD is the build tree, with
make_whole_mails and Exim; PAGE is the page of the documentation with the tables. Runs in namespaces
of its own: see tools/servers.
"""
import shutil
import subprocess
import sys
import time
from pathlib import Path

import delivery
import hosts
import judge
import mails as all_mails
import told

BEGIN = "<!-- What follows is written by tools/servers --update. -->\n"
END = "<!-- What is above is written by tools/servers --update. -->\n"
PACKAGES = {"Postfix": "postfix", "msmtp": "msmtp", "opendkim": "opendkim",
            "SpamAssassin": "spamassassin", "Dovecot": "dovecot-imapd", "notmuch": "notmuch",
            "mu": "maildir-utils", "mutt": "mutt", "GNU Mailutils": "mailutils"}


def make(build):
    """The files of all mails, by Message-ID with what is in them, and what the library refuses."""
    folder = build / "mails"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    paths = {folder / f"{number:03}.eml": mail for number, mail in enumerate(all_mails.mails())}
    now = int(time.time())
    requests = [one for path, mail in paths.items() for one in all_mails.requests(path, mail, now)]
    encoded = [one if isinstance(one, bytes) else one.encode() for one in requests]
    file = build / "requests"
    file.write_bytes(b"".join(b"%d\n%s\0" % (len(one), one) for one in encoded))
    refused = hosts.run(build / "tools/serving/make_whole_mails", file).decode().splitlines()
    for mail in told.BY_HAND:
        path = folder / f"{mail.by_hand}.eml"
        path.write_bytes((hosts.HERE / "by_hand" / path.name).read_bytes().replace(b"\n", b"\r\n"))
        paths[path] = mail
    by_id = {delivery.field("Message-ID", path): (path, mail) for path, mail in paths.items()}
    return by_id, refused


def send(mails):
    """Each mail both ways. What the first servers refuse."""
    refused = []
    for path, mail in mails.values():
        for way, port in delivery.WAYS.items():
            try:
                delivery.send(path, mail, port)
            except (subprocess.CalledProcessError, OSError) as error:
                refused.append(f"{way}: {mail.label} is refused: {error}")
    delivery.wait_for(len(delivery.WAYS) * sum(len(mail.to) for _, mail in mails.values()))
    return refused


def lay_out_folder(mails, delivered):
    """One copy of each mail, from either way in turn."""
    copies, ways = {}, list(delivery.WAYS)
    for number, id in enumerate(mails):
        group = delivered.get((ways[number % 2], id))
        if group:
            copies[id] = group[0]
    folder = hosts.SRV / "read"
    for name in ["cur", "new", "tmp"]:
        (folder / name).mkdir(parents=True)
    for number, copy in enumerate(copies.values()):
        shutil.copy(copy.path, folder / f"cur/{number:03}:2,")
    hosts.run("chown", "-R", f"{hosts.USER}:{hosts.USER}", folder)
    return folder, copies


def versions():
    found = {program: hosts.run("dpkg-query", "-Wf", "${Version}", package).decode()
             for program, package in PACKAGES.items()}
    exim = hosts.run(hosts.SRV / "exim/usr/sbin/exim4", "-C", hosts.SRV / "exim/exim.conf", "-bV")
    return found | {"Exim": exim.decode().split()[2]}


def page(mails, differences, reads, numbers, version):
    """The generated part of the page."""
    ours = [mail for _, mail in mails.values() if not mail.by_hand]
    by_msmtp = [mail for mail in ours if delivery.is_for_msmtp(mail)]
    small = [mail for mail in ours
             if sum(len(part.content) for part in mail.body.leaves()) < judge.LARGEST_FOR_SPAM]

    def cell(of, program, *findings):
        bad = {id(one.mail) for one in differences if one.program == program
               and (not findings or one.finding in findings) and not one.mail.by_hand}
        excused = sorted(number for (who, finding), these in numbers.items()
                         if who == program and (not findings or finding in findings)
                         for number in these)
        count = f"{len(of) - len(bad)} of {len(of)}"
        return count + (f" ({', '.join(map(str, excused))})" if excused else "")

    rows = [["program", "version", "what it does", "mails"], ["---"] * 4]
    rows.append(["msmtp", version["msmtp"], "finds the recipients in the fields, all and no others",
                 cell(by_msmtp, "msmtp", "recipients")])
    for way in delivery.WAYS:
        first, last = way.split(", then ")
        rows.append([way, f"{version[first]}, {version[last]}", "pass every byte on to everyone",
                     cell(ours, way, "bytes")])
        signer = "opendkim" if first == "Postfix" else "Exim"
        rows.append([f"opendkim after {last}", version["opendkim"],
                     f"finds the signature good that {signer} made before",
                     cell(ours, way, "signature")])
    rows.append(["SpamAssassin", version["SpamAssassin"], "no rule fires that does not for Python",
                 cell(small, "SpamAssassin")])
    lines = ["", *("| " + " | ".join(row) + " |" for row in rows), ""]

    rows = [["reader", "version", *judge.COLUMNS], ["---"] * (2 + len(judge.COLUMNS))]
    rows += [[reader, version[reader], *(cell(ours, reader, column) if (reader, column) in reads
                                         else "–" for column in judge.COLUMNS)]
             for reader in judge.READERS]
    lines += [*("| " + " | ".join(row) + " |" for row in rows), ""]
    lines += [f"{number}. {one.program} {one.what}: `{one.mail}.eml`."
              for number, one in enumerate(told.TOLD, 1)]
    return "\n".join([*lines, "", ""])


def shorten(value):
    shown = ascii(value)
    return shown if len(shown) < 400 else f"{shown[:200]} ... {shown[-200:]}"


def main():
    build, page_path = (Path(argument).resolve() for argument in sys.argv[1:3])
    mails, wrong = make(build)
    with hosts.Hosts(build):
        wrong += send(mails)
        delivered = delivery.collect()
        wrong += [f"{way}: delivers what was not sent: {group[0].path.read_bytes()[:2000]}"
                  for (way, id), group in delivered.items() if id not in mails]
        differences = judge.compare_delivered(mails, delivered)
        folder, copies = lay_out_folder(mails, delivered)
        read, reads = judge.compare_read(mails, folder)
        differences += read + judge.compare_spam(mails, copies)
        version = versions()

    unexcused, numbers, notes = told.judge(differences)
    wrong += [f"{one.program}, {one.finding} of {one.mail.label}:\n"
              f"  sent {shorten(one.sent)}\n  found {shorten(one.found)}" for one in unexcused]
    now = page(mails, differences, reads, numbers, version)
    before, _, rest = page_path.read_text().partition(BEGIN)
    written, _, after = rest.partition(END)
    if "--update" in sys.argv:
        page_path.write_text(before + BEGIN + now + END + after)
    elif written != now:
        notes.append(f"{page_path} has other tables: tools/servers --update")
    print(now, *notes, *wrong, sep="\n")
    print(f"{len(mails)} mails: {len(wrong)} that {page_path.name} does not tell of")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
