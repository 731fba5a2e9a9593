#!/usr/bin/env python3
"""Doxygen input filter: gives the text of a group of declarations to its members.

Our headers say once, in front of a group, what holds for all of its members:

    /// @name Cell 0 of faces
    /// Id of the cell on side 0 ...
    /// @{

Doxygen wants the text behind the brace, at the first member, and then shares it (DISTRIBUTE_GROUP_DOC).
Line numbers stay as they are.
"""
import re
import sys


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        lines = file.read().split("\n")
    start = None
    for number, line in enumerate(lines):
        if not re.match(r"\s*///(?!<)", line):
            start = None
            continue
        start = number if start is None else start
        if re.match(r"\s*/// @\{\s*$", line):
            block = [re.sub(r"@name\s+(.*)", r"\1.", text) for text in lines[start:number]]
            lines[start:number + 1] = [line, *block]
            start = None
    sys.stdout.write("\n".join(lines))


if __name__ == "__main__":
    main()
