"""What all tests share. The library, the command and the generator of trees come from the environment."""

from __future__ import annotations

import os
import shutil
import subprocess
from collections.abc import Iterator
from pathlib import Path

import hypothesis
import pytest

import qmdatabase
from qmdatabase._command import find_command

ROOT = Path(__file__).resolve().parents[2]
SAMPLE = ROOT / "examples" / "materials"

hypothesis.settings.register_profile("same", derandomize=True, deadline=None, database=None)
hypothesis.settings.load_profile("same")


def make_generated_tree(directory: Path, substances: int) -> Path:
    """A database of all kinds of values."""
    generator = os.environ.get("QMDB_GENERATE_TREE")
    if not generator:
        pytest.skip("QMDB_GENERATE_TREE does not name the program generate_tree")
    subprocess.run([generator, directory, str(substances)], check=True, stdout=subprocess.DEVNULL)
    return directory


@pytest.fixture(scope="session")
def command() -> str:
    """The command qmdb."""
    return find_command()


@pytest.fixture(scope="session")
def trees(tmp_path_factory: pytest.TempPathFactory) -> dict[str, Path]:
    """The sample database and a generated one."""
    generated = make_generated_tree(tmp_path_factory.mktemp("trees") / "generated", 30)
    return {"sample": SAMPLE, "generated": generated}


@pytest.fixture
def sample() -> Iterator[qmdatabase.Database]:
    """The sample database, open."""
    with qmdatabase.open(SAMPLE) as database:
        yield database


@pytest.fixture
def copy(tmp_path: Path) -> Path:
    """A copy of the sample database that a test may write to."""
    return Path(shutil.copytree(SAMPLE, tmp_path / "materials"))
