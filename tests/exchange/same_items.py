#!/usr/bin/env python3
"""Holds two files of the library against each other, knowing nothing but docs/file-format.md.

same_items.py FIRST SECOND

Prints every group, array and attribute that only one of the files has, and each whose type, shape or bytes differ; the exit
code is 1 if there is one. What every writer says of itself in the settings is left out: Solver, Version, Origin and the
version of the format.
"""
import sys

import h5py
import numpy

OF_THE_WRITER = {("/settings/settings", "Solver"), ("/settings/settings", "Version"), ("/settings/settings", "Origin"),
                 ("/", "format_version")}


def bytes_of(value):
    if isinstance(value, bytes):
        return value
    if isinstance(value, str):
        return value.encode("utf-8", "surrogateescape")
    return numpy.asarray(value).tobytes()


def items_of(path):
    """All items of a file: its path, with @ and the name for an attribute, and what it is."""
    items = {}

    def add(name, thing):
        if isinstance(thing, h5py.Dataset):
            items[name] = (thing.dtype.str, thing.shape, thing[()].tobytes() if thing.size else b"")
        else:
            items[name] = ("group",)
        for key in thing.attrs:
            if (name, key) in OF_THE_WRITER:
                continue
            attribute = h5py.h5a.open(thing.id, key.encode("utf-8", "surrogateescape"))
            text = attribute.get_type().get_class() == h5py.h5t.STRING
            value = thing.attrs[key]
            items[f"{name}@{key}"] = ("text" if text else attribute.dtype.str, attribute.shape, bytes_of(value))

    with h5py.File(path, "r") as file:
        add("/", file)
        file.visititems(lambda name, thing: add("/" + name, thing))
    return items


def main():
    first, second = (items_of(path) for path in sys.argv[1:3])
    problems = []
    for name in sorted(first.keys() | second.keys()):
        if name not in second:
            problems.append(f"only the first has {name!r}")
        elif name not in first:
            problems.append(f"only the second has {name!r}")
        elif first[name] != second[name]:
            problems.append(f"{name!r}: {str(first[name])[:150]} against {str(second[name])[:150]}")
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
