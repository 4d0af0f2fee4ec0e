"""shot.py FILE.png GAME [WORD...]: starts the game on a virtual display, waits until the world stands on the screen, saves a
picture of it and closes the window. Exit status 0 when the picture is written and shows something, and the game ended in
order. Run in the installation's folder."""
import subprocess
import sys
import tempfile
import time

import screen

WAIT = 120        # seconds until the world must stand
ENOUGH = 400      # lit pixels; the stars alone are more
LOG = "errors.txt"


def fail(text):
    print(text, file=sys.stderr)
    return 1


def threads_run(said):
    said.seek(0)
    return "core threading system" in said.read()


def wait_for_world(display, game, said):
    """The first picture that is lit, and as much as in the two before; None when the game ends or time is up."""
    end = time.monotonic() + WAIT
    seen = []
    while time.monotonic() < end and game.poll() is None:
        time.sleep(0.5)
        if not threads_run(said):
            continue
        picture = screen.take_picture(display)
        seen = seen[-2:] + [screen.lit(picture)]
        if len(seen) == 3 and min(seen) >= ENOUGH and max(seen) <= 1.02 * min(seen):
            return picture
    return None


def close_game(display, game):
    window = screen.find_window(display)
    if window is not None:
        screen.close_window(display, window)
    try:
        return game.wait(timeout=20) == 0
    except subprocess.TimeoutExpired:
        return False


def main():
    if len(sys.argv) < 3:
        return fail(__doc__)
    path = sys.argv[1]
    said = tempfile.TemporaryFile("w+", errors="replace")
    display = screen.start_display()
    game = None
    try:
        game = subprocess.Popen(sys.argv[2:], env=display.environment(TARNVALE_SAVING="0"), stdout=said)  # a picture changes nothing
        picture = wait_for_world(display, game, said)
        if picture is None:
            ended = game.poll() is not None
            return fail(f"The game ended before it drew its world; {LOG} tells why." if ended
                        else f"The world did not appear within {WAIT} seconds; {LOG} tells how far the game came.")
        screen.write_png(picture, path)
        if not close_game(display, game):
            return fail("The picture is written, but the game did not end in order.")
        print(f"{path}: {picture.width} x {picture.height}")
        return 0
    except OSError as error:
        return fail(str(error))
    finally:
        if game is not None and game.poll() is None:
            game.kill()
        screen.stop_display(display)


sys.exit(main())
