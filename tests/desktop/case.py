"""The base of the desktop tests: a desktop for each class, a program and a library for each test."""
import contextlib
import os
import sys
import unittest

from desktop import Desktop
from library import Library, snippet
from processes import LoggedProcess
from program import PALETTE, Program
from recorder import Recorder

LETTER = snippet("letter", "Dear {{name}},\nkind regards\n{{sender}}",
                 {"name": "Ada", "sender": "Grace"})
LETTER_TEXT = "Dear Ada,\nkind regards\nGrace"
NOTES = [snippet("alpha note", "first of the notes", age_days=2),
         snippet("beta note", "second of the notes", age_days=3)]
SAMPLE = {"Mail": [LETTER], "Notes": NOTES}


class DesktopCase(unittest.TestCase):
    """Subclasses choose the desktop by `options` and the library by `collections`."""
    options = {}
    collections = SAMPLE

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop(**cls.options))

    def setUp(self):
        self.program = None
        self.desktop.reset_keyboard()
        self.desktop.set_clipboard("untouched")
        self.home = self.desktop.new_home()
        self.library = Library(self.home["HOME"])
        if self.collections is not None:
            self.library.write(self.collections)
        self.recorder = self.start(Recorder, self.desktop)
        self.program = self.start_program()
        self.recorder.focus()

    def start(self, kind, *arguments):
        process: LoggedProcess = kind(*arguments)
        self.addCleanup(process.finish)
        return process

    def start_program(self):
        return self.start(Program, self.desktop, self.home)

    def _callTestMethod(self, method):
        """Tells what the program said and shows the screen as it was when a test fails."""
        try:
            method()
        except Exception:
            picture = self.desktop.screenshot(self.picture_path("failure-" + self.id()))
            print(f"\n{self.id()} failed; screen: {picture}\nthe program's log:", file=sys.stderr)
            print("\n".join(self.program.lines), file=sys.stderr)
            print("keys in the other program:", self.recorder.keys(), file=sys.stderr)
            raise

    @contextlib.contextmanager
    def told(self, what):
        """Adds to a failure inside what was being done."""
        try:
            yield
        except AssertionError as failure:
            raise AssertionError(f"{what}: {failure}") from failure

    @staticmethod
    def picture_path(name):
        return os.path.join(os.environ["VELLUMRY_SCREENSHOTS"], name + ".png")

    def save_picture(self, name):
        """Saves the palette with a margin of the desktop around it under a stable name."""
        x, y, width, height = self.desktop.geometry(self.desktop.window(PALETTE))
        self.desktop.screenshot(self.picture_path(name), (x - 20, y - 20, width + 40, height + 40))

    def assert_not_copied(self):
        self.assertEqual(self.desktop.clipboard(), "untouched")

    def assert_nothing_leaked(self):
        """No key of the test went to the other program, which gets its keys again."""
        self.desktop.wait_focus("Recorder")
        before = self.recorder.keys()
        self.recorder.wait_for_key("z")
        self.assertEqual(before + ["z"], self.recorder.keys())
        self.assertEqual([key for key in before if key != "z"], [])


def main():
    unittest.main(verbosity=2)
