"""Opening, looking up, failing, closing, threads and pickles."""

from __future__ import annotations

import concurrent.futures
import os
import pickle
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path
from typing import Any

import pytest
from conftest import ROOT, SAMPLE

import qmdatabase
from qmdatabase import errors

DENSITY = "Density"


def test_each_code_has_a_class() -> None:
    header = (ROOT / "include/qmdatabase/status.h").read_text()
    codes = {int(code) for code in re.findall(r"^    QMDB_\w+ = (-\d+)", header, re.MULTILINE)}
    assert set(errors.STATUS_ERRORS) == codes
    assert len({one.meaning for one in errors.STATUS_ERRORS.values()}) == len(codes)
    error = errors.status_error("cannot", -12, "why")
    again = pickle.loads(pickle.dumps(error))
    assert (type(again), str(again), again.detail) == (errors.FormatError, str(error), "why")
    assert str(errors.status_error("cannot", -99, None)) == "cannot: a code that this module does not know (-99)"


def test_version_is_that_of_the_library() -> None:
    project = (ROOT / "CMakeLists.txt").read_text()
    assert f"project(qmDatabase VERSION {qmdatabase.__version__} " in project


def test_opening_refuses_what_is_no_database(tmp_path: Path) -> None:
    file = tmp_path / "file"
    file.write_text("")
    with pytest.raises(FileNotFoundError, match=r"there is no database .*nowhere"):
        qmdatabase.open(tmp_path / "nowhere")
    with pytest.raises(qmdatabase.DatabaseNotFoundError, match="Not a directory"):
        qmdatabase.open(file)
    with pytest.raises(ValueError, match="NUL"):
        qmdatabase.open(str(tmp_path) + "\0")
    with pytest.raises(qmdatabase.LibraryNotFoundError, match="QMDB_LIBRARY"):
        qmdatabase.open(tmp_path, library="/nowhere/libqmDatabase.so.1")


def test_what_opening_leaves_out_is_told(copy: Path) -> None:
    for phase in (copy / "Substance2").glob("Phase*"):
        shutil.rmtree(phase)
    with pytest.warns(qmdatabase.DatabaseWarning, match=r"not whole.*Substance2"), qmdatabase.open(copy) as database:
        assert "Copper" not in database.substances.names
    (copy / "Substance4" / "Substance4.mtd").write_text("ID=4\n")
    with pytest.raises(qmdatabase.RequiredKeyError, match="-10") as caught:
        qmdatabase.open(copy)
    assert caught.value.detail


def test_the_database_stays_as_it_was(copy: Path) -> None:
    def state() -> list[tuple[str, int]]:
        return sorted((str(one), one.stat().st_mtime_ns) for one in copy.rglob("*"))

    before = state()
    with qmdatabase.open(copy, log_info=True) as database:
        assert len(database.parameters) > 50
        assert database.log.count("\n") > 50
    assert state() == before


@pytest.mark.parametrize(
    ("key", "found"),
    [
        ("Copper", 2), ("copper", 2), (2, 2), ("2", 2), ("Cu", 2), ("h2o", 1), ("7732-18-5", 1),
        ("Coper", r"no substance is called 'Coper'; near matches: Copper \(2\)"),
        (99, r"no substance is called 99; there are: Water \(1\)"),
    ],
)  # fmt: skip
def test_substances_are_found(sample: qmdatabase.Database, key: Any, found: Any) -> None:
    if isinstance(found, int):
        assert sample[key].id == found
        assert key in sample
        return
    with pytest.raises(KeyError, match=found):
        sample[key]
    assert sample.substances.get(key) is None
    assert key not in sample


def test_phases_and_parameters_are_found(sample: qmdatabase.Database) -> None:
    copper = sample["Copper"]
    value = copper.solid["Thermal conductivity"]
    assert copper.solid["k"].values.tolist() == value.values.tolist()
    assert value(350.0) == value(T=[350.0])[0] == 397.0
    assert value.argument_units == ("K",)
    assert value.source
    assert sample["Water"].changes["Melting"].after == sample["Water"].liquid
    with pytest.raises(KeyError, match="several phases that are solid: Natural graphite"):
        _ = sample["Graphite"].solid
    with pytest.raises(KeyError, match="no phase of Graphite is gas"):
        _ = sample["Graphite"].gas
    with pytest.raises(KeyError, match="Copper, phase Solid: no parameter is called 'Hardness'"):
        copper.solid["Hardness"]
    with pytest.raises(KeyError, match=r"Water: no parameter .* have it: Ice Ih \(1\), Liquid \(2\)"):
        sample["Water"]["Density"]
    assert repr(copper.solid) == "<Copper, phase Solid (1)>"
    assert [one.id for one in sample.descriptions] == sorted(one.id for one in sample.descriptions)


def test_ambiguous_names_are_refused(copy: Path) -> None:
    for number in (2, 3):
        descriptor = copy / f"Substance{number}" / f"Substance{number}.mtd"
        lines = descriptor.read_text("utf-8-sig").splitlines()
        kept = [one for one in lines if not one.startswith(("Name=", "NameID="))]
        descriptor.write_text("\n".join([*kept, "Name=Metal"]) + "\n")
    with qmdatabase.open(copy) as database, pytest.raises(KeyError, match=r"several: Metal \(2\), Metal \(3\)"):
        database["metal"]


def test_without_the_command_the_library_does(sample: qmdatabase.Database, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setenv("QMDB_COMMAND", "/nowhere/qmdb")
    water = sample["water"].liquid
    density = water[DENSITY]
    assert density(P=101325, T=300) == pytest.approx(996.56, rel=1e-3)
    assert sample.substances.get("nothing") is None
    with pytest.raises(qmdatabase.UnknownNameError, match=r"no parameter is called 'rho'.*could not be looked at"):
        water["rho"]
    for ask in (lambda: density.source, lambda: sample["Water"].formula, lambda: sample.to_dataframe()):
        with pytest.raises(qmdatabase.CommandNotFoundError, match=r"/nowhere/qmdb is not found.*QMDB_COMMAND"):
            ask()


def test_a_command_that_fails_is_told(tmp_path: Path) -> None:
    old = tmp_path / "old"
    old.write_text("#!/bin/sh\necho '[{\"id\": 1}]'\n")
    failing = tmp_path / "failing"
    failing.write_text("#!/bin/sh\necho 'qmdb: no' >&2\nexit 2\n")
    for file, message in ((old, "too old"), (failing, "exit status 2: qmdb: no")):
        file.chmod(0o755)
        with (
            qmdatabase.open(SAMPLE, command=str(file)) as database,
            pytest.raises(qmdatabase.CommandError, match=message),
        ):
            _ = database["Water"].formula


def test_closing_ends_a_command_that_nobody_waits_for(tmp_path: Path) -> None:
    endless = tmp_path / "endless"
    endless.write_text(f"#!/bin/sh\necho $$ > {tmp_path}/pid\nexec sleep 1000\n")
    endless.chmod(0o755)
    database = qmdatabase.open(SAMPLE, command=str(endless))
    database._annotations.start()
    while not (tmp_path / "pid").exists() or not (tmp_path / "pid").read_text():
        time.sleep(0.01)
    database.close()
    with pytest.raises(ProcessLookupError):
        os.kill(int((tmp_path / "pid").read_text()), 0)


def test_what_outlives_a_closed_database() -> None:
    database = qmdatabase.open(SAMPLE)
    copper = database["Copper"]
    value = copper.solid["Thermal conductivity"]
    numbers = value.values
    database.close()
    database.close()
    assert database.closed
    assert (value(350.0), numbers[0], copper.name) == (397.0, 482.0, "Copper")
    assert copper.solid.parameters["Density"].name == "Density"
    for ask in (
        lambda: copper.solid["Density"],
        lambda: database.log,
        lambda: copper.liquid.parameters,
        database.__enter__,
    ):
        with pytest.raises(qmdatabase.ClosedDatabaseError, match="is closed"):
            ask()


def test_no_log_directories_are_left(tmp_path: Path) -> None:
    script = (
        "import os, sys, qmdatabase\n"
        "kept = qmdatabase.open(sys.argv[1])\n"
        "dropped = qmdatabase.open(sys.argv[1]); del dropped\n"
        "child = os.fork()\n"
        "if not child: sys.exit(len(kept.substances) != 12)\n"
        "assert os.waitpid(child, 0)[1] == 0\n"
        "assert len(os.listdir(os.environ['TMPDIR'])) == 1\n"
    )
    subprocess.run([sys.executable, "-c", script, SAMPLE], check=True, env={**os.environ, "TMPDIR": str(tmp_path)})
    assert os.listdir(tmp_path) == []


def test_paths_that_the_locale_cannot_express(tmp_path: Path) -> None:
    directory = Path(shutil.copytree(SAMPLE, tmp_path / "Werkstoffe äöü"))
    script = "import sys, qmdatabase; print(len(qmdatabase.open(sys.argv[1]).substances))"
    for locale, wanted in (("C.UTF-8", "12"), ("C", "the process's locale cannot express the path")):
        done = subprocess.run(
            [sys.executable, "-c", script, directory],
            env={**os.environ, "LC_ALL": locale}, capture_output=True, text=True,
        )  # fmt: skip
        assert wanted in done.stdout + done.stderr


def test_pickles_open_anew(sample: qmdatabase.Database) -> None:
    substance, database, value = pickle.loads(
        pickle.dumps((sample["Copper"], sample, sample["Copper"].solid["Density"]))
    )
    assert substance.database is database
    assert not database.closed
    assert float(value) == 8960.0
    assert substance.solid["Density"].values == value.values
    database.close()
    assert database.closed
    assert not sample.closed


def test_threads_share_a_database(sample: qmdatabase.Database) -> None:
    parameters = sample.parameters
    wanted = [one.value().values.tolist() for one in parameters]
    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for _ in range(20):
            found = list(pool.map(lambda one: one.value().values.tolist(), parameters))
            assert found == wanted


def test_a_missing_package_is_named(sample: qmdatabase.Database, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.setitem(sys.modules, "pandas", None)
    with pytest.raises(ModuleNotFoundError, match=re.escape("package pandas: pip install 'qmdatabase[pandas]'")):
        sample.to_dataframe()


def test_plots_and_frames(sample: qmdatabase.Database) -> None:
    pytest.importorskip("pandas")
    frame = sample["Graphite"]["Thermal strain"].to_pandas()
    assert (list(frame.columns), len(frame), frame.attrs["units"]) == (["P", "X", "x", "y", "z"], 15, "m/m")
    assert sample["Copper"].solid["Density"].to_pandas().to_dict("list") == {"value": [8960.0]}
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    for value, curves in (("Thermal conductivity", 1), ("Density", 1)):
        axes = sample["Copper"].solid[value].plot()
        assert len(axes.get_lines()) == curves
    axes = sample["Graphite"]["Thermal strain"].plot()
    assert [one.get_label() for one in axes.get_lines()][3:5] == ["P = 400 K, x", "P = 400 K, y"]
    assert (axes.get_xlabel(), axes.get_ylabel()) == ("X, K", "Thermal strain, m/m")
