#!/usr/bin/env python3
"""Plants one breach after the other in a small tree, and sees includes.py name it."""
import pathlib
import subprocess
import sys
import tempfile

CHECK = pathlib.Path(__file__).with_name("includes.py")

# A tree that is as it should be.
SOUND = {
    "include/KelBase.h": "#include <string>\n",
    "src/core/DataInterface.h": "",
    "src/core/KelBase.cpp": '#include "KelBase.h"\n#include "core/DataInterface.h"\n',
    "formats/common/KelValues.h": '#include "KelBase.h"\n',
    "formats/memory/Memory.cpp": '#include "formats/common/KelValues.h"\n#include "KelBase.h"\n',
    "exchange/transfer/Transfer.cpp": '#include "formats/common/KelValues.h"\n',
}

# Name of the breach, the files that make it, and what must be said of it.
BREACHES = [
    ("an arrow upwards", {"formats/common/Bad.cpp": '#include "exchange/transfer/T.h"\n', "exchange/transfer/T.h": ""},
     "formats/common/Bad.cpp: formats/common may not include exchange/transfer, but includes exchange/transfer/T.h"),
    ("an arrow between formats", {"formats/memory/Bad.cpp": '#include "formats/polymesh/P.h"\n', "formats/polymesh/P.h": ""},
     "formats/memory/Bad.cpp: formats/memory may not include formats/polymesh, but includes formats/polymesh/P.h"),
    ("a folder without a line", {"formats/new/New.cpp": ""}, "formats/new: stands in no line of FOLDERS"),
    ("a room without a line", {"formats/hdf5/new/New.cpp": ""}, "formats/hdf5/new: stands in no line of FOLDERS"),
    ("a circle of files", {"src/io/A.h": '#include "B.h"\n', "src/io/B.h": '#include "A.h"\n'},
     "circle of files: src/io/A.h -> src/io/B.h -> src/io/A.h"),
    ("another library in a public header", {"include/KelBase.h": "#include <hdf5.h>\n"},
     "include/KelBase.h: a public header includes hdf5.h"),
    ("the data holder seen from outside", {"src/io/Bad.cpp": '#include "core/DataInterface.h"\n'},
     "src/io/Bad.cpp: only src/core sees core/DataInterface.h"),
]


def run(folder, files):
    """What includes.py says of a tree of these files: its exit code and its texts."""
    for name, text in files.items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
    headers = folder / "headers.cpp"
    headers.write_text(f'#include "{folder}/include/KelBase.h"\n', encoding="utf-8")
    done = subprocess.run([sys.executable, CHECK, folder, headers, folder / "include"], capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


def problem_of(name, files, said):
    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        code, text = run(pathlib.Path(folder), {**SOUND, **files})
    if said is None:
        return None if code == 0 else f"{name}: refused:\n{text}"
    return None if code == 1 and said in text.splitlines() else f"{name}: expected {said!r}, got {code}:\n{text}"


def circle_of_folders():
    """No tree can have one while the table has none, so the search is asked directly."""
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(CHECK.parent))
    import includes # pylint: disable=import-outside-toplevel
    problems = [f"the table leads from {circle[0]} back to it: {' -> '.join(circle)}"
                for circle in includes.circles({folder: {name for name in includes.FOLDERS for target in targets
                                                         if name != folder and target in includes.parents(name)}
                                                for folder, targets in includes.FOLDERS.items()})]
    if includes.circles({"a": {"b"}, "b": {"c"}, "c": {"a"}}) != [["a", "b", "c", "a"]]:
        problems.append("a circle of three was not found")
    return problems


def main():
    problems = [problem_of(*breach) for breach in [("a sound tree", {}, None), *BREACHES]]
    return "\n".join([problem for problem in problems if problem] + circle_of_folders()) or 0


if __name__ == "__main__":
    sys.exit(main())
