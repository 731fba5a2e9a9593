#!/usr/bin/env python3
"""Checks that a shared library exports the names of its own namespace and nothing else, and the functions of a list.

exports.py NAMESPACE LIBRARY [--golden FILE]
exports.py NAMESPACE LIBRARY --print

The list has one function per line, written as in tests/abi's virtual tables, sorted; constructors and destructors, of
which the compiler makes several, once. Weak functions are not in it: what the compiler puts into each user's code as well is no promise of ours.
With --print it goes to standard output, to replace a golden file on purpose.
"""
import argparse
import difflib
import pathlib
import re
import subprocess
import sys

sys.dont_write_bytecode = True # leaves the source tree alone
from vtables import shorten # pylint: disable=wrong-import-position

# What the compiler makes for a class: "vtable for meridyn::KelBase", "non-virtual thunk to ...".
GENERATED = (r"(?:vtable|VTT|typeinfo|typeinfo name|construction vtable|guard variable) for |"
             r"(?:non-virtual|virtual|covariant return) thunk to ")


def compare(functions, golden):
    """What to complain about, as text."""
    expected = golden.read_text(encoding="utf-8").splitlines() if golden.is_file() else []
    return "\n".join(difflib.unified_diff(expected, functions, golden.name, "exported", lineterm="", n=0))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("namespace")
    parser.add_argument("library")
    parser.add_argument("--golden", type=pathlib.Path, help="list of the functions that must be there, and no others")
    parser.add_argument("--print", action="store_true", dest="wanted", help="print the list")
    arguments = parser.parse_args()

    listing = subprocess.run(["nm", "-DC", "--defined-only", arguments.library], check=True, stdout=subprocess.PIPE,
                             text=True).stdout
    entries = [line.split(None, 2)[1:] for line in listing.splitlines()]
    functions = sorted({shorten(name) for kind, name in entries
                        if kind == "T" and re.match(rf"{arguments.namespace}::", name)})
    if arguments.wanted:
        print("\n".join(functions))
        return 0
    print(f"{len(entries)} names, {len(functions)} functions")
    if not entries:
        return f"{arguments.library} exports nothing"
    allowed = re.compile(rf"(?:{GENERATED})*{arguments.namespace}::")
    foreign = [name for _, name in entries if not allowed.match(name)]
    if foreign:
        return "\n".join([f"{arguments.library} exports foreign names:", *foreign])
    return compare(functions, arguments.golden) or 0 if arguments.golden else 0


if __name__ == "__main__":
    sys.exit(main())
