#!/usr/bin/env python3
"""Runs a program in a folder of its own; fails unless it ends with 0 and prints what is expected.

run_program.py [--output FILE] [--check KEL] -- PROGRAM [ARGUMENT...]
"""
import argparse
import difflib
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True # leaves the source tree alone
from good_meshes import problem_of_meshes # pylint: disable=wrong-import-position


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--output", help="file that holds the whole standard output")
    parser.add_argument("--check", help="the tool, which must find the meshes good that the program writes")
    parser.add_argument("program", nargs="+")
    arguments = parser.parse_args()

    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        run = subprocess.run(arguments.program, cwd=folder, stdout=subprocess.PIPE, text=True, check=False)
        problem = problem_of_meshes(arguments.check, folder) if arguments.check else None
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
    return problem or 0


if __name__ == "__main__":
    sys.exit(main())
