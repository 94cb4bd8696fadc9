"""Import and diff: a database goes out and comes back the same, by hand and at random."""

import json
import os
import random
import shutil
import signal
import struct
import subprocess
import time
import unittest
from pathlib import Path

from support import ANNOTATED, COMMAND, MARK, CommandTest, head, keys, prefixed, snapshot, write

MATERIALS = Path(__file__).resolve().parents[2] / "examples/materials"

HAND_MADE = """\
# measured by hand
substance;substance_ru;formula;phase;phase_ru;state;change;change_from;change_to;parameter;parameter_ru;units;\
first_argument;value;source;comments;argument_units
Ice cream;Мороженое;C2H6;Solid;Твёрдая;solid;;;;Density;Плотность;kg/m³;250;919,9;me;first | second;K
Ice cream;Мороженое;C2H6;Solid;Твёрдая;solid;;;;Density;Плотность;kg/m³;260;918,5;me;first | second;K
Ice cream;;;Melt;Расплав;liquid;;;;;;;;;;;
Ice cream;;;;;;Melting;Solid;Melt;Temperature;Температура;K;;255;;;
Ice cream;;;;;;;;;Molar mass;;kg/mol;;0.03;;;
"""


class RandomDatabase(random.Random):
    """The files of a database with all that the format holds, nothing of it wrong."""

    def text(self):
        return self.choice(["Water", "a, b", 'say "x"', "α–β", "Ж", "x + y", "1", "0.5 Tin"]) + str(self.randrange(10**9))

    def number(self):
        value = struct.unpack("<d", self.randbytes(8))[0]
        return repr(self.choice([value, self.uniform(-1e3, 1e3), float(self.randint(-9, 9)), -0.0, 1e16, 5e-324]))

    def increasing(self, count):
        return sorted({round(self.uniform(-500, 500), self.randint(0, 12)) for _ in range(count)})

    def data(self, kind, vector):
        row = lambda *start: " ".join([*map(repr, start), *(self.number() for _ in range(3 if vector else 1))]) + "\n"
        text = "".join(f"# {self.text()}\n" for _ in range(self.randrange(3))) + "#\n" * self.randrange(2)
        if kind == 1:
            return text + row()
        if kind < 4:
            return text + "".join(row(x) for x in self.increasing(4))
        return text + "".join(f"P={first!r}\n" + "".join(row(x) for x in self.increasing(3))
                              for first in self.sample([1.5, 2e5, -3.0, 0.1], 3))

    def heads(self, directory, descriptions):
        tree = {}
        for place, (number, kinds, vector) in enumerate(self.sample(descriptions, self.randrange(len(descriptions)))):
            kind = self.choice(kinds)
            notes = {"Source": self.text(), "Accuracy": "1 %"} if self.random() < 0.5 else {}
            tree[f"{directory}/h{place}.prh"] = keys(Data=f"h{place}.dat", ID=number, Type=kind, Vector=vector, **notes)
            tree[f"{directory}/h{place}.dat"] = self.data(kind, vector)
        return tree

    def tree(self):
        descriptions = [(number * 3 + 1, self.sample((1, 2, 3, 4, 5), 2), self.randrange(2)) for number in range(6)]
        tree = {"default.lst": MARK, "strings.lst": MARK + "7=Семь\n", "named.prd":
                keys(AvForPhases="", Binary=0, DataTypes="C", ID=99, Name="Never used", NameID=7, Scalar=1, Units="1")}
        tree["default.lst"] += "7=Never used\n"
        for number, kinds, vector in descriptions:
            letters = "".join("CtpTX"[kind - 1] for kind in sorted(kinds))
            tree[f"d{number}.prd"] = keys(AvForPhases="SLV", ArgumentUnits=self.choice(["K", "Pa;K", "Pa;"]), Binary=0,
                                          DataTypes=letters, ID=number, Name=self.text(), Scalar=1 - vector,
                                          Units=self.choice(["1", "kg/m³", "K"]), Vector=vector)
        numbers = self.sample(range(40), 4)
        for place, number in enumerate(numbers):
            mixed = place == 3
            composition = f"{numbers[0]}:0.3333333333333333;{numbers[1]}:0.6666666666666666" if mixed else ""
            where = f"S{place}"
            tree[f"{where}/s.mtd"] = keys(Comment=self.text(), Composition=composition, ID=number, Mixture=int(mixed),
                                          Name=self.text(), **({"Formula": "H2O", "Aliases": "a;b"} if place else {}))
            tree |= self.heads(where, descriptions)
            for phase in range(self.randint(1, 3)):
                tree[f"{where}/P{phase}/p.phd"] = keys(Aggreg=self.randint(1, 3), ID=phase + 5, Name=self.text())
                tree |= self.heads(f"{where}/P{phase}", descriptions)
                if phase:
                    tree[f"{where}/C{phase}/c.pcd"] = keys(ID=phase, Name=self.text(), Phase1=phase + 5, Phase2=5)
                    tree |= self.heads(f"{where}/C{phase}", descriptions)
        return tree


class Importing(CommandTest):
    def round_trip(self, database, *options):
        first = self.output("export", database, *options)
        shutil.rmtree(os.path.join(self.scratch, "copy"), ignore_errors=True)
        Path(self.scratch, "out").write_text(first, encoding="utf-8", newline="")
        self.output("import", "out", "copy")
        self.assertEqual(first, self.output("export", "copy", *options))

    def test_brings_the_sample_back(self):
        for options in [(), ("--all",), ("--jsonl",), ("--json", "--all")]:
            self.round_trip(MATERIALS, *options)
            status, found, _ = self.run_command("check", "copy")
            self.assertEqual((0, "0 errors, 0 warnings"), (status, found[:20]), found)
        for language in ("en", "ru"):
            self.assertEqual("0 differences\n", self.output("diff", MATERIALS, "copy", "--lang", language))
        self.assertEqual(self.output("list", MATERIALS), self.output("list", "copy"))

    def test_brings_random_databases_back(self):
        for seed in range(int(os.environ.get("QMDB_ROUNDS", "6"))):
            with self.subTest(seed):
                database = os.path.join(self.scratch, f"random{seed}")
                write(database, RandomDatabase(seed).tree())
                for options in [(), ("--all",)]:
                    self.round_trip(database, *options)
                self.assertEqual("0 differences\n", self.output("diff", database, "copy"))

    def test_takes_what_people_write(self):
        self.expect(["import", "-", "mine"], "5 rows: 1 new substance, 3 new phases and phase changes, 3 new parameters, "
                    "3 new values\n", stdin=HAND_MADE.replace("0.03", "0,03"))
        self.expect(["check", "mine"], "0 errors, 0 warnings in 15 files\n")
        self.expect(["list", "mine", "--lang", "ru"], """\
Мороженое (0), C2H6
├─ Molar mass (3)      constant    scalar   1 point  kg/mol
├─ phase Твёрдая (0), solid
│  └─ Плотность (1)    table of T  scalar  2 points  kg/m³   T 250 to 260 K
├─ phase Расплав (1), liquid
└─ change Melting (0), Твёрдая to Расплав
   └─ Температура (2)  constant    scalar   1 point  K
""")
        self.assertEqual("# first\n# second\n250 919.9\n260 918.5\n", Path(
            self.scratch, "mine/Substance1/Phase1/Property1.dat").read_text(encoding="utf-8"))
        before = snapshot(Path(self.scratch, "mine"))
        self.expect(["import", "-", "mine"], "5 rows: 0 new substances, 0 new phases and phase changes, 0 new parameters, "
                    "0 new values, 3 there already; nothing to change\n", stdin=HAND_MADE.replace("0.03", "0,03"))
        self.assertEqual(before, snapshot(Path(self.scratch, "mine")))

    def test_extends_and_replaces(self):
        write(self.database, {"README": "mine", ".git/x": "y"})
        before = {path.name: path.stat().st_ino for path in Path(self.database, "Substance1").iterdir()}
        rows = "substance,phase,state,parameter,units,first_argument,second_argument,value\n"
        new = rows + "Water,Steam,gas,Density,kg/m³,400,,0.55\nTin,Solid,solid,Density,kg/m³,,,7287\n"
        self.expect(["import", "-", "db"], "2 rows: 1 new substance, 2 new phases and phase changes, 0 new parameters, "
                    "2 new values\n", stdin=new)
        self.assertEqual(before, {name: Path(self.database, "Substance1", name).stat().st_ino for name in before
                                  if name[:2] not in ("PC", "Ph")} | {k: v for k, v in before.items() if k[:2] in ("PC", "Ph")})
        self.assertEqual(["y", "mine"], [Path(self.database, name).read_text(encoding="utf-8") for name in (".git/x", "README")])
        self.expect(["get", "db", "Tin", "Density", "--phase", "Solid"], "7287 kg/m³\n")
        other = rows + "Tin,Solid,solid,Density,kg/m³,,,7300\n"
        self.expect(["import", "-", "db"], "", 2, prefixed(
            "nothing is imported:\nstandard input: row 1 (line 2), column value: the database has another value of this; "
            "--replace takes the new one"), stdin=other)
        self.expect(["import", "-", "db", "--replace"], "1 row: 0 new substances, 0 new phases and phase changes, 0 new "
                    "parameters, 0 new values, 1 replaced\n", stdin=other)
        self.expect(["get", "db", "Tin", "Density", "--phase", "Solid"], "7300 kg/m³\n")
        self.assertEqual(["db", "temporary"], sorted(os.listdir(self.scratch)))

    def test_names_row_and_column_and_leaves_all_as_it_was(self):
        before = snapshot(self.database)
        line = "substance,phase,state,parameter,units,type,first_argument,component,value\n"
        place = "nothing is imported:\nstandard input: row {} (line {}), column {}: "
        for rows, message in [
            (line + "Water,Liquid,liquid,Density,kg/m³,t,1,,x\nWater,Ice,solid,Density,kg/m³,t,1,,1\n",
             place.format(1, 2, "value") + '"x" is no number'),
            (line + "Water,Ice,solid,Density,g,t,1,,1\n", place.format(1, 2, "units") +
             '"Density" has the units "kg/m³" in the database; convert the values, or give it another name\n'
             "standard input: row 1 (line 2), column value: the database has another value of this; --replace takes the "
             "new one"),
            (line + "Tin,S,solid,Density,kg/m³,t,1,,1\nTin,S,solid,Density,kg/m³,t,1,,2\n",
             place.format(2, 3, "first_argument") + "the argument 1 does not increase"),
            (line + "Tin,S,solid,Density,kg/m³,t,,,1\n",
             place.format(1, 2, "type") + "a value of type t has 1 arguments, and the row gives 0"),
            (line + "Tin,S,solid,Molar mass,kg/mol,,,,1\n", place.format(1, 2, "value") +
             "cannot add the parameter: the parameter's description does not offer it for the phase's aggregate state "
             "(-19): Incorrect parameter for the phase AS, ParamID=2AS=1"),
            (line + "Tin,S,,Density,kg/m³,,,,1\n", place.format(1, 2, "state") + "a new phase is solid, liquid or gas"),
            (line + "Tin,,,Molar mass,kg/mol,,,,1\n", place.format(1, 2, "phase") + "the new substance has no phase, and "
             'would not be found: give a row with "phase" and "state"'),
            (line + "Tin,S,solid,Conductivity,W/(m K),,,x,1\nTin,S,solid,Conductivity,W/(m K),,,z,1\n",
             place.format(2, 3, "component") + '"z" stands where "y" should\nstandard input: row 1 (line 2), column '
             "component: the last vector of this value has not all of x, y and z"),
            ("substance,parameter,value\nWater,Densty,1\n", place.format(1, 2, "units") + '"Densty" is a new parameter, and '
             "needs units, 1 for a plain number; near matches in the database: Density"),
            ("substance,note\nTin,x\n", 'standard input: there is no column "note"; there are: substance_id, substance, '),
            ("substance,value\n\"Tin,1\n", "standard input: line 2: a quote is not closed"),
            ("substance,value\nTin\n", "standard input: row 1 (line 2): the number of columns is 1, in the head it is 2"),
            ('{"substance":"Tin","value":true}', "standard input: row 1 (line 1): true and false are no values here"),
            ("", "standard input is empty"),
        ]:
            status, output, errors = self.run_command("import", "-", self.database, stdin=rows)
            wanted = prefixed(message)[: -1 if "note" in rows else None]
            self.assertEqual((2, "", wanted), (status, output, errors[: len(wanted)] if "note" in rows else errors), rows)
        self.assertEqual(before, snapshot(self.database))
        self.assertEqual(["db", "temporary"], sorted(os.listdir(self.scratch)))

    def test_a_killed_import_leaves_one_state_or_the_other(self):
        rows = "substance,phase,state,parameter,units,value\n" + "".join(
            f"S{i},Solid,solid,Density,kg/m³,{i}\n" for i in range(800))
        Path(self.scratch, "rows.csv").write_text(rows, encoding="utf-8")
        chance, seen = random.Random(1), set()
        for attempt in range(6):
            with subprocess.Popen([COMMAND, "import", "rows.csv", "db"], cwd=self.scratch, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL, env={"PATH": os.environ["PATH"],
                                                                  "TMPDIR": str(self.temporary)}) as process:
                time.sleep(chance.uniform(0.02, 0.3))
                process.send_signal(signal.SIGKILL if attempt % 2 else signal.SIGTERM)
            found = len(json.loads(self.output("list", "db", "--json")))
            self.assertIn(found, (3, 803))
            seen.add(found)
        self.output("import", "rows.csv", "db")
        self.assertEqual(803, len(json.loads(self.output("list", "db", "--json"))))
        # An import that has nothing to do removes what others left, too.
        Path(self.scratch, ".db.qmdb-import-1").mkdir()
        self.output("import", "rows.csv", "db")
        self.assertEqual(["db", "rows.csv", "temporary"], sorted(os.listdir(self.scratch)))

    def test_does_not_write_where_it_may_not(self):
        bound = self.without_privileges()
        row = "substance,phase,state,parameter,units,value\nTin,S,solid,Density,kg/m³,1\n"
        os.chmod(self.database, 0o555)
        self.expect(["import", "-", "db"], "", 2, f'qmdb: cannot write "{self.database}": Permission denied\n', row,
                    process=bound)
        self.expect(["import", "-", "new"], "", 2, 'qmdb: cannot make a directory beside "new", where the import is '
                    "prepared: Permission denied\n", row, process=bound)


class Comparing(CommandTest):
    def test_tells_what_differs(self):
        other = os.path.join(self.scratch, "other")
        shutil.copytree(self.database, other)
        self.expect(["diff", "db", "other"], "0 differences\n")
        write(other, {**ANNOTATED, "Substance1/Phase1/Property1.dat": "P=100000\n280 999.9101\n310 996\nP=1e6\n280 1000.35\n",
                      "Substance3/Substance3.mtd": keys(Comment="new", Composition="", ID=7, Mixture=0, Name="Salt"),
                      "Substance4/s.mtd": keys(Composition="", ID=2, Mixture=0, Name="Tin"),
                      "Substance4/P/p.phd": keys(Aggreg=1, ID=0, Name="Solid"),
                      "Substance1/Phase2/Property2.prh": head(3, 2, 1, "Property2.dat")})
        shutil.rmtree(os.path.join(other, "Substance1/PC1"))
        lines = self.run_command("diff", "db", "other")
        self.assertEqual(1, lines[0])
        text = lines[1]
        for line in ["~ substance Salt (2), number: 2 -> 7\n", "~ substance Salt (2), comment: nothing -> new\n",
                     "+ substance Tin (2)\n", "- change Melting (0) of Water\n",
                     "~ value Density (1) of Water, phase Liquid, at P=100000, T=280: 999.91 -> 999.9101\n",
                     "- value Density (1) of Water, phase Liquid, at P=100000, T=300: 996.56\n",
                     "+ value Density (1) of Water, phase Liquid, at P=100000, T=310: 996\n",
                     "~ substance Water (0), formula: nothing -> H2O\n", "~ description Density (1), Symbol: nothing -> rho\n"]:
            self.assertIn(line, text)
        self.assertIn(f"\n{text.count(chr(10)) - 1} differences\n", text)
        tolerant = self.run_command("diff", "db", "other", "--tolerance", "1e-6")[1]
        self.assertEqual(text.count("\n") - 1, tolerant.count("\n"))
        listed = json.loads(self.run_command("diff", "db", "other", "--json")[1])
        self.assertEqual(text.count("\n") - 1, len(listed))
        self.assertIn({"kind": "substance", "where": "Tin (2)", "what": "", "before": None, "after": "Tin (2)"}, listed)


if __name__ == "__main__":
    unittest.main()
