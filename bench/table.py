"""Prints what the benchmark programs measured as one table.

Reads files of Google Benchmark's JSON output, whose benchmarks are named "WHAT/VARIANT": the shipped code is
"shipped", and any other variant of the same WHAT stands beside it with the ratio of the two. Benchmarks named
"growth/N" are imports of N pictures and get a line through their times. The output of import_memory comes last.
"""

import json
import statistics
import sys

# What a ratio must reach: (what, variant) -> (goal in words, test).
GOALS = {
    ("import of 64", "plain"): ("at least 20 times faster", lambda shipped, other: other / shipped >= 20),
    ("load_sprite of 256 frames", "same bytes"): ("at most 2 times", lambda shipped, other: shipped / other <= 2),
    ("save_sprite of 256 frames", "same bytes"): ("at most 2 times", lambda shipped, other: shipped / other <= 2),
    ("draw_frame", "memcpy"): ("at most 4 times", lambda shipped, other: shipped / other <= 4),
}

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_times(path):
    """Median time in nanoseconds by (what, variant), in the order of the program. Nothing of an empty file, as a
    program leaves it when a filter took all of its benchmarks away.

    Processor time, the system's part included: everything runs on one thread and on files in the system's cache, and
    what else the machine does disturbs it least.
    """
    with open(path, encoding="utf-8") as file:
        text = file.read()
    runs = json.loads(text)["benchmarks"] if text.strip() else []
    samples = {}
    for run in sorted(runs, key=lambda run: (run["family_index"], run["per_family_instance_index"])):
        if run.get("run_type") == "aggregate":
            continue
        if run.get("error_occurred"):
            sys.exit(f"{run['name']}: {run['error_message']}")
        # Google Benchmark appends its settings and arguments.
        what, variant = [part for part in run["run_name"].split("/") if ":" not in part][:2]
        time = run["cpu_time"] * NANOSECONDS[run["time_unit"]]
        samples.setdefault((what, variant), []).append(time)
    return {key: statistics.median(times) for key, times in samples.items()}


def in_words(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def ratio_in_words(shipped, other, variant):
    if variant == "plain":
        return f"{other / shipped:.3g} times faster"
    return f"{shipped / other:.2f} times as long"


def print_pairs(times):
    """Returns whether every goal is reached."""
    reached = True
    print(f"{'what':<46}{'shipped':>11}  {'beside it':<26}{'ratio':<24}goal")
    for what, variant in times:
        if variant != "shipped":
            continue
        shipped = times[what, "shipped"]
        others = [key for key in times if key[0] == what and key[1] != "shipped"]
        if not others:
            print(f"{what:<46}{in_words(shipped):>11}")
        for key in others:
            other = times[key]
            goal = ""
            if key in GOALS:
                words, passes = GOALS[key]
                passed = passes(shipped, other)
                reached = reached and passed
                goal = f"{words}: {'reached' if passed else 'MISSED'}"
            beside = f"{key[1]} {in_words(other)}"
            print(f"{what:<46}{in_words(shipped):>11}  {beside:<26}{ratio_in_words(shipped, other, key[1]):<24}{goal}")
    return reached


def fit_line(points):
    """Least squares of the relative errors, so that the small sets count as much as the large ones."""
    weights = [1 / (time * time) for _, time in points]
    total = sum(weights)
    mean_count = sum(w * count for w, (count, _) in zip(weights, points)) / total
    mean_time = sum(w * time for w, (_, time) in zip(weights, points)) / total
    over = sum(w * (count - mean_count) * (time - mean_time) for w, (count, time) in zip(weights, points))
    under = sum(w * (count - mean_count) ** 2 for w, (count, _) in zip(weights, points))
    slope = over / under
    return mean_time - slope * mean_count, slope


def print_growth(times):
    points = [(int(variant), time) for (what, variant), time in times.items() if what == "growth"]
    if len(points) < 3:
        return
    start, slope = fit_line(points)
    print(f"\ntime of an import of n pictures: {in_words(abs(start))} + n * {in_words(slope)}")
    print(f"{'pictures':>10}{'time':>12}{'per picture':>14}{'line':>12}{'residual':>11}")
    for count, time in points:
        line = start + slope * count
        residual = f"{100 * (time - line) / time:+.1f} %"
        print(f"{count:>10}{in_words(time):>12}{in_words(time / count):>14}{in_words(line):>12}{residual:>11}")


def print_memory(path):
    print("\nmemory of an import, the sprite that it makes told apart")
    print(f"{'pictures':>10}{'before':>12}{'peak':>12}{'sprite':>12}{'peak without both':>20}")
    with open(path, encoding="utf-8") as file:
        for line in file:
            row = json.loads(line)
            rest = row["peak_kb"] - row["before_kb"] - row["sprite_kb"]
            print(f"{row['pictures']:>10}{row['before_kb']:>9} kB{row['peak_kb']:>9} kB"
                  f"{row['sprite_kb']:>9} kB{rest:>17} kB")


def main(memory, *reports):
    times = {}
    for report in reports:
        times.update(read_times(report))
    reached = print_pairs(times)
    print_growth(times)
    print_memory(memory)
    return 0 if reached else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
