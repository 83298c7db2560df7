"""What programs are known to make of right mails, and which mails, written by hand, show it.

It is excused only in a run in which such a mail, sent with the others, is read just so.
"""
from typing import Any, Callable, NamedTuple

from mails import Mail, text

QUOTES = 'Dr. "J" (Klein), \\ <x@y>'

BY_HAND = [
    Mail("by hand", "Hello", [("Doe", '"john doe"@example.org')], text("Hello\n"),
         by_hand="quoted-local-part"),
    Mail("by hand", "Hello", [("", "a@example.org")], text("Hello\n"), by_hand="ascii-in-base64"),
    Mail("by hand", "Hello", [(QUOTES, "a@example.org")], text("Hello\n"), by_hand="quotes"),
]


class Told(NamedTuple):
    program: str
    finding: str  # what is not as sent: a column of the table, or a rule
    what: str
    mail: str  # the one that shows it
    reads: Any  # what the program finds in that mail
    concerns: Callable[[Mail], bool]  # in which others it may find the like


class Difference(NamedTuple):
    program: str
    finding: str
    mail: Mail
    sent: Any
    found: Any


def has_blank_in_local_part(mail):
    return any(" " in address for _, address in mail.to)


def has_quotes_in_name(mail):
    return any('"' in name or "\\" in name for name, _ in mail.to)


def has_ascii_text_in_base64(mail):
    return any(part.content.isascii() and part.content.startswith("--") for part in mail.texts())


TOLD = [
    Told("msmtp", "recipients", "reads a blank in a quoted local part as `_`, where it is asked to"
         " find the recipients in the fields (`-t`)",
         "quoted-local-part", ["john_doe@example.org"], has_blank_in_local_part),
    Told("mutt", "to", "shows a quoted local part without its quotes",
         "quoted-local-part", [["Doe", "john doe@example.org"]], has_blank_in_local_part),
    Told("SpamAssassin", "MIME_BASE64_TEXT", "has a rule against ASCII texts in base64. The library"
         " writes one where that is the shortest: where many lines begin with two hyphens, or much"
         " is `=` or control characters",
         "ascii-in-base64", None, has_ascii_text_in_base64),
    Told("Dovecot", "search", "searches names as they stand in quotes, with the backslashes in them",
         "quotes", [["TO", QUOTES]], has_quotes_in_name),
    Told("mutt", "to", "drops quotes and backslashes in a name",
         "quotes", [["Dr. J (Klein),  <x@y>", "a@example.org"]], has_quotes_in_name),
]


def judge(differences):
    """What nothing excuses, and the numbers of what does, by program and finding."""
    shown = [one for one in TOLD
             if any((there.program, there.finding, there.mail.by_hand, there.found)
                    == (one.program, one.finding, one.mail, one.reads) for there in differences)]
    wrong, numbers = [], {}
    for one in differences:
        excuses = [told for told in shown
                   if (told.program, told.finding) == (one.program, one.finding)
                   and (told.mail == one.mail.by_hand or told.concerns(one.mail))]
        if excuses:
            numbers.setdefault((one.program, one.finding), set()).add(TOLD.index(excuses[0]) + 1)
        else:
            wrong.append(one)
    gone = [f"{one.program}, {one.mail}.eml: right in this version, and so no excuse"
            for one in TOLD if one not in shown]
    return wrong, numbers, gone
