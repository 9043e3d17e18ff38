"""The move of the library into another folder."""
import os
import re
import signal

from case import SAMPLE, main
from library import Library, snippet
from person import BUTTON, ROW, PersonCase
from program import MAIN_WINDOW, SETTINGS_WINDOW
from waiting import wait_for

SHEET = "Change Data Location"
PROGRESS = re.compile(r"Migrating your data\.\.\. (\d+)%")
# The one to root, the other to anybody else.
NOT_WRITABLE = re.compile("写入测试失败 /sys: .+|目录不可写: /sys")
COLLECTIONS, SNIPPETS_EACH = 100, 100
# So that no machine is too slow to see a hundred files on their way. The test ends the delays.
DELAY_OF_A_FILE = 300_000  # microseconds


def tampered(*options):
    """What runs the program under a kernel that is told to be slow or to fail. The tracer stands
    aside (-D), so that the program itself is the child of the test."""
    return ["strace", "-D", "-I1", "-f", "--seccomp-bpf", "-o", "/dev/null", *options]


class MoveCase(PersonCase):

    def tracer(self):
        """The process that tampers with the program; 0 when there is none."""
        with open(f"/proc/{self.program.process.pid}/status", encoding="utf-8") as file:
            return int(re.search(r"TracerPid:\s+(\d+)", file.read())[1])

    def end_tampering(self):
        os.kill(self.tracer(), signal.SIGTERM)
        wait_for("the program runs by itself", lambda: self.tracer() == 0)

    def setUp(self):
        super().setUp()
        self.usual_folder = self.library.folder

    def in_home(self, *names):
        return os.path.join(self.home["HOME"], *names)

    def open_sheet(self):
        self.desktop.key("ctrl+comma")
        self.desktop.wait_focus(SETTINGS_WINDOW)
        self.click("Change...", BUTTON, window=SETTINGS_WINDOW)
        self.wait_seen(SHEET, window=SETTINGS_WINDOW)

    def choose_folder(self, path):
        self.click("Choose Custom Folder...", BUTTON, SHEET, SETTINGS_WINDOW)
        self.answer_file_dialog("Choose Folder", path)

    def move(self):
        self.click("Move Data", BUTTON, SHEET, SETTINGS_WINDOW)

    def wait_moved(self, folder):
        """The sheet closes by itself, and the library is in the folder alone."""
        self.wait_unseen(SHEET, window=SETTINGS_WINDOW)
        self.library = Library(self.home["HOME"], folder)
        self.assertTrue(self.library.exists())
        self.assertFalse(os.path.exists(self.usual_folder))

    def assert_used(self, folder):
        """A new snippet goes into that folder, also after a restart."""
        self.desktop.activate(MAIN_WINDOW)
        self.desktop.key("ctrl+n")
        wait_for("the new snippet is in the new place",
                 lambda: "New Snippet" in Library(self.home["HOME"], folder).snippets())


class CloudDrive(MoveCase):
    wrapper = tampered("-e", "trace=copy_file_range",
                       "-e", f"inject=copy_file_range:delay_exit={DELAY_OF_A_FILE}")
    collections = {f"Collection {number}": [snippet(f"title {number}-{i}", "a text " * 20)
                                            for i in range(SNIPPETS_EACH)]
                   for number in range(COLLECTIONS)}

    def setUp(self):
        super().setUp()
        # What the client of that drive leaves in a home.
        for name in ("Dropbox", ".dropbox-dist"):
            os.makedirs(self.in_home(name))

    def test_ten_thousand_snippets(self):
        """They go into the drive's folder, which is offered; the progress is shown meanwhile, in
        the sheet and over the main window. The old folder is gone afterwards, the new one holds
        them all, and the program goes on there, also after a restart."""
        titles = set(self.library.snippets())
        self.assertEqual(len(titles), COLLECTIONS * SNIPPETS_EACH)
        folder = self.in_home("Dropbox", "Apps", "Vellumry")
        self.open_sheet()
        self.click(re.compile("Dropbox.*"), inside=SHEET, window=SETTINGS_WINDOW)
        self.move()
        shown = set()

        def risen():
            shown.update(each.name for each in self.reader.look())
            percents = [int(found[1]) for found in map(PROGRESS.fullmatch, shown) if found]
            return len([percent for percent in percents if 50 < percent < 100]) > 1
        wait_for("the progress rises before the eyes", risen)
        self.assertIn("Migrating your data...", shown)
        self.end_tampering()
        self.wait_moved(folder)
        self.assertEqual(set(self.library.snippets()), titles)
        self.wait_seen(f"All Snippets, {len(titles)} snippets", ROW, window=MAIN_WINDOW)
        self.wait_seen("~/Dropbox/Apps/Vellumry", window=SETTINGS_WINDOW)
        self.assert_used(folder)
        self.start_again()
        self.wait_seen(f"All Snippets, {len(titles) + 1} snippets", ROW, window=MAIN_WINDOW)


class Refused(MoveCase):

    def test_not_writable(self):
        """A folder that nobody can write into is refused in words; nothing is lost, and the sheet
        takes another one."""
        before = self.library.file_bytes("Notes")
        self.open_sheet()
        self.choose_folder("/sys")
        self.move()
        self.wait_seen(NOT_WRITABLE, "", SHEET, SETTINGS_WINDOW)
        self.wait_unseen(PROGRESS, window=SETTINGS_WINDOW)
        self.wait_unseen("Migrating your data...", window=MAIN_WINDOW)
        self.assertEqual(self.library.file_bytes("Notes"), before)
        os.makedirs(self.in_home("Other"))
        self.choose_folder(self.in_home("Other"))
        self.move()
        self.wait_moved(self.in_home("Other"))
        self.assertEqual(self.library.file_bytes("Notes"), before)
        self.assert_used(self.in_home("Other"))


class Full(MoveCase):

    @property
    def wrapper(self):
        return tampered("-e", "trace=copy_file_range", "-P", f"{self.library.folder}/Notes.json",
                        "-e", "inject=copy_file_range:error=ENOSPC")

    def test_full(self):
        """The disk is full when the second file is to be copied: told in words; nothing is lost,
        and the library is used where it is, once the sheet has been left."""
        before = self.library.file_bytes("Notes")
        os.makedirs(self.in_home("Full"))
        self.open_sheet()
        self.choose_folder(self.in_home("Full"))
        self.move()
        self.wait_seen(re.compile(".*No space left on device.*"), "", SHEET, SETTINGS_WINDOW)
        self.wait_unseen("Migrating your data...", window=MAIN_WINDOW)
        self.assertEqual(self.library.file_bytes("Notes"), before)
        self.assertEqual(set(self.library.titles()), set(SAMPLE))
        self.click("Cancel", BUTTON, SHEET, SETTINGS_WINDOW)
        self.wait_unseen(SHEET, window=SETTINGS_WINDOW)
        self.wait_seen("~/Documents/Apps/Vellumry", window=SETTINGS_WINDOW)
        self.assert_used(self.usual_folder)


if __name__ == "__main__":
    main()
