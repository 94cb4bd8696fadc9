"""Makes the engineering database anew, and with it the table in docs/data.md: generate.py QMDB [DIRECTORY]

QMDB is the command that imports; a database in DIRECTORY instead of data/engineering leaves the document alone.
"""

import pathlib
import shutil
import subprocess
import sys
import tempfile

from engineering import database, importFile, report

HERE = pathlib.Path(__file__).resolve().parent
DEFAULT = HERE.parent / "engineering"
DOCUMENT = HERE.parents[1] / "docs" / "data.md"


def main():
    command = sys.argv[1]
    root = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else DEFAULT
    materials = database.materials()
    with tempfile.TemporaryDirectory() as scratch:
        rows, made = pathlib.Path(scratch) / "materials.csv", pathlib.Path(scratch) / "database"
        importFile.write(rows, materials)
        subprocess.run([command, "import", rows, made], check=True)
        subprocess.run([command, "check", made], check=True)
        shutil.rmtree(root, ignore_errors=True)
        shutil.copytree(made, root)
    if root == DEFAULT:
        report.write(DOCUMENT, materials)
    print(f"{len(materials)} materials in {root}")


if __name__ == "__main__":
    main()
