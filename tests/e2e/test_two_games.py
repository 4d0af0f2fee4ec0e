"""Two games in one folder: the second one asks, saves nothing, and costs the first one nothing."""
import unittest

import rig
from test_menus import Player

LEAVE, UNSAVED = (0, -200), (0, 0)  # on the screen that asks


class TwoGames(unittest.TestCase):
    def setUp(self):
        self.root = self.enterContext(rig.installation())
        (self.root / "config/text/options").write_text("Tutorial 0\nEnd 0\n")

    def play(self, **how):
        return self.enterContext(rig.Game(self.root, self.enterContext(rig.virtual_display()), **how))

    def files(self):
        """What is the player's, and when it was written."""
        kept = [path for folder in ("saves", "cache", "config/text") for path in (self.root / folder).iterdir()]
        return {path: (path.read_bytes(), path.stat().st_mtime_ns) for path in kept}

    def test_the_second_game_in_a_folder_asks_and_saves_nothing(self):
        first = self.play()
        first.wait_for_asteroid()
        grown = first.save()
        before, log = self.files(), first.log()

        leaver = self.play(number="2", words=("single", "Nobody"))
        leaver.wait_for_log("core threading system")
        player = Player(leaver)
        player.still(2)
        leaver.press("Escape")  # the question wants an answer
        player.click(LEAVE)
        self.assertEqual(leaver.finish(), 0)
        self.assertNotIn("Msg: This game saves nothing", leaver.said())

        second = self.play(number="2", words=("single", "Nobody"))
        second.wait_for_log("core threading system")
        player = Player(second)
        player.still(2)
        player.click(UNSAVED)
        second.wait_for_asteroid()
        second.look(60, -60)
        second.click()
        second.press("Escape")
        second.wait_for_log("Msg: This game saves nothing")
        player.still()
        second.press("Escape")
        self.assertEqual(second.close(), 0)
        self.assertEqual(self.files(), before)
        self.assertEqual(first.log()[:len(log)], log)

        self.assertEqual(first.save(), grown)
        self.assertEqual(first.close(), 0)
        third = self.play()
        third.wait_for_asteroid()
        self.assertNotIn("saves nothing", third.log(), "the folder is free again")
        third.save()
        self.assertEqual(third.close(), 0)

    def test_a_game_that_was_told_to_save_nothing_asks_nothing(self):
        game = self.play(number="2", environment={"TARNVALE_SAVING": "0"})
        game.wait_for_asteroid()
        game.press("Escape")
        game.wait_for_log("Msg: This game saves nothing: the ship is not saved")
        beside = self.play(environment={"TARNVALE_SAVING": "1"})
        rig.wait_until(lambda: "core threading system" in beside.said() or not beside.alive(), "the other one starts")
        self.assertNotIn("Another game", beside.said())
        self.assertEqual(beside.close(), 0)
        self.assertEqual(list((self.root / "saves").iterdir()), [])
        self.assertEqual(game.close(), 0)


if __name__ == "__main__":
    unittest.main()
