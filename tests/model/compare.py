#!/usr/bin/env python3
"""Holds the library against an independent model of it, on random trees and random calls.

Every result, every record, every byte of the tree and of the log must be what the model predicts. A case
depends on the seed and its number alone; --case repeats one.
"""

import argparse
import locale
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import traceback

from additions import GrowingDatabase
from disk import Disk, snapshot
from fileformat import Failure, Fault
from generate import Generator
from image import CHANGE, PHASE
from native import UNTOUCHED_COUNT, Library

BATCH = 250
SECONDS_PER_BATCH = 300
ENTITY_LISTS = ("GetPhases", "GetPhaseChanges", "GetMatterParams")
PHASE_LISTS = ("GetPhaseParams", "GetAvailablePhaseParams")


class Difference(Exception):
    pass


class Case:
    """One tree, the databases opened in it and the calls made."""

    def __init__(self, library, base, random):
        self.library, self.base, self.random = library, base, random
        self.databases, self.calls = {}, []
        self.root = base.decode() + "/db"

    def run(self):
        self.make_tree()
        for _ in range(self.random.choice((1, 1, 2))):
            self.open()
            for database in list(self.databases):
                self.use(database)
            if self.random.chance(0.7):
                self.close()
        self.check_tree()

    def make_tree(self):
        os.mkdir(self.base + b"/logs")
        if self.random.chance(0.1):
            self.root += "ß"
        root = self.root.encode()
        kind = "tree" if self.random.chance(0.96) else self.random.choice(("missing", "file", "loop", "empty"))
        if kind == "tree":
            self.random.tree(root)
        elif kind == "file":
            self.random.put(self.base, os.path.basename(root), b"")
        elif kind == "loop":
            os.symlink(os.path.basename(root), root)
        elif kind == "empty":
            os.mkdir(root)
        self.disk = Disk(self.base)

    # Comparing

    def check(self, call, expected, actual):
        self.calls.append(f"{call} -> {str(actual)[:60]}")
        if expected != actual:
            raise Difference(f"expected {expected}\n  actual {actual}")

    def check_tree(self):
        expected, actual = self.disk.expected, snapshot(self.base)
        for path in sorted(expected.keys() | actual.keys()):
            if expected.get(path) != actual.get(path):
                raise Difference(f"{path}\n{first_change(expected.get(path), actual.get(path))}")

    def predict(self, database, action):
        """What the model's call returns, or the code it fails with."""
        try:
            return action()
        except Failure as failure:
            return failure.code
        except Fault as fault:
            database.error(str(fault))
            return -6

    # Calls

    def open(self):
        random = self.random
        self.check_tree()
        path = self.root + "/" * random.chance(0.05) if random.chance(0.98) else random.choice(("", "\ud800"))
        language = random.choice(("ru", "ru_RU", "rus", "en", "", "xru", "RU", None))
        logs = random.choice(("", None, "/logs", "/logs", "/nowhere"))
        logs = self.base.decode() + (logs or "/logs") if logs or not path.startswith("/") else logs
        informational = random.chance(0.6)
        database = GrowingDatabase(self.disk, path, language or "", logs or "", informational)
        code = self.predict(database, database.load) or 0
        actual = self.library.open(path, language, logs, informational)
        expected_id = -1 if code else Case.last_id + 1
        if actual[1] > 0:
            Case.last_id = actual[1]
            self.databases[actual[1]] = database
        self.check(f"open({path!r}, {language!r}, {logs!r}, {informational})", (code, expected_id), actual)

    last_id = 0

    def close(self):
        for number in list(self.databases):
            self.check(f"close({number})", 0, self.library.close(number))
            del self.databases[number]
            self.check(f"close({number})", -2, self.library.close(number))

    def use(self, number):
        self.sweep(number)
        additions = (self.add_matter, self.add_child, self.add_param, self.add_param)
        for _ in range(self.random.choice((0, 3, 10))):
            self.random.choice(additions)(number)
            if self.random.chance(0.3):
                self.null_arguments(number)
        self.sweep(number)

    def list(self, number, name, *ids):
        database = self.databases.get(number)
        actions = {
            "GetMatters": lambda: database.list_matters(),
            "GetPhases": lambda: database.list_children(PHASE, *ids),
            "GetPhaseChanges": lambda: database.list_children(CHANGE, *ids),
            "GetMatterParams": lambda: database.list_params(database.matter(*ids)),
            "GetPhaseParams": lambda: database.list_params(database.child(PHASE, *ids)),
            "GetPhaseChangeParams": lambda: database.list_params(database.child(CHANGE, *ids)),
            "GetAvailablePhaseParams": lambda: database.list_available(*ids),
        }
        expected = (-2, "untouched", UNTOUCHED_COUNT)
        if database:
            rows = self.predict(database, actions[name])
            count = len(database.matters) if name == "GetMatters" else 0
            expected = (rows, None, count) if isinstance(rows, int) else (0, rows or None, len(rows))
        self.check(f"{name}{(number, *ids)}", expected, self.library.list(name, number, *ids))

    def value(self, number, *ids):
        database = self.databases.get(number)
        expected = (-2, "untouched")
        if database and -1 in ids[1:3]:
            value = self.predict(database, lambda: database.value(*ids))
            expected = (value, None) if isinstance(value, int) else (0, value)
        self.check(f"value{(number, *ids)}", expected, self.library.value(number, *ids))

    def sweep(self, number):
        """Asks for everything there is, and for some of what is not."""
        database = self.databases[number]
        self.list(number, "GetMatters")
        for matter_id in [*database.matters, self.random.randint(-2, 9)]:
            for name in ENTITY_LISTS:
                self.list(number, name, matter_id)
            matter = database.matters.get(matter_id)
            phases, changes = matter.children.values() if matter else ({}, {})
            for phase_id in [*phases, self.random.randint(-2, 5)]:
                for name in PHASE_LISTS:
                    self.list(number, name, matter_id, phase_id)
                self.values(number, matter_id, phase_id, -1, phases.get(phase_id))
            for change_id in [*changes, self.random.randint(-2, 5)]:
                self.list(number, "GetPhaseChangeParams", matter_id, change_id)
                self.values(number, matter_id, -1, change_id, changes.get(change_id))
            self.values(number, matter_id, -1, -1, matter)
        if self.random.chance(0.2):
            self.list(0, "GetMatters")
            self.value(number, *(self.random.randint(-1, 4) for _ in range(4)))
            self.value(0, *(self.random.randint(-1, 4) for _ in range(4)))

    def values(self, number, matter_id, phase_id, change_id, owner):
        heads = owner.heads if owner else {}
        for param_id in [*heads, self.random.randint(0, 9)]:
            self.value(number, matter_id, phase_id, change_id, param_id)

    def known(self, nodes):
        """One of the IDs, now and then another one."""
        return self.random.choice([*nodes] * 5 + [self.random.randint(-2, 9)])

    def add_matter(self, number):
        random, database = self.random, self.databases[number]
        name, comment = random.units(), random.units()
        mixture = random.choice((0, 0, 1, 1, 2, -1))
        components, odd_count = random.components(), random.choice((0, 0, -3, 5))
        given = components if mixture or random.chance(0.5) else []
        expected = self.predict(database, lambda: database.add_matter(name, comment, mixture, given))
        actual = self.library.add_matter(number, name, comment, mixture, given, odd_count)
        self.check(f"add_matter{(number, name, comment, mixture, given)}", expected, actual)

    def add_child(self, number):
        random, database = self.random, self.databases[number]
        matter_id, name = self.known(database.matters), random.units()
        numbers = [random.choice((1, 2, 3, 3, 0, -1, 4, 2**31 - 1, -(2**31))) for _ in range(2)]
        if random.chance(0.6):
            expected = self.predict(database, lambda: database.add_phase(matter_id, name, numbers[0]))
            actual = self.library.add_phase(number, matter_id, name, numbers[0])
        else:
            expected = self.predict(database, lambda: database.add_change(matter_id, name, *numbers))
            actual = self.library.add_change(number, matter_id, name, *numbers)
        self.check(f"add_child{(number, matter_id, name, numbers)}", expected, actual)

    def add_param(self, number):
        random, database = self.random, self.databases[number]
        param = self.known(database.descriptions), random.choice((1, 2, 3, 4, 5)), random.chance(0.4)
        if random.chance(0.05):
            param = param[0], random.choice((0, 6, -1)), param[2]
        content, odd_count = random.content(param[1], param[2]), random.choice((0, 0, -3, 5))
        given = None if random.chance(0.05) else content
        ids = [self.known(database.matters)]
        if random.chance(0.7):
            matter = database.matters.get(ids[0])
            ids.append(self.known(matter.children[PHASE] if matter else ()))
        add = database.add_phase_param if len(ids) == 2 else database.add_matter_param
        expected = self.predict(database, lambda: add(*ids, param, given))
        actual = self.library.add_param(number, ids, param, given, odd_count)
        self.check(f"add_param{(number, ids, param, given)}", expected, actual)

    def null_arguments(self, number):
        number = self.random.choice((number, 0))
        expected = -4 if number else -2
        for name, ids in (("GetMatters", 0), ("GetPhases", 1), ("GetAvailablePhaseParams", 2)):
            self.check(f"{name} null", expected, self.library.call(name, number, *[1] * ids, None, None))
        for name, ids in (("AddMatter", 0), ("AddPhase", 1), ("AddPhaseChange", 1)):
            self.check(f"{name} null", expected, self.library.call(name, number, *[1] * ids, None))
        self.check("GetParamValue null", expected, self.library.call("GetParamValue", number, 1, -1, -1, 1, None))
        self.check("AddMatterParam null", expected, self.library.call("AddMatterParam", number, 1, None, None))
        self.check("destroy null", -4, self.library.call("DestroyMatterArray", None))


def first_change(expected, actual):
    if isinstance(expected, bytes) and isinstance(actual, bytes):
        pairs = zip(expected.split(b"\n") + [None], actual.split(b"\n") + [None])
        line, (expected, actual) = next((i, pair) for i, pair in enumerate(pairs) if pair[0] != pair[1])
        return f"line {line}\nexpected {expected}\n  actual {actual}"
    return f"expected {expected}\n  actual {actual}"


def run_case(library, seed, number, directory, keep):
    """The difference found, or None."""
    random = Generator(f"{seed}/{number}")
    locale.setlocale(locale.LC_ALL, "C" if random.chance(0.15) else "C.UTF-8")
    base = os.path.join(directory, f"case{number}").encode()
    os.mkdir(base)
    case = Case(library, base, random)
    try:
        case.run()
        return None
    except Difference as difference:
        tree = f"\ntree: {base.decode()}" if keep else ""
        return "\n".join(case.calls[-12:]) + f"\n{difference}{tree}"
    except Exception:
        return "\n".join(case.calls[-12:]) + "\n" + traceback.format_exc()
    finally:
        for database in case.databases:
            library.close(database)
        if not keep:
            shutil.rmtree(base)


def run_batch(arguments):
    """In a process of its own: one line before each case, the difference after it."""
    library = Library(arguments.library)
    for number in range(arguments.case, arguments.case + arguments.cases):
        print(f"@{number}", flush=True)
        difference = run_case(library, arguments.seed, number, arguments.batch, arguments.keep)
        if difference:
            print(f"seed {arguments.seed}, case {number}\n{difference}\n", flush=True)
    print("@end", flush=True)


def start_batch(arguments, directory, first, count):
    """Its differences, and the number of the case after the last one run."""
    command = [sys.executable, "-X", "utf8", __file__, os.path.abspath(arguments.library), "--batch", directory]
    command += ["--seed", str(arguments.seed), "--case", str(first), "--cases", str(count)]
    command += ["--keep"] * arguments.keep
    environment = {**os.environ, "MALLOC_PERTURB_": "165"}
    with tempfile.TemporaryFile() as output:
        try:
            code = subprocess.run(command, stdout=output, env=environment, timeout=SECONDS_PER_BATCH).returncode
        except subprocess.TimeoutExpired:
            code = -signal.SIGALRM
        output.seek(0)
        lines = output.read().decode(errors="replace").splitlines()
    text = "\n".join(line for line in lines if not line.startswith("@"))
    last = [line for line in lines if line.startswith("@")][-1:]
    if last == ["@end"]:
        return text, first + count
    stopped = int(last[0][1:]) if last else first
    reason = "takes too long" if code == -signal.SIGALRM else f"ends the process with {code}"
    return f"{text}\nseed {arguments.seed}, case {stopped}\n{reason}\n", stopped + 1


def run_all(arguments, directory):
    first = arguments.case or 0
    end = first + 1 if arguments.case is not None else arguments.cases
    differences = 0
    while first < end:
        text, first = start_batch(arguments, directory, first, min(BATCH, end - first))
        differences += sum(line.startswith("seed ") for line in text.splitlines())
        if text.strip():
            print(text)
    print(f"{end if arguments.case is None else 1} cases, {differences} differences")
    return 1 if differences else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("library", help="path of libqmDatabase.so.1")
    parser.add_argument("--cases", type=int, default=2000, help="number of cases, 2000 unless given")
    parser.add_argument("--seed", type=int, default=1, help="the same seed gives the same cases")
    parser.add_argument("--case", type=int, help="run this case alone")
    parser.add_argument("--keep", action="store_true", help="keep the trees and say where they are")
    parser.add_argument("--batch", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.batch:
        return run_batch(arguments)
    directory = tempfile.mkdtemp(prefix="model-", dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
    try:
        return run_all(arguments, directory)
    finally:
        if not arguments.keep:
            shutil.rmtree(directory, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
