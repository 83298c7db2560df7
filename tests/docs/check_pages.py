#!/usr/bin/env python3
"""Checks that every exported C function has a manual page that names it, and the pages' language.

  check_pages.py MANUAL_DIRECTORY NM MANDOC LIBRARY...

The directory has man1, man3 and man7, with the pages that only lead to another one.
"""
import re
import subprocess
import sys
from pathlib import Path


def c_functions(library, nm):
    symbols = subprocess.run([nm, "-D", "--defined-only", library], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    names = re.findall(r" T (\w+)$", symbols, re.M)
    return [name for name in names if not name.startswith("_Z")]


def main():
    manual, nm, mandoc, *libraries = sys.argv[1:]
    faults = []

    functions = []
    for library in libraries:
        exported = c_functions(library, nm)
        functions += exported
        if not exported:
            faults.append(f"{library} exports no C function")
    for function in functions:
        page = Path(manual, "man3", f"{function}.3")
        if page.is_file() and (link := re.fullmatch(r"\.so (\S+)\n", page.read_text())):
            page = Path(manual, link[1])
        if not page.is_file():
            faults.append(f"{function}: no page {page}")
            continue
        text = page.read_text()
        if not re.search(rf"^\.Nm {function}( ,)?$", text, re.M):
            faults.append(f"{function}: not under NAME in {page}")
        if not re.search(rf"^\.F[no] {function}( |$)", text, re.M):
            faults.append(f"{function}: not under SYNOPSIS in {page}")

    pages = sorted(Path(manual).glob("man[137]/*"))
    for page in pages:
        is_link = page.read_text().startswith(".so ")
        if is_link and page.stem not in functions:
            faults.append(f"{page}: no library exports such a function")
        if not is_link:
            lint = subprocess.run([mandoc, "-Tlint", "-W", "warning", str(page)], text=True,
                                  stdout=subprocess.PIPE)
            if lint.returncode != 0:
                faults.append(lint.stdout.strip())

    if faults:
        sys.exit("\n".join(faults))


main()
