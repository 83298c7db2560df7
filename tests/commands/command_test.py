#!/usr/bin/env python3
"""The commands: what they write, what they refuse and how they say so.

usage: command_test.py DIRECTORY_OF_COMMANDS DIRECTORY_OF_COMPLETIONS [unittest arguments]
"""
import email
import email.policy
import os
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

COMMANDS, COMPLETIONS = Path(sys.argv[1]), Path(sys.argv[2])


def run(command, *args, stdin=b"", stdout=subprocess.PIPE, **options):
    args = [arg if isinstance(arg, bytes) else str(arg).encode() for arg in args]
    return subprocess.run([COMMANDS / command, *args], input=stdin, stdout=stdout,
                          stderr=subprocess.PIPE, **options)


def complete(command, *words):
    """What bash offers for the last word."""
    script = (f"source {COMPLETIONS / command}; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
              f"compopt() {{ :; }}; _{command.replace('-', '_')}; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
    environment = {**os.environ, "PATH": f"{COMMANDS}:{os.environ['PATH']}"}
    return subprocess.run(["bash", "-c", script, "-", command, *words], env=environment, check=True,
                          stdout=subprocess.PIPE, text=True).stdout.split()


class TestCase(unittest.TestCase):
    def check(self, command, args, exit_status, message, stdin=b"", output=b""):
        """The last line on standard error, and what was written."""
        with self.subTest(command=command, args=args, input=stdin[:50]):
            result = run(command, *args, stdin=stdin)
            lines = result.stderr.decode().splitlines()
            self.assertEqual(lines[-1:], [f"{command}: {message}"] if message else [])
            self.assertEqual((result.returncode, result.stdout), (exit_status, output))


class Convert(TestCase):
    def test_results(self):
        for args, text, result in [
                ([], "a€\n".encode(), "a€\n".encode()),
                (["-f", "Shift_JIS"], b"\x93\xfa\x96\x7b", "日本".encode()),
                (["--from=ISO-2022-JP", "--to", "UTF-16BE"], b"\x1b$BF|\x1b(B\n" * 40000,
                 "日\n".encode("utf-16-be") * 40000),
                (["-tUTF-8", "-"], b"", b"")]:
            self.check("qorvii18n-convert", args, 0, "", text, result)

    def test_errors_have_a_place_and_what_is_before_them_is_written(self):
        name = "standard input"
        long = b"x" * 99999 + b"\r\n"
        for args, text, output, message in [
                ([], b"gr\xfcn", b"gr", f"{name}:1:3: byte 3: not UTF-8"),
                ([], long + b"\xff", long, f"{name}:2:1: byte 100002: not UTF-8"),
                ([], b"a\nb\xe6\x97", b"a\nb",
                 f"{name}:2:2: byte 4: the text ends inside a UTF-8 character"),
                (["-t", "latin1"], "ä€".encode(), b"\xe4",
                 f"{name}:1:2: byte 3: latin1 lacks U+20AC"),
                (["-t", "ISO-2022-JP"], "日😀".encode(), b"\x1b$BF|\x1b(B",
                 f"{name}:1:2: byte 4: ISO-2022-JP lacks U+1F600")]:
            self.check("qorvii18n-convert", args, 1, message, text, output)

    def test_wrong_usage(self):
        for args, message in [(["-f", "klingon"], "unknown charset: klingon (see --help)"),
                              (["-t", "klingon"], "unknown charset: klingon (see --help)"),
                              (["-x"], "see --help"), (["-f"], "see --help")]:
            self.check("qorvii18n-convert", args, 2, message)

    def test_files(self):
        with tempfile.TemporaryDirectory() as scratch:
            good, bad, missing = (str(Path(scratch, name)) for name in ["good", "bad", "missing"])
            Path(good).write_bytes("ä".encode())
            Path(bad).write_bytes(b"\nb\xff")
            to = ["-t", "ISO-8859-1"]
            self.check("qorvii18n-convert", [*to, good, "-", good], 0, "", b"b", b"\xe4b\xe4")
            self.check("qorvii18n-convert", [*to, good, bad, good], 1,
                       f"{bad}:2:2: byte 3: not UTF-8", output=b"\xe4\nb")
            self.check("qorvii18n-convert", [*to, missing], 1,
                       f"{missing}: No such file or directory")
            self.check("qorvii18n-convert", [*to, scratch], 1, f"{scratch}: Is a directory")

    def test_list(self):
        lines = run("qorvii18n-convert", "-l").stdout.decode().splitlines()
        names = [line.split()[0] for line in lines]
        self.assertEqual(names, sorted(set(names), key=str.lower))
        self.assertIn("UTF-7", lines)
        self.assertIn(["Shift_JIS", "mail:", "Shift_JIS"], [line.split() for line in lines])
        self.assertIn(["KSC_5601", "mail:", "EUC-KR"], [line.split() for line in lines])
        for name in names:
            self.assertEqual(run("qorvii18n-convert", "-f", name, "-t", name).returncode, 0, name)
        self.assertEqual(complete("qorvii18n-convert", "-t", "KOI8-"), ["KOI8-R", "KOI8-U"])
        self.assertEqual(complete("qorvii18n-convert", "--fr"), ["--from"])


class Mail(TestCase):
    NEEDED = {"--from": "a@example.org", "--to": "b@example.org", "--subject": "x"}

    def arguments(self, *more, **changes):
        values = {**self.NEEDED, **{f"--{name}": value for name, value in changes.items()}}
        return [arg for pair in values.items() if pair[1] is not None for arg in pair] + list(more)

    def read(self, args, text):
        result = run("qorvii18n-mail", *args, stdin=text)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertNotIn(b"\r", result.stdout)
        return email.message_from_bytes(result.stdout, policy=email.policy.default)

    def test_python_reads_what_went_in(self):
        with tempfile.TemporaryDirectory() as scratch:
            files = {"é, \"1\".PNG": ("image/png", bytes(range(256)) * 500),
                     "a.txt": ("text/plain", "日本\n".encode()),
                     "mail.eml": ("application/octet-stream", b"From: a\n\nb\n"),
                     "nothing": ("application/octet-stream", b"")}
            attached = []
            for name, (_, data) in files.items():
                Path(scratch, name).write_bytes(data)
                attached += ["--attach", Path(scratch, name)]
            text = "Grüße\n--=_1_=\n.\nFrom 😀\n"
            mail = self.read(self.arguments(*attached, **{
                "from": "Jürgen Groß <j@köln.example>, k@example.org", "cc": "c@example.org",
                "to": '"Klein, J." <j@example.org>; friends: 王 <w@example.cn>;',
                "subject": "Grüße, 日本"}), text.encode())
            self.assertEqual(mail.defects, [])
            self.assertEqual(mail["Subject"], "Grüße, 日本")
            self.assertEqual([(who.display_name, who.addr_spec) for who in mail["To"].addresses],
                             [("Klein, J.", "j@example.org"), ("王", "w@example.cn")])
            self.assertEqual(mail["Sender"].address.addr_spec, "j@xn--kln-sna.example")
            self.assertEqual((len(mail["From"].addresses), mail["Cc"]), (2, "c@example.org"))
            self.assertRegex(mail["Message-ID"], r"^<[0-9a-f]{32}@xn--kln-sna\.example>$")
            age = time.time() - mail["Date"].datetime.timestamp()
            self.assertTrue(0 <= age < 60, age)
            body, *parts = mail.iter_parts()
            self.assertEqual(body.get_content(), text.replace("\n", "\r\n"))
            self.assertEqual({part.get_filename(): (part.get_content_type(), part.get_payload(decode=True))
                              for part in parts}, files)
            self.assertEqual(parts[1].get_content_charset(), "utf-8")

    def test_charsets(self):
        args = self.arguments("--charset", "latin1", "--mail-charset", "ISO-8859-15",
                              subject=b"gr\xfcn")
        mail = self.read(args, b"\xfc\n")
        self.assertEqual((mail["Subject"], mail.get_content(), mail.get_content_charset()),
                         ("grün", "ü\n", "iso-8859-15"))
        result = run("qorvii18n-mail", *self.arguments("--smtputf8", to="jürgen@example.org"))
        self.assertIn("\nTo: jürgen@example.org\n".encode(), result.stdout)
        self.assertEqual(complete("qorvii18n-mail", "--mail-charset", "UTF-"), ["UTF-8"])
        self.assertEqual(complete("qorvii18n-mail", "--sm"), ["--smtputf8"])

    def test_what_is_wrong_is_named_and_nothing_is_written(self):
        lacks = "a character that the mail charset lacks"
        for changes, more, status, message in [
                ({"to": None}, [], 2, "--to is needed (see --help)"),
                ({}, ["--to", "c@example.org"], 2, "--to was given twice (see --help)"),
                ({}, ["a", "b"], 2, "one file too many: b (see --help)"),
                ({"to": "a@b, c@@d"}, [], 2, "--to: byte 8: bad address"),
                ({"to": " ,"}, [], 2, "--to: no address (see --help)"),
                ({"to": "b@c\nBcc: d@e"}, [], 2, "--to: byte 5: bad address"),
                ({"to": "jürgen@b"}, [], 2, "--to: jürgen@b needs --smtputf8 (see --help)"),
                ({"subject": "a\nX: y"}, [], 2, "--subject: byte 2: a forbidden character"),
                ({"subject": b"\xff"}, [], 2, "--subject: byte 1: invalid text"),
                ({"to": "日 <a@b>"}, ["--mail-charset", "latin1"], 2, f"--to: 日: byte 1: {lacks}"),
                ({}, ["--mail-charset", "fax"], 2, "--mail-charset: fax: unknown mail charset"),
                ({}, ["--charset", "fax"], 2, "--charset: fax: unknown charset"),
                ({}, ["missing"], 1, "missing: No such file or directory"),
                ({}, ["--attach", "missing"], 1, "missing: No such file or directory"),
                ({}, ["--attach", "-"], 2, "--attach: a file is needed (see --help)"),
                ({}, [], 1, "standard input: byte 3: invalid text")]:
            self.check("qorvii18n-mail", self.arguments(*more, **changes), status, message,
                       b"a\n\xff" if status == 1 and not more else b"text")


class EveryCommand(TestCase):
    def test_help_version_and_a_full_disk(self):
        for command in ["qorvii18n-convert", "qorvii18n-mail"]:
            with self.subTest(command=command):
                result = run(command, "--help")
                self.assertEqual((result.returncode, result.stderr), (0, b""))
                self.assertRegex(result.stdout.decode(), rf"^usage: {command} ")
                self.assertRegex(run(command, "--version").stdout.decode(),
                                 rf"^{command} \(qorvii18n\) \d+\.\d+\.\d+\.\d+\n$")
                with open("/dev/full", "wb") as full:
                    result = run(command, "--help", stdout=full)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stderr.decode(),
                                 f"{command}: standard output: No space left on device\n")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
