"""Writes materials as a database: directories of descriptors and data files."""

import shutil

from . import texts
from .parameters import PARAMETERS, UNITS_IN_RUSSIAN

MARK = "\ufeff"
TYPES = {"C": 1, "t": 2, "p": 3, "T": 4, "X": 5}
ARGUMENTS = {"t": "T", "p": "p", "T": "p T"}
ARGUMENT_UNITS = "Pa;K"
ASCII_UNITS = {"³": "3", "·": " ", "Ω": "ohm"}


def write(root, materials):
    shutil.rmtree(root, ignore_errors=True)
    root.mkdir(parents=True)
    strings = Strings(materials)
    strings.write(root)
    for parameter in PARAMETERS.values():
        write_descriptor(root / f"{parameter.file}.prd", description(parameter, strings))
    ids = {material.name: material.id for material in materials}
    for material in materials:
        write_material(root / f"Substance{material.id}", material, ids, strings)


class Strings:
    """String IDs and both tables."""

    def __init__(self, materials):
        used_phases = {phase.name for material in materials for phase in material.phases}
        used_changes = {change.name for material in materials for change in material.changes}
        self.phases = texts.string_ids([name for name in texts.PHASES if name in used_phases], texts.PHASE_NAMES)
        self.changes = texts.string_ids([name for name in texts.CHANGES if name in used_changes], texts.CHANGE_NAMES)
        used_units = {parameter.units for parameter in PARAMETERS.values()}
        self.units = texts.string_ids([units for units in UNITS_IN_RUSSIAN if units in used_units], texts.UNITS)
        self.english, self.russian = {}, {}
        for parameter in PARAMETERS.values():
            self._add(texts.PARAMETER_NAMES + parameter.id, parameter.name, parameter.russian)
        for names, russian in ((self.units, UNITS_IN_RUSSIAN), (self.phases, texts.PHASES), (self.changes, texts.CHANGES)):
            for name, number in names.items():
                self._add(number, name, russian[name])
        for material in materials:
            self._add(texts.MATERIAL_NAMES + material.id, material.name, material.russian)
            if material.comment:
                self._add(texts.COMMENTS + material.id, material.comment, material.russian_comment)

    def _add(self, number, english, russian):
        self.english[number], self.russian[number] = english, russian

    def write(self, root):
        for name, table in (("default.lst", self.english), ("strings.lst", self.russian)):
            write_descriptor(root / name, dict(sorted(table.items())))


def write_descriptor(path, entries):
    lines = "".join(f"{key}={text}\n" for key, text in entries.items())
    path.write_bytes((MARK + lines).encode())


def description(parameter, strings):
    entries = {"ArgumentUnits": ARGUMENT_UNITS} if parameter.forms != "C" else {}
    return entries | {
        "AvForPhases": parameter.states, "Binary": 0, "DataTypes": parameter.forms, "ID": parameter.id,
        "Name": parameter.name, "NameID": texts.PARAMETER_NAMES + parameter.id, "Scalar": 1, "Symbol": parameter.symbol,
        "Units": parameter.units, "UnitsID": strings.units[parameter.units], "Vector": int(parameter.is_vector),
    }


def write_material(root, material, ids, strings):
    root.mkdir()
    write_descriptor(root / f"Substance{material.id}.mtd", substance(material, ids))
    write_values(root, material, material.name)
    for index, phase in enumerate(material.phases, 1):
        directory = root / f"Phase{index}"
        directory.mkdir()
        entries = {"Aggreg": phase.state, "ID": phase.id, "Name": phase.name, "NameID": strings.phases[phase.name]}
        write_descriptor(directory / f"Phase{index}.phd", entries)
        write_values(directory, phase, f"{material.name}, {phase.name}")
    for index, change in enumerate(material.changes, 1):
        directory = root / f"PC{index}"
        directory.mkdir()
        entries = {"ID": change.id, "Name": change.name, "NameID": strings.changes[change.name], "Phase1": change.before,
                   "Phase2": change.after}
        write_descriptor(directory / f"PC{index}.pcd", entries)
        write_values(directory, change, f"{material.name}, {change.name}")


def substance(material, ids):
    entries = {"Aliases": ";".join(material.aliases), "CAS": material.cas}
    entries = {key: text for key, text in entries.items() if text}
    if material.comment:
        entries |= {"Comment": material.comment, "CommentID": texts.COMMENTS + material.id}
    entries["Composition"] = ";".join(f"{ids[name]}:{fraction:.6f}" for name, fraction in material.components)
    if material.formula:
        entries["Formula"] = material.formula
    return entries | {"ID": material.id, "Mixture": int(bool(material.components)), "Name": material.name,
                      "NameID": texts.MATERIAL_NAMES + material.id}


def write_values(directory, owner, name):
    for index, value in enumerate(owner.values, 1):
        parameter = PARAMETERS[value.parameter]
        accuracy = {"Accuracy": value.accuracy} if value.accuracy else {}
        write_descriptor(directory / f"Property{index}.prh", accuracy | {
            "Data": f"Property{index}.dat", "ID": parameter.id, "Source": value.source, "Type": TYPES[value.form],
            "Vector": int(value.is_vector)})
        lines = [*comment_lines(parameter, value, name), *data_lines(value)]
        (directory / f"Property{index}.dat").write_text("".join(line + "\n" for line in lines), encoding="ascii")


def comment_lines(parameter, value, name):
    units = "".join(ASCII_UNITS.get(character, character) for character in parameter.units)
    over = {"t": " over temperature, K", "p": " over pressure, Pa", "T": " over pressure, Pa, and temperature, K"}
    yield f"# {parameter.name} of {name}, {units}{over.get(value.form, '')}"
    yield from (f"# {note}" for note in value.notes)
    if value.form != "C":
        yield f"# {ARGUMENTS[value.form]} {parameter.symbol}"


def data_lines(value):
    if value.form == "C":
        yield numbers(value.data)
    elif value.form == "T":
        for pressure, rows in value.data:
            yield f"P={number(pressure)}"
            yield from (f"{number(t)} {numbers(y)}" for t, y in rows)
    else:
        yield from (f"{number(x)} {numbers(y)}" for x, y in value.data)


def numbers(data):
    return " ".join(map(number, data)) if isinstance(data, tuple) else number(data)


def number(value):
    """Shortest text that reads back as the same number."""
    text = repr(float(value))
    return text[:-2] if text.endswith(".0") else text
