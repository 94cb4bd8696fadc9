"""How the files of a database hold texts, numbers, lines and values.

A text is a str. Code points beyond Unicode, which the library's 32-bit characters can hold and a str
cannot, have stand-ins. Numbers and the locale's encoding are the C library's own.
"""

import ctypes
import struct

LINE_LIMIT = 1022
MARK = b"\xef\xbb\xbf"

libc = ctypes.CDLL(None)
libc.wcstombs.restype = libc.mbstowcs.restype = ctypes.c_size_t
CANNOT_CONVERT = ctypes.c_size_t(-1).value

FIRST_STAND_IN = "\U0010f000"
STAND_INS, REAL_UNITS = {}, {}


class Fault(Exception):
    """An exception of the library's system layer."""

    def __init__(self, code, subcode=0):
        super().__init__(f"EQMException with code={code:08X}, subcode={subcode}")


class Failure(Exception):
    """A call or a load that ends early with a status code."""

    def __init__(self, code):
        super().__init__(code)
        self.code = code


# Characters


def character(unit):
    if unit < 0x110000:
        return chr(unit)
    if unit not in STAND_INS:
        STAND_INS[unit] = chr(ord(FIRST_STAND_IN) + len(STAND_INS))
        REAL_UNITS[STAND_INS[unit]] = struct.pack("<I", unit)
    return STAND_INS[unit]


def text_of(units):
    return "".join(map(character, units))


def units_of(text):
    """The text as the library's characters, little-endian."""
    if max(text, default="") < FIRST_STAND_IN:
        return text.encode("utf-32-le", "surrogatepass")
    return b"".join(REAL_UNITS.get(one) or one.encode("utf-32-le", "surrogatepass") for one in text)


def field(text, size):
    """What a record's text field of this size holds."""
    return units_of(text[: size - 1]).ljust(4 * size, b"\0")


def to_utf8(text):
    if REAL_UNITS and not REAL_UNITS.keys().isdisjoint(text):
        raise Fault(0x80050002)
    return text.encode("utf-8", "surrogatepass")


def from_utf8(data):
    """UTF-8 without the checks for shortest forms, surrogates and the end of Unicode."""
    if data.isascii():
        return data.decode("ascii")
    units, rest = [], list(data)
    while rest:
        lead = rest.pop(0)
        more = 0 if lead < 0x80 else 1 if lead >> 5 == 6 else 2 if lead >> 4 == 14 else 3 if lead >> 3 == 30 else None
        if more is None or len(rest) < more or any(byte >> 6 != 2 for byte in rest[:more]):
            raise Fault(0x80050002)
        unit = lead & (0x7F if more == 0 else 0x3F >> more)
        for _ in range(more):
            unit = unit << 6 | rest.pop(0) & 0x3F
        units.append(unit)
    return text_of(units)


def narrow(text):
    """The text in the locale's encoding, empty when it cannot be converted."""
    wide = units_of(text) + bytes(4)
    buffer = ctypes.create_string_buffer(6 * len(text) + 1)
    length = libc.wcstombs(buffer, wide, ctypes.c_size_t(len(buffer)))
    return b"" if length == CANNOT_CONVERT else buffer.raw[:length]


def widen(data):
    if data.isascii():
        return data.decode("ascii")
    units = (ctypes.c_uint32 * (len(data) + 1))()
    length = libc.mbstowcs(units, data + b"\0", ctypes.c_size_t(len(units)))
    return "" if length == CANNOT_CONVERT else text_of(units[:length])


# Numbers


def scan(text, format, number):
    return libc.swscanf(units_of(text) + bytes(4), units_of(format) + bytes(4), ctypes.byref(number)) == 1


def read_long(text):
    number = ctypes.c_long()
    return number.value if scan(text, "%ld", number) else 0


def read_double(text):
    """The number, None when the text does not begin with one."""
    number = ctypes.c_double()
    return number.value if scan(text.replace(",", ".", 1), "%lg", number) else None


def write_long(number):
    return str(number % 2**64)


def write_double(number):
    buffer = ctypes.create_string_buffer(100)
    libc.snprintf(buffer, ctypes.c_size_t(100), b"%lg", ctypes.c_double(number))
    return buffer.value.decode()


def to_int(number):
    return (number + 2**31) % 2**32 - 2**31


def bits(number):
    """The double's bits, which tell apart zeros by their sign and equal NaNs."""
    return struct.unpack("<Q", struct.pack("<d", number))[0]


# Lines


def split(text):
    """The parts of a row; a row without a blank after its leading ones has none."""
    last = len(text) - 1
    start = 0
    while last > 0 and start < last and text[start] == " ":
        start += 1
    parts, found = [], text.find(" ", start)
    if found < 0:
        return parts
    while True:
        while found < last and text[found + 1] == " ":
            found += 1
        parts.append(text[start:found].replace(" ", ""))
        start = found + 1
        if start > last:
            return parts
        found = text.find(" ", start)
        if found < 0:
            found = last + 1


def split_path(path):
    """Directory, name and extension; both slashes separate."""
    start = max(path.rfind("/"), path.rfind("\\")) + 1
    name, extension = path[start:], ""
    if "." in name:
        name, extension = name.rsplit(".", 1)
    return path[: start - 1] if start >= 2 else "", name, extension


def raw_lines(data):
    """Each line with whether it is too long and whether the file ended in it."""
    lines = data.split(b"\n")
    for index, line in enumerate(lines):
        yield line[:LINE_LIMIT], len(line) > LINE_LIMIT, index == len(lines) - 1


def trim(line):
    return line[:-1] if line.endswith("\r") else line


def decode_marked(data):
    try:
        return from_utf8(data)
    except Fault:
        return widen(data)


def parse_descriptor(data, report):
    """The keys of a descriptor; report(head, line) takes what is wrong with it."""
    keys, decode = {}, widen
    for index, (raw, too_long, _) in enumerate(raw_lines(data)):
        if index == 0 and raw.startswith(MARK):
            raw, decode = raw[3:], decode_marked
        line = trim(decode(raw.split(b"\0")[0]))
        key, sign, value = line.partition("=")
        if sign:
            keys[key] = value
        elif line:
            report("File format error: ", line)
        if too_long:
            report("File format error (line too long): ", None)
            break
    return keys


def compose_descriptor(keys):
    return MARK + b"".join(to_utf8(key) + b"=" + to_utf8(keys[key]) + b"\n" for key in sorted(keys))


def composition_text(components):
    return ";".join(f"{write_long(matter)}:{write_double(fraction)}" for matter, fraction in components)


def parse_composition(text, fail):
    """The components of a mixture; fail(code, message) ends the parsing."""
    if ":" not in text and ";" not in text:
        return []
    components, current, collected = [[0, 0.0] for _ in range(text.count(";") + 1)], 0, ""
    for index, one in enumerate(text):
        is_last = index == len(text) - 1
        if one == ":":
            if not collected:
                fail(-12, "Bad format of a composition line: ")
            components[current][0] = read_long(collected)
            collected = ""
        elif one == ";" or is_last:
            if not collected:
                fail(-12, "Bad format of a composition line: ")
            fraction = read_double(collected + one if is_last else collected)
            if fraction is None:
                fail(-11, "Bad value of molar fraction: ")
            components[current][1] = fraction
            current, collected = current + 1, ""
        else:
            collected += one
    return components
