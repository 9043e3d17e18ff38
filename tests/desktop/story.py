"""The main job of the program, step by step, for the tests that repeat it in many settings."""
import datetime

from case import LETTER_TEXT, DesktopCase
from library import date_text, now
from program import HOTKEY, TOAST
from waiting import wait_for


class StoryCase(DesktopCase):

    def tell_story(self):
        """In front of another program: hot key, query, Return; everything that must follow."""
        before = self.library.snippets()["letter"]
        started = date_text(now() - datetime.timedelta(milliseconds=1))
        self.desktop.set_clipboard("untouched")
        # The end of an older toast's time would take the new one away.
        self.desktop.wait_gone(TOAST)
        self.assertEqual(self.desktop.focused_window(), "Recorder")
        toasts = self.program.toast_count()

        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return")

        self.desktop.wait_clipboard(LETTER_TEXT)
        wait_for("toast", lambda: self.program.toast_count() > toasts)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        wait_for("the use is counted on disk", lambda: self.library.snippets()["letter"]
                 ["usageCount"] == before["usageCount"] + 1)
        self.assertGreaterEqual(self.library.snippets()["letter"]["lastUsedAt"], started)

    def open_after_layout_change(self):
        """The hot key moves with the keyboard map a moment after the change: press until it does.
        Presses that came too early are forgotten in the other program."""
        def pressed():
            shown, typed = self.program.shown_count(), len(self.recorder.keys())
            self.desktop.key(HOTKEY)
            wait_for("the press has arrived", lambda: self.program.shown_count() > shown
                     or len(self.recorder.keys()) > typed)
            return self.program.shown_count() > shown
        wait_for("the hot key follows the keyboard map", pressed)
        self.program.wait_palette()
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        self.recorder.lines.clear()
