"""Shared by the scripts that measure the tests: which files belong to the core and which to the desktop, the lists of
justified exceptions, and the installation of tools."""
import os
import shutil
import subprocess
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))

CORE_FOLDERS = ("core/",)
DESKTOP_FOLDERS = ("qt/", "desktop/")
ENDINGS = (".h", ".cpp")
OTHER_SYSTEM = "_windows.cpp"


def is_core(path):
    """Whether a path below src/ is a source file of the core, which does not use Qt."""
    return path.startswith(CORE_FOLDERS) and path.endswith(ENDINGS)


def is_desktop(path):
    """Whether a path below src/ is a source file that uses Qt; main.cpp is neither core nor desktop."""
    return path.startswith(DESKTOP_FOLDERS) and path.endswith(ENDINGS)


def source_files(wanted):
    """The sorted paths below src/ for which `wanted` is true, without those that are compiled only for Windows."""
    root = os.path.join(ROOT, "src")
    paths = [os.path.relpath(os.path.join(folder, name), root)
             for folder, _, names in os.walk(root) for name in names if not name.endswith(OTHER_SYSTEM)]
    return sorted(filter(wanted, paths))


def have_tools(tools, packages):
    """Installs the Debian packages if a tool is missing."""
    if not all(map(shutil.which, tools)):
        subprocess.run([os.path.join(ROOT, "scripts", "install-packages"), *packages], check=True)


def read_argued(path, columns):
    """Reads a list of justified exceptions. The first column is a path below src/, the last one the reason; the result
    maps the columns before the reason to it."""
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
