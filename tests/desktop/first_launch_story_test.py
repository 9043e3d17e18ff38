"""The first start of someone who has a library already."""
import os

from case import SAMPLE, main
from library import Library
from person import BUTTON, ROW, PersonCase
from program import MAIN_WINDOW
from waiting import wait_for

CHOICE = "Use Existing Data"


class ExistingLibrary(PersonCase):
    collections = None

    def setUp(self):
        super().setUp()
        self.carried = Library(self.home["HOME"], os.path.join(self.home["HOME"], "carried", "here"))
        self.carried.write(SAMPLE)

    def choose_folder(self, path):
        self.click("Continue", BUTTON)
        self.answer_file_dialog("Choose Folder", path)

    def test_is_used_where_it_is(self):
        """The folder chosen is the library from now on: its snippets are listed, a new one goes
        into it, nothing is made in the usual place, and the question is not put again."""
        self.click(CHOICE)
        self.choose_folder(self.carried.folder)
        self.wait_seen("letter, Mail, yesterday", ROW)
        self.wait_unseen("Loading your data...")  # it takes the keys as long as it is there
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+n")
        wait_for("the new snippet is in it", lambda: "New Snippet" in self.carried.snippets())
        self.assertFalse(self.library.exists())
        self.start_again()
        self.wait_seen("letter, Mail, yesterday", ROW)
        self.wait_unseen(CHOICE)

    def test_folder_without_a_library(self):
        """It is refused in words, and another can be chosen."""
        self.click(CHOICE)
        self.choose_folder(os.path.dirname(self.carried.folder))
        self.wait_seen("No Vellumry data found in this folder. Please select a folder containing "
                       "Vellumry data files.")
        self.choose_folder(self.carried.folder)
        self.wait_seen("letter, Mail, yesterday", ROW)
        self.wait_unseen(CHOICE)


if __name__ == "__main__":
    main()
