"""Damages files at random and looks at them with the tool: no crash, no hang, and on standard error at most one line,
which is the tool's own.

usage: damaged_files.py KEL [COUNT [SEED]]

KEL_TEST_FULL in the environment makes 3,000 damages instead of COUNT (200).
"""

import os
import random
import subprocess
import sys
import tempfile

COMMANDS = ("info", "check", "diff")
SECONDS = 120  # of one command, on a machine under load


def damaged(good, rng):
    """A file with one to four wrong bytes, mostly where the file has any, or one that is cut."""
    bad = bytearray(good)
    if rng.random() < 0.1:
        return bad[: rng.randrange(len(bad))]
    used = [i for i, byte in enumerate(bad) if byte != 0]
    for _ in range(rng.randint(1, 4)):
        bad[rng.choice(used) if rng.random() < 0.8 else rng.randrange(len(bad))] = rng.randrange(256)
    return bad


def complaint(kel, command, path, good):
    """What is wrong with how the tool takes a file; empty when nothing is."""
    arguments = [kel, command, path] + ([good] if command == "diff" else [])
    try:
        run = subprocess.run(arguments, capture_output=True, timeout=SECONDS, check=False)
    except subprocess.TimeoutExpired:
        return "does not end"
    errors = run.stderr.decode("latin-1")
    lines = errors.splitlines()
    if run.returncode < 0 or run.returncode > 3:
        return f"ends with {run.returncode}: {errors}"
    if run.returncode == 2 and not lines:
        return "is refused without a reason"
    if "HDF5:" in errors or "infinite loop" in errors:
        return f"lets HDF5 speak: {errors}"
    if len(lines) > 1 and command != "check":
        return f"has {len(lines)} lines on standard error: {errors}"
    return ""


def main(kel, count=200, seed=1):
    if os.environ.get("KEL_TEST_FULL"):
        count = 3000
    rng = random.Random(int(seed))
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for compress in ("0", "1"):
            target = os.path.join(folder, f"m{compress}.case.kel")
            subprocess.run([kel, "convert", "--compress", compress, "box:3x2x2 fields:2", target],
                           check=True, stdout=subprocess.DEVNULL)
        goods = sorted(name for name in os.listdir(folder))
        for i in range(int(count)):
            name = rng.choice(goods)
            good = os.path.join(folder, name)
            path = os.path.join(folder, "bad" + name[2:])
            with open(good, "rb") as file:
                bad = damaged(file.read(), rng)
            with open(path, "wb") as file:
                file.write(bad)
            command = rng.choice(COMMANDS)
            wrong = complaint(kel, command, path, good)
            if wrong:
                failed += 1
                print(f"damage {i} of {name} (seed {seed}): kel {command} {wrong}")
            os.remove(path)
    print(f"{count} damages, {failed} of them taken badly")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
