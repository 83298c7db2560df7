"""Reads a folder by IMAP: what Dovecot takes apart and decodes, and what it finds."""
import email.policy
import email.utils
import imaplib
import re
from itertools import takewhile

import hosts

TOKEN = re.compile(rb'\(|\)|"((?:\\.|[^"\\])*)"|[^\s()"]+', re.S)


def parse(answer):
    """An answer to FETCH as nested lists: literals become quoted strings first."""
    flat = b""
    for piece in answer:
        if isinstance(piece, tuple):
            literal = re.sub(rb'(["\\])', rb"\\\1", piece[1])
            flat += piece[0][:piece[0].rindex(b"{")] + b'"' + literal + b'"'
        else:
            flat += piece
    stack = [[]]
    for token in TOKEN.finditer(flat):
        if token[0] == b"(":
            stack.append([])
        elif token[0] == b")":
            closed = stack.pop()
            stack[-1].append(closed)
        elif token[1] is not None:
            stack[-1].append(re.sub(rb"\\(.)", rb"\1", token[1], flags=re.S).decode())
        else:
            stack[-1].append(None if token[0] == b"NIL" else token[0].decode())
    return stack[0]


def decode(value):
    return str(email.policy.default.header_factory("Subject", value or ""))


def quote(local):
    """As it stands in the mail. IMAP gives a quoted string without its quotes."""
    return f'"{local}"' if " " in local else local


def structure(node):
    if not isinstance(node[0], list):
        return f"{node[0]}/{node[1]}".lower()
    inner = list(takewhile(lambda one: isinstance(one, list), node))
    return [node[len(inner)].lower(), *map(structure, inner)]


def leaves(node, path=()):
    if not isinstance(node[0], list):
        yield ".".join(map(str, path or (1,))), node
        return
    for number, inner in enumerate(takewhile(lambda one: isinstance(one, list), node), 1):
        yield from leaves(inner, (*path, number))


def parameters(pairs):
    """Those of a type or disposition, decoded as RFC 2231 says where Dovecot leaves that."""
    found = {}
    for name, value in email.utils.decode_params([("", ""), *zip(pairs[::2], pairs[1::2])]):
        if isinstance(value, tuple):
            value = (*value[:2], email.utils.unquote(value[2]))
        found[name.lower()] = email.utils.collapse_rfc2231_value(value)
    return found


def read(folder, mails):
    """By Message-ID; what each mail should be found by is taken from `mails`."""
    hosts.copy(folder, "imap")
    client = imaplib.IMAP4("127.0.0.1", hosts.IMAP)
    client.login("anyone", "any word")
    client.select(readonly=True)
    found = {}
    for number in range(1, int(client.untagged_responses["EXISTS"][-1]) + 1):
        answer = client.fetch(str(number), "(ENVELOPE BODYSTRUCTURE)")[1]
        items = parse(answer)[1]
        fields = dict(zip(items[::2], items[1::2]))
        envelope, body = fields["ENVELOPE"], fields["BODYSTRUCTURE"]
        one = found[envelope[9]] = {
            "subject": decode(envelope[1]),
            "to": [[decode(name), f"{quote(local)}@{domain}"]
                   for name, _, local, domain in envelope[5] or [] if domain],
            "texts": [], "names": [], "files": [], "structure": structure(body)}
        for section, leaf in leaves(body):
            fetched = client.fetch(str(number), f"(BINARY.PEEK[{section}])")[1]
            is_literal = isinstance(fetched[0], tuple)
            content = fetched[0][1] if is_literal else parse(fetched)[1][1].encode()
            is_text = leaf[0].lower() == "text"
            disposition = leaf[9 if is_text else 8]
            if disposition:
                one["names"].append(parameters(disposition[1] or []).get("filename", ""))
                one["files"].append(content)
            else:
                one["texts"].append(content.decode(parameters(leaf[2])["charset"]))
        one["search"] = search(client, number, mails[envelope[9]])
    client.logout()
    return found


def search(client, number, mail):
    """What the mail is not found by."""
    lines = [line for text in mail.texts() for line in text.content.splitlines() if line.strip()]
    needles = [("SUBJECT", mail.subject.strip()), ("BODY", max(lines, key=len, default="").strip())]
    if not mail.undisclosed:
        needles += [("TO", one.strip()) for address in mail.to[:3] for one in address
                    if one.isascii() or one == address[0]]
    missed = []
    for key, needle in needles:
        if not needle:
            continue
        client.literal = needle.encode()
        if str(number).encode() not in client.search("UTF-8", str(number), key)[1][0].split():
            missed.append([key, needle])
    return missed
