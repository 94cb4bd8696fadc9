#!/usr/bin/env python3
"""Checks that each folder of the library includes only itself and the folders below it."""

import pathlib
import re
import sys

LAYERS = ["include/qmdatabase", "src/qm", "src/format", "src/files", "src/values", "src/model", "src/database", "src/api"]
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def target(root, source, name):
    """The included file, looked for beside the including one and in the include directories."""
    for place in (source.parent, root / "src", root / "include"):
        if (place / name).is_file():
            return (place / name).resolve()
    return None


def faults(root):
    for level, layer in enumerate(LAYERS):
        allowed = [(root / below).resolve() for below in LAYERS[: level + 1]]
        sources = [path for path in (root / layer).rglob("*") if path.suffix in (".h", ".cpp")]
        if not sources:
            yield f"{layer}: no sources"
        for source in sources:
            for name in INCLUDE.findall(source.read_text(encoding="utf-8")):
                found = target(root, source, name)
                if not found or not any(found.is_relative_to(folder) for folder in allowed):
                    yield f'{source.relative_to(root)}: "{name}" is not in {layer} or below it'


found = list(faults(pathlib.Path(sys.argv[1]).resolve()))
print("\n".join(found))
sys.exit(1 if found else 0)
