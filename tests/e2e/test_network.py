"""The server and real games on one machine, each game on a display of its own: they see each other, build together and talk;
what one of them built outlives a kill of the server; and the server's own commands.

Everything runs in a network of its own where the system allows that, because the game knows one port only."""
import os
import signal
import socket
import subprocess
import sys
import time
import unittest
from pathlib import Path

import rig
from rig import screen

SERVER = os.environ.get("TARNVALE_SERVER", str(rig.ROOT / "build/release/src/server/tarnvale-server"))
LOAD = os.environ.get("TARNVALE_LOAD", str(rig.ROOT / "build/release/tools/load/tarnvale_load"))
PORT = 18150
HULL_ROW, LAMP_ROW = 2, 6  # of the components
ALONE = "unshare -rn sh -c 'ip link set lo up'"
LEFT, RIGHT = (0, 0.2, 0.45, 0.8), (0.55, 0.2, 1, 0.8)  # halves of the picture, without the asteroid in its middle


def take_own_network():
    """Starts this script anew in a network of its own. Without one the port of this machine must be free."""
    if os.environ.get("TARNVALE_OWN_NETWORK") or subprocess.run(ALONE, shell=True, capture_output=True).returncode != 0:
        return
    os.environ["TARNVALE_OWN_NETWORK"] = "1"
    os.execvp("unshare", ["unshare", "-rn", "sh", "-c", 'ip link set lo up && exec "$0" "$@"', sys.executable, "-B", *sys.argv])


class Server:
    """One run of the server in an installation, its output in server.txt."""

    def __init__(self, root, *words):
        self.root = Path(root)
        self.output = open(self.root / "server.txt", "w+")
        self.process = subprocess.Popen([SERVER, *words], cwd=root, stdin=subprocess.PIPE, stdout=self.output,
                                        stderr=subprocess.STDOUT, env=dict(os.environ, **rig.SANITIZERS))

    def __enter__(self):
        return self

    def __exit__(self, kind, error, trace):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        self.process.stdin.close()
        if kind is not None:
            print(f"--- server\n{self.said()[-4000:]}", file=sys.stderr)
        self.output.close()

    def said(self):
        return (self.root / "server.txt").read_text(errors="replace")

    def wait_for(self, text):
        rig.wait_until(lambda: text in self.said() or self.process.poll() is not None, f'the server says "{text}"')
        if text not in self.said():
            raise AssertionError(f'the server ended with {self.process.returncode} and never said "{text}"')

    def type(self, line):
        self.process.stdin.write(line.encode() + b"\n")
        self.process.stdin.flush()

    def end(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        return self.process.wait(timeout=rig.PATIENCE)


class Network(unittest.TestCase):
    def setUp(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            try:
                probe.bind(("", PORT))
            except OSError:
                self.fail(f"UDP port {PORT} of this machine is taken, and the game knows no other one: end what uses it")
        self.root = self.enterContext(rig.installation())
        (self.root / "serveroptions").write_text("MaxAsteroidSize 1\n")

    def serve(self):
        server = self.enterContext(Server(self.root))
        server.wait_for("Listening on")
        return server

    def join(self, name, cores=2):
        root = self.enterContext(rig.installation())
        game = self.enterContext(rig.Game(root, self.enterContext(rig.virtual_display()), cores, ("127.0.0.1", name)))
        game.wait_for_log("Server Sync Complete!")
        game.wait_for_log("core threading system")
        return game

    def stored(self):
        """The blocks of the server's ship as a new player gets them."""
        return rig.read_ship(self.root / "saves/Asteroid.sts")

    def build_wall(self):
        """The server's ship: a wall with lamps, broad enough that nobody's aim misses it."""
        rig.write_ship(self.root / "saves/Asteroid.sts", {(x, y, 5000): LAMP_ROW if x % 4 == y % 4 == 0 else HULL_ROW
                                                          for x in range(4984, 5017) for y in range(4988, 5013)})

    def back_off_until_seen(self, watcher, mover, part):
        """The two begin side by side: from further back the watcher has the other, who rises and sinks, at one side of the picture."""
        steps = iter(range(1, 1000))

        def seen():
            step = next(steps)
            seconds = min(0.15 * 1.1 ** step, 1)  # a game with few frames misses a short one
            watcher.hold("s", seconds)
            watcher.settle()
            before = screen.cut(watcher.picture(), *part)
            mover.hold("zx"[step % 2], seconds)
            mover.settle(2)
            return screen.changed(before, screen.cut(watcher.picture(), *part)) > 150

        rig.wait_until(seen, "one player sees the other move")

    def say(self, game, words):
        game.press("t")
        time.sleep(0.5)
        game.act("type", "--delay", 150, words)
        game.press("Return")

    def test_two_players_see_each_other_build_and_talk_and_a_third_one_finds_it_all(self):
        self.build_wall()
        server = self.serve()
        ada, ben = self.join("Ada", cores=4), self.join("Ben", cores=4)
        ada.wait_for_picture()
        grown, before = self.stored(), ben.wait_for_picture()

        def placed():
            ada.click()
            time.sleep(0.5)
            return screen.changed(before, ben.picture()) > 100

        rig.wait_until(placed, "Ben sees the block that Ada placed")
        self.say(ada, "hello")
        for game in (ada, ben):
            game.wait_for_log("Chat: Ada: hello")
        self.say(ben, "/me waves")
        ada.wait_for_log("Chat: * Ben waves")
        ada.press("Tab")
        ada.wait_for_log("Msg: Players: Ada, Ben")
        self.back_off_until_seen(ada, ben, LEFT)
        self.back_off_until_seen(ben, ada, RIGHT)

        server.type("save")
        server.wait_for("saved")
        cy = self.join("Cy")
        built = rig.read_ship(cy.root / "saves/Asteroid.sts")
        self.assertGreater(len(built), len(grown))
        self.assertEqual({place: built[place] for place in grown}, grown)
        cy.wait_for_picture()
        self.assertNotIn("*ERR", cy.log())
        self.assertEqual(cy.close(), 0)
        ada.wait_for_log("Chat: * Cy logged off")
        for game in (ada, ben):
            self.assertNotIn("*ERR", game.log())
            self.assertEqual(game.close(), 0)
        self.assertEqual(server.end(), 0)

    def test_without_their_server_games_go_on_and_a_killed_one_has_every_edit(self):
        self.build_wall()
        server = self.serve()
        ada = self.join("Ada")
        ada.wait_for_picture()
        grown = self.stored()
        ada.look(30, -30)
        ada.click()
        store = self.root / "saves/Asteroid"
        rig.wait_until(lambda: any(path.stat().st_mtime > (store / "info.sis").stat().st_mtime for path in store.rglob("*.sss")),
                       "the block is on the server's disk")
        time.sleep(1)
        server.end(signal.SIGKILL)
        before = ada.picture()
        rig.wait_until(lambda: screen.changed(before, ada.picture()) > 100, "four rows tell of the lost server")
        ada.settle()
        ada.look(-60, 60)
        before = ada.wait_for_picture()
        ada.click()
        rig.wait_until(lambda: screen.changed(before, ada.picture()) > 50, "building goes on without the server")
        self.assertEqual(ada.close(), 0)
        again = self.serve()
        ben = self.join("Ben")
        built = rig.read_ship(ben.root / "saves/Asteroid.sts")
        self.assertEqual(len(built), len(grown) + 1)
        self.assertEqual(ben.close(), 0)
        self.assertEqual(again.end(), 0)

    def test_who_crashed_comes_back_as_themselves(self):
        self.build_wall()
        server = self.serve()
        ada, ben = self.join("Ada"), self.join("Ben")
        ada.wait_for_picture()
        ada.process.kill()
        ada.process.wait()
        again = self.join("Ada")
        server.wait_for("Ada is back from")
        self.say(again, "here I am")
        ben.wait_for_log("Chat: Ada: here I am")
        ben.press("Tab")
        ben.wait_for_log("Msg: Players: Ada, Ben")
        for words in ("Ada(2)", "* Ada logged off"):
            self.assertNotIn(words, ben.log())
        for game in (again, ben):
            self.assertNotIn("*ERR", game.log())
            self.assertEqual(game.close(), 0)
        self.assertEqual(server.end(), 0)

    def test_a_game_without_a_server_starts_alone(self):
        root = self.enterContext(rig.installation())
        game = self.enterContext(rig.Game(root, self.enterContext(rig.virtual_display()), 2, ("127.0.0.1", "Ada")))
        game.wait_for_asteroid()
        rig.in_order(self, game.log(), ["Connecting to: 127.0.0.1", "WARN: Failed to connect to server.", "Msg: Could not connect to server",
                                        "*ERR: Cannot initialize networking.", "Generating asteroid for player"])
        self.assertEqual(game.close(), 0)

    def test_the_server_has_its_commands_and_ends_in_order(self):
        for word, code, text in (("--help", 0, "usage: tarnvale-server"), ("--version", 0, "0.23.0"), ("--what", 2, "usage:"), ("/nowhere", 1, "/nowhere")):
            run = subprocess.run([SERVER, word], capture_output=True, text=True, timeout=rig.PATIENCE)
            self.assertEqual((run.returncode, text in run.stdout + run.stderr), (code, True), word)
        (self.root / "serveroptions").unlink()
        server = self.serve()
        self.assertEqual(len((self.root / "serveroptions").read_text().splitlines()), 13)
        sent = subprocess.run([SERVER, "--send", str(self.root), "say", "good", "morning"], timeout=rig.PATIENCE)
        self.assertEqual(sent.returncode, 0)
        server.wait_for("Server: good morning")
        for line, answer in (("list", "0 of 64 players"), ("list", "ship Asteroid"), ("say hello", "Server: hello"), ("kick Eve", 'nobody is called "Eve"'),
                             ("save", "saved"), ("what", "list | say TEXT | kick NAME | save | stop"), ("stop", "Stopped")):
            server.type(line)
            server.wait_for(answer)
        self.assertEqual(server.process.wait(timeout=rig.PATIENCE), 0)
        for how in (signal.SIGINT, signal.SIGTERM):
            self.assertEqual(self.serve().end(how), 0)
            self.assertIn("Stopped", (self.root / "server.log").read_text())
            self.assertIn("Stopped", (self.root / "server.log.old").read_text())

    def test_many_players_build_and_all_worlds_end_equal(self):
        clients, seconds = os.environ.get("TARNVALE_LOAD_CLIENTS", "8"), os.environ.get("TARNVALE_LOAD_SECONDS", "5")
        server = self.serve()
        run = subprocess.run([LOAD, "127.0.0.1", str(PORT), clients, seconds, str(server.process.pid)], cwd=self.root, text=True,
                             capture_output=True, env=dict(os.environ, **rig.SANITIZERS))
        print(run.stdout[-1500:], run.stderr[-4000:])
        self.assertEqual([line for line in server.said().splitlines() if "Refused" in line], [])
        self.assertEqual(run.returncode, 0)
        self.assertEqual(server.end(), 0)


if __name__ == "__main__":
    take_own_network()
    unittest.main()
