"""The main story, from another program to the clipboard and back, under openbox."""
from case import LETTER_TEXT, SAMPLE, main
from library import snippet
from program import HIDING, SHOWING
from story import StoryCase

ROUNDS = 50
# Physical keys, by their numbers.
ALT_KEY, T_KEY, CAPS_LOCK_KEY = 64, 28, 66


class MainStory(StoryCase):

    def test_fifty_times_without_a_miss(self):
        """Another window has the focus. Alt+T brings the palette, which takes the keyboard; a
        query and Return put the filled text on the clipboard; the toast shows, the palette goes,
        the focus returns, and the use is counted in the file. Fifty times in one run."""
        for number in range(1, ROUNDS + 1):
            with self.told(f"round {number}"):
                self.tell_story()
        self.assertEqual(self.library.snippets()["letter"]["usageCount"], ROUNDS)
        self.assert_nothing_leaked()

    def test_caps_lock_and_num_lock(self):
        """Locks change nothing: the story holds with CapsLock, with NumLock and with both."""
        for locks in (["Caps_Lock"], ["Num_Lock"], ["Caps_Lock", "Num_Lock"]):
            self.desktop.reset_keyboard()
            for lock in locks:
                self.desktop.set_lock(lock, True)
            self.tell_story()
        self.assert_nothing_leaked()

    def test_key_held_for_a_second(self):
        """A held hot key repeats, but the palette appears once and does not flicker."""
        self.desktop.hold_key("alt", "t", seconds=1)
        self.program.wait_palette()
        self.desktop.key("Escape")
        self.program.wait_palette_gone()
        self.assertEqual(self.program.count(SHOWING), 1)
        self.assertEqual(self.program.count(HIDING), 0)
        self.assert_nothing_leaked()

    def test_repeats_of_the_held_key_do_not_type(self):
        """The repeats of a held hot key do not land in the search field either."""
        self.desktop.hold_key("alt", "t", seconds=1)
        self.program.wait_palette()
        self.program.search("letter")
        self.desktop.key("Return")
        self.desktop.wait_clipboard(LETTER_TEXT)


class KeyboardLayouts(StoryCase):
    # The letters of "привет" stand on the keys g, h, b, d, t, n of a Russian keyboard.
    collections = {**SAMPLE, "Russian": [snippet("привет", "здравствуйте")]}
    PRIVET = [42, 43, 56, 40, 28, 57]

    def test_german(self):
        """After a change to the German layout the story holds."""
        self.desktop.set_layout("de")
        self.open_after_layout_change()
        self.tell_story()
        self.assert_nothing_leaked()

    def test_dvorak_and_back(self):
        """Under Dvorak the hot key is the key that bears T there; and back again."""
        for layout in (["dvorak"], ["us"]):
            self.desktop.set_layout(*layout)
            self.open_after_layout_change()
            self.tell_story()
        self.assert_nothing_leaked()

    def test_second_layout_group(self):
        """With a Russian layout in force beside the Latin one, the same physical key still brings
        the palette, and what is typed arrives in Russian."""
        self.desktop.set_layout("-layout", "us,ru", "-option", "grp:caps_toggle")
        self.open_after_layout_change()
        self.tell_story()
        self.desktop.physical_key(CAPS_LOCK_KEY)
        self.program.open_palette(lambda: self.desktop.physical_key(ALT_KEY, T_KEY))
        for key in self.PRIVET:
            self.desktop.physical_key(key)
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_clipboard("здравствуйте")
        self.program.wait_palette_gone()


if __name__ == "__main__":
    main()
