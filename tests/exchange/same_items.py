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


def text_of(name):
    """A name as text; names that are not UTF-8 come as bytes."""
    return name if isinstance(name, str) else name.decode("utf-8", "surrogateescape")


def attributes_of(thing):
    """Name, type, shape and bytes of each attribute, whatever its name and value hold."""
    for index in range(h5py.h5a.get_num_attrs(thing.id)):
        attribute = h5py.h5a.open(thing.id, index=index)
        kind = attribute.get_type()
        if attribute.shape is None:  # an empty text
            yield text_of(attribute.name), ("nothing", kind.get_class(), b"")
        elif kind.get_class() == h5py.h5t.STRING:
            if kind.is_variable_str():
                value = numpy.empty((), dtype=object)
                attribute.read(value)
                data = value[()] if isinstance(value[()], bytes) else str(value[()]).encode("utf-8", "surrogateescape")
            else:
                value = numpy.empty(attribute.shape, dtype=f"V{kind.get_size()}")
                attribute.read(value, mtype=kind)
                data = value.tobytes()
            yield text_of(attribute.name), ("text", attribute.shape, data)
        else:
            value = numpy.empty(attribute.shape, dtype=attribute.dtype)
            if value.size:
                attribute.read(value)
            yield text_of(attribute.name), (attribute.dtype.str, attribute.shape, value.tobytes())


def items_of(path):
    """All items of a file: its path, with @ and the name for an attribute, and what it is."""
    items = {}

    def add(name, thing):
        if isinstance(thing, h5py.Dataset):
            items[name] = (thing.dtype.str, thing.shape, thing[()].tobytes() if thing.size else b"")
        else:
            items[name] = ("group",)
        for key, content in attributes_of(thing):
            if (name, key) not in OF_THE_WRITER:
                items[f"{name}@{key}"] = content

    with h5py.File(path, "r") as file:
        add("/", file["/"])
        file.visititems(lambda name, thing: add("/" + text_of(name), thing))
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
