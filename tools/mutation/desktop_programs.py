"""The programs of the tests over the controls, the forms and the platform made of Qt."""
import os
import sys
import time

from core import ROOT, is_desktop
from programs import BUILD, FLAGS, SRC, Programs, Stage, run

FIRST_LOOK = "Scales.test_the_windows_are_as_designed"
LOOK = os.path.join(ROOT, "tests", "golden", "golden_test.py")


class LookStage(Stage):
    """Some of the comparisons of windows with the design sheet."""

    def __init__(self, tests, seconds, inspect):
        super().__init__("walkthrough", {test: seconds for test in tests})
        self.programs, self.inspect = ("walkthrough", "desktop_tests"), inspect

    def command(self, paths, scratch):
        return [sys.executable, LOOK, paths["walkthrough"], self.inspect, os.path.join(ROOT, "samples"),
                paths["desktop_tests"], "--failfast", *self.tests]


class DesktopPrograms(Programs):
    preset = "dev"
    folder = os.path.join(BUILD, "desktop")
    flags = FLAGS + ["-O0", "-fPIC"]
    wanted = staticmethod(is_desktop)
    library = "libvarnoth_desktop.a"
    tests = ("desktop_tests", "desktop_fault_tests")
    programs = tests + ("walkthrough",)
    helpers = ("inspect",)
    # What Qt generates from the headers is linked as it is: it tells names, which no change alters.
    generated = "CMakeFiles/varnoth_desktop.dir/varnoth_desktop_autogen/mocs_compilation.cpp.o"

    def __init__(self):
        super().__init__()
        self.includes = self.find_includes()
        self.reached = {}
        self.look_seconds = self.measured("walkthrough", self.measure_look)

    def make_plain(self):
        super().make_plain()
        self.objects["generated"] = self.generated

    def find_includes(self):
        """File of a test program to the paths below src/ that it includes."""
        linked = set().union(*self.links.values())
        objects = {words[words.index("-o") + 1]: file for file, words in self.compilations.items()}
        includes, own = {}, set()
        for line in run(["ninja", "-C", self.build, "-t", "deps"]).split("\n"):
            name = line.split(": ")[0]
            if name in linked and name in objects:
                own = includes.setdefault(objects[name], set())
            elif not line.startswith(" "):
                own = set()
            else:
                path = os.path.relpath(os.path.join(self.build, line.strip()), SRC)
                if not path.startswith(".."):
                    own.add(path)
        return includes

    def measure_look(self, name):
        paths = {program: self.link_plain(program) for program in ("walkthrough", "desktop_tests")}
        stage, start = LookStage([FIRST_LOOK], 60, self.inspect), time.monotonic()
        if stage.passes(paths, self.folder) != "passed":
            sys.exit(f"mutate: {FIRST_LOOK} does not pass as it is")
        return time.monotonic() - start

    @property
    def inspect(self):
        return os.path.join(self.build, "bin", "inspect")

    def room_of(self, path):
        folder = os.path.dirname(path)
        return "controls" if folder.startswith("controls") else folder if folder == "platform/qt" else "desktop"

    def stages_for(self, mutant):
        return super().stages_for(mutant) + [LookStage([FIRST_LOOK], self.look_seconds, self.inspect),
                                             LookStage(["Scales", "Desktop", "Fonts"], 10 * self.look_seconds,
                                                       self.inspect)]

    def may_reach(self, test, mutant):
        file = os.path.join(ROOT, "tests", self.file_of(test))
        if file not in self.reached:
            self.reached[file] = self.reached_from(self.includes.get(file, ()))
        return mutant.path in self.reached[file]

    def reached_from(self, paths):
        """What lies behind some headers: them, their source files, and what those include in turn."""
        found, new = set(), set(paths)
        while new:
            found |= new
            sources = {path.removesuffix(".h") + ".cpp" for path in new}
            new = set().union(*(self.users[path] for path in sources if path in self.users)) - found
        return found

    def tests_to_compile(self, mutant):
        """All that include a header; those of its own room first."""
        files = [file for file, paths in self.includes.items() if mutant.path in paths]
        folder = os.path.join(ROOT, "tests", self.room_of(mutant.path)) + os.sep
        own = [file for file in files if file.startswith(folder)]
        return own, [file for file in files if file not in own]
