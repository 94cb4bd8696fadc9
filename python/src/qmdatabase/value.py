"""What a parameter holds: a number, a vector, or a table."""

from __future__ import annotations

import functools
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
import numpy.typing as npt

from . import _records
from ._extras import extra
from .errors import ArgumentError, CommandError
from .interpolation import interpolate, interpolate_2d, require_increasing

if TYPE_CHECKING:
    import pandas

    from .entities import Parameter

Array = npt.NDArray[np.float64]

LETTERS = "CtpTX"
ARGUMENT_LETTERS: dict[str, tuple[str, ...]] = {
    "C": (),
    "t": ("T",),
    "p": ("p",),
    "T": ("P", "T"),
    "X": ("P", "X"),
}
_array = np.ndarray  # over the bytes of a value, which makes it read-only
_FLOAT64 = np.dtype("<f8")
KINDS = ("constant", "table", "table2d")
COMPONENTS = ("x", "y", "z")


class Subtable(NamedTuple):
    """The part of a two-dimensional table that has one first argument.

    Attributes:
        first: the first argument.
        arguments: shape (n,), the second arguments, increasing.
        values: shape (n,), or (n, 3) for vectors.
    """

    first: float
    arguments: Array
    values: Array


class Value:
    """The value of a parameter, read from its data file.

    The numbers are a copy that outlives the database. All arrays are read-only views of it, in the units of
    the parameter's description.
    """

    __slots__ = ("__dict__", "_fields", "parameter")

    def __init__(self, parameter: Parameter, fields: _records.RawFields) -> None:
        self.parameter = parameter
        self._fields = fields

    def __reduce__(self) -> tuple[Any, ...]:
        return Value, (self.parameter, self._fields)

    @functools.cached_property
    def _raw(self) -> _records.RawValue:
        return _records.RawValue(*self._fields)

    @property
    def type(self) -> str:
        """The letter of the type: "C" constant, "t" and "p" tables of one argument, "T" and "X" of two."""
        return LETTERS[self._raw.type - 1]

    @property
    def kind(self) -> str:
        """One of "constant", "table" (one argument) and "table2d" (two arguments)."""
        return KINDS[len(self.argument_letters)]

    @property
    def is_vector(self) -> bool:
        """Whether the value has three components, x, y and z."""
        return self._raw.vector

    @property
    def argument_letters(self) -> tuple[str, ...]:
        """The letters by which the arguments are given when the value is called: ("P", "T") and the like."""
        return ARGUMENT_LETTERS[self.type]

    @property
    def units(self) -> str:
        """The units of the value."""
        return self.parameter.units

    @property
    def argument_names(self) -> tuple[str, ...]:
        """What the arguments are, such as "temperature", each empty where nobody says; asks the command `qmdb`."""
        return self.parameter.argument_names

    @property
    def argument_units(self) -> tuple[str, ...]:
        """The units of the arguments, each empty where nobody says; asks the command `qmdb`."""
        return self.parameter.argument_units

    @property
    def source(self) -> str:
        """Where the value is from, empty where nobody says; asks the command `qmdb`."""
        return self.parameter.source

    @property
    def accuracy(self) -> str:
        """How accurate the value is, empty where nobody says; asks the command `qmdb`."""
        return self.parameter.accuracy

    @property
    def values(self) -> Array:
        """The numbers: shape () or (3,) of a constant, (n,) or (n, 3) of the n rows of a table.

        The rows of a two-dimensional table are those of its subtables, one after the other.
        """
        type_, vector, rows, _ = self._fields
        if type_ == _records.CONSTANT:
            return _array((3,) if vector else (), _FLOAT64, rows)
        if vector:
            return _array((len(rows) // 32, 3), _FLOAT64, rows, 8, (32, 8))
        return _array((len(rows) // 16,), _FLOAT64, rows, 8, (16,))

    @functools.cached_property
    def arguments(self) -> tuple[Array, ...]:
        """The arguments of the rows, as many arrays of shape (n,) as the value has arguments, the first first."""
        raw = self._raw
        if raw.type == _records.CONSTANT:
            return ()
        last = _array((len(self),), _FLOAT64, raw.rows, 0, (raw.row_size,))
        if not self._is_2d:
            return (last,)
        firsts, counts = zip(*raw.subtables)
        first = np.repeat(np.array(firsts), counts)
        first.flags.writeable = False
        return (first, last)

    @functools.cached_property
    def subtables(self) -> tuple[Subtable, ...]:
        """The subtables of a two-dimensional table, in the order of the file; none of other values."""
        subtables, begin = [], 0
        values = self.values
        for first, count in self._raw.subtables:
            part = slice(begin, begin + count)
            subtables.append(Subtable(first, self.arguments[1][part], values[part]))
            begin += count
        return tuple(subtables)

    @property
    def _is_2d(self) -> bool:
        return self._raw.type >= _records.TABLE2D_T

    def __len__(self) -> int:
        """The number of rows."""
        return len(self._raw.rows) // self._raw.row_size

    def __float__(self) -> float:
        """The number of a scalar constant.

        Raises:
            TypeError: the value is a vector or a table.
        """
        if self._raw.type != _records.CONSTANT or self._raw.vector:
            raise TypeError(f"{self!r} is no single number; use its arrays, or call it with arguments")
        return float(self.values)

    def __call__(self, *arguments: Any, extrapolate: bool = False, **named: Any) -> Any:
        """The value at some arguments, interpolated linearly; see `qmdatabase.interpolation` for the rule.

        `value(350.0)` and `value(T=350.0)` read a table of one argument, `value(1e6, 350.0)` and
        `value(P=1e6, T=350.0)` one of two, `value()` a constant. Arguments are numbers or arrays in the
        table's own units; several are broadcast against each other. They go by the letters of
        `argument_letters`, without regard to case, or by the order of these.

        Args:
            extrapolate: go on in a straight line beyond the outermost two nodes.

        Returns:
            A number for numbers, else an array of the arguments' shape; with (3,) behind it for vectors.

        Raises:
            ArgumentError: other arguments than the value has. It is a TypeError.
            OutOfRangeError: outside the table, with its range; or not a number. It is a ValueError.
            TableError: the first arguments of a two-dimensional table are repeated or decrease. It is a
                ValueError.
        """
        given = self._in_order(arguments, named)
        if not given:
            constant = self.values
            return constant[()] if constant.ndim == 0 else constant.copy()
        if self._is_2d:
            first, second = self.argument_letters
            result = interpolate_2d(*self._grid, given[0], given[1], (first, second), extrapolate)
        else:
            result = interpolate(self._nodes, self.values, given[0], self.argument_letters[0], extrapolate)
        return result[()] if result.ndim == 0 else result

    def _in_order(self, arguments: tuple[Any, ...], named: dict[str, Any]) -> list[Any]:
        letters = self.argument_letters
        folded = {letter.casefold(): place for place, letter in enumerate(letters)}
        given = dict(enumerate(arguments))
        for name, argument in named.items():
            place = folded.get(name.casefold(), -1)
            if place < 0 or place in given:
                raise ArgumentError(f"{name} is {'given twice' if place >= 0 else 'no argument'}; {self._usage()}")
            given[place] = argument
        if sorted(given) != list(range(len(letters))):
            raise ArgumentError(self._usage())
        return [given[place] for place in range(len(letters))]

    def _usage(self) -> str:
        if not self.argument_letters:
            return f"{self!r} has no arguments: it is the same everywhere"
        return f"call it as value({', '.join(f'{one}=...' for one in self.argument_letters)})"

    @functools.cached_property
    def _nodes(self) -> Array:
        (nodes,) = self.arguments
        require_increasing(nodes, *self.argument_letters)
        return nodes

    @functools.cached_property
    def _grid(self) -> tuple[Array, list[tuple[Array, Array]]]:
        firsts = np.array([one.first for one in self.subtables])
        require_increasing(firsts, self.argument_letters[0], "first arguments of the subtables")
        for one in self.subtables:
            require_increasing(one.arguments, self.argument_letters[1])
        return firsts, [(one.arguments, one.values) for one in self.subtables]

    def __repr__(self) -> str:
        form = "vector" if self.is_vector else "scalar"
        table = f"table of {', '.join(self.argument_letters)}" if self.argument_letters else "constant"
        points = f"{len(self)} point{'' if len(self) == 1 else 's'}"
        return f"<{self.parameter.title}: {table}, {form}, {points}, {self.units or 'no units'}>"

    def to_pandas(self) -> pandas.DataFrame:
        """A data frame of the rows: a column for each argument, by its letter, then "value", or "x", "y", "z"."""
        with extra("pandas"):
            import pandas as pd

        columns = dict(zip(self.argument_letters, self.arguments))
        components = np.atleast_1d(self.values).reshape(len(self), -1)
        names = COMPONENTS if self.is_vector else ("value",)
        columns.update(zip(names, components.T))
        frame = pd.DataFrame({name: np.array(column) for name, column in columns.items()})
        frame.attrs["units"] = self.units
        return frame

    def plot(self, ax: Any = None, **style: Any) -> Any:
        """Draws the value with matplotlib: a curve for each component and each first argument.

        Args:
            ax: the axes to draw into; those of a new figure when left out.
            style: handed on to `Axes.plot`.

        Returns:
            The axes.
        """
        with extra("plot"):
            import matplotlib.pyplot as plt

        ax = plt.subplots()[1] if ax is None else ax
        for name, x, y in self._curves():
            ax.plot(x, y, **{"label": name, "marker": ".", **style})
        if self.argument_letters:
            ax.set_xlabel(self._axis_label(len(self.argument_letters) - 1))
        ax.set_ylabel(_with_units(self.parameter.name, self.units))
        ax.set_title(self.parameter.title)
        if len(ax.get_lines()) > 1:
            ax.legend()
        return ax

    def _argument_unit(self, index: int) -> str:
        try:
            return self.argument_units[index]
        except (CommandError, IndexError):
            return ""

    def _axis_label(self, index: int) -> str:
        return _with_units(self.argument_letters[index], self._argument_unit(index))

    def _tables(self) -> list[tuple[str, Array, Array]]:
        """What becomes a curve or three: a name, the horizontal numbers, the values."""
        if not self.argument_letters:
            return [("", np.zeros(1), np.atleast_1d(self.values)[np.newaxis])]
        if not self._is_2d:
            return [("", self.arguments[0], self.values)]
        letter, unit = self.argument_letters[0], self._argument_unit(0)
        return [(f"{letter} = {one.first:g} {unit}".strip(), one.arguments, one.values) for one in self.subtables]

    def _curves(self) -> list[tuple[str, Array, Array]]:
        curves = []
        for name, x, y in self._tables():
            for component, part in zip(COMPONENTS if self.is_vector else ("",), y.reshape(len(x), -1).T):
                curves.append((", ".join(filter(None, (name, component))) or self.parameter.title, x, part))
        return curves


def _with_units(name: str, units: str) -> str:
    return f"{name}, {units}" if name and units else name or units
