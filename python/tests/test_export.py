"""Every number of a database equals what the command exports."""

from __future__ import annotations

import csv
import math
import os
import subprocess
from pathlib import Path
from typing import Any

import numpy as np
import pytest

import qmdatabase
from qmdatabase import tidy

pandas = pytest.importorskip("pandas")

Row = dict[str, Any]


def exported(command: str, tree: Path, language: str) -> list[Row]:
    """The export's numbers as such, None for what is not there; rows of phases without values are left out."""
    output = subprocess.run([command, "export", tree, "--csv", "--lang", language], check=True, capture_output=True)
    rows = [row for row in csv.DictReader(output.stdout.decode().splitlines(keepends=True)) if row["value"]]
    for row in rows:
        for name in (*tidy.IDS, *tidy.NUMBERS):
            row[name] = None if row[name] == "" else float(row[name])
    return rows


def rows_of(frame: Any) -> list[Row]:
    """A data frame in the terms of `exported`: CSV knows no difference between an empty text and none."""
    columns = {}
    for name in frame.columns:
        missing = frame[name].isna().tolist()
        nothing = None if name in (*tidy.IDS, *tidy.NUMBERS) else ""
        columns[name] = [nothing if gone else one for gone, one in zip(missing, frame[name].tolist())]
    return [dict(zip(columns, one)) for one in zip(*columns.values())]


def sorted_rows(frame: Any) -> list[str]:
    """The rows in an order of their own, as partitions have another; IDs of nullable columns come back as floats."""
    rows = rows_of(frame[list(tidy.COLUMNS)])
    return sorted(repr([float(one) if isinstance(one, (int, float)) else one for one in row.values()]) for row in rows)


@pytest.mark.parametrize("language", ["en", "ru"])
@pytest.mark.parametrize("tree", ["sample", "generated"])
def test_data_frame_is_the_export(trees: dict[str, Path], command: str, tree: str, language: str) -> None:
    wanted = exported(command, trees[tree], language)
    with qmdatabase.open(trees[tree], language) as database:
        frame = database.to_dataframe()
        plain = database.to_dataframe(annotations=False)
    assert list(frame.columns) == list(wanted[0])
    assert rows_of(frame) == wanted
    assert [name for name in frame.columns if name not in tidy.ANNOTATIONS] == list(plain.columns)
    assert rows_of(plain) == rows_of(frame[plain.columns])


@pytest.mark.parametrize("tree", ["sample", "generated"])
def test_values_are_the_export(trees: dict[str, Path], command: str, tree: str) -> None:
    wanted = iter(exported(command, trees[tree], "en"))
    with qmdatabase.open(trees[tree]) as database:
        parameters = database.parameters
        values = [one.value() for one in parameters]
    for parameter, value in zip(parameters, values):
        assert (value.kind == "constant") == (value.arguments == ())
        for array in (value.values, *value.arguments):
            assert not array.flags.writeable
        components = value.values.reshape(len(value), -1)
        for index, numbers in enumerate(components):
            for component, number in zip(qmdatabase.value.COMPONENTS if value.is_vector else ("",), numbers):
                row = next(wanted)
                arguments = [one[index] for one in value.arguments]
                given = [row["first_argument"], row["second_argument"]]
                assert given == [*arguments, None, None][:2]
                assert (row["component"], row["value"]) == (component, number)
                assert (row["parameter_id"], row["type"]) == (parameter.id, value.type)
                assert (row["units"], row["source"], row["symbol"]) == (value.units, value.source, parameter.symbol)
        if value.kind == "table2d":
            joined = np.concatenate([one.values for one in value.subtables])
            assert joined.tolist() == value.values.tolist()
    assert next(wanted, None) is None


def test_arrow_and_parquet_hold_the_same(trees: dict[str, Path], tmp_path: Path) -> None:
    pytest.importorskip("pyarrow")
    import pyarrow.parquet as pq

    file = tmp_path / "all.parquet"
    with qmdatabase.open(trees["generated"]) as database:
        frame = database.to_dataframe()
        table = database.to_arrow()
        assert database.to_parquet(file, rows_per_group=1000) == len(frame)
    assert rows_of(table.to_pandas()) == rows_of(frame)
    assert rows_of(pandas.read_parquet(file)) == rows_of(frame)
    stored = pq.ParquetFile(file)
    assert max(stored.metadata.row_group(i).num_rows for i in range(stored.num_row_groups)) <= 1000
    assert stored.num_row_groups >= math.ceil(len(frame) / 1000)
    assert os.listdir(tmp_path) == ["all.parquet"]
    # What is not there is null, and no number.
    assert table["second_argument"].null_count == int(frame["second_argument"].isna().sum()) > 0
    assert table["phase_id"].null_count == int(frame["phase_id"].isna().sum()) > 0


def test_unreadable_values_are_left_out_with_a_warning(copy: Path, tmp_path: Path) -> None:
    spoilt = copy / "Substance2" / "Phase1" / "Property1.dat"
    spoilt.write_text("heavy\n")
    with qmdatabase.open(copy) as database, pytest.warns(qmdatabase.DatabaseWarning, match="Copper.* is left out"):
        frame = database.to_dataframe(annotations=False)
    with qmdatabase.open(copy) as database:
        value = database["Copper"].parameters
        assert len(value) > 0
        with pytest.raises(qmdatabase.NumberError, match="not a number") as caught:
            database["Copper"].solid.parameters[7].value()
        assert caught.value.code == -11
        assert caught.value.detail
    assert not ((frame["substance"] == "Copper") & (frame["parameter"] == "Density")).any()


def test_empty_database(tmp_path: Path) -> None:
    with qmdatabase.open(tmp_path) as database:
        assert len(database.substances) == 0
        frame = database.to_dataframe(annotations=False)
        assert (len(frame), list(frame.columns)) == (0, tidy.columns(annotations=False))
        pytest.importorskip("pyarrow")
        assert database.to_parquet(tmp_path / "none.parquet", annotations=False) == 0
        assert database.to_arrow(annotations=False).num_rows == 0


def test_partitions_are_read_by_others(trees: dict[str, Path], tmp_path: Path) -> None:
    pa = pytest.importorskip("pyarrow")
    duckdb = pytest.importorskip("duckdb")
    import pyarrow.dataset as ds

    directory = tmp_path / "parts"
    with qmdatabase.open(trees["generated"]) as database:
        frame = database.to_dataframe()
        assert database.to_parquet(directory, partitioned=True, rows_per_group=5000) == len(frame)
        with pytest.raises(FileExistsError):
            database.to_parquet(directory, partitioned=True)
    assert os.listdir(tmp_path) == ["parts"]
    assert len(os.listdir(directory)) == frame["parameter"].nunique()

    table = ds.dataset(directory, partitioning="hive").to_table(columns=[*tidy.COLUMNS])
    stored = table.to_pandas(types_mapper={pa.int64(): pandas.Int64Dtype()}.get)
    for one in (stored, pandas.read_parquet(directory)):
        assert sorted_rows(one) == sorted_rows(frame)

    parts = f"read_parquet('{directory}/*/*', hive_partitioning = true)"
    described = duckdb.connect().execute(f"DESCRIBE SELECT * FROM {parts}")
    types = {name: kind for name, kind, *_ in described.fetchall()}
    assert {types[name] for name in tidy.IDS} == {"BIGINT"}
    assert {types[name] for name in tidy.NUMBERS} == {"DOUBLE"}
    assert {types[name] for name in tidy.TEXTS} == {"VARCHAR"}
    wanted = frame.groupby("parameter", observed=True)["value"].agg(["count", "max"])
    found = duckdb.connect().execute(f"SELECT parameter, count(*), max(value) FROM {parts} GROUP BY 1")
    assert {name: (count, most) for name, count, most in found.fetchall()} == {
        str(name): (count, most) for name, count, most in wanted.itertuples()
    }
