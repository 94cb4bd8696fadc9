"""Adding to a database: what is given is checked here, as far as the library would store it wrongly."""

from __future__ import annotations

import ctypes
import warnings
from collections.abc import Mapping, Sequence
from ctypes import byref
from typing import TYPE_CHECKING, Any

import numpy as np
import numpy.typing as npt

from . import _records
from ._records import RawValue, set_text
from .errors import ArgumentError, DatabaseWarning
from .value import LETTERS, Value

if TYPE_CHECKING:
    from ._catalog import Key
    from .database import Database
    from .entities import Component, Description, Parameter, Phase, Substance

Array = npt.NDArray[np.float64]

# The letters of the arguments given, in the order of the table, and the type that they make.
_TYPES = {(): "C", ("T",): "t", ("p",): "p", ("P",): "p", ("P", "T"): "T", ("P", "X"): "X"}
_DIGITS = ".6g"
_STATES = {"solid": 1, "liquid": 2, "gas": 3}


def state_number(state: str | int) -> int:
    """The number of an aggregate state."""
    if not isinstance(state, str):
        return int(state)
    if state not in _STATES:
        raise ValueError(f'the state is "solid", "liquid" or "gas", not {state!r}')
    return _STATES[state]


def _set_name(field: Any, name: str, what: str) -> None:
    if not name:
        raise ValueError(f"{what} is empty")
    set_text(field, name, what)


def add_substance(database: Database, name: str, comment: str, components: Sequence[Component]) -> int:
    record = _records.Matter(mixture=1 if components else 0, count=len(components))
    _set_name(record.name, name, "the name")
    set_text(record.comment, comment, "the comment")
    for one in components:
        _require_storable_fraction(one.fraction)
    array = (_records.Component * len(components))(
        *(_records.Component(one.substance_id, one.fraction) for one in components)
    )
    record.components = array
    number = database._calls.add(f'cannot add the substance "{name}"', "qmdbAddMatter", byref(record))
    database._changed("substances")
    return number


def _require_storable_fraction(fraction: float) -> None:
    """What is stored as "0" or "1" could make the whole list of substances unreadable."""
    if not 0 < fraction < 1 or len(format(fraction, _DIGITS)) == 1:
        raise ValueError(f"a molar fraction lies between 0 and 1, also with six digits, and is not {fraction!r}")


def add_phase(database: Database, substance: int, name: str, state: int) -> int:
    record = _records.Phase(state=state)
    _set_name(record.name, name, "the name")
    number = database._calls.add(f'cannot add the phase "{name}"', "qmdbAddPhase", substance, byref(record))
    database._changed(("phases", substance), "descriptions")
    return number


def add_change(database: Database, substance: int, name: str, before: int, after: int) -> int:
    record = _records.Change(phase1=before, phase2=after)
    _set_name(record.name, name, "the name")
    action = f'cannot add the phase change "{name}"'
    number = database._calls.add(action, "qmdbAddPhaseChange", substance, byref(record))
    database._changed(("changes", substance))
    return number


def add_parameter(
    owner: Substance | Phase, parameter: Key | Description, values: Any, arguments: Mapping[str, Any]
) -> Parameter:
    """Attaches a parameter to a substance or a phase."""
    number, name = _described(owner, parameter)
    raw = _raw_of(values, arguments)
    record = _records.Parameter(id=number, type=raw.type, vector=raw.vector)
    value = _records.ValueObject(raw)
    of_phase = owner._kind == "phase"
    owner.database._calls.add(
        f"cannot add {name} to {owner.title}",
        "qmdbAddPhaseParam" if of_phase else "qmdbAddMatterParam",
        *owner._ids,
        byref(record),
        ctypes.addressof(value.object),
    )
    owner.database._changed((owner._list, *owner._ids), "descriptions")
    return owner.parameters[number]


def _described(owner: Substance | Phase, parameter: Any) -> tuple[int, str]:
    """The ID and the name of a parameter; an ID is taken as it is, as the library knows more than it lists."""
    if isinstance(parameter, int):
        return parameter, f"parameter {parameter}"
    description = owner.database.descriptions[parameter] if isinstance(parameter, str) else parameter
    return description.id, f"{description.name} ({description.id})"


def _raw_of(values: Any, arguments: Mapping[str, Any]) -> RawValue:
    if isinstance(values, Value):
        if arguments:
            raise ArgumentError("a Value brings its own arguments; give no others")
        return _raw(values.type, values.argument_letters, values.arguments, values.values)
    letters = tuple(sorted(arguments, key="PpTX".find))
    if letters not in _TYPES:
        raise ArgumentError(
            f"there is no table of {', '.join(letters)}; give no argument for a constant, T or p for a table of one "
            "argument, P and T or P and X for a table of two"
        )
    columns = [np.asarray(arguments[letter], dtype=np.float64) for letter in letters]
    return _raw(_TYPES[letters], letters, columns, np.asarray(values, dtype=np.float64))


def _raw(type_: str, letters: Sequence[str], columns: Sequence[Array], values: Array) -> RawValue:
    columns = np.broadcast_arrays(*columns) if columns else []
    shape = columns[0].shape if columns else ()
    vector = values.shape == (*shape, 3)
    if not vector and values.shape != shape:
        raise ValueError(
            f"values of the shape {values.shape} do not fit arguments of the shape {shape}: give {shape} numbers, or "
            f"{(*shape, 3)} for vectors"
        )
    if columns and (not shape or values.size == 0):
        raise ValueError("a table needs arrays of at least one row; leave the arguments out for a constant")
    flat = [column.ravel() for column in columns]
    rows = np.column_stack([*flat[-1:], values.reshape(-1, 3 if vector else 1)])
    _require_finite([*flat, rows])
    subtables = _subtables(flat[0], letters[0]) if len(flat) == 2 else ()
    if flat:
        _require_increasing_rows(flat[-1], [count for _, count in subtables] or [len(rows)], letters[-1])
    _warn_of_rounding([*flat[:-1], rows])
    return RawValue(LETTERS.index(type_) + 1, vector, rows.astype("<f8").tobytes(), _records.subtable_heads(subtables))


def _require_finite(columns: Sequence[Array]) -> None:
    if not all(np.all(np.isfinite(column)) for column in columns):
        raise ValueError("only finite numbers can be stored")


def _stored(numbers: Array) -> Array:
    """The numbers with the six digits that are stored."""
    return np.array([float(format(one, _DIGITS)) for one in numbers.ravel().tolist()])


def _require_increasing(stored: Array, letter: str) -> None:
    falls = np.flatnonzero(np.diff(stored) <= 0)
    if falls.size:
        before, after = stored[falls[0]], stored[falls[0] + 1]
        raise ValueError(f"the arguments {letter} must increase, in the six digits stored: {before:g}, {after:g}")


def _subtables(first: Array, letter: str) -> tuple[tuple[float, int], ...]:
    begins = np.flatnonzero(np.concatenate([[True], first[1:] != first[:-1]]))
    counts = np.diff(np.append(begins, first.size))
    _require_increasing(_stored(first[begins]), letter)
    return tuple(zip(first[begins].tolist(), counts.tolist()))


def _require_increasing_rows(arguments: Array, counts: Sequence[int], letter: str) -> None:
    for part in np.split(_stored(arguments), np.cumsum(counts)[:-1]):
        _require_increasing(part, letter)


def _warn_of_rounding(columns: Sequence[Array]) -> None:
    rounded = sum(int(np.count_nonzero(_stored(column) != column.ravel())) for column in columns)
    if rounded:
        warnings.warn(
            f"{rounded} number{'' if rounded == 1 else 's'} rounded to the six digits that the library stores",
            DatabaseWarning,
            6,
        )
