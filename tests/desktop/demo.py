#!/usr/bin/env python3
"""Plays the program's main job on a private desktop, and tells what happens in words.

    demo.py PROGRAM KEY_RECORDER FOLDER

Another program is in front; Alt+T brings the palette; a query and Return copy a snippet, its
placeholders filled in. Screenshots go to FOLDER.
"""
import os
import sys

from desktop import Desktop
from library import Library, snippet
from program import HOTKEY, Program
from recorder import Recorder
from waiting import wait_for


QUERY, TITLE = "meet", "Meeting request"
COLLECTIONS = {
    "Email": [
        snippet(TITLE, "Hello {{name}},\n\ncould we meet on Thursday to talk about {{topic}}?\n\n"
                       "Best regards,\n{{sender}}",
                {"name": "Ada", "topic": "the new engine", "sender": "Grace"}),
        snippet("Out of office", "I am away until {{date}} and read no mail before then.")],
    "Shell": [
        snippet("Disk use by folder", "du -h --max-depth=1 . | sort -hr"),
        snippet("Who listens on a port", "ss -ltnp 'sport = :{{port}}'")],
    "Writing": [
        snippet("Notes of a meeting", "Present:\nDecided:\nTo do, by whom, until when:"),
        snippet("Shrug", "¯\\_(ツ)_/¯")]}


def play(desktop, folder):
    home = desktop.new_home()
    library = Library(home["HOME"])
    library.write(COLLECTIONS)
    recorder = Recorder(desktop)
    program = Program(desktop, home)
    try:
        recorder.focus()
        print(f"In front: another program. Its window has the keyboard: {desktop.focused_window()}")
        pictures = []

        def picture(name):
            pictures.append(desktop.screenshot(os.path.join(folder, name + ".png")))

        print(f"Pressing {HOTKEY}: the palette appears and takes the keyboard.")
        program.open_palette()
        program.wait_searched()
        picture("1-palette")
        print(f"Typing: {QUERY}")
        program.search(QUERY)
        picture("2-results")
        print("Pressing Return: the snippet is copied, and the palette goes.")
        desktop.key("Return")
        program.wait_new_toast()
        picture("3-copied")
        program.wait_palette_gone()
        desktop.wait_focus("Recorder")
        wait_for("the use is counted", lambda: library.snippets()[TITLE]["usageCount"] == 1)
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
