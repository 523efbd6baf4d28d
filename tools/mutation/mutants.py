"""Mutants for scripts/mutate: one change in one file each, and how they are sampled."""
import hashlib
import os
import random
import re

from changes import changes_in
from core import ROOT


def digest(*texts):
    return hashlib.sha256("\0".join(texts).encode()).hexdigest()[:16]


def without_comment(lines):
    """Source text as quoted in tests/equivalent_mutants.txt: without `//` comments, each white space as one blank."""
    return " ".join(re.sub(r"(?m)(^|\s)//.*", "", lines).split())


class Mutant:
    """A file with one change. `key` identifies both; `before` and `after` are the changed lines without comments."""

    def __init__(self, path, text, change):
        self.path, self.text, self.change = path, text, change
        start = text.rfind("\n", 0, change.start) + 1
        end = text.find("\n", change.end)
        self.before = without_comment(text[start:end])
        self.after = without_comment(text[start:change.start] + change.replacement + text[change.end:end])
        self.key = digest(path, text, str(change.start), str(change.end), change.replacement)

    def changed_text(self):
        return self.text[:self.change.start] + self.change.replacement + self.text[self.change.end:]

    def __str__(self):
        return f"src/{self.path}:{self.change.line}: {self.change.what}: {self.before}  ->  {self.after}"


def sample(paths, count, seed, prefixes):
    """`count` groups of mutants. The mutants of a group are interchangeable: they are in neighbouring lines of a file,
    in random order. The number of groups of a file is proportional to its lines, and their mutants do not depend on
    other files."""
    files = {}
    for path in paths:
        if prefixes and not any(path.startswith(prefix) for prefix in prefixes):
            continue
        with open(os.path.join(ROOT, "src", path), encoding="utf-8") as file:
            text = file.read()
        by_line = {}
        for change in changes_in(text):
            by_line.setdefault(change.line, []).append(Mutant(path, text, change))
        files[path] = [by_line[line] for line in sorted(by_line)]
    lines = sum(map(len, files.values()))
    share = {path: count * len(files[path]) / lines for path in files}
    number = {path: min(int(share[path]), len(files[path])) for path in files}
    for path in sorted(files, key=lambda path: number[path] - share[path])[:max(0, count - sum(number.values()))]:
        number[path] = min(number[path] + 1, len(files[path]))
    return [group for path in files for group in groups_of(files[path], number[path], random.Random(f"{seed} {path}"))]


def groups_of(lines, count, generator):
    for i in range(count):
        part = lines[i * len(lines) // count:(i + 1) * len(lines) // count]
        order = [generator.sample(mutants, len(mutants)) for mutants in generator.sample(part, len(part))]
        # The first mutant of each line precedes the second one of any line.
        longest = max(map(len, order))
        yield [mutants[n] for n in range(longest) for mutants in order if n < len(mutants)]
