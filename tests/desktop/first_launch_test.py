"""The first start: the questions about the library, and the first things that a person does."""
from case import main
from person import BUTTON, PersonCase
from program import MAIN_WINDOW
from waiting import wait_for, wait_until_stable

DRAFTS = "There are 1 snippet draft(s) not saved."


class StartFresh(PersonCase):
    collections = None

    def settle(self):
        """Waits until nothing moves in the window, which takes keys by then."""
        area = self.desktop.geometry(self.desktop.window(MAIN_WINDOW))
        wait_until_stable("the window stands still", lambda: self.desktop.x.pixels(*area), 0.4)

    def create_snippet(self, title):
        """Makes a snippet by the keyboard as soon as the window takes the keys."""
        self.wait_seen("New Snippet", BUTTON)
        self.wait_unseen("Setting up your data...")  # it takes the keys as long as it is there
        self.create(title)

    def start_fresh(self):
        """Both steps by the keyboard: the first card, then the folder that is offered."""
        for key in ("space", "Return", "space"):
            self.settle()
            self.desktop.key(key)
        self.settle()
        self.desktop.key("Return")
        wait_for("the library is there", self.library.exists)

    def test_makes_the_default_library(self):
        """The questions answered, the default library is on the disk, and they are not put again."""
        self.assertFalse(self.library.exists())
        self.start_fresh()
        wait_for("it is whole", lambda: "VellumryApp: 默认数据已创建" in self.program.lines)
        self.assertGreater(len(self.library.snippets()), 10)
        self.start_again()
        self.desktop.activate(MAIN_WINDOW)
        self.create_snippet("zebra crossing")

    def test_write_a_snippet_and_find_it(self):
        """A snippet that is written, saved and found again by the palette."""
        self.start_fresh()
        self.create_snippet("zebra crossing")
        self.assertNotIn("zebra crossing", self.library.snippets())
        self.desktop.key("ctrl+s")
        wait_for("it is on the disk", lambda: "zebra crossing" in self.library.snippets())
        self.program.open_palette()
        self.program.search("zebra")
        self.desktop.key("Return")
        wait_for("its use is counted",
                 lambda: self.library.snippets()["zebra crossing"]["usageCount"] == 1)

    def test_the_end_asks_about_drafts(self):
        """What is not saved is asked about at the end; discarded, it is not on the disk."""
        self.start_fresh()
        self.create_snippet("draft of a zebra")
        self.desktop.key("ctrl+q")
        self.wait_seen(DRAFTS)
        self.desktop.key("Escape")
        self.wait_unseen(DRAFTS)
        self.assertTrue(self.program.running())
        self.desktop.key("ctrl+q")
        self.wait_seen(DRAFTS)
        self.desktop.key("Tab", "space")
        wait_for("the end", lambda: not self.program.running())
        self.assertNotIn("draft of a zebra", self.library.snippets())


if __name__ == "__main__":
    main()
