"""No letter is lost between the hot key and the palette."""
from case import main
from type_ahead import TypeAheadCase

ROUNDS = 50


class TypeAhead(TypeAheadCase):

    def test_fifty_of_fifty_whole(self):
        """A word typed at once behind the hot key arrives whole in the palette, and nothing of it
        in the other program, fifty times of fifty."""
        for number in range(1, ROUNDS + 1):
            with self.told(f"round {number}"):
                self.type_ahead()
        self.assert_nothing_leaked()


if __name__ == "__main__":
    main()
