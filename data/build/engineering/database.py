"""Collects the materials of all modules, gives them their IDs, and refuses what the database does not allow."""

import concurrent.futures

from . import elements, fluidList, fluids, gaps, liquidMetals, liquids, solids, water
from .parameters import PARAMETERS

# IDs are for good: a material keeps its number as long as the materials before it in its group stay.
FIRST_ID = {"fluids": 100, "elements": 200, "liquid metals": 290, "alloys": 300, "ceramics": 350, "glasses": 390,
            "building": 400, "polymers": 500, "oils": 600, "organic liquids": 640, "coolants": 700, "molten salts": 750}
LONGEST_NAME, LONGEST_UNITS = 49, 9


def materials():
    found = [*fluid_materials(), *elements.materials(), *liquidMetals.materials(), *solids.materials(), *liquids.materials()]
    given = {}
    for material in found:
        given[material.group] = given.get(material.group, FIRST_ID[material.group] - 1) + 1
        material.id = given[material.group]
    found.sort(key=lambda material: material.id)
    check(found)
    return found


def fluid_materials():
    """They take nearly all of the time, and none depends on another."""
    with concurrent.futures.ProcessPoolExecutor() as processes:
        return list(processes.map(fluid_material, fluidList.FLUIDS))


def fluid_material(entry):
    material = fluids.material(entry)
    if material.name == "Water":
        water.complete(material)
    gaps.complete(material)
    return material


def check(found):
    check_texts(found)
    check_uniqueness(found)
    names = {material.name for material in found}
    for material in found:
        for name, _ in material.components:
            if name not in names:
                raise ValueError(f"{material.name}: the component {name} is no material")
        for phase in material.phases:
            check_phase(material, phase)


def check_texts(found):
    texts = [text for m in found for text in (m.name, m.russian, m.comment, m.russian_comment)]
    texts += [text for p in PARAMETERS.values() for text in (p.name, p.russian)]
    for text in texts:
        if len(text) > LONGEST_NAME or text != text.strip():
            raise ValueError(f"no name or comment for the database: {text!r}")
    for parameter in PARAMETERS.values():
        if len(parameter.units) > LONGEST_UNITS:
            raise ValueError(f"units too long: {parameter.units}")


def check_uniqueness(found):
    for texts in ([m.name for m in found], [m.russian for m in found], [m.id for m in found]):
        twice = {text for text in texts if texts.count(text) > 1}
        if twice:
            raise ValueError(f"given twice: {twice}")
    for owner in (owner for material in found for owner in material.owners()):
        names = [value.parameter for value in owner.values]
        if len(names) != len(set(names)):
            raise ValueError(f"{owner.name} has a parameter twice: {names}")


def check_phase(material, phase):
    if not phase.values:
        raise ValueError(f"{material.name}, {phase.name} is empty")
    lacks = elements.lacking(phase)
    if phase.state in (1, 2) and lacks and not material.comment:
        raise ValueError(f"{material.name}, {phase.name} lacks {lacks}, and its comment does not say why")
