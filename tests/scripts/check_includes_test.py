#!/usr/bin/env python3
"""Runs scripts/check-includes over small made-up trees: each fault must be refused by name, and sound trees pass."""
import os
import subprocess
import sys
import tempfile
import unittest

CHECKER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "check-includes")


def check(files):
    """Exit status and complaints of the checker over a tree of these files."""
    with tempfile.TemporaryDirectory() as root:
        for path, text in files.items():
            os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                file.write(text)
        run = subprocess.run([sys.executable, CHECKER, root], capture_output=True, text=True, check=False)
        return run.returncode, run.stderr


class CheckIncludes(unittest.TestCase):
    def expect_sound(self, files):
        self.assertEqual(check(files), (0, ""))

    def expect_refused(self, files, words):
        status, complaints = check(files)
        self.assertEqual(status, 1)
        self.assertIn(words, complaints)

    def test_includes_that_run_downward_pass(self):
        self.expect_sound({
            "src/base/Truth.h": "#include <cstdint>\n",
            "src/sprite/hlspr.h": '#include "base/Truth.h"\n',
            "src/import/mixpals.h": '#include "base/Truth.h"\n',
            "src/sprite/hlspr.cpp": '#include "sprite/hlspr.h"\n#include "import/mixpals.h"\n',
            "src/workbench/FrameExtraction.cpp": '#include "sprite/hlspr.h"\n',
        })

    def test_an_upward_include_is_refused(self):
        self.expect_refused({
            "src/platform/Screen.h": "",
            "src/base/numbers.h": "// first\n#include \"platform/Screen.h\"\n",
        }, "src/base/numbers.h:2: \"platform/Screen.h\" runs upward")

    def test_the_two_storeys_of_import_are_told_apart(self):
        self.expect_refused({
            "src/import/mixpals.h": '#include "sprite/hlspr.h"\n',
            "src/sprite/hlspr.h": "",
        }, "runs upward")
        self.expect_sound({
            "src/import/ImportPipeline.h": '#include "sprite/hlspr.h"\n',
            "src/sprite/hlspr.h": "",
        })

    def test_the_core_may_not_include_the_platform_on_qt(self):
        self.expect_refused({
            "src/workbench/PreviewWalk.cpp": '#include "platform/qt/QtEventQueue.h"\n',
            "src/platform/qt/QtEventQueue.h": "",
        }, "runs upward, from workbench logic to platform/qt")

    def test_pictures_and_codecs_do_not_include_each_other(self):
        for one, other in (("pictures", "codecs"), ("codecs", "pictures")):
            self.expect_refused({
                f"src/{one}/a.h": f'#include "{other}/b.h"\n',
                f"src/{other}/b.h": "",
            }, "do not include each other")

    def test_a_circle_is_refused(self):
        self.expect_refused({
            "src/base/a.h": '#include "base/b.h"\n',
            "src/base/b.h": '#include "base/c.h"\n',
            "src/base/c.h": '#include "base/a.h"\n',
        }, "src/base/a.h -> src/base/b.h -> src/base/c.h -> src/base/a.h")

    def test_a_file_that_includes_itself_is_refused(self):
        self.expect_refused({"src/base/a.h": '#include "base/a.h"\n'}, "include each other")

    def test_two_ways_to_one_file_are_no_circle(self):
        self.expect_sound({
            "src/base/a.h": '#include "base/b.h"\n#include "base/c.h"\n',
            "src/base/b.h": '#include "base/c.h"\n',
            "src/base/c.h": "",
        })

    def test_qt_in_the_core_is_refused_in_every_spelling(self):
        headers = ("QString", "QtCore/QString", "QtGlobal", "Qt", "qglobal.h", "QtGui/qimage.h")
        places = ("src/base/a.cpp", "src/import/ImportPipeline.cpp", "src/workbench/Module1.h")
        text = "".join(f"  #  include <{header}>\n" for header in headers)
        status, complaints = check({place: text for place in places})
        self.assertEqual(status, 1)
        for place in places:
            for line, header in enumerate(headers, 1):
                self.assertIn(f"{place}:{line}: <{header}>", complaints)
        self.assertEqual(complaints.count("may not include Qt"), len(headers) * len(places))

    def test_qt_above_the_core_passes(self):
        places = ("src/platform/qt/a.cpp", "src/controls/a.h", "src/workbench/Form1.h", "src/import/Form4.cpp",
                  "src/main.cpp")
        self.expect_sound({place: "#include <QString>\n" for place in places})

    def test_standard_headers_are_not_taken_for_qt(self):
        self.expect_sound({"src/base/a.cpp": "#include <queue>\n#include <cmath>\n#include <sys/stat.h>\n"})

    def test_a_header_that_is_not_there_is_refused(self):
        self.expect_refused({"src/base/a.cpp": '#include "base/gone.h"\n'}, 'there is no "base/gone.h"')

    def test_a_file_outside_every_room_is_refused(self):
        self.expect_refused({"src/attic/a.h": "#include <vector>\n"}, "no known room")

    def test_tools_may_include_everything_but_not_in_a_circle(self):
        self.expect_sound({
            "tools/walkthrough/main.cpp": '#include <QString>\n#include "platform/qt/a.h"\n#include "walk.h"\n',
            "tools/walkthrough/walk.h": "",
            "src/platform/qt/a.h": "",
        })
        self.expect_refused({
            "tools/a.h": '#include "b.h"\n',
            "tools/b.h": '#include "a.h"\n',
        }, "include each other")

    def test_a_tree_without_sources_is_refused(self):
        self.expect_refused({"README.md": ""}, "no source files")


if __name__ == "__main__":
    unittest.main()
