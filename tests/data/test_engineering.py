"""The engineering database: no finding, opens in both languages, and agrees with figures of other sources.

test_engineering.py COMMAND DATABASE
"""

import bisect
import functools
import json
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from figures import FIGURES

COMMAND, DATABASE = sys.argv.pop(1), Path(sys.argv.pop(1))
CHANGES = {"Vaporisation", "Melting", "Sublimation"}
MOST_FILES, MOST_BYTES = 4000, 10_000_000


def run(*arguments):
    return subprocess.run([COMMAND, *arguments], capture_output=True, text=True, check=False)


@functools.cache
def listing(language):
    with tempfile.TemporaryDirectory() as log:
        result = run("list", str(DATABASE), "--lang", language, "--json", "--log", log)
        return json.loads(result.stdout), (Path(log) / "qmdb.log").read_text(encoding="utf-8")


@functools.cache
def rows(material, owner, parameter):
    place = ("--change" if owner in CHANGES else "--phase", owner)
    result = run("get", str(DATABASE), material, parameter, *place, "--json")
    if result.returncode:
        raise AssertionError(result.stderr)
    return json.loads(result.stdout)["rows"]


def between(points, argument):
    """Linear between the two points around the argument, which lies within the table."""
    arguments = [point[0] for point in points]
    if not arguments[0] <= argument <= arguments[-1]:
        raise AssertionError(f"{argument} is not within {arguments[0]} to {arguments[-1]}")
    index = min(max(bisect.bisect_right(arguments, argument), 1), len(points) - 1)
    (x0, y0), (x1, y1) = points[index - 1], points[index]
    return y0 + (y1 - y0) * (argument - x0) / (x1 - x0)


def value(table, pressure, argument):
    if argument == "-":
        return table[0][0]
    if pressure is None or len(table[0]) == 2:
        return between(table, float(argument))
    pressures = sorted({row[0] for row in table})
    index = min(max(bisect.bisect_left(pressures, pressure), 1), len(pressures) - 1)
    neighbours = [pressure] if pressure in pressures else pressures[index - 1:index + 1]
    subtables = {p: [row[1:] for row in table if row[0] == p] for p in neighbours}
    points = [(p, between(subtable, float(argument))) for p, subtable in subtables.items()]
    return points[0][1] if len(points) == 1 else between(points, pressure)


def figures():
    for line in FIGURES.strip().splitlines():
        if not line.startswith("#"):
            material, owner, parameter, pressure, percent, pairs = (part.strip() for part in line.split("|"))
            for pair in pairs.split():
                argument, expected = pair.split(":")
                yield (material, owner, parameter, float(pressure) if pressure else None, argument, float(expected),
                       float(percent))


class Engineering(unittest.TestCase):
    def test_nothing_to_report(self):
        result = run("check", str(DATABASE))
        self.assertEqual((result.returncode, result.stdout.splitlines()[-1].split(" in ")[0]), (0, "0 errors, 0 warnings"),
                         result.stdout[-2000:])

    def test_size(self):
        files = [path for path in DATABASE.rglob("*") if path.is_file()]
        self.assertLessEqual(len(files), MOST_FILES)
        self.assertLessEqual(sum(path.stat().st_size for path in files), MOST_BYTES)

    def test_both_languages(self):
        (english, first_log), (russian, second_log) = listing("en"), listing("ru")
        self.assertEqual([line for line in (first_log + second_log).splitlines() if line.startswith("ERROR")], [])
        self.assertGreaterEqual(len(english), 80)
        self.assertEqual([one["id"] for one in english], [one["id"] for one in russian])
        translated = sum(one["name"] != other["name"] for one, other in zip(english, russian))
        self.assertGreater(translated, 0.95 * len(english))
        for one, other in zip(english, russian):
            for phase, translation in zip(one["phases"], other["phases"]):
                self.assertTrue(phase["parameters"], f"{one['name']}, {phase['name']} is empty")
                self.assertTrue(any("а" <= letter.lower() <= "я" for letter in translation["name"]), translation["name"])

    def test_solids_and_liquids_are_complete_or_say_why_not(self):
        needed = {"Density", "Specific heat capacity", "Thermal conductivity"}
        for one in listing("en")[0]:
            for phase in one["phases"]:
                names = {parameter["name"] for parameter in phase["parameters"]}
                complete = phase["state"] == "gas" or needed <= names
                self.assertTrue(complete or one["comment"], f"{one['name']}, {phase['name']}: {needed - names}")

    def test_figures_of_other_sources(self):
        found = list(figures())
        self.assertGreaterEqual(len(found), 200)
        for material, owner, parameter, pressure, argument, expected, percent in found:
            with self.subTest(material=material, owner=owner, parameter=parameter, pressure=pressure, at=argument):
                got = value(rows(material, owner, parameter), pressure, argument)
                self.assertLessEqual(abs(got / expected - 1), percent / 100, f"{got:g}, not {expected:g}")


if __name__ == "__main__":
    unittest.main()
