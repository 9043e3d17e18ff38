"""Conflict copies that a cloud drive has left in the folder."""
import os
import re

from case import main
from person import BUTTON, PersonCase
from program import MAIN_WINDOW, SETTINGS_WINDOW
from waiting import wait_for

# What the sheet is for, and the settings warn of.
TITLE = "Sync Conflict Detected"
# The names that drives give in fact. Others are ordinary collection files.
COPIES = ("mail (conflicted copy 2026-03-09).json", "notes (conflicted copy 2026-03-10).json")


class ConflictCopies(PersonCase):

    def setUp(self):
        super().setUp()
        for name in COPIES:
            with open(self.path(name), "w", encoding="utf-8") as file:
                file.write("{}")
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+comma")
        self.desktop.wait_focus(SETTINGS_WINDOW)
        self.wait_seen("2 conflict file(s) found", window=SETTINGS_WINDOW)

    def path(self, name):
        return os.path.join(self.library.folder, name)

    def copies(self):
        return sorted(filter(lambda name: os.path.exists(self.path(name)), COPIES))

    def open_sheet(self):
        self.click("Resolve...", BUTTON, window=SETTINGS_WINDOW)
        self.wait_seen("Conflict Files (2)", window=SETTINGS_WINDOW)

    def test_ignored(self):
        """Ignored, the copies stay where they are, and so does the warning."""
        self.open_sheet()
        self.click("Ignore for Now", BUTTON, window=SETTINGS_WINDOW)
        self.wait_unseen("Conflict Files (2)", window=SETTINGS_WINDOW)
        self.assertEqual(self.copies(), sorted(COPIES))
        self.wait_seen("2 conflict file(s) found", window=SETTINGS_WINDOW)

    def test_looked_at_and_resolved(self):
        """A row tells where its copy is; resolved, the copies and the warning are gone, and the
        library is untouched."""
        before = {name: self.library.file_bytes(name) for name in ("Mail", "Notes")}
        self.open_sheet()
        row = re.compile(re.escape(COPIES[0]) + ".*")
        self.click(row, window=SETTINGS_WINDOW)
        self.wait_seen(re.compile(".*" + re.escape(self.path(COPIES[0])) + ".*"),
                       window=SETTINGS_WINDOW)
        self.click("Resolve Conflict", BUTTON, window=SETTINGS_WINDOW)
        wait_for("the copies are gone", lambda: self.copies() == [])
        self.wait_unseen(TITLE, window=SETTINGS_WINDOW)
        self.wait_unseen(re.compile(".*conflict file.*found"), window=SETTINGS_WINDOW)
        self.assertEqual(before, {name: self.library.file_bytes(name) for name in before})
        self.assertTrue(self.program.running())


if __name__ == "__main__":
    main()
