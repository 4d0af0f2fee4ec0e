"""Does what docs/modding.md says, word by word, in copies of the game's content: the blocks of code, the rows and the commands
are taken from the page itself. Usage: follow_page.py CHECKER SHEET ROOT."""
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKER, SHEET, ROOT = sys.argv[1], sys.argv[2], Path(sys.argv[3])
TOOLS = {"tarnvale_content_tool": CHECKER, "tarnvale_sheet": SHEET}
PAGE = (ROOT / "docs/modding.md").read_text()


def section(title):
    """The blocks of a section, in order: prose, ("python", code) and ("rows", lines)."""
    text = PAGE.split(f"\n## {title}\n")[1].split("\n## ")[0]
    blocks = []
    for i, part in enumerate(re.split(r"```python\n(.*?)```\n", text, flags=re.S)):
        if i % 2:
            blocks.append(("python", part))
            continue
        for block in part.strip("\n").split("\n\n"):
            lines = block.split("\n")
            rows = all(line.startswith("    ") for line in lines)
            blocks.append(("rows", [line[4:] for line in lines]) if rows else ("prose", " ".join(lines)))
    return blocks


class Page(unittest.TestCase):
    def setUp(self):
        self.root = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="tarnvale-page-")))
        shutil.copytree(ROOT / "config", self.root / "config", ignore=shutil.ignore_patterns("audio", "options", "settings"))
        (self.root / "config/audio").symlink_to(ROOT / "config/audio")
        (self.root / "saves").mkdir()
        self.languages = sorted(path.name for path in (self.root / "config/language").iterdir())
        self.followed = []

    def run_tool(self, command):
        words = command.split()
        return subprocess.run([TOOLS[words[0]], *words[1:]], cwd=self.root, capture_output=True, text=True, errors="replace")

    def put_rows(self, prose, rows):
        """Rows go where the prose before them says."""
        path = self.root / re.search(r"`(config/[^`]*)`", prose)[1]
        lines = path.read_text("latin-1").splitlines()
        mark = re.search(r"above `([^`]*)`", prose)
        if "at the end of" in prose:
            lines += rows
        elif mark:
            at = lines.index(mark[1])
            lines[at:at] = rows
        else:
            column = int(re.search(r"change only column (\d+)", prose)[1])
            for row in rows:
                (at,) = [i for i, line in enumerate(lines) if line.split()[:1] == row.split()[:1]]
                differ = [i + 1 for i, (old, new) in enumerate(zip(lines[at].split(), row.split(), strict=True)) if old != new]
                self.assertEqual(differ, [column], row)
                lines[at] = row
        path.write_text("\n".join(lines) + "\n", "latin-1")
        self.followed.append(path.name)

    def obey(self, prose):
        """Runs each command that the prose names; what it should print, it prints."""
        for command, printed in re.findall(r"`(tarnvale_\w+ [^`]*)`(?:\s+should\s+print\s+`([^`]*)`)?", prose):
            done = self.run_tool(command)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            if printed:
                self.assertTrue(done.stdout.splitlines()[-1].startswith(printed), done.stdout)
            self.said = done.stdout
            self.followed.append(command)

    def follow(self, title):
        before = ""
        for kind, block in section(title):
            if kind == "python":
                with open(self.root / "grids.py", "a") as file:
                    file.write(block)
                subprocess.run([sys.executable, "grids.py"], cwd=self.root, check=True)
                self.followed.append("grids.py")
            elif kind == "rows":
                self.put_rows(before, block)
            else:
                self.obey(block)
                before = block

    def warnings(self):
        return sorted(re.findall(r"config/language/(\w+):\d+: warning: ", self.said))

    def test_a_new_lamp_and_a_new_pipe(self):
        self.follow("A new lamp")
        self.assertEqual(self.followed, ["grids.py", "components", "english", "tarnvale_content_tool --check"])
        self.assertEqual(self.warnings(), [name for name in self.languages if name != "english"], "one for each other language")
        self.follow("A new joining pipe")
        self.assertEqual(self.followed[4:], ["grids.py", "components", "tarnvale_content_tool --check", "tarnvale_sheet --joins joins.png"])
        self.assertGreater((self.root / "joins.png").stat().st_size, 10000)

    def test_a_new_language(self):
        english = (self.root / "config/language/english").read_bytes()
        page = " ".join(PAGE.split())
        self.assertTrue("Copy `english`, translate, look at it with `--check`" in page)
        copy = self.root / "config/language/volapuk"
        copy.write_bytes(english)
        self.obey("`tarnvale_content_tool --check` should print `0 faults`")
        self.assertEqual(self.warnings(), [])
        texts = english.split(b"\n0 #MatStart\n")[0].split(b"\n")
        self.assertTrue(f"English must have all {len(texts)};" in page, len(texts))
        copy.write_bytes(english.replace(texts[-1] + b"\n", b""))
        self.obey("`tarnvale_content_tool --check` should print `0 faults`")
        self.assertEqual(self.warnings(), ["volapuk"])


unittest.main(argv=sys.argv[:1], verbosity=2)
