"""The other program of the desktop tests: it has the focus and records the keys it receives."""
import os

from processes import LoggedProcess
from waiting import wait_for

TITLE = "Recorder"


class Recorder(LoggedProcess):

    def __init__(self, desktop):
        super().__init__([os.environ["VELLUMRY_KEY_RECORDER"]], desktop.env)
        self.desktop = desktop
        wait_for("the recorder's window", lambda: "shown" in self.lines)

    def focus(self):
        self.desktop.activate(TITLE)

    def keys(self):
        """All keys received, in order, as in ["h", "i", "0xff0d"]."""
        return [line.removeprefix("key ") for line in list(self.lines) if line.startswith("key ")]

    def wait_for_key(self, key):
        """Presses the key here and waits for it: every earlier key has then been received."""
        before = self.keys().count(key)
        self.desktop.key(key)
        wait_for(f"key {key!r} in the recorder", lambda: self.keys().count(key) > before)
