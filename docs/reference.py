#!/usr/bin/env python3
"""Makes the reference of the public headers, or only checks it.

reference.py DOXYFILE [--check]

Ends with 1 and a list if Doxygen warns, or if a public or protected name has no text. --check makes the reference in a
temporary folder and throws it away. Doxygen's own warnings about names leave out the values of enumerations and whatever
stands outside of classes, and name overrides whose types go by another name; so names are looked up in its XML. What
overrides has the text of what it overrides.
"""
import argparse
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

def run_doxygen(doxyfile, folder, check):
    settings = pathlib.Path(doxyfile).read_text(encoding="utf-8") + "\nGENERATE_XML = YES\n"
    if check:
        settings += f"OUTPUT_DIRECTORY = {folder}\nGENERATE_HTML = NO\n"
    run = subprocess.run(["doxygen", "-"], input=settings, text=True, check=False,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return run.returncode, [line for line in run.stdout.splitlines() if "is not documented" not in line]


def has_text(entity):
    parts = (entity.find("briefdescription"), entity.find("detaileddescription"))
    return any(part is not None and "".join(part.itertext()).strip() for part in parts)


def needs_text(entity):
    name = entity.findtext("name") or ""
    return not (entity.get("prot") == "private" or entity.get("kind") == "friend" or name.startswith("~")
                or re.search(r"(=delete|\boverride\b.*)$", entity.findtext("argsstring") or "") or is_undefined(entity, name))


def is_undefined(entity, name):
    """Whether it is a macro that its header takes back."""
    header = entity.find("location").get("file")
    return entity.get("kind") == "define" and f"#undef {name}\n" in pathlib.Path(header).read_text(encoding="utf-8")


def place(entity):
    location = entity.find("location")
    return f"{location.get('file')}:{location.get('line')}" if location is not None else "?"


def undocumented(folder):
    """The names without a text in the XML of a folder, each with its place."""
    found = set()
    for file in sorted(pathlib.Path(folder).glob("*.xml")):
        for compound in xml.etree.ElementTree.parse(file).getroot().findall("compounddef"):
            if compound.get("kind") not in ("class", "struct", "union", "namespace", "file"):
                continue
            if compound.get("prot") == "private":
                continue
            name = compound.findtext("compoundname")
            if compound.get("kind") in ("class", "struct", "union") and not has_text(compound):
                found.add(f"{place(compound)}: {name} has no text")
            for member in compound.iter("memberdef"):
                found |= problems_of(member, name)
    return found


def problems_of(member, scope):
    if not needs_text(member):
        return set()
    found = set()
    name = member.findtext("name")
    if name and not has_text(member):
        found.add(f"{place(member)}: {name} of {scope} has no text")
    for value in member.findall("enumvalue"):
        if not has_text(value):
            found.add(f"{place(member)}: {value.findtext('name')} of {name} has no text")
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("doxyfile")
    parser.add_argument("--check", action="store_true", help="keep nothing")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="kel-") as folder:
        code, warnings = run_doxygen(arguments.doxyfile, folder, arguments.check)
        if code != 0:
            return "\n".join(warnings)
        reference = folder if arguments.check else output_folder(arguments.doxyfile)
        problems = sorted(set(warnings) | undocumented(pathlib.Path(reference, "xml")))
    return "\n".join(problems) if problems else 0


def output_folder(doxyfile):
    for line in pathlib.Path(doxyfile).read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition("=")
        if name.strip() == "OUTPUT_DIRECTORY":
            return value.strip()
    raise ValueError(f"{doxyfile} names no OUTPUT_DIRECTORY")


if __name__ == "__main__":
    sys.exit(main())
