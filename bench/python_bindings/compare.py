"""Holds the Python module, which is ctypes, against cffi, pybind11 and a C extension: compare.py BUILD [ROUNDS]

BUILD is the folder of a Release build, in which the bindings are built, too. It needs the packages of requirements.txt,
the compilers cc and c++ and the headers of Python:

    python3 -m venv build-bindings
    build-bindings/bin/pip install --require-hashes -r bench/python_bindings/requirements.txt
    build-bindings/bin/python bench/python_bindings/compare.py BUILD

Every binding reads the same mixed values in turn, and makes of each the same array: read-only, its numbers copied once.
"Alone" calls the binding with numbers that lie ready. "In the module" is what a user of the module does, who asks a
parameter for its value, and the value for its array; the binding is in the place of the module's own calls by ctypes.
The least processor time counts.
"""

from __future__ import annotations

import contextlib
import functools
import importlib
import os
import subprocess
import sys
import sysconfig
import tempfile
import threading
import time
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

ROOT = Path(__file__).resolve().parents[2]
HERE = Path(__file__).resolve().parent
BUILD = Path(sys.argv[1]).resolve()
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 30
MODULES = BUILD / "python_bindings"
SUBSTANCES = 1000

try:
    import cffi
    import numpy as np
    import pybind11
except ImportError as error:
    sys.exit(f"compare.py is skipped: {error}; install the packages of {HERE / 'requirements.txt'}")

os.environ["QMDB_LIBRARY"] = str(BUILD / "libqmDatabase.so.1")
sys.path[:0] = [str(ROOT / "python/src"), str(MODULES)]
import qmdatabase

Read = Callable[[int, int, int, int, int], tuple[int, bool, Any, bytes]]

DECLARATIONS = """
typedef struct { int type; bool isVector; ...; } IDbData;
typedef struct { double value; ...; } IDbDataConst;
typedef struct { double* rows; long count; ...; } Table;
typedef struct { double firstArg; long count; double* rows; ...; } Subtable;
typedef struct { Subtable* subtables; long count; ...; } Table2D;
int qmdbGetParamValue(long, long, long, long, long, IDbData**);
int qmdbDestroyParameterData(IDbData**);
"""
# Rows of all kinds are numbers here.
PREAMBLE = """
#include "qmdatabase/QMNative.h"
typedef struct { IDbData head; double* rows; long count; } Table;
typedef struct { double firstArg; long count; double* rows; } Subtable;
typedef struct { IDbData head; Subtable* subtables; long count; } Table2D;
"""


def compile_module(name: str, source: Path) -> None:
    compiler = ["c++", "-std=c++17"] if source.suffix == ".cpp" else ["cc"]
    includes = [ROOT / "include", sysconfig.get_path("include"), np.get_include(), pybind11.get_include()]
    target = MODULES / (name + sysconfig.get_config_var("EXT_SUFFIX"))
    options = [
        "-O2",
        "-DNDEBUG",
        "-shared",
        "-fPIC",
        "-fvisibility=hidden",
        "-DNPY_NO_DEPRECATED_API=NPY_2_0_API_VERSION",
    ]
    libraries = [f"-L{BUILD}", "-lqmDatabase", f"-Wl,-rpath,{BUILD}"]
    subprocess.run(
        [*compiler, *options, *(f"-I{one}" for one in includes), source, "-o", target, *libraries], check=True
    )


def build() -> None:
    MODULES.mkdir(exist_ok=True)
    maker = cffi.FFI()
    maker.cdef(DECLARATIONS)
    maker.set_source("cffiModule", PREAMBLE)
    with contextlib.redirect_stdout(None):
        maker.emit_c_code(str(MODULES / "cffiModule.c"))
    compile_module("cffiModule", MODULES / "cffiModule.c")
    compile_module("pybindModule", HERE / "pybindModule.cpp")
    compile_module("extension", HERE / "extension.c")
    importlib.invalidate_caches()


def read_by_cffi() -> Read:
    module = importlib.import_module("cffiModule")
    ffi, lib = module.ffi, module.lib
    pointer = ffi.new("IDbData**")
    constant_type, table_type, table_2d_type = map(ffi.typeof, ("IDbDataConst*", "Table*", "Table2D*"))
    buffer, cast, array, float64 = ffi.buffer, ffi.cast, np.ndarray, np.dtype("<f8")

    def content(value: Any) -> tuple[bytes, bytes]:
        row_size = 32 if value.isVector else 16
        if value.type == 1:
            return buffer(ffi.addressof(cast(constant_type, value), "value"), 24 if value.isVector else 8)[:], b""
        if value.type <= 3:
            table = cast(table_type, value)
            return buffer(table.rows, table.count * row_size)[:], b""
        table = cast(table_2d_type, value)
        subtables = ffi.unpack(table.subtables, table.count)
        heads = buffer(table.subtables, table.count * 24)[:]
        return b"".join([buffer(one.rows, one.count * row_size) for one in subtables]), heads

    def read(*ids: int) -> tuple[int, bool, Any, bytes]:
        code = lib.qmdbGetParamValue(*ids, pointer)
        if code:
            raise RuntimeError(f"code {code}")
        try:
            value = pointer[0]
            type_, vector = value.type, value.isVector
            rows, heads = content(value)
        finally:
            lib.qmdbDestroyParameterData(pointer)
        if type_ == 1:
            return type_, vector, array((3,) if vector else (), float64, rows), heads
        if vector:
            return type_, vector, array((len(rows) // 32, 3), float64, rows, 8, (32, 8)), heads
        return type_, vector, array((len(rows) // 16,), float64, rows, 8, (16,)), heads

    return read


def ids_of(parameter: qmdatabase.Parameter) -> tuple[int, int, int]:
    owner = parameter.owner
    phase = owner.id if isinstance(owner, qmdatabase.Phase) else -1
    change = owner.id if isinstance(owner, qmdatabase.PhaseChange) else -1
    return owner.substance_id, phase, change


@contextlib.contextmanager
def installed(database: qmdatabase.Database, read: Read) -> Iterator[None]:
    """Lets the module read values by a binding, whose values are taken as the fields of the module's own."""
    calls, own_values = database._calls, qmdatabase.Value.values
    number, lock = calls._id, threading.RLock()

    def value(parameter: Any) -> Any:
        with lock:
            return read(number, *parameter.owner.ids, parameter.id)

    calls.value = value
    qmdatabase.Value.values = property(lambda value: value._fields[2])
    yield
    qmdatabase.Value.values = own_values
    del calls.value


def read_alone(ids: list[tuple[int, int, int, int, int]], read: Read) -> None:
    for one in ids:
        _ = read(*one)[2]


def read_in_module(parameters: tuple[qmdatabase.Parameter, ...]) -> None:
    for parameter in parameters:
        _ = parameter.value().values


def seconds(job: Callable[[], None]) -> float:
    begin = time.process_time()
    job()
    return time.process_time() - begin


def require_equal(database: qmdatabase.Database, name: str, read: Read) -> None:
    for parameter in database.parameters:
        wanted, raw = parameter.value(), read(database._calls._id, *ids_of(parameter), parameter.id)
        same = (wanted._raw.type, wanted._raw.vector, wanted._raw.heads[:16]) == (*raw[:2], raw[3][:16])
        if not same or raw[2].flags.writeable or not np.array_equal(wanted.values, raw[2]):
            sys.exit(f"compare.py: {name} reads {parameter!r} otherwise")


def measure(database: qmdatabase.Database, bindings: dict[str, Read]) -> Iterator[tuple[str, float, float]]:
    """One round: seconds of each binding, alone and in the module."""
    parameters = database.parameters
    ids = [(database._calls._id, *ids_of(one), one.id) for one in parameters]
    yield "ctypes", float("nan"), seconds(lambda: read_in_module(parameters))
    for name, read in bindings.items():
        alone = seconds(functools.partial(read_alone, ids, read))
        with installed(database, read):
            yield name, alone, seconds(lambda: read_in_module(parameters))


def compare(tree: Path) -> None:
    bindings = {"cffi": read_by_cffi()}
    bindings.update((name, importlib.import_module(name).read) for name in ("pybindModule", "extension"))
    with qmdatabase.open(tree) as database:
        parameters = database.parameters
        for one in parameters:
            one.owner.__dict__["ids"] = ids_of(one)
        for name, read in bindings.items():
            require_equal(database, name, read)
        least: dict[str, tuple[float, float]] = {}
        loop_seconds = float("inf")
        for _ in range(ROUNDS):
            command = [BUILD / "bench/value_loop", tree, "1"]
            loop_seconds = min(loop_seconds, float(subprocess.check_output(command, text=True).split()[1]))
            for name, alone, in_module in measure(database, bindings):
                before = least.get(name, (alone, in_module))
                least[name] = min(before[0], alone), min(before[1], in_module)
        show(least, loop_seconds, len(parameters))


def show(least: dict[str, tuple[float, float]], loop_seconds: float, count: int) -> None:
    print(f"The loop in C++ takes {loop_seconds / count * 1e6:.2f} µs a value.\n")
    print("| Binding | Alone | In the module | ctypes, x alone | ctypes, x in the module |\n|---|---|---|---|---|")
    titles = {"cffi": "cffi, API mode", "pybindModule": "pybind11", "extension": "C extension"}
    ours = least["ctypes"][1]
    print(f"| ctypes |  | {ours / count * 1e6:.2f} µs |  |  |")
    for name, title in titles.items():
        alone, in_module = least[name]
        print(
            f"| {title} | {alone / count * 1e6:.2f} µs | {in_module / count * 1e6:.2f} µs "
            f"| {ours / alone:.2f} | **{ours / in_module:.2f}** |"
        )


def main() -> None:
    build()
    shm = Path("/dev/shm")
    with tempfile.TemporaryDirectory(dir=shm if shm.is_dir() else None) as directory:
        tree = Path(directory, "tree")
        generator = [BUILD / "bench/generate_tree", tree, str(SUBSTANCES)]
        subprocess.run(generator, check=True, stdout=subprocess.DEVNULL)
        compare(tree)


main()
