"""Letters typed at once behind the hot key, with a library in which a lost letter shows."""
import itertools

from case import DesktopCase
from library import snippet

WORD = "hello"


def fragments(word):
    """All texts that remain of the word when one or more letters are lost."""
    return sorted({"".join(letters) for count in range(1, len(word))
                   for letters in itertools.combinations(word, count)})


class TypeAheadCase(DesktopCase):
    # What remains of the word finds the fragment of that title first; other texts find nothing.
    collections = {"Words": [snippet(WORD, "the whole word")]
                   + [snippet(part, f"only {part}") for part in fragments(WORD)]}

    def type_ahead(self, front="Recorder"):
        """Hot key and word without a pause; then what the palette has received is copied. front:
        the title of the window that has the keyboard before."""
        self.desktop.set_clipboard("untouched")
        self.assertEqual(self.desktop.focused_window(), front)
        self.desktop.key("alt+t", *WORD, delay=0)
        self.program.wait_palette()
        self.program.wait_searched()
        self.desktop.key("Return")
        self.desktop.wait_clipboard("the whole word")
        self.program.wait_palette_gone()
        self.desktop.wait_focus("Recorder")
