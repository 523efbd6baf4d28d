"""The programs of the tests over the core as it is and over a core with one change, for scripts/mutate."""
import json
import os
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile

from core import ROOT
from mutants import core_files, digest

COVERAGE = os.path.join(ROOT, "build", "coverage")
BUILD = os.path.join(ROOT, "build", "mutate")
PROGRAMS = ("core_tests", "fault_tests")
# Warnings are no matter here: a change may leave a variable unused.
FLAGS = ["-std=c++20", "-O1", "-w", "-D_GLIBCXX_ASSERTIONS", "-D_FILE_OFFSET_BITS=64",
         "-fbracket-depth=1024"]
QUICK_SECONDS = 0.15
MEMORY = 8 << 30
FILE_SIZE = 1 << 30


def run(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **options)
    if done.returncode != 0:
        print(done.stdout[-4000:], file=sys.stderr)
        sys.exit(f"mutate: this failed: {' '.join(command)[:300]}")
    return done.stdout


class Limits:
    """What a program of the tests may use; endless loops and endless lists end here."""

    def __init__(self, seconds):
        self.cpu = int(3 * seconds + 4)
        self.wall = 30 * self.cpu

    def apply(self):
        os.setpgid(0, 0)
        resource.setrlimit(resource.RLIMIT_CPU, (self.cpu, self.cpu))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Stage:
    """Some tests of one program, and how long they take when nothing is wrong."""

    def __init__(self, program, tests, seconds):
        self.program, self.tests, self.seconds = program, tests, seconds

    def passes(self, path, scratch):
        """"passed", "failed" or "limit"."""
        limits = Limits(self.seconds)
        environment = {**os.environ, "TMPDIR": scratch, "LLVM_PROFILE_FILE": "/dev/null",
                       "GTEST_FLAGFILE": "", "GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1"}
        listed = os.path.join(scratch, "tests")
        with open(listed, "w", encoding="utf-8") as file:
            file.write("--gtest_filter=" + ":".join(self.tests))
        process = subprocess.Popen([path, f"--gtest_flagfile={listed}"], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, cwd=scratch, env=environment,
                                   preexec_fn=limits.apply)
        try:
            status = process.wait(limits.wall)
        except subprocess.TimeoutExpired:
            status = -9
        try:
            os.killpg(process.pid, 9)
        except ProcessLookupError:
            pass
        process.wait()
        return "passed" if status == 0 else "limit" if status in (-9, -24) else "failed"


class Programs:
    """The test programs: how they are linked, their tests, and how long each takes."""

    def __init__(self):
        os.makedirs(BUILD, exist_ok=True)
        run(["cmake", "--preset", "coverage"], cwd=ROOT)
        run(["cmake", "--build", "--preset", "coverage", "-j", "2", "--target", *PROGRAMS], cwd=ROOT)
        with open(os.path.join(COVERAGE, "compile_commands.json"), encoding="utf-8") as file:
            self.compilations = json.load(file)
        self.linker = [f"-fuse-ld={name}" for name in ("lld", "gold") if shutil.which("ld." + name)][:1]
        self.links = {name: self.link_command(name) for name in PROGRAMS}
        self.make_plain_core()
        self.times = self.measure()
        self.rooms = self.rooms_of_suites()
        self.reached = self.what_slow_tests_reach()

    def link_command(self, name):
        command = run(["ninja", "-C", COVERAGE, "-t", "commands", name]).strip().split("\n")[-1]
        words = command.split("&&")[1].split()
        words = [word for word in words if not word.endswith("libvarnoth_core.a") and word != "ccache"]
        del words[words.index("-o"):words.index("-o") + 2]
        return words

    def link(self, name, objects, target, tests_instead=()):
        words = self.links[name]
        instead = [(old, new) for old, new in tests_instead if old in words]
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        rest = [word for word in words[first:] if word not in dict(instead)]
        command = words[:first] + self.linker + [new for _, new in instead] + objects + rest + ["-o", target]
        done = subprocess.run(command, cwd=COVERAGE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            print(done.stdout[-500:], file=sys.stderr)
        return done.returncode == 0

    # The core as it is ..............................................................................................

    def make_plain_core(self):
        headers = set()
        for path in core_files():
            with open(os.path.join(ROOT, "src", path), encoding="utf-8") as file:
                headers.update(re.findall(r"^#include <([^>.]+)>", file.read(), re.MULTILINE))
        self.precompiled = os.path.join(BUILD, "library.h.pch")
        source = os.path.join(BUILD, "library.h")
        text = f"// {' '.join(FLAGS)}\n" + "".join(f"#include <{header}>\n" for header in sorted(headers))
        if not os.path.exists(self.precompiled) or open(source, encoding="utf-8").read() != text:
            with open(source, "w", encoding="utf-8") as file:
                file.write(text)
            run(["clang++", *FLAGS, "-x", "c++-header", source, "-o", self.precompiled])
        self.sources = [path for path in core_files() if path.endswith(".cpp")]
        self.objects, self.users = {}, {}
        for path in self.sources:
            self.objects[path] = os.path.join(BUILD, "plain", path.replace("/", "_") + ".o")
            self.users[path] = self.compile_plain(path)
        self.core = digest(*(open(self.objects[path] + ".of", encoding="utf-8").read() for path in self.sources))

    def compile_plain(self, path):
        """Compiles a source file when it or a header changed, and returns the files of the core that it includes."""
        target = self.objects[path]
        os.makedirs(os.path.dirname(target), exist_ok=True)
        includes = target + ".d"

        def state():
            if not os.path.exists(includes):
                return None, []
            with open(includes, encoding="utf-8") as file:
                names = file.read().replace("\\\n", " ").split()[1:]
            own = [name for name in names if name.startswith(os.path.join(ROOT, "src"))]
            if not all(map(os.path.exists, own)):
                return None, []
            return digest(*FLAGS, *(open(name, encoding="utf-8").read() for name in own)), own

        known = open(target + ".of", encoding="utf-8").read() if os.path.exists(target + ".of") else None
        now, own = state()
        if now is None or now != known:
            run(self.compile_command(path, os.path.join(ROOT, "src", path), target) + ["-MMD", "-MF", includes])
            now, own = state()
            with open(target + ".of", "w", encoding="utf-8") as file:
                file.write(now)
        return {os.path.relpath(name, os.path.join(ROOT, "src")) for name in own}

    def compile_command(self, path, source, target, overlay=None):
        extra = ["-ffp-contract=off"] if path.endswith("ProcessPicture1_filters.cpp") else []
        folders = ([f"-I{overlay}"] if overlay else []) + [f"-I{os.path.join(ROOT, 'src')}"]
        return ["clang++", *FLAGS, *extra, "-include-pch", self.precompiled, *folders, "-c", source, "-o", target]

    # The tests as they are ..........................................................................................

    def measure(self):
        """Program to {test: seconds}, from one run of each over the unchanged core, which must pass."""
        times = {}
        for name in PROGRAMS:
            kept = os.path.join(BUILD, f"{name}.times.json")
            stamp = self.core + str(os.path.getmtime(os.path.join(COVERAGE, "bin", name)))
            if os.path.exists(kept):
                with open(kept, encoding="utf-8") as file:
                    known = json.load(file)
                if known["stamp"] == stamp:
                    times[name] = known["times"]
                    continue
            program, report = os.path.join(BUILD, name), os.path.join(BUILD, "report.json")
            if not self.link(name, list(self.objects.values()), program):
                sys.exit(f"mutate: {name} does not link")
            run([program, f"--gtest_output=json:{report}"], cwd=BUILD, preexec_fn=Limits(600).apply,
                env={**os.environ, "LLVM_PROFILE_FILE": "/dev/null"})
            with open(report, encoding="utf-8") as file:
                suites = json.load(file)["testsuites"]
            times[name] = {f"{test['classname']}.{test['name']}": float(test["time"].rstrip("s"))
                           for suite in suites for test in suite["testsuite"]}
            with open(kept, "w", encoding="utf-8") as file:
                json.dump({"stamp": stamp, "times": times[name]}, file)
        return times

    def rooms_of_suites(self):
        rooms = {}
        for room in os.listdir(os.path.join(ROOT, "tests")):
            folder = os.path.join(ROOT, "tests", room)
            for name in os.listdir(folder) if os.path.isdir(folder) else ():
                if name.endswith("_test.cpp"):
                    with open(os.path.join(folder, name), encoding="utf-8") as file:
                        for suite in re.findall(r"^(?:TYPED_)?TEST(?:_[FP])?\((\w+)", file.read(), re.MULTILINE):
                            rooms[suite] = room
        return rooms

    def room_of(self, test):
        parts = test.split(".")[0].split("/")
        return next((self.rooms[part] for part in parts if part in self.rooms), None)

    def what_slow_tests_reach(self):
        """Slow test of core_tests to the lines of the core that it runs, {path: [line, ...]}, by Clang's counts."""
        kept = os.path.join(BUILD, "reached.json")
        program = os.path.join(COVERAGE, "bin", "core_tests")
        stamp = self.core + str(os.path.getmtime(program))
        if os.path.exists(kept):
            with open(kept, encoding="utf-8") as file:
                known = json.load(file)
            if known["stamp"] == stamp:
                return known["reached"]
        reached = {}
        raw, merged = os.path.join(BUILD, "one.profraw"), os.path.join(BUILD, "one.profdata")
        for test, seconds in self.times["core_tests"].items():
            if seconds > QUICK_SECONDS:
                run([program, f"--gtest_filter={test}"], cwd=BUILD, env={**os.environ, "LLVM_PROFILE_FILE": raw})
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

    def stages_for(self, mutant):
        room = mutant.path.split("/")[0]
        times = self.times["core_tests"]
        quick = [test for test, seconds in times.items() if seconds <= QUICK_SECONDS]
        slow = sorted((seconds, test) for test, seconds in times.items() if seconds > QUICK_SECONDS)
        in_room = [test for test in quick if self.room_of(test) == room]
        elsewhere = [test for test in quick if self.room_of(test) != room]
        # What a constant of a header does shows elsewhere than on its own line.
        everywhere = mutant.path.endswith(".h")
        lines = range(mutant.change.line - 1, mutant.change.line + 2)
        reaching = [test for _, test in slow
                    if everywhere or set(self.reached.get(test, {}).get(mutant.path, ())).intersection(lines)]
        groups = [("core_tests", in_room), ("core_tests", elsewhere), ("core_tests", reaching)]
        groups += [(name, list(self.times[name])) for name in PROGRAMS[1:]]
        return [Stage(name, tests, sum(self.times[name][test] for test in tests)) for name, tests in groups if tests]

    # A change ........................................................................................................

    def try_out(self, mutant):
        """"uncompiled", "failed", "limit" or "passed"."""
        place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        with tempfile.TemporaryDirectory(prefix="varnoth-mutant-", dir=place, ignore_cleanup_errors=True) as scratch:
            changed = os.path.join(scratch, "src", mutant.path)
            os.makedirs(os.path.dirname(changed))
            with open(changed, "w", encoding="utf-8") as file:
                file.write(mutant.changed_text())
            users = [path for path in self.sources if mutant.path in self.users[path]]
            stages = self.stages_for(mutant)
            objects, first_objects = dict(self.objects), []
            if mutant.path.endswith(".h"):
                # Most are found out by the tests of their own room, so only these meet the change at first.
                own = [path for path in users if path.split("/")[0] == mutant.path.split("/")[0]]
                if not self.compile_tests_of(mutant, scratch, first_objects) or \
                        not self.compile_changed(own, mutant, scratch, objects):
                    return "uncompiled"
                outcome = self.first_failure(stages[:1], first_objects, objects, scratch)
                if outcome != "passed":
                    return outcome
                users = [path for path in users if path not in own]
            if not self.compile_changed(users, mutant, scratch, objects):
                return "uncompiled"
            return self.first_failure(stages, first_objects, objects, scratch)

    def compile_changed(self, paths, mutant, scratch, objects):
        for path in paths:
            objects[path] = os.path.join(scratch, path.replace("/", "_") + ".o")
            source = os.path.join(scratch if path == mutant.path else ROOT, "src", path)
            command = self.compile_command(path, source, objects[path], os.path.join(scratch, "src"))
            if subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode != 0:
                return False
        return True

    def compile_tests_of(self, mutant, scratch, objects):
        """The tests of a header's own, which call its inline functions themselves; their objects take the old ones'
        place."""
        stem = os.path.join(ROOT, "tests", mutant.path.removesuffix(".h"))
        own = re.compile(re.escape(stem) + r"(_\w+)?_test\.cpp")
        for entry in self.compilations:
            if own.fullmatch(entry["file"]):
                command = shlex.split(entry["command"])
                if command[0].endswith("ccache"):
                    del command[0]
                target = os.path.join(scratch, f"changed.{len(objects)}.test.o")
                objects.append((command[command.index("-o") + 1], target))
                command = [command[0], f"-I{os.path.join(scratch, 'src')}", *command[1:], "-w", "-Wno-error"]
                command[command.index("-o") + 1] = target
                done = subprocess.run(command, cwd=COVERAGE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                if done.returncode != 0:
                    return False
        return True

    def first_failure(self, stages, tests_instead, objects, scratch):
        linked = {}
        # Objects that came of the change stand first, for an inline function is taken where it comes first.
        ordered = sorted(objects.values(), key=lambda name: not name.startswith(scratch))
        for stage in stages:
            if stage.program not in linked:
                linked[stage.program] = os.path.join(scratch, stage.program)
                if not self.link(stage.program, ordered, linked[stage.program], tests_instead):
                    return "uncompiled"
            tests = os.path.join(scratch, "tests")
            os.makedirs(tests, exist_ok=True)
            outcome = stage.passes(linked[stage.program], tests)
            subprocess.run(["chmod", "-R", "u+w", tests], stderr=subprocess.DEVNULL)
            shutil.rmtree(tests, ignore_errors=True)
            if outcome != "passed":
                return outcome
        return "passed"
