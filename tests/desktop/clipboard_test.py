"""The manners of the clipboard on X11: what is copied outlives the program where a clipboard manager
runs, large texts arrive whole, and the primary selection is nobody's business."""
import os
import subprocess

from case import LETTER_TEXT, SAMPLE, DesktopCase, main
from library import snippet
from processes import LoggedProcess, guarded
from waiting import wait_for

LARGE = "0123456789abcdef" * (5 * 1024 * 1024 // 16)


class ClipboardManager(LoggedProcess):

    def __init__(self, desktop):
        super().__init__([os.environ["VELLUMRY_CLIPBOARD_MANAGER"]],
                         {**desktop.env, "QT_QPA_PLATFORM": "xcb"})
        wait_for("the clipboard manager is there",
                 lambda: "ready" in self.lines or not self.running())


class Clipboard(DesktopCase):
    collections = {**SAMPLE, "Large": [snippet("five megabytes", LARGE)]}

    def copy(self, query, text):
        self.program.open_palette()
        self.program.search(query)
        self.desktop.key("Return")
        self.desktop.wait_clipboard(text)
        self.program.wait_palette_gone()

    def quit_program(self):
        """The orderly end, as from the status item's menu."""
        self.program.run_again("--quit").check_returncode()
        wait_for("the end", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0, self.program.lines)

    def test_text_outlives_the_program(self):
        """Where a clipboard manager runs, the text is there after the program has quit; without
        one it goes with the program, as every program's does."""
        self.copy("letter", LETTER_TEXT)
        self.quit_program()
        wait_for("an empty clipboard", lambda: self.desktop.clipboard() is None)

        self.start(ClipboardManager, self.desktop)
        self.program = self.start_program()
        self.copy("letter", LETTER_TEXT)
        self.quit_program()
        self.assertEqual(self.desktop.clipboard(), LETTER_TEXT)

    def test_large_text(self):
        """Five megabytes arrive whole, twice, and outlive the program as well."""
        self.start(ClipboardManager, self.desktop)
        self.copy("megabytes", LARGE)
        self.assertEqual(self.desktop.clipboard(), LARGE)
        self.quit_program()
        self.assertEqual(self.desktop.clipboard(), LARGE)

    def test_primary_selection(self):
        """What is selected elsewhere stays there for the middle button."""
        owner = subprocess.Popen(guarded(["xclip", "-i", "-quiet", "-selection", "primary"]),
                                 env=self.desktop.env, stdin=subprocess.PIPE,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(owner.wait)
        self.addCleanup(owner.terminate)
        owner.stdin.write(b"selected")
        owner.stdin.close()
        wait_for("a selection", lambda: self.desktop.clipboard(selection="primary") == "selected")
        self.copy("letter", LETTER_TEXT)
        self.assertEqual(self.desktop.clipboard(selection="primary"), "selected")


if __name__ == "__main__":
    main()
