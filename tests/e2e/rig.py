"""The real game in a temporary installation on a virtual display, played through the keyboard and the mouse, and judged by
its log, by the files that it writes and by what stands on the screen.

TARNVALE_GAME is the program under test, TARNVALE_ROOT the checkout whose config/ is copied."""
import contextlib
import gzip
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(os.environ.get("TARNVALE_ROOT", Path(__file__).resolve().parents[2]))
GAME = os.environ.get("TARNVALE_GAME", str(ROOT / "build/release/src/core/tarnvale"))
PATIENCE = float(os.environ.get("TARNVALE_PATIENCE", "60"))  # seconds until anything that must happen has happened
SANITIZERS = {"ASAN_OPTIONS": "detect_leaks=0", "UBSAN_OPTIONS": "print_stacktrace=1",
              "TSAN_OPTIONS": f"suppressions={ROOT}/tests/e2e/tsan.supp exitcode=66"}

sys.path.insert(0, str(ROOT / "tools"))
import screen  # noqa: E402  (stands beside ./play's own script)


@contextlib.contextmanager
def installation():
    """A copy of config/ without options and settings, and empty saves/ and cache/; gone when the block ends."""
    with tempfile.TemporaryDirectory(prefix="tarnvale-e2e-") as folder:
        root = Path(folder)
        shutil.copytree(ROOT / "config", root / "config")
        for own in ("options", "settings"):
            (root / "config/text" / own).unlink(missing_ok=True)
        (root / "saves").mkdir()
        (root / "cache").mkdir()
        yield root


@contextlib.contextmanager
def virtual_display():
    display = screen.start_display()
    try:
        yield display
    finally:
        screen.stop_display(display)


def wait_until(condition, what, patience=PATIENCE):
    """The first true result of condition(), or an AssertionError that says what did not happen."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.1)
    raise AssertionError(f"not within {patience:.0f} s: {what}")


class Game:
    """One run of the game. Ended by close(), or killed at the end of the with block. What it prints goes to output.txt, or
    where output says."""

    def __init__(self, root, display, cores=2, words=(), environment=None, output=None, number=""):
        """number: "2" for a second one beside another in the folder."""
        self.root, self.display = Path(root), display
        self.log_file, self.output_file = self.root / f"errors{number}.txt", self.root / f"output{number}.txt"
        with contextlib.suppress(FileNotFoundError):
            self.log_file.unlink()
        self.output = open(self.output_file, "w+", errors="replace")
        self.process = subprocess.Popen([GAME, *words], cwd=root, stdout=self.output if output is None else output,
                                        stderr=self.output, env=display.environment(TARNVALE_CORES=str(cores), **SANITIZERS) | (environment or {}))

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        if kind is not None:
            print(f"--- errors.txt\n{self.log()}\n--- output (end)\n{self.said()[-4000:]}", file=sys.stderr)
        self.output.close()

    # What it tells.

    def log(self):
        try:
            return self.log_file.read_text(errors="replace")
        except FileNotFoundError:
            return ""

    def said(self):
        return self.output_file.read_text(errors="replace")

    def alive(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the game ended with {self.process.returncode}")
        return True

    def wait_for_log(self, text):
        wait_until(lambda: text in self.log() or not self.alive(), f'log line "{text}"')

    def picture(self):
        return screen.take_picture(self.display)

    def wait_for_picture(self, share=0.0):
        """The first steady picture of which the middle is lit by at least this share: stars are under 0.02, a rock is over 0.2."""
        self.wait_for_log("core threading system")
        counts = []

        def steady():
            self.alive()
            picture = self.picture()
            counts.append(screen.lit(picture))
            last, core = counts[-3:], screen.middle(picture, 0.2)
            lit = screen.lit(core) >= share * core.width * core.height
            return picture if lit and len(last) == 3 and min(last) > 400 and max(last) <= 1.02 * min(last) else None

        return wait_until(steady, f"a steady picture with a middle lit by {share}")

    def wait_for_asteroid(self):
        return self.wait_for_picture(0.2)

    # What is done to it.

    def act(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.display.environment(), check=True, stdout=subprocess.DEVNULL)

    def press(self, key):
        self.act("keydown", key, "sleep", 0.05, "keyup", key)

    def hold(self, key, seconds):
        self.act("keydown", key, "sleep", seconds, "keyup", key)

    def click(self, button=1):
        """Down and up at once: on a slow machine the game would take two frames of holding for a second block."""
        self.act("mousedown", button, "mouseup", button)

    def look(self, right, down):
        """Turns the view, in pixels of the mouse, a step for each frame."""
        while right or down:
            dx, dy = max(-60, min(60, right)), max(-60, min(60, down))
            self.act("mousemove_relative", "--", dx, dy, "sleep", 0.1)
            right, down = right - dx, down - dy
        self.settle()

    def settle(self, most=5):
        """Until the picture stands still: a busy machine may be frames behind. What moves all the time settles after most s."""
        end, last = time.monotonic() + most, self.picture()
        while time.monotonic() < end:
            time.sleep(0.1)
            picture = self.picture()
            if screen.changed(last, picture) < 50:
                return
            last = picture

    def save(self, stem="Default"):
        """Opens the menu, which writes the ship, and leaves it again. Returns the blocks that were written."""
        path = self.root / f"saves/{stem}.sts"
        before = path.stat().st_mtime_ns if path.exists() else 0
        self.press("Escape")
        wait_until(lambda: self.alive() and path.exists() and path.stat().st_mtime_ns != before, "the menu writes saves/Default.sts")
        time.sleep(0.2)
        self.press("Escape")
        time.sleep(0.2)
        return read_ship(path)

    def finish(self):
        """The exit status of a game that has ended or is about to."""
        try:
            return self.process.wait(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            raise AssertionError("the game does not end") from None

    def close(self):
        self.alive()
        screen.close_window(self.display, screen.find_window(self.display))
        return self.finish()


def read_ship(path):
    """The blocks of a stream ship, {(x, y, z): (material row, component row, rotation, rotation2)}, and its form checked to
    the last bit: order of the groups and entries, counts, unused bits, no rest."""
    data = gzip.decompress(Path(path).read_bytes())
    version, length = data[0], data[1]
    assert version == 1 and length <= 64 and data[2 + length] == 0, "header"
    at, blocks, last_group = 3 + length, {}, (-1, -1, -1)
    while at < len(data):
        mega, sup, chunk, count = struct.unpack_from("<4H", data, at)
        assert max(mega, sup, chunk) < 1000 and 1 <= count <= 1000, f"group at {at}"
        assert (mega, sup, chunk) > last_group, f"order of groups at {at}"
        at, last_group, last_block = at + 8, (mega, sup, chunk), -1
        for _ in range(count):
            shape, component, block = struct.unpack_from("<3H", data, at)
            assert shape < 1 << 15 and component < 1 << 14 and last_block < block < 1000, f"entry at {at}"
            at, last_block = at + 6, block
            levels = (mega, sup, chunk, block)
            place = tuple(sum(level // 10 ** axis % 10 * 10 ** (3 - n) for n, level in enumerate(levels)) for axis in range(3))
            blocks[place] = (shape >> 5 & 1023, component, shape & 7, shape >> 3 & 3)
    return blocks


def write_ship(path, blocks, rotation=0):
    """A stream ship of these blocks, {(x, y, z): component row}, of the first material. Without a rotation they are unseen."""
    chunks = {}
    for place, component in sorted(blocks.items()):
        levels = [sum(at // step % 10 * 10 ** axis for axis, at in enumerate(place)) for step in (1000, 100, 10, 1)]
        chunks.setdefault(tuple(levels[:3]), []).append(struct.pack("<3H", 1 << 5 | rotation, component, levels[3]))
    groups = [struct.pack("<4H", *group, len(entries)) + b"".join(entries) for group, entries in chunks.items()]
    Path(path).write_bytes(gzip.compress(bytes([1, 0, 0]) + b"".join(groups)))


def in_order(test, log, lines):
    """Every text of lines stands in the log, each behind the one before it."""
    at = 0
    for line in lines:
        found = log.find(line, at)
        test.assertGreaterEqual(found, 0, f'"{line}" is missing, or before its time')
        at = found + len(line)
