#!/usr/bin/env python3
"""Tests a block of a document, so that documents cannot teach what does not work.

document_block.py DOCUMENT NUMBER --root DIR --kel PROGRAM --headers FILE --prefix DIR -- COMPILER [FLAG...] [LIBRARY...]

Blocks are counted from 1 over those that documents.py leaves to this test. A comment `<!-- given ... -->` right in front
of a block holds what its text takes for granted: it goes before the text, or around it if it has a line `...` in its
place. Of a block `sh run` it is run before, by itself. Every block gets an empty folder of its own.

  cpp run         must compile, link and end with 0
  cpp compile     must compile
  cpp body        must compile as the body of a function, with all public headers
  sh run          must end with 0 in an empty folder with kel; KEL_TEST_DATA names the test data
  sh              commands for the source tree, not run: the shell and the tools must know what they name
  sh install      must end with 0 where <prefix> is the installed package; C++ sources that it names are made
  cmake           must configure and build against the installed package
  cpp excerpt     must stand so in a source of the tree, but for how far it is indented
  cmake excerpt   the same in a CMakeLists.txt

A block ```text output right behind one that is run must be its standard output, to the byte. Case files that a block
leaves behind must be good meshes for `kel check`.
"""
import argparse
import difflib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True # leaves the source tree alone
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from documents import KINDS, blocks, whole_text # pylint: disable=wrong-import-position
from good_meshes import problem_of_meshes # pylint: disable=wrong-import-position


def find_block(document, number):
    """The block and the expected output or None."""
    found = blocks(pathlib.Path(document).read_text(encoding="utf-8"))
    tested = [index for index, block in enumerate(found) if KINDS.get(block.kind) == "block"]
    index = tested[number - 1]
    following = found[index + 1:index + 2]
    return found[index], following[0].text if following and following[0].kind == "text output" else None


def without_indentation(text):
    return re.sub(r"^[ \t]+", "", text, flags=re.MULTILINE)


class Tester:
    def __init__(self, arguments, folder):
        self.arguments = arguments
        self.folder = folder
        self.compiler, *self.flags = arguments.command

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def check(self, block, expected):
        """None, or what is wrong."""
        return {
            "cpp run": self.cpp_run, "cpp compile": self.cpp_compile, "cpp body": self.cpp_body,
            "cpp excerpt": self.excerpt, "sh run": self.sh_run,
            "sh": self.sh, "sh install": self.sh_install, "cmake": self.cmake, "cmake excerpt": self.excerpt,
        }[block.kind](block, expected)

    def compile_only(self, text, *more):
        options = [flag for flag in self.flags if flag.startswith("-") and not flag.startswith("-Wl,")]
        source = self.write("block.cpp", text)
        run = subprocess.run([self.compiler, *options, *more, "-fsyntax-only", source], check=False)
        return "it does not compile" if run.returncode != 0 else None

    def cpp_compile(self, block, _):
        return self.compile_only(whole_text(block))

    def cpp_body(self, block, _):
        text = f'#include "{self.arguments.headers}"\n#include <iostream>\nusing namespace meridyn;\n'
        text += f"void body()\n{{\n{whole_text(block)}}}\n"
        return self.compile_only(text, "-Wno-unused")

    def cpp_run(self, block, expected):
        source = self.write("block.cpp", whole_text(block))
        program = self.folder / "block"
        if subprocess.run([self.compiler, source, "-o", program, *self.flags], check=False).returncode != 0:
            return "it does not compile"
        return self.run([program], expected)

    def sh_run(self, block, expected):
        os.environ["PATH"] = f"{pathlib.Path(self.arguments.kel).parent}:{os.environ['PATH']}"
        os.environ["KEL_TEST_DATA"] = f"{self.arguments.root}/tests/data"
        given = subprocess.run(["sh", "-eu", "-c", block.given], cwd=self.folder, check=False)
        if given.returncode != 0:
            return "what is given fails"
        return self.run(["sh", "-eux", "-c", block.text], expected)

    def run(self, command, expected):
        run = subprocess.run(command, cwd=self.folder, stdout=subprocess.PIPE, text=True, check=False)
        sys.stdout.write(run.stdout)
        if run.returncode != 0:
            return f"it ended with {run.returncode}"
        if expected is not None and run.stdout != expected:
            difference = difflib.unified_diff(expected.splitlines(), run.stdout.splitlines(), "document", "printed", lineterm="")
            return "\n".join(difference)
        return problem_of_meshes(self.arguments.kel, self.folder)

    def sh_install(self, block, expected):
        for source in set(re.findall(r"\b\w+\.cpp\b", block.text)):
            self.write(source, '#include "KelHdf5Consumer.h"\nint main() { meridyn::KelHdf5Consumer writer; }\n')
        text = block.text.replace("<prefix>", self.arguments.prefix)
        return self.run(["sh", "-eux", "-c", text], expected)

    def sh(self, block, _):
        parsed = subprocess.run(["sh", "-n", "-c", re.sub(r"<\w+>", "placeholder", block.text)], check=False)
        if parsed.returncode != 0:
            return "the shell does not understand it"
        text = re.sub(r"(^|\s)#.*$", "", block.text, flags=re.MULTILINE)
        problems = [f"there is no {path}" for path in re.findall(r"(?:^|\s)((?:scripts|tests|docs|examples)/[\w./-]+)", text)
                    if not (self.arguments.root / path).exists()]
        presets = json.loads((self.arguments.root / "CMakePresets.json").read_text(encoding="utf-8"))
        known = {preset["name"] for preset in presets["configurePresets"]}
        problems += [f"there is no preset {name}" for name in re.findall(r"--preset (\w+)", text) if name not in known]
        problems += [f"there is no preset {name}" for name in re.findall(r"\bbuild/(\w+)", text) if name not in known]
        programs = re.findall(r"(?:^|&&|;)[ \t]*(?:\w+=\S* )*([\w./-]+)", text.replace("\\\n", " "), re.MULTILINE)
        problems += [f"what is {name}?" for name in programs if not self.is_program(name)]
        return "\n".join(problems) or None

    def is_program(self, name):
        if "/" in name:
            return name.startswith("build/") or os.access(self.arguments.root / name, os.X_OK)
        return name in ("cd", "cpack", "clang-format", "apt", "man", "kel", "export") or shutil.which(name) is not None

    def cmake(self, block, _):
        for source in set(re.findall(r"\b\w+\.cpp\b", whole_text(block))):
            self.write(source, "#include \"KelConsumer.h\"\nint main() {}\n")
        head = "cmake_minimum_required(VERSION 3.25)\nproject(Block LANGUAGES CXX)\n"
        self.write("CMakeLists.txt", head + whole_text(block))
        configure = ["cmake", "-S", ".", "-B", "build", f"-DCMAKE_PREFIX_PATH={self.arguments.prefix}",
                     f"-DCMAKE_CXX_COMPILER={self.compiler}"]
        for command in (configure, ["cmake", "--build", "build"]):
            if subprocess.run(command, cwd=self.folder, check=False).returncode != 0:
                return "it does not build"
        return None

    def excerpt(self, block, _):
        names = ("CMakeLists.txt",) if block.kind.startswith("cmake") else ("*.h", "*.cpp")
        tops = [path for path in self.arguments.root.iterdir() if path.is_dir() and path.name != "build"]
        files = (path for name in names for top in tops for path in top.rglob(name))
        wanted = without_indentation(block.text)
        found = any(wanted in without_indentation(path.read_text(encoding="utf-8")) for path in files)
        return None if found else f"no {' or '.join(names)} of the tree has it"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("document")
    parser.add_argument("number", type=int)
    parser.add_argument("--root", type=pathlib.Path, required=True, help="the source tree")
    parser.add_argument("--kel", required=True, help="the tool")
    parser.add_argument("--headers", required=True, help="source that includes all public headers")
    parser.add_argument("--prefix", required=True, help="where the package is installed")
    parser.add_argument("command", nargs="+", help="compiler, flags and libraries")
    arguments = parser.parse_args()
    block, expected = find_block(arguments.document, arguments.number)
    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        problem = Tester(arguments, pathlib.Path(folder)).check(block, expected)
    return f"{arguments.document}:{block.line}: {problem}" if problem else 0


if __name__ == "__main__":
    sys.exit(main())
