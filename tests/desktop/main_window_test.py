"""The main window at the start, when it is closed, and when it is asked for again."""
from case import DesktopCase, main
from program import ADOPTED, MAIN_WINDOW, NO_MAIN_WINDOW, Program
from waiting import wait_for

MOST_STARTS = 10
RETRYING = "setupMainWindowWithRetry: Window not found, retrying... attempts remaining: "


class StartByHand(DesktopCase):
    starts = 0

    def start_program(self):
        """Returns when the program raises its window no more by itself."""
        self.starts += 1
        program = self.start(Program, self.desktop, self.home, (), ())
        program.wait_main_window()
        return program

    def open_from_palette(self):
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_focus(MAIN_WINDOW)

    def test_shows_and_adopts_the_main_window(self):
        """A start by hand shows the main window, once, with the keyboard, and adopts it once, at
        the first look. A start that the machine held up may need another look, hence several."""
        adopted = []
        while adopted != [f"{ADOPTED}vellumry::AppKitWindow, attempts remaining: 5"]:
            self.assertLess(self.starts, MOST_STARTS, adopted)
            self.program.finish()
            self.program = self.start_program()
            self.assertEqual(len(self.desktop.windows(MAIN_WINDOW)), 1)
            adopted = [line for line in self.program.lines if line.startswith(ADOPTED)]
            self.assertEqual(len(adopted), 1, adopted)

    def test_closing_hides_and_the_palette_brings_it_back(self):
        """The window that was closed is the one that comes again, and the palette hides it."""
        self.desktop.activate(MAIN_WINDOW)
        window = self.desktop.window(MAIN_WINDOW)
        self.desktop.key("alt+F4")
        self.desktop.wait_gone(MAIN_WINDOW)
        self.open_from_palette()
        self.assertEqual(self.desktop.window(MAIN_WINDOW), window)
        self.program.open_palette()
        self.desktop.wait_gone(MAIN_WINDOW)
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.assertEqual(self.desktop.windows(MAIN_WINDOW), [])

    def test_close_window_hides_too(self):
        """The command Close Window takes the window off the screen; the program stays."""
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+w")
        self.desktop.wait_gone(MAIN_WINDOW)
        self.open_from_palette()

    def test_quit_ends_the_program(self):
        """The command Quit ends the program while the window is open."""
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+q")
        wait_for("the end", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0)


class StartByTheLogin(DesktopCase):

    def test_shows_nothing(self):
        """With --hidden there is no window, and the search for one ends after five looks."""
        wait_for("the search is over", lambda: NO_MAIN_WINDOW in self.program.lines)
        self.assertEqual([line for line in self.program.lines if line.startswith(RETRYING)],
                         [f"{RETRYING}{left}" for left in (4, 3, 2, 1, 0)])
        self.assertEqual(self.desktop.windows(MAIN_WINDOW), [])


if __name__ == "__main__":
    main()
