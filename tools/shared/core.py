"""Shared by the scripts that measure the tests: which files belong to the core and which to the desktop, the lists of
justified exceptions, and the tools that are needed."""
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

CORE_FOLDERS = re.compile(r"(base|platform|pictures|codecs|colour|sprite|import|workbench)/[^/]+\.(h|cpp)$")
DESKTOP = re.compile(r"(workbench/(Form|FormCoordinator)|import/Form4)[^/]*$")


def is_core(path):
    """Whether a path below src/ belongs to the core, which does not use Qt."""
    return bool(CORE_FOLDERS.match(path)) and not DESKTOP.match(path)


def is_desktop(path):
    """Whether a path below src/ is that of a control, a form or a part of the platform made of Qt."""
    return bool(re.match(r"(controls|platform/qt)/.*\.(h|cpp)$", path)) or bool(DESKTOP.match(path))


def source_files(wanted):
    """The paths below src/ that are wanted, in order."""
    root = os.path.join(ROOT, "src")
    paths = [os.path.relpath(os.path.join(folder, name), root)
             for folder, _, names in os.walk(root) for name in names]
    return sorted(filter(wanted, paths))


def have_tools(tools, packages):
    """Installs the Debian packages if one of the tools is missing."""
    if not all(map(shutil.which, tools)):
        subprocess.run([os.path.join(ROOT, "scripts", "install-packages"), *packages], check=True)


def read_argued(path, columns):
    """Reads a list of justified exceptions: maps the other columns, first a path below src/, to the reason."""
    argued = {}
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        for number, line in enumerate(file, 1):
            if not line.strip() or line.startswith("#"):
                continue
            parts = [part.strip() for part in line.split(" ### ")]
            if len(parts) != len(columns) or not all(parts):
                sys.exit(f"{path}:{number}: expected {' ### '.join(columns)}")
            argued[(parts[0].removeprefix("src/"), *parts[1:-1])] = parts[-1]
    return argued
