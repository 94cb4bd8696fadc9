"""Random trees, records and values: mostly what hosts make, spiced with everything a file may hold."""

import os
import random
import socket

from fileformat import MARK

TEXTS = (
    "Water", "Ice", "Steam", "melting", "a b", "", "0", "x=y", " lead", "tail ", "Вода", "Größe", "水", "\U0001f9ca", "tab\tbed",
    "n" * 48, "n" * 49, "n" * 50, "long" * 20, "\U0010ffff", "Water",
)
ODD_BYTES = (
    b"\xff", b"\xc3", b"\xe2\x82", b"\xed\xa0\x80", b"\xc1\x81", b"\xf4\x90\x80\x80", b"\xf7\xbf\xbf\xbf", b"\xf8\x88\x80",
    b"\x80", b"\0", b"\r", b"\t", b"=", b" ", b"\xc0\x80", b"\xef\xbb\xbf",
)
ODD_LONGS = (
    " 3", "\t2", "+2", "-1", "-5", "007", "4x", "x", "", "1.5", "0x3", "1 2", "4294967297", "\u00a03", "4611686018427387904",
    "-99999999999999999999", "--1", "+", "1,0",
)
HUGE_LONGS = ("99999999999999999999", "18446744073709551615", "9223372036854775808")
COMPOSITIONS = (
    "", "12", "12:1", "12:1.0", "1:0.25;2:0.75", "1:0,25;2:0,75", "1:0.25;2:0.75;", ":0.5", "1:abc", "1:0.5;2:", "1:", ";",
    "1:0.5;;2:0.5", "1;2", "x:0.5;3:0.5", "1:2:0.5", "1:0.5;2:5", "1:0x1p-2;2:inf", "1: 0.5 ;2:nan", "1:1e400;2:-0.0", "::", "0.5;0.5",
    "1:0.5;2:0.5;3", "1:" + "0" * 900 + "1;2:0.5", "-7:.5;99999999999999999999:.5", "1:0.5,5;2:1,000,0",
)
ODD_NUMBERS = (
    "abc", "", "1e", "0x", "0x1.8p1", "inf", "-INF", "nan", "nan(7)", "-nan", "1,5", "1,5,0", "1.5.5", "1e400", "1e-400", "-0", "+3", ".5",
    "5.", "5#", "1e+", "--1", "\t7", "1_0", "1d3", "Infinity", "4.9e-324", "0x1p-1074", "1" * 400,
)
ODD_ROWS = (
    b"#", b"# 1 2", b" # 1 2", b"", b" ", b"   ", b"P=", b"P=1", b"P=abc", b"P= 1,5 bar", b"p=1", b" P=2", b"P=nan", b"\r", b"\0", b"5\x007 8",
    b"1 2 3", b"1\t2", b"\xff 1", b"\xef\xbb\xbf1 2", b"\xc2\xa05 6", b" 5", b"5 ", b"5",
)
DIRECTORY_NAMES = (b"Substance1", b"Substance2", b"Phase1", b"PC1", b"Property1.prh", b"sub dir", "вода".encode(), b".hidden", b"x.mtd", b"x.phd")
ODD_DIRECTORY_NAMES = (b"a\\b", b"end\\", b"\\", b"bad\xff", b"ctl\x01x", b"line\nfeed", b"tab\there", b"sub.prd", b"e\xcc\x81", b"del\x7f")
STEMS = (b"x", b"Property1", b"Property2", b"", b"a.b", "имя".encode(), b"Substance1")
ODD_STEMS = (b"a\\b", b"bad\xfe", b"ctl\x02", b"Phase1\\", b" ")
NUMBERS = (0.0, 1.0, -1.5, 273.15, 1e-5, 1234567.891, 101325.0, 0.1, 1e300, -2e-308, 5e-324, 99999.95, 999999.5, 123456.5, -0.0)
ODD_VALUES = (float("inf"), float("-inf"), float("nan"), -float("nan"), 1.7976931348623157e308)
FRACTIONS = ((1.0,), (0.25, 0.75), (0.5, 0.49), (0.5, 0.489), (0.6, 0.41), (0.4, 0.4, 0.2, 3e-16), (0.7, 0.2, 0.1), (float("nan"), 5.0), (0.123456789, 0.876))


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
        return self.choice(("{:g}", "{:g}", "{:.17g}", "{:e}", "{:.3f}")).format(number).replace(".", self.choice("...,"), 1)

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
        pairs = [(key, value) for key, value in keys.items() if value is not None and not self.is_odd(0.15)]
        self.shuffle(pairs)
        lines = [f"{key}={value}".encode("utf-8", "surrogatepass") for key, value in pairs]
        if self.is_odd(2):
            odd = (b"", b"no sign", b"=empty key", b"[section]", b"ID =9", b" Name=x", b"name=low", b"\r", b"Symbol=H2O", b"==")
            lines.insert(self.randint(0, len(lines)), self.choice(odd))
        if lines and self.is_odd():
            lines.insert(self.randint(0, len(lines)), self.choice(lines).partition(b"=")[0] + b"=2")
        lines = [self.spoil(line) if self.is_odd(0.3) and not line.startswith(b"Data") else line for line in lines]
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
        texts = [self.choice("    \t") * 0 + " ".join(map(self.number_text, row)) for row in rows]
        if self.is_odd(2):
            texts = [text.replace(" ", "  ", 1) for text in texts]
        texts = [f" {text} " if self.is_odd() else text for text in texts]
        return [self.spoil(text.encode()) if self.is_odd(0.3) else text.encode() for text in texts]

    def data(self, type, vector):
        lines = []
        for _ in range(self.randint(0, 4) if type in (4, 5) else 1):
            lines += [b"P=" + self.number_text(self.choice(NUMBERS)).encode()] * (type in (4, 5) and not self.is_odd(0.5))
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
        for name in (b"default.lst", b"strings.lst"):
            if self.chance(0.8):
                self.put(root, name, self.string_table())
        for _ in range(self.choice((0, 1, 3, 5))):
            self.put(root, self.file_name(b"prd"), self.descriptor(ID=self.long(5), Units=self.choice(TEXTS), Binary=self.flag(), UnitsID=self.long(12) if self.chance(0.4) else None, Scalar=self.flag(), Vector=self.flag(), AvForPhases=self.letters("SLV"), DataTypes=self.letters("CtpTX"), **self.names()))
        for _ in range(self.choice((0, 1, 2, 3))):
            self.substance(self.directory(root))
        self.litter(root)

    def substance(self, path):
        mixture = self.chance(0.3)
        composition = self.choice(COMPOSITIONS[:8] if self.oddness < 0.1 else COMPOSITIONS) if mixture else ""
        if not self.is_odd(0.3):
            self.put(path, self.file_name(b"mtd"), self.descriptor(ID=self.long(), Mixture=self.long(1, huge=True) if self.is_odd() else int(mixture), Composition=composition, Comment=self.choice((*TEXTS, None)), CommentID=self.choice((None, self.long(12))), **self.names()))
        for _ in range(self.choice((1, 1, 2, 3)) - self.is_odd()):
            phase = self.directory(path)
            self.put(phase, self.file_name(b"phd"), self.descriptor(ID=self.long(3), Aggreg=self.choice("123") if self.chance(0.9) else self.long(5, huge=True), **self.names()))
            self.heads(phase)
        for _ in range(self.choice((0, 1, 2))):
            change = self.directory(path)
            self.put(change, self.file_name(b"pcd"), self.descriptor(ID=self.long(3), Phase1=self.long(3, huge=True), Phase2=self.long(3, huge=True), **self.names()))
            self.heads(change)
        self.heads(path)
        self.litter(path)

    def heads(self, path):
        for _ in range(self.choice((0, 1, 2, 4))):
            type, vector = self.choice((1, 2, 3, 4, 5)), self.chance(0.4)
            stem = self.choice(STEMS[:5])
            data = self.choice((".", "", "../x.dat", "missing.dat", "/", "data/x.dat", "Größe.dat")) if self.is_odd() else stem.decode() + ".dat"
            type_text = self.choice(("0", "6", "x", "4294967298", "-1")) if self.is_odd() else type
            vector_text = self.flag() if self.is_odd() else int(vector)
            self.put(path, stem + b".prh", self.descriptor(ID=self.long(5, huge=True), Vector=vector_text, Type=type_text, Data=data))
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
        if not os.path.isdir(path):
            with open(path, "wb") as file:
                file.write(data)

    def litter(self, path):
        """What does not belong there: links, pipes, sockets, empty directories, other files."""
        for _ in range(3):
            if self.is_odd():
                name = self.choice((b"Substance1", b"Phase1", b"PC1", b"Property1.prh", b"qmdb.log", b"default.lst", b"x.prh", b"y.phd", b"y.mtd", b"y.prd", b"q"))
                self.litter_one(path + b"/" + name)
        if self.is_odd():
            link = path + b"/" + self.choice((b"Property1.dat", b"Property2.dat", b"Property1.prh"))
            if not os.path.lexists(link):
                os.symlink(self.choice((b"aim", b"missing/aim", b"/dev/full", b"Property3.dat", b".")), link)

    def litter_one(self, path):
        if os.path.lexists(path):
            return
        what = self.choice(("directory", "full", "link", "loop", "pipe", "socket", "file", "outside"))
        if what in ("directory", "full"):
            os.mkdir(path)
        if what == "full":
            self.put(path, self.choice((b"x.phd", b"x.mtd", b"x")), b"ID=1\n")
        elif what in ("link", "loop", "outside"):
            aims = {"link": b"missing", "loop": os.path.basename(path), "outside": b".."}
            os.symlink(aims[what], path)
        elif what == "pipe":
            os.mkfifo(path)
        elif what == "socket":
            with socket.socket(socket.AF_UNIX) as one:
                one.bind(path)
        elif what == "file":
            self.put(os.path.dirname(path), os.path.basename(path), self.choice((b"", b"ID=1\n", MARK)))

    # What hosts pass

    def units(self):
        """A record's text field: at most 50 characters, without an end when there are 50."""
        units = [ord(one) for one in self.choice((*TEXTS, f"new {self.randint(0, 9)}", f"new {self.randint(0, 99)}"))]
        if self.is_odd(0.5):
            units.insert(self.randint(0, len(units)), self.choice((0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xD800, 10, 13, 0, 61)))
        return units[:50]

    def components(self):
        if self.chance(0.1):
            size = self.randint(40, 60)
            return [(self.randint(10**8, 10**10), 1 / size) for _ in range(size)]
        fractions = self.choice(FRACTIONS) if self.chance(0.9) else ()
        return [(self.choice((1, 2, 77, -1, 2**63 - 1)) if self.is_odd() else i, one) for i, one in enumerate(fractions)]

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
