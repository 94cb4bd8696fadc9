#!/usr/bin/env python3
"""Checks that each folder of the library, of the command and of the benchmarks includes only what it may."""

import pathlib
import re
import sys

LAYERS = ["include/qmdatabase", "src/qm", "src/format", "src/files", "src/values", "src/model", "src/database",
    "src/api"]
TOOL = "tools/qmdb/"
# What each folder of the command may include beside itself and the exported functions.
TOOL_FOLDERS = {
    "common": [],
    "units": ["common"],
    "database": ["common"],
    "annotations": ["common", "database"],
    "input": ["common", "database"],
    "output": ["common", "database", "annotations"],
    "check": ["common", "database", "annotations"],
    "writing": ["common", "database", "annotations", "input", "check"],
    "comparison": ["common", "database", "annotations", "writing"],
    "commands": ["common", "units", "database", "annotations", "input", "output", "check", "comparison", "writing"],
    "help": ["common", "database", "annotations", "output", "commands"],
}
# What of the library's own code may be included elsewhere: the rules of the file format, and handles.
OTHERS = {TOOL + "annotations": ["src/format"], TOOL + "check": ["src/format"],
    TOOL + "writing": ["src/format"],
    "bench": ["src/format", "src/qm/handles.h"]}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def target(root, source, name):
    """The included file, looked for beside the including one and in the include directories."""
    places = [source.parent, root / "src", root / "include"]
    if source.is_relative_to(root / TOOL):
        places.insert(1, root / TOOL)
    for place in places:
        if (place / name).is_file():
            return (place / name).resolve()
    return None


def allowed_includes():
    """Each folder with all folders that it may include."""
    for level, layer in enumerate(LAYERS):
        yield layer, LAYERS[: level + 1]
    for folder, others in TOOL_FOLDERS.items():
        allowed = [TOOL + other for other in [folder, *others]]
        yield TOOL + folder, ["include/qmdatabase", *allowed, *OTHERS.get(TOOL + folder, [])]
    yield "bench", ["include/qmdatabase", "bench", *OTHERS["bench"]]


def faults(root):
    for layer, names in allowed_includes():
        allowed = [(root / name).resolve() for name in names]
        sources = [path for path in (root / layer).rglob("*") if path.suffix in (".h", ".cpp")]
        if not sources:
            yield f"{layer}: no sources"
        for source in sources:
            for name in INCLUDE.findall(source.read_text(encoding="utf-8")):
                found = target(root, source, name)
                if not found or not any(found.is_relative_to(folder) for folder in allowed):
                    yield f'{source.relative_to(root)}: "{name}" is not in {layer} nor where it may include from'


found = list(faults(pathlib.Path(sys.argv[1]).resolve()))
print("\n".join(found))
sys.exit(1 if found else 0)
