#!/usr/bin/env python3
"""The example programs' command lines: what they refuse, what they say, and which status they exit with.

usage: command_line_test.py DIRECTORY_OF_PROGRAMS [unittest arguments]
"""
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAMS = Path(sys.argv[1])


def run(program, *args, stdin=b"", stdout=subprocess.PIPE):
    args = [arg if isinstance(arg, bytes) else str(arg).encode() for arg in args]
    command = [PROGRAMS / program, *args]
    return subprocess.run(command, input=stdin, stdout=stdout, stderr=subprocess.PIPE)


# Input, source, target, message: what `convert` may write nothing of.
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

    def test_text_that_is_not_for_mail(self):
        lacking = "a character that the mail charset lacks"
        for text, source, target, message in [
                (b"gr\xfc\xdfe", "UTF-8", "UTF-8", "invalid text at byte 3"),
                (b"\x8c\xe1\x94", "Shift_JIS", "UTF-8", "invalid text at byte 3"),
                ("Un cœur".encode(), "UTF-8", "ISO-8859-1", f"{lacking} at byte 5"),
                ("語ß".encode(), "UTF-8", "ISO-2022-JP", f"{lacking} at byte 4"),
                ("a\u200db".encode(), "UTF-8", "ISO-8859-1", f"{lacking} at byte 2")]:
            args = ["--subject", "x", "--from", source, "--to", target]
            self.check("encode_mail", args, f"standard input: {message}", 1, text)
            args[1] = text
            self.check("encode_mail", args, f"subject: {message}", 1)
        self.check("encode_mail", ["--subject", "a\nX: y"],
                   "subject: a forbidden character at byte 2", 1)
        for text, position in [(b"ab\0c", 3), (b"\0", 1), (b"x" * 70000 + b"\0", 70001)]:
            self.check("encode_mail", ["--subject", "x"],
                       f"standard input: a forbidden character at byte {position}", 1, text)

    def test_charsets(self):
        for option, message in [("--from", "unknown charset"), ("--to", "unknown mail charset")]:
            self.check("convert", ["--from", "UTF-8", "--to", "UTF-8", option, "klingon"],
                       "unknown charset: klingon", 1)
            self.check("encode_mail", ["--subject", "x", option, "klingon"], message, 1)
        self.check("encode_mail", ["--subject", "x", "--to", "UTF-16"], "unknown mail charset", 1)
        self.check("fold_header", ["x", "klingon"], "unknown charset: klingon", 1)
        self.check("fold_header", ["ß", "KOI8-R"], "the text cannot be converted from UTF-8", 1)

    def test_usage(self):
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
                ("convert", [*both, "-x"], "no such option: -x (see --help)")]:
            self.check(program, args, message, 2)

    def test_help(self):
        for program in ["encode_mail", "convert"]:
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
            self.check("encode_mail", ["--subject", "x", bad], f"{bad}: invalid text at byte 3", 1)
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
                              ("convert", ["--from", "UTF-8", "--to", "UTF-8"])]:
            with self.subTest(program=program, args=args), open("/dev/full", "wb") as full:
                result = run(program, *args, stdin=b"text", stdout=full)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stderr.decode(),
                                 f"{program}: standard output: No space left on device\n")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
