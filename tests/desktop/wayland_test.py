"""The program on Wayland: the hot key through the desktop's portal, the keyboard, the clipboard."""
import os
import socket
import subprocess
import sys
import time
import unittest

from activation_token import TokenMaker
from case import LETTER_TEXT, SAMPLE, main
from library import Library, snippet
from processes import guarded
from program import ENDS_IN, MAIN_WINDOW, PALETTE, SEARCHED, SETTINGS_WINDOW, SILENT, Program
from shortcuts_portal import ShortcutsPortal
from waiting import wait_for, wait_until_stable
from wayland_desktop import WaylandDesktop

APPLICATION = "org.vellumry.Vellumry"
BOUND = "HotkeyService: the desktop has bound the hot key: "
NO_PORTAL = "HotkeyService: the desktop has no portal for hot keys"
ASKED = ["CreateSession", 'BindShortcuts toggle-palette "Open the command palette" ALT+t']
LARGE = "0123456789abcdef" * (5 * 1024 * 1024 // 16)


class WaylandProgram(Program):

    def wait_palette(self):
        self.desktop.wait_focus(PALETTE)

    def toggle(self, press):
        """Calls `press` and waits until the program has shown the palette."""
        shown = self.shown_count()
        press()
        wait_for("palette shown", lambda: self.shown_count() > shown)

    def search(self, query):
        """Types into the open palette and waits for the rows."""
        place = self.desktop.geometry(self.desktop.window(PALETTE))
        empty = self.desktop.pixels(*place)
        self.desktop.type_text(query)
        wait_for("the query is shown", lambda: self.desktop.pixels(*place) != empty)
        wait_until_stable("the palette stands still", lambda: self.desktop.pixels(*place), SEARCHED)


class WaylandCase(unittest.TestCase):
    rules = ""
    collections = SAMPLE
    has_portal = True

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(WaylandDesktop(cls.rules))

    def setUp(self):
        self.desktop.set_clipboard("untouched")
        self.home = self.desktop.new_home()
        self.library = Library(self.home["HOME"])
        self.library.write(self.collections)
        self.portal = self.start(ShortcutsPortal, self.desktop) if self.has_portal else None
        self.program = self.start_program()

    def start(self, kind, *arguments):
        process = kind(*arguments)
        self.addCleanup(process.finish)
        return process

    def start_program(self):
        program = self.start(WaylandProgram, self.desktop, self.home)
        if self.has_portal:
            wait_for("the shortcut is bound",
                     lambda: any(line.startswith(BOUND) for line in program.lines))
        return program

    def _callTestMethod(self, method):
        try:
            method()
        except Exception:
            picture = self.desktop.screenshot(os.path.join(
                os.environ["VELLUMRY_SCREENSHOTS"], f"failure-{self.id()}.png"))
            print(f"\n{self.id()} failed; screen: {picture}\nthe program's log:", file=sys.stderr)
            print("\n".join(self.program.lines), file=sys.stderr)
            print("windows:", self.desktop.titles(), file=sys.stderr)
            raise

    def run_again(self, *arguments, **environment):
        """Starts the program a second time."""
        return subprocess.run(guarded([os.environ["VELLUMRY_PROGRAM"], *arguments]),
                              env={**self.desktop.env, **self.home, **environment},
                              capture_output=True, encoding="utf-8", timeout=20, check=True)

    def open_palette(self, token=""):
        self.program.open_palette(press=lambda: self.portal.press(token))

    def copy(self, query, text):
        """The road of a copy, from the press of the desktop's key to the clipboard."""
        self.open_palette()
        self.program.search(query)
        self.desktop.key("Return")
        self.desktop.wait_clipboard(text)
        self.desktop.wait_gone(PALETTE)


class RoadOfACopy(WaylandCase):
    collections = {**SAMPLE, "Large": [snippet("five megabytes", LARGE)]}

    def test_from_the_press_to_the_clipboard(self):
        """The desktop tells the press, the palette takes the keyboard, a query and Return put the
        filled text on the clipboard, where it stays; three times. The primary selection, which is
        the other program's, stays as it is."""
        self.desktop.set_clipboard("selected", primary=True)
        for number in range(1, 4):
            self.copy("letter", LETTER_TEXT)
            self.copy("alpha", "first of the notes")
            wait_for("the use is counted", lambda: self.usage("letter") == number)
        self.assertEqual(self.desktop.clipboard(), "first of the notes")
        self.assertEqual(self.desktop.clipboard(primary=True), "selected")
        self.assertEqual(self.portal.calls(), ASKED)

    def test_five_megabytes(self):
        """A large text arrives whole, also when it is asked for again."""
        self.copy("megabytes", LARGE)
        self.assertEqual(self.desktop.clipboard(), LARGE)

    def test_press_closes_the_palette(self):
        """A second press closes the palette, and so does Escape; nothing is copied."""
        self.open_palette()
        self.portal.press()
        self.desktop.wait_gone(PALETTE)
        self.open_palette()
        self.desktop.key("Escape")
        self.desktop.wait_gone(PALETTE)
        self.assertEqual(self.desktop.clipboard(), "untouched")

    def test_native(self):
        """The windows are the compositor's own, under the name of the program's desktop entry, and
        there is no X server that could help out."""
        self.assertNotIn("DISPLAY", self.desktop.env)
        self.open_palette()
        self.assertEqual(self.desktop.program_of(PALETTE), APPLICATION)
        self.portal.press()
        self.desktop.wait_gone(PALETTE)
        self.run_again()
        self.desktop.wait_focus(MAIN_WINDOW)
        self.assertEqual(self.desktop.program_of(MAIN_WINDOW), APPLICATION)
        self.run_again("--open-settings")
        self.desktop.wait_focus(SETTINGS_WINDOW)

    def test_no_second_question(self):
        """Settings that come and go pause the hot key without troubling the portal; the keys that
        the person chooses in the desktop meanwhile are heard."""
        self.run_again("--open-settings")
        self.desktop.wait_focus(SETTINGS_WINDOW)
        self.portal.press()
        self.portal.choose("Ctrl+Alt+V")
        wait_for("the choice", lambda: BOUND + "Ctrl+Alt+V" in self.program.lines)
        self.assertEqual(self.program.shown_count(), 0)
        self.desktop.close(SETTINGS_WINDOW)
        self.open_palette()
        self.assertEqual(self.portal.calls(), ASKED)

    def usage(self, title):
        return self.library.snippets()[title]["usageCount"]


class Activation(WaylandCase):
    """On a desktop that gives the palette no keyboard by itself."""
    rules = f'no_focus [title="^{PALETTE}$"]\n'

    def setUp(self):
        super().setUp()
        self.tokens = TokenMaker(self.desktop.env["WAYLAND_DISPLAY"])
        self.addCleanup(self.tokens.close)
        # The other program is one of the same kind that knows nothing of the first.
        home = {**self.desktop.new_home(), "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        Library(home["HOME"]).write(SAMPLE)
        self.start(WaylandProgram, self.desktop, home, (), ())
        self.desktop.wait_focus(MAIN_WINDOW)

    def toggle_without_focus(self, toggle):
        self.program.toggle(toggle)
        self.desktop.window(PALETTE)
        self.assertEqual(self.desktop.focused_window(), MAIN_WINDOW)
        toggle()
        self.desktop.wait_gone(PALETTE)

    def test_token_of_the_press(self):
        """The token that comes with the press gives the palette the keyboard, and each one serves
        once."""
        for _ in range(2):
            self.toggle_without_focus(self.portal.press)
            self.open_palette(self.tokens.make())
            self.portal.press()
            self.desktop.wait_gone(PALETTE)
            self.desktop.wait_focus(MAIN_WINDOW)

    def test_token_of_a_second_start(self):
        """So does the token of a launcher that starts the program a second time, by either of the
        names under which launchers pass it on."""
        self.toggle_without_focus(lambda: self.run_again("--toggle-palette"))
        for name in ("XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"):
            self.program.open_palette(press=lambda name=name: self.run_again(
                "--toggle-palette", **{name: self.tokens.make()}))
            self.run_again("--toggle-palette")
            self.desktop.wait_gone(PALETTE)
            self.desktop.wait_focus(MAIN_WINDOW)

    def test_token_over_the_bus(self):
        """So does the token of a launcher that calls the program over the bus, as for an action of
        the desktop entry; some know but the older name."""
        for name in ("activation-token", "desktop-startup-id"):
            self.program.open_palette(press=lambda name=name: self.desktop.command(
                "gdbus", "call", "--session", "--dest", APPLICATION, "--object-path",
                "/org/vellumry/Vellumry", "--method",
                "org.freedesktop.Application.ActivateAction", "toggle-palette", "[]",
                f"{{'{name}': <'{self.tokens.make()}'>}}"))
            self.run_again("--toggle-palette")
            self.desktop.wait_gone(PALETTE)
            self.desktop.wait_focus(MAIN_WINDOW)


class WithoutAPortal(WaylandCase):
    has_portal = False

    def test_words_and_the_other_way(self):
        """The program says that the desktop has no portal. A key of the desktop that calls
        ActivateAction of org.freedesktop.Application, or starts the program with
        --toggle-palette, raises the palette."""
        wait_for("the words", lambda: NO_PORTAL in self.program.lines)
        self.program.open_palette(press=lambda: self.run_again("--toggle-palette"))
        self.desktop.key("Escape")
        self.desktop.wait_gone(PALETTE)
        self.program.open_palette(press=lambda: self.desktop.command(
            "gdbus", "call", "--session", "--dest", APPLICATION, "--object-path",
            "/org/vellumry/Vellumry", "--method", "org.freedesktop.Application.ActivateAction",
            "toggle-palette", "[]", "{}"))

    def test_portal_that_comes_later(self):
        """A portal that appears is asked at once; one that goes and comes back, again."""
        wait_for("the words", lambda: NO_PORTAL in self.program.lines)
        for times in (1, 2):
            self.portal = self.start(ShortcutsPortal, self.desktop)
            wait_for("the shortcut is bound", lambda: self.program.count(BOUND + "Alt+T") == times)
            self.open_palette()
            self.portal.press()
            self.desktop.wait_gone(PALETTE)
            self.portal.finish()
            wait_for("the words again", lambda: self.program.count(NO_PORTAL) == times + 1)

    def test_bus_that_never_answers(self):
        """A bus that takes connections and says nothing holds up neither the start nor the end."""
        self.program.finish()
        path = os.path.join(self.home["HOME"], "silent-bus")
        with socket.socket(socket.AF_UNIX) as silent:
            silent.bind(path)
            silent.listen()
            self.program = self.start(WaylandProgram, self.desktop, {
                **self.home, "DBUS_SESSION_BUS_ADDRESS": f"unix:path={path}"})
            self.assertIn(SILENT, self.program.lines)
            wait_for("the words", lambda: NO_PORTAL in self.program.lines)
            began = time.monotonic()
            self.assertEqual(self.program.finish(), 0, self.program.lines)
            self.assertLess(time.monotonic() - began, ENDS_IN)


if __name__ == "__main__":
    main()
