"""A private Wayland desktop: sway without a screen, and a D-Bus session bus, with HOME and every XDG
directory in a fresh folder; with the hands and eyes of a person as far as Wayland lets us."""
import json
import os
import subprocess

from processes import guarded
from virtual_desktop import VirtualDesktop
from waiting import wait_for

# Where windows and the keyboard go is the compositor's affair; these are its own rules, but for what
# a class of tests adds.
RULES = """output HEADLESS-1 resolution 1280x800
xwayland disable
focus_follows_mouse no
focus_on_window_activation focus
"""
NOBODY = 65534


class WaylandDesktop(VirtualDesktop):
    """rules: lines for the compositor's configuration. Use as a context manager."""

    def __init__(self, rules=""):
        self.rules = rules
        super().__init__(wm="sway")

    def new_home(self):
        return {**super().new_home(), "XDG_SESSION_TYPE": "wayland"}

    def _start(self):
        self._start_bus()
        runtime = os.path.join(self.folder, "wayland")
        os.mkdir(runtime, 0o700)
        config = os.path.join(self.folder, "sway.config")
        with open(config, "w", encoding="utf-8") as file:
            file.write(RULES + self.rules)
        command = ["env", "WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1",
                   "WLR_RENDERER=pixman", f"XDG_RUNTIME_DIR={runtime}", f"HOME={runtime}",
                   "sway", "-c", config]
        if os.geteuid() == 0:
            # It refuses to run as root.
            os.chmod(self.folder, 0o711)
            os.chmod(config, 0o644)
            os.chown(runtime, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
                       "--pdeathsig", "keep", *command]
        process = self._service("sway", command)

        def socket(prefix, suffix=""):
            names = [name for name in os.listdir(runtime)
                     if name.startswith(prefix) and name.endswith(suffix)
                     and not name.endswith(".lock")]
            return os.path.join(runtime, names[0]) if names else None
        self._ready("sway", process, lambda: socket("wayland-") and socket("sway-ipc", ".sock"))
        self.env["WAYLAND_DISPLAY"] = socket("wayland-")
        self.env["SWAYSOCK"] = socket("sway-ipc", ".sock")
        self._ready("sway", process, lambda: self._outputs())
        # A keyboard that stays: without one, no window has the keyboard focus.
        keyboard = self._service("keyboard", ["wtype", "-s", str(24 * 3600 * 1000)])
        self._ready("wtype", keyboard, lambda: self._has_keyboard())

    def _sway(self, *message):
        result = subprocess.run(["swaymsg", "-r", "-t", *message], env=self.env,
                                capture_output=True, encoding="utf-8", check=False)
        return json.loads(result.stdout) if result.returncode == 0 else None

    def _outputs(self):
        return any(output.get("active") for output in self._sway("get_outputs") or [])

    def _has_keyboard(self):
        return any(seat.get("capabilities", 0) & 2 for seat in self._sway("get_seats") or [])

    def command(self, *argv):
        """Runs a command on this desktop; returns what it printed."""
        return subprocess.run(argv, env=self.env, check=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, encoding="utf-8").stdout

    # Keyboard

    def key(self, *keys):
        for key in keys:
            self.command("wtype", "-k", key)

    def type_text(self, text):
        self.command("wtype", text)

    # Windows

    def _leaves(self):
        """What the compositor knows of each window."""
        def walk(node):
            children = node["nodes"] + node["floating_nodes"]
            if node.get("pid") and not children:
                yield node
            for child in children:
                yield from walk(child)
        tree = self._sway("get_tree")
        return list(walk(tree)) if tree else []

    def windows(self, title):
        return [node["id"] for node in self._leaves() if node["name"] == title]

    def window(self, title):
        return wait_for(f"window {title!r}", lambda: self.windows(title))[0]

    def titles(self):
        return [(node["name"], "focused" if node["focused"] else "") for node in self._leaves()]

    def program_of(self, title):
        """The name by which the compositor knows the program of the window."""
        self.window(title)
        return next(node["app_id"] for node in self._leaves() if node["name"] == title)

    def wait_gone(self, title):
        wait_for(f"window {title!r} is gone", lambda: not self.windows(title))

    def close(self, title):
        """As by the button of its frame."""
        self.command("swaymsg", f'[con_id={self.window(title)}] kill')
        self.wait_gone(title)

    def focused_window(self):
        """The title of the window that has the keyboard, or an empty text."""
        return next((node["name"] for node in self._leaves() if node["focused"]), "")

    def wait_focus(self, title):
        wait_for(f"focus on {title!r}", lambda: self.focused_window() == title)

    def geometry(self, window):
        """(x, y, width, height) on the screen."""
        rect = next(node["rect"] for node in self._leaves() if node["id"] == window)
        return rect["x"], rect["y"], rect["width"], rect["height"]

    # Clipboard

    def clipboard(self, primary=False):
        """The text, or None when nobody offers one."""
        result = subprocess.run(
            ["wl-paste", "--no-newline", *(["--primary"] if primary else [])], env=self.env,
            capture_output=True, encoding="utf-8", check=False)
        return result.stdout if result.returncode == 0 else None

    def set_clipboard(self, text, primary=False):
        """Puts the text there, in the name of some other program."""
        process = subprocess.Popen(
            guarded(["wl-copy", "--foreground", *(["--primary"] if primary else [])]),
            env=self.env, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        self.services.append(process)
        process.stdin.write(text.encode())
        process.stdin.close()
        wait_for("the clipboard is set", lambda: self.clipboard(primary) == text)

    def wait_clipboard(self, text):
        try:
            wait_for("clipboard", lambda: self.clipboard() == text)
        except AssertionError as error:
            held = str(self.clipboard())[:200]
            raise AssertionError(f"the clipboard holds {held!r}, not {text[:200]!r}") from error

    # Pictures

    def pixels(self, x, y, width, height):
        result = subprocess.run(["grim", "-t", "ppm", "-g", f"{x},{y} {width}x{height}", "-"],
                                env=self.env, capture_output=True, check=True)
        return result.stdout

    def screenshot(self, path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        self.command("grim", path)
        return path
