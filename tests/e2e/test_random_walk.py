"""A player who presses anything: seeded keys, buttons, wheel and mouse for TARNVALE_WALK_SECONDS (20), after which the game must
still answer, write a ship that is sound to the last bit, and load it again."""
import os
import random
import time
import unittest

import rig
from rig import screen

SECONDS = float(os.environ.get("TARNVALE_WALK_SECONDS", "20"))
SEED = int(os.environ.get("TARNVALE_WALK_SEED", "7"))
HELD = ["w", "a", "s", "d", "z", "x", "space", "shift", "ctrl"]
PRESSED = ["e", "q", "t", "f", "1", "2", "3", "4", "5", "Tab", "Up", "Down", "Prior", "Next", "Return", "BackSpace", "Escape",
           "F1", "F2", "F3", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12"]


def step(game, rng):
    """One action. Left Shift and Control never meet Q, nor Alt F4: those end the game, which is another test."""
    kind = rng.randrange(10)
    if kind < 3:
        game.hold(rng.choice(HELD), rng.uniform(0.05, 0.4))
    elif kind < 5:
        game.press(rng.choice(PRESSED))
    elif kind < 7:
        game.act("mousemove_relative", "--", rng.randrange(-200, 200), rng.randrange(-120, 120))
    elif kind < 9:
        game.act("mousedown", button := rng.choice([1, 1, 1, 3, 2]), "sleep", rng.uniform(0.02, 0.5), "mouseup", button)
    else:
        game.act("keydown", held := rng.choice(["ctrl", "alt", "shift"]), "click", rng.choice([4, 5]), "keyup", held)


def walk(game, rng, end):
    """True while the game runs; false when a click in a menu ended it, which must have been in order."""
    while time.monotonic() < end:
        if game.process.poll() is not None or "Exiting Main Thread" in game.log():
            assert game.finish() == 0 and "Exiting Main Thread" in game.log(), "the game ended, and not in order"
            return False
        step(game, rng)
    return True


def answers(game):
    """Whether the view turns with the mouse, after an Escape that leads from chat or menu to play, or from play to the menu."""
    game.press("Escape")
    time.sleep(0.3)
    before = game.picture()
    game.look(300, 0)
    return game.alive() and screen.changed(before, game.picture()) > 1000


class RandomWalk(unittest.TestCase):
    def test_the_game_answers_after_any_keys_and_clicks(self):
        print(f"seed {SEED}, {SECONDS:.0f} s")
        rng, end = random.Random(SEED), time.monotonic() + SECONDS
        root = self.enterContext(rig.installation())
        display = self.enterContext(rig.virtual_display())
        while True:
            with rig.Game(root, display, cores=rng.choice([2, 4])) as game:
                game.wait_for_log("core threading system")
                if not walk(game, rng, end) and time.monotonic() < end:
                    continue
                if game.process.poll() is None:
                    rig.wait_until(lambda: answers(game), "the view turns with the mouse")
                    self.assertEqual(game.close(), 0)
                self.assertIn("Exiting Main Thread", game.log())
                break
        with rig.Game(root, display) as game:
            game.wait_for_log("core threading system")
            once = game.save()
            self.assertEqual(game.close(), 0)
        with rig.Game(root, display) as game:
            game.wait_for_log("core threading system")
            self.assertEqual(game.save(), once)
            self.assertEqual(game.close(), 0)


if __name__ == "__main__":
    unittest.main()
