"""The six kinds of value: reading them from data files and writing them.

The content of a value is one row for a constant, a list of rows for a one-dimensional table and a
list of (first argument, rows) for a two-dimensional one.
"""

import math

from fileformat import Failure, bits, read_double, read_lines, split, widen, write_double

CONSTANT, ONE_DIMENSIONAL, TWO_DIMENSIONAL = (1,), (2, 3), (4, 5)
HEADER = "P="


def with_bits(content):
    """The content with numbers that can be compared exactly."""
    if isinstance(content, float):
        return bits(content)
    return type(content)(map(with_bits, content))


class Reader:
    """Reads one data file; log(text, is informational) takes the messages."""

    def __init__(self, data, path, vector, log):
        self.data, self.path, self.vector, self.log = data, path, vector, log

    def fail(self, code, message, detail=""):
        self.log(f"{message}{detail} ({self.path})", False)
        raise Failure(code)

    def lines(self):
        """The lines with whether the file ended in them; None for those without data."""
        for line, too_long, is_last in read_lines(self.data, widen):
            if too_long:
                self.log("Cannot read parameter data file: " + self.path, False)
                raise Failure(-7)
            yield None if line[:1] in ("", "#") else line, is_last

    def data_lines(self):
        return (line for line, _ in self.lines() if line is not None)

    def parts(self, line, count, message):
        parts = split(line)
        if len(parts) != count:
            self.fail(-12, message, line)
        return parts

    def numbers(self, parts, message):
        numbers = []
        for index, part in enumerate(parts):
            numbers.append(read_double(part))
            if numbers[-1] is None:
                self.fail(-11, message, index)
        return tuple(numbers)

    def row(self, line, number, previous):
        """The numbers of a table's row, whose argument must be above that of the previous row."""
        parts = self.parts(line, 4 if self.vector else 2, f"Bad table format [{number}]: ")
        what = "vector component" if self.vector else "component"
        row = self.numbers(parts, f"Bad table {what} [{number}]: ")
        if math.isnan(row[0]) or previous and not previous[0] < row[0]:
            self.fail(-11, f"Monotony error [{number}]: ", line)
        return row

    def checked(self, lines):
        rows = []
        for line in lines:
            rows.append(self.row(line, len(rows), rows[-1] if rows else None))
        return rows

    def constant(self):
        line = "".join(list(self.data_lines())[-1:])
        if self.vector:
            parts = self.parts(line, 3, "Bad const vector format: ")
            return self.numbers(parts, "Bad const vector component: ")
        number = read_double(line)
        if number is None:
            self.fail(-11, "Bad const value: ", line)
        return (number,)

    def table(self):
        """Vectors are checked once all lines are there, scalars one by one."""
        lines = list(self.data_lines()) if self.vector else self.checked(self.data_lines())
        self.log(f"{len(lines)} data lines loaded", True)
        if not lines:
            raise Failure(-9)
        return self.checked(lines) if self.vector else lines

    def first_argument(self, line):
        number = read_double(line[len(HEADER) :])
        if number is None:
            self.fail(-11, "First arg value error [0]: ", line)
        return number

    def close_subtable(self, first, collected, subtables):
        if collected:
            self.log(f"{len(collected)} data lines subtable loaded", True)
            subtables.append((first, self.checked(collected) if self.vector else collected))

    def subtables(self):
        subtables, first, collected = [], None, []
        for line, is_last in self.lines():
            if line is not None and line.startswith(HEADER):
                self.close_subtable(first, collected, subtables)
                collected = []
                if not is_last:
                    first = self.first_argument(line)
            elif line is not None and not is_last:
                if first is None:
                    self.fail(-12, f"Bad table format [{len(collected)}]: ", line)
                previous = collected[-1] if collected else None
                collected.append(line if self.vector else self.row(line, len(collected), previous))
        self.close_subtable(first, collected, subtables)
        if not subtables:
            raise Failure(-9)
        self.log(f"{len(subtables)} subtables loaded", True)
        return subtables


def read_value(data, path, type, vector, log):
    reader = Reader(data, path, vector, log)
    if type in CONSTANT:
        return reader.constant()
    return reader.table() if type in ONE_DIMENSIONAL else reader.subtables()


def write_value(type, content):
    """The lines of a data file."""
    rows = [content] if type in CONSTANT else content
    subtables = content if type in TWO_DIMENSIONAL else [(None, rows)]
    lines = []
    for first, rows in subtables:
        lines += [] if first is None else [HEADER + write_double(first)]
        lines += [" ".join(map(write_double, row)) for row in rows]
    return "".join(line + "\n" for line in lines).encode()
