#!/usr/bin/env python3
"""Checks that the library exports the interface's functions under their version and nothing else, and its SONAME.

Usage: exports.py NM READELF LIBRARY
"""

import re
import subprocess
import sys

FUNCTIONS = """
    Open Close GetMatters GetPhases GetPhaseChanges GetMatterParams GetPhaseParams GetPhaseChangeParams
    GetParamValue GetAvailablePhaseParams AddMatter AddPhase AddPhaseChange AddMatterParam AddPhaseParam
    DestroyMatterArray DestroyPhasesArray DestroyPhaseChangeArray DestroyParametersArray
    DestroyParamDescrArray DestroyParameterData
""".split()


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


nm, readelf, library = sys.argv[1:]
expected = sorted(["A QMDATABASE_1", *(f"T qmdb{name}@@QMDATABASE_1" for name in FUNCTIONS)])
exported = sorted(line.split(maxsplit=1)[1] for line in output(nm, "-D", "--defined-only", "--with-symbol-versions", library).splitlines())
if exported != expected:
    sys.exit(f"missing: {sorted(set(expected) - set(exported))}\nextra: {sorted(set(exported) - set(expected))}")

soname = re.search(r"\(SONAME\).*\[(.*)\]", output(readelf, "-d", library))
if not soname or soname[1] != "libqmDatabase.so.1":
    sys.exit(f"SONAME is {soname and soname[1]}")
