"""How the files of a database hold texts, numbers and lines.

A text is a str; characters beyond Unicode, which the library can hold, have stand-ins there. Numbers
and the locale's encoding are left to the C library.
"""

import bisect
import ctypes
import struct

LINE_LIMIT = 1022
MARK = b"\xef\xbb\xbf"
FIRST_STAND_IN = "\U0010f000"
STAND_INS, REAL_UNITS = {}, {}

libc = ctypes.CDLL(None)
libc.wcstombs.restype = libc.mbstowcs.restype = ctypes.c_size_t
CANNOT_CONVERT = ctypes.c_size_t(-1).value


class Fault(Exception):
    """An exception of the library's system layer."""

    def __init__(self, code, subcode=0):
        super().__init__(f"EQMException with code={code:08X}, subcode={subcode}")


class Failure(Exception):
    """A call or a load that ends early with a status code."""

    def __init__(self, code):
        super().__init__(code)
        self.code = code


def character(unit):
    if unit < 0x110000:
        return chr(unit)
    stand_in = STAND_INS.setdefault(unit, chr(ord(FIRST_STAND_IN) + len(STAND_INS)))
    REAL_UNITS[stand_in] = struct.pack("<I", unit)
    return stand_in


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
    if not REAL_UNITS.keys().isdisjoint(text):
        raise Fault(0x80050002)
    return text.encode("utf-8", "surrogatepass")


def from_utf8(data):
    """UTF-8 without the checks for shortest forms, surrogates and the end of Unicode."""
    units, rest = [], list(reversed(data))
    while rest:
        lead = rest.pop()
        kind = bisect.bisect((0x80, 0xC0, 0xE0, 0xF0, 0xF8), lead)
        if kind in (1, 5):
            raise Fault(0x80050002)
        unit = lead & 0x7F >> kind
        for _ in range(kind - 1):
            if not rest or rest[-1] >> 6 != 2:
                raise Fault(0x80050002)
            unit = unit << 6 | rest.pop() & 0x3F
        units.append(unit)
    return text_of(units)


def narrow(text):
    """The text in the locale's encoding, empty when it cannot be converted."""
    buffer = ctypes.create_string_buffer(6 * len(text) + 1)
    length = libc.wcstombs(buffer, units_of(text) + bytes(4), ctypes.c_size_t(len(buffer)))
    return b"" if length == CANNOT_CONVERT else buffer.raw[:length]


def widen(data):
    units = (ctypes.c_uint32 * (len(data) + 1))()
    length = libc.mbstowcs(units, data + b"\0", ctypes.c_size_t(len(units)))
    return "" if length == CANNOT_CONVERT else text_of(units[:length])


def scan(text, conversion, number):
    return libc.swscanf(units_of(text) + bytes(4), units_of(conversion) + bytes(4), ctypes.byref(number)) == 1


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
    """The double's bits, which tell apart zeros by their sign and make NaNs comparable."""
    return struct.unpack("<Q", struct.pack("<d", number))[0]


def split(text):
    """The parts of a row. Without a blank after the leading ones there are none."""
    last = len(text) - 1
    start = next((i for i, one in enumerate(text) if one != " " or i == last), 0)
    parts, found = [], text.find(" ", start)
    while found >= 0:
        while found < last and text[found + 1] == " ":
            found += 1
        parts.append(text[start:found].replace(" ", ""))
        start = found + 1
        found = text.find(" ", start)
        if found < 0 and start <= last:
            found = last + 1
    return parts


def split_path(path):
    """Directory, name and extension; both slashes separate."""
    start = max(path.rfind("/"), path.rfind("\\")) + 1
    name, _, extension = path[start:].rpartition(".") if "." in path[start:] else (path[start:], "", "")
    return path[: start - 1] if start >= 2 else "", name, extension


def read_lines(data, decode, skip=0):
    """Each line as text with whether it is too long and whether the file ended in it."""
    lines = data.split(b"\n")
    for index, line in enumerate(lines):
        text = decode(line[skip:LINE_LIMIT].split(b"\0")[0])
        yield text[:-1] if text.endswith("\r") else text, len(line) > LINE_LIMIT, index == len(lines) - 1
        skip = 0


def decode_marked(data):
    try:
        return from_utf8(data)
    except Fault:
        return widen(data)


def parse_descriptor(data, report):
    """The keys of a descriptor; report(message, line) takes what is wrong with it."""
    keys, is_marked = {}, data.startswith(MARK)
    for line, too_long, _ in read_lines(data, decode_marked if is_marked else widen, 3 * is_marked):
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
    return MARK + b"".join(to_utf8(f"{key}={keys[key]}\n") for key in sorted(keys))


def composition_text(components):
    return ";".join(f"{write_long(matter)}:{write_double(fraction)}" for matter, fraction in components)


def parse_composition(text, fail):
    """The components of a mixture; fail(code, message) ends the parsing."""
    if ":" not in text and ";" not in text:
        return []
    components, current, collected = [[0, 0.0] for _ in range(text.count(";") + 1)], 0, ""
    for index, one in enumerate(text):
        is_last = index == len(text) - 1
        if not collected and (one in ":;" or is_last):
            fail(-12, "Bad format of a composition line: ")
        if one == ":":
            components[current][0] = read_long(collected)
            collected = ""
        elif one == ";" or is_last:
            fraction = read_double(collected + one if is_last else collected)
            if fraction is None:
                fail(-11, "Bad value of molar fraction: ")
            components[current][1] = fraction
            current, collected = current + 1, ""
        else:
            collected += one
    return components
