"""The records and values of the C interface, to and from Python."""

from __future__ import annotations

import ctypes
import functools
import struct
from collections.abc import Iterator
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

# A value: eight bytes of the library's own, type, vector; then the number of a constant or a pointer.
_VALUE = struct.Struct("<8xi?3xQ")
_COUNT = struct.Struct("<q")
_SUBTABLE = struct.Struct("<dqQ")
_HEAD_SIZE = 16
_MOST_AT_ONCE = 1 << 30  # ctypes.string_at takes an int

CONSTANT, TABLE_T, TABLE_P, TABLE2D_T, TABLE2D_X = range(1, 6)
NUMBER = 8


class RawValue(NamedTuple):
    """A value as it comes out of the library: numbers in the machine's own form, row after row.

    Attributes:
        type: 1 to 5.
        vector: three components instead of one.
        rows: the numbers of a constant; or the rows (argument, components) of all subtables.
        subtables: of a two-dimensional table the first argument and the number of rows of each subtable.
    """

    type: int
    vector: bool
    rows: bytes
    subtables: tuple[tuple[float, int], ...] = ()


@functools.lru_cache(maxsize=4096)  # names of parameters and their units come again and again
def text(field: bytes) -> str:
    """A text field; what no Unicode text can hold becomes U+FFFD."""
    try:
        return field.decode("utf-32-le", "surrogatepass").partition("\0")[0]
    except UnicodeDecodeError:
        return field.decode("utf-32-le", "replace").partition("\0")[0]


def _copy(address: int, size: int) -> bytes:
    if size <= _MOST_AT_ONCE:
        return ctypes.string_at(address, size)
    return (ctypes.c_char * size).from_address(address).raw


def read_array(address: int, count: int, record: struct.Struct) -> Iterator[tuple[Any, ...]]:
    """The records of an array, which is copied at once; texts as such."""
    for row in record.iter_unpack(_copy(address, count * record.size)):
        yield tuple([text(field) if isinstance(field, bytes) else field for field in row])


def read_value(address: int) -> RawValue:
    """A copy of a value."""
    type_, vector, pointer = _VALUE.unpack(_copy(address, _VALUE.size))
    if type_ == CONSTANT:
        return RawValue(type_, vector, _copy(address + _HEAD_SIZE, NUMBER * (3 if vector else 1)))
    (count,) = _COUNT.unpack(_copy(address + _VALUE.size, _COUNT.size))
    row_size = NUMBER * (4 if vector else 2)
    if type_ <= TABLE_P:
        return RawValue(type_, vector, _copy(pointer, count * row_size))
    subtables = list(_SUBTABLE.iter_unpack(_copy(pointer, count * _SUBTABLE.size)))
    rows = b"".join([_copy(address, number * row_size) for _, number, address in subtables if number > 0])
    return RawValue(type_, vector, rows, tuple([(first, number) for first, number, _ in subtables]))


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
            self.object = _Table(head, self._keep(raw.rows), len(raw.rows) // self._row_size(raw))
        else:
            subtables = self._subtables(raw)
            self._kept.append(subtables)
            self.object = _Table(head, ctypes.addressof(subtables), len(raw.subtables))

    @staticmethod
    def _row_size(raw: RawValue) -> int:
        return NUMBER * (4 if raw.vector else 2)

    def _keep(self, rows: bytes) -> int:
        self._kept.append(ctypes.create_string_buffer(rows, len(rows)))
        return ctypes.addressof(self._kept[-1])

    def _subtables(self, raw: RawValue) -> Any:
        address = self._keep(raw.rows)
        subtables = (_Subtable * len(raw.subtables))()
        for subtable, (first, count) in zip(subtables, raw.subtables):
            subtable.first, subtable.count, subtable.rows = first, count, address
            address += count * self._row_size(raw)
        return subtables
