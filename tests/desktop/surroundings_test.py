"""What the program finds wrong around it: settings, home, display, bus, another program's keys."""
import contextlib
import os
import signal
import socket
import stat
import time

from case import LETTER_TEXT, DesktopCase, main
from desktop import Desktop
from library import Library
from processes import LoggedProcess
from program import ENDS_IN, MAIN_WINDOW, SILENT, Program
from waiting import wait_for

OPENS_IN = 10.0
REFUSED = "HotkeyService: ⌥T has no effect: another program holds it, or the window system gives " \
          "out no hot keys"
UNSAVED = "SettingsService: The settings cannot be stored, they hold until the program ends"


class KeylessProgram(Program):
    """A program whose hot key has a name that there is not."""
    ready = "HotkeyService: 无效的按键 'hyper'"


class SurroundingsCase(DesktopCase):

    def start_again(self, kind=Program, wrapper=(), **variables):
        """Ends the program and starts it in other surroundings."""
        self.program.finish()
        self.program = self.start(kind, self.desktop, {**self.home, **variables}, wrapper)
        self.recorder.focus()

    def start_in_vain(self, **variables):
        """Starts a program that ends by itself, as an error and not as a crash."""
        process = self.start(LoggedProcess, [os.environ["VELLUMRY_PROGRAM"], "--hidden"],
                             {**self.desktop.env, **self.home, **variables})
        wait_for("the end", lambda: not process.running())
        self.assertEqual(process.finish(), 1, process.lines)
        return process

    def assert_works(self):
        """The palette comes by the hot key and copies."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)
        self.program.wait_palette_gone()

    def assert_ends_soon(self):
        began = time.monotonic()
        self.assertEqual(self.program.finish(), 0, self.program.lines)
        self.assertLess(time.monotonic() - began, ENDS_IN)


    def store(self, text):
        """Ends the program and replaces its settings."""
        self.program.finish()
        folder = os.path.join(self.home["XDG_CONFIG_HOME"], "vellumry")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "vellumry.conf"), "w", encoding="utf-8") as file:
            file.write("[General]\n" + text)


class Settings(SurroundingsCase):

    def test_values_of_a_wrong_type(self):
        """Each is told, and its default takes its place."""
        self.store("quickSearchHotkeyKey=a, b\nquickSearchHotkeyModifiers=many\n"
                   "appearanceMode=5\nhasLaunchedBefore=maybe\n")
        self.start_again()
        for key in ("quickSearchHotkeyKey", "quickSearchHotkeyModifiers", "appearanceMode",
                    "hasLaunchedBefore"):
            self.assertIn(f"SettingsService: The stored {key} is not understood, the default takes "
                          "its place", self.program.lines)
        self.assert_works()

    def test_a_file_that_is_none(self):
        """Bytes without sense are no settings."""
        self.store("\0\1\2 = [[[\n%%%\n")
        self.start_again()
        self.assert_works()

    def test_key_that_there_is_not(self):
        """The name is told, there is no hot key, and a second start raises the palette."""
        self.store("quickSearchHotkeyKey=hyper\n")
        self.start_again(KeylessProgram)
        self.start(LoggedProcess, [os.environ["VELLUMRY_PROGRAM"], "--toggle-palette"],
                   {**self.desktop.env, **self.home})
        self.program.wait_palette()

    def test_modifiers_of_zero(self):
        """They are those of the default hot key."""
        self.store("quickSearchHotkeyKey=t\nquickSearchHotkeyModifiers=0\n")
        self.start_again()
        self.assert_works()

    def test_negative_modifiers(self):
        """The program ends with a line and a window that says so; the library keeps its bytes."""
        self.store("quickSearchHotkeyModifiers=-1\n")
        before = self.library.file_bytes("Mail"), self.library.file_bytes("_metadata")
        process = self.start_in_vain()
        self.assertIn("The stored modifiers of the hot key are negative", process.lines)
        self.desktop.activate("Vellumry")
        self.desktop.key("Escape")
        self.desktop.wait_gone("Vellumry")
        self.assertEqual((self.library.file_bytes("Mail"), self.library.file_bytes("_metadata")),
                         before)

    def test_hot_key_of_another_program(self):
        """A combination that is taken is told, and the one who has it keeps it."""
        home = {**self.desktop.new_home(), "DBUS_SESSION_BUS_ADDRESS": ""}
        other = self.start(Program, self.desktop, home)
        wait_for("the line", lambda: REFUSED in other.lines)
        self.assertNotIn(REFUSED, self.program.lines)
        self.recorder.focus()
        self.assert_works()
        self.assertEqual(other.shown_count(), 0)


class Home(SurroundingsCase):

    @contextlib.contextmanager
    def read_only(self):
        """Nobody writes below the home, not even its owner, who may be allowed everything; a
        session's own folder lies elsewhere."""
        folders = [folder for folder, _, _ in os.walk(self.home["HOME"])
                   if folder != self.home["XDG_RUNTIME_DIR"]]
        for folder in folders:
            os.chmod(folder, stat.S_IRUSR | stat.S_IXUSR)
        try:
            yield ["setpriv", "--bounding-set=-dac_override"] if os.geteuid() == 0 else []
        finally:
            for folder in folders:
                os.chmod(folder, stat.S_IRWXU)

    def test_home_that_is_read_only(self):
        """What cannot be stored is told, the library keeps its bytes, and the palette copies."""
        self.program.finish()
        self.home = self.desktop.new_home()
        self.library = Library(self.home["HOME"])
        self.library.write(self.collections)
        before = self.library.file_bytes("Mail")
        with self.read_only() as wrapper:
            self.start_again(wrapper=wrapper)
            self.assertIn(UNSAVED, self.program.lines)
            self.assertTrue(self.told_refusal(), self.program.lines)
            self.assert_works()
            self.assert_ends_soon()
        self.assertEqual(self.library.file_bytes("Mail"), before)

    def told_refusal(self):
        return any(line.startswith("SettingsService: Failed to set launch at login: cannot ")
                   for line in self.program.lines)

    def test_home_that_is_not_there(self):
        """A home that cannot even be made is told; the program runs."""
        home = "/proc/no-such-home"
        self.start_again(HOME=home, XDG_CONFIG_HOME=f"{home}/.config",
                         XDG_DATA_HOME=f"{home}/.local/share", XDG_CACHE_HOME=f"{home}/.cache")
        self.assertIn(UNSAVED, self.program.lines)
        self.assertTrue(self.told_refusal(), self.program.lines)
        self.program.open_palette()
        self.assert_ends_soon()


    def test_library_on_a_disk_that_is_not_there(self):
        """A chosen folder that cannot even be made is told; nothing takes its place, and the library
        of the default folder keeps its bytes."""
        self.store("Vellumry.useCustomLocation=true\n"
                   "Vellumry.customStorageLocation=/proc/no-such-disk/Library\n")
        before = self.library.file_bytes("Mail")
        self.start_again()
        self.assertIn('StorageLocationManager: 创建目录失败 - cannot create '
                      '"/proc/no-such-disk/Library": No such file or directory', self.program.lines)
        self.program.open_palette()
        self.program.wait_searched()
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.assert_ends_soon()
        self.assertEqual(self.library.file_bytes("Mail"), before)


class Bus(SurroundingsCase):

    def test_bus_that_never_answers(self):
        """A bus that takes connections and says nothing holds up neither the start nor the end."""
        path = os.path.join(self.home["HOME"], "silent-bus")
        with socket.socket(socket.AF_UNIX) as silent:
            silent.bind(path)
            silent.listen()
            self.start_again(DBUS_SESSION_BUS_ADDRESS=f"unix:path={path}")
            self.assertIn(SILENT, self.program.lines)
            self.assert_works()
            self.assert_ends_soon()

    def test_bus_that_stops_answering(self):
        """One that falls silent later holds up neither the palette nor the end."""
        self.program.wait_settled()
        self.bus().send_signal(signal.SIGSTOP)
        try:
            self.assert_works()
            self.assert_ends_soon()
        finally:
            self.bus().send_signal(signal.SIGCONT)

    def test_bus_that_stops_answering_before_the_first_window(self):
        """The window does not wait for it, neither for its menus nor for anything else."""
        self.program.wait_settled()
        self.bus().send_signal(signal.SIGSTOP)
        try:
            self.program.open_palette()
            self.program.wait_searched()
            began = time.monotonic()
            self.desktop.key("Return")
            self.desktop.wait_focus(MAIN_WINDOW)
            self.assertLess(time.monotonic() - began, OPENS_IN)
        finally:
            self.bus().send_signal(signal.SIGCONT)

    def test_bus_that_goes_away(self):
        """The program lives on without it."""
        with Desktop() as desktop:
            self.program.finish()
            program = self.start(Program, desktop, self.home)
            program.wait_settled()
            bus = self.bus(desktop)
            bus.kill()
            bus.wait()
            program.open_palette()
            program.search("letter")
            desktop.key("Return")
            desktop.wait_clipboard(LETTER_TEXT)
            self.assertEqual(program.finish(), 0, program.lines)

    def bus(self, desktop=None):
        """The process of the desktop's session bus."""
        return next(service for service in (desktop or self.desktop).services
                    if "dbus-daemon" in service.args)


class Display(SurroundingsCase):

    def test_no_display(self):
        """Without a display the start fails with a line that names it."""
        process = self.start_in_vain(DISPLAY=":9876")
        self.assertTrue(any("could not connect to display :9876" in line for line in process.lines),
                        process.lines)

    def test_display_that_goes_away(self):
        """The program ends as an error, with a line; what was saved is whole."""
        for arguments in (("--hidden",), ()):
            with self.told(f"started with {arguments}"), Desktop() as desktop:
                self.lose_display(desktop, arguments)

    def lose_display(self, desktop, arguments):
        home = desktop.new_home()
        library = Library(home["HOME"])
        library.write(self.collections)
        program = self.start(Program, desktop, home, (), arguments)
        if arguments:
            program.wait_settled()
        else:
            program.wait_main_window()
        program.open_palette()
        program.search("letter")
        desktop.key("Return")
        desktop.wait_clipboard(LETTER_TEXT)
        wait_for("the use on disk", lambda: library.snippets()["letter"]["usageCount"] == 1)
        desktop.disconnect()
        display = next(service for service in desktop.services if "Xvfb" in service.args)
        display.kill()
        wait_for("the end", lambda: not program.running())
        self.assertEqual(program.finish(), 1, program.lines)
        self.assertTrue(any("The X11 connection broke" in line for line in program.lines),
                        program.lines)
        self.assertEqual(library.snippets()["letter"]["usageCount"], 1)
        self.assertEqual(set(library.snippets()), {"letter", "alpha note", "beta note"})


class NoWindowManager(DesktopCase):
    """A display without anybody who moves windows or gives the keyboard away."""
    options = {"wm": "none"}

    def setUp(self):
        self.program = None
        self.home = self.desktop.new_home()
        self.library = Library(self.home["HOME"])
        self.library.write(self.collections)
        self.desktop.set_clipboard("untouched")
        self.program = self.start_program()

    def test_story(self):
        """The palette takes the keyboard by itself and copies."""
        self.program.open_palette()
        self.program.search("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)
        self.program.wait_palette_gone()
        self.assertEqual(self.program.finish(), 0, self.program.lines)


if __name__ == "__main__":
    main()
