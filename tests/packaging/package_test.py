"""Makes the Debian package of this build, installs it into a folder of its own and removes it."""
import gzip
import os
import re
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

from package import (ENTRY, FILES, ICON, ID, LARGEST, MANUAL, METAINFO, ROOT, SERVICE, make_package,
                     output)
from processes import LoggedProcess
from waiting import wait_for

OBJECT = "/org/vellumry/Vellumry"
BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={folder}/bus</listen>
  <servicedir>{folder}/services</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def files_below(folder):
    return {os.path.relpath(os.path.join(place, name), folder)
            for place, _, names in os.walk(folder) for name in names}


def entries_below(folder):
    return {os.path.relpath(os.path.join(place, name), folder)
            for place, folders, names in os.walk(folder) for name in (*folders, *names)}


def groups_of(path):
    """The groups of a desktop entry or a service file, as a table of tables."""
    groups, keys = {}, {}
    with open(path, encoding="utf-8") as file:
        for line in file.read().splitlines():
            if line.startswith("["):
                keys = groups.setdefault(line.strip("[]"), {})
            elif "=" in line:
                key, value = line.split("=", 1)
                keys[key] = value
    return groups


class DpkgRoot:
    """A system with no package at all, in a folder. It has no libraries, so the dependencies are
    not asked for; the package has no scripts that would need a system around them."""

    def __init__(self, folder):
        self.folder = folder
        self.database = os.path.join(folder, "var/lib/dpkg")
        for name in ("info", "updates", "triggers", "alternatives"):
            os.makedirs(os.path.join(self.database, name))
        for name in ("status", "available"):
            with open(os.path.join(self.database, name), "w", encoding="utf-8"):
                pass
        self.env = {**os.environ, "PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"}

    def run(self, *arguments):
        return output("dpkg", f"--root={self.folder}", "--force-not-root", "--force-depends",
                      f"--log={os.devnull}", *arguments, env=self.env)

    def outside_of_the_database(self):
        return {entry for entry in entries_below(self.folder)
                if entry not in ("var", "var/lib") and not entry.startswith("var/lib/dpkg")}


class PackageCase(unittest.TestCase):
    """What all tests here look at, made by setUpModule."""
    folder = ""  # for whatever a test needs
    package = ""  # the file
    root = ""  # the folder where it was unpacked

    def path(self, name):
        return os.path.join(self.root, name)

    def field(self, name):
        return output("dpkg-deb", "-f", self.package, name).strip()


def setUpModule():
    folder = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="vellumry-package."))
    PackageCase.folder, PackageCase.package = folder, make_package(os.path.join(folder, "made"))
    PackageCase.root = os.path.join(folder, "root")
    output("dpkg-deb", "-x", PackageCase.package, PackageCase.root)


class Package(PackageCase):

    def test_contents(self):
        """Exactly these files, readable by all and written by nobody but root."""
        self.assertEqual(files_below(self.root), FILES)
        for line in output("dpkg-deb", "-c", self.package).splitlines():
            mode, owner, *_, name = line.split()
            expected = "rwxr-xr-x" if mode[0] == "d" or name.endswith("/vellumry") else "rw-r--r--"
            self.assertEqual((mode[1:], owner), (expected, "root/root"), line)

    def test_size(self):
        """The program is small: a few megabytes beside Qt."""
        size = sum(os.path.getsize(self.path(name)) for name in FILES)
        binary = os.path.getsize(self.path("usr/bin/vellumry"))
        print(f"\ninstalled: {size / 1e6:.2f} MB, of which the binary {binary / 1e6:.2f} MB; "
              f"package: {os.path.getsize(self.package) / 1e6:.2f} MB", file=sys.stderr)
        self.assertLess(size, LARGEST)
        self.assertIn(", stripped", output("file", self.path("usr/bin/vellumry")))

    def test_dependencies(self):
        """The libraries are needed; whatever else is installed to run the program is recommended."""
        needed = {name.split()[0] for name in self.field("Depends").split(",")}
        recommended = set(self.field("Recommends").split(", "))
        linked = set(re.findall(r"NEEDED +(\S+)", output("objdump", "-p",
                                                         self.path("usr/bin/vellumry"))))
        self.assertIn("libQt6Svg.so.6", linked)
        self.assertLessEqual({"libqt6widgets6", "libqt6dbus6", "libqt6svg6", "libxcb1", "libc6"},
                             needed)
        self.assertTrue(any(name.startswith("libsimdjson") for name in needed), needed)
        run = output(os.path.join(ROOT, "scripts/install-packages"), "--print", "run").split()
        self.assertLessEqual(set(run), needed | recommended)
        self.assertNotIn("-dev", self.field("Depends") + self.field("Recommends"))
        self.assertEqual(self.field("Maintainer"), "Vellumry")

    def test_comes_and_goes(self):
        """After its removal nothing is left but the record of the package manager; purged, not
        even that."""
        system = DpkgRoot(os.path.join(self.folder, "system"))
        system.run("-i", self.package)
        self.assertEqual(files_below(system.folder) & FILES, FILES)
        self.assertIn("install ok installed", system.run("-s", "vellumry"))
        self.assertIn("snippets at the press of a key",
                      output(os.path.join(system.folder, "usr/bin/vellumry"), "--help") +
                      system.run("-s", "vellumry"))
        system.run("-r", "vellumry")
        self.assertEqual(system.outside_of_the_database(), set())
        system.run("-P", "vellumry")
        with open(os.path.join(system.database, "status"), encoding="utf-8") as status:
            self.assertEqual(status.read().strip(), "")
        leftovers = [name for name in os.listdir(os.path.join(system.database, "info"))
                     if name.startswith("vellumry")]
        self.assertEqual(leftovers, [])

    def test_desktop_entry(self):
        """The entry is valid, and what it names is in the package."""
        self.assertEqual(output("desktop-file-validate", self.path(ENTRY)), "")
        groups = groups_of(self.path(ENTRY))
        main = groups["Desktop Entry"]
        self.assertEqual(main["Icon"], os.path.splitext(os.path.basename(ICON))[0])
        self.assertEqual(main["DBusActivatable"], "true")
        # Without it launchers pass no token on, and under Wayland the windows get no keyboard.
        self.assertEqual(main["StartupNotify"], "true")
        names = {action: groups[f"Desktop Action {action}"]["Name"]
                 for action in main["Actions"].strip(";").split(";")}
        self.assertEqual(names, {"new-snippet": "New Snippet", "toggle-palette": "Quick Search"})
        help_text = output(self.path("usr/bin/vellumry"), "--help")
        for action in names:
            switch = f"--{action}"
            self.assertEqual(groups[f"Desktop Action {action}"]["Exec"], f"vellumry {switch}")
            self.assertIn(switch, help_text)

    def test_metainfo(self):
        """The validator has nothing to say, and licence and version are the package's."""
        said = output("appstreamcli", "validate", "--no-net", "--no-color", self.path(METAINFO))
        self.assertNotRegex(said, r"(?m)^[EWI]: ")
        component = ElementTree.parse(self.path(METAINFO)).getroot()
        self.assertEqual(component.findtext("id"), ID)
        self.assertEqual(component.findtext("launchable"), os.path.basename(ENTRY))
        self.assertEqual(component.find("releases/release").get("version"), self.field("Version"))
        with open(self.path("usr/share/doc/vellumry/copyright"), encoding="utf-8") as file:
            self.assertIn(f"License: {component.findtext('project_license')}\n", file.read())

    def test_licence_has_one_home(self):
        """The licence is named in one file of the sources, so that choosing one is one change."""
        found = output("grep", "-rlI", "--exclude-dir=build", "--exclude-dir=.git",
                       "LicenseRef-" + "proprietary", ROOT).split()
        self.assertEqual([os.path.relpath(path, ROOT) for path in found],
                         ["packaging/CMakeLists.txt"])

    def test_manual(self):
        """The page is clean, and it has the switches of --help and no others."""
        with gzip.open(self.path(MANUAL), "rt", encoding="utf-8") as file:
            text = file.read()
        page = os.path.join(self.folder, "vellumry.1")
        with open(page, "w", encoding="utf-8") as file:
            file.write(text)
        self.assertEqual(output("mandoc", "-Tlint", "-Wstyle", page), "")
        switches = re.findall(r"^  (--[a-z-]+)", output(self.path("usr/bin/vellumry"), "--help"),
                              re.MULTILINE)
        self.assertGreater(len(switches), 3)
        self.assertEqual(re.findall(r"^\.It Fl (-[a-z-]+)$", text, re.MULTILINE),
                         [switch[1:] for switch in switches])

    def test_documents(self):
        """What the installed pages link to is installed beside them."""
        folder = self.path("usr/share/doc/vellumry")
        for page in filter(lambda name: name.endswith(".md"), os.listdir(folder)):
            with open(os.path.join(folder, page), encoding="utf-8") as file:
                links = re.findall(r"\]\(([^)#:]+)", file.read())
            for link in links:
                self.assertTrue(os.path.exists(os.path.join(folder, link)), f"{page}: {link}")

    def test_icon(self):
        picture = ElementTree.parse(self.path(ICON)).getroot()
        self.assertEqual(picture.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertEqual(picture.get("viewBox"), "0 0 256 256")


class Activation(PackageCase):
    """The bus starts the installed program when its name is called, as a desktop does for an entry
    with DBusActivatable. Without a screen: what is shown is the business of other tests."""

    def setUp(self):
        home = self.home = self.enterContext(tempfile.TemporaryDirectory(dir=self.folder))
        services, address = os.path.join(home, "services"), os.path.join(home, "bus")
        self.write_service(services)
        with open(os.path.join(home, "bus.conf"), "w", encoding="utf-8") as file:
            file.write(BUS_CONFIG.format(folder=home))
        kept = {key: value for key, value in os.environ.items()
                if key != "DISPLAY" and not key.startswith(("DBUS_", "QT_", "WAYLAND_", "XDG_"))}
        self.env = {**kept, "HOME": home, "QT_QPA_PLATFORM": "offscreen",
                    "DBUS_SESSION_BUS_ADDRESS": f"unix:path={address}"}
        # What the program prints comes through the bus, which is its parent.
        self.bus = LoggedProcess(["dbus-daemon", f"--config-file={home}/bus.conf", "--nofork",
                                  "--nopidfile", "--nosyslog"], self.env)
        self.addCleanup(self.bus.finish)
        wait_for("the bus is there", lambda: os.path.exists(address))

    def write_service(self, folder):
        """The installed service file, its program in the folder where the package was unpacked."""
        self.assertEqual(groups_of(self.path(SERVICE)), {"D-BUS Service": {
            "Name": ID, "Exec": "/usr/bin/vellumry --hidden"}})
        with open(self.path(SERVICE), encoding="utf-8") as file:
            text = file.read().replace("/usr/bin/vellumry", self.path("usr/bin/vellumry"))
        os.mkdir(folder)
        with open(os.path.join(folder, os.path.basename(SERVICE)), "w", encoding="utf-8") as file:
            file.write(text)

    def call(self, destination, path, method, *arguments):
        return output("gdbus", "call", "--session", "--timeout", "20", "--dest", destination,
                      "--object-path", path, "--method", method, *arguments, env=self.env)

    def act(self, action):
        self.call(ID, OBJECT, "org.freedesktop.Application.ActivateAction", action, "[]", "{}")

    def is_running(self):
        return "true" in self.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus.NameHasOwner", ID)

    def wait_for_line(self, text):
        wait_for(text, lambda: any(text in line for line in self.bus.lines))

    def quit(self):
        self.act("quit")
        wait_for("the program has ended", lambda: not self.is_running())

    def test_activation(self):
        """The program comes up and is asked for its main window."""
        self.assertFalse(self.is_running())
        self.call(ID, OBJECT, "org.freedesktop.Application.Activate", "{}")
        self.wait_for_line("applicationShouldHandleReopen called")
        self.quit()

    def test_action(self):
        """An action of the entry starts the program for that alone."""
        self.act("toggle-palette")
        self.wait_for_line("AppDelegate: showing palette")
        self.assertFalse(any("applicationShouldHandleReopen" in line for line in self.bus.lines))
        self.quit()


if __name__ == "__main__":
    unittest.main(verbosity=2)
