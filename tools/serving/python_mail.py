"""The same mails as Python's email package writes them."""
from email.headerregistry import Address
from email.message import EmailMessage, MIMEPart
from email.policy import SMTP, SMTPUTF8

from delivery import to_ascii_domain


def write(mail, date, id):
    policy = SMTPUTF8 if mail.needs_smtputf8() else SMTP
    message = fill(EmailMessage(policy), mail.body, policy)
    message["Date"] = date
    message["Message-ID"] = id
    message["From"] = address(*mail.sender)
    message["To"] = ("undisclosed-recipients:;" if mail.undisclosed else
                     [address(name, to_ascii_domain(one)) for name, one in mail.to])
    message["Subject"] = mail.subject
    return message.as_bytes()


def address(name, address):
    local, _, domain = address.rpartition("@")
    return Address(name, local.strip('"'), domain)


def fill(message, part, policy):
    kind, _, parameters = part.type.partition("; ")
    main, _, subtype = kind.partition("/")
    if part.parts:
        message["Content-Type"] = part.type
        for inner in part.parts:
            message.attach(fill(MIMEPart(policy), inner, policy))
    elif part.form == "text":
        message.set_content(part.content, subtype, part.charset, cid=part.id or None,
                            params=dict([parameters.split("=")]) if parameters else None)
    else:
        message.set_content(part.content, main, subtype, disposition="attachment",
                            filename=part.name or None, cid=part.id or None)
    return message
