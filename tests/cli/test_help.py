"""What the command tells of itself: completion in shells, the manual page, advice; and how it ends early."""

import os
import pty
import re
import select
import shutil
import signal
import subprocess
import time
import unittest
from pathlib import Path

from support import COMMAND, SMALL, CommandTest, head, keys, prefixed, write

ROOT = Path(__file__).resolve().parents[2]
SCRIPTS = ROOT / "tools/qmdb/completion"
BREAKS = " \t\n\"'><=;|&(:"

NAMED = {
    "strings.lst": SMALL["strings.lst"] + "11=Лёд Ih\n",
    "Substance1/Phase2/Phase2.phd": keys(Aggreg=1, ID=1, Name="Ice", NameID=11),
    "S4/s.mtd": keys(Comment="", Composition="", ID=3, Mixture=0, Name="Alloy: \"a'b\" $x"),
    "S4/p/p.phd": keys(Aggreg=1, ID=0, Name="Solid one"),
    "S4/p/d.prh": head(1, 1, 0, "d.dat"), "S4/p/d.dat": "1\n",
}


class Completing(CommandTest):
    def setUp(self):
        super().setUp()
        write(self.database, NAMED)

    def candidates(self, *words):
        kind, *lines = self.output("complete", "--", *words, HOME=self.scratch).splitlines() or [None]
        return kind, [line.split("\t")[0] for line in lines]

    def test_offers_what_may_stand_there(self):
        odd = "Alloy: \"a'b\" $x"
        salt = 'Crystal, "cubic"'
        for words, kind, expected in [
            ("li", "words", ["list"]), ("add p", "words", ["phase", "parameter"]), ("get ", "directories", []),
            ("list db --b", "words", ["--brief"]), ("list db --brief --so", "words", []),
            ("get db --lang ", "words", ["en", "ru"]), ("get db Water:Ice --json --c", "words", ["--change"]),
            ("export db --sqlite ", "files", []), ("export db --sqlite=x", "files", []), ("list db --log ", "directories", []),
            ("get db ", "words", ["Water", "Brine", "Salt", odd]), ("get db wa", "words", ["Water"]),
            ("get db Water:", "words", ["Water:Liquid", "Water:Ice", "Water:Melting"]),
            ("get db W:", None, []), ("get db Water", "words", ["Water", "Water:Liquid", "Water:Ice", "Water:Melting"]),
            (["get", "db", odd + ":"], "words", [odd + ":Solid one"]), (["get", "db", "Alloy: "], "words", [odd]),
            ("get db --lang ru В", "words", ["Вода"]), ("get db --lang ru Вода --phase ", "words", ["Liquid", "Лёд Ih"]),
            ("get db Water --phase=I", "words", ["--phase=Ice"]), ("get db Salt --phase ", "words", [salt]),
            ("get db 0 ", "words", ["Molar mass", "Density", "Conductivity", "Latent heat"]),
            ("get db Water --phase Ice ", "words", ["Density", "Conductivity"]),
            ("get db Water:Melting ", "words", ["Latent heat"]), ("get db Water --change ", "words", ["Melting"]),
            ("plot db Water:Ice Salt C", "words", ["Conductivity"]), ("plot db S", "words", ["Salt"]),
            ("find db De", "words", ["Density"]), ("find db x --state ", "words", ["solid", "liquid", "gas"]),
            ("find ~/db Sal", "words", ["Salt"]), ("find db x --between 1 2 --n", "words", []),
            ("add substance db X --component Sa", "begins", ["Salt:"]), ("add substance db X --comment ", "words", []),
            ("add parameter db Water --phase Liquid ", "words", ["Density"]),
            ("add change db Water M --from I", "words", ["Ice"]), ("add parameter db Water --value -1 -", "words", None),
            ("add parameter db W D --h", "words", ["--help"]), ("list nowhere W", None, []), ("get db Nothing ", None, []), ("list db -- --", "words", []),
        ]:
            with self.subTest(words):
                given, found = self.candidates(*(words.split(" ") if isinstance(words, str) else words))
                self.assertEqual((kind if kind or given is None else "words", expected), (given, found if expected is not None else None))
        write(self.database, {"Substance3/Substance3.mtd": "ID=2\n"})
        self.assertEqual((None, []), self.candidates("get", "db", ""))
        self.assertEqual([], list(self.temporary.iterdir()))

    def test_quotes_as_bash_wants_it(self):
        for line, expected in [
            ("qmdb get db Alloy", r"Alloy:\ \"a\'b\"\ \$x"), ("qmdb get db Alloy:", r"\ \"a\'b\"\ \$x"),
            (r"qmdb get db Alloy:\ \"", r"\ \"a\'b\"\ \$x"), ('qmdb get db "Alloy', r"Alloy: \"a'b\" \$x"),
            ("qmdb get db 'Alloy: ", "Alloy: \"a'\\''b\" $x"), ("qmdb get db Water --phase=I", "Ice"),
            ("qmdb get db Water --phase='I", "Ice"), ("qmdb   get 'db'  W\"ater\":I", "Ice"),
            (r"qmdb get db Water Molar\ m", r"Molar\ mass"), ('qmdb get db Water "Molar m', "Molar mass"),
        ]:
            self.expect(["complete", "--line", line, "--breaks", BREAKS], f"words\n{expected}\n")

    def test_completes_in_shells(self):
        Path(self.scratch, "qmdb").symlink_to(COMMAND)
        lines = [("qmdb get db Water:Ic", "qmdb get db Water:Ice "), ("qmdb get d", "qmdb get db/"),
                 ('qmdb get db "Molar m', None), ("qmdb get db Water 'Mol", "qmdb get db Water 'Molar mass' "),
                 ("qmdb get db Water Mol", r"qmdb get db Water Molar\ mass "), ("qmdb get db --lang ru Во", "qmdb get db --lang ru Вода "),
                 ("qmdb add substance db X --component Sal", "qmdb add substance db X --component Salt:"), ("qmdb list /dev Wat", None)]
        for shell, start in [(["bash", "--norc", "--noprofile", "-i"], f"source {SCRIPTS}/qmdb"),
                             (["zsh", "-f", "-i"], f"fpath=({SCRIPTS} $fpath); autoload -Uz compinit; compinit -u -D; PS1='$ '")]:
            if shutil.which(shell[0]):
                with self.subTest(shell[0]):
                    self.complete_in(shell, start, lines)
        if shutil.which("fish"):
            for line, expected in [("qmdb get db Water:Ic", ["Water:Ice"]), ("qmdb get db 'Water' \"Mol", ["Molar mass"]),
                                   ("qmdb get db --lang ru Во", ["Вода"]), ("qmdb list /dev Wat", [])]:
                done = subprocess.run(["fish", "--no-config", "-c", f"source {SCRIPTS}/qmdb.fish; complete -C $argv[1]", line],
                                      env=self.environment(), cwd=self.scratch, capture_output=True, encoding="utf-8", check=True)
                self.assertEqual((expected, ""), ([each.split("\t")[0] for each in done.stdout.splitlines()], done.stderr))

    def environment(self):
        return {"PATH": f"{self.scratch}:{os.environ['PATH']}", "TERM": "dumb", "LC_ALL": "C.UTF-8", "PS1": "$ ",
                "HOME": self.scratch, "TMPDIR": str(self.temporary)}

    def complete_in(self, shell, start, lines):
        ours, theirs = pty.openpty()
        with subprocess.Popen(shell, stdin=theirs, stdout=theirs, stderr=theirs, cwd=self.scratch, env=self.environment(),
                              start_new_session=True) as process, os.fdopen(ours, "r+b", buffering=0) as terminal:
            os.close(theirs)
            terminal.write(f"{start}; echo re''ady\r".encode())
            self.read_until(terminal, "ready\r\n")
            for line, expected in lines:
                terminal.write(f"\x15{line}\t".encode())
                shown = expected or line + "\x07"  # the bell
                self.assertIn(shown, self.read_until(terminal, shown))
            process.kill()

    def read_until(self, terminal, end):
        shown, last = b"", time.monotonic() + 20
        while end.encode() not in shown and time.monotonic() < last:
            if select.select([terminal], [], [], 0.1)[0]:
                shown += terminal.read(4096)
        return shown.decode(errors="replace")


class Manual(CommandTest):
    def test_page_is_current_and_clean(self):
        page = self.output("manual")
        self.assertEqual((ROOT / "docs/qmdb.1").read_text(encoding="utf-8"), page,
                         "the manual page is out of date; renew it: qmdb manual > docs/qmdb.1")
        if shutil.which("man"):
            done = subprocess.run(["man", "--warnings", "-l", ROOT / "docs/qmdb.1"], capture_output=True, encoding="utf-8",
                                  env={"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "MANWIDTH": "100"}, check=True)
            self.assertEqual("", done.stderr)
            for text in ("--component SUBSTANCE:FRACTION", "--between NUMBER NUMBER", "EXIT STATUS"):
                self.assertIn(text, done.stdout)

    def test_every_example_works(self):
        shutil.copytree(ROOT / "examples/materials", Path(self.scratch, "materials"))
        Path(self.scratch, "qmdb").symlink_to(COMMAND)
        write(self.scratch, {"density.csv": "T,rho\n280,999.9\n300,996.6\n", "steam.csv": "100000,0.59\n200000,1.13\n"})
        commands = re.split(r"^\.SS ", self.output("manual"), flags=re.MULTILINE)[1:]
        lines = list(dict.fromkeys(line.replace(r"\-", "-").replace("\\e", "\\") for each in commands
                                   for line in re.findall("^qmdb .*$", each, flags=re.MULTILINE)))
        first = ["qmdb check", "qmdb export materials --all", "qmdb diff", "qmdb new", "qmdb add s", "qmdb add phase", "qmdb add"]
        lines.sort(key=lambda line: next((i for i, begin in enumerate(first) if line.startswith(begin)), len(first)))
        self.assertLess(15, len(lines))
        for line in lines:
            if " plot " not in line or shutil.which("gnuplot"):
                done = subprocess.run(["sh", "-c", line], cwd=self.scratch, capture_output=True, encoding="utf-8", check=False,
                                      env={"PATH": f"{self.scratch}:{os.environ['PATH']}", "TMPDIR": str(self.temporary)})
                self.assertEqual(0, done.returncode, line + "\n" + done.stderr)
                self.assertRegex(done.stderr, "^(qmdb: note: .*\n)*$", line)

    def test_tells_the_next_step(self):
        listing = 'write: qmdb list [OPTIONS] DIR [SUBSTANCE]; "qmdb list --help" tells more'
        getting = 'write: qmdb get [OPTIONS] DIR MATERIAL PARAMETER; "qmdb get --help" tells more'
        for line, status, message in [
            ("db", 2, 'there is no command "db"; there are: list, get, find, plot, check, export, page, import, diff, add, set, remove, new\n'
             '"qmdb list db" shows what is in that directory'),
            ("get Water Density", 2, f"PARAMETER is required\n{getting}"),
            ("get db Water Molar mass", 2, '"mass" is one word too many: names with blanks stand in quotes, and phases '
             f"behind --phase\n{getting}"),
            ("list db --substance=Water", 2, f'"qmdb list" has no option --substance=Water; there are: --help, --lang, --log, --json, '
             f'--sources, --brief, --comments, --no-values\n{listing}'),
            ("list --bref db", 2, f'"qmdb list" has no option --bref; near matches: --brief\n{listing}'),
            ("list bd", 2, '"bd" is not a directory; near matches: db'),
            ("list nothing/here", 2, '"nothing/here" is not a directory; the first argument is the directory of the database'),
            ("list db/default.lst", 2, f'"db/default.lst" is not a directory; it lies in the database "{self.database}": give that'),
            ("list db/Substance2/Phase1", 1, '"db/Substance2/Phase1" is no database: nothing in it belongs to one\n'
             '"qmdb new" makes a database'),
            ("new db", 2, '"db" is not empty; give a directory that is not there yet. "qmdb add" fills a database'),
        ]:
            self.expect(line.split(" "), "", status, prefixed(message))
        self.assertEqual(self.output("add", "phase", "--help"), self.output("help", "add", "phase"))


class EndingEarly(CommandTest):
    def setUp(self):
        super().setUp()
        table = "".join(f"{i} {i}\n" for i in range(3000))
        write(self.database, {f"S{i}/{name}": text for i in range(3, 400) for name, text in {
            "s.mtd": keys(Composition="", ID=i, Mixture=0, Name=f"Substance {i:030}"), "p/p.phd": keys(Aggreg=1, ID=0, Name="Solid"),
            "p/d.prh": head(1, 2, 0, "d.dat"), "p/d.dat": table if i < 6 else "1 2\n2 3\n"}.items()})

    def start(self, line, **options):
        return subprocess.Popen([COMMAND, *line.split(" ")], cwd=self.scratch, env={"TMPDIR": str(self.temporary), "PATH": os.environ["PATH"]},
                                stdout=subprocess.PIPE, bufsize=0, pipesize=4096, **options)

    def test_readers_may_leave(self):
        for line in ("list db", "list db --json", "find db Substance", "get db 3 Density --phase Solid",
                     "export db", "export db --jsonl", "check db", "complete -- list db S", "manual", "list --help", "help"):
            with self.start(line, stderr=subprocess.PIPE) as process:
                process.stdout.read(1)
                process.stdout.close()
                self.assertEqual(b"", process.stderr.read(), line)
                self.assertIn(process.wait(20), (0, 1) if line == "check db" else (0,), line)
        self.assertEqual([], list(self.temporary.iterdir()))

    def test_interrupts_leave_nothing(self):
        for line in ("list db", "export db", "find db Substance --json", "get db 3 Density --phase Solid --json"):
            with self.start(line, stderr=subprocess.PIPE) as process:
                process.stdout.read(1)  # behind what the pipe takes nobody reads
                process.send_signal(signal.SIGINT)
                process.stdout.close()
                self.assertEqual((-signal.SIGINT, b"", []), (process.wait(20), process.stderr.read(), list(self.temporary.iterdir())), line)

    def test_long_work_shows_how_far_it_is(self):
        ours, theirs = pty.openpty()
        with self.start("export db", stderr=theirs) as process, os.fdopen(ours, "rb", buffering=0) as terminal:
            os.close(theirs)
            process.stdout.read(1)
            time.sleep(1.2)  # the command waits for its reader meanwhile
            process.stdout.read()
            self.assertRegex(terminal.read(4096), rb"^\r\x1b\[K\d+ of 400 substances(\r\x1b\[K.*)?\r\x1b\[K$")
            self.assertEqual(0, process.wait(20))


if __name__ == "__main__":
    unittest.main()
