"""Changes one thing at a time in the files of a model that has a bit of everything, and asks the tool to compare the
result with the original: it must find a difference, or say that the file is damaged.

Changed are: every attribute (its value at the first, middle and last place, and whether it is there), every array (each
of up to 64 rows, else the first, middle and last, in each of up to 16 columns) and every link (whether it is there).

usage: mutated_files.py KEL_WRITE_SAMPLE KEL [SECONDS [SEED]]

Without KEL_TEST_FULL in the environment a random sample is tried, for SECONDS (30). What `kel diff` does not see has
its line in EXCEPTIONS; one that nothing needs any more fails the full run, so that the list only becomes shorter.
"""

import concurrent.futures
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

import h5py
import numpy

MESH = "/meshes/mesh_4_target_0_partition_-1"

# Regular expression of the whole change as it is printed, and why no difference is right. First what stays.
EXCEPTIONS = [
    (r".*: /@format_version changed", "the last digit: a reader takes all patch versions for the same"),
    (r".*/zones@columns (changed|removed)", "words for people, no reader has them"),
    (r".*: /settings/settings@(Version|Origin) (changed|removed)", "says what wrote the file, not what the model is"),
    (r".*/faces/(child_counts|shadow_face)\[[^]]*\] changed", "rows that the table of given rows leaves out"),

    (r".*(/zone_neighbours_derived(\[[^]]*\])?|@derived_sizes) .*",
     "says that the writer worked a value out, which a comparison takes as good as not given"),

    # What the comparison does not look at yet; a line goes when it does.
    (r".*: /settings/settings@Solver (changed|removed)", "open: the solver"),
    (r".*: /settings(/settings)? removed", "open: the solver"),
    (rf"data: {MESH}/(zones|zone_texts|zone_neighbours)(\[[^]]*\] changed| removed)", "open: zones of the data"),
    (rf"case: {MESH}/zones\[[^]]*\] changed", "open: some columns of the zones"),
    (rf"case: {MESH}/edges.*", "open: elements without zones"),
    (rf"case: {MESH}/faces/(child_counts|child_offsets|child_ids|shadow_face)(\[[^]]*\] changed| removed)",
     "open: arrays of a part of a zone"),
    (rf"case: {MESH}/faces/(child_counts|shadow_face|cell1)_given(\[[^]]*\] changed| removed)",
     "open: arrays of a part of a zone"),
    (rf"data: {MESH}/phases/[^@]*@kel_id .*", "open: ids of phases and variables"),
    (rf"data: {MESH}/phases/[^@]*@kel_categories.*", "open: categories of variables"),
    (rf"data: {MESH}/phases/<Mixture>@kel_unique_name .*", "open: the mixture has one name"),
    (rf"data: {MESH}/phases/[^@]*@(Long|Dataset) Name removed", "open: attributes as they are stored"),
]


def places(count, most=64):
    """First, middle and last of many places, all of few."""
    return range(count) if count <= most else sorted({0, count // 2, count - 1})


def other(value):
    """A value of the same type that is another one."""
    if isinstance(value, (bytes, numpy.bytes_)):
        text = bytes(value)
        return numpy.bytes_(text[:-1] + (b"y" if text[-1:] == b"x" else b"x"))
    if isinstance(value, numpy.floating):
        return value.dtype.type(value + 1 if numpy.isfinite(value) and value + 1 != value else 0 if value != 0 else 1)
    with numpy.errstate(over="ignore"):
        return value.dtype.type(value + value.dtype.type(1)) if value != numpy.iinfo(value.dtype).max else \
            value.dtype.type(value - value.dtype.type(1))


def attribute_changes(path, name, attribute):
    label = f"{path}@{name}"
    yield f"{label} removed", ("remove attribute", path, name)
    if attribute.shape is None:  # an empty text or list
        yield f"{label} filled", ("fill attribute", path, name)
    elif attribute.shape == ():
        yield f"{label} changed", ("change attribute", path, name, ())
    else:
        for place in places(attribute.shape[0]):
            yield f"{label}[{place}] changed", ("change attribute", path, name, place)


def array_changes(path, array):
    if not array.shape:
        return
    for row in places(array.shape[0]):
        for column in places(array.shape[1], 16) if len(array.shape) == 2 else [None]:
            place = (row,) if column is None else (row, column)
            yield f"{path}[{','.join(map(str, place))}] changed", ("change array", path, place)


def changes(file):
    """All changes of a file: (words, what to do)."""
    found = []

    def add_attributes(path, thing):
        for name in thing.attrs:
            attribute = h5py.h5a.open(thing.id, name if isinstance(name, bytes) else name.encode("utf-8", "surrogateescape"))
            shape = None if attribute.get_space().get_simple_extent_type() == h5py.h5s.NULL else attribute.shape
            found.extend(attribute_changes(path, name, type("Attribute", (), {"shape": shape})))

    def visit(group):
        for name in group:
            thing = group[name]
            path = (group.name.rstrip("/") + "/" + name) if isinstance(name, str) else None
            if path is None:
                continue
            found.append((f"{path} removed", ("remove link", path)))
            add_attributes(path, thing)
            if isinstance(thing, h5py.Group):
                visit(thing)
            else:
                found.extend(array_changes(path, thing))

    add_attributes("/", file["/"])
    visit(file["/"])
    return found


def replace_attribute(thing, name, value, dtype):
    thing.attrs.create(name, value, dtype=dtype)


def apply(file, what):
    action, path, *rest = what
    if action == "remove link":
        del file[path]
    elif action == "remove attribute":
        del file[path].attrs[rest[0]]
    elif action == "fill attribute":
        attribute = h5py.h5a.open(file[path].id, rest[0].encode("utf-8", "surrogateescape"))
        is_text = attribute.dtype.kind == "S"
        del file[path].attrs[rest[0]]
        file[path].attrs.create(rest[0], numpy.bytes_(b"x") if is_text else numpy.array([1], "<i8"))
    elif action == "change attribute":
        name, place = rest
        attribute = h5py.h5a.open(file[path].id, name.encode("utf-8", "surrogateescape"))
        values = numpy.zeros(attribute.shape, attribute.dtype)
        attribute.read(values)
        values[place] = other(values[place])
        attribute.write(values)
    else:
        place = rest[0]
        array = file[path]
        value = array[place]
        array[place] = other(value)


class Model:
    """The original, and a folder for each thread that changes it."""

    def __init__(self, writer, kel, folder):
        self.kel = kel
        self.folder = folder
        self.names = ["m.case.kel", "m.data.kel"]
        self.original = os.path.join(folder, "original")
        os.mkdir(self.original)
        subprocess.run([writer] + [os.path.join(self.original, name) for name in self.names], check=True)

    def unseen(self, name, what):
        """Whether the tool sees no difference after a change of one of the two files; or what else is wrong."""
        with tempfile.TemporaryDirectory(dir=self.folder) as changed:
            for each in self.names:
                shutil.copy(os.path.join(self.original, each), changed)
            with h5py.File(os.path.join(changed, name), "r+") as file:
                apply(file, what)
            run = subprocess.run([self.kel, "diff"] + [os.path.join(place, "m.case.kel") for place in (changed, self.original)],
                                 capture_output=True, check=False, timeout=120)
            if run.returncode in (1, 2):
                return ""
            if run.returncode in (0, 3):
                return f"diff ends with {run.returncode}"
            return f"diff ends with {run.returncode}: {run.stderr.decode('utf-8', 'replace')}"


def main(writer, kel, seconds=30, seed=None):
    is_full = bool(os.environ.get("KEL_TEST_FULL"))
    seed = int(seed) if seed else int(time.time())
    with tempfile.TemporaryDirectory() as folder:
        model = Model(writer, kel, folder)
        work = []
        for name in model.names:
            with h5py.File(os.path.join(model.original, name), "r") as file:
                work.extend((name, words, what) for words, what in changes(file))
        if not is_full:
            random.Random(seed).shuffle(work)
        end = time.monotonic() + float(seconds)
        tried, unseen, used = 0, [], set()

        def attempt(item):
            if not is_full and time.monotonic() > end:
                return None
            return item, model.unseen(item[0], item[2])

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for result in pool.map(attempt, work):
                if result is None:
                    continue
                tried += 1
                (name, words, _), problem = result
                if not problem:
                    continue
                label = f"{name[2:6]}: {words}"
                reasons = [i for i, (pattern, _) in enumerate(EXCEPTIONS) if re.fullmatch(pattern, label)]
                used.update(reasons)
                if not reasons or "ends with" in problem and ":" in problem:
                    unseen.append(f"{label}: {problem}")
    for line in unseen:
        print(line)
    idle = [EXCEPTIONS[i][0] for i in range(len(EXCEPTIONS)) if i not in used] if is_full else []
    for pattern in idle:
        print(f"exception that nothing needs: {pattern}")
    print(f"{tried} of {len(work)} changes tried (seed {seed}): {len(unseen)} unseen")
    return 1 if unseen or idle or tried == 0 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
