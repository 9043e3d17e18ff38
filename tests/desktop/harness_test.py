"""The harness itself: what it reports about keys, windows and the clipboard is true. These cases
need no program under test."""
import os
import unittest

from case import main
from desktop import Desktop
from processes import LoggedProcess
from recorder import Recorder
from virtual_desktop import DesktopFailure, VirtualDesktop
from waiting import NotReached, wait_for, wait_until_stable


class Harness(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(Desktop())

    def start_recorder(self):
        recorder = Recorder(self.desktop)
        self.addCleanup(recorder.finish)
        recorder.focus()
        return recorder

    def test_every_key_is_recorded(self):
        """A letter that reaches the other program is seen, also one pressed with Alt."""
        recorder = self.start_recorder()
        self.desktop.key("alt+t", *"hello", delay=0)
        recorder.wait_for_key("z")
        self.assertEqual(recorder.keys(), list("thelloz"))

    def test_windows_and_focus(self):
        """A window is found by its exact title, has the focus and its place, and is seen to go."""
        recorder = self.start_recorder()
        self.assertEqual(self.desktop.focused_window(), "Recorder")
        self.assertEqual(self.desktop.windows("Record"), [])
        self.assertEqual(self.desktop.geometry(self.desktop.window("Recorder"))[2:], (240, 100))
        recorder.finish()
        self.desktop.wait_gone("Recorder")
        self.assertNotEqual(self.desktop.focused_window(), "Recorder")

    def test_clipboard(self):
        """Text of any script passes through the clipboard; the last one counts."""
        for text in ("one", "zwei ☎ 日本語 🎉\nline", "  blanks "):
            self.desktop.set_clipboard(text)
            self.assertEqual(self.desktop.clipboard(), text)

    def test_locks_and_layouts(self):
        """Locks go on and off; a layout moves the letters."""
        recorder = self.start_recorder()
        self.desktop.set_lock("Caps_Lock", True)
        self.desktop.set_lock("Num_Lock", True)
        self.desktop.set_layout("dvorak")
        wait_for("the layout in the recorder", lambda: self.pressed(recorder, "28") == "y")
        self.desktop.reset_keyboard()
        wait_for("the layout in the recorder", lambda: self.pressed(recorder, "28") == "t")
        self.assertIn("off", self.desktop.command("xset", "q").split("Caps Lock:")[1][:8])

    def pressed(self, recorder, keycode):
        count = len(recorder.keys())
        self.desktop.key(keycode)
        wait_for("a key", lambda: len(recorder.keys()) > count)
        return recorder.keys()[-1]

    def test_pixels(self):
        """The screen's pixels are those that a program has painted."""
        self.desktop.command("xsetroot", "-solid", "#102030")
        wait_for("the colour", lambda: self.desktop.x.pixels(600, 600, 1, 1)[:3] == b"\x30\x20\x10")

    def test_polling_gives_up(self):
        """A condition that never comes true fails, and so does a value that never rests."""
        with self.assertRaises(NotReached):
            wait_for("never", lambda: False, timeout=0.05)
        with self.assertRaises(NotReached):
            wait_until_stable("never", object, hold=0.01, timeout=0.05)

    def test_homes_are_fresh(self):
        """Each home is a new, empty folder."""
        first, second = self.desktop.new_home(), self.desktop.new_home()
        self.assertNotEqual(first["HOME"], second["HOME"])
        self.assertFalse(os.path.exists(os.path.join(second["HOME"], "Documents")))

    def test_nothing_is_left_behind(self):
        """With the desktop go its display and its folder, and what was started on it."""
        with VirtualDesktop(wm="none") as other:
            folder, client = other.folder, LoggedProcess(["xev"], other.env)
            wait_for("a client", lambda: client.lines)
        self.assertFalse(os.path.exists(folder))
        wait_for("the client ends", lambda: not client.running())
        client.finish()

    def test_missing_window_manager_is_told(self):
        """A desktop that cannot come up says why."""
        with self.assertRaisesRegex(DesktopFailure, "no-such-manager is not installed"):
            with VirtualDesktop(wm="no-such-manager"):
                pass


if __name__ == "__main__":
    main()
