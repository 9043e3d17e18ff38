"""What the program shows, by names and places, as it tells a screen reader."""
import json
import os
import re
import subprocess
from dataclasses import dataclass

from processes import LoggedProcess
from waiting import wait_for


@dataclass(frozen=True)
class Shown:
    """One thing on the screen, with what it stands in, nearest first."""
    name: str
    role: str
    text: str
    states: frozenset
    place: tuple
    around: tuple

    def fits(self, name, role, inside):
        """name, inside: a text, or a pattern for all of it. None and "" fit everything."""
        return (_fits(name, self.name) and (not role or role == self.role)
                and (not inside or any(_fits(inside, each.name) for each in self.around)))

    def middle(self):
        x, y, width, height = self.place
        return x + width // 2, y + height // 2


def _fits(wanted, name):
    return bool(wanted.fullmatch(name)) if isinstance(wanted, re.Pattern) else wanted in ("", name)


class ScreenReader(LoggedProcess):
    stdin = subprocess.PIPE

    def __init__(self, desktop):
        super().__init__([os.environ["VELLUMRY_SCREEN_READER"]], desktop.env)
        wait_for("the screen reader is there", lambda: "ready" in self.lines)

    def look(self, window=""):
        """All that the window of that title shows, or all windows."""
        self.lines.clear()
        self.process.stdin.write(f"{window}\n".encode())
        self.process.stdin.flush()
        wait_for("the screen reader's answer", lambda: self.lines)
        seen = []
        for record in json.loads(self.lines[0].removeprefix("seen ")):
            parent = record.pop("parent")
            around = (seen[parent], *seen[parent].around) if parent >= 0 else ()
            seen.append(Shown(**{**record, "states": frozenset(record["states"]),
                                 "place": tuple(record["place"])}, around=around))
        return seen

    def finish(self):
        self.process.stdin.close()
        return super().finish()
