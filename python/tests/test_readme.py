"""The examples of the README, run as they are printed."""

from __future__ import annotations

import doctest
from pathlib import Path

import pytest
from conftest import ROOT


def test_examples(monkeypatch: pytest.MonkeyPatch, tmp_path: Path) -> None:
    pytest.importorskip("pandas")
    monkeypatch.chdir(ROOT / "examples")
    monkeypatch.setenv("TMPDIR", str(tmp_path))
    monkeypatch.setattr("tempfile.tempdir", str(tmp_path))
    results = doctest.testfile(str(ROOT / "python/README.md"), module_relative=False)
    assert results.attempted > 30
    assert results.failed == 0
