"""What each reader is known to read wrongly, and what each of the mails in mails/, all written by
hand, should be read as.

A fault is excused only in a run in which its mail shows it.
"""
import re
from typing import Any, Callable, NamedTuple
from urllib.parse import unquote

# What is right in a mail that shows a fault.
MAILS = {
    "body-in-koi8-r": {"text": "Мир\n"},
    "body-of-line-ends": {"text": "\n\n"},
    "byte-order-mark": {"subject": "\ufeffHello", "to": [["\ufeffHello", "j@example.org"]],
                        "text": "\ufeffHello\n"},
    "domain": {"to": [["", "b@xn--bcher-kva.example"]]},
    "empty-part": {"text": ""},
    "file-name-byte-order-mark": {"filename": "\ufeffHello"},
    "file-name-in-sections": {"filename": "012345678910"},
    "file-name-like-a-word": {"filename": "=?UTF-8?Q?Hello?="},
    "file-name-with-blanks": {"filename": " a b "},
    "file-name-with-brackets": {"filename": "<a b>"},
    "file-name-with-control": {"filename": "a\x7fb"},
    "gb18030": {"subject": "中文", "to": [["中文", "z@example.org"]], "text": "中文\n"},
    "long": {"subject": "a" * 4140, "to": [["a" * 1080, "j@example.org"]], "filename": "a" * 550},
    "name-in-two-words": {"to": [["Jürgen", "j@example.org"]]},
    "name-with-blanks": {"to": [[" Jürgen  Klein ", "j@example.org"]]},
    "name-with-comma": {"to": [["Klein, Jürgen", "j@example.org"]]},
    "quoted-local-part": {"cc": [["", '"john doe"@example.org']]},
    "part": {"text": "Hello\n"},
    "shift-jis": {"subject": "\\", "to": [["\\", "j@example.org"]], "text": "\\\n"},
    "windows-1252": {"subject": "€", "to": [["€", "e@example.org"]], "text": "€\n"},
}


class Fault(NamedTuple):
    reader: str
    functions: str  # whose results are misread: keys of a value in MAILS
    what: str
    mail: str  # the one that shows it
    reads: list  # what the reader makes of that mail, for each of the functions
    misread: Callable[[Any, dict], Any]  # what it makes of a value in one of our mails


class Anything:
    """Equal to whatever a reader makes of what it does not understand."""
    def __eq__(self, other):
        return True


class Spaceless(str):
    """Equal to a text that differs in blanks only."""
    def __eq__(self, other):
        return "".join(self.split()) == "".join(other.split())


class YenOrBackslash(str):
    """Equal to a text with yen signs in place of some backslashes."""
    def __eq__(self, other):
        return self.replace("\\", "¥") == other.replace("\\", "¥")


def ascii_domain(address):
    local, domain = address.rsplit("@", 1)
    return f"{local}@{domain.encode('idna').decode()}"


def unicode_domain(address):
    local, domain = address.rsplit("@", 1)
    return f"{local}@{domain.encode().decode('idna')}"


def without_quotes(address):
    return address.replace('"', "")


def in_text(change):
    """A change of a text, or of the names in a list of names and addresses."""
    def misread(value, mail):
        return change(value) if isinstance(value, str) else [[change(n), a] for n, a in value]
    return misread


def in_addresses(change):
    return lambda to, mail: [[name, change(address)] for name, address in to]


def in_charsets(concerned, result):
    """Another result where the mail has a charset that is concerned."""
    return lambda value, mail: result(value, mail) if concerned(mail["charset"]) else value


def when(concerned):
    """Anything where a text, or a name in a list, is concerned."""
    def misread(value, mail):
        names = [value] if isinstance(value, str) else [name for name, _ in value]
        return Anything() if any(map(concerned, names)) else value
    return misread


def in_its_charset(text, mail):
    return text.encode(mail["charset"]).decode("utf-8", "surrogateescape")


def latin1(text):
    return text.encode("windows-1252").decode("latin-1")


def control_pictures(text):
    pictures = {control: 0x2400 + control for control in range(0x20)} | {0x7f: 0x2421}
    return text.translate(pictures)


def more_line_ends(text, mail):
    encodings = re.findall("^Content-Transfer-Encoding: (.*)", mail["written"], re.M)
    return text if mail["data"] is None or encodings[0] == "base64" else text + "\n"


def sorted_sections(name, mail):
    """Puts the sections of a file name in the order of their numbers' digits."""
    sections = sorted(re.findall(r"filename\*(\d+)\*=([^;\s]*)", mail["written"]))
    value = "".join(section for _, section in sections).replace("UTF-8''", "")
    return unquote(value) if sections else name


def is_in_words(name):
    """Whether a name can hardly stand as a quoted string."""
    return not name.isascii() or "=?" in name or len(name) > 50 or name.strip() != name


def split_addresses(to, mail):
    encoded = [name for name, _ in to if is_in_words(name)]
    if any(re.search(r'[\0-\x1f\x7f"():;<>@\[\\\]]', name) for name in encoded):
        return Anything()
    split = [name for name in encoded if "," in name]
    return [[Anything() if name in split else name, address] for name, address in to]


def like_a_word(name):
    return re.search(r"=\?.*\?[bq]\?.*\?=", name, re.I)


def go_fails(value, mail):
    charset = mail["charset"]
    if charset in ("UTF-8", "ISO-8859-1"):
        return value
    if isinstance(value, str):
        return f'fails: mime: unhandled charset "{charset}"'
    return f'fails: mail: missing word in phrase: charset not supported: "{charset.lower()}"'


YEN = "reads `\\` in Shift_JIS as a yen sign"

FAULTS = [
    Fault("Python", "to", "puts a blank between two encoded words of a name",
          "name-in-two-words", [[["Jür gen", "j@example.org"]]], in_text(Spaceless)),
    Fault("Python", "to", "makes one blank of several in a name",
          "name-with-blanks", [[[" Jürgen Klein ", "j@example.org"]]], in_text(Spaceless)),
    Fault("Python", "filename", "drops the blanks around a file name",
          "file-name-with-blanks", ["a b"], in_text(str.strip)),
    Fault("Python", "filename", "takes brackets around a file name for quotes",
          "file-name-with-brackets", ["a b"],
          in_text(lambda name: re.sub("^<(.*)>$", r"\1", name, flags=re.DOTALL))),
    Fault("Email::MIME", "subject to text", "does not know GB18030", "gb18030",
          ["=?GB18030?B?1tDOxA==?=", [["=?GB18030?B?1tDOxA==?=", "z@example.org"]],
           "dies: Unknown encoding 'GB18030'"],
          in_charsets("GB18030".__eq__, lambda value, mail: Anything())),
    Fault("Ruby Mail", "filename", "sorts the sections of a file name as texts, `*10` before `*2`",
          "file-name-in-sections", ["011023456789"], sorted_sections),
    Fault("Ruby Mail", "filename", "takes a file name for encoded words",
          "file-name-like-a-word", ["Hello"], when(like_a_word)),
    Fault("Ruby Mail", "text", "reads a text of line ends alone as empty",
          "body-of-line-ends", [""], in_text(lambda text: text if text.strip("\n") else "")),
    Fault("PHP iconv", "subject", YEN, "shift-jis", ["¥"],
          in_charsets("Shift_JIS".__eq__, in_text(YenOrBackslash))),
    Fault("Go", "subject to", "knows words in UTF-8, ISO-8859-1 and US-ASCII only", "windows-1252",
          ['fails: mime: unhandled charset "windows-1252"',
           'fails: mail: missing word in phrase: charset not supported: "windows-1252"'], go_fails),
    Fault("Go", "text", "leaves a body in its charset",
          "body-in-koi8-r", ["\udced\udcc9\udcd2\n"], in_its_charset),
    Fault("Go", "cc", "drops the quotes of a local part",
          "quoted-local-part", [[["", "john doe@example.org"]]], in_addresses(without_quotes)),
    Fault("GMime", "to", "drops the blanks around a name",
          "name-with-blanks", [[["Jürgen  Klein", "j@example.org"]]],
          in_text(lambda name: name.strip(" \t"))),
    Fault("GMime", "to", "shows a domain in Unicode",
          "domain", [[["", "b@bücher.example"]]], in_addresses(unicode_domain)),
    Fault("GMime", "subject to text", YEN, "shift-jis", ["¥", [["¥", "j@example.org"]], "¥\n"],
          in_charsets("Shift_JIS".__eq__, in_text(YenOrBackslash))),
    Fault("mblaze", "to", "makes one blank of several in a name, and drops those around it",
          "name-with-blanks", [[["Jürgen Klein", "j@example.org"]]],
          in_text(Spaceless)),
    Fault("mblaze", "subject", "cuts a subject after 4095 bytes", "long",
          ["a" * 4095], when(lambda subject: len(subject.encode()) > 4094)),
    Fault("mblaze", "to", "cuts a name after 1023 bytes", "long",
          [[["a" * 1023, "j@example.org"]]], when(lambda name: len(name.encode()) > 1022)),
    Fault("mblaze", "to", "splits a list of addresses after decoding it",
          "name-with-comma", [[["Jürgen", "j@example.org"]]], split_addresses),
    Fault("mblaze", "cc", "splits a quoted local part at its blank",
          "quoted-local-part", [[['"john', 'doe"@example.org']]],
          lambda cc, mail: [a.split(" ") if " " in a else [name, a] for name, a in cc]),
    Fault("mblaze", "filename", "cuts a file name after 512 bytes", "long",
          ["a" * 512], when(lambda name: len(name.encode()) > 511)),
    Fault("mblaze", "filename", "shows pictures in place of control characters",
          "file-name-with-control", ["a␡b"], in_text(control_pictures)),
    Fault("mblaze", "text", "leaves a body in its charset",
          "body-in-koi8-r", ["\udced\udcc9\udcd2\n"], in_its_charset),
    Fault("mblaze", "subject", YEN, "shift-jis", ["¥"],
          in_charsets("Shift_JIS".__eq__, in_text(YenOrBackslash))),
    Fault("mailparser", "to", "shows a domain in Unicode",
          "domain", [[["", "b@bücher.example"]]], in_addresses(unicode_domain)),
    Fault("mailparser", "text", "reads an empty part as a line end",
          "empty-part", ["\n"], in_text(lambda text: text or "\n")),
    Fault("postal-mime", "subject to text", "drops U+FEFF at the beginning of a text",
          "byte-order-mark", ["Hello", [["Hello", "j@example.org"]], "Hello\n"],
          in_text(lambda text: text.removeprefix("\ufeff"))),
    Fault("postal-mime", "cc", "drops the quotes of a local part",
          "quoted-local-part", [[["", "john doe@example.org"]]], in_addresses(without_quotes)),
    Fault("postal-mime", "filename", "drops U+FEFF at the beginning of a file name",
          "file-name-byte-order-mark", ["Hello"],
          in_text(lambda name: name.removeprefix("\ufeff"))),
    Fault("postal-mime", "filename", "takes a file name for encoded words",
          "file-name-like-a-word", ["Hello"], when(like_a_word)),
    Fault("postal-mime", "text", "puts a line end after a part that is not in base64", "part",
          ["Hello\n\n"], more_line_ends),
    Fault("postal-mime", "subject to text", "reads windows-1252 as ISO-8859-1 (Node.js 20 does)",
          "windows-1252", ["\x80", [["\x80", "e@example.org"]], "\x80\n"],
          in_charsets("windows-1252".__eq__, in_text(latin1))),
]
