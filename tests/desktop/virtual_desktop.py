#!/usr/bin/env python3
"""A private X11 desktop: Xvfb, a window manager and a D-Bus session bus, with HOME and every
XDG directory in a fresh folder. Several can run at once.

    virtual_desktop.py [options] -- COMMAND [ARG...]

runs COMMAND in a new desktop and passes its exit status on; 124 when --timeout ran out, 125 when
the desktop did not come up, 127 when COMMAND was not found.
"""
import argparse
import os
import select
import shutil
import subprocess
import sys
import tempfile
import time

import x11
from processes import MissingCommand, end, guarded
from waiting import NotReached, wait_for

HERE = os.path.dirname(os.path.realpath(__file__))
COMMANDS = {
    "openbox": ["openbox", "--sm-disable"],
    "i3": ["i3", "-c", os.path.join(HERE, "i3.config")],
    "xfwm4": ["xfwm4", "--compositor=off"],
}
ACCESSIBILITY_BUS = ["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"]
# What the surrounding session must not tell the programs inside.
DROPPED = ("DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "XAUTHORITY", "SESSION_MANAGER",
           "DESKTOP_STARTUP_ID", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS", "XMODIFIERS",
           "QT_IM_MODULE", "GTK_IM_MODULE", "QT_QPA_PLATFORM", "QT_QPA_PLATFORMTHEME",
           "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR", "QT_AUTO_SCREEN_SCALE_FACTOR", "QT_FONT_DPI",
           "GTK_MODULES", "GTK_THEME")
# No service directories: nothing is started by accident. As many open questions as a desktop allows.
BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_replies_per_connection">50000</limit>
</busconfig>
"""


class DesktopFailure(Exception):
    """The desktop did not come up."""


class VirtualDesktop:
    """wm: a window manager, or "none". monitors: two or more (x, width) strips of the screen, or
    none for one monitor. accessible: with the bus of screen readers, as if one were in use. Use as
    a context manager; `env` is the environment for programs inside.
    """

    def __init__(self, wm="openbox", compositor=False, size=(1280, 800), monitors=(),
                 accessible=False):
        self.wm, self.compositor, self.size, self.monitors = wm, compositor, size, monitors
        self.accessible = accessible
        self.folder = tempfile.mkdtemp(prefix="vellumry-desktop.")
        self.services = []
        self.window_manager = None
        self.x = self.recording = None
        self.homes = 0
        self.env = {name: value for name, value in os.environ.items()
                    if name not in DROPPED and not name.startswith("XDG_")}
        self.env.setdefault("LANG", "C.UTF-8")
        self.env.update(self.new_home())

    def __enter__(self):
        try:
            self._start()
        except (NotReached, MissingCommand, OSError) as error:
            logs = self._logs()
            self.__exit__()
            raise DesktopFailure(f"{error}\n{logs}") from error
        return self

    def __exit__(self, *_):
        self.disconnect()
        for service in reversed(self.services):
            end(service, grace=2.0)
        shutil.rmtree(self.folder, ignore_errors=True)

    def disconnect(self):
        """Lets go of the display, whose end would be the end of this process too."""
        for connection in filter(None, (self.x, self.recording)):
            connection.close()
        self.x = self.recording = None

    def new_home(self):
        """Makes an empty home folder; returns the variables that name it."""
        self.homes += 1
        home = os.path.join(self.folder, f"home{self.homes}")
        folders = {"HOME": home, "XDG_CONFIG_HOME": f"{home}/.config",
                   "XDG_DATA_HOME": f"{home}/.local/share", "XDG_STATE_HOME": f"{home}/.local/state",
                   "XDG_CACHE_HOME": f"{home}/.cache", "XDG_RUNTIME_DIR": f"{home}/run"}
        for path in folders.values():
            os.makedirs(path, mode=0o700, exist_ok=True)
        return {**folders, "XDG_SESSION_TYPE": "x11", "XDG_CURRENT_DESKTOP": ""}

    def _start(self):
        self._start_x()
        self.x = x11.Connection(self.env["DISPLAY"])
        self.recording = x11.Recording(self.env["DISPLAY"])
        self._start_bus()
        if self.accessible:
            self._start_accessibility_bus()
        subprocess.run(["xsetroot", "-solid", "#5a7a9a"], env=self.env, check=True)
        for index, (left, width) in enumerate(self.monitors):
            height = self.size[1]
            subprocess.run(["xrandr", "--setmonitor", f"M{index}",
                            f"{width}/{width // 4}x{height}/{height // 4}+{left}+0",
                            "screen" if index == 0 else "none"], env=self.env, check=True)
        if self.wm != "none":
            self.window_manager = self._service("wm", COMMANDS.get(self.wm, [self.wm]))
            self._ready(self.wm, self.window_manager, self._windows_are_managed)
        if self.compositor:
            process = self._service("picom", ["picom", "--config", "/dev/null", "--backend", "xrender"])
            self._ready("picom", process, lambda: self.x.selection_has_owner("_NET_WM_CM_S0"))

    def _windows_are_managed(self):
        """The first property tells only that the manager has begun; windows shown then get lost.
        The others it sets once it looks after windows: most set the one, xfwm4 the other."""
        return self.x.root_has_property("_NET_SUPPORTING_WM_CHECK") and (
            self.x.root_has_property("_NET_CLIENT_LIST")
            or self.x.root_has_property("_NET_ACTIVE_WINDOW"))

    def _service(self, name, argv, **options):
        with open(os.path.join(self.folder, name + ".log"), "ab") as log:
            process = subprocess.Popen(guarded(argv), env=self.env, cwd=self.folder, stdout=log,
                                       stderr=log, stdin=subprocess.DEVNULL,
                                       start_new_session=True, **options)
        self.services.append(process)
        return process

    @staticmethod
    def _ready(name, process, condition):
        def probe():
            if process.poll() is not None:
                raise NotReached(f"{name} ended at its start with status {process.returncode}")
            return condition()
        wait_for(f"{name} is ready", probe)

    def _start_x(self):
        """Xvfb chooses a free display number itself and writes it when it is ready."""
        read_end, write_end = os.pipe()
        width, height = self.size
        self._service("Xvfb", ["Xvfb", "-displayfd", str(write_end), "-screen", "0",
                               f"{width}x{height}x24", "-dpi", "96", "-nolisten", "tcp", "-noreset"],
                      pass_fds=(write_end,))
        os.close(write_end)
        number = b""
        while not number.endswith(b"\n"):
            readable = select.select([read_end], [], [], 20)[0]
            piece = os.read(read_end, 64) if readable else b""
            if not piece:
                os.close(read_end)
                raise NotReached("Xvfb did not come up")
            number += piece
        os.close(read_end)
        self.env["DISPLAY"] = ":" + number.strip().decode()

    def _start_bus(self):
        socket = os.path.join(self.folder, "bus")
        config = os.path.join(self.folder, "bus.conf")
        with open(config, "w", encoding="utf-8") as file:
            file.write(BUS_CONFIG.format(socket=socket))
        process = self._service("bus", ["dbus-daemon", f"--config-file={config}", "--nofork",
                                        "--nopidfile", "--nosyslog"])
        self._ready("dbus-daemon", process, lambda: os.path.exists(socket))
        self.env["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={socket}"

    def _start_accessibility_bus(self):
        """The launcher tells the address of its bus at the root window."""
        process = self._service("accessibility", ACCESSIBILITY_BUS)
        self._ready("the accessibility bus", process,
                    lambda: self.x.root_has_property("AT_SPI_BUS"))
        self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"

    def _logs(self):
        text = []
        for name in sorted(os.listdir(self.folder)):
            if name.endswith(".log"):
                with open(os.path.join(self.folder, name), errors="replace", encoding="utf-8") as log:
                    text.append(f"--- {name}\n{log.read()[-1500:]}")
        return "\n".join(text)


def run(desktop, command, timeout):
    try:
        process = subprocess.Popen(guarded(command), env=desktop.env)
    except MissingCommand:
        print(f"virtual_desktop.py: {command[0]}: not found", file=sys.stderr)
        return 127
    deadline = time.monotonic() + timeout
    try:
        status = process.wait(deadline - time.monotonic())
        return status if status >= 0 else 128 - status
    except subprocess.TimeoutExpired:
        print(f"virtual_desktop.py: still running after {timeout:g} s", file=sys.stderr)
        return 124
    finally:
        end(process)


def main():
    parser = argparse.ArgumentParser(description="Runs a command in a private X11 desktop.")
    parser.add_argument("--wm", default="openbox", help="openbox, xfwm4, metacity, i3, icewm, none")
    parser.add_argument("--size", default="1280x800", help="of the screen")
    parser.add_argument("--compositor", action="store_true", help="run picom")
    parser.add_argument("--timeout", type=float, default=300.0, help="seconds for the command")
    parser.add_argument("command", nargs="+")
    options = parser.parse_args()
    width, height = options.size.split("x")
    try:
        with VirtualDesktop(options.wm, options.compositor, (int(width), int(height))) as desktop:
            return run(desktop, options.command, options.timeout)
    except DesktopFailure as failure:
        print(f"virtual_desktop.py: {failure}", file=sys.stderr)
        return 125


if __name__ == "__main__":
    sys.exit(main())
