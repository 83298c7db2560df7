#!/usr/bin/env python3
"""Lists what abidw, as standard input, found in a library: a line for each function, slot of a
virtual function, field, base class, size and value that programs are compiled with. A change that
programs cannot bear shows as a line that is gone."""
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

types = {}
lines = set()


def of_type(element):
    return type_name(element.get("type-id"))


def type_name(identity):
    element, name = types[identity]
    match element.tag:
        case "pointer-type-def":
            return of_type(element) + "*"
        case "reference-type-def":
            return of_type(element) + ("&&" if element.get("kind") == "rvalue" else "&")
        case "qualified-type-def":
            qualifiers = [each for each in ("const", "volatile") if element.get(each)]
            return " ".join([of_type(element), *qualifiers])
        case "array-type-def":
            return of_type(element) + "".join(f"[{s.get('length')}]" for s in element)
        case "typedef-decl":
            return of_type(element)
        case "function-type":
            parameters = ", ".join(map(of_type, element.findall("parameter")))
            return f"{of_type(element.find('return'))}({parameters})"
    assert name, f"no name for a type of the kind {element.tag}"
    return name


def walk(element, scope):
    """Every element below, with its parent and its name in full."""
    for child in element:
        name = scope + child.get("name", "")
        yield child, element, name
        yield from walk(child, name + "::" if child.get("name") else scope)


def in_bytes(bits):
    return f"{int(bits) / 8:g}"


def describe_function(function, parent, name):
    member = parent if parent.tag == "member-function" else {}
    kind = [member.get("access", "function")]
    if member.get("vtable-offset"):
        kind.append("virtual " + member.get("vtable-offset"))
    elif not function.get("elf-symbol-id"):
        return
    if function.get("mangled-name") == name:  # C, where the symbol does not tell the parameters
        name += f"({', '.join(map(of_type, function.findall('parameter')))})"
    else:
        name = function.get("mangled-name")
    lines.add(f"{' '.join(kind)} {of_type(function.find('return'))} {name}")


def describe_class(element, name):
    fields = element.findall("base-class") + element.findall("data-member")
    size = in_bytes(element.get("size-in-bits"))
    lines.add(f"class {name}: {size} bytes, {len(fields)} fields and bases")
    for field in fields:
        offset = field.get("layout-offset-in-bits")
        place = f"at {in_bytes(offset):>3}" if offset else "static"
        what = f"base {of_type(field)}" if field.tag == "base-class" else ""
        for variable in field:
            what = f"{of_type(variable)} {variable.get('name')}"
        lines.add(f"class {name}: {place} {field.get('access')} {what}")


def describe_enumeration(element, name):
    underlying, _ = types[element.find("underlying-type").get("type-id")]
    lines.add(f"enum {name}: {in_bytes(underlying.get('size-in-bits'))} bytes")
    for value in element.findall("enumerator"):
        lines.add(f"enum {name}: {value.get('name')} = {value.get('value')}")


corpus = ElementTree.parse(sys.stdin).getroot()
elements = list(walk(corpus, ""))
for element, _, name in elements:
    types.setdefault(element.get("id"), (element, name))
for symbol in corpus.iterfind("elf-variable-symbols/elf-symbol"):
    if not symbol.get("name").startswith(("_ZTI", "_ZTS")):
        lines.add(f"variable {symbol.get('name')}: {symbol.get('size')} bytes")
for element, parent, name in elements:
    ours = "/qorvii18n/" in element.get("filepath", "")
    if element.tag == "function-decl":
        describe_function(element, parent, name)
    elif element.tag == "class-decl" and ours and element.get("size-in-bits"):
        describe_class(element, name)
    elif element.tag == "enum-decl" and ours:
        describe_enumeration(element, name)
demangled = subprocess.check_output("c++filt", input="\n".join(lines), text=True)
print(*sorted(set(demangled.splitlines())), sep="\n")
