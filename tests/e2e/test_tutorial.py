"""The tutorial from its first step to its last, done as each step asks, with keys and mouse."""
import time
import unittest

import rig
from rig import screen

KEYS = {"#Space": "space", "#WASD": "d", "#Q": "q", "#EscorQ": "q", "#1": "1", "#2": "2", "#E": "e", "#Esc": "Escape"}
HULL_ROW, LAMP_ROW = 2, 6  # of the components
WINDOW = (1 - 600 / 1920, 0.02, 1 - 20 / 1920, 0.2)  # of the screen: where the step's text stands


def steps(path):
    """The waits of the script and the components that it hands out, in order."""
    lines = path.read_text(encoding="latin-1").splitlines()
    controls = [line.split() for line in lines[lines.index("0 #DemoTutorialStart") + 1:] if line.split()[1:2] and line.split()[1][0] == "#"]
    return [(int(number), word) for number, word in controls if number.isdigit() and word != "#End"]


class Tutorial(unittest.TestCase):
    def test_every_step_goes_on_with_what_it_asks_for(self):
        root = self.enterContext(rig.installation())
        display = self.enterContext(rig.virtual_display())
        game = self.enterContext(rig.Game(root, display))
        game.wait_for_asteroid()
        game.look(60, -60)

        def text():
            return screen.cut(game.picture(), *WINDOW)

        def do(word):
            if word == "#LMB-BlockPlace":
                if do.placed:
                    game.click(3)  # the block before makes room, or they would grow up to the player
                    time.sleep(0.5)
                game.click()
                do.placed = True
            else:
                game.press(KEYS[word])

        do.placed = False
        waits = steps(root / "config/language/english")
        self.assertGreaterEqual(sum(number == 1 for number, _ in waits), 15)
        for number, word in waits[:-1]:
            if number != 1:
                continue
            before = text()
            for _ in range(3):
                do(word)
                end = time.monotonic() + 6
                while time.monotonic() < end and screen.changed(before, text()) < 50:
                    time.sleep(0.1)
                if screen.changed(before, text()) >= 50:
                    break
            else:
                self.fail(f"the step that waits for {word} stays")
            game.settle(2)
        self.assertNotIn("Ending Tutorial", game.log())
        do(waits[-1][1])
        game.wait_for_log("Ending Tutorial")
        built = game.save()
        components = {component for _, component, _, _ in built.values()}
        table = [line.split() for line in (root / "config/text/components").read_text().splitlines() if line.split()[:1] and line.split()[0].isdigit()]
        row_of = {int(columns[0]): row for row, columns in enumerate(table, 1)}
        self.assertIn(row_of[1000], components, "the lamp that was handed out")
        self.assertEqual(game.close(), 0)

    def test_a_clumsy_stranger_reaches_the_end_and_is_not_taught_again(self):
        """Six blocks from the rock, without ever turning the view: holds each button for two seconds at each step."""
        root = self.enterContext(rig.installation())
        rig.write_ship(root / "saves/Default.sts", {(x, y, 5000): LAMP_ROW if x % 4 == y % 4 == 2 else HULL_ROW
                                                        for x in range(4988, 5013) for y in range(4990, 5011)}, 1)
        game = self.enterContext(rig.Game(root, self.enterContext(rig.virtual_display())))
        game.wait_for_asteroid()

        def text():
            return screen.cut(game.picture(), *WINDOW)

        def advanced(before, patience):
            end = time.monotonic() + patience
            while time.monotonic() < end and screen.changed(before, text()) < 50:
                time.sleep(0.1)
            return screen.changed(before, text()) >= 50

        def hold(button):
            game.act("mousedown", button, "sleep", 2, "mouseup", button)

        for number, word in steps(root / "config/language/english")[:-1]:
            if number != 1:
                continue
            before = text()
            for _ in range(3):
                if word != "#LMB-BlockPlace":
                    game.press(KEYS[word])
                else:
                    hold(1)
                    if advanced(before, 3):
                        break
                    hold(3)  # as the words and the line under the crosshair say
                    hold(1)
                if advanced(before, 6):
                    break
            else:
                self.fail(f"the step that waits for {word} stays")
            game.settle(2)
        game.press("space")
        game.wait_for_log("Ending Tutorial")
        rig.wait_until(lambda: "\nTutorial 0\n" in (root / "config/text/options").read_text(), "the options are saved")
        reached = max(z for _, _, z in game.save())
        self.assertEqual(reached, 5004, "the last block stands before the player's body, which reaches into the cell behind")
        self.assertEqual(game.close(), 0)


if __name__ == "__main__":
    unittest.main()
