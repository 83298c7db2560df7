"""The mails that travel: who writes what to whom, in 12 languages and in emoji."""
import random
import sys
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "reading"))
import texts  # noqa: E402

LANGUAGES = texts.LANGUAGES | {
    "Hebrew": ("דו״ח שלום עולם מחר ישיבה תודה רבה ירושלים",
               "דג סקרן שט בים מאוכזב ולפתע מצא חברה."),
    "Thai": ("รายงาน สวัสดี พรุ่งนี้ ประชุม ขอบคุณ กรุงเทพ น้ำ ใจ",
             "เป็นมนุษย์สุดประเสริฐเลิศคุณค่า กว่าบรรดาฝูงสัตว์เดรัจฉาน"),
}
assert len(LANGUAGES) == 13

# The charset of a mail that is not in UTF-8.
CHARSETS = {
    "English": "windows-1252", "German": "ISO-8859-15", "French": "ISO-8859-1", "Russian": "KOI8-R",
    "Greek": "ISO-8859-7", "Japanese": "ISO-2022-JP", "Chinese": "GB18030", "Korean": "EUC-KR",
    "Arabic": "windows-1256", "Hebrew": "ISO-8859-8", "Thai": "TIS-620",
}

BODY = "{0},\n\n{s}\n\nFrom {1}\n.\n..{2}\n--\n--{3}--\n{4} \n\t{5}\n-- \n{6}\n"
PLAIN_BODY = "Hello,\n\nFrom here on\n.\n--=_1_=\n--=_1_=--\nplain \n-- \nplain\n"


@dataclass
class Part:
    """A text, a file or, when it has parts, a multipart. `form` is how the library is asked."""
    form: str
    type: str
    content: object = None
    name: str = ""
    charset: str = "UTF-8"
    parts: list = field(default_factory=list)
    id: str = ""

    def leaves(self):
        return [leaf for part in self.parts for leaf in part.leaves()] if self.parts else [self]


@dataclass
class Mail:
    label: str
    subject: str
    to: list
    body: Part
    charset: str = "UTF-8"
    typed: str = ""  # the addresses of `to` as a person types them
    sender: tuple = ("", "sender@example.org")
    undisclosed: bool = False  # no recipient stands in the mail
    by_hand: str = ""  # the name of one that the library did not make

    def texts(self):
        return [leaf for leaf in self.body.leaves() if leaf.form == "text"]

    def files(self):
        return [leaf for leaf in self.body.leaves() if leaf.form != "text"]

    def needs_smtputf8(self):
        return not all(address.rpartition("@")[0].isascii() for _, address in self.to)


def text(content, type="text/plain", charset="UTF-8"):
    return Part("text", type, content, charset=charset)


def attach(name, data, type="application/octet-stream", form="attachment"):
    return Part(form, type, data, name)


def multipart(subtype, *parts):
    return Part("multipart", f"multipart/{subtype}", parts=list(parts))


def identified(part, id):
    part.id = id
    return part


def language_mails(language, words, sentence, chance):
    body = BODY.format(*words, s=sentence)
    html = f"<p>{words[0]} <b>{sentence}</b></p>\n"
    data = chance.randbytes(chance.randrange(3000))
    to = [(f"{words[1]}, {words[2]}", "a.b+c@example.org"), ("", "d@example.net"),
          (words[3], "e@xn--bcher-kva.example")]

    def mail(label, subject, body, to=to, **more):
        return Mail(f"{language}: {label}", subject, to, body, **more)

    yield mail("words", " ".join(words[:3]), text(body))
    yield mail("long subject, long text", f"{sentence} " * 8 + words[0], text(f"{sentence} " * 300))
    yield mail("empty subject, one long name", "", text(f"{words[0]}\n"),
               [(sentence, "a@example.org")])
    yield mail("outer and double blanks", f" {words[0]}  {words[1]} plain  {words[2]}",
               text(f"\n\n{words[0]}\n \n"))
    yield mail("file", f"{words[0]}: {words[4]}", multipart(
        "mixed", text(body), attach(f"{words[0]} {words[5]}.pdf", data, "application/pdf")),
        sender=(sentence[:20], "sender@example.org"))
    yield mail("multiparts in multiparts", f"Re: {sentence}", multipart(
        "mixed",
        multipart("alternative", text(body), multipart(
            "related", text(html, "text/html"),
            identified(attach("", data[:900], "image/png"), "<picture@example.org>"))),
        multipart("mixed", text(PLAIN_BODY), attach(sentence, data)),
        text(f"BEGIN:VCALENDAR\r\nSUMMARY:{words[0]}\r\nEND:VCALENDAR\r\n",
             "text/calendar; method=REQUEST")))
    if charset := CHARSETS.get(language):
        known = [word for word in words if texts.encodable(word, charset)]
        yield mail(charset, " ".join(known * 3), text("\n".join(known), charset=charset),
                   [(", ".join(known[:2]), "a@example.org")], charset=charset)


def other_mails(chance):
    recipients = [(f"名前, {n}" if n % 3 else "", f"r{n}@example.org") for n in range(300)]
    yield Mail("300 recipients", "All", recipients, text("Hello\n"))
    yield Mail("8 MiB in pieces", "Big", [("", "a@example.org")], multipart(
        "mixed", text("See the file.\n"), attach("großer Film.bin", chance.randbytes(8 << 20),
                                                  "video/mp4", "pieces")))
    yield Mail("undisclosed recipients", "Secret", [("", f"bcc{n}@example.org") for n in range(3)],
               text("Hello\n"), undisclosed=True)
    yield Mail("typed addresses", "Typed", [("Klein, J.", "j@example.org"), ("", "k@example.org"),
                                            ("Jürgen Groß", "g@example.org")], text("Hello\n"),
               typed='"Klein, J." <j@example.org>, k@example.org; Jürgen Groß <g@example.org>')
    yield Mail("quoted local part, literal", "Odd", [("Doe", '"john doe"@example.org'),
                                                     ("", "root@[192.0.2.1]")], text("Hello\n"))
    yield Mail("ASCII with what looks like a part", "Plain", [("", "a@example.org")],
               multipart("mixed", text(PLAIN_BODY), text("--=_2_=\n", "text/x-log")))
    yield Mail("what looks like words and addresses", '=?UTF-8?Q?Hello?= "a" (b) \\ <c@d>',
               [('Dr. "J" (Klein), \\ <x@y>', "a@example.org"),
                ("=?utf-8?q?victim=40evil.example=2C?=", "b@example.org"),
                ("e@evil.example, f; g:", "c@example.org")],
               multipart("mixed", text("=?UTF-8?Q?Hello?=\n"),
                         attach('=?UTF-8?Q?a?= "b\\c";.txt', b"x")))
    yield Mail("long plain lines", "x" * 200, [("y" * 200, "a@example.org")], text("z" * 5000))
    yield Mail("ISO-2022-JP in 7bit", "会議のお知らせ", [("山田、太郎", "a@example.org")],
               text("会議は明日です。\nよろしくお願いします\n", charset="ISO-2022-JP"),
               charset="ISO-2022-JP")
    for name, address in [("Jürgen", "jürgen@example.org"), ("用户", "用户@例え.example"),
                          ("", "δοκιμή@example.org")]:
        yield Mail(f"SMTPUTF8: {address}", name or "δοκιμή", [(name, address)], multipart(
            "mixed", text(f"{name}\n"), attach(f"{name}.txt", b"data", "application/x-test")))


def mails():
    chance = random.Random(12)
    for language, (words, sentence) in LANGUAGES.items():
        yield from language_mails(language, words.split(" "), sentence, chance)
    yield from other_mails(chance)


def requests(path, mail, seconds):
    """What the making program is asked for, string by string."""
    ask = ["mail", str(path), "date", str(seconds), "60", "message-id", "example.org"]
    ask += ["addresses", "From", mail.charset, "1", *mail.sender]
    if mail.undisclosed:
        ask += ["structured", "To", "undisclosed-recipients:;"]
    elif mail.typed:
        ask += ["typed", "To", mail.typed]
    else:
        ask += ["addresses", "To", mail.charset, str(len(mail.to))]
        ask += [one for address in mail.to for one in address]
    ask += ["header", "Subject", mail.subject, mail.charset]
    return [*ask, *part_requests(mail.body), "end"]


def part_requests(part):
    kind, _, subtype = part.type.partition("/")
    if part.parts:
        ask = [one for inner in part.parts for one in part_requests(inner)]
        return [*ask, "multipart", subtype, str(len(part.parts))]
    if part.form == "text":
        ask = ["text", subtype, part.content, part.charset]
    else:
        ask = [part.form, part.type, part.name, part.content]
    return ask + (["in front", "Content-ID", part.id] if part.id else [])

