"""Measures the time to the first paint of the main window, of an empty Qt window and of one with a line of text, in
turn.

Usage: start.py FIRST_PAINT. Prints the medians and their ratios; exits with 1 if the goal is missed. The goal refers to
the empty window, which needs no fonts; the other one shows the time that Qt needs to load fonts for any text.
"""

import statistics
import subprocess
import sys
import time

ROUNDS = 31
MAX_RATIO = 1.2


def run(program, window):
    start = time.perf_counter()
    subprocess.run([program, window], check=True)
    return time.perf_counter() - start


def main():
    program = sys.argv[1]
    times = {"editor": [], "empty": [], "line": []}
    for number in range(ROUNDS + 1):
        for window, taken in times.items():
            elapsed = run(program, window)
            if number > 0:  # the first round warms the caches
                taken.append(elapsed)
    editor, empty, line = (statistics.median(times[window]) * 1e3 for window in ("editor", "empty", "line"))
    reached = editor <= MAX_RATIO * empty
    print_row("against an empty one", editor, empty, f"at most {MAX_RATIO} times: {'reached' if reached else 'MISSED'}")
    print_row("against one with a line of text", editor, line, "")
    sys.exit(0 if reached else 1)


def print_row(comparison, editor, other, goal):
    figure = f"{editor:.0f} ms against {other:.0f} ms, {editor / other:.2f}"
    print(f"{'start to the first painted window, ' + comparison:<67}{figure:<34}{goal}".rstrip())


main()
