"""An open database: loading it from its tree, and what the queries return."""

from disk import Disk, Log, shown
from fileformat import (
    Failure, Fault, field, narrow, parse_composition, parse_descriptor, read_long, split_path, to_int, widen, write_long,
)
from values import read_value, with_bits

STATE_LETTERS = {1: "S", 2: "L", 3: "V"}
TYPE_LETTERS = {1: "C", 2: "t", 3: "p", 4: "T", 5: "X"}
MATTER_KEYS = ("ID", "Name", "Mixture", "Composition")
DESCRIPTION_KEYS = ("ID", "Name", "Units", "Binary")
HEAD_KEYS = ("ID", "Vector", "Type", "Data")
NO_PHASES = -13


class Kind:
    """What loading phases and loading phase changes differ in."""

    def __init__(self, what, extension, keys, added, count):
        self.extension, self.keys = extension, keys
        self.search = f"Start to search for {what}s"
        self.failed = f"Cannot load {what} file: "
        self.added, self.count = added, count
        title = what.capitalize()
        self.heads = (
            f"Start to search for {what} parameters",
            f"{title} parameter head has been added to database: ",
            f"{title} parameters have been added, ",
        )


PHASE = Kind(
    "phase", "phd", ("ID", "Name", "Aggreg"), "Phase has been added to database,ID=", "Phases have been added"
)
CHANGE = Kind(
    "phase change", "pcd", ("ID", "Name", "Phase1", "Phase2"),
    "Phase change has been added to database, ID=", "Phase changes have been added",
)
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
    def __init__(self, disk: Disk, path, language, log_directory, informational):
        self.disk, self.path = disk, path
        self.log = Log(disk, log_directory or path, informational)
        self.matters, self.descriptions = {}, {}
        self.highest_matter = self.highest_string = -1
        self.table = {}
        self.language = language

    # Loading

    def error(self, *parts):
        self.log.write("".join(parts))

    def info(self, *parts):
        self.log.write("".join(parts), True)

    def load(self):
        self.log.delete()
        self.info("Database path: ", self.path)
        table = "strings.lst" if self.language.startswith("ru") else "default.lst"
        try:
            self.table = self.read(f"{self.path}/{table}").keys
        except Failure:
            pass
        self.info("Start to search for materials")
        for path in self.descriptors_below(self.path, "mtd"):
            self.load_matter(path)
        self.info("Materials have been added to database", str(len(self.matters)))
        self.info("Start to search for parameter descriptions")
        for path in self.descriptors_in(self.path, "prd"):
            self.load_description(path)
        self.info("Parameter descriptions have been added to database, ", str(len(self.descriptions)))

    def read(self, path, required=()):
        """A node with its keys; failing once the file is read, it stays in `last_read`."""
        self.last_read = Node(path, {})
        try:
            data = self.disk.read(path)
        except Failure:
            self.error("Cannot read from  file: ", shown(path))
            raise
        if data is None:
            self.error("Cannot open file: ", shown(path))
            raise Failure(-6)
        suffix = lambda line: "" if line is None else f"({line})"
        report = lambda message, line: self.error(message, shown(path), suffix(line))
        node = self.last_read = Node(path, parse_descriptor(data, report))
        if not all(key in node.keys for key in required):
            self.error("No required field(s) in file: ", shown(path))
            raise Failure(-10)
        return node

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
        code = 0
        try:
            node = self.read(path, MATTER_KEYS)
        except Failure as failure:
            node, code = self.last_read, failure.code
        try:
            if code == 0:
                self.load_below_matter(node)
        except Failure as failure:
            code = failure.code
        self.highest_matter = max(self.highest_matter, node.id)
        self.raise_string(node, "NameID", "CommentID")
        if code == NO_PHASES:
            self.error("Material without phases: ", shown(path))
            return
        if code:
            self.error("Cannot load matter file: ", shown(path))
            raise Failure(code)
        self.matters[node.id] = node
        self.info("Material has been added to database, ID=", write_long(node.id))

    def load_below_matter(self, node):
        for kind in (PHASE, CHANGE):
            self.load_children(node, kind)
        self.load_heads(node, MATTER_HEADS)

    def load_children(self, matter, kind):
        self.info(kind.search)
        children = matter.children[kind]
        paths = self.descriptors_below(matter.directory, kind.extension)
        if kind is PHASE and not paths:
            raise Failure(NO_PHASES)
        for path in paths:
            try:
                node = self.read(path, kind.keys)
                self.load_heads(node, kind.heads)
            except Failure:
                self.error(kind.failed, shown(path))
                raise
            children[node.id] = node
            self.raise_string(node, "NameID")
            matter.highest[kind] = max(matter.highest[kind], node.id)
            self.info(kind.added, write_long(node.id))
        self.info(kind.count, str(len(children)))

    def load_heads(self, owner, messages):
        search, added, count = messages
        self.info(search)
        for path in self.descriptors_in(owner.directory, "prh"):
            try:
                node = self.read(path, HEAD_KEYS)
            except Failure:
                self.error("Cannot load parameter head file: ", shown(path))
                raise
            owner.heads[node.id] = node
            self.info(added, write_long(node.id))
        self.info(count, str(len(owner.heads)))

    def load_description(self, path):
        try:
            node = self.read(path, DESCRIPTION_KEYS)
        except Failure:
            self.error("Cannot load parameter description file: ", shown(path))
            raise
        self.descriptions[node.id] = node
        self.raise_string(node, "NameID", "UnitsID")
        self.info("Parameter description has been added to database, ID=", write_long(node.id))

    # Queries

    def display(self, node, id_key, key):
        return self.table.get(node.text(id_key), node.text(key))

    def name(self, node):
        return self.display(node, "NameID", "Name")

    def matter(self, matter_id):
        if not self.matters:
            raise Failure(-9)
        return self.found(self.matters, matter_id)

    def found(self, nodes, node_id):
        if node_id not in nodes:
            raise Failure(-2)
        return nodes[node_id]

    def child(self, kind, matter_id, node_id):
        children = self.matter(matter_id).children[kind]
        if not children:
            raise Failure(-9)
        return self.found(children, node_id)

    def list_matters(self):
        if not self.matters:
            raise Failure(-9)
        return [self.matter_record(self.matters[key]) for key in sorted(self.matters)]

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
        children = self.matter(matter_id).children[kind]
        if not children:
            raise Failure(-9)
        nodes = [children[key] for key in sorted(children)]
        if kind is PHASE:
            return [(node.id, field(self.name(node), 50), to_int(node.number("Aggreg"))) for node in nodes]
        return [(n.id, field(self.name(n), 50), n.number("Phase1"), n.number("Phase2")) for n in nodes]

    def owner(self, matter_id, phase_id, change_id):
        if phase_id != -1:
            return self.child(PHASE, matter_id, phase_id)
        return self.matter(matter_id) if change_id == -1 else self.child(CHANGE, matter_id, change_id)

    def list_params(self, owner):
        if not owner.heads:
            raise Failure(-9)
        return [self.param_record(owner.heads[key]) for key in sorted(owner.heads)]

    def param_record(self, head):
        about = self.descriptions.get(head.id) or Node("", {})
        name, units = (self.name(about), self.display(about, "UnitsID", "Units")) if about.keys else ("", "")
        return head.id, to_int(head.number("Type")), head.flag("Vector"), field(name, 50), field(units, 10)

    def value(self, matter_id, phase_id, change_id, param_id):
        owner = self.owner(matter_id, phase_id, change_id)
        if not owner.heads:
            raise Failure(-9)
        return self.read_head(self.found(owner.heads, param_id))

    def read_head(self, head):
        path = f"{head.directory}/{head.text('Data')}"
        log = lambda text, informational: self.log.write(text, informational)
        try:
            data = self.disk.read(path)
        except Failure:
            data = Failure
        if data is None and not self.disk.exists(path):
            self.error("Parameter data file doesn't exists: ", shown(path))
            raise Failure(-3)
        type = to_int(head.number("Type"))
        if type not in TYPE_LETTERS:
            raise Failure(-2)
        if data is None:
            self.error("Cannot open parameter data file: ", shown(path))
            raise Failure(-6)
        if data is Failure:
            self.error("Cannot read parameter data file: ", shown(path))
            raise Failure(-7)
        value = read_value(data, shown(path), type, head.flag("Vector"), log)
        return value[0], value[1], with_bits(value[2])

    def is_available(self, description, phase):
        letter = STATE_LETTERS.get(to_int(phase.number("Aggreg")))
        return letter is not None and letter in description.text("AvForPhases")

    def list_available(self, matter_id, phase_id):
        phase = self.found(self.matter(matter_id).children[PHASE], phase_id)
        chosen = [self.descriptions[key] for key in sorted(self.descriptions)]
        return [self.description_record(node) for node in chosen if self.is_available(node, phase)]

    def description_record(self, node):
        texts = (self.name(node), self.display(node, "UnitsID", "Units"))
        letters = (node.text("DataTypes"), node.text("AvForPhases"))
        flags = tuple(map(node.flag, ("Binary", "Scalar", "Vector")))
        return (node.id, field(texts[0], 50), field(texts[1], 10), *flags, *(field(text, 50) for text in letters))
