"""The first start: the questions about the library, and the first things that a person does."""
from case import DesktopCase, main
from program import MAIN_WINDOW, Program
from waiting import wait_for, wait_until_stable


class FirstLaunchCase(DesktopCase):
    collections = None

    def start_program(self):
        program = self.start(Program, self.desktop, self.home, (), ())
        program.wait_main_window()
        return program

    def setUp(self):
        super().setUp()
        self.desktop.activate(MAIN_WINDOW)

    def settle(self):
        """Waits until nothing moves in the window, which takes keys by then. A caret may blink."""
        area = self.desktop.geometry(self.desktop.window(MAIN_WINDOW))
        wait_until_stable("the window stands still", lambda: self.desktop.x.pixels(*area), 0.4)

    def create_snippet(self):
        """Makes a snippet, whose title is then to be typed."""
        self.settle()
        self.desktop.key("ctrl+n")
        wait_for("the new snippet is on the disk", lambda: "New Snippet" in self.library.snippets())
        self.settle()

    def start_fresh(self):
        """Both steps by the keyboard: the first card, then the folder that is offered."""
        for key in ("space", "Return", "space"):
            self.settle()
            self.desktop.key(key)
        self.settle()
        self.desktop.key("Return")
        wait_for("the library is there", self.library.exists)
        wait_for("its list is loaded", lambda: "VellumryApp: 默认数据已创建" in self.program.lines)


class StartFresh(FirstLaunchCase):

    def test_makes_the_default_library(self):
        """The questions answered, the default library is on the disk, and they are not put again."""
        self.assertFalse(self.library.exists())
        self.start_fresh()
        self.assertGreater(len(self.library.snippets()), 10)
        self.program.finish()
        self.program = self.start_program()
        self.desktop.activate(MAIN_WINDOW)
        self.create_snippet()

    def test_write_a_snippet_and_find_it(self):
        """A snippet that is written, saved and found again by the palette."""
        self.start_fresh()
        self.create_snippet()
        self.desktop.type_text("zebra crossing")
        self.settle()
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
        self.create_snippet()
        self.desktop.type_text("draft of a zebra")
        self.settle()
        self.desktop.key("ctrl+q")
        self.settle()
        self.assertTrue(self.program.running())
        self.desktop.key("Escape")
        self.settle()
        self.assertTrue(self.program.running())
        self.desktop.key("ctrl+q")
        self.settle()
        self.desktop.key("Tab")
        self.desktop.key("space")
        wait_for("the end", lambda: not self.program.running())
        self.assertNotIn("draft of a zebra", self.library.snippets())


if __name__ == "__main__":
    main()
