"""The story and the type-ahead under each window manager, with and without a compositor."""
from case import main
from program import PALETTE
from story import StoryCase
from type_ahead import TypeAheadCase

ROUNDS = 5


class Here:
    """The cases that every desktop below goes through."""

    class Story(StoryCase):
        def test_story(self):
            """The whole story, several times."""
            for _ in range(ROUNDS):
                self.tell_story()
            self.assert_nothing_leaked()

        def test_picture(self):
            """The palette stands in the middle of the screen and can be looked at."""
            x, y, width, height = self.program.open_palette()
            self.assertEqual((width, height), (680, 480))
            self.assertAlmostEqual(x + width / 2, self.desktop.size[0] / 2, delta=2)
            self.assertTrue(0 <= y and y + height <= self.desktop.size[1])
            self.program.search("note")
            composited = "-composited" if self.desktop.compositor else ""
            self.save_picture(f"palette-on-{self.desktop.wm}{composited}")

        def test_no_task_bar_entry(self):
            """No task bar and no pager lists the palette, at whatever opening."""
            for _ in range(2):
                self.program.open_palette()
                states = self.desktop.states(self.desktop.window(PALETTE))
                self.assertIn("SKIP_TASKBAR", states)
                self.assertIn("SKIP_PAGER", states)
                self.desktop.key("Escape")
                self.program.wait_palette_gone()

    class Typing(TypeAheadCase):
        def test_type_ahead(self):
            """No letter is lost behind the hot key, several times."""
            for _ in range(ROUNDS):
                self.type_ahead()
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
