#!/usr/bin/env python3
"""Builds the C example of a page, runs it, and compares what it prints with what the page says.

  run_example.py PAGE COMPILER [ARGUMENT...]

In a manual page these are the first two literal displays under EXAMPLES; in a Markdown page, the
first ```c block that has a main function, and the ```text block that follows it.
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path


def manual_blocks(page):
    examples = re.search(r"^\.Sh EXAMPLES$(.*?)^\.Sh ", page, re.M | re.S)
    if not examples:
        return []
    displays = re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed$", examples[1], re.M | re.S)
    return [display.replace(r"\e", "\\") for display in displays]


def markdown_blocks(page):
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", page, re.M | re.S)
    for (language, program), (next_language, output) in zip(blocks, blocks[1:]):
        if language == "c" and "int main(" in program and next_language == "text":
            return [program, output]
    return []


def as_printed(text):
    """Text as it stands on a page: line feeds only, tabs as blanks, nothing blank at the ends."""
    lines = text.replace("\r\n", "\n").expandtabs().rstrip().splitlines()
    return [line.rstrip() for line in lines]


def main():
    page, compiler = Path(sys.argv[1]), sys.argv[2:]
    read_blocks = markdown_blocks if page.suffix == ".md" else manual_blocks
    blocks = read_blocks(page.read_text(encoding="utf-8"))
    if len(blocks) < 2:
        sys.exit(f"{page}: no example with its output")
    program, expected = blocks[:2]

    with tempfile.TemporaryDirectory() as scratch:
        source, binary = Path(scratch, "example.c"), Path(scratch, "example")
        source.write_text(program, encoding="utf-8")
        command = [str(source) if argument == "SOURCE" else argument for argument in compiler]
        if subprocess.run([*command, "-o", str(binary)]).returncode != 0:
            sys.exit(f"{page}: the example does not compile")
        run = subprocess.run([str(binary)], stdout=subprocess.PIPE,
                             env={**os.environ, "LC_ALL": "C.UTF-8"})
    printed = run.stdout.decode("utf-8", "replace")
    if run.returncode != 0 or as_printed(printed) != as_printed(expected):
        sys.exit(f"{page}: the example exits {run.returncode} and prints\n{printed}\n"
                 f"where the page says\n{expected}")


main()
