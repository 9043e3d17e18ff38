"""A library that the program must not go on with."""
import json
import os

from case import DesktopCase, main
from processes import LoggedProcess
from program import PALETTE
from waiting import wait_for


class FatalError(DesktopCase):

    def test_id_that_stands_twice(self):
        """The program ends with the exact text and without a core; a window says what to do, and
        the library keeps its bytes."""
        self.program.finish()
        path = os.path.join(self.library.folder, "_metadata.json")
        with open(path, encoding="utf-8") as file:
            metadata = json.load(file)
        metadata["collectionOrder"] = ["ID-Mail", "ID-Notes", "ID-Mail"]
        with open(path, "w", encoding="utf-8") as file:
            json.dump(metadata, file)
        before = self.library_bytes()
        process = self.start(LoggedProcess, [os.environ["VELLUMRY_PROGRAM"], "--hidden"],
                             {**self.desktop.env, **self.home})
        wait_for("the end", lambda: not process.running())
        self.assertEqual(process.finish(), 1, process.lines)
        self.assertIn("Duplicate values for key: 'ID-Mail'", process.lines)
        window = self.desktop.window("Vellumry")
        self.desktop.activate("Vellumry")
        self.desktop.screenshot(self.picture_path("fatal-error"))
        self.assertEqual(self.desktop.windows(PALETTE), [])
        self.desktop.key("Escape")
        wait_for("the window has gone", lambda: window not in self.desktop.windows("Vellumry"))
        self.assertEqual(self.library_bytes(), before)
        self.assertEqual([name for name in os.listdir(self.home["HOME"]) if "core" in name], [])

    def library_bytes(self):
        contents = {}
        for name in os.listdir(self.library.folder):
            with open(os.path.join(self.library.folder, name), "rb") as file:
                contents[name] = file.read()
        return contents


if __name__ == "__main__":
    main()
