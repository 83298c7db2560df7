"""Compares what decoders make of every character that the mail library writes, in every charset.

usage: decoders.py LIBRARY
"""
import base64
import ctypes
import json
import os
import quopri
import subprocess
import sys
from collections import Counter
from pathlib import Path

HERE = Path(__file__).parent
# What a reader's decoder is known to take for another, and no rule of the library bars: ASCII.
KNOWN = {("glibc", "Shift_JIS", "\\"), ("glibc", "Shift_JIS", "~")}


def load(path):
    library = ctypes.CDLL(path)
    library.i18n_mail_header.restype = ctypes.c_void_p
    library.i18n_mail_free.argtypes = [ctypes.c_void_p]

    def header(text, charset):
        """The field's value, or null."""
        encoded = text.encode()
        result = library.i18n_mail_header(b"X", encoded, ctypes.c_size_t(len(encoded)), None,
                                          charset.encode(), None)
        value = ctypes.string_at(result).removeprefix(b"X: ").decode() if result else None
        library.i18n_mail_free(result)
        return value
    return header


def glibc():
    libc = ctypes.CDLL(None)
    libc.iconv_open.restype = libc.iconv.restype = ctypes.c_size_t
    libc.iconv.argtypes = [ctypes.c_size_t] + 4 * [ctypes.c_void_p]
    handles = {}

    def decode(charset, written):
        if charset not in handles:
            handles[charset] = libc.iconv_open(b"UTF-32LE", charset.encode())
        room = ctypes.create_string_buffer(64)
        source, target = ctypes.c_char_p(written), ctypes.c_void_p(ctypes.addressof(room))
        sizes = ctypes.c_size_t(len(written)), ctypes.c_size_t(len(room))
        if libc.iconv(handles[charset], ctypes.byref(source), ctypes.byref(sizes[0]),
                      ctypes.byref(target), ctypes.byref(sizes[1])) == 2 ** 64 - 1:
            return None
        # some hold the last character back
        libc.iconv(handles[charset], None, None, ctypes.byref(target), ctypes.byref(sizes[1]))
        return room.raw[:len(room) - sizes[1].value].decode("utf-32-le", "replace")
    return lambda words: [decode(*word) for word in words]


def python(words):
    def decode(charset, written):
        try:
            return written.decode(charset)
        except (LookupError, UnicodeDecodeError):
            return None
    return [decode(*word) for word in words]


def program(*command):
    """A program that reads a charset and a text in hexadecimal a line, and writes JSON a line."""
    def decode(words):
        lines = "".join(f"{charset} {written.hex()}\n" for charset, written in words)
        done = subprocess.run(command, input=lines.encode(), stdout=subprocess.PIPE, check=True)
        return [json.loads(line) for line in done.stdout.splitlines()]
    return decode


DECODERS = {
    "Python": python,
    "glibc": glibc(),
    "Java": program("java", HERE / "Decode.java"),
    "WHATWG": program("node", HERE / "decode_whatwg.js"),
}


def names():
    """All names that glibc has for charsets, and ICU's for some of Microsoft's and IBM's."""
    listed = subprocess.run(["iconv", "-l"], stdout=subprocess.PIPE, check=True).stdout.decode()
    more = [f"{brand}-{number}" for brand in ("windows", "ibm", "cp") for number in range(20000)]
    return listed.replace("//", "").split() + more


def words(header, charset):
    """Character, charset and bytes of each encoded word that the library makes of one character."""
    numbers = [*range(0x10000)]
    if header(" \U00020000 ", charset) is not None:
        numbers += range(0x10000, 0x110000, 251)  # a rule, not a table, in all that have them
    for number in numbers:
        value = header(f" {chr(number)} ", charset) if not 0xD800 <= number < 0xE000 else None
        if value is None:
            continue
        _, name, encoding, text, _ = value.split("?")
        decode = base64.b64decode if encoding == "B" else quopri.decodestring
        yield chr(number), name, decode(text)


def main():
    header = load(sys.argv[1])
    written = sorted({value.split("?")[1] for name in names() if (value := header("  ", name))})
    wrong = 0
    for charset in written:
        characters = list(words(header, charset))
        found = Counter()
        for decoder, decode in DECODERS.items():
            for (character, name, text), read in zip(
                    characters, decode([word[1:] for word in characters]), strict=True):
                if read == f" {character} " or (decoder, name, character) in KNOWN:
                    continue
                found[decoder] += 1
                if found[decoder] <= 5:
                    print(f"{decoder}, {name}: U+{ord(character):04X} {text.hex()} is {read!a}")
        wrong += sum(found.values())
        print(f"{charset}: {len(characters)} characters", dict(found) or "", flush=True)
    print(f"{len(written)} charsets, {len(DECODERS)} decoders: {wrong} differences")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
