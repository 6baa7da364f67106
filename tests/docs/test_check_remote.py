"""Tests of check_remote.py: which results may differ with a server, and that none other does."""
import pathlib
import unittest
from unittest import mock

import check_examples
import check_remote

PAGE = pathlib.Path("page.md")


def program_of(*lines):
    program = check_examples.Program(PAGE)
    program.add_block(check_examples.Block(1, "run", list(enumerate(lines, 2))))
    return program


class RulesTest(unittest.TestCase):
    def judged(self, line, *given, rows=()):
        """The kinds of the line's results, which are all given as wrong."""
        program = program_of(line)
        report = [f"wrong {number} {text}" for number, text in enumerate(given)]
        with mock.patch.object(check_remote, "REMOTELY", rows):
            lines, unneeded = check_remote.by_rule(program, report)
        return [line.split()[0] for line in lines], unneeded

    def test_what_no_rule_covers_is_wrong(self):
        self.assertEqual(self.judged('F();  // 0, text = "a"', "1", '"b"'), (["wrong", "wrong"], []))
        self.assertEqual(self.judged('F();  // 0, text = "a"', "6406", '""'), (["wrong", "wrong"], []))

    def test_cut(self):
        self.assertEqual(self.judged('F();  // 6406, text = ""', "0", '"abc"')[0], ["right", "right"])
        self.assertEqual(self.judged('F();  // 6406, text = ""', "6405", '"abc"')[0], ["wrong", "right"])

    def test_emptied(self):
        self.assertEqual(self.judged('F();  // 4, text = "1 High St"', "1", '""')[0], ["wrong", "right"])
        self.assertEqual(self.judged('F();  // 4, text = "1 High St"', "1", '"x"')[0], ["wrong", "wrong"])

    def test_joined(self):
        self.assertEqual(self.judged('F();  // 0, text = "a\\nb\\tc"', "1", r'"a\x09b\x09c"')[0], ["wrong", "right"])

    def test_unsaid(self):
        self.assertEqual(self.judged("F();  // 0, verdict = 'C'", "1", r"'\x00'")[0], ["wrong", "right"])
        self.assertEqual(self.judged("F();  // 5, verdict = 'C'", "1", r"'\x00'")[0], ["wrong", "wrong"])

    def test_rows(self):
        rows = [("F()", "0", "7", "so it is"), ("G()", "0", "8", "no example")]
        kinds, unneeded = self.judged("F();  // 0", "7", rows=rows)
        self.assertEqual(kinds, ["right"])
        self.assertEqual(unneeded, ["page.md: G() is 0, and never 8"])
        self.assertEqual(self.judged("F();  // 0", "9", rows=rows)[0], ["wrong"])


if __name__ == "__main__":
    unittest.main()
