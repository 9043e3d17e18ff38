"""The keys of the palette, in the real program under a real window manager."""
from case import LETTER_TEXT, DesktopCase, main
from program import HIDING, HOTKEY, MAIN_WINDOW, PALETTE, RAISED_WHEN_MADE
from waiting import wait_for


class PaletteKeys(DesktopCase):

    def test_escape_closes(self):
        """Escape closes the palette, nothing is copied, and the focus returns."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.assert_nothing_leaked()
        self.assert_not_copied()

    def test_two_returns_at_once_are_one_use(self):
        """What is pressed behind the Return that closes the palette does nothing more in it."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return", "Return", delay=0)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        self.program.open_palette()
        self.program.search("alpha")
        self.desktop.key("Return")
        wait_for("the later use is on the disk",
                 lambda: self.library.snippets()["alpha note"]["usageCount"] == 1)
        self.assertEqual(self.library.snippets()["letter"]["usageCount"], 1)

    def test_second_press_of_the_hot_key_closes(self):
        """The hot key closes the palette that it has opened, and opens it again."""
        for number in (1, 2, 3):
            self.program.open_palette()
            self.desktop.key("alt+t")
            self.program.wait_palette_gone()
            wait_for("its line", lambda: self.program.count(HIDING) == number)
            self.desktop.wait_focus("Recorder")
        self.assert_nothing_leaked()

    def test_two_presses_at_once_open_and_close(self):
        """However fast the second press follows the first, the palette comes and goes, and the
        other program has the keyboard again."""
        for number, delay in enumerate((0, 5, 20, 60), 1):
            self.desktop.key(HOTKEY, HOTKEY, delay=delay)
            wait_for("both presses", lambda: self.program.count(HIDING) == number)
            self.assertEqual(self.program.shown_count(), number)
            self.program.wait_palette_gone()
            self.desktop.wait_focus("Recorder")
        self.assert_nothing_leaked()

    def test_keys_behind_the_closing_press(self):
        """What is typed without a pause behind the press that closes goes to the other program,
        and all of it."""
        for number in range(1, 6):
            with self.told(f"round {number}"):
                self.program.open_palette()
                before = self.recorder.keys()
                self.desktop.key(HOTKEY, *"hello", delay=0)
                self.program.wait_palette_gone()
                wait_for("the whole word",
                         lambda: self.recorder.keys() == before + list("hello"))

    def test_query_is_empty_at_each_opening(self):
        """What was typed at the last opening is gone at the next: the first row is the one that
        opens the main window."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.window(MAIN_WINDOW)
        self.program.wait_palette_gone()
        self.assert_not_copied()

    def test_arrows_move_the_selection(self):
        """Down and Return copy the second row; Down, Up and Return the first; no end wraps."""
        for keys, text in ((["Down"], "second of the notes"), (["Down", "Up"], "first of the notes"),
                           (["Up"], "first of the notes"),
                           (["Down", "Down", "Down"], "second of the notes")):
            self.program.open_palette()
            self.program.search("note")
            self.desktop.key(*keys, "Return")
            self.desktop.wait_clipboard(text)
            self.program.wait_palette_gone()
            self.desktop.wait_focus("Recorder")

    def test_right_arrow_at_the_end_opens_the_main_window(self):
        """Right at the end of the text opens the main window, closes the palette, copies nothing."""
        self.program.open_palette()
        self.desktop.wait_gone(MAIN_WINDOW)
        self.program.search("letter")
        self.desktop.key("Right")
        self.desktop.window(MAIN_WINDOW)
        self.program.wait_palette_gone()
        self.assert_not_copied()

    def test_minimised_main_window_comes_back(self):
        """The main window comes up again, with the keyboard, after it was minimised."""
        self.program.wait_settled()
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.program.wait_raised(RAISED_WHEN_MADE)
        self.desktop.command("xdotool", "windowminimize", self.desktop.window(MAIN_WINDOW))
        self.desktop.wait_gone(MAIN_WINDOW)
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_focus(MAIN_WINDOW)

    def test_right_arrow_within_the_text_moves_the_cursor(self):
        """Right in the middle of the text is the field's own: the letter before the cursor can be
        replaced afterwards."""
        self.program.open_palette()
        self.program.search("xetter")
        self.desktop.key("Home", "Right", "BackSpace", "l")
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)

    def test_copy_key_without_selected_text_is_return(self):
        """Ctrl+C with nothing selected in the field copies the selected row and closes."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("ctrl+c")
        self.desktop.wait_clipboard(LETTER_TEXT)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def test_copy_key_with_selected_text_copies_that_text(self):
        """Ctrl+C with selected text copies that text; the palette stays and works on."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("ctrl+a", "ctrl+c")
        self.desktop.wait_clipboard("letter")
        self.assertEqual(self.desktop.focused_window(), PALETTE)
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)

    def test_return_without_results_does_nothing(self):
        """A query without hits has no row for Return: the palette stays and takes the next query."""
        self.program.open_palette()
        self.program.search("nowhere")
        self.desktop.key("Return", "Down", "Return", "ctrl+a")
        self.program.search("letter")
        self.assert_not_copied()
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)
        self.program.wait_palette_gone()
        self.assert_nothing_leaked()


class EmptyLibrary(DesktopCase):
    collections = {}

    def test_one_row_that_opens_the_main_window(self):
        """Without any snippet there is one row: Down finds no other, Return opens the main window."""
        self.program.open_palette()
        self.desktop.wait_gone(MAIN_WINDOW)
        self.program.wait_searched()
        self.desktop.key("Down", "Return")
        self.desktop.window(MAIN_WINDOW)
        self.program.wait_palette_gone()
        self.assert_not_copied()


if __name__ == "__main__":
    main()
