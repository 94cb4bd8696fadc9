"""What water has beyond the other fluids: ice, melting and sublimation; and the check against the second package."""

import functools
import math

import iapws
from iapws._iapws import _Ice, _Sublimation_Pressure, _Tension

from .fits import CheckFailed, Fit
from .fitted import fitted
from .model import GAS, LIQUID, SOLID, Change, Phase, constant, table
from .placing import interpolate, place
from .sources import work

NORMAL_PRESSURE = 0.101325  # MPa, of the ice formulation
LOWEST_ICE, MELTING = 100.0, 273.15
# p Pa, T K, phase: where IAPWS-95 and IF97 of the second package are held against the tables
POINTS = ((1e5, 300.0, LIQUID), (1e6, 350.0, LIQUID), (1e7, 500.0, LIQUID), (5e7, 400.0, LIQUID), (3e6, 500.0, LIQUID),
          (1e5, 400.0, GAS), (1e6, 500.0, GAS), (1e7, 700.0, GAS), (5e7, 1000.0, GAS), (1e4, 900.0, GAS))
WITHIN = {"density": 0.002, "heat-capacity": 0.008, "viscosity": 0.01, "conductivity": 0.015, "speed-of-sound": 0.008}


@functools.cache
def ice_state(temperature):
    return _Ice(temperature, NORMAL_PRESSURE)


def ice():
    of_equation = work("IAPWS-ICE", f"{LOWEST_ICE:g} to {MELTING:g} K at 101325 Pa")
    values = [
        fitted("density", Fit(lambda t: ice_state(t)["rho"], LOWEST_ICE, MELTING, ((273.15, 916.72),), 1e-5), of_equation,
               "", samples=200),
        fitted("heat-capacity", Fit(lambda t: 1000 * ice_state(t)["cp"], LOWEST_ICE, MELTING, ((273.15, 2096.7),), 1e-4),
               of_equation, "older work (NASA 1982) gives 2116 at 273.15 K", samples=200),
        fitted("conductivity", Fit(yen, 60, MELTING, ((273.15, 2.07), (250, 2.36), (200, 3.14))), work("YEN"),
               "EN 12524 has 2.2 at 273 K"),
        constant("emissivity", 0.96, work("IDEAL"), "secondary source", "Smooth ice."),
    ]
    return Phase(SOLID, "Ice Ih", SOLID, values)


def yen(temperature):
    return 9.828 * math.exp(-0.0057 * temperature)


def changes():
    melting = [constant("transition-temperature", 273.152519, work("IAPWS-ICE"), "not given", "At 101325 Pa."),
               constant("latent-heat", 333430.0, work("IAPWS-ICE"), "CRC gives 333600", "At 101325 Pa.")]
    pressure = place(lambda t: 1e6 * _Sublimation_Pressure(t), 180.0, 273.15, 0.001, samples=900)
    sublimation = [table("saturation-pressure", pressure, work("IAPWS-SUB", "180 to 273.15 K"),
                         "linear interpolation within 0.1 % of the equation"),
                   constant("latent-heat", 2838e3, work("S8-SUB"), "secondary reading", "At 273.15 K.")]
    return [Change(1, "Melting", SOLID, LIQUID, melting), Change(3, "Sublimation", SOLID, GAS, sublimation)]


def complete(material):
    liquid = material.phase("Liquid")
    liquid.values = [surface_tension() if value.parameter == "surface-tension" else value for value in liquid.values]
    material.phases.insert(0, ice())
    melting, sublimation = changes()
    material.changes = [melting, *material.changes, sublimation]
    hold_against_second_package(material)


def surface_tension():
    fit = Fit(_Tension, 273.16, 640.0, ((293.15, 0.072736), (373.15, 0.058912), (573.15, 0.014360)), 1e-4)
    return fitted("surface-tension", fit, "IAPWS R1-76(2014), surface tension of ordinary water, computed with iapws", "")


def from_table(material, phase, parameter, pressure, temperature):
    subtables = next(v for v in material.phases if v.id == phase).values
    data = next(value.data for value in subtables if value.parameter == parameter)
    upper = next(i for i, (p, _) in enumerate(data) if p >= pressure)
    (first, before), (last, after) = data[max(upper - 1, 0)], data[upper]
    low, high = interpolate(before, temperature), interpolate(after, temperature)
    return high if first == last else low + (high - low) * (pressure - first) / (last - first)


def hold_against_second_package(material):
    for pressure, temperature, phase in POINTS:
        for formulation in (iapws.IAPWS95, iapws.IAPWS97):
            state = formulation(P=pressure / 1e6, T=temperature)
            other = {"density": state.rho, "heat-capacity": 1000 * state.cp, "viscosity": state.mu, "conductivity": state.k,
                     "speed-of-sound": state.w}
            for parameter, expected in other.items():
                got = from_table(material, phase, parameter, pressure, temperature)
                if abs(got / expected - 1) > WITHIN[parameter]:
                    raise CheckFailed(f"water: {parameter} {got:g} at {pressure:g} Pa and {temperature:g} K, "
                                      f"{formulation.__name__} gives {expected:g}")
