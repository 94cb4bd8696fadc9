#!/usr/bin/env python3
"""Prints a benchmark run as tables: times beside their floors, growth, closing, memory.

    ratios.py RESULT.json

Of the repetitions of a case the best one counts: noise only adds time. Times are processor time,
which other programs disturb least; of jobs that wait for the disk it is the time that passed.
"""
import collections
import json
import math
import re
import statistics
import sys

FLOOR, OURS = "floor", "library"


def read_cases(path):
    """Returns {(job, shape): {way: best figures}} in the order of the file."""
    cases = collections.defaultdict(dict)
    with open(path, encoding="utf-8") as file:
        runs = [run for run in json.load(file)["benchmarks"] if run["run_type"] == "iteration"]
    for run in sorted(runs, key=lambda run: run["family_index"]):
        name = re.sub(r"/(iterations|repeats):\d+", "", run["run_name"])
        name, waits = re.subn(r"/real_time$", "", name)
        job, _, shape, way = name.split("/", 3)
        scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}[run["time_unit"]]
        figures = {"seconds": run["real_time" if waits else "cpu_time"] * scale}
        figures.update({key: run[key] for key in ("close_seconds", "kept_bytes", "peak_bytes") if key in run})
        best = cases[job, shape].setdefault(way, figures)
        for key, value in figures.items():
            best[key] = min(best[key], value)
    return cases


def time_text(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3), ("µs", 1e-6)):
        if seconds >= size:
            break
    return f"{seconds / size:.3g} {unit}"


def bytes_text(count):
    return f"{count / 1e6:.3g} MB"


def print_table(title, head, rows):
    rows = list(rows)
    if rows:
        print(f"\n### {title}\n\n| {' | '.join(head)} |\n|{'---|' * len(head)}")
        for row in rows:
            print(f"| {' | '.join(row)} |")


def shape_text(shape):
    """substances:100,files:3061 -> 100 substances, 3,061 files"""
    parts = (part.split(":") for part in shape.split(","))
    return ", ".join(f"{int(number):,} {key if number != '1' else key.rstrip('s')}" for key, number in parts)


def time_rows(cases):
    for (job, shape), ways in cases.items():
        if FLOOR not in ways or OURS not in ways or "kept_bytes" in ways[FLOOR]:
            continue
        floor, ours = ways[FLOOR]["seconds"], ways[OURS]["seconds"]
        others = ", ".join(f"{way} {figures['seconds'] / floor:.2f}"
                           for way, figures in ways.items() if way not in (FLOOR, OURS))
        yield job, shape_text(shape), time_text(floor), time_text(ours), f"**{ours / floor:.2f}**", others


def exponent(points):
    """The slope of the line through the logarithms: 1 means twice the size takes twice the time."""
    sizes, times = zip(*points)
    return statistics.linear_regression([math.log(s) for s in sizes], [math.log(t) for t in times]).slope


def growth_rows(cases):
    jobs = collections.defaultdict(lambda: collections.defaultdict(list))
    for (job, shape), ways in cases.items():
        key, _, size = shape.split(",")[0].partition(":")
        for way, figures in ways.items():
            if "kept_bytes" not in figures:
                jobs[job, key][way].append((int(size), figures["seconds"]))
    for (job, key), ways in jobs.items():
        points = ways[OURS]
        if len(points) > 1:
            sizes = ", ".join(f"{size:,}" for size, _ in points)
            others = ", ".join(f"{way} {exponent(found):.2f}" for way, found in ways.items()
                               if way not in (FLOOR, OURS) and len(found) == len(points))
            yield job, key, sizes, f"{exponent(ways[FLOOR]):.2f}", f"{exponent(points):.2f}", others


def close_rows(cases):
    for (job, shape), ways in cases.items():
        if "close_seconds" in ways.get(OURS, {}):
            opening, closing = ways[OURS]["seconds"], ways[OURS]["close_seconds"]
            yield job, shape_text(shape), time_text(closing), f"{100 * closing / opening:.1f} %"


def memory_rows(cases):
    for (job, shape), ways in cases.items():
        if "kept_bytes" not in ways.get(FLOOR, {}) or OURS not in ways:
            continue
        floor, kept, peak = ways[FLOOR]["kept_bytes"], ways[OURS]["kept_bytes"], ways[OURS]["peak_bytes"]
        yield (job.removesuffix(", memory"), shape_text(shape), bytes_text(floor), bytes_text(kept),
               f"**{kept / floor:.2f}**", bytes_text(peak), f"{peak / floor:.2f}")


def main():
    cases = read_cases(sys.argv[1])
    print_table("Times", ["Job", "Shape", "Floor", "Library", "x floor", "Other ways, x floor"], time_rows(cases))
    print_table("Growth: the exponent of the size", ["Job", "With", "Sizes", "Floor", "Library", "Other ways"],
                growth_rows(cases))
    print_table("Closing", ["Job", "Shape", "Time", "Of opening"], close_rows(cases))
    print_table("Memory", ["Job", "Shape", "Floor", "Kept", "x floor", "Peak", "x floor"], memory_rows(cases))


if __name__ == "__main__":
    main()
