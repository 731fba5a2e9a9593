#!/usr/bin/env python3
"""Refuses blocks in documents that no test would look at.

document_kinds.py ROOT

A block needs a kind that has a test (documents.KINDS), or its document a test of its own for it. Code that is marked by
indentation has no kind, so it is refused as well.
"""
import pathlib
import re
import sys

from documents import FENCE, KINDS, OWN_TESTS, blocks, documents, without_blocks


def problems_of_block(root, document, block, previous):
    place = f"{document}:{block.line}"
    if KINDS.get(block.kind) == "output":
        tested = previous is not None and previous.kind in ("cpp run", "sh run")
        return [] if tested else [f"{place}: no block that is run stands before this output"]
    if block.kind in KINDS:
        return []
    test = OWN_TESTS.get((document.as_posix(), block.kind))
    if test is None:
        return [f"{place}: no test for a block of the kind '{block.kind}'"]
    if not pathlib.Path(root, test).is_file() or document.name not in pathlib.Path(root, test).read_text(encoding="utf-8"):
        return [f"{place}: there is no {test} that reads the document"]
    return []


def problems_of_document(root, document):
    text = pathlib.Path(root, document).read_text(encoding="utf-8")
    found = []
    previous = None
    for block in blocks(text):
        found += problems_of_block(root, document, block, previous)
        previous = block
    rest = without_blocks(text).split("\n")
    for number, line in enumerate(rest, 1):
        if line.startswith("```"):
            found.append(f"{document}:{number}: a fence without its other one")
        if re.match(r"    \S", line) and (number == 1 or not rest[number - 2].strip()):
            found.append(f"{document}:{number}: code by indentation; use a fence")
    return found


def main():
    root = sys.argv[1]
    problems = [problem for document in documents(root) for problem in problems_of_document(root, document)]
    unused = [f"no block of the kind {kind} in {document}" for document, kind in OWN_TESTS
              if kind not in [match["kind"] for match in FENCE.finditer(pathlib.Path(root, document).read_text(encoding="utf-8"))]]
    return "\n".join(problems + unused) or 0


if __name__ == "__main__":
    sys.exit(main())
