"""Makes the engineering database anew, and with it the table in docs/data.md: generate.py [DIRECTORY]"""

import pathlib
import sys

from engineering import database, report, tree

HERE = pathlib.Path(__file__).resolve().parent
DEFAULT = HERE.parent / "engineering"
DOCUMENT = HERE.parents[1] / "docs" / "data.md"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT
    materials = database.materials()
    tree.write(root, materials)
    if root == DEFAULT:
        report.write(DOCUMENT, materials)
    print(f"{len(materials)} materials in {root}")


if __name__ == "__main__":
    main()
