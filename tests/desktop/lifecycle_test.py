"""Start and end of the process."""
import signal

from case import LETTER_TEXT, DesktopCase, main
from program import MAIN_WINDOW, PALETTE, Program
from waiting import wait_for


class Lifecycle(DesktopCase):

    def test_termination_signal_ends_cleanly(self):
        """SIGTERM ends the program with status 0, and the hot key is free again: the keys reach
        the other program."""
        self.assertEqual(self.program.finish(), 0, self.program.lines)
        self.desktop.key("alt+t")
        wait_for("the key in the other program", lambda: self.recorder.keys() == ["t"])

    def test_termination_with_the_palette_open(self):
        """SIGTERM while the palette has the keyboard ends the program too, and frees the keyboard."""
        self.program.open_palette()
        self.assertEqual(self.program.finish(), 0, self.program.lines)
        self.assertEqual(self.desktop.windows(PALETTE), [])
        self.desktop.activate("Recorder")
        self.assert_nothing_leaked()

    def test_termination_with_the_main_window_open(self):
        """SIGTERM ends the program also while the main window, which has its icon, is open and
        only hides when closed."""
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_focus(MAIN_WINDOW)
        icon = self.desktop.command("xprop", "-notype", "-id", self.desktop.window(MAIN_WINDOW),
                                    "-len", "8", "32c", "_NET_WM_ICON")
        self.assertRegex(icon, r"= \d+")
        self.assertEqual(self.program.finish(), 0, self.program.lines)

    def test_hangup_under_nohup(self):
        """A program that was started to outlive its terminal does, and one that was not ends."""
        self.program.process.send_signal(signal.SIGHUP)
        wait_for("the end by SIGHUP", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0, self.program.lines)
        self.program = self.start(Program, self.desktop, self.home, ["nohup"])
        self.program.process.send_signal(signal.SIGHUP)
        self.recorder.focus()
        self.program.open_palette()
        self.assertEqual(self.program.finish(), 0, self.program.lines)

    def test_starts_again(self):
        """A second start after the end finds its hot key free and works."""
        self.program.finish()
        self.program = self.start_program()
        self.recorder.focus()
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)


if __name__ == "__main__":
    main()
