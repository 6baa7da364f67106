"""Tests of the script that measures the library beside other ways to look addresses up."""

import contextlib
import importlib.machinery
import io
import json
import os
import pathlib
import random
import tempfile
import types
import unittest

from support import FolderTest, SCRIPTS

BUILD = os.environ.get("QXPAF_PEERS_BUILD", "")


def load_script():
    module = types.ModuleType("bench_peers")
    module.__file__ = str(SCRIPTS / "bench_peers")
    importlib.machinery.SourceFileLoader(module.__name__, module.__file__).exec_module(module)
    return module


bench_peers = load_script()
SQUARE = [(-12.0, 130.0), (-12.0, 131.0), (-11.0, 131.0), (-11.0, 130.0)]


def address(identifier, latitude, longitude, label="1 BANKSIA ST, WOMBAT FLATS NT 0890"):
    return bench_peers.Address(identifier, label, latitude, longitude, "70000000001")


class QueryTest(unittest.TestCase):
    """What is asked, and which answers are right."""

    def test_clean_query_accepts_every_address_of_the_same_label(self):
        addresses = [address("A", -12, 130), address("B", -12, 130), address("C", -12, 130, "2 HAKEA RD, X NT 0890")]
        queries = bench_peers.clean_queries(addresses, 3, random.Random(1))
        right = {query.text: query.right for query in queries}
        self.assertEqual({addresses[0].label: {"A", "B"}, addresses[2].label: {"C"}}, right)

    def test_hint_query_is_a_beginning(self):
        each = address("A", -12, 130)
        for query in bench_peers.hint_queries([each], 50, random.Random(1)):
            self.assertTrue(each.label.lower().startswith(query.text), query.text)
            self.assertEqual({"A"}, query.right)
            self.assertTrue(query.text)

    def test_nearest_accepts_all_that_are_equally_near(self):
        addresses = [address("A", -12, 130), address("B", -12, 130), address("C", -12.5, 130)]
        queries = bench_peers.nearest_queries(addresses, 20, random.Random(1))
        self.assertEqual({frozenset("AB"), frozenset("C")}, {query.right for query in queries})

    def test_polygon(self):
        self.assertTrue(bench_peers.is_within(-11.5, 130.5, SQUARE))
        self.assertFalse(bench_peers.is_within(-11.5, 131.5, SQUARE))
        self.assertFalse(bench_peers.is_within(-10.5, 130.5, SQUARE))
        dented = [*SQUARE, (-11.5, 130.9)]
        self.assertFalse(bench_peers.is_within(-11.5, 130.5, dented))

    def test_border(self):
        self.assertTrue(bench_peers.is_on_border(address("A", -11.5, 131.000001), SQUARE))
        self.assertTrue(bench_peers.is_on_border(address("A", -12.0, 130.0), SQUARE))
        self.assertFalse(bench_peers.is_on_border(address("A", -11.5, 131.00001), SQUARE))
        self.assertFalse(bench_peers.is_on_border(address("A", -12.0, 131.00001), SQUARE))

    def test_scores(self):
        query = bench_peers.Query("", "kind", frozenset("AB"), frozenset("C"))
        self.assertTrue(bench_peers.is_right("messy", query, ["B", "X"]))
        self.assertFalse(bench_peers.is_right("messy", query, ["X", "B"]))
        self.assertFalse(bench_peers.is_right("messy", query, []))
        self.assertTrue(bench_peers.is_right("hints", query, ["X", "", "Y", "Z", "A"]))
        self.assertFalse(bench_peers.is_right("hints", query, ["X", "", "Y", "Z", "U", "A"]))
        self.assertTrue(bench_peers.is_right("polygon", query, ["B", "A"]))
        self.assertTrue(bench_peers.is_right("polygon", query, ["B", "C", "A"]))
        self.assertFalse(bench_peers.is_right("polygon", query, ["B", "A", "A"]))
        self.assertFalse(bench_peers.is_right("polygon", query, ["B"]))

    def test_score_counts_wrong_and_missing_answers(self):
        queries = [bench_peers.Query("", kind, frozenset("A")) for kind in ("x", "x", "y", "y")]
        found = bench_peers.score("messy", queries, {"answers": [["A"], ["B"], []]})
        self.assertEqual((3, 4), (found["answered"], found["queries"]))
        self.assertEqual((1 / 3, 1 / 3), (found["right"], found["wrong"]))
        self.assertEqual({"x": 0.5, "y": 0}, found["right_by_kind"])


class InputTest(FolderTest):
    """What is read from the data directory."""

    def test_written_forms(self):
        self.write("au-street-types.csv", "name,abbreviation,other_written_forms,source\n"
                                          "STREET,ST,STR,made\nAVENUE,AV,AVE|AVNUE,made\nLONG WAY,LW,ST,made\n")
        self.assertEqual({"ST": "ST", "STREET": "ST", "STR": "ST", "AV": "AV", "AVENUE": "AV", "AVE": "AV",
                          "AVNUE": "AV", "LW": "LW"}, bench_peers.written_forms(self.folder))

    def test_made_up_data_can_be_read(self):
        bench_peers.write_made_up(self.folder)
        addresses = bench_peers.read_addresses(bench_peers.core_files(self.folder))
        self.assertEqual(len(addresses), len({each.label for each in addresses}))
        known = {each.identifier for each in addresses}
        pairs = bench_peers.read_pairs(self.folder)
        self.assertTrue(pairs)
        for query in pairs:
            self.assertLessEqual(query.right, known)

    def test_empty_directory_is_refused(self):
        with self.assertRaises(SystemExit) as caught:
            bench_peers.core_files(self.folder)
        self.assertIn("no gnaf-*-core.psv", str(caught.exception))


class TableTest(unittest.TestCase):
    """What is printed."""

    def test_reasons_are_reported(self):
        measured = {"one": {task: "missing: libone-dev" for task in ["build", *bench_peers.TASKS]}}
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            bench_peers.print_tables(measured, 2, {"messy": [bench_peers.Query("", "written")]})
        self.assertIn("| clean look-ups/s | no figure |", out.getvalue())
        self.assertIn("- one (build, clean, messy, hints, lists, nearest, polygon): missing: libone-dev",
                      out.getvalue())

    def test_an_incomplete_run_is_marked(self):
        figures = {"messy": {"answered": 3, "queries": 8, "right": 0.5, "wrong": 0.25}}
        self.assertEqual("50.0 % (3 of 8 asked)", bench_peers.row_of("messy", bench_peers.hits)(figures))
        self.assertEqual("50.0 %, 25.0 % (3 of 8 asked)",
                         bench_peers.row_of("messy", bench_peers.right_and_wrong)(figures))
        figures["messy"]["answered"] = 8
        self.assertEqual("50.0 %", bench_peers.row_of("messy", bench_peers.hits)(figures))

    def test_faults(self):
        figures = {"build": {}, "clean": {"right": 0.9}, "messy": {"right": 1}, "hints": {"right": 0.1},
                   "nearest": "not offered: no places", "lists": "missing: libone-dev",
                   "polygon": "server closed the connection"}
        self.assertEqual(["one, clean: only 90.0 % right", "one, polygon: server closed the connection"],
                         list(bench_peers.faults({"one": figures})))


@unittest.skipUnless(BUILD and (pathlib.Path(BUILD) / "bin" / bench_peers.OURS.program).exists(),
                     "the programs of bench/peers are not built")
class SelfCheckTest(unittest.TestCase):
    """The whole run with a few made-up addresses, on what is installed and built."""

    def test_self_check(self):
        out, error = io.StringIO(), io.StringIO()
        with tempfile.TemporaryDirectory() as name, contextlib.redirect_stdout(out), contextlib.redirect_stderr(error):
            file = pathlib.Path(name) / "figures.json"
            status = bench_peers.main(["--self-check", "--no-install", "--no-build", "--build", BUILD, "--budget", "5",
                                       "--json", str(file)])
            figures = json.loads(file.read_text(encoding="utf-8"))
        self.assertEqual(0, status, error.getvalue() + out.getvalue())
        self.assertEqual({peer.title for peer in bench_peers.PEERS}, set(figures))
        self.assertEqual(1, figures[bench_peers.OURS.title]["messy"]["right"])


if __name__ == "__main__":
    unittest.main()
