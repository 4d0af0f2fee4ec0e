"""The first minutes of a new player: the game starts, grows an asteroid, draws it, takes a block, saves and ends in order."""
import contextlib
import os
import unittest

import rig
from rig import screen

OPTION_KEYS = """AntiAliasing FullScreen ScreenWidth ScreenHeight InvertMouse FOV FrustumCull Tutorial ShowReticle ThreadedInput
ExplosionBounce ExplosionFade HighResDiameter MidResDiameter LowResDiameter HighResBlocks MidResBlocks LowResBlocks
ExperimentalLight Flashlight Crosshair HighQualityTransparency HighQualityFlashlight TargetFPS MesaGPU DisableSound
DistanceScale MaxSpeed SinglePlayer EightCache QuadCache MaxVoxels LevelOfDetail CachePerFrame StealCpu SwitchToFloat
MouseSensitivity GuiScaleX GuiScaleY SoundVolume MusicVolume InertialDampening ExplosionScale SwitchToChar Language PlayerName
ServerURL SwitchToControls Use BlockSelect MoveForward MoveBackward MoveLeft MoveRight MoveUp MoveDown Stop MainMouse
SecondaryMouse ThirdMouse End""".split()

START = ["info: Error System Initialized \n", "info: Version 0.23.0 Demo  \n", "info: OS: ", "OS Major:", "OS Minor:", "RAM:",
         "info: Number of Cores: 2 \n", "OpenGL Version:", "Graphics Card :", "FSAA", "Max Texture Buffer size: ", "MaxMaxVoxels:",
         "info: Successfully initialized shaders \n", "Successfully loaded language file!",
         "info: Generating asteroid for player \n", "info: Starting dual core threading system \n"]

CENTRE = (5000, 5000, 5000)
AIM = (60, -60)  # from the block's corner, which the view first meets, into the middle of its face


class FirstRun(unittest.TestCase):
    def setUp(self):
        self.root = self.enterContext(rig.installation())
        self.display = self.enterContext(rig.virtual_display())

    def play(self, **how):
        return self.enterContext(rig.Game(self.root, self.display, **how))

    def options(self):
        return (self.root / "config/text/options").read_text()

    def test_the_start_goes_step_by_step_and_draws_the_asteroid(self):
        game = self.play()
        picture = game.wait_for_asteroid()
        rig.in_order(self, game.log(), START)
        self.assertNotIn("*ERR", game.log())
        for name, corner in {"left": (0, 0.2, 0.25, 0.8), "right": (0.75, 0.2, 1, 0.8)}.items():
            self.assertGreater(screen.lit(screen.cut(picture, *corner)), 10, f"no stars on the {name}")
        game.look(0, -1500)
        rig.wait_until(lambda: screen.lit(screen.middle(game.picture())) < screen.lit(screen.middle(picture)) / 2,
                       "the view leaves the asteroid with the mouse")
        self.assertEqual(game.close(), 0)

    def test_the_options_file_is_written_whole_and_stays_as_it_is(self):
        for words, name in ((("single", "Mira"), "Mira"), ((), "Mira")):
            game = self.play(words=words)
            game.wait_for_log("core threading system")
            self.assertEqual(game.close(), 0)
            lines = [line.split(" ", 1) for line in self.options().splitlines()]
            self.assertEqual([key for key, _ in lines], OPTION_KEYS)
            values = dict(lines)
            self.assertEqual((values["PlayerName"], values["ServerURL"], values["SinglePlayer"]), (name, "single", "1"))
            self.assertEqual((values["GuiScaleX"], values["GuiScaleY"]), ("0.533333", "0.711111"))
            self.assertEqual(values.get("Flashlight"), "1")
        first = self.options()
        game = self.play()
        game.wait_for_log("core threading system")
        self.assertEqual(game.close(), 0)
        self.assertEqual(self.options(), first)

    def test_a_block_placed_by_the_main_button_is_saved_and_loaded_again(self):
        game = self.play()
        game.wait_for_asteroid()
        grown = game.save()
        self.assertIn(CENTRE, grown)
        self.assertGreaterEqual(len(grown), 2)
        self.assertTrue(all(max(abs(at - 5000) for at in place) <= 2 for place in grown), "the asteroid is too large")
        game.look(*AIM)
        game.click()
        built = game.save()
        self.assertEqual(len(built), len(grown) + 1)
        self.assertEqual({place: built.get(place) for place in grown}, grown, "other blocks changed")
        (added,) = set(built) - set(grown)
        self.assertEqual(built[added][0], 1, "the new block's material")
        self.assertEqual(game.close(), 0)

        again = self.play()
        again.wait_for_asteroid()
        self.assertNotIn("Generating asteroid", again.log())
        self.assertEqual(again.save(), built)
        self.assertEqual(again.close(), 0)

    def test_the_second_button_removes_what_the_main_button_placed(self):
        game = self.play(cores=4)
        game.wait_for_asteroid()
        grown = game.save()
        game.look(*AIM)
        game.click()
        game.settle()
        game.click(3)
        self.assertEqual(game.save(), grown)
        game.settle()
        game.click(3)
        self.assertEqual(len(game.save()), len(grown) - 1)
        self.assertNotIn("Unable to", game.log())
        self.assertEqual(game.close(), 0)

    def test_a_game_whose_output_nobody_takes_plays_on(self):
        reader, writer = os.pipe()
        os.set_blocking(writer, False)
        with contextlib.suppress(BlockingIOError):
            while True:
                os.write(writer, bytes(4096))
        os.set_blocking(writer, True)  # as the game finds it
        game = self.play(output=writer)
        os.close(writer)
        game.wait_for_asteroid()
        grown = game.save()
        game.press("F9")  # prints with the world held
        game.look(*AIM)
        game.click()
        self.assertEqual(len(game.save()), len(grown) + 1)
        os.close(reader)
        game.press("F9")
        rig.wait_until(lambda: game.alive() and game.log().count(":Shipnum 0 ") == 2, "the second dump")
        (self.root / "saves").rename(self.root / "away")
        game.press("Escape")
        game.wait_for_log("The ship could not be saved")
        self.assertEqual(game.close(), 0)
        self.assertIn("WARN: Exiting Main Thread ", game.log())

    def test_both_thread_systems_end_with_the_window(self):
        for cores, start, ends in ((2, "dual", ["2/2"]), (4, "quad", ["2/4", "3/4", "4/4"])):
            with self.subTest(cores=cores):
                game = self.play(cores=cores)
                game.wait_for_asteroid()
                self.assertIn(f"info: Starting {start} core threading system \n", game.log())
                self.assertNotIn("Exiting", game.log())
                self.assertEqual(game.close(), 0)
                expected = sorted(["WARN: Exiting Main Thread "] + [f"WARN: Exiting Thread {end} " for end in ends])
                self.assertEqual(sorted(line for line in game.log().splitlines() if "Exiting" in line), expected)

    def test_alt_f4_ends_the_game_in_order(self):
        game = self.play(cores=4)
        game.wait_for_asteroid()
        game.act("keydown", "alt", "key", "F4", "keyup", "alt")
        self.assertEqual(game.finish(), 0)
        self.assertIn("WARN: Exiting Main Thread ", game.log())


if __name__ == "__main__":
    unittest.main()
