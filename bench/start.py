"""Times the start of the main window up to its first paint beside that of an empty window of Qt and of one with a line
of text, turn by turn.

Usage: start.py FIRST_PAINT. Prints the medians and their ratios; ends with 1 when the goal is missed. The goal is set
beside the empty window, which needs no fonts; what Qt takes to load them for any text is seen beside the other one.
"""

import statistics
import subprocess
import sys
import time

ROUNDS = 31
MOST = 1.2


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
    reached = editor <= MOST * empty
    print_row("beside an empty one", editor, empty, f"at most {MOST} times: {'reached' if reached else 'MISSED'}")
    print_row("beside one with a line of text", editor, line, "")
    sys.exit(0 if reached else 1)


def print_row(beside, editor, other, goal):
    figure = f"{editor:.0f} ms beside {other:.0f} ms, {editor / other:.2f}"
    print(f"{'start to the first painted window, ' + beside:<66}{figure:<34}{goal}".rstrip())


main()
