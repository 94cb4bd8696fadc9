"""Writes materials as the CSV file that "qmdb import" makes a database of."""

import csv

from . import texts
from .parameters import PARAMETERS, UNITS_IN_RUSSIAN

COLUMNS = (
    "substance_id", "substance", "substance_ru", "substance_comment", "substance_comment_ru", "formula", "cas", "aliases",
    "composition_ids", "phase_id", "phase", "phase_ru", "state", "change_id", "change", "change_ru", "change_from", "change_to",
    "parameter_id", "parameter", "parameter_ru", "symbol", "units", "units_ru", "parameter_types", "parameter_forms",
    "parameter_states", "argument_units", "type", "source", "accuracy", "comments", "first_argument", "second_argument",
    "component", "value",
)
STATES = {1: "solid", 2: "liquid", 3: "gas"}
ARGUMENTS = {"t": "T", "p": "p", "T": "p T"}
ASCII_UNITS = {"³": "3", "·": " ", "Ω": "ohm"}
OVER = {"t": " over temperature, K", "p": " over pressure, Pa", "T": " over pressure, Pa, and temperature, K"}


def write(path, materials):
    ids = {material.name: material.id for material in materials}
    with path.open("w", encoding="utf-8", newline="") as file:
        writer = csv.DictWriter(file, COLUMNS, lineterminator="\n")
        writer.writeheader()
        for material in materials:
            for owner in material.owners():
                for value in owner.values:
                    writer.writerows(rows(material, owner, value, ids))


def rows(material, owner, value, ids):
    """Texts stand in the first row of a value, numbers of what they belong to in all."""
    key = {"substance_id": material.id, "substance": material.name, "parameter_id": PARAMETERS[value.parameter].id,
           "parameter": PARAMETERS[value.parameter].name, "type": value.form, **place(material, owner)}
    texts_of_value = {**material_texts(material, ids), **owner_texts(material, owner), **parameter_texts(value),
                      "source": value.source, "accuracy": value.accuracy,
                      "comments": " | ".join(comments(value, material, owner))}
    for index, (first, second, component, number) in enumerate(points(value)):
        numbers = {"first_argument": first, "second_argument": second, "component": component, "value": number}
        yield key | (texts_of_value if index == 0 else {}) | numbers


def place(material, owner):
    if owner in material.phases:
        return {"phase_id": owner.id, "phase": owner.name}
    return {"change_id": owner.id, "change": owner.name} if owner in material.changes else {}


def material_texts(material, ids):
    return {"substance_ru": material.russian, "substance_comment": material.comment,
            "substance_comment_ru": material.russian_comment, "formula": material.formula, "cas": material.cas,
            "aliases": ";".join(material.aliases),
            "composition_ids": ";".join(f"{ids[name]}:{fraction:.6f}" for name, fraction in material.components)}


def owner_texts(material, owner):
    if owner in material.phases:
        return {"phase_ru": texts.PHASES[owner.name], "state": STATES[owner.state]}
    if owner in material.changes:
        return {"change_ru": texts.CHANGES[owner.name], "change_from": owner.before, "change_to": owner.after}
    return {}


def parameter_texts(value):
    parameter = PARAMETERS[value.parameter]
    return {
        "parameter_ru": parameter.russian, "symbol": parameter.symbol, "units": parameter.units,
        "units_ru": UNITS_IN_RUSSIAN[parameter.units], "parameter_types": parameter.forms,
        "parameter_forms": "scalar vector" if parameter.is_vector else "scalar",
        "parameter_states": parameter.states or "none",
        "argument_units": argument_units(parameter),
    }


def argument_units(parameter):
    """First that of a pressure, then that of a temperature, as far as the parameter has them."""
    units = ["Pa"] if set(parameter.forms) & set("pT") else []
    return ";".join([*units, "K"] if set(parameter.forms) & set("tT") else units)


def comments(value, material, owner):
    parameter = PARAMETERS[value.parameter]
    units = "".join(ASCII_UNITS.get(character, character) for character in parameter.units)
    name = material.name if owner is material else f"{material.name}, {owner.name}"
    yield f"{parameter.name} of {name}, {units}{OVER.get(value.form, '')}"
    yield from value.notes
    if value.form != "C":
        yield f"{ARGUMENTS[value.form]} {parameter.symbol}"


def points(value):
    """First argument, second argument, component and number of each row."""
    if value.form == "C":
        yield from ((None, None, component, number) for component, number in components(value.data))
    elif value.form == "T":
        yield from ((shortest(p), shortest(t), component, number)
                    for p, subtable in value.data for t, y in subtable for component, number in components(y))
    else:
        yield from ((shortest(x), None, component, number) for x, y in value.data for component, number in components(y))


def components(data):
    if isinstance(data, tuple):
        return list(zip("xyz", map(shortest, data)))
    return [(None, shortest(data))]


def shortest(number):
    """Shortest text that reads back as the same number."""
    text = repr(float(number))
    return text[:-2] if text.endswith(".0") else text
