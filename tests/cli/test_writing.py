"""Values, descriptions, texts and removals: what the commands write, as files and as the library reads it."""

import os
import pty
import resource
import shutil
import subprocess
import unittest
from pathlib import Path

from support import COMMAND, MARK, SMALL, CommandTest, head, keys, prefixed, snapshot, write

ICE, LIQUID = "Substance1/Phase2", "Substance1/Phase1"


class Writing(CommandTest):
    def files(self):
        root = Path(self.database)
        return {str(path.relative_to(root)): path.read_text(encoding="utf-8")
                for path in root.rglob("*") if path.is_file()}

    def expect_files(self, arguments, output, changed, stdin="", errors=""):
        """Runs a command and compares what it changes; a text of None stands for a file that goes."""
        before = self.files()
        self.expect([arguments[0], *arguments[1:2], "db", *arguments[2:]], output, stdin=stdin, errors=errors)
        after = self.files()
        self.assertEqual(changed, {name: after.get(name) for name in before.keys() | after.keys()
                                   if before.get(name) != after.get(name)}, arguments)
        status, found, _ = self.run_command("check", "db")
        self.assertIn("0 errors", found)
        return before

    def test_adds_values_with_all_that_is_said_about_them(self):
        rows = "# from a book, p. 3\nT,L\n270,3.3343000000000001e5\n273.15,333431.123456789\n"
        self.expect_files(["add", "parameter", "Salt", "Latent heat", "--value", "0.1234567890123456"],
                          "added Latent heat (4) to Salt: constant, scalar, 1 point\n",
                          {"Substance3/Property1.dat": "0.1234567890123456\n", "Substance3/Property1.prh": head(4, 1)})
        write(self.database, {"latent.prd": SMALL["latent.prd"].replace("Types=C", "Types=Ct"),
                              "Substance1/PC2/PC2.pcd": keys(ID=1, Name="Sublimation", Phase1=1, Phase2=0)})
        self.expect_files(
            ["add", "parameter", "Water", "latent heat", "--change", "Sublimation", "--source", "Me, 2024", "--accuracy",
             "1 %", "--comment", "one°", "--comment", "", "--argument-units", "K", "--file", "-"],
            "added Latent heat (4) to Water, phase change Sublimation: table of T, scalar, 2 points\n",
            {"Substance1/PC2/Property1.dat": "# one°\n#\n# from a book, p. 3\n270 333430\n273.15 333431.123456789\n",
             "Substance1/PC2/Property1.prh": keys(Accuracy="1 %", Data="Property1.dat", ID=4, Source="Me, 2024", Type=2,
                                                  Vector=0),
             "latent.prd": MARK + "ArgumentUnits=K\n" + SMALL["latent.prd"].replace("Types=C", "Types=Ct")[1:]}, rows)
        self.assertEqual("T,\"Latent heat, J/kg\"\n", self.output(
            "get", "db", "Water", "4", "--change", "1", "--csv").replace("T, K", "T").partition("270")[0].replace('"T"', "T"))

    def test_takes_no_name_that_anything_has(self):
        write(self.database, {f"{LIQUID}/Property2.dat": "# kept\n", f"{LIQUID}/Property3.prh/x": ""})
        write(self.database, {"conductivity.prd": SMALL["conductivity.prd"].replace("States=S", "States=SL")
                              .replace("AvForPhases=S", "AvForPhases=SL")})
        self.output("add", "parameter", "db", "Water", "3", "--phase", "Liquid", "--value", "0.6")
        self.assertEqual("# kept\n", self.files()[f"{LIQUID}/Property2.dat"])
        self.assertEqual("0.6\n", self.files()[f"{LIQUID}/Property4.dat"])

    def test_describes_parameters(self):
        self.expect_files(
            ["add", "description", "Young's modulus", "--units", "Pa", "--types", "Ct", "--states", "S", "--symbol", "E",
             "--argument-units", "K", "--name-ru", "Модуль Юнга", "--vector"],
            "added the description of Young's modulus (5)\n",
            {"youngs-modulus.prd": keys(ArgumentUnits="K", AvForPhases="S", Binary=0, DataTypes="Ct", ID=5,
                                        Name="Young's modulus", NameID=11, Scalar=1, Symbol="E", Units="Pa", Vector=1),
             "default.lst": MARK + "10=Water\n11=Young's modulus\n", "strings.lst": MARK + "10=Вода\n11=Модуль Юнга\n"})
        self.output("add", "parameter", "db", "Water", "young's modulus", "--phase", "Ice", "--value", "9e9")
        self.assertIn("Модуль Юнга (5)", self.output("list", "db", "--lang", "ru"))

    def test_sets_values_names_and_keys(self):
        ice = SMALL["Substance1/Phase2/Phase2.phd"]
        note = "qmdb: note: the new value keeps what was said about the one before: comments\n"
        for arguments, output, changed, errors in [
            (["parameter", "Water", "Molar mass", "--value", "0.018"],
             "changed Molar mass (2) of Water: constant, scalar, 1 point\n",
             {"Substance1/Property1.dat": "# kg/mol\n0.018\n"}, note),
            (["parameter", "Water", "2", "--comment", "new", "--source", "S", "--value", "0.5"],
             "changed Molar mass (2) of Water: constant, scalar, 1 point\n",
             {"Substance1/Property1.dat": None, "Substance1/Property2.dat": "# new\n0.5\n", "Substance1/Property1.prh":
              keys(Data="Property2.dat", ID=2, Source="S", Type=1, Vector=0)}, ""),
            (["parameter", "Water", "2", "--source", ""], "changed Molar mass (2) of Water\n",
             {"Substance1/Property1.prh": head(2, 1, data="Property2.dat")}, ""),
            (["substance", "Water", "--formula", "H2O", "--key", "CAS=7732-18-5", "--name-ru", "Водица"],
             "changed Water\n",
             {"strings.lst": MARK + "10=Водица\n", "Substance1/Substance1.mtd": keys(
                 CAS="7732-18-5", Comment="H₂O", Composition="", Formula="H2O", ID=0, Mixture=0, Name="W", NameID=10)}, ""),
            (["phase", "Water", "Ice", "--name", "Лёд", "--lang", "ru"], "changed Water, phase Ice\n",
             {"default.lst": MARK + "10=Water\n11=Ice\n", "strings.lst": MARK + "10=Водица\n11=Лёд\n",
              f"{ICE}/Phase2.phd": ice + "NameID=11\n"}, ""),
            (["change", "Water", "Melting", "--name", "Fusion"], "changed Water, phase change Melting\n",
             {"Substance1/PC1/PC1.pcd": SMALL["Substance1/PC1/PC1.pcd"].replace("Melting", "Fusion")}, ""),
            (["description", "Density", "--symbol", "rho", "--units", "g/cm³"], "changed the description of Density (1)\n",
             {"density.prd": SMALL["density.prd"].replace("kg/m³", "g/cm³").replace("\nUnits", "\nSymbol=rho\nUnits")}, ""),
            (["description", "Density", "--symbol", "rho"], "nothing to change: it is so already\n", {}, ""),
        ]:
            if "Вода" in arguments or arguments[1:3] == ["Water", "Ice"]:
                arguments[1] = "0"
                arguments[2] = "1"
                output = "changed Водица, phase Ice\n"
            self.expect_files(["set", *arguments], output, changed, errors=errors)

    def test_adds_substances_and_changes_with_texts_in_both_languages(self):
        self.expect_files(
            ["add", "substance", "Melt", "--comment", "new", "--name-ru", "Расплав", "--comment-ru", "новый", "--formula", "X",
             "--aliases", "a;b", "--cas", "7732-18-5", "--component", "Water:0.5584824", "--component", "2:0.3968805",
             "--component", "Brine:0.0446371", "--liquid", "L"],  # more than 1 in binary
            "added substance Melt (3)\nadded phase L (0), liquid\n",
            {"Substance4/Substance4.mtd": keys(Aliases="a;b", CAS="7732-18-5", Comment="new", CommentID=12, Composition=
                                               "0:0.5584824;2:0.3968805;1:0.0446371", Formula="X", ID=3, Mixture=1,
                                               Name="Melt", NameID=11),
             "Substance4/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="L", NameID=13),
             "default.lst": MARK + "10=Water\n11=Melt\n12=new\n",
             "strings.lst": MARK + "10=Вода\n11=Расплав\n12=новый\n"})
        self.expect_files(["add", "change", "Water", "Thaw", "--from", "Ice", "--to", "0", "--name-ru", "Оттепель"],
                          "added phase change Thaw (1), Ice to Liquid\n",
                          {"Substance1/PC2/PC2.pcd": keys(ID=1, Name="Thaw", NameID=14, Phase1=1, Phase2=0),
                           "default.lst": MARK + "10=Water\n11=Melt\n12=new\n14=Thaw\n",
                           "strings.lst": MARK + "10=Вода\n11=Расплав\n12=новый\n14=Оттепель\n"})

    def test_tells_what_stands_when_the_second_step_of_an_addition_fails(self):
        write(self.database, {"strings.lst": SMALL["strings.lst"] + "".join(f"{i}=x\n" for i in range(100, 700))})
        bound = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (3000, 3000)), "restore_signals": False}
        self.expect(["add", "substance", "db", "Tin", "--name-ru", "Олово", "--solid", "S"],
                    "", 2, prefixed(
                        'cannot write "db/strings.lst": File too large\nTin (3) is in the database now, but not all that was '
                        'given with it: "qmdb set substance" adds that when the cause is gone, "qmdb remove substance" takes '
                        "it away again"), process=bound)
        self.output("set", "substance", "db", "Tin", "--name-ru", "Олово")
        self.assertIn("Олово (3)", self.output("list", "db", "--lang", "ru"))

    def test_sets_compositions(self):
        brine, other = (["set", "substance", name] for name in ("Brine", "Salt"))
        descriptor = "Substance2/Substance2.mtd"
        pure = SMALL[descriptor].replace("0:0.75;2:0.25", "").replace("Mixture=1", "Mixture=0")
        halves = ["--component", "Water:0.1234567890123456", "--component", "Salt:0.8765432109876544"]
        for arguments, changed, differences in [
            ([*brine, "--pure"], {descriptor: pure},
             "mixture: 1 -> 0\n~ substance Brine (1), composition: 0.75 Water + 0.25 Salt -> nothing\n2 differences\n"),
            ([*brine, *halves], {descriptor: SMALL[descriptor].replace("0.75", halves[1][6:]).replace("0.25", halves[3][5:])},
             f"composition: 0.75 Water + 0.25 Salt -> {halves[1][6:]} Water + {halves[3][5:]} Salt\n1 difference\n"),
            ([*other, "--component", "Water:1e-7", "--component", "Brine:0.9999999"],
             {"Substance3/Substance3.mtd": SMALL["Substance3/Substance3.mtd"].replace("Mixture=0", "Mixture=1").replace(
                 "Composition=", "Composition=0:1e-07;1:0.9999999")}, None),
        ]:
            with self.subTest(arguments):
                before = self.files()
                self.assertIn("\n    + Composition=", self.output(*arguments[:2], "db", *arguments[2:], "--dry-run"))
                self.assertEqual(before, self.files())
                self.expect_files(arguments, f"changed {arguments[2]}\n", changed)
                write(Path(self.scratch, "before"), SMALL)
                if differences:
                    self.expect(["diff", "before", "db"], "~ substance Brine (1), " + differences, 1)

    def test_a_text_that_others_share_stays_theirs(self):
        shared = {"Substance1/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Liquid", NameID=12),
                  "Substance2/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Liquid", NameID=12)}
        tables = {"default.lst": MARK + "10=Water\n12=Liquid\n", "strings.lst": MARK + "10=Вода\n12=Жидкость\n"}
        write(self.database, shared | tables)
        self.expect_files(["set", "phase", "Brine", "Liquid", "--name", "Melt"], "changed Brine, phase Liquid\n",
                          {"default.lst": tables["default.lst"] + "13=Melt\n",
                           "strings.lst": tables["strings.lst"] + "13=Жидкость\n",
                           "Substance2/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Melt", NameID=13)})
        self.expect_files(["remove", "substance", "Brine", "--yes"], "removed Brine (1)\n",
                          {"default.lst": tables["default.lst"], "strings.lst": tables["strings.lst"],
                           "Substance2/Phase1/Phase1.phd": None, "Substance2/Substance2.mtd": None})

    def test_leaves_shared_data_to_the_others(self):
        write(self.database, {f"{ICE}/Property3.prh": head(2, 2, 0), "mass.prd":
                              SMALL["mass.prd"].replace("Types=C", "Types=Ct").replace("AvForPhases=", "AvForPhases=S")})
        self.expect_files(["remove", "parameter", "Water", "Density", "--phase", "Ice", "--yes"],
                          "removed Density (1) of Water, phase Ice\n", {f"{ICE}/Property1.prh": None})
        write(self.database, {f"{ICE}/Property4.prh": head(1, 2, 0)})
        self.expect_files(["set", "parameter", "Water", "2", "--phase", "Ice", "--comment", "c"],
                          "changed Molar mass (2) of Water, phase Ice\n",
                          {f"{ICE}/Property3.prh": head(2, 2, 0, "Property5.dat"),
                           f"{ICE}/Property5.dat": "# c\n" + SMALL[f"{ICE}/Property1.dat"]})

    def test_removes(self):
        phase = {name: None for name in SMALL if name.startswith("Substance3/")}
        for arguments, output, gone in [
            (["parameter", "Water", "Molar mass"], "Molar mass (2) of Water",
             {"Substance1/Property1.prh": None, "Substance1/Property1.dat": None}),
            (["description", "Molar mass"], "the description of Molar mass (2)", {"mass.prd": None}),
            (["change", "Water", "Melting"], "Water, phase change Melting",
             {name: None for name in SMALL if name.startswith("Substance1/PC1/")}),
            (["phase", "Water", "Ice"], "Water, phase Ice", {name: None for name in SMALL if name.startswith(ICE)}),
            (["substance", "Brine"], "Brine (1)", {name: None for name in SMALL if name.startswith("Substance2/")}),
            (["substance", "Salt"], "Salt (2)", phase),
        ]:
            before = self.files()
            lines = self.output("remove", arguments[0], "db", *arguments[1:], "--dry-run")
            self.assertIn("would remove", lines)
            self.assertEqual(before, self.files())
            self.expect_files(["remove", *arguments, "--yes"], f"removed {output}\n", gone)
        self.assertEqual([], [name for name in os.listdir(self.database) if name.startswith(".")])

    def test_asks_on_a_terminal(self):
        for answer, status in [(b"n\n", 2), (b"y\n", 0)]:
            ours, theirs = pty.openpty()
            with subprocess.Popen([COMMAND, "remove", "substance", self.database, "Brine"], stdin=theirs, stderr=theirs,
                                  stdout=subprocess.DEVNULL) as process:
                os.write(ours, answer)
                self.assertEqual(status, process.wait(60))
            self.assertIn(b"remove Brine (1) with 1 phase, 0 phase changes and 0 values? This cannot be undone. [y/N]",
                          os.read(ours, 10000))
            os.close(ours)
            os.close(theirs)
        self.assertFalse(Path(self.database, "Substance2").exists())

    def test_refuses_without_writing(self):
        write(self.database, {"Substance1/Phase1/notes.txt": "mine", "Substance3/Phase1/Property2.prh":
                              head(1, 1, 0, "../../Substance1/Property1.dat")})
        before = snapshot(self.database)
        sure = "this cannot be undone; --yes does it, --dry-run shows what it would do"
        for arguments, message in [
            (["remove", "substance", "db", "Brine"], f"remove Brine (1) with 1 phase, 0 phase changes and 0 values: {sure}"),
            (["remove", "substance", "db", "Water", "--yes"],
             "Brine (1) has it as a component; remove that mixture first, or give it other components by \"qmdb set substance\" "
             "with --component"),
            (["remove", "phase", "db", "Water", "Ice", "--yes"],
             "the phase change Melting (0) refers to it; remove that first"),
            (["remove", "phase", "db", "Brine", "Liquid", "--yes"],
             "a substance without phases would not be found again: add another phase first, or remove the substance"),
            (["remove", "description", "db", "Latent heat", "--yes"],
             "Substance1/PC1/Property1.prh is a value of it; remove the values first"),
            (["set", "substance", "db", "Brine", "--name", "Water"],
             'the name "Water" is taken: Substance1/Substance1.mtd shows it'),
            (["set", "substance", "db", "Brine", "--cas", "7732-18-4"],
             'CAS cannot be "7732-18-4": write a CAS number, such as 7732-18-5'),
            (["set", "substance", "db", "Brine", "--key", "ID=5"], '"ID" is no key that can be set here; there are: '
             "Formula, Aliases, CAS"),
            (["set", "substance", "db", "Brine", "--component", "Brine:0.5", "--component", "Salt:0.5"],
             "Brine (1) cannot be a component of itself"),
            (["set", "substance", "db", "Brine", "--component", "Water:1"], "a mixture has two components or more"),
            (["set", "substance", "db", "Brine", "--component", "Water:0.6", "--component", "Salt:0.6"],
             "the molar fractions add up to 1.2; they must add up to 0.99 to 1"),
            (["set", "substance", "db", "Brine", "--pure", "--component", "Water:1"],
             '--component excludes --pure\n"qmdb set substance --help" tells what to write'),
            (["add", "substance", "db", "Tin", "--name-ru", "Вода", "--solid", "S"],
             'the name "Вода" is taken: Substance1/Substance1.mtd shows it'),
            (["add", "substance", "db", "Tin", "--cas", "1-1-1", "--solid", "S"],
             'CAS cannot be "1-1-1": write a CAS number, such as 7732-18-5'),
            (["add", "substance", "db", "Tin", "--comment-ru", "x" * 50, "--solid", "S"],
             "--comment-ru has 50 characters; 49 fit"),
            (["add", "substance", "db", "Tin", "--aliases", "x" * 1020, "--solid", "S"],
             "Aliases is too long: a line of a file holds 1022 bytes"),
            (["add", "change", "db", "Water", "Thaw", "--from", "Ice", "--to", "Liquid", "--name-ru", "Melting"],
             'the name "Melting" is taken: Substance1/PC1/PC1.pcd shows it'),
            (["set", "substance", "db", "Brine"], "nothing is given that should change; --help lists the options"),
            (["set", "description", "db", "Density", "--types", "CtT", "--vector", "0", "--scalar", "0"],
             "Substance1/Phase1/Property1.prh has a value of a type or form that the description would not allow any more; "
             "remove it or allow it"),
            (["add", "description", "db", "Density", "--units", "1", "--types", "C"],
             'the name "Density" is taken: density.prd shows it'),
            (["add", "parameter", "db", "Water", "4", "--change", "Melting", "--value", "1"],
             "cannot add the parameter: the parameter is there already (-18): Cannot append the parameter to phase change "
             "because a parameter with such ID is already present, 4\n\"qmdb set parameter\" replaces the value"),
            (["add", "parameter", "db", "Water", "1", "--change", "Melting", "--value", "1", "2", "3"],
             "cannot add the parameter: the parameter's description does not allow this form (scalar or vector) (-17): "
             "Incorrect parameter scalar/vector type for addition, ParamID=1Vector=1"),
            (["add", "parameter", "db", "Brine", "4", "--phase", "Liquid", "--file", "t.csv"],
             "cannot add the parameter: the parameter's description does not allow this type (-16): Incorrect parameter "
             "type for addition, ParamID=4ParamType=2"),
            (["add", "parameter", "db", "Water", "77", "--value", "1"],
             'no parameter is called "77"; there are: Density (1), Molar mass (2), Conductivity (3), Latent heat (4)'),
        ]:
            write(self.scratch, {"t.csv": "1 2\n"})
            self.expect(arguments, "", 2, prefixed(message))
        self.assertEqual(before, snapshot(self.database))

    def test_refuses_what_is_not_the_databases_own(self):
        write(self.database, {"Substance3/Phase2/Phase2.phd": keys(Aggreg=2, ID=1, Name="Melt"),
                              "Substance3/Phase2/notes.txt": "mine"})
        self.expect(["remove", "phase", "db", "Salt", "Melt", "--yes"], "", 2, prefixed(
            '"Substance3/Phase2/notes.txt" is no file of the database; move it away first'))
        os.rename(Path(self.database, "Substance3/Phase2"), Path(self.scratch, "elsewhere"))
        Path(self.database, "Substance3/Phase2").symlink_to(Path(self.scratch, "elsewhere"))
        os.rename(Path(self.database, "strings.lst"), Path(self.scratch, "texts"))
        Path(self.database, "strings.lst").symlink_to(Path(self.scratch, "texts"))
        for link, changed in [("Substance3/Phase2", ["phase", "db", "Salt", "Melt", "--name", "M"]),
                              ("strings.lst", ["substance", "db", "Salt", "--name-ru", "Соль"])]:
            self.expect(["set", *changed], "", 2, prefixed(
                f'"db/{link}" is a link, and what it leads to may belong to others too: replace it by what it leads '
                "to, or change that"))
        self.expect(["remove", "phase", "db", "Salt", "Melt", "--yes"], "removed Salt, phase Melt\n")
        self.assertEqual(["Phase2.phd", "notes.txt"], sorted(os.listdir(Path(self.scratch, "elsewhere"))))

    @unittest.skipUnless(shutil.which("strace"), "strace is not installed")
    def test_a_signal_comes_before_a_change_or_after_it(self):
        rules = "inject={}:signal=SIGTERM:when={}"
        for arguments, fewest in [
            (["set", "parameter", "db", "Water", "2", "--value", "1", "--comment", "x", "--source", "x"], 8),
            (["remove", "substance", "db", "Brine", "--yes"], 6),
            (["add", "substance", "db", "Tin", "--name-ru", "Олово", "--solid", "S"], 12),
        ]:
            before = self.files()
            self.output(*arguments)
            states, struck = [before, self.files()], 0
            for call in ("mkdir", "renameat2", "fsync", "unlink", "unlinkat"):
                for number in range(1, 30):
                    shutil.rmtree(self.database)
                    write(self.database, before)
                    done = subprocess.run(["strace", "-f", "-o", "trace", "-e", f"trace={call}", "-e",
                                           rules.format(call, number), COMMAND, *arguments],
                                          cwd=self.scratch, capture_output=True, check=False,
                                          env={"PATH": os.environ["PATH"], "TMPDIR": str(self.temporary)})
                    self.assertIn(self.files(), states, (arguments, call, number))
                    self.assertEqual([], os.listdir(self.temporary), (arguments, call, number))
                    if done.returncode == 0:
                        break
                    struck += 1
            self.assertGreaterEqual(struck, fewest, arguments)
            write(self.database, SMALL)

    def test_a_file_stays_whole_when_the_disk_refuses(self):
        bound = self.without_privileges()
        before = snapshot(self.database)
        for path in [self.database, f"{self.database}/Substance1"]:
            os.chmod(path, 0o555)
        refused = 'qmdb: cannot {} "db/{}": Permission denied\n'
        for arguments, message in [
            (["set", "parameter", "db", "Water", "2", "--value", "1", "--source", "x", "--comment", "x"],
             refused.format("write", "Substance1/Property2.dat")),
            (["add", "description", "db", "X", "--units", "1", "--types", "C"], refused.format("write", "x.prd")),
            (["remove", "phase", "db", "Salt", "0", "--yes"], None),
            (["remove", "substance", "db", "Brine", "--yes"], None),
        ]:
            status, output, errors = self.run_command(*arguments, process=bound)
            self.assertEqual((2, ""), (status, output))
            self.assertIn(message or "qmdb: ", errors)
        for path in [self.database, f"{self.database}/Substance1"]:
            os.chmod(path, 0o755)
        self.assertEqual(before, snapshot(self.database))


if __name__ == "__main__":
    unittest.main()
