"""Compares the plug-in's 4-state barcodes with those of Debian's program zint, which shares nothing with ours.

QXPAF_BARCODE_ANSWERS names the program that passes requests to the plug-in, tests/unit/arf/barcode/answer_requests.cpp.
Zint chooses the encoding of customer information by the length of all that it is given: 13 or 18 characters are written
in table C, 16 or 23 digits in table N. Ours is told. QXPAF_TEST_SEED repeats a run.
"""

import os
import random
import shutil
import string
import subprocess
import unittest

from support import FolderTest

ANSWERS = os.environ.get("QXPAF_BARCODE_ANSWERS", "")
ZINT = shutil.which("zint")
CHARACTERS = string.ascii_letters + string.digits + " #"
STATES = {"11": "0", "10": "1", "01": "2", "00": "3"}

# zint's type, format control code, encoding, length of the customer information, number of inputs
KINDS = (
    (63, "11", "N", 0, 500),
    (63, "59", "C", 5, 500),
    (63, "59", "N", 8, 500),
    (63, "62", "C", 10, 500),
    (63, "62", "N", 15, 500),
    (66, "45", "N", 0, 200),
    (67, "87", "N", 0, 200),
    (68, "92", "N", 0, 200),
)


def bars_of(dump):
    """The bars of a dump: three lines of hexadecimal digits, the bits above, in and below the trackers."""
    above, trackers, below = ("".join(f"{int(digit, 16):04b}" for digit in line if digit != " ") for line in dump)
    return "".join(STATES[above[i] + below[i]] for i, tracker in enumerate(trackers) if tracker == "1")


def lines_of(command, given=None):
    result = subprocess.run(command, input=given, capture_output=True, encoding="ascii", timeout=120, check=False)
    if result.returncode != 0 or result.stderr:
        raise AssertionError(f"{command}: status {result.returncode}\n{result.stderr}")
    return result.stdout.splitlines()


@unittest.skipUnless(ZINT, "the program zint is not installed")
@unittest.skipUnless(ANSWERS, "QXPAF_BARCODE_ANSWERS names no program")
class BarcodePeerTest(FolderTest):
    """Random barcodes of every format, made by both."""

    def setUp(self):
        super().setUp()
        seed = int(os.environ.get("QXPAF_TEST_SEED", random.SystemRandom().randrange(2**32)))
        print(f"seed: QXPAF_TEST_SEED={seed}")
        self.random = random.Random(seed)

    def text(self, characters, length):
        return "".join(self.random.choices(characters, k=length))

    def peer_bars(self, kind, inputs):
        path = self.write("inputs", "".join(text + "\n" for text in inputs))
        lines = lines_of([ZINT, "--batch", "-b", str(kind), "--filetype=txt", "--direct", "-i", str(path)])
        self.assertEqual(3 * len(inputs), len(lines))
        return [bars_of(lines[i:i + 3]) for i in range(0, len(lines), 3)]

    def our_answers(self, requests):
        return lines_of([ANSWERS], "".join(request + "\n" for request in requests))

    def test_same_bars(self):
        compared = 0
        for kind, code, encoding, length, count in KINDS:
            with self.subTest(format=code, encoding=encoding):
                characters = string.digits if encoding == "N" else CHARACTERS
                pairs = [(self.text(string.digits, 8), self.text(characters, length)) for _ in range(count)]
                theirs = self.peer_bars(kind, [dpid + customer for dpid, customer in pairs])
                ours = self.our_answers([f"Barcode2:{dpid}{code}{encoding}{customer}" for dpid, customer in pairs])
                self.assertEqual([f"0 {bars}" for bars in theirs], ours)
                compared += count
        print(f"{compared} barcodes compared")

    def test_short_identifiers(self):
        """Reply paid, routing and redirection codes are where zint fills up identifiers too."""
        for kind, code in ((66, "45"), (67, "87"), (68, "92")):
            dpids = [self.text(string.digits, length) for length in range(1, 8) for _ in range(10)]
            ours = self.our_answers([f"Barcode2:{dpid:0>8}{code}N" for dpid in dpids])
            self.assertEqual([f"0 {bars}" for bars in self.peer_bars(kind, dpids)], ours)


if __name__ == "__main__":
    unittest.main()
