"""Random trees, records and values: mostly what hosts make, spiced with everything a file may hold."""

import os
import random
import socket

from fileformat import MARK
from oddities import (
    AIMS, COMPOSITIONS, DIRECTORY_NAMES, FRACTIONS, GOOD_COMPOSITIONS, HUGE_LONGS, LITTER, NUMBERS,
    ODD_BYTES, ODD_DATA_NAMES, ODD_DIRECTORY_NAMES, ODD_LINES, ODD_LONGS, ODD_NUMBERS, ODD_ROWS, ODD_STEMS,
    ODD_UNITS, ODD_VALUES, STEMS, TEXTS, WRITTEN_IN_PLACE,
)


class Generator(random.Random):
    def __init__(self, seed):
        super().__init__(seed)
        self.oddness = self.choice((0, 0.01, 0.03, 0.1, 0.3))

    def chance(self, probability):
        return self.random() < probability

    def is_odd(self, factor=1.0):
        return self.random() < self.oddness * factor

    # Texts and numbers

    def long(self, top=4, huge=False):
        if self.is_odd():
            return self.choice(ODD_LONGS + HUGE_LONGS if huge else ODD_LONGS)
        return str(self.randint(0, top))

    def flag(self):
        return self.choice(("", "01", "true", " 1", "1 ")) if self.is_odd() else self.choice("0111")

    def letters(self, all):
        if self.is_odd():
            return self.choice(("", all.swapcase(), ", ".join(all), all * 20))
        return all if self.chance(0.5) else "".join(self.sample(all, self.randint(0, len(all))))

    def number_text(self, number):
        if self.is_odd():
            return self.choice(ODD_NUMBERS)
        text = self.choice(("{:g}", "{:g}", "{:.17g}", "{:e}", "{:.3f}")).format(number)
        return text.replace(".", self.choice("...,"), 1)

    # Files

    def spoil(self, line):
        """A line with odd bytes somewhere, or of about the longest length."""
        if self.chance(0.15):
            return line.ljust(self.randint(1018, 1026), self.choice((b"x", b" ")))
        place = self.randint(0, len(line))
        return line[:place] + self.choice(ODD_BYTES) + line[place:]

    def assemble(self, lines):
        end = b"\r\n" if self.chance(0.15) else b"\n"
        return end.join(lines) + (end if self.chance(0.8) else b"")

    def descriptor(self, **keys):
        pairs = [(key, value) for key, value in keys.items() if value is not None and not self.is_odd(0.04)]
        self.shuffle(pairs)
        lines = [f"{key}={value}".encode("utf-8", "surrogatepass") for key, value in pairs]
        if self.is_odd(2):
            lines.insert(self.randint(0, len(lines)), self.choice(ODD_LINES))
        if lines and self.is_odd():
            lines.insert(self.randint(0, len(lines)), self.choice(lines).partition(b"=")[0] + b"=2")
        lines = [self.spoil(line) if self.is_odd(0.1) and not line.startswith(b"Data") else line for line in lines]
        if self.is_odd(0.3):
            lines.append(b"Padding=".ljust(self.randint(1019, 1026), b"p"))
            self.shuffle(lines)
        return (MARK if self.chance(0.6) else b"") + self.assemble(lines)

    def names(self):
        return {"Name": self.choice(TEXTS), "NameID": self.long(12) if self.chance(0.6) else None}

    def string_table(self):
        lines = [f"{self.randint(0, 25)}={self.choice(TEXTS)}".encode() for _ in range(self.randint(0, 25))]
        lines += [b"=the empty key"] * self.chance(0.1) + [b"007=seven"] * self.chance(0.1)
        lines = [self.spoil(line) if self.is_odd(0.3) else line for line in lines]
        return (MARK if self.chance(0.7) else b"") + self.assemble(lines)

    def numbers(self, count):
        return [self.uniform(-5, 5) if self.chance(0.7) else self.choice(NUMBERS) for _ in range(count)]

    def arguments(self, count):
        numbers = sorted({round(number, 3) for number in self.numbers(count)})
        if self.is_odd():
            self.shuffle(numbers)
        return numbers

    def data_lines(self, type, vector):
        width = 3 if vector else 1
        if type == 1:
            rows = [self.numbers(width) for _ in range(self.choice((1, 1, 1, 2, 0)))]
        else:
            rows = [[x, *self.numbers(width)] for x in self.arguments(self.randint(0, 5))]
        texts = [" ".join(map(self.number_text, row)) for row in rows]
        if texts and self.is_odd(2):
            texts.insert(self.randint(0, len(texts)), self.choice(texts))
        if texts and self.is_odd():
            texts[0] = "nan " + texts[0].partition(" ")[2]
        if self.is_odd(2):
            texts = [text.replace(" ", "  ", 1) for text in texts]
        texts = [f" {text} " if self.is_odd() else text for text in texts]
        return [self.spoil(text.encode()) if self.is_odd(0.3) else text.encode() for text in texts]

    def data(self, type, vector):
        lines = []
        for _ in range(self.randint(0, 4) if type in (4, 5) else 1):
            if type in (4, 5) and not self.is_odd(0.5):
                lines.append(b"P=" + self.number_text(self.choice(NUMBERS)).encode())
            lines += self.data_lines(type, vector)
        for _ in range(3):
            if self.is_odd(1.5):
                lines.insert(self.randint(0, len(lines)), self.choice(ODD_ROWS))
        if self.chance(0.2):
            lines.insert(self.randint(0, len(lines)), b"# comment")
        return self.assemble(lines)

    # Trees

    def tree(self, root):
        os.mkdir(root)
        self.litter(root)
        for name in (b"default.lst", b"strings.lst"):
            if self.chance(0.8):
                self.put(root, name, self.string_table())
        for _ in range(self.choice((1, 2, 4, 6))):
            self.put(root, self.file_name(b"prd"), self.description())
        for _ in range(self.choice((0, 1, 2, 3))):
            self.substance(self.directory(root))

    def description(self):
        flags = {key: self.flag() for key in ("Binary", "Scalar", "Vector")}
        letters = {"AvForPhases": self.letters("SLV"), "DataTypes": self.letters("CtpTX")}
        units = {"Units": self.choice(TEXTS), "UnitsID": self.long(12) if self.chance(0.4) else None}
        return self.descriptor(ID=self.long(5), **self.names(), **units, **flags, **letters)

    def substance(self, path):
        if not self.is_odd(0.3):
            self.put(path, self.file_name(b"mtd"), self.matter())
        for _ in range(self.choice((1, 1, 2, 3)) - self.is_odd()):
            state = self.choice("123") if self.chance(0.9) else self.long(5, huge=True)
            self.child(path, b"phd", Aggreg=state)
        for _ in range(self.choice((0, 1, 2))):
            self.child(path, b"pcd", Phase1=self.long(3, huge=True), Phase2=self.long(3, huge=True))
        self.heads(path)

    def matter(self):
        mixture = self.chance(0.3)
        composition = self.choice(GOOD_COMPOSITIONS if self.chance(0.5) else COMPOSITIONS) if mixture else ""
        flag = self.long(1, huge=True) if self.is_odd() else int(mixture)
        flag = self.choice(("-1", "0", "2", "x")) if mixture and self.chance(0.1) else flag
        comment = {"Comment": self.choice((*TEXTS, None)), "CommentID": self.choice((None, self.long(12)))}
        return self.descriptor(ID=self.long(), Mixture=flag, Composition=composition, **comment, **self.names())

    def child(self, parent, extension, **keys):
        path = self.directory(parent)
        self.put(path, self.file_name(extension), self.descriptor(ID=self.long(3), **keys, **self.names()))
        self.heads(path)

    def heads(self, path):
        self.litter(path)
        for _ in range(self.choice((0, 1, 2, 4))):
            type, vector = self.choice((1, 2, 3, 4, 5)), self.chance(0.4)
            stem = self.choice(STEMS[:5])
            data = self.choice(ODD_DATA_NAMES) if self.is_odd() else stem.decode() + ".dat"
            type_text = self.choice(("0", "6", "x", "4294967298", "-1")) if self.is_odd() else type
            vector_text = self.flag() if self.is_odd() else int(vector)
            head = self.descriptor(ID=self.long(5, huge=True), Vector=vector_text, Type=type_text, Data=data)
            self.put(path, stem + b".prh", head)
            if not self.is_odd():
                self.put(path, stem + b".dat", self.data(type, vector))

    def file_name(self, extension):
        stem = self.choice(ODD_STEMS) if self.is_odd(0.5) else self.choice(STEMS)
        return stem + b"." + (extension.upper() if self.is_odd(0.2) else extension)

    def directory(self, parent):
        names = ODD_DIRECTORY_NAMES if self.is_odd(0.5) else DIRECTORY_NAMES
        path = parent + b"/" + self.choice(names)
        while os.path.lexists(path):
            path += self.choice((b"1", b"2", b"x"))
        os.mkdir(path)
        return path

    def put(self, directory, name, data):
        path = directory + b"/" + name
        if not os.path.lexists(path):
            with open(path, "wb") as file:
                file.write(data)

    def litter(self, path):
        for _ in range(3):
            if self.is_odd():
                self.put_odd_entry(path)

    def put_odd_entry(self, directory, names=LITTER):
        """What does not belong there: a link, a pipe, a socket, another directory or file."""
        path = directory + b"/" + self.choice(names)
        if os.path.lexists(path):
            return
        what = self.choice(("directory", "full", "link", "link", "link", "loop", "pipe", "socket", "file"))
        if what in ("directory", "full"):
            os.mkdir(path)
        if what == "full":
            self.put(path, self.choice((b"x.phd", b"x.mtd", b"x")), b"ID=1\n")
        elif what in ("link", "loop"):
            os.symlink(self.choice(AIMS) if what == "link" else os.path.basename(path), path)
        elif what == "pipe" and not path.endswith(WRITTEN_IN_PLACE):
            os.mkfifo(path)
        elif what == "socket":
            with socket.socket(socket.AF_UNIX) as one:
                one.bind(path)
        elif what == "file":
            self.put(directory, os.path.basename(path), self.choice((b"", b"ID=1\n", MARK)))

    # What hosts pass

    def units(self):
        """A record's text field: at most 50 characters, without an end when there are 50."""
        units = [ord(one) for one in self.choice((*TEXTS, f"new {self.randint(0, 9)}", f"new {self.randint(0, 99)}"))]
        if self.is_odd(0.5):
            units.insert(self.randint(0, len(units)), self.choice(ODD_UNITS))
        return units[:50]

    def components(self):
        if self.chance(0.1):
            return self.many_components(50, self.randint(1016, 1027))
        fractions = self.choice(FRACTIONS) if self.chance(0.9) else ()
        odd_ids = (1, 2, 77, -1, 2**63 - 1)
        return [(self.choice(odd_ids) if self.is_odd() else index, one) for index, one in enumerate(fractions)]

    def many_components(self, count, length):
        """Such that "Composition=" and their text have this length."""
        fraction = 0.0199
        digits = length - len("Composition=") - count * len(f":{fraction};") + 1
        return [(10 ** (digits // count + (index < digits % count) - 1), fraction) for index in range(count)]

    def rows(self, width):
        numbers = lambda: [self.choice(ODD_VALUES) if self.is_odd(0.3) else one for one in self.numbers(width - 1)]
        return [(x, *numbers()) for x in self.arguments(self.choice((0, 1, 3, 6)))]

    def content(self, type, vector):
        if type == 1:
            return tuple(self.numbers(3 if vector else 1))
        width = 4 if vector else 2
        if type in (2, 3):
            return self.rows(width)
        return [(self.choice(NUMBERS), self.rows(width)) for _ in range(self.randint(0, 4))]
