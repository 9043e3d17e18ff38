"""The settings as a person changes them."""
import re

from case import LETTER_TEXT, main
from person import BUTTON, PersonCase
from program import HOTKEY, SETTINGS_WINDOW, Program
from waiting import wait_for

RECORDER = re.compile("Quick Search, .*")
NEW_HOTKEY = "ctrl+alt+y"
NEW_READY = "HotkeyService: 已注册热键 ⌥⌘Y"
RESUMED = "HotkeyService: 热键已恢复 "


class ChangedProgram(Program):
    """The program with the other hot key."""
    ready, hotkey = NEW_READY, NEW_HOTKEY


class HotKey(PersonCase):

    def open_settings(self):
        self.desktop.key("ctrl+comma")
        self.desktop.wait_focus(SETTINGS_WINDOW)

    def record(self, keys):
        """Clicks on the recorder and presses the keys."""
        self.click(RECORDER, BUTTON, window=SETTINGS_WINDOW)
        self.wait_seen("Press Esc to cancel", window=SETTINGS_WINDOW)
        self.desktop.key(keys)

    def leave_settings(self):
        self.click("Done", BUTTON, window=SETTINGS_WINDOW)
        self.desktop.wait_gone(SETTINGS_WINDOW)
        self.desktop.activate("Recorder")

    def test_recorded_and_used_at_once(self):
        """The new keys bring the palette, the old ones go to the other program; a restart keeps
        it that way."""
        self.open_settings()
        self.record(NEW_HOTKEY)
        self.wait_seen("Quick Search, Ctrl+Alt+Y", BUTTON, window=SETTINGS_WINDOW)
        self.leave_settings()
        wait_for("it is in force", lambda: f"{RESUMED}⌥⌘Y" in self.program.lines)
        self.use_new_hotkey()
        self.kind = ChangedProgram
        self.start_again()
        self.recorder.lines.clear()
        self.desktop.activate("Recorder")
        self.use_new_hotkey()

    def use_new_hotkey(self):
        self.desktop.key(HOTKEY)
        wait_for("the old keys in the other program", lambda: self.recorder.keys() == ["t"])
        self.program.open_palette(lambda: self.desktop.key(NEW_HOTKEY))
        self.program.search("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)
        self.program.wait_palette_gone()
        self.desktop.set_clipboard("untouched")

    def test_refused_and_cancelled(self):
        """Keys that are not to be had are refused in words, and Escape leaves all as it was."""
        self.open_settings()
        self.record("ctrl+c")
        self.wait_seen(re.compile(".*conflict.*|.*used by.*|.*reserved.*", re.IGNORECASE),
                       window=SETTINGS_WINDOW)
        resumed = self.program.count(f"{RESUMED}⌥T")
        self.record("Escape")
        self.wait_seen("Quick Search, Alt+T", BUTTON, window=SETTINGS_WINDOW)
        wait_for("it is in force again",
                 lambda: self.program.count(f"{RESUMED}⌥T") > resumed)
        self.leave_settings()
        self.program.open_palette()


if __name__ == "__main__":
    main()
