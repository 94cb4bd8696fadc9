"""A small database, and the command run on it as users run it."""

import contextlib
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

COMMAND = os.path.abspath(sys.argv.pop(1)) if len(sys.argv) > 1 else "qmdb"
NOBODY = 65534
MARK = "\ufeff"


def keys(**values):
    """The text of a descriptor."""
    return MARK + "".join(f"{key}={value}\n" for key, value in values.items())


def head(parameter, kind, vector=0, data="Property1.dat"):
    return keys(Data=data, ID=parameter, Type=kind, Vector=vector)


def description(number, name, units, types, states, scalar=1, vector=0):
    arguments = "Pa;K" if set(types) & set("pTX") else "K" if "t" in types else None
    return keys(AvForPhases=states, Binary=0, DataTypes=types, ID=number, Name=name, Scalar=scalar, Units=units,
                Vector=vector, **({"ArgumentUnits": arguments} if arguments else {}))


SMALL = {
    "density.prd": description(1, "Density", "kg/m³", "CtpT", "SLV"),
    "mass.prd": description(2, "Molar mass", "kg/mol", "C", ""),
    "conductivity.prd": description(3, "Conductivity", "W/(m K)", "Ct", "S", vector=1),
    "latent.prd": description(4, "Latent heat", "J/kg", "C", ""),
    "default.lst": MARK + "10=Water\n",
    "strings.lst": MARK + "10=Вода\n",
    "Substance1/Substance1.mtd": keys(Comment="H₂O", Composition="", ID=0, Mixture=0, Name="W", NameID=10),
    "Substance1/Property1.prh": head(2, 1),
    "Substance1/Property1.dat": "# kg/mol\n0.018015268\n",
    "Substance1/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Liquid"),
    "Substance1/Phase1/Property1.prh": head(1, 4),
    "Substance1/Phase1/Property1.dat": "P=100000\n280 999.91\n300 996.56\nP=1e6\n280 1000.35\n",
    "Substance1/Phase2/Phase2.phd": keys(Aggreg=1, ID=1, Name="Ice"),
    "Substance1/Phase2/Property1.prh": head(1, 2),
    "Substance1/Phase2/Property1.dat": "250 919.87\n273.15 916.721\n",
    "Substance1/Phase2/Property2.prh": head(3, 2, 1, "Property2.dat"),
    "Substance1/Phase2/Property2.dat": "250 2.3 2.3 2.4\n270 2.2 2.2 2.3\n",
    "Substance1/PC1/PC1.pcd": keys(ID=0, Name="Melting", Phase1=1, Phase2=0),
    "Substance1/PC1/Property1.prh": head(4, 1),
    "Substance1/PC1/Property1.dat": "333430\n",
    "Substance2/Substance2.mtd": keys(Comment="", Composition="0:0.75;2:0.25", ID=1, Mixture=1, Name="Brine"),
    "Substance2/Phase1/Phase1.phd": keys(Aggreg=2, ID=0, Name="Liquid"),
    "Substance3/Substance3.mtd": keys(Comment="", Composition="", ID=2, Mixture=0, Name="Salt"),
    "Substance3/Phase1/Phase1.phd": keys(Aggreg=1, ID=0, Name="Crystal, \"cubic\""),
    "Substance3/Phase1/Property1.prh": head(3, 1, 1),
    "Substance3/Phase1/Property1.dat": "6 6 -6.5\n",
}

# Laid over the small tree: what the library does not hand out.
ANNOTATED = {
    "density.prd": SMALL["density.prd"] + "Symbol=rho\n",
    "Substance1/Substance1.mtd": SMALL["Substance1/Substance1.mtd"]
    + "Formula=H2O\nAliases=water;R718\nCAS=7732-18-5\n",
    "Substance1/Phase2/Property1.prh": head(1, 2) + 'Source=CRC, "Ice"\nAccuracy=0.1 %\n',
}


def prefixed(message):
    """A message as it stands on standard error."""
    return "".join(f"qmdb: {line}\n" for line in message.split("\n"))


def write(directory, tree):
    for name, content in tree.items():
        path = Path(directory, name)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())


def snapshot(directory):
    """Everything in a tree, with the times at which it was last changed."""
    return {str(path): (path.stat().st_mtime_ns, path.read_bytes() if path.is_file() else None)
            for path in Path(directory).rglob("*")}


class CommandTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        scratch = contextlib.ExitStack()
        self.addCleanup(scratch.close)
        self.scratch = scratch.enter_context(tempfile.TemporaryDirectory())
        self.temporary = Path(self.scratch, "temporary")
        self.temporary.mkdir()
        self.database = os.path.join(self.scratch, "db")
        write(self.database, SMALL)

    def run_command(self, *arguments, stdin="", process=None, **environment):
        """`process` are further options of the process, `environment` what it finds there."""
        settings = {"PATH": os.environ["PATH"], "TMPDIR": str(self.temporary), **environment}
        done = subprocess.run([COMMAND, *map(str, arguments)], input=stdin, capture_output=True, encoding="utf-8",
                              env=settings, cwd=self.scratch, timeout=120, **(process or {}))
        return done.returncode, done.stdout, done.stderr

    def expect(self, arguments, output, status=0, errors="", stdin="", **options):
        self.assertEqual((status, output, errors), self.run_command(*arguments, stdin=stdin, **options), arguments)

    def without_privileges(self):
        """Options for a process that permissions bind, as they do not bind the superuser."""
        if os.geteuid() != 0:
            return {}
        os.chmod(self.scratch, 0o755)
        os.chmod(self.temporary, 0o777)
        options = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
        try:
            self.run_command("--version", process=options)
        except PermissionError:
            self.skipTest("the command lies where only the superuser may run it")
        return options

    def output(self, *arguments, **environment):
        status, output, errors = self.run_command(*arguments, **environment)
        self.assertEqual((0, ""), (status, errors), arguments)
        return output
