"""Liquids near atmospheric pressure: heat-transfer oils, glycols and their mixtures with water, molten salts, seawater."""

import functools
import math

import chemicals
import CoolProp.CoolProp as CP
import iapws
import numpy
from iapws.iapws08 import _Tension_SeaWater

from .fits import CheckFailed, Fit, arrhenius, celsius, polynomial
from .fitted import fitted
from .liquidMetals import by_mass
from .model import LIQUID, Material, Phase, constant, table
from .placing import rounded
from .sources import work

ABOVE_VAPOUR_PRESSURE = 5e6  # Pa; the fits do not depend on it
INCOMPRESSIBLE = {"density": "D", "heat-capacity": "C", "conductivity": "L", "viscosity": "V"}
MANUFACTURER = "manufacturer's data, fitted"
SYMBOLS = tuple(INCOMPRESSIBLE)

# name, Russian name, CoolProp's name, source, check: temperature, density, cp, conductivity, viscosity
OILS = (
    ("Biphenyl and diphenyl oxide oil", "Масло дифенил-дифенилоксидное", "TVP1", "data of Therminol VP-1 (2014)", ("VP-1",),
     (473.15, 913.45, 2046, 0.11377, 0.00038653)),
    ("Hydrogenated terphenyl oil", "Масло на гидрированных терфенилах", "T66", "data of Therminol 66 (2014)", ("T66",),
     (473.15, 885.25, 2194.2, 0.10565, 0.00081808)),
    ("Mineral oil, hydrotreated", "Масло минеральное гидроочищенное", "PNF2", "data of Paratherm NF (2013)", (),
     (473.15, 767.18, 2762.6, 0.095213, 0.00057722)),
    ("Mineral heat-transfer oil, grade 22", "Масло-теплоноситель минеральное, марка 22", "TX22", "data of Texatherm 22 (2004)", (),
     (473.15, 741.81, 2540.4, 0.12088, 0.0012203)),
    ("Silicone oil", "Масло силиконовое", "S800", "data of Syltherm 800 (2017)", ("Polydimethylsiloxane",),
     (473.15, 774.19, 1916, 0.10115, 0.0010223)),
    ("Silicone oil, low temperature", "Масло силиконовое низкотемпературное", "XLT", "data of Syltherm XLT (1997)", (),
     (293.15, 855.28, 1771.7, 0.11078, 0.0013918)),
)

# name, CoolProp's name, check points at 20 degrees C for mass fractions of glycol
GLYCOLS = (
    ("Ethylene glycol", "Этиленгликоль", "MEG", {
        0.2: (1024.1, 3896.2, 0.5077, 0.001662, 265.2), 0.3: (1038.05, 3718.3, 0.4649, 0.002166, 258.57),
        0.4: (1051.86, 3519, 0.4253, 0.002819, 249.34), 0.5: (1064.93, 3312, 0.3891, 0.003693, 237.16),
        0.6: (1077.14, 3098, 0.3567, 0.004845, 221.95)}),
    ("Propylene glycol", "Пропиленгликоль", "MPG", {
        0.2: (1014.78, 3976.8, 0.4922, 0.00203, 265.98), 0.3: (1023.78, 3857, 0.4444, 0.002965, 260.36),
        0.4: (1032.27, 3706.7, 0.4003, 0.004384, 252.58), 0.5: (1039.06, 3530.2, 0.3595, 0.006394, 240.96),
        0.6: (1043.03, 3340.3, 0.322, 0.009279, 223.15)}),
)


def incompressible(fluid, name):
    state = CP.AbstractState("INCOMP", fluid.split("[")[0])
    if "[" in fluid:
        state.set_mass_fractions([float(fluid.split("[")[1][:-1])])
    ask = {"density": state.rhomass, "heat-capacity": state.cpmass, "conductivity": state.conductivity,
           "viscosity": state.viscosity}[name]

    def at(temperature):
        state.update(CP.PT_INPUTS, ABOVE_VAPOUR_PRESSURE, float(temperature))
        return ask()

    return at


def incompressible_liquid(fluid, low, high, source, accuracy, at, expected, *notes):
    liquid = Phase(LIQUID, "Liquid", LIQUID)
    for name, number in zip(SYMBOLS, expected):
        fit = Fit(incompressible(fluid, name), low, high, ((at, number),), 1e-3)
        liquid.values.append(fitted(name, fit, source, accuracy, *notes))
    return liquid


def oils():
    for name, russian, fluid, source, aliases, (at, *expected) in OILS:
        made = Material(name, russian, "oils", aliases=aliases)
        low, high = (round(CP.PropsSI(limit, f"INCOMP::{fluid}"), 2) for limit in ("Tmin", "Tmax"))
        made.phases = [incompressible_liquid(fluid, low, high, f"{work('COOLPROP-I')} {fluid}, {source}", MANUFACTURER,
                                             at, expected)]
        yield made


def glycol_mixtures():
    for name, russian, fluid, checks in GLYCOLS:
        for share, (*expected, freezing) in checks.items():
            percent = round(100 * share)
            made = Material(f"{name} {percent} % in water", f"{russian} {percent} % в воде", "coolants",
                            "Per cent by mass", "Проценты по массе",
                            components=by_mass(**{name.replace(" ", "_"): percent, "Water": 100 - percent}))
            made.phases = [glycol_liquid(f"{fluid}[{share}]", freezing, expected)]
            made.values = [freezing_temperature(f"INCOMP::{fluid}[{share}]", freezing)]
            yield made


def glycol_liquid(fluid, freezing, expected):
    low = math.ceil(freezing + 0.5)
    return incompressible_liquid(fluid, low, 373.15, work("MELINDER"), "", 293.15, expected,
                                 "The source goes to about 313 K; above, its fit is extrapolated.")


def freezing_temperature(fluid, expected):
    got = CP.PropsSI("T_freeze", "T", 300.0, "P", ABOVE_VAPOUR_PRESSURE, fluid)
    if abs(got - expected) > 0.02:
        raise CheckFailed(f"{fluid} freezes at {got:g} K, not at {expected}")
    return constant("freezing-temperature", rounded(got), work("MELINDER"), "not given")


# Organic liquids: the correlations of Perry's handbook and of the VDI Heat Atlas, where they agree

PERRY_TABLES = {"density": "densities of liquids", "heat-capacity": "Table 2-153", "conductivity": "Table 2-315",
                "viscosity": "Table 2-313"}
WITNESSES_AGREE = {"density": 0.01, "heat-capacity": 0.05, "conductivity": 0.05, "viscosity": 0.1}


def perry(parameter, cas, molar_mass):
    """The correlation and its range."""
    row = {"density": chemicals.volume.rho_data_Perry_8E_105_l,
           "heat-capacity": chemicals.heat_capacity.Cp_data_Perry_Table_153_100,
           "conductivity": chemicals.thermal_conductivity.k_data_Perrys_8E_2_315,
           "viscosity": chemicals.viscosity.mu_data_Perrys_8E_2_313}[parameter].loc[cas]
    columns = [*"ABCDE", *(f"C{i}" for i in range(1, 6))]
    c = [float(row[column]) for column in columns if column in row]
    function = {"density": lambda t: molar_mass * c[0] / c[1] ** (1 + (1 - t / c[2]) ** c[3]),
                "heat-capacity": lambda t: polynomial(*c)(t) / 1000 / molar_mass,
                "conductivity": polynomial(*c),
                "viscosity": lambda t: math.exp(c[0] + c[1] / t + c[2] * math.log(t) + c[3] * t ** c[4])}[parameter]
    return function, float(row.Tmin), float(row.Tmax)


def vdi(parameter, cas):
    if parameter == "conductivity":
        row = chemicals.thermal_conductivity.k_data_VDI_PPDS_9.loc[cas]
        return polynomial(*(float(row[name]) for name in "ABCDE"))
    if parameter == "viscosity":
        row = chemicals.viscosity.mu_data_VDI_PPDS_7.loc[cas]
        return lambda t: chemicals.viscosity.PPDS9(t, *(float(row[name]) for name in "ABCDE"))
    if parameter == "density":
        row = chemicals.volume.rho_data_VDI_PPDS_2.loc[cas]
        return lambda t: ppds_density(t, row)
    return None


def ppds_density(temperature, row):
    x = 1 - temperature / float(row.Tc)
    a, b, c, d = (float(row[name]) for name in "ABCD")
    return float(row.rhoc) + a * x ** 0.35 + b * x ** (2 / 3) + c * x + d * x ** (4 / 3)


def agreeing_range(first, second, low, high, within):
    """The longest range in steps of 5 K in which two correlations agree."""
    best, begin = (low, low), None
    for temperature in [*numpy.arange(low, high, 5.0), high]:
        if abs(second(temperature) / first(temperature) - 1) > within:
            begin = None
            continue
        begin = temperature if begin is None else begin
        best = max(best, (begin, temperature), key=lambda ends: ends[1] - ends[0])
    return float(best[0]), float(best[1])


def organic(parameter, cas, molar_mass, lowest, highest):
    """A value of the liquid out of Perry's handbook, where the VDI Heat Atlas bears it out; None without agreement."""
    function, low, high = perry(parameter, cas, molar_mass)
    low, high = max(low, lowest), min(high, highest)
    source = f"{work('PERRY')}, {PERRY_TABLES[parameter]}, as tabulated by chemicals"
    try:
        other = vdi(parameter, cas)
    except KeyError:
        other = None
    if other is None:
        return fitted(parameter, Fit(function, low, high), source, "one source")
    low, high = agreeing_range(function, other, low, high, WITNESSES_AGREE[parameter])
    if high - low < 20:
        return None
    return fitted(parameter, Fit(function, round(low, 2), round(high, 2)), source,
                  f"the VDI Heat Atlas (2010) agrees within {100 * WITNESSES_AGREE[parameter]:g} % in this range")


ORGANIC_LIQUIDS = (
    ("Ethylene glycol", "Этиленгликоль", "107-21-1", "C2H6O2", 62.068e-3, 473.15),
    ("Propylene glycol", "Пропиленгликоль", "57-55-6", "C3H8O2", 76.095e-3, 460.0),
)


def organic_liquids():
    for name, russian, cas, formula, molar_mass, boiling in ORGANIC_LIQUIDS:
        made = Material(name, russian, "organic liquids", formula=formula, cas=cas)
        found = (organic(parameter, cas, molar_mass, 0, boiling) for parameter in SYMBOLS)
        made.phases = [Phase(LIQUID, "Liquid", LIQUID, [value for value in found if value])]
        made.values = [constant("molar-mass", molar_mass, "molecular weight as tabulated by chemicals"),
                       constant("melting-temperature", rounded(chemicals.Tm(cas, method="CRC_ORG")),
                                "CRC Handbook of Chemistry and Physics, as tabulated by chemicals", "not given"),
                       constant("boiling-temperature", rounded(chemicals.Tb(cas, method="CRC_ORG")),
                                "CRC Handbook of Chemistry and Physics, as tabulated by chemicals", "not given")]
        yield made


def glycerol():
    """Volk and Kaehler for the density, Cheng for the viscosity."""
    made = Material("Glycerol", "Глицерин", "organic liquids", formula="C3H8O3", cas="56-81-5", aliases=("Glycerine",))
    cheng = celsius(lambda c: 12.1 * math.exp((-1233 + c) * c / (9900 + 70 * c)))
    cas = "56-81-5"
    conductivity = vdi("conductivity", cas)
    made.phases = [Phase(LIQUID, "Liquid", LIQUID, [
        fitted("density", Fit(celsius(polynomial(1273.3, -0.6121)), 288.15, 353.15, ((293.15, 1261.1),)),
               "Volk and Kaehler (2018)", "another correlation (Cheng 2008) agrees within 0.3 %"),
        constant("heat-capacity", rounded(218.9 / 92.094e-3), "CRC Handbook of Chemistry and Physics, as tabulated by chemicals",
                 "one source", "At 298.15 K."),
        fitted("conductivity", Fit(conductivity, 293.15, 473.15, ((300, 0.29202),), 0.02),
               "VDI Heat Atlas, 2nd ed. (2010), as tabulated by chemicals", "a second correlation agrees within 2 % at 300 K"),
        fitted("viscosity", Fit(cheng, 273.15, 373.15, ((293.15, 1.4138), (300, 0.77409))),
               "Cheng, Ind. Eng. Chem. Res. 47 (2008) 3285", "another fit gives 2.7 % more at 300 K"),
        constant("surface-tension", 0.063, "CRC Handbook of Chemistry and Physics", "secondary reading", "At 298.15 K."),
    ])]
    made.values = [constant("molar-mass", 92.094e-3, "molecular weight as tabulated by chemicals")]
    return made


ENGINE_OIL = {
    "density": (899.1, 895.3, 890.0, 884.1, 877.9, 871.8, 865.8, 859.9, 853.9, 847.8, 841.8, 836.0, 830.6),
    "heat-capacity": (1796, 1827, 1868, 1909, 1951, 1993, 2035, 2076, 2118, 2161, 2206, 2250, 2294),
    "viscosity": (3.85, 2.17, 0.999, 0.486, 0.253, 0.141, 0.0836, 0.0531, 0.0356, 0.0252, 0.0186, 0.0141, 0.0110),
    "conductivity": (0.147, 0.144, 0.145, 0.145, 0.145, 0.143, 0.141, 0.139, 0.138, 0.138, 0.137, 0.136, 0.135),
}


def engine_oil():
    made = Material("Engine oil, unused", "Масло моторное свежее", "oils")
    temperatures = (273, *range(280, 400, 10))
    accuracy = "a second table (Bejan 2004) agrees within rounding; points of the source as they stand"
    made.phases = [Phase(LIQUID, "Liquid", LIQUID, [
        *(table(name, tuple(zip(temperatures, numbers)), work("INC-A5"), accuracy, *viscosity_note(name))
          for name, numbers in ENGINE_OIL.items()),
        constant("volume-expansion", 0.70e-3, work("INC-A5"), "not given")])]
    return made


def viscosity_note(name):
    return ("Interpolate the logarithm: the points lie far apart.",) if name == "viscosity" else ()


def seawater():
    made = Material("Seawater, 35 g/kg", "Морская вода, 35 г/кг", "coolants", "Salt by mass; at 0.1 MPa",
                    "Соль по массе; при 0,1 МПа")
    of_equation = "IAPWS R13-08 (seawater), computed with iapws"

    @functools.cache
    def state(temperature):
        return iapws.SeaWater(T=temperature, P=0.1, S=0.035)

    conductivity = ((293.15, 0.593825535), (333.15, 0.646875533))
    made.phases = [Phase(LIQUID, "Liquid", LIQUID, [
        fitted("density", Fit(lambda t: state(t).rho, 274.15, 353.15, ((293.15, 1024.91), (333.15, 1008.97)), 0.001),
               of_equation, "Sharqawy (2010) agrees within 0.1 %", samples=120),
        fitted("heat-capacity", Fit(lambda t: 1000 * state(t).cp, 274.15, 353.15, ((293.15, 3998.9), (333.15, 4014.3)), 0.005),
               of_equation, "Sharqawy (2010) agrees within 0.5 %", samples=120),
        table("conductivity", conductivity, "IAPWS G10-15 (thermal conductivity of seawater), check table", "not given"),
        fitted("viscosity", Fit(seawater_viscosity, 293.15, 453.15, ((293.15, 0.001077), (298.15, 0.00095904), (333.15, 0.00050832))),
               f"{work('SHARQAWY')} (form of Isdale)", "a fit of CoolProp agrees within 1 %"),
        fitted("surface-tension", Fit(lambda t: _Tension_SeaWater(t, 0.035), 274.15, 365.15,
                                      ((298.15, 0.073068675), (353.15, 0.063910807)), 1e-6), work("G14"), ""),
        fitted("speed-of-sound", Fit(lambda t: state(t).w, 274.15, 353.15), of_equation, "", samples=120),
    ])]
    return made


def seawater_viscosity(temperature):
    c, salinity = temperature - 273.15, 0.035
    water = 4.2844e-5 + 1 / (0.157 * (c + 64.993) ** 2 - 91.296)
    s = salinity / 1.00472
    strength = 19.915 * s / (1 - 1.00487 * s)
    exponent = 0.0428 * strength + 0.00123 * strength ** 2 + 0.000131 * strength ** 3 + (
        -0.03724 * strength + 0.01859 * strength ** 2 - 0.00271 * strength ** 3) * math.log10(1000 * water)
    return water * 10 ** exponent


def salt(name, russian, comment, russian_comment, values, melting=None, aliases=()):
    made = Material(name, russian, "molten salts", comment, russian_comment, aliases=aliases)
    made.phases = [Phase(LIQUID, "Liquid", LIQUID, list(values))]
    made.values = [melting] if melting else []
    return made


def salts():
    zavoico, flibe, flinak, zhao = work("SAND2100"), work("FLIBE"), work("FLINAK"), work("ZHAO")
    yield salt("Solar salt", "Солнечная соль", "60 % NaNO3, 40 % KNO3 by mass", "60 % NaNO3, 40 % KNO3 по массе", (
        fitted("density", Fit(celsius(polynomial(2090, -0.636)), 573.15, 873.15, ((673.15, 1835.6),)), zavoico, "another fit agrees within 0.5 %"),
        fitted("heat-capacity", Fit(celsius(polynomial(1443, 0.172)), 573.15, 873.15, ((673.15, 1511.8),)), zavoico, "another fit agrees within 1 %"),
        fitted("conductivity", Fit(celsius(polynomial(0.443, 1.9e-4)), 573.15, 873.15, ((673.15, 0.519),)), zavoico, ""),
        fitted("viscosity", Fit(celsius(polynomial(22.714e-3, -0.120e-3, 2.281e-7, -1.474e-10)), 573.15, 873.15,
                                ((673.15, 0.0017764),)), zavoico, "another fit gives 5 % more at 673 K")))
    yield salt("Heat-transfer salt", "Соль-теплоноситель", "53 % KNO3, 40 % NaNO2, 7 % NaNO3 by mass", "53 % KNO3, 40 % NaNO2, 7 % NaNO3 по массе", (
        fitted("density", Fit(polynomial(2293.6, -0.7497), 435, 788, ((573.15, 1863.9),)), work("SOHAL"), "another fit agrees within 0.5 %"),
        constant("heat-capacity", 1560.0, work("SSC"), "sources disagree: Sohal (2010) gives 1976 at 573 K and 1771 at 700 K"),
        fitted("viscosity", Fit(celsius(polynomial(0.00622, -1.02e-5)), 435, 788), work("SSC"), "secondary source; another fit agrees within 2 % at 573 K"),
        fitted("conductivity", Fit(celsius(polynomial(0.588, -6.47e-4)), 435, 788), work("SSC"), "secondary source; another fit agrees within 0.5 % at 573 K")),
               aliases=("Hitec", "HTS"))
    yield salt("FLiBe", "FLiBe", "67 % LiF, 33 % BeF2, molar", "67 % LiF, 33 % BeF2, молярные", (
        fitted("density", Fit(polynomial(2413, -0.4884), 732, 1673, ((900, 1973.4),)), flibe, "0.05 % claimed; another fit agrees"),
        constant("heat-capacity", 2416.0, flibe, "2 %; another work gives 2386"),
        fitted("conductivity", Fit(polynomial(0.63, 5.0e-4), 732, 1200, ((900, 1.08),)), flibe, "15 %"),
        fitted("viscosity", Fit(arrhenius(1.16e-4, 3755), 773, 1073, ((900, 0.0075237),)), flibe, "20 %; another fit gives 9.5 % less at 900 K"),
        fitted("surface-tension", Fit(polynomial(0.2928, -1.2e-4), 732, 1100, ((900, 0.1848),)), work("CANTOR"), "range chosen here, the source gives none")),
               constant("melting-temperature", 732.0, flibe, "458 to 459 degrees C in the source"))
    yield salt("FLiNaK", "FLiNaK", "46.5 % LiF, 11.5 % NaF, 42 % KF, molar", "46,5 % LiF, 11,5 % NaF, 42 % KF, молярные", (
        fitted("density", Fit(polynomial(2729, -0.73), 727, 1843, ((900, 2072),)), flinak, "2 %; another fit (Romatoski and Hu 2017) gives 2.6 % less at 900 K"),
        constant("heat-capacity", 2010.0, flinak, "20 %; another work gives 1880"),
        fitted("conductivity", Fit(polynomial(0.43, 5.0e-4), 790, 1080, ((900, 0.88),)), flinak, "15 %; another fit agrees within 2 %"),
        fitted("viscosity", Fit(arrhenius(4.0e-5, 4170), 773, 1073, ((900, 0.0041143),)), flinak, "20 %"),
        fitted("surface-tension", Fit(polynomial(0.2726, -1.014e-4), 790, 1080, ((900, 0.18134),)), work("JANZ"), "range chosen here, the source gives none")),
               constant("melting-temperature", 727.15, flinak))
    yield salt("Chloride salt NaCl-KCl-MgCl2", "Хлоридная соль NaCl-KCl-MgCl2", "30 % NaCl, 20 % KCl, 50 % MgCl2, molar", "30 % NaCl, 20 % KCl, 50 % MgCl2, молярные", (
        fitted("density", Fit(celsius(polynomial(1974, -0.5878)), 773.15, 1073.15, ((900, 1605.5),)), zhao, "range chosen here, the source gives none; older data give 10 % more"),
        fitted("heat-capacity", Fit(celsius(polynomial(1661, -1.843, 1.284e-3)), 773.15, 1073.15, ((900, 1010.3),)), zhao, "range chosen here, the source gives none"),
        fitted("conductivity", Fit(celsius(polynomial(0.811, -1.066e-3, 7.151e-7)), 773.15, 1073.15, ((900, 0.42377),)), zhao, "range chosen here, the source gives none"),
        fitted("viscosity", Fit(arrhenius(6.89e-4, 1224.73), 773.15, 1073.15, ((900, 0.0026867),)), zhao, "range chosen here, the source gives none; older data give 40 % less")))


def materials():
    return [*oils(), engine_oil(), *organic_liquids(), glycerol(), *glycol_mixtures(), seawater(), *salts()]
