"""The examples of the documents, run as they are printed."""

from __future__ import annotations

import doctest
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest
from conftest import ROOT


def test_readme(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    pytest.importorskip("pandas")
    monkeypatch.chdir(ROOT / "examples")
    monkeypatch.setattr("tempfile.tempdir", str(tmp_path))
    results = doctest.testfile(str(ROOT / "python/README.md"), module_relative=False)
    assert results.attempted > 30
    assert results.failed == 0


def test_scaling(command: str, copy: Path) -> None:
    for package in ("pyarrow", "duckdb", "distributed"):
        pytest.importorskip(package)
    document = (ROOT / "docs/scaling.md").read_text("utf-8")
    programs = re.findall(r"^```python\n(.*?)^```$", document, re.MULTILINE | re.DOTALL)
    commands = re.findall(r"^    (scripts/node-local .*)$", document, re.MULTILINE)
    assert (len(programs), len(commands)) == (3, 3)
    environment = {**os.environ, "PATH": f"{Path(command).parent}:{os.environ['PATH']}"}
    environment["PYTHONPATH"] = os.pathsep.join(sys.path)
    (copy.parent / "scripts").symlink_to(ROOT / "scripts")
    output = []
    for line in [*([sys.executable, "-c", one] for one in programs), *(["bash", "-c", one] for one in commands)]:
        done = subprocess.run(line, cwd=copy.parent, env=environment, capture_output=True, text=True, check=False)
        assert done.returncode == 0, (line, done.stderr)
        output.append(done.stdout)
    assert "Thermal conductivity" in output[1]
    assert re.search(r"Copper +8960", output[2])
    assert "Copper (2), Cu" in output[4]
