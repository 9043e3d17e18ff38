"""The story and the type-ahead under each window manager, with and without a compositor."""
import contextlib
import signal
import time

from case import main
from program import HOTKEY, MAIN_WINDOW, PALETTE, RAISED_WHEN_MADE
from story import StoryCase
from type_ahead import TypeAheadCase
from waiting import wait_for

ROUNDS = 5


class Here:
    """The cases that every desktop below goes through."""

    class Story(StoryCase):
        def test_story(self):
            """The whole story, several times."""
            for _ in range(ROUNDS):
                self.tell_story()
            self.assert_nothing_leaked()

        def test_held_up_window_manager(self):
            """One that comes late to an older wish for the keyboard still gives it to the palette."""
            recorder = self.desktop.window("Recorder")
            with self.held_up():
                self.desktop.command("xdotool", "windowactivate", recorder)
                self.desktop.key(HOTKEY)
                wait_for("palette shown", lambda: self.program.shown_count() == 1)
            self.program.wait_palette()
            self.desktop.key("Escape")
            self.program.wait_palette_gone()
            self.assert_nothing_leaked()

        def test_raised_again_before_a_held_up_window_manager(self):
            """One that comes to the closing when the palette is up again lists it nowhere, either,
            and keeps it above the others."""
            self.program.open_palette()
            with self.held_up():
                self.desktop.key("Escape")
                self.program.wait_palette_gone()
                self.desktop.key(HOTKEY)
                wait_for("palette shown", lambda: self.program.shown_count() == 2)
            self.program.wait_palette()
            palette = self.desktop.window(PALETTE)
            if self.desktop.wm != "i3":  # which has no such lists, and drops these states
                wait_for("its states", lambda: {"SKIP_TASKBAR", "SKIP_PAGER", "ABOVE"}.issubset(
                    self.desktop.states(palette)))

        @contextlib.contextmanager
        def held_up(self):
            """The window manager does nothing for the time."""
            self.desktop.window_manager.send_signal(signal.SIGSTOP)
            try:
                yield
            finally:
                self.desktop.window_manager.send_signal(signal.SIGCONT)

        def test_picture(self):
            """The palette stands in the middle of the screen and can be looked at."""
            x, y, width, height = self.program.open_palette()
            self.assertEqual((width, height), (680, 480))
            self.assertAlmostEqual(x + width / 2, self.desktop.size[0] / 2, delta=2)
            self.assertTrue(0 <= y and y + height <= self.desktop.size[1])
            self.program.search("note")
            composited = "-composited" if self.desktop.compositor else ""
            self.save_picture(f"palette-on-{self.desktop.wm}{composited}")

        def test_switch_long_after_the_hot_key(self):
            """Raised by its switch, the palette gets the keyboard also when the hot key has been
            used before and another program since, as windows need where none may steal it."""
            self.program.open_palette()
            self.desktop.key("Escape")
            self.program.wait_palette_gone()
            self.desktop.wait_focus("Recorder")
            # As toolkits do at each key that is typed. The server has the system's clock.
            now = int(time.monotonic() * 1000) & 0xffffffff
            self.desktop.command("xprop", "-id", str(self.desktop.window("Recorder")),
                                 "-f", "_NET_WM_USER_TIME", "32c",
                                 "-set", "_NET_WM_USER_TIME", str(now))
            self.program.run_again("--toggle-palette").check_returncode()
            self.desktop.wait_focus(PALETTE)

        def test_no_task_bar_entry(self):
            """No task bar and no pager lists the palette, at whatever opening."""
            for _ in range(2):
                self.program.open_palette()
                palette = self.desktop.window(PALETTE)
                wait_for("its states", lambda of=palette: {"SKIP_TASKBAR", "SKIP_PAGER"}.issubset(
                    self.desktop.states(of)))
                self.desktop.key("Escape")
                self.program.wait_palette_gone()

    class Typing(TypeAheadCase):
        def test_type_ahead(self):
            """No letter is lost behind the hot key, several times."""
            for _ in range(ROUNDS):
                self.type_ahead()
            self.assert_nothing_leaked()

        def test_type_ahead_from_the_main_window(self):
            """Nor when it takes the main window away, and the keyboard goes to another program
            in between."""
            self.program.wait_settled()
            # Each time it is raised it takes the keyboard away from a palette that came before.
            for raised in (RAISED_WHEN_MADE, RAISED_WHEN_MADE + 1):
                self.program.run_again().check_returncode()
                self.program.wait_raised(raised)
                self.type_ahead(front=MAIN_WINDOW)
            self.assert_nothing_leaked()


def load_tests(loader, _standard, _pattern):
    """One class of each kind for each desktop, named after it."""
    suite = loader.suiteClass()
    for wm in ("openbox", "xfwm4", "metacity", "i3"):
        for compositor in (False, True):
            for kind in (Here.Story, Here.Typing):
                name = f"{kind.__name__}_{wm}{'_composited' if compositor else ''}"
                options = {"wm": wm, "compositor": compositor}
                suite.addTests(loader.loadTestsFromTestCase(type(name, (kind,), {"options": options})))
    return suite


if __name__ == "__main__":
    main()
