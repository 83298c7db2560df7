#!/usr/bin/env python3
"""Runs the examples of a page and prints where their output is not what the page says.

  run_examples.py PAGE DIRECTORY_OF_PROGRAMS C_COMPILER... -- CXX_COMPILER... -- ARGUMENT...

The compilers come with their flags; the arguments, SOURCE among them, are for both. In a manual page these are the literal displays under EXAMPLES, in turn a program in C and its output.
In a Markdown page, each ```c or ```cpp block that has a main function, with the ```text block that follows it,
and each command in a ```console block, which finds the page's directory around it and the programs in
its PATH. Three dots stand for what is another each time.
"""
import difflib
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

page, programs = Path(sys.argv[1]), sys.argv[2]
first, second = (i for i, argument in enumerate(sys.argv) if argument == "--")
compilers = {"c": sys.argv[3:first], "cpp": sys.argv[first + 1:second]}
arguments = sys.argv[second + 1:]
environment = {**os.environ, "LC_ALL": "C.UTF-8", "PATH": f"{programs}:{os.environ['PATH']}"}


def manual_programs(text):
    examples = re.search(r"^\.Sh EXAMPLES$(.*?)^\.Sh ", text, re.M | re.S)
    displays = re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed$", examples[1] if examples else "",
                          re.M | re.S)
    displays = [display.replace(r"\e", "\\") for display in displays]
    return [("c", *example) for example in zip(displays[::2], displays[1::2], strict=True)]


def markdown_programs(text):
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", text, re.M | re.S)
    return [(language, program, output) for (language, program), (next_language, output)
            in zip(blocks, blocks[1:])
            if language in compilers and "int main(" in program and next_language == "text"]


def console_commands(text):
    for block in re.findall(r"^```console\n(.*?)^```$", text, re.M | re.S):
        for session in block.removeprefix("$ ").split("\n$ "):
            command, _, output = session.partition("\n")
            yield "console", command, output


def run_program(language, source):
    with tempfile.TemporaryDirectory() as scratch:
        path, binary = Path(scratch, f"example.{language}"), Path(scratch, "example")
        path.write_text(source, encoding="utf-8")
        given = [str(path) if argument == "SOURCE" else argument for argument in arguments]
        subprocess.run([*compilers[language], *given, "-o", str(binary)], check=True)
        return subprocess.run([str(binary)], check=True, stdout=subprocess.PIPE, env=environment)


def run_command(_, command):
    return subprocess.run(["bash", "-c", command], cwd=page.parent, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def as_printed(text):
    """Text as it stands on a page: line feeds only, tabs as blanks, nothing blank at the ends."""
    lines = text.replace("\r\n", "\n").expandtabs().rstrip().splitlines()
    return [line.rstrip() for line in lines]


def is_printed(expected, printed):
    """Three dots on a page stand for what is another each time."""
    return re.fullmatch(re.escape(expected).replace(r"\.\.\.", ".+"), printed) is not None


def main():
    text = page.read_text(encoding="utf-8")
    read_programs = markdown_programs if page.suffix == ".md" else manual_programs
    examples = [(run_program, *example) for example in read_programs(text)]
    examples += [(run_command, *example) for example in console_commands(text)]
    if not examples:
        sys.exit(f"{page}: no example with its output")
    wrong = 0
    for run, language, example, expected in examples:
        printed = run(language, example).stdout.decode("utf-8", "replace")
        wanted, found = as_printed(expected), as_printed(printed)
        if len(wanted) == len(found) and all(map(is_printed, wanted, found)):
            continue
        difference = list(difflib.unified_diff(wanted, found, f"{page}", "what is printed",
                                               lineterm=""))
        wrong += 1
        print(example.splitlines()[0], *difference, sep="\n")
    print(f"{page.name}: {len(examples)} examples, {wrong} wrong")
    sys.exit(wrong != 0)


main()
