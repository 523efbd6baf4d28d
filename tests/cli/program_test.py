#!/usr/bin/env python3
"""Runs the command line without a subcommand, and checks what all subcommands share.
Usage: program_test.py VARNOTH_CLI WALKTHROUGH SAMPLES [TEST...]"""
from cli_test_case import CliTest, main

COMMANDS = ("make", "info", "check", "extract", "edit", "preview", "thumbnail")


class Program(CliTest):
    def test_help_lists_every_command(self):
        output = self.run_cli("--help").stdout.decode()
        for command in COMMANDS:
            self.assertIn(f"  {command} ", output)

    def test_each_command_has_its_own_help(self):
        for command in COMMANDS:
            self.assertIn("Usage", self.run_cli(command, "--help").stdout.decode())

    def test_version(self):
        self.assertRegex(self.run_cli("--version").stdout.decode(), r"^varnoth-cli \d+\.\d+\n$")

    def test_wrong_usage_exits_with_2(self):
        for arguments in ((), ("nothing",), ("--nothing",), ("info", "--nothing")):
            done = self.run_cli(*arguments, status=2)
            self.assertNotEqual(done.stderr, b"")
            self.assertEqual(done.stdout, b"")


if __name__ == "__main__":
    main()
