"""What the palette answers by itself: arithmetic, unit conversion, passwords."""
import re

from case import DesktopCase, main
from library import snippet
from waiting import wait_for

SECRET_HINT = "x-kde-passwordManagerHint"
# Characters, and the colour of the symbol as (red, green, blue), of the three passwords.
PASSWORDS = [("[a-z0-9]", (0xFF, 0x9F, 0x0A)),
             ("[A-Za-z0-9_@#-]", (0xFF, 0x37, 0x5F)),
             (r"[A-Za-z0-9!@#$%^&*()\-_=+\[\]{}|;:,.<>?/]", (0x30, 0xD1, 0x58))]
CALCULATOR_ROW, PASSWORD_ROW, SNIPPET_ROW = 72, 54, 40
ICON_SLOT = (20, 40)  # from the palette's left edge


class PaletteAnswers(DesktopCase):
    collections = {"Sport": [snippet("10 km run", "a run of 10 km"),
                             snippet("2+3*4 explained", "first times, then plus")]}

    def ask(self, query):
        self.program.open_palette()
        self.program.search(query)

    def assert_copied(self, text):
        self.desktop.wait_clipboard(text)
        self.program.wait_new_toast()
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def assert_no_secret(self):
        self.assertNotIn(SECRET_HINT, self.desktop.clipboard("TARGETS").split())

    def selected_height(self):
        top, bottom = self.program.selected_row()
        return bottom - top + 1

    def icon_has(self, colour):
        """Whether that colour is in the selected row's symbol."""
        red, green, blue = colour
        left = self.desktop.geometry(self.desktop.window("Palette"))[0]
        top, bottom = self.program.selected_row()
        pixels = self.desktop.x.pixels(left + ICON_SLOT[0], top, ICON_SLOT[1] - ICON_SLOT[0],
                                       bottom - top + 1)
        return any(pixels[i:i + 3] == bytes([blue, green, red]) for i in range(0, len(pixels), 4))

    def test_arithmetic(self):
        """A calculation ends in "=": its row is on top, and Return copies the result alone."""
        self.ask("2+3*4=")
        self.assertGreaterEqual(self.selected_height(), CALCULATOR_ROW - 2)
        self.desktop.key("Return")
        self.assert_copied("14")
        self.assert_no_secret()
        self.assertEqual(self.library.snippets()["2+3*4 explained"]["usageCount"], 0)

    def test_arithmetic_needs_the_equals_sign(self):
        """Without it the text is searched like any other."""
        self.ask("2+3*4")
        self.assertLessEqual(self.selected_height(), SNIPPET_ROW)
        self.desktop.key("Return")
        self.assert_copied("first times, then plus")

    def test_conversion(self):
        """A number with a unit and "=" is converted; the unit is copied along."""
        self.ask("10 km=")
        self.assertGreaterEqual(self.selected_height(), CALCULATOR_ROW - 2)
        self.desktop.key("Return")
        self.assert_copied("6.2137 miles")

    def test_snippets_stand_below_the_answer(self):
        """Down leads from the answer to the snippets that hold the text."""
        self.ask("10 km=")
        answer = self.program.selected_row()
        self.desktop.key("Down")
        wait_for("the selection has moved", lambda: self.program.selected_row() != answer)
        self.assertLessEqual(self.selected_height(), SNIPPET_ROW)
        self.desktop.key("Return")
        self.assert_copied("a run of 10 km")

    def test_calculation_that_fails_gives_no_row(self):
        """It leaves a line in the log and the palette as it was."""
        self.ask("2+3*x=")
        self.desktop.key("Return")
        self.assertEqual(
            self.program.count("MathCalculator: Failed to evaluate '2+3*x' - Undefined variable x"),
            1)
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.assert_not_copied()

    def test_passwords(self):
        """Three passwords, one of each strength. The chosen one is offered as a secret, which
        histories of the clipboard leave out."""
        seen = set()
        for row, (characters, colour) in enumerate(PASSWORDS):
            self.desktop.set_clipboard("untouched")
            self.ask("/rand:16")
            for _ in range(row + (2 if row == 2 else 0)):  # no end wraps
                self.desktop.key("Down")
            wait_for("the row is selected", lambda colour=colour: self.icon_has(colour))
            self.assertIn(self.selected_height(), (PASSWORD_ROW - 2, PASSWORD_ROW - 1, PASSWORD_ROW))
            self.desktop.key("Return")
            wait_for("a password", lambda: self.desktop.clipboard() != "untouched")
            password = self.desktop.clipboard()
            self.assertTrue(re.fullmatch(f"{characters}{{16}}", password), password)
            self.assertEqual(self.desktop.clipboard(SECRET_HINT), "secret")
            self.program.wait_palette_gone()
            self.desktop.wait_focus("Recorder")
            self.desktop.wait_gone("Toast")
            seen.add(password)
        self.assertEqual(len(seen), 3)
        log = "\n".join(self.program.lines)
        self.assertFalse([password for password in seen if password in log])

    def test_what_is_no_command_is_searched(self):
        """"/rand:" with no length finds no snippet, and Return does nothing."""
        self.ask("/rand:")
        self.desktop.key("Return", "Escape")
        self.program.wait_palette_gone()
        self.assert_not_copied()

    def test_snippet_after_a_password_is_no_secret(self):
        """What is copied after a password is offered as plain text again."""
        self.ask("/rand:8")
        self.desktop.key("Return")
        wait_for("the hint", lambda: self.desktop.clipboard(SECRET_HINT) == "secret")
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        self.ask("run")
        self.desktop.key("Return")
        self.desktop.wait_clipboard("a run of 10 km")
        self.assert_no_secret()


if __name__ == "__main__":
    main()
