"""Measures the Python module beside a loop in C++ and the command: python.py BUILD [REPETITIONS]

BUILD is the folder of a Release build. Each job is done several times, and the least processor time counts, that of
the commands that it runs included.
"""

from __future__ import annotations

import functools
import os
import resource
import subprocess
import sys
import tempfile
from collections.abc import Callable
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
BUILD = Path(sys.argv[1]).resolve()
REPETITIONS = int(sys.argv[2]) if len(sys.argv) > 2 else 15
SUBSTANCES = 1000

os.environ["QMDB_LIBRARY"] = str(BUILD / "libqmDatabase.so.1")
os.environ["QMDB_COMMAND"] = str(BUILD / "qmdb")
sys.path.insert(0, str(ROOT / "python/src"))
import qmdatabase


def processor_seconds() -> float:
    """Those of this process and of the children that it has waited for."""
    usages = [resource.getrusage(who) for who in (resource.RUSAGE_SELF, resource.RUSAGE_CHILDREN)]
    return sum(one.ru_utime + one.ru_stime for one in usages)


def best(job: Callable[[], object]) -> float:
    """The least processor seconds of several runs."""
    times = []
    for _ in range(REPETITIONS):
        begin = processor_seconds()
        job()
        times.append(processor_seconds() - begin)
    return min(times)


def value_floor(tree: Path) -> tuple[float, float, int]:
    """The least processor seconds of the loop in C++, for an open and for all values, and how many values there are."""
    loop = subprocess.run([BUILD / "bench/value_loop", tree, "2"], check=True, capture_output=True, text=True)
    open_seconds, value_seconds, count = loop.stdout.split()
    return float(open_seconds), float(value_seconds), int(count)


def best_in_turn(tree: Path, job: Callable[[], object]) -> tuple[float, float, float]:
    """The least seconds of the loop in C++, for an open and for all values, and of a job; they take turns."""
    rounds = []
    for _ in range(REPETITIONS):
        open_seconds, value_seconds, _ = value_floor(tree)
        begin = processor_seconds()
        job()
        rounds.append((open_seconds, value_seconds, processor_seconds() - begin))
    open_least, value_least, job_least = map(min, zip(*rounds))
    return open_least, value_least, job_least


def read_all(parameters: tuple[qmdatabase.Parameter, ...]) -> None:
    for parameter in parameters:
        _ = parameter.value().values


def opening(tree: Path) -> None:
    for _ in range(10):
        qmdatabase.open(tree).close()


def make_frame(tree: Path, annotations: bool) -> None:
    with qmdatabase.open(tree) as database:
        database.to_dataframe(annotations)


def row(job: str, floor: str, floor_seconds: float, seconds: float) -> None:
    print(
        f"| {job} | {floor} {floor_seconds * 1000:.3g} ms | {seconds * 1000:.3g} ms | **{seconds / floor_seconds:.2f}** |"
    )


def main() -> None:
    shm = Path("/dev/shm")
    with tempfile.TemporaryDirectory(dir=shm if shm.is_dir() else None) as directory:
        tree = Path(directory, "tree")
        subprocess.run([BUILD / "bench/generate_tree", tree, str(SUBSTANCES)], check=True, stdout=subprocess.DEVNULL)
        export = [BUILD / "qmdb", "export", tree, "--csv", "-o", Path(directory, "all.csv")]
        export_seconds = best(lambda: subprocess.run(export, check=True))

        print("| Job | Floor | Python | x floor |\n|---|---|---|---|")
        open_floor, _, opened = best_in_turn(tree, lambda: opening(tree))
        row(f"open and close, {SUBSTANCES:,} substances", "C++", open_floor, opened / 10)
        with qmdatabase.open(tree) as database:
            parameters = database.parameters
            assert len(parameters) == value_floor(tree)[2]
            _, floor, seconds = best_in_turn(tree, lambda: read_all(parameters))
            row(f"{len(parameters):,} mixed values, as arrays", "C++", floor, seconds)
            rows = len(database.to_dataframe(annotations=False))
        for name, annotations in {"to a data frame, without annotations": False, "to a data frame": True}.items():
            seconds = best(functools.partial(make_frame, tree, annotations))
            row(f"{rows:,} rows {name}, opening included", "export --csv", export_seconds, seconds)


main()
