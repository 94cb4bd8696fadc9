"""What the qmdb command writes: exports, pictures, and the files that they stand in."""

import contextlib
import json
import os
import pty
import re
import resource
import select
import shutil
import signal
import sqlite3
import stat
import subprocess
import time
import unittest
from pathlib import Path

from support import ANNOTATED, COMMAND, CommandTest, head, keys, prefixed, write

TIDY = '''\
substance_id,substance,formula,cas,aliases,composition,composition_ids,phase_id,phase,state,change_id,change,\
change_from,change_to,parameter_id,parameter,symbol,units,type,source,accuracy,\
comments,first_argument_name,first_argument_units,second_argument_name,second_argument_units,first_argument,second_argument,component,value
0,Water,H2O,7732-18-5,water;R718,,,,,,,,,,2,Molar mass,,kg/mol,C,,,kg/mol,,,,,,,,0.018015268
0,Water,H2O,7732-18-5,water;R718,,,0,Liquid,liquid,,,,,1,Density,rho,kg/m³,T,,,,pressure,Pa,temperature,K,100000,280,,999.91
0,Water,H2O,7732-18-5,water;R718,,,0,Liquid,liquid,,,,,1,Density,rho,kg/m³,T,,,,pressure,Pa,temperature,K,100000,300,,996.56
0,Water,H2O,7732-18-5,water;R718,,,0,Liquid,liquid,,,,,1,Density,rho,kg/m³,T,,,,pressure,Pa,temperature,K,1000000,280,,1000.35
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,1,Density,rho,kg/m³,t,"CRC, ""Ice""",0.1 %,,temperature,K,,,250,,,919.87
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,1,Density,rho,kg/m³,t,"CRC, ""Ice""",0.1 %,,temperature,K,,,273.15,,,916.721
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,250,,x,2.3
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,250,,y,2.3
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,250,,z,2.4
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,270,,x,2.2
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,270,,y,2.2
0,Water,H2O,7732-18-5,water;R718,,,1,Ice,solid,,,,,3,Conductivity,,W/(m K),t,,,,temperature,K,,,270,,z,2.3
0,Water,H2O,7732-18-5,water;R718,,,,,,0,Melting,1,0,4,Latent heat,,J/kg,C,,,,,,,,,,,333430
1,Brine,,,,0.75 Water + 0.25 Salt,0:0.75;2:0.25,0,Liquid,liquid,,,,,1,Density,rho,kg/m³,p,,,"Density, kg/m3 | ""over"" pressure, Pa",pressure,Pa,,,1,,,1100
2,Salt,,,,,,0,"Crystal, ""cubic""",solid,,,,,3,Conductivity,,W/(m K),C,,,,,,,,,,x,6
2,Salt,,,,,,0,"Crystal, ""cubic""",solid,,,,,3,Conductivity,,W/(m K),C,,,,,,,,,,y,6
2,Salt,,,,,,0,"Crystal, ""cubic""",solid,,,,,3,Conductivity,,W/(m K),C,,,,,,,,,,z,-6.5
'''
BRINE = {**ANNOTATED, "Substance2/Phase1/Property1.prh": head(1, 3),
         "Substance2/Phase1/Property1.dat": '# Density, kg/m3\n# "over" pressure, Pa\n1 1100\n'}


class Exporting(CommandTest):
    def setUp(self):
        super().setUp()
        write(self.database, BRINE)

    def test_writes_the_same_columns_in_every_format(self):
        self.expect(["export", self.database], TIDY)
        rows = [json.loads(line) for line in self.output("export", self.database, "--jsonl").splitlines()]
        self.assertEqual(rows, json.loads(self.output("export", self.database, "--json")))
        self.assertEqual({"substance_id": 1, "substance": "Brine", "formula": None, "cas": None, "aliases": None,
                          "composition": "0.75 Water + 0.25 Salt", "composition_ids": "0:0.75;2:0.25",
                          "phase_id": 0, "phase": "Liquid", "state": "liquid", "change_id": None, "change": None,
                          "change_from": None, "change_to": None,
                          "parameter_id": 1, "parameter": "Density", "symbol": "rho", "units": "kg/m³", "type": "p",
                          "source": None, "accuracy": None, "comments": 'Density, kg/m3 | "over" pressure, Pa',
                          "first_argument_name": "pressure", "first_argument_units": "Pa",
                          "second_argument_name": None, "second_argument_units": None, "first_argument": 1, "second_argument": None,
                          "component": None, "value": 1100}, rows[13])
        file = Path(self.scratch, "all.sqlite")
        self.expect(["export", self.database, "--sqlite", file], "")
        with sqlite3.connect(file) as connection:
            answer = connection.execute("SELECT * FROM tidy")
            names = [column[0] for column in answer.description]
            self.assertEqual(TIDY.splitlines()[0].split(","), names)
            self.assertEqual(rows, [dict(zip(names, row)) for row in answer])

    def test_shows_numbers_that_are_not_finite(self):
        write(self.database, {"Substance2/Phase1/Property1.dat": "1 nan\n2 inf\n3 -inf\n4 -nan\n5 0\ninf 1\n"})
        get = ["get", self.database, "Brine", "Density", "--phase", "Liquid"]
        shown = [("1", "nan"), ("2", "inf"), ("3", "-inf"), ("4", "nan"), ("5", "0"), ("inf", "1")]
        self.assertEqual("".join(f"{x},{y}\n" for x, y in shown), self.output(*get, "--csv").partition("\n")[2])
        finite = [[1, None], [2, None], [3, None], [4, None], [5, 0], [None, 1]]
        self.assertEqual(finite, json.loads(self.output(*get, "--json"))["rows"])
        brine = [line.split(",") for line in self.output("export", self.database).splitlines() if ",Brine," in line]
        self.assertEqual(shown, [(fields[-4], fields[-1]) for fields in brine])
        lines = [json.loads(line) for line in self.output("export", self.database, "--jsonl").splitlines()]
        self.assertEqual(finite, [[line["first_argument"], line["value"]] for line in lines if line["substance_id"] == 1])
        file = Path(self.scratch, "all.sqlite")
        self.expect(["export", self.database, "--sqlite", file], "")
        with sqlite3.connect(file) as connection:
            infinite = float("inf")
            self.assertEqual(
                [(1, None), (2, infinite), (3, -infinite), (4, None), (5, 0), (infinite, 1)],
                connection.execute("SELECT first_argument, value FROM tidy WHERE substance = 'Brine'").fetchall())

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
            self.assertEqual(substances * rows + 17, ask("SELECT count(*) FROM point"))
            self.assertEqual(lines, ask("SELECT count(*) FROM tidy"))
            self.assertEqual("ok", ask("PRAGMA integrity_check"))
            self.assertEqual([], connection.execute("PRAGMA foreign_key_check").fetchall())
            self.assertEqual([(0, 0.75), (2, 0.25)], connection.execute(
                "SELECT component_id, molar_fraction FROM component").fetchall())
            self.assertEqual(17.04, ask("SELECT value FROM tidy WHERE substance_id = 17 AND first_argument = 4"))


class WritingFiles(CommandTest):
    def setUp(self):
        super().setUp()
        self.place = Path(self.scratch, "place")
        self.place.mkdir()
        self.file = self.place / "rows.csv"

    def test_puts_whole_files_into_place(self):
        rows = self.output("export", self.database)
        for prepare, mode in [(lambda: None, 0o644), (lambda: self.file.chmod(0o600), 0o600)]:
            prepare()
            before = self.file.stat().st_ino if self.file.exists() else None
            self.expect(["export", self.database, "-o", self.file], "", process={"umask": 0o022})
            after = self.file.stat()
            self.assertEqual((rows, mode, True), (self.file.read_text(encoding="utf-8"), stat.S_IMODE(after.st_mode),
                                                  after.st_ino != before))
        link = self.place / "link"
        link.symlink_to("rows.csv")
        self.file.write_text("old")
        self.expect(["export", self.database, "-o", link], "")
        self.assertEqual((rows, "rows.csv"), (self.file.read_text(encoding="utf-8"), os.readlink(link)))
        self.expect(["export", self.database, "-o", "/dev/null"], "")
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/null").st_mode))
        self.assertEqual({"rows.csv", "link"}, {path.name for path in self.place.iterdir()})

    def test_leaves_what_was_there_when_it_fails(self):
        self.file.write_text("old")
        bound = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000)),
                 "restore_signals": False}  # the write fails instead of ending the process
        self.expect(["export", self.database, "-o", self.file], "", 2,
                    prefixed(f'cannot write "{self.file}": File too large'), process=bound)
        self.expect(["export", self.database, "--sqlite", self.file], "", 2,
                    prefixed(f'"{self.file}" exists already; remove it first or give another name'))
        status, output, errors = self.run_command("export", self.database, "--sqlite", self.place / "new", process=bound)
        self.assertEqual((2, "", "qmdb: SQLite: "), (status, output, errors[:14]))
        for target, reason in [("place", "Is a directory"), ("nowhere/x.csv", "No such file or directory")]:
            self.expect(["export", self.database, "-o", target], "", 2, prefixed(f'cannot write "{target}": {reason}'))
        self.assertEqual("old", self.file.read_text())
        self.assertEqual([self.file], list(self.place.iterdir()))

    def test_leaves_nothing_when_it_is_interrupted(self):
        tools = Path(self.scratch, "tools")
        write(tools, {"gnuplot": f"#!/bin/sh\nexec {shutil.which('sleep')} 30\n"})
        (tools / "gnuplot").chmod(0o755)
        picture = self.place / "density.svg"
        picture.write_text("old")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with subprocess.Popen(
                    [COMMAND, "plot", self.database, "Water", "Density", "--phase", "Ice", "-o", picture],
                    env={"PATH": str(tools), "TMPDIR": str(self.temporary)}, start_new_session=True) as process:
                while len(list(self.place.iterdir())) < 2 and process.poll() is None:
                    time.sleep(0.01)
                self.assertEqual(1, len(list(self.temporary.iterdir())))
                process.send_signal(number)
                self.assertEqual(-number, process.wait(20))
                with contextlib.suppress(ProcessLookupError):  # there was no time to start gnuplot
                    os.killpg(process.pid, signal.SIGKILL)
            self.assertEqual(([picture], []), (list(self.place.iterdir()), list(self.temporary.iterdir())))
            self.assertEqual("old", picture.read_text())

    def test_clears_the_progress_line_when_it_is_interrupted(self):
        write(self.database, {f"Substance{i}/{name}": content for i in range(4, 8) for name, content in {
            "S.mtd": keys(Composition="", ID=i, Mixture=0, Name=f"N{i}"), "P/P.phd": keys(Aggreg=1, ID=0, Name="S"),
            "P/Property1.prh": head(1, 2), "P/Property1.dat": "".join(f"{t} 1\n" for t in range(3000))}.items()})
        ours, theirs = pty.openpty()
        with subprocess.Popen([COMMAND, "export", self.database], stdout=subprocess.PIPE, stderr=theirs,
                              env={"TMPDIR": str(self.temporary)}) as process:
            os.close(theirs)
            process.stdout.read(1)
            time.sleep(1.2)  # the full pipe holds it back until a line is due
            shown = b""
            while b" of " not in shown:
                process.stdout.read(1 << 16)
                if select.select([ours], [], [], 0.1)[0]:
                    shown += os.read(ours, 1000)
            process.send_signal(signal.SIGINT)
            process.stdout.read()
            self.assertEqual(-signal.SIGINT, process.wait(20))
            with contextlib.suppress(OSError):  # the end of a terminal that nobody has open
                while more := os.read(ours, 1000):
                    shown += more
        os.close(ours)
        self.assertRegex(shown.decode(), r"^(\r\x1b\[K\d of 7 substances)+\r\x1b\[K$")
        self.assertEqual([], list(self.temporary.iterdir()))


class Drawing(CommandTest):
    def draw(self, *arguments):
        return ["plot", self.database, "Water", "Density", "--phase", *arguments]

    @unittest.skipUnless(shutil.which("gnuplot"), "gnuplot is not installed")
    def test_draws(self):
        picture = Path(self.scratch, "it's.svg")
        for arguments, language, texts in [
            (self.draw("Liquid"), "en", ["Density: Water, Liquid", "Density, kg/m³", "Temperature, K", "P = 100000 Pa",
                                         "P = 1000000 Pa"]),
            (self.draw("Liquid"), "ru", ["Density: Вода, Liquid", "Температура, К", "P = 100000 Па"]),
            (["plot", self.database, "Water:Ice", "Salt:Crystal, \"cubic\"", "Conductivity"], "en",
             ['Conductivity: Water, Ice; Salt, Crystal, "cubic"', "Water, Ice, x", '"cubic", z']),
            ([*self.draw("Liquid"), "--title", "It's mine", "--units", "T=degC", "--units", "g/cm3"], "en",
             ["It's mine", "Density, g/cm3", "Temperature, degC"]),
        ]:
            with self.subTest(arguments):
                self.expect([*arguments, "--lang", language, "-o", picture], "")
                drawing = picture.read_text(encoding="utf-8").replace("&#39;", "'")
                for text in texts:
                    self.assertIn(text, drawing)
        for name, start in [("a.png", b"\x89PNG"), ("a.pdf", b"%PDF")]:
            self.expect([*self.draw("Ice"), "--size", "300x200", "-o", name], "")
            self.assertTrue(Path(self.scratch, name).read_bytes().startswith(start))
        drawing = self.output("plot", self.database, "Water", "Conductivity", "--phase", "Ice")
        self.assertIn("Conductivity: Water, Ice [W/(m K)]", drawing)

    def script(self, *arguments):
        """The lines of the gnuplot program, but for its data."""
        return self.output("plot", self.database, *arguments, "--script").split("\n")

    def test_scales_what_it_draws(self):
        rows = "".join(f"{t} {10 ** (t / 100)}\n" for t in range(100, 501, 100))
        write(self.database, {"Substance1/Phase2/Property1.dat": rows})
        ice = ["Water:Ice", "Density"]
        for arguments, present, absent in [
            (ice, ["set logscale y", "set xrange [88:512]"], ["set logscale x"]),
            ([*ice, "--linear"], ["set xrange [88:512]"], ["set logscale y"]),
            ([*ice, "--log", "xy"], ["set logscale x", "set logscale y"], []),
            ([*ice, "--log", "x"], ["set logscale x"], ["set logscale y"]),
            ([*ice, "--range", "100:250", "--range", "y=0:200"], ["set xrange [100:250]", "set yrange [0:200]"],
             ["set logscale y"]),
            ([*ice, "--range", "100:250"], ["set xrange [100:250]"], ["set logscale y"]),
        ]:
            with self.subTest(arguments):
                lines = self.script(*arguments)
                self.assertEqual([], [line for line in present if line not in lines])
                self.assertEqual([], [line for line in absent if line in lines])
        for arguments, message in [
            (["--range", "5"], "--range \"5\": write the least and the most, such as 300:600, or y=0:10 for the values"),
            (["--range", "2:1"], "--range \"2:1\": write the least and the most, such as 300:600, or y=0:10 for the values"),
            (["--range", "600:700"], "no point lies between 600 and 700: there is nothing to draw"),
            (["--range", "y=-1:5", "--log", "y"],
             'the axis of "Density, kg/m³" cannot be logarithmic: it begins at -1; give it a --range above 0'),
            (["--size", "7x7"], '--size "7x7": write width and height in pixels, 100 to 10000, such as 1200x800'),
        ]:
            self.expect(["plot", self.database, *ice, *arguments, "--script"], "", 2, prefixed(message))

    def test_tells_many_curves_apart(self):
        table = "".join(f"P={p}\n280 {p}\n300 {p + 1}\n" for p in range(1, 61))
        write(self.database, {"Substance1/Phase1/Property1.dat": table,
                              "Substance3/Phase1/Property1.dat": "6\n", "Substance3/Phase1/Property1.prh": head(1, 1)})
        family = self.script("Water:Liquid", "Density")
        self.assertIn("set cblabel 'Pressure, Pa'", family)
        self.assertIn("set cbrange [1:60]", family)
        small = ["Water:Liquid", "Salt", "Density", "--phase", "Crystal, \"cubic\"", "--size", "600x300"]
        status, output, errors = self.run_command("plot", self.database, *small, "--script")
        self.assertEqual(0, status)
        self.assertRegex(errors, r"qmdb: note: the legend has room for \d+ of 61 curves; draw fewer, or a larger picture")
        strokes = re.findall(r"pointtype (\d+) .* linetype (\d+)", output)
        self.assertEqual(60, len(strokes))
        self.assertEqual(60, len(set(strokes)))
        level = re.search(r"\$C60 << END\n(.*?)END", output, re.DOTALL)[1]
        self.assertEqual("279.4 6\n300.6 6\n", level)

    @unittest.skipUnless(shutil.which("gnuplot"), "gnuplot is not installed")
    def test_tells_of_numbers_that_no_picture_shows(self):
        for rows, status, message in [
            ("1 nan\n2 inf\n", 2, "Density of Water, phase Ice has no point with finite numbers: there is no curve to draw"),
            ("1 1\n2 nan\n3 2\n", 0, "note: Density of Water, phase Ice: 1 of 3 points have numbers that are not finite "
             "and leave gaps"),
            ("1 1\n2 2x\n", 0, 'warning: Density of Water, phase Ice: number 2 is "2x" and is read as 2'),
            ("1 7\n2 7\n", 0, None),  # gnuplot warns of the empty range
        ]:
            write(self.database, {"Substance1/Phase2/Property1.dat": rows})
            self.expect(self.draw("Ice", "-o", "a.svg"), "", status, prefixed(message) if message else "")

    def test_says_why_there_is_no_picture(self):
        tools = Path(self.scratch, "tools")
        write(tools, {"gnuplot": "#!/bin/sh\necho 'raw warning' >&2\necho 'line 0: boom' >&2\necho '   ^' >&2\nexit 1\n"})
        (tools / "gnuplot").chmod(0o755)
        failing = {"PATH": str(tools)}
        missing = {"PATH": str(self.temporary)}
        uninstalled = "gnuplot is not installed; on Debian: apt-get install gnuplot-nox"
        for arguments, environment, message in [
            (self.draw("Liquid", "-o", "nowhere/a.svg"), {}, 'cannot write "nowhere/a.svg": No such file or directory'),
            (self.draw("Liquid", "-o", "a.txt"), {}, '"a.txt": pictures are files with the extension .svg, .png or .pdf'),
            (self.draw("Liquid", "-o", "a.svg"), missing, uninstalled),
            (self.draw("Liquid"), missing, uninstalled),
            (self.draw("Liquid", "-o", "a.svg"), failing, "gnuplot could not draw the picture: line 0: boom"),
            (["plot", self.database, "Water", "2"], {}, "Molar mass of Water is a constant: there is no curve to draw"),
        ]:
            self.expect(arguments, "", 2, prefixed(message), **environment)
        self.assertEqual({"db", "temporary", "tools"}, {path.name for path in Path(self.scratch).iterdir()})


if __name__ == "__main__":
    unittest.main()
