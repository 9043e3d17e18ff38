#!/usr/bin/python3
"""Prints what the accessibility bus of this desktop tells of a program, as JSON; or presses the
one thing of a role and a name that is on the screen, as a screen reader does for a person.

    accessible_tree.py PROGRAM [ROLE NAME]

The Python at /usr/bin has the bindings that Debian packages. Ends with status 3 where the program,
or the thing, is not there.
"""
import json
import sys

import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  the version has to be said first

ABSENT = 3
STATES = ("FOCUSABLE", "FOCUSED", "SHOWING", "ENABLED", "SELECTABLE", "SELECTED", "CHECKABLE",
          "CHECKED", "EDITABLE", "MULTI_LINE")
PRESSING = ("Press", "Toggle")


def program_called(name):
    """The youngest one of that name."""
    desktop = Atspi.get_desktop(0)
    for index in reversed(range(desktop.get_child_count())):
        child = desktop.get_child_at_index(index)
        if child and child.get_name() == name:
            return child
    return None


def states_of(node):
    states = node.get_state_set()
    return [state for state in STATES if states.contains(getattr(Atspi.StateType, state))]


def actions_of(node):
    action = node.get_action_iface()
    return [action.get_action_name(i) for i in range(action.get_n_actions())] if action else []


def children_of(node):
    children = (node.get_child_at_index(i) for i in range(node.get_child_count()))
    return [child for child in children if child]


def described(node):
    """The node and what is below it."""
    text = node.get_text_iface()
    return {"name": node.get_name(), "role": node.get_role_name(),
            "description": node.get_description(), "states": states_of(node),
            "actions": actions_of(node),
            "text": text.get_text(0, text.get_character_count()) if text else None,
            "children": [described(child) for child in children_of(node)]}


def press(node, role, name):
    """Answers whether such a thing was there to be pressed."""
    if node.get_role_name() == role and node.get_name() == name and "SHOWING" in states_of(node):
        names = actions_of(node)
        wanted = [index for index, action in enumerate(names) if action in PRESSING]
        return bool(wanted) and node.get_action_iface().do_action(wanted[0])
    return any(press(child, role, name) for child in children_of(node))


def main():
    program = program_called(sys.argv[1])
    if not program:
        return ABSENT
    if len(sys.argv) > 2:
        return 0 if press(program, *sys.argv[2:]) else ABSENT
    print(json.dumps(described(program)))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except GLib.Error as error:  # what was there a moment ago has gone
        print(error, file=sys.stderr)
        sys.exit(ABSENT)
