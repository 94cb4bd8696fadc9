"""The examples of the command's document, run as they are printed."""

import os
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENT = Path(sys.argv.pop(2)) if len(sys.argv) > 2 else ROOT / "docs/qmdb.md"

from support import COMMAND, CommandTest  # noqa: E402  takes the first argument


def examples():
    """Each command line with what it prints; "..." stands for the lines that are left out."""
    for block in re.findall(r"^```\n(.*?)^```$", DOCUMENT.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL):
        for example in re.split(r"^\$ ", block, flags=re.MULTILINE)[1:]:
            line, _, output = example.partition("\n")
            yield line, output


class Document(CommandTest):
    def break_something(self, file, old, new):
        path = Path(self.scratch, "broken", file)
        text = path.read_text(encoding="utf-8-sig")
        self.assertIn(old, text)
        path.write_text(text.replace(old, new, 1), encoding="utf-8-sig" if path.suffix != ".dat" else "utf-8")

    def setUp(self):
        super().setUp()
        for name in ("materials", "broken"):
            shutil.copytree(ROOT / "examples/materials", Path(self.scratch, name))
        shutil.rmtree(self.database)
        Path(self.scratch, "bin").mkdir()
        Path(self.scratch, "bin/qmdb").symlink_to(COMMAND)
        broken = Path(self.scratch, "broken")
        self.break_something("Substance1/Phase2/Property5.dat", "273.16 0.07565", "273.16 x")
        self.break_something("Substance2/PC1/PC1.pcd", "Phase2=2", "Phase2=9")
        self.break_something("Substance7/Substance7.mtd", "Composition=\n", "")
        os.rename(broken / "Substance4/Phase1/Property1.prh", broken / "Substance4/Phase1/Property1.prh.old")
        with open(broken / "density.prd", "a", encoding="utf-8") as file:
            file.write("comment\n")

    def test_every_example_prints_what_stands_there(self):
        for line, output in examples():
            if (" plot " in line and not shutil.which("gnuplot")) or not shutil.which(line.split()[0], path=self.path()):
                continue
            done = subprocess.run(["sh", "-c", line], cwd=self.scratch, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  encoding="utf-8", check=False,
                                  env={"PATH": self.path(), "TMPDIR": str(self.temporary), "LC_ALL": "C.UTF-8"})
            printed = re.sub(" +$", "", done.stdout, flags=re.MULTILINE)
            begin, left_out, _ = output.partition("...\n")
            with self.subTest(line):
                self.assertEqual(begin, printed[: len(begin)] if left_out else printed)

    def path(self):
        return f"{self.scratch}/bin:{os.environ['PATH']}"


if __name__ == "__main__":
    unittest.main()
