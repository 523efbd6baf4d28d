#!/usr/bin/env python3
"""Writes docs/figures.md, which holds every figure that changes with the code or the machine. Each script that measures
replaces its own section of that file.

usage: tools/shared/figures.py TITLE COMMAND <LINES
  replaces the section TITLE with the lines of standard input, recorded by COMMAND"""
import datetime
import os
import re
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
DOCUMENT = os.path.join(ROOT, "docs", "figures.md")


def table(head, rows):
    """The lines of a Markdown table. All columns but the first are aligned to the right."""
    return ["| " + " | ".join(cells) + " |" for cells in (head, ["---"] + ["---:"] * (len(head) - 1), *rows)]


def replace_section(text, title, lines):
    """The document with the lines under the heading `title`; a new section comes last. A section ends at the next
    heading of level 2, so its own headings are of level 3."""
    if any(line.startswith("## ") for line in "\n".join(lines).split("\n")):
        raise ValueError("a section contains no headings of level 2")
    section = "\n".join([f"## {title}", "", *lines]).rstrip("\n") + "\n"
    old = re.compile(rf"^## {re.escape(title)}\n.*?(?=^## |\Z)", re.MULTILINE | re.DOTALL)
    if not old.search(text):
        return text.rstrip("\n") + "\n\n" + section
    return old.sub(lambda _: section + "\n", text, count=1).rstrip("\n") + "\n"


def write_section(title, command, lines):
    """Replaces a section of the document; says which command measured the figures and when."""
    with open(DOCUMENT, encoding="utf-8") as file:
        text = file.read()
    written = f"Measured by `{command}` on {datetime.date.today().isoformat()}."
    text = replace_section(text, title, [written, "", *lines])
    with open(DOCUMENT, "w", encoding="utf-8") as file:
        file.write(text)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    write_section(*sys.argv[1:], sys.stdin.read().splitlines())
