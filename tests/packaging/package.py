"""The Debian package of this build, and what is in it."""
import os
import subprocess

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
ID = "org.vellumry.Vellumry"
LARGEST = 6_000_000  # bytes, of everything installed
ENTRY = f"usr/share/applications/{ID}.desktop"
SERVICE = f"usr/share/dbus-1/services/{ID}.service"
METAINFO = f"usr/share/metainfo/{ID}.metainfo.xml"
MANUAL = "usr/share/man/man1/vellumry.1.gz"
ICON = "usr/share/icons/hicolor/scalable/apps/vellumry.svg"
DOCUMENTS = ("changelog.gz", "copyright", "file-format.md", "guide.md", "images/calculator.png",
             "images/main-window.png", "images/palette.png", "images/settings.png",
             "schema/backup.schema.json", "schema/collection.schema.json",
             "schema/default-snippets.schema.json", "schema/metadata.schema.json", "security.md")
FILES = {"usr/bin/vellumry", ENTRY, SERVICE, METAINFO, MANUAL, ICON,
         *(f"usr/share/doc/vellumry/{name}" for name in DOCUMENTS)}


def output(*command, **options):
    """What the command prints on both channels; fails with it when the command does."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                            encoding="utf-8", **options)
    if result.returncode != 0:
        raise AssertionError(f"{' '.join(command)}: status {result.returncode}\n{result.stdout}")
    return result.stdout


def make_package(folder):
    """Makes the package in that folder; returns the path of the file."""
    output(os.environ["VELLUMRY_CPACK"], "-G", "DEB", "-B", folder, "--config",
           os.path.join(os.environ["VELLUMRY_BUILD"], "CPackConfig.cmake"))
    names = [name for name in os.listdir(folder) if name.endswith(".deb")]
    if len(names) != 1:
        raise AssertionError(f"one package expected, there are {names}")
    return os.path.join(folder, names[0])
