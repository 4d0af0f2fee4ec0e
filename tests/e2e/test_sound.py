"""What a player hears: the sound library writes it to a file, and each sound is known there by its time, its bands and its
loudness."""
import time
import unittest

import hearing
import rig
import test_menus
from hearing import level, loudest

AIM = (60, -60)  # from the corner that the view first meets to a face on which a block has room
QUIET = -44      # dB: more than breath in the helmet ever reaches


class Sounds(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(rig.virtual_display())

    def play(self, root, **options):
        """A game with these options, numbers with a point, that records what it plays."""
        lines = [f"{key} {value}\n" for key, value in options.items()]
        (root / "config/text/options").write_text("".join(["SwitchToFloat 1\n", *lines]))
        recording = hearing.Recording(root)
        return self.enterContext(rig.Game(root, self.display, cores=4, environment=recording.environment())), recording

    def heard(self, recording, start, seconds):
        rig.wait_until(lambda: recording.now() > start + seconds + 0.1, "the recording goes on")
        return hearing.frames(recording.samples(start, start + seconds))

    def silent(self, spectra, most=QUIET):
        self.assertLess(max(level(lines) for lines in spectra), most)

    def finish(self, game, recording):
        self.assertLess(recording.peak(), 0.89, "the sound clips, or nearly so")
        self.assertEqual(game.close(), 0)

    def place_and_listen(self, sound_class):
        """Spectra from a moment before a block of this class is placed, each 46 ms long."""
        root = self.enterContext(rig.installation())
        table = root / "config/text/materials"
        rows = table.read_text().splitlines()
        first = next(at for at, row in enumerate(rows) if not row.startswith("#"))
        words = rows[first].split()
        rows[first] = " ".join(words[:15] + [sound_class] + words[16:])
        table.write_text("\n".join(rows) + "\n")
        game, recording = self.play(root, MusicVolume="0.0")
        game.wait_for_asteroid()
        game.look(*AIM)
        before = recording.now()
        time.sleep(0.6)
        start = recording.now()
        game.click()
        self.silent(self.heard(recording, before, 0.5))
        spectra = self.heard(recording, start, 3)
        self.silent(spectra[-10:])
        self.finish(game, recording)
        return spectra

    def test_each_kind_of_block_sounds_like_what_it_is(self):
        # Bands in which most of the sound lies, and whether the tones of metal ring on after a third of a second.
        for sound_class, low, high, rings in (("organic", 20, 300, False), ("plastic", 250, 1000, False),
                                              ("crystal", 1200, 9000, False), ("magnetic", 380, 2800, True)):
            with self.subTest(sound_class=sound_class):
                spectra = self.place_and_listen(sound_class)
                at = loudest(spectra)
                self.assertGreater(level(spectra[at]), -34)
                self.assertLess(level(spectra[at]), -12)
                struck = hearing.mean(spectra[at - 1:at + 3])
                self.assertGreater(hearing.power(struck, low, high) / hearing.power(struck), 0.5)
                tail = hearing.mean(spectra[at + 7:at + 10])
                self.assertEqual(level(tail, 1060, 1130) > -54, rings)

    def test_a_class_without_a_sound_is_silent(self):
        self.silent(self.place_and_listen("cheese"))

    def hold_until_heard(self, game, recording, key, band, seconds):
        """Holds the key for so long after it has been heard. Gives times just before it went down and up."""
        start = recording.now()
        game.act("keydown", key)
        rig.wait_until(lambda: game.alive() and any(level(lines, *band) > -41 for lines in hearing.frames(recording.samples(start))),
                       f"{key} is heard")
        time.sleep(seconds)
        end = recording.now()
        game.act("keyup", key)
        return start, end

    def test_the_clamp_closes_and_opens_at_its_two_pitches(self):
        root = self.enterContext(rig.installation())
        # A shell close round the player, who always has a wall in reach.
        shell = {(x, y, z) for x in range(4998, 5002) for y in range(4998, 5002) for z in range(5004, 5008)}
        shell -= {(x, y, z) for x in (4999, 5000) for y in (4999, 5000) for z in (5005, 5006)}
        rig.write_ship(root / "saves/Default.sts", dict.fromkeys(shell, 1))
        game, recording = self.play(root, MusicVolume="0.0", InertialDampening="0.0")
        game.wait_for_log("core threading system")
        time.sleep(2)
        self.silent(self.heard(recording, recording.now() - 1, 0.8))
        start, end = self.hold_until_heard(game, recording, "space", (500, 2500), 1)
        for first, last, pitch in ((start, end, 16), (end, end + 3, 14)):
            # Its strongest ring has 66.5 Hz as it was recorded.
            spectra = self.heard(recording, first, last - first)
            at = loudest(spectra, 500, 2500)
            lines = hearing.mean(spectra[at:at + 3])
            ring = max(range(40, 56), key=lambda line: lines[line]) * hearing.RATE / hearing.FRAME
            self.assertAlmostEqual(ring / 66.5, pitch, delta=0.6)
        self.finish(game, recording)

    def test_the_jets_start_and_go_on_without_a_hole_and_stop(self):
        game, recording = self.play(self.enterContext(rig.installation()), MusicVolume="0.0", InertialDampening="0.0")
        game.wait_for_asteroid()
        start, end = self.hold_until_heard(game, recording, "s", (700, 6000), 3)
        spectra = self.heard(recording, start, end - start + 4)
        levels = [level(lines, 700, 6000) for lines in spectra]
        loud = [at for at, value in enumerate(levels) if value > -46]
        steady = levels[loud[0] + 8:loud[-1] - 8]
        self.assertGreater(len(steady), 40)
        self.assertGreater(min(steady), -46, "a hole in the sound of the jets")
        self.assertLess(max(steady) - min(steady), 10)
        self.silent(spectra[:loud[0] - 4] + spectra[loud[-1] + 14:])
        self.finish(game, recording)

    def test_the_first_song_opens_the_game_at_its_volume(self):
        loudness = {}
        for volume in ("0.7", "0.3", "0.19"):
            with self.subTest(volume=volume):
                game, recording = self.play(self.enterContext(rig.installation()), MusicVolume=volume, SoundVolume="0.0")
                game.wait_for_log("core threading system")
                spectra = self.heard(recording, recording.now() + 8, 8)
                loudness[volume] = level(hearing.mean(spectra))
                # The song stands on D: 73.4 Hz.
                if volume != "0.19":
                    self.assertIn("info: Playing song ", game.log())
                    self.assertGreater(level(hearing.mean(spectra), 60, 100), loudness[volume] - 12)
                self.finish(game, recording)
        self.assertLess(loudness["0.19"], -80)
        self.assertGreater(loudness["0.7"], -42)
        self.assertAlmostEqual(loudness["0.7"] - loudness["0.3"], 7.4, delta=1.5)

    def test_a_click_in_the_menu_is_heard_and_its_slider_quietens_the_song(self):
        game, recording = self.play(self.enterContext(rig.installation()), MusicVolume="0.21")
        game.wait_for_asteroid()
        player = test_menus.Player(game)
        player.key("Escape")
        player.point(test_menus.OPTIONS)
        start = recording.now()
        player.act(game.click)
        spectra = self.heard(recording, start, 3)
        at = loudest(spectra, 1000, 6000)
        self.assertGreater(level(spectra[at], 1000, 6000), -46)
        for lines in spectra[:at - 1] + spectra[at + 4:]:
            self.assertLess(level(lines, 1000, 6000), level(spectra[at], 1000, 6000) - 8)
        player.click(test_menus.SOUND)
        before = hearing.mean(self.heard(recording, recording.now(), 5))
        player.point(test_menus.slider(-100)["far less"])
        for _ in range(10):
            player.act(game.click)
        after = hearing.mean(self.heard(recording, recording.now() + 1, 5))
        self.assertGreater(level(before, 60, 200) - level(after, 60, 200), 12)
        self.finish(game, recording)

    def test_without_a_device_the_game_is_silent_and_goes_on(self):
        game = self.enterContext(rig.Game(self.enterContext(rig.installation()), self.display, cores=4,
                                          environment={"ALSOFT_DRIVERS": "none"}))
        game.wait_for_log("core threading system")
        rig.in_order(self, game.log(), ["info: Sound Devices 0 \n", "WARN: Could not initialize sound device \n",
                                        "WARN: Unable to initialize sound system \n", "info: Starting quad core"])
        game.hold("w", 1)
        game.click()
        self.assertEqual(game.close(), 0)
        self.assertNotIn("Playing song", game.log())


if __name__ == "__main__":
    unittest.main()
