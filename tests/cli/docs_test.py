#!/usr/bin/env python3
"""Runs the examples of docs/cli.md, and compares the options of the program with those in its documents and
completions.
Usage: docs_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
import glob
import os
import re
import shutil
import subprocess

from cli_test_case import PROGRAM, SAMPLES, CliTest, main

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
COMPLETIONS = os.path.join(ROOT, "packaging", "completions")
BASH_COMPLETION = os.path.join(COMPLETIONS, "varnoth-cli.bash")
COMMON = {"-h", "--help"}
OPTION = r"--?[a-z][a-z-]*"


def text_of(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


def help_of(*command):
    return subprocess.run([PROGRAM, *command, "--help"], capture_output=True, check=True, text=True).stdout


def commands():
    listed = help_of().partition("\nSubcommands:\n")[2]
    return re.findall(r"^  ([a-z]+) ", listed, re.MULTILINE)


def options_of(command):
    """The options that the help of a subcommand lists."""
    heads = re.findall(r"^  (-[^ ]+)", help_of(command), re.MULTILINE)
    return {option for head in heads for option in head.split(",")}


def sections(text, heading):
    """The parts of a text below lines that match, by the first group of the match."""
    parts = re.split(heading, text, flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def examples():
    """Each fenced console block of the document: a list of (command, what it prints)."""
    for block in re.findall(r"^```console\n(.*?)^```", text_of("docs", "cli.md"), re.MULTILINE | re.DOTALL):
        parts = re.split(r"^\$ (.*)\n", block, flags=re.MULTILINE)
        yield list(zip(parts[1::2], parts[2::2]))


class Examples(CliTest):
    def setUp(self):
        super().setUp()
        os.mkdir(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin/varnoth-cli"))

    def work_folder(self, number):
        folder = self.path(f"example{number}")
        os.makedirs(os.path.join(folder, "frames"))
        for sprite in glob.glob(os.path.join(SAMPLES, "*.spr")):
            shutil.copy(sprite, folder)
        for picture in glob.glob(os.path.join(SAMPLES, "explosion_*.bmp")):
            shutil.copy(picture, os.path.join(folder, "frames"))
        return folder

    def run_shell(self, command, last_status, folder):
        environment = {**os.environ, "PATH": self.path("bin") + ":" + os.environ["PATH"], "LC_ALL": "C.UTF-8"}
        return subprocess.run(["bash", "-c", f"(exit {last_status}); {command}"], cwd=folder, env=environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120, check=False)

    def test_each_example_prints_what_the_document_shows(self):
        shown = list(examples())
        self.assertEqual({command for block in shown for command in
                          re.findall(r"varnoth-cli ([a-z]+)", " ".join(line for line, _ in block))}, set(commands()))
        for number, block in enumerate(shown):
            folder, status = self.work_folder(number), 0
            for line, (command, output) in enumerate(block):
                done = self.run_shell(command, status, folder)
                # A line "..." stands for any lines.
                pattern = re.escape(output).replace(re.escape("...\n"), "(?:.*\n)*?")
                self.assertRegex(done.stdout, rf"\A{pattern}\Z", command)
                status = done.returncode
                # Only an example that goes on to print the exit status may fail.
                if block[line + 1:line + 2] != [("echo $?", f"{status}\n")]:
                    self.assertEqual(status, 0, command)


class Options(CliTest):
    """The options of each subcommand's help, no more and no fewer, are in..."""

    def compare(self, found, common=frozenset()):
        self.assertEqual(set(found), set(commands()))
        for command in commands():
            self.assertEqual(found[command], options_of(command) - common, command)

    def test_document(self):
        found = {}
        for command, section in sections(text_of("docs", "cli.md"), r"^## ([a-z]+)$").items():
            cells = re.findall(r"^\| (`-.*?) \|", section, re.MULTILINE)
            found[command] = {option for cell in cells for option in re.findall(f"`({OPTION})", cell)}
        self.compare(found, COMMON)

    def test_man_page(self):
        found = {}
        commands_part = text_of("packaging", "varnoth-cli.1").partition("\n.SH COMMANDS\n")[2].partition("\n.SH ")[0]
        for command, section in sections(commands_part.replace("\\-", "-"), r"^\.SS ([a-z]+)$").items():
            tags = re.findall(r"^\.TP\n(.*)", section, re.MULTILINE)
            found[command] = {option for tag in tags for option in re.findall(rf"(?<![\w-]){OPTION}", tag)}
        self.compare(found, COMMON)

    def test_bash_completion(self):
        self.compare({command: set(complete(self.folder, "varnoth-cli", command, "-")) for command in commands()})

    def test_zsh_completion(self):
        found = {}
        script = text_of("packaging", "completions", "_varnoth-cli")
        for command, body in re.findall(r"^_varnoth-cli-([a-z]+)\(\) \{\n    _arguments(.*?)^}", script,
                                        re.MULTILINE | re.DOTALL):
            # '--long=[text]', and '(-s --long)'{-s,--long}'[text]'.
            found[command] = set(re.findall(rf"""['"]\*?({OPTION})=?\[""", body))
            for pair in re.findall(r"\{(-.*?)\}", body):
                found[command] |= set(pair.replace("=", "").split(","))
        self.compare(found)

    def test_fish_completion(self):
        found = {command: set() for command in commands()}
        for line in text_of("packaging", "completions", "varnoth-cli.fish").splitlines():
            seen = re.search(r"-n '__fish_seen_subcommand_from ([a-z ]+)'", line)
            names = re.findall(r" (-s|-l) ([a-z-]+)", line)
            for command in seen[1].split() if seen else ():
                found[command] |= {("-" if kind == "-s" else "--") + name for kind, name in names}
        self.compare(found)


def complete(folder, *words):
    """What the completion function of bash proposes for the last word, with "=" as a word of its own."""
    script = 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_LINE="$*"; ' \
             'COMP_POINT=${#COMP_LINE}; function_of=$(complete -p varnoth-cli); ' \
             'function_of=${function_of##*-F }; ${function_of%% *} varnoth-cli "${COMP_WORDS[COMP_CWORD]}" ' \
             '"${COMP_WORDS[COMP_CWORD - 1]}"; [ ${#COMPREPLY[@]} -eq 0 ] || printf "%s\\n" "${COMPREPLY[@]}"'
    done = subprocess.run(["bash", "--norc", "-c", script, "bash", BASH_COMPLETION, *words], cwd=folder,
                          capture_output=True, text=True, check=True)
    if done.stderr:
        raise AssertionError(done.stderr)
    return done.stdout.splitlines()


class BashCompletion(CliTest):
    def complete(self, *words):
        return complete(self.folder, "varnoth-cli", *words)

    def test_first_word_is_a_command(self):
        self.assertEqual(sorted(self.complete("")), sorted(commands()))
        self.assertEqual(sorted(self.complete("e")), ["edit", "extract"])
        self.assertEqual(sorted(self.complete("-")), ["--help", "--version", "-h"])

    def test_options_begin_with_what_is_typed(self):
        self.assertEqual(sorted(self.complete("make", "a.spr", "--dither")), ["--dither", "--dither-strength"])

    def test_fixed_values_are_those_that_the_program_takes(self):
        for option, choices in re.findall(r"^  (--\S+) ([a-z|-]+\|[a-z|-]+)(?:=\S+)?$", help_of("make"), re.MULTILINE):
            self.assertEqual(self.complete("make", option, ""), choices.split("|"), option)
        self.tool("convert", "-size", "2x2", "xc:red", "red.bmp")
        for option in ("--fit", "--transparent", "--type", "--mode", "--sync", "--origin", "--dither"):
            values = self.complete("make", option, "")
            self.assertGreaterEqual(len(values), 1, option)
            for value in values:
                self.run_cli("make", "red.spr", "red.bmp", "--force", option, value)
        for option in ("--type", "--mode"):
            named = re.search(rf"^  {option} .*?: (.*), or 0", help_of("make"), re.MULTILINE)[1].split(", ")
            self.assertEqual(self.complete("make", option, ""), named)
        self.assertEqual(self.complete("extract", "--format", ""),
                         re.search(r"--format TEXT:\{(.*)\}", help_of("extract"))[1].split(","))

    def test_value_after_an_equals_sign(self):
        self.assertEqual(self.complete("make", "--dither", "=", "o"), ["ordered"])
        self.assertEqual(self.complete("make", "--mode", "="), ["NORMAL", "ADDITIVE", "INDEXALPHA", "ALPHATEST"])

    def test_names_of_modes_complete_in_lower_case(self):
        self.assertEqual(self.complete("edit", "a.spr", "--mode", "al"), ["ALPHATEST"])

    def test_files_by_extension(self):
        for name in ("a.spr", "B.SPR", "p.png", "q.tga", "c.gpl", "g.gif", "t.txt", "with space.spr"):
            self.write(name, b"")
        os.mkdir(self.path("folder"))
        sprites = ["B.SPR", "a.spr", "folder", "with space.spr"]
        pictures = ["folder", "g.gif", "p.png", "q.tga"]
        for words, expected in (
                (("info", ""), sprites),
                (("info", "--json", "a.spr", ""), sprites),
                (("check", "w"), ["with space.spr"]),
                (("make", ""), sprites),
                (("make", "out.spr", ""), pictures),
                (("make", "--size", "8x8", "--force", "out.spr", "p.png", ""), pictures),
                (("make", "--dither", "=", "none", "out.spr", "p"), ["p.png"]),
                (("make", "--palette", "c"), ["c.gpl"]),
                (("make", "--palette", "be"), ["best"]),
                (("extract", ""), sprites),
                (("extract", "a.spr", ""), ["folder"]),
                (("edit", ""), sprites),
                (("edit", "a.spr", ""), []),
                (("edit", "a.spr", "-o", ""), sprites),
                (("edit", "a.spr", "--append", "p.png", ""), pictures),
                (("edit", "--append", "p.png", ""), sorted({*pictures, *sprites})),
                (("edit", "--append", "p.png", "g.gif", "--force", ""), sprites),
                (("edit", "a.spr", "--replace", ""), []),
                (("edit", "a.spr", "--replace", "0", "=", "q"), ["q.tga"]),
                (("edit", "a.spr", "--replace", "=", "0", "=", "q"), ["q.tga"]),
                (("preview", "a.spr", ""), ["folder", "g.gif", "p.png"]),
                (("thumbnail", "a.spr", ""), ["folder", "p.png"]),
                (("thumbnail", "a.spr", "p.png", ""), [])):
            self.assertEqual(sorted(self.complete(*words)), expected, words)


if __name__ == "__main__":
    main()
