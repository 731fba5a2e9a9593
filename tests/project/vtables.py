#!/usr/bin/env python3
"""Compares the virtual tables of exported classes with the golden lists in tests/abi.

vtables.py --compiler CXX --source FILE --include DIR... [--golden DIR] [--print CLASS]

FILE includes the headers of these classes.
Which function sits in which slot comes from GCC's own class dump, what the function looks like from the debug
information of the same compilation (the dump shows no parameters). A golden list shows the slots that a class fills
itself, by addition or by overriding; all others are its first base's. A destructor takes two slots.
With --print the list of one class goes to standard output, to replace a golden file on purpose.
"""
import argparse
import collections
import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

NAMESPACES = ("meridyn", "arbor", "strata")
FLAGS = ["-std=c++17", "-g", "-fno-eliminate-unused-debug-types", "-femit-class-debug-always", "-fdump-lang-class"]

FORM = re.compile(r"^(?:\(\w+\) )?(?:\((?:indirect (?:line )?string, )?offset: 0x[0-9a-f]+\): )?")

Entry = collections.namedtuple("Entry", "tag attributes children")
Function = collections.namedtuple("Function", "name access result signature")


def compile_headers(compiler, source, folders, where):
    """Compiles a source that includes all headers; gives the text of the class dump and of the debug data."""
    includes = [f"-I{pathlib.Path(folder).resolve()}" for folder in folders]
    subprocess.run([compiler, *FLAGS, *includes, "-c", pathlib.Path(source).resolve(), "-o", "all.o"], cwd=where, check=True)
    debug = subprocess.run(["readelf", "--debug-dump=info", "all.o"], cwd=where, check=True,
                           stdout=subprocess.PIPE, text=True, errors="replace").stdout
    return next(where.glob("*.class")).read_text(encoding="utf-8"), debug


def parse_debug(text):
    """The debug entries by offset, as a tree; entry None is the root."""
    entries = {None: Entry("", {}, [])}
    path = [entries[None]]
    entry = None
    for line in text.splitlines():
        start = re.match(r" <(\d+)><([0-9a-f]+)>: Abbrev Number: \d+ \((DW_TAG_\w+)\)", line)
        if start:
            depth = int(start[1])
            entry = Entry(start[3][len("DW_TAG_"):], {}, [])
            del path[depth + 1:]
            path[-1].children.append(entry)
            path.append(entry)
            entries[start[2]] = entry
            continue
        attribute = re.match(r"\s+<[0-9a-f]+>\s+DW_AT_(\w+)\s*: (.*?)\s*$", line)
        if attribute and entry is not None:
            value = re.sub(FORM, "", attribute[2])
            entry.attributes[attribute[1]] = value
    return entries


def type_text(entries, reference):
    """A type as one would write it."""
    if reference is None:
        return "void"
    entry = entries[reference.strip("<>").removeprefix("0x")]
    inner = entry.attributes.get("type")
    if entry.tag == "const_type":
        return "const " + type_text(entries, inner)
    if entry.tag == "pointer_type":
        return type_text(entries, inner) + "*"
    if entry.tag == "reference_type":
        return type_text(entries, inner) + "&"
    return shorten(entry.attributes.get("name", "?"))


def shorten(text):
    """Without our own namespace and what only the standard library's authors want to see."""
    text = re.sub(r"\[abi:\w+\]|std::__cxx11::|std::|meridyn::", "", text)
    text = text.replace("basic_string<char, char_traits<char>, allocator<char> >", "string")
    text = text.replace("basic_ostream<char, char_traits<char> >", "ostream")
    previous = None
    while previous != text:
        previous = text
        text = re.sub(r", (?:allocator|less)<(?:[^<>]|<[^<>]*>)*> ?(?=[>,])", "", text)
    for long_name, name in (("unsigned long", "unsigned64"), ("long long", "signed64"), ("short int", "short"),
                            ("long int", "long"), (" >", ">")):
        text = text.replace(long_name, name)
    return text


def functions_of(entries, entry):
    """The virtual functions that a class declares, by slot; destructors have no slot in the debug information."""
    found = {}
    for child in entry.children:
        slot = re.search(r"DW_OP_constu: (\d+)", child.attributes.get("vtable_elem_location", ""))
        if child.tag == "subprogram" and slot:
            found[int(slot[1])] = child
    return found


def demangle(names):
    run = subprocess.run(["c++filt"], input="\n".join(names), stdout=subprocess.PIPE, check=True, text=True)
    return dict(zip(names, run.stdout.splitlines()))


def collect_classes(entries):
    """Functions by slot, and bases, of each class of our namespaces, by full name."""
    classes = {}

    def visit(entry, prefix):
        for child in entry.children:
            name = prefix + child.attributes.get("name", "")
            if child.tag == "namespace" and (prefix or name in NAMESPACES):
                visit(child, name + "::")
            elif child.tag in ("class_type", "structure_type") and prefix and child.children:
                classes[name] = child
                visit(child, name + "::")

    for unit in entries[None].children:
        visit(unit, "")
    raw = {name: functions_of(entries, entry) for name, entry in classes.items()}
    texts = demangle([f.attributes["linkage_name"] for functions in raw.values() for f in functions.values()])
    tables = {}
    for name, functions in raw.items():
        tables[name] = {}
        for slot, function in functions.items():
            text = texts[function.attributes["linkage_name"]]
            own = function.attributes["name"]
            tables[name][slot] = Function(own, access_of(function), type_text(entries, function.attributes.get("type")),
                                          shorten(text[len(f"{name}::"):]))
    bases = {name: [describe_base(entries, child) for child in entry.children if child.tag == "inheritance"]
             for name, entry in classes.items()}
    destructors = {name: {child.attributes["name"]: access_of(child) for child in entry.children
                          if child.tag == "subprogram" and child.attributes.get("name", "").startswith("~")}
                   for name, entry in classes.items()}
    return tables, bases, destructors


def access_of(function):
    return re.search(r"\((\w+)\)", function.attributes.get("accessibility", "(private)"))[1]


def describe_base(entries, inheritance):
    virtual = "virtual " if "virtuality" in inheritance.attributes else ""
    return virtual + type_text(entries, inheritance.attributes["type"])


def parse_dump(text):
    """The first (primary) virtual table of each class: a list of the functions' full names."""
    tables = {}
    for name, block in re.findall(r"^Vtable for (.*)\n.*entries\n((?:\d+ .*\n)+)", text, re.MULTILINE):
        entries = [line.split(None, 1)[1] for line in block.splitlines()]
        heads = [i for i, entry in enumerate(entries) if "(& _ZTI" in entry]
        functions = entries[heads[0] + 1:]
        if len(heads) > 1: # the next table begins with its offsets
            functions = entries[heads[0] + 1:heads[1] - 1]
            while functions[-1].lstrip("-").isdigit():
                functions.pop()
        functions = [entry.removeprefix("(int (*)(...))") for entry in functions]
        # An abstract class has no destructor in its own table, only the two slots.
        tables[name] = [f"{name}::~{name.rpartition('::')[2]}" if entry == "0" else entry for entry in functions]
    return tables


def render(name, slots, tables, bases, destructors):
    """The golden list of one class."""
    inherited = " : " + ", ".join(bases[name]) if bases.get(name) else ""
    lines = [f"class {name}{inherited}"]
    for slot, entry in enumerate(slots):
        owner, _, function = entry.rpartition("::")
        known = tables.get(name, {}).get(slot)
        if entry == "__cxa_pure_virtual" and known:
            owner, function = name, known.name
        if owner != name:
            continue
        if function.startswith("~"):
            access = destructors[name].get(function, "public")
            lines.append(f"{slot}: {access} {function}()")
        elif known is None or known.name != function:
            raise ValueError(f"{name}: slot {slot} is {function} in the class dump, {known} in the debug information")
        else:
            pure = " = 0" if entry == "__cxa_pure_virtual" else ""
            lines.append(f"{slot}: {known.access} {known.result} {known.signature}{pure}")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--source", required=True, help="source that includes the headers")
    parser.add_argument("--include", nargs="+", required=True, help="folders of public headers")
    parser.add_argument("--golden", help="folder of the golden lists")
    parser.add_argument("--print", dest="wanted", help="full name of the class to print")
    arguments = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        dump, debug = compile_headers(arguments.compiler, arguments.source, arguments.include, pathlib.Path(folder))
    tables, bases, destructors = collect_classes(parse_debug(debug))
    lists = {name: render(name, slots, tables, bases, destructors)
             for name, slots in parse_dump(dump).items()
             if name.split("::")[0] in NAMESPACES and "<" not in name}
    if arguments.wanted:
        sys.stdout.write(lists[arguments.wanted])
        return 0
    return compare(lists, pathlib.Path(arguments.golden))


def compare(lists, golden):
    problems = []
    files = {path.name: path.read_text(encoding="utf-8") for path in golden.glob("*.vtable")}
    for name, text in sorted(lists.items()):
        file = name.removeprefix("meridyn::").replace("::", ".") + ".vtable"
        expected = files.pop(file, None)
        if expected is None:
            problems.append(f"{file}: no golden list for {name}")
        elif expected != text:
            difference = difflib.unified_diff(expected.splitlines(), text.splitlines(), file, "compiled", lineterm="")
            problems.append("\n".join(difference))
    problems += [f"{file}: no such class in the public headers" for file in sorted(files)]
    print(f"{len(lists)} classes compared")
    return "\n".join(problems) if problems else 0


if __name__ == "__main__":
    sys.exit(main())
