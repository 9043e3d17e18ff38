"""A virtual desktop with the hands and eyes of a person: keys, pointer, clipboard, windows."""
import os
import re
import subprocess

from processes import end, guarded
from virtual_desktop import VirtualDesktop
from waiting import wait_for


class Desktop(VirtualDesktop):

    def __init__(self, **options):
        super().__init__(**options)
        self.clipboard_owner = None

    def __exit__(self, *arguments):
        if self.clipboard_owner:
            end(self.clipboard_owner)
        super().__exit__(*arguments)

    def command(self, *argv, check=True):
        """Runs a command on this desktop; returns what it printed."""
        return subprocess.run(argv, env=self.env, check=check, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8").stdout

    # Keyboard. All keys go through XTEST, so that grabs see them as they see real ones.

    def key(self, *keys, delay=12):
        """Presses and releases each key or combination, as in key("alt+t", "h", "Return")."""
        self.command("xdotool", "key", "--delay", str(delay), *keys)

    def physical_key(self, *keycodes):
        """Presses keys together by their place on the keyboard; the layout in force stays."""
        self.x.press(*keycodes)

    def type_text(self, text):
        self.command("xdotool", "type", "--delay", "5", text)

    def hold_key(self, *keys, seconds):
        """Holds the keys together for that long, with the keyboard's own repeats."""
        self.command("xset", "r", "on")
        self.command("xdotool", *(word for key in keys for word in ("keydown", key)),
                     "sleep", str(seconds),
                     *(word for key in reversed(keys) for word in ("keyup", key)))
        self.command("xset", "r", "off")

    def set_layout(self, *arguments):
        self.command("setxkbmap", "-option", "", *arguments)

    def set_lock(self, name, on):
        """name: "Caps_Lock" or "Num_Lock"."""
        label = name.replace("_", " ")

        def is_on():
            return re.search(label + r":\s+(on|off)", self.command("xset", "q"))[1] == "on"
        if is_on() != on:
            self.key(name)
        wait_for(f"{name} is {'on' if on else 'off'}", lambda: is_on() == on)

    def reset_keyboard(self):
        """The layout and the locks of the start. No key repeats unless a test holds it: a machine
        that is held up between press and release would type it several times."""
        self.command("xset", "r", "off")
        self.set_layout("us")
        self.set_lock("Caps_Lock", False)
        self.set_lock("Num_Lock", False)

    # Pointer

    def move_pointer(self, x, y):
        self.command("xdotool", "mousemove", str(x), str(y))

    def click(self, x, y):
        self.command("xdotool", "mousemove", str(x), str(y), "click", "1")

    # Windows

    def windows(self, title):
        """The ids of all visible windows with exactly that title."""
        return self._search("--name", title)

    def windows_of(self, program):
        """The ids of all visible windows of the program, also those without a title: menus."""
        return self._search("--class", program)

    def _search(self, kind, text):
        def search():
            result = subprocess.run(["xdotool", "search", "--onlyvisible", kind, f"^{text}$"],
                                    env=self.env, capture_output=True, encoding="utf-8", check=False)
            # A window that goes away meanwhile spoils the search: ask again.
            return None if result.stderr.strip() else [result.stdout.split()]
        return wait_for(f"a search for the windows {text!r}", search)[0]

    def window(self, title):
        """Waits for a visible window of that title and returns its id."""
        return wait_for(f"window {title!r}", lambda: self.windows(title))[0]

    def wait_gone(self, title):
        wait_for(f"window {title!r} is gone", lambda: not self.windows(title))

    def focused_window(self):
        """The title of the window that has the keyboard, or an empty text."""
        return self.command("xdotool", "getwindowfocus", "getwindowname", check=False).rstrip("\n")

    def wait_focus(self, title):
        wait_for(f"focus on {title!r}", lambda: self.focused_window() == title)

    def activate(self, title):
        """Gives the focus to a window, as a click in a task bar does."""
        self.command("xdotool", "windowactivate", self.window(title))
        self.wait_focus(title)

    def geometry(self, window):
        """(x, y, width, height) on the screen."""
        text = self.command("xwininfo", "-id", window)
        return tuple(int(re.search(label + r":\s+(-?\d+)", text)[1]) for label in
                     ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))

    def states(self, window):
        """What the window manager and the window have agreed on, as "ABOVE", "SKIP_TASKBAR"."""
        return re.findall(r"_NET_WM_STATE_(\w+)", self.command("xprop", "-id", window,
                                                               "_NET_WM_STATE"))

    # Clipboard

    def clipboard(self, target="UTF8_STRING", selection="clipboard"):
        """The clipboard's text, or what it offers in another form; None when nobody offers it."""
        result = subprocess.run(
            ["xclip", "-o", "-selection", selection, "-t", target], env=self.env,
            capture_output=True, encoding="utf-8", check=False)
        return result.stdout if result.returncode == 0 else None

    def set_clipboard(self, text):
        """Puts the text on the clipboard, in the name of some other program."""
        previous = self.clipboard_owner
        self.clipboard_owner = subprocess.Popen(
            guarded(["xclip", "-i", "-quiet", "-selection", "clipboard"]), env=self.env,
            stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.clipboard_owner.stdin.write(text.encode())
        self.clipboard_owner.stdin.close()
        wait_for("the clipboard is set", lambda: self.clipboard() == text)
        if previous:
            end(previous)

    def wait_clipboard(self, text):
        try:
            wait_for("clipboard", lambda: self.clipboard() == text)
        except AssertionError as error:
            held = str(self.clipboard())[:200]
            raise AssertionError(f"the clipboard holds {held!r}, not {text[:200]!r}") from error

    # Pictures

    def screenshot(self, path, area=None):
        """Saves a PNG of the screen, or of the area (x, y, width, height) of it."""
        os.makedirs(os.path.dirname(path), exist_ok=True)
        crop = ["-crop", "{2}x{3}+{0}+{1}".format(*area), "+repage"] if area else []
        self.command("import", "-silent", "-window", "root", *crop, f"png:{path}")
        return path
