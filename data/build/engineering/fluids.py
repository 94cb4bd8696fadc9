"""Fluids from reference equations of state and transport, computed with CoolProp."""

import functools
import math

import CoolProp.CoolProp as CP
import numpy

from . import citations
from .model import GAS, LIQUID, Change, Material, Phase, constant, over_pressure, over_pressure_and_temperature, table
from .placing import place, rounded
from .pressureTables import Domain, pressure_table, rounded_pressure

DENSITY_TOLERANCE, TOLERANCE, SATURATION_TOLERANCE = 0.001, 0.005, 0.001
BOILING_TOLERANCE = 0.0002
NEAR_CRITICAL = 0.75         # of the critical pressure: below it the tables follow the saturation line
NEAR_TOP = 0.98              # of the critical pressure: above, the saturation line lies beyond the end of the liquid's tables
LIQUID_END, GAS_BEGIN = 0.95, 1.1        # of the critical temperature, above that pressure
LIQUID_AGAIN, GAS_AGAIN = 1.4, 2.0        # of the critical pressure, from where the tables reach it again
CRITICAL_GAP = 0.001         # of the critical temperature, where some equations of conductivity have no solution
TYPICAL = 0.6                # of the critical temperature
SATURATION_END = 0.99        # of the critical temperature
BOUNDARY_STEP = {LIQUID: 0.01, GAS: 0.02}  # of the critical temperature: how far apart neighbouring tables may end
WITHOUT_MELTING_LINE = 1.05  # of the triple-point temperature
AROUND_CRITICAL = (0.98, 0.985, 0.99, 0.9925, 0.995, 0.9975, 0.999, 1.001, 1.0025, 1.005, 1.0075, 1.01, 1.015, 1.02)  # of its temperature
HIGHEST_TEMPERATURE, HIGHEST_PRESSURE, LOWEST_PRESSURE = 1000.0, 3e7, 1e3
ROUND_PRESSURES = (1e5, 1e6, 1e7)

PROPERTIES = {
    "density": (lambda state: state.rhomass(), DENSITY_TOLERANCE, "EOS"),
    "heat-capacity": (lambda state: state.cpmass(), TOLERANCE, "EOS"),
    "speed-of-sound": (lambda state: state.speed_sound(), TOLERANCE, "EOS"),
    "conductivity": (lambda state: state.conductivity(), TOLERANCE, "CONDUCTIVITY"),
    "viscosity": (lambda state: state.viscosity(), TOLERANCE, "VISCOSITY"),
}


class Fluid:
    """One fluid of CoolProp, asked in one phase."""

    def __init__(self, name, highest_temperature=HIGHEST_TEMPERATURE, highest_pressure=HIGHEST_PRESSURE,
                 lowest_temperature=0.0, conductivity_from=LOWEST_PRESSURE, conductivity_beyond=None):
        self.name = name
        self.state = CP.AbstractState("HEOS", name)
        self.critical_temperature, self.critical_pressure = self.state.T_critical(), self.state.p_critical()
        self.triple_temperature = max(self.state.Ttriple(), lowest_temperature)
        self.triple_pressure = self._saturation_pressure_at_triple_point()
        self.highest_temperature = min(self.state.Tmax(), highest_temperature)
        self.highest_pressure = min(self.state.pmax(), highest_pressure)
        self.conductivity_from = conductivity_from
        self.conductivity_beyond = conductivity_beyond
        self.decimals, self.from_boundary = (2, 0) if self.critical_temperature > 50 else (3, 0.004)
        self.has_melting_line = self._has_usable_melting_line()
        self.has_transport = bool(citations.of_fluid(name, "VISCOSITY"))
        self._boiling, self._points = {}, {}

    def _saturation_pressure_at_triple_point(self):
        self.state.update(CP.QT_INPUTS, 1, self.triple_temperature)
        return self.state.p()

    def _has_usable_melting_line(self):
        try:
            return self.state.melting_line(CP.iT, CP.iP, 5e6) > 0.99 * self.triple_temperature
        except ValueError:
            return False

    def boiling_temperature(self, pressure, quality):
        key = pressure, quality
        if key not in self._boiling:
            self.state.unspecify_phase()
            self.state.update(CP.PQ_INPUTS, pressure, quality)
            self._boiling[key] = self.state.T()
        return self._boiling[key]

    def saturated(self, temperature, quality):
        self.state.unspecify_phase()
        self.state.update(CP.QT_INPUTS, quality, temperature)
        return self.state

    def point(self, pressure, temperature, phase, names):
        key = pressure, temperature
        if key not in self._points:
            imposed = CP.iphase_liquid if phase == LIQUID else CP.iphase_gas
            if pressure < self.critical_pressure:
                self.state.specify_phase(imposed)
            else:
                self.state.unspecify_phase()
            self.state.update(CP.PT_INPUTS, pressure, temperature)
            self._points[key] = {name: self._number(name) for name in names}
        return self._points[key]

    def _number(self, name):
        """Some models of conductivity find no solution in thin gas; no table may reach there."""
        try:
            return PROPERTIES[name][0](self.state)
        except ValueError:
            return math.nan

    def freezing_temperature(self, pressure):
        """Water melts below its triple point under pressure; its equation is asked from the triple point on."""
        floor = self.triple_temperature * (1 if self.has_melting_line else WITHOUT_MELTING_LINE)
        try:
            return max(floor, self.state.melting_line(CP.iT, CP.iP, max(pressure, 1.001 * self.triple_pressure)))
        except ValueError:
            return WITHOUT_MELTING_LINE * self.triple_temperature


def up(temperature, decimals):
    return float(numpy.ceil(temperature * 10 ** decimals - 1e-6) / 10 ** decimals)


def down(temperature, decimals):
    return float(numpy.floor(temperature * 10 ** decimals + 1e-6) / 10 ** decimals)


def liquid_domain(fluid):
    critical, decimals = fluid.critical_pressure, fluid.decimals

    @functools.cache
    def low(pressure):
        return up(fluid.freezing_temperature(pressure), decimals)

    @functools.cache
    def high(pressure):
        ends = [fluid.boiling_temperature(pressure, 0) - fluid.from_boundary] if pressure < NEAR_TOP * critical else []
        if pressure > NEAR_CRITICAL * critical:
            ends.append((LIQUID_END if pressure < LIQUID_AGAIN * critical else 1 - CRITICAL_GAP) * fluid.critical_temperature)
        return down(min(ends), decimals)

    begin = max(1e4, 1.3 * fluid.saturated(1.02 * low(fluid.triple_pressure + 1), 0).p())
    return _domain(fluid, LIQUID, (begin, fluid.highest_pressure), low, high)


def gas_domain(fluid, begin=LOWEST_PRESSURE, beyond=None):
    """beyond: a temperature from which alone the equation is good at pressures near and above the critical one."""
    critical, decimals = fluid.critical_pressure, fluid.decimals

    @functools.cache
    def low(pressure):
        if pressure <= fluid.triple_pressure:
            return up(fluid.triple_temperature, decimals)
        if pressure <= NEAR_CRITICAL * critical:
            return up(fluid.boiling_temperature(pressure, 1) + fluid.from_boundary, decimals)
        begin = GAS_BEGIN if pressure < GAS_AGAIN * critical else 1 + CRITICAL_GAP
        return up(beyond or begin * fluid.critical_temperature, decimals)

    reaches_beyond = GAS_BEGIN * fluid.critical_temperature < fluid.highest_temperature
    end = fluid.highest_pressure if reaches_beyond else NEAR_CRITICAL * critical
    return _domain(fluid, GAS, (begin, end), low, lambda pressure: fluid.highest_temperature)


def _domain(fluid, phase, ends, low, high):
    begin, end = ends
    near, quality = NEAR_CRITICAL * fluid.critical_pressure, 0 if phase == LIQUID else 1

    def boundary(pressure):
        inside = fluid.triple_pressure < pressure <= near
        return fluid.boiling_temperature(pressure, quality) if inside else None

    saturation = _saturation_pressures(fluid, begin, near, quality)
    forced = sorted({begin, rounded_pressure(near), *(p for p in ROUND_PRESSURES if begin < p < end)})
    beyond = numpy.geomspace(near, end, 80)
    pressures = sorted({rounded_pressure(p) for p in (*saturation, *beyond)} | {rounded_pressure(p) for p in forced})
    pressures = [p for p in pressures if begin <= p <= end]
    temperatures = _temperatures(fluid, min(map(low, pressures)), max(map(high, pressures)))
    return Domain(pressures, [rounded_pressure(p) for p in forced], temperatures, low, high, boundary,
                  BOUNDARY_STEP[phase] * fluid.critical_temperature, fluid.decimals, phase == GAS)


def _saturation_pressures(fluid, begin, end, quality):
    low = fluid.boiling_temperature(max(begin, 1.001 * fluid.triple_pressure), quality)
    high = fluid.boiling_temperature(end, quality)
    steps = numpy.linspace(low, high, max(12, int((high - low) / (0.003 * fluid.critical_temperature))))
    below = numpy.geomspace(begin, fluid.triple_pressure, 4) if begin < fluid.triple_pressure else ()
    return (begin, *below, *(fluid.saturated(t, quality).p() for t in steps))


def _temperatures(fluid, low, high):
    knee = min(high, 1.3 * fluid.critical_temperature)
    grid = [*numpy.linspace(low, knee, 120), *numpy.geomspace(knee, high, 40)] if knee > low else numpy.geomspace(low, high, 80)
    critical = [share * fluid.critical_temperature for share in AROUND_CRITICAL]
    grid = [*grid, *(t for t in critical if low < t < high)]
    return numpy.unique(numpy.round(grid, fluid.decimals))


def phase_values(fluid, phase, domain):
    names = [name for name in PROPERTIES if fluid.has_transport or PROPERTIES[name][2] == "EOS"]
    for name in names:
        _, tolerance, kind = PROPERTIES[name]
        limited = phase == GAS and name == "conductivity"
        if limited and fluid.conductivity_from > fluid.highest_pressure:
            continue
        within = gas_domain(fluid, fluid.conductivity_from, fluid.conductivity_beyond) if limited else domain
        subtables = pressure_table(f"{fluid.name} {phase} {name}",
                                   lambda p, t, name=name: fluid.point(p, t, phase, names)[name], within, tolerance)
        yield over_pressure_and_temperature(
            name, subtables, source(fluid, kind, _range(subtables)), accuracy_of_table(tolerance),
            *notes(fluid, phase, subtables, fluid.conductivity_beyond if limited else None))


def source(fluid, kind, validity):
    return f"{citations.of_fluid(fluid.name, kind)}; computed with CoolProp {CP.get_global_param_string('version')}; {validity}"


def accuracy_of_table(tolerance):
    return f"linear interpolation within {100 * tolerance:g} % of the equation; its own uncertainty: see the source"


def _range(subtables):
    rows = [row for _, part in subtables for row in part]
    low, high = min(row[0] for row in rows), max(row[0] for row in rows)
    return f"{subtables[0][0]:g} to {subtables[-1][0]:g} Pa, {low:g} to {high:g} K"


def notes(fluid, phase, subtables, beyond):
    """Where the subtables begin and end."""
    near = f"{NEAR_CRITICAL * fluid.critical_pressure:.4g}"
    reaches_beyond = subtables[-1][0] > rounded_pressure(NEAR_CRITICAL * fluid.critical_pressure)
    if phase == GAS:
        rest = f"from {near} Pa it begins at " + (f"{beyond:g} K." if beyond else
            f"{GAS_BEGIN:g} Tc, from {GAS_AGAIN:g} pc at {1 + CRITICAL_GAP:g} Tc.")
        return ("Each subtable begins at the saturation line" + (f"; {rest}" if reaches_beyond else "."),)
    start = "at the melting line" if fluid.has_melting_line else f"at {WITHOUT_MELTING_LINE:g} times the triple-point " \
        "temperature, as the equation has no melting line"
    return (f"Each subtable begins {start}, and ends at the saturation line; from {near} Pa it ends at "
            f"{LIQUID_END:g} Tc, from {LIQUID_AGAIN:g} pc at {1 - CRITICAL_GAP:g} Tc.",)


def saturation_values(fluid):
    low, high = up(fluid.triple_temperature, 2), down(SATURATION_END * fluid.critical_temperature, 2)
    validity = f"{low:g} to {high:g} K"
    of_equation = source(fluid, "EOS", validity)

    def placed(function, tolerance):
        return place(function, low, high, tolerance, samples=300, decimals=fluid.decimals)

    pressures = place(lambda p: fluid.boiling_temperature(p, 1), *_pressure_range(fluid), BOILING_TOLERANCE,
                      samples=300, decimals=4, spacing=numpy.geomspace)
    yield over_pressure("transition-temperature", tuple((rounded(p), t) for p, t in pressures), of_equation,
                        accuracy_of_table(2 * BOILING_TOLERANCE))
    for name, function, tolerance in (
            ("saturation-pressure", lambda t: fluid.saturated(t, 1).p(), SATURATION_TOLERANCE),
            ("latent-heat", lambda t: fluid.saturated(t, 1).hmass() - fluid.saturated(t, 0).hmass(), TOLERANCE),
            ("saturated-liquid-density", lambda t: fluid.saturated(t, 0).rhomass(), DENSITY_TOLERANCE),
            ("saturated-vapour-density", lambda t: fluid.saturated(t, 1).rhomass(), DENSITY_TOLERANCE)):
        yield table(name, placed(function, tolerance), of_equation, accuracy_of_table(tolerance))


def _pressure_range(fluid):
    begin = max(fluid.triple_pressure, 1.0)
    return rounded_up(begin), rounded(fluid.saturated(SATURATION_END * fluid.critical_temperature, 1).p() * 0.99999)


def rounded_up(pressure):
    return rounded(pressure * 1.00001)


def surface_tension(fluid):
    low, high = up(fluid.triple_temperature, 2), down(SATURATION_END * fluid.critical_temperature, 2)
    rows = place(lambda t: fluid.saturated(t, 0).surface_tension(), low, high, TOLERANCE, samples=300,
                 decimals=fluid.decimals)
    return table("surface-tension", rows, source(fluid, "SURFACE_TENSION", f"{low:g} to {high:g} K"),
                 accuracy_of_table(TOLERANCE))


def liquid_expansion(fluid):
    """Along the saturation line; that of water passes zero, so the nodes go by a typical number."""
    low, high = up(fluid.triple_temperature, 2), down(SATURATION_END * fluid.critical_temperature, 2)
    at = down(max(TYPICAL * fluid.critical_temperature, low), fluid.decimals)
    typical = fluid.saturated(at, 0).isobaric_expansion_coefficient()
    rows = place(lambda t: fluid.saturated(t, 0).isobaric_expansion_coefficient(), low, high, TOLERANCE, samples=300,
                 decimals=fluid.decimals, scale=typical)
    return table("volume-expansion", rows, source(fluid, "EOS", f"{low:g} to {high:g} K"),
                 f"linear interpolation within {100 * TOLERANCE:g} % of the number at {at:g} K, {rounded(typical):g} 1/K",
                 "Of the liquid at saturation.")


def constants(fluid, is_pseudo_pure):
    of_equation = source(fluid, "EOS", "constant of the equation")
    yield constant("molar-mass", rounded_more(fluid.state.molar_mass()), of_equation)
    yield constant("critical-temperature", rounded_more(fluid.critical_temperature), of_equation)
    yield constant("critical-pressure", rounded(fluid.critical_pressure), of_equation)
    yield constant("critical-density", rounded(fluid.state.rhomass_critical()), of_equation)
    if not is_pseudo_pure:
        yield constant("triple-temperature", rounded_more(fluid.triple_temperature), of_equation)
        yield constant("triple-pressure", rounded(fluid.triple_pressure), of_equation)
    if not is_pseudo_pure and fluid.triple_pressure < 101325 < fluid.critical_pressure:
        yield constant("boiling-temperature", rounded(fluid.boiling_temperature(101325, 1)), of_equation)


def rounded_more(number):
    return float(f"{number:.8g}")


def material(entry):
    fluid = Fluid(entry.coolprop, **entry.limits)
    made = Material(entry.name, entry.russian, "fluids", entry.comment, entry.russian_comment, entry.formula, entry.cas,
                    entry.aliases, entry.components)
    made.values = list(constants(fluid, entry.is_pseudo_pure))
    gas = Phase(GAS, entry.gas, GAS, list(phase_values(fluid, GAS, gas_domain(fluid))))
    if entry.is_pseudo_pure:
        made.phases = [gas]
        return made
    fluid._points.clear()
    liquid = Phase(LIQUID, "Liquid", LIQUID, list(phase_values(fluid, LIQUID, liquid_domain(fluid))))
    liquid.values += [surface_tension(fluid), liquid_expansion(fluid)]
    made.phases = [liquid, gas]
    made.changes = [Change(2, "Vaporisation", LIQUID, GAS, list(saturation_values(fluid)))]
    return made
