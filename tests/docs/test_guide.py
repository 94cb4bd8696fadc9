"""Builds and runs the programs of docs/guide.md: in each language they print what the guide says."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
GUIDE = (ROOT / "docs/guide.md").read_text(encoding="utf-8")
FENCED = re.findall(r"^```(\w*)\n(.*?)^```$", GUIDE, re.DOTALL | re.MULTILINE)


def blocks(language):
    return [text for name, text in FENCED if name == language]


class Guide(unittest.TestCase):
    def setUp(self):
        self.build = pathlib.Path(os.environ["QMDB_BUILD"])
        self.place = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        shutil.copytree(ROOT / "examples/materials", self.place / "materials")
        subprocess.run([self.build / "qmdb", "new", "mine"], cwd=self.place, check=True, capture_output=True)
        self.program = self.place / "guide"

    def compile(self, compiler, suffix, *options):
        source = self.place / f"guide{suffix}"
        source.write_text("".join(blocks(suffix[1:])), encoding="utf-8")
        command = [*compiler.split(), *options, "-Wall", "-Wextra", "-Wpedantic", "-Werror",
                   "-I", ROOT / "include", source, "-o", self.program, self.build / "libqmDatabase.so.1",
                   f"-Wl,-rpath,{self.build}"]
        subprocess.run(command, check=True)

    def expect_output(self, *command, **variables):
        done = subprocess.run(command, cwd=self.place, env={**os.environ, **variables}, capture_output=True,
                              encoding="utf-8", check=False)
        self.assertEqual((done.stderr, done.stdout), ("", "".join(blocks(""))))

    def test_c(self):
        self.compile(os.environ.get("QMDB_CC", "gcc"), ".c", "-std=c11")
        self.expect_output(self.program)

    def test_cpp(self):
        self.compile(os.environ.get("QMDB_CXX", "g++"), ".cpp", "-std=c++20")
        self.expect_output(self.program)

    def test_python(self):
        interpreter = os.environ.get("QMDB_PYTHON")
        if not interpreter:
            self.skipTest("no Python with numpy")
        source = self.place / "guide.py"
        source.write_text("".join(blocks("python")), encoding="utf-8")
        self.expect_output(interpreter, source, PYTHONPATH=str(ROOT / "python/src"),
                           QMDB_LIBRARY=str(self.build / "libqmDatabase.so.1"), QMDB_COMMAND=str(self.build / "qmdb"))


if __name__ == "__main__":
    sys.exit(unittest.main())
