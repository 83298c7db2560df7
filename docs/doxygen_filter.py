#!/usr/bin/env python3
"""Lets Doxygen read a public header: makes documentation comments of the plain ones.

A comment that stands over several functions in a row is repeated for each of them; copying, moving
and destroying need none.
"""
import re
import sys
from pathlib import Path


def mark_comment(line):
    line = re.sub(r"^(\s*)/\*", r"\1/**", line)
    line = re.sub(r"^ \* +(-?\d)  ", r" * - \1: ", line)  # a table of results is a list
    return re.sub(r"^(\s*)//", r"\1///", line)


def mark_trailing_comment(line):
    if line.startswith("}"):  # the end of a namespace
        return line
    line = re.sub(r"(\S\s+)/\*(.*\*/)$", r"\1/**<\2", line)
    return re.sub(r"(\S\s+)//(.*)$", r"\1///<\2", line)


def function_name(declaration):
    name = re.search(r"(~?\w+|operator\W+)\(", declaration)
    return name[1] if name else ""


def repeats_comment(line, name, described):
    has_own_comment = mark_trailing_comment(line) != line
    is_special = name == described or name.startswith(("~", "operator"))
    return name != "" and not has_own_comment and not is_special


def filtered(lines):
    comment = []  # the last one
    described = None  # the name of what it was written for, None before that has come
    in_comment = in_declaration = False
    for line in lines:
        if in_comment or re.match(r"\s*(//|/\*)", line):
            if described is not None:
                comment, described = [], None
            comment.append(mark_comment(line))
            in_comment = (in_comment or "/*" in line) and "*/" not in line
            yield comment[-1]
        elif not line.strip():
            comment, described = [], None
            yield line
        elif line.startswith("#"):
            yield line
        else:
            if not in_declaration:
                name = function_name(line)
                if described is None:
                    described = name
                elif repeats_comment(line, name, described):
                    yield from comment
            code = re.sub(r"\s*(//|/\*).*", "", line)
            in_declaration = not code.endswith((";", "{", "}", ":"))
            if code.endswith(("{", ":")):
                comment, described = [], None
            yield mark_trailing_comment(line)


def main():
    first, *others = filtered(Path(sys.argv[1]).read_text(encoding="utf-8").splitlines())
    # The first comment is about the file.
    print(first.replace("/** ", "/** @file\n * ").replace("/// ", "/// @file\n/// "))
    print("\n".join(others))


main()
