#!/usr/bin/env python3
"""Uses what a wheel of the Python module carries: wheel.py WHEEL

Nothing of the system or of the build at hand may serve in the place of what the wheel carries.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import zipfile

WHEEL = pathlib.Path(sys.argv[1]).resolve()
SAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples" / "materials"
NEW_UNIT = "<unit><def>2 kg/m3</def><name><singular>wheelunit</singular></name></unit></unit-system>"
USE = """
import qmdatabase, qmdatabase._command, qmdatabase._native
for path in (qmdatabase._native.library_path(), qmdatabase._command.find_command()):
    assert path.startswith(INSIDE), path
density = qmdatabase.open(SAMPLE)["Copper"].solid["Density"]
assert float(density) == 8960 and density.parameter.symbol == "rho"
""".strip()


def run(*command, **options):
    return subprocess.run([str(one) for one in command], check=True, text=True, stdout=subprocess.PIPE, **options).stdout


def converted(command, units):
    return run(command, "get", SAMPLE, "Copper:Solid", "Density", "--units", units)


assert "manylinux" in WHEEL.name, f"auditwheel refuses {WHEEL.name}"
with tempfile.TemporaryDirectory() as name:
    scratch = pathlib.Path(name)
    site = scratch / "site"
    with zipfile.ZipFile(WHEEL) as archive:
        for member in archive.infolist():
            pathlib.Path(archive.extract(member, site)).chmod(0o755)

    environment = {key: text for key, text in os.environ.items() if not key.startswith(("QMDB_", "UDUNITS2_"))}
    environment["PYTHONPATH"] = str(site)
    script = f"INSIDE, SAMPLE = {str(site)!r}, {str(SAMPLE)!r}\n{USE}"
    run(sys.executable, "-c", script, env=environment, cwd=scratch)

    # A unit that only the carried tables know.
    os.environ.pop("UDUNITS2_XML_PATH", None)
    carried = site / "qmdatabase" / "_lib"
    tables = carried / "udunits" / "udunits2-common.xml"
    tables.write_text(tables.read_text(encoding="utf-8").replace("</unit-system>", NEW_UNIT), encoding="utf-8")
    assert "8.96 g/cm3" in converted(carried / "qmdb", "g/cm3"), converted(carried / "qmdb", "g/cm3")
    assert "4480" in converted(carried / "qmdb", "wheelunit")
