"""Compares what arrived, and what programs read in it, with what was sent."""
from pathlib import Path

import delivery
import hosts
import python_mail
import read_dovecot
import read_mailutils
import read_mu
import read_mutt
import read_notmuch
from mails import texts
from told import Difference

READERS = {"Dovecot": read_dovecot, "notmuch": read_notmuch, "mu": read_mu, "mutt": read_mutt,
           "GNU Mailutils": read_mailutils}
LARGEST_FOR_SPAM = 500_000  # bytes: SpamAssassin's client asks no further


def structure(part):
    if not part.parts:
        return part.type.partition(";")[0]
    return [part.type.partition("/")[2], *map(structure, part.parts)]


def right(mail, shows):
    """What a reader should find that shows texts of these types."""
    return {
        "subject": mail.subject,
        "to": [] if mail.undisclosed else [[name, delivery.to_ascii_domain(address)]
                                           for name, address in mail.to],
        "texts": [texts.line_ends(leaf.content) for leaf in mail.texts() if shows(leaf.type)],
        "names": [leaf.name for leaf in mail.files()],
        "files": [leaf.content for leaf in mail.files()],
        "structure": structure(mail.body),
        "search": [],
    }


COLUMNS = ["subject", "to", "texts", "names", "files", "structure", "search"]


def normal(found, right):
    """What a reader found, in the form of right(). What it shows as one text is taken apart."""
    found = dict(found)
    if "to" in found:
        found["to"] = [[name, delivery.to_ascii_domain(address)] for name, address in found["to"]]
    if "texts" in found:
        found["texts"] = [text.replace("\r\n", "\n") for text in found["texts"]]
    if "body" in found:
        body, found["texts"] = found.pop("body").replace("\r\n", "\n"), []
        for text in right["texts"]:
            before, text, body = body.partition(text)
            found["texts"] += [before + text] if before.strip("\n") else [text]
        found["texts"] += [body] if body.strip("\n") else []
    return found


def compare_delivered(mails, delivered):
    """What came otherwise than it was sent, by way: to whom, which bytes, with what signature."""
    differences = []
    verified = delivery.verified([group[0].path for group in delivered.values()])
    for way in delivery.WAYS:
        for id, (path, mail) in mails.items():
            group = delivered.get((way, id), [])
            recipients = sorted(copy.recipient for copy in group)
            sent_to = sorted(delivery.to_ascii_domain(address) for _, address in mail.to)
            if recipients != sent_to:
                sender = "msmtp" if delivery.is_for_msmtp(mail) else way
                differences.append(Difference(sender, "recipients", mail, sent_to, recipients))
            sent = path.read_bytes().replace(b"\r\n", b"\n")
            differences += [Difference(way, "bytes", mail, sent, copy.rest)
                            for copy in group if copy.rest != sent]
            differences += [Difference(way, "signature", mail, "good", "bad")
                            for copy in group[:1] if copy.path not in verified]
    return differences


def compare_read(mails, folder):
    """What readers read otherwise, and which of them read what at all."""
    differences, reads = [], set()
    for reader, module in READERS.items():
        shows = getattr(module, "shows", lambda type: True)
        found = module.read(folder, {id: mail for id, (_, mail) in mails.items()})
        for id, (_, mail) in mails.items():
            value = right(mail, shows)
            got = normal(found.get(id, {"subject": "no such mail"}), value)
            reads |= {(reader, column) for column in got}
            differences += [Difference(reader, column, mail, value[column], got[column])
                            for column in got if got[column] != value[column]]
    return differences, reads


def compare_spam(mails, copies):
    """Rules that a mail fires and the same one by Python does not."""
    folder = hosts.SRV / "spam"
    folder.mkdir()
    paths, asked = [], []
    for number, (id, copy) in enumerate(copies.items()):
        path, mail = mails[id]
        if path.stat().st_size > LARGEST_FOR_SPAM:
            continue
        asked.append(mail)
        by_python = python_mail.write(mail, delivery.field("Date", path), id)
        for writer, rest in [("ours", copy.rest), ("python", by_python.replace(b"\r\n", b"\n"))]:
            paths.append(folder / f"{number:03}-{writer}")
            paths[-1].write_bytes(copy.front + rest)
    lines = hosts.run("perl", hosts.HERE / "spam.pl", *paths).decode().splitlines()
    rules = {Path(path): set(names.split(",")) for path, names in (one.split(" ") for one in lines)}
    return [Difference("SpamAssassin", rule, mail, None, None)
            for mail, ours, python in zip(asked, paths[::2], paths[1::2], strict=True)
            for rule in sorted(rules[ours] - rules[python])]
