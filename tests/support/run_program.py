#!/usr/bin/env python3
"""Runs a program in a folder of its own; fails unless it ends with 0 and prints what is expected.

run_program.py [--output FILE | --pattern REGEX] -- PROGRAM [ARGUMENT...]
"""
import argparse
import difflib
import re
import subprocess
import sys
import tempfile


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--output", help="file that holds the whole standard output")
    parser.add_argument("--pattern", help="regular expression that the standard output must contain")
    parser.add_argument("program", nargs="+")
    arguments = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        run = subprocess.run(arguments.program, cwd=folder, stdout=subprocess.PIPE, text=True)
    sys.stdout.write(run.stdout)
    if run.returncode != 0:
        return f"{arguments.program[0]} ended with {run.returncode}"
    if arguments.output:
        with open(arguments.output, encoding="utf-8") as file:
            expected = file.read()
        if run.stdout != expected:
            difference = difflib.unified_diff(expected.splitlines(), run.stdout.splitlines(),
                                              "expected", "printed", lineterm="")
            return "\n".join(["the output differs:", *difference])
    if arguments.pattern and not re.search(arguments.pattern, run.stdout, re.MULTILINE):
        return f"the output does not contain {arguments.pattern!r}"
    return 0


if __name__ == "__main__":
    sys.exit(main())
