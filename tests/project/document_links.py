#!/usr/bin/env python3
"""Checks what the documents point to, without a network.

document_links.py [--links-only] ROOT

 - Every relative link leads to a file of the tree, and to a heading of it if it names one.
 - Every path in code font that looks like one of the tree is there. `*` stands for any characters, so does `<name>`;
   a name without a folder may lie anywhere. Not with --links-only: documents that are installed tell of sources that
   are not.
"""
import fnmatch
import functools
import pathlib
import re
import sys

from documents import documents, without_blocks

LINK = re.compile(r"\[(?:[^\[\]]|`[^`]*`)*\]\(([^()\s]+)\)")
CODE = re.compile(r"`([^`\n]+)`")
SOURCE = re.compile(r"\.(?:h|cpp|py|md|cmake|in|functions|vtable|trace|1|bash)$")
OUTSIDE = ("build", ".git", ".cache")


@functools.lru_cache(maxsize=None)
def anchors(path):
    """The anchors of a document's headings: lower case, words joined by hyphens, repetitions numbered."""
    found = {}
    for heading in re.findall(r"^#+ +(.*?) *#*$", without_blocks(path.read_text(encoding="utf-8")), re.MULTILINE):
        plain = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading)
        anchor = re.sub(r"[^\w\- ]", "", plain.lower()).replace(" ", "-")
        found[anchor] = found.get(anchor, -1) + 1
    return {anchor if n == 0 else f"{anchor}-{n}" for anchor, last in found.items() for n in range(last + 1)}


def tree(root):
    """All files and folders of the tree, by path from the root."""
    tops = [path for path in root.iterdir() if path.name not in OUTSIDE]
    return {path.relative_to(root).as_posix() for top in tops for path in (top, *top.rglob("*"))}


def problem_of_link(root, document, link):
    if re.match(r"[a-z]+:", link):
        return None
    target, _, anchor = link.partition("#")
    path = (root / document).parent / target if target else root / document
    if not path.exists():
        return f"no file {target}"
    if anchor and anchor not in anchors(path.resolve()):
        return f"no heading #{anchor} in {target or document}"
    return None


def looks_like_path(text, tops):
    if not re.fullmatch(r"[\w.*<>/+-]+", text) or "..." in text:
        return False
    if "/" in text:
        return text.split("/")[0] in tops or bool(SOURCE.search(text))
    return bool(SOURCE.search(text)) and re.fullmatch(r"\w[\w.-]*", text) is not None


def is_there(text, paths):
    pattern = re.sub(r"<\w+>", "*", text.rstrip("/")).replace("[", "[[]")
    return any(fnmatch.fnmatchcase(path, pattern) or fnmatch.fnmatchcase(path, "*/" + pattern) for path in paths)


def problems_of_document(root, document, paths, tops, links_only):
    for number, line in enumerate(without_blocks((root / document).read_text(encoding="utf-8")).split("\n"), 1):
        for link in LINK.findall(line):
            problem = problem_of_link(root, document, link)
            if problem:
                yield f"{document}:{number}: {problem}"
        for text in [] if links_only else CODE.findall(line):
            if looks_like_path(text, tops) and not is_there(text, paths):
                yield f"{document}:{number}: no file `{text}`"


def main():
    root = pathlib.Path(sys.argv[-1]).resolve()
    links_only = sys.argv[1] == "--links-only"
    paths = tree(root)
    tops = {path for path in paths if "/" not in path}
    found = documents(root)
    if not found:
        return f"no documents in {root}"
    problems = [problem for document in found for problem in problems_of_document(root, document, paths, tops, links_only)]
    return "\n".join(problems) or 0


if __name__ == "__main__":
    sys.exit(main())
