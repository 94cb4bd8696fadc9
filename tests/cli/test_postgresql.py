"""The export in a PostgreSQL server of its own, with the schema of the examples."""

import csv
import os
import pwd
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from support import COMMAND

ROOT = Path(__file__).resolve().parents[2]
SCHEMA = ROOT / "examples/postgresql/schema.sql"
PROGRAMS = sorted(Path("/usr/lib/postgresql").glob("*/bin"), key=lambda path: int(path.parent.name))


def server_user():
    """The server refuses to run as root."""
    if os.geteuid() != 0:
        return {}
    user = pwd.getpwnam("nobody")
    return {"user": user.pw_uid, "group": user.pw_gid, "extra_groups": []}


def plain(row):
    """Numbers as such, however they are written; the last columns are arguments, component and value."""
    *shared, first, second, component, value = row
    return [*shared, component, *(float(number or "-inf") for number in (first, second, value))]


@unittest.skipUnless(PROGRAMS and int(PROGRAMS[-1].parent.name) >= 15 and shutil.which("psql"),
                     "no PostgreSQL server of version 15 or later (Debian: postgresql)")
class PostgreSQL(unittest.TestCase):
    def run_server_program(self, program, *arguments):
        subprocess.run([PROGRAMS[-1] / program, *arguments], check=True, stdout=subprocess.DEVNULL, cwd=self.directory,
                       **server_user())

    def setUp(self):
        self.directory = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.directory)
        if os.geteuid() == 0:
            os.chown(self.directory, server_user()["user"], server_user()["group"])
        data = os.path.join(self.directory, "data")
        self.run_server_program("initdb", "-D", data, "-A", "trust", "-U", "tester", "-E", "UTF8", "--no-sync")
        self.run_server_program("pg_ctl", "-D", data, "-w", "-l", os.path.join(self.directory, "log"), "-o",
                                f"-c listen_addresses= -c fsync=off -k {self.directory}", "start")
        self.addCleanup(self.run_server_program, "pg_ctl", "-D", data, "-w", "-m", "immediate", "stop")
        self.environment = {**os.environ, "PGHOST": self.directory, "PGUSER": "tester", "PGDATABASE": "postgres",
                            "PATH": f"{Path(COMMAND).parent}:{os.environ['PATH']}"}

    def shell(self, line):
        return subprocess.run(["bash", "-o", "pipefail", "-c", line], capture_output=True, text=True,
                              env=self.environment, cwd=SCHEMA.parent)

    def query(self, text):
        done = subprocess.run(["psql", "-X", "--csv", "-t", "-c", text], capture_output=True, text=True, check=True,
                              env=self.environment)
        return list(csv.reader(done.stdout.splitlines()))

    def test_takes_the_export_as_its_head_tells(self):
        lines = re.findall(r"^--     (.*)$", SCHEMA.read_text(encoding="utf-8"), re.MULTILINE)
        self.assertEqual(2, len(lines))
        for line in lines:
            done = self.shell(line.replace("export materials", f"export {ROOT}/examples/materials"))
            self.assertEqual((0, ""), (done.returncode, done.stderr), line)
        exported = [row for row in csv.DictReader(self.shell(f"qmdb export {ROOT}/examples/materials").stdout.splitlines())
                    if row["value"]]
        self.assertEqual([[str(len(exported))]], self.query("SELECT count(*) FROM material_number"))
        stored = self.query("SELECT * FROM material_number")
        self.assertEqual(sorted(map(plain, map(dict.values, exported))), sorted(map(plain, stored)))
        again = self.shell(lines[1].replace("export materials", f"export {ROOT}/examples/materials"))
        self.assertIn("material_number_key", again.stderr)
        self.assertNotEqual(0, again.returncode)
        self.assertEqual([["Copper", "8960"]], self.query(
            "SELECT substance, value FROM material_number WHERE symbol = 'rho' AND type = 'C' AND substance_id = 2"))


if __name__ == "__main__":
    unittest.main()
