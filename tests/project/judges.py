#!/usr/bin/env python3
"""Sees what becomes of a test with and without its judges: tests/support/judged.py."""
import os
import pathlib
import subprocess
import sys

JUDGED = pathlib.Path(__file__).resolve().parents[1] / "support" / "judged.py"

# What is set, the judges, the command; the exit code and what is printed.
CASES = [
    (None, ["sh"], ["sh", "-c", "echo ran"], 0, "ran\n"),
    (None, ["python:json"], ["sh", "-c", "exit 3"], 3, ""),
    (None, ["sh", "no-such-judge"], ["sh", "-c", "echo ran"], 77, "skipped: there is no no-such-judge\n"),
    ("0", ["python:no_such_module"], ["true"], 77, "skipped: there is no python:no_such_module\n"),
    ("1", ["no-such-judge"], ["sh", "-c", "echo ran"], 1, "FAILED: there is no no-such-judge\n"),
    ("1", ["sh"], ["sh", "-c", "echo ran"], 0, "ran\n"),
]


def main():
    for required, judges, command, code, printed in CASES:
        environment = {name: value for name, value in os.environ.items() if name != "KEL_REQUIRE_JUDGES"}
        if required is not None:
            environment["KEL_REQUIRE_JUDGES"] = required
        run = subprocess.run([sys.executable, JUDGED, *(f"--judge={judge}" for judge in judges), "--", *command],
                             env=environment, stdout=subprocess.PIPE, text=True, check=False)
        if (run.returncode, run.stdout) != (code, printed):
            return f"KEL_REQUIRE_JUDGES={required}, {judges}: expected {code}, {printed!r}; got {run.returncode}, {run.stdout!r}"
    return 0


if __name__ == "__main__":
    sys.exit(main())
