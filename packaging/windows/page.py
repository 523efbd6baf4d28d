#!/usr/bin/env python3
"""Turns a document into an HTML page: reads what cmark-gfm makes of it, gives the headings the names that links use,
and lets links to the other pages find them. Usage: cmark-gfm FILE.md | page.py TITLE"""
import re
import sys

HEAD = """<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<title>{}</title>
<style>
body {{ max-width: 50em; margin: 2em auto; padding: 0 1em; font-family: sans-serif; }}
img {{ max-width: 100%; }}
table {{ border-collapse: collapse; }}
td, th {{ border: 1px solid #999; padding: 2px 6px; text-align: left; }}
</style>
"""


def with_name(heading):
    text = re.sub("<[^>]*>", "", heading[2]).lower()
    name = re.sub("[^a-z0-9 -]", "", text).replace(" ", "-")
    return f'<h{heading[1]} id="{name}">{heading[2]}</h{heading[1]}>'


sys.stdin.reconfigure(encoding="utf-8")
sys.stdout.reconfigure(encoding="utf-8", newline="\n")
page = re.sub(r"<h(\d)>(.*)</h\d>", with_name, sys.stdin.read())
page = re.sub(r'href="(guide|cli|formats|access)\.md', r'href="\1.html', page)
sys.stdout.write(HEAD.format(sys.argv[1]) + page + "</html>\n")
