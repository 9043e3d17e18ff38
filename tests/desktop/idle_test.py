"""A program that nobody uses sleeps: the system calls of the real program tell how often it wakes."""
import os
import re
import time

from case import DesktopCase, main
from program import Program
from status_area_test import StatusArea
from waiting import TIMEOUT, wait_for, wait_until_stable

# Less than once in ten seconds.
SECONDS = 30.0
WAKE_UPS = 2
# The toolkit's pools keep a thread for half a minute after its last work. Its end, which comes once,
# wakes several.
POOLED = "Thread (pooled)"
POOLED_FOR = 30.0
# What a save, a toast or a start leaves to be done is over when nothing has happened for so long.
AT_REST = 3.0
NO_AREA = "MenuBarService: this desktop shows no status area"

# The end of a wait, of whatever thread. A signal of the tracer's own is none.
WOKEN = re.compile(r"(?:poll|ppoll|epoll_wait|epoll_pwait|select|pselect6|nanosleep|clock_nanosleep|"
                   r"futex|restart_syscall)\b[^\n]*= ")


class Idle(DesktopCase):

    def start_program(self):
        self.trace = os.path.join(self.home["HOME"], "trace")
        # The tracer stands aside (-D), so that the program itself is the child of the test.
        return self.start(Program, self.desktop, self.home,
                          ["strace", "-D", "-f", "-o", self.trace])

    def wake_ups(self):
        with open(self.trace, encoding="utf-8", errors="replace") as file:
            return [line for line in file if WOKEN.search(line) and "FUTEX_WAKE" not in line]

    def has_pooled_threads(self):
        tasks = f"/proc/{self.program.process.pid}/task"
        for task in os.listdir(tasks):
            try:
                with open(os.path.join(tasks, task, "comm"), encoding="utf-8") as name:
                    if name.read().strip() == POOLED:
                        return True
            except (FileNotFoundError, ProcessLookupError):
                pass  # it has just ended
        return False

    def assert_sleeps(self):
        """Once at rest, the program stays so."""
        self.program.wait_settled()
        wait_for("the pools' threads end", lambda: not self.has_pooled_threads(),
                 timeout=POOLED_FOR + TIMEOUT)
        wait_until_stable("the program is at rest", lambda: len(self.wake_ups()), AT_REST,
                          timeout=3 * TIMEOUT)
        deadline = time.monotonic() + SECONDS
        before = len(self.wake_ups())
        wait_for("the time to pass", lambda: time.monotonic() > deadline, timeout=2 * SECONDS)
        woken = self.wake_ups()[before:]
        print(f"{self.id()}: woken {len(woken)} times in {SECONDS:g} s", flush=True)
        self.assertLessEqual(len(woken), WAKE_UPS, "".join(woken))

    def wait_for_search_of_area(self):
        """The last that a start does of itself, ten seconds later."""
        wait_for("the search for a status area is over",
                 lambda: any(line.startswith(NO_AREA) for line in self.program.lines))

    def test_after_the_start(self):
        """On a desktop with a bus and without a status area."""
        self.assertGreater(len(self.wake_ups()), WAKE_UPS, "the tracer sees nothing")
        self.wait_for_search_of_area()
        self.assert_sleeps()

    def test_with_an_item(self):
        """With an item in a status area."""
        area = self.start(StatusArea, self.desktop)
        area.wait_item()
        self.assert_sleeps()

    def test_without_a_bus(self):
        """Nobody looks for a bus that there is not."""
        self.program.finish()
        self.home["DBUS_SESSION_BUS_ADDRESS"] = ""
        self.program = self.start_program()
        self.recorder.focus()
        self.wait_for_search_of_area()
        self.assert_sleeps()

    def test_after_a_use(self):
        """A palette that was closed leaves nothing that blinks or counts."""
        self.wait_for_search_of_area()
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return")
        self.program.wait_palette_gone()
        self.desktop.wait_gone("Toast")
        self.assert_sleeps()


if __name__ == "__main__":
    main()
