"""Substances, their phases and phase changes, and the parameters that these have."""

from __future__ import annotations

import functools
from collections.abc import Iterator, Mapping
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any, Union

from . import _additions
from ._catalog import Catalog, Key, label
from ._command import ParameterNotes, SubstanceNotes
from ._native import place
from .errors import AmbiguousNameError, UnknownNameError
from .value import ARGUMENT_LETTERS, LETTERS, Value

if TYPE_CHECKING:
    from .database import Database

STATES = {0: "state not given", 1: "solid", 2: "liquid", 3: "gas"}


def state_text(number: int) -> str:
    """The word for an aggregate state, such as "solid"."""
    return STATES.get(number, f"unknown state {number}")


@dataclass(frozen=True)
class Component:
    """A component of a mixture.

    Attributes:
        substance_id: the component's ID, which the database may lack.
        fraction: molar fraction, mol/mol.
    """

    substance_id: int
    fraction: float


@dataclass(frozen=True)
class Description:
    """What the database says of a parameter wherever it may stand.

    Attributes:
        id: the parameter's ID.
        name: display name.
        units: units of the value.
        scalar: values may be scalars; None where nobody says, as nothing offers the parameter for a phase.
        vector: values may be vectors; None likewise.
        types: letters of the types that values may have ("CtpTX"); empty likewise.
        states: the aggregate states of phases that may have it: letters S, L and V.
    """

    id: int
    name: str
    units: str
    scalar: bool | None = None
    vector: bool | None = None
    types: str = ""
    states: str = ""


@dataclass(frozen=True, repr=False)
class Parameter:
    """A parameter that a substance, a phase or a phase change has. Its value is read when asked for.

    Attributes:
        owner: what has it.
        id: the ID of the parameter's description.
        name: display name; empty when nothing describes the ID.
        units: units of the value.
        type: "C", "t", "p", "T" or "X"; see `Value.type`.
        is_vector: whether the value is a vector.
    """

    owner: Owner
    id: int
    type_number: int = field(repr=False)
    is_vector: bool
    name: str
    units: str

    @property
    def type(self) -> str:
        """The letter of the type, as `Value.type`; "?" for an unknown one."""
        return LETTERS[self.type_number - 1] if 1 <= self.type_number <= len(LETTERS) else "?"

    @property
    def argument_letters(self) -> tuple[str, ...]:
        """The letters of the arguments, the first first."""
        return ARGUMENT_LETTERS.get(self.type, ())

    @property
    def title(self) -> str:
        """What it is of what: "Density of Water, phase Liquid"."""
        return f"{self.name or f'parameter {self.id}'} of {self.owner.title}"

    def value(self) -> Value:
        """Reads the value from its data file, anew with each call.

        Raises:
            StatusError: the file cannot be read, or is not laid out as it must be; the class tells which.
            ClosedDatabaseError: the database is closed.
        """
        database = self.owner.database
        calls = database._connection or database._calls
        return Value(self, calls.value(self))

    @property
    def _notes(self) -> ParameterNotes:
        owner = self.owner
        return owner.database._annotations.parameter(owner.substance_id, owner._kind, owner._own_id, self.id)

    @property
    def symbol(self) -> str:
        """The symbol, such as "k"; empty when there is none. Asks the command `qmdb`, as what follows does."""
        return self._notes.symbol

    @property
    def source(self) -> str:
        """Where the value is from."""
        return self._notes.source

    @property
    def accuracy(self) -> str:
        """How accurate the value is."""
        return self._notes.accuracy

    @property
    def comments(self) -> str:
        """The comment lines of the data file, with " | " between them."""
        return self._notes.comments

    @property
    def argument_names(self) -> tuple[str, ...]:
        """What the arguments are, such as "temperature"."""
        return self._notes.argument_names

    @property
    def argument_units(self) -> tuple[str, ...]:
        """The units of the arguments."""
        return self._notes.argument_units

    def __repr__(self) -> str:
        return f"<parameter {self.title}>"


@dataclass(frozen=True, repr=False)
class _Owner:
    """What has parameters."""

    database: Database = field(repr=False)
    substance_id: int
    id: int
    name: str

    _kind = "substance"
    _list = "qmdbGetMatterParams"

    @property
    def title(self) -> str:
        return self.name or f"{self._kind} {self.id}"

    @property
    def _own_id(self) -> int | None:
        return self.id

    @functools.cached_property
    def _place(self) -> tuple[Any, Any, Any]:
        """The IDs of substance, phase and phase change, made for the library's functions once."""
        return place(self.substance_id)

    def __getstate__(self) -> dict[str, Any]:
        return {name: one for name, one in self.__dict__.items() if name != "_place"}

    @property
    def _ids(self) -> tuple[int, ...]:
        return (self.substance_id, self.id)

    def _read_parameters(self: Any) -> list[Parameter]:
        return [Parameter(self, *row) for row in self.database._calls.list(self._list, *self._ids)]

    @property
    def parameters(self) -> Catalog[Parameter]:
        """The parameters, by name, ID or symbol."""
        return self.database._cached(
            (self._list, *self._ids),
            lambda: Catalog(self._read_parameters(), "parameter", lambda one: [one.symbol] if one.symbol else []),
        )

    def __getitem__(self, key: Key) -> Value:
        """Reads the value of a parameter, given by name, ID or symbol.

        Raises:
            UnknownNameError, AmbiguousNameError: see `Catalog`.
            StatusError: see `Parameter.value`.
        """
        try:
            return self.parameters[key].value()
        except UnknownNameError as error:
            raise UnknownNameError(f"{self.title}: {error}{self._elsewhere(key)}") from None

    def _elsewhere(self, key: Key) -> str:
        """A hint at who has a parameter that is not found here."""
        return ""

    def __iter__(self) -> Iterator[Parameter]:
        return iter(self.parameters)

    def __contains__(self, key: object) -> bool:
        return key in self.parameters

    def __repr__(self) -> str:
        return f"<{self._kind} {self.title} ({self.id})>"


@dataclass(frozen=True, repr=False)
class Substance(_Owner):
    """A substance.

    Attributes:
        database: the database that it is of.
        id: its ID, also as `substance_id`.
        name: display name.
        comment: comment.
        is_mixture: whether it is a mixture.
        composition: the components of a mixture.
    """

    comment: str = ""
    is_mixture: bool = False
    composition: tuple[Component, ...] = ()

    @property
    def _own_id(self) -> int | None:
        return None

    @property
    def _ids(self) -> tuple[int, ...]:
        return (self.id,)

    @property
    def _notes(self) -> SubstanceNotes:
        return self.database._annotations.substance(self.id)

    @property
    def formula(self) -> str:
        """The chemical formula; empty when none is given. Asks the command `qmdb`, as the next two do."""
        return self._notes.formula

    @property
    def aliases(self) -> tuple[str, ...]:
        """Other names."""
        return self._notes.aliases

    @property
    def cas(self) -> str:
        """The CAS number."""
        return self._notes.cas

    @property
    def phases(self) -> Catalog[Phase]:
        """The phases, by name or ID."""
        return self.database._cached(("phases", self.id), lambda: Catalog(self._read_phases(), "phase"))

    @property
    def changes(self) -> Catalog[PhaseChange]:
        """The phase changes, by name or ID."""
        return self.database._cached(("changes", self.id), lambda: Catalog(self._read_changes(), "phase change"))

    def _elsewhere(self, key: Key) -> str:
        having = ", ".join(label(one) for one in self.phases if key in one.parameters)
        return f"; phases that have it: {having}" if having else ""

    def _read_phases(self) -> list[Phase]:
        rows = self.database._calls.list("qmdbGetPhases", self.id)
        return [Phase(self.database, self.id, number, name, state, self) for number, name, state in rows]

    def _read_changes(self) -> list[PhaseChange]:
        rows = self.database._calls.list("qmdbGetPhaseChanges", self.id)
        return [
            PhaseChange(self.database, self.id, number, name, before, after, self)
            for number, name, before, after in rows
        ]

    @property
    def solid(self) -> Phase:
        """The only solid phase.

        Raises:
            UnknownNameError: there is none.
            AmbiguousNameError: there are several.
        """
        return self._only("solid")

    @property
    def liquid(self) -> Phase:
        """The only liquid phase; raises as `solid` does."""
        return self._only("liquid")

    @property
    def gas(self) -> Phase:
        """The only phase that is a gas; raises as `solid` does."""
        return self._only("gas")

    def _only(self, state: str) -> Phase:
        found = [one for one in self.phases if one.state == state]
        if len(found) == 1:
            return found[0]
        names = ", ".join(label(one) for one in found or self.phases)
        if found:
            raise AmbiguousNameError(f"{self.title} has several phases that are {state}: {names}; take one of .phases")
        raise UnknownNameError(f"no phase of {self.title} is {state}; its phases are: {names or 'none'}")

    def add_phase(self, name: str, state: str | int) -> Phase:
        """Adds a phase; it is on the disk when the method returns.

        Args:
            name: display name, at most 49 characters.
            state: "solid", "liquid" or "gas", or the number of the state.

        Raises:
            ValueError: a name or state that cannot be.
            DuplicateNameError: the substance has a phase of this name.
        """
        number = _additions.state_number(state)
        added = _additions.add_phase(self.database, self.id, name, number)
        return Phase(self.database, self.id, added, name, number, self)

    def add_phase_change(self, name: str, before: Phase | Key, after: Phase | Key) -> PhaseChange:
        """Adds a phase change from one phase to another; it is on the disk when the method returns.

        Raises:
            UnknownNameError: there is no such phase.
            DuplicateNameError: the substance has a phase change of this name.
        """
        first, second = (self.phases[one.id if isinstance(one, Phase) else one].id for one in (before, after))
        added = _additions.add_change(self.database, self.id, name, first, second)
        return PhaseChange(self.database, self.id, added, name, first, second, self)

    def add_parameter(self, parameter: Key | Description, values: Any, **arguments: Any) -> Parameter:
        """Adds a parameter of the substance itself; see `Phase.add_parameter`."""
        return _additions.add_parameter(self, parameter, values, arguments)


@dataclass(frozen=True, repr=False)
class _Part(_Owner):
    """What belongs to a substance."""

    @property
    def title(self) -> str:
        return f"{self.substance.title}, {self._kind} {self.name or self.id}"

    def __repr__(self) -> str:
        return f"<{self.title} ({self.id})>"

    if TYPE_CHECKING:

        @property
        def substance(self) -> Substance: ...


@dataclass(frozen=True, repr=False)
class Phase(_Part):
    """A phase of a substance.

    Attributes:
        id: its ID, unique within the substance.
        name: display name.
        state_number: the number of its aggregate state.
        substance: whose phase it is.
    """

    state_number: int
    substance: Substance = field(repr=False)

    _kind = "phase"
    _list = "qmdbGetPhaseParams"

    @property
    def state(self) -> str:
        """The aggregate state: "solid", "liquid" or "gas"."""
        return state_text(self.state_number)

    @functools.cached_property
    def _place(self) -> tuple[Any, Any, Any]:
        return place(self.substance_id, self.id)

    @property
    def available_parameters(self) -> Catalog[Description]:
        """The descriptions of the parameters that may be added to a phase of this state."""
        return Catalog(self.database._available(self.substance_id, self.id), "parameter")

    def add_parameter(self, parameter: Key | Description, values: Any, **arguments: Any) -> Parameter:
        """Adds a parameter; head and data are on the disk when the method returns.

            phase.add_parameter("Density", 8960.0)
            phase.add_parameter("Thermal conductivity", [398.1, 392.6], T=[300.0, 400.0])
            phase.add_parameter("Density", rho, P=pressures[:, None], T=temperatures)
            phase.add_parameter("Density", another_value)

        Args:
            parameter: a description, its ID or its name.
            values: a number, or three for a vector; with arguments an array of their shape, or of their shape
                with (3,) behind it for vectors. Or a `Value`, from this or another database. In the units of
                the description.
            arguments: none for a constant; `T` or `p` for a table of one argument, `P` and `T` or `P` and
                `X` for one of two, in the description's units of arguments. Two are broadcast against each
                other: both of shape (n,) give n rows, P of shape (m, 1) and T of shape (k,) a grid. Rows of
                one first argument stand together, and arguments increase.

        The library stores six significant digits; a `DatabaseWarning` tells when numbers lose more.

        Raises:
            ValueError: shapes that do not fit, numbers that are not finite, arguments that do not increase,
                or would not when they are stored.
            UnknownNameError: no parameter has this name.
            StatusError: the description does not allow the type or form or state, or the parameter is there
                already; the class tells which.
        """
        return _additions.add_parameter(self, parameter, values, arguments)


@dataclass(frozen=True, repr=False)
class PhaseChange(_Part):
    """A phase change of a substance.

    Attributes:
        id: its ID, unique within the substance.
        name: display name.
        phase1_id, phase2_id: the IDs of the phases before and after, which the substance may lack.
        substance: whose phase change it is.
    """

    phase1_id: int
    phase2_id: int
    substance: Substance = field(repr=False)

    _kind = "change"
    _list = "qmdbGetPhaseChangeParams"

    @functools.cached_property
    def _place(self) -> tuple[Any, Any, Any]:
        return place(self.substance_id, change=self.id)

    @property
    def before(self) -> Phase:
        """The phase before the change."""
        return self.substance.phases[self.phase1_id]

    @property
    def after(self) -> Phase:
        """The phase after the change."""
        return self.substance.phases[self.phase2_id]


Owner = Union[Substance, Phase, PhaseChange]
Composition = Mapping[Union[Substance, Key], float]
