#!/usr/bin/env python3
"""Names the public names that have no text.

undocumented.py DOXYFILE

Copy and move operations need none, nor do the using lines and operations that a class inherits.
"""
import re
import subprocess
import sys

COPY = re.compile(r"Member (\w+|operator=)\((?:const \w+ ?&|\w+ ?&&)\w*\)")


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        settings = file.read() + "\nGENERATE_HTML=NO\n"
    run = subprocess.run(["doxygen", "-"], input=settings, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if run.returncode != 0:
        return run.stdout
    missing = {line for line in run.stdout.splitlines() if "is not documented" in line and not COPY.search(line)}
    return "\n".join(sorted(missing)) if missing else 0


if __name__ == "__main__":
    sys.exit(main())
