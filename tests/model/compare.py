#!/usr/bin/env python3
"""Holds the library against an independent model of it, on random trees and random calls.

Every result, every record, every byte of the tree and of the log must be what the model predicts. A case
depends on the seed and its number alone; --case repeats one.
"""

import argparse
import locale
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import traceback

sys.dont_write_bytecode = True  # the tests may lie in a directory that is not ours

from case import Case, Difference
from generate import Generator
from native import Library

BATCH = 250
SECONDS_PER_CASE = 20
MOST_STOPS = 10


def run_case(library, seed, number, directory, keep):
    """The difference found, or None."""
    random = Generator(f"{seed}/{number}")
    locale.setlocale(locale.LC_ALL, "C" if random.chance(0.15) else "C.UTF-8")
    base = os.path.join(directory, f"case{number}")
    os.mkdir(base)
    case, difference = Case(library, base.encode(), random), None
    try:
        case.run()
    except Exception as error:
        what = str(error) if isinstance(error, Difference) else traceback.format_exc()
        difference = "\n".join([*case.calls[-12:], what] + [f"tree: {base}"] * keep)
    for database in case.databases:
        library.close(database)
    if not (keep and difference):
        shutil.rmtree(base)
    return difference


def run_batch(arguments):
    """In a process of its own: one line before each case, the difference after it."""
    library = Library(arguments.library)
    for number in range(arguments.case, arguments.case + arguments.cases):
        print(f"@{number}", flush=True)
        signal.alarm(SECONDS_PER_CASE)
        difference = run_case(library, arguments.seed, number, arguments.batch, arguments.keep)
        if difference:
            print(f"seed {arguments.seed}, case {number}\n{difference}\n", flush=True)
    print("@end", flush=True)


def start_batch(arguments, directory, first, count):
    """Its differences, and the case that it stopped in, if it did."""
    command = [sys.executable, "-X", "utf8", __file__, os.path.abspath(arguments.library), "--batch", directory]
    command += ["--seed", str(arguments.seed), "--case", str(first), "--cases", str(count)]
    command += ["--keep"] * arguments.keep
    # Memory that nobody has set is made to differ from what the model expects.
    environment = {**os.environ, "MALLOC_PERTURB_": "165"}
    ended = subprocess.run(command, stdout=subprocess.PIPE, env=environment, check=False)
    lines = ended.stdout.decode(errors="replace").splitlines()
    text = "\n".join(line for line in lines if not line.startswith("@"))
    last = [line for line in lines if line.startswith("@")][-1:]
    if last == ["@end"]:
        return text, None
    stopped = int(last[0][1:]) if last else first
    reason = signal.Signals(-ended.returncode).name if ended.returncode < 0 else f"code {ended.returncode}"
    return f"{text}\nseed {arguments.seed}, case {stopped}\nthe process ended with {reason}\n", stopped


def run_all(arguments, directory):
    began = time.monotonic()
    start = first = arguments.case or 0
    end = first + 1 if arguments.case is not None else arguments.cases
    differences = stops = 0
    while first < end and stops < MOST_STOPS:
        count = min(BATCH, end - first)
        text, stopped = start_batch(arguments, directory, first, count)
        first = first + count if stopped is None else stopped + 1
        stops += stopped is not None
        differences += sum(line.startswith("seed ") for line in text.splitlines())
        if text.strip():
            print(text)
    print(f"reliability: model: {first - start} cases, {differences} findings, {time.monotonic() - began:.1f} s")
    return 1 if differences else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("library", help="path of libqmDatabase.so.1")
    parser.add_argument("--cases", type=int, default=2000, help="number of cases, 2000 unless given")
    parser.add_argument("--seed", type=int, default=1, help="the same seed gives the same cases")
    parser.add_argument("--case", type=int, help="run this case alone")
    parser.add_argument("--keep", action="store_true", help="keep the trees and say where those that differ are")
    parser.add_argument("--batch", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.batch:
        return run_batch(arguments)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # so that the trees go
    directory = tempfile.mkdtemp(prefix="model-", dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
    try:
        return run_all(arguments, directory)
    finally:
        if not arguments.keep:
            shutil.rmtree(directory, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
