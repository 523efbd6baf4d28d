"""The changes that scripts/mutate tries, and how they are drawn."""
import hashlib
import os
import random

from changes import changes_in
from core import ROOT


def digest(*texts):
    return hashlib.sha256("\0".join(texts).encode()).hexdigest()[:16]


class Mutant:
    def __init__(self, path, text, change):
        self.path, self.text, self.change = path, text, change
        start = text.rfind("\n", 0, change.start) + 1
        end = text.find("\n", change.end)
        self.before = " ".join(text[start:end].split())
        self.after = " ".join((text[start:change.start] + change.replacement + text[change.end:end]).split())
        self.key = digest(path, text, str(change.start), str(change.end), change.replacement)

    def changed_text(self):
        return self.text[:self.change.start] + self.change.replacement + self.text[self.change.end:]

    def __str__(self):
        return f"src/{self.path}:{self.change.line}: {self.change.what}: {self.before}  ->  {self.after}"


def sample(paths, count, seed, prefixes):
    """`count` lists of mutants that may stand for each other: neighbouring lines of a file, each list in random order.
    Every file has as many as is its share of the lines, and what is drawn in it depends on no other file."""
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
    drawn = {path: min(int(share[path]), len(files[path])) for path in files}
    for path in sorted(files, key=lambda path: drawn[path] - share[path])[:max(0, count - sum(drawn.values()))]:
        drawn[path] = min(drawn[path] + 1, len(files[path]))
    return [group for path in files for group in groups_of(files[path], drawn[path], random.Random(f"{seed} {path}"))]


def groups_of(lines, count, chance):
    for i in range(count):
        part = lines[i * len(lines) // count:(i + 1) * len(lines) // count]
        order = [chance.sample(mutants, len(mutants)) for mutants in chance.sample(part, len(part))]
        # One of each line before a second one of any.
        longest = max(map(len, order))
        yield [mutants[n] for n in range(longest) for mutants in order if n < len(mutants)]
