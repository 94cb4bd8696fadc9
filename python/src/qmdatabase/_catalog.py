"""Lists whose members are found by name or ID."""

from __future__ import annotations

import difflib
import functools
import operator
from collections.abc import Iterator, Sequence
from typing import Callable, Generic, Protocol, TypeVar, Union

from .errors import AmbiguousNameError, CommandError, UnknownNameError

MOST_SHOWN = 6


class Named(Protocol):
    @property
    def id(self) -> int: ...

    @property
    def name(self) -> str: ...


Member = TypeVar("Member", bound=Named)
Group = TypeVar("Group", str, int)
Key = Union[str, int]


def label(member: Named) -> str:
    """The name of something with its ID."""
    return f"{member.name or 'without name'} ({member.id})"


def _grouped(members: Sequence[Member], key: Callable[[Member], Group]) -> dict[Group, list[Member]]:
    groups: dict[Group, list[Member]] = {}
    for one in members:
        groups.setdefault(key(one), []).append(one)
    return groups


def _no_other_names(member: object) -> Sequence[str]:
    return ()


class Catalog(Generic[Member]):
    """An unchanging list in ascending order of ID, whose members are looked up by name or ID.

    `catalog["Copper"]` finds the exact display name first, then the number ("3"), then the name without
    regard to letter case, and last any other name (alias, formula, CAS number or symbol), for which alone the
    command `qmdb` is needed. `catalog[3]` is what has the *ID* 3, not a position; `list(catalog)[3]` is a
    position.
    """

    def __init__(
        self,
        members: Sequence[Member],
        kind: str,
        other_names: Callable[[Member], Sequence[str]] = _no_other_names,
    ) -> None:
        self._members = tuple(members)
        self._kind = kind
        self._other_names = other_names

    def __len__(self) -> int:
        return len(self._members)

    def __iter__(self) -> Iterator[Member]:
        return iter(self._members)

    def __contains__(self, key: object) -> bool:
        if not isinstance(key, (str, int)):
            return key in self._members
        try:
            return bool(self._fitting(key))
        except CommandError:
            return False

    def __getitem__(self, key: Key) -> Member:
        """The member of this name or ID.

        Raises:
            UnknownNameError: there is none; the message gives near matches. It is a KeyError.
            AmbiguousNameError: the name is that of several. It is a KeyError.
        """
        try:
            found = self._fitting(key)
        except CommandError as error:
            raise UnknownNameError(f"{self._unknown(key)}; other names could not be looked at: {error}") from None
        if not found:
            raise UnknownNameError(self._unknown(key))
        if len(found) > 1:
            several = ", ".join(label(one) for one in found)
            raise AmbiguousNameError(f'"{key}" is the name of several: {several}; give the ID')
        return found[0]

    def get(self, key: Key, default: Member | None = None) -> Member | None:
        """The member of this name or ID, or the default when there is none."""
        try:
            return self[key]
        except UnknownNameError:
            return default

    @property
    def names(self) -> tuple[str, ...]:
        """The display names."""
        return tuple(one.name for one in self._members)

    def __repr__(self) -> str:
        shown = ", ".join(label(one) for one in self._members[:MOST_SHOWN])
        more = len(self) - MOST_SHOWN
        kind = self._kind if len(self) == 1 else f"{self._kind}s"
        return f"<{len(self)} {kind}: {shown}{f' and {more} more' if more > 0 else ''}>"

    @functools.cached_property
    def _by_id(self) -> dict[int, list[Member]]:
        return _grouped(self._members, lambda one: one.id)

    @functools.cached_property
    def _by_name(self) -> dict[str, list[Member]]:
        return _grouped(self._members, lambda one: one.name)

    @functools.cached_property
    def _by_folded_name(self) -> dict[str, list[Member]]:
        return _grouped(self._members, lambda one: one.name.casefold())

    def _fitting(self, key: Key) -> list[Member]:
        if not isinstance(key, str):
            return self._by_id.get(operator.index(key), [])
        return (
            self._by_name.get(key)
            or (self._by_id.get(int(key)) if key.isdecimal() else None)
            or self._by_folded_name.get(key.casefold())
            or self._with_other_name(lambda name: name == key)
            or self._with_other_name(lambda name: name.casefold() == key.casefold())
        )

    def _with_other_name(self, fits: Callable[[str], bool]) -> list[Member]:
        return [one for one in self._members if any(map(fits, self._other_names(one)))]

    def _unknown(self, key: Key) -> str:
        if not self._members:
            return f"there is no {self._kind}, so none is called {key!r}"
        labels = {one.name.casefold(): label(one) for one in self._members}
        wanted = str(key).casefold()
        near = [text for name, text in labels.items() if wanted and wanted in name]
        near += [labels[name] for name in difflib.get_close_matches(wanted, labels, MOST_SHOWN)]
        if near:
            return f"no {self._kind} is called {key!r}; near matches: {', '.join(dict.fromkeys(near[:MOST_SHOWN]))}"
        more = len(self) - MOST_SHOWN
        shown = ", ".join(label(one) for one in self._members[:MOST_SHOWN])
        return f"no {self._kind} is called {key!r}; there are: {shown}{f' and {more} more' if more > 0 else ''}"
