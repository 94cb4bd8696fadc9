"""Many databases, or the parts of one, as a Dask data frame: each worker opens what it reads itself.

import qmdatabase.dask

frame = qmdatabase.dask.read(["plant-a", "plant-b"])
frame[frame.parameter == "Density"].groupby("database").value.mean().compute()
"""

from __future__ import annotations

import os
from collections.abc import Sequence
from typing import TYPE_CHECKING, Any

from . import tidy
from ._extras import extra
from .database import Database, open_database

with extra("dask"):
    import dask.dataframe as dd
    import pandas as pd

if TYPE_CHECKING:
    from collections.abc import Iterable

DATABASE = "database"


def read(
    paths: str | os.PathLike[str] | Iterable[str | os.PathLike[str]],
    *,
    language: str = "en",
    annotations: bool = True,
    substances_per_part: int | None = None,
    library: str | None = None,
    command: str | None = None,
) -> dd.DataFrame:
    """All numbers of one or several databases in long form, as `Database.to_dataframe` gives them.

    A first column, "database", is the path as it was given. Each part is read by the worker that needs it, which opens
    the database there: the paths must be the same on all machines. Texts are plain strings here, not categories,
    since the categories of different parts differ.

    Args:
        paths: one directory or several.
        language: of the names; see `qmdatabase.open`.
        annotations: also the columns that only the command `qmdb` tells. Each part runs it once, for its whole
            database; give False where a database is split into many parts.
        substances_per_part: at most so many substances in a part; without it each database is a part. The database
            is opened here as well, to list its substances.
        library, command: see `qmdatabase.open`.

    Raises:
        DatabaseNotFoundError: a directory does not exist here.
        ValueError: no path is given.
    """
    given = [paths] if isinstance(paths, (str, os.PathLike)) else list(paths)
    how = {"language": language, "library": library, "command": command}
    parts = [
        (os.fspath(path), part, how, annotations)
        for path in given
        for part in _parts(os.fspath(path), substances_per_part, how)
    ]
    if not parts:
        raise ValueError("give at least one database")
    return dd.from_map(_read_part, parts, meta=_empty(annotations))


def _parts(path: str, substances: int | None, how: dict[str, Any]) -> list[list[int] | None]:
    """The IDs of each part's substances; None for all."""
    with open_database(path, **how) as database:
        if substances is None:
            return [None]
        ids = [one.id for one in database.substances]
        return [ids[begin : begin + substances] for begin in range(0, len(ids), substances)] or [None]


def _read_part(part: tuple[str, Sequence[int] | None, dict[str, Any], bool]) -> pd.DataFrame:
    path, ids, how, annotations = part
    with open_database(path, **how) as database:
        return _with_path(_frame(database, annotations, ids), path)


def _frame(database: Database, annotations: bool, ids: Sequence[int] | None) -> pd.DataFrame:
    frame = tidy.to_dataframe(database, annotations, ids)
    texts = {name: "string" for name in frame.columns if name in tidy.TEXTS}
    return frame.astype(texts)


def _with_path(frame: pd.DataFrame, path: str) -> pd.DataFrame:
    frame.insert(0, DATABASE, pd.Series(path, index=frame.index, dtype="string"))
    return frame


def _empty(annotations: bool) -> pd.DataFrame:
    """A frame of the right columns and types, without rows."""
    types = dict.fromkeys(tidy.TEXTS, "string")
    types |= {name: "Int64" if name in tidy.NULLABLE_IDS else "int64" for name in tidy.IDS}
    types |= dict.fromkeys(tidy.NUMBERS, "float64")
    return pd.DataFrame(
        {name: pd.Series(dtype=types.get(name, "string")) for name in (DATABASE, *tidy.columns(annotations))}
    )
