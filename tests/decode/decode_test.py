#!/usr/bin/env python3
"""Reads with Python's email package and codecs what the commands and the example programs write.

usage: decode_test.py DIRECTORY_OF_COMMANDS DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
                      [unittest arguments]
"""
import base64
import email
import email.header
import email.policy
import random
import re
import subprocess
import sys
import unittest
from datetime import datetime, timezone
from pathlib import Path

COMMANDS, PROGRAMS, EXAMPLES = map(Path, sys.argv[1:4])

# As README and docs/architecture.md have them.
MAX_LINE = 76
MAX_WORD = 75
CHUNK_UNITS = 86

SAMPLE_CHARSETS = {
    "soseki.sjis.txt": ["Shift_JIS", "ISO-2022-JP", "EUC-JP", "GB18030"],
    "grimm.txt": ["ISO-8859-1", "windows-1252"],
    "verlaine.txt": ["windows-1252"],
    "pushkin.txt": ["KOI8-R", "ISO-8859-5", "windows-1251"],
    "lunyu.txt": ["Big5", "GB18030"],
    "sowol.txt": ["EUC-KR", "ISO-2022-KR"],
    "emoji.txt": ["GB18030", "UTF-7"],
    "awkward.txt": ["ISO-8859-1"],
}
STATEFUL = {"ISO-2022-JP", "ISO-2022-KR", "UTF-7"}
NOT_FOR_MAIL = {"ISO-2022-KR", "UTF-7"}


def run(program, *args, stdin=b"", stdout=subprocess.PIPE):
    args = [arg if isinstance(arg, bytes) else str(arg).encode() for arg in args]
    command = [(COMMANDS if program.startswith("qorvii18n-") else PROGRAMS) / program, *args]
    return subprocess.run(command, input=stdin, stdout=stdout, stderr=subprocess.PIPE)


def sample(name):
    charset = "shift_jis" if ".sjis." in name else "utf-8"
    return (EXAMPLES / "data" / name).read_bytes().decode(charset)


def awkward_texts():
    """Texts around the sizes of lines, words and chunks, out of characters of all lengths."""
    chance = random.Random(76)
    sizes = [0, 1, 2, 3, 45, 46, 56, 57, 58, *range(72, 78), *range(85, 88), 172, 173, 256, 257, 400]
    for alphabet in ["x= ", "aé =", "aé語😀", "😀"]:
        for size in sizes:
            yield "".join(chance.choices(alphabet, k=size))
    yield "語" * 84 + "é語" + "z" * 20  # the 86th UTF-16 unit straddles the end of a base64 word


def decode_words(words):
    """Each encoded word by itself, as mail programs do."""
    decoded = []
    for word in words:
        ((content, charset),) = email.header.decode_header(word)
        decoded.append(content.decode(charset))
    return "".join(decoded)


def body_lines(text):
    """A text with every line ended."""
    lines = re.split("\r\n|\r|\n", text)
    return "".join(line + "\n" for line in (lines if lines[-1] else lines[:-1]))


class Mail(unittest.TestCase):
    def check(self, text, subject, source, target):
        """Encodes and decodes. A target of None leaves it to the program."""
        args = ["--from", "a@b", "--to", "a@b", "--subject", subject.encode(source),
                "--charset", source]
        if target is not None:
            args += ["--mail-charset", target]
        with self.subTest(args=args, input=text):
            result = run("qorvii18n-mail", *args, stdin=text.encode(source))
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            mail = result.stdout.decode("ascii")
            self.assertNotRegex(mail, r"[\r\0]")
            self.assertTrue(mail.endswith("\n"))
            self.assertLessEqual(max(map(len, mail.split("\n"))), MAX_LINE)

            message = email.message_from_bytes(result.stdout, policy=email.policy.default)
            self.assertEqual(message["Content-Type"].content_type, "text/plain")
            self.assertEqual(message["Content-Type"].params["charset"],
                             "US-ASCII" if text.isascii() else target or "UTF-8")
            self.assertEqual(message.get_content(errors="strict").replace("\r\n", "\n"),
                             body_lines(text))

            field = mail[mail.index("Subject: ") + len("Subject: "):mail.index("\nMessage-ID")]
            for word in re.findall(r"=\?[^ \n]*", field):
                self.assertRegex(word, rf"^=\?{target or 'UTF-8'}\?[QB]\?[!->@-~]+\?=$")
                self.assertLessEqual(len(word), MAX_WORD)
                decode_words([word])
            self.assertEqual(message["Subject"], subject)
            self.assertEqual((message.defects, message["Subject"].defects), ([], ()))

    def test_samples(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            text = sample(name)
            subject = text.splitlines()[0]
            self.check(text, subject, "UTF-8", None)
            for charset in charsets:
                self.check(text, subject, charset, None)
                if charset not in NOT_FOR_MAIL:
                    self.check(text, subject, "UTF-8", charset)

    def test_long_subjects(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            subject = re.sub(r"[\r\n\t]", " ", sample(name))
            for charset in ["UTF-8", *charsets]:
                if charset not in NOT_FOR_MAIL:
                    self.check("", subject, "UTF-8", charset)

    def test_awkward_sizes(self):
        for text in awkward_texts():
            self.check(text, text, "UTF-8", None)


class SendMail(unittest.TestCase):
    def test_addresses_text_and_file(self):
        recipients = '"Grimm, Jacob" <jacob@example.org>; 夏目漱石 <soseki@bücher.example>'
        result = run("send_mail", recipients)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        message = email.message_from_bytes(result.stdout, policy=email.policy.default)
        self.assertEqual([(to.display_name, to.addr_spec) for to in message["To"].addresses],
                         [("Grimm, Jacob", "jacob@example.org"),
                          ("夏目漱石", "soseki@xn--bcher-kva.example")])
        age = datetime.now(timezone.utc) - message["Date"].datetime
        self.assertLess(abs(age.total_seconds()), 600)
        self.assertRegex(message["Message-ID"], "^<[0-9a-f]{32}@example.org>$")
        self.assertEqual(message["Subject"], "Märchen von früher")
        text, attachment = message.iter_parts()
        self.assertEqual(text.get_content(), "Guten Tag,\r\n\r\nanbei das Märchen.\r\n")
        self.assertEqual(attachment.get_filename(), "Märchen.txt")
        self.assertEqual(attachment.get_content(), "Es war einmal ein König.\n")
        self.assertEqual(message.defects, [])


class FoldHeader(unittest.TestCase):
    """The library's own folding of texts that fit into one of its chunks."""

    def check(self, text, charset):
        with self.subTest(input=text, charset=charset):
            result = run("fold_header", text, charset)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            output = result.stdout.decode()
            columns = re.findall(r": (\d+) columns of text", output)
            for form, foretold in zip("QB", columns, strict=True):
                lines = [line for line in output.split("\n") if f"?{form}?" in line]
                self.assertLessEqual(max(map(len, lines)), MAX_LINE)
                self.assertEqual([line[0] for line in lines], ["="] + [">"] * (len(lines) - 1))
                words = [line.removeprefix(">") for line in lines]
                self.assertEqual(decode_words(words), text)
                written = "".join(word.split("?")[3] for word in words)
                if form == "B":  # as if one word had room for it all
                    written = base64.b64encode(text.encode(charset))
                self.assertEqual(int(foretold), len(written))

    def test_first_lines_of_samples(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            for charset in {"UTF-8", *charsets} - STATEFUL:
                self.check(sample(name).splitlines()[0], charset)

    def test_awkward_sizes(self):
        for text in awkward_texts():
            if 0 < len(text.encode("utf-16-le")) // 2 <= CHUNK_UNITS:
                self.check(text, "UTF-8")


class Convert(unittest.TestCase):
    def test_samples_there_and_back(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            text = sample(name)
            for charset in charsets:
                with self.subTest(sample=name, charset=charset):
                    there = run("qorvii18n-convert", "-t", charset, stdin=text.encode())
                    self.assertEqual((there.returncode, there.stderr), (0, b""))
                    self.assertEqual(there.stdout.decode(charset), text)
                    back = run("qorvii18n-convert", "-f", charset, stdin=text.encode(charset))
                    self.assertEqual((back.returncode, back.stdout), (0, text.encode()))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
