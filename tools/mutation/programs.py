"""Builds and runs the test programs of scripts/mutate, with the original code and with a mutant."""
import glob
import json
import os
import re
import resource
import selectors
import shlex
import shutil
import subprocess
import sys
import tempfile

from core import ROOT, source_files
from mutants import digest

BUILD = os.path.join(ROOT, "build", "mutate")
SRC = os.path.join(ROOT, "src")
# Without warnings, because a mutation may leave a variable unused.
FLAGS = ["-std=c++20", "-w", "-D_GLIBCXX_ASSERTIONS", "-fbracket-depth=1024"]
QUICK_SECONDS = 0.15
MEMORY = 8 << 30
FILE_SIZE = 1 << 30
# A test that hangs in a dialog still uses a little processor time, because the cursor blinks. A correct test may wait
# for a while on a busy machine.
IDLE_SECONDS = 20
IDLE_SHARE = 0.005


def run(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **options)
    if done.returncode != 0:
        print(done.stdout[-4000:], file=sys.stderr)
        sys.exit(f"mutate: failed: {' '.join(command)[:300]}")
    return done.stdout


def limit_process(cpu_seconds):
    """Limits processor time and memory, so that endless loops and allocations end."""
    os.setpgid(0, 0)
    resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def used_by_group(group):
    """The processor time of all running processes of a group and of their ended children, in seconds."""
    ticks = 0
    for path in glob.glob("/proc/[0-9]*/stat"):
        try:
            with open(path, encoding="utf-8", errors="replace") as file:
                fields = file.read().rpartition(")")[2].split()
        except OSError:
            continue  # the process has ended since
        if int(fields[2]) == group:
            ticks += sum(map(int, fields[11:15]))
    return ticks / os.sysconf("SC_CLK_TCK")


def wait_for_end(process, idle_seconds):
    """The exit status, or -9 if the process hangs: its group neither prints nor uses processor time for that long."""
    used = 0.0
    with selectors.DefaultSelector() as selector:
        selector.register(process.stdout, selectors.EVENT_READ)
        while True:
            if selector.select(idle_seconds):
                if not os.read(process.stdout.fileno(), 65536):
                    break
                continue
            if process.poll() is not None:
                break  # a child keeps the output open
            before, used = used, used_by_group(process.pid)
            if used - before < IDLE_SHARE * idle_seconds:
                return -9
    try:
        return process.wait(idle_seconds)
    except subprocess.TimeoutExpired:
        return -9


class Stage:
    """Some tests of one program, with the time that each takes with the original code."""

    def __init__(self, program, times):
        self.programs, self.tests = (program,), list(times)
        self.seconds = sum(times.values())
        self.cpu = int(3 * self.seconds + 4)
        self.idle_seconds = IDLE_SECONDS

    def command(self, paths, scratch):
        listed = os.path.join(scratch, "tests")
        with open(listed, "w", encoding="utf-8") as file:
            file.write("--gtest_filter=" + ":".join(self.tests))
        return [paths[self.programs[0]], f"--gtest_flagfile={listed}"]

    def passes(self, paths, scratch):
        """Returns "passed", "failed" or "limit"; `paths` maps program names to linked programs."""
        environment = {**os.environ, "TMPDIR": scratch, "LLVM_PROFILE_FILE": "/dev/null",
                       "GTEST_FLAGFILE": "", "GTEST_FAIL_FAST": "1"}
        process = subprocess.Popen(self.command(paths, scratch), stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   stdin=subprocess.DEVNULL, cwd=scratch, env=environment,
                                   preexec_fn=lambda: limit_process(self.cpu))
        status = wait_for_end(process, self.idle_seconds)
        try:
            os.killpg(process.pid, 9)
        except ProcessLookupError:
            pass
        process.wait()
        process.stdout.close()
        return "passed" if status == 0 else "limit" if status in (-9, -24) else "failed"


class Programs:
    """The test programs: how they are linked, their tests, and the time of each test. Derived classes contain what
    differs between the core and the desktop."""
    preset = None  # its build provides the objects of the tests
    folder = BUILD
    flags = FLAGS
    wanted = None  # whether a path below src/ is mutated
    tests = ()  # GoogleTest programs; the first has the most tests
    programs = ()  # all programs that are linked with mutants
    helpers = ()  # other programs that the tests run

    def __init__(self):
        self.build = os.path.join(ROOT, "build", self.preset)
        os.makedirs(self.folder, exist_ok=True)
        run(["cmake", "--preset", self.preset], cwd=ROOT)
        run(["cmake", "--build", "--preset", self.preset, "-j", "2", "--target", *self.programs, *self.helpers],
            cwd=ROOT)
        with open(os.path.join(self.build, "compile_commands.json"), encoding="utf-8") as file:
            self.compilations = {entry["file"]: shlex.split(entry["command"]) for entry in json.load(file)}
        self.linker = [f"-fuse-ld={name}" for name in ("lld", "gold") if shutil.which("ld." + name)][:1]
        self.files = source_files(self.wanted)
        self.sources = [path for path in self.files if path.endswith(".cpp")]
        self.targets = {self.target_of(path) for path in self.sources}
        self.links = {name: self.link_command(name) for name in self.programs}
        self.compile_original()
        self.times = {name: self.measured(name, self.measure_tests) for name in self.tests}
        self.files_of_suites = self.find_suites()

    def object_of(self, file):
        """The object file that the build makes of a source file, relative to the build folder."""
        words = self.compilations[file]
        return words[words.index("-o") + 1]

    def target_of(self, path):
        """The library that the build puts a source file into."""
        return re.match(r"src/CMakeFiles/(\w+)\.dir/", self.object_of(os.path.join(SRC, path)))[1]

    def link_command(self, name):
        """The link command of the build, without the output and without the libraries of the mutated code."""
        command = run(["ninja", "-C", self.build, "-t", "commands", name]).strip().split("\n")[-1]
        words = command.split("&&")[1].split()
        libraries = {f"src/lib{target}.a" for target in self.targets}
        words = [word for word in words if word not in libraries and word != "ccache"]
        del words[words.index("-o"):words.index("-o") + 2]
        return words

    def link(self, name, objects, target, tests_instead=()):
        words = self.links[name]
        instead = [(old, new) for old, new in tests_instead if old in words]
        first = next(i for i, word in enumerate(words) if word.endswith(".o"))
        rest = [word for word in words[first:] if word not in dict(instead)]
        command = words[:first] + self.linker + [new for _, new in instead] + objects + rest + ["-o", target]
        done = subprocess.run(command, cwd=self.build, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            print(done.stdout[-500:], file=sys.stderr)
        return done.returncode == 0

    # The original code ..............................................................................................

    def compile_original(self):
        headers = {"gtest/gtest.h"}
        for path in self.files:
            with open(os.path.join(SRC, path), encoding="utf-8") as file:
                headers.update(re.findall(r"^#include <([^>.]+)>", file.read(), re.MULTILINE))
        words = self.own_options(os.path.join(SRC, self.sources[0]))
        self.precompiled = os.path.join(self.folder, "library.h.pch")
        source = os.path.join(self.folder, "library.h")
        text = f"// {' '.join(self.flags + words)}\n" + "".join(f"#include <{header}>\n" for header in sorted(headers))
        if not os.path.exists(self.precompiled) or open(source, encoding="utf-8").read() != text:
            with open(source, "w", encoding="utf-8") as file:
                file.write(text)
            run(["clang++", *self.flags, *words, "-x", "c++-header", source, "-o", self.precompiled])
        self.objects, self.users = {}, {}
        for path in self.sources:
            self.objects[path] = os.path.join(self.folder, "original", path.replace("/", "_") + ".o")
            self.users[path] = self.compile_source(path)
        self.code = digest(*(open(self.objects[path] + ".of", encoding="utf-8").read() for path in self.sources))

    def compile_source(self, path):
        """Compiles a source file if it or a header has changed; returns the files below src/ that it includes."""
        target = self.objects[path]
        os.makedirs(os.path.dirname(target), exist_ok=True)
        includes = target + ".d"

        def state():
            if not os.path.exists(includes):
                return None, []
            with open(includes, encoding="utf-8") as file:
                names = file.read().replace("\\\n", " ").split()[1:]
            own = [name for name in names if name.startswith(SRC)]
            if not all(map(os.path.exists, own)):
                return None, []
            return digest(*self.flags, *(open(name, encoding="utf-8").read() for name in own)), own

        known = open(target + ".of", encoding="utf-8").read() if os.path.exists(target + ".of") else None
        now, own = state()
        if now is None or now != known:
            source = os.path.join(SRC, path)
            run(self.compile_command(source, source, target) + ["-MMD", "-MF", includes])
            now, own = state()
            with open(target + ".of", "w", encoding="utf-8") as file:
                file.write(now)
        return {os.path.relpath(name, SRC) for name in own}

    def own_options(self, file):
        """The build's options for a file that affect the code: definitions, include paths, floating point."""
        words = self.compilations[file]
        return [word for i, word in enumerate(words)
                if word.startswith(("-D", "-I", "-isystem", "-ffp-contract")) or words[i - 1] == "-isystem"]

    def compile_command(self, file, source, target, overlay=None):
        """Compiles `source` as the build compiles `file`; headers in `overlay` come first."""
        return ["clang++", *self.flags, "-include-pch", self.precompiled, *([f"-I{overlay}"] if overlay else []),
                *self.own_options(file), "-c", source, "-o", target]

    # The tests ......................................................................................................

    def measured(self, name, measure):
        """The result of `measure` for a program linked with the original code, cached until the program changes."""
        kept = os.path.join(self.folder, f"{name}.times.json")
        stamp = self.code + str(os.path.getmtime(os.path.join(self.build, "bin", name)))
        if os.path.exists(kept):
            with open(kept, encoding="utf-8") as file:
                known = json.load(file)
            if known["stamp"] == stamp:
                return known["times"]
        times = measure(name)
        with open(kept, "w", encoding="utf-8") as file:
            json.dump({"stamp": stamp, "times": times}, file)
        return times

    def link_original(self, name):
        program = os.path.join(self.folder, name)
        if not self.link(name, list(self.objects.values()), program):
            sys.exit(f"mutate: {name} does not link")
        return program

    def measure_tests(self, name):
        """{test: seconds}, from one run of all tests, which must pass."""
        program, report = self.link_original(name), os.path.join(self.folder, "report.json")
        run([program, f"--gtest_output=json:{report}"], cwd=self.folder, preexec_fn=lambda: limit_process(1800),
            env={**os.environ, "LLVM_PROFILE_FILE": "/dev/null"})
        with open(report, encoding="utf-8") as file:
            suites = json.load(file)["testsuites"]
        return {f"{test['classname']}.{test['name']}": float(test["time"].rstrip("s"))
                for suite in suites for test in suite["testsuite"]}

    @staticmethod
    def find_suites():
        """{test suite: path of its file below tests/}"""
        suites = {}
        root = os.path.join(ROOT, "tests")
        for path in (os.path.join(folder, name) for folder, _, names in os.walk(root) for name in names):
            if path.endswith("_test.cpp"):
                with open(path, encoding="utf-8") as file:
                    for suite in re.findall(r"^(?:TYPED_)?TEST(?:_[FP])?\((\w+)", file.read(), re.MULTILINE):
                        suites[suite] = os.path.relpath(path, root)
        return suites

    def file_of(self, test):
        """The path below tests/ of the file with a test."""
        parts = test.split(".")[0].split("/")
        return next((self.files_of_suites[part] for part in parts if part in self.files_of_suites), "")

    def test_folder_of(self, path):
        """The folder below tests/ with the tests of a source file: the counterpart of its folder or of the nearest
        parent that has tests."""
        folders = {os.path.dirname(file) for file in self.files_of_suites.values()}
        folder = os.path.dirname(path)
        while folder and folder not in folders:
            folder = os.path.dirname(folder)
        return folder

    def stages_for(self, mutant):
        """The quick tests of the mutant's test folder come first, then the other stages, cheapest first."""
        folder = self.test_folder_of(mutant.path)
        times = self.times[self.tests[0]]
        quick = [test for test, seconds in times.items() if seconds <= QUICK_SECONDS]
        slow = sorted((test for test in times if times[test] > QUICK_SECONDS), key=times.get)
        own = [test for test in quick if os.path.dirname(self.file_of(test)) == folder]
        others = [test for test in quick if os.path.dirname(self.file_of(test)) != folder]
        groups = [own, others, [test for test in slow if self.may_reach(test, mutant)]]
        stages = [Stage(self.tests[0], {test: times[test] for test in group}) for group in groups if group]
        stages += [Stage(name, self.times[name]) for name in self.tests[1:]]
        return stages[:1] + sorted(stages[1:], key=lambda stage: stage.seconds)

    # Mutants ........................................................................................................

    def try_out(self, mutant):
        """Returns "uncompiled", "failed", "limit" or "passed"."""
        place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
        with tempfile.TemporaryDirectory(prefix="varnoth-mutant-", dir=place, ignore_cleanup_errors=True) as scratch:
            changed = os.path.join(scratch, "src", mutant.path)
            os.makedirs(os.path.dirname(changed))
            with open(changed, "w", encoding="utf-8") as file:
                file.write(mutant.changed_text())
            users = [path for path in self.sources if mutant.path in self.users[path]]
            stages = self.stages_for(mutant)
            objects, tests_instead = dict(self.objects), []
            if mutant.path.endswith(".h"):
                # The tests of its folder kill most mutants, so compile only those first.
                tests, more_tests = self.tests_to_compile(mutant)
                folder = self.test_folder_of(mutant.path)
                own = [path for path in users if self.test_folder_of(path) == folder]
                if not self.compile_tests(tests, scratch, tests_instead) or \
                        not self.compile_changed(own, mutant, scratch, objects):
                    return "uncompiled"
                outcome = self.first_failure(stages[:1], tests_instead, objects, scratch)
                if outcome != "passed":
                    return outcome
                users = [path for path in users if path not in own]
                if not self.compile_tests(more_tests, scratch, tests_instead):
                    return "uncompiled"
            if not self.compile_changed(users, mutant, scratch, objects):
                return "uncompiled"
            return self.first_failure(stages, tests_instead, objects, scratch)

    def compile_changed(self, paths, mutant, scratch, objects):
        for path in paths:
            objects[path] = os.path.join(scratch, path.replace("/", "_") + ".o")
            source = os.path.join(scratch if path == mutant.path else ROOT, "src", path)
            command = self.compile_command(os.path.join(SRC, path), source, objects[path],
                                           os.path.join(scratch, "src"))
            if subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode != 0:
                return False
        return True

    def compile_tests(self, files, scratch, instead):
        """Compiles test files with the mutant; appends (replaced object, new object) to `instead`."""
        for file in files:
            target = os.path.join(scratch, f"changed.{len(instead)}.test.o")
            instead.append((self.object_of(file), target))
            command = self.compile_command(file, file, target, os.path.join(scratch, "src"))
            if subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode != 0:
                return False
        return True

    def first_failure(self, stages, tests_instead, objects, scratch):
        linked = {}
        # The linker takes an inline function from the first object that has it, so mutated objects come first.
        ordered = sorted(objects.values(), key=lambda name: not name.startswith(scratch))
        for stage in stages:
            for program in stage.programs:
                if program not in linked:
                    linked[program] = os.path.join(scratch, program)
                    if not self.link(program, ordered, linked[program], tests_instead):
                        return "uncompiled"
            tests = os.path.join(scratch, "tests")
            os.makedirs(tests, exist_ok=True)
            outcome = stage.passes(linked, tests)
            subprocess.run(["chmod", "-R", "u+w", tests], stderr=subprocess.DEVNULL)
            shutil.rmtree(tests, ignore_errors=True)
            if outcome != "passed":
                return outcome
        return "passed"
