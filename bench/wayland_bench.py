#!/usr/bin/env python3
"""Times the road from the hot key to the palette's first frame: on Wayland from the portal's signal to
the picture that is handed to the compositor, on X11 from the press to the pixels that the server has;
in turns, each program on a desktop of its own."""
import os
import re
import statistics
import sys
import time

HERE = os.path.dirname(os.path.realpath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "tests", "desktop"))

from desktop import Desktop  # noqa: E402
from library import Library, snippet  # noqa: E402
from program import PALETTE, Program  # noqa: E402
from shortcuts_portal import ShortcutsPortal  # noqa: E402
from waiting import wait_for  # noqa: E402
from wayland_desktop import WaylandDesktop  # noqa: E402

ROUNDS = 50
GOAL = 1.5  # the Wayland road over the X11 road
COLLECTIONS = {"Notes": [snippet(f"note {number}", f"the text of note {number}")
                         for number in range(100)]}
ALT_KEY, T_KEY = 64, 28
# A place of the palette, in the middle of a screen of 1280 by 800.
SPOT = (340, 300, 8, 8)
WIRE_CLOCK = 1 << 32  # microseconds; the log's clock begins anew
SENT = re.compile(r"^\[ *(\d+)\.(\d+)\]  -> (wl_surface@\d+)\.(attach\(wl_buffer@|commit\()")


def start(kind, desktop, home):
    Library(home["HOME"]).write(COLLECTIONS)
    return kind(desktop, home)


class X11Road:

    def __init__(self, desktop):
        self.desktop = desktop
        self.program = start(Program, desktop, desktop.new_home())

    def walk(self):
        screen = self.desktop.x
        ground = screen.pixels(*SPOT)
        pressed = time.monotonic()
        screen.press(ALT_KEY, T_KEY)
        while screen.pixels(*SPOT) == ground:
            if time.monotonic() > pressed + 20:
                raise AssertionError("the palette does not come")
        seen = time.monotonic()
        self.desktop.wait_focus(PALETTE)
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        wait_for("the ground", lambda: screen.pixels(*SPOT) == ground)
        return (seen - pressed) * 1000


class WaylandRoad:

    def __init__(self, desktop):
        self.desktop = desktop
        self.portal = ShortcutsPortal(desktop)
        self.program = start(Program, desktop, {**desktop.new_home(), "WAYLAND_DEBUG": "1"})
        wait_for("the shortcut is bound",
                 lambda: any("has bound the hot key" in line for line in self.program.lines))

    def walk(self):
        first_line, presses = len(self.program.lines), self.presses()
        self.portal.press()
        self.desktop.wait_focus(PALETTE)
        wait_for("the time of the press", lambda: len(self.presses()) > len(presses))
        pressed = int(self.presses()[-1].split()[1]) % WIRE_CLOCK
        taken = wait_for("the first frame", lambda: self.first_frame(first_line, pressed))
        self.desktop.key("Escape")
        self.desktop.wait_gone(PALETTE)
        return taken / 1000

    def presses(self):
        return [line for line in self.portal.lines if line.startswith("pressed ")]

    def first_frame(self, first_line, pressed):
        """How long after the press a surface with a picture was handed over; None before."""
        painted = set()
        for line in self.program.lines[first_line:]:
            sent = SENT.match(line)
            if not sent:
                continue
            milliseconds, microseconds, surface, what = sent.groups()
            taken = (int(milliseconds) * 1000 + int(microseconds) - pressed) % WIRE_CLOCK
            if taken > WIRE_CLOCK // 2:
                continue  # of the round before
            if what.startswith("attach"):
                painted.add(surface)
            elif surface in painted:
                return taken
        return None


def describe(name, times):
    ordered = sorted(times)
    print(f"{name}: median {statistics.median(ordered):.1f} ms, "
          f"p95 {ordered[int(len(ordered) * 0.95)]:.1f} ms, best {ordered[0]:.1f} ms")


def main():
    with Desktop() as x11, WaylandDesktop() as wayland:
        roads = {"press to first pixels, X11": X11Road(x11),
                 "portal signal to first frame, Wayland": WaylandRoad(wayland)}
        times = {name: [] for name in roads}
        for _ in range(ROUNDS):
            for name, road in roads.items():
                times[name].append(road.walk())
        for road in roads.values():
            road.program.finish()
        roads["portal signal to first frame, Wayland"].portal.finish()
    for name, taken in times.items():
        describe(name, taken)
    of_x11, of_wayland = (statistics.median(taken) for taken in times.values())
    ratio = of_wayland / of_x11
    print(f"the Wayland road takes {ratio:.2f} times the X11 road, goal at most {GOAL}: "
          f"{'met' if ratio <= GOAL else 'MISSED'}; N={ROUNDS}")


if __name__ == "__main__":
    main()
