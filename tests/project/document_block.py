#!/usr/bin/env python3
"""Compiles a marked C++ block of a document, so that documents cannot teach what does not work.

document_block.py DOCUMENT NUMBER -- COMPILER [FLAG...] [LIBRARY...]

Blocks are counted from 1 over the marked ones:
  ```cpp compile    must compile
  ```cpp run        must compile, link and end with 0; a block ```text output that follows before the next
                    marked one must be its standard output, to the byte
"""
import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^```(cpp compile|cpp run|text output)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def find_block(document, number):
    """The kind and text of a block, and the expected output or None."""
    blocks = FENCE.findall(pathlib.Path(document).read_text(encoding="utf-8"))
    marked = [index for index, (kind, _) in enumerate(blocks) if kind.startswith("cpp")]
    index = marked[number - 1]
    following = blocks[index + 1:index + 2]
    output = following[0][1] if following and following[0][0] == "text output" else None
    return *blocks[index], output


def main():
    document, number, _, *command = sys.argv[1:]
    kind, text, expected = find_block(document, int(number))
    compiler, *flags = command
    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        source = pathlib.Path(folder, "block.cpp")
        source.write_text(text, encoding="utf-8")
        if kind == "cpp compile":
            options = [flag for flag in flags if flag.startswith("-")]
            return subprocess.run([compiler, *options, "-fsyntax-only", source]).returncode
        program = pathlib.Path(folder, "block")
        if subprocess.run([compiler, source, "-o", program, *flags]).returncode != 0:
            return f"block {number} of {document} does not compile"
        run = subprocess.run([program], cwd=folder, stdout=subprocess.PIPE, text=True)
    sys.stdout.write(run.stdout)
    if run.returncode != 0:
        return f"block {number} of {document} ended with {run.returncode}"
    if expected is not None and run.stdout != expected:
        difference = difflib.unified_diff(expected.splitlines(), run.stdout.splitlines(), "document", "printed", lineterm="")
        return "\n".join(difference)
    return 0


if __name__ == "__main__":
    sys.exit(main())
