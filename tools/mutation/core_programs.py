"""The test programs of the core."""
import json
import os
import re

from core import ROOT, is_core
from programs import FLAGS, QUICK_SECONDS, Programs, run


class CorePrograms(Programs):
    preset = "coverage"
    flags = FLAGS + ["-O1"]
    wanted = staticmethod(is_core)
    tests = programs = ("core_tests", "fault_tests")

    def __init__(self):
        super().__init__()
        self.reached = self.measure_slow_tests()

    def measure_slow_tests(self):
        """{slow test of core_tests: {path: [executed line, ...]}}, from Clang's coverage counters."""
        kept = os.path.join(self.folder, "reached.json")
        program = os.path.join(self.build, "bin", "core_tests")
        stamp = self.code + str(os.path.getmtime(program))
        if os.path.exists(kept):
            with open(kept, encoding="utf-8") as file:
                known = json.load(file)
            if known["stamp"] == stamp:
                return known["reached"]
        reached = {}
        raw, merged = os.path.join(self.folder, "one.profraw"), os.path.join(self.folder, "one.profdata")
        for test, seconds in self.times["core_tests"].items():
            if seconds > QUICK_SECONDS:
                run([program, f"--gtest_filter={test}"], cwd=self.folder, env={**os.environ, "LLVM_PROFILE_FILE": raw})
                run(["llvm-profdata", "merge", "-sparse", raw, "-o", merged])
                reached[test] = self.lines_of(program, merged)
        with open(kept, "w", encoding="utf-8") as file:
            json.dump({"stamp": stamp, "reached": reached}, file)
        return reached

    @staticmethod
    def lines_of(program, merged):
        report = json.loads(run(["llvm-cov", "export", program, f"-instr-profile={merged}"]))["data"][0]
        lines = {}
        for function in report["functions"]:
            for first, _, last, _, times, file, _, kind in function["regions"]:
                name = os.path.relpath(function["filenames"][file], os.path.join(ROOT, "src"))
                if times and kind == 0 and not name.startswith(".."):
                    lines.setdefault(name, set()).update(range(first, last + 1))
        return {name: sorted(numbers) for name, numbers in lines.items()}

    def may_reach(self, test, mutant):
        # A constant in a header takes effect on other lines.
        if mutant.path.endswith(".h"):
            return True
        lines = range(mutant.change.line - 1, mutant.change.line + 2)
        return not set(self.reached.get(test, {}).get(mutant.path, ())).isdisjoint(lines)

    def tests_to_compile(self, mutant):
        """The tests of the header's folder that contain its name; they call its inline functions."""
        folder = os.path.join(ROOT, "tests", os.path.dirname(mutant.path))
        name = re.compile(r"\b" + re.escape(os.path.basename(mutant.path).removesuffix(".h")) + r"\b")
        return [file for file in self.compilations if os.path.dirname(file) == folder and self.names(file, name)], []

    @staticmethod
    def names(file, name):
        with open(file, encoding="utf-8") as text:
            return name.search(text.read()) is not None
