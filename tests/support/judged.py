#!/usr/bin/env python3
"""Runs a test that needs judges: programs, or modules of Python, that are not needed to build.

judged.py [--judge PROGRAM | --judge python:MODULE]... -- COMMAND [ARGUMENT...]

Without a judge the test is skipped (exit code 77), or fails if KEL_REQUIRE_JUDGES is set to anything but 0: .ci/run sets it.
"""
import argparse
import importlib.util
import os
import shutil
import subprocess
import sys

SKIPPED = 77


def is_there(judge):
    kind, _, module = judge.partition(":")
    return importlib.util.find_spec(module) is not None if kind == "python" else shutil.which(judge) is not None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--judge", action="append", default=[])
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    missing = [judge for judge in arguments.judge if not is_there(judge)]
    if missing:
        required = os.environ.get("KEL_REQUIRE_JUDGES", "0") not in ("", "0")
        print(f"{'FAILED' if required else 'skipped'}: there is no {', '.join(missing)}")
        return 1 if required else SKIPPED
    return subprocess.run(arguments.command, check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
