#!/usr/bin/env python3
"""Runs scripts/check-includes on small trees made for the test: it names each fault, and accepts trees without one."""
import os
import subprocess
import sys
import tempfile
import unittest

CHECKER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "scripts", "check-includes")
LAYERS = """function(varnoth_layer name folder)
endfunction()
varnoth_layer(varnoth_base core/base)
varnoth_layer(varnoth_image core/image varnoth_base)
varnoth_layer(varnoth_qt qt varnoth_image)
varnoth_layer(varnoth_forms desktop/forms RECURSE varnoth_qt)
"""


def check(files):
    """Exit status and complaints of the checker for a tree of these files."""
    with tempfile.TemporaryDirectory() as root:
        for path, text in {"src/CMakeLists.txt": LAYERS, **files}.items():
            os.makedirs(os.path.dirname(os.path.join(root, path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                file.write(text)
        run = subprocess.run([sys.executable, CHECKER, root], capture_output=True, text=True, check=False)
        return run.returncode, run.stderr


class CheckIncludes(unittest.TestCase):
    def expect_accepted(self, files):
        self.assertEqual(check(files), (0, ""))

    def expect_refused(self, files, words):
        status, complaints = check(files)
        self.assertEqual(status, 1)
        self.assertIn(words, complaints)

    def test_includes_of_earlier_layers_and_the_own_one_pass(self):
        self.expect_accepted({
            "src/core/base/Truth.h": "#include <cstdint>\n",
            "src/core/image/a.h": '#include "core/base/Truth.h"\n',
            "src/core/image/a.cpp": '#include "core/image/a.h"\n',
            "src/desktop/forms/main_window/Form1.h": '#include "core/image/a.h"\n#include <QWidget>\n',
            "src/main.cpp": '#include "desktop/forms/main_window/Form1.h"\n',
        })

    def test_an_include_of_a_later_layer_is_refused(self):
        self.expect_refused({
            "src/core/image/Bitmap.h": "",
            "src/core/base/numbers.h": "// first\n#include \"core/image/Bitmap.h\"\n",
        }, "src/core/base/numbers.h:2: \"core/image/Bitmap.h\" is in a later layer")

    def test_an_include_out_of_src_is_refused(self):
        self.expect_refused({"tools/a.h": "", "src/core/base/b.h": '#include "../../../tools/a.h"\n'},
                            "is outside of src")

    def test_a_cycle_is_refused(self):
        self.expect_refused({
            "src/core/base/a.h": '#include "core/base/b.h"\n',
            "src/core/base/b.h": '#include "core/base/c.h"\n',
            "src/core/base/c.h": '#include "core/base/a.h"\n',
        }, "src/core/base/a.h -> src/core/base/b.h -> src/core/base/c.h -> src/core/base/a.h")

    def test_a_file_that_includes_itself_is_refused(self):
        self.expect_refused({"src/core/base/a.h": '#include "core/base/a.h"\n'}, "include each other")

    def test_two_paths_to_one_file_are_no_cycle(self):
        self.expect_accepted({
            "src/core/base/a.h": '#include "core/base/b.h"\n#include "core/base/c.h"\n',
            "src/core/base/b.h": '#include "core/base/c.h"\n',
            "src/core/base/c.h": "",
        })

    def test_qt_in_the_core_is_refused_in_every_spelling(self):
        headers = ("QString", "QtCore/QString", "QtGlobal", "Qt", "qglobal.h", "QtGui/qimage.h")
        places = ("src/core/base/a.cpp", "src/core/image/b.h")
        text = "".join(f"  #  include <{header}>\n" for header in headers)
        status, complaints = check({place: text for place in places})
        self.assertEqual(status, 1)
        for place in places:
            for line, header in enumerate(headers, 1):
                self.assertIn(f"{place}:{line}: <{header}>", complaints)
        self.assertEqual(complaints.count("may not include Qt"), len(headers) * len(places))

    def test_standard_headers_are_not_taken_for_qt(self):
        self.expect_accepted({"src/core/base/a.cpp": "#include <queue>\n#include <cmath>\n#include <sys/stat.h>\n"})

    def test_a_missing_header_is_refused(self):
        self.expect_refused({"src/core/base/a.cpp": '#include "core/base/gone.h"\n'}, 'there is no "core/base/gone.h"')

    def test_a_file_in_no_layer_is_refused(self):
        self.expect_refused({"src/attic/a.h": "#include <vector>\n"}, "in no layer")

    def test_tools_may_include_every_layer_but_not_in_a_cycle(self):
        self.expect_accepted({
            "tools/walkthrough/main.cpp": '#include <QString>\n#include "qt/a.h"\n#include "walk.h"\n',
            "tools/walkthrough/walk.h": "",
            "src/qt/a.h": "",
        })
        self.expect_refused({
            "tools/a.h": '#include "b.h"\n',
            "tools/b.h": '#include "a.h"\n',
        }, "include each other")

    def test_a_tree_without_sources_is_refused(self):
        self.expect_refused({"README.md": ""}, "no source files")

    def test_help_shows_the_usage(self):
        run = subprocess.run([sys.executable, CHECKER, "--help"], capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("usage: check-includes", run.stdout)


if __name__ == "__main__":
    unittest.main()
