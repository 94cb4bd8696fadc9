"""Calls the exported functions and brings what they return into the model's terms."""

import ctypes
from ctypes import POINTER, Structure, byref, c_bool, c_double, c_int, c_long, c_uint32, c_uint64, c_uint8, c_void_p

from fileformat import bits, units_of
from values import CONSTANT, ONE_DIMENSIONAL

UNTOUCHED_POINTER, UNTOUCHED_COUNT = 0x5A5A5A50, -77


def record(title, /, **fields):
    return type(title, (Structure,), {"_fields_": list(fields.items())})


Name, Units = c_uint32 * 50, c_uint32 * 10
Component = record("Component", matter_id=c_long, fraction=c_uint64)
Matter = record(
    "Matter", id=c_long, name=Name, comment=Name, mixture=c_long, count=c_long, components=POINTER(Component)
)
Phase = record("Phase", id=c_long, name=Name, aggreg=c_int)
Change = record("Change", id=c_long, name=Name, phase1=c_long, phase2=c_long)
Param = record("Param", id=c_long, type=c_int, vector=c_bool, name=Name, units=Units)
Description = record(
    "Description", id=c_long, name=Name, units=Units, binary=c_bool, scalar=c_bool, vector=c_bool,
    types=Name, phases=Name,
)
ValueHead = record("ValueHead", reserved=c_void_p, type=c_int, vector=c_uint8)
Table = record("Table", head=ValueHead, rows=c_void_p, count=c_long)
Subtable = record("Subtable", first=c_uint64, count=c_long, rows=c_void_p)
SIZES = {Component: 16, Matter: 432, Phase: 216, Change: 224, Param: 256, Description: 656, Table: 32, Subtable: 24}
assert all(ctypes.sizeof(one) == size for one, size in SIZES.items())


def convert(value):
    """A field in the model's terms."""
    return bytes(value) if isinstance(value, ctypes.Array) else value


def row_of(record):
    return tuple(convert(getattr(record, name)) for name, _ in record._fields_)


def matter_row(record):
    return *row_of(record)[:4], tuple(row_of(record.components[i]) for i in range(record.count))


def param_row(record):
    # Of an empty text only the first character counts.
    return *row_of(record)[:3], *(bytes(text if text[0] else len(bytes(text))) for text in (record.name, record.units))


LISTS = {
    "GetMatters": (Matter, matter_row, "MatterArray"),
    "GetPhases": (Phase, row_of, "PhasesArray"),
    "GetPhaseChanges": (Change, row_of, "PhaseChangeArray"),
    "GetMatterParams": (Param, param_row, "ParametersArray"),
    "GetPhaseParams": (Param, param_row, "ParametersArray"),
    "GetPhaseChangeParams": (Param, param_row, "ParametersArray"),
    "GetAvailablePhaseParams": (Description, row_of, "ParamDescrArray"),
}


def read_rows(address, count, vector):
    width = 4 if vector else 2
    numbers = (c_uint64 * (width * count)).from_address(address) if count else []
    return [tuple(numbers[i * width : (i + 1) * width]) for i in range(count)]


def read_value(address):
    head = ValueHead.from_address(address)
    vector, type = bool(head.vector), head.type
    if type in CONSTANT:
        content = tuple((c_uint64 * (3 if vector else 1)).from_address(address + 16))
    else:
        table = Table.from_address(address)
        content = read_rows(table.rows, table.count, vector) if type in ONE_DIMENSIONAL else []
        if type not in ONE_DIMENSIONAL:
            subtables = (Subtable * table.count).from_address(table.rows)
            content = [(one.first, read_rows(one.rows, one.count, vector)) for one in subtables]
    return type, vector, content


class ValueObject:
    """A value as a host builds it. Where there are no rows, the count may be anything: `odd_count`."""

    def __init__(self, type, content, odd_count):
        self.keep, self.odd_count = [], odd_count
        head = ValueHead(None, 77, 5)
        if type in CONSTANT:
            self.object = record("Constant", head=ValueHead, numbers=c_double * len(content))(head, content)
        elif type in ONE_DIMENSIONAL:
            self.object = Table(head, *self.rows(content))
        else:
            subtables = [Subtable(bits(first), *reversed(self.rows(rows))) for first, rows in content]
            self.object = Table(head, *self.array(Subtable, subtables))

    def rows(self, rows):
        """Their address and their number."""
        address, _ = self.array(c_double, [number for row in rows for number in row])
        return address, len(rows) or self.odd_count

    def array(self, kind, elements):
        if not elements:
            return None, self.odd_count
        self.keep.append((kind * len(elements))(*elements))
        return ctypes.addressof(self.keep[-1]), len(elements)


def wide(text):
    return None if text is None else units_of(text) + bytes(4)


class Library:
    def __init__(self, path):
        self.functions = ctypes.CDLL(path)

    def call(self, name, *arguments):
        wrapped = [c_long(one) if isinstance(one, int) else one for one in arguments]
        return self.functions["qmdb" + name](*wrapped)

    def open(self, path, language, log_directory, informational):
        database = c_long(UNTOUCHED_COUNT)
        flag = c_bool(informational)
        code = self.call("Open", wide(path), wide(language), wide(log_directory), flag, byref(database))
        return code, database.value

    def close(self, database):
        return self.call("Close", database)

    def release(self, what, pointer):
        before = pointer.value
        code = self.call("Destroy" + what, byref(pointer))
        assert (code, pointer.value) == (0, before), f"qmdbDestroy{what} gives {code}"

    def list(self, name, *ids):
        """The code, the rows (None without an array) and the count."""
        kind, convert, what = LISTS[name]
        pointer, count = c_void_p(UNTOUCHED_POINTER), c_int(UNTOUCHED_COUNT)
        code = self.call(name, *ids, byref(pointer), byref(count))
        if pointer.value == UNTOUCHED_POINTER:
            return code, "untouched", count.value
        if pointer.value is None:
            return code, None, count.value
        rows = [convert(row) for row in (kind * count.value).from_address(pointer.value)]
        self.release(what, pointer)
        return code, rows, count.value

    def value(self, *ids):
        pointer = c_void_p(UNTOUCHED_POINTER)
        code = self.call("GetParamValue", *ids, byref(pointer))
        if pointer.value is None or pointer.value == UNTOUCHED_POINTER:
            return code, "untouched" if pointer.value else None
        value = read_value(pointer.value)
        self.release("ParameterData", pointer)
        return code, value

    def add_matter(self, database, name, comment, mixture, components, odd_count):
        array = (Component * len(components))(*((matter_id, bits(one)) for matter_id, one in components))
        matter = Matter(99, Name(*name), Name(*comment), mixture, len(components) or odd_count)
        matter.components = array if components else None
        return self.call("AddMatter", database, byref(matter))

    def add_phase(self, database, matter_id, name, aggreg):
        return self.call("AddPhase", database, matter_id, byref(Phase(99, Name(*name), aggreg)))

    def add_change(self, database, matter_id, name, phase1, phase2):
        change = Change(99, Name(*name), phase1, phase2)
        return self.call("AddPhaseChange", database, matter_id, byref(change))

    def add_param(self, database, ids, param, content, odd_count):
        """To a substance or, with two IDs, to a phase; content None stands for a null value."""
        param_id, type, vector = param
        given = Param(param_id, type, vector, Name(65), Units(66))
        value = None if content is None else ValueObject(type, content, odd_count)
        name = "AddPhaseParam" if len(ids) == 2 else "AddMatterParam"
        return self.call(name, database, *ids, byref(given), byref(value.object) if value else None)
