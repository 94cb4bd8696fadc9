"""Tables over pressure and temperature: one subtable a pressure, its rows within the phase.

A user interpolates linearly along the temperature in the two subtables around the pressure, then linearly between
them. Both the pressures and the rows are chosen so that this stays within a tolerance wherever both subtables
reach; how far apart the ends of neighbours may lie (the boundary of the phase moves with the pressure) is limited.
"""

import bisect
import math
import random
from dataclasses import dataclass

import numpy

from .placing import SHARE_OF_NODES, interpolate, rounded

SHARE_OF_PRESSURES = 0.45   # of the tolerance
ROUNDS_OF_REPAIR = 8
REPAIR = 0.96               # of the tolerance: what is worse gets another node
TRIES = 400                 # random points of one verification
NEAR_BOUNDARY = 3           # power that draws random points towards the boundary of the phase


class NotWithinTolerance(Exception):
    pass


@dataclass
class Domain:
    """Where a phase is: from low(p) to high(p) at the pressures of the grid."""
    pressures: list             # candidates, ascending
    forced: list                # those of them that every table has
    temperatures: numpy.ndarray # a grid over all of the phase
    low: object
    high: object
    boundary: object            # temperature of the phase boundary that moves with the pressure, or None
    largest_step: float         # of the boundary between neighbours, K
    decimals: int               # of temperatures
    boundary_is_low: bool


def pressure_table(name, function, domain, tolerance):
    """Subtables of function(p, T), verified at random points; raises NotWithinTolerance."""
    builder = _Builder(name, function, domain, tolerance)
    builder.choose_pressures()
    for _ in range(ROUNDS_OF_REPAIR):
        if builder.repair(list(builder.centres())) == 0:
            break
    for seed in range(ROUNDS_OF_REPAIR):
        builder.repair(list(builder.random_points(seed)))
    worst = max(map(builder.error, builder.random_points(ROUNDS_OF_REPAIR)))
    if not worst <= tolerance:
        raise NotWithinTolerance(f"{name}: {worst:.3%} off between the nodes, {tolerance:.3%} allowed")
    if not all(math.isfinite(number) for rows in builder.rows.values() for _, number in rows):
        raise NotWithinTolerance(f"{name}: the equation has no solution at some nodes")
    return builder.subtables()


class _Builder:
    def __init__(self, name, function, domain, tolerance):
        self.name, self.function, self.domain, self.tolerance = name, function, domain, tolerance
        self.rows = {}

    def choose_pressures(self):
        pressures = self.domain.pressures
        chosen, at = [0], 0
        while at < len(pressures) - 1:
            at = self._farthest(at)
            chosen.append(at)
        for index in chosen:
            self._add(pressures[index])

    def subtables(self):
        return tuple((pressure, tuple(self.rows[pressure])) for pressure in sorted(self.rows))

    def repair(self, points):
        """Adds nodes where points are off; the number of nodes that were added."""
        return sum(self._split(*point) for point in points if self.error(point) > REPAIR * self.tolerance)

    def centres(self):
        """The middles of the cells between neighbouring rows of neighbouring subtables."""
        pressures = sorted(self.rows)
        for first, last in zip(pressures, pressures[1:]):
            temperatures = sorted({row[0] for p in (first, last) for row in self.rows[p]})
            for left, right in zip(temperatures, temperatures[1:]):
                yield (first + last) / 2, (left + right) / 2

    def random_points(self, seed):
        source = random.Random(f"{self.name} {seed}")
        pressures = sorted(self.rows)
        for _ in range(TRIES):
            index = source.randrange(len(pressures) - 1)
            share, draw = source.random(), source.random() ** NEAR_BOUNDARY
            first, last = pressures[index:index + 2]
            low = max(self.domain.low(first), self.domain.low(last))
            high = min(self.domain.high(first), self.domain.high(last))
            if low < high:
                part = draw if self.domain.boundary_is_low else 1 - draw
                yield first + share * (last - first), low + part * (high - low)

    def error(self, point):
        pressure, temperature = point
        first, last = self._neighbours(pressure)
        if not self._reaches(first, temperature) or not self._reaches(last, temperature):
            return 0
        before, after = (interpolate(self.rows[p], temperature) for p in (first, last))
        table = before + (after - before) * (pressure - first) / (last - first)
        return abs(table / self.function(pressure, temperature) - 1)

    def _farthest(self, start):
        pressures, forced = self.domain.pressures, self.domain.forced
        limit = next((i for i in range(start + 1, len(pressures)) if pressures[i] in forced), len(pressures) - 1)
        step, end = 1, start + 1
        while end < limit and self._is_within(start, min(end + step, limit)):
            end, step = min(end + step, limit), 2 * step
        while step > 1 and end < limit:
            step //= 2
            if end + step <= limit and self._is_within(start, end + step):
                end += step
        return end

    def _is_within(self, start, end):
        pressures = self.domain.pressures
        first, last = pressures[start], pressures[end]
        if self._boundary_step(first, last) > self.domain.largest_step:
            return False
        inner = [pressures[start + (end - start) * i // 4] for i in (1, 2, 3)]
        for pressure in {p for p in inner if first < p < last}:
            for temperature in self._common_temperatures(first, last):
                if self._pressure_error(first, pressure, last, temperature) > SHARE_OF_PRESSURES * self.tolerance:
                    return False
        return True

    def _boundary_step(self, first, last):
        ends = [self.domain.boundary(p) for p in (first, last)]
        return 0 if None in ends else abs(ends[1] - ends[0])

    def _common_temperatures(self, first, last):
        low = max(self.domain.low(first), self.domain.low(last))
        high = min(self.domain.high(first), self.domain.high(last))
        if low >= high:
            return []
        inner = [t for t in self.domain.temperatures if low < t < high]
        return [low, *inner[::max(1, len(inner) // 24)], high]

    def _pressure_error(self, first, pressure, last, temperature):
        before, exact, after = (self.function(p, temperature) for p in (first, pressure, last))
        line = before + (after - before) * (pressure - first) / (last - first)
        return abs(line / exact - 1)

    def _add(self, pressure):
        low, high = self.domain.low(pressure), self.domain.high(pressure)
        grid = [t for t in self.domain.temperatures if low + 0.01 < t < high - 0.01]
        self.rows[pressure] = self._thinned(pressure, [low, *grid, high])

    def _thinned(self, pressure, temperatures):
        """Rows at those temperatures that a straight line does not reach, with more where the grid is too coarse."""
        arguments = numpy.array(temperatures)
        numbers = numpy.array([self.function(pressure, t) for t in temperatures])
        rows, start = [(temperatures[0], rounded(numbers[0]))], 0
        while start < len(arguments) - 1:
            start = _reach(arguments, numbers, start, SHARE_OF_NODES * self.tolerance)
            row = (float(arguments[start]), rounded(numbers[start]))
            rows += [*self._between(pressure, rows[-1], row, depth=6), row]
        return rows

    def _between(self, pressure, left, right, depth):
        middle = round((left[0] + right[0]) / 2, self.domain.decimals)
        if depth == 0 or not left[0] < middle < right[0]:
            return []
        exact = self.function(pressure, middle)
        if abs(interpolate([left, right], middle) / exact - 1) <= SHARE_OF_NODES * self.tolerance:
            return []
        row = (middle, rounded(exact))
        return [*self._between(pressure, left, row, depth - 1), row, *self._between(pressure, row, right, depth - 1)]

    def _neighbours(self, pressure):
        pressures = sorted(self.rows)
        index = min(max(bisect.bisect_right(pressures, pressure), 1), len(pressures) - 1)
        return pressures[index - 1], pressures[index]

    def _reaches(self, pressure, temperature):
        rows = self.rows[pressure]
        return rows[0][0] <= temperature <= rows[-1][0]

    def _split(self, pressure, temperature):
        first, last = self._neighbours(pressure)
        if self._pressure_error(first, pressure, last, temperature) > SHARE_OF_PRESSURES * self.tolerance:
            middle = rounded_pressure((first * last) ** 0.5)
            if first < middle < last:
                self._add(middle)
                return 1
        return sum(self._split_row(p, temperature) for p in (first, last))

    def _split_row(self, pressure, temperature):
        rows = self.rows[pressure]
        index = min(max(bisect.bisect_right(rows, (temperature, float("inf"))), 1), len(rows) - 1)
        left, right = rows[index - 1], rows[index]
        middle = round((left[0] + right[0]) / 2, self.domain.decimals)
        if not left[0] < middle < right[0]:
            return 0
        rows.insert(index, (middle, rounded(self.function(pressure, middle))))
        return 1


def rounded_pressure(pressure):
    return float(f"{pressure:.4g}")


def _reach(arguments, numbers, start, tolerance):
    """Index of the last sample before the first that the straight line misses."""
    end = start + 1
    while end + 1 < len(arguments):
        inner = slice(start + 1, end + 1)
        slope = (numbers[end + 1] - numbers[start]) / (arguments[end + 1] - arguments[start])
        line = numbers[start] + slope * (arguments[inner] - arguments[start])
        if numpy.any(numpy.abs(line / numbers[inner] - 1) > tolerance):
            break
        end += 1
    return end
