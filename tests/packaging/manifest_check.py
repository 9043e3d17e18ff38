"""Checks the form of the Flatpak manifest, and that it asks for no more than a few rights. Run by
scripts/lint; nothing is built."""
import os
import sys

import yaml

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
ID = "org.vellumry.Vellumry"
PATH = os.path.join(ROOT, "packaging/flatpak", ID + ".yml")
RIGHTS = {"--socket=wayland", "--socket=fallback-x11", "--share=ipc",
          "--filesystem=xdg-documents/Apps/Vellumry:create",
          "--talk-name=org.kde.StatusNotifierWatcher", "--talk-name=org.freedesktop.FileManager1"}
KEYS = {"app-id", "runtime", "runtime-version", "sdk", "command", "rename-icon", "finish-args",
        "modules"}
SOURCES = {"git": {"url", "tag"}, "dir": {"path"}}


def complaints(manifest):
    if set(manifest) != KEYS:
        yield f"the keys differ: {set(manifest) ^ KEYS}"
        return
    if manifest["app-id"] != ID or manifest["command"] != "vellumry":
        yield "it is the manifest of another program"
    if not isinstance(manifest["runtime-version"], str):
        yield "the runtime's version is no text"
    for right in set(manifest["finish-args"]) - RIGHTS:
        yield f"{right} is a right that the program has not asked for so far"
    for module in manifest["modules"]:
        for key in ("name", "buildsystem", "sources"):
            if not module.get(key):
                yield f"a module lacks {key}: {module}"
        for source in module.get("sources", ()):
            if not SOURCES.get(source.get("type"), {"a known type"}) <= set(source):
                yield f"a source is not complete: {source}"
            folder = os.path.join(os.path.dirname(PATH), source.get("path", "."))
            if not os.path.isdir(folder):
                yield f"there is no folder {folder}"
    if [module.get("name") for module in manifest["modules"]][-1:] != ["vellumry"]:
        yield "the last module is not the program"


def main():
    with open(PATH, encoding="utf-8") as file:
        found = list(complaints(yaml.safe_load(file)))
    for complaint in found:
        print(f"{os.path.relpath(PATH, ROOT)}: {complaint}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
