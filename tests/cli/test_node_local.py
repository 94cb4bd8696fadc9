"""The recipe that carries a database to the memory of a node."""

import os
import subprocess
import time
import unittest
from pathlib import Path

from support import COMMAND, CommandTest

SCRIPT = Path(__file__).resolve().parents[2] / "scripts/node-local"


class NodeLocal(CommandTest):
    def start(self, *arguments):
        environment = {**os.environ, "QMDB_NODE_DIRECTORY": str(self.temporary)}
        return subprocess.Popen([SCRIPT, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                env=environment, cwd=self.scratch)

    def script(self, *arguments):
        process = self.start(*arguments)
        output, errors = process.communicate(timeout=120)
        return process.returncode, output, errors

    def test_unpacks_once_for_all_processes(self):
        self.assertEqual((0, "", ""), self.script("pack", "db", "db.tar"))
        wanted = (0, self.output("list", "db"), "")
        many = [self.start("run", "db.tar", COMMAND, "list", "{}") for _ in range(64)]
        for process in many:
            output, errors = process.communicate(timeout=120)
            self.assertEqual(wanted, (process.returncode, output, errors))
        trees = [path for path in self.temporary.glob("*/*") if path.is_dir()]
        self.assertEqual(1, len(trees))
        subprocess.run(["diff", "-r", self.database, trees[0]], check=True)
        self.assertEqual((0, f"{trees[0]}\n", ""), self.script("run", "db.tar", "sh", "-c", "echo $QMDB_DATABASE"))
        self.assertEqual((0, "", ""), self.script("remove", "db.tar"))
        self.assertEqual([], list(self.temporary.iterdir()))

    def test_takes_a_changed_archive_anew(self):
        self.script("pack", "db", "db.tar")
        self.script("run", "db.tar", "true")
        Path(self.database, "Substance3/Phase1/Property1.dat").write_text("7 7 7\n")
        time.sleep(1.1)  # times of files count in seconds
        self.script("pack", "db", "db.tar")
        self.assertIn("7", self.script("run", "db.tar", COMMAND, "get", "{}", "Salt", "3", "--phase", "0")[1])

    def test_refuses(self):
        self.assertEqual((2, "", 'node-local: there is no file "none.tar"\n'), self.script("run", "none.tar", "true"))
        self.assertEqual(2, self.script("run")[0])
        Path(self.scratch, "bad.tar").write_text("no archive")
        status, _, errors = self.script("run", "bad.tar", "true")
        self.assertEqual(2, status)
        self.assertIn("node-local: cannot unpack", errors)
        (self.temporary / f"qmdb-node-local-{os.getuid()}").rename(self.temporary / "other")
        (self.temporary / f"qmdb-node-local-{os.getuid()}").symlink_to(self.temporary / "other")
        self.assertIn("is no directory of yours", self.script("run", "bad.tar", "true")[2])


if __name__ == "__main__":
    unittest.main()
