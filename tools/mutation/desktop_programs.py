"""The test programs of the code that uses Qt."""
import os
import sys
import time

from core import ROOT, is_desktop
from programs import BUILD, FLAGS, SRC, Programs, Stage, run

FIRST_GOLDEN_TEST = "Scales.test_windows_match_the_layout_reference"
GOLDEN_TESTS = os.path.join(ROOT, "tests", "golden", "golden_test.py")


class GoldenStage(Stage):
    """Some tests of tests/golden/golden_test.py."""

    def __init__(self, tests, seconds, inspect):
        super().__init__("walkthrough", {test: seconds for test in tests})
        self.programs, self.inspect = ("walkthrough", "desktop_tests"), inspect

    def command(self, paths, scratch):
        return [sys.executable, GOLDEN_TESTS, paths["walkthrough"], self.inspect, os.path.join(ROOT, "samples"),
                paths["desktop_tests"], "--failfast", *self.tests]


class DesktopPrograms(Programs):
    preset = "dev"
    folder = os.path.join(BUILD, "desktop")
    flags = FLAGS + ["-O0", "-fPIC"]
    wanted = staticmethod(is_desktop)
    tests = ("desktop_tests", "desktop_fault_tests")
    programs = tests + ("walkthrough",)
    helpers = ("inspect",)

    def __init__(self):
        super().__init__()
        self.includes = self.find_includes()
        self.reached = {}
        self.golden_seconds = self.measured("walkthrough", self.measure_golden)

    def compile_original(self):
        super().compile_original()
        # The meta-objects contain only names, which no mutation changes, so the build's objects are linked.
        for target in sorted(self.targets):
            file = os.path.join(self.build, "src", f"{target}_autogen", "mocs_compilation.cpp")
            if file in self.compilations:
                self.objects[file] = self.object_of(file)

    def find_includes(self):
        """{source file of a test program: paths below src/ that it includes}"""
        linked = set().union(*self.links.values())
        objects = {self.object_of(file): file for file in self.compilations}
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

    def measure_golden(self, name):
        paths = {program: self.link_original(program) for program in ("walkthrough", "desktop_tests")}
        stage, start = GoldenStage([FIRST_GOLDEN_TEST], 60, self.inspect), time.monotonic()
        if stage.passes(paths, self.folder) != "passed":
            sys.exit(f"mutate: {FIRST_GOLDEN_TEST} fails without mutations")
        return time.monotonic() - start

    @property
    def inspect(self):
        return os.path.join(self.build, "bin", "inspect")

    def stages_for(self, mutant):
        return super().stages_for(mutant) + [GoldenStage([FIRST_GOLDEN_TEST], self.golden_seconds, self.inspect),
                                             GoldenStage(["Scales", "Desktop", "Fonts"], 10 * self.golden_seconds,
                                                         self.inspect)]

    def may_reach(self, test, mutant):
        file = os.path.join(ROOT, "tests", self.file_of(test))
        if file not in self.reached:
            self.reached[file] = self.reached_from(self.includes.get(file, ()))
        return mutant.path in self.reached[file]

    def reached_from(self, paths):
        """The transitive closure of some headers: the headers, their source files, and what those include."""
        found, new = set(), set(paths)
        while new:
            found |= new
            sources = {path.removesuffix(".h") + ".cpp" for path in new}
            new = set().union(*(self.users[path] for path in sources if path in self.users)) - found
        return found

    def tests_to_compile(self, mutant):
        """All test files that include a header; those in its test folder first."""
        files = [file for file, paths in self.includes.items() if mutant.path in paths]
        folder = os.path.join(ROOT, "tests", self.test_folder_of(mutant.path)) + os.sep
        own = [file for file in files if file.startswith(folder)]
        return own, [file for file in files if file not in own]
