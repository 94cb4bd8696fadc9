"""The six kinds of value: reading them from data files and writing them.

A value is (type, is vector, content). The content is one row for a constant, a list of rows for a
one-dimensional table and a list of (first argument, rows) for a two-dimensional one.
"""

import math

from fileformat import Failure, bits, raw_lines, read_double, split, trim, widen, write_double, write_long

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
        for raw, too_long, is_last in raw_lines(self.data):
            if too_long:
                self.log("Cannot read parameter data file: " + self.path, False)
                raise Failure(-7)
            line = trim(widen(raw.split(b"\0")[0]))
            yield None if line[:1] in ("", "#") else line, is_last

    def data_lines(self):
        return (line for line, _ in self.lines() if line is not None)

    def row(self, line, number, previous):
        """The numbers of a table's row, whose argument must be above the previous row's."""
        parts = split(line)
        if len(parts) != (4 if self.vector else 2):
            self.fail(-12, f"Bad table format [{number}]: ", line)
        row = []
        for index, part in enumerate(parts):
            row.append(read_double(part))
            if row[-1] is None:
                kind = "vector component" if self.vector else "component"
                self.fail(-11, f"Bad table {kind} [{number}]: ", index)
        if math.isnan(row[0]) or previous is not None and not previous < row[0]:
            self.fail(-11, f"Monotony error [{number}]: ", line)
        return tuple(row)

    def rows(self, lines):
        """Vectors are checked when all lines are there, scalars one by one."""
        if self.vector:
            lines = list(lines)
            self.log(f"{len(lines)} data lines loaded", True)
        rows = self.checked(lines)
        if not self.vector:
            self.log(f"{len(rows)} data lines loaded", True)
        return rows

    def checked(self, lines):
        rows = []
        for line in lines:
            rows.append(self.row(line, len(rows), rows[-1][0] if rows else None))
        return rows

    def constant(self):
        line = ""
        for line in self.data_lines():
            pass
        if not self.vector:
            number = read_double(line)
            if number is None:
                self.fail(-11, "Bad const value: ", line)
            return (number,)
        parts = split(line)
        if len(parts) != 3:
            self.fail(-12, "Bad const vector format: ", line)
        numbers = []
        for index, part in enumerate(parts):
            numbers.append(read_double(part))
            if numbers[-1] is None:
                self.fail(-11, "Bad const vector component: ", index)
        return tuple(numbers)

    def table(self):
        rows = self.rows(self.data_lines())
        if not rows:
            raise Failure(-9)
        return rows

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
                previous = collected[-1][0] if collected else None
                collected.append(line if self.vector else self.row(line, len(collected), previous))
        self.close_subtable(first, collected, subtables)
        if not subtables:
            raise Failure(-9)
        self.log(f"{len(subtables)} subtables loaded", True)
        return subtables


def read_value(data, path, type, vector, log):
    reader = Reader(data, path, vector, log)
    if type in CONSTANT:
        return type, vector, reader.constant()
    return type, vector, reader.table() if type in ONE_DIMENSIONAL else reader.subtables()


def write_value(type, content):
    """The lines of a data file."""
    rows = []
    if type in CONSTANT:
        rows.append(content)
    elif type in ONE_DIMENSIONAL:
        rows.extend(content)
    else:
        for first, subrows in content:
            rows.append(HEADER + write_double(first))
            rows.extend(subrows)
    lines = (row if isinstance(row, str) else " ".join(map(write_double, row)) for row in rows)
    return "".join(line + "\n" for line in lines).encode()
