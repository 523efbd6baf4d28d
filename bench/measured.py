"""Reads the results of the benchmark programs from Google Benchmark's JSON output.

Benchmarks are named "WHAT/VARIANT". The variant "shipped" is the program's code; any other variant of the same WHAT is
compared with it."""

import json
import statistics
import sys

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_times(path):
    """The median time in nanoseconds by (what, variant), in the order of the program.

    This is processor time, including system time: everything runs on one thread and on cached files, and processor time
    is least affected by other load.
    """
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    samples = {}
    for run in sorted(runs, key=lambda run: (run["family_index"], run["per_family_instance_index"])):
        if run.get("run_type") == "aggregate":
            continue
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        # Google Benchmark appends its settings and arguments.
        what, variant = [part for part in run["run_name"].split("/") if ":" not in part][:2]
        time = run["cpu_time"] * NANOSECONDS[run["time_unit"]]
        speed = run.get("bytes_per_second", 0)
        samples.setdefault((what, variant), []).append((time, speed))
    return {key: tuple(map(statistics.median, zip(*runs))) for key, runs in samples.items()}


def in_words(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def fit_line(points):
    """Fits start and slope by least squares of the relative errors, so that all counts have the same weight."""
    weights = [1 / (time * time) for _, time in points]
    total = sum(weights)
    mean_count = sum(w * count for w, (count, _) in zip(weights, points)) / total
    mean_time = sum(w * time for w, (_, time) in zip(weights, points)) / total
    over = sum(w * (count - mean_count) * (time - mean_time) for w, (count, time) in zip(weights, points))
    under = sum(w * (count - mean_count) ** 2 for w, (count, _) in zip(weights, points))
    slope = over / under
    return mean_time - slope * mean_count, slope
