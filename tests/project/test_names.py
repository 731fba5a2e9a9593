#!/usr/bin/env python3
"""Refuses names of GoogleTest tests that hold addresses or bytes, which are others in each run.

test_names.py PROGRAM...

GoogleTest prints a parameter of a type that it cannot print as its bytes, and a pointer as its address. Such a type gets a
PrintTo; a text is a std::string.
"""
import concurrent.futures
import re
import subprocess
import sys

UNSTABLE = re.compile(r"\d+-byte object|\b0x[0-9a-f]{6,}")


def names(program):
    return program, subprocess.run([program, "--gtest_list_tests"], stdout=subprocess.PIPE, text=True, check=True).stdout.splitlines()


def main():
    with concurrent.futures.ThreadPoolExecutor() as pool:
        listed = list(pool.map(names, sys.argv[1:]))
    if not any(lines for _, lines in listed):
        return "no tests"
    return "\n".join(f"{program}: {line.strip()}" for program, lines in listed for line in lines if UNSTABLE.search(line)) or 0


if __name__ == "__main__":
    sys.exit(main())
