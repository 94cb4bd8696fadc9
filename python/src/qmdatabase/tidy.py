"""All numbers of a database in long form, as `qmdb export` writes them."""

from __future__ import annotations

import contextlib
import os
import tempfile
import warnings
from collections.abc import Iterator, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy as np
import numpy.typing as npt

from . import _records
from ._command import ParameterNotes, SubstanceNotes
from ._extras import extra
from ._records import RawValue
from .errors import DatabaseWarning, StatusError
from .value import COMPONENTS

if TYPE_CHECKING:
    import pandas
    import pyarrow

    from .database import Database
    from .entities import Owner, Parameter, Substance

ROWS_PER_GROUP = 1 << 18
MOST_PARTITIONS = 100_000

# The columns in their order. What a row lacks is missing in the nullable ones; other texts may be empty.
IDS = ("substance_id", "phase_id", "change_id", "change_from", "change_to", "parameter_id")
NULLABLE_IDS = ("phase_id", "change_id", "change_from", "change_to")
TEXTS = (
    *("substance", "formula", "cas", "aliases", "composition", "composition_ids"),
    *("phase", "state", "change"),
    *("parameter", "symbol", "units", "type", "source", "accuracy", "comments"),
    *("first_argument_name", "first_argument_units", "second_argument_name", "second_argument_units", "component"),
)
NUMBERS = ("first_argument", "second_argument", "value")
COLUMNS = (
    *("substance_id", "substance", "formula", "cas", "aliases", "composition", "composition_ids"),
    *("phase_id", "phase", "state", "change_id", "change", "change_from", "change_to"),
    *("parameter_id", "parameter", "symbol", "units", "type", "source", "accuracy", "comments"),
    *("first_argument_name", "first_argument_units", "second_argument_name", "second_argument_units"),
    *("first_argument", "second_argument", "component", "value"),
)
# What only the command tells.
ANNOTATIONS = frozenset(
    (
        "formula",
        "cas",
        "aliases",
        "symbol",
        "source",
        "accuracy",
        "comments",
        *(one for one in TEXTS if "argument" in one),
    )
)
ALIAS_SEPARATOR = ";"


def columns(annotations: bool) -> list[str]:
    """The names of the columns, with or without what only the command tells."""
    return [one for one in COLUMNS if annotations or one not in ANNOTATIONS]


class _Item(NamedTuple):
    """A value with what has it."""

    substance: Substance
    owner: Owner
    parameter: Parameter
    raw: RawValue

    @property
    def rows(self) -> int:
        return _numbers(self.raw)


def _numbers(raw: RawValue) -> int:
    """How many numbers a value has, arguments left out."""
    numbers = len(raw.rows) // _records.NUMBER
    if raw.type == _records.CONSTANT:
        return numbers
    return numbers // 4 * 3 if raw.vector else numbers // 2


class _Texts(NamedTuple):
    """A column of texts: -1 where there is none."""

    codes: npt.NDArray[np.int32]
    categories: list[str]


class _Numbers(NamedTuple):
    """A column of numbers, and where there is one."""

    values: npt.NDArray[Any]
    present: npt.NDArray[np.bool_] | None


def _items(database: Database, ids: Sequence[int] | None = None) -> Iterator[_Item]:
    """All values, or those of some substances, in the order of the export.

    What is read is kept nowhere, as a database may be large.
    """
    for substance in database.substances if ids is None else [database.substances[number] for number in ids]:
        owners: tuple[Owner, ...] = (substance, *substance._read_phases(), *substance._read_changes())
        for owner in owners:
            for parameter in owner._read_parameters():
                try:
                    raw = RawValue(*database._calls.value(parameter))
                except StatusError as error:
                    warnings.warn(f"{parameter.title} is left out: {error}", DatabaseWarning, 4)
                else:
                    yield _Item(substance, owner, parameter, raw)


def _batches(database: Database, rows: float) -> Iterator[list[_Item]]:
    """Values whose rows together reach a number, but for the last."""
    batch: list[_Item] = []
    taken = 0
    for item in _items(database):
        batch.append(item)
        taken += item.rows
        if taken >= rows:
            yield batch
            batch, taken = [], 0
    if batch:
        yield batch


class _Tidy:
    """Makes the columns of values."""

    def __init__(self, database: Database, annotations: bool) -> None:
        self._database = database
        self._annotations = annotations
        if annotations:
            database._annotations.start()
        self._compositions: dict[int, tuple[str, str]] = {}

    def columns(self, items: list[_Item]) -> dict[str, _Texts | _Numbers]:
        """The columns of some values."""
        counts = np.array([item.rows for item in items], dtype=np.int64)
        shared = [self._shared(item) for item in items]
        made = {**self._numbers(items, counts)}
        for index, name in enumerate(_SHARED):
            entries = [one[index] for one in shared]
            made[name] = _repeated_ids(entries, counts) if name in IDS else _repeated_texts(entries, counts)
        return {name: made[name] for name in columns(self._annotations)}

    def _shared(self, item: _Item) -> tuple[Any, ...]:
        """What all rows of a value share, in the order of `_SHARED`."""
        substance, owner, parameter, _ = item
        phase: Any = owner if owner._kind == "phase" else None
        change: Any = owner if owner._kind == "change" else None
        plain = (
            substance.id, substance.name, *self._composition(substance),
            phase and phase.id, phase and phase.name, phase and phase.state,
            *((change.id, change.name, change.phase1_id, change.phase2_id) if change else (None,) * 4),
            parameter.id, parameter.name, parameter.units, parameter.type,
        )  # fmt: skip
        return (*plain, *self._annotated(item)) if self._annotations else (*plain, *_NOTHING)

    def _annotated(self, item: _Item) -> tuple[Any, ...]:
        substance: SubstanceNotes = item.substance._notes
        notes: ParameterNotes = item.parameter._notes
        return (
            substance.formula or None, substance.cas or None, ALIAS_SEPARATOR.join(substance.aliases) or None,
            notes.symbol or None, notes.source or None, notes.accuracy or None, notes.comments,
            *_pair(notes.argument_names), *_pair(notes.argument_units),
        )  # fmt: skip

    def _composition(self, substance: Substance) -> tuple[str | None, str | None]:
        if not substance.composition:
            return None, None
        if substance.id not in self._compositions:
            self._compositions[substance.id] = composition_text(substance), composition_ids(substance)
        return self._compositions[substance.id]

    @staticmethod
    def _numbers(items: list[_Item], counts: npt.NDArray[np.int64]) -> dict[str, _Texts | _Numbers]:
        total = int(counts.sum())
        first, second = np.full(total, np.nan), np.full(total, np.nan)
        value, component = np.empty(total), np.full(total, -1, dtype=np.int32)
        begin = 0
        for (*_, raw), count in zip(items, counts.tolist()):
            part = slice(begin, begin + count)
            begin += count
            numbers = np.frombuffer(raw.rows, dtype="<f8")
            if raw.vector:
                component[part].reshape(-1, 3)[:] = (0, 1, 2)
            if raw.type == _records.CONSTANT:
                value[part] = numbers
                continue
            repeats = 3 if raw.vector else 1
            rows = numbers.reshape(-1, 1 + repeats)
            value[part].reshape(-1, repeats)[:] = rows[:, 1:]
            if raw.type <= _records.TABLE_P:
                first[part].reshape(-1, repeats)[:] = rows[:, :1]
            else:
                second[part].reshape(-1, repeats)[:] = rows[:, :1]
                firsts, lengths = zip(*raw.subtables)
                first[part] = np.repeat(firsts, np.array(lengths) * repeats)
        arguments = np.repeat([_argument_count(item.raw) for item in items], counts)
        return {
            "first_argument": _Numbers(first, arguments > 0),
            "second_argument": _Numbers(second, arguments > 1),
            "component": _Texts(component, list(COMPONENTS)),
            "value": _Numbers(value, None),
        }


_SHARED = (
    *("substance_id", "substance", "composition", "composition_ids", "phase_id", "phase", "state"),
    *("change_id", "change", "change_from", "change_to"),
    *(
        "parameter_id",
        "parameter",
        "units",
        "type",
        "formula",
        "cas",
        "aliases",
        "symbol",
        "source",
        "accuracy",
        "comments",
    ),
    *("first_argument_name", "second_argument_name", "first_argument_units", "second_argument_units"),
)
_NOTHING = (None,) * len(ANNOTATIONS)


def _argument_count(raw: RawValue) -> int:
    return (raw.type > _records.CONSTANT) + (raw.type > _records.TABLE_P)


def _pair(texts: tuple[str, ...]) -> tuple[str | None, str | None]:
    first, second, *_ = (*texts, "", "")
    return first or None, second or None


def _fraction_text(fraction: float) -> str:
    text = repr(fraction)
    return text[:-2] if text.endswith(".0") else text


def composition_text(substance: Substance) -> str:
    """A mixture in words: "0.75 Water + 0.25 Salt"."""
    parts = []
    for one in substance.composition:
        known = substance.database.substances.get(one.substance_id)
        parts.append(f"{_fraction_text(one.fraction)} {known.name if known else f'{one.substance_id} (missing)'}")
    return " + ".join(parts)


def composition_ids(substance: Substance) -> str:
    """A mixture by IDs: "0:0.75;2:0.25"."""
    return ";".join(f"{one.substance_id}:{_fraction_text(one.fraction)}" for one in substance.composition)


def _repeated_ids(entries: list[int | None], counts: npt.NDArray[np.int64]) -> _Numbers:
    present = np.repeat(np.array([one is not None for one in entries], dtype=np.bool_), counts)
    return _Numbers(np.repeat(np.array([one or 0 for one in entries], dtype=np.int64), counts), present)


def _repeated_texts(entries: list[str | None], counts: npt.NDArray[np.int64]) -> _Texts:
    places: dict[str, int] = {}
    codes = [-1 if one is None else places.setdefault(one, len(places)) for one in entries]
    return _Texts(np.repeat(np.array(codes, dtype=np.int32), counts), list(places))


def to_dataframe(database: Database, annotations: bool, ids: Sequence[int] | None = None) -> pandas.DataFrame:
    """See `Database.to_dataframe`; with IDs only these substances."""
    with extra("pandas"):
        import pandas as pd

    tidy = _Tidy(database, annotations)
    made = tidy.columns(list(_items(database, ids)))

    def series(name: str, column: _Texts | _Numbers) -> Any:
        if isinstance(column, _Texts):
            return pd.Categorical.from_codes(column.codes, pd.Index(column.categories, dtype=object))
        if name in NULLABLE_IDS and column.present is not None:
            return pd.arrays.IntegerArray(column.values, ~column.present)
        return column.values

    return pd.DataFrame({name: series(name, column) for name, column in made.items()}, copy=False)


def _arrow_table(made: dict[str, _Texts | _Numbers]) -> pyarrow.Table:
    with extra("arrow"):
        import pyarrow as pa

    def array(column: _Texts | _Numbers) -> Any:
        if isinstance(column, _Texts):
            indices = pa.array(column.codes, mask=column.codes < 0)
            return pa.DictionaryArray.from_arrays(indices, pa.array(column.categories, pa.string()))
        return pa.array(column.values, mask=None if column.present is None else ~column.present, from_pandas=False)

    return pa.table({name: array(column) for name, column in made.items()})


def arrow_tables(database: Database, annotations: bool, rows: float = ROWS_PER_GROUP) -> Iterator[pyarrow.Table]:
    """Arrow tables of about so many rows each; one without rows for a database without values."""
    tidy = _Tidy(database, annotations)
    empty = True
    for batch in _batches(database, rows):
        empty = False
        yield _arrow_table(tidy.columns(batch))
    if empty:
        yield _arrow_table(tidy.columns([]))


def to_arrow(database: Database, annotations: bool) -> pyarrow.Table:
    """See `Database.to_arrow`."""
    (table,) = arrow_tables(database, annotations, float("inf"))
    return table


def to_parquet(database: Database, path: str, annotations: bool, rows_per_group: int) -> int:
    """See `Database.to_parquet`."""
    with extra("arrow"):
        import pyarrow.parquet as pq

    rows = 0
    with _complete_or_not_at_all(path) as unfinished, contextlib.ExitStack() as stack:
        writer = None
        for table in arrow_tables(database, annotations, rows_per_group):
            if writer is None:
                writer = stack.enter_context(pq.ParquetWriter(unfinished, table.schema))
            writer.write_table(table, row_group_size=rows_per_group)
            rows += table.num_rows
    return rows


def to_partitions(database: Database, path: str, annotations: bool, rows_per_group: int) -> int:
    """See `Database.to_parquet`, with `partitioned`."""
    with extra("arrow"):
        import pyarrow as pa
        import pyarrow.dataset as ds

    rows = 0

    def batches() -> Iterator[Any]:
        nonlocal rows
        for table in arrow_tables(database, annotations, rows_per_group):
            rows += table.num_rows
            yield from table.cast(schema).to_batches()

    schema = _plain_schema(annotations)
    partitioning = ds.partitioning(pa.schema([schema.field("parameter")]), flavor="hive")
    os.mkdir(path)
    try:
        with tempfile.TemporaryDirectory(dir=os.path.dirname(path) or ".") as unfinished:
            ds.write_dataset(
                batches(),
                unfinished,
                schema=schema,
                format="parquet",
                partitioning=partitioning,
                max_rows_per_group=rows_per_group,
                max_rows_per_file=0,
                max_partitions=MOST_PARTITIONS,
            )
            os.chmod(unfinished, os.stat(path).st_mode)
            os.replace(unfinished, path)
            os.mkdir(unfinished)
    except BaseException:
        with contextlib.suppress(OSError):
            os.rmdir(path)
        raise
    return rows


def _plain_schema(annotations: bool) -> Any:
    """The columns with texts as such, as the dictionaries of different parts differ."""
    with extra("arrow"):
        import pyarrow as pa

    types = {**dict.fromkeys(IDS, pa.int64()), **dict.fromkeys(NUMBERS, pa.float64())}
    return pa.schema([(name, types.get(name, pa.string())) for name in columns(annotations)])


@contextlib.contextmanager
def _complete_or_not_at_all(path: str) -> Iterator[str]:
    """A name to write under; what has been written then gets the path's name."""
    handle, unfinished = tempfile.mkstemp(prefix=f".{os.path.basename(path)}.", dir=os.path.dirname(path) or ".")
    os.close(handle)
    try:
        yield unfinished
        mask = os.umask(0)
        os.umask(mask)
        os.chmod(unfinished, 0o666 & ~mask)
        os.replace(unfinished, path)
    except BaseException:
        os.unlink(unfinished)
        raise
