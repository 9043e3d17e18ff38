"""The status item, in a status area that comes, goes and comes back."""
import os
import subprocess

from case import DesktopCase, main
from processes import LoggedProcess
from program import MAIN_WINDOW
from waiting import wait_for

ENTRIES = ["Open Vellumry", "Quick Search", "New Snippet", "Settings...", "Quit Vellumry"]


class StatusArea(LoggedProcess):
    """The area, and the person's hand in it."""
    stdin = subprocess.PIPE

    def __init__(self, desktop):
        super().__init__([os.environ["VELLUMRY_STATUS_AREA"]], desktop.env)
        wait_for("the status area is there", lambda: "ready" in self.lines)

    def items(self):
        return [line for line in self.lines if line.startswith("item ")]

    def entries(self):
        return [line.removeprefix("entry ") for line in self.lines if line.startswith("entry ")]

    def wait_item(self):
        wait_for("an item with its menu", lambda: len(self.entries()) >= len(ENTRIES))

    def click(self, label):
        self.process.stdin.write(f"{label}\n".encode())
        self.process.stdin.flush()

    def finish(self):
        self.process.stdin.close()
        return super().finish()


class Item(DesktopCase):

    def test_area_that_is_there_first(self):
        """The item comes at the start, and each entry of its menu does what it says."""
        self.program.finish()
        area = self.start(StatusArea, self.desktop)
        self.program = self.start_program()
        area.wait_item()
        self.assertEqual(area.entries(), ENTRIES)
        self.assertEqual(len(area.items()), 1)
        self.program.wait_settled()
        area.click("Quick Search")
        self.program.wait_palette()
        area.click("Settings...")
        self.program.wait_palette_gone()
        area.click("Open Vellumry")
        self.desktop.wait_focus(MAIN_WINDOW)
        area.click("Quit Vellumry")
        wait_for("the end", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0, self.program.lines)

    def test_area_that_comes_later_and_restarts(self):
        """The item comes when the area does, and again when the area has been restarted."""
        self.program.wait_settled()
        area = self.start(StatusArea, self.desktop)
        area.wait_item()
        area.finish()
        second = self.start(StatusArea, self.desktop)
        second.wait_item()
        self.program.wait_settled()
        second.click("Open Vellumry")
        self.desktop.wait_focus(MAIN_WINDOW)

    def test_no_area(self):
        """Where there is none, one line says so, and the program works."""
        line = "MenuBarService: this desktop shows no status area, so Vellumry is reached by its " \
               "hot key, by its windows and by starting it again"
        wait_for("the line", lambda: self.program.count(line) == 1)
        self.program.open_palette()


if __name__ == "__main__":
    main()
