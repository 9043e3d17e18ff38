"""The program under test, and what its log and its palette tell."""
import os
import subprocess

from processes import LoggedProcess, guarded
from waiting import TIMEOUT, wait_for, wait_until_stable

READY = "HotkeyService: 已注册热键 ⌥T"
SHOWING = "AppDelegate: showing palette"
SHOWN = "AppDelegate: palette shown, isPalettePresented = true"
HIDING = "AppDelegate: hiding palette"
LOST_FOCUS = "AppDelegate: palette lost focus, hiding"
ADOPTED = "Main window delegate set: "
SILENT = "SessionBus: the session bus takes connections but does not answer, so Vellumry does " \
         "without it"
NO_MAIN_WINDOW = "setupMainWindowWithRetry: All attempts exhausted, no main window found"

PALETTE, TOAST, MAIN_WINDOW = "Palette", "Toast", "Vellumry"
SETTINGS_WINDOW = "Settings"
WINDOW_CLASS = "vellumry"
HOTKEY = "alt+t"

# A machine that is held up for a while starts it late.
START = 3 * TIMEOUT
# From the signal to the end. A call that waits for a bus takes 25 s.
ENDS_IN = 5.0

TOAST_SIZE = (300, 90)
# A main window is shown, brought up again once it is there, and adopted or found.
RAISED_WHEN_MADE = 3

# A query is searched 50 ms after its last letter; rows that stand still for this long are final.
SEARCHED = 0.4
# Where the toast, which stands in the middle of the palette, does not cover the rows.
UNCOVERED_WIDTH, FIELD_HEIGHT = 180, 62
# The grounds of rows: white levels 0.18 and 0.15.
SELECTED_GREY, HOVERED_GREY = 46, 38
# From the palette's left edge to the rows' own padding, where nothing is drawn upon the ground.
ROW_PADDING = 16


class Program(LoggedProcess):
    """Starts the program with a home folder of its own and waits until its hot key is in force."""
    ready, hotkey = READY, HOTKEY

    def __init__(self, desktop, home, wrapper=(), arguments=("--hidden",)):
        """wrapper: a command that runs the program in its stead, as a tracer does. arguments: of
        the program; by themselves they leave the screen to the test."""
        super().__init__([*wrapper, os.environ["VELLUMRY_PROGRAM"], *arguments],
                         {**desktop.env, **home})
        self.desktop, self.home = desktop, home
        wait_for("the program is ready", lambda: self.ready in self.lines or not self.running(),
                 timeout=START)
        if not self.running():
            raise AssertionError("the program ended at its start:\n" + "\n".join(self.lines))

    def run_again(self, *arguments, home=None):
        """Starts the program once more while it runs; returns how the second process has ended."""
        return subprocess.run(guarded([os.environ["VELLUMRY_PROGRAM"], *arguments]),
                              env={**self.desktop.env, **(home or self.home)},
                              capture_output=True, encoding="utf-8", timeout=START, check=False)

    def wait_settled(self):
        """Waits until the search for the first main window is over, which would raise one."""
        wait_for("the search for the main window is over", lambda: any(
            line.startswith(ADOPTED) or line == NO_MAIN_WINDOW for line in self.lines))

    def wait_main_window(self):
        """Waits until the main window of a start by hand has the keyboard and is raised no more,
        which would take the keyboard away from another window."""
        self.wait_settled()
        self.wait_raised(RAISED_WHEN_MADE)

    def wait_raised(self, times):
        """Waits until the main window was raised that many times, and has the keyboard."""
        window = int(self.desktop.window(MAIN_WINDOW))
        wait_for(f"the main window is raised {times} times",
                 lambda: self.desktop.recording.activations(window) >= times)
        self.desktop.wait_focus(MAIN_WINDOW)

    def shown_count(self):
        return self.count(SHOWN)

    def open_palette(self, press=None):
        """Presses the hot key, or calls `press` to do so, and waits until the palette has the
        keyboard; returns its place."""
        shown = self.shown_count()
        if press:
            press()
        else:
            self.desktop.key(self.hotkey)
        wait_for("palette shown", lambda: self.shown_count() > shown)
        return self.wait_palette()

    def wait_palette(self):
        self.desktop.window(PALETTE)
        self.desktop.wait_focus(PALETTE)
        return self.desktop.geometry(self.desktop.window(PALETTE))

    def wait_palette_gone(self):
        self.desktop.wait_gone(PALETTE)

    def search(self, query):
        """Types into the open palette and waits for the rows."""
        self.desktop.type_text(query)
        self.wait_searched()

    def wait_searched(self):
        x, y, width, height = self.desktop.geometry(self.desktop.window(PALETTE))
        areas = ((x + 1, y + 1, width - 2, FIELD_HEIGHT - 4),
                 (x + 1, y + FIELD_HEIGHT, UNCOVERED_WIDTH, height - FIELD_HEIGHT - 1))
        wait_until_stable("the palette stands still",
                          lambda: [self.desktop.x.pixels(*area) for area in areas], SEARCHED)

    def selected_row(self):
        """Waits for the selected row; returns the y where it begins and ends on the screen."""
        x, y, _, height = self.desktop.geometry(self.desktop.window(PALETTE))

        def band():
            column = self.desktop.x.pixels(x + ROW_PADDING, y, 1, height)
            lit = [row for row in range(height)
                   if column[row * 4:row * 4 + 3] == bytes([SELECTED_GREY] * 3)]
            return (y + lit[0], y + lit[-1]) if len(lit) >= 16 else None
        return wait_for("a selected row", band)

    def ground_at(self, y):
        """The grey of the row at that height of the screen; None for another colour."""
        x = self.desktop.geometry(self.desktop.window(PALETTE))[0]
        blue, green, red, _ = self.desktop.x.pixels(x + ROW_PADDING, y, 1, 1)
        return blue if blue == green == red else None

    def row_below(self):
        """A point on the row below the selected one; the selection ends where it was."""
        x, _, width, _ = self.desktop.geometry(self.desktop.window(PALETTE))
        first = self.selected_row()
        self.desktop.key("Down")
        wait_for("the selection has moved down", lambda: self.selected_row() != first)
        top, bottom = self.selected_row()
        self.desktop.key("Up")
        wait_for("the selection is back", lambda: self.selected_row() == first)
        return x + width // 2, (top + bottom) // 2

    def toast_count(self):
        """How many toasts there have been on this desktop, even if nobody saw them."""
        return self.desktop.recording.popups().count(TOAST_SIZE)

    def wait_new_toast(self, seen=()):
        """Waits for a toast that is not one of those seen before; returns its window id."""
        return wait_for("toast", lambda: set(self.desktop.windows(TOAST)) - set(seen)).pop()
