#!/usr/bin/env python3
"""Installs the library into a prefix of its own and uses it from there, and as a part of other projects.

Usage: test_install.py SOURCE BUILD CC CXX [LAUNCHER]
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE, BUILD, CC, CXX, *LAUNCHER = sys.argv[1:]
HOST = Path(__file__).parent / "host"
SAMPLE = f"{SOURCE}/examples/materials"
ANSWER = "12 substances, water is critical at 647.096 K\n"
LANGUAGES = {"c": [CC, "-x", "c", "-std=c11"], "c++": [CXX, "-x", "c++", "-std=c++11"]}
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]
PART = ["tests", "tools", "bench", "examples"]
LIBRARY_ONLY = [f"-DQMDB_BUILD_{part.upper()}=OFF" for part in PART]


def run(*command, **environment):
    """What a command prints; it knows nothing of this process but its search path."""
    done = subprocess.run(command, capture_output=True, encoding="utf-8", check=False,
                          env={"PATH": os.environ["PATH"], "HOME": "/nonexistent", **environment})
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}\n{done.stdout}{done.stderr}")
    return done.stdout


def refusal(*command):
    done = subprocess.run(command, capture_output=True, encoding="utf-8", check=False)
    return " ".join(done.stderr.split()) if done.returncode != 0 else "accepted"


def configure(source, build, *options):
    launcher = [f"-DCMAKE_CXX_COMPILER_LAUNCHER={LAUNCHER[0]}"] if LAUNCHER else []
    return ["cmake", "-S", source, "-B", build, f"-DCMAKE_C_COMPILER={CC}", f"-DCMAKE_CXX_COMPILER={CXX}", *launcher,
            *options]


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.scratch = Path(scratch.name)


class Installed(InstallTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        first = cls.scratch / "first"
        run("cmake", "--install", BUILD, "--prefix", first)
        cls.manifest = set(Path(BUILD, "install_manifest.txt").read_text().split("\n"))
        cls.files = {str(path) for path in first.rglob("*") if not path.is_dir()}
        cls.prefix = cls.scratch / "moved to a private prefix"
        first.rename(cls.prefix)
        [cls.pkgconfig] = cls.prefix.rglob("pkgconfig")
        cls.libraries = str(cls.pkgconfig.parent)

    def package(self, *options):
        text = run("pkg-config", *options, "qmDatabase", PKG_CONFIG_PATH=str(self.pkgconfig))
        return [word.replace("\\ ", " ") for word in re.split(r"(?<!\\) ", text.strip())]

    def check(self, host, **environment):
        self.assertEqual(ANSWER, run(host, SAMPLE, **environment))

    def test_nothing_outside_the_prefix(self):
        self.assertEqual(self.manifest, self.files)

    def test_command(self):
        command = self.prefix / "bin/qmdb"
        version = re.search(r"VERSION ([\d.]+) ", Path(SOURCE, "CMakeLists.txt").read_text())[1]
        self.assertEqual(f"qmdb {version}\n", run(command, "--version"))
        self.assertIn("Copper", run(command, "list", SAMPLE))
        self.assertEqual([version], self.package("--modversion"))
        self.assertTrue(Path(self.libraries, f"libqmDatabase.so.{version}").is_file())

    def test_compiled_by_hand(self):
        for language, compiler in LANGUAGES.items():
            ways = {"pkg-config": self.package("--cflags", "--libs"),
                    "plain": [f"-I{self.prefix}/include", f"-L{self.libraries}", "-lqmDatabase"]}
            for way, options in ways.items():
                with self.subTest(language=language, way=way):
                    host = self.scratch / "host"
                    run(*compiler, *WARNINGS, HOST / "host.c", *options, "-o", host)
                    self.check(host, LD_LIBRARY_PATH=self.libraries)

    def test_loaded(self):
        host = self.scratch / "loadingHost"
        run(CC, *WARNINGS[:2], f"-I{self.prefix}/include", HOST / "loadingHost.c", "-ldl", "-o", host)
        self.assertEqual("12 substances\n", run(host, SAMPLE, f"{self.libraries}/libqmDatabase.so.1"))

    def test_linked_before_symbols_had_versions(self):
        """Such a program finds them in the library of today."""
        stub = self.scratch / "stub.c"
        functions = set(re.findall(r"qmdb\w+", (HOST / "host.c").read_text()))
        stub.write_text("".join(f"int {name}(void) {{ return 0; }}\n" for name in functions))
        library, host = self.scratch / "libqmDatabase.so.1", self.scratch / "oldHost"
        run(CC, "-shared", "-fPIC", "-Wl,-soname,libqmDatabase.so.1", stub, "-o", library)
        run(CC, f"-I{self.prefix}/include", HOST / "host.c", library, "-o", host)
        self.check(host, LD_LIBRARY_PATH=self.libraries)

    def test_found_by_cmake(self):
        build = self.scratch / "found"
        run(*configure(HOST, build, f"-DCMAKE_PREFIX_PATH={self.prefix}"))
        run("cmake", "--build", build, "--parallel", "2")
        for host in ["host_c", "host_cpp"]:
            self.check(build / host)

    def test_short_characters_are_refused(self):
        for language, compiler in LANGUAGES.items():
            said = refusal(*compiler, f"-I{self.prefix}/include", "-fshort-wchar", "-fsyntax-only", HOST / "host.c")
            self.assertIn("compile without -fshort-wchar", said, language)


class AsASubproject(InstallTest):
    def test_added(self):
        build = self.scratch / "added"
        run(*configure(HOST, build, f"-DQMDB_SOURCE={SOURCE}"))
        run("cmake", "--build", build, "--parallel", "2")
        for host in ["host_c", "host_cpp"]:
            self.assertEqual(ANSWER, run(build / host, SAMPLE))
        # Installed with its parent, which has nothing of its own to install.
        run("cmake", "--install", build, "--prefix", self.scratch / "parent")
        installed = {path.name for path in (self.scratch / "parent").iterdir()}
        self.assertEqual({"include", "lib"}, installed)

    def test_fetched(self):
        run(*configure(HOST, self.scratch / "fetched", f"-DQMDB_SOURCE={SOURCE}", "-DFETCH=ON"))

    def test_static_is_refused(self):
        said = refusal(*configure(HOST, self.scratch / "static", f"-DQMDB_SOURCE={SOURCE}", "-DBUILD_SHARED_LIBS=OFF"))
        self.assertIn("qmDatabase is a shared library only", said)


class Directories(InstallTest):
    def test_package_file(self):
        """What it says, by the directories that the build was configured with."""
        table = [
            ("/usr", "lib/x86_64-linux-gnu", "include", "/usr/lib/x86_64-linux-gnu", "/usr/include"),
            ("/usr/local", "lib", "include", "/usr/local/lib", "/usr/local/include"),
            ("/opt/a", "/opt/a/lib64", "include/b", "/opt/a/lib64", "/opt/a/include/b"),
            ("/opt/a", "/srv/lib", "include", "/srv/lib", "/opt/a/include"),
            ("/opt/a", "lib", "/srv/include", "/opt/a/lib", "/srv/include"),
        ]
        build = self.scratch / "directories"
        for prefix, libdir, includedir, libraries, headers in table:
            with self.subTest(prefix=prefix, libdir=libdir, includedir=includedir):
                run(*configure(SOURCE, build, *LIBRARY_ONLY, f"-DCMAKE_INSTALL_PREFIX={prefix}",
                               f"-DCMAKE_INSTALL_LIBDIR:STRING={libdir}",
                               f"-DCMAKE_INSTALL_INCLUDEDIR:STRING={includedir}"))
                said = (build / "qmDatabase.pc").read_text().replace("${pcfiledir}", f"{libraries}/pkgconfig")
                paths = dict(line.split("=", 1) for line in said.splitlines() if "=" in line)
                self.assertEqual([prefix, libraries, headers],
                                 [os.path.normpath(paths[name]) for name in ["prefix", "libdir", "includedir"]])
                if libraries.startswith("/srv") or headers.startswith("/srv"):
                    self.assertIn("configure it anew", refusal("cmake", "--install", build, "--prefix", self.scratch))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
