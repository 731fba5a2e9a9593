#!/usr/bin/env python3
"""Doxygen input filter: writes out what our headers say once. Line numbers stay as they are.

Our headers say once, in front of a group, what holds for all of its members:

    /// @name Cell 0 of faces
    /// Id of the cell on side 0 ...
    /// @{

Doxygen wants the text behind the brace, at the first member, and then shares it (DISTRIBUTE_GROUP_DOC).

Copying and moving mean what they always mean, and so does a using line: they get a text here unless they have one.
"""
import re
import sys

USUAL = (
    (re.compile(r"^\s*(\w+)\(const \1& ?\w*\)(?: = default)?;$"), "Copies."),
    (re.compile(r"^\s*(\w+)& operator=\(const \1& ?\w*\)(?: = default)?;$"), "Copies."),
    (re.compile(r"^\s*(\w+)\(\1&& ?\w*\)(?: noexcept)?(?: = default)?;$"), "Moves."),
    (re.compile(r"^\s*(\w+)& operator=\(\1&& ?\w*\)(?: noexcept)?(?: = default)?;$"), "Moves."),
    (re.compile(r"^    using \w+::\w+;$"), "As in the base class."),
)


def move_group_texts(lines):
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


def add_usual_texts(lines):
    for number, line in enumerate(lines):
        before = lines[number - 1] if number else ""
        if before.lstrip().startswith("///"):
            continue
        text = next((text for pattern, text in USUAL if pattern.match(line)), None)
        if text:
            lines[number] = f"/** {text} */ {line}"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        lines = file.read().split("\n")
    add_usual_texts(lines)
    move_group_texts(lines)
    sys.stdout.write("\n".join(lines))


if __name__ == "__main__":
    main()
