"""Changes in the library folder while the program runs."""
import json
import os

from case import LETTER, LETTER_TEXT, NOTES, DesktopCase, main
from library import snippet
from program import Program
from waiting import wait_for

RELOADING = "CollectionFileStorageService: 检测到外部变化，重新加载数据..."
LOADED = "CollectionFileStorageService: 加载成功 - "
WATCHING = "CollectionFileStorageService: 文件监控已启动 - "


def loads(program):
    return sum(line.startswith(LOADED) for line in program.lines)


class Watching(DesktopCase):

    def setUp(self):
        super().setUp()
        wait_for("the first load", lambda: loads(self.program) == 1)
        self.assertEqual(self.program.count(WATCHING + self.library.folder), 1)

    def change(self, action):
        """Changes the folder and waits until the program has taken it in."""
        reloads, loaded = self.program.count(RELOADING), loads(self.program)
        action()
        wait_for("the reload", lambda: self.program.count(RELOADING) > reloads)
        wait_for("the load", lambda: loads(self.program) > loaded)

    def path(self, name):
        return os.path.join(self.library.folder, name)

    def edit_in_place(self, name, old, new):
        with open(self.path(name), "r+b") as file:
            text = file.read().replace(old.encode(), new.encode())
            file.seek(0)
            file.write(text)
            file.truncate()

    def assert_copies(self, query, text):
        self.program.open_palette()
        self.program.search(query)
        self.desktop.key("Return")
        self.desktop.wait_clipboard(text)
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def assert_finds_nothing(self, query):
        """The search field takes the query, and there is no row to copy."""
        self.desktop.set_clipboard("untouched")
        self.program.open_palette()
        self.program.search(query)
        self.desktop.key("Return", "Escape")
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
        self.assert_not_copied()

    def test_edit_in_place(self):
        """A file that another program rewrites in place shows in the palette."""
        self.change(lambda: self.edit_in_place("Notes.json", "first of the notes", "edited text"))
        self.assert_copies("alpha", "edited text")

    def test_replaced_by_rename(self):
        """So does one that is replaced, as cloud clients do it."""
        self.change(lambda: self.library.write_collection(
            "Notes", [*NOTES, snippet("gamma note", "third of the notes")]))
        self.assert_copies("gamma", "third of the notes")

    def test_deleted_and_added_files(self):
        """Collections come and go with their files."""
        self.change(lambda: os.remove(self.path("Notes.json")))
        self.assert_finds_nothing("alpha")
        self.change(lambda: self.library.write_collection(
            "Recipes", [snippet("bread", "flour and water")]))
        self.assert_copies("bread", "flour and water")

    def test_folder_removed_and_made_again(self):
        """The program hears of a folder that was removed and comes back."""
        os.rename(self.library.folder, self.library.folder + "-away")
        self.change(lambda: self.library.write({"Notes": [snippet("delta", "fourth")]}))
        self.assert_copies("delta", "fourth")

    def test_own_saves_reload_nothing(self):
        """The uses that the program counts itself lead to no reload."""
        reloads = self.program.count(RELOADING)
        fired = self.program.count("FileWatcherService: 触发文件变化回调")
        self.assert_copies("alpha", "first of the notes")
        wait_for("the event of the own save",
                 lambda: self.program.count("FileWatcherService: 触发文件变化回调") > fired)
        wait_for("the use on disk", lambda: self.library.snippets()["alpha note"]["usageCount"] == 1)
        self.assertEqual(self.program.count(RELOADING), reloads)
        self.change(lambda: self.library.write_collection("Mail", [LETTER]))
        self.assertEqual(self.program.count(RELOADING), reloads + 1)

    def test_change_right_after_an_own_save(self):
        """A change that lands in the guard of an own save is not lost, and neither is the save."""
        saves = "CollectionFileStorageService: 保存成功 - "
        before = sum(line.startswith(saves) for line in self.program.lines)
        self.assert_copies("letter", LETTER_TEXT)
        wait_for("the save", lambda: sum(line.startswith(saves)
                                         for line in self.program.lines) > before)
        self.change(lambda: self.library.write_collection("Notes", [snippet("late", "came late")]))
        self.assert_copies("late", "came late")
        self.assertEqual(self.library.snippets()["letter"]["usageCount"], 1)


class OtherProgram(Program):
    """A program whose hot key is another one."""
    ready, hotkey = "HotkeyService: 已注册热键 ⌥Y", "alt+y"


class TwoPrograms(DesktopCase):
    """A second program, with a home of its own, on the library of the first."""

    def setUp(self):
        super().setUp()
        home = self.desktop.new_home()
        preferences = os.path.join(home["XDG_CONFIG_HOME"], "vellumry", "vellumry.conf")
        os.makedirs(os.path.dirname(preferences))
        with open(preferences, "w", encoding="utf-8") as file:
            file.write("[General]\nquickSearchHotkeyKey=y\nVellumry.useCustomLocation=true\n"
                       f"Vellumry.customStorageLocation={self.library.folder}\n")
        # On another bus, so that it does not hand over to the first.
        home["DBUS_SESSION_BUS_ADDRESS"] = ""
        self.other = self.start(OtherProgram, self.desktop, home)
        self.recorder.focus()
        self.both = [self.program, self.other]
        for program in self.both:
            wait_for("the first load", lambda p=program: loads(p) == 1)

    def whole_snippets(self):
        """All snippets on disk, by title; every file is whole at any time."""
        for name in os.listdir(self.library.folder):
            if name.endswith(".json"):
                with open(os.path.join(self.library.folder, name), encoding="utf-8") as file:
                    json.load(file)
        return self.library.snippets()

    def use(self, program, query):
        program.open_palette()
        program.search(query)
        self.desktop.key("Return")
        program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")

    def wait_used(self, title, count):
        wait_for(f"{count} uses of {title}",
                 lambda: self.whole_snippets()[title]["usageCount"] == count)

    def test_each_counts_on_top_of_the_other(self):
        """In turns, each takes in the other's use before its own, and no file is in pieces."""
        for count in range(1, 5):
            user, hearer = self.both if count % 2 else reversed(self.both)
            before = hearer.count(RELOADING)
            self.use(user, "letter")
            self.wait_used("letter", count)
            wait_for("the other's reload", lambda: hearer.count(RELOADING) > before)
        self.use(self.program, "alpha")
        self.wait_used("alpha note", 1)
        self.assertEqual(self.whole_snippets()["letter"]["usageCount"], 4)

    def test_uses_of_both_at_once(self):
        """After uses within one another's guards the later one stands, and both hear what follows."""
        self.use(self.program, "letter")
        self.use(self.other, "alpha")
        wait_for("a quiet folder", lambda: all(p.count(RELOADING) > 0 for p in self.both))
        self.assertEqual(self.whole_snippets()["alpha note"]["usageCount"], 1)
        before = [program.count(RELOADING) for program in self.both]
        self.library.write_collection("Notes", [snippet("alpha note", "the last word")])
        wait_for("both reload", lambda: all(p.count(RELOADING) > b
                                            for p, b in zip(self.both, before)))
        for program in self.both:
            self.desktop.set_clipboard("untouched")
            self.use(program, "alpha")
            self.desktop.wait_clipboard("the last word")


if __name__ == "__main__":
    main()
