"""The portal for global shortcuts of a desktop, and the person's hand on its keys."""
import os
import subprocess

from processes import LoggedProcess
from waiting import wait_for


class ShortcutsPortal(LoggedProcess):
    stdin = subprocess.PIPE

    def __init__(self, desktop):
        super().__init__([os.environ["VELLUMRY_SHORTCUTS_PORTAL"]], desktop.env)
        wait_for("the portal is there", lambda: "ready" in self.lines or not self.running())

    def calls(self):
        return [line.removeprefix("call ") for line in self.lines if line.startswith("call ")]

    def press(self, token=""):
        self._tell(f"press {token}")

    def choose(self, trigger):
        """The person chooses other keys in the desktop's own dialog."""
        self._tell(f"trigger {trigger}")

    def _tell(self, line):
        self.process.stdin.write(f"{line}\n".encode())
        self.process.stdin.flush()

    def finish(self):
        if not self.process.stdin.closed:
            self.process.stdin.close()
        return super().finish()
