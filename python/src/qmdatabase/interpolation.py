"""Linear interpolation in tables of one and of two arguments.

The rule, for each component of a vector by itself:

- One argument: between the two neighbouring nodes (x0, y0) and (x1, y1) the value is
  y0 + (y1 - y0) * (x - x0) / (x1 - x0). At a node it is the node's value, exactly.
- Two arguments: each first argument has a subtable, and subtables may have different nodes. The value is
  interpolated along the second argument in the two subtables whose first arguments are the neighbours, then
  linearly along the first. At a first argument that has a subtable that one alone counts.
- Outside the nodes nothing is told, unless the caller asks to extrapolate: then the straight line through the
  outermost two nodes goes on. Between two subtables the range is what both have.
"""

from __future__ import annotations

from collections.abc import Sequence
from typing import Any

import numpy as np
import numpy.typing as npt

from .errors import OutOfRangeError, TableError

Array = npt.NDArray[np.float64]


def require_increasing(nodes: Array, axis: str, what: str = "arguments") -> None:
    """Refuses nodes between which nothing can be interpolated.

    Raises:
        TableError: the nodes do not increase strictly, or are not all finite.
    """
    if not np.all(np.isfinite(nodes)):
        raise TableError(f"cannot interpolate: the {what} ({axis}) are not all finite numbers")
    falls = np.flatnonzero(np.diff(nodes) <= 0)
    if falls.size:
        before, after = nodes[falls[0]], nodes[falls[0] + 1]
        how = "is repeated" if before == after else f"follows {before:g}"
        raise TableError(
            f"cannot interpolate: the {what} ({axis}) do not increase, {after:g} {how}; the rows can be read"
        )


def _require_range(nodes: Array, at: Array, axis: str, extrapolate: bool, where: str = "") -> None:
    inside = (at >= nodes[0]) & (at <= nodes[-1])
    if np.all(inside):
        return
    outside = at[~inside].flat[0]
    if not extrapolate or np.isnan(outside):
        raise OutOfRangeError(
            f"{axis} = {outside:g} is outside the table, which goes from {nodes[0]:g} to {nodes[-1]:g}{where}"
            + ("" if extrapolate else "; extrapolate=True goes on beyond it")
        )
    if nodes.size == 1:
        raise OutOfRangeError(
            f"{axis} = {outside:g}: a table of the one point {nodes[0]:g}{where} cannot be extrapolated"
        )


def _neighbours(nodes: Array, at: Array) -> tuple[npt.NDArray[np.intp], npt.NDArray[np.intp], Array]:
    """The nodes on both sides of each point, and how far it lies between them; 0 at a node."""
    lower = np.clip(np.searchsorted(nodes, at, side="right") - 1, 0, max(nodes.size - 2, 0))
    lower = np.where(at == nodes[-1], nodes.size - 1, lower)
    upper = np.minimum(lower + 1, nodes.size - 1)
    span = nodes[upper] - nodes[lower]
    return lower, upper, np.where(span > 0, (at - nodes[lower]) / np.where(span > 0, span, 1.0), 0.0)


def _between(low: Array, high: Array, part: Array) -> Array:
    """Exactly `low` where the part is 0, also beside infinite numbers."""
    part = part.reshape(part.shape + (1,) * (low.ndim - part.ndim))
    with np.errstate(invalid="ignore"):
        between: Array = np.where(part == 0, low, low + (high - low) * part)
    return between


def interpolate(nodes: Array, values: Array, at: Any, axis: str, extrapolate: bool = False, where: str = "") -> Array:
    """Values of a table of one argument.

    Args:
        nodes: shape (n,), increasing.
        values: shape (n,), or (n, 3) for vectors.
        at: arguments of any shape.
        axis: the letter of the argument, for messages.
        where: what else messages tell.

    Returns:
        The shape of `at`, with (3,) behind it for vectors.

    Raises:
        OutOfRangeError: a point outside the nodes; or one that is not a number.
    """
    points: Array = np.asarray(at, dtype=np.float64)
    _require_range(nodes, points, axis, extrapolate, where)
    with np.errstate(over="raise"):
        lower, upper, part = _neighbours(nodes, points)
        return _between(values[lower], values[upper], part)


def interpolate_2d(
    firsts: Array,
    subtables: Sequence[tuple[Array, Array]],
    first: Any,
    second: Any,
    axes: tuple[str, str],
    extrapolate: bool = False,
) -> Array:
    """Values of a table of two arguments.

    Args:
        firsts: shape (m,), increasing: the first argument of each subtable.
        subtables: nodes and values of each, as `interpolate` takes them.
        first, second: arguments; their shapes are broadcast.

    Raises:
        OutOfRangeError: a point outside.
    """
    first_points, second_points = np.broadcast_arrays(
        np.asarray(first, dtype=np.float64), np.asarray(second, dtype=np.float64)
    )
    _require_range(firsts, first_points, axes[0], extrapolate)
    with np.errstate(over="raise"):
        lower, upper, part = _neighbours(firsts, first_points)

        def along_second(chosen: npt.NDArray[np.intp], needed: npt.NDArray[np.bool_]) -> Array:
            result = np.zeros(second_points.shape + subtables[0][1].shape[1:])
            for index in np.unique(chosen[needed]):
                nodes, values = subtables[index]
                where = f" at {axes[0]} = {firsts[index]:g}"
                here = needed & (chosen == index)
                result[here] = interpolate(nodes, values, second_points[here], axes[1], extrapolate, where)
            return result

        low = along_second(lower, np.ones(lower.shape, dtype=np.bool_))
        return _between(low, along_second(upper, part != 0), part)
