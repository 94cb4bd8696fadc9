"""What commands tell of values at points, in other units, and by other names."""

import csv
import io
import json
import random
import unittest

from support import ANNOTATED, CommandTest, description, head, keys, prefixed, write

LIQUID = "Water:Liquid"
HEAD = "Water, phase Liquid\n"
OUTSIDE = "Density of Water, phase Liquid: {} is outside the table, which reaches from {}"
# Units as databases write them, as they are asked for, and by which factor and offset numbers change.
UNITS = [
    ("K", "degC", 1, -273.15), ("К", "°С", 1, -273.15), ("K", "°F", 1.8, -459.67), ("kg/m³", "g/cm3", 1e-3, 0),
    ("кг/м³", "г/см³", 1e-3, 0), ("W/(m·K)", "mW m⁻¹ K⁻¹", 1e3, 0), ("Вт/(м·К)", "W/(cm K)", 1e-2, 0),
    ("Дж/(кг·К)", "кДж/(кг·К)", 1e-3, 0), ("Pa", "бар", 1e-5, 0), ("МПа", "psi", 1e6 / 6894.757293168361, 0),
    ("Па·с", "сП", 1e3, 0), ("m²/s", "cSt", 1e6, 0), ("1/K", "10⁻⁶/K", 1e6, 0), ("m/m", "%", 100, 0),
    ("Ω·m", "µΩ·cm", 1e8, 0), ("Ом·м", "мкОм·см", 1e8, 0), ("кэВ", "J", 1.602176634e-16, 0),
    ("мм рт. ст.", "Pa", 133.322387415, 0), ("kg⋅m⁻³", "kg/m3", 1, 0), ("J/(mol·K)", "кал/(моль·К)", 1 / 4.1868, 0),
]

ICE_260 = repr(float(f"{919.87 + (916.721 - 919.87) * 10 / 23.15:.15g}"))


def bilinear(table, first, second):
    """`table` holds rows (second argument, value) by first argument."""
    def along(rows):
        for (low, below), (high, above) in zip(rows, rows[1:]):
            if low <= second <= high:
                return below + (above - below) * (second - low) / (high - low)
    for low, high in zip(sorted(table), sorted(table)[1:]):
        if low <= first <= high:
            below, above = along(table[low]), along(table[high])
            return below + (above - below) * (first - low) / (high - low)


class Reading(CommandTest):
    def setUp(self):
        super().setUp()
        write(self.database, ANNOTATED)

    def run_table(self, cases):
        """Arguments behind the database with output, and the messages when it fails."""
        for arguments, output, *errors in cases:
            command, *rest = arguments
            with self.subTest(arguments):
                status = 2 if errors and not errors[0].startswith("note: ") else 0
                self.expect([command, self.database, *rest], output, status, prefixed(errors[0]) if errors else "")

    def test_points(self):
        self.run_table([
            (["get", LIQUID, "rho", "--at", "P=1e5,T=290"],
             HEAD + " P, Pa  T, K  Density, kg/m³\n100000   290         998.235\n"),
            (["get", LIQUID, "rho", "--at", "temperature=280", "--at", "pressure=550000", "--csv"],
             '"P, Pa","T, K","Density, kg/m³"\n550000,280,1000.13\n'),
            (["get", LIQUID, "rho", "--at", "p=1:10:4.5,t=6.85", "--units", "P=bar", "--units", "T=degC", "--units",
              "g/cm3", "--csv"], '"P, bar","T, degC","Density, g/cm3"\n1,6.85,0.99991\n5.5,6.85,1.00013\n10,6.85,1.00035\n'),
            (["get", LIQUID, "rho", "--at", "P=4e5,T=289", "--nearest", "--csv"],
             '"P, Pa","T, K","Density, kg/m³"\n100000,280,999.91\n'),
            (["get", "Water:Ice", "Conductivity", "--at", "T=250:270:10", "--csv"],
             '"T, K","Conductivity x, W/(m K)","Conductivity y, W/(m K)","Conductivity z, W/(m K)"\n'
             "250,2.3,2.3,2.4\n260,2.25,2.25,2.35\n270,2.2,2.2,2.3\n"),
            (["get", "Water", "M", "--at", "T=300"], "", "no parameter of Water is called \"M\"; near matches: Molar mass (2)"),
            (["get", "Water", "Molar mass", "--at", "T=300"], "0.018015268 kg/mol\n",
             "note: Molar mass of Water is a constant: it has no arguments, and --at changes nothing"),
            (["get", LIQUID, "rho", "--at", "P=2e6,T=280"], "",
             OUTSIDE.format("P = 2000000 Pa", "100000 to 1000000 Pa")),
            (["get", LIQUID, "rho", "--at", "P=5,T=16.85", "--units", "T=degC", "--units", "P=bar"], "",
             OUTSIDE.format("T = 16.85 degC", "6.85 to 6.85 degC at P = 10 bar")),
            (["get", LIQUID, "rho", "--at", "T=290"], "",
             "Density is a table of P, T; give P (pressure) and T (temperature), as in --at P=1e6,T=350"),
            (["get", LIQUID, "rho", "--at", "P=1,V=2"], "",
             'Density has no argument "V"; give P (pressure) and T (temperature)'),
            (["get", LIQUID, "rho", "--at", "T=280:300"], "", '--at "T=280:300": write a series as FROM:TO:STEP'),
            (["get", LIQUID, "rho", "--at", "T=x"], "",
             '--at "T=x": "x" is not a number; write T=350 or T=FROM:TO:STEP'),
            (["get", "Water:Ice", "Density", "--at", "T=-9.5degC"], "", '--at "T=-9.5degC": "-9.5degC" is not a number; units '
             "go into an option of their own, as in --units T=degC"),
            (["get", LIQUID, "rho", "--nearest"], "", "--nearest needs --at, as in --at T=350"),
        ])

    def test_tables_that_cannot_be_read_between(self):
        for rows, text in [("P=2\n1 5\nP=1\n1 5\n", "the first arguments do not increase, 1 comes after 2"),
                           ("P=1\n1 5\nP=1\n2 5\n", "the first arguments do not increase, 1 comes after 1")]:
            write(self.database, {"Substance1/Phase1/Property1.dat": rows})
            status, output, errors = self.run_command("get", self.database, LIQUID, "rho", "--at", "P=1,T=1")
            self.assertEqual((2, ""), (status, output))
            self.assertIn(f"the table cannot be read between its points: {text}\n", errors)

    def test_interpolation_agrees_with_another(self):
        numbers = random.Random(5)
        firsts, seconds = [1.5, 2, 5, 11], [-3, 0.25, 4, 4.5, 20]
        table = {first: [(second, numbers.uniform(-5, 5)) for second in seconds] for first in firsts}
        text = "".join(f"P={first}\n" + "".join(f"{x} {y}\n" for x, y in rows) for first, rows in table.items())
        write(self.database, {"Substance1/Phase1/Property1.dat": text})
        output = self.output("get", self.database, LIQUID, "Density", "--at", "P=1.5:11:0.5,T=-3:20:0.25", "--json")
        rows = json.loads(output)["rows"]
        self.assertEqual(20 * 93, len(rows))
        for first, second, value in rows:
            self.assertAlmostEqual(bilinear(table, first, second), value, delta=1e-13)
        points = {(first, x): y for first, subtable in table.items() for x, y in subtable}
        exact = {(first, second): value for first, second, value in rows if (first, second) in points}
        self.assertEqual(points, exact)

    def test_units(self):
        tree = {f"d{i}.prd": description(100 + i, f"D{i}", units, "C", "") for i, (units, *_) in enumerate(UNITS)}
        for i in range(len(UNITS)):
            tree[f"Substance1/Property{100 + i}.prh"] = head(100 + i, 1, data=f"Property{100 + i}.dat")
            tree[f"Substance1/Property{100 + i}.dat"] = "321.5\n"
        write(self.database, tree)
        for i, (units, wanted, factor, offset) in enumerate(UNITS):
            number, _, text = self.output("get", self.database, "0", f"D{i}", "--units", wanted).strip().partition(" ")
            with self.subTest(units):
                self.assertEqual(wanted, text)
                self.assertAlmostEqual(1, float(number) / (321.5 * factor + offset), delta=2e-15)
        self.run_table([
            (["get", "0", "Molar mass", "--units", "K"], "",
             'Molar mass: "kg/mol" cannot be converted to "K": they do not measure the same'),
            (["get", "0", "D0", "--units", "C"], "",
             'D0: "K" cannot be converted to "C": they do not measure the same; degrees are "degC"'),
            (["get", "0", "D0", "--units", "furlongs per"], "",
             '"furlongs per" is no unit that UDUNITS knows; "udunits2 -A" of the package udunits-bin lists them'),
            (["get", "0", "D0", "--units", "T=degC"], "",
             "--units T=degC changes nothing: give the value's units once, and arguments that it has"),
        ])

    def test_export_in_other_units(self):
        rows = list(csv.DictReader(io.StringIO(
            self.output("export", self.database, "--units", "g/cm3", "--units", "T=degC"))))
        water = [(row["parameter"], row["units"], row["value"], row["second_argument"], row["second_argument_units"])
                 for row in rows if row["phase"] in ("Liquid", "") and row["value"]]
        self.assertEqual([("Molar mass", "kg/mol", "0.018015268", "", ""), ("Density", "g/cm3", "0.99991", "6.85", "degC"),
                          ("Density", "g/cm3", "0.99656", "26.85", "degC"),
                          ("Density", "g/cm3", "1.00035", "6.85", "degC"), ("Latent heat", "J/kg", "333430", "", "")], water)
        status, _, errors = self.run_command("export", self.database, "--units", "V=degC")
        self.assertEqual((0, "qmdb: note: --units V=degC fits nothing in the database\n"), (status, errors))

    def test_several_phases(self):
        write(self.database, {"Substance1/Phase1/Property1.prh": head(1, 2),
                              "Substance1/Phase1/Property1.dat": "280 999.91\n300 996.56\n"})
        tables = ("Water, phase Ice\n  T, K  Density, kg/m³\n   250          919.87\n273.15         916.721\n\n"
                  "Water, phase Liquid\nT, K  Density, kg/m³\n 280          999.91\n 300          996.56\n")
        arguments = [self.database, "Water", "Density", "--phase", "Ice", "--phase", "liquid"]
        self.expect(["get", *arguments], tables)
        rows = list(csv.reader(io.StringIO(self.output("get", *arguments, "--csv"))))
        self.assertEqual([["material", "T, K", "Density, kg/m³"], ["Water, phase Ice", "250", "919.87"]], rows[:2])
        self.assertEqual(5, len(rows))
        values = json.loads(self.output("get", *arguments, "--json"))
        self.assertEqual(["Ice", "Liquid"], [value["phase"]["name"] for value in values])

    def test_names(self):
        write(self.database, {
            "Substance4/Substance4.mtd": keys(Comment="", Composition="", ID=3, Mixture=0, Name="Water:Steam",
                                              Aliases="salt;R718"),
            "Substance4/Phase1/Phase1.phd": keys(Aggreg=3, ID=0, Name="Steam")})
        for name in ("Water", "0", "water", "Вода", "ВОДА", "h2o", "7732-18-5"):
            self.assertTrue(self.output("get", self.database, name + ":ice", "RHO").startswith("Water, phase Ice\n"), name)
        self.run_table([
            (["list", "Water:Steam"], "Water:Steam (3)\n└─ phase Steam (0), gas\n"),
            (["get", "Water:melting", "4"], "333430 J/kg\n"),
            (["get", "salt:crystal", "3"], "",
             'no phase or phase change of Salt is called "crystal"; near matches: Crystal, "cubic" (0)'),
            (["get", "salt:SOLID", "3"], "6 6 -6.5 W/(m K)\n"),
            (["get", "Water:Ice", "rho", "--phase", "Liquid"], "",
             '"Water:Ice" and the options name different phases; leave out --phase and --change'),
            (["list", "R718"], "", '"R718" may mean several: Water (0), Water:Steam (3); give the number'),
            (["list", "H2"], "", 'no substance is called "H2"; near matches: Water (0)'),
        ])

    def test_find(self):
        self.run_table([
            (["find", "h2o"], "Water (0)  substance  H2O, CAS 7732-18-5, also water, R718\n"),
            (["find", "bri"], "Brine (1)  substance\n"),
            (["find", "liq"], "Liquid (0)  phase  of Water, liquid\nLiquid (0)  phase  of Brine, liquid\n"),
            (["find", "rho"], "Density (1)  parameter  rho, kg/m³, 2 values; --at or a limit lists them\n"),
            (["find", "gold"], "", 'nothing in the database is called "gold", nor has such a formula, alias, CAS number '
             'or symbol\n"qmdb list --brief" shows what there is'),
            (["find", "rho", "--at", "T=260,P=1e5"],
             f"Density, kg/m³, at T = 260 K, P = 100000 Pa\n{ICE_260}  Water:Ice  table of T\n",
             "note: 1 more has Density in a table that does not reach T = 260 K, P = 100000 Pa"),
            (["find", "rho", "--at", "T=6.85", "--units", "T=degC", "--state", "liquid", "--csv"],
             "value,units,substance_id,substance,phase_id,phase,state,change_id,change,component,type\n",
             "note: 1 more has Density in a table that needs P (pressure) and T (temperature) in --at"),
            (["find", "Conductivity", "--at", "T=260,P=5", "--above", "2.25"],
             "Conductivity, W/(m K), at T = 260 K, P = 5\n   6  Salt:Crystal, \"cubic\"  x  constant\n"
             "   6  Salt:Crystal, \"cubic\"  y  constant\n2.35  Water:Ice              z  table of T\n"),
            (["find", "Conductivity", "--at", "V=260"], "",
             'no table of Conductivity has an argument "V"; give T (temperature)'),
            (["find", "rho", "--between", "9", "7"], "",
             "--between 9 7: write the lower limit first, as in --between 7 9"),
            (["find", "rho", "--above", "nan"], "", '--above takes a number, and "nan" is none'),
            (["find", "rho", "--above", "9", "--below", "7"], "", "no number is above 9 and below 7"),
            (["find", "Conductivity", "--units", "K"], "",
             'Conductivity: "W/(m K)" cannot be converted to "K": they do not measure the same'),
        ])
        found = json.loads(self.output("find", self.database, "Molar mass", "--between", "18", "18.1", "--units", "g/mol",
                                       "--json"))
        self.assertEqual(("g/mol", [(18.015268, "Water")]),
                         (found["units"], [(one["value"], one["substance"]["name"]) for one in found["found"]]))

    def test_brief(self):
        self.expect(["list", self.database, "--brief"], "0  Water  H2O  Liquid, Ice       5 values\n"
                    "1  Brine       Liquid            0 values\n2  Salt        Crystal, \"cubic\"  1 value\n")
        listed = json.loads(self.output("list", self.database, "H2O", "--brief", "--json"))
        self.assertEqual([(0, "H2O", ["liquid", "solid"], 5)],
                         [(one["id"], one["formula"], [phase["state"] for phase in one["phases"]], one["values"])
                          for one in listed])


if __name__ == "__main__":
    unittest.main()
