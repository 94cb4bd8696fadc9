"""Metals and semiconductors: tables of mendeleev and chemicals, NASA Glenn heat capacities, handbook tables."""

import json
import math
import pathlib
import warnings

import chemicals
import mendeleev

from . import fits, liquidMetals
from .model import LIQUID, SOLID, Change, Material, Phase, constant, table
from .placing import place, rounded
from .sources import work

AGREE = 0.05        # sources that differ by more are not two witnesses of one value
LOWEST_PRESSURE = 1e-3   # of vapour pressures
LETTERS = {"cr": "", "a": " (alpha)", "b": " (beta)", "c": " (gamma)", "d": " (delta)", "gr": ""}
NASA_SYMBOL = {"Al": "AL"}
POINTS_OF_SOURCE = "not given; points of the source as they stand, so that lines between them may be off"
OF_FIT = "not given by the source; linear interpolation within 0.5 % of the fit"


def janaf_liquids():
    path = pathlib.Path(chemicals.__file__).parent / "Heat Capacity" / "JANAF_1998_liq_Cp.json"
    return json.loads(path.read_text())


def molten_densities():
    return chemicals.volume.rho_data_CRC_inorg_l


def difference(number, other):
    return abs(other / number - 1)


def compared(number, others, accuracy):
    """The accuracy, and what a second source says about it."""
    worst = max(others, key=lambda other: difference(number, other), default=None)
    if worst is None:
        return accuracy + "one source"
    if difference(number, worst) <= AGREE:
        return f"{accuracy}a second source agrees within {max(100 * difference(number, worst), 0.1):.1f} %"
    return f"{accuracy}sources disagree: another one gives {worst:g}"


class Element:
    def __init__(self, symbol, given):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")  # tin has several forms, which is known
            self.element = mendeleev.element(symbol)
            self.melting = rounded(self.element.melting_point or chemicals.Tm(self.element.cas, method="CRC_INORG"))
            self.boiling = rounded(self.element.boiling_point)
        self.symbol, self.given, self.cas = symbol, given, self.element.cas
        self.molar_mass = round(self.element.atomic_weight / 1000, 12)
        self.nasa = self._nasa_phases()

    def _nasa_phases(self):
        prefix = NASA_SYMBOL.get(self.symbol, self.symbol) + "("
        found = {name[len(prefix):-1]: phase for name, phase in fits.nasa_phases().items() if name.startswith(prefix)}
        return {letter: phase for letter, phase in found.items() if letter in LETTERS}

    def material(self):
        made = Material(self.given["name"], self.given["russian"], "elements", formula=self.symbol, cas=self.cas)
        made.values = list(self.constants())
        if self.given.get("liquid-only"):
            made.phases = [self.liquid()]
            made.values.append(constant("melting-temperature", self.melting, work("CRC-M"), "not given"))
            return made
        made.phases = [*self.solids(), self.liquid()]
        made.changes = [*self.transitions(made), self.melting_change(made)]
        self.add_room_temperature_values(made.phases[0])
        made.comment, made.russian_comment = comments(made)
        return made

    def constants(self):
        yield constant("molar-mass", self.molar_mass, work("IUPAC"))
        yield constant("boiling-temperature", self.boiling, work("CRC-M"), "not given")

    def solids(self):
        letters = list(self.nasa) or ["cr"]
        for index, letter in enumerate(letters):
            name = "Solid" + LETTERS[letter]
            phase = Phase(SOLID if index == 0 else 10 + index, name, SOLID)
            low = self.nasa[letter].low if index else 0
            high = self.nasa[letter].high if index + 1 < len(letters) else self.melting
            phase.values += [*self.heat_capacity(letter, index), *self.conductivity(low, high, index)]
            yield phase

    def heat_capacity(self, letter, index):
        measured = [tuple(row) for row in self.given.get("heat-capacity", ())]
        if letter not in self.nasa and not measured:
            yield constant("heat-capacity", rounded(1000 * self.element.specific_heat_capacity), work("CRC-M"), "not given",
                           "At 298.15 K.")
            return
        if letter not in self.nasa:
            yield table("heat-capacity", measured, work("INC"), POINTS_OF_SOURCE)
            return
        fit = self.nasa[letter]
        placed = place(fit, fit.low, min(fit.high, self.melting), 0.005, breaks=fit.breaks)
        cold = [row for row in measured if row[0] < 300 and index == 0 and fit.low >= 298]
        origin = f"{work('NASA9')}, {fit.remark}; {fit.low:g} to {placed[-1][0]:g} K"
        if cold:
            self._hold_together(fit, measured)
            origin += f"; below: {work('INC')}"
        yield table("heat-capacity", (*cold, *placed), origin, OF_FIT)

    def _hold_together(self, fit, measured):
        at_300 = dict(measured)[300]
        if difference(fit(300), at_300) > 0.03:
            raise fits.CheckFailed(f"{self.symbol}: cp at 300 K is {fit(300):g} and {at_300}")

    def conductivity(self, low, high, index):
        rows = [tuple(row) for row in self.given.get("conductivity", ()) if low <= row[0] < high]
        if len(rows) > 1:
            yield table("conductivity", rows, work("INC"), POINTS_OF_SOURCE)
        elif rows:
            yield constant("conductivity", rows[0][1], work("INC"), "not given", f"At {rows[0][0]:g} K.")
        elif index == 0:
            near = self.given.get("conductivity-near-300") or {
                "at": 298, "value": self.element.thermal_conductivity, "source": "MEND"}
            others = [near["elsewhere"]] if "elsewhere" in near else []
            yield constant("conductivity", near["value"], work(near["source"]),
                           compared(near["value"], others, "secondary source; "), f"At {near['at']} K.")

    def add_room_temperature_values(self, solid):
        density = rounded(self.element.density * 1000)
        solid.values.insert(0, constant("density", density, work("CRC-M"),
                                        compared(density, self.given.get("density-elsewhere", ()), ""), "Near 295 K."))
        solid.values += [*self.expansion(), *self.resistivity(), *self.elasticity(), *self.emissivities()]

    def expansion(self):
        given = self.given.get("expansion")
        if given is None:
            return
        others = [given["elsewhere"]] if "elsewhere" in given else []
        accuracy = "secondary reading; " if given["source"] == "CRC-W" else "secondary source; "
        yield constant("expansion", given["value"], work(given["source"]), compared(given["value"], others, accuracy),
                       "At 298 K.")

    def resistivity(self):
        if "resistivity" in self.given:
            rows = [tuple(row) for row in self.given["resistivity"]]
            yield table("resistivity", rows, work("CRC-R"), POINTS_OF_SOURCE)
        elif "resistivity-near-293" in self.given:
            yield constant("resistivity", self.given["resistivity-near-293"], work("WEL"), "secondary source, rounded",
                           "Near 293 K.")

    def elasticity(self):
        """Left out where two sources contradict each other."""
        modulus, other = self.given.get("elastic-modulus"), self.given.get("elastic-modulus-elsewhere")
        if modulus is None or (other is not None and difference(modulus, other) > AGREE):
            return
        accuracy = compared(modulus, [other] if other else [], "secondary source; ")
        yield constant("elastic-modulus", modulus, work("WEL"), accuracy, "Near 293 K.")
        if "poisson-ratio" in self.given:
            yield constant("poisson-ratio", self.given["poisson-ratio"], work("WEL"), "secondary source; one source",
                           "Near 293 K.")

    def emissivities(self):
        for given in self.given.get("emissivities", ()):
            yield constant(given["parameter"], given["value"], work(given["source"]), "secondary source; depends on the surface",
                           f"{given['remark']}.".capitalize())

    def liquid(self):
        phase = Phase(LIQUID, "Liquid", LIQUID)
        better = list(liquidMetals.LIQUIDS.get(self.symbol, lambda: ())())
        tables = [*self.molten_density(), *self.molten_heat_capacity(), *self.vapour_pressure()]
        taken = {value.parameter for value in better}
        phase.values = [*(value for value in tables if value.parameter not in taken), *better]
        return phase

    def molten_density(self):
        found = molten_densities()
        if self.cas not in found.index:
            return
        row = found.loc[self.cas]
        source = f"{work('CRC-MOLTEN')}; {row.Tm:g} to {row.Tmax:g} K"
        if row.k == 0:
            yield constant("density", float(row.rho), source, "not given", f"At the melting temperature, {row.Tm:g} K.")
            return
        rows = [(float(t), rounded(row.rho - row.k * (t - row.Tm))) for t in (row.Tm, row.Tmax)]
        yield table("density", rows, source, "not given; linear in the source")

    def molten_heat_capacity(self):
        fit = fits.nasa_phases().get(f"{NASA_SYMBOL.get(self.symbol, self.symbol)}(L)")
        if fit:
            end = min(fit.high, self.boiling)
            yield table("heat-capacity", place(fit, fit.low, end, 0.005, breaks=fit.breaks),
                        f"{work('NASA9')}, {fit.remark}; {fit.low:g} to {end:g} K", OF_FIT)
        elif self.cas in (found := janaf_liquids()):
            yield from self._janaf_heat_capacity(*found[self.cas])

    def _janaf_heat_capacity(self, temperatures, numbers):
        """The table goes on below the melting temperature, as supercooled liquid or glass: that is left out."""
        end = self.boiling
        rows = [(t, rounded(cp / self.molar_mass)) for t, cp in zip(temperatures, numbers) if self.melting - 8 <= t <= end]
        rows = [row for row, before in zip(rows, [(0, 0), *rows]) if row[0] > before[0]]
        yield table("heat-capacity", rows, f"{work('JANAF')}; {rows[0][0]:g} to {rows[-1][0]:g} K", POINTS_OF_SOURCE)

    def vapour_pressure(self):
        found = chemicals.vapor_pressure.Psat_data_Alcock_elements
        if self.cas not in found.index:
            return
        row = found.loc[self.cas]
        pressure = lambda t: math.exp(row.A + row.B / t + row.C * math.log(t) + row.D * t ** row.E)
        low = max(row.Tmin, self._temperature_of(pressure, row.Tmin, row.Tmax))
        if low < row.Tmax - 10:
            yield table("vapour-pressure", place(pressure, round(low, 2), round(row.Tmax, 2), 0.005, samples=2000),
                        f"{work('ALCOCK')}; {row.Tmin:g} to {row.Tmax:g} K", OF_FIT)

    @staticmethod
    def _temperature_of(pressure, low, high):
        """Where the pressure passes the lowest that is of use."""
        for _ in range(60):
            middle = (low + high) / 2
            low, high = (middle, high) if pressure(middle) < LOWEST_PRESSURE else (low, middle)
        return math.ceil(high)

    def transitions(self, made):
        names = {letter: "Solid" + suffix for letter, suffix in LETTERS.items()}
        for index, given in enumerate(self.given.get("transitions", ())):
            before, after = made.phase(names[given["before"]]), made.phase(names[given["after"]])
            change = Change(10 + index, transition_name(before.name, after.name), before.id, after.id)
            change.values = [constant("transition-temperature", given["temperature"], work("NASA9"), "not given"),
                             constant("latent-heat", given["latent-heat"], work("NASA9"), "not given")]
            yield change

    def melting_change(self, made):
        last = [phase for phase in made.phases if phase.state == SOLID][-1]
        change = Change(1, "Melting", last.id, LIQUID)
        heat = rounded(chemicals.Hfus(self.cas, method="CRC") / self.molar_mass)
        others = [self.given[key] for key in ("latent-heat-elsewhere",) if key in self.given]
        change.values = [constant("transition-temperature", self.melting, work("CRC-M"), "not given"),
                         constant("latent-heat", heat, work("CRC-FUSION"), compared(heat, others, ""))]
        return change


def transition_name(before, after):
    """Solid (alpha), Solid (beta): Alpha to beta"""
    first, second = (name.split("(")[1][:-1] for name in (before, after))
    return f"{first.capitalize()} to {second}"


def lacking(phase):
    symbols = {"density": "rho", "heat-capacity": "cp", "conductivity": "k"}
    present = {value.parameter for value in phase.values}
    return [symbol for name, symbol in symbols.items() if name not in present]


def comments(made):
    """What an engineer looks for and no source gives, in English and Russian."""
    english, russian = [], []
    hot = sorted({symbol for phase in made.phases[1:-1] for symbol in lacking(phase)}, reverse=True)
    for symbols, name, russian_name in ((lacking(made.phases[-1]), "liquid", "жидкости"), (hot, "hot solid", "выс. форм")):
        if symbols:
            english.append(f"{name} {', '.join(symbols)}")
            russian.append(f"{', '.join(symbols)} {russian_name}")
    if not english:
        return "", ""
    return "No source for " + "; ".join(english), "Нет источника: " + "; ".join(russian)


def materials():
    return [Element(symbol, given).material() for symbol, given in fits.load("elements.toml").items()]
