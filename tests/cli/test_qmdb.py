"""The qmdb command: whole outputs on a small database, on broken copies of it, and on new ones."""

import fcntl
import json
import os
import pty
import subprocess
import unittest
from pathlib import Path

from support import ANNOTATED, COMMAND, MARK, SMALL, CommandTest, description, head, keys, prefixed, snapshot, write

TREE = """\
Water (0): H₂O
├─ Molar mass (2)       constant       scalar   1 point  kg/mol
├─ phase Liquid (0), liquid
│  └─ Density (1)       table of P, T  scalar  3 points  kg/m³    P 100000 to 1000000 Pa, T 280 to 300 K
├─ phase Ice (1), solid
│  ├─ Density (1)       table of T     scalar  2 points  kg/m³    T 250 to 273.15 K
│  └─ Conductivity (3)  table of T     vector  2 points  W/(m K)  T 250 to 270 K
└─ change Melting (0), Ice to Liquid
   └─ Latent heat (4)   constant       scalar   1 point  J/kg

Brine (1), mixture of 0.75 Water + 0.25 Salt
└─ phase Liquid (0), liquid

Salt (2)
└─ phase Crystal, "cubic" (0), solid
   └─ Conductivity (3)  constant       vector   1 point  W/(m K)
"""


class Reading(CommandTest):
    def test_lists(self):
        self.expect(["list", self.database], TREE)
        self.assertIn("Вода (0)", self.output("list", self.database, "0", "--lang", "ru"))
        listed = json.loads(self.output("list", self.database, "--json"))
        self.assertEqual(["Water", "Brine", "Salt"], [substance["name"] for substance in listed])
        self.assertEqual({"id": 1, "name": "Density", "symbol": None, "units": "kg/m³", "type": "T",
                          "vector": False, "argumentNames": ["pressure", "temperature"],
                          "argumentUnits": ["Pa", "K"], "source": None, "accuracy": None, "points": 3, "ranges": {"P": [1e5, 1e6], "T": [280, 300]}}, listed[0]["phases"][0]["parameters"][0])
        commented = json.loads(self.output("list", self.database, "--json", "--comments"))
        told = [commented[0]["parameters"][0].pop("comments"), commented[0]["changes"][0]["parameters"][0]["comments"]]
        self.assertEqual(["kg/mol", ""], told)
        self.assertEqual(listed[0]["parameters"], commented[0]["parameters"])
        self.assertIn("--json", self.run_command("list", self.database, "--comments")[2])
        Path(self.database, "Substance1/Property1.dat").unlink()  # which is not asked for
        known = {key: one for key, one in listed[0]["parameters"][0].items() if key not in ("points", "ranges")}
        bare = json.loads(self.output("list", self.database, "Water", "--json", "--no-values"))
        self.assertEqual([known], bare[0]["parameters"])
        self.assertRegex(self.output("list", self.database, "Water", "--no-values"),
                         r"\n├─ Molar mass \(2\) +constant +scalar +kg/mol\n")

    def test_gets_values(self):
        water = ["get", self.database, "Water"]
        self.expect(water + ["Molar mass"], "0.018015268 kg/mol\n")
        self.expect(water + ["--phase", "Liquid", "Density"], "Water, phase Liquid\n"
                    "  P, Pa  T, K  Density, kg/m³\n"
                    " 100000   280          999.91\n"
                    " 100000   300          996.56\n"
                    "1000000   280         1000.35\n")
        self.expect(water + ["--phase", "ice", "3", "--csv"],
                    '"T, K","Conductivity x, W/(m K)","Conductivity y, W/(m K)","Conductivity z, W/(m K)"\n'
                    "250,2.3,2.3,2.4\n270,2.2,2.2,2.3\n")
        self.expect(["get", self.database, "2", "--phase", "0", "3"], "6 6 -6.5 W/(m K)\n")
        value = json.loads(self.output(*water, "--change", "Melting", "4", "--json"))
        self.assertEqual([[333430]], value["rows"])

    def test_tells_what_the_library_does_not(self):
        write(self.database, {**ANNOTATED, "Substance1/Phase2/Property2.prh":
                              head(3, 5, 1, "Property2.dat") + "Accuracy=2 %\n",
                              "Substance1/Phase2/Property2.dat": "P=1\n250 2.3 2.3 2.4\n",
                              "conductivity.prd": keys(ID=3, Name="Conductivity", Units="1", Binary=0,
                                                       ArgumentName="strain;heat\x07", ArgumentUnits=";mK")})
        self.assertEqual("""\
Water (0), H2O: H₂O
├─ Molar mass (2)       no source is given
├─ phase Liquid (0), liquid
│  └─ Density (1)       no source is given
├─ phase Ice (1), solid
│  ├─ Density (1)       CRC, "Ice" (accuracy 0.1 %)
│  └─ Conductivity (3)  accuracy 2 %
└─ change Melting (0), Ice to Liquid
   └─ Latent heat (4)   no source is given
""", self.output("list", self.database, "Water", "--sources"))
        ice = ["get", self.database, "Water", "--phase", "Ice", "--source"]
        self.expect([*ice, "Density", "--csv"], '# Source: CRC, "Ice" (accuracy 0.1 %)\n"T, K","Density, kg/m³"\n'
                                                "250,919.87\n273.15,916.721\n")
        self.expect([*ice, "3"], "# Source: accuracy 2 %\nWater, phase Ice\n"
                                 "strain  heat?, mK  Conductivity x, 1  Conductivity y, 1  Conductivity z, 1\n"
                                 "     1        250                2.3                2.3                2.4\n")
        water = json.loads(self.output("list", self.database, "Water", "--json"))[0]
        self.assertEqual(("H2O", ["water", "R718"], "7732-18-5"), (water["formula"], water["aliases"], water["cas"]))
        for parameter, names, units, accuracy in [("1", ["temperature"], ["K"], "0.1 %"),
                                                  ("3", ["strain", "heat\x07"], [None, "mK"], "2 %")]:
            told = json.loads(self.output(*ice, parameter, "--json"))["parameter"]
            self.assertEqual((names, units, accuracy),
                             (told["argumentNames"], told["argumentUnits"], told["accuracy"]))

    def test_tells_nothing_where_it_may_be_wrong(self):
        write(self.database, {**ANNOTATED, "rho.prd": SMALL["density.prd"] + "Symbol=r\n",
                              "Twin/a.mtd": keys(Composition="", ID=0, Mixture=0, Name="W", Formula="D2O"),
                              "Twin/p/a.phd": keys(Aggreg=1, ID=1, Name="Ice"),
                              "Twin/p/a.prh": head(1, 2, 0, "a.dat") + "Source=Other\n", "Twin/p/a.dat": "250 1\n"})
        water = next(each for each in json.loads(self.output("list", self.database, "--json")) if each["id"] == 0)
        ice = next(each for each in water["phases"] if each["name"] == "Ice")["parameters"][0]
        self.assertEqual((None, [], None, None, [None], None), (
            water["formula"], water["aliases"], water["cas"], ice["symbol"], ice["argumentUnits"], ice["source"]))

    def test_names_near_matches(self):
        for arguments, message in [
            (["Watr", "Density"], 'no substance is called "Watr"; near matches: Water (0)'),
            (["Water", "Density"], 'no parameter of Water is called "Density"; there are: Molar mass (2)\n'
             'there is such a parameter with --phase "Liquid", --phase "Ice"'),
            (["Water", "--phase", "Likuid", "1"], 'no phase of Water is called "Likuid"; near matches: Liquid (0)'),
            (["Water", "--phase", "Ice", "conductivty"],
             'no parameter of Water, phase Ice is called "conductivty"; near matches: Conductivity (3)'),
        ]:
            self.expect(["get", self.database, *arguments], "", 2, prefixed(message))
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
        lines[5] = f"│  ├─ Density (1)       table of T     scalar  {reason}\n"
        self.expect(["list", self.database], "".join(lines), 1)
        status, output, errors = self.run_command("export", self.database)
        self.assertEqual((1, f"qmdb: warning: Density of Water, phase Ice is left out: {reason}\n"), (status, errors))
        self.assertEqual(16, output.count("\n"))

    def test_tells_what_is_read_otherwise_than_it_stands(self):
        write(self.database, {"Substance1/Property1.dat": "4x3\n",
                              "Substance1/Phase1/Property1.dat": "P=1\n280 1 \n300 2e0kg\nP=2\nP=3 bar\n280 1\n290 2"})
        mass = 'qmdb: warning: Molar mass of Water: the value is "4x3" and is read as 4\n'
        density = ('qmdb: warning: Density of Water, phase Liquid: number 2 is "2e0kg" and is read as 2; '
                   'and 3 more, which "qmdb check" lists\n')
        self.expect(["get", self.database, "Water", "2"], "4 kg/mol\n", errors=mass)
        self.expect(["get", self.database, "Water", "1", "--phase", "0", "--csv"],
                    '"P, Pa","T, K","Density, kg/m³"\n1,280,1\n1,300,2\n3,280,1\n', errors=density)
        status, output, errors = self.run_command("export", self.database)
        self.assertEqual((0, mass + density, 18), (status, errors, output.count("\n")))

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
        os.mkdir(os.path.join(self.scratch, "empty"))
        write(self.scratch, {"notes/todo/list.txt": "x"})
        for arguments, status, message in [
            (["list", "nowhere"], 2, '"nowhere" is not a directory; the first argument is the directory of the database'),
            *((arguments, 1, f'"{arguments[-1]}" is no database: nothing in it belongs to one\n"qmdb new" makes a database')
              for arguments in (["list", "empty"], ["check", "notes"], ["export", "empty"])),
            (["lst", "db"], 2, 'there is no command "lst"; near matches: list'),
            (["add", "phaze", "db"], 2, 'there is no command "phaze"; near matches: phase'),
            (["frobnicate"], 2, 'there is no command "frobnicate"; there are: list, get, find, plot, check, export, page, import, diff, add, set, remove, new'),
            ([], 2, 'a command is missing behind "qmdb"; there are: list, get, find, plot, check, export, page, import, diff, add, set, remove, new\n'
             '"qmdb --help" tells what they do'),
            (["add"], 2, 'a command is missing behind "qmdb add"; there are: substance, phase, change, parameter, description\n'
             '"qmdb add --help" tells what they do'),
            (["list", "db", ""], 2, 'SUBSTANCE: an empty text names nothing\n"qmdb list --help" tells what to write'),
            (["get", "db", "Water", "1", "--phase", ""], 2,
             '--phase: an empty text names nothing\n"qmdb get --help" tells what to write'),
            (["export", "db", "--sqlite", ""], 2,
             '--sqlite: an empty text names nothing\n"qmdb export --help" tells what to write'),
            (["list", "db", "--log", "nowhere"], 2, 'the log directory "nowhere" does not exist'),
            (["new", "db/default.lst/x"], 2, 'cannot make "db/default.lst/x": Not a directory'),
        ]:
            self.expect(arguments, "", status, prefixed(message))

    def test_names_the_check_for_what_cannot_be_opened(self):
        check = '"qmdb check db" tells what is wrong and what to do'
        mixture = "Substance2/Substance2.mtd"
        for name, content, message in [
            ("Substance3/Substance3.mtd", MARK + "ID=2\n",
             'cannot open "db": a descriptor lacks a required key (-10): No required field(s) in file: '
             'db/Substance3/Substance3.mtd; Cannot load matter file: db/Substance3/Substance3.mtd'),
            (mixture, SMALL[mixture].replace("0:0.75", "water"),
             "cannot list the substances: a text is not a number, or arguments do not increase (-11): Bad value of "
             "molar fraction: water;2:0.25"),
        ]:
            write(self.database, {name: content})
            self.expect(["list", "db"], "", 2, prefixed(f"{message}\n{check}"))
            write(self.database, {name: SMALL[name]})

    def test_tells_who_may_not_do_what(self):
        bound = self.without_privileges()
        locked = Path(self.scratch, "locked")
        locked.mkdir(mode=0o555)
        refused = "Permission denied"
        failed = "a file cannot be opened or written, or a directory holds several descriptors of a kind (-6)"
        check = '"qmdb check db" tells what is wrong and what to do'
        head_file = "db/Substance3/Substance3.mtd"
        for closed, arguments, message in [
            ("db", ["list", "db"], f'cannot list "db": {refused}\n{check}'),
            (head_file, ["list", "db"],
             f'cannot open "db": {failed}: Cannot open file: {head_file}: {refused}; Cannot load matter file: '
             f'{head_file}\n{check}'),
            ("db/Substance1/Property1.dat", ["get", "db", "Water", "2"],
             f"cannot read the value: {failed}: Cannot open parameter data file: db/Substance1/Property1.dat: {refused}"),
            (None, ["list", "db", "--log", "locked"], f'cannot write the log to "locked": {refused}'),
            (None, ["export", "db", "-o", "locked/x"], f'cannot write "locked/x": {refused}'),
            (None, ["export", "db", "--sqlite", "locked/x"], f'cannot write "locked/x": {refused}'),
            (None, ["new", "locked/x"], f'cannot make "locked/x": {refused}'),
            ("db", ["add", "substance", "db", "X", "--gas", "G"], f'cannot list "db": {refused}\n{check}'),
        ]:
            place = Path(self.scratch, closed) if closed else locked
            mode = place.stat().st_mode
            place.chmod(0 if closed else mode)
            self.expect(arguments, "", 2, prefixed(message), process=bound)
            place.chmod(mode)
        Path(self.database).chmod(0o555)
        self.expect(["add", "substance", "db", "X", "--gas", "G"], "", 2,
                    prefixed(f"cannot add the substance: {failed}: {refused}"), process=bound)

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


class Adding(CommandTest):
    def setUp(self):
        super().setUp()
        self.database = os.path.join(self.scratch, "new")
        self.expect(["new", self.database],
                    f"made {self.database} with 19 parameter descriptions; README.txt tells how to go on\n")

    def test_fills_a_new_database(self):
        self.expect(["check", self.database], "0 errors, 0 warnings in 21 files\n")
        self.expect(["new", self.database], "", 2, f'qmdb: "{self.database}" is not empty; give a directory that is not there yet. "qmdb add" fills a '
                    "database\n")
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
            (["parameter", "Water", "Molar mass", "--value", "0.018"],
             "added Molar mass (1) to Water: constant, scalar, 1 point\n"),
            (["parameter", "Water", "Density", "--phase", "Liquid", "--file", "-"],
             "added Density (7) to Water, phase Liquid: table of T, scalar, 2 points\n"),
            (["parameter", "Salt", "9", "--phase", "0", "--value", "6", "6", "-6.5"],
             "added Thermal conductivity (9) to Salt, phase Crystal: constant, vector, 1 point\n"),
        ]:
            self.expect(["add", arguments[0], self.database, *arguments[1:]], output, stdin=rows)
        self.expect(["check", self.database], "0 errors, 0 warnings in 36 files\n")
        self.expect(["get", self.database, "Water", "Density", "--phase", "Liquid", "--csv"],
                    '"T, K","Density, kg/m³"\n280,999.91\n300,996.56\n')
        self.assertIn("Brine (2), mixture of 0.75 Water + 0.25 Salt", self.output("list", self.database))

    def test_takes_numbers_as_people_write_them(self):
        self.output("add", "substance", self.database, "Rock", "--solid", "Bed")
        for number, (options, value) in {
            11: (["--value", "-1e-6"], "-1e-06"), 7: (["--value=-1"], "-1"), 8: (["--value", "+3."], "3"),
            9: (["--value", "-1", "-.5", "0"], "-1 -0.5 0"), 12: (["--lang=ru", "--value=-.25"], "-0.25"),
        }.items():
            owner = ["--phase", "Bed"] if number != 11 else []
            parameter = number if owner else 1
            self.output("add", "parameter", self.database, "Rock", parameter, *owner, *options)
            self.assertEqual(value, self.output("get", self.database, "Rock", parameter, *owner).rpartition(" ")[0])

    def test_refuses_without_writing(self):
        self.output("add", "substance", self.database, "Water", "--liquid", "Liquid", "--gas", "Steam")
        before = snapshot(self.database)
        density = ["parameter", "Water", "Density", "--phase", "Steam", "--file", "-"]
        value = ["parameter", "Water", "Density", "--phase", "Steam", "--value"]
        blank = "begins or ends with a blank, which would be part of it"
        for arguments, stdin, message in [
            (["substance", "Water", "--solid", "Ice"], "",
             "cannot add the substance: the name is taken (-14): Cannot append a substance because a duplicated name, "
             "Water"),
            (["substance", "x" * 50, "--solid", "Ice"], "", "the name has 50 characters; 49 fit"),
            (["substance", "", "--solid", "Ice"], "", "the name is empty"),
            (["substance", "  ", "--solid", "Ice"], "", f"the name {blank}"),
            (["substance", "Salt ", "--solid", "Ice"], "", f"the name {blank}"),
            (["substance", "Salt", "--solid", "\u3000Ice"], "", f"the phase's name {blank}"),
            (["substance", "Salt", "--solid", "a\tb"], "", "the phase's name holds a control character"),
            (["substance", "Salt\x85", "--solid", "Ice"], "", "the name holds a control character"),
            (["substance", "Mix", "--component", "0:0.6", "--component", "Water:0.4", "--gas", "Gas"], "",
             '"Water:0.4": this component is named twice'),
            (["substance", "Mix", "--component", "0:inf", "--component", "0:0.6", "--gas", "Gas"], "",
             '"0:inf" is no component: write SUBSTANCE:FRACTION with a fraction above 0'),
            (["substance", "Mix", "--component", "0:0.6", "--gas", "Gas"], "",
             "a mixture has two components or more"),
            (["change", "Water", "Boiling", "--from", "Liquid", "--to", "Vapour"], "",
             'no phase of Water is called "Vapour"; there are: Liquid (0), Steam (1)'),
            (["parameter", "Water", "11", "--phase", "Steam", "--value", "1"], "",
             "cannot add the parameter: the parameter's description does not offer it for the phase's aggregate state "
             "(-19): Incorrect parameter for the phase AS, ParamID=11AS=3"),
            *((value + [text], "", f'--value takes finite numbers, and "{text}" is none; it is the last option on '
               "the line") for text in ("nan", "inf", "-inf", "1e400", "0x1F", "1,5", "4x3", "")),
            (density, "T,rho\n280,999.9\n300,heavy\n290\n", "nothing is added:\n"
             'standard input: row 2 (line 3), column 2: "heavy" is not a number\n'
             "standard input: row 3 (line 4): the number of columns is 1, in the first row it is 2"),
            (density, "280 1\n280.0001 2\n270 3\n", "nothing is added:\n"
             "standard input: row 3 (line 3), column 1: the argument 270 does not increase: the row before it has "
             "280.0001"),
            (density, "1 280 1\n2 280 1\n1 290 2\n", "nothing is added:\nstandard input: row 3 (line 3), column 1: the "
             "first argument 1 has rows further up: they must stand together"),
            (density, "280 inf\n", 'nothing is added:\nstandard input: row 1 (line 1), column 2: "inf" is not a number'),
            (density, "", "standard input holds no row of numbers"),
        ]:
            self.expect(["add", arguments[0], self.database, *arguments[1:]], "", 2, prefixed(message), stdin)
        for encoding in ("utf-16", "utf-16-le", "utf-16-be"):
            Path(self.scratch, "rows.csv").write_bytes("T,rho\n280,1\n".encode(encoding))
            self.expect(["add", "parameter", self.database, *density[1:-1], "rows.csv"], "", 2,
                        prefixed('rows.csv is encoded as UTF-16; save it as UTF-8, for example with "iconv -f UTF-16"'))
        self.assertEqual(before, snapshot(self.database))

    def test_adds_from_many_commands_at_once(self):
        names = [f"S{number}" for number in range(12)]
        running = [subprocess.Popen([COMMAND, "add", "substance", self.database, name, "--solid", "Solid"],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, encoding="utf-8")
                   for name in names]
        waiting = f'qmdb: note: waiting for another command that changes "{self.database}"\n'
        for process in running:
            self.assertIn(process.communicate()[1], ("", waiting))
            self.assertEqual(0, process.returncode)
        listed = json.loads(self.output("list", self.database, "--json"))
        self.assertEqual(sorted(names), sorted(substance["name"] for substance in listed))
        self.assertEqual(list(range(12)), sorted(substance["id"] for substance in listed))

    def test_waits_for_the_holder_of_the_lock(self):
        held = os.open(self.database, os.O_RDONLY)
        fcntl.flock(held, fcntl.LOCK_EX)
        with subprocess.Popen([COMMAND, "add", "substance", self.database, "Late", "--gas", "G"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8") as process:
            self.assertIn("waiting for another command", process.stderr.readline())
            # What was added meanwhile is seen: the database is opened behind the lock.
            write(self.database, {"First/First.mtd": keys(Composition="", ID=0, Mixture=0, Name="First"),
                                  "First/P/P.phd": keys(Aggreg=1, ID=0, Name="Solid")})
            os.close(held)
            self.assertEqual("added substance Late (1)\n", process.stdout.readline())


if __name__ == "__main__":
    unittest.main()
