"""Reads files that the kel tool wrote with h5py alone, and holds them against docs/file-format.md.

    h5py_reads.py <kel> <docs/file-format.md>

Every group, array and attribute of the files must have a row in the tables of the document with its type and shape; what a
generated box must have has to be there; values are those of the box; the document's own example works.
"""

import contextlib
import ctypes
import os
import re
import subprocess
import sys
import tempfile

import h5py
import numpy

KINDS = ("nodes", "edges", "faces", "cells")
PLAIN = ("uint8", "int8", "int16", "uint32", "int32", "int64", "uint64", "int64", "float32", "float64")
MESH = "/meshes/mesh_1_target_0_partition_-1"
SHORT_FORMS = {
    "M": ["/meshes/mesh_<id>_target_<target>_partition_<partition>"],
    "L": ["M/levels/<level>"],
    "P": ["L/phases/<phase>"],
    "S": ["M/sets/<set>", "L/sets/<set>", "P/set_data/<set>"],
    "<field>": ["P/<kind>/<variable>", "M/case_sections/<kind>/<section>/values"],
}
PLACEHOLDERS = {
    "kind": "(?P<kind>nodes|edges|faces|cells)",
    "list": "(?:node|face|child)",
    "id": r"-?\d+",
    "target": r"\d+",
    "partition": r"-?\d+",
    "level": r"(?:-?\d+|none)",
    "zone": r"\d+",
    "chunk": r"-?\d+",
    "attribute": "(?!kel_)[^/]+",
    "key": "[^/]+",
}

# Rows that a box has to use: those of any box, and those of the rich one.
CASE = """/@format /@format_version /settings /settings/<group> /settings/<group>@<key> /locations /meshes M M/zones
M/zones@columns M/zone_texts M/zone_neighbours M@dimension M@sizes M@units M/<kind> M/<kind>@ranges M/nodes/coordinates
M/faces/cell0 M/faces/cell1 M/<kind>@<list>_counts M/<kind>/<list>_ids""".split()
DATA = """/@format /@format_version /settings /meshes M M/zones M/zone_texts M/phases M/phases/<phase>
M/phases/<phase>@kel_id M/phases/<phase>@kel_unique_name M/phases/<phase>@<attribute> M/phases/<phase>/<variable>
M/phases/<phase>/<variable>@kel_id M/phases/<phase>/<variable>@kel_unique_name
M/phases/<phase>/<variable>@kel_categories M/phases/<phase>/<variable>@<attribute> M/levels L L/phases P P/<kind>
P/<kind>/<variable> <field>@kel_zones <field>@kel_ranges""".split()
RICH = """M/faces/shadow_face M/cells/type M/cells/partition M/cells@partition_count M/<kind>/<list>_counts
M/<kind>/<list>_offsets M/<kind>/<list>_counts_runs""".split()


class Row:
    """A row of a table: where it applies, and what it says."""

    def __init__(self, path, type_, shape):
        self.path = path
        self.types = type_.split("/")
        self.shapes = [alternative.strip("() ") for alternative in shape.split(")/")]
        self.patterns = [re.compile(pattern_of(full)) for full in expand(path)]

    def match(self, path):
        return next((found for found in (pattern.fullmatch(path) for pattern in self.patterns) if found), None)


def expand(path):
    head = re.match(r"<field>|[MLPS](?=$|[/@])", path)
    if not head:
        return [path]
    tail = path[head.end() :]
    return [full for form in SHORT_FORMS[head.group()] for full in expand(form + tail)]


def pattern_of(path):
    """A part may have a number where it continues a field."""
    pieces = re.split(r"<(\w+)>", path)
    pattern = "".join(
        PLACEHOLDERS.get(piece, "[^/@]+") if i % 2 else re.escape(piece) for i, piece in enumerate(pieces)
    )
    return re.sub(r"/values(?=$|@)", r"/values(?:#\\d+)?", pattern)


def rows_of(document):
    rows = []
    in_table = False
    for line in document.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if cells[:3] == ["path", "type", "shape"]:
            in_table = True
        elif not line.startswith("|"):
            in_table = False
        elif in_table and not cells[0].startswith("---"):
            assert len(cells) == 6, line
            rows.append(Row(cells[0].strip("`"), cells[1], cells[2]))
    return rows


def items_of(file):
    """Path and object of everything in a file, attributes as (owner, name)."""
    objects = [("/", file)]
    file.visititems(lambda name, item: objects.append(("/" + name, item)))
    for path, item in objects:
        if path != "/":
            yield path, item, None
        for name in item.attrs:
            yield path + "@" + name, item, name


def row_count(mesh, kind):
    ranges = mesh[kind].attrs["ranges"].reshape(-1, 2)
    return int((ranges[:, 1] - ranges[:, 0] + 1).sum())


def type_fits(types, item, name):
    if name is None and isinstance(item, h5py.Group):
        return types == ["group"]
    id_ = item.id if name is None else item.attrs.get_id(name)
    if types == ["text"]:
        text = id_.get_type()
        return text.get_class() == h5py.h5t.STRING and not text.is_variable_str() and text.get_cset() == h5py.h5t.CSET_UTF8
    dtype = id_.dtype.newbyteorder("=") if id_.dtype.byteorder != ">" else id_.dtype
    if types == ["plain"]:
        owner = item if "kel_type" in item.attrs else item.parent
        return dtype.name == PLAIN[owner.attrs["kel_type"]]
    return dtype.name in types


def extent_fits(wanted, found, path, file, kind):
    owner = re.match("(/meshes/[^/@]+)(?:.*/(?:sets|set_data)/[^/@]+)?", path)
    owner = file[owner.group()] if owner else None
    if wanted == "n":
        return True
    if wanted.isdigit():
        return found == int(wanted)
    if wanted == "D":
        return found == owner.attrs["dimension"]
    name, _, more = wanted.partition(" + ")
    if name == "m":
        return found == owner.attrs["kel_members"] + int(more or 0)
    return found == row_count(owner, kind if name == "rows" else name) + int(more or 0)


def shape_fits(row, match, item, name, file):
    if name is None and isinstance(item, h5py.Group):
        return row.shapes == [""]
    shape = item.shape if name is None else item.attrs.get_id(name).shape
    if shape is None:  # an empty text or list
        return True
    kind = match.groupdict().get("kind")
    for wanted in row.shapes:
        extents = wanted.split(", ") if wanted else []
        if len(extents) == len(shape) and all(extent_fits(w, f, match.string, file, kind) for w, f in zip(extents, shape)):
            return True
    return False


def check_rows(file, rows, expected):
    used = set()
    for path, item, name in items_of(file):
        fitting = None
        known = []
        for row in rows:
            match = row.match(path)
            if match:
                known.append(row.path)
                if type_fits(row.types, item, name) and shape_fits(row, match, item, name, file):
                    fitting = row.path
                    used.add(row.path)
        assert fitting, f"{file.filename}: {path} is not as the document says; rows for it: {known}"
    missing = [path for path in expected if path not in used]
    assert not missing, f"{file.filename}: nothing there for {missing}"


def check_lists(file):
    """Counts, offsets and ids of every list agree, and the ids exist."""
    targets = {("faces", "child"): "faces", ("cells", "face"): "faces", ("cells", "child"): "cells"}
    mesh = file[MESH]
    for kind in KINDS:
        for name in ("node", "face", "child") if kind in mesh else ():
            group = mesh[kind]
            if name + "_ids" not in group:
                continue
            ids = group[name + "_ids"][:]
            if name + "_offsets" in group:
                offsets = group[name + "_offsets"][:].astype(numpy.int64)
                counts = group[name + "_counts"][:]
                assert offsets[0] == 0 and offsets[-1] == len(ids) and (numpy.diff(offsets) == counts).all(), (kind, name)
                for first, count, value in group.get(name + "_counts_runs", numpy.empty((0, 3), int))[:]:
                    assert (counts[first : first + count] == value).all(), (kind, name)
            else:
                assert group.attrs[name + "_counts"] * row_count(mesh, kind) == len(ids), (kind, name)
            target = targets.get((kind, name), "nodes")
            assert ids.min() >= 1 and ids.max() <= mesh[target].attrs["ranges"][-1], (kind, name)


def check_box(case, data):
    """The values of box:4x4x4: blocks of a quarter, x fastest."""
    mesh = case[MESH]
    assert mesh.attrs["dimension"] == 3 and list(mesh.attrs["sizes"]) == [125, 0, 240, 64]
    assert bytes(mesh.attrs["units"]) == b"m" and bytes(case.attrs["format"]) == b"Kel case"
    i = numpy.arange(125)
    grid = numpy.stack([i % 5, i // 5 % 5, i // 25], axis=1) / 4
    assert numpy.array_equal(mesh["nodes/coordinates"][:], grid)
    assert mesh["faces/cell0"][0] == 1 and mesh["faces/cell1"][0] == 2
    assert mesh["cells"].attrs["type"] == 4 and mesh["cells"].attrs["node_counts"] == 8
    assert sorted(mesh["cells/node_ids"][:8]) == [1, 2, 6, 7, 26, 27, 31, 32]

    zones = mesh["zones"][:]
    columns = bytes(mesh["zones"].attrs["columns"]).decode().split()
    assert columns == "category id first last extra info0 info1 info2 info3 info4 info5 flags text0 text1".split()
    assert [tuple(zone[:4]) for zone in zones[:2]] == [(0, 1, 1, 125), (2, 2, 1, 144)]
    assert tuple(zones[-1][:4]) == (3, 10, 1, 64)
    ends = zones[:, 12:].reshape(-1).cumsum()
    texts = [bytes(text) for text in numpy.split(mesh["zone_texts"][:], ends[:-1])]
    assert texts[2::2] == [b"interior", b"x-min", b"x-max", b"y-min", b"y-max", b"z-min", b"z-max", b"cells"]
    boundary = slice(zones[2][2] - 1, None)
    assert not mesh["faces/cell1"][boundary].any() and mesh["faces/cell1"][: boundary.start].all()
    assert [2, 0, 10] in mesh["zone_neighbours"][:].tolist() and [10, 0, 8] in mesh["zone_neighbours"][:].tolist()

    assert bytes(data.attrs["format"]) == b"Kel data" and list(data[MESH]["levels"]) == ["1", "2"]
    i = numpy.arange(64)
    x, y, z = ((i % 4) + 0.5) / 4, ((i // 4 % 4) + 0.5) / 4, ((i // 16) + 0.5) / 4
    for level in 1, 2:
        for field in 1, 2:
            array = data[f"{MESH}/levels/{level}/phases/phase-1/cells/field-{field}"]
            formula = 1 + 0.1 * field + 0.01 * level + x * (1 + 0.5 * y) - z * z
            assert numpy.allclose(array[:], formula, rtol=0, atol=1e-14), (level, field)
            assert list(array.attrs["kel_zones"]) == [10] and list(array.attrs["kel_ranges"]) == [1, 64]


def decoded(array):
    """Values of an array of one chunk without the filter plug-in: Zstandard, then the bytes of each value together again."""
    zstd = ctypes.CDLL("libzstd.so.1")
    zstd.ZSTD_decompress.restype = ctypes.c_size_t
    mask, chunk = array.id.read_direct_chunk((0,) * array.ndim)
    size = int(numpy.prod(array.chunks)) * array.dtype.itemsize
    raw = ctypes.create_string_buffer(size)
    found = zstd.ZSTD_decompress(raw, ctypes.c_size_t(size), chunk, ctypes.c_size_t(len(chunk)))
    assert mask == 0 and found == size, array.name
    shuffled = numpy.frombuffer(raw.raw, numpy.uint8).reshape(array.dtype.itemsize, -1)
    return shuffled.T.copy().view(array.dtype).reshape(array.chunks)


def check_compressed(plain, compressed):
    """The same items, and the same values behind the two filters."""
    shape = lambda item: (item.dtype, item.shape) if isinstance(item, h5py.Dataset) else None
    listing = lambda file: {path: shape(item) for path, item, name in items_of(file) if name is None}
    assert listing(plain) == listing(compressed)
    filtered = 0
    for path, item, name in items_of(compressed):
        if name is not None or not isinstance(item, h5py.Dataset) or item.chunks is None:
            continue
        filtered += 1
        properties = item.id.get_create_plist()
        filters = [properties.get_filter(i) for i in range(properties.get_nfilters())]
        assert [filter_[0] for filter_ in filters] == [2, 32015] and filters[1][2] == (1,), path
        row_bytes = item.dtype.itemsize * int(numpy.prod(item.shape[1:]))
        assert item.chunks == (min(item.shape[0], 2**20 // row_bytes),) + item.shape[1:], path
        assert numpy.array_equal(decoded(item), plain[path][:]), path
    return filtered


def check_example(document):
    found = {}
    example = re.search(r"^```python\n(.*?)^```$", document, re.S | re.M).group(1)
    exec(example, found)
    assert found["coordinates"].shape == (125, 3) and list(found["coordinates"][1]) == [0.25, 0, 0]
    assert found["units"] == "m" and found["cell0"][0] == 1 and list(found["nodes_of_face"]) == [2, 7, 32, 27]
    assert found["values"].shape == (64,) and abs(found["values"][0] - 1.2371875) < 1e-12 and found["name"] == "field-1"
    assert found["ranges"].tolist() == [[1, 64]] and list(found["zones"]) == [10]


def main(kel, document_path):
    kel = os.path.abspath(kel)
    with open(document_path, encoding="utf-8") as file:
        document = file.read()
    rows = rows_of(document)
    assert len(rows) > 100, "the tables of the document are not found"

    def convert(box, name, *options):
        subprocess.run([kel, "convert", *options, box, name + ".case.kel"], check=True)
        files = h5py.File(name + ".case.kel", "r"), h5py.File(name + ".data.kel", "r")
        check_rows(files[0], rows, CASE + (RICH if name == "rich" else []))
        check_rows(files[1], rows, DATA)
        check_lists(files[0])
        return tuple(opened.enter_context(file) for file in files)

    with tempfile.TemporaryDirectory() as folder, contextlib.ExitStack() as opened:
        os.chdir(folder)
        opened.callback(os.chdir, "/")
        plain = convert("box:4x4x4 fields:2 levels:2", "box")
        check_box(*plain)
        check_example(document)
        convert("box:4x4x4 hanging zones:2 phases:2 periodic partitions:3 fields:2 levels:2", "rich")
        subprocess.run([kel, "convert", "--compress", "1", "box:4x4x4 fields:2 levels:2", "small.case.kel"], check=True)
        for part, original in zip(("case", "data"), plain):
            with h5py.File(f"small.{part}.kel", "r") as compressed:
                check_rows(compressed, rows, CASE if part == "case" else DATA)
                assert check_compressed(original, compressed) >= 4


if __name__ == "__main__":
    main(*sys.argv[1:])
