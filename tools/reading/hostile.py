"""Puts mails together from hostile lists, names, texts, types and file names, and has Python's email read
them: fields, recipients and parts must be those that went in, however many are refused.

usage: hostile.py LIBRARY MAILS [FIRST]

A mail has a number, from FIRST on, which is what its pieces are chosen by.
"""
import ctypes
import email
import email.policy
import random
import re
import sys

import texts

# What ends lines, lists, quotes, words, fields and parts, and what is read as more than it is.
PIECES = [
    '"', "\\", ",", ";", ":", "<", ">", "@", "(", ")", "[", "]", "%", "'", "*", "=", ".", "/", "-", " ", "  ",
    "\t", "\r", "\n", "\r\n", "\r\n\r\n", "\0", "\v", "\f", "\x1b", "\x1c", "\x7f", "\u0085", "\u2028",
    "\u202e", "\ufeff", "\u3000", "\ue000", "\uff0c", "\uff20", "=?", "?=", "=?utf-8?q?v=40evil.example=2C?=",
    "--", "--=_1_=", "\r\n--=_1_=\r\n", "--=_2_=--", "-", "From ", "xn--", "Bcc: v@evil.example",
    "\r\nContent-Type: text/html", "; boundary=x", "v@evil.example", "<v@evil.example>", "a", "b", "a b", "a.b",
    "x" * 80, "x" * 1000, "ü", "日本", "Groß", "👨‍👩‍👧‍👦", "e\u0301", "שלום", "\u200d",
]
LOCALS = ["j", "k.l", "a+b", '"a b"', '"a,b"', '"a@b"', '"<"', '"\\""', "ü", "日本", "x" * 64, "=?", "-f", ""]
DOMAINS = ["b.example", "köln.example", "[127.0.0.1]", "[IPv6:::1]", "xn--kln-sna.example", "1.2.3.4", "b.", "b,c"]
TYPES = ["application/pdf", "application/pdf", "text/plain", "text/plain; charset=KOI8-R", 'a/b; c="d; e=f, <g>"', "multipart/mixed",
         "message/rfc822", 'a/b; boundary="=_1_="', "a/b;c=d;c=e", "image/svg+xml ; x=y",
         "a/b; c=*d; e*f=g", "a/b; c=d*; e=x'y'z ;f=%41*0*", "a/b; c=\"*'%\""]
SUBTYPES = ["plain", "plain", "plain", "html", "plain; format=flowed", 'calendar; method="REQUEST"', "plain; a=u'v'*; b=*0*", "plain; charset=x", "x y", "plain\r\n"]
MULTIPARTS = ["mixed", "mixed", "mixed", "related; type=\"text/plain\"", "alternative", "mixed; boundary=x", "mi xed"]
FORBIDDEN = re.compile("[\0\n-\r\x1c-\x1e\x85\u2028\u2029]")
CHARSETS = [*[None] * 20, "UTF-8", "ISO-8859-1", "ISO-2022-JP", "Shift_JIS", "GB18030", "windows-1252", "EUC-KR"]


class Address(ctypes.Structure):
    _fields_ = [("name", ctypes.c_char_p), ("length", ctypes.c_size_t), ("address", ctypes.c_char_p)]


class Error(ctypes.Structure):
    _fields_ = [("status", ctypes.c_int), ("item", ctypes.c_size_t), ("position", ctypes.c_size_t)]


class Library:
    """The functions by their names, for texts and in UTF-8. What is refused is None."""

    def __init__(self, path):
        self.library = ctypes.CDLL(path)
        self.library.i18n_mail_free.argtypes = [ctypes.c_void_p]
        self.refused = self.made = 0

    def call(self, name, *arguments):
        function = getattr(self.library, f"i18n_mail_{name}")
        function.restype = ctypes.c_void_p
        error = Error()
        result = function(*map(self.argument, arguments), ctypes.byref(error))
        text = ctypes.string_at(result).decode() if result else None
        self.library.i18n_mail_free(result)
        self.refused += result is None
        self.made += result is not None
        if (result is None) == (error.status == 0):
            raise AssertionError(f"{name} says {error.status}")
        return text

    @staticmethod
    def argument(value):
        if isinstance(value, str):
            return value.encode()
        return ctypes.c_size_t(value) if isinstance(value, int) else value

    def parse(self, typed):
        function = self.library.i18n_mail_parse_addresses
        function.restype = ctypes.POINTER(Address)
        encoded, count, error = typed.encode(), ctypes.c_size_t(), Error()
        items = function(encoded, ctypes.c_size_t(len(encoded)), None, ctypes.byref(count),
                         ctypes.byref(error))
        found = [(items[i].name.decode(), items[i].address.decode()) for i in range(count.value)]
        self.library.i18n_mail_free(items)
        return found if items else None

    def addresses(self, function, name, items, mail_charset):
        encoded = [(name.encode(), address.encode()) for name, address in items]
        array = (Address * len(items))(*((name, len(name), address) for name, address in encoded))
        return self.call(function, name, array, len(items), None, mail_charset)


class Mail:
    """One mail, and what should be found in it."""

    def __init__(self, library, number):
        self.library, self.chance = library, random.Random(number)
        self.mail_charset = self.chance.choice(CHARSETS)
        self.fields, self.lines, self.recipients, self.leaves = [], [], [], []

    def text(self, most=6):
        return "".join(self.chance.choices(PIECES, k=self.chance.randint(0, most)))

    def line(self, most=6):
        """A text that mostly has nothing that fields refuse."""
        text = self.text(most)
        return text if self.chance.random() < 0.1 else FORBIDDEN.sub("", text)

    def address(self):
        if self.chance.random() < 0.1:
            return self.text(3).replace("\0", "")
        return f"{self.chance.choice(LOCALS)}@{self.chance.choice(DOMAINS)}"

    def typed(self):
        """A list as people type it, and now and then as none should."""
        entries = []
        for _ in range(self.chance.randint(0, 4)):
            name = self.chance.choice(["", "J. Klein ", '"Klein, J." ', "Jürgen ", "A: ", '"', "(x) ",
                                       self.text(2) + " "])
            form = self.chance.choice(["{0}<{1}>", "{1}", "{1} ({0})"])
            entries.append(form.format(name, self.address()))
        return self.chance.choice([", ", ";", ",\r\n\t", " "]).join(entries)

    def add(self, name, field):
        if field is not None:
            self.fields.append(name)
            self.lines.append(field)

    def add_recipients(self, name, items):
        """Those that are refused are left out, as a program would."""
        for function in ("addresses", "addresses_utf8"):
            good = [item for item in items
                    if self.library.addresses(function, name, [item], self.mail_charset)]
            field = self.library.addresses(function, name, good, self.mail_charset) if good else None
            if field is not None:
                self.add(name, field)
                self.recipients.append((name, [written_address(address) for _, address in good]))
                return

    def add_fields(self):
        call, mail_charset = self.library.call, self.mail_charset
        subject, value = self.line(), self.line().replace("\0", "")
        self.add_recipients("From", [(self.line(3), "j@b.example")])
        self.add_recipients("To", self.library.parse(self.typed()) or [])
        self.add_recipients("Cc", [(self.line(4), self.address()) for _ in range(3)])
        self.add("Subject", call("header", "Subject", subject, len(subject.encode()), None, mail_charset))
        self.subject = subject if self.fields[-1:] == ["Subject"] else None
        self.add("X-Structured", call("structured", "X-Structured", value))
        name = self.text(1).replace("\0", "")
        self.add(name, call("header", name, "a", 1, None, None))

    def leaf(self):
        """A part, or None; what it should be read as is noted then."""
        chance, call = self.chance, self.library.call
        if chance.random() < 0.5:
            text, subtype = self.text(12).replace("\0", "\n"), chance.choice(SUBTYPES)
            part = call("text", subtype, text, len(text.encode()), None, self.mail_charset)
            self.note(part, (*type_and_parameters(f"text/{subtype}"), texts.line_ends(text)))
            return part
        kind, name, data = chance.choice(TYPES), self.line(3), chance.randbytes(chance.randint(0, 99))
        part = call("attachment", kind, name, len(name.encode()), None, data, len(data))
        self.note(part, (*type_and_parameters(kind), python_name(name), data))
        return part

    def note(self, part, leaf):
        if part is not None:
            self.leaves.append(leaf)

    def parts(self, depth):
        if depth == 0 or self.chance.random() < 0.3:
            return self.leaf()
        before = len(self.leaves)
        parts = [self.parts(depth - 1) for _ in range(self.chance.randint(1, 3))]
        if self.chance.random() < 0.2:
            extra = self.library.call("structured", "Content-ID", self.line(2).replace("\0", ""))
            parts = [part and extra and f"{extra}\r\n{part}" for part in parts]
            if extra is None:
                del self.leaves[before:]
        encoded = [part.encode() for part in parts if part is not None]
        array = (ctypes.c_char_p * len(encoded))(*encoded)
        subtype = self.chance.choice(MULTIPARTS)
        made = self.library.call("multipart", subtype, array, len(encoded))
        if made is None:
            del self.leaves[before:]
        return made

    def make(self):
        self.add_fields()
        part = self.parts(3)
        head = "".join(f"{line}\r\n" for line in [*self.lines, "MIME-Version: 1.0"])
        return head + (part or "\r\n")


def written_address(address):
    """An address as the library writes it."""
    local, _, domain = address.rpartition("@")
    return f"{local}@{domain if domain.isascii() else domain.encode('idna').decode()}"


def python_name(name):
    """Without what Python drops: blanks around a file name, and brackets as if they were quotes."""
    return re.sub("^<(.*)>$", r"\1", name.strip()).strip()


def type_and_parameters(kind):
    """A type as the library takes it, and its parameters without quotes."""
    parameters = re.findall(r""";\s*([^=;]+)=(?:"([^"]*)"|([^\s;]*))""", kind)
    return kind.partition(";")[0].strip(), {name: quoted or token for name, quoted, token in parameters}


def read(leaf):
    kind, parameters = leaf.get_content_type(), dict(leaf["Content-Type"].params)
    if leaf.get_content_disposition() == "attachment":
        return kind, parameters, python_name(leaf.get_filename() or ""), leaf.get_payload(decode=True)
    charset = parameters.pop("charset")
    return kind, parameters, leaf.get_payload(decode=True).decode(charset).replace("\r\n", "\n")


def differences(mail, written):
    message = email.message_from_string(written, policy=email.policy.default)
    names = [name for name in message.keys() if not name.lower().startswith("content-")]
    if names != [*mail.fields, "MIME-Version"]:
        yield "fields", mail.fields, names
    for name, wanted in mail.recipients:
        found = [to.addr_spec for to in message[name].addresses]
        if found != wanted:
            yield name, wanted, found
    if mail.subject is not None and message["Subject"] != mail.subject:
        yield "subject", mail.subject, message["Subject"]
    leaves = [leaf for leaf in message.walk() if not leaf.is_multipart()]
    found = [read(leaf) for leaf in leaves] if mail.leaves else []
    if found != mail.leaves:
        yield "parts", mail.leaves, found
    defects = [defect for part in message.walk() for defect in part.defects]
    if defects:
        yield "no defects", [], defects


def main():
    library = Library(sys.argv[1])
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    wrong = recipients = parts = 0
    for number in range(first, first + int(sys.argv[2])):
        mail = Mail(library, number)
        written = mail.make()
        recipients += sum(len(found) for _, found in mail.recipients)
        parts += len(mail.leaves)
        for what, wanted, found in differences(mail, written):
            wrong += 1
            print(f"mail {number}, {what}:\n  made {wanted!a}\n  read {found!a}"[:2000])
    print(f"{sys.argv[2]} mails with {recipients} recipients and {parts} texts and files;"
          f" {library.refused} of {library.refused + library.made} calls refused: {wrong} differences")
    return 1 if wrong or not recipients or not parts else 0


if __name__ == "__main__":
    sys.exit(main())
