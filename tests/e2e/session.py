"""A test case that starts the built editor on a virtual display, and a session of it that must have the same results as
the scripted user. The first arguments of a test with a session are VARNOTH WALKTHROUGH SAMPLES."""
import os
import shutil
import subprocess
import unittest

from display import Display, wait_for
from ui_driver import FATAL_ERROR_LINE, FATAL_ERROR_STATUS, SAVE_CHOOSER, UiDriver


def read(path):
    with open(path, "rb") as file:
        return file.read()


def contents(folder):
    return {name: read(os.path.join(folder, name)) for name in os.listdir(folder)}


class EditorTest(UiDriver, unittest.TestCase):
    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)

    def wait_for_exit(self, status=0):
        wait_for("the editor to exit", lambda: self.editor.poll() is not None)
        errors = FATAL_ERROR_LINE if status == FATAL_ERROR_STATUS else ""
        self.assertRegex(read(self.errors).decode(), rf"\A{errors}\Z")
        self.assertEqual(self.editor.returncode, status)


class SessionTest(EditorTest):
    """Subclasses set the paths and define the steps: make_new, add_frames, press_save, move_third_line_up, play, export
    and press_close."""
    varnoth = walkthrough = samples = None

    def run_walkthrough(self, *arguments):
        """Runs the scripted user, whose results are the expected ones."""
        subprocess.run([self.walkthrough, *arguments], check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, env=self.display.environment, timeout=60)

    def check_session(self, selected, picked):
        """Imports the selected ones of eight pictures with the picked pixel as the transparent colour; saves, opens,
        reorders, plays and exports the sprite."""
        pictures = self.display.make_folder("home", "Pictures", "fire")
        for number in range(8):
            shutil.copy(os.path.join(self.samples, f"explosion_{number + 4}.bmp"), pictures)
        made, walked = self.display.make_folder("made"), self.display.make_folder("walked")
        sprite, walked_sprite = os.path.join(made, "fire.spr"), os.path.join(walked, "fire.spr")
        exported, walked_export = self.display.make_folder("exported"), self.display.make_folder("walked_export")

        self.start(self.varnoth)
        self.make_new()
        self.add_frames()
        self.press_save()
        self.choose_file(SAVE_CHOOSER, sprite)
        self.answer_box()
        self.run_walkthrough("--size", "32x24", "--render", "2", "--pictures", pictures,
                             *(word for number in selected for word in ("--select", f"explosion_{number}.bmp")),
                             "--pick", "{},{}".format(*picked), "--choice", "resize", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.open(sprite, frames=len(selected))
        self.move_third_line_up()
        first = read(sprite)
        self.press_save()
        wait_for("the sprite to be saved", lambda: read(sprite) != first and len(read(sprite)) == len(first))
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--export", walked_export, "--format", "tga",
                             "--compressed", "--if-exists", "overwrite")
        self.run_walkthrough("--open", walked_sprite, "--move", "2:up", "--save", walked_sprite)
        self.assertEqual(read(sprite), read(walked_sprite))

        self.play()
        self.export(exported)
        self.assertGreater(len(contents(walked_export)), 1)
        self.assertEqual(contents(exported), contents(walked_export))
        self.press_close()
        self.wait_for_exit()
