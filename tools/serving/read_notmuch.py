"""Reads a folder with notmuch."""
import email.utils
import json

import hosts


def leaves(part):
    content = part.get("content")
    if not isinstance(content, list):
        return [part]
    return [leaf for inner in content for leaf in leaves(inner)]


def messages(threads):
    for one in threads:
        if isinstance(one, dict):
            yield one
        elif one:
            yield from messages(one)


def read(folder, mails):
    config = hosts.SRV / "notmuch"
    config.write_text(f"[database]\npath={folder}\n[user]\nname=x\nprimary_email=x@example.org\n"
                      "[maildir]\nsynchronize_flags=false\n")

    def notmuch(*arguments):
        return hosts.run("notmuch", f"--config={config}", *arguments)

    notmuch("new", "--quiet")
    found = {}
    for mail in messages(json.loads(notmuch("show", "--format=json", "--include-html",
                                            "--body=true", "*"))):
        headers, parts = mail["headers"], leaves(mail["body"][0])
        files = [part for part in parts if "content-disposition" in part]
        addresses = email.utils.getaddresses([headers.get("To", "")])
        found[f"<{mail['id']}>"] = {
            "subject": headers.get("Subject", ""),
            "to": [list(one) for one in addresses if one[1]],
            "texts": [part["content"] for part in parts if "content-disposition" not in part],
            "names": [part.get("filename", "") for part in files],
            "files": [notmuch("show", "--format=raw", f"--part={part['id']}", f"id:{mail['id']}")
                      for part in files],
        }
    return found
