"""Tests of the generator of synthetic addresses."""

import collections
import contextlib
import csv
import io
import itertools
import os
import random
import re
import stat
import subprocess
import sys
import threading
import tracemalloc
import unittest
from unittest import mock

from support import FolderTest, SCRIPTS, run_script

import check_sample
import generate_addresses
from addressgen import localities, properties, rows, streets, words
from addressgen.layout import ADDRESS_COLUMNS, COLUMNS, DPID_FIRST, DPID_LAST, GPO_LINES, is_box_postcode
from addressgen.weighted import Picker

HEADER = ",".join(COLUMNS)
MAX_METRES = 16_000


def generated(count, seed=1, places=None):
    """Generates rows in this process, as dictionaries."""
    places = places or localities.load()
    lines = rows.generate(count, seed, places)
    return list(csv.DictReader(itertools.chain([HEADER + "\n"], lines)))


def place(name="TESTVILLE", state="VIC", postcode="3999", position=(-37.5, 144.5), population=8000):
    return localities.Locality(name, state, postcode, position, population)


def street_of(row):
    return tuple(row[c] for c in ("street_name", "street_type", "street_suffix", "locality", "state", "postcode"))


def written(row):
    """The address as a person would write it, without marks that tell the fields apart."""
    first = row["number_first"] + row["number_first_suffix"]
    last = row["number_last"] + row["number_last_suffix"]
    parts = [row[c] for c in ADDRESS_COLUMNS if c not in ("number_first", "number_first_suffix", "number_last",
                                                          "number_last_suffix", "lot", "street_name")]
    parts[5:5] = [f"LOT {row['lot']}" if row["lot"] else "", f"{first}-{last}" if last else first, row["street_name"]]
    return " ".join(filter(None, parts))


class LargeFileTest(unittest.TestCase):
    """Properties of 20,000 rows over the built-in localities."""

    COUNT = 20_000

    @classmethod
    def setUpClass(cls):
        cls.places = {item.key: item for item in localities.load()}
        cls.rows = generated(cls.COUNT)

    def share(self, test):
        return sum(map(bool, map(test, self.rows))) / self.COUNT

    def test_count(self):
        self.assertEqual(self.COUNT, len(self.rows))

    def test_identifiers_are_unique_and_in_range(self):
        numbers = [int(row["dpid"]) for row in self.rows]
        self.assertEqual(self.COUNT, len(set(numbers)))
        self.assertLessEqual(DPID_FIRST, min(numbers))
        self.assertGreaterEqual(DPID_LAST, max(numbers))

    def test_identifiers_have_no_visible_order(self):
        numbers = [int(row["dpid"]) for row in self.rows]
        steps = [after - before for before, after in itertools.pairwise(numbers)]
        self.assertAlmostEqual(0.5, sum(step > 0 for step in steps) / len(steps), delta=0.03)
        self.assertGreater(len(set(steps)), 0.98 * len(steps))
        tenths = collections.Counter((number - DPID_FIRST) // 7_000_000 for number in numbers)
        self.assertEqual(set(range(10)), set(tenths))
        self.assertGreater(min(tenths.values()), 0.08 * self.COUNT)

    def test_addresses_are_unique(self):
        self.assertEqual(self.COUNT, len({tuple(row[c] for c in ADDRESS_COLUMNS) for row in self.rows}))
        self.assertEqual(self.COUNT, len(set(map(written, self.rows))))

    def test_form(self):
        self.assertEqual([], list(check_sample.check_form(list(enumerate(self.rows, 2)), COLUMNS)))

    def test_localities_are_known(self):
        boxes = {(name, item[1], postcode) for item, (name, postcode) in GPO_LINES.items()}
        found = {(row["locality"], row["state"], row["postcode"]) for row in self.rows}
        self.assertLessEqual(found, set(self.places) | boxes)
        self.assertGreater(len(found), 500)

    def test_rows_follow_population(self):
        count = collections.Counter((row["locality"], row["state"], row["postcode"]) for row in self.rows)
        total = sum(item.population for item in self.places.values())
        for key in (("BLACKTOWN", "NSW", "2148"), ("POINT COOK", "VIC", "3030"), ("ALICE SPRINGS", "NT", "0870")):
            self.assertAlmostEqual(self.COUNT * self.places[key].population / total, count[key], delta=1.0)

    def test_positions_are_near(self):
        for row in self.rows:
            key = row["locality"], row["state"], row["postcode"]
            if key in self.places:
                here = float(row["latitude"]), float(row["longitude"])
                self.assertLess(1000 * check_sample.distance_km(*here, *self.places[key].position), MAX_METRES, row)

    def test_numbers_rise_on_each_side(self):
        last = collections.defaultdict(int)
        sides = collections.defaultdict(set)
        for row in filter(lambda row: row["number_first"] and row["street_name"], self.rows):
            number, side = int(row["number_first"]), int(row["number_first"]) % 2
            street = street_of(row)
            self.assertGreaterEqual(number, last[street, side] if not row["number_last"] else 0, row)
            end = int(row["number_last"] or number)
            self.assertEqual(side, end % 2, row)
            last[street, side] = max(last[street, side], number)
            sides[street].add(side)
        long_streets = [found for found in sides.values() if len(found) == 2]
        self.assertGreater(len(long_streets), 300)

    def test_ranges_do_not_overlap(self):
        ends = collections.defaultdict(int)
        for row in filter(lambda row: row["street_name"] and row["number_first"], self.rows):
            number = int(row["number_first"])
            key = (street_of(row), number % 2)
            start, end = ends[key] if ends[key] else (0, 0)
            self.assertTrue(number > end or number == start, row)
            ends[key] = number, max(int(row["number_last"] or number), end if number == start else 0)

    def test_mix(self):
        all_streets = {street_of(row) for row in self.rows if row["street_type"]}
        types = collections.Counter(street[1] for street in all_streets)
        for low, high, share in (
                (0.40, 0.70, self.share(lambda row: row["category"] == "house")),
                (0.10, 0.35, self.share(lambda row: row["category"] == "unit")),
                (0.01, 0.10, self.share(lambda row: row["category"] == "apartment")),
                (0.02, 0.12, self.share(lambda row: row["category"] == "shop")),
                (0.01, 0.08, self.share(lambda row: row["category"] == "office")),
                (0.01, 0.06, self.share(lambda row: row["category"] == "factory")),
                (0.03, 0.09, self.share(lambda row: row["category"] == "box")),
                (0.001, 0.02, self.share(lambda row: row["lot"])),
                (0.05, 0.25, self.share(lambda row: row["number_last"])),
                (0.01, 0.05, self.share(lambda row: row["number_first_suffix"])),
                (0.02, 0.15, self.share(lambda row: row["level_type"])),
                (0.02, 0.20, self.share(lambda row: row["building"])),
                (0.01, 0.08, self.share(lambda row: row["street_suffix"])),
                (0.25, 0.40, types["STREET"] / len(all_streets)),
                (0.10, 0.22, types["ROAD"] / len(all_streets)),
                (0.06, 0.15, types["COURT"] / len(all_streets)),
        ):
            self.assertTrue(low <= share <= high, f"{share} is not from {low} to {high}")

    def test_kinds_of_name_occur(self):
        names = {row["street_name"] for row in self.rows}
        self.assertGreater(len(names), 500)
        for pattern in ("THE [A-Z]+", "ST [A-Z]+", "O'[A-Z]+", "MC[A-Z]+", "[A-Z ]+-[A-Z ]+", "FIRST|SECOND|THIRD"):
            self.assertTrue(any(re.fullmatch(pattern, name) for name in names), pattern)
        for row in self.rows:
            self.assertEqual(row["street_name"].startswith("THE ") or row["street_name"] in ("", "BROADWAY"),
                             not row["street_type"], row)

    def test_general_post_office_boxes(self):
        found = {(row["locality"], row["postcode"]) for row in self.rows if row["postal_type"] == "GPO BOX"}
        self.assertLessEqual({("SYDNEY", "2001"), ("MELBOURNE", "3001"), ("BRISBANE", "4001")}, found)
        self.assertLessEqual(found, set(GPO_LINES.values()))
        self.assertFalse([row for row in self.rows if row["street_name"] and is_box_postcode(row["postcode"])])

    def test_units_of_a_building_share_its_front(self):
        buildings = {street_of(row) + (row["number_first"],): row for row in self.rows if row["category"] == "building"}
        units = [row for row in self.rows if row["unit_type"] and street_of(row) + (row["number_first"],) in buildings]
        self.assertGreater(len(units), 1000)
        for row in units:
            building = buildings[street_of(row) + (row["number_first"],)]
            for column in ("building", "number_last", "latitude", "longitude"):
                self.assertEqual(building[column], row[column], row)


class LocalityMixTest(unittest.TestCase):
    """What one locality is made of."""

    def test_country_has_lots_and_country_deliveries(self):
        names = [f"PLACE {letter}" for letter in "ABCDEFGHIJ"]
        found = generated(8000, places=[place(name, population=300) for name in names])
        kinds = {row["postal_type"] for row in found}
        self.assertLessEqual({"PO BOX", "RMB", "RSD", "CMB", "PRIVATE BAG"}, kinds)
        self.assertGreater(sum(bool(row["lot"]) for row in found), 300)
        roads = {(*row["street_name"].split("-"), row["locality"]) for row in found if "PLACE" in row["street_name"]}
        self.assertGreater(len(roads), 2)
        for start, end, locality in roads:
            self.assertEqual((start, True, True), (locality, end in names, end != locality))
        self.assertGreater(max(int(row["number_first"] or 0) for row in found), 200)

    def test_capital_has_towers_and_its_own_box_line(self):
        found = generated(5000, places=[place("CITY", "ACT", "2601", (-35.28, 149.13), 5000)])
        levels = {int(row["level_number"]) for row in found if row["level_number"]}
        self.assertGreater(max(levels), 15)
        for row in found:
            if row["category"] == "apartment":
                self.assertEqual(row["level_number"] or row["unit_number"][:-2], row["unit_number"][:-2], row)
        gpo = {(row["locality"], row["postcode"]) for row in found if row["postal_type"] == "GPO BOX"}
        self.assertEqual({("CANBERRA", "2601")}, gpo)
        self.assertEqual({"CITY"}, {row["locality"] for row in found if row["postal_type"] != "GPO BOX"})

    def test_box_postcode_has_boxes_only(self):
        found = generated(500, places=[place("SYDNEY", "NSW", "1001")])
        self.assertEqual({"box"}, {row["category"] for row in found})
        self.assertEqual(500, len({(row["postal_type"], row["postal_number"]) for row in found}))

    def test_divided_streets_come_in_pairs(self):
        found = generated(40_000, places=[place()])
        suffixes = collections.defaultdict(set)
        for row in found:
            suffixes[row["street_name"], row["street_type"]].add(row["street_suffix"])
        divided = [tuple(sorted(found)) for found in suffixes.values() if found - {""}]
        self.assertGreater(len(divided), 5)
        incomplete = [pair for pair in divided if pair not in (("EAST", "WEST"), ("NORTH", "SOUTH"))]
        # Only the last street of the locality may stand alone.
        self.assertLessEqual(len(incomplete), 1, incomplete)

    def test_one_name_with_several_types(self):
        found = generated(40_000, places=[place()])
        types = collections.defaultdict(set)
        for row in found:
            types[row["street_name"]].add(row["street_type"])
        self.assertGreater(sum(len(of_name) > 1 for of_name in types.values()), 10)

    def test_odd_numbers_lie_to_the_left(self):
        course = streets.Course(-37.0, 145.0, 1 / streets.METRES_PER_DEGREE, 0.0, 8.0)
        (odd_latitude, odd_longitude), (even_latitude, even_longitude) = (
            map(float, course.position_text(number).split(",")) for number in (11, 12))
        self.assertLess(odd_longitude, 145.0)
        self.assertGreater(even_longitude, 145.0)
        self.assertAlmostEqual(8.0, (even_latitude - odd_latitude) * streets.METRES_PER_DEGREE, delta=0.2)

    def test_without_position(self):
        for row in generated(200, places=[place(position=None)]):
            self.assertEqual(("", ""), (row["latitude"], row["longitude"]))

    def test_locality_with_a_comma(self):
        found = generated(300, places=[place('FORT "A", EAST')])
        self.assertEqual({'FORT "A", EAST'}, {row["locality"] for row in found})
        self.assertEqual(300, len({row["dpid"] for row in found}))


class StreetNamesTest(unittest.TestCase):
    """Street names never repeat, and do not run out before the rows do."""

    def all_streets(self, names, seed):
        with mock.patch.object(streets, "STREET_NAMES", names):
            source = streets.StreetNames(place(population=100), ["ELSEWHERE"], random.Random(seed))
            return list(iter(source.take, None)), source

    def test_all_different_up_to_the_end(self):
        for seed in range(5):
            found, source = self.all_streets(("ONE", "TWO", "THREE"), seed)
            self.assertEqual(len(found), len(set(found)))
            fixed = len(words.FIXED_STREETS) + len(words.HIGHWAYS["VIC"]) + 1
            self.assertEqual(sum(plan.capacity for plan in source.plans.values()) + fixed, len(found))

    def test_divided_plan(self):
        plan = streets.NamePlan(random.Random(1))
        plan.pair = ("NORTH", "SOUTH")
        found = [plan.take() for _ in range(plan.capacity)]
        self.assertEqual(len(found), len(set(found)))
        self.assertEqual([("NORTH", found[0][0]), ("SOUTH", found[0][0])], [(s, t) for t, s in found[:2]])
        self.assertNotIn((found[0][0], ""), found)

    def test_last_street_has_no_end(self):
        with mock.patch.object(streets, "STREET_NAMES", ("ONLY",)), \
                mock.patch.object(streets, "SUFFIXES", ("",)), mock.patch.object(streets, "UNPAIRED_SUFFIXES", ("",)):
            found = generated(20_000, places=[place()])
        self.assertEqual(20_000, len({tuple(row[c] for c in ADDRESS_COLUMNS) for row in found}))
        self.assertLess(len({street_of(row) for row in found}), 70)

    def test_words_are_unambiguous(self):
        self.assertEqual(len(words.STREET_NAMES), len(set(words.STREET_NAMES)))
        self.assertGreater(len(words.STREET_NAMES), 500)
        ends = set(streets.TYPES) | set(streets.SUFFIXES) | {"HIGHWAY"}
        self.assertEqual([], [name for name in words.STREET_NAMES if " " in name and name.split()[-1] in ends])
        self.assertFalse({name for name, _ in words.FIXED_STREETS} & set(words.STREET_NAMES))
        for names in words.HIGHWAYS.values():
            self.assertEqual(len(names), len(set(names)))

    def test_every_builder_gives_different_rows(self):
        for builders in properties.PICK_BUILDER.values():
            for build in builders.values:
                for seed in range(50):
                    used, built = build(random.Random(seed), 12)
                    self.assertGreaterEqual(used, 1)
                    texts = [text for text, _ in built]
                    self.assertEqual(len(texts), len(set(texts)), build.__name__)
                    self.assertEqual({10}, {text.count(",") for text in texts}, build.__name__)


class PartsTest(unittest.TestCase):
    """The small parts."""

    def test_mixer_is_one_to_one(self):
        mix = rows.DpidMixer(random.Random("test")).mix
        edges = [*range(30_000), *range(rows.MAX_COUNT - 30_000, rows.MAX_COUNT), *range(0, rows.MAX_COUNT, 999)]
        numbers = {mix(row) for row in set(edges)}
        self.assertEqual(len(set(edges)), len(numbers))
        self.assertLessEqual(DPID_FIRST, min(numbers))
        self.assertGreaterEqual(DPID_LAST, max(numbers))

    def test_picker(self):
        pick = Picker((("a", 1), ("b", 0), ("c", 3)))
        for chance, value in ((0.0, "a"), (0.2499, "a"), (0.25, "c"), (0.9999999, "c")):
            self.assertEqual(value, pick(chance))
        self.assertEqual("x", Picker((("x", 5),))(0.5))

    def test_share_out_gives_every_row(self):
        places = [place(str(i), population=i * i + 1) for i in range(50)]
        for count in (1, 2, 49, 1000, 123_457):
            for seed in range(5):
                shares = list(localities.share_out(count, places, random.Random(seed)))
                self.assertEqual(count, sum(wanted for _, wanted in shares))
                self.assertEqual(len(shares), len({item.name for item, _ in shares}))
                total = sum(item.population for item in places)
                for item, wanted in shares:
                    self.assertLess(abs(wanted - count * item.population / total), 1.0)

    def test_box_postcodes(self):
        for postcode, expected in (("0200", True), ("0800", False), ("0801", True), ("1999", True), ("2000", False),
                                   ("2001", True), ("2601", False), ("5950", False), ("5951", True), ("6797", False),
                                   ("7800", True), ("8001", True), ("9999", True), ("4999", False)):
            self.assertEqual(expected, is_box_postcode(postcode), postcode)

    def test_memory_does_not_grow_with_count(self):
        places = [place(str(i), population=1000) for i in range(200)]

        def peak(count):
            tracemalloc.start()
            collections.deque(rows.generate(count, 1, places), maxlen=0)
            _, most = tracemalloc.get_traced_memory()
            tracemalloc.stop()
            return most

        small = peak(4_000)
        self.assertLess(peak(60_000), 1.5 * small + 300_000)


class ProgramTest(FolderTest):
    """The program as its users run it."""

    def generate(self, *arguments, **options):
        return run_script("generate_addresses.py", *arguments, **options)

    def read(self, name):
        return (self.folder / name).read_bytes()

    def test_same_arguments_give_the_same_bytes(self):
        for name, hash_seed in (("a.csv", "0"), ("b.csv", "12345"), ("c.csv", "random")):
            done = self.generate("--count", 5000, "--seed", 9, "--out", self.folder / name,
                                 env={**os.environ, "PYTHONHASHSEED": hash_seed})
            self.assertEqual((0, "", ""), (done.returncode, done.stdout, done.stderr))
        self.assertEqual(self.read("a.csv"), self.read("b.csv"))
        self.assertEqual(self.read("a.csv"), self.read("c.csv"))
        self.generate("--count", 5000, "--seed", 10, "--out", self.folder / "d.csv")
        self.assertNotEqual(self.read("a.csv"), self.read("d.csv"))

    def test_count_and_columns(self):
        for count in (1, 2, 100, 1234):
            self.assertEqual(0, self.generate("--count", count, "--out", self.folder / "out.csv").returncode)
            lines = self.read("out.csv").decode("ascii").split("\n")
            self.assertEqual("", lines.pop())
            self.assertEqual(HEADER, lines.pop(0))
            self.assertEqual(count, len(lines))
            self.assertEqual({len(COLUMNS)}, {len(fields) for fields in csv.reader(lines)})

    def test_standard_output(self):
        self.generate("--count", 60, "--out", self.folder / "out.csv")
        done = self.generate("--count", 60, "--out", "-")
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        self.assertEqual(self.read("out.csv").decode("ascii"), done.stdout)

    def test_without_category(self):
        full = self.generate("--count", 60, "--out", "-").stdout.splitlines()
        short = self.generate("--count", 60, "--without-category", "--out", "-").stdout.splitlines()
        self.assertEqual([line.rpartition(",")[0] for line in full], short)

    def test_own_localities(self):
        self.write("list.csv", "postcode,locality,state,latitude,longitude\n7000,Hobart,TAS,-42.9,147.3\n")
        done = self.generate("--count", 50, "--localities", self.folder / "list.csv", "--out", "-")
        found = list(csv.DictReader(io.StringIO(done.stdout)))
        self.assertEqual(50, len(found))
        self.assertLessEqual({row["postcode"] for row in found}, {"7000", "7001"})

    def test_bad_arguments(self):
        out = self.folder / "out.csv"
        limit = f"is not a whole number from 1 to {rows.MAX_COUNT}"
        for arguments, status, finding in (
                (("--out", out), 2, "the following arguments are required: --count"),
                (("--count", 5), 2, "the following arguments are required: --out"),
                (("--count", 0, "--out", out), 2, f"argument --count: '0' {limit}"),
                (("--count", "-5", "--out", out), 2, f"argument --count: '-5' {limit}"),
                (("--count", "1e3", "--out", out), 2, f"argument --count: '1e3' {limit}"),
                (("--count", "\u0665", "--out", out), 2, f"argument --count: '\u0665' {limit}"),
                (("--count", rows.MAX_COUNT + 1, "--out", out), 2, f"argument --count: '70000001' {limit}"),
                (("--count", 5, "--seed", "x", "--out", out), 2, "argument --seed: 'x' is not a whole number from 0"),
                (("--count", 5, "--out", out, "--zeal"), 2, "unrecognized arguments: --zeal"),
                (("--count", 5, "--out", self.folder / "no" / "out.csv"), 1, "No such file or directory"),
                (("--count", 5, "--out", self.folder), 1, "Is a directory"),
                (("--count", 5, "--out", out, "--localities", self.folder / "no.csv"), 1, "no.csv"),
        ):
            with self.subTest(finding):
                done = self.generate(*arguments, env={**os.environ, "PYTHONUTF8": "1"})
                self.assertEqual(status, done.returncode)
                self.assertIn(finding, done.stderr)
                self.assertNotIn("Traceback", done.stderr)
                self.assertEqual([], list(self.folder.iterdir()))

    def test_bad_list_leaves_the_old_file(self):
        self.write("list.csv", "postcode,locality,state\n7000,HOBART,TASMANIA\n")
        out = self.write("out.csv", "old")
        done = self.generate("--count", 5, "--localities", self.folder / "list.csv", "--out", out)
        self.assertEqual(1, done.returncode)
        self.assertIn("generate_addresses.py: ", done.stderr)
        self.assertIn("list.csv:2: state 'TASMANIA'", done.stderr)
        self.assertEqual(b"old", self.read("out.csv"))

    def test_failure_half_way_leaves_the_old_file(self):
        out = self.write("out.csv", "old")

        def failing(*_arguments):
            yield "first row\n"
            raise OSError("the disk is full")

        errors = io.StringIO()
        with mock.patch.object(generate_addresses, "generate", failing), contextlib.redirect_stderr(errors):
            self.assertEqual(1, generate_addresses.main(["--count", "2", "--out", str(out)]))
        self.assertEqual("generate_addresses.py: the disk is full\n", errors.getvalue())
        self.assertEqual(b"old", self.read("out.csv"))
        self.assertEqual([out], list(self.folder.iterdir()))

    def test_a_pipe_is_written_to_and_stays(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        received = []
        reader = threading.Thread(target=lambda: received.append(pipe.read_text(encoding="utf-8")), daemon=True)
        reader.start()
        done = self.generate("--count", 10, "--out", pipe)
        reader.join(30)
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertTrue(stat.S_ISFIFO(pipe.stat().st_mode))
        self.assertEqual(11, len(received[0].splitlines()))

    def test_a_reader_that_goes_away(self):
        command = [sys.executable, "-B", str(SCRIPTS / "generate_addresses.py"), "--count", "200000", "--out", "-"]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as process:
            self.assertEqual(HEADER + "\n", process.stdout.readline())
            process.stdout.close()
            self.assertEqual(1, process.wait(60))
            self.assertEqual("", process.stderr.read())

    def test_progress_on_a_terminal(self):
        terminal, side = os.openpty()
        self.addCleanup(os.close, terminal)
        command = [sys.executable, "-B", str(SCRIPTS / "generate_addresses.py"), "--count", "60000",
                   "--out", str(self.folder / "out.csv")]
        subprocess.run(command, stderr=side, timeout=120, check=True)
        os.close(side)
        text = ""
        # The end of what a closed terminal holds is an error, not an empty read.
        with contextlib.suppress(OSError):
            while part := os.read(terminal, 4096):
                text += part.decode()
        self.assertIn("50,000 of 60,000 rows (83 %)", text)
        self.assertIn("60,000 of 60,000 rows (100 %)", text)

    def test_help(self):
        done = self.generate("--help")
        self.assertEqual(0, done.returncode)
        for phrase in ("examples:", "--localities", "--without-category", "never print them on mail"):
            self.assertIn(phrase, done.stdout)


if __name__ == "__main__":
    unittest.main()
