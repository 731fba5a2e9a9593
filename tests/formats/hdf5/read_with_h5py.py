"""Reads the sample with h5py after docs/file-format.md alone.

read_with_h5py.py <write_sample>
"""
import os
import subprocess
import sys
import tempfile

import h5py
import numpy


def expect(what, found, expected):
    equal = numpy.array_equal(found, expected) if isinstance(expected, (list, tuple)) else found == expected
    if not equal:
        sys.exit(f"{what}: expected {expected}, found {found}")


def zones_of(mesh):
    texts, at = mesh["zone_texts"][:].tobytes(), 0
    columns = mesh["zones"].attrs["columns"].decode().split()
    zones = {}
    for values in mesh["zones"][:]:
        row = dict(zip(columns, values))
        row["name"] = texts[at:at + row["text0"]].decode()
        at += row["text0"]
        row["kind"] = texts[at:at + row["text1"]].decode()
        at += row["text1"]
        zones[row["id"]] = row
    return zones


def nodes_of_face(mesh, row):
    faces = mesh["faces"]
    if "node_counts" in faces.attrs:
        count = faces.attrs["node_counts"]
        return faces["node_ids"][row * count:(row + 1) * count]
    begin, end = faces["node_offsets"][row:row + 2]
    return faces["node_ids"][begin:end]


def check_case(path):
    case = h5py.File(path, "r")
    expect("format", case.attrs["format"], b"Kel case")
    expect("version", case.attrs["format_version"], b"25.1.0")
    expect("meshes", list(case["meshes"]), ["mesh_4_target_0_partition_-1"])
    mesh = case["meshes/mesh_4_target_0_partition_-1"]
    expect("dimension", mesh.attrs["dimension"], 3)
    expect("sizes", mesh.attrs["sizes"], [12, 2, 11, 2])
    expect("units", mesh.attrs["units"], b"m")
    zones = zones_of(mesh)
    expect("name", zones[11]["name"], "between \u00e9")
    expect("kind", zones[11]["kind"], "interior")
    expect("range", (zones[12]["first"], zones[12]["last"]), (2, 11))
    expect("type", zones[12]["info5"], 1)
    expect("flags", zones[12]["flags"], 5)
    expect("neighbours", mesh["zone_neighbours"][:].tolist(), [[11, 0, 21], [11, 1, 21], [12, 0, 21], [21, 0, 11], [21, 0, 12]])
    expect("derived", mesh["zone_neighbours_derived"][:].tolist(), [[21, 0]])
    expect("given sizes", "derived_sizes" in mesh.attrs, False)
    expect("coordinates", mesh["nodes/coordinates"][11], [2.0, 1.0, 0.1])
    expect("ranges", mesh["nodes"].attrs["ranges"], [1, 12])
    expect("width of ids", mesh["faces/node_ids"].dtype, numpy.dtype("<u4"))
    expect("face 1", nodes_of_face(mesh, 0), [2, 5, 11, 8])
    expect("face 11", nodes_of_face(mesh, 10), [8, 9, 12, 11])
    expect("cell 0", mesh["faces/cell0"][:], [1, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2])
    expect("cell 1", mesh["faces/cell1"][:], [2] + 10 * [0])
    expect("given", mesh["faces/cell1_given"][:].tolist(), [[0, 1]])
    expect("shadow", mesh["faces/shadow_face"][:3], [0, 3, 2])
    expect("child counts", mesh["faces/child_counts"][:], [0, 0, 0, 2, 0, 1, 0, 0, 0, 0, 0])
    expect("child ids", mesh["faces/child_ids"][:], [9, 10, 11])
    expect("type of cells", mesh["cells"].attrs["type"], 4)
    expect("partitions", mesh["cells/partition"][:], [1, 0])
    expect("partition count", mesh["cells"].attrs["partition_count"], 2)
    expect("share", mesh["faces/interface/12/share0"][:], [0.25, 0.75])
    expect("local ids", mesh["local_ids/21"][:], [101, 102])
    expect("section", mesh["case_sections/cells/rough/values"][:], [0.5, 1.5])
    expect("zones of the section", mesh["case_sections/cells/rough/values"].attrs["kel_zones"], [21])
    expect("set", mesh["sets/probe%2F1/ids"][:], [2, 1])
    expect("setting", case["settings/group"].attrs["key"], b"text")
    expect("solver", case["settings/settings"].attrs["Solver"], b"MERIDYN_GENERIC")
    title, text = case["log_lengths"][0]
    expect("log", case["log"][:].tobytes(), b"madeby the tests")
    expect("lengths of the log", (title, text), (4, 12))
    if len(case["locations"]) == 0:
        sys.exit("no locations")


def check_data(path):
    data = h5py.File(path, "r")
    expect("format", data.attrs["format"], b"Kel data")
    mesh = data["meshes/mesh_4_target_0_partition_-1"]
    expect("levels", sorted(mesh["levels"]), ["10", "20"])
    expect("pressure", mesh["levels/20/phases/gas/cells/pressure"][:], [20.5, 21.5])
    expect("velocity", mesh["levels/10/phases/gas/cells/velocity"][:].tolist(), [[1, 2, 3], [4, 5, 6]])
    expect("precision", mesh["levels/10/phases/gas/cells/velocity"].dtype, numpy.dtype("<f4"))
    expect("ranges", mesh["levels/10/phases/gas/cells/pressure"].attrs["kel_ranges"], [1, 2])
    expect("unit", mesh["phases/gas/pressure"].attrs["Units"], b"Pa")
    expect("name", mesh["phases/gas/pressure"].attrs["kel_unique_name"], b"pressure")
    expect("id", mesh["phases/gas/velocity"].attrs["kel_id"], 2)
    expect("mixture", mesh["phases/<Mixture>"].attrs["kel_id"], -1)
    injection = mesh["levels/20/phases/gas/set_data/injection"]
    expect("members", injection.attrs["kel_members"], 3)
    expect("lengths", injection["lists/path/lengths"][:], [1, 0, 2])
    expect("offsets", injection["lists/path/offsets"][:], [0, 1, 1, 3])
    expect("values", injection["lists/path/values"][:], [5, 6, 7])
    chunk = mesh["levels/20/phases/gas/tracks/mesh_4_target_0_partition_-1/group/0"]
    expect("points", chunk.attrs["kel_points"], 2)
    expect("position", chunk["position"][:].tolist(), [[0, 1], [2, 3]])


with tempfile.TemporaryDirectory() as folder:
    files = [os.path.join(folder, name) for name in ("s.case.kel", "s.data.kel")]
    subprocess.run([sys.argv[1]] + files, check=True)
    check_case(files[0])
    check_data(files[1])
