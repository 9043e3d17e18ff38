#!/usr/bin/python3
"""A desktop that shows the menus of windows in a place of its own: prints a line for each window
that hands its menus over, with the titles in its bar. Ends with its input.

The Python at /usr/bin has the bindings that Debian packages.
"""
import sys

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402  the version has to be said first

NAME = "com.canonical.AppMenu.Registrar"
INTERFACE = """<node><interface name='com.canonical.AppMenu.Registrar'>
<method name='RegisterWindow'><arg type='u' direction='in'/><arg type='o' direction='in'/></method>
<method name='UnregisterWindow'><arg type='u' direction='in'/></method>
</interface></node>"""


def tell(line):
    print(line, flush=True)


def answered(connection, result):
    _, (_, _, children) = connection.call_finish(result).unpack()
    tell("menus " + " ".join(properties.get("label", "") for _, properties, _ in children))


def called(connection, sender, _path, _interface, method, arguments, invocation):
    invocation.return_value(None)
    if method == "RegisterWindow":
        connection.call(sender, arguments.unpack()[1], "com.canonical.dbusmenu", "GetLayout",
                        GLib.Variant("(iias)", (0, 1, [])), None, Gio.DBusCallFlags.NONE, -1, None,
                        answered)


def main():
    loop = GLib.MainLoop()
    info = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
    Gio.bus_own_name(
        Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE,
        lambda bus, _: bus.register_object("/com/canonical/AppMenu/Registrar", info, called),
        lambda *_: tell("ready"), lambda *_: tell("lost"))
    GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP,
                      lambda *_: loop.quit())
    loop.run()


if __name__ == "__main__":
    main()
