"""qmdb check: planted faults, and the whole report of each."""

import json
import os
import re
import shutil
import unittest
from pathlib import Path

from support import MARK, SMALL, CommandTest, description, head, keys, write

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
conductivity.prd:10 error long-line
conductivity.prd:10 warning unknown-key
Substance1/Substance1.mtd:None error missing-key
Substance1/Property1.dat:1 error bad-number
Substance1/PC1/PC1.pcd:5 warning unknown-key
Substance1/PC1/Property1.dat:None error no-data
Substance1/Phase1/Phase1.phd:2 error no-key
Substance1/Phase1/Property1.dat:1 error no-header
Substance1/Phase1/Property1.dat:2 error bad-number
Substance1/Phase1/Property1.dat:3 error bad-row
Substance1/Phase1/Property1.dat:4 error ignored-text
Substance1/Phase1/Property1.dat:6 error bad-row
Substance1/Phase1/Property1.dat:7 warning not-finite
Substance1/Phase1/Property1.dat:8 warning repeated-subtable
Substance1/Phase1/Property1.dat:10 error dropped-line
Substance1/Phase2/Property1.dat:3 error not-increasing
Substance1/PC1/PC1.pcd:4 error unknown-phase
Substance2/Substance2.mtd:2 error bad-fractions
Substance3/Substance3.mtd:5 warning duplicate-name
Substance3/Phase1/Property1.dat:1 warning ignored-line
Substance4/Substance4.mtd:2 error bad-composition
Substance4/Substance4.mtd:3 error bad-number
Substance4/Substance4.mtd:3 error duplicate-id
Substance4/Phase1/Phase1.phd:1 warning bad-state
Substance4/Phase1/Property1.prh:1 error no-data-file
Substance4/Phase1/Property1.prh:2 error no-description
Substance4/Phase1/Property2.prh:1 error no-data-file
Substance4/Phase1/Property2.prh:3 error bad-type
Substance4/Phase1/Property2.prh:4 error form-not-allowed
Substance4/Phase1/Property3.PRH:None warning wrong-extension
Substance4/Phase1/Property9.dat:None warning orphan-data
Substance5/Substance5.mtd:None error no-phase
Substance6/Substance6.mtd:5 warning no-mark
Substance6/Substance6.mtd:None error missing-key
Substance6/Phase1:None error several-descriptors
Substance6/Phase1/Property1.prh:3 error type-not-allowed
Substance6/Phase1/Property1.prh:4 error bad-flag
Substance6/Phase1/Property1.dat:1 error mark-in-data
Substance7:None warning no-descriptor
Substance2/Substance2.mtd:2 error unknown-component
"""

# What to do, which the report says before the word.
ADVICE = {
    "ambiguous-name": "give it to one of them only",
    "argument-items": "write one item for every argument alike, or first that of the pressure, then that of the "
                      "temperature",
    "bad-cas": "write it as in 7732-18-5",
    "bad-id": "give it another ID",
    "bad-number": "write digits only",
    "bad-string-id": "write the text's number in digits only, without leading zeros, or remove the line",
    "control-character": "remove them",
    "cr-only": "save the file with LF or CR LF as line ends",
    "decreasing-subtable": "put the subtables in the order of their first arguments",
    "duplicate-id": "give one of them another ID",
    "empty-item": 'write one ";" between two items, and none at the ends',
    "grouped-digits": "write the number without a comma, or with a point if a fraction is meant",
    "ignored-text": "write a decimal number and nothing else",
    "leads-out": "put the file beside this one, and write its name",
    "lone-cr": "let each line end with LF or CR LF",
    "long-line": "shorten the line",
    "long-text": "shorten it",
    "missing-key": 'add a line "{}=..."',
    "missing-text": "write the number of a text, or add the text to the tables",
    "no-argument-units": 'add a line such as "ArgumentUnits=K" or "ArgumentUnits=Pa;K"',
    "mixed-line-ends": "look whether a character was lost, and let all lines end alike",
    "no-description": "write the ID of a description, or add one",
    "no-descriptor": "add the file, or remove the directory",
    "no-line-end": "look whether the file is whole, and end it with a line end",
    "no-phase": "add a phase",
    "orphan-data": "name it in a head, or remove it",
    "outer-blanks": "remove them",
    "repeated-subtable": "put the rows together",
    "single-component": "name two components or more",
    "units-differ": "write the same units in both",
    "unknown-component": "write the ID of a substance of this database",
    "unknown-key": 'write "ID" if that is meant, else remove the line',
    "unknown-phase": "write the ID of one of its phases",
    "unused-text": "remove the line, or refer to it by this number in digits only",
    "utf-16": 'save it as UTF-8, for example with "iconv -f UTF-16 -t UTF-8"',
    "wrong-extension": 'let the name end in ".phd", or remove the file',
}

# Files laid over the small database, None for one to leave out, and the findings in their order, without advice.
FAULTS = {
    "keys of the tools": ({
        "density.prd": description(1, "Density", "kg/m³", "CtpT", "SLV").replace("Pa;K", "Pa;K;m") + "Symbol=rho\n",
        "latent.prd": keys(ID=4, Name="Latent heat", Units="J/kg", Binary=0, DataTypes="Cp", Scalar=1, Symbol="rho"),
        "conductivity.prd": description(3, "Conductivity", "W/(m K)", "Ct", "S", vector=1)
        + "ArgumentName=a;b\n",
        "Substance1/Phase2/Property1.prh": head(1, 2) + "Source= CRC\nAccuracy=1\t%\n",
        "Substance1/Substance1.mtd": SMALL["Substance1/Substance1.mtd"] + "Aliases=Aqua;;R718\nCAS=7732-18-4\n",
        "Substance2/Substance2.mtd": SMALL["Substance2/Substance2.mtd"] + "Aliases=вода; brine\nFormula=NaCl\n",
        "Substance3/Substance3.mtd": SMALL["Substance3/Substance3.mtd"] + "Formula=NaCl\nAliases=Salt\nCAS=1-2\n"},
        """\
conductivity.prd:10: warning: "ArgumentName" has 2 items for 1 argument of the types "Ct" [argument-items]
density.prd:9: warning: "ArgumentUnits" has 3 items for 2 arguments of the types "CtpT" [argument-items]
density.prd:10: warning: "Symbol" is "rho", by which latent.prd goes too [ambiguous-name]
latent.prd:7: warning: "Symbol" is "rho", by which density.prd goes too [ambiguous-name]
latent.prd: warning: values may have arguments, and nothing tells the units of these [no-argument-units]
Substance1/Substance1.mtd:7: warning: "Aliases" is "Aqua;;R718", with an empty item [empty-item]
Substance1/Substance1.mtd:8: warning: "CAS" is "7732-18-4", which is no CAS number, or its check digit is wrong [bad-cas]
Substance1/Phase2/Property1.prh:5: warning: "Source" is " CRC": the outer blanks are part of it [outer-blanks]
Substance1/Phase2/Property1.prh:6: warning: "Accuracy" is "1?%", with control characters in it [control-character]
Substance2/Substance2.mtd:6: warning: "Aliases" is "вода; brine": the blanks beside ";" belong to the items \
[outer-blanks]
Substance2/Substance2.mtd:6: warning: "Aliases" is "вода", by which Substance1/Substance1.mtd goes too [ambiguous-name]
Substance3/Substance3.mtd:8: warning: "CAS" is "1-2", which is no CAS number, or its check digit is wrong [bad-cas]
"""),
    "one item for two quantities": ({
        "density.prd": description(1, "Density", "kg/m³", "CtpT", "SLV").replace("Pa;K", "K")}, """\
density.prd:9: warning: "ArgumentUnits" is "K" for the pressure and for the temperature [argument-items]
"""),
    "an ID beyond what additions return": ({
        "Substance3/Substance3.mtd": keys(Composition="", ID=2**31, Mixture=0, Name="Salt"),
        "Substance2/Substance2.mtd": keys(Composition="", ID=-5, Mixture=0, Name="Brine"),
        "Substance1/Phase2/Phase2.phd": keys(Aggreg=1, ID=2**31 - 1, Name="Ice"),
        "Substance1/PC1/PC1.pcd": keys(ID=-1, Name="Melting", Phase1=2**31 - 1, Phase2=0),
        "mass.prd": description(-2, "Molar mass", "kg/mol", "C", ""),
        "Substance1/Property1.prh": head(-2, 1)}, """\
mass.prd:4: error: the ID -2 is not among 0 to 2147483646, so that additions cannot tell IDs from failures [bad-id]
Substance1/PC1/PC1.pcd:1: error: the ID -1 stands for none [bad-id]
Substance1/Phase2/Phase2.phd:2: error: the ID 2147483647 is not among 0 to 2147483646, so that additions cannot tell \
IDs from failures [bad-id]
Substance2/Substance2.mtd:2: error: the ID -5 is not among 0 to 2147483646, so that additions cannot tell IDs from \
failures [bad-id]
Substance3/Substance3.mtd:2: error: the ID 2147483648 is not among 0 to 2147483646, so that additions cannot tell IDs \
from failures [bad-id]
"""),
    "a data file in another directory": ({"Substance1/Property1.prh": head(2, 1, 0, "../Substance1/Property1.dat")}, """\
Substance1/Property1.prh:1: warning: "Data" is "../Substance1/Property1.dat", which leads out of the directory \
[leads-out]
Substance1/Property1.dat: warning: no parameter head names the data file [orphan-data]
"""),
    "a thousands separator": ({
        "Substance1/Property1.dat": "1,234\n",
        "Substance1/Phase1/Property1.dat": "P=1,000\n280 -999,910\n300 0,250\nP=1001\n280 1234,567\n300 1,23\n"}, """\
Substance1/Property1.dat:1: warning: the value is "1,234" and is read as 1.234 [grouped-digits]
Substance1/Phase1/Property1.dat:1: warning: the first argument is "1,000" and is read as 1 [grouped-digits]
Substance1/Phase1/Property1.dat:2: warning: number 2 is "-999,910" and is read as -999.91 [grouped-digits]
"""),
    "a number that reads otherwise than it stands": ({"Substance1/Property1.dat": "4x3\n",
        "Substance1/Phase2/Property1.dat": "250 12abc\n260 0x1F\n270 1,234,567\n",
        "Substance1/PC1/Property1.dat": "1e400\n",
        "Substance1/PC1/PC1.pcd": keys(ID="0x0", Name="Melting", Phase1="1,0", Phase2=0),
        "Substance2/Substance2.mtd": keys(Composition="0:0.75a;2:0,250", ID=1, Mixture=1, Name="Brine")}, """\
Substance1/Property1.dat:1: error: the value is "4x3" and is read as 4 [ignored-text]
Substance1/PC1/PC1.pcd:1: error: "ID" is "0x0", which is no whole number; it is read as 0 [bad-number]
Substance1/PC1/PC1.pcd:3: error: "Phase1" is "1,0", which is no whole number; it is read as 1 [bad-number]
Substance1/PC1/Property1.dat:1: error: the value is "1e400" and is read as inf [ignored-text]
Substance1/Phase2/Property1.dat:1: error: number 2 is "12abc" and is read as 12 [ignored-text]
Substance1/Phase2/Property1.dat:2: error: number 2 is "0x1F" and is read as 31 [ignored-text]
Substance1/Phase2/Property1.dat:3: error: number 2 is "1,234,567" and is read as 1.234 [ignored-text]
Substance2/Substance2.mtd:1: error: a molar fraction is "0.75a" and is read as 0.75 [ignored-text]
"""),
    "a string ID without text": ({"Substance1/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Liquid", NameID=9),
        "Substance1/Phase2/Phase2.phd": keys(Aggreg=1, ID=1, Name="Ice", NameID=11),
        "mass.prd": description(2, "Molar mass", "kg/mol", "C", "") + "UnitsID=99\n"}, """\
mass.prd:9: warning: "UnitsID" is 99, and no string table has a text of this number [missing-text]
Substance1/Phase1/Phase1.phd:4: warning: "NameID" is 9, and no string table has a text of this number [missing-text]
"""),
    "decreasing first arguments": ({"Substance1/Phase1/Property1.dat": "P=2\n1 1\nP=1\n1 1\nP=3\n1 1\nP=2\n1 1\n"}, """\
Substance1/Phase1/Property1.dat:3: warning: the first argument 1 is less than that of the subtable before, 2 \
[decreasing-subtable]
Substance1/Phase1/Property1.dat:7: warning: the first argument 2 has a subtable already [repeated-subtable]
"""),
    "units that differ from the table's": ({
        "default.lst": MARK + "10=Water\n20=g/mol\n",
        "strings.lst": MARK + "10=Вода\n20=кг/моль\n",
        "mass.prd": description(2, "Molar mass", "kg/mol", "C", "") + "UnitsID=20\n"}, """\
mass.prd:7: warning: the units are "kg/mol" here and "g/mol" under 20 in default.lst, which counts [units-differ]
"""),
    "control characters and blanks": ({
        "default.lst": MARK + "10=Wa\x07ter\n",
        "mass.prd": description(2, "Molar\tmass", "kg/mol", "C", ""),
        "latent.prd": description(4, "Latent heat\u3000", "J/kg", "C", ""),
        "Substance3/Phase1/Phase1.phd": keys(Aggreg=1, ID=0, Name="C\x85"),
        "Substance3/Phase1/Pro\nperty2.prh": head(1, 1, 0, "Property2.dat"),
        "Substance3/Phase1/Property2.dat": "1\n"}, """\
default.lst:1: warning: "10" is "Wa?ter", with control characters in it [control-character]
latent.prd:5: warning: "Name" is "Latent heat　": the outer blanks are part of it [outer-blanks]
mass.prd:5: warning: "Name" is "Molar?mass", with control characters in it [control-character]
Substance3/Phase1/Phase1.phd:3: warning: "Name" is "C?", with control characters in it [control-character]
Substance3/Phase1/Pro?perty2.prh: warning: the name of the entry holds control characters [control-character]
"""),
    "UTF-16": ({"density.prd": SMALL["density.prd"].encode("utf-16"),
        "default.lst": SMALL["default.lst"].encode("utf-16-le"),
        "Substance1/Property1.dat": "0.018\n".encode("utf-16-be"),
        "Substance3/Phase1/Phase1.phd": keys(Aggreg=1, ID=0, Name="C").replace(MARK, "").encode("utf-16-be")}, """\
default.lst: error: the file is UTF-16, of which nothing is read as it stands [utf-16]
density.prd: error: the file is UTF-16, of which nothing is read as it stands [utf-16]
Substance1/Property1.dat: error: the file is UTF-16, of which nothing is read as it stands [utf-16]
Substance1/Phase1/Property1.prh:2: error: no description has the ID 1: the parameter has no name and no units \
[no-description]
Substance1/Phase2/Property1.prh:2: error: no description has the ID 1: the parameter has no name and no units \
[no-description]
Substance3/Phase1/Phase1.phd: error: the file is UTF-16, of which nothing is read as it stands [utf-16]
"""),
    "line ends of CR alone": ({"mass.prd": SMALL["mass.prd"].replace("\n", "\r"),
        "Substance1/Phase2/Property1.dat": "# T rho\r250 919.87\r273.15 916.721\r",
        "Substance1/Phase2/Property2.dat": "# T a b c" + "\r250 1 2 3" * 200,
        "Substance3/Phase1/Phase1.phd": MARK + "Aggreg=1\r\nID=0\rName=C\r\r\nName=C\n",
        "Substance3/Phase1/Property1.dat": "6 6 -6.5\r"}, """\
mass.prd: error: the lines end with CR alone, so that all of them count as one [cr-only]
Substance1/Property1.prh:2: error: no description has the ID 2: the parameter has no name and no units [no-description]
Substance1/Phase2/Property1.dat: error: the lines end with CR alone, so that all of them count as one [cr-only]
Substance1/Phase2/Property2.dat: error: the lines end with CR alone, so that all of them count as one [cr-only]
Substance3/Phase1/Phase1.phd:2: error: a CR that no LF follows ends no line: what stands behind it belongs to this \
one [lone-cr]
Substance3/Phase1/Phase1.phd:2: error: "ID" is "0?Name=C?", which is no whole number; it is read as 0 [bad-number]
Substance3/Phase1/Phase1.phd:3: warning: the line ends with LF alone, unlike the lines before [mixed-line-ends]
Substance3/Phase1/Property1.dat:1: warning: no line end follows: the file may have been cut [no-line-end]
"""),
    "a line over the limit": ({
        "Substance2/Substance2.mtd": keys(Composition=";".join(f"{i % 3}:0.01" for i in range(200)), ID=1, Mixture=1,
                                          Name="Brine"),
        "Substance1/Phase2/Property1.dat": "1 2\n3 4" + " " * 1020 + "\n1 1\n",
        "strings.lst": MARK + "10=" + "x" * 1100 + "\n11=b\n", "default.lst": MARK + "10=Water\n99=unused\n"}, """\
strings.lst:1: error: the line is longer than 1022 bytes; nothing behind them is read [long-line]
strings.lst:1: warning: the text has 1016 characters and is handed out cut to 49 [long-text]
Substance1/Phase2/Property1.dat:2: error: the line is longer than 1022 bytes; nothing behind them is read [long-line]
Substance2/Substance2.mtd:1: error: the line is longer than 1022 bytes; nothing behind them is read [long-line]
Substance2/Substance2.mtd: error: the key "ID" is missing: the database cannot be opened [missing-key]
Substance2/Substance2.mtd: error: the key "Name" is missing: the database cannot be opened [missing-key]
Substance2/Substance2.mtd: error: the key "Mixture" is missing: the database cannot be opened [missing-key]
"""),
    "a mixture of one component": ({
        "Substance2/Substance2.mtd": keys(Composition="0:1.0", ID=1, Mixture=1, Name="Brine")}, """\
Substance2/Substance2.mtd:1: warning: a mixture of one component is a pure substance, and no mixture that can be \
added [single-component]
"""),
    "fractions as they are rounded": ({"Substance2/Substance2.mtd": keys(
        Composition=";".join(f"{i}:0.166667" for i in (0, 2, 3, 4, 5, 6)), ID=1, Mixture=1, Name="Brine"),
        **{f"X{i}/a.mtd": keys(Composition="", ID=i, Mixture=0, Name=f"X{i}") for i in range(3, 7)},
        **{f"X{i}/P/a.phd": keys(ID=0, Name="P", Aggreg=1) for i in range(3, 7)}}, """\
"""),
    "texts that nothing refers to": ({"default.lst": MARK + "9=Ice\n10=Water\n", "Substance3/Substance3.mtd": keys(
        Composition="", ID=2, Mixture=0, Name="Salt", NameID="09")}, """\
Substance3/Substance3.mtd:5: warning: "NameID" is "09", under which no string table is searched with success \
[bad-string-id]
default.lst:1: warning: nothing refers to the text "9" [unused-text]
"""),
    "texts while a descriptor is unread": ({"default.lst": MARK + "9=Ice\n10=Water\n", "Substance1/Phase2/Phase2.phd": None,
        "Substance1/Phase2/Phase2.PHD": keys(Aggreg=1, ID=1, Name="Ice", NameID=9)}, """\
Substance1/Phase2/Phase2.PHD: warning: no scan finds the file because of its extension [wrong-extension]
Substance1/Phase2: warning: the directory holds no file with the extension "phd" or "pcd": nothing in it is read \
[no-descriptor]
Substance1/PC1/PC1.pcd:3: error: the substance has no phase 1 [unknown-phase]
"""),
    "what follows from another file": ({"Substance1/Phase2/Phase2.phd": keys(Aggreg=1, ID="x", Name="Ice"),
        "Substance3/Substance3.mtd": keys(Composition="", ID="O2", Mixture=0, Name="Salt"),
        "latent.prd": description("4.", "Latent heat", "J/kg", "C", "").replace("ID=", "Id="),
        "Substance4/Substance4.mtd": keys(Composition="", ID=4, Mixture=0, Name="Bare")}, """\
latent.prd:4: warning: nobody reads the key "Id" [unknown-key]
latent.prd: error: the key "ID" is missing: the database cannot be opened [missing-key]
Substance1/PC1/Property1.prh:2: error: no description has the ID 4: the parameter has no name and no units \
[no-description]
Substance1/Phase2/Phase2.phd:2: error: "ID" is "x", which is no whole number; it is read as 0 [bad-number]
Substance1/Phase2/Phase2.phd:2: error: Substance1/Phase1/Phase1.phd has this ID too: only one phase of both is seen \
[duplicate-id]
Substance1/PC1/PC1.pcd:3: error: the substance has no phase 1 [unknown-phase]
Substance3/Substance3.mtd:2: error: "ID" is "O2", which is no whole number; it is read as 0 [bad-number]
Substance3/Substance3.mtd:2: error: Substance1/Substance1.mtd has this ID too: only one substance of both is seen \
[duplicate-id]
Substance4/Substance4.mtd: error: the substance has no phase: opening the database skips it [no-phase]
Substance2/Substance2.mtd:2: error: no substance has the ID 2 [unknown-component]
"""),
}


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
Substance3/Phase1/Phase1.phd:3: warning: nobody reads the key "Name "; remove the blanks beside "=": they belong to \
key and value [unknown-key]
Substance3/Phase1/Phase1.phd: error: the key "Name" is missing: the database cannot be opened; add a line "Name=..." \
[missing-key]
Substance3/Phase1/Property1.dat:1: error: "6 6 6 # old" is not 3 numbers with blanks between; write 3 numbers; a \
comment is a line of its own that begins with "#" [bad-row]
2 errors, 1 warning in 26 files
""", 1)

    def report(self, findings):
        """The whole report for findings without advice."""
        lines = findings.splitlines()
        errors = sum(": error: " in line for line in lines)
        warnings = len(lines) - errors
        unread = {path.parent for path in Path(self.database).rglob("*.PHD")}
        files = sum(path.is_file() and path.parent not in unread for path in Path(self.database).rglob("*"))
        report = ""
        for line in lines:
            what, word = re.fullmatch(r"(.*) \[(.*)\]", line).groups()
            advice = ADVICE[word].format(*re.findall('"(.*?)"', what))
            report += f"{what}; {advice} [{word}]\n"
        count = f"{errors} error{'s' * (errors != 1)}, {warnings} warning{'s' * (warnings != 1)} in {files} files\n"
        return report + count

    def test_reports_faults_whole_and_causes_first(self):
        for name, (files, findings) in FAULTS.items():
            shutil.rmtree(self.database)
            tree = {**SMALL, **files}
            write(self.database, {path: content for path, content in tree.items() if content is not None})
            with self.subTest(name):
                status, output, errors = self.run_command("check", self.database)
                self.assertEqual((int(bool(findings)), ""), (status, errors))
                self.assertEqual(self.report(findings), output)

    def test_many_substances_are_reported_in_their_order(self):
        for i in range(4, 44):
            write(self.database, {
                f"Substance{i}/Substance{i}.mtd": keys(Comment="", Composition="", ID=i, Mixture=0, Name=f"S{i}"),
                f"Substance{i}/Phase1/Phase1.phd": keys(Aggreg=5, ID=0, Name="Solid"),
                f"Substance{i}/Phase1/Property1.prh": head(1, 1),
                f"Substance{i}/Phase1/Property1.dat": "1\nx\n"})
        status, output, errors = self.run_command("check", self.database)
        found = [re.sub(r":.*\[(.*)]", r" \1", line) for line in output.splitlines()]
        self.assertEqual((1, "", [f"Substance{i}/Phase1/{fault}" for i in sorted(range(4, 44), key=str) for fault in
                                  ("Phase1.phd bad-state", "Property1.dat ignored-line", "Property1.dat bad-number")]
                          + ["40 errors, 80 warnings in 186 files"]), (status, errors, found))

    def test_meets_what_is_no_file_and_where_links_lead(self):
        root = Path(self.database)
        (root / "Substance1/Phase1/Property1.dat").unlink()
        os.mkfifo(root / "Substance1/Phase1/Property1.dat")
        os.mkfifo(root / "pipe.prd")
        (root / "Substance1/Property1.dat").unlink()
        (root / "Substance1/Property1.dat").mkdir()
        (root / "Substance2/Phase1/Property1.prh").symlink_to("nowhere")
        (root / "Substance3/Phase1/up").symlink_to("../../Substance3")
        (root / "Substance3/up").symlink_to("..")
        (root / "all").symlink_to(".")
        (root / "Substance3/Phase1/deep").mkdir()
        (root / "Substance3/Phase1/deep/deeper").symlink_to("..")
        self.expect(["check", self.database], """\
all: warning: the link leads back to a directory that it lies in; remove it [link-loop]
pipe.prd: error: it is no file to read from; replace it by a plain file [cannot-read]
Substance1/Property1.dat: warning: the directory is empty, as an addition that was refused leaves it; remove it \
[empty-directory]
Substance1/Property1.dat: error: it is no file to read from; replace it by a plain file [cannot-read]
Substance1/Phase1/Property1.dat: error: it is no file to read from; replace it by a plain file [cannot-read]
Substance2/Phase1/Property1.prh: error: the file cannot be opened; give the right to read it, or remove a link that \
leads nowhere [cannot-open]
Substance3/up: warning: the link leads back to a directory that it lies in; remove it [link-loop]
Substance3/Phase1/up: warning: the link leads back to a directory that it lies in; remove it [link-loop]
Substance3/Phase1/deep/deeper: warning: the link leads back to a directory that it lies in; remove it [link-loop]
4 errors, 5 warnings in 28 files
""", 1)


if __name__ == "__main__":
    unittest.main()
