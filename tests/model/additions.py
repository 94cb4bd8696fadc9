"""What the additions check, write and log. They extend the model of an open database."""

from disk import shown
from fileformat import (
    LINE_LIMIT, Failure, compose_descriptor, composition_text, split_path, text_of, to_int, write_double, write_long,
)
from image import PHASE, TYPE_LETTERS, Database, Node
from values import write_value

NO_ROOM = b"/dev/full"


def record_text(units):
    """The text of a record's field: up to its first zero or to the end of the array."""
    return text_of(units[: units.index(0)] if 0 in units else units)


class GrowingDatabase(Database):
    def refuse(self, code, *parts):
        self.error(*parts)
        raise Failure(code)

    def next_string(self):
        self.highest_string += 1
        while self.table.get(write_long(self.highest_string)):
            self.highest_string += 1
        return write_long(self.highest_string)

    def free_name(self, directory, prefix, suffix=""):
        number = 1
        while self.disk.exists(f"{directory}/{prefix}{number}{suffix}"):
            number += 1
        return f"{prefix}{number}{suffix}"

    def new_node(self, parent, prefix, extension):
        name = self.free_name(parent, prefix)
        self.disk.make_directory(f"{parent}/{name}")
        return Node(f"{parent}/{name}/{name}.{extension}", {})

    def save(self, node):
        if not self.disk.write(node.path, compose_descriptor(node.keys)):
            self.refuse(-6, "Cannot open file for write: ", shown(node.path))

    def has_name(self, nodes, name):
        return any(self.name(node) == name for node in nodes.values())

    def report_saved(self, what, node):
        self.info(f"New {what} saved: ", shown(node.path), ", ID=", node.text("ID"))

    def add_matter(self, name_units, comment_units, mixture, components):
        name, comment = record_text(name_units), record_text(comment_units)
        if self.has_name(self.matters, name):
            self.refuse(-14, "Cannot append a substance because a duplicated name, ", name)
        total = 0.0
        for _, fraction in components:
            total += fraction
        has_bad_sum = bool(mixture) and (total > 1.0 or total < 0.99)
        text = composition_text(components) if mixture else ""
        if not has_bad_sum and len("Composition=" + text) > LINE_LIMIT:
            self.refuse(-12, "Composition line is too long: ", name)
        node = self.new_node(self.path, "Substance", "mtd")
        self.highest_matter += 1
        node.keys = {"ID": write_long(self.highest_matter), "Name": name, "NameID": self.next_string()}
        node.keys |= {"Comment": comment, "CommentID": self.next_string()}
        node.keys |= {"Mixture": write_long(mixture), "Composition": text}
        if has_bad_sum:
            sum_text = write_double(total)
            self.refuse(-20, "Incorrect molar fractions summ at sunstance addition (", sum_text, ")")
        self.save(node)
        self.report_saved("material", node)
        self.matters[node.id] = node
        return to_int(self.highest_matter)

    def add_child(self, kind, matter_id, name_units, *numbers):
        matter, name, what = self.matter(matter_id), record_text(name_units), kind.what
        if self.has_name(matter.children[kind], name):
            self.refuse(-14, f"Cannot append a {what} because a duplicated name, ", name)
        node = self.new_node(matter.directory, kind.prefix, kind.extension)
        matter.highest[kind] += 1
        node.keys = {"ID": write_long(matter.highest[kind]), "Name": name, "NameID": self.next_string()}
        node.keys |= dict(zip(kind.numbers, map(write_long, numbers)))
        self.save(node)
        self.report_saved(what, node)
        matter.children[kind][node.id] = node
        return to_int(matter.highest[kind])

    def add_param(self, ids, param, content):
        """To a substance or, with two IDs, to one of its phases."""
        owner, what = self.matter(ids[0]), "substance"
        self.check_param(*param)
        if len(ids) == 2:
            owner, what = self.found(owner.children[PHASE], ids[1]), "phase"
            self.check_state(owner, param[0])
        self.attach(owner, what, *param, content)
        return 0

    def check_param(self, param_id, type, vector):
        about, number = self.descriptions.get(param_id), write_long(param_id)
        if about is None:
            self.refuse(-15, "Incorrect parameter ID for addition, ", number)
        if type not in TYPE_LETTERS or TYPE_LETTERS[type] not in about.text("DataTypes"):
            head = "Incorrect parameter type for addition, ParamID="
            self.refuse(-16, head, number, "ParamType=", write_long(type))
        if not about.flag("Vector" if vector else "Scalar"):
            head = "Incorrect parameter scalar/vector type for addition, ParamID="
            self.refuse(-17, head, number, "Vector=", str(int(vector)))

    def check_state(self, phase, param_id):
        if not self.is_available(self.descriptions[param_id], phase):
            state = write_long(to_int(phase.number("Aggreg")))
            self.refuse(-19, "Incorrect parameter for the phase AS, ParamID=", write_long(param_id), "AS=", state)

    def attach(self, owner, what, param_id, type, vector, content):
        number = write_long(param_id)
        if param_id in owner.heads:
            head = f"Cannot append the parameter to {what} because a parameter with such ID is already present, "
            self.refuse(-18, head, number)
        if content is None:
            raise Failure(-4)
        directory = owner.directory
        path = f"{directory}/{self.free_name(directory, 'Property', '.prh')}"
        data_name = split_path(path)[1] + ".dat"
        keys = {"ID": number, "Vector": str(int(vector)), "Type": write_long(type), "Data": data_name}
        head = Node(path, keys)
        self.write_data(head, f"{directory}/{data_name}", write_value(type, content))
        self.save(head)
        self.report_saved(f"{what} parameter", head)
        owner.heads[head.id] = head

    def write_data(self, head, path, data):
        """A data file that cannot be opened is only logged; one that cannot be filled fails."""
        has_room = self.disk.link_target(path) != NO_ROOM
        if data and not has_room:
            self.refuse(-6, "Cannot write parameter data file: ", shown(path))
        if has_room and not self.disk.write(path, data):
            self.error("Cannot open file for write: ", shown(head.path))
