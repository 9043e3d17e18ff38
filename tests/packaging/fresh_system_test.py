"""The package on a fresh Debian 12: apt-get installs it with what it needs, the bus starts it, its
key puts a snippet on the clipboard, and apt-get removes it without trace.

The system stands in a folder of the build and is entered by chroot; its packages come from the
mirrors that the apt of this machine knows. The screen is one of this machine."""
import contextlib
import hashlib
import os
import shutil
import signal
import stat
import statistics
import subprocess
import sys
import tempfile
import time
import unittest

from desktop import Desktop
from library import Library, snippet
from package import FILES, ID, LARGEST, make_package, output
from processes import LoggedProcess
from program import PALETTE, READY, SHOWN
from waiting import wait_for

RELEASE = "bookworm"
PERSON, HOME, SESSION = "ada", "home/ada", "home/ada/session"
# Every desktop has it, and the package does not ask for it.
DESKTOP_PACKAGES = ("dbus-daemon",)
# What apt-get, dpkg and ldconfig write for themselves.
RECORDS = ("var/cache/apt", "var/cache/debconf", "var/cache/ldconfig", "var/lib/apt",
           "var/lib/dpkg", "var/log")
# The disk is not waited for; all else is as on a person's machine.
DPKG_OPTIONS = ("force-unsafe-io",)
DEVICES = ("null", "zero", "random", "urandom")
STARTS = 15
LARGEST_RATIO = 1.5  # of the start of the installed program to that of the build's
SKIPPED = 77


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def become_root():
    """Goes on as root of name spaces of its own, so that no mount outlives the test."""
    inside = "VELLUMRY_TEST_IS_ROOT"
    if inside in os.environ:
        return
    spaces = ["unshare", "--mount"]
    if os.geteuid() != 0:
        spaces += ["--user", "--map-root-user", "--map-auto"]
    possible = subprocess.run([*spaces, "true"], capture_output=True, encoding="utf-8", check=False)
    if possible.returncode != 0:
        skip(f"the user may not become root of a system of its own: {possible.stderr.strip()}")
    os.execvpe(spaces[0], [*spaces, sys.executable, *sys.argv], {**os.environ, inside: "1"})


def mirrors():
    """Lines of sources.list for the release, from what apt-get uses here."""
    targets = output("apt-get", "indextargets", "--format",
                     "$(CODENAME) $(REPO_URI) $(RELEASE) $(COMPONENT)", "Created-By: Packages",
                     "Origin: Debian").splitlines()
    found = sorted({tuple(target.split()[1:]) for target in targets if target.startswith(RELEASE)})
    if not found:
        skip(f"apt-get knows no mirror of Debian's {RELEASE}")
    uri, suite, _ = found[0]
    with tempfile.TemporaryDirectory() as folder:
        answer = subprocess.run(["/usr/lib/apt/apt-helper", "download-file",
                                 f"{uri}dists/{suite}/InRelease", os.path.join(folder, "release")],
                                capture_output=True, encoding="utf-8", check=False)
    if answer.returncode != 0:
        skip(f"the mirror does not answer: {answer.stderr.strip() or answer.stdout.strip()}")
    return [f"deb {' '.join(source)}" for source in found]


class FreshSystem:
    """A Debian of the packages that are required and apt-get, with one person, in a folder."""

    def __init__(self, folder, sources):
        self.root, self.borrowed = folder, []
        proxies = output("apt-config", "dump", "--no-empty", "Acquire::http", "Acquire::https")
        output("mmdebstrap", "--variant=apt", "--mode=root", "--skip=cleanup/apt/lists",
               f"--include={','.join(DESKTOP_PACKAGES)}",
               *(f"--aptopt={line}" for line in proxies.splitlines()),
               *(f"--dpkgopt={option}" for option in DPKG_OPTIONS), RELEASE, folder, *sources)
        for name in DEVICES:
            self.lend_device(self.path(f"dev/{name}"), f"/dev/{name}")
        self.run("useradd", "--create-home", PERSON)
        self.run("install", f"--owner={PERSON}", "--mode=700", "--directory", f"/{SESSION}")

    def lend_device(self, path, device):
        """Who is root of a name space alone may not make devices, but may borrow those outside."""
        if not os.path.exists(path):
            with open(path, "wb"):
                pass
            output("mount", "--bind", device, path)
            self.borrowed.append(path)

    def close(self):
        """Nothing that runs in the system outlives the test."""
        for name in filter(str.isdigit, os.listdir("/proc")):
            with contextlib.suppress(OSError):
                if os.readlink(f"/proc/{name}/root") == self.root:
                    os.kill(int(name), signal.SIGKILL)
        for path in self.borrowed:
            output("umount", path)

    def path(self, name):
        return os.path.join(self.root, name)

    def run(self, *command):
        return output(*self.inside(*command))

    def apt_get(self, *arguments):
        return self.run("apt-get", "--yes", "--quiet", "--no-install-recommends", *arguments)

    def inside(self, *command, **variables):
        proxies = {name: value for name, value in os.environ.items()
                   if name.lower().endswith("_proxy")}
        variables = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8",
                     "DEBIAN_FRONTEND": "noninteractive", **proxies, **variables}
        return ["chroot", self.root, "env", "--ignore-environment",
                *(f"{name}={value}" for name, value in variables.items()), *command]

    def as_person(self, *command, **variables):
        return self.inside("setpriv", f"--reuid={PERSON}", f"--regid={PERSON}", "--clear-groups",
                           "--pdeathsig=KILL", *command, HOME=f"/{HOME}", **variables)

    def entries(self):
        """What the folders hold: path -> form, owner and contents. Without what the tools of the
        system write for themselves, and without the person's home."""
        found = {}
        for place, folders, names in os.walk(self.root):
            folders[:] = [name for name in folders if os.path.relpath(
                os.path.join(place, name), self.root) not in (*RECORDS, HOME)]
            for name in (*folders, *names):
                path = os.path.join(place, name)
                found[os.path.relpath(path, self.root)] = self.description(path)
        return found

    @staticmethod
    def description(path):
        status = os.lstat(path)
        contents = None
        if stat.S_ISLNK(status.st_mode):
            contents = os.readlink(path)
        elif stat.S_ISREG(status.st_mode):
            with open(path, "rb") as file:
                contents = hashlib.file_digest(file, "sha256").hexdigest()
        return stat.filemode(status.st_mode), status.st_uid, status.st_gid, contents


def home_contents(folder):
    return {path: FreshSystem.description(path) for place, _, names in os.walk(folder)
            for path in (os.path.join(place, name) for name in names)}


def start_to_ready(command, env):
    """Milliseconds until the program says that its key is in force."""
    begun = time.monotonic()
    with subprocess.Popen(command, env=env, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL) as process:
        for line in process.stdout:
            if line.decode().rstrip("\n") == READY:
                break
        else:
            raise AssertionError("the program ended at its start")
        taken = (time.monotonic() - begun) * 1000
        process.terminate()
        process.stdout.read()
    return taken


class InstalledOnAFreshSystem(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        sources = mirrors()
        folder = cls.enterClassContext(tempfile.TemporaryDirectory(
            prefix="fresh-system.", dir=os.environ["VELLUMRY_BUILD"]))
        begun = time.monotonic()
        cls.package = make_package(os.path.join(folder, "made"))
        cls.system = FreshSystem(os.path.join(folder, "root"), sources)
        cls.addClassCleanup(cls.system.close)
        print(f"\nmade the system in {time.monotonic() - begun:.0f} s", file=sys.stderr)
        cls.desktop = cls.enterClassContext(Desktop())

    def setUp(self):
        self.before = self.system.entries()
        shutil.copy(self.package, self.system.path("tmp"))
        begun = time.monotonic()
        self.system.apt_get("install", f"/tmp/{os.path.basename(self.package)}")
        print(f"installed in {time.monotonic() - begun:.0f} s", file=sys.stderr)
        os.remove(self.system.path(f"tmp/{os.path.basename(self.package)}"))

    def environment(self):
        return {"DISPLAY": self.desktop.env["DISPLAY"], "XDG_RUNTIME_DIR": f"/{SESSION}",
                "DBUS_SESSION_BUS_ADDRESS": f"unix:path=/{SESSION}/bus"}

    def vellumry(self, *arguments):
        """The program, as the person calls it."""
        return output(*self.system.as_person("vellumry", *arguments, **self.environment()))

    def start_by_the_bus(self):
        """The bus of the session starts the program by the file that the package installed."""
        bus = LoggedProcess(self.system.as_person(
            "dbus-daemon", "--session", f"--address=unix:path=/{SESSION}/bus", "--nofork",
            "--nopidfile", "--nosyslog", **self.environment()), os.environ)
        self.addCleanup(bus.finish)
        wait_for("the bus is there", lambda: os.path.exists(self.system.path(f"{SESSION}/bus")))
        output(*self.system.as_person(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus.StartServiceByName", f"string:{ID}",
            "uint32:0", **self.environment()))
        wait_for("the key is in force", lambda: READY in bus.lines)
        return bus

    def is_running(self):
        return "true" in output(*self.system.as_person(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner", f"string:{ID}",
            **self.environment()))

    def write_library(self):
        library = Library(self.system.path(HOME))
        library.write({"Mail": [snippet("letter", "Dear {{name}}", {"name": "Grace"})]})
        self.system.run("chown", "--recursive", f"{PERSON}:", f"/{HOME}")
        return library

    def assert_size(self):
        size = sum(os.path.getsize(self.system.path(name)) for name in FILES)
        print(f"installed: {size / 1e6:.2f} MB without libraries", file=sys.stderr)
        self.assertLess(size, LARGEST)

    def use(self):
        """The main job, from the key to the clipboard."""
        library = self.write_library()
        bus = self.start_by_the_bus()
        self.desktop.set_clipboard("untouched")
        self.desktop.key("alt+t")
        self.desktop.window(PALETTE)
        self.desktop.wait_focus(PALETTE)
        self.desktop.key("Escape")
        self.desktop.wait_gone(PALETTE)
        self.vellumry("--toggle-palette")
        wait_for("the palette is there again", lambda: bus.count(SHOWN) == 2)
        self.desktop.window(PALETTE)
        self.desktop.wait_focus(PALETTE)
        self.desktop.type_text("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard("Dear Grace")
        wait_for("the use is counted", lambda: library.snippets()["letter"]["usageCount"] == 1)
        self.vellumry("--quit")
        wait_for("the program has ended", lambda: not self.is_running())

    def compare_starts(self):
        """The installed program is as quick to its key as the one in the build folder."""
        installed, built = [], []
        commands = (
            (installed, self.system.as_person("vellumry", "--hidden", **self.environment())),
            (built, [os.environ["VELLUMRY_PROGRAM"], "--hidden"]))
        for _, command in commands:  # reads it from the disk
            start_to_ready(command, self.desktop.env)
        for _ in range(STARTS):
            for times, command in commands:
                times.append(start_to_ready(command, self.desktop.env))
        ratio = statistics.median(here / there for here, there in zip(installed, built))
        print(f"start to key ready: installed {statistics.median(installed):.0f} ms, in the build "
              f"folder {statistics.median(built):.0f} ms, ratio {ratio:.2f}", file=sys.stderr)
        self.assertLess(ratio, LARGEST_RATIO)

    def assert_no_trace(self):
        after = self.system.entries()
        changed = {path: (self.before.get(path), after.get(path))
                   for path in self.before.keys() | after.keys()
                   if self.before.get(path) != after.get(path)}
        self.assertEqual(changed, {})
        with open(self.system.path("var/lib/dpkg/status"), encoding="utf-8") as status:
            self.assertNotRegex(status.read(), r"(?m)^Package: vellumry$")
        self.assertEqual([name for name in os.listdir(self.system.path("var/lib/dpkg/info"))
                          if name.startswith("vellumry")], [])

    def test_comes_works_and_goes(self):
        self.assertLessEqual(FILES, set(self.system.entries()))
        self.assert_size()
        self.use()
        self.compare_starts()
        home = home_contents(self.system.path(HOME))
        self.assertIn(self.system.path(f"{HOME}/Documents/Apps/Vellumry/Mail.json"), home)
        begun = time.monotonic()
        self.system.apt_get("purge", "--auto-remove", "vellumry")
        print(f"removed in {time.monotonic() - begun:.0f} s", file=sys.stderr)
        self.assert_no_trace()
        self.assertEqual(home_contents(self.system.path(HOME)), home)


if __name__ == "__main__":
    become_root()
    unittest.main(verbosity=2)
