"""What the database holds, as plain records. Every module that knows values makes these; only the writers
(importFile.py, report.py) turn them into files."""

from dataclasses import dataclass, field

SOLID, LIQUID, GAS = 1, 2, 3


@dataclass(frozen=True)
class Value:
    """One value of a material, phase or change.

    form is C (data: a number, or three), t or p (data: rows of argument and number or numbers),
    or T (data: pairs of a pressure and its rows over temperature).
    """
    parameter: str
    form: str
    data: object
    source: str
    accuracy: str = ""
    notes: tuple = ()
    is_vector: bool = False


@dataclass
class Phase:
    id: int
    name: str
    state: int
    values: list = field(default_factory=list)


@dataclass
class Change:
    id: int
    name: str
    before: int
    after: int
    values: list = field(default_factory=list)


@dataclass
class Material:
    name: str
    russian: str
    group: str
    comment: str = ""
    russian_comment: str = ""
    formula: str = ""
    cas: str = ""
    aliases: tuple = ()
    components: tuple = ()  # pairs of the name of a material and its molar fraction
    values: list = field(default_factory=list)
    phases: list = field(default_factory=list)
    changes: list = field(default_factory=list)
    id: int = 0

    def phase(self, name):
        return next(phase for phase in self.phases if phase.name == name)

    def owners(self):
        return [self, *self.phases, *self.changes]


def constant(parameter, number, source, accuracy="", *notes):
    return Value(parameter, "C", number, source, accuracy, notes)


def vector(parameter, numbers, source, accuracy="", *notes):
    return Value(parameter, "C", tuple(numbers), source, accuracy, notes, is_vector=True)


def table(parameter, rows, source, accuracy="", *notes):
    return Value(parameter, "t", tuple(rows), source, accuracy, notes)


def over_pressure(parameter, rows, source, accuracy="", *notes):
    return Value(parameter, "p", tuple(rows), source, accuracy, notes)


def over_pressure_and_temperature(parameter, subtables, source, accuracy="", *notes):
    return Value(parameter, "T", tuple(subtables), source, accuracy, notes)
