"""The library folder, shared with other programs and machines."""
from case import LETTER, LETTER_TEXT, NOTES, DesktopCase, main
from library import snippet
from waiting import wait_for


class LibraryOnDisk(DesktopCase):

    def copy(self, query, text):
        self.program.open_palette()
        self.program.search(query)
        self.desktop.key("Return")
        self.desktop.wait_clipboard(text)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def wait_used(self, title, count):
        wait_for("the use is on disk",
                 lambda: self.library.snippets()[title]["usageCount"] == count)

    def restart_after(self, change):
        """Ends the program, changes the folder as another machine does, and starts it again."""
        self.program.finish()
        change()
        self.program = self.start_program()
        self.recorder.focus()

    def test_only_the_changed_collection_is_written(self):
        """A copy writes the file of its collection; the other collection's file keeps its bytes."""
        notes = self.library.file_bytes("Notes")
        self.copy("letter", LETTER_TEXT)
        self.wait_used("letter", 1)
        self.assertEqual(self.library.file_bytes("Notes"), notes)

    def test_change_between_two_runs(self):
        """A snippet that another machine has added while the program was not running is found,
        and the uses counted before are still there."""
        self.copy("letter", LETTER_TEXT)
        self.wait_used("letter", 1)
        added = snippet("gamma note", "third of the notes")
        self.restart_after(lambda: self.library.write_collection("Notes", [*NOTES, added]))
        self.copy("gamma", "third of the notes")
        self.copy("letter", LETTER_TEXT)
        self.wait_used("letter", 2)
        self.wait_used("gamma note", 1)

    def test_file_of_another_machine_is_not_overwritten(self):
        """A file that another machine has written keeps its bytes through a copy from another
        collection, and is written anew only by a copy from its own."""
        edited = snippet("alpha note", "edited elsewhere", age_days=0)
        self.restart_after(lambda: self.library.write_collection("Notes", [edited]))
        foreign = self.library.file_bytes("Notes")
        self.copy("letter", LETTER_TEXT)
        self.wait_used("letter", 1)
        self.assertEqual(self.library.file_bytes("Notes"), foreign)
        self.copy("alpha", "edited elsewhere")
        self.wait_used("alpha note", 1)

    def test_unreadable_file_is_left_alone(self):
        """A damaged collection file does not hide the rest of the library and is not touched."""
        damaged = b'{"collection": {"id": "ID-Notes"'

        def damage():
            with open(f"{self.library.folder}/Notes.json", "wb") as file:
                file.write(damaged)
        self.restart_after(damage)
        self.copy("letter", LETTER_TEXT)
        wait_for("the use is on disk",
                 lambda: self.library.collection("Mail")["snippets"][0]["usageCount"] == 1)
        self.assertEqual(self.library.file_bytes("Notes"), damaged)

    def test_restart_fills_the_same_values(self):
        """After a restart the stored values still fill the placeholders."""
        self.restart_after(lambda: self.library.write_collection(
            "Mail", [{**LETTER, "variables": {"name": "Alan"}}]))
        self.copy("letter", "Dear Alan,\nkind regards\n{{sender}}")


if __name__ == "__main__":
    main()
