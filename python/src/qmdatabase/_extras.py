"""Packages that only some functions need."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import contextmanager


@contextmanager
def extra(name: str) -> Iterator[None]:
    """Says how to install what an import asks for.

    Raises:
        ModuleNotFoundError: the import asks for a package that is not there.
    """
    try:
        yield
    except ModuleNotFoundError as error:
        raise ModuleNotFoundError(
            f"this needs the package {error.name}: pip install 'qmdatabase[{name}]'", name=error.name
        ) from None
