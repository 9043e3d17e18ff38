#!/usr/bin/env python3
"""Plays the program's main job on a private desktop, and tells what happens in words.

    demo.py PROGRAM KEY_RECORDER FOLDER

Another program is in front; Alt+T brings the palette; a query and Return copy a snippet of the
library that the program makes at its first start. Screenshots go to FOLDER.
"""
import os
import re
import sys

from desktop import Desktop
from library import Library
from program import HOTKEY, Program
from recorder import Recorder
from waiting import wait_for


def choose(snippets):
    """The title to look for: of a snippet whose placeholders have values, if there is one."""
    typeable = [s for s in snippets.values() if re.fullmatch(r"[\x20-\x7e]+", s["title"])]
    typeable.sort(key=lambda s: not s["variables"])
    return typeable[0]["title"]


def play(desktop, folder):
    home = desktop.new_home()
    library = Library(home["HOME"])
    recorder = Recorder(desktop)
    program = Program(desktop, home)
    try:
        wait_for("the library of the first start", library.exists)
        title = choose(library.snippets())
        recorder.focus()
        print(f"In front: another program. Its window has the keyboard: {desktop.focused_window()}")
        pictures = []

        def picture(name):
            pictures.append(desktop.screenshot(os.path.join(folder, name + ".png")))

        print(f"Pressing {HOTKEY}: the palette appears and takes the keyboard.")
        program.open_palette()
        program.wait_searched()
        picture("1-palette")
        print(f"Typing: {title.lower()}")
        program.search(title.lower())
        picture("2-results")
        print("Pressing Return: the snippet is copied, and the palette goes.")
        desktop.key("Return")
        program.wait_new_toast()
        picture("3-copied")
        program.wait_palette_gone()
        desktop.wait_focus("Recorder")
        wait_for("the use is counted", lambda: library.snippets()[title]["usageCount"] == 1)
        print(f"The keyboard is back with: {desktop.focused_window()}")
        print(f"Keys that went astray: {len(recorder.keys())}")
        print(f"Clipboard:\n{desktop.clipboard()}")
        print("Screenshots:", *pictures, sep="\n  ")
    except AssertionError:
        print("The program's log:", *program.lines, sep="\n  ", file=sys.stderr)
        raise
    finally:
        program.finish()
        recorder.finish()


def main():
    if len(sys.argv) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    os.environ["VELLUMRY_PROGRAM"], os.environ["VELLUMRY_KEY_RECORDER"] = sys.argv[1:3]
    with Desktop(compositor=True) as desktop:
        play(desktop, os.path.abspath(sys.argv[3]))
    return 0


if __name__ == "__main__":
    sys.exit(main())
