"""What the tests of the scripts share: the way to the scripts, and running one as a program."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCRIPTS = ROOT / "scripts"
sys.path.insert(0, str(SCRIPTS))
sys.dont_write_bytecode = True


def run_script(name, *arguments, **options):
    """Runs a script and returns the finished process with its output as text."""
    command = [sys.executable, "-B", str(SCRIPTS / name), *map(str, arguments)]
    return subprocess.run(command, capture_output=True, encoding="utf-8", timeout=120, check=False, **options)


class FolderTest(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def write(self, name, text, encoding="utf-8"):
        path = self.folder / name
        path.write_bytes(text.encode(encoding))
        return path
