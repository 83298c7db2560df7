#!/usr/bin/env python3
"""Reads with Python's email package and codecs what the example programs write.

usage: decode_test.py DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES [unittest arguments]
"""
import base64
import email
import email.header
import email.policy
import random
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAMS, EXAMPLES = Path(sys.argv[1]), Path(sys.argv[2])

MAX_LINE = 76
MAX_WORD = 75
# Thresholds that decide for one encoding, whatever the text.
ALWAYS = {"0": "base64", "2": "quoted-printable"}

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


def run(program, *args, stdin=b"", stdout=subprocess.PIPE):
    args = [arg if isinstance(arg, bytes) else str(arg).encode() for arg in args]
    command = [PROGRAMS / program, *args]
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


class EncodeMail(unittest.TestCase):
    def check(self, text, subject, source, target, threshold):
        """Encodes and decodes. A target of None leaves it to the program."""
        args = ["--subject", subject.encode(source), "--from", source, "--threshold", threshold]
        if target is not None:
            args += ["--to", target]
        body_charset = target or ("ISO-2022-JP" if source == "Shift_JIS" else "UTF-8")
        subject_charset = target or "UTF-8"
        with self.subTest(args=args, input=text):
            result = run("encode_mail", *args, stdin=text.encode(source))
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            mail = result.stdout.decode("ascii")
            self.assertNotRegex(mail.replace("\r\n", ""), r"[\r\n\0]")
            self.assertTrue(mail.endswith("\r\n"))
            self.assertLessEqual(max(map(len, mail.split("\r\n"))), MAX_LINE)

            message = email.message_from_bytes(result.stdout, policy=email.policy.default)
            self.assertEqual(message.keys(), ["Subject", "MIME-Version", "Content-Type",
                                              "Content-Transfer-Encoding"])
            self.assertEqual(message["Content-Type"].content_type, "text/plain")
            self.assertEqual(message["Content-Type"].params["charset"], body_charset)
            if text and threshold in ALWAYS:
                self.assertEqual(message["Content-Transfer-Encoding"], ALWAYS[threshold])
            self.assertEqual(message.get_content(errors="strict"), text)

            words = mail[len("Subject: "):mail.index("\r\nMIME-Version")].split("\r\n\t")
            for word in words:
                self.assertRegex(word, rf"^=\?{subject_charset}\?[QB]\?[!->@-~]*\?=$")
                self.assertLessEqual(len(word), MAX_WORD)
            self.assertEqual(decode_words(words), subject)
            self.assertEqual(message["Subject"], subject)
            self.assertEqual((message.defects, message["Subject"].defects), ([], ()))

    def test_samples(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            text = sample(name)
            subject = text.splitlines()[0]
            for threshold in ["0", "0.3", "2"]:
                self.check(text, subject, "UTF-8", None, threshold)
                for charset in charsets:
                    self.check(text, subject, "UTF-8", charset, threshold)
                    self.check(text, subject, charset, None, threshold)
                    self.check(text, subject, charset, "UTF-8", threshold)

    def test_long_subjects(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            subject = re.sub(r"[\r\n\t]", " ", sample(name))
            for threshold in ["0", "0.3", "2"]:
                for charset in ["UTF-8", *charsets]:
                    self.check("", subject, "UTF-8", charset, threshold)

    def test_awkward_sizes(self):
        for text in awkward_texts():
            for threshold in ["0", "2"]:
                self.check(text, text, "UTF-8", None, threshold)

    def test_users_spelling_of_a_charset_stays_out_of_the_mail(self):
        plain = run("encode_mail", "--subject", "é", "--to", "UTF-8", stdin=b"e").stdout
        for spelling in ["utf8", "u t-f_8", "UTF\r\n8"]:
            with self.subTest(charset=spelling):
                result = run("encode_mail", "--subject", "é", "--to", spelling, stdin=b"e")
                self.assertEqual(result.stdout, plain)


class FoldHeader(unittest.TestCase):
    """The library's own folding of texts that fit into one of its chunks."""

    def check(self, text, charset, threshold):
        with self.subTest(input=text, charset=charset, threshold=threshold):
            result = run("fold_header", "--to", charset, "--threshold", threshold, text)
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

            # A subject of one word takes the form that was foretold.
            mail = run("encode_mail", "--subject", text, "--to", charset, "--threshold", threshold)
            if mail.stdout.count(b"=?") == 1:
                chosen = b"?B?" if ": Base64 is chosen" in output else b"?Q?"
                self.assertIn(chosen, mail.stdout)

    def test_first_lines_of_samples(self):
        for name, charsets in SAMPLE_CHARSETS.items():
            for charset in {"UTF-8", *charsets} - STATEFUL:
                for threshold in ["0.3", "0.7"]:
                    self.check(sample(name).splitlines()[0], charset, threshold)

    def test_awkward_sizes(self):
        for text in awkward_texts():
            if 0 < len(text.encode("utf-16-le")) // 2 <= 86:
                self.check(text, "UTF-8", "0.5")


class Convert(unittest.TestCase):
    def test_samples_there_and_back(self):
        with tempfile.TemporaryDirectory() as scratch:
            legacy, back = Path(scratch, "legacy"), Path(scratch, "back")
            for name, charsets in SAMPLE_CHARSETS.items():
                text = sample(name)
                for charset in charsets:
                    with self.subTest(sample=name, charset=charset):
                        there = run("convert", "--from", "UTF-8", "--to", charset,
                                    stdin=text.encode())
                        self.assertEqual((there.returncode, there.stderr), (0, b""))
                        self.assertEqual(there.stdout.decode(charset), text)
                        legacy.write_bytes(text.encode(charset))
                        result = run("convert", "--from", charset, "--to", "UTF-8", legacy, back)
                        self.assertEqual(result.returncode, 0)
                        self.assertEqual(result.stdout + result.stderr, b"")
                        self.assertEqual(back.read_bytes(), text.encode())

    def test_empty_and_nul(self):
        for text in [b"", b"a\0b", b"\0"]:
            with self.subTest(input=text):
                result = run("convert", "--from", "UTF-8", "--to", "UTF-16LE", stdin=text)
                self.assertEqual(result.stdout, text.decode().encode("utf-16-le"))


# Input, source, target, message: what neither program may write anything of.
UNCONVERTIBLE = [
    (b"gr\xfc\xdfe", "UTF-8", "UTF-8", "at byte 3: not UTF-8"),
    (b"\xff", "UTF-8", "UTF-8", "at byte 1: not UTF-8"),
    (b"x" * 300 + b"\xe3\x81\xff", "UTF-8", "UTF-8", "at byte 302: not UTF-8"),
    (b"Stra\xc3", "UTF-8", "UTF-8", "at byte 5: it ends inside a UTF-8 character"),
    (b"\x8c\xe1\x94", "Shift_JIS", "UTF-8", "at byte 3: it ends inside a Shift_JIS character"),
    ("Un cœur".encode(), "UTF-8", "ISO-8859-1",
     "after the character at byte 4: ISO-8859-1 lacks the next one"),
    ("Straße 語".encode(), "UTF-8", "KOI8-R",
     "after the character at byte 4: KOI8-R lacks the next one"),
    ("語ß".encode(), "UTF-8", "ISO-2022-JP",
     "after the character at byte 1: ISO-2022-JP lacks the next one"),
    ("œuf".encode(), "UTF-8", "ISO-8859-1", "from byte 1 on: ISO-8859-1 lacks the character"),
    (b"abc+2AA-def", "UTF-7", "UTF-8", "to UTF-8"),  # half a surrogate pair
]


class Failures(unittest.TestCase):
    def check(self, program, args, message, exit_code, stdin=b""):
        with self.subTest(program=program, args=args, input=stdin):
            result = run(program, *args, stdin=stdin)
            self.assertEqual(result.stderr.decode(), f"{program}: {message}\n")
            self.assertEqual((result.returncode, result.stdout), (exit_code, b""))

    def test_unconvertible_text(self):
        for text, source, target, message in UNCONVERTIBLE:
            charsets = ["--from", source, "--to", target]
            self.check("convert", charsets, f"standard input: cannot convert {message}", 1, text)
            mail = ["--subject", "x", *charsets]
            self.check("encode_mail", mail, f"standard input: cannot convert {message}", 1, text)
            mail[1] = text
            self.check("encode_mail", mail, f"subject: cannot convert {message}", 1)

    def test_nul_in_a_mail(self):
        for text, position in [(b"ab\0c", 3), (b"\0", 1), (b"x" * 70000 + b"\0", 70001)]:
            self.check("encode_mail", ["--subject", "x"], f"standard input: NUL at byte {position}",
                       1, text)

    def test_charsets(self):
        charset_pairs = [("klingon", "UTF-8"), ("UTF-8", "klingon")]
        for source, target in charset_pairs:
            charsets = ["--from", source, "--to", target]
            self.check("convert", charsets, "unknown charset: klingon", 1)
            self.check("encode_mail", ["--subject", "x", *charsets], "unknown charset: klingon", 1)
        for name in ("UTF-16,version=1", "KOI8-R,x=y"):
            for option in ("--from", "--to"):
                self.check("encode_mail", ["--subject", "x", option, name],
                           f"no charset for mail: {name}", 1)
        self.check("fold_header", ["--to", "klingon", "x"], "unknown charset: klingon", 1)
        self.check("fold_header", ["--to", "KOI8-R", "ß"],
                   "the text cannot be converted from UTF-8 to KOI8-R", 1)

    def test_usage(self):
        for number in ["", " 0.3", "0.3x", "-1", "+1", "nan", "inf", "0x1", "1e3", "1.2.3", ".", "0,3"]:
            message = f"--threshold is not a number such as 0.3: {number}"
            self.check("encode_mail", ["--subject", "x", "--threshold", number], message, 2)
            self.check("fold_header", ["--threshold", number, "x"], message, 2)
        both = ["--from", "UTF-8", "--to", "UTF-8"]
        for program, args, message in [
                ("encode_mail", [], "--subject is needed (see --help)"),
                ("encode_mail", ["--subject"], "--subject needs a value"),
                ("encode_mail", ["--subject", "x", "--form", "x"],
                 "no such option: --form (see --help)"),
                ("encode_mail", ["--subject", "x", "a", "b"], "one file too many: b (see --help)"),
                ("convert", both[:2], "--from and --to are needed (see --help)"),
                ("convert", both[2:], "--from and --to are needed (see --help)"),
                ("convert", both[:3], "--to needs a value"),
                ("convert", [*both, "a", "b", "c"], "one file too many: c (see --help)"),
                ("convert", [*both, "-x"], "no such option: -x (see --help)"),
                ("fold_header", [], "a text is needed (see --help)"),
                ("fold_header", ["a", "b"], "one text too many: b (see --help)"),
                ("fold_header", ["--to"], "--to needs a value"),
                ("fold_header", ["--form", "x"], "no such option: --form (see --help)")]:
            self.check(program, args, message, 2)

    def test_help(self):
        for program in ["encode_mail", "convert", "fold_header"]:
            with self.subTest(program=program):
                result = run(program, "--help")
                self.assertEqual((result.returncode, result.stderr), (0, b""))
                self.assertRegex(result.stdout.decode(), rf"^usage: {program} ")

    def test_files(self):
        both = ["--from", "UTF-8", "--to", "ISO-8859-1"]
        with tempfile.TemporaryDirectory() as scratch:
            missing, bad, out = (str(Path(scratch, name)) for name in ["missing", "bad", "out"])
            Path(bad).write_bytes(b"ab\xff")
            for program, args in [("convert", both), ("encode_mail", ["--subject", "x", *both])]:
                self.check(program, [*args, missing], f"{missing}: No such file or directory", 1)
                self.check(program, [*args, scratch], f"{scratch}: Is a directory", 1)
                self.check(program, [*args, bad], f"{bad}: cannot convert at byte 3: not UTF-8", 1)
            message = f"{bad}: cannot convert at byte 3: not UTF-8"
            self.check("convert", [*both, bad, out], message, 1)
            self.assertFalse(Path(out).exists())
            Path(out).write_bytes(b"from before")
            self.check("convert", [*both, bad, out], message, 1)
            self.assertEqual(Path(out).read_bytes(), b"from before")
            Path(bad).write_bytes(b"good")
            self.check("convert", [*both, bad, "/dev/full"],
                       "/dev/full: No space left on device", 1)

    def test_full_standard_output(self):
        for program, args in [("encode_mail", ["--subject", "x"]), ("encode_mail", ["--help"]),
                              ("convert", ["--from", "UTF-8", "--to", "UTF-8"]),
                              ("fold_header", ["x"]), ("fold_header", ["--help"])]:
            with self.subTest(program=program, args=args), open("/dev/full", "wb") as full:
                result = run(program, *args, stdin=b"text", stdout=full)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stderr.decode(),
                                 f"{program}: standard output: No space left on device\n")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
