"""The program as a screen reader meets it: its windows walked on a real accessibility bus."""
import json
import os
import subprocess

from case import DesktopCase, main
from library import snippet
from processes import LoggedProcess
from program import MAIN_WINDOW, SETTINGS_WINDOW, Program
from waiting import wait_for

HERE = os.path.dirname(os.path.realpath(__file__))
WALKER = ["/usr/bin/python3", os.path.join(HERE, "accessible_tree.py")]
PROGRAM = "vellumry"
# What a person acts upon, the state that it owes them, and what does the same as a click.
CONTROLS = {"push button": ("ENABLED", {"Press"}), "radio button": ("ENABLED", {"Toggle"}),
            "check box": ("ENABLED", {"Toggle"}), "text": ("EDITABLE", {"SetFocus"}),
            "list item": ("SELECTABLE", {"Press", "Toggle"}),
            "menu item": ("ENABLED", {"ShowMenu", "Press"})}
# What has the focus on behalf of what is in it.
CONTAINERS = {"list", "menu bar", "popup menu", "dialog"}


class Node:
    """A thing on the bus."""

    def __init__(self, record, parent=None):
        self.name, self.role, self.text = record["name"], record["role"], record["text"]
        self.states, self.actions = set(record["states"]), record["actions"]
        self.parent = parent
        self.children = [Node(child, self) for child in record["children"]]

    def showing(self):
        """What is on the screen below this node."""
        for child in self.children:
            if "SHOWING" in child.states:
                yield child
                yield from child.showing()

    def find(self, role, name):
        """Of those on the screen the first one."""
        return next((each for each in self.showing() if (each.role, each.name) == (role, name)), None)

    def takes_input(self):
        if self.role == "list item":  # a heading among them is none to be chosen
            return "SELECTABLE" in self.states
        return "FOCUSABLE" in self.states or any(each != "SetFocus" for each in self.actions)

    def fault(self):
        """What a person who cannot see it would miss; nothing if it is as it should be."""
        if not self.takes_input() and self.role not in CONTAINERS:
            return None
        if not self.name:
            return "no name"
        if self.role in CONTAINERS:
            return None
        if self.role not in CONTROLS:
            return "no role of a control"
        state, actions = CONTROLS[self.role]
        if state not in self.states:
            return f"it is not {state}"
        return None if actions & set(self.actions) else "nothing does what a click does"

    def path(self):
        return (f"{self.parent.path()} / " if self.parent else "") + f"{self.role} {self.name!r}"


class GlobalMenu(LoggedProcess):
    """A desktop that shows the menus of windows in a place of its own."""
    stdin = subprocess.PIPE  # it ends with us

    def __init__(self, desktop):
        super().__init__(["/usr/bin/python3", os.path.join(HERE, "global_menu.py")], desktop.env)
        wait_for("the global menu", lambda: "ready" in self.lines or not self.running())

    def finish(self):
        if not self.process.stdin.closed:
            self.process.stdin.close()
        return super().finish()


class AccessibilityCase(DesktopCase):
    options = {"accessible": True}
    maxDiff = None
    collections = {"Mail": [snippet("letter.md", "Dear {{name}},\nkind regards\n{{sender}}",
                                    {"name": "Ada"}, keywords=["greeting"], age_days=2)],
                   "Notes": [snippet("alpha note", "first of the notes", age_days=3),
                             snippet("beta note", "second of the notes", age_days=4)]}

    def start_program(self):
        program = self.start(Program, self.desktop, self.home, (), ())
        program.wait_main_window()
        return program

    def walk(self, *arguments):
        return subprocess.run([*WALKER, PROGRAM, *arguments], env=self.desktop.env, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")

    def tree(self):
        """The program as the bus tells of it now; none while it is changing."""
        walked = self.walk()
        return Node(json.loads(walked.stdout)) if walked.returncode == 0 else None

    def wait_on_screen(self, role, name, where=lambda node: True):
        """Waits for the thing, in that state; returns the tree that it is in."""
        def probe():
            tree = self.tree()
            node = tree and tree.find(role, name)
            return tree if node and where(node) else None
        return wait_for(f"{role} {name!r} is on the screen", probe)

    def wait_gone(self, role, name):
        def probe():
            tree = self.tree()
            return tree and not tree.find(role, name)
        wait_for(f"{role} {name!r} has gone", probe)

    def press(self, role, name):
        wait_for(f"{role} {name!r} is pressed", lambda: self.walk(role, name).returncode == 0)

    def assert_speaks(self, tree, controls):
        """Every control on the screen has a name, a role and what belongs to it; these are some."""
        shown = list(tree.showing())
        faults = [f"{node.fault()}: {node.path()}, {sorted(node.states)}, {node.actions}"
                  for node in shown if node.fault()]
        self.assertEqual(faults, [])
        found = {(node.role, node.name) for node in shown if node.takes_input()}
        self.assertEqual(set(controls) - found, set(),
                         "\n" + "\n".join(sorted(map(str, found))))


class Accessibility(AccessibilityCase):

    def test_main_window(self):
        """The three columns, with all that the editor can show at once."""
        self.desktop.activate(MAIN_WINDOW)
        self.press("list item", "Mail, 1 snippet")
        self.wait_on_screen("list item", "Mail, 1 snippet",
                                   lambda node: "SELECTED" in node.states)
        self.desktop.key("Right")
        self.wait_on_screen("text", "Snippet Title")
        self.desktop.key("Right")
        self.desktop.type_text("x")
        self.desktop.key("ctrl+f")
        tree = self.wait_on_screen("push button", "Next Match")
        buttons = ["Vellumry", "Menu", "New Collection", "Shortcuts", "Settings", "New Snippet",
                   "Revert", "Save", "Mail", "Copy", "More Actions", "Save as File",
                   "Full Screen Editing", "Previous Match", "Next Match", "Close Search", "Clear",
                   "Clear value for variable name", "Remove greeting"]
        texts = ["Filter list", "Snippet Title", "Add a subtitle (optional)", "Snippet content",
                 "Search in content...", "name", "sender", "Related terms"]
        rows = ["All Snippets, 3 snippets", "Unsaved, 1 snippet", "Mail, 1 snippet",
                "Notes, 2 snippets", "letter.md, Mail, 2 days, unsaved"]
        self.assert_speaks(tree, [*(("push button", name) for name in buttons),
                                  *(("text", name) for name in texts),
                                  *(("list item", name) for name in rows)])
        self.assertEqual(tree.find("text", "name").text, "Ada")

    def test_what_is_pressed_happens(self):
        """Who cannot use the pointer presses rows and buttons through the bus."""
        self.press("list item", "Notes, 2 snippets")
        self.wait_on_screen("list item", "Notes, 2 snippets",
                            lambda node: "SELECTED" in node.states)
        self.press("list item", "alpha note, Notes, 3 days")
        self.wait_on_screen("list item", "alpha note, Notes, 3 days",
                            lambda node: "SELECTED" in node.states)
        self.press("push button", "Copy")
        self.desktop.wait_clipboard("first of the notes")

    def test_palette(self):
        """The field and the rows, of which one is selected."""
        self.program.open_palette()
        self.program.search("note")
        rows = [("list item", f"{title} note, Notes") for title in ("alpha", "beta")]
        tree = self.wait_on_screen(*rows[0], lambda node: "SELECTED" in node.states)
        self.assert_speaks(tree, rows)
        self.desktop.key("Down")
        self.wait_on_screen(*rows[1], lambda node: "SELECTED" in node.states)

    def test_settings(self):
        """From the sidebar they come as a sheet, from the menu as a window."""
        controls = [("radio button", "Light"), ("radio button", "Dark"), ("radio button", "System"),
                    ("check box", "Launch at Login"), ("push button", "Quick Search, Alt+T"),
                    ("push button", "Reveal in Finder"), ("push button", "Change..."),
                    ("push button", "Reset to Defaults"), ("push button", "Done")]
        self.press("push button", "Settings")
        self.assert_speaks(self.wait_on_screen("push button", "Done"), controls)
        self.assertEqual(self.desktop.windows(SETTINGS_WINDOW), [])
        self.press("radio button", "Dark")
        self.press("push button", "Done")
        self.wait_gone("push button", "Done")
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+comma")
        self.desktop.wait_focus(SETTINGS_WINDOW)
        tree = self.wait_on_screen("push button", "Done")
        self.assert_speaks(tree, controls)
        self.assertIn("CHECKED", tree.find("radio button", "Dark").states)


class Menus(AccessibilityCase):

    def windows(self):
        return set(self.desktop.windows_of(PROGRAM))

    def open_by(self, opening):
        """Waits for what that opens; returns the windows that there were before."""
        before = self.windows()
        opening()
        wait_for("the menu", lambda: self.windows() - before)
        return before

    def leave_to(self, windows):
        self.desktop.key("Escape")
        wait_for("the menu is gone", lambda: self.windows() == windows)

    def test_behind_the_button(self):
        """The button, F10 and Alt open the list; after Escape the keys go where they went."""
        tree = self.wait_on_screen("push button", "Menu")
        self.assertIsNone(tree.find("menu bar", "Menus"))
        self.leave_to(self.open_by(lambda: self.press("push button", "Menu")))
        self.desktop.activate(MAIN_WINDOW)
        self.press("list item", "Mail, 1 snippet")
        self.desktop.key("Tab")
        self.wait_on_screen("text", "Filter list", lambda node: "FOCUSED" in node.states)
        for key in ("F10", "Alt_L"):
            with self.told(key):
                self.leave_to(self.open_by(lambda name=key: self.desktop.key(name)))
        self.desktop.type_text("note")
        self.wait_on_screen("text", "Filter list", lambda node: node.text == "note")

    def test_without_the_sidebar(self):
        """The bar shows while the button does not, and F10 opens it."""
        self.desktop.activate(MAIN_WINDOW)
        self.open_by(lambda: self.desktop.key("F10"))
        self.desktop.key("Down", "Down", "Down", "Down", "Down", "Return")
        tree = self.wait_on_screen("menu bar", "Menus")
        self.assert_speaks(tree, [("menu item", name)
                                  for name in ("Vellumry", "File", "View", "Snippets")])
        self.assertIsNone(tree.find("push button", "Menu"))
        self.open_by(lambda: self.desktop.key("F10"))
        self.wait_on_screen("menu item", "Quit Vellumry")
        self.desktop.key("Escape", "Escape")
        self.wait_gone("menu item", "Quit Vellumry")
        self.desktop.key("ctrl+super+s")
        self.wait_on_screen("push button", "Menu")
        self.wait_gone("menu bar", "Menus")

    def test_in_a_place_of_the_desktops_own(self):
        """Where the desktop shows the menus there is no button, also if it begins to later."""
        self.wait_on_screen("push button", "Menu")
        desktop = self.start(GlobalMenu, self.desktop)
        self.wait_gone("push button", "Menu")
        wait_for("the menus", lambda: "menus Vellumry File View Snippets" in desktop.lines)
        self.assertIsNone(self.wait_on_screen("push button", "Settings").find("menu bar", "Menus"))
        self.program.finish()
        self.program = self.start_program()
        wait_for("the menus", lambda: desktop.count("menus Vellumry File View Snippets") == 2)
        self.wait_gone("push button", "Menu")
        desktop.finish()
        self.wait_on_screen("push button", "Menu")


class Welcome(AccessibilityCase):
    collections = {}

    def test_menus(self):
        """There is no button where there is no sidebar: the bar shows."""
        tree = self.wait_on_screen("push button", "Create First Snippet")
        self.assert_speaks(tree, [("menu item", name)
                                  for name in ("Vellumry", "File", "View", "Snippets")])
        self.press("push button", "Create First Snippet")
        self.wait_on_screen("push button", "Menu")
        self.wait_gone("menu bar", "Menus")


if __name__ == "__main__":
    main()
