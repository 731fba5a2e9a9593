"""Holds the files of write_golden against a list of their SHA-256.

    digests.py <write_golden> <list>      fails, and names the files, where the list says something else
    digests.py <write_golden> --print     prints what the list should say
    digests.py <write_golden> <another>   compares the files of two builds

The first line of the list names the libraries that it was made with: another HDF5 or Zstandard may lay out the same
items in other bytes, and then nothing can be said: exit code 77, or 1 where KEL_REQUIRE_JUDGES is set.
"""

import hashlib
import os
import subprocess
import sys
import tempfile


def lines_of(program):
    libraries = subprocess.run([program, "--libraries"], check=True, capture_output=True, text=True).stdout.strip()
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([program, folder], check=True)
        lines = ["# " + libraries]
        for name in sorted(os.listdir(folder)):
            with open(os.path.join(folder, name), "rb") as file:
                lines.append(hashlib.sha256(file.read()).hexdigest() + "  " + name)
    return lines


def differences(one, other):
    names = lambda lines: {line.split("  ")[1]: line.split("  ")[0] for line in lines if not line.startswith("#")}
    first, second = names(one), names(other)
    return sorted(name for name in first.keys() | second.keys() if first.get(name) != second.get(name))


def main(program, against):
    found = lines_of(program)
    if against == "--print":
        print("\n".join(found))
        return 0
    if os.access(against, os.X_OK):
        expected = lines_of(against)
    else:
        with open(against, encoding="utf-8") as file:
            expected = file.read().splitlines()
    if expected[0] != found[0]:
        print(f"not compared: made with {expected[0][2:]}, here are {found[0][2:]}")
        return 1 if os.environ.get("KEL_REQUIRE_JUDGES", "0") not in ("", "0") else 77
    different = differences(expected, found)
    for name in different:
        print(f"{name}: other bytes than before")
    if not different:
        print(f"{len(found) - 1} files, all the same")
    return 1 if different else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
