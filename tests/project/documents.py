"""What the tests of the documents share: the documents of a tree, and the blocks of a document."""
import collections
import pathlib
import re

# How a kind of block is tested. "block": by document_block.py; "output": with the block before it; "none": no code.
KINDS = {
    "cpp run": "block",
    "cpp compile": "block",
    "cpp body": "block",
    "cpp excerpt": "block",
    "sh run": "block",
    "sh": "block",
    "sh install": "block",
    "cmake": "block",
    "cmake excerpt": "block",
    "text output": "output",
    "text": "none",
}

# Blocks that have a test of their own, which reads the document.
OWN_TESTS = {
    ("docs/file-format.md", "python"): "tests/formats/hdf5/h5py_reads.py",
    ("docs/location-grammar.md", "model"): "tests/location/GrammarDocumentTest.cpp",
    ("docs/location-grammar.md", "locations"): "tests/location/GrammarDocumentTest.cpp",
    ("docs/settings-xml.md", "xml"): "tests/settings/SettingsDocumentTest.cpp",
    ("docs/variable-mapping.md", "xml"): "tests/solution/MappingFileTest.cpp",
}

# The line of a comment `<!-- given ... -->` whose place the block takes; without it the block comes last.
PLACE = "...\n"
GIVEN = re.compile(r"<!-- given\n(.*?)-->\s*\Z", re.DOTALL)
FENCE = re.compile(r"^```(?P<kind>[^\n]*)\n(?P<text>.*?)^```$", re.MULTILINE | re.DOTALL)

Block = collections.namedtuple("Block", "kind text given line")


def whole_text(block):
    """The text of a block with what is given."""
    before, place, after = block.given.partition(PLACE)
    return before + block.text + after if place else block.given + block.text


def documents(root):
    """The documents that are written for people, by path from the root."""
    root = pathlib.Path(root)
    return sorted(path.relative_to(root) for pattern in ("*.md", "docs/*.md") for path in root.glob(pattern))


def blocks(text):
    """All fenced blocks. `given` is what a comment right in front of one adds: what its text takes for granted."""
    found = []
    end = 0
    for match in FENCE.finditer(text):
        given = GIVEN.search(text[end:match.start()])
        found.append(Block(match["kind"], match["text"], given[1] if given else "", text.count("\n", 0, match.start()) + 1))
        end = match.end()
    return found


def without_blocks(text):
    """The text with its fenced blocks and comments blanked out; lines stay where they are."""
    def blank(match):
        return "\n" * match[0].count("\n")
    return re.sub(r"<!--.*?-->", blank, FENCE.sub(blank, text), flags=re.DOTALL)
