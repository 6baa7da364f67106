"""Tests of check_commands.py with a program that only repeats its arguments."""
import pathlib
import subprocess
import sys
import tempfile
import textwrap
import unittest

import check_commands

CHECKER = pathlib.Path(check_commands.__file__)
PAGE = textwrap.dedent("""\
    # Page

        $ paf one
        one

        $ paf two
        two
        12 rows/s, 0.5 s, 1 thread

    Text.

        no example

    ```
        $ paf fenced
    ```

        $ cat given.txt
        line
        $ paf three <given.txt
        three
    """)


class ParsingTest(unittest.TestCase):
    def test_commands_have_the_lines_below_them(self):
        self.assertEqual(check_commands.examples_of(PAGE), [
            ("paf one", "one"), ("paf two", "two\n12 rows/s, 0.5 s, 1 thread"), ("cat given.txt", "line"),
            ("paf three <given.txt", "three")])

    def test_blocks_of_other_programs_are_passed_over(self):
        page = "    paf one\n    echo x >y\n\n    paf two\n\ntext\n\n    cmake x\n    paf three\n"
        self.assertEqual(check_commands.plain_commands_of(page), ["paf one", "echo x >y", "paf two"])

    def test_times_are_not_compared(self):
        for text in ("353 rows/s, 0.01 s, 2 threads", "1 rows/s, 10.2 s, 1 thread"):
            self.assertEqual(check_commands.without_times(text), "N rows/s, N s, N threads")
        self.assertEqual(check_commands.without_times("5 bytes; 0.06 s"), "5 bytes; N s")
        self.assertEqual(check_commands.without_times("5 rows"), "5 rows")


class RunTest(unittest.TestCase):
    def check(self, page, *options):
        """The exit status and the output for a page about a program that prints its arguments."""
        with tempfile.TemporaryDirectory() as name:
            root = pathlib.Path(name)
            (root / "data" / "sample").mkdir(parents=True)
            program = root / "paf"
            program.write_text("#!/bin/sh\n[ $# = 0 ] || echo \"$@\"\n[ \"$1\" != fail ]\n", encoding="utf-8")
            program.chmod(0o755)
            (root / "page.md").write_text(page, encoding="utf-8")
            result = subprocess.run([sys.executable, "-B", CHECKER, "--paf", program, "--library", root / "lib.so",
                                     "--source", root, *options, root / "page.md"], capture_output=True, text=True,
                                    check=False, timeout=60)
            return result.returncode, result.stdout

    def test_a_page_that_is_right(self):
        right = PAGE.replace("    two\n    12 rows/s, 0.5 s, 1 thread\n", "    two\n")
        self.assertEqual(self.check(right), (0, ""))

    def test_a_page_that_is_wrong(self):
        status, output = self.check(PAGE)
        self.assertEqual(status, 1)
        self.assertIn("$ paf two", output)
        self.assertIn("-12 rows/s", output)
        self.assertNotIn("$ paf one", output)

    def test_output_that_the_page_lacks(self):
        self.assertEqual(self.check("    $ paf one\n")[0], 1)

    def test_places_are_those_of_the_page(self):
        self.assertEqual(self.check("    $ paf /srv/paf/x\n    /srv/paf/x\n    $ paf ~/y\n    /home/jo/y\n"), (0, ""))

    def test_a_page_without_examples(self):
        self.assertEqual(self.check("Text.\n")[0], 1)
        self.assertEqual(self.check("Text.\n", "--run-only")[0], 1)

    def test_commands_must_succeed(self):
        self.assertEqual(self.check("    paf one\n", "--run-only"), (0, ""))
        status, output = self.check("    paf one\n    paf fail\n", "--run-only")
        self.assertEqual(status, 1)
        self.assertIn("paf fail\nends with status 1", output)


if __name__ == "__main__":
    unittest.main()
