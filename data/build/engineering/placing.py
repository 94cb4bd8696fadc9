"""Places the nodes of tables so that linear interpolation between them stays within a tolerance."""

import bisect

import numpy

SIGNIFICANT_DIGITS = 6  # what the library itself writes
SHARE_OF_NODES = 0.45   # of the tolerance; rounding and the other argument take the rest


def rounded(number):
    return float(f"{number:.{SIGNIFICANT_DIGITS}g}")


def interpolate(rows, argument):
    """Linear between the two rows around the argument, which lies within the table."""
    index = min(max(bisect.bisect_right(rows, (argument, float("inf"))), 1), len(rows) - 1)
    (x0, y0), (x1, y1) = rows[index - 1], rows[index]
    return y0 + (y1 - y0) * (argument - x0) / (x1 - x0)


def longest_segment(arguments, numbers, start, tolerance, scale=None):
    """Index of the farthest sample that a straight line from the sample at start reaches within tolerance."""
    def is_within(end):
        inner = slice(start + 1, end)
        slope = (numbers[end] - numbers[start]) / (arguments[end] - arguments[start])
        line = numbers[start] + slope * (arguments[inner] - arguments[start])
        reference = numpy.abs(numbers[inner]) if scale is None else scale
        return bool(numpy.all(numpy.abs(line - numbers[inner]) <= tolerance * reference))

    last = len(arguments) - 1
    step, end = 1, start + 1
    while end < last and is_within(min(end + step, last)):
        end, step = min(end + step, last), 2 * step
    while step > 1 and end < last:
        step //= 2
        if end + step <= last and is_within(end + step):
            end += step
    return end


def place(function, low, high, tolerance, samples=400, breaks=(), decimals=2, scale=None, spacing=numpy.linspace):
    """Rows of argument and number over [low, high]; breaks are arguments where the function may bend or jump."""
    bounds = [low, *[at for at in breaks if low < at < high], high]
    rows = []
    for left, right in zip(bounds, bounds[1:]):
        rows += _place_smooth(function, left, right, tolerance, samples, decimals, scale, spacing, rows)
    return tuple(rows)


def _place_smooth(function, low, high, tolerance, samples, decimals, scale, spacing, rows):
    arguments = numpy.unique(numpy.round(spacing(low, high, samples), decimals))
    arguments[0], arguments[-1] = low, high
    ends = _just_inside(function, low, high)
    numbers = numpy.array([ends.get(at, None) or function(at) for at in arguments])
    chosen, start = [0], 0
    while start < len(arguments) - 1:
        start = longest_segment(arguments, numbers, start, SHARE_OF_NODES * tolerance, scale)
        chosen.append(start)
    placed = [(float(arguments[i]), rounded(numbers[i])) for i in chosen]
    return _joined(rows, placed)


def _just_inside(function, low, high):
    """At a break the function belongs to two pieces: take the one of this interval."""
    inset = 1e-9 * (high - low)
    return {low: function(low + inset), high: function(high - inset)}


def _joined(rows, placed):
    """Where two pieces meet with one number the node stands once; at a jump the second stands 0.01 behind."""
    if not rows:
        return placed
    (at, before), (_, after) = rows[-1], placed[0]
    if abs(after - before) <= 1e-4 * abs(before):
        return placed[1:]
    return [(round(at + 0.01, 2), after), *placed[1:]]
