#!/usr/bin/env python3
"""Checks who includes whom.

includes.py SOURCE_DIR ALL_HEADERS HEADER_DIR...

ALL_HEADERS is a source that includes all public headers.

 - Every folder with code stands in the table FOLDERS, and includes only what stands behind it there.
 - Arrows between folders run one way: no folder leads back to itself, whichever way one goes.
 - Public headers include one another and the standard library, nothing else.
 - No file includes itself over others.
 - Only src/core sees the private data holder, DataInterface.h.
"""
import pathlib
import re
import sys

# Every folder with code, and the folders that it may include besides itself. A folder that is not listed belongs to the
# nearest listed one above it, except in the folders of ROOMS, where each has a line of its own. A line is added, or made
# longer, on purpose: an arrow that is drawn here cannot be drawn the other way.
FORMAT = ("include", "formats/common", "formats/registry")
FOLDERS = {
    "platform/arbor": (),
    "platform/strata": (),
    "include": ("platform/arbor",),
    "src/text": ("include",),
    "src/values": ("include", "src/text", "platform/arbor"),
    "src/settings": ("include", "src/text", "platform/arbor"),
    "src/location": ("include", "src/text", "platform/strata"),
    "src/solution": ("include", "src/text"),
    "src/core": ("include", "src/text", "src/solution", "platform/arbor"),
    "src/io": ("include", "src/text"),
    "formats/common": ("include",),
    "formats/registry": ("include", "formats/common"),
    "formats/tree": ("include", "formats/common"),
    "formats/memory": (*FORMAT, "formats/tree"),
    "formats/generated": FORMAT,
    "formats/polymesh": FORMAT,
    "formats/hdf5/file": ("include", "formats/common"),
    "formats/hdf5/arrays": ("include", "formats/common", "formats/hdf5/file"),
    "formats/hdf5/model": ("include", "formats/common", "formats/hdf5/file", "formats/hdf5/arrays"),
    "formats/hdf5": (*FORMAT, "formats/hdf5/file", "formats/hdf5/arrays", "formats/hdf5/model"),
    "exchange/common": ("include", "formats/common"),
    "exchange/compare": ("include", "formats/common", "exchange/common"),
    "exchange/transfer": ("include", "formats/common", "exchange/common", "exchange/compare"),
    "mesh": ("include", "formats/common", "exchange/common"),
    "conformance": ("include", "formats/common", "formats/registry", "formats/generated", "exchange"),
    "tools/kel": ("include", "platform/arbor", "formats/common", "formats/registry", "exchange", "mesh", "conformance"),
    "examples": ("include", "formats", "exchange", "mesh", "conformance"),
}
ROOMS = ("platform", "src", "formats", "formats/hdf5", "exchange", "tools")


def parents(folder):
    """A folder and all above it: a/b, a."""
    parts = folder.split("/")
    return ["/".join(parts[:length]) for length in range(len(parts), 0, -1)]


def folder_of(path):
    """The line of FOLDERS that a file belongs to; its own folder if it should have one; None outside of the table."""
    own = path.parent.as_posix()
    for folder in parents(own):
        if folder in FOLDERS:
            unlisted = own[len(folder) + 1:].split("/")[0]
            return f"{folder}/{unlisted}" if folder in ROOMS and unlisted else folder
        if folder in ROOMS:
            return own
    return None


def tops():
    return sorted({folder.split("/")[0] for folder in FOLDERS})


def includes_of(path):
    text = path.read_text(encoding="utf-8", errors="replace")
    return re.findall(r'^\s*#\s*include\s*([<"])([^">]+)[">]', text, re.MULTILINE)


def circles(graph):
    """All closed walks that a depth-first search meets, each as a list whose first is its last."""
    done = set()
    found = []

    def visit(node, path):
        if node in path:
            found.append(path[path.index(node):] + [node])
        elif node not in done:
            for following in sorted(graph.get(node, [])):
                visit(following, path + [node])
            done.add(node)

    for node in sorted(graph):
        visit(node, [])
    return found


class Tree:
    def __init__(self, root, public, header_dirs):
        self.root = root
        self.public = public
        self.header_dirs = header_dirs
        self.problems = []
        self.files = {}
        self.folders = {}

    def resolve(self, path, name):
        """The file of ours that an include names, or None."""
        places = [path.parent, self.root / "src", *self.header_dirs, *(self.root / folder for folder in FOLDERS), self.root]
        return next(((place / name).resolve() for place in places if (place / name).is_file()), None)

    def read(self):
        unlisted = set()
        for path in sorted(path for top in tops() for path in (self.root / top).rglob("*")):
            own = path.relative_to(self.root)
            if path.suffix not in (".h", ".cpp") or {"tests", "fuzz"} & set(own.parts):
                continue
            folder = folder_of(own)
            if folder not in FOLDERS:
                unlisted.add(folder or own.parent.as_posix())
            self.files[path.resolve()] = self.check_file(path, own, folder)
        self.problems += [f"{folder}: stands in no line of FOLDERS" for folder in sorted(unlisted)]

    def check_file(self, path, own, folder):
        public = path.resolve() in self.public
        files = []
        for bracket, name in includes_of(path):
            file = self.resolve(path, name)
            if file is None:
                if public and (bracket == '"' or not re.fullmatch(r"[a-z_]+", name)):
                    self.problems.append(f"{own}: a public header includes {name}")
                continue
            files.append(file)
            self.check_arrow(own, folder, name, folder_of(file.relative_to(self.root)))
            if file.name == "DataInterface.h" and folder != "src/core":
                self.problems.append(f"{own}: only src/core sees {name}")
        return files

    def check_arrow(self, own, folder, name, target):
        if target in (None, folder):
            return
        self.folders.setdefault(folder, set()).add(target)
        if not {*parents(target)} & {*FOLDERS.get(folder, ())}:
            self.problems.append(f"{own}: {folder} may not include {target}, but includes {name}")

    def find_circles(self):
        for circle in circles(self.files):
            self.problems.append("circle of files: " + " -> ".join(str(file.relative_to(self.root)) for file in circle))
        for circle in circles(self.folders):
            self.problems.append("circle of folders: " + " -> ".join(circle))


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    public = {pathlib.Path(name).resolve() for _, name in includes_of(pathlib.Path(sys.argv[2]))}
    tree = Tree(root, public, [pathlib.Path(folder).resolve() for folder in sys.argv[3:]])
    tree.read()
    tree.find_circles()
    print(f"{len(tree.files)} files, {len(tree.folders)} folders with arrows")
    return "\n".join(tree.problems) if tree.problems else 0


if __name__ == "__main__":
    sys.exit(main())
