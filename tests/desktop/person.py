"""A person before the program's windows: reads what they show, clicks on it and types."""
from case import DesktopCase
from program import MAIN_WINDOW, WINDOW_CLASS, Program
from screen_reader import ScreenReader
from waiting import NotReached, wait_for

# What screen readers call things.
BUTTON, ROW, FIELD = "push button", "list item", "text"
# The field of a snippet's title in the editor.
TITLE = "Snippet Title"


class PersonCase(DesktopCase):
    """Starts the program with its main window. `kind` and `wrapper` are those of the program."""
    kind, wrapper = Program, ()

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.reader = ScreenReader(cls.desktop)
        cls.addClassCleanup(cls.reader.finish)

    def start_program(self):
        program = self.start(self.kind, self.desktop, self.home, self.wrapper, ())
        program.wait_main_window()
        return program

    def setUp(self):
        super().setUp()
        self.desktop.activate(MAIN_WINDOW)

    def start_again(self):
        """Ends the program if it still runs, and starts it with the same library and settings."""
        self.program.finish()
        self.program = self.start_program()

    # Eyes. A thing is told by its name, a text or a pattern; its role; the name of something that
    # it stands in; and the title of its window. What is not given does not matter.

    def seen(self, name="", role="", inside="", window=""):
        """All such things that are shown."""
        return [each for each in self.reader.look(window) if each.fits(name, role, inside)]

    def wait_seen(self, name="", role="", inside="", window=""):
        """Waits until it is shown and rests there; returns the last one, which is the topmost."""
        last = None

        def resting():
            nonlocal last
            found = self.seen(name, role, inside, window)
            before, last = last, found[-1] if found else None
            return last if last and before and last.place == before.place and \
                self.is_on_screen(last) else None
        try:
            return wait_for(f"{role or 'something'} {name!r} is shown", resting)
        except NotReached as failure:
            names = [each.name for each in self.reader.look(window) if each.name]
            raise NotReached(f"{failure}; shown are {names}") from failure

    def wait_unseen(self, name="", role="", inside="", window=""):
        wait_for(f"{role or 'something'} {name!r} is shown no more",
                 lambda: not self.seen(name, role, inside, window))

    def is_on_screen(self, shown):
        x, y = shown.middle()
        return 0 <= x < self.desktop.size[0] and 0 <= y < self.desktop.size[1]

    def rows(self, inside):
        """The names of the rows of that list, from the top."""
        rows = self.seen("", ROW, inside)
        return [each.name for each in sorted(rows, key=lambda row: row.place[1])]

    # Hands

    def click(self, name="", role="", inside="", window="", button=1):
        """Waits until it can be used, then clicks on its middle."""
        def usable():
            found = self.wait_seen(name, role, inside, window)
            return found if "enabled" in found.states else None
        x, y = wait_for(f"{name!r} can be used", usable).middle()
        self.desktop.command("xdotool", "mousemove", str(x), str(y), "click", str(button))

    def choose(self, position, name="", role="", inside="", button=3):
        """Opens the menu of the thing by that button of the mouse and chooses the entry at the
        position, from 1, by the keyboard."""
        before = self.program_windows()
        self.click(name, role, inside, button=button)
        wait_for("the menu", lambda: self.program_windows() - before)
        self.desktop.move_pointer(0, 0)  # which would choose, too
        self.desktop.key(*["Down"] * position, "Return")
        wait_for("the menu is gone", lambda: self.program_windows() == before)

    def program_windows(self):
        return set(self.desktop.windows_of(WINDOW_CLASS))

    def create(self, title):
        """Makes a snippet with the key for it, and gives it a title, which is not saved."""
        self.desktop.key("ctrl+n")
        wait_for("the new snippet is on the disk", lambda: "New Snippet" in self.library.snippets())
        self.wait_focused(TITLE)
        self.desktop.key("ctrl+a")
        self.desktop.type_text(title)
        wait_for("the title is typed", lambda: self.text_of(TITLE) == title)

    def enter(self, text, field):
        """Clicks into the field of that name and types the text in the place of what it holds."""
        self.click(field, FIELD)
        self.wait_focused(field)
        self.desktop.key("ctrl+a")
        self.desktop.type_text(text)
        wait_for(f"{field!r} holds {text!r}", lambda: self.text_of(field) == text)

    def answer_file_dialog(self, title, path):
        """Types the path into the file dialog of that title, which opens, and takes it; its window
        has the keyboard again."""
        back = self.program_windows()
        self.desktop.wait_focus(title)
        self.wait_seen("", FIELD, window=title)
        self.desktop.key("ctrl+a")
        self.desktop.type_text(path)
        wait_for("the path is typed", lambda: self.text_of("", title) == path)
        self.desktop.key("Return")
        self.desktop.wait_gone(title)
        wait_for("one of the windows behind has the keyboard", lambda: self.desktop.command(
            "xdotool", "getwindowfocus", check=False).strip() in back)

    def wait_focused(self, field):
        wait_for(f"{field!r} has the keyboard", lambda: any(
            "focused" in each.states for each in self.seen(field, FIELD)))

    def text_of(self, field, window=""):
        found = self.seen(field, FIELD, window=window)
        return found[-1].text if found else None

    def drag(self, start, end):
        """Drags from the one place on the screen to the other, as slowly as a hand does."""
        steps = 12
        self.desktop.move_pointer(*start)
        words = ["mousedown", "1"]
        for step in range(1, steps + 1):
            x, y = (a + (b - a) * step // steps for a, b in zip(start, end))
            words += ["mousemove", str(x), str(y), "sleep", "0.03"]
        self.desktop.command("xdotool", *words, "mouseup", "1")
