"""Transport values of fluids whose equation of state comes without: liquids from handbooks, gases as dilute gases."""

from . import cea
from .liquids import organic
from .model import GAS, LIQUID

BOILING_MARGIN = 0.97  # of the critical temperature: handbook correlations of the liquid end there


def complete(material):
    if any(value.parameter == "viscosity" for phase in material.phases for value in phase.values):
        return
    constants = {value.parameter: value.data for value in material.values}
    for phase in material.phases:
        if phase.state == LIQUID:
            found = (organic(parameter, material.cas, constants["molar-mass"], constants["triple-temperature"],
                             BOILING_MARGIN * constants["critical-temperature"]) for parameter in ("conductivity", "viscosity"))
            phase.values += [value for value in found if value]
        if phase.state == GAS:
            phase.values += cea.dilute_gas(material.name)
