#!/usr/bin/env python3
"""Runs the commands that the examples' README shows and compares what they print with the page.

usage: readme_test.py DIRECTORY_OF_PROGRAMS DIRECTORY_OF_EXAMPLES
"""
import os
import re
import subprocess
import sys
from pathlib import Path

programs, examples = sys.argv[1:]
page = Path(examples, "README.md").read_text(encoding="utf-8")
environment = {**os.environ, "PATH": f"{programs}:{os.environ['PATH']}"}

shown = []
for block in re.findall(r"^```console\n(.*?)^```$", page, re.M | re.S):
    for session in block.removeprefix("$ ").split("\n$ "):
        command, _, output = session.partition("\n")
        shown.append((command, output.rstrip("\n")))

wrong = 0 if shown else 1
for command, output in shown:
    result = subprocess.run(["bash", "-c", command], cwd=examples, env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    printed = result.stdout.decode().replace("\r\n", "\n").rstrip("\n")
    if printed != output:
        wrong += 1
        print(f"$ {command}\nprints\n{printed}\nand the page shows\n{output}\n")
print(f"{len(shown)} commands, {wrong} of them wrong")
sys.exit(wrong != 0)
