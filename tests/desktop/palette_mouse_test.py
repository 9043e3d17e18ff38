"""The pointer in and around the palette."""
from case import LETTER_TEXT, DesktopCase, main
from program import HOTKEY, HOVERED_GREY, LOST_FOCUS, PALETTE
from waiting import wait_for


class PaletteMouse(DesktopCase):

    def open_notes(self):
        """Opens the palette with two rows; returns a point on the second, unselected one."""
        self.desktop.move_pointer(5, 5)
        self.program.open_palette()
        self.program.search("note")
        return self.program.row_below()

    def test_click_on_a_row_copies_it(self):
        """A click copies the row under the pointer, whatever row is selected."""
        self.desktop.click(*self.open_notes())
        self.desktop.wait_clipboard("second of the notes")
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def test_hover_does_not_change_what_return_does(self):
        """The row under the pointer is lit, the selected row stays selected, and Return copies
        the selected one."""
        point = self.open_notes()
        selected = self.program.selected_row()
        self.desktop.move_pointer(*point)
        wait_for("the row is lit", lambda: self.program.ground_at(point[1]) == HOVERED_GREY)
        self.assertEqual(self.program.selected_row(), selected)
        self.save_picture("palette-hover")
        self.desktop.key("Return")
        self.desktop.wait_clipboard("first of the notes")

    def test_moved_by_its_background(self):
        """Dragged where no row is, the palette follows the pointer and keeps the keyboard; the
        toast stands where it was put."""
        x, y, width, height = self.program.open_palette()
        for step in range(6):
            self.desktop.move_pointer(x + width // 2 + 20 * step, y + height - 20 - 10 * step)
            if step == 0:
                self.desktop.command("xdotool", "mousedown", "1")
        self.desktop.command("xdotool", "mouseup", "1")
        moved = (x + 100, y - 50, width, height)
        wait_for("the palette has moved",
                 lambda: self.desktop.geometry(self.desktop.window(PALETTE)) == moved)
        self.assertEqual(self.desktop.focused_window(), PALETTE)
        self.program.search("letter")
        self.desktop.key("Return")
        toast = self.desktop.geometry(self.program.wait_new_toast())
        self.assertAlmostEqual(toast[0] + toast[2] / 2, moved[0] + width / 2, delta=1)
        self.assertAlmostEqual(toast[1] + toast[3] / 2, moved[1] + height / 2, delta=1)
        self.desktop.wait_clipboard(LETTER_TEXT)

    def test_click_outside_closes_one_that_was_raised_again_at_once(self):
        """So it does when the palette was closed and raised again in a moment."""
        for number, delay in enumerate((20, 35, 50), 1):
            self.program.open_palette()
            shown = self.program.shown_count()
            self.desktop.key("Escape", HOTKEY, delay=delay)
            wait_for("palette shown again", lambda before=shown: self.program.shown_count() > before)
            self.program.wait_palette()
            self.desktop.click(100, 80)
            self.program.wait_palette_gone()
            wait_for("its line", lambda: self.program.count(LOST_FOCUS) == number)
            self.desktop.wait_focus("Recorder")
        self.assert_nothing_leaked()

    def test_click_outside_closes(self):
        """A click on the other program gives it the focus and closes the palette."""
        self.program.open_palette()
        self.desktop.click(100, 80)
        self.program.wait_palette_gone()
        wait_for("its line", lambda: self.program.count(LOST_FOCUS) == 1)
        self.assert_nothing_leaked()
        self.assert_not_copied()


if __name__ == "__main__":
    main()
