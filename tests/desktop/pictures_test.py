"""The palette and the windows as pictures, to look at and to show; each under a stable name."""
import collections
import datetime

from case import DesktopCase, main
from library import date_text, now, snippet
from program import MAIN_WINDOW, PALETTE, SETTINGS_WINDOW, Program
from waiting import wait_for, wait_until_stable

PANEL = bytes([0x17, 0x17, 0x17])


def used(record, count, minutes_ago):
    moment = date_text(now() - datetime.timedelta(minutes=minutes_ago))
    return {**record, "usageCount": count, "lastUsedAt": moment}


class PictureCase(DesktopCase):
    options = {"compositor": True}
    collections = {
        "Mail": [
            used(snippet("Meeting follow-up", "Hi {{name}},\nthank you for your time."), 12, 1),
            used(snippet("Sign-off", "Best regards,\n{{me}}", {"me": "Ada"}), 31, 60 * 26)],
        "Shell": [
            used(snippet("Find large files", "find . -size +100M -printf '%s %p\\n'"), 4, 60 * 50),
            snippet("Follow a log", "journalctl --follow --unit {{unit}}")],
        "Text": [
            snippet("Shrug", "¯\\_(ツ)_/¯"),
            snippet("Party 🎉", "Congratulations! 🎉"),
            used(snippet("Invoice total with 48*1.19 tax note", "…"), 2, 60 * 52),
            snippet("Net price from gross, 48*1.19 example", "…", age_days=20),
            snippet("日本語の挨拶", "はじめまして。")]}


class Pictures(PictureCase):

    def picture(self, name):
        """Saves the picture, which must show the panel with something on it."""
        self.save_picture(name)
        pixels = self.desktop.x.pixels(*self.desktop.geometry(self.desktop.window(PALETTE)))
        colours = collections.Counter(pixels[i:i + 3] for i in range(0, len(pixels), 4))
        self.assertEqual(colours.most_common(1)[0][0], PANEL)
        self.assertGreater(len(colours), 20, "a panel without text")

    def test_empty_query(self):
        """All snippets, the ones used today first, and the row that opens the main window."""
        self.program.open_palette()
        self.program.wait_searched()
        self.picture("palette-empty-query")

    def test_results(self):
        """Results of a query, best first."""
        self.program.open_palette()
        self.program.search("fo")
        self.picture("palette-results")

    def test_no_results(self):
        """The empty state."""
        self.program.open_palette()
        self.program.search("nowhere")
        self.picture("palette-no-results")

    def test_calculator(self):
        """A calculation above the snippets that hold its text."""
        self.program.open_palette()
        self.program.search("48*1.19=")
        self.picture("palette-calculator")

    def test_passwords(self):
        """Three passwords, the second one selected."""
        self.program.open_palette()
        self.program.search("/rand:16")
        first = self.program.selected_row()
        self.desktop.key("Down")
        wait_for("the second password is selected", lambda: self.program.selected_row() != first)
        self.picture("palette-passwords")

    def test_toast(self):
        """The toast, where the palette was, takes neither focus nor keys, and goes by itself."""
        x, y, width, height = self.program.open_palette()
        self.program.search("shrug")
        self.desktop.key("Return")
        self.program.wait_new_toast()
        self.desktop.screenshot(self.picture_path("copy-toast"), (x, y, width, height))
        self.assert_nothing_leaked()
        self.desktop.wait_gone("Toast")
        wait_for("clipboard", lambda: self.desktop.clipboard() == "¯\\_(ツ)_/¯")


class WindowPictures(PictureCase):

    def start_program(self):
        program = self.start(Program, self.desktop, self.home, (), ())
        program.wait_main_window()
        return program

    def setUp(self):
        super().setUp()
        self.desktop.activate(MAIN_WINDOW)

    def picture(self, window, name):
        """Saves the window as soon as nothing moves in it; it must show more than its ground."""
        self.desktop.wait_focus(window)
        area = self.desktop.geometry(self.desktop.window(window))
        pixels = wait_until_stable("the window stands still",
                                   lambda: self.desktop.x.pixels(*area), 0.4)
        self.desktop.screenshot(self.picture_path(name), area)
        colours = {pixels[i:i + 3] for i in range(0, len(pixels), 4)}
        self.assertGreater(len(colours), 100, "a window without contents")

    def test_main_window(self):
        """Collections, snippets, and a snippet with a placeholder in the editor."""
        self.program.open_palette()
        self.program.search("follow-up")
        self.desktop.key("Right")
        self.program.wait_palette_gone()
        self.picture(MAIN_WINDOW, "main-window")

    def test_settings(self):
        """The settings, beside the window that they belong to."""
        self.desktop.key("ctrl+comma")
        self.picture(SETTINGS_WINDOW, "settings")


if __name__ == "__main__":
    main()
