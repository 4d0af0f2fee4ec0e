"""The screens, worked as a player does: with the mouse on their controls. Judged by the options file, the ships, the log and
by what stands on the screen."""
import os
import shutil
import time
import unittest

import rig
from rig import ROOT, screen

# Where things stand, in design units from the middle of the window.
RESUME, NAME_SHIP, OPTIONS, QUIT, SHIPS = (0, 400), (0, -200), (0, 200), (0, -400), (0, 0)
GRAPHICS, GAME, MOUSE, SOUND, OTHER, APPLY = (-700, 450), (-350, 450), (0, 450), (350, 450), (700, 450), (0, -450)
LOAD, CANCEL, BACKUPS, LANGUAGES = (-175, -400), (175, -400), (-600, 400), (650, -400)
MATERIAL_TAB, COMPONENT_TAB, ROTATION_SWITCH = (-680, 450), (-380, 458), (600, -380)


class Player:
    """A game whose menus are worked by mouse."""

    def __init__(self, game, size=(1024, 768)):
        self.game, self.size = game, size
        self.scale = min(size[0] / 1920, size[1] / 1080)

    def point(self, place):
        x, y = place
        self.game.act("mousemove", round(self.size[0] / 2 + x * self.scale), round(self.size[1] / 2 - y * self.scale), "sleep", 0.1)

    def still(self, seconds=0.4, most=4):
        """Waits until the picture has stood still for that long: a busy machine takes its time for a frame."""
        end, last, since = time.monotonic() + most, self.game.picture(), time.monotonic()
        while time.monotonic() < min(end, since + seconds):
            time.sleep(0.05)
            picture = self.game.picture()
            if screen.changed(last, picture) >= 50:
                last, since = picture, time.monotonic()

    def act(self, deed, patience=2):
        """Does it, and waits until it shows; what changes nothing takes all of the patience."""
        before, end = self.game.picture(), time.monotonic() + patience
        deed()
        while time.monotonic() < end and screen.changed(before, self.game.picture()) < 50:
            time.sleep(0.05)
        self.still()

    def click(self, *places):
        for place in places:
            self.point(place)
            self.still()
            self.act(self.game.click)

    def key(self, *keys):
        for key in keys:
            self.act(lambda: self.game.press(key))

    def wheel(self, notches):
        for _ in range(abs(notches)):
            self.game.act("click", 4 if notches > 0 else 5, "sleep", 0.05)
        self.still()

    def type(self, text):
        self.game.act("type", "--delay", 120, text)
        self.still(most=2)


def slider(y, left=-305, right=305):
    """Its left arrow, its right arrow, and its track on either side of the knob."""
    middle = (left + right) // 2
    return {"less": (left, y), "more": (right, y), "far less": (middle - 225, y), "far more": (middle + 225, y)}


# Visit by visit: the tab, and on it the control that is clicked, its option, and the option's value in the file after Apply.
VISITS = [
    (GRAPHICS, [((305, 350), "FullScreen", "1")]),
    (GRAPHICS, [((305, 350), "FullScreen", "0"), ((-305, 350), "HighQualityTransparency", "0"),
                ((-305, 250), "HighQualityFlashlight", "1"), ((305, 250), "LevelOfDetail", "0"),
                (slider(150)["more"], "AntiAliasing", "4"), (slider(50)["less"], "MaxVoxels", "950000"),
                (slider(-50)["more"], "CachePerFrame", "100"), (slider(-150)["more"], "FOV", "80")]),
    (GRAPHICS, [(slider(150)["far less"], "AntiAliasing", "0"), (slider(50)["far less"], "MaxVoxels", "850000")]),
    (GAME, [((-305, 350), "Crosshair", "0"), ((305, 350), "ShowReticle", "0"), (slider(250)["less"], "InertialDampening", "0.9")]),
    (MOUSE, [((-500, 350), "InvertMouse", "0"), (slider(350, -5, 605)["more"], "MouseSensitivity", "0.06")]),
    (SOUND, [((150, 300), "DisableSound", "1"), (slider(100)["less"], "SoundVolume", "0.99"),
             (slider(-100)["far more"], "MusicVolume", "0.72")]),
    (OTHER, [((0, 250), "ThreadedInput", "1")]),
]


class Menus(unittest.TestCase):
    def setUp(self):
        self.root = self.enterContext(rig.installation())
        self.display = self.enterContext(rig.virtual_display())
        (self.root / "config/text/options").write_text("Tutorial 0\nEnd 0\n")

    def play(self):
        game = self.enterContext(rig.Game(self.root, self.display))
        game.wait_for_asteroid()
        return Player(game)

    def options(self):
        return dict(line.split(" ", 1) for line in (self.root / "config/text/options").read_text().splitlines())

    def files(self):
        return sorted(path.name for path in (self.root / "saves").iterdir())

    def close(self, player):
        self.assertEqual(player.game.close(), 0)

    def assertOption(self, name, value):
        found = self.options()[name]
        if found != value:
            self.assertAlmostEqual(float(found), float(value), places=3, msg=name)

    def test_every_option_is_changed_by_its_control_and_found_again_after_a_restart(self):
        player, expected = self.play(), {}
        for tab, controls in VISITS:
            player.key("Escape")
            player.click(OPTIONS)
            if tab != GRAPHICS:
                player.click(tab)
            player.click(*[place for place, _, _ in controls], APPLY)
            for _, name, value in controls:
                expected[name] = value
                self.assertOption(name, value)
        self.assertEqual(self.options()["EightCache"] + self.options()["QuadCache"], "00", "they go with LevelOfDetail")
        self.close(player)
        player = self.play()
        self.close(player)
        for name, value in expected.items():
            self.assertOption(name, value)

    def test_restore_brings_the_graphics_back_and_fly_through_is_for_this_game_only(self):
        (self.root / "config/text/options").write_text("Tutorial 0\nFOV 90\nMaxVoxels 300000\nLevelOfDetail 0\nEnd 0\n")
        player = self.play()
        player.key("Escape")
        player.click(OPTIONS, (650, -320), OTHER, (0, 0), APPLY)
        for name, value in (("FOV", "75"), ("MaxVoxels", "1000000"), ("LevelOfDetail", "1"), ("EightCache", "1")):
            self.assertOption(name, value)
        self.close(player)

    def test_escape_leaves_no_option_screen_before_apply(self):
        player = self.play()
        player.key("Escape")
        player.click(OPTIONS)
        there = player.game.picture()
        player.key("Escape")
        self.assertLess(screen.changed(there, player.game.picture()), 500, "Escape left the options")
        player.click(APPLY)
        self.assertGreater(screen.changed(there, player.game.picture()), 5000, "Apply did not")
        player.key("Escape")
        player.point(QUIT)
        player.game.click()
        self.assertEqual(player.game.finish(), 0)

    def test_a_block_of_the_chosen_component_and_material_is_placed(self):
        player = self.play()
        grown = player.game.save()
        player.key("q")
        player.click((-690, 284))                    # the first category opens
        player.click((-570, 284 - 42))               # its first component
        player.click(MATERIAL_TAB, (-690, 284), (-570 + 290, 284 - 42))
        player.key("q")
        player.game.look(60, -60)
        player.game.click()
        built = player.game.save()
        (added,) = set(built) - set(grown)
        material, component = built[added][:2]
        self.assertNotEqual((material, component), (1, 1))
        self.assertGreater(material, 1, "the material is as it was")
        player.key("q")
        there = player.game.picture()
        player.click(COMPONENT_TAB)
        self.assertGreater(screen.changed(there, player.game.picture()), 1000, "the other tab shows the same")
        player.wheel(-5)
        player.wheel(5)
        player.key("Down", "Up", "Next", "Prior", "q")
        self.close(player)

    def test_the_list_of_ships_loads_the_showpiece(self):
        shutil.copy(ROOT / "saves/Showpiece.sts", self.root / "saves/Showpiece.sts")
        (self.root / "saves/.hidden.sts").write_text("")
        (self.root / "saves/notes.txt").write_text("")
        player = self.play()
        before = player.game.picture()
        player.key("Escape")                         # writes Default.sts
        rig.wait_until(lambda: "Default.sts" in self.files(), "the menu writes saves/Default.sts")
        player.click(SHIPS)
        names = [entry for entry in os.listdir(self.root / "saves") if entry.endswith("sts") and not entry.startswith(".")]
        player.click(LOAD)                           # nothing is chosen yet: nothing may happen
        player.click((0, 350 - 40 * names.index("Showpiece.sts")), LOAD)
        rig.wait_until(lambda: screen.changed(before, player.game.picture()) > 20000, "the showpiece stands on the screen")
        self.assertNotIn("*ERR", player.game.log())
        self.close(player)

    def test_another_language_changes_the_words_and_is_kept(self):
        player = self.play()
        player.key("Escape")
        words = player.game.picture()
        player.click(SHIPS, CANCEL, LANGUAGES)       # back on the pause menu, and on from there
        names = [entry for entry in os.listdir(self.root / "config/language") if not entry.startswith(".")]
        player.click((0, 440 - 42 * (names.index("deutsch") + 1)))
        self.assertEqual(self.options()["Language"], "deutsch")
        player.click((0, -100))                      # play
        player.key("Escape")
        self.assertGreater(screen.changed(words, player.game.picture()), 200, "the words are the same")
        self.assertEqual(player.game.log().count("Successfully loaded language file!"), 2)
        self.close(player)

    def test_a_ship_with_a_new_name_has_a_new_file_and_flies_again_at_the_next_start(self):
        player = self.play()
        player.key("Escape")
        player.click(NAME_SHIP)
        player.type("Heron of Dusk")
        player.key("BackSpace")
        player.key("Return")
        player.key("Escape")
        rig.wait_until(lambda: any(name.endswith("Heron of Dus.sts") for name in self.files()), f"a file of the new name: {self.files()}")
        heron = self.root / "saves" / next(n for n in self.files() if "Heron" in n)
        self.assertTrue(rig.read_ship(heron))
        self.close(player)
        default = self.root / "saves/Default.sts"
        before = heron.stat().st_mtime_ns, default.stat().st_mtime_ns
        player = self.play()
        player.key("Escape")
        rig.wait_until(lambda: heron.stat().st_mtime_ns != before[0], "Escape saves the ship of the last start")
        self.assertEqual(default.stat().st_mtime_ns, before[1])
        self.close(player)
        heron.rename(self.root / "saves/Heron.kept")
        player = self.play()
        self.assertIn("The ship you flew last is gone: " + heron.stem, player.game.log())
        player.key("Escape")
        rig.wait_until(lambda: default.stat().st_mtime_ns != before[1], "Default flies in its place")
        self.close(player)
        self.assertEqual((self.root / "config/text/settings").read_text(), f"Ship {heron.stem}\n", "its file may come back")


if __name__ == "__main__":
    unittest.main()
