"""Walks through every screen of the game and puts their pictures on one sheet: screens.py FILE.png [WIDTHxHEIGHT [LANGUAGE]].
The game is the one that the tests play, build/release unless TARNVALE_GAME names another."""
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "tools"), str(ROOT / "tests/e2e")]
import rig  # noqa: E402
import screen  # noqa: E402
import test_menus as menus  # noqa: E402


def walk(root, display, size, language, folder):
    shots = []

    def shot(name):
        time.sleep(0.5)
        player.still()
        shots.append(str(folder / f"{name}.png"))
        screen.write_png(player.game.picture(), shots[-1])

    with rig.Game(root, display) as game:
        game.wait_for_asteroid()
        player = menus.Player(game, size)
        shot("play")
        player.key("F1", "Escape")
        shot("pause")
        player.click(menus.OPTIONS)
        shot("graphics")
        for name, tab in (("game", menus.GAME), ("mouse", menus.MOUSE), ("sound", menus.SOUND), ("other", menus.OTHER)):
            player.click(tab)
            shot(name)
        player.click(menus.APPLY)
        player.key("Escape")
        player.click(menus.SHIPS)
        shot("ships")
        player.click(menus.BACKUPS)
        shot("backups")
        player.click(menus.CANCEL, menus.CANCEL, menus.LANGUAGES)
        shot("languages")
        names = [entry.name for entry in (root / "config/language").iterdir() if not entry.name.startswith(".")]
        player.click((0, 440 - 42 * (names.index(language) + 1)))
        shot("title")
        player.key("Escape", "Escape")
        player.click(menus.NAME_SHIP)
        player.type(" Heron")
        shot("naming")
        player.key("Return", "q")
        player.click((-690, 284))
        shot("components")
        player.click(menus.MATERIAL_TAB, (-690, 284))
        shot("materials")
        player.key("q", "t")
        player.type("Hello")
        shot("chat")
    return shots


def main(path, size="1024x768", language="english"):
    width, height = map(int, size.split("x"))
    display = screen.start_display(width, height)
    try:
        with rig.installation() as root, tempfile.TemporaryDirectory() as folder:
            (root / "config/text/options").write_text(
                f"ScreenWidth {width}\nScreenHeight {height}\nSwitchToFloat 0\nSwitchToChar 0\nLanguage {language}\nEnd 0\n")
            shutil.copy(ROOT / "saves/Showpiece.sts", root / "saves")
            shutil.copy(ROOT / "saves/Showpiece.sts", root / "saves/Showpiece2026-11-20.bak")
            shots = walk(root, display, (width, height), language, Path(folder))
            subprocess.run(["montage", *shots, "-geometry", "640x480+3+3", "-tile", "3x", "-background", "#101010", path], check=True)
    finally:
        screen.stop_display(display)


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(*sys.argv[1:])
