"""An open database: loading it from its tree, and what the queries return."""

import contextlib

from disk import Log, shown
from fileformat import Failure, field, parse_composition, parse_descriptor, read_long, split_path, to_int, widen
from fileformat import write_long
from values import read_value, with_bits

STATE_LETTERS = {1: "S", 2: "L", 3: "V"}
TYPE_LETTERS = {1: "C", 2: "t", 3: "p", 4: "T", 5: "X"}
MATTER_KEYS = ("ID", "Name", "Mixture", "Composition")
DESCRIPTION_KEYS = ("ID", "Name", "Units", "Binary")
HEAD_KEYS = ("ID", "Vector", "Type", "Data")
NO_PHASES = -13


class Kind:
    """What phases and phase changes differ in."""

    def __init__(self, what, prefix, extension, numbers, added):
        self.what, self.prefix, self.extension, self.numbers, self.added = what, prefix, extension, numbers, added
        title = what.capitalize()
        self.count = f"{title}s have been added"
        self.heads = (
            f"Start to search for {what} parameters",
            f"{title} parameter head has been added to database: ",
            f"{title} parameters have been added, ",
        )


PHASE = Kind("phase", "Phase", "phd", ("Aggreg",), "Phase has been added to database,ID=")
CHANGE = Kind("phase change", "PC", "pcd", ("Phase1", "Phase2"), "Phase change has been added to database, ID=")
MATTER_HEADS = (
    "Start to search for material parameters",
    "Material parameter head has been added to database: ",
    "Material parameters have been added",
)


class Node:
    """A descriptor with what hangs below it."""

    def __init__(self, path, keys):
        self.path, self.keys = path, keys
        self.heads = {}
        self.children = {PHASE: {}, CHANGE: {}}
        self.highest = {PHASE: -1, CHANGE: -1}

    @property
    def directory(self):
        return split_path(self.path)[0]

    def text(self, key):
        return self.keys.get(key, "")

    def number(self, key):
        return read_long(self.text(key))

    @property
    def id(self):
        return self.number("ID")

    def flag(self, key):
        return self.text(key) == "1"


class Database:
    def __init__(self, disk, path, language, log_directory, informational):
        self.disk, self.path = disk, path
        self.log = Log(disk, log_directory or path, informational)
        self.matters, self.descriptions = {}, {}
        self.highest_matter = self.highest_string = -1
        self.table = {}
        self.language = language

    def error(self, *parts):
        self.log.write("".join(parts))

    def info(self, *parts):
        self.log.write("".join(parts), True)

    @contextlib.contextmanager
    def reporting(self, what, path):
        try:
            yield
        except Failure:
            self.error(f"Cannot load {what} file: ", shown(path))
            raise

    def load(self):
        self.log.delete()
        self.info("Database path: ", self.path)
        table = "strings.lst" if self.language.startswith("ru") else "default.lst"
        with contextlib.suppress(Failure):
            self.table = self.read(f"{self.path}/{table}").keys
        self.info("Start to search for materials")
        for path in self.descriptors_below(self.path, "mtd"):
            self.load_matter(path)
        self.info("Materials have been added to database", str(len(self.matters)))
        self.info("Start to search for parameter descriptions")
        for path in self.descriptors_in(self.path, "prd"):
            self.load_description(path)
        self.info("Parameter descriptions have been added to database, ", str(len(self.descriptions)))

    def read(self, path, required=()):
        node = Node(path, {})
        self.read_into(node, required)
        return node

    def read_into(self, node, required):
        path = node.path
        try:
            data = self.disk.read(path)
        except Failure:
            self.error("Cannot read from  file: ", shown(path))
            raise
        if data is None:
            self.error("Cannot open file: ", shown(path))
            raise Failure(-6)
        report = lambda message, line: self.error(message, shown(path), f"({line})" if line else "")
        node.keys = parse_descriptor(data, report)
        if not all(key in node.keys for key in required):
            self.error("No required field(s) in file: ", shown(path))
            raise Failure(-10)

    def descriptors_in(self, directory, extension, quiet=False):
        if not quiet:
            self.info("Process subdirectory: ", shown(directory))
        names = [widen(name) for name, is_dir in self.disk.entries(directory, self.error) if not is_dir]
        return [f"{directory}/{name}" for name in names if split_path(name)[2] == extension]

    def descriptors_below(self, directory, extension):
        self.info("Process subdirectory one level: ", shown(directory))
        found = []
        names = [name for name, is_dir in self.disk.entries(directory, self.error) if is_dir]
        for name in map(widen, names):
            files = self.descriptors_in(f"{directory}/{name}", extension, quiet=True)
            if len(files) > 1:
                self.error("More than one files: ", shown(name))
                raise Failure(-6)
            if not files:
                self.info("No files")
            found += files
        return found

    def raise_string(self, node, *keys):
        self.highest_string = max([self.highest_string, *map(node.number, keys)])

    def load_matter(self, path):
        node = Node(path, {})
        try:
            self.load_matter_tree(node)
        except Failure as failure:
            without_phases = failure.code == NO_PHASES
            self.error("Material without phases: " if without_phases else "Cannot load matter file: ", shown(path))
            if not without_phases:
                raise
        else:
            self.matters[node.id] = node
            self.info("Material has been added to database, ID=", write_long(node.id))
        finally:
            self.highest_matter = max(self.highest_matter, node.id)
            self.raise_string(node, "NameID", "CommentID")

    def load_matter_tree(self, node):
        self.read_into(node, MATTER_KEYS)
        for kind in (PHASE, CHANGE):
            self.load_children(node, kind)
        self.load_heads(node, MATTER_HEADS)

    def load_children(self, matter, kind):
        self.info(f"Start to search for {kind.what}s")
        children = matter.children[kind]
        paths = self.descriptors_below(matter.directory, kind.extension)
        if kind is PHASE and not paths:
            raise Failure(NO_PHASES)
        for path in paths:
            with self.reporting(kind.what, path):
                node = self.read(path, ("ID", "Name", *kind.numbers))
                self.load_heads(node, kind.heads)
            children[node.id] = node
            self.raise_string(node, "NameID")
            matter.highest[kind] = max(matter.highest[kind], node.id)
            self.info(kind.added, write_long(node.id))
        self.info(kind.count, str(len(children)))

    def load_heads(self, owner, messages):
        search, added, count = messages
        self.info(search)
        for path in self.descriptors_in(owner.directory, "prh"):
            with self.reporting("parameter head", path):
                node = self.read(path, HEAD_KEYS)
            owner.heads[node.id] = node
            self.info(added, write_long(node.id))
        self.info(count, str(len(owner.heads)))

    def load_description(self, path):
        with self.reporting("parameter description", path):
            node = self.read(path, DESCRIPTION_KEYS)
        self.descriptions[node.id] = node
        self.raise_string(node, "NameID", "UnitsID")
        self.info("Parameter description has been added to database, ID=", write_long(node.id))

    def display(self, node, id_key, key):
        return self.table.get(node.text(id_key), node.text(key))

    def name(self, node):
        return self.display(node, "NameID", "Name")

    def sorted_nodes(self, nodes):
        if not nodes:
            raise Failure(-9)
        return [nodes[key] for key in sorted(nodes)]

    def found(self, nodes, node_id):
        if node_id not in nodes:
            raise Failure(-2)
        return nodes[node_id]

    def member(self, nodes, node_id):
        if not nodes:
            raise Failure(-9)
        return self.found(nodes, node_id)

    def matter(self, matter_id):
        return self.member(self.matters, matter_id)

    def child(self, kind, matter_id, node_id):
        return self.member(self.matter(matter_id).children[kind], node_id)

    def list_matters(self):
        return [self.matter_record(node) for node in self.sorted_nodes(self.matters)]

    def matter_record(self, node):
        comment = self.display(node, "CommentID", "Comment")
        mixture, text = node.number("Mixture"), node.text("Composition")

        def fail(code, message):
            self.error(message, text)
            raise Failure(code)

        components = parse_composition(text, fail) if mixture >= 1 else []
        rows = tuple((matter_id, with_bits(fraction)) for matter_id, fraction in components)
        return node.id, field(self.name(node), 50), field(comment, 50), mixture, rows

    def list_children(self, kind, matter_id):
        convert = to_int if kind is PHASE else int
        numbers = lambda node: (convert(node.number(key)) for key in kind.numbers)
        nodes = self.sorted_nodes(self.matter(matter_id).children[kind])
        return [(node.id, field(self.name(node), 50), *numbers(node)) for node in nodes]

    def owner(self, matter_id, phase_id, change_id):
        if phase_id != -1:
            return self.child(PHASE, matter_id, phase_id)
        return self.matter(matter_id) if change_id == -1 else self.child(CHANGE, matter_id, change_id)

    def list_params(self, owner):
        return list(map(self.param_record, self.sorted_nodes(owner.heads)))

    def param_record(self, head):
        about = self.descriptions.get(head.id) or Node("", {})
        texts = (self.name(about), self.display(about, "UnitsID", "Units")) if about.keys else ("", "")
        # Of a text that begins with its end only the first character counts.
        name, units = ("" if text.startswith("\0") else text for text in texts)
        return head.id, to_int(head.number("Type")), head.flag("Vector"), field(name, 50), field(units, 10)

    def value(self, matter_id, phase_id, change_id, param_id):
        return self.read_head(self.member(self.owner(matter_id, phase_id, change_id).heads, param_id))

    def read_head(self, head):
        path = f"{head.directory}/{head.text('Data')}"
        try:
            data, problem = self.disk.read(path), "open"
        except Failure:
            data, problem = None, "read"
        if data is None and not self.disk.exists(path):
            self.error("Parameter data file doesn't exists: ", shown(path))
            raise Failure(-3)
        type, vector = to_int(head.number("Type")), head.flag("Vector")
        if type not in TYPE_LETTERS:
            raise Failure(-2)
        if data is None:
            self.error(f"Cannot {problem} parameter data file: ", shown(path))
            raise Failure(-6 if problem == "open" else -7)
        return type, vector, with_bits(read_value(data, shown(path), type, vector, self.log.write))

    def is_available(self, description, phase):
        letter = STATE_LETTERS.get(to_int(phase.number("Aggreg")))
        return letter is not None and letter in description.text("AvForPhases")

    def list_available(self, matter_id, phase_id):
        phase = self.found(self.matter(matter_id).children[PHASE], phase_id)
        nodes = (self.descriptions[key] for key in sorted(self.descriptions))
        return [self.description_record(node) for node in nodes if self.is_available(node, phase)]

    def description_record(self, node):
        name, units = field(self.name(node), 50), field(self.display(node, "UnitsID", "Units"), 10)
        letters = (field(node.text(key), 50) for key in ("DataTypes", "AvForPhases"))
        return node.id, name, units, *map(node.flag, ("Binary", "Scalar", "Vector")), *letters
