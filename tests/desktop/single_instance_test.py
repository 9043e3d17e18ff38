"""A second start hands over to the program that runs; so do the switches."""
import os
import re
import signal
import time

from case import DesktopCase, main
from processes import LoggedProcess
from program import (MAIN_WINDOW, PALETTE, RAISED_WHEN_MADE, READY, SETTINGS_WINDOW,
                     Program)
from waiting import wait_for

# From the second start to its end. The desktop under test shares the machine.
HANDED_OVER_IN = 1.0


class SingleInstance(DesktopCase):

    def run_again(self, *arguments, home=None):
        """Starts the program a second time; returns its status, lines and seconds."""
        started = time.monotonic()
        result = self.program.run_again(*arguments, home=home)
        return result.returncode, result.stdout + result.stderr, time.monotonic() - started

    def test_second_start_opens_the_main_window(self):
        """A second start ends at once with status 0, and the first program shows its window."""
        self.program.wait_settled()
        status, text, seconds = self.run_again()
        self.assertEqual(status, 0, text)
        self.assertLess(seconds, HANDED_OVER_IN)
        self.assertIn("SingleInstance: Vellumry is running already and has been told", text)
        self.program.wait_raised(RAISED_WHEN_MADE)
        self.assertIn("applicationShouldHandleReopen called, hasVisibleWindows: false",
                      self.program.lines)
        self.recorder.focus()
        self.assertEqual(self.run_again()[0], 0)
        self.desktop.wait_focus(MAIN_WINDOW)
        self.assertEqual(len(self.desktop.windows(MAIN_WINDOW)), 1)

    def test_hidden_start_changes_nothing(self):
        """A second start by the login leaves the screen alone."""
        self.program.wait_settled()
        self.assertEqual(self.run_again("--hidden")[0], 0)
        self.run_again("--toggle-palette")
        self.program.wait_palette()
        self.assertEqual(self.desktop.windows(MAIN_WINDOW), [])

    def test_toggle_palette(self):
        """The palette comes and goes by the switch, for desktops without a hot key."""
        self.assertEqual(self.run_again("--toggle-palette")[0], 0)
        self.program.wait_palette()
        self.assertEqual(self.run_again("--toggle-palette")[0], 0)
        self.program.wait_palette_gone()

    def test_start_is_over(self):
        """A desktop that shows a start as going on is told of its end by the program that runs,
        though no window comes up for it."""
        mark = 'desk"top\\with a long name-1234_TIME5678'
        home = {**self.home, "DESKTOP_STARTUP_ID": mark}
        self.assertEqual(self.run_again("--toggle-palette", home=home)[0], 0)
        self.program.wait_palette()
        self.assertEqual(self.run_again("--toggle-palette", home=home)[0], 0)
        self.program.wait_palette_gone()
        escaped = mark.replace("\\", "\\\\").replace('"', '\\"')
        self.assertEqual(self.desktop.recording.startup_messages(),
                         [f'remove: ID="{escaped}"'] * 2)

    def test_new_snippet(self):
        """The main window comes up for a new snippet."""
        self.program.wait_settled()
        self.assertEqual(self.run_again("--new-snippet")[0], 0)
        self.desktop.wait_focus(MAIN_WINDOW)
        wait_for("its command", lambda: "MenuBarService.openMainWindow called" in self.program.lines)

    def test_settings(self):
        """The settings pause the hot key; it works again when they have gone."""
        self.assertEqual(self.run_again("--open-settings")[0], 0)
        wait_for("the hot key is paused",
                 lambda: "HotkeyService: 热键已暂停" in self.program.lines)
        self.desktop.activate(SETTINGS_WINDOW)
        self.desktop.key("alt+F4")
        self.desktop.wait_gone(SETTINGS_WINDOW)
        wait_for("the hot key is back", lambda: any(
            line.startswith("HotkeyService: 热键已恢复") for line in self.program.lines))
        self.program.open_palette()

    def test_quit(self):
        """The switch ends the program; without a program it says so."""
        self.assertEqual(self.run_again("--quit")[0], 0)
        wait_for("the end", lambda: not self.program.running())
        self.assertEqual(self.program.finish(), 0, self.program.lines)
        status, text, _ = self.run_again("--quit")
        self.assertEqual(status, 0)
        self.assertIn("Vellumry is not running", text)

    def test_switch_starts_the_program(self):
        """Without a running program, the palette's switch starts it and shows the palette only."""
        self.program.finish()
        self.program = self.start(Program, self.desktop, self.home, (), ("--toggle-palette",))
        self.program.wait_palette()
        self.program.wait_settled()
        self.assertEqual(self.desktop.windows(MAIN_WINDOW), [])

    def test_without_a_bus(self):
        """Without a session bus the program runs and says what is missing."""
        self.program.finish()
        self.program = self.start(Program, self.desktop,
                                  {**self.home, "DBUS_SESSION_BUS_ADDRESS": ""})
        self.assertIn("SingleInstance: there is no session bus, so a second start will not find "
                      "this one", self.program.lines)
        self.program.open_palette()

    def test_bus_that_cannot_be_reached(self):
        """An address with nobody behind it does not keep the program from running."""
        self.program.finish()
        address = f"unix:path={self.home['HOME']}/nothing"
        self.program = self.start(Program, self.desktop,
                                  {**self.home, "DBUS_SESSION_BUS_ADDRESS": address})
        self.program.open_palette()

    def test_program_that_does_not_answer(self):
        """A program that hangs is told of, and the second start fails."""
        self.program.process.send_signal(signal.SIGSTOP)
        try:
            status, text, _ = self.run_again("--toggle-palette")
        finally:
            self.program.process.send_signal(signal.SIGCONT)
        self.assertEqual(status, 1)
        self.assertIn("SingleInstance: Vellumry is running already, but does not answer", text)

    def test_program_that_ends_meanwhile(self):
        """A start that meets the end of the other program takes its place."""
        self.program.process.send_signal(signal.SIGSTOP)
        successor = LoggedProcess([os.environ["VELLUMRY_PROGRAM"], "--hidden"],
                                  {**self.desktop.env, **self.home})
        self.addCleanup(successor.finish)
        wait_for("the other one is asked", lambda: self.has_bus_name(successor))
        self.program.process.kill()
        wait_for("the other one takes over", lambda: READY in successor.lines)
        self.program.finish()

    def has_bus_name(self, process):
        """Whether the process is on the session bus, and so past the first question to it."""
        listing = self.desktop.command(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus.ListNames")
        names = re.findall(r'":[\d.]+"', listing)
        return any(self.pid_of(name.strip('"')) == process.process.pid for name in names)

    def pid_of(self, name):
        answer = self.desktop.command(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus.GetConnectionUnixProcessID",
            f"string:{name}", check=False)
        found = re.search(r"uint32 (\d+)", answer)
        return int(found[1]) if found else None

    def test_unknown_switch(self):
        """A switch that there is not ends the start with a line that names it."""
        status, text, _ = self.run_again("--louder")
        self.assertEqual(status, 1)
        self.assertIn('there is no switch "--louder"', text)
        self.assertEqual(self.desktop.windows(PALETTE), [])

    def test_help_needs_no_display(self):
        """--help prints the switches also where there is no display."""
        status, text, _ = self.run_again("--help", home={**self.home, "DISPLAY": ""})
        self.assertEqual(status, 0)
        self.assertIn("--toggle-palette", text)


if __name__ == "__main__":
    main()
