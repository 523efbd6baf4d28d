"""Which files make up the core, the lists in the tree that argue why something about one of its lines stays, and the
tools that measure it."""
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

ROOMS = re.compile(r"(base|platform|pictures|codecs|colour|sprite|import|workbench)/[^/]+\.(h|cpp)$")
DESKTOP = re.compile(r"(workbench/(Form|Desk)|import/Form4)[^/]*$")


def is_core(path):
    """Whether a path below src/ is that of a source file without Qt."""
    return bool(ROOMS.match(path)) and not DESKTOP.match(path)


def have_tools(tools, packages):
    """Installs the packages of Debian where one of the tools is missing."""
    if not all(map(shutil.which, tools)):
        subprocess.run([os.path.join(ROOT, "scripts", "install-packages"), *packages], check=True)


def read_argued(path, columns):
    """The sentences of such a list, by what stands in the columns before them; the first is a path below src/."""
    argued = {}
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            if not line.strip() or line.startswith("#"):
                continue
            parts = [part.strip() for part in line.split(" ### ")]
            if len(parts) != len(columns) or not all(parts):
                sys.exit(f"{path}:{number}: not of the form: {' ### '.join(columns)}")
            argued[(parts[0].removeprefix("src/"), *parts[1:-1])] = parts[-1]
    return argued
