"""The main window used as a person does, and what is on the disk afterwards."""
import contextlib
import re

from case import SAMPLE, main
from library import snippet
from person import BUTTON, FIELD, ROW, TITLE, PersonCase
from program import MAIN_WINDOW
from waiting import NotReached, wait_for, wait_until_stable

SUBTITLE, CONTENT = "Add a subtitle (optional)", "Snippet content"
KEYWORDS, FILTER = "Related terms", "Filter list"
CARDS, SIDEBAR = "Snippets", "Collections"
# Positions in the menus.
DELETE_CARD = 1
RENAME, DELETE_COLLECTION = 1, 3


def row_of(name):
    """The row of that collection, or the card of that title."""
    return re.compile(re.escape(name) + ", .*")


class MainWindowCase(PersonCase):

    def select(self, title):
        """Clicks on the card of that title and waits for it in the editor. On a machine that is
        held up the library is read again after a save, and the cards can move under the hand:
        then the click is repeated."""
        def selected():
            self.click(row_of(title), ROW, CARDS)
            with contextlib.suppress(NotReached):
                return wait_for("the title", lambda: self.text_of(TITLE) == title, timeout=3)
        wait_for(f"{title!r} is in the editor", selected)

    def save(self, title):
        self.desktop.key("ctrl+s")
        wait_for(f"{title!r} is on the disk", lambda: title in self.library.snippets())
        self.wait_unseen("Unsaved changes")

    def cards(self):
        """What the list shows, from the top."""
        return [name.split(",")[0] for name in self.rows(CARDS)]

    def sidebar(self):
        """What the sidebar shows below the whole library, from the top."""
        names = [name.rsplit(",", 1)[0] for name in self.rows(SIDEBAR)]
        return [name for name in names if name not in ("All Snippets", "Unsaved")]


class Writing(MainWindowCase):

    def test_write_tag_move_and_find_again(self):
        """A snippet is made, written, tagged, put into one collection and then, by the picker, into
        another; after a restart the filter finds it and Ctrl+C copies it."""
        self.create("zebra crossing")
        self.enter("look left", SUBTITLE)
        self.enter("black and white", CONTENT)
        self.click(KEYWORDS, FIELD)
        self.wait_focused(KEYWORDS)
        self.desktop.type_text("stripes,")
        self.wait_seen("Remove stripes", BUTTON)
        self.desktop.type_text("street")
        self.desktop.key("Return")
        self.wait_seen("Remove street", BUTTON)
        self.pick("Notes")
        self.save("zebra crossing")
        record = self.library.snippets()["zebra crossing"]
        self.assertEqual((record["subtitle"], record["content"], record["keywords"]),
                         ("look left", "black and white", ["stripes", "street"]))
        self.assertIn("zebra crossing", self.library.titles()["Notes"])

        self.pick("Mail")
        self.desktop.key("ctrl+s")
        wait_for("it is in the other file alone", lambda: [
            name for name, titles in self.library.titles().items() if "zebra crossing" in titles
        ] == ["Mail"])

        self.start_again()
        self.enter("stripes", FILTER)
        wait_for("it alone is listed", lambda: self.cards() == ["zebra crossing"])
        self.desktop.key("Return")
        wait_for("it is in the editor", lambda: self.text_of(CONTENT) == "black and white")
        self.desktop.key("ctrl+c")
        self.desktop.wait_clipboard("black and white")
        wait_for("its use is counted",
                 lambda: self.library.snippets()["zebra crossing"]["usageCount"] == 1)
        self.assertIn("zebra crossing", self.library.titles()["Mail"])

    def test_new_collection_of_the_picker(self):
        """The picker makes a collection too, and the snippet moves there."""
        self.select("alpha note")
        self.open_picker(len(self.sidebar()) + 1)
        self.wait_focused("Enter collection name")
        self.desktop.type_text("Travel")
        self.desktop.key("Return")
        wait_for("it is on the disk", lambda: self.library.titles() == {
            "Mail": ["letter"], "Notes": ["beta note"], "Travel": ["alpha note"]})
        wait_for("the sidebar shows it", lambda: "Travel" in self.sidebar())

    def test_back_from_another_program(self):
        """Whoever comes back has the window before them but is in no field of it: what is typed
        then goes into no text."""
        self.create("zebra")
        self.turn_away()
        self.desktop.activate(MAIN_WINDOW)
        # Qt enters the field for a moment.
        self.assertEqual(self.field_of_the_keyboard(), [])
        self.desktop.type_text("xyz")
        self.save("zebra")
        self.assertEqual(self.text_of(TITLE), "zebra")

    def test_back_by_a_click_into_a_field(self):
        """Whoever comes back by a click into a field writes there."""
        self.create("zebra")
        for letter in "abcdefgh":
            self.turn_away()
            self.click(TITLE, FIELD)
            self.desktop.wait_focus(MAIN_WINDOW)
            self.assertEqual(self.field_of_the_keyboard(), [TITLE], letter)
            self.desktop.key("ctrl+a", letter)
            wait_for("the letter is typed", lambda each=letter: self.text_of(TITLE) == each)

    def fields_with_keyboard(self):
        return [each.name for each in self.seen("", FIELD) if "focused" in each.states]

    def field_of_the_keyboard(self):
        """Waits until the keyboard is where it stays."""
        return wait_until_stable("the keyboard is where it stays", self.fields_with_keyboard, 0.5)

    def turn_away(self):
        """Goes on in the other program."""
        self.recorder.focus()
        wait_for("the program has seen it", lambda: not self.fields_with_keyboard())

    def test_revert(self):
        """What is typed is a draft; reverted, the editor has the text of the disk again, and so has
        the list."""
        before = self.library.file_bytes("Notes")
        self.select("alpha note")
        self.enter("spoilt", CONTENT)
        self.enter("spoilt title", TITLE)
        wait_for("the card shows the draft", lambda: "spoilt title" in self.cards())
        self.click("Revert", BUTTON)
        wait_for("the old text is back", lambda: self.text_of(CONTENT) == "first of the notes")
        wait_for("the old title is back", lambda: "alpha note" in self.cards())
        self.wait_unseen("Unsaved changes")
        self.assertEqual(self.library.file_bytes("Notes"), before)

    def test_delete_asks(self):
        """The question answered with no, the snippet stays; with yes, it is gone for good."""
        self.choose(DELETE_CARD, row_of("beta note"), ROW, CARDS)
        self.wait_seen("Are you sure you want to delete this snippet?")
        self.desktop.key("Escape")
        self.wait_unseen("Delete Snippet")
        self.assertIn("beta note", self.library.snippets())
        self.choose(DELETE_CARD, row_of("beta note"), ROW, CARDS)
        self.click("Delete", BUTTON, "Delete Snippet")
        wait_for("it is gone", lambda: "beta note" not in self.library.snippets())
        self.start_again()
        wait_for("the others are there", lambda: sorted(self.cards()) == ["alpha note", "letter"])

    def pick(self, collection):
        """Chooses the collection of the snippet that is in the editor."""
        self.open_picker(self.sidebar().index(collection) + 1)
        self.wait_seen(collection, BUTTON)

    def open_picker(self, position):
        """Its entries are the collections as in the sidebar, then the one that makes another."""
        present = re.compile("|".join(map(re.escape, self.sidebar())))
        self.choose(position, present, BUTTON, button=1)


class Order(MainWindowCase):
    collections = {**SAMPLE, "Shell": [snippet("disk", "df -h", age_days=4)]}

    def test_rename_and_reorder_collections(self):
        """A collection gets another name and another place, which are on the disk and there again
        after a restart."""
        self.choose(RENAME, row_of("Notes"), ROW, SIDEBAR)
        self.enter("Ideas", "New name")
        self.desktop.key("Return")
        wait_for("the new name is on the disk", lambda: "Ideas" in self.library.titles())
        wait_for("the sidebar shows it", lambda: self.sidebar() == ["Mail", "Ideas", "Shell"])
        self.drag_row("Shell", "Mail", SIDEBAR)
        wait_for("the new order is on the disk",
                 lambda: list(self.library.titles()) == ["Shell", "Mail", "Ideas"])
        self.assertEqual(sorted(self.library.titles()["Ideas"]), ["alpha note", "beta note"])
        self.start_again()
        wait_for("it is there again", lambda: self.sidebar() == ["Shell", "Mail", "Ideas"])

    def test_reorder_snippets(self):
        """A snippet dragged to another place of its collection stays there, and is there again
        after a restart. The order alone is not written; it goes with the next use of the file."""
        self.click(row_of("Notes"), ROW, SIDEBAR)
        wait_for("its snippets are listed", lambda: len(self.cards()) == 2)
        first, second = self.cards()
        self.drag_row(first, second, CARDS)
        wait_for("it is in its new place", lambda: self.cards() == [second, first])
        self.select(first)
        self.desktop.key("ctrl+c")
        wait_for("its use is counted", lambda: self.library.snippets()[first]["usageCount"] == 1)
        self.assertEqual(self.library.titles()["Notes"], [second, first])
        self.start_again()
        self.click(row_of("Notes"), ROW, SIDEBAR)
        wait_for("it is there again", lambda: self.cards() == [second, first])

    def test_delete_collection_asks(self):
        """A collection goes with its snippets once the question has been answered with yes."""
        self.choose(DELETE_COLLECTION, row_of("Notes"), ROW, SIDEBAR)
        self.wait_seen(re.compile('Are you sure you want to delete "Notes" and all its snippets.*'))
        self.desktop.key("Escape")
        self.wait_unseen("Delete Collection")
        self.assertIn("Notes", self.library.titles())
        self.choose(DELETE_COLLECTION, row_of("Notes"), ROW, SIDEBAR)
        self.click("Delete", BUTTON, "Delete Collection")
        wait_for("it is gone", lambda: self.library.titles() == {
            "Mail": ["letter"], "Shell": ["disk"]})
        self.start_again()
        wait_for("the others are there", lambda: self.sidebar() == ["Mail", "Shell"])

    def drag_row(self, name, onto, inside):
        """Drags a row to the far side of another one."""
        start = self.wait_seen(row_of(name), ROW, inside)
        end = self.wait_seen(row_of(onto), ROW, inside)
        x, y, _, height = end.place
        rises = end.place[1] < start.place[1]
        self.drag(start.middle(), (x + 40, y + 6 if rises else y + height - 6))


class Quit(MainWindowCase):

    def quit_with_drafts(self):
        """Leaves a draft of a new snippet and one of an old one, and asks for the end."""
        self.create("zebra crossing")
        self.select("alpha note")
        self.enter("rewritten", CONTENT)
        self.desktop.key("ctrl+q")
        self.wait_seen("There are 2 snippet draft(s) not saved.")

    def wait_end(self):
        wait_for("the end", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0, self.program.lines)

    def test_save_all(self):
        """Both drafts are on the disk, and in the window after the next start."""
        self.quit_with_drafts()
        self.desktop.key("Return")
        self.wait_end()
        self.assertEqual(self.library.snippets()["alpha note"]["content"], "rewritten")
        self.start_again()
        self.wait_seen(row_of("zebra crossing"), ROW, CARDS)
        self.select("alpha note")
        wait_for("its text is there", lambda: self.text_of(CONTENT) == "rewritten")

    def test_discard(self):
        """Neither draft is on the disk; the new snippet is as it was when it was made."""
        self.quit_with_drafts()
        self.click("Discard Drafts & Quit", BUTTON)
        self.wait_end()
        self.assertEqual(self.library.snippets()["alpha note"]["content"], "first of the notes")
        self.assertNotIn("zebra crossing", self.library.snippets())
        self.start_again()
        self.wait_seen(row_of("New Snippet"), ROW, CARDS)
        self.select("alpha note")
        wait_for("its old text is there", lambda: self.text_of(CONTENT) == "first of the notes")

    def test_cancel(self):
        """The program goes on with both drafts, which can still be saved."""
        self.quit_with_drafts()
        self.click("Cancel", BUTTON)
        self.wait_unseen("You have unsaved changes")
        self.assertTrue(self.program.running())
        self.assertEqual(self.text_of(CONTENT), "rewritten")
        self.assertEqual(self.library.snippets()["alpha note"]["content"], "first of the notes")
        self.desktop.key("ctrl+s")
        wait_for("the one is saved",
                 lambda: self.library.snippets()["alpha note"]["content"] == "rewritten")
        self.wait_seen(re.compile("Unsaved, 1 snippet"), ROW, SIDEBAR)
        self.select("zebra crossing")
        self.save("zebra crossing")
        self.desktop.key("ctrl+q")
        self.wait_end()


if __name__ == "__main__":
    main()
