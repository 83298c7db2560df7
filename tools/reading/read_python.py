"""Reads mails with Python's email package, its default policy: a line of JSON for each."""
import base64
import email
import email.policy
import json
import os
import sys


def attempt(read):
    try:
        return read()
    except Exception as error:  # what it raises is what it reads
        return f"raises {error!r}"


def addresses(field):
    return [[one.display_name, os.fsencode(one.addr_spec).decode()] for one in field.addresses]


for path in sys.argv[1:]:
    with open(path, "rb") as file:
        mail = email.message_from_binary_file(file, policy=email.policy.default)
    attachment = next(mail.iter_attachments(), None)
    found = {
        "mail": path,
        "subject": attempt(lambda: mail["Subject"]),
        "to": attempt(lambda: addresses(mail["To"])),
        "cc": attempt(lambda: addresses(mail["Cc"])),
        "date": attempt(lambda: mail["Date"].datetime.timestamp()),
        "references": attempt(lambda: mail["References"]),
        "text": attempt(lambda: mail.get_body().get_content(errors="strict")),
    }
    if attachment:
        found["filename"] = attempt(attachment.get_filename)
        found["data"] = attempt(lambda: base64.b64encode(attachment.get_content()).decode())
    print(json.dumps(found))
