"""The qmdb command: whole outputs on a small database, on broken copies of it, and on generated ones."""

import json
import os
import pty
import shutil
import sqlite3
import subprocess
import unittest
from pathlib import Path

from support import COMMAND, MARK, CommandTest, description, head, keys, snapshot, write

TREE = """\
Water (0): H₂O
├─ Molar mass (2)       constant       scalar   1 point  kg/mol
├─ phase Liquid (0), liquid
│  └─ Density (1)       table of P, T  scalar  3 points  kg/m³    P 100000 to 1000000, T 280 to 300
├─ phase Ice (1), solid
│  ├─ Density (1)       table of T     scalar  2 points  kg/m³    T 250 to 273.15
│  └─ Conductivity (3)  table of T     vector  2 points  W/(m K)  T 250 to 270
└─ change Melting (0), Ice to Liquid
   └─ Latent heat (4)   constant       scalar   1 point  J/kg

Brine (1), mixture of 0.75 Water + 0.25 Salt
└─ phase Liquid (0), liquid

Salt (2)
└─ phase Crystal, "cubic" (0), solid
   └─ Conductivity (3)  constant       vector   1 point  W/(m K)
"""

TIDY = '''\
substance_id,substance,phase_id,phase,change_id,change,parameter_id,parameter,units,first_argument,second_argument,\
component,value
0,Water,,,,,2,Molar mass,kg/mol,,,,0.018015268
0,Water,0,Liquid,,,1,Density,kg/m³,100000,280,,999.91
0,Water,0,Liquid,,,1,Density,kg/m³,100000,300,,996.56
0,Water,0,Liquid,,,1,Density,kg/m³,1000000,280,,1000.35
0,Water,1,Ice,,,1,Density,kg/m³,250,,,919.87
0,Water,1,Ice,,,1,Density,kg/m³,273.15,,,916.721
0,Water,1,Ice,,,3,Conductivity,W/(m K),250,,x,2.3
0,Water,1,Ice,,,3,Conductivity,W/(m K),250,,y,2.3
0,Water,1,Ice,,,3,Conductivity,W/(m K),250,,z,2.4
0,Water,1,Ice,,,3,Conductivity,W/(m K),270,,x,2.2
0,Water,1,Ice,,,3,Conductivity,W/(m K),270,,y,2.2
0,Water,1,Ice,,,3,Conductivity,W/(m K),270,,z,2.3
0,Water,,,0,Melting,4,Latent heat,J/kg,,,,333430
2,Salt,0,"Crystal, ""cubic""",,,3,Conductivity,W/(m K),,,x,6
2,Salt,0,"Crystal, ""cubic""",,,3,Conductivity,W/(m K),,,y,6
2,Salt,0,"Crystal, ""cubic""",,,3,Conductivity,W/(m K),,,z,-6.5
'''

# A tree of faults, laid over the small one. Opening stops at the first that it meets.
PLANTED = {
    "conductivity.prd": description(3, "Conductivity", "W/(m K)", "Ct", "S", vector=1) + "Note=" + "x" * 1100 + "\n",
    "default.lst": MARK + "10=Water\n11=Ice\n",
    "Substance1/Substance1.mtd": keys(ID=0, Mixture=0, Name="W", NameID=10),
    "Substance1/Property1.dat": "heavy\n",
    "Substance1/Phase1/Phase1.phd": MARK + "Aggreg=2\n; a comment\nID=0\nName=Liquid\n",
    "Substance1/Phase1/Property1.dat": "280 1\nP=x\np=3\n300 1,5.5\nP=2\n1\tinf\n1 inf\nP=2\n1 2\n2 3",
    "Substance1/Phase2/Property1.dat": "# T rho\n250 919\n250 920\n",
    "Substance1/PC1/PC1.pcd": keys(ID=0, Name="Melting", Phase1=1, Phase2=7, name="x"),
    "Substance1/PC1/Property1.dat": "# nothing yet\n",
    "Substance2/Substance2.mtd": keys(Comment="", Composition="0:0.5;9:0.25", ID=1, Mixture=1, Name="Salt"),
    "Substance3/Phase1/Property1.dat": "1 2 3\n6 6 6\n",
    "Substance4/Substance4.mtd": keys(Comment="", Composition="0:1", ID="2x", Mixture=1, Name="One"),
    "Substance4/Phase1/Phase1.phd": keys(Aggreg=5, ID=0, Name="Plasma"),
    "Substance4/Phase1/Property1.prh": head(77, 1, 0, "gone.dat"),
    "Substance4/Phase1/Property2.prh": head(2, 9, 1),
    "Substance4/Phase1/Property3.PRH": head(1, 1),
    "Substance4/Phase1/Property9.dat": "1\n",
    "Substance5/Substance5.mtd": keys(Comment="", Composition="", ID=5, Mixture=0, Name="Bare"),
    "Substance6/Substance6.mtd": "Comment=\nComposition=\nID=6\nMixture=0\nName=\xfc\n".encode("latin-1"),
    "Substance6/Phase1/a.phd": keys(Aggreg=1, ID=0, Name="A"),
    "Substance6/Phase1/b.phd": keys(Aggreg=1, ID=0, Name="B"),
    "Substance6/Phase1/Property1.prh": head(3, 4, 2),
    "Substance6/Phase1/Property1.dat": MARK + "P=1\n1 2\n",
    "Substance7/notes.txt": "",
}
FOUND = """\
Substance1/PC1/PC1.pcd:4 error unknown-phase
Substance1/PC1/PC1.pcd:5 warning unknown-key
Substance1/PC1/Property1.dat:None error no-data
Substance1/Phase1/Phase1.phd:2 error no-key
Substance1/Phase1/Property1.dat:1 error no-header
Substance1/Phase1/Property1.dat:2 error bad-number
Substance1/Phase1/Property1.dat:3 error bad-row
Substance1/Phase1/Property1.dat:4 warning ignored-text
Substance1/Phase1/Property1.dat:6 error bad-row
Substance1/Phase1/Property1.dat:7 warning not-finite
Substance1/Phase1/Property1.dat:8 warning repeated-subtable
Substance1/Phase1/Property1.dat:10 error dropped-line
Substance1/Phase2/Property1.dat:3 error not-increasing
Substance1/Property1.dat:1 error bad-number
Substance1/Substance1.mtd:None error missing-key
Substance2/Substance2.mtd:2 error bad-fractions
Substance2/Substance2.mtd:2 error unknown-component
Substance3/Phase1/Property1.dat:1 warning ignored-line
Substance3/Substance3.mtd:5 warning duplicate-name
Substance4/Phase1/Phase1.phd:1 warning bad-state
Substance4/Phase1/Property1.prh:1 error no-data-file
Substance4/Phase1/Property1.prh:2 error no-description
Substance4/Phase1/Property2.prh:1 error no-data-file
Substance4/Phase1/Property2.prh:3 error bad-type
Substance4/Phase1/Property2.prh:4 error form-not-allowed
Substance4/Phase1/Property3.PRH:None warning wrong-extension
Substance4/Phase1/Property9.dat:None warning orphan-data
Substance4/Substance4.mtd:2 error bad-composition
Substance4/Substance4.mtd:3 error bad-number
Substance4/Substance4.mtd:3 error duplicate-id
Substance5/Substance5.mtd:None error no-phase
Substance6/Phase1:None error several-descriptors
Substance6/Phase1/Property1.dat:1 error mark-in-data
Substance6/Phase1/Property1.prh:3 error type-not-allowed
Substance6/Phase1/Property1.prh:4 error bad-flag
Substance6/Substance6.mtd:None error missing-key
Substance6/Substance6.mtd:5 warning no-mark
Substance7:None warning no-descriptor
conductivity.prd:9 error long-line
conductivity.prd:9 warning unknown-key
default.lst:2 warning unused-text
"""


class Reading(CommandTest):
    def test_lists(self):
        self.expect(["list", self.database], TREE)
        self.assertIn("Вода (0)", self.output("list", self.database, "0", "--lang", "ru"))
        listed = json.loads(self.output("list", self.database, "--json"))
        self.assertEqual(["Water", "Brine", "Salt"], [substance["name"] for substance in listed])
        self.assertEqual({"id": 1, "name": "Density", "units": "kg/m³", "type": "T", "vector": False, "points": 3,
                          "ranges": {"P": [1e5, 1e6], "T": [280, 300]}}, listed[0]["phases"][0]["parameters"][0])

    def test_gets_values(self):
        water = ["get", self.database, "Water"]
        self.expect(water + ["Molar mass"], "0.018015268 kg/mol\n")
        self.expect(water + ["--phase", "Liquid", "Density"], "Water, phase Liquid\n"
                    "      P    T  Density, kg/m³\n"
                    " 100000  280          999.91\n"
                    " 100000  300          996.56\n"
                    "1000000  280         1000.35\n")
        self.expect(water + ["--phase", "ice", "3", "--csv"],
                    'T,"Conductivity x, W/(m K)","Conductivity y, W/(m K)","Conductivity z, W/(m K)"\n'
                    "250,2.3,2.3,2.4\n270,2.2,2.2,2.3\n")
        self.expect(["get", self.database, "2", "--phase", "0", "3"], "6 6 -6.5 W/(m K)\n")
        value = json.loads(self.output(*water, "--change", "Melting", "4", "--json"))
        self.assertEqual([[333430]], value["rows"])

    def test_names_near_matches(self):
        for arguments, message in [
            (["Watr", "Density"], 'no substance is called "Watr"; near matches: Water (0)'),
            (["Water", "Density"], 'no parameter of Water is called "Density"; there are: Molar mass (2)\n'
             'qmdb: there is such a parameter with --phase "Liquid", --phase "Ice"'),
            (["Water", "--phase", "Likuid", "1"], 'no phase of Water is called "Likuid"; near matches: Liquid (0)'),
            (["Water", "--phase", "Ice", "conductivty"],
             'no parameter of Water, phase Ice is called "conductivty"; near matches: Conductivity (3)'),
        ]:
            self.expect(["get", self.database, *arguments], "", 2, f"qmdb: {message}\n")
        write(self.database, {"mass.prd": description(2, "density", "kg", "C", ""),
                              "Substance1/Phase1/Property2.prh": head(2, 1, 0, "Property2.dat")})
        self.expect(["get", self.database, "Water", "DENSITY", "--phase", "0"], "", 2,
                    'qmdb: "DENSITY" is the name of several: Density (1), density (2); give the number\n'
                    'qmdb: there is such a parameter with neither --phase nor --change, --phase "Ice"\n')

    def test_goes_on_behind_a_value_that_cannot_be_read(self):
        write(self.database, {"Substance1/Phase2/Property1.dat": "250 x\n"})
        reason = (f"cannot read the value: a text is not a number, or arguments do not increase (-11): "
                  f"Bad table component [0]: 1 ({self.database}/Substance1/Phase2/Property1.dat)")
        lines = TREE.splitlines(keepends=True)
        lines[5] = f"│  ├─ Density (1)       table of T     scalar                    {reason}\n"
        self.assertEqual(1, self.run_command("list", self.database)[0])
        self.expect(["export", self.database], TIDY.replace("0,Water,1,Ice,,,1,Density,kg/m³,250,,,919.87\n", "")
                    .replace("0,Water,1,Ice,,,1,Density,kg/m³,273.15,,,916.721\n", ""), 1,
                    f"qmdb: Density of Water, phase Ice is left out: {reason}\n")

    def test_exports(self):
        self.expect(["export", self.database], TIDY)
        rows = [json.loads(line) for line in self.output("export", self.database, "--jsonl").splitlines()]
        self.assertEqual(rows, json.loads(self.output("export", self.database, "--json")))
        texts = [[str("" if value is None else value) for value in row.values()] for row in rows]
        self.assertEqual([line.split(",")[-1] for line in TIDY.splitlines()[1:]], [text[-1] for text in texts])
        self.assertEqual(TIDY.splitlines()[0].split(","), list(rows[0]))

    @unittest.skipUnless(shutil.which("gnuplot"), "gnuplot is not installed")
    def test_draws(self):
        picture = Path(self.scratch, "it's.svg")
        self.expect(["plot", self.database, "Water", "Density", "--phase", "Liquid", "-o", picture], "")
        for text in ["Water, phase Liquid", "Density, kg/m³", "P = 100000", "P = 1000000"]:
            self.assertIn(text, picture.read_text(encoding="utf-8"))
        drawing = self.output("plot", self.database, "Water", "Conductivity", "--phase", "Ice")
        self.assertIn("Water, phase Ice: Conductivity, W/(m K)", drawing)
        self.expect(["plot", self.database, "Water", "2"], "", 2,
                    "qmdb: Molar mass of Water is a constant: there is no curve to draw\n")

    def test_leaves_the_database_as_it_was(self):
        before = snapshot(self.database)
        for arguments in [["list"], ["check"], ["export"]]:
            self.output(arguments[0], self.database)
        self.output("get", self.database, "0", "2")
        self.assertEqual(before, snapshot(self.database))
        self.assertEqual([], list(self.temporary.iterdir()))
        self.output("get", self.database, "0", "2", "--log", self.scratch)
        self.assertIn("Database path: ", Path(self.scratch, "qmdb.log").read_text(encoding="utf-8"))

    def test_says_why_it_cannot_run(self):
        for command in ["list", "check", "export"]:
            self.expect([command, "nowhere"], "", 2, 'qmdb: "nowhere" is not a directory\n')
        self.assertEqual(2, self.run_command("list")[0])
        write(self.database, {"Substance3/Substance3.mtd": MARK + "ID=2\n"})
        self.expect(["list", self.database], "", 2,
                    f'qmdb: cannot open "{self.database}": a descriptor lacks a required key (-10): No required '
                    f'field(s) in file: {self.database}/Substance3/Substance3.mtd; Cannot load matter file: '
                    f'{self.database}/Substance3/Substance3.mtd\n')

    def test_ends_quietly_when_the_reader_is_gone(self):
        reader, writer = os.pipe()
        os.close(reader)
        done = subprocess.run([COMMAND, "export", self.database], stdout=writer, stderr=subprocess.PIPE, check=False)
        os.close(writer)
        self.assertEqual((0, b""), (done.returncode, done.stderr))

    def test_colours_only_a_terminal(self):
        def through_terminal(**environment):
            ours, theirs = pty.openpty()
            subprocess.run([COMMAND, "list", self.database, "Salt"], stdout=theirs, check=True,
                           env={"PATH": os.environ["PATH"], "TERM": "xterm", **environment})
            os.close(theirs)
            with os.fdopen(ours, "rb") as terminal:
                return terminal.read1(10000)
        self.assertIn(b"\x1b[1mSalt (2)\x1b[0m", through_terminal())
        self.assertNotIn(b"\x1b", through_terminal(NO_COLOR="1"))


class Checking(CommandTest):
    def test_finds_nothing_in_a_good_database(self):
        self.expect(["check", self.database], "0 errors, 0 warnings in 26 files\n")

    def test_finds_every_planted_fault_in_one_run(self):
        write(self.database, PLANTED)
        status, output, errors = self.run_command("check", self.database, "--json")
        self.assertEqual((1, ""), (status, errors))
        report = json.loads(output)
        self.assertEqual(FOUND, "".join(
            "{file}:{line} {severity} {kind}\n".format(**finding) for finding in report["findings"]))
        self.assertEqual(len(report["findings"]), report["errors"] + report["warnings"])

    def test_tells_what_is_wrong_and_what_to_do(self):
        write(self.database, {"Substance3/Phase1/Phase1.phd": MARK + "Aggreg=1\nID=0\nName = C\n",
                              "Substance3/Phase1/Property1.dat": "6 6 6 # old\n"})
        self.expect(["check", self.database], """\
Substance3/Phase1/Phase1.phd: error: the key "Name" is missing: the database cannot be opened; add a line "Name=..." \
[missing-key]
Substance3/Phase1/Phase1.phd:3: warning: nobody reads the key "Name "; remove the blanks beside "=": they belong to \
key and value [unknown-key]
Substance3/Phase1/Property1.dat:1: error: "6 6 6 # old" is not 3 numbers with blanks between; write 3 numbers; a \
comment is a line of its own that begins with "#" [bad-row]
2 errors, 1 warning in 26 files
""", 1)


class Adding(CommandTest):
    def setUp(self):
        super().setUp()
        self.database = os.path.join(self.scratch, "new")
        self.expect(["new", self.database],
                    f"made {self.database} with 19 parameter descriptions; README.txt tells how to go on\n")

    def test_fills_a_new_database(self):
        self.expect(["check", self.database], "0 errors, 0 warnings in 21 files\n")
        self.expect(["new", self.database], "", 2, f'qmdb: "{self.database}" is not empty\n')
        rows = "T;ρ\n# measured\n280;999,91\n300;996,56\n"
        for arguments, output in [
            (["substance", "Water", "--comment", "H₂O", "--liquid", "Liquid", "--gas", "Steam"],
             "added substance Water (0)\nadded phase Liquid (0), liquid\nadded phase Steam (1), gas\n"),
            (["phase", "Water", "--solid", "Ice"], "added phase Ice (2), solid\n"),
            (["substance", "Salt", "--solid", "Crystal"], "added substance Salt (1)\nadded phase Crystal (0), solid\n"),
            (["substance", "Brine", "--component", "Water:0.75", "--component", "1:0.25", "--liquid", "Liquid"],
             "added substance Brine (2)\nadded phase Liquid (0), liquid\n"),
            (["change", "Water", "Melting", "--from", "Ice", "--to", "Liquid"],
             "added phase change Melting (0), Ice to Liquid\n"),
            (["parameter", "Water", "1", "--value", "0.018"],
             "added Molar mass (1) to Water: constant, scalar, 1 point\n"),
            (["parameter", "Water", "Density", "--phase", "Liquid", "--file", "-"],
             "added Density (7) to Water, phase Liquid: table of T, scalar, 2 points\n"),
            (["parameter", "Salt", "9", "--phase", "0", "--value", "6", "6", "-6.5"],
             "added Thermal conductivity (9) to Salt, phase Crystal: constant, vector, 1 point\n"),
        ]:
            self.expect(["add", arguments[0], self.database, *arguments[1:]], output, stdin=rows)
        self.expect(["check", self.database], "0 errors, 0 warnings in 36 files\n")
        self.expect(["get", self.database, "Water", "Density", "--phase", "Liquid", "--csv"],
                    'T,"Density, kg/m³"\n280,999.91\n300,996.56\n')
        self.assertIn("Brine (2), mixture of 0.75 Water + 0.25 Salt", self.output("list", self.database))

    def test_refuses_without_writing(self):
        self.output("add", "substance", self.database, "Water", "--liquid", "Liquid", "--gas", "Steam")
        before = snapshot(self.database)
        density = ["parameter", "Water", "Density", "--phase", "Steam", "--file", "-"]
        for arguments, stdin, message in [
            (["substance", "Water", "--solid", "Ice"], "",
             "cannot add the substance: the name is taken (-14): Cannot append a substance because a duplicated name, "
             "Water"),
            (["substance", "x" * 50, "--solid", "Ice"], "", "the name has 50 characters; 49 fit"),
            (["substance", "Mix", "--component", "0:0.6", "--component", "0:0.6", "--gas", "Gas"], "",
             "the molar fractions add up to 1.2; they must add up to 0.99 to 1"),
            (["change", "Water", "Boiling", "--from", "Liquid", "--to", "Vapour"], "",
             'no phase of Water is called "Vapour"; there are: Liquid (0), Steam (1)'),
            (["parameter", "Water", "11", "--phase", "Steam", "--value", "1"], "",
             "cannot add the parameter: the parameter's description does not offer it for the phase's aggregate state "
             "(-19): Incorrect parameter for the phase AS, ParamID=11AS=3"),
            (density, "T,rho\n280,999.9\n300,heavy\n290\n", "nothing is added:\n"
             'standard input: row 2 (line 3), column 2: "heavy" is not a number\n'
             "standard input: row 3 (line 4): the number of columns is 1, in the first row it is 2"),
            (density, "280 1\n280.0001 2\n270 3\n", "nothing is added:\n"
             "standard input: row 2 (line 2), column 1: the arguments 280 and 280.0001 are the same in the six "
             "significant digits that are stored\n"
             "standard input: row 3 (line 3), column 1: the argument 270 does not increase: the row before it has "
             "280.0001"),
            (density, "1 280 1\n2 280 1\n1 290 2\n", "nothing is added:\nstandard input: row 3 (line 3), column 1: the "
             "first argument 1 has rows further up: they must stand together"),
            (density, "", "standard input holds no row of numbers"),
        ]:
            self.expect(["add", arguments[0], self.database, *arguments[1:]], "", 2, f"qmdb: {message}\n", stdin)
        self.assertEqual(before, snapshot(self.database))


class Exporting(CommandTest):
    def test_fills_sqlite_with_all_that_a_generated_database_holds(self):
        substances, rows = 40, 25
        tree = {}
        for i in range(3, 3 + substances):
            table = "".join(f"{j} {i}.{j:02}\n" for j in range(rows))
            phase = f"S{i}/P/"
            tree |= {f"S{i}/s.mtd": keys(Composition="", ID=i, Mixture=0, Name=f"Substance {i}"),
                     phase + "p.phd": keys(Aggreg=1, ID=0, Name="Solid"), phase + "d.prh": head(1, 2, 0, "d.dat"),
                     phase + "d.dat": table}
        write(self.database, tree)
        file = Path(self.scratch, "all.sqlite")
        self.expect(["export", self.database, "--sqlite", file], "")
        lines = self.output("export", self.database).count("\n") - 1
        with sqlite3.connect(file) as connection:
            def ask(question):
                return connection.execute(question).fetchone()[0]
            self.assertEqual(3 + substances, ask("SELECT count(*) FROM substance"))
            self.assertEqual(substances * rows + 16, ask("SELECT count(*) FROM point"))
            self.assertEqual(lines, ask("SELECT count(*) FROM tidy"))
            self.assertEqual("ok", ask("PRAGMA integrity_check"))
            self.assertEqual([], connection.execute("PRAGMA foreign_key_check").fetchall())
            self.assertEqual([(0, 0.75), (2, 0.25)], connection.execute(
                "SELECT component_id, molar_fraction FROM component").fetchall())
            self.assertEqual(17.04, ask("SELECT value FROM tidy WHERE substance_id = 17 AND first_argument = 4"))
        self.expect(["export", self.database, "--sqlite", file], "", 2,
                    f'qmdb: "{file}" exists already; remove it first or give another name\n')


if __name__ == "__main__":
    unittest.main()
