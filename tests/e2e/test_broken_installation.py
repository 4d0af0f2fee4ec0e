"""What a damaged installation does: the log names the fault, and the game stops in order or goes on with less. It never
crashes, and its exit status is 0 in any case."""
import gzip
import os
import random
import shutil
import struct
import unittest

import rig

NO_MATERIALS = "*ERR: Unable to load Materials Array \n"
NO_COMPONENTS = "*ERR: Unable to load Components Array in main program \n"
NO_GRAPHICS = "*ERR: Unable to initialize graphics system \n"
MATERIALS, COMPONENTS = "config/text/materials", "config/text/components"
GRID, STAR, SHADER = "config/graphics/components/block.3mp", "config/graphics/stars/stars1.png", "config/shaders/MainVertShader.txt"
SOUND, SONG = "config/audio/sounds/switch.ogg", "config/audio/music/Ashenfold-Tidewheel.ogg"
RUBBISH = bytes(random.Random(1).randbytes(3000))


def remove(path):
    path.unlink()


def empty(path):
    path.write_bytes(b"")


def garble(path):
    path.write_bytes(b"x" + RUBBISH)


def halve(path):
    path.write_bytes(path.read_bytes()[:path.stat().st_size // 2])


def append(text):
    return lambda path: path.write_text(path.read_text() + text)


def replace(offset, data):
    def change(path):
        old = path.read_bytes()
        path.write_bytes(old[:offset] + data + old[offset + len(data):])
    return change


def drop_row(identifier):
    def change(path):
        lines = path.read_text().splitlines(keepends=True)
        path.write_text("".join(line for line in lines if line.split()[:1] != [identifier]))
    return change


def lines_of(path):
    return len((rig.ROOT / path).read_text().splitlines())


class BrokenInstallation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.display = cls.enterClassContext(rig.virtual_display())

    def start(self, path, change):
        root = self.enterContext(rig.installation())
        change(root / path)
        return self.enterContext(rig.Game(root, self.display))

    def stops(self, cases):
        for path, change, words in cases:
            with self.subTest(path=path, words=words):
                game = self.start(path, change)
                self.assertEqual(game.finish(), 0)
                rig.in_order(self, game.log(), words)
                self.assertNotIn("threading system", game.log())

    def goes_on(self, cases):
        for path, change, words in cases:
            with self.subTest(path=path, words=words):
                game = self.start(path, change)
                game.wait_for_log("core threading system")
                rig.in_order(self, game.log(), words)
                self.assertEqual(game.close(), 0)

    def test_unreadable_tables_stop_the_start_and_are_named(self):
        last_material, last_component = lines_of(MATERIALS) + 1, lines_of(COMPONENTS) + 1
        self.stops([
            (MATERIALS, remove, ["*ERR: Unable to open Materials file \n", NO_MATERIALS]),
            (MATERIALS, append("7 1 2 3\n"), [f"info: Error in Materials file on line {last_material} \n", NO_MATERIALS]),
            (MATERIALS, garble, ["info: Error in Materials file on line 1 \n", NO_MATERIALS]),
            (COMPONENTS, remove, ["*ERR: Unable to open Components file \n", NO_COMPONENTS]),
            (COMPONENTS, append("5 5 five\n"), [f"info: Error in Components file on line {last_component} \n", NO_COMPONENTS]),
            (COMPONENTS, garble, ["info: Error in Components file on line 1 \n", NO_COMPONENTS]),
            (COMPONENTS, drop_row("900"), ["*ERR: Could not locate Melting or Solidifying blocks \n"]),
        ])

    def test_unreadable_grids_and_shaders_stop_the_start_and_are_named(self):
        self.stops([
            (GRID, remove, [f"*ERR: {GRID} - Unable to open Component Graphic file \n", "*ERR: Couldn't load graphics file \n",
                            NO_COMPONENTS]),
            (GRID, replace(0, b"4MP"), ["*ERR: Component Graphic file not in 3MP format! \n",
                                        "*ERR: Couldn't load graphics file \n", NO_COMPONENTS]),
            (SHADER, remove, ["*ERR: Cannot open shader file \n", "*ERR: Couldn't compile shader! \n",
                              "*ERR: Unable to initialize 3D shaders \n", NO_GRAPHICS]),
            (SHADER, halve, ["*ERR: Couldn't compile shader! \n", "*ERR: Unable to initialize 3D shaders \n", NO_GRAPHICS]),
            ("config/shaders/2DFragShader.txt", empty, ["*ERR: Unable to initialize 2D shaders \n", NO_GRAPHICS]),
        ])

    def test_smaller_faults_are_named_and_the_game_goes_on(self):
        self.goes_on([
            (GRID, replace(3, b"\3"), ["WARN: Version number of Graphic File is not one that I recognize."]),
            (GRID, replace(7, b"\x20"), ["WARN: File is the wrong size. I'll try to import anyway"]),
            (STAR, remove, ["*ERR: Unable to open png file \n"]),
            (STAR, halve, ["*ERR: PNG IO error \n"]),
            (STAR, garble, []),
            (SOUND, remove, ["WARN: Could not make audio buffer from file \n", "WARN: Could not load audio files \n"]),
            (SOUND, garble, ["WARN: Could not load audio files \n"]),
            ("config/audio/music", shutil.rmtree, ["*ERR: Cannot open music directory \n", "WARN: Could not load music files \n"]),
            (SONG, garble, ["info: Playing song ", "*ERR: Cannot stream song \n"]),
            (SONG, halve, ["info: Playing song "]),
            ("config/language/english", remove, ["*ERR: Could not open language file! \n"]),
            ("config/language/english", halve, []),
            ("config/text/options", lambda path: path.write_bytes(b"FOV 90\n" + RUBBISH), ["Unknown option on line"]),
        ])

    def test_a_damaged_ship_is_loaded_as_far_as_it_goes(self):
        root = self.enterContext(rig.installation())
        ship = root / "saves/Default.sts"
        with rig.Game(root, self.display) as game:
            game.wait_for_picture()
            whole = game.save()
            self.assertEqual(game.close(), 0)
        content, packed = gzip.decompress(ship.read_bytes()), ship.read_bytes()
        wrong_rows = struct.pack("<7H", 999, 999, 999, 1, 0x7fff, 0x3fff, 999)
        wrong_group = struct.pack("<4H", 1000, 0, 0, 1) + bytes(6)
        wrong_count = struct.pack("<4H", 999, 999, 999, 1001) + RUBBISH
        of_ship, no_ship = "WARN: Ship file saves/Default.sts ", "*ERR: saves/Default.sts is not a ship file \n"
        nothing_of = "It stays as it is, and this ship will be saved as Default 2."
        damages = [  # what is damaged, the file, what the log says, how many blocks are left
            ("an entry cut in two", gzip.compress(content[:-3]), of_ship + "is cut short", len(whole) - 1),
            ("rows past the tables", gzip.compress(content + wrong_rows), of_ship + "has blocks that the tables don't", len(whole) + 1),
            ("a chunk outside", gzip.compress(content + wrong_group), of_ship + "has blocks outside every ship", len(whole)),
            ("an impossible count", gzip.compress(content + wrong_count), of_ship + "has a chunk with an imp", len(whole)),
            ("a file cut in two", packed[:len(packed) // 2], of_ship + "is damaged", None),
            ("rubbish", RUBBISH, no_ship, nothing_of), ("nothing", b"", no_ship, nothing_of), ("no drive", None, "", nothing_of)]
        for name, data, words, expected in damages:
            ship.unlink()
            (root / "saves/Default 2.sts").unlink(missing_ok=True)
            if data is None:
                ship.symlink_to("/nowhere/at/all.sts")
            else:
                ship.write_bytes(data)
                os.utime(ship, (0, 0))
            with self.subTest(name), rig.Game(root, self.display) as game:
                game.wait_for_log("core threading system")
                self.assertIn(words, game.log())
                self.assertIn("Msg: Default.sts ", game.log(), "the player is told")
                if expected is nothing_of:  # an asteroid, under another name
                    self.assertIn(nothing_of, game.log())
                    self.assertGreater(len(game.save("Default 2")), 1)
                    self.assertTrue(ship.is_symlink() if data is None else ship.read_bytes() == data)
                else:
                    kept = game.save()
                    self.assertIn(f" {len(kept)} blocks were read", game.log())
                    self.assertEqual(len(kept), len(kept) if expected is None else expected)
                self.assertEqual(game.close(), 0)
        self.assertFalse(list((root / "saves").glob("*.bak")), "none of them is a backup")


if __name__ == "__main__":
    unittest.main()
