"""One random case: a tree, the databases opened in it, and calls whose outcomes the model predicts."""

import itertools
import os

from additions import GrowingDatabase
from disk import Disk, snapshot
from fileformat import Failure, Fault, narrow
from image import CHANGE, PHASE, TYPE_LETTERS
from native import UNTOUCHED_COUNT
from oddities import OBSTACLES

ENTITY_LISTS = ("GetPhases", "GetPhaseChanges", "GetMatterParams")
PHASE_LISTS = ("GetPhaseParams", "GetAvailablePhaseParams")


class Difference(Exception):
    pass


def first_change(expected, actual, place=""):
    """Where two outcomes, or two files, differ first."""
    if isinstance(expected, bytes) and isinstance(actual, bytes) and b"\n" in expected + actual:
        expected, actual = expected.split(b"\n"), actual.split(b"\n")
    if isinstance(expected, (tuple, list)) and isinstance(actual, (tuple, list)):
        pairs = itertools.zip_longest(expected, actual, fillvalue="nothing")
        index, pair = next((index, pair) for index, pair in enumerate(pairs) if pair[0] != pair[1])
        return first_change(*pair, f"{place}[{index}]")
    return f"at {place}\nexpected {expected}\n  actual {actual}"


def owners(matters):
    """What parameters can be added to."""
    return [node for matter in matters for node in (matter, *matter.children[PHASE].values())]


class Case:
    """One tree, the databases opened in it and the calls made."""

    last_id = 0

    def __init__(self, library, base, random):
        self.library, self.base, self.random = library, base, random
        self.databases, self.calls = {}, []
        self.root = base.decode() + "/db"

    def run(self):
        self.make_tree()
        for _ in range(self.random.choice((1, 2))):
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
            raise Difference(first_change(expected, actual))

    def check_tree(self):
        expected, actual = self.disk.expected, snapshot(self.base)
        for path in sorted(expected.keys() | actual.keys()):
            if expected.get(path) != actual.get(path):
                raise Difference(first_change(expected.get(path), actual.get(path), path.decode(errors="replace")))

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

    def close(self):
        for number in list(self.databases):
            self.check(f"close({number})", 0, self.library.close(number))
            del self.databases[number]
            self.check(f"close({number})", -2, self.library.close(number))

    def use(self, number):
        self.sweep(number)
        additions = (self.add_matter, self.add_child, self.add_param, self.add_param)
        for _ in range(self.random.choice((0, 3, 10))):
            if self.random.oddness and self.random.chance(0.15):
                self.obstruct(number)
            has_matters = self.databases[number].matters or self.random.chance(0.2)
            self.random.choice(additions if has_matters else additions[:1])(number)
            if self.random.chance(0.3):
                self.null_arguments(number)
        self.sweep(number)

    def obstruct(self, number):
        """Someone else puts something where an addition may want to write."""
        matters = self.databases[number].matters.values()
        directory = narrow(self.random.choice([node.directory for node in owners(matters)] or [self.root]))
        if os.path.isdir(directory):
            self.check_tree()
            self.random.put_odd_entry(directory, OBSTACLES)
            self.disk.expected = snapshot(self.base)

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
        kind, given = (PHASE, numbers[:1]) if random.chance(0.6) else (CHANGE, numbers)
        expected = self.predict(database, lambda: database.add_child(kind, matter_id, name, *given))
        add = self.library.add_phase if kind is PHASE else self.library.add_change
        actual = add(number, matter_id, name, *given)
        self.check(f"add {kind.what}{(number, matter_id, name, given)}", expected, actual)

    def add_param(self, number):
        random, database = self.random, self.databases[number]
        param_id = self.known(database.descriptions)
        about = database.descriptions.get(param_id)
        types = [type for type, letter in TYPE_LETTERS.items() if about and letter in about.text("DataTypes")]
        vector = about.flag("Vector") and random.chance(0.5) if about and random.chance(0.9) else random.chance(0.5)
        param = param_id, random.choice(types * 4 or [1]) if random.chance(0.9) else random.randint(-1, 6), vector
        content, odd_count = random.content(param[1], param[2]), random.choice((0, 0, -3, 5))
        given = None if random.chance(0.05) else content
        ids = [self.known(database.matters)]
        if random.chance(0.7):
            matter = database.matters.get(ids[0])
            ids.append(self.known(matter.children[PHASE] if matter else ()))
        expected = self.predict(database, lambda: database.add_param(ids, param, given))
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
