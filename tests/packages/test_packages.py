#!/usr/bin/env python3
"""Installs the Debian packages in a fresh root, uses them there as their users do, and looks for what they leave
behind when they are removed.

Usage: test_packages.py PACKAGES
The root holds copies of this machine's packages: those that every system has, those of the tools below, and what
they depend on, as dpkg knows them. It takes root, 1 GB and nothing from the network.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
TOOLS = ["g++", "gcc", "cmake", "make", "pkg-config", "man-db", "bash-completion"]
ANSWER = "12 substances, water is critical at 647.096 K\n"
# What dpkg, ldconfig and man keep for themselves.
KEPT_BY_THE_SYSTEM = ("var/lib/dpkg/", "var/log/", "var/cache/", "etc/ld.so.cache")
COPIED = ["etc/alternatives", "etc/passwd", "etc/group", "var/lib/dpkg/alternatives", "var/lib/dpkg/diversions",
          "var/lib/dpkg/info/format"]
COMPLETION = """
. /usr/share/bash-completion/bash_completion
_completion_loader qmdb
COMP_WORDS=(qmdb ex) COMP_CWORD=1 COMP_LINE="qmdb ex" COMP_POINT=7
_qmdb qmdb
echo "${COMPREPLY[@]}"
"""
# This machine's choices may be of packages that the root does without.
CHOICES = """
for name in $(ls /var/lib/dpkg/alternatives); do
    test -e "/etc/alternatives/$name" || update-alternatives --quiet --auto "$name" || true
done
"""
MODULE = """
import qmdatabase
with qmdatabase.open("/test/materials") as db:
    print(len(list(db.substances)), "substances")
"""


def output(*command, **options):
    done = subprocess.run(list(map(str, command)), capture_output=True, encoding="utf-8", check=False, **options)
    if done.returncode != 0:
        sys.exit(f"test_packages: failed: {' '.join(map(str, command))}\n{done.stdout}{done.stderr}")
    return done.stdout


def expect(said, expected):
    if said != expected:
        sys.exit(f"test_packages: expected {expected!r} instead of {said!r}")


def names(dependencies):
    """Groups of alternatives: "a | b (>= 1), c:any" gives [[a, b], [c]]."""
    groups = [[re.split(r"[\s:(]", one.strip())[0] for one in group.split("|")] for group in dependencies.split(",")]
    return [group for group in groups if group != [""]]


class Installed:
    """The packages of this machine."""

    def __init__(self):
        form = "${binary:Package}\t${Package}\t${Essential}\t${Provides}\t${Pre-Depends},${Depends}\t${db:Status-Status}\n"
        self.depends, self.providers, self.essential = {}, {}, []
        for line in output("dpkg-query", "--show", f"--showformat={form}").splitlines():
            package, name, essential, provides, depends, status = line.split("\t")
            if status not in ["installed", "triggers-pending", "triggers-awaited"]:
                continue
            self.depends[package] = names(depends)
            if essential == "yes":
                self.essential.append(name)
            for [provided] in [[name], *names(provides)]:
                self.providers.setdefault(provided, []).append(package)

    def closure(self, wanted):
        found, left = set(), [*self.essential, *wanted]
        while left:
            name = left.pop()
            if name not in self.providers:
                sys.exit(f"test_packages: {name} is needed: apt-get install {name}")
            package = self.providers[name][0]
            if package not in found:
                found.add(package)
                left += [next((one for one in group if one in self.providers), group[0])
                         for group in self.depends[package]]
        return sorted(found)


def files_of(packages):
    files = {line for line in output("dpkg-query", "--listfiles", *packages).splitlines() if line.startswith("/")}
    files -= {"/."}
    # Links set up by scripts of theirs, for one of several.
    for choice in Path("/var/lib/dpkg/alternatives").iterdir():
        files |= {line for line in choice.read_text().splitlines() if os.path.islink(line)}
    return sorted(path for path in files if os.path.lexists(path) and not path.startswith("/usr/share/doc/"))


def copy(paths, root):
    """Copies files and directories, the directories without what is in them."""
    listed = "".join(f"{path.lstrip('/')}\0" for path in paths)
    with subprocess.Popen(["tar", "-C", "/", "--no-recursion", "--null", "-T", "-", "-c"], stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE) as reader, \
            subprocess.Popen(["tar", "-C", root, "--keep-directory-symlink", "-x"], stdin=reader.stdout) as writer:
        reader.stdin.write(listed.encode())
        reader.stdin.close()
    if reader.returncode != 0 or writer.returncode != 0:
        sys.exit("test_packages: the packages of this machine could not be copied")


def make_root(root, packages):
    for directory in ["bin", "sbin", "lib", "lib64"]:
        if os.path.islink(f"/{directory}"):
            (root / "usr" / directory).mkdir(parents=True, exist_ok=True)
            (root / directory).symlink_to(f"usr/{directory}")
    copy(files_of(packages), root)
    info = root / "var/lib/dpkg/info"
    info.mkdir(parents=True, exist_ok=True)
    for name in COPIED:
        if os.path.isdir(f"/{name}"):
            shutil.copytree(f"/{name}", root / name, symlinks=True, dirs_exist_ok=True)
        elif os.path.exists(f"/{name}"):
            shutil.copy(f"/{name}", root / name)
    for package in packages:
        for path in Path("/var/lib/dpkg/info").glob(f"{package}.*"):
            shutil.copy(path, info)
    (root / "var/lib/dpkg/status").write_text(output("dpkg-query", "--status", *packages))
    for directory in ["dev", "tmp", "test", "var/lib/dpkg/updates", "var/lib/dpkg/triggers", "var/log"]:
        (root / directory).mkdir(parents=True, exist_ok=True)
    os.mknod(root / "dev/null", 0o666 | 0o020000, os.makedev(1, 3))
    os.mknod(root / "dev/urandom", 0o666 | 0o020000, os.makedev(1, 9))


class Root:
    def __init__(self, path, debs):
        self.path, self.debs = path, debs

    def run(self, *command):
        return output("chroot", self.path, *command, stdin=subprocess.DEVNULL, cwd="/",
                      env={"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "HOME": "/test",
                           "PYTHONDONTWRITEBYTECODE": "1", "DEBIAN_FRONTEND": "noninteractive", "MANPAGER": "cat"})

    def snapshot(self):
        found = {str(path.relative_to(self.path)) for path in self.path.rglob("*")}
        return {name for name in found if not name.startswith(KEPT_BY_THE_SYSTEM)}

    def install(self):
        for deb in self.debs:
            shutil.copy(deb, self.path / "test")
        self.run("dpkg", "--install", *(f"/test/{deb.name}" for deb in self.debs))

    def remove(self):
        self.run("dpkg", "--purge", *(deb.name.split("_")[0] for deb in self.debs))

    def build_hosts(self):
        """In C and C++, in every way that a user may."""
        shutil.copytree(SOURCE / "tests/install/host", self.path / "test/host")
        shutil.copytree(SOURCE / "examples/materials", self.path / "test/materials")
        package = self.run("pkg-config", "--cflags", "--libs", "qmDatabase").split()
        for compiler in [["gcc", "-std=c11"], ["g++", "-x", "c++", "-std=c++11"]]:
            for way in [package, ["-lqmDatabase"]]:
                self.run(*compiler, "/test/host/host.c", *way, "-o", "/test/a.out")
                expect(self.run("/test/a.out", "/test/materials"), ANSWER)
        self.run("cmake", "-S", "/test/host", "-B", "/test/build")
        self.run("cmake", "--build", "/test/build")
        for host in ["host_c", "host_cpp"]:
            expect(self.run(f"/test/build/{host}", "/test/materials"), ANSWER)

    def use_command(self):
        version = re.search(r"VERSION ([\d.]+) ", (SOURCE / "CMakeLists.txt").read_text())[1]
        expect(self.run("qmdb", "--version"), f"qmdb {version}\n")
        [database] = (self.path / "usr/share/qmdatabase").iterdir()
        self.run("qmdb", "check", f"/usr/share/qmdatabase/{database.name}")
        expect(self.run("bash", "-c", COMPLETION), "export\n")
        if "qmdb check" not in self.run("man", "qmdb"):
            sys.exit("test_packages: the man page of qmdb does not tell of qmdb check")

    def use_module(self):
        if any(deb.name.startswith("python3-qmdatabase_") for deb in self.debs):
            expect(self.run("python3", "-c", MODULE), "12 substances\n")


def try_packages(scratch, debs):
    depends = sum((names(output("dpkg-deb", "--field", deb, "Depends")) for deb in debs), [])
    ours = {deb.name.split("_")[0] for deb in debs}
    packages = Installed().closure(TOOLS + [group[0] for group in depends if group[0] not in ours])
    root = Root(Path(scratch, "root"), debs)
    root.path.mkdir()
    make_root(root.path, packages)
    root.run("sh", "-c", CHOICES)
    root.run("ldconfig")
    before = root.snapshot()
    root.install()
    root.build_hosts()
    root.use_command()
    root.use_module()
    root.remove()
    shutil.rmtree(root.path / "test")
    left = sorted(name for name in root.snapshot() - before if not name.startswith("tmp/"))
    gone = sorted(name for name in before - root.snapshot() if not name.startswith("test"))
    if left or gone:
        sys.exit(f"test_packages: left behind: {left}\ntest_packages: taken along: {gone}")
    print(f"{len(debs)} packages installed, used and removed without a trace, beside {len(packages)} others")


def main():
    debs = sorted(Path(sys.argv[1]).glob("*.deb"))
    if not debs:
        sys.exit(f"test_packages: no packages in {sys.argv[1]}: scripts/package makes them")
    if os.geteuid() != 0 or not shutil.which("dpkg-query"):
        print("skipped: a root of its own takes root rights and dpkg")
        return
    with tempfile.TemporaryDirectory() as scratch:
        try_packages(scratch, debs)


main()
