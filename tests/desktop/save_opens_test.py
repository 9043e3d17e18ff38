"""Which files a save opens, as the system calls of the real program tell."""
import os
import re

from case import LETTER_TEXT, DesktopCase, main
from program import Program
from waiting import wait_for

OPENED = re.compile(r'open(?:at)?\([^"]*"([^"]+)"')
SAVED = "CollectionFileStorageService: 保存成功 - 3 snippets, 2 collections"


class SaveOpens(DesktopCase):

    def start_program(self):
        self.trace = os.path.join(self.home["HOME"], "trace")
        # The tracer stands aside (-D), so that the program itself is the child of the test.
        return self.start(Program, self.desktop, self.home,
                          ["strace", "-D", "-f", "-e", "trace=open,openat", "-o", self.trace])

    def opened_files(self):
        """The names of the data folder's files that were opened so far, in order."""
        with open(self.trace, encoding="utf-8", errors="replace") as file:
            paths = OPENED.findall(file.read())
        return [os.path.basename(path) for path in paths
                if os.path.dirname(path) == self.library.folder]

    def files_opened_by_a_copy(self):
        """Copies a snippet of the collection Mail; the files opened from Return to saved."""
        self.desktop.wait_gone("Toast")
        saved = self.program.count(SAVED)
        self.program.open_palette()
        self.program.search("letter")
        before = len(self.opened_files())
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)
        wait_for("saved", lambda: self.program.count(SAVED) > saved)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        self.desktop.set_clipboard("untouched")
        return self.opened_files()[before:]

    def test_no_unchanged_settled_file_is_opened(self):
        """Once its time stamp is old enough to be trusted, a collection file that did not change
        is not opened by a save."""
        wait_for("the load in the trace", lambda: "Notes.json" in self.opened_files())
        wait_for("a save that trusts the stamps",
                 lambda: "Notes.json" not in self.files_opened_by_a_copy(), timeout=60)
        for _ in range(3):
            opened = self.files_opened_by_a_copy()
            self.assertNotIn("Notes.json", opened)
            self.assertEqual([name for name in opened if name.endswith(".json")
                              and name not in ("Mail.json", "_metadata.json")], [])


if __name__ == "__main__":
    main()
