"""Molten metals: what reference correlations give beyond the tables of the elements."""

import math

from .fits import Fit, arrhenius, celsius, polynomial
from .fitted import fitted
from .model import LIQUID, Material, Phase, constant, table
from .sources import work


def vogel(a, b):
    """lg(mu/mPa s) = a + b/T"""
    return lambda t: 1e-3 * 10 ** (a + b / t)


def from_melting(number, slope, melting):
    return lambda t: number + slope * (t - melting)


def sodium_density(t):
    part = 1 - t / 2503.7
    return 219 + 275.32 * part + 511.58 * part ** 0.5


FINK, ZINKLE, NEA = work("FINK"), work("ZINKLE"), work("SOBOLEV")
OTHER = "a second table agrees within 0.5 %"


def sodium():
    yield fitted("density", Fit(sodium_density, 371, 2400, ((600, 874.43),)), FINK, "")
    yield fitted("conductivity", Fit(polynomial(124.67, -0.11381, 5.5226e-5, -1.1842e-8), 371, 1500, ((600, 73.707),)), FINK, "")
    yield fitted("viscosity", Fit(lambda t: math.exp(-6.4406 - 0.3958 * math.log(t) + 556.835 / t), 371, 2400,
                                  ((600, 0.00032088),)), FINK, "")
    yield fitted("surface-tension", Fit(lambda t: 0.2405 * (1 - t / 2503.7) ** 1.126, 371, 2400, ((600, 0.17666),)), FINK,
                 "11 % (two standard deviations)")
    yield fitted("vapour-pressure", Fit(lambda t: 1e6 * math.exp(11.9463 - 12633.73 / t - 0.4672 * math.log(t)), 600, 2400,
                                        ((1000, 19946),)), FINK, "", samples=2000)


def potassium():
    yield fitted("density", Fit(celsius(polynomial(841.5, -0.2172, -2.70e-5, 4.77e-9)), 337, 1523, ((500, 790.89),)),
                 work("FOUST", "p. 18"), "")
    yield table("conductivity", ((422.2, 45.2), (700.2, 39.3), (977.2, 33.1)),
                "Bird, Stewart and Lightfoot, Transport Phenomena, Table 9.1-4",
                "another table (AEC Liquid Metals Handbook, 1952) agrees within 0.5 %")
    yield fitted("viscosity", Fit(polynomial(1.6193e-3, -5.5722e-6, 8.7656e-9, -7.0683e-12, 2.8447e-15, -4.5263e-19),
                                  400, 900, ((500, 0.00030471), (800, 0.00016943))), work("HPIPE"),
                 "secondary source without range; an older fit gives 10 % less at 800 K")


def lithium():
    yield fitted("density", Fit(lambda t: 278.5 - 0.04657 * t + 274.6 * (1 - t / 3500) ** 0.467, 455, 1600,
                                ((500, 510.742), (1000, 466.601)), 1e-4), ZINKLE, OTHER)
    yield fitted("conductivity", Fit(polynomial(22.28, 0.0500, -1.243e-5), 455, 1500, ((500, 44.173), (1000, 59.850))),
                 ZINKLE, OTHER)
    yield fitted("viscosity", Fit(lambda t: math.exp(-4.164 - 0.6374 * math.log(t) + 292.1 / t), 455, 1500,
                                  ((500, 5.309e-4),)), ZINKLE, OTHER)
    yield fitted("surface-tension", Fit(polynomial(0.447, -1.07e-4, -1.351e-8), 455, 1300, ((500, 0.39012),)),
                 work("DAVISON"), "standard deviation of the data 1.9 %; an older fit gives 3 % less")


def lead():
    yield fitted("density", Fit(polynomial(11441, -1.2795), 600.7, 2021, ((700, 10545),)), NEA,
                 "another reference correlation agrees within 0.2 %")
    yield fitted("conductivity", Fit(polynomial(9.2, 0.011), 600.7, 1300, ((700, 16.9),)), NEA,
                 "another reference correlation agrees within 0.2 % and gives 16.9 % as its uncertainty")
    yield fitted("viscosity", Fit(arrhenius(4.55e-4, 1069), 600.7, 1473, ((700, 0.0020953),)), NEA,
                 "another reference correlation agrees within 1.5 %")
    yield fitted("surface-tension", Fit(polynomial(0.5259, -0.113e-3), 600.7, 1300, ((700, 0.4468),)), NEA + " (Jauch 1986)", "")
    yield fitted("speed-of-sound", Fit(polynomial(1953, -0.246), 600.7, 2000), NEA, "")
    yield fitted("volume-expansion", Fit(lambda t: 1 / (8942 - t), 600.7, 2000), NEA, "")
    yield fitted("resistivity", Fit(polynomial(67.0e-8, 0.0471e-8), 600.7, 1273), NEA, "")


def mercury():
    volumes = ((240, 7.311), (280, 7.365), (300, 7.387), (340, 7.439), (400, 7.526), (500, 7.664), (600, 7.807),
               (700, 7.957), (800, 8.118), (900, 8.292), (1000, 8.482))
    yield table("density", tuple((t, round(1e5 / v, 1)) for t, v in volumes), work("MEH-9", "saturated liquid"),
                "another fit agrees within 0.05 %; lines between the points of the source within 0.02 %")
    yield fitted("viscosity", Fit(vogel(-0.2561, 132.29), 234.4, 600, ((300, 0.0015306),)), work("ASSAEL-2012"),
                 "deviation 7.3 %")
    yield constant("conductivity", 8.18, work("MEH-6"), "another table (Bird et al., 8.20) agrees; at 373 to 473 K "
                   "sources differ by 8 to 11 %, so that no table is given", "At 273 K.")
    yield constant("surface-tension", 0.484, "CRC Handbook of Chemistry and Physics",
                   "secondary reading; another source gives 0.479", "At 298 K.")


def gallium():
    yield fitted("density", Fit(from_melting(6077, -0.611, 302.914), 303, 1500, ((400, 6017.7),)), work("ASSAEL-2012"), "0.4 %")
    yield fitted("viscosity", Fit(vogel(-0.4465, 204.03), 304, 800, ((400, 0.0011576),)), work("ASSAEL-2012"), "13.5 %")
    yield fitted("conductivity", Fit(from_melting(28.403, 0.071896, 302.914), 303, 850, ((400, 35.383),)),
                 work("ASSAEL-K"), "15.9 % (95 %)")


def tin():
    yield fitted("viscosity", Fit(vogel(-0.408, 343.4), 506, 1280, ((700, 0.0012094),)), work("ASSAEL-2010"), "")
    yield fitted("conductivity", Fit(from_melting(28.037, 0.023397, 505.8), 507, 2000, ((700, 32.581),)), work("ASSAEL-K"),
                 "12.6 % (95 %)")


def aluminium():
    yield fitted("viscosity", Fit(vogel(-0.7324, 803.49), 933.5, 1270, ((1000, 0.0011779),)), work("ASSAEL-2006"), "13.7 %")
    yield constant("surface-tension", 1.05, "Sarou-Kanian, Millot and Rifflet, Int. J. Thermophys. 24 (2003) 277",
                   "extrapolated by the source from 1600 to 2360 K", "At 933 K, free of oxygen.",
                   "An oxidised surface, as in ordinary practice, has about a fifth less.")


def iron():
    yield fitted("viscosity", Fit(vogel(-0.7209, 2694.85), 1812, 2480, ((1900, 0.0049824),)), work("ASSAEL-2006"), "5.7 %")
    yield fitted("conductivity", Fit(from_melting(36.349, 0.0096207, 1811), 1815, 2050, ((1900, 37.205),)), work("ASSAEL-K"),
                 "13.7 % (95 %)")


def copper():
    yield fitted("viscosity", Fit(vogel(-0.422, 1393.4), 1358, 1970, ((1500, 0.0032132),)), work("ASSAEL-2010"), "")
    yield fitted("conductivity", Fit(from_melting(150.49, 0.07041, 1357.77), 1358, 1700, ((1500, 160.5),)), work("ASSAEL-K"),
                 "9.8 % (95 %)")
    yield fitted("surface-tension", Fit(polynomial(1.633, -2.1e-4), 1400, 1750, ((1500, 1.318),)), work("AZIZ"), "")


LIQUIDS = {"Na": sodium, "K": potassium, "Li": lithium, "Pb": lead, "Hg": mercury, "Ga": gallium, "Sn": tin, "Al": aluminium,
           "Fe": iron, "Cu": copper}


def lead_bismuth():
    made = Material("Lead-bismuth eutectic", "Эвтектика свинец-висмут", "liquid metals", "44.5 % Pb, 55.5 % Bi by mass",
                    "44,5 % Pb, 55,5 % Bi по массе", aliases=("LBE",), components=by_mass(Lead=44.5, Bismuth=55.5))
    liquid = Phase(LIQUID, "Liquid", LIQUID)
    liquid.values = [
        fitted("density", Fit(polynomial(11065, -1.293), 398, 1927, ((600, 10289.2),)), NEA, "a second table agrees"),
        fitted("heat-capacity", Fit(lambda t: 164.8 - 3.94e-2 * t + 1.25e-5 * t ** 2 - 4.56e5 / t ** 2, 400, 1927,
                                    ((600, 144.39),)), NEA, "a second table agrees"),
        fitted("conductivity", Fit(polynomial(3.284, 1.617e-2, -2.305e-6), 398, 1200, ((600, 12.156),)), NEA, "a second table agrees"),
        fitted("viscosity", Fit(arrhenius(4.94e-4, 754.1), 398, 1300, ((600, 0.0017361),)), NEA, "a second table agrees"),
        fitted("surface-tension", Fit(polynomial(0.4485, -0.0799e-3), 398, 1400, ((600, 0.40056),)), NEA + " (Plevachuk 2008)",
               "another fit gives 3.7 % more"),
        fitted("speed-of-sound", Fit(polynomial(1855, -0.212), 400, 1100), NEA, ""),
        fitted("volume-expansion", Fit(lambda t: 1 / (8558 - t), 400, 1900), NEA, ""),
        fitted("resistivity", Fit(polynomial(90.9e-8, 0.048e-8), 400, 1100), NEA, ""),
    ]
    made.phases = [liquid]
    made.values = [constant("melting-temperature", 398.0, NEA), constant("boiling-temperature", 1927.0, NEA)]
    return made


def sodium_potassium():
    foust = work("FOUST")
    made = Material("Sodium-potassium eutectic", "Эвтектика натрий-калий", "liquid metals", "22 % Na, 78 % K by mass",
                    "22 % Na, 78 % K по массе", aliases=("NaK", "NaK-78"),
                    components=by_mass(Sodium=22, Potassium=78))
    liquid = Phase(LIQUID, "Liquid", LIQUID)
    liquid.values = [
        constant("density", 855.0, "encyclopaedia article NaK", "secondary source; the mixing rule of Foust gives 851 or 840, "
                 "by mole or by mass fractions", "At 373 K. No table: the sources leave open which fractions their rule takes."),
        fitted("heat-capacity", Fit(celsius(lambda c: 4184 * (0.2320 - 8.82e-5 * c + 8.2e-8 * c ** 2)), 273.15, 1073.15,
                                    ((573.15, 890.86),)), foust, "another fit agrees within 0.4 %"),
        fitted("conductivity", Fit(celsius(lambda c: 100 * (0.214 + 2.07e-4 * c - 2.2e-7 * c ** 2)), 423.15, 953.15,
                                   ((573.15, 25.63),)), foust, "another fit agrees within 0.5 %"),
    ]
    made.phases = [liquid]
    made.values = [constant("melting-temperature", 260.55, "encyclopaedia article NaK", "secondary source"),
                   constant("boiling-temperature", 1058.15, "encyclopaedia article NaK", "secondary source")]
    return made


MOLAR_MASSES = {"Lead": 207.2, "Bismuth": 208.9804, "Sodium": 22.98976928, "Potassium": 39.0983, "Copper": 63.546,
                "Zinc": 65.38, "Tin": 118.71, "Aluminium": 26.9815385, "Titanium": 47.867, "Vanadium": 50.9415,
                "Iron": 55.845, "Nickel": 58.6934, "Silver": 107.8682, "Water": 18.015268, "Ethylene glycol": 62.068,
                "Propylene glycol": 76.095}


def by_mass(**shares):
    """Molar fractions of mass shares; an underscore in a name stands for a blank."""
    moles = {name.replace("_", " "): share / MOLAR_MASSES[name.replace("_", " ")] for name, share in shares.items()}
    total = sum(moles.values())
    fractions = {name: round(amount / total, 6) for name, amount in moles.items()}
    last = list(fractions)[-1]
    fractions[last] = round(1 - sum(fraction for name, fraction in fractions.items() if name != last), 6)
    return tuple(fractions.items())


def materials():
    return [lead_bismuth(), sodium_potassium()]
