"""The table of materials and properties in docs/data.md, between two marks."""

from .parameters import PARAMETERS

BEGIN, END = "<!-- materials: written by data/build -->", "<!-- end of materials -->"
COLUMNS = {"density": "ρ", "heat-capacity": "cp", "conductivity": "k", "viscosity": "μ", "surface-tension": "σ",
           "speed-of-sound": "w", "expansion": "α", "volume-expansion": "β", "strain": "ε", "resistivity": "ρe", "elastic-modulus": "E",
           "emissivity": "em", "vapour-pressure": "pv"}
STATES = {1: "s", 2: "l", 3: "g"}


def write(path, materials):
    text = path.read_text(encoding="utf-8")
    before, rest = text.split(BEGIN)
    _, after = rest.split(END)
    path.write_text(before + BEGIN + "\n" + table(materials) + END + after, encoding="utf-8")


def table(materials):
    lines = [row(["ID", "Material", "Formula", *COLUMNS.values(), "Others", "Changes"]), row(["---"] * (5 + len(COLUMNS)))]
    group = None
    for material in materials:
        if material.group != group:
            group = material.group
            lines.append(row(["", f"**{group.capitalize()}**", *[""] * (3 + len(COLUMNS))]))
        lines.append(row(cells(material)))
    points = sum(point_count(value) for m in materials for owner in m.owners() for value in owner.values)
    values = sum(len(owner.values) for m in materials for owner in m.owners())
    return f"{len(materials)} materials, {values} values, {points} points.\n\n" + "\n".join(lines) + "\n"


def row(texts):
    return "| " + " | ".join(texts) + " |"


def cells(material):
    marks = {name: "" for name in COLUMNS}
    others = {value.parameter for value in material.values}
    for phase in material.phases:
        for value in phase.values:
            letter = STATES[phase.state]
            if value.parameter not in marks:
                others.add(value.parameter)
            elif letter.upper() not in marks[value.parameter]:
                form = letter if value.form == "C" else letter.upper()
                marks[value.parameter] = marks[value.parameter].replace(letter, "") + form
    symbols = [PARAMETERS[name].symbol for name in PARAMETERS if name in others]
    changes = [change.name.lower() for change in material.changes]
    return [str(material.id), material.name, material.formula, *marks.values(), ", ".join(symbols), ", ".join(changes)]


def point_count(value):
    if value.form == "C":
        return 1
    return sum(len(rows) for _, rows in value.data) if value.form == "T" else len(value.data)
