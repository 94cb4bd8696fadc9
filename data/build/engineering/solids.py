"""Alloys, ceramics, glasses, building and insulating materials, polymers, carbon and snow."""

from . import fits
from .fits import Fit, celsius, log10_polynomial, polynomial, strain_polynomial
from .fitted import fitted
from .liquidMetals import by_mass
from .model import SOLID, Change, Material, Phase, constant, table, vector
from .placing import place
from .sources import work

ROOM = "At room temperature."
SECONDARY = "secondary source"
NIST = work("NISTC")
POINTS = "not given; points of the source as they stand, so that lines between them may be off"
GPA = 1e9


def solid(name, russian, group, values, comment=("", ""), constants=(), **more):
    made = Material(name, russian, group, *comment, **more)
    made.phases = [Phase(SOLID, "Solid", SOLID, list(values))]
    made.values = list(constants)
    return made


def scaled(factor, function):
    return lambda t: factor * function(t)


def rho(number, key, accuracy=SECONDARY, *notes):
    return constant("density", float(number), work(key), accuracy, *(notes or (ROOM,)))


def cp(number, key, accuracy=SECONDARY, *notes):
    return constant("heat-capacity", float(number), work(key), accuracy, *(notes or (ROOM,)))


def k(number, key, accuracy=SECONDARY, *notes):
    return constant("conductivity", float(number), work(key), accuracy, *(notes or (ROOM,)))


def alpha(number, key, accuracy=SECONDARY, *notes):
    return constant("expansion", number, work(key), accuracy, *(notes or (ROOM,)))


def young(number, key, accuracy=SECONDARY, *notes):
    return constant("elastic-modulus", number * GPA, work(key), accuracy, *(notes or (ROOM,)))


def poisson(number, key):
    return constant("poisson-ratio", number, work(key), SECONDARY, ROOM)


def resistivity(number, key, note="At 293 K."):
    return constant("resistivity", number, work(key), SECONDARY, note)


def emissivity(number, key, surface, parameter="emissivity"):
    return constant(parameter, number, work(key), f"{SECONDARY}; depends on the surface", f"{surface}.")


def temperatures(solidus, liquidus, key):
    return (constant("solidus", solidus, work(key), SECONDARY), constant("liquidus", liquidus, work(key), SECONDARY))


def log10_fit(parameter, coefficients, low, high, checks, accuracy, *notes):
    return fitted(parameter, Fit(log10_polynomial(*coefficients), low, high, checks), NIST, accuracy, *notes)


def scale_note():
    return "Change of length since 293 K, over the length there."


def strain_rows(coefficients, low, high, checks, accuracy):
    """The strain passes zero at 293 K, so its nodes go by the largest strain."""
    function = strain_polynomial(*coefficients)
    fit = Fit(function, low, high, tuple((t, 1e-5 * number) for t, number in checks)).verified("strain")
    scale = max(abs(function(low)), abs(function(high)))
    rows = place(fit.function, fit.low, fit.high, 0.005, scale=scale)
    return table("strain", rows, f"{NIST}; {low:g} to {high:g} K",
                 f"{accuracy}; linear interpolation within 0.5 % of the largest strain", scale_note())


def modulus_rows(coefficients, low, high, checks, accuracy):
    function = scaled(GPA, polynomial(*coefficients))
    return fitted("elastic-modulus", Fit(function, low, high, tuple((t, GPA * e) for t, e in checks)), NIST, accuracy)


def modulus_points(points, key, accuracy="not given"):
    return table("elastic-modulus", tuple((round(c + 273.15, 2), e * GPA) for c, e in points), work(key), accuracy)


# Alloys

CONDUCTIVITY_304 = (-1.4087, 1.3982, 0.2543, -0.6260, 0.2334, 0.4256, -0.4658, 0.1650, -0.0199)


def alloys():
    eurocode = work("EC3")
    austenitic = ((-200, 209), (-75, 201), (25, 195), (100, 189), (200, 183), (300, 176), (400, 169), (500, 160), (600, 151), (700, 140))
    yield solid("Stainless steel 304", "Нержавеющая сталь 304", "alloys", (
        rho(8000, "CAL", f"{SECONDARY}; MatWeb agrees, EN 12524 has 7900 for stainless steel"),
        fitted("heat-capacity", Fit(celsius(polynomial(450, 0.280, -2.91e-4, 1.34e-7)), 293.15, 1473.15,
                                    ((293.15, 455.5), (673.15, 524), (1073.15, 556))), eurocode,
               "design values; near 300 K sources give 456 to 500"),
        fitted("conductivity", Fit(celsius(polynomial(14.6, 0.0127)), 293.15, 1473.15, ((293.15, 14.85), (673.15, 19.7), (1073.15, 24.8))),
               eurocode, "design values; the NIST fit to 300 K gives 15.3 there (error 2 %)"),
        alpha(17.2e-6, "CAL", f"{SECONDARY}; MatWeb agrees within 1 %"),
        strain_rows((-295.54, -0.39811, 9.2683e-3, -2.0261e-5, 1.7127e-8), 23, 300, ((77, -279.9), (200, -139.1)), "5 %"),
        modulus_points(austenitic, "ASME"), emissivity(0.16, "IDEAL", "As received"),
        emissivity(0.85, "IDEAL", "Oxidised at 1073 K", "emissivity-oxidised"),
        table("resistivity", ((293, 72e-8), (923, 116e-8)), work("MW304"), f"{SECONDARY}; two points"),
    ), constants=temperatures(1673, 1728, "MW304"), aliases=("AISI 304",))
    yield solid("Stainless steel 304, cryogenic", "Нержавеющая сталь 304, криогенная", "alloys", (
        rho(8000, "CAL"),
        log10_fit("heat-capacity", (22.0061, -127.5528, 303.647, -381.0098, 274.0328, -112.9212, 24.7593, -2.239153), 4, 300,
                  ((77, 204.5), (200, 416.4), (300, 469.5)), "5 %"),
        log10_fit("conductivity", CONDUCTIVITY_304, 4, 300, ((20, 2.17), (77, 7.92), (200, 12.63), (300, 15.31)), "2 %"),
        modulus_rows((210.0593, 0.1534883, -1.61739e-3, 5.11706e-6, -6.1546e-9), 57, 293, ((77, 214.4), (293, 199.5)), ""),
    ), ("Below 300 K", "Ниже 300 К"))
    yield solid("Stainless steel 316", "Нержавеющая сталь 316", "alloys", (
        fitted("density", Fit(polynomial(8089.4, -0.4297, -4.454e-5), 298, 1573, ((300, 7956), (800, 7717), (1200, 7510))),
               work("MILLS"), "3 %; Incropera has 8238, Callister 8000"),
        fitted("heat-capacity", Fit(polynomial(428.46, 0.1816), 298, 1573, ((300, 482.9), (800, 573.7), (1200, 646.4))),
               work("MILLS"), "5 %"),
        fitted("conductivity", Fit(polynomial(6.308, 0.02716, -7.301e-6), 298, 1573, ((300, 13.80), (500, 18.06), (800, 23.36))),
               work("MILLS"), "10 %; a NIST fit gives 15.3 at 300 K"),
        alpha(16.0e-6, "CAL"),
        modulus_rows((207.9488, 0.07394241, -9.6272e-4, 2.84556e-6, -3.2408e-9), 50, 293, ((77, 209.1), (293, 194.7)), "not given"),
    ), aliases=("AISI 316",))
    yield carbon_steel()
    yield cast_iron()
    yield from copper_alloys()
    yield from light_alloys()
    yield from nickel_alloys()
    yield from solders()


def carbon_steel():
    def heat_capacity(t):
        if t <= 600:
            return 425 + 0.773 * t - 1.69e-3 * t ** 2 + 2.22e-6 * t ** 3
        if t <= 735:
            return 666 + 13002 / (738 - t)
        return 545 + 17820 / (t - 731) if t <= 900 else 650

    points = ((-200, 216), (-75, 209), (25, 202), (100, 198), (200, 192), (300, 185), (400, 171), (500, 151), (550, 137))
    return solid("Carbon steel", "Углеродистая сталь", "alloys", (
        rho(7850, "EC3", "design value; A36, 1020 and 1040 agree, EN 12524 has 7800"),
        fitted("heat-capacity", Fit(celsius(heat_capacity), 293.15, 1473.15,
                                    ((293.15, 439.8), (473.15, 529.8), (673.15, 605.9), (872.15, 758.8), (973.15, 1008), (1073.15, 803))),
               work("EC3"), "design values", "The peak at 1008 K is the transformation.", breaks=(873.15, 1008.15, 1173.15), samples=3000),
        fitted("conductivity", Fit(celsius(lambda t: 54 - 0.0333 * t if t <= 800 else 27.3), 293.15, 1473.15,
                                   ((293.15, 53.3), (473.15, 47.3), (673.15, 40.7), (873.15, 34.0))), work("EC3"),
               "design values", breaks=(1073.15,)),
        alpha(11.7e-6, "CAL", f"{SECONDARY}; A36 and 1020"), modulus_points(points, "ASME"),
        poisson(0.3, "EC3"), emissivity(0.07, "FLIR", "Polished, 373 K, total"),
        emissivity(0.80, "FLIR", "Oxidised, 473 to 873 K, total", "emissivity-oxidised"),
    ), ("Structural steel", "Строительная сталь"), aliases=("Mild steel", "Structural steel"))


def cast_iron():
    return solid("Cast iron, grey", "Чугун серый", "alloys", (
        rho(7500, "EN12524", "design value; EN-GJL-250 has 7200"),
        cp(450, "EN12524", "design value; sources disagree: CIBSE gives 530"),
        k(50, "EN12524", "design value; sources disagree: CIBSE gives 56"), alpha(11.4e-6, "CAL"),
        emissivity(0.21, "IDEAL", "Polished"), emissivity(0.64, "IDEAL", "Oxidised", "emissivity-oxidised"),
    ), aliases=("Grey iron",))


def copper_alloys():
    aligned = "columns of the printed table assigned by count"
    yield solid("Brass, 70 % Cu and 30 % Zn", "Латунь, 70 % Cu и 30 % Zn", "alloys", (
        rho(8530, "INC", "a second table agrees within 0.2 %"),
        table("heat-capacity", ((200, 360), (300, 380), (400, 395), (600, 425)), work("INC"), f"{aligned}; {POINTS}"),
        table("conductivity", ((100, 75), (200, 95), (300, 110), (400, 137), (600, 149)), work("INC"),
              f"{aligned}; {POINTS}; a NIST fit gives 47.5 at 100 K"),
        alpha(19.9e-6, "CAL"), young(110, "CAL"), emissivity(0.03, "IDEAL", "Highly polished"),
        emissivity(0.61, "FLIR", "Oxidised, 373 K, total", "emissivity-oxidised"),
    ), ("C26000; per cent by mass", "C26000; проценты по массе"), (constant("melting-temperature", 1188.0, work("INC"), "not given"),),
        aliases=("C26000", "Cartridge brass"), components=by_mass(Copper=70, Zinc=30))
    for name, russian, share, other, density, heat, rows, melting in (
            ("Bronze, 89 % Cu and 11 % Sn", "Бронза, 89 % Cu и 11 % Sn", 89, "Tin", 8780, 355, ((200, 41), (300, 54), (400, 65), (600, 74)), 1104),
            ("Bronze, 90 % Cu and 10 % Al", "Бронза, 90 % Cu и 10 % Al", 90, "Aluminium", 8800, 420, ((200, 42), (300, 52), (400, 52), (600, 59)), 1293)):
        yield solid(name, russian, "alloys", (
            rho(density, "INC", "one source", "At 300 K."), cp(heat, "INC", "one source", "At 300 K."),
            table("conductivity", rows, work("INC"), f"{aligned}; {POINTS}"),
            emissivity(0.1, "FLIR", "Polished bronze, 323 K, total"),
        ), ("Per cent by mass", "Проценты по массе"), (constant("melting-temperature", float(melting), work("INC"), "one source; melts over a range"),),
            components=by_mass(**{"Copper": share, other: 100 - share}))


def light_alloys():
    matweb = f"{SECONDARY} (MatWeb)"
    yield solid("Aluminium alloy 6061-T6", "Алюминиевый сплав 6061-T6", "alloys", (
        rho(2700, "FC"),
        log10_fit("heat-capacity", (46.6467, -314.292, 866.662, -1298.3, 1162.27, -637.795, 210.351, -38.3094, 2.96344), 4, 300,
                  ((20, 8.85), (77, 348.1), (200, 835), (300, 953.9)), "5 %; MatWeb gives 896 at 300 K"),
        log10_fit("conductivity", (0.07918, 1.0957, -0.07277, 0.08084, 0.02803, -0.09464, 0.04179, -0.00571), 4, 300,
                  ((20, 28.4), (77, 83.5), (200, 136), (300, 155.3)), "0.5 %; a data card gives 167 at 300 K"),
        alpha(23.6e-6, "CAL"),
        strain_rows((-412.77, -0.30389, 8.7696e-3, -9.9821e-6), 18, 300, ((77, -388.7), (200, -202.6)), "4 %"),
        modulus_rows((77.71221, 0.01030646, -2.9241e-4, 8.9936e-7, -1.0709e-9), 2, 295, ((77, 77.15), (293, 70.36)), "1 %"),
        poisson(0.33, "CAL"),
    ), constants=(constant("solidus", 855.0, work("PAYETTE"), SECONDARY),))
    yield solid("Aluminium alloy 7075-T6", "Алюминиевый сплав 7075-T6", "alloys", (
        rho(2810, "FC"), cp(960, "FC"), k(130, "FC"), alpha(23.4e-6, "CAL"), young(71.7, "FC", f"{SECONDARY}; a second agrees within 1 %"),
        poisson(0.33, "FC")))
    yield solid("Titanium alloy Ti-6Al-4V", "Титановый сплав Ti-6Al-4V", "alloys", (
        rho(4430, "PAYETTE", matweb), cp(526.3, "PAYETTE", matweb),
        log10_fit("conductivity", (-5107.8774, 19240.422, -30789.064, 27134.756, -14226.379, 4438.2154, -763.07767, 55.796592),
                  20, 300, ((20, 0.843), (77, 3.47), (200, 5.75), (300, 7.55)), "2 %; MatWeb gives 6.7 at room temperature"),
        alpha(8.6e-6, "CAL"), strain_rows((-171.1, -0.214, 4.807e-3, -7.111e-6), 24, 300, ((77, -162.3), (200, -78.5)), "1.5 %"),
        young(114, "CAL", f"{SECONDARY}; a second agrees"), poisson(0.342, "PAYETTE"),
    ), ("90 % Ti, 6 % Al, 4 % V by mass", "90 % Ti, 6 % Al, 4 % V по массе"), temperatures(1878, 1928, "PYMATLIB"),
        aliases=("Grade 5",), components=by_mass(Titanium=90, Aluminium=6, Vanadium=4))


def nickel_alloys():
    yield solid("Nickel alloy 718", "Никелевый сплав 718", "alloys", (
        rho(8193, "SMC718", f"{SECONDARY} (maker's data)", "Annealed, room temperature."),
        cp(435, "SMC718", f"{SECONDARY} (maker's data)", "At 294 K."),
        table("conductivity", ((294, 11.1), (366, 12.4), (478, 14.1), (589, 16.0), (700, 17.7), (811, 19.5), (922, 21.2)),
              work("SMC718"), f"{SECONDARY} (maker's data, converted); a NIST fit gives 9.8 at 295 K"),
        strain_rows((-236.8, -0.212, 5.497e-3, -6.882e-6), 20, 300, ((77, -223.7),), "1.1 %"),
        table("resistivity", ((294, 125.2e-8), (366, 126.7e-8), (478, 128.3e-8), (589, 128.8e-8), (700, 130.3e-8), (811, 132.7e-8), (922, 133.8e-8)),
              work("SMC718"), f"{SECONDARY} (maker's data, converted)"),
        modulus_points(((21, 200), (93, 203), (149, 199), (204, 197), (260, 193)), "SMC718", f"{SECONDARY} (maker's data)"),
        emissivity(0.58, "IDEAL", "Sheet, 1033 K"),
    ), ("Annealed", "Отожжённый"), temperatures(1533, 1609, "SMC718"), aliases=("Inconel 718", "UNS N07718"))
    yield solid("Invar, Fe-36Ni", "Инвар, Fe-36Ni", "alloys", (
        rho(8150, "FC"), cp(515, "FC", f"{SECONDARY}; a second gives 500"),
        log10_fit("conductivity", (-2.7064, 8.5191, -15.923, 18.276, -11.9116, 4.40318, -0.86018, 0.068508), 4, 300,
                  ((20, 1.65), (77, 6.19), (200, 11.9), (300, 13.8)), "2 %"),
        alpha(1.6e-6, "CAL", f"{SECONDARY}; 0.94 to 1.6e-6 in sources: depends on the heat treatment"),
        resistivity(80e-8, "FC", ROOM),
        modulus_rows((141.565, 0.0254435, -1.00842e-3, 6.72797e-6, -1.0823e-8), 3, 298, ((77, 140.2), (293, 151.9)), "1 %; others give 140"),
        poisson(0.29, "FC"),
    ), ("64 % Fe, 36 % Ni by mass", "64 % Fe, 36 % Ni по массе"), components=by_mass(Iron=64, Nickel=36))


def solders():
    yield solid("Solder Sn63Pb37", "Припой Sn63Pb37", "alloys", (
        rho(8400, "TOPLINE", f"{SECONDARY}; three agree"), cp(150, "CAL", f"{SECONDARY}, for Sn60Pb40"),
        k(51, "TOPLINE", f"{SECONDARY}; three agree within 2 %"), alpha(24.0e-6, "TOPLINE", f"{SECONDARY}; a second agrees"),
        resistivity(14.5e-8, "ALASIR"), young(30, "TOPLINE", f"{SECONDARY}; a second agrees"),
    ), ("Eutectic; per cent by mass", "Эвтектика; проценты по массе"),
        (constant("melting-temperature", 456.0, work("TOPLINE"), f"{SECONDARY}; a second agrees"),),
        components=by_mass(Tin=63, Lead=37))
    yield solid("Solder Sn96.5Ag3Cu0.5", "Припой Sn96.5Ag3Cu0.5", "alloys", (
        rho(7380, "ALASIR", f"{SECONDARY}; a second agrees, a third gives 7500"), k(58, "ALASIR"), resistivity(13.2e-8, "ALASIR"),
    ), ("No source for the heat capacity", "Нет источника: теплоёмкость"), temperatures(490, 493, "ALASIR"), aliases=("SAC305",),
        components=by_mass(Tin=96.5, Silver=3, Copper=0.5))


# Ceramics and glasses

def nasa(name, high=None):
    fit = fits.nasa_phases()[name]
    end = min(fit.high, high or fit.high)
    return fitted("heat-capacity", Fit(fit, fit.low, end), f"{work('NASA9')}, {fit.remark}", "", breaks=fit.breaks)


REFRACTORY = (673.15, 873.15, 1073.15, 1273.15, 1473.15)


def ceramics():
    yield solid("Alumina", "Оксид алюминия", "ceramics", (
        table("density", tuple((c + 273.15, float(r)) for c, r in ((20, 3984), (500, 3943), (1000, 3891), (1200, 3868), (1400, 3845), (1500, 3834))),
              work("NIST150"), "not given"),
        nasa("AL2O3(a)"),
        table("conductivity", ((100, 133), (200, 55), (300, 36.0), (400, 26.4), (600, 15.8), (800, 10.4), (1000, 7.85), (1200, 6.55),
                               (1500, 5.66), (2000, 6.00)), work("INC-A2", "polycrystalline"), POINTS),
        alpha(7.4e-6, "CAL"), modulus_points(((20, 416), (500, 390), (1000, 364), (1200, 354), (1400, 343), (1500, 338)), "NIST150"),
    ), ("Al2O3, sintered, 99.5 % and more", "Al2O3, спечённый, от 99,5 %"), (constant("melting-temperature", 2323.0, work("NIST150"), "4 K"),),
        formula="Al2O3", cas="1344-28-1", aliases=("Aluminium oxide", "Corundum"))
    yield solid("Silicon carbide", "Карбид кремния", "ceramics", (
        rho(3216, "SNEAD", "Incropera has 3160"),
        fitted("heat-capacity", Fit(lambda t: 925.65 + 0.3772 * t - 7.9259e-5 * t ** 2 - 3.1946e7 / t ** 2, 200, 2400,
                                    ((300, 676.7), (600, 1034.7), (1000, 1191.6), (1500, 1298.9))), work("SNEAD"), "7 % below 1000 K, 4 % above"),
        fitted("conductivity", Fit(polynomial(153.1, -0.214, 1.54e-4, -3.70e-8), 300, 1500, ((300, 101.8), (600, 72.1), (1000, 56.1), (1500, 53.7))),
               work("STONE"), "102 to 490 at 300 K in sources: depends on purity and form", "Monolithic material."),
        alpha(4.6e-6, "CAL", f"{SECONDARY}; hot pressed; sintered 4.1e-6")), formula="SiC", cas="409-21-2")
    yield solid("Aluminium nitride", "Нитрид алюминия", "ceramics", (
        rho(3260, "MICRO", f"{SECONDARY}; a second gives 3250"), nasa("ALN(cr)"),
        k(170, "MICRO", f"{SECONDARY}; 80 to 200 by grade"), alpha(4.5e-6, "MICRO", f"{SECONDARY}; a second gives 4.6e-6"),
        young(330, "MIF", f"{SECONDARY}; a second agrees")), formula="AlN", cas="24304-00-5")
    yield solid("Zirconia, refractory", "Диоксид циркония огнеупорный", "ceramics", (
        rho(4950, "VDI", "one source"), table("heat-capacity", tuple(zip(REFRACTORY, (624, 668, 698, 718, 737))), work("VDI"), POINTS),
        table("conductivity", tuple(zip(REFRACTORY, (1.63, 1.54, 1.48, 1.43, 1.38))), work("VDI"), POINTS),
        alpha(9.6e-6, "CAL", f"{SECONDARY}; with 3 % of Y2O3, molar")),
        constants=(constant("melting-temperature", 2983.0, work("NASA9"), "not given"),), formula="ZrO2", cas="1314-23-4")
    yield solid("Fireclay brick", "Шамотный кирпич", "ceramics", (
        rho(2150, "VDI", "one source"), table("heat-capacity", tuple(zip(REFRACTORY, (956, 997, 1021, 1037, 1054))), work("VDI"), POINTS),
        table("conductivity", tuple(zip(REFRACTORY, (1.05, 1.10, 1.15, 1.18, 1.22))), work("VDI"), POINTS)))
    yield quartz()
    yield from glasses()


def quartz():
    made = Material("Quartz", "Кварц", "ceramics", "SiO2; vectors are along the a, b and c axes", "SiO2; векторы по осям a, b и c",
                    "SiO2", "14808-60-7")
    made.phases = [
        Phase(SOLID, "Solid (alpha)", SOLID, [
            constant("density", 2649.0, work("KOSINSKI"), SECONDARY, "At 293 K."), nasa("SiO2(a-qz)"),
            vector("conductivity", (6.21, 6.21, 10.4), work("INC-A2"), "one source", "At 300 K, along the a, b and c axes."),
            vector("expansion", (13.65e-6, 13.65e-6, 7.50e-6), work("KOSINSKI"), "not given", "At 298.15 K, along the a, b and c axes.")]),
        Phase(11, "Solid (beta)", SOLID, [nasa("SiO2(b-qz)")])]
    made.changes = [Change(10, "Alpha to beta", SOLID, 11, [
        constant("transition-temperature", 848.0, work("NASA9"), "other tables give 847"),
        constant("latent-heat", 6800.0, work("NASA9"), "not given")])]
    made.comment, made.russian_comment = "SiO2; vectors: axes a, b, c; beta lacks rho, k", "SiO2; векторы: оси a, b, c; у бета нет rho, k"
    return made


def glasses():
    yield solid("Borosilicate glass", "Боросиликатное стекло", "glasses", (
        rho(2230, "DURAN", f"{SECONDARY}; a second agrees", "At 298 K."), cp(830, "MIF", f"{SECONDARY}; sources disagree: 750 to 850"),
        k(1.2, "DURAN", f"{SECONDARY}; a second gives 1.14 at 293 K", "At 363 K."),
        alpha(3.3e-6, "DURAN", "two agree within 2 %", "From 293 to 573 K."), young(63, "DURAN", f"{SECONDARY}; a second agrees within 2 %"),
        poisson(0.20, "DURAN")), constants=(constant("glass-transition", 798.0, work("DURAN"), SECONDARY),),
        aliases=("Borosilicate 3.3",))
    yield solid("Soda-lime glass", "Натриево-кальциевое стекло", "glasses", (
        rho(2500, "EN12524", "ASHRAE agrees"), cp(750, "EN12524", "sources disagree: ASHRAE gives 840"),
        k(1.0, "EN12524", "ASHRAE agrees, CIBSE gives 1.05"), alpha(9.0e-6, "CAL"), young(69, "CAL"),
        emissivity(0.94, "IDEAL", "Polished plate")), aliases=("Window glass",))
    yield solid("Fused silica", "Кварцевое стекло", "glasses", (
        rho(2200, "EN12524", "one source"), cp(750, "EN12524", "a second source agrees within 2 %"), k(1.4, "EN12524", "one source"),
        alpha(0.4e-6, "CAL"), young(73, "CAL")), aliases=("Quartz glass",), formula="SiO2")


# Building and insulating materials, polymers: name, Russian, density, cp, conductivity, source, accuracy

DESIGN = "design value"
BUILDING = (
    ("Concrete, dense", "Бетон тяжёлый", 2400, 1000, 2.0, "EN12524", DESIGN, [("emissivity", 0.92, "FLIR", "At 293 K, total")]),
    ("Concrete, 2200 kg/m3", "Бетон, 2200 кг/м3", 2200, 1000, 1.65, "EN12524", DESIGN, []),
    ("Reinforced concrete, 1 % steel", "Железобетон, 1 % стали", 2300, 1000, 2.3, "EN12524", DESIGN, []),
    ("Lightweight concrete", "Бетон лёгкий", 1280, 840, 0.535, "ASHRAE13", "expanded shale; another edition gives 0.53", []),
    ("Aerated concrete", "Газобетон", 615, 840, 0.20, "ASHRAE13", "oven dry; one source", []),
    ("Brick, fired clay", "Кирпич керамический", 1920, 800, 0.895, "ASHRAE13", "sources disagree on k: Incropera gives 0.72", [("emissivity", 0.93, "IDEAL", "Red brick")]),
    ("Granite", "Гранит", 2600, 1000, 2.8, "EN12524", DESIGN, [("emissivity", 0.88, "FLIR", "Rough")]),
    ("Basalt", "Базальт", 2850, 1000, 3.5, "EN12524", DESIGN, []),
    ("Marble", "Мрамор", 2800, 1000, 3.5, "EN12524", DESIGN, []),
    ("Limestone, hard", "Известняк плотный", 2200, 1000, 1.7, "EN12524", DESIGN, []),
    ("Sandstone", "Песчаник", 2600, 1000, 2.3, "EN12524", DESIGN, []),
    ("Slate", "Сланец", 2400, 1000, 2.2, "EN12524", DESIGN, []),
    ("Sand and gravel", "Песок и гравий", 1950, 1045, 2.0, "EN12524", DESIGN, []),
    ("Clay or silt", "Глина или ил", 1500, 2085, 1.5, "EN12524", DESIGN, []),
    ("Gypsum board", "Гипсокартон", 900, 1000, 0.25, "EN12524", "sources disagree: ASHRAE gives k 0.16 and cp 1090 to 1880", []),
    ("Softwood", "Древесина хвойная", 500, 1600, 0.13, "EN12524", "design value, across the grain; along it about 1.8 times k", []),
    ("Hardwood", "Древесина лиственная", 700, 1600, 0.18, "EN12524", "design value, across the grain; dry wood has cp 1255", [("emissivity", 0.90, "IDEAL", "Planed oak")]),
    ("Plywood", "Фанера", 500, 1600, 0.13, "EN12524", "design value; another table has 545, 1215, 0.12", []),
    ("Oriented strand board", "Плита ОСП", 650, 1700, 0.13, "EN12524", DESIGN, []),
    ("Particleboard", "Плита древесно-стружечная", 600, 1700, 0.14, "EN12524", DESIGN, []),
    ("Mineral wool, 32 kg/m3", "Минеральная вата, 32 кг/м3", 32, 840, 0.040, "ASHRAE13", "one source", []),
    ("Mineral wool, 97 kg/m3", "Минеральная вата, 97 кг/м3", 97.5, 840, 0.035, "ASHRAE13", "one source", []),
    ("Glass wool batts", "Стекловата", 12, 840, 0.043, "ASHRAE13", "one source", []),
    ("Expanded polystyrene", "Пенополистирол", 20, 1470, 0.0355, "ASHRAE13", "one source", []),
    ("Extruded polystyrene foam", "Пенополистирол экструдированный", 32.5, 1470, 0.026, "ASHRAE13", "one source", []),
    ("Polyurethane foam", "Пенополиуретан", 30, 1470, 0.028, "CIBSE", "ASHRAE gives 0.026 at 40 kg/m3", []),
    ("Cellular glass", "Пеностекло", 130, 750, 0.048, "ASHRAE13", "one source", []),
    ("Expanded perlite", "Перлит вспученный", 50, 1090, 0.042, "ASHRAE13", "one source", []),
    ("Exfoliated vermiculite", "Вермикулит вспученный", 120, 1340, 0.068, "ASHRAE13", "one source", []),
    ("Cork underlay", "Пробка", 200, 1500, 0.05, "EN12524", DESIGN, []),
    ("Snow, fresh", "Снег свежий", 100, 2000, 0.05, "EN12524", "design value; formulas give 0.041 to 0.065", [("emissivity", 0.85, "IDEAL", "Snow")]),
    ("Snow, compacted", "Снег слежавшийся", 500, 2000, 0.60, "EN12524", "design value; formulas give 0.44 to 0.51", []),
)
POLYMERS = (
    ("Polyethylene, high density", "Полиэтилен высокой плотности", 980, 1800, 0.50, DESIGN, ("HDPE",), 410, 183, None),
    ("Polyethylene, low density", "Полиэтилен низкой плотности", 920, 2200, 0.33, DESIGN, ("LDPE",), 388, 163, None),
    ("Polypropylene", "Полипропилен", 910, 1800, 0.22, "design value; another source gives cp 1920 and k 0.249", ("PP",), 448, 263, None),
    ("Polyvinyl chloride, rigid", "Поливинилхлорид жёсткий", 1390, 900, 0.17, "design value; another source gives cp 1000 and k 0.15", ("PVC",), None, 360, None),
    ("Polymethyl methacrylate", "Полиметилметакрилат", 1180, 1500, 0.18, "design value; another source gives k 0.199", ("PMMA", "Acrylic glass"), None, None, None),
    ("Polycarbonate", "Поликарбонат", 1200, 1200, 0.20, "design value; sources disagree: another one gives cp 840", ("PC",), None, 423, 122e-6),
    ("Epoxy resin", "Эпоксидная смола", 1200, 1400, 0.20, "design value; sources disagree: another one gives cp 1050", (), None, None, None),
    ("Polystyrene", "Полистирол", 1050, 1300, 0.16, DESIGN, ("PS",), None, None, None),
    ("Polyurethane", "Полиуретан", 1200, 1800, 0.25, DESIGN, ("PUR",), None, None, None),
    ("Natural rubber", "Каучук натуральный", 910, 1100, 0.13, DESIGN, ("NR",), None, None, None),
    ("Chloroprene rubber", "Каучук хлоропреновый", 1240, 2140, 0.23, DESIGN, ("Neoprene",), None, None, None),
    ("EPDM rubber", "Каучук EPDM", 1150, 1000, 0.25, DESIGN, ("EPDM",), None, None, None),
    ("Silicone rubber", "Каучук силиконовый", 1200, 1000, 0.35, DESIGN, (), None, None, 270e-6),
)


def buildings():
    for name, russian, density, heat, conductivity, key, accuracy, more in BUILDING:
        yield solid(name, russian, "building", (rho(density, key, accuracy), cp(heat, key, accuracy), k(conductivity, key, accuracy),
                                               *(emissivity(number, source, surface) for _, number, source, surface in more)))


def polymers():
    for name, russian, density, heat, conductivity, accuracy, aliases, melting, glass, expansion in POLYMERS:
        values = [rho(density, "EN12524", accuracy), cp(heat, "EN12524", accuracy), k(conductivity, "EN12524", accuracy)]
        values += [alpha(expansion, "CAL")] if expansion else []
        constants = [constant("melting-temperature", float(melting), work("CAL-E"), SECONDARY)] if melting else []
        constants += [constant("glass-transition", float(glass), work("CAL-E"), SECONDARY)] if glass else []
        yield solid(name, russian, "polymers", values, constants=constants, aliases=aliases)
    yield from cryogenic_polymers()


def cryogenic_polymers():
    yield solid("Polytetrafluoroethylene", "Политетрафторэтилен", "polymers", (
        rho(2200, "EN12524", "design value; another source has 2170"),
        log10_fit("heat-capacity", (31.88256, -166.51949, 352.01879, -393.44232, 259.98072, -104.61429, 24.99276, -3.20792, 0.16503), 4, 300,
                  ((20, 76.8), (77, 301), (200, 739), (300, 1032)), "EN 12524 has 1000 at room temperature"),
        log10_fit("conductivity", (2.7380, -30.677, 89.430, -136.99, 124.69, -69.556, 23.320, -4.3135, 0.33829), 4, 300,
                  ((20, 0.142), (77, 0.232), (200, 0.267), (300, 0.273)), "EN 12524 has 0.25 at room temperature"),
    ), constants=(constant("melting-temperature", 600.0, work("CAL-E"), SECONDARY),), aliases=("PTFE", "Teflon"))
    yield solid("Polyamide 6.6", "Полиамид 6.6", "polymers", (
        rho(1150, "EN12524", "a second source agrees"),
        log10_fit("heat-capacity", (-5.2929, 25.301, -54.874, 71.061, -52.236, 21.648, -4.7317, 0.42518), 4, 300,
                  ((20, 99.9), (77, 574), (200, 1210), (300, 1619)), "4 %"),
        log10_fit("conductivity", (-2.6135, 2.3239, -4.7586, 7.1602, -4.9155, 1.6324, -0.2507, 0.0131), 2, 300,
                  ((20, 0.098), (77, 0.293), (300, 0.337)), "2 %; sources disagree: EN 12524 has 0.25 at room temperature"),
        strain_rows((-1389, -0.1561, 2.988e-2, -7.948e-5, 1.181e-7), 4, 300, ((77, -1256), (200, -672)), "1 %"),
    ), constants=(constant("melting-temperature", 538.0, work("CAL-E"), SECONDARY),), aliases=("Nylon", "PA66"))
    yield solid("Glass-epoxy laminate G-10", "Стеклотекстолит G-10", "polymers", (
        rho(1850, "ENC-FR4", f"{SECONDARY}; for FR-4; another gives 1900"),
        log10_fit("heat-capacity", (-2.4083, 7.6006, -8.2982, 7.3301, -4.2386, 1.4294, -0.24396, 0.015236), 4, 300,
                  ((77, 239), (200, 664), (300, 999)), "2 %"),
        log10_fit("conductivity", (-4.1236, 13.788, -26.068, 26.272, -14.663, 4.4954, -0.6905, 0.0397), 10, 300,
                  ((77, 0.280), (200, 0.445), (300, 0.608)), "5 %", "Normal to the layers; along the warp 0.864 at 300 K."),
        strain_rows((-719.8, 0.4455, 7.505e-3, -2.219e-6), 4, 300, ((77, -642),), "not given, normal to the layers"),
    ), ("FR-4 is alike; normal to the layers", "Сходен с FR-4; поперёк слоёв"), aliases=("FR-4",))


def carbon():
    yield solid("Graphite, H-451", "Графит H-451", "ceramics", (
        rho(1850, "NEA18", "one source"), nasa("C(gr)", 3000),
        fitted("conductivity", Fit(polynomial(169.214, -0.12489, 3.28248e-5), 500, 1800, ((500, 115), (1000, 77.1), (1500, 55.7))), work("NEA18"), ""),
        emissivity(0.98, "FLIR", "Filed surface, 293 K, total"),
    ), ("Nuclear grade", "Ядерный"), formula="C")
    yield solid("Graphite, refractory", "Графит огнеупорный", "ceramics", (
        rho(1550, "VDI", "one source"), table("heat-capacity", tuple(zip(REFRACTORY, (1108, 1244, 1366, 1479, 1588))), work("VDI"), POINTS),
        table("conductivity", tuple(zip(REFRACTORY, (67.0, 60.67, 56.06, 52.01, 49.46))), work("VDI"), POINTS)), formula="C")
    yield solid("Graphite, pyrolytic", "Графит пиролитический", "ceramics", (
        vector("conductivity", (1950.0, 1950.0, 5.70), work("INC-A2"), SECONDARY, "At 300 K, along the a, b and c axes."), nasa("C(gr)", 3000),
        vector("expansion", (-1.2e-6, -1.2e-6, 25.9e-6), work("KIRBY"), SECONDARY, "At 293 K, along the a, b and c axes."),
    ), ("Vectors: axes a, b, c; no source for density", "Векторы: оси a, b, c; нет плотности"), formula="C")


def materials():
    return [*alloys(), *ceramics(), *carbon(), *buildings(), *polymers()]
