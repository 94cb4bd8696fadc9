"""What may go wrong: one exception class for each code of the library, and those of the module itself."""

from __future__ import annotations

__all__ = [
    "AmbiguousNameError",
    "ArgumentError",
    "ClosedDatabaseError",
    "CommandError",
    "CommandNotFoundError",
    "DatabaseAccessError",
    "DatabaseNotFoundError",
    "DatabaseWarning",
    "DuplicateNameError",
    "DuplicateParameterError",
    "EmptyError",
    "FileError",
    "FirstArgumentError",
    "FormatError",
    "FractionsError",
    "InternalError",
    "LibraryNotFoundError",
    "NoDataFileError",
    "NoPhasesError",
    "NotFoundError",
    "NullPointerError",
    "NumberError",
    "OutOfRangeError",
    "QmdbError",
    "ReadError",
    "RequiredKeyError",
    "StateNotAllowedError",
    "StatusError",
    "TableError",
    "TypeNotAllowedError",
    "UnknownNameError",
    "UnknownParameterError",
    "VectorNotAllowedError",
]


class QmdbError(Exception):
    """Whatever this module raises about a database, but for `ValueError` and `TypeError` on plain misuse."""

    def __str__(self) -> str:
        # KeyError, which some classes are as well, would show its text in quotes.
        return str(self.args[0]) if self.args else ""


class StatusError(QmdbError):
    """A call of the library that failed.

    Attributes:
        code: the library's code, a negative number.
        meaning: what the code means.
        detail: the last line of the library's log about this call; None when it wrote none.
    """

    code: int = 0
    meaning: str = "a code that this module does not know"

    def __init__(self, action: str, code: int | None = None, detail: str | None = None) -> None:
        self.code = type(self).code if code is None else code
        self.action = action
        self.detail = detail
        super().__init__(f"{action}: {self.meaning} ({self.code})" + (f": {detail}" if detail else ""))

    def __reduce__(self) -> tuple[object, ...]:
        return type(self), (self.action, self.code, self.detail)


class FirstArgumentError(StatusError):
    """The first argument of a subtable is too long to be read."""

    code, meaning = -1, "the first argument of a subtable is too long to be read"


class NotFoundError(StatusError, LookupError):
    """Nothing has this ID, or the stored value is of an unknown type."""

    code, meaning = -2, "no such database, substance, phase, phase change or parameter, or a value of unknown type"


class NoDataFileError(StatusError):
    """The data file of a parameter does not exist."""

    code, meaning = -3, "the parameter's data file does not exist"


class NullPointerError(StatusError):
    """A pointer that must not be null is null."""

    code, meaning = -4, "a pointer is null that must not be"


class InternalError(StatusError):
    """Out of memory, no free ID left, or a defect of the library."""

    code, meaning = -5, "out of memory, no free ID left, or a defect of the library"


class FileError(StatusError):
    """A file or directory could not be opened, written, made or listed."""

    code, meaning = -6, "a file or directory could not be opened, written, made or listed"


class ReadError(StatusError):
    """A file was opened but could not be read."""

    code, meaning = -7, "a file could not be read, or a line of it is too long"


class EmptyError(StatusError):
    """Nothing of the kind asked for, such as a table without rows."""

    code, meaning = -9, "there is nothing of the kind, such as a table without rows"


class RequiredKeyError(StatusError):
    """A descriptor lacks a required key."""

    code, meaning = -10, "a descriptor lacks a required key"


class NumberError(StatusError):
    """A text is not a number, or the arguments of a table do not increase."""

    code, meaning = -11, "a text is not a number, or the arguments of a table do not increase"


class FormatError(StatusError):
    """A composition or a row of a data file is laid out wrongly."""

    code, meaning = -12, "a composition or a row of a data file is laid out wrongly"


class NoPhasesError(StatusError):
    """A substance has no phase."""

    code, meaning = -13, "a substance has no phase"


class DuplicateNameError(StatusError):
    """Something of the same kind has this name already."""

    code, meaning = -14, "something of the same kind has this name already"


class UnknownParameterError(StatusError):
    """No description has this parameter ID."""

    code, meaning = -15, "no description has this parameter ID"


class TypeNotAllowedError(StatusError):
    """The parameter's description does not allow this type of value."""

    code, meaning = -16, "the parameter's description does not allow this type of value"


class VectorNotAllowedError(StatusError):
    """The parameter's description does not allow scalars, or does not allow vectors."""

    code, meaning = -17, "the parameter's description does not allow scalars, or does not allow vectors"


class DuplicateParameterError(StatusError):
    """The substance or phase has this parameter already."""

    code, meaning = -18, "the substance or phase has this parameter already"


class StateNotAllowedError(StatusError):
    """The parameter is not available for the phase's aggregate state."""

    code, meaning = -19, "the parameter is not available for the phase's aggregate state"


class FractionsError(StatusError):
    """The molar fractions of a mixture do not add up to a value from 0.99 to 1."""

    code, meaning = -20, "the molar fractions do not add up to a value from 0.99 to 1"


STATUS_ERRORS = {one.code: one for one in StatusError.__subclasses__()}


def status_error(action: str, code: int, detail: str | None) -> StatusError:
    """The exception of a code."""
    return STATUS_ERRORS.get(code, StatusError)(action, code, detail)


class LibraryNotFoundError(QmdbError, OSError):
    """The shared library is nowhere to be found, or cannot be loaded."""


class DatabaseNotFoundError(QmdbError, FileNotFoundError):
    """The directory of a database does not exist, or is none."""


class DatabaseAccessError(QmdbError, PermissionError):
    """The directory of a database may not be listed."""


class ClosedDatabaseError(QmdbError, ValueError):
    """Something was asked of a closed database that only an open one can tell."""


class CommandError(QmdbError):
    """The command `qmdb`, which reads what the library does not tell, failed."""


class CommandNotFoundError(CommandError):
    """The command `qmdb` is nowhere to be found."""


class UnknownNameError(QmdbError, KeyError):
    """Nothing has this name or ID."""


class AmbiguousNameError(QmdbError, KeyError):
    """Several things have this name."""


class ArgumentError(QmdbError, TypeError):
    """A value was called with arguments that it does not have, or without those that it has."""


class OutOfRangeError(QmdbError, ValueError):
    """An argument lies outside the table."""


class TableError(QmdbError, ValueError):
    """A table that cannot be interpolated: its arguments do not increase."""


class DatabaseWarning(UserWarning):
    """The library read a database, but not all of it; or numbers lose digits when they are stored."""
