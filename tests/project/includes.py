#!/usr/bin/env python3
"""Checks who includes whom.

includes.py SOURCE_DIR ALL_HEADERS HEADER_DIR...

ALL_HEADERS is a source that includes all public headers.

 - Public headers include one another and the standard library, nothing else.
 - Arrows run one way: platform <- interface library <- formats <- mesh, exchange <- conformance <- tools, examples.
 - No file includes itself over others.
 - Only src/core sees the private data holder, DataInterface.h.
"""
import pathlib
import re
import sys

# What each folder may include, besides itself.
BELOW = {
    "platform/arbor": (),
    "platform/strata": (),
    "include": ("platform/arbor",),
    "src": ("include", "platform/arbor", "platform/strata"),
    "formats": ("include", "platform/arbor"),
    "mesh": ("include", "formats"),
    "exchange": ("include", "formats"),
    "conformance": ("include", "formats", "exchange"),
    "tools": ("include", "platform/arbor", "formats", "mesh", "exchange", "conformance"),
    "examples": ("include", "formats", "mesh", "exchange", "conformance"),
}


def area_of(path):
    return next((area for area in BELOW if path.as_posix().startswith(area + "/")), None)


def includes_of(path):
    text = path.read_text(encoding="utf-8", errors="replace")
    return re.findall(r'^\s*#\s*include\s*([<"])([^">]+)[">]', text, re.MULTILINE)


class Tree:
    def __init__(self, root, public, header_dirs):
        self.root = root
        self.public = public
        self.header_dirs = header_dirs
        self.problems = []
        self.graph = {}

    def resolve(self, path, name):
        """The file of ours that an include names, or None."""
        places = [path.parent, self.root / "src", *self.header_dirs, *(self.root / top for top in BELOW), self.root]
        return next((place / name for place in places if (place / name).is_file()), None)

    def read(self):
        for path in sorted(path for area in BELOW for path in (self.root / area).rglob("*")):
            if path.suffix not in (".h", ".cpp") or "tests" in path.relative_to(self.root).parts:
                continue
            self.graph[path.resolve()] = [file.resolve() for file in self.check_file(path)]

    def check_file(self, path):
        own = path.relative_to(self.root)
        public = path.resolve() in self.public
        files = []
        for bracket, name in includes_of(path):
            file = self.resolve(path, name)
            if file is None:
                if public and (bracket == '"' or not re.fullmatch(r"[a-z_]+", name)):
                    self.problems.append(f"{own}: a public header includes {name}")
                continue
            files.append(file)
            area, target = area_of(own), area_of(file.resolve().relative_to(self.root))
            if target not in (None, area, *BELOW[area]):
                self.problems.append(f"{own}: {area} includes {name} of {target}")
            if file.name == "DataInterface.h" and not own.as_posix().startswith("src/core/"):
                self.problems.append(f"{own}: only src/core sees {name}")
        return files

    def find_circles(self):
        done = set()

        def visit(file, path):
            if file in path:
                circle = path[path.index(file):] + [file]
                self.problems.append("circle: " + " -> ".join(str(one.relative_to(self.root)) for one in circle))
            elif file not in done:
                for included in self.graph.get(file, []):
                    visit(included, path + [file])
                done.add(file)

        for file in self.graph:
            visit(file, [])


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    public = {pathlib.Path(name).resolve() for _, name in includes_of(pathlib.Path(sys.argv[2]))}
    tree = Tree(root, public, [pathlib.Path(folder).resolve() for folder in sys.argv[3:]])
    tree.read()
    tree.find_circles()
    print(f"{len(tree.graph)} files")
    return "\n".join(tree.problems) if tree.problems else 0


if __name__ == "__main__":
    sys.exit(main())
