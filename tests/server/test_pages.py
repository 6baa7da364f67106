"""docs/server.md and the man page say what there is."""
import pathlib
import re
import subprocess
import unittest

from pafd_case import PAFD

ROOT = pathlib.Path(__file__).parents[2]
PAGE = ROOT / "docs" / "server.md"
OPTION = re.compile(r"--[a-z][a-z-]*")


def shown_blocks():
    """The indented blocks of the page, without their indentation."""
    text = PAGE.read_text(encoding="utf-8")
    blocks = re.findall(r"(?:^(?: {4}.*)?\n)+", text, re.MULTILINE)
    return [re.sub(r"^ {4}", "", block, flags=re.MULTILINE).strip("\n") for block in blocks if block.strip()]


def shown_block(start):
    found = [block for block in shown_blocks() if block.startswith(start)]
    assert len(found) == 1, f"{len(found)} blocks begin with {start!r}"
    return found[0]


class PagesTest(unittest.TestCase):
    def setUp(self):
        text = subprocess.run([PAFD, "--help"], check=True, capture_output=True, text=True).stdout
        self.options = set(OPTION.findall(text))
        self.assertIn("--listen", self.options)

    def test_the_page_has_every_option(self):
        rows = re.findall(r"^\| `(--[a-z-]+)", PAGE.read_text(encoding="utf-8"), re.MULTILINE)
        self.assertEqual(sorted(rows), sorted(self.options - {"--help", "--version"}))

    def test_the_man_page_has_every_option(self):
        text = (ROOT / "docs/man/pafd.1").read_text(encoding="utf-8")
        named = re.findall(r"^\.B[IR]? (.*)$", text[:text.index(".SH SIGNALS")], re.MULTILINE)
        self.assertEqual(set(OPTION.findall(" ".join(named).replace("\\-", "-"))), self.options)

    def test_the_haproxy_configuration_is_the_one_in_packaging(self):
        lines = (ROOT / "packaging/haproxy.cfg").read_text(encoding="utf-8").splitlines()
        without_comments = [line for line in lines if not line.lstrip().startswith("#")]
        self.assertTrue(shown_block("global\n").startswith("\n".join(without_comments) + "\n\n$ PAF_BIND="))


if __name__ == "__main__":
    unittest.main()
