"""Dask data frames, in this process and on workers of which one is killed."""

from __future__ import annotations

import os
import signal
import time
from pathlib import Path
from typing import Any

import pytest

import qmdatabase

pytest.importorskip("distributed")
from qmdatabase import dask as qd

OWNERS = ["database", "substance_id", "phase_id", "change_id", "parameter_id"]
KEYS = [*OWNERS, "first_argument", "second_argument", "component"]


def test_parts_are_the_whole(trees: dict[str, Path]) -> None:
    paths = list(trees.values())
    whole = qd.read(paths).compute(scheduler="synchronous")
    parts = qd.read(paths, substances_per_part=7)
    assert parts.npartitions == 2 + 5
    split = parts.compute(scheduler="threads")
    assert split.dtypes.equals(whole.dtypes)
    assert split.reset_index(drop=True).equals(whole.reset_index(drop=True))
    for path in paths:
        with qmdatabase.open(path) as database:
            plain = database.to_dataframe()
        own = whole[whole.database == str(path)].drop(columns="database")
        assert list(own.columns) == list(plain.columns)
        assert own["value"].tolist() == plain["value"].tolist()
        assert own["substance"].astype(object).tolist() == plain["substance"].astype(object).tolist()
    with pytest.raises(FileNotFoundError):
        qd.read([*paths, "nowhere"])


def slowly(frame: Any) -> Any:
    time.sleep(0.3)
    return frame


def test_a_killed_worker_changes_nothing(trees: dict[str, Path], tmp_path: Path) -> None:
    import dask
    from distributed import Client, LocalCluster

    paths = list(trees.values())
    wanted = qd.read(paths, annotations=False).compute(scheduler="synchronous")
    with (
        dask.config.set(temporary_directory=str(tmp_path)),
        LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster,
        Client(cluster) as client,
    ):
        before = client.run(os.getpid)
        parts = qd.read(paths, annotations=False, substances_per_part=4)
        future = client.compute(parts.map_partitions(slowly, meta=parts._meta))
        time.sleep(0.8)
        assert not future.done()
        os.kill(next(iter(before.values())), signal.SIGKILL)
        found = future.result(timeout=120)
        assert set(client.run(os.getpid).values()) != set(before.values())
    assert found.sort_values(KEYS, ignore_index=True).equals(wanted.sort_values(KEYS, ignore_index=True))
