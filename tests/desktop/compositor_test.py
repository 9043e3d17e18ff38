"""A compositor that comes and goes while the program runs."""
from case import DesktopCase, main
from processes import LoggedProcess
from program import PALETTE
from waiting import wait_for

NO_SHAPE = "No window shape defined"


class Compositor(DesktopCase):

    def is_masked(self):
        return NO_SHAPE not in self.desktop.command(
            "xwininfo", "-shape", "-id", self.desktop.window(PALETTE))

    def test_masked_only_without_compositor(self):
        """Without a compositor the palette's corners are cut off, with one they are translucent;
        it follows a change at once, also while it is open."""
        self.program.open_palette()
        self.assertTrue(self.is_masked())
        compositor = self.start(LoggedProcess, ["picom", "--backend", "xrender", "--config", "/dev/null"],
                                self.desktop.env)
        wait_for("the palette is whole", lambda: not self.is_masked())
        compositor.finish()
        wait_for("the palette is masked again", self.is_masked)


if __name__ == "__main__":
    main()
