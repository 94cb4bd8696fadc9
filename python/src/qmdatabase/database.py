"""An open database."""

from __future__ import annotations

import os
import threading
import warnings
from collections.abc import Iterator
from typing import TYPE_CHECKING, Any, Callable, TypeVar

from . import _additions, tidy
from ._catalog import Catalog, Key
from ._command import Annotations
from ._native import Connection, check_path
from .entities import Component, Composition, Description, Owner, Parameter, Phase, PhaseChange, Substance
from .errors import ClosedDatabaseError, DatabaseAccessError, DatabaseNotFoundError, DatabaseWarning

if TYPE_CHECKING:
    import pandas
    import pyarrow

Thing = TypeVar("Thing")


class Database:
    """A database, opened by `qmdatabase.open`. It is a context manager that closes itself.

    Its calls are made one at a time, so that threads may share it; threads with a database each run side by
    side. Values and lists that were read stay usable when it is closed; what still has to be read raises
    `ClosedDatabaseError`. Pickling it pickles how to open it: the copy opens the directory when it is first
    used.

    Attributes:
        path: the absolute path of its directory.
        language: the language of its names.
    """

    def __init__(
        self,
        path: str | bytes | os.PathLike[str] | os.PathLike[bytes],
        language: str = "en",
        *,
        library: str | None = None,
        command: str | None = None,
        log_info: bool = False,
    ) -> None:
        self.path = os.path.abspath(os.fsdecode(path))
        self.language = language
        self._how = (library, command, log_info)
        self._prepare()
        self._connection: Connection | None = self._open()

    def _prepare(self) -> None:
        self._lock = threading.RLock()
        self._lists: dict[object, Any] = {}
        self._annotations = Annotations(self.path, self.language, self._how[1])

    def _open(self) -> Connection:
        try:
            check_path(self.path)
        except PermissionError as error:
            raise DatabaseAccessError(f'the directory "{self.path}" may not be listed: {error.strerror}') from None
        except OSError as error:
            raise DatabaseNotFoundError(f'there is no database "{self.path}": {error.strerror}') from None
        if "\0" in self.language:
            raise ValueError("the language holds a NUL character")
        library, _, log_info = self._how
        connection = Connection(self.path, self.language, library, log_info)
        # A database may do without string tables, though the log tells of each that is missing.
        errors = [line for line in connection.opening_errors if not _is_missing_table(line)]
        if errors:
            warnings.warn(f'the database "{self.path}" is not whole: ' + "; ".join(errors), DatabaseWarning, 4)
        return connection

    def __getstate__(self) -> dict[str, Any]:
        return {"path": self.path, "language": self.language, "_how": self._how}

    def __setstate__(self, state: dict[str, Any]) -> None:
        self.__dict__.update(state)
        self._prepare()
        self._connection = None

    @property
    def _calls(self) -> Connection:
        """The library's calls; opens a database that has come out of a pickle."""
        if self._connection is None:
            with self._lock:
                if self._connection is None:
                    self._connection = self._open()
        return self._connection

    def close(self) -> None:
        """Closes the database and frees what it holds in memory. Closing again does nothing."""
        self._annotations.stop()
        self._calls.close()

    @property
    def closed(self) -> bool:
        """Whether it has been closed."""
        return self._connection is not None and self._connection.closed

    def __enter__(self) -> Database:
        if self.closed:
            raise ClosedDatabaseError(f'the database "{self.path}" is closed; open it again')
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<{'closed ' if self.closed else ''}database {self.path}>"

    @property
    def log(self) -> str:
        """The library's log since the database was opened."""
        return self._calls.log()

    def _cached(self, key: object, read: Callable[[], Thing]) -> Thing:
        """A list, read once: nothing but additions through this object changes what an open database shows."""
        with self._lock:
            if key not in self._lists:
                self._lists[key] = read()
            found: Thing = self._lists[key]
            return found

    def _changed(self, *keys: object) -> None:
        with self._lock:
            for key in keys:
                self._lists.pop(key, None)
            self._annotations.forget()

    @property
    def substances(self) -> Catalog[Substance]:
        """The substances, by name, ID, alias, formula or CAS number.

        Raises:
            NumberError, FormatError: the composition of some mixture cannot be read.
        """
        return self._cached(
            "substances",
            lambda: Catalog(
                [self._substance(row) for row in self._calls.list("qmdbGetMatters")],
                "substance",
                lambda one: [name for name in (*one.aliases, one.formula, one.cas) if name],
            ),
        )

    def _substance(self, row: tuple[Any, ...]) -> Substance:
        number, name, comment, mixture, components = row
        composition = tuple(Component(*one) for one in components)
        return Substance(self, number, number, name, comment, mixture != 0, composition)

    def __getitem__(self, key: Key) -> Substance:
        """The substance of this name, ID, alias, formula or CAS number; see `Catalog`."""
        return self.substances[key]

    def __contains__(self, key: object) -> bool:
        return key in self.substances

    def __iter__(self) -> Iterator[Substance]:
        return iter(self.substances)

    @property
    def phases(self) -> tuple[Phase, ...]:
        """The phases of all substances."""
        return tuple(phase for substance in self.substances for phase in substance.phases)

    @property
    def changes(self) -> tuple[PhaseChange, ...]:
        """The phase changes of all substances."""
        return tuple(change for substance in self.substances for change in substance.changes)

    @property
    def parameters(self) -> tuple[Parameter, ...]:
        """The parameters of all substances, their phases and phase changes."""
        return tuple(parameter for owner in self.owners() for parameter in owner.parameters)

    def owners(self) -> Iterator[Owner]:
        """Whatever may have parameters: each substance, then its phases, then its phase changes."""
        for substance in self.substances:
            yield substance
            yield from substance.phases
            yield from substance.changes

    @property
    def descriptions(self) -> Catalog[Description]:
        """The parameters that something has, or that may be added to a phase of a state that some phase has.

        The library tells of no others; those go by their ID.
        """
        return self._cached("descriptions", lambda: Catalog(self._read_descriptions(), "parameter"))

    def _read_descriptions(self) -> list[Description]:
        found: dict[int, Description] = {}
        for parameter in self.parameters:
            found[parameter.id] = Description(parameter.id, parameter.name, parameter.units)
        # What is offered for a phase depends on nothing but its state.
        for phase in {phase.state_number: phase for phase in self.phases}.values():
            found.update((one.id, one) for one in self._available(phase.substance_id, phase.id))
        return [found[number] for number in sorted(found)]

    def _available(self, substance: int, phase: int) -> list[Description]:
        rows = self._calls.list("qmdbGetAvailablePhaseParams", substance, phase)
        return [
            Description(number, name, units, scalar, vector, types, states)
            for number, name, units, _, scalar, vector, types, states in rows
        ]

    def add_substance(self, name: str, comment: str = "", composition: Composition | None = None) -> Substance:
        """Adds a substance; its descriptor is on the disk when the method returns.

        Give it a phase as well: when a database is opened, substances without phases are left out.

        Args:
            name: display name, at most 49 characters.
            comment: comment, at most 49 characters.
            composition: of a mixture, the molar fraction of each component, which is a substance, its name or
                its ID. The fractions are kept to six digits and add up to a value from 0.99 to 1.

        Raises:
            ValueError: a name, comment or fraction that cannot be stored.
            UnknownNameError: there is no such component.
            DuplicateNameError: a substance of this name exists.
            FractionsError: the fractions do not add up.
        """
        components = [
            Component(self.substances[one.id if isinstance(one, Substance) else one].id, float(fraction))
            for one, fraction in (composition or {}).items()
        ]
        number = _additions.add_substance(self, name, comment, components)
        return Substance(self, number, number, name, comment, bool(components), tuple(components))

    def to_dataframe(self, annotations: bool = True) -> pandas.DataFrame:
        """All numbers in long form, one row a number, with the columns of `qmdb export`.

        Texts are categories; numbers of phases and phase changes are missing (`pandas.NA`) where a row has
        none, arguments are NaN.

        Args:
            annotations: also the columns that only the command `qmdb` can tell. Without it they are left out
                and the command is not needed.

        Raises:
            CommandNotFoundError: annotations are asked for, and there is no command.

        A value that cannot be read is left out with a `DatabaseWarning`.
        """
        return tidy.to_dataframe(self, annotations)

    def to_arrow(self, annotations: bool = True) -> pyarrow.Table:
        """The same as an Arrow table; texts are dictionaries, and what a row lacks is null."""
        return tidy.to_arrow(self, annotations)

    def to_parquet(
        self,
        path: str | os.PathLike[str],
        annotations: bool = True,
        *,
        rows_per_group: int = tidy.ROWS_PER_GROUP,
        partitioned: bool = False,
    ) -> int:
        """Writes the same to a Parquet file, in row groups, so that memory does not grow with the database.

        What is written has its name when it is complete.

        Args:
            path: the file, which is replaced where it exists; or the directory, which must not.
            annotations: as for `to_dataframe`.
            rows_per_group: at most so many rows in a group.
            partitioned: write a directory with a folder for each parameter ("parameter=Density"), as Arrow, DuckDB,
                Spark and others read them, so that a query for one parameter opens its files only.

        Returns:
            The number of rows.
        """
        write = tidy.to_partitions if partitioned else tidy.to_parquet
        return write(self, os.path.abspath(path), annotations, rows_per_group)


def _is_missing_table(line: str) -> bool:
    return line.startswith("Cannot open file: ") and line.endswith(".lst")


def open_database(
    path: str | bytes | os.PathLike[str] | os.PathLike[bytes],
    language: str = "en",
    *,
    library: str | None = None,
    command: str | None = None,
    log_info: bool = False,
) -> Database:
    """Opens the database in a directory.

    Args:
        path: the directory, which must exist; an empty one is an empty database.
        language: names in the language of the string tables: "ru" takes those of "strings.lst", any other
            those of "default.lst".
        library: the file of the shared library, else that of the environment's QMDB_LIBRARY, the one that the
            wheel carries, or the system's.
        command: the command `qmdb`, which tells what the library does not, else that of QMDB_COMMAND, the
            wheel's, or the one on the PATH. It is not needed before such a thing is asked for.
        log_info: write informational lines to the log, too.

    Returns:
        The open database. The log goes to a private directory, not into the database.

    Raises:
        DatabaseNotFoundError: there is no such directory. It is a FileNotFoundError.
        DatabaseAccessError: it may not be listed. It is a PermissionError.
        ValueError: a NUL in the path, or characters that the locale cannot express.
        LibraryNotFoundError: the shared library cannot be loaded.
        StatusError: a descriptor cannot be read; the class tells why, `detail` which.

    What the library has left out, such as a substance without phases, is told by a `DatabaseWarning`.
    """
    return Database(path, language, library=library, command=command, log_info=log_info)
