"""Backups: out of the window into a file, and from a file into the library."""
import json
import os
import re

from case import SAMPLE, main
from library import snippet
from person import BUTTON, ROW, PersonCase
from program import MAIN_WINDOW
from waiting import wait_for

EXPORT = 2  # in the menu of a collection
IMPORT_DIALOG, EXPORT_DIALOG = "Import from JSON", "Export to JSON"
CONFLICTS = "Import Conflicts Detected"
CONTINUE = "Continue"


class Import(PersonCase):
    """A backup with a newer and an older text of two snippets, and one that is new."""
    collections = {"Notes": [snippet("newer here", "of the library", age_days=1),
                             snippet("newer there", "of the library", age_days=5)]}

    def setUp(self):
        super().setUp()
        self.backup = os.path.join(self.home["HOME"], "backup.json")
        records = [snippet("newer here", "of the backup", age_days=3),
                   snippet("newer there", "of the backup", age_days=2),
                   snippet("unknown here", "of the backup")]
        with open(self.backup, "w", encoding="utf-8") as file:
            json.dump({"version": "2.0", "exportedAt": "2026-03-09T14:05:07Z", "collections": [
                {"id": "ID-elsewhere", "name": "Notes", "displayOrder": 0,
                 "snippets": [{**record, "collection": "Notes",
                               "createdAt": whole_seconds(record["createdAt"]),
                               "updatedAt": whole_seconds(record["updatedAt"])}
                              for record in records]}]}, file)

    def import_with(self, mode):
        """Opens the backup, chooses the mode and goes on; returns the texts on disk by title."""
        self.desktop.key("ctrl+shift+i")
        self.answer_file_dialog(IMPORT_DIALOG, self.backup)
        self.wait_seen("Found 2 snippet(s) with the same title")
        self.wait_seen("1 new item(s) will be imported")
        before = self.library.file_bytes("Notes")
        self.click(mode, inside=CONFLICTS)
        self.assertEqual(self.library.file_bytes("Notes"), before)
        self.click(CONTINUE, BUTTON, CONFLICTS)
        wait_for("the new one is in", lambda: "unknown here" in self.library.snippets())
        self.wait_unseen(CONFLICTS)
        wait_for("the list shows it", lambda: self.seen(re.compile("unknown here, .*"), ROW))
        return {title: record["content"] for title, record in self.library.snippets().items()}

    def test_smart_update(self):
        """Of each pair the newer one stays."""
        self.assertEqual(self.import_with(re.compile("Smart Update.*")), {
            "newer here": "of the library", "newer there": "of the backup",
            "unknown here": "of the backup"})

    def test_restore_from_backup(self):
        """Of each pair that of the backup stays."""
        self.assertEqual(self.import_with(re.compile("Restore from Backup.*")), {
            "newer here": "of the backup", "newer there": "of the backup",
            "unknown here": "of the backup"})

    def test_skip_conflicts(self):
        """Of each pair that of the library stays."""
        self.assertEqual(self.import_with(re.compile("Skip Conflicts.*")), {
            "newer here": "of the library", "newer there": "of the library",
            "unknown here": "of the backup"})

    def test_keep_both(self):
        """Both of each pair are there, those of the backup under another title."""
        self.assertEqual(self.import_with(re.compile("Keep Both.*")), {
            "newer here": "of the library", "newer there": "of the library",
            "newer here (imported)": "of the backup", "newer there (imported)": "of the backup",
            "unknown here": "of the backup"})

    def test_cancel(self):
        """Nothing comes in."""
        before = self.library.file_bytes("Notes")
        self.desktop.key("ctrl+shift+i")
        self.answer_file_dialog(IMPORT_DIALOG, self.backup)
        self.wait_seen(CONFLICTS)
        self.desktop.key("Escape")
        self.wait_unseen(CONFLICTS)
        self.assertEqual(self.library.file_bytes("Notes"), before)


class Export(PersonCase):
    collections = SAMPLE

    def test_out_and_in_again(self):
        """One of two collections goes into a file; deleted, it comes back out of it."""
        backup = os.path.join(self.home["HOME"], "saved.json")
        self.choose(EXPORT, "Notes, 2 snippets", ROW)
        self.wait_seen("1 of 2 selected")
        self.desktop.key("Return")
        self.answer_file_dialog(EXPORT_DIALOG, backup)
        wait_for("the file is there", lambda: os.path.exists(backup))
        with open(backup, encoding="utf-8") as file:
            saved = json.load(file)
        self.assertEqual(
            {each["name"]: sorted(record["title"] for record in each["snippets"])
             for each in saved["collections"]}, {"Notes": ["alpha note", "beta note"]})

        self.program.finish()
        self.library.remove_collection("Notes")
        self.program = self.start_program()
        self.wait_seen("All Snippets, 1 snippet", ROW)
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+shift+i")
        self.answer_file_dialog(IMPORT_DIALOG, backup)
        wait_for("it is back on the disk", lambda: len(self.library.snippets()) == 3)
        self.assertEqual(self.library.snippets()["beta note"]["content"], "second of the notes")
        self.wait_seen("Notes, 2 snippets", ROW)


def whole_seconds(date):
    """As backups have them."""
    return re.sub(r"\.\d+", "", date)


if __name__ == "__main__":
    main()
