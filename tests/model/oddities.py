"""What trees and records are made of: common things, and those that are easily got wrong."""

from fileformat import MARK

TEXTS = (
    "Water", "Water", "Ice", "Steam", "melting", "a b", "", "0", "x=y", " lead", "tail ", "tab\tbed",
    "\U0010ffff", "Вода", "Größe", "ไอน้ำ", "水", "\U0001f9ca", "n" * 48, "n" * 49, "n" * 50, "long" * 20,
)
ODD_UNITS = (0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xD800, 0, 10, 13, 61)
ODD_BYTES = (
    b"\xff", b"\xc3", b"\xe2\x82", b"\xed\xa0\x80", b"\xc1\x81", b"\xc0\x80", b"\xf4\x90\x80\x80", MARK,
    b"\xf7\xbf\xbf\xbf", b"\xf8\x88\x80\x80\x80", b"\x80", b"\0", b"\r", b"\t", b"=", b" ",
)
ODD_LINES = (
    b"", b"no sign", b"=empty key", b"[section]", b"ID =9", b" Name=x", b"name=low", b"\r", b"\r\r", b"Symbol=H2O",
    b"==",
)
ODD_LONGS = (
    " 3", "\t2", "+2", "-1", "-5", "007", "4x", "x", "", "1.5", "0x3", "1 2", "4294967297", "\u00a03", "--1",
    "+", "1,0", "4611686018427387904", "-99999999999999999999",
)
HUGE_LONGS = ("99999999999999999999", "18446744073709551615", "9223372036854775808")
GOOD_COMPOSITIONS = ("1:0.25;2:0.75", "1:0,25;2:0,75", "1:0.25;2:0.75;")
COMPOSITIONS = (
    *GOOD_COMPOSITIONS, "", "12", "12:1", "12:1.0", ":0.5", "1:abc", "1:0.5;2:", "1:", ";", "::", "1:0.5;;2:0.5",
    "1;2", "x:0.5;3:0.5", "1:2:0.5", "1:0.5;2:5", "1:0x1p-2;2:inf", "1: 0.5 ;2:nan", "1:1e400;2:-0.0", "0.5;0.5",
    "1:0.5;2:0.5;3", "1:0.5,5;2:1,000,0", "1:" + "0" * 900 + "1;2:0.5", "-7:.5;99999999999999999999:.5",
)
FRACTIONS = (
    (1.0,), (0.25, 0.75), (0.5, 0.49), (0.5, 0.489), (0.6, 0.41), (0.4, 0.4, 0.2, 3e-16), (0.7, 0.2, 0.1),
    (float("nan"), 5.0), (0.123456789, 0.876),
)
NUMBERS = (
    0.0, -0.0, 1.0, -1.5, 273.15, 1e-5, 1234567.891, 101325.0, 0.1, 1e300, -2e-308, 5e-324, 99999.95, 999999.5,
    123456.5,
)
ODD_VALUES = (float("inf"), float("-inf"), float("nan"), -float("nan"), 1.7976931348623157e308)
ODD_NUMBERS = (
    "abc", "", "1e", "0x", "0x1.8p1", "inf", "-INF", "Infinity", "nan", "nan(7)", "-nan", "1,5", "1,5,0", "1.5.5",
    "1e400", "1e-400", "-0", "+3", ".5", "5.", "5#", "1e+", "--1", "\t7", "1_0", "1d3", "4.9e-324", "0x1p-1074",
    "1" * 400,
)
ODD_ROWS = (
    b"#", b"# 1 2", b" # 1 2", b"", b" ", b"   ", b"P=", b"P=1", b"P=abc", b"P= 1,5 bar", b"p=1", b" P=2", b"P=nan",
    b"\r", b"\r5", b"\r\r", b"\0", b"5\x007 8", b"1 2 3", b"1\t2", b"\xff 1", MARK + b"1 2", b"\xc2\xa05 6", b" 5",
    b"5 ", b"5",
)
ODD_DATA_NAMES = (".", "", "../x.dat", "missing.dat", "/", "data/x.dat", "Größe.dat")
DIRECTORY_NAMES = (
    b"Substance1", b"Substance2", b"Phase1", b"PC1", b"Property1.prh", b"sub dir", b".hidden", b"x.mtd", b"x.phd",
    "вода".encode(),
)
ODD_DIRECTORY_NAMES = (
    b"a\\b", b"end\\", b"\\", b"bad\xff", b"ctl\x01x", b"line\nfeed", b"tab\there", b"sub.prd", b"e\xcc\x81",
    b"del\x7f",
)
STEMS = (b"x", b"Property1", b"Property2", b"", b"a.b", "имя".encode(), b"Substance1")
ODD_STEMS = (b"a\\b", b"bad\xfe", b"ctl\x02", b"Phase1\\", b" ")
# A pipe that is written in place would hang whoever writes.
WRITTEN_IN_PLACE = (b"Property1.dat", b"Property2.dat")
OBSTACLES = (*WRITTEN_IN_PLACE, b"Property1.prh", b"Property2.prh", b"Substance1", b"Phase1", b"PC1")
LITTER = (
    *OBSTACLES, b"qmdb.log", b"default.lst", b"x.prh", b"y.phd", b"y.mtd", b"y.prd", b"x.dat",
)
AIMS = (b"missing", b"missing/aim", b"/dev/full", b"Property3.dat", b".", b"..")
