"""What is added reads back, and what would be stored wrongly is refused."""

from __future__ import annotations

import tempfile
import warnings
from pathlib import Path
from typing import Any

import hypothesis.strategies as st
import numpy as np
import pytest
from hypothesis import given, settings

import qmdatabase

SHORT = st.floats(-1e9, 1e9).map(lambda one: float(f"{one:.6g}"))
NODES = st.lists(SHORT, min_size=1, max_size=5, unique=True).map(sorted)
DESCRIPTION = "ID=1\nName=Strain\nUnits=1\nBinary=0\nScalar=1\nVector=1\nDataTypes=CtpTX\nAvForPhases=SLV\n"


@st.composite
def values(draw: st.DrawFn) -> tuple[Any, dict[str, Any]]:
    """Values with their arguments, as `add_parameter` takes them."""
    letters = draw(st.sampled_from([(), ("T",), ("p",), ("P", "T"), ("P", "X")]))
    nodes = [draw(NODES) for _ in letters]
    shape = (*(len(one) for one in nodes), *((3,) if draw(st.booleans()) else ()))
    numbers = draw(st.lists(SHORT, min_size=int(np.prod(shape)), max_size=int(np.prod(shape))))
    arguments = {letter: np.array(one) for letter, one in zip(letters, nodes)}
    if len(letters) == 2:
        arguments["P"] = arguments["P"][:, np.newaxis]
    return np.array(numbers).reshape(shape), arguments


@settings(max_examples=40)
@given(values(), st.booleans())
def test_values_read_back(made: tuple[Any, dict[str, Any]], of_phase: bool) -> None:
    numbers, arguments = made
    with tempfile.TemporaryDirectory() as directory:
        Path(directory, "strain.prd").write_text(DESCRIPTION)
        with qmdatabase.open(directory) as database, warnings.catch_warnings():
            warnings.simplefilter("error")
            substance = database.add_substance("Steel")
            phase = substance.add_phase("Ferrite", "solid")
            owner: Any = phase if of_phase else substance
            added = owner.add_parameter(1, numbers, **arguments)
            copied = database.add_substance("Copy")
            copied.add_phase("Ferrite", "solid").add_parameter("Strain", added.value())
        with qmdatabase.open(directory) as database:
            first = database["Steel"].solid if of_phase else database["Steel"]
            for value in (first["Strain"], database["Copy"].solid["Strain"]):
                assert value.values.reshape(-1).tolist() == numbers.reshape(-1).tolist()
                assert value.argument_letters == tuple(arguments)
                assert value.is_vector == (numbers.shape[len(arguments) :] == (3,))
                for found, wanted in zip(value.arguments, np.broadcast_arrays(*arguments.values())):
                    assert found.tolist() == wanted.ravel().tolist()


def test_a_database_grows(copy: Path) -> None:
    with qmdatabase.open(copy) as database:
        brine = database.add_substance("Brine", "salty", {"Water": 0.9, database["Air"]: 0.1})
        assert "Brine" in database
        liquid = brine.add_phase("Liquid", "liquid")
        ice = brine.add_phase("Ice", "solid")
        change = brine.add_phase_change("Freezing", liquid, "Ice")
        assert "Density" in liquid.available_parameters
        liquid.add_parameter("Density", [1100.0, 1090.0], T=[280.0, 300.0])
        with pytest.raises(qmdatabase.DuplicateParameterError):
            liquid.add_parameter("Density", 1.0)
        assert [one.name for one in liquid] == ["Density"]
    with qmdatabase.open(copy) as database:
        brine = database["Brine"]
        assert [(one.substance_id, one.fraction) for one in brine.composition] == [
            (database["Water"].id, 0.9),
            (database["Air"].id, 0.1),
        ]
        assert (brine.comment, brine.is_mixture, brine.changes[0].name) == ("salty", True, change.name)
        assert (brine.changes[0].before.id, brine.changes[0].after.id) == (liquid.id, ice.id)
        assert brine.liquid["density"](290) == 1095.0


@pytest.mark.parametrize(
    ("parameter", "numbers", "arguments", "error", "message"),
    [
        ("Density", [1.0, 2.0], {}, ValueError, r"shape \(2,\) do not fit"),
        ("Density", [1.0], {"T": [1.0, 2.0]}, ValueError, "do not fit"),
        ("Density", [1.0, 2.0], {"T": [2.0, 1.0]}, ValueError, "must increase.*: 2, 1"),
        ("Density", [1.0, 2.0], {"T": [1.0, 1.0000001]}, ValueError, "six digits stored"),
        ("Density", [1.0, 2.0, 3.0], {"P": [1.0, 2.0, 1.0], "T": [1.0, 1.0, 2.0]}, ValueError, "arguments P must"),
        ("Density", float("nan"), {}, ValueError, "finite"),
        ("Density", 1.0, {"T": 1.0}, ValueError, "leave the arguments out"),
        ("Density", [], {"T": []}, ValueError, "at least one row"),
        ("Density", [1.0], {"X": [1.0]}, TypeError, "no table of X"),
        ("Density", [1.0, 2.0, 3.0], {}, qmdatabase.VectorNotAllowedError, "-17"),
        ("Density", [1.0], {"P": [1.0], "X": [1.0]}, qmdatabase.TypeNotAllowedError, "-16"),
        ("Surface tension", 1.0, {}, qmdatabase.StateNotAllowedError, "-19"),
        (4711, 1.0, {}, qmdatabase.UnknownParameterError, "-15"),
        ("Softness", 1.0, {}, qmdatabase.UnknownNameError, "Softness"),
    ],
)
def test_refused_parameters(copy: Path, parameter: Any, numbers: Any, arguments: Any, error: Any, message: str) -> None:
    with qmdatabase.open(copy) as database:
        phase = database["Graphite"].phases[1]
        with pytest.raises(error, match=message):
            phase.add_parameter(parameter, numbers, **arguments)
        assert [one.id for one in phase] == [9]


@pytest.mark.parametrize(
    ("name", "composition", "error", "message"),
    [
        ("", None, ValueError, "empty"),
        (" Steel", None, ValueError, "blank"),
        ("a\nName=b", None, ValueError, "control character"),
        ("x" * 50, None, ValueError, "50 characters; 49 fit"),
        ("Copper", None, qmdatabase.DuplicateNameError, "-14"),
        # Stored as "1" or "0" at the end of the line it would make the list of substances unreadable.
        ("Steel", {"Iron": 1.0}, ValueError, "molar fraction"),
        ("Steel", {"Iron": 0.5, "Zinc": 0.9999999}, ValueError, "molar fraction"),
        ("Steel", {"Iron": 0.5, "Zinc": 0.0}, ValueError, "molar fraction"),
        ("Steel", {"Iron": 0.5, "Zinc": 0.6}, qmdatabase.FractionsError, "-20"),
        ("Steel", {"Gold": 0.5}, KeyError, "Gold"),
    ],
)
def test_refused_substances(copy: Path, name: str, composition: Any, error: Any, message: str) -> None:
    with qmdatabase.open(copy) as database:
        with pytest.raises(error, match=message):
            database.add_substance(name, composition=composition)
        assert len(database.substances) == 12


def test_rounded_numbers_are_told(copy: Path) -> None:
    with qmdatabase.open(copy) as database:
        phase = database["Graphite"].phases[1]
        with pytest.warns(qmdatabase.DatabaseWarning, match="2 numbers rounded"):
            added = phase.add_parameter("Density", [1.2345678, 2.5], T=[300.0, 300.00123 + 1])
        assert added.value().values.tolist() == [1.23457, 2.5]
        with pytest.raises(ValueError, match=r"solid.*liquid.*gas"):
            database["Graphite"].add_phase("Plasma", "plasma")
