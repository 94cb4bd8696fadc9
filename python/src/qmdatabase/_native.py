"""The shared library: where it is, its functions, and one database opened by them."""

from __future__ import annotations

import ctypes
import functools
import os
import shutil
import sys
import tempfile
import threading
import weakref
from collections.abc import Sequence
from ctypes import byref, c_bool, c_int, c_long, c_void_p, c_wchar_p
from pathlib import Path
from typing import TYPE_CHECKING, Any

from . import _records
from .errors import ClosedDatabaseError, LibraryNotFoundError, status_error

if TYPE_CHECKING:
    from .entities import Parameter

LIBRARY = "libqmDatabase.so.1"
LIBRARY_VARIABLE = "QMDB_LIBRARY"
EMPTY = -9
NOT_FOUND = -2
LOG_FILE = "qmdb.log"
ERROR_PREFIX = "ERROR: "

_long = c_long.from_param
_LIST = [c_void_p, c_void_p]
_SIGNATURES: dict[str, list[Any]] = {
    "qmdbOpen": [c_wchar_p, c_wchar_p, c_wchar_p, c_bool, c_void_p],
    "qmdbClose": [c_long],
    "qmdbGetMatters": [c_long, *_LIST],
    "qmdbGetPhases": [c_long, c_long, *_LIST],
    "qmdbGetPhaseChanges": [c_long, c_long, *_LIST],
    "qmdbGetMatterParams": [c_long, c_long, *_LIST],
    "qmdbGetPhaseParams": [c_long, c_long, c_long, *_LIST],
    "qmdbGetPhaseChangeParams": [c_long, c_long, c_long, *_LIST],
    "qmdbGetAvailablePhaseParams": [c_long, c_long, c_long, *_LIST],
    "qmdbGetParamValue": [c_long] * 5 + [c_void_p],
    "qmdbAddMatter": [c_long, c_void_p],
    "qmdbAddPhase": [c_long, c_long, c_void_p],
    "qmdbAddPhaseChange": [c_long, c_long, c_void_p],
    "qmdbAddMatterParam": [c_long, c_long, c_void_p, c_void_p],
    "qmdbAddPhaseParam": [c_long, c_long, c_long, c_void_p, c_void_p],
    "qmdbDestroyMatterArray": [c_void_p],
    "qmdbDestroyPhasesArray": [c_void_p],
    "qmdbDestroyPhaseChangeArray": [c_void_p],
    "qmdbDestroyParametersArray": [c_void_p],
    "qmdbDestroyParamDescrArray": [c_void_p],
    "qmdbDestroyParameterData": [c_void_p],
}
# Each list with its record and what releases it.
_LISTS = {
    "qmdbGetMatters": (_records.MATTER, "qmdbDestroyMatterArray"),
    "qmdbGetPhases": (_records.PHASE, "qmdbDestroyPhasesArray"),
    "qmdbGetPhaseChanges": (_records.CHANGE, "qmdbDestroyPhaseChangeArray"),
    "qmdbGetMatterParams": (_records.PARAMETER, "qmdbDestroyParametersArray"),
    "qmdbGetPhaseParams": (_records.PARAMETER, "qmdbDestroyParametersArray"),
    "qmdbGetPhaseChangeParams": (_records.PARAMETER, "qmdbDestroyParametersArray"),
    "qmdbGetAvailablePhaseParams": (_records.DESCRIPTION, "qmdbDestroyParamDescrArray"),
}


def place(substance: int, phase: int = -1, change: int = -1) -> tuple[Any, Any, Any]:
    """Where parameters are, as arguments of the library's functions."""
    return _long(substance), _long(phase), _long(change)


def carried(name: str) -> Path:
    """Where a wheel carries a file of the library's build."""
    return Path(__file__).resolve().parent / "_lib" / name


def library_path(given: str | None = None) -> str:
    """The library to load: the one given, of QMDB_LIBRARY, of the wheel, or the system's."""
    named = given or os.environ.get(LIBRARY_VARIABLE)
    if named:
        return named
    inside = carried(LIBRARY)
    return str(inside) if inside.exists() else LIBRARY


@functools.cache
def load_library(path: str) -> ctypes.CDLL:
    """Loads the library and declares its functions; once for each path.

    Raises:
        LibraryNotFoundError: it cannot be loaded, or is another library.
    """
    if ctypes.sizeof(c_long) != 8 or ctypes.sizeof(ctypes.c_wchar) != 4 or sys.byteorder != "little":
        raise LibraryNotFoundError("the library exists for 64-bit Linux only")
    try:
        library = ctypes.CDLL(path)
        for name, arguments in _SIGNATURES.items():
            function = getattr(library, name)
            function.argtypes, function.restype = arguments, c_int
    except (OSError, AttributeError) as error:
        raise LibraryNotFoundError(
            f"cannot load the library {path}: {error}; install the library (libqmdatabase1), or a wheel of "
            f"qmdatabase that carries it, or set {LIBRARY_VARIABLE} to its file"
        ) from error
    return library


def _release(library: ctypes.CDLL, number: int, log_directory: str, process: int) -> None:
    library.qmdbClose(number)
    # A forked child leaves the log to its parent.
    if os.getpid() == process:
        shutil.rmtree(log_directory, ignore_errors=True)


class Connection:
    """An open database: the library's calls, one at a time, with exceptions for codes.

    The log lies in a directory of its own outside the database, which goes when the database is closed.
    """

    def __init__(self, path: str, language: str, library: str | None, log_info: bool) -> None:
        self._library = load_library(library_path(library))
        self._lock = threading.RLock()
        self._path = path
        self._pointer: Any = c_void_p()
        self._log_read = 0
        self._log_directory = tempfile.mkdtemp(prefix="qmdatabase-")
        self._number = c_long(-1)
        try:
            code = self._library.qmdbOpen(path, language, self._log_directory, log_info, byref(self._number))
            self._opening_errors = self._new_errors()
            if code < 0:
                raise status_error(f'cannot open the database "{path}"', code, _last(self._opening_errors))
        except BaseException:
            shutil.rmtree(self._log_directory, ignore_errors=True)
            raise
        self._id = self._number.value
        self._close = weakref.finalize(self, _release, self._library, self._id, self._log_directory, os.getpid())
        # Values are many. Functions without argument types take arguments made once as they are, which saves 0.3 µs,
        # and one that only frees memory need not let other threads run.
        self._get_value = self._library["qmdbGetParamValue"]
        self._destroy_value = ctypes.PyDLL(None, handle=self._library._handle)["qmdbDestroyParameterData"]
        self._id_argument = _long(self._id)
        self._pointer_argument = c_void_p.from_param(ctypes.addressof(self._pointer))

    def close(self) -> None:
        """Closes the database; closing again does nothing."""
        with self._lock:
            self._id = -1
            self._id_argument = _long(-1)
            self._close()

    @property
    def closed(self) -> bool:
        return not self._close.alive

    @property
    def opening_errors(self) -> list[str]:
        """What the log told of an opening that succeeded, without the prefix of errors."""
        return self._opening_errors

    def log(self) -> str:
        """The whole log up to now."""
        self._require_open()
        try:
            return (Path(self._log_directory) / LOG_FILE).read_text(encoding="utf-8", errors="replace")
        except FileNotFoundError:
            return ""

    def _new_errors(self) -> list[str]:
        """The errors in the log since the last time."""
        try:
            with open(os.path.join(self._log_directory, LOG_FILE), "rb") as log:
                log.seek(self._log_read)
                added = log.read()
        except OSError:
            return []
        self._log_read += len(added)
        lines = added.decode("utf-8", "replace").split("\n")
        return [line[len(ERROR_PREFIX) :] for line in lines if line.startswith(ERROR_PREFIX)]

    def _require_open(self) -> None:
        if not self._close.alive:
            raise ClosedDatabaseError(
                f'the database "{self._path}" is closed; values and lists read before stay usable, '
                "anything else needs it opened again"
            )

    def _fail(self, action: str, code: int) -> None:
        self._require_open()
        raise status_error(f'{action} ("{self._path}")', code, _last(self._new_errors()))

    def list(self, function: str, *ids: int) -> Sequence[tuple[Any, ...]]:
        """The records of a list; none when there is nothing of the kind."""
        record, release = _LISTS[function]
        pointer, count = c_void_p(), c_int()
        with self._lock:
            code = getattr(self._library, function)(self._id, *ids, byref(pointer), byref(count))
            try:
                if code not in (0, EMPTY):
                    self._fail(f"{function} failed", code)
                if not pointer.value:
                    return []
                return [
                    self._with_components(row) if record is _records.MATTER else row
                    for row in _records.read_array(pointer.value, count.value, record)
                ]
            finally:
                if pointer.value:
                    getattr(self._library, release)(byref(pointer))

    @staticmethod
    def _with_components(matter: tuple[Any, ...]) -> tuple[Any, ...]:
        *fields, count, pointer = matter
        return *fields, tuple(_records.read_array(pointer, count, _records.COMPONENT)) if pointer else ()

    def value(self, parameter: Parameter) -> _records.RawFields:
        """Reads the data file of a parameter. Each call reads it."""
        pointer = self._pointer_argument
        with self._lock:
            substance, phase, change = parameter.owner._place
            code = self._get_value(self._id_argument, substance, phase, change, _long(parameter.id), pointer)
            if code:
                self._fail(f"cannot read {parameter.title}", code)
            try:
                return _records.read_value(self._pointer.value)
            finally:
                self._destroy_value(pointer)

    def add(self, action: str, function: str, *arguments: Any) -> int:
        """Adds something; the result is its ID where the function gives one."""
        with self._lock:
            result: int = getattr(self._library, function)(self._id, *arguments)
            if result < 0:
                self._fail(action, result)
            return result


def _last(lines: list[str]) -> str | None:
    return lines[-1] if lines else None


def check_path(path: str) -> None:
    """Refuses what the library would open as an empty database.

    Raises:
        ValueError: a NUL in the path, or characters that the locale cannot express.
        OSError: the directory does not exist, or cannot be listed.
    """
    if "\0" in path:
        raise ValueError("the path of a database holds a NUL character")
    with os.scandir(path):
        pass
    if not path.isascii() and _in_locale(path) != os.fsencode(path):
        raise ValueError(
            f"the process's locale cannot express the path {path!r}; start Python with LC_ALL=C.UTF-8, or "
            'call locale.setlocale(locale.LC_CTYPE, "C.UTF-8") first'
        )


def _in_locale(text: str) -> bytes | None:
    """What the C library makes of a text, as the database's library will."""
    size = 6 * len(text) + 1
    buffer = ctypes.create_string_buffer(size)
    convert = ctypes.CDLL(None).wcstombs
    convert.argtypes, convert.restype = [ctypes.c_char_p, c_wchar_p, ctypes.c_size_t], ctypes.c_size_t
    length: int = convert(buffer, text, size)
    return buffer.raw[:length] if length <= size else None
