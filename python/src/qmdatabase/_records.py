"""The records and values of the C interface, to and from Python."""

from __future__ import annotations

import ctypes
import functools
import struct
import sys
from collections.abc import Iterable
from ctypes import POINTER, Structure, c_bool, c_double, c_int, c_long, c_uint32, c_void_p
from typing import Any, NamedTuple

NAME_LENGTH = 50
UNITS_LENGTH = 10

_NAME = f"{4 * NAME_LENGTH}s"
_UNITS = f"{4 * UNITS_LENGTH}s"
MATTER = struct.Struct(f"<q{_NAME}{_NAME}qqQ")
COMPONENT = struct.Struct("<qd")
PHASE = struct.Struct(f"<q{_NAME}i4x")
CHANGE = struct.Struct(f"<q{_NAME}qq")
PARAMETER = struct.Struct(f"<qi?3x{_NAME}{_UNITS}")
DESCRIPTION = struct.Struct(f"<q{_NAME}{_UNITS}???x{_NAME}{_NAME}4x")

# A value: eight bytes of the library's own, type, vector; then the number of a constant, or a pointer and a count.
_unpack_constant = struct.Struct("<8xi?3x8s").unpack_from
_unpack_table = struct.Struct("<16xQq").unpack_from
_SUBTABLE = struct.Struct("<dqQ")
_SUBTABLE_ALONE = struct.Struct("<dq8x")
_HEAD_SIZE, _VECTOR_END = 16, 40

CONSTANT, TABLE_T, TABLE_P, TABLE2D_T, TABLE2D_X = range(1, 6)
NUMBER = 8


RawFields = tuple[int, bool, bytes, bytes]


class RawValue(NamedTuple):
    """A value as it comes out of the library: numbers in the machine's own form, row after row.

    Values come as plain tuples of these fields, which are made faster.

    Attributes:
        type: 1 to 5.
        vector: three components instead of one.
        rows: the numbers of a constant; or the rows (argument, components) of all subtables.
        heads: of a two-dimensional table the heads of its subtables, whose pointers mean nothing any more.
    """

    type: int
    vector: bool
    rows: bytes
    heads: bytes = b""

    @property
    def row_size(self) -> int:
        """The bytes of a row; a constant is one row."""
        columns = 3 if self.vector else 1
        return NUMBER * (columns if self.type == CONSTANT else 1 + columns)

    @property
    def subtables(self) -> tuple[tuple[float, int], ...]:
        """Of a two-dimensional table the first argument and the number of rows of each subtable."""
        return tuple(_SUBTABLE_ALONE.iter_unpack(self.heads))


def subtable_heads(subtables: Iterable[tuple[float, int]]) -> bytes:
    """Heads with these first arguments and numbers of rows."""
    return b"".join(_SUBTABLE.pack(first, count, 0) for first, count in subtables)


@functools.lru_cache(maxsize=4096)  # names of parameters and their units come again and again
def text(field: bytes) -> str:
    """A text field; what no Unicode text can hold becomes U+FFFD."""
    try:
        return field.decode("utf-32-le", "surrogatepass").partition("\0")[0]
    except UnicodeDecodeError:
        return field.decode("utf-32-le", "replace").partition("\0")[0]


# The memory of the process, by address. Reading from it takes half the time of a C function that copies.
_memory = memoryview((ctypes.c_char * sys.maxsize).from_address(0)).cast("B")


def read_array(address: int, count: int, record: struct.Struct) -> list[tuple[Any, ...]]:
    """The records of an array; texts as such."""
    rows = record.iter_unpack(_memory[address : address + count * record.size])
    return [tuple([text(field) if isinstance(field, bytes) else field for field in row]) for row in rows]


def read_value(address: int) -> RawFields:
    """A copy of a value, as the fields of a RawValue."""
    type_, vector, number = _unpack_constant(_memory, address)
    if type_ == CONSTANT:
        return type_, vector, _memory[address + _HEAD_SIZE : address + _VECTOR_END].tobytes() if vector else number, b""
    first, count = _unpack_table(_memory, address)
    row_size = NUMBER * (4 if vector else 2)
    if type_ <= TABLE_P:
        return type_, vector, _memory[first : first + count * row_size].tobytes(), b""
    heads = _memory[first : first + count * _SUBTABLE.size].tobytes()
    parts = [_memory[rows : rows + number * row_size] for _, number, rows in _SUBTABLE.iter_unpack(heads)]
    return type_, vector, b"".join(parts), heads


def _fields(**fields: Any) -> list[tuple[str, Any]]:
    return list(fields.items())


_Name = c_uint32 * NAME_LENGTH
_Units = c_uint32 * UNITS_LENGTH


class Component(Structure):
    _fields_ = _fields(matter_id=c_long, fraction=c_double)


class Matter(Structure):
    _fields_ = _fields(
        id=c_long, name=_Name, comment=_Name, mixture=c_long, count=c_long, components=POINTER(Component)
    )


class Phase(Structure):
    _fields_ = _fields(id=c_long, name=_Name, state=c_int)


class Change(Structure):
    _fields_ = _fields(id=c_long, name=_Name, phase1=c_long, phase2=c_long)


class Parameter(Structure):
    _fields_ = _fields(id=c_long, type=c_int, vector=c_bool, name=_Name, units=_Units)


class _Head(Structure):
    _fields_ = _fields(reserved=c_void_p, type=c_int, vector=c_bool)


class _Constant(Structure):
    _fields_ = _fields(head=_Head, numbers=c_double * 3)


class _Table(Structure):
    _fields_ = _fields(head=_Head, rows=c_void_p, count=c_long)


class _Subtable(Structure):
    _fields_ = _fields(first=c_double, count=c_long, rows=c_void_p)


def set_text(field: Any, value: str, what: str) -> None:
    """Fills a text field of a record.

    Raises:
        ValueError: the text does not fit, holds a control character, or begins or ends with a blank.
    """
    if len(value) >= len(field):
        raise ValueError(f"{what} has {len(value)} characters; {len(field) - 1} fit")
    if any(ord(one) < 0x20 or 0x7F <= ord(one) < 0xA0 for one in value):
        raise ValueError(f"{what} holds a control character")
    if value != value.strip():
        raise ValueError(f"{what} begins or ends with a blank, which would be part of it")
    field[: len(value)] = [ord(one) for one in value]


class ValueObject:
    """A value as the library takes it. It holds all memory that the value points to."""

    def __init__(self, raw: RawValue) -> None:
        self._kept: list[Any] = []
        head = _Head(None, raw.type, raw.vector)
        self.object: Structure
        if raw.type == CONSTANT:
            self.object = _Constant(head, (c_double * 3).from_buffer_copy(raw.rows.ljust(3 * NUMBER, b"\0")))
        elif raw.type <= TABLE_P:
            self.object = _Table(head, self._keep(raw.rows), len(raw.rows) // raw.row_size)
        else:
            subtables = self._subtables(raw)
            self._kept.append(subtables)
            self.object = _Table(head, ctypes.addressof(subtables), len(raw.subtables))

    def _keep(self, rows: bytes) -> int:
        self._kept.append(ctypes.create_string_buffer(rows, len(rows)))
        return ctypes.addressof(self._kept[-1])

    def _subtables(self, raw: RawValue) -> Any:
        address = self._keep(raw.rows)
        subtables = (_Subtable * len(raw.subtables))()
        for subtable, (first, count) in zip(subtables, raw.subtables):
            subtable.first, subtable.count, subtable.rows = first, count, address
            address += count * raw.row_size
        return subtables
