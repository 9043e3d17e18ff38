"""The program is killed while it saves, again and again. Each time the folder holds whole files,
and the next start loads it."""
import json
import os
import random
import re
import time

from case import LETTER, NOTES, DesktopCase, main
from library import METADATA, snippet
from program import Program
from remote_commands import RemoteCommands
from waiting import TIMEOUT, wait_for

KILLS = 500
# A library grows with each of its saves, so there are several.
KILLS_OF_LIBRARY = 100
SEED = 20261122
# Enough to keep the program saving until the last moment at which it can be killed.
SAVES = 20
# From the first sign of a save to the kill, in seconds where the disk is quick, else in written files,
# of which a save has two.
LATEST = 0.06
LATEST_IN_FILES = 4
# A machine that is held up for a while saves late.
PATIENCE = 3 * TIMEOUT
# What must have happened in a run, or the kills did not meet the saves.
HALF_DONE, COMPLETED = 50, 100

LOADED = "CollectionFileStorageService: 加载成功 - "
SAVED = "CollectionFileStorageService: 保存成功 - "
SKIPPED = "CollectionFileStorageService: 跳过无效文件 - "
LEFTOVER = re.compile(r"\.vellumry-[0-9a-z]{13}")

# New snippets go to the collection of this name, whose file takes its time to be written.
TARGET = "Default"
TARGET_FILE = TARGET + ".json"
NEW = {"title": "New Snippet", "subtitle": "", "content": "", "keywords": [], "usageCount": 0,
       "variables": {}, "collection": TARGET}
STAMPS = ("lastModified", "deviceId")


def without(record, names):
    return {name: value for name, value in record.items() if name not in names}


class KilledSaves(DesktopCase):
    collections = {TARGET: [snippet(f"old {number}", "from the beginning " * 550)
                            for number in range(100)],
                   "Mail": [LETTER], "Notes": NOTES, "Recipes": [snippet("bread", "flour, water")],
                   "Empty": []}

    def setUp(self):
        super().setUp()
        self.addCleanup(lambda: self.program.finish())
        self.commands = RemoteCommands(self.desktop.env["DBUS_SESSION_BUS_ADDRESS"])
        self.addCleanup(self.commands.close)

    def start_program(self):
        """Without a clean-up of its own, as there are so many."""
        return Program(self.desktop, self.home)

    def test_killed_at_random_moments(self):
        """Whatever the moment, every file is the old one or a new one, and nothing that the program
        has told to be saved is lost."""
        rng = random.Random(SEED)
        seen = {"with a temporary file": 0, "between two files": 0, "unchanged": 0, "saves": 0}
        half_done = 0
        for kill in range(KILLS):
            with self.told(f"kill {kill} of seed {SEED}"):
                if kill % KILLS_OF_LIBRARY == 0:
                    before = self.begin_library()
                self.kill_while_saving(rng.uniform(0, self.latest))
                leftovers = self.take_leftovers()
                after = self.read_folder()
                made, is_between = self.check(before, after)
                self.restart(after)
            seen["with a temporary file"] += len(leftovers)
            seen["between two files"] += is_between
            seen["unchanged"] += after == before
            seen["saves"] += made
            half_done += bool(leftovers or is_between)
            before = after
        print(f"{KILLS} kills, seed {SEED}, {half_done} in the middle of a save:", seen, flush=True)
        self.assertGreaterEqual(half_done, HALF_DONE, "the kills did not meet the saves")
        self.assertGreaterEqual(seen["saves"], COMPLETED, "hardly anything was saved")

    def begin_library(self):
        """Lets the program make the collections its own, and returns the files of them. The first
        save writes each file, as each snippet gets its place and each collection its colour; later
        ones write the one that has changed, and the metadata."""
        self.program.finish()
        self.library.write(self.collections)
        files = self.read_folder()
        self.restart(files)
        first = SAVED + self.counts(files, made=1)
        began = time.monotonic()
        self.commands.send("new-snippet")
        wait_for("the first save", lambda: first in self.program.lines, PATIENCE)
        self.latest = max(LATEST, LATEST_IN_FILES * (time.monotonic() - began) / len(files))
        self.program.finish()
        files = self.read_folder()
        self.restart(files)
        return files

    def kill_while_saving(self, delay):
        """Makes the program save without a pause and kills it so many seconds after its first file
        has begun."""
        untouched = self.last_changes()
        self.commands.send("new-snippet", SAVES)
        wait_for("the program saves", lambda: self.last_changes() != untouched, PATIENCE)
        time.sleep(delay)  # the moment of the crash, not a waiting
        self.program.process.kill()
        self.program.finish()

    def last_changes(self):
        """When something came to the folder or went, and when the file was written, in place or
        not."""
        return [os.stat(path).st_mtime_ns for path in
                (self.library.folder, os.path.join(self.library.folder, TARGET_FILE))]

    def restart(self, files):
        """Starts the program, and sees that it loads all of these files, which the folder holds."""
        self.program = self.start_program()
        wait_for("the load", lambda: any(line.startswith(LOADED) for line in self.program.lines),
                 PATIENCE)
        self.assertIn(LOADED + self.counts(files), self.program.lines)
        self.assertFalse([line for line in self.program.lines if line.startswith(SKIPPED)])

    def take_leftovers(self):
        """Removes what the killed program left unfinished, as a later start does when it is a day
        old; at most one file, as one is written at a time."""
        names = [name for name in os.listdir(self.library.folder) if LEFTOVER.fullmatch(name)]
        self.assertLessEqual(len(names), 1)
        for name in names:
            os.remove(os.path.join(self.library.folder, name))
        return names

    def read_folder(self):
        """The records of all files, each of which must be whole."""
        files = {}
        for name in sorted(os.listdir(self.library.folder)):
            with open(os.path.join(self.library.folder, name), "rb") as file:
                data = file.read()
            try:
                files[name] = json.loads(data)
            except ValueError as error:
                raise AssertionError(f"{name}, {len(data)} bytes, is in pieces: {error}") from error
        return files

    @staticmethod
    def counts(files, made=0):
        """What the log tells of these files, and of so many new snippets."""
        snippets = sum(len(file.get("snippets", ())) for file in files.values())
        return f"{snippets + made} snippets, {len(files) - 1} collections"

    def check(self, before, after):
        """Only the two files that the saves write may differ, and only by new snippets. Returns
        how many, and whether the second file of a save is still to come."""
        self.assertEqual(list(after), list(before))
        for name in before:
            if name not in (TARGET_FILE, METADATA):
                self.assertEqual(after[name], before[name], name)

        old, new = before[TARGET_FILE], after[TARGET_FILE]
        self.assertEqual(without(new, ("snippets", *STAMPS)), without(old, ("snippets", *STAMPS)))
        made = new["snippets"][len(old["snippets"]):]
        self.assertEqual(new["snippets"][:len(old["snippets"])], old["snippets"])
        for place, record in enumerate(made, len(old["snippets"])):
            self.assertEqual(without(record, ("id", "createdAt", "updatedAt")),
                             {**NEW, "displayOrder": place})
            self.assertEqual(record["createdAt"], record["updatedAt"])
        ids = [record["id"] for record in new["snippets"]]
        self.assertEqual(len(set(ids)), len(ids))

        # A save that was told is on the disk; at most the one under way is there as well.
        told = sum(line.startswith(SAVED) for line in self.program.lines)
        self.assertIn(len(made), (told, told + 1))

        order = after[METADATA]["collectionOrder"]
        self.assertEqual(without(after[METADATA], STAMPS), without(before[METADATA], STAMPS))
        self.assertEqual(sorted(order), sorted(
            file["collection"]["id"] for name, file in after.items() if name != METADATA))
        is_between = bool(made) and after[METADATA]["lastModified"] < new["lastModified"]
        return len(made), is_between


if __name__ == "__main__":
    main()
