#!/usr/bin/env python3
"""Builds and runs an example from where it is installed, as its user would, and compares what it prints.

installed_example.py FOLDER --prefix DIR --compiler PROGRAM --expected FILE
"""
import argparse
import pathlib
import subprocess
import sys
import tempfile

# What an example wants to know when it runs, from the folder that it is built in.
ARGUMENTS = {
    "format_plugin": lambda source: ["./points_format.so"],
    "mapping": lambda source: [source],
}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--prefix", required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--expected", type=pathlib.Path, required=True)
    arguments = parser.parse_args()

    name = arguments.folder.name
    with tempfile.TemporaryDirectory(prefix="kel-") as build:
        configure = ["cmake", "-S", arguments.folder, "-B", build, f"-DCMAKE_PREFIX_PATH={arguments.prefix}",
                     f"-DCMAKE_CXX_COMPILER={arguments.compiler}"]
        for command in (configure, ["cmake", "--build", build]):
            if subprocess.run(command, check=False).returncode != 0:
                return f"{name} does not build"
        command = [f"./{name}", *ARGUMENTS.get(name, lambda _: [])(arguments.folder)]
        run = subprocess.run(command, cwd=build, stdout=subprocess.PIPE, text=True, check=False)
    sys.stdout.write(run.stdout)
    if run.returncode != 0:
        return f"{name} ended with {run.returncode}"
    return 0 if run.stdout == arguments.expected.read_text(encoding="utf-8") else f"{name} prints something else than {arguments.expected}"


if __name__ == "__main__":
    sys.exit(main())
