"""Interpolation against a plain reading of its rule."""

from __future__ import annotations

import bisect
import itertools
from collections.abc import Sequence
from typing import Any

import hypothesis.strategies as st
import numpy as np
import pytest
from hypothesis import given

import qmdatabase
from qmdatabase._records import RawValue, subtable_heads
from qmdatabase.value import LETTERS, Value

NUMBERS = st.floats(-1e6, 1e6).map(lambda one: round(one, 3))
NODES = st.lists(NUMBERS, min_size=1, max_size=6, unique=True).map(sorted)
WIDTHS = st.sampled_from([1, 3])


class FakeParameter:
    """All that a value asks of its parameter here."""

    title, name, units = "Something", "something", "1"


def make(letter: str, width: int, tables: Sequence[tuple[float, Sequence[Sequence[float]]]]) -> Value:
    rows = np.array([row for _, table in tables for row in table], dtype=float)
    heads = subtable_heads((first, len(table)) for first, table in tables) if letter in "TX" else b""
    raw = RawValue(LETTERS.index(letter) + 1, width == 3, rows.tobytes(), heads)
    parameter: Any = FakeParameter()
    return Value(parameter, raw)


def between(nodes: Sequence[float], at: float) -> list[tuple[int, float]]:
    """The nodes that count at a point, each with its part."""
    if at in nodes:
        return [(list(nodes).index(at), 1.0)]
    upper = min(max(bisect.bisect(nodes, at), 1), len(nodes) - 1)
    part = (at - nodes[upper - 1]) / (nodes[upper] - nodes[upper - 1])
    return [(upper - 1, 1 - part), (upper, part)]


def reference(table: Sequence[Sequence[float]], at: float) -> Any:
    return sum(part * np.array(table[index][1:]) for index, part in between([row[0] for row in table], at))


@st.composite
def tables(draw: st.DrawFn, count: int) -> tuple[int, list[tuple[float, list[list[float]]]]]:
    width = draw(WIDTHS)
    firsts = draw(NODES.filter(bool)) if count > 1 else [0.0]
    made = []
    for first in firsts:
        nodes = draw(NODES)
        made.append((first, [[node, *(draw(NUMBERS) for _ in range(width))] for node in nodes]))
    return width, made


def agree(found: Any, wanted: Any) -> bool:
    return bool(np.allclose(found, np.squeeze(wanted), rtol=1e-9, atol=1e-6))


@given(tables(1), st.lists(st.floats(0, 1), min_size=1, max_size=5))
def test_one_argument(made: tuple[int, Any], parts: list[float]) -> None:
    width, [(_, table)] = made
    value = make("t", width, [(0, table)])
    nodes = [row[0] for row in table]
    points = [min(max(nodes[0] + part * (nodes[-1] - nodes[0]), nodes[0]), nodes[-1]) for part in parts]
    found = value(points)
    assert found.shape == ((len(points), 3) if width == 3 else (len(points),))
    for point, one in zip(points, found):
        assert agree(one, reference(table, point))
        assert np.array_equal(value(T=point), one)
    # Exactly the nodes' values at the nodes, whatever lies beside them.
    assert value(nodes).tolist() == value.values.tolist()
    for outside in (nodes[0] - 1, nodes[-1] + 1, float("nan")):
        with pytest.raises(qmdatabase.OutOfRangeError, match="T = "):
            value([nodes[0], outside])
    if len(nodes) > 1:
        beyond = value(nodes[-1] + 1, extrapolate=True)
        assert agree(beyond, reference(table, nodes[-1] + 1))


@given(tables(2), st.floats(0, 1), st.floats(0, 1))
def test_two_arguments(made: tuple[int, Any], across: float, along: float) -> None:
    width, subtables = made
    value = make("T", width, subtables)
    firsts = [first for first, _ in subtables]
    first = min(max(firsts[0] + across * (firsts[-1] - firsts[0]), firsts[0]), firsts[-1])
    neighbours = between(firsts, first)
    ends = [(subtables[i][1][0][0], subtables[i][1][-1][0]) for i, _ in neighbours]
    low, high = max(low for low, _ in ends), min(high for _, high in ends)
    if low <= high:
        second = min(max(low + along * (high - low), low), high)
        wanted = sum(part * reference(subtables[i][1], second) for i, part in neighbours)
        assert agree(value(P=first, T=second), wanted)
        assert agree(value([first, first], second)[1], wanted)
    with pytest.raises(qmdatabase.OutOfRangeError, match=r"T = .* at P = "):
        value(P=first, T=max(high for _, high in ends) + 1)
    with pytest.raises(qmdatabase.OutOfRangeError, match=r"P = .* from"):
        value(P=firsts[0] - 1, T=low)
    for first, table in subtables:
        found = value(P=first, T=[row[0] for row in table])
        assert found.tolist() == np.squeeze([row[1:] for row in table], axis=1 if width == 1 else ()).tolist()


def test_bilinear_functions_are_reproduced_on_a_grid() -> None:
    def function(p: Any, t: Any) -> Any:
        return 2.0 + 3.0 * p - 5.0 * t + 0.5 * p * t

    ps, ts = [1.0, 2.0, 5.0], [10.0, 20.0, 50.0]
    value = make("X", 1, [(p, [[t, function(p, t)] for t in ts]) for p in ps])
    p, x = np.meshgrid(np.linspace(1, 5, 9), np.linspace(10, 50, 7))
    assert np.allclose(value(P=p, X=x), function(p, x), rtol=1e-13)
    assert value(P=7, X=90, extrapolate=True) == pytest.approx(function(7, 90))


LINE = [(0.0, [[1.0, 10.0], [2.0, float("inf")], [3.0, 30.0]])]


@pytest.mark.parametrize(
    ("letter", "table", "call", "error", "message"),
    [
        ("t", LINE, {"P": 1}, qmdatabase.ArgumentError, "P is no argument; call it as value\\(T=...\\)"),
        ("t", LINE, {}, qmdatabase.ArgumentError, "call it as value\\(T=...\\)"),
        ("C", [(0.0, [[4.0]])], {"T": 1}, qmdatabase.ArgumentError, "no argument"),
        ("t", [(0.0, [[1.0, 4.0]])], {"T": 2, "extrapolate": True}, qmdatabase.OutOfRangeError, "one point 1"),
        ("t", [(0.0, [[1.0, 4.0], [1.0, 5.0]])], {"T": 1}, qmdatabase.TableError, "1 is repeated"),
        ("T", [*LINE, *LINE], {"P": 0, "T": 1}, qmdatabase.TableError, "first arguments .*0 is repeated"),
        ("T", [(2.0, LINE[0][1]), *LINE], {"P": 0, "T": 1}, qmdatabase.TableError, "0 follows 2"),
        ("T", LINE, {"T": 1}, qmdatabase.ArgumentError, "value\\(P=..., T=...\\)"),
    ],
)
def test_refusals(letter: str, table: Any, call: Any, error: Any, message: str) -> None:
    value = make(letter, 1, table)
    with pytest.raises(error, match=message):
        value(**call)


def test_infinite_neighbours_do_not_spoil_nodes() -> None:
    value = make("t", 1, LINE)
    assert [value(1.0), value(2.0), value(1.5), value(3.0)] == [10.0, float("inf"), float("inf"), 30.0]


def test_constants_and_arguments_by_name() -> None:
    constant, vector = make("C", 1, [(0.0, [[4.0]])]), make("C", 3, [(0.0, [[1.0, 2.0, 3.0]])])
    assert (float(constant), constant(), vector().tolist()) == (4.0, 4.0, [1.0, 2.0, 3.0])
    for table in (vector, make("t", 1, LINE)):
        with pytest.raises(TypeError, match="no single number"):
            float(table)
    value = make("p", 1, LINE)
    assert value(p=1) == value(P=1) == value(1) == 10.0
    with pytest.raises(qmdatabase.ArgumentError, match="given twice"):
        value(1, p=1)
    for one, two in itertools.product((constant, vector, value), repeat=2):
        assert (one is two) == (one == two)
