"""Changes the library folder without end while the program runs, and watches it.

A writer changes a random file every 50 ms, in each of the ways in which programs change files, and
rests now and then. At each rest the program must have taken in the last change; in the end its
resident memory must be what it was after the warm-up.
"""
import os
import random
import re
import sys
import tempfile
import time

from library import Library, snippet
from processes import LoggedProcess
from waiting import wait_for

PERIOD = 0.05
COLLECTIONS, SNIPPETS = 20, 100
LOADED = "CollectionFileStorageService: 加载成功 - "
RELOADING = "CollectionFileStorageService: 检测到外部变化，重新加载数据..."
# How much the resident memory may grow after the warm-up.
SLACK = 1.05
WARM_UP = 0.2


class Writer:
    """Changes random files of a library, whose counts of snippets it knows."""

    def __init__(self, library, seed):
        self.library = library
        self.random = random.Random(seed)
        self.changes = 0
        self.counts = {f"c{number}": SNIPPETS for number in range(COLLECTIONS)}
        library.write({name: self.snippets(name) for name in self.counts})

    def snippets(self, name):
        return [snippet(f"{name}-{number}", f"{self.changes} " * 80)
                for number in range(self.counts[name])]

    def path(self, name):
        return os.path.join(self.library.folder, f"{name}.json")

    def change(self):
        self.changes += 1
        name = self.random.choice(list(self.counts))
        self.random.choice([self.replace, self.replace, self.rewrite, self.rewrite_in_pieces,
                            self.remove_and_add])(name)

    def replace(self, name):
        """A new file takes the old one's place, with another count of snippets."""
        self.counts[name] = self.random.randrange(1, 2 * SNIPPETS)
        self.library.write_collection(name, self.snippets(name))

    def rewrite(self, name):
        self._write(name, [self.library.file_bytes(name)])

    def rewrite_in_pieces(self, name):
        """The file is cut short for a moment."""
        data = self.library.file_bytes(name)
        self._write(name, [data[:len(data) // 2], data[len(data) // 2:]])

    def remove_and_add(self, name):
        os.remove(self.path(name))
        self.replace(name)

    def _write(self, name, pieces):
        with open(self.path(name), "wb", buffering=0) as file:
            for piece in pieces:
                file.write(piece)
                time.sleep(0.005)

    def counts_text(self):
        return f"{sum(self.counts.values())} snippets, {len(self.counts)} collections"


def resident_kilobytes(process):
    with open(f"/proc/{process.process.pid}/status", encoding="utf-8") as file:
        return int(re.search(r"VmRSS:\s+(\d+) kB", file.read())[1])


def soak(program, minutes, home):
    environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen", "HOME": home,
                   "XDG_CONFIG_HOME": f"{home}/.config", "XDG_RUNTIME_DIR": home}
    writer = Writer(Library(home), seed=1)
    process = LoggedProcess([program, "--hidden"], environment)
    rng = random.Random(2)
    samples = []
    try:
        wait_for("the first load", lambda: any(line.startswith(LOADED) for line in process.lines))
        start, end = time.monotonic(), time.monotonic() + minutes * 60
        while time.monotonic() < end:
            for _ in range(rng.randrange(1, 60)):
                writer.change()
                time.sleep(PERIOD)
            expected = LOADED + writer.counts_text()
            wait_for(f"the last change is taken in: {expected}",
                     lambda line=expected: last_loaded(process) == line)
            samples.append((time.monotonic() - start, resident_kilobytes(process)))
        reloads = process.count(RELOADING)
    finally:
        status = process.finish()
    return writer.changes, reloads, samples, status


def last_loaded(process):
    return next((line for line in reversed(process.lines) if line.startswith(LOADED)), None)


def main(program, minutes):
    with tempfile.TemporaryDirectory() as home:
        changes, reloads, samples, status = soak(program, minutes, home)
    warm = [kilobytes for when, kilobytes in samples if when >= WARM_UP * minutes * 60]
    third = max(1, len(warm) // 3)
    first, last = max(warm[:third]), max(warm[-third:])
    print(f"{minutes:g} minutes: {changes} changes, {reloads} reloads, {len(samples)} rests, "
          "no last change missed")
    print(f"resident memory after the warm-up: {first} kB at most in the first third, {last} kB in "
          f"the last, {min(warm)} to {max(warm)} kB over all")
    if status != 0:
        sys.exit(f"the program ended with status {status}")
    if last > first * SLACK:
        sys.exit(f"the memory has grown by more than {SLACK - 1:.0%}")


if __name__ == "__main__":
    main(sys.argv[1], float(sys.argv[2]))
