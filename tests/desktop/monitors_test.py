"""Two monitors side by side."""
from case import LETTER_TEXT, DesktopCase, main

LEFT, RIGHT = (0, 800), (800, 800)


class TwoMonitors(DesktopCase):
    options = {"size": (1600, 800), "monitors": (LEFT, RIGHT)}

    def test_palette_appears_where_the_pointer_is(self):
        """The palette stands in the middle of the monitor that has the pointer, at each opening,
        and the toast in the middle of the palette's place."""
        for left, width in (RIGHT, LEFT, RIGHT):
            self.desktop.wait_gone("Toast")
            self.desktop.move_pointer(left + 100, 700)
            place = self.program.open_palette()
            self.assertAlmostEqual(place[0] + place[2] / 2, left + width / 2, delta=2)
            self.assertTrue(0 <= place[1] and place[1] + place[3] <= 800, place)
            self.program.search("letter")
            self.desktop.key("Return")
            toast = self.desktop.geometry(self.program.wait_new_toast())
            self.assertEqual(toast[2:], (300, 90))
            self.assertAlmostEqual(toast[0] + 150, place[0] + place[2] / 2, delta=1)
            self.assertAlmostEqual(toast[1] + 45, place[1] + place[3] / 2, delta=1)
            self.desktop.wait_clipboard(LETTER_TEXT)
            self.desktop.wait_focus("Recorder")


if __name__ == "__main__":
    main()
