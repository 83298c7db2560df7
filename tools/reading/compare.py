"""Has every reader read mails that the mail library made, and mails written by hand.

usage: compare.py PROGRAMS PAGE [--update]

Prints who reads what, and where a reader reads anything but what went in, beyond its faults
(faults.py). PROGRAMS is the folder of make_mails and read_gmime; NODE_PATH has the packages from
npm. PAGE is the page of the documentation with table and faults: compared, with --update written.
"""
import base64
import json
import os
import re
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import faults
import texts

HERE = Path(__file__).parent
JARS = "/usr/share/java/javax.mail.jar:/usr/share/java/javax.activation.jar"
# What a reader finds, and the function of the library that wrote it.
FUNCTIONS = {
    "subject": "header",
    "to": "addresses",
    "cc": "addresses_utf8",
    "date": "date",
    "references": "structured",
    "filename": "attachment",
    "text": "text",
    "data": "multipart",
}
# Readers that have no function for these.
WITHOUT = {"Email::MIME": {"date"}, "mblaze": {"date"}}
WITHOUT |= dict.fromkeys(["PHP iconv", "PHP mbstring"], FUNCTIONS.keys() - {"subject"})
BEGIN = "<!-- What follows is written by tools/readers --update. -->\n"
FAULTS = "## The faults\n"


def run(*command):
    done = subprocess.run(command, stdout=subprocess.PIPE)
    if done.returncode != 0:
        raise RuntimeError(f"{' '.join(map(str, command[:5]))} ... failed")
    return done.stdout


def npm_reader(package):
    version = f"require('{package}/package.json').version + ', Node.js ' + process.versions.node"
    return ["node", HERE / "read_npm.js", package], ["node", "-p", version]


def readers(programs):
    """By name: the command that reads mails, and the one that prints a version."""
    return {
        "Python": (
            ["python3", HERE / "read_python.py"],
            ["python3", "-c", "import platform; print(platform.python_version())"],
        ),
        "Email::MIME": (
            ["perl", HERE / "read_perl.pl"],
            ["perl", "-MEmail::MIME", "-e", "printf '%s, Perl %vd', Email::MIME->VERSION, $^V"],
        ),
        "Ruby Mail": (
            ["ruby", HERE / "read_ruby.rb"],
            ["ruby", "-rmail", "-e", "print Mail::VERSION.version, ', Ruby ', RUBY_VERSION"],
        ),
        "PHP iconv": (
            ["php", HERE / "read_php.php", "iconv_mime_decode"],
            ["php", "-r", "echo PHP_VERSION, ', ', ICONV_IMPL, ' ', ICONV_VERSION;"],
        ),
        "PHP mbstring": (
            ["php", HERE / "read_php.php", "mb_decode_mimeheader"],
            ["php", "-r", "echo PHP_VERSION;"],
        ),
        "JavaMail": (
            ["java", "-cp", JARS, HERE / "ReadJavaMail.java"],
            ["dpkg-query", "-Wf", "${Version}", "libmail-java"],
        ),
        "Go": (["go", "run", HERE / "read_go.go"], ["go", "env", "GOVERSION"]),
        "GMime": ([programs / "read_gmime"], ["pkg-config", "--modversion", "gmime-3.0"]),
        "mblaze": (
            ["python3", HERE / "read_mblaze.py"],
            ["dpkg-query", "-Wf", "${Version}", "mblaze"],
        ),
        "mailparser": npm_reader("mailparser"),
        "postal-mime": npm_reader("postal-mime"),
    }


def make(programs, mails):
    """Has the library make the mails. Its program prints what the library refuses."""
    requests = []
    for path, mail in mails.items():
        requests += [str(path), mail["charset"], mail["subject"], mail["text"]]
        requests += [str(len(mail["to"])), *(part for address in mail["to"] for part in address)]
        requests += mail["cc"]
        attachment = ["attachment", mail["filename"], mail["data"]]
        requests += ["plain"] if mail["data"] is None else attachment
    encoded = [one if isinstance(one, bytes) else one.encode() for one in requests]
    file = programs / "requests"
    file.write_bytes(b"".join(b"%d\n%s\0" % (len(one), one) for one in encoded))
    return run(programs / "make_mails", file).decode().splitlines()


def right(mail):
    """What the functions' results should be read as."""
    value = {
        "subject": mail["subject"],
        "to": [[name, faults.ascii_domain(address)] for name, address in mail["to"]],
        "cc": [["", address] for address in mail["cc"]],
        "date": texts.DATE,
        "references": texts.REFERENCES,
        "text": texts.line_ends(mail["text"]),
    }
    if mail["data"] is not None:
        value |= {"filename": mail["filename"], "data": mail["data"]}
    return value


def normal(found):
    """What a reader found, in the form of right(): lines end with LF, nothing is an empty text."""
    if "bytes" in found:
        found["text"] = base64.b64decode(found.pop("bytes")).decode("utf-8", "surrogateescape")
    found = {function: value or "" for function, value in found.items()}
    for field in ("to", "cc"):
        if isinstance(found.get(field), list):
            found[field] = [[name or "", address or ""] for name, address in found[field]]
    if "text" in found:
        found["text"] = found["text"].replace("\r\n", "\n")
    if "data" in found:
        found["data"] = base64.b64decode(found["data"])
    return found


def read(command, paths):
    """What one reader finds in the mails, by path."""
    lines = run(*command, *paths).splitlines()
    found = [json.loads(line.decode("utf-8", "replace")) for line in lines]
    return {Path(one.pop("mail")): normal(one) for one in found}


def replay(found, by_hand):
    """The faults that show in the mails written by hand; and what is wrong with their list."""
    shown, gone, wrong = [], [], []
    for fault in faults.FAULTS:
        path = by_hand[fault.mail]
        for function, reads in zip(fault.functions.split(), fault.reads, strict=True):
            value = faults.MAILS[fault.mail][function]
            got = found[fault.reader][path].get(function)
            others = [reader for reader in found if found[reader][path].get(function) == value]
            line = f"{fault.reader}, {function} of {fault.mail}.eml: "
            if got == value:
                gone.append(line + "right in this version, and so no excuse")
            elif got != reads:
                wrong.append(line + f"reads {got!a}, not {reads!a}")
            elif len(others) < 2:
                wrong.append(line + f"only {others} read it rightly: is it wrong?")
            else:
                shown.append((fault, function))
    return shown, gone, wrong


def misread(value, mail, excuses):
    for fault in excuses:
        value = fault.misread(value, mail)
        if isinstance(value, faults.Anything):
            break
    return value


def judge(found, mails, shown):
    """By reader and function: the cell of the table. And the differences beyond the faults."""
    cells, wrong = {}, []
    for reader, per_mail in found.items():
        for function in FUNCTIONS:
            if function in WITHOUT.get(reader, {}):
                cells[reader, function] = "–"
                continue
            excuses = [fault for fault, of in shown if (fault.reader, of) == (reader, function)]
            concerned = [(path, mail) for path, mail in mails.items() if function in right(mail)]
            well = 0
            for path, mail in concerned:
                value, got = right(mail)[function], per_mail[path].get(function)
                well += value == got
                if value != got and not misread(value, mail, excuses) == got:
                    wrong.append(f"{reader}, {function} of {path.name}, {mail['label']}:\n"
                                 f"  sent {value!a}\n  read {got!a}")
            numbers = ", ".join(str(faults.FAULTS.index(fault) + 1) for fault in excuses)
            cell = f"{well} of {len(concerned)}"
            cells[reader, function] = f"{cell} ({numbers})" if numbers else cell
    return cells, wrong


def page(versions, cells):
    """The generated part of the page."""
    rows = [["reader", "version", *(f"`i18n_mail_{name}`" for name in FUNCTIONS.values())]]
    rows.append(["---"] * len(rows[0]))
    for reader, version in versions.items():
        rows.append([reader, version, *(cells[reader, function] for function in FUNCTIONS)])
    lines = ["", *("| " + " | ".join(row) + " |" for row in rows), "", FAULTS]
    for number, fault in enumerate(faults.FAULTS, 1):
        lines.append(f"{number}. {fault.reader} {fault.what}: `{fault.mail}.eml`.")
        for function, reads in zip(fault.functions.split(), fault.reads):
            line = f"    - `{function}` is {code(faults.MAILS[fault.mail][function])},"
            read_as = f"read as {code(reads)}"
            fits = len(line + read_as) < 100
            lines += [f"{line} {read_as}"] if fits else [line, " " * 6 + read_as]
    return "\n".join(lines) + "\n"


def code(value):
    """As Python writes it, with what cannot be seen or decoded escaped, and long texts shortened."""
    shown = "".join(c if c.isprintable() else ascii(c)[1:-1] for c in repr(value))
    shown = re.sub(r"\\udc([89a-f][0-9a-f])", r"\\x\1", shown)
    return "`" + re.sub(r"'(a{100,})'", lambda many: f"'a' * {len(many[1])}", shown) + "`"


def make_by_hand(folder):
    """The mails in mails/, with the line ends of a mail."""
    paths = {name: folder / f"{name}.eml" for name in faults.MAILS}
    for name, path in paths.items():
        path.write_bytes((HERE / "mails" / path.name).read_bytes().replace(b"\n", b"\r\n"))
    return paths


def main():
    programs, page_path = (Path(argument).resolve() for argument in sys.argv[1:3])
    commands = readers(programs)
    folder = programs / "mails"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()

    mails = {folder / f"{number:04}.eml": mail for number, mail in enumerate(texts.mails())}
    refused = make(programs, mails)
    mails = {path: mail | {"written": path.read_text()} for path, mail in mails.items()}
    by_hand = make_by_hand(folder)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = {reader: pool.submit(read, command, [*mails, *by_hand.values()])
                for reader, (command, _) in commands.items()}
        found = {reader: run.result() for reader, run in runs.items()}

    shown, gone, wrong_faults = replay(found, by_hand)
    cells, differences = judge(found, mails, shown)
    versions = {reader: run(*command).decode().strip()
                for reader, (_, command) in commands.items()}
    now = page(versions, cells)
    before, _, written = page_path.read_text().partition(BEGIN)
    if "--update" in sys.argv:
        page_path.write_text(before + BEGIN + now)
    elif written.partition(FAULTS)[2] != now.partition(FAULTS)[2]:
        wrong_faults.append(f"{page_path} tells of other faults: tools/readers --update")
    elif written != now:
        gone.append(f"{page_path} has another table: tools/readers --update")

    print(now.partition(FAULTS)[0], *gone, *refused, *wrong_faults, *differences, sep="\n")
    print(f"{len(mails)} mails, {len(found)} readers:"
          f" {len(differences)} differences beyond the faults")
    return 1 if refused or wrong_faults or differences else 0


if __name__ == "__main__":
    sys.exit(main())
