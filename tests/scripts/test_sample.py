"""Tests of the address sample and of the script that checks it."""

import collections
import contextlib
import csv
import io
import os
import pathlib
import re
import unittest

from support import FolderTest, ROOT, run_script

import check_sample
from addressgen.layout import ADDRESS_COLUMNS, COLUMNS, STATES

REFERENCE_FOLDER = os.environ.get("QXPAF_TEST_DATA", "")


def run_check(*arguments):
    """Runs the check in this process; returns (exit status, what it printed)."""
    out, error = io.StringIO(), io.StringIO()
    with contextlib.redirect_stdout(out), contextlib.redirect_stderr(error):
        status = check_sample.main([str(argument) for argument in arguments])
    return status, out.getvalue() + error.getvalue()


class SampleTest(unittest.TestCase):
    """The sample is sound and shows what its description promises."""

    @classmethod
    def setUpClass(cls):
        cls.rows = [row for _, row in check_sample.read_rows(check_sample.SAMPLE, COLUMNS)]

    def count(self, **wanted):
        """The number of rows whose named fields match the given expressions completely."""
        return sum(all(re.fullmatch(pattern, row[name]) for name, pattern in wanted.items()) for row in self.rows)

    def test_form_is_sound(self):
        status, text = run_check()
        self.assertEqual(0, status, text)

    def test_size(self):
        invented = self.count(category="example .*") + self.count(category="postal box")
        self.assertGreaterEqual(len(self.rows) - invented, 300)
        self.assertGreaterEqual(self.count(category="example tenancy"), 10)

    def test_every_state_has_places(self):
        by_state = collections.Counter(row["state"] for row in self.rows)
        self.assertEqual(set(STATES), set(by_state))
        self.assertGreaterEqual(min(by_state.values()), 20)

    def test_identifiers_are_stable(self):
        self.assertEqual([str(30000001 + i) for i in range(len(self.rows))], [row["dpid"] for row in self.rows])
        known = {row["dpid"]: row["building"] for row in self.rows}
        self.assertEqual("Sydney Town Hall", known["30000005"])
        self.assertEqual("Queen Victoria Building", known["30000006"])

    def test_kinds_of_address(self):
        filled = ".+"
        for least, wanted in (
                (25, {"number_last": filled}),
                (3, {"number_first_suffix": filled}),
                (1, {"number_last_suffix": filled}),
                (10, {"unit_type": filled, "level_type": filled}),
                (5, {"level_type": filled, "unit_type": ""}),
                (2, {"level_type": "GROUND|LOWER GROUND FLOOR", "level_number": ""}),
                (1, {"unit_number": "[0-9]+[A-Z]"}),
                (3, {"lot": filled, "number_first": ""}),
                (1, {"lot": filled, "number_first": filled}),
                (8, {"street_suffix": filled}),
                (5, {"street_name": "THE .*", "street_type": ""}),
                (1, {"street_name": "BROADWAY", "street_type": ""}),
                (1, {"street_name": "."}),
                (3, {"street_name": ".*'.*"}),
                (2, {"street_name": ".*-.*"}),
                (5, {"street_name": "ST .*"}),
                (1, {"street_name": "MOUNT .*"}),
                (5, {"locality": "MOUNT .*"}),
                (3, {"locality": "ST .*"}),
                (20, {"street_name": filled, "number_first": "", "lot": "", "building": filled}),
                (10, {"postal_type": "GPO BOX", "category": "postal box"}),
                (1, {"postal_number": "[A-Z][0-9]+"}),
                (1, {"postal_type": "CARE PO", "postal_number": ""}),
                (9, {"category": "example box"}),
        ):
            with self.subTest(wanted):
                self.assertGreaterEqual(self.count(**wanted), least)
        kinds = {row["postal_type"] for row in self.rows}
        self.assertLessEqual({"PO BOX", "GPO BOX", "LOCKED BAG", "PRIVATE BAG", "RMB", "CMB"}, kinds)

    def test_building_with_and_without_units(self):
        rows = [row for row in self.rows if row["building"] == "Nicholas Building"]
        self.assertEqual(1, sum(not row["unit_type"] for row in rows))
        self.assertGreaterEqual(len(rows), 5)

    def test_streets_of_one_name(self):
        def having(name, **fixed):
            return [row for row in self.rows if row["street_name"] == name
                    and all(row[column] == value for column, value in fixed.items())]
        for name, locality, types in (("FLINDERS", "MELBOURNE", {"STREET", "LANE"}),
                                      ("RUNDLE", "ADELAIDE", {"MALL", "STREET"})):
            self.assertEqual(types, {row["street_type"] for row in having(name, locality=locality)})
        george = {row["locality"] for row in having("GEORGE", street_type="STREET")}
        self.assertGreaterEqual(len(george), 7)
        self.assertGreaterEqual(len({row["state"] for row in having("COLLINS", street_type="STREET")}), 2)
        lydiard = having("LYDIARD", locality="BALLARAT CENTRAL")
        self.assertEqual({"NORTH", "SOUTH"}, {row["street_suffix"] for row in lydiard})

    def test_description_warns(self):
        text = " ".join((ROOT / "data" / "sample" / "README.md").read_text(encoding="utf-8").split())
        for phrase in ("not the post office's", "must not be printed on mail", "may contain mistakes", "by hand",
                       "CC0 1.0", "check_sample.py"):
            self.assertIn(phrase, text)
        for category in {row["category"] for row in self.rows if row["category"].startswith("example")}:
            self.assertIn(f"`{category}`", text)


@unittest.skipUnless((pathlib.Path(REFERENCE_FOLDER) / check_sample.REFERENCE_NAME).is_file(),
                     f"QXPAF_TEST_DATA names no folder with {check_sample.REFERENCE_NAME}")
class FactsTest(unittest.TestCase):
    """The sample and the list of localities agree with GeoNames."""

    def test_nothing_differs(self):
        status, text = run_check(REFERENCE_FOLDER)
        self.assertEqual(0, status, text)
        self.assertNotIn("not checked", text)


class CheckerTest(FolderTest):
    """The check finds what it is there to find."""

    GOOD = {
        "dpid": "30000001", "building": "Town Hall", "unit_type": "UNIT", "unit_number": "3A", "level_type": "LEVEL",
        "level_number": "2", "number_first": "12", "number_first_suffix": "A", "number_last": "14",
        "number_last_suffix": "B", "street_name": "HIGH", "street_type": "STREET", "street_suffix": "EAST",
        "locality": "HOBART", "state": "TAS", "postcode": "7000", "latitude": "-42.88", "longitude": "147.33",
        "category": "town hall",
    }
    REFERENCE = ("postcode,locality,state,locality_mixed_case,latitude,longitude\n"
                 "7000,HOBART,TAS,Hobart,-42.88,147.33\n7001,HOBART,TAS,Hobart,,\n7250,LAUNCESTON,TAS,Launceston,,\n")
    LOCALITIES = "postcode,locality,state,latitude,longitude,population\n7000,HOBART,TAS,-42.88,147.33,9\n"

    def check(self, *changes, reference=None):
        """Checks a sample of one row for each dictionary of changes to the good row."""
        stream = io.StringIO()
        writer = csv.DictWriter(stream, COLUMNS, restval="", lineterminator="\n")
        writer.writeheader()
        writer.writerows({**self.GOOD, **change} for change in changes)
        sample = self.write("addresses.csv", stream.getvalue())
        return self.check_files(sample, reference)

    def check_files(self, sample, reference=None, localities=LOCALITIES):
        arguments = ["--sample", sample, "--localities", self.write("localities.csv", localities)]
        if reference:
            self.write(check_sample.REFERENCE_NAME, reference)
            arguments.append(self.folder)
        return run_check(*arguments)

    def test_good_row(self):
        self.assertEqual(0, self.check({})[0])
        self.assertEqual(0, self.check({}, reference=self.REFERENCE)[0])

    def test_bad_fields(self):
        nothing = dict.fromkeys(ADDRESS_COLUMNS[:-3], "")
        for change, finding in (
                ({"dpid": ""}, "dpid is empty"),
                ({"dpid": "3000001"}, "dpid '3000001' is malformed"),
                ({"dpid": "29999999"}, "dpid 29999999 is outside 30000000 to 99999999"),
                ({"state": "OT"}, "state 'OT' is malformed"),
                ({"state": "TASMANIA"}, "state 'TASMANIA' is malformed"),
                ({"postcode": "800"}, "postcode '800' is malformed"),
                ({"locality": ""}, "locality is empty"),
                ({"locality": "Hobart"}, "locality 'Hobart' is malformed"),
                ({"locality": " HOBART"}, "locality ' HOBART' has blanks at its ends"),
                ({"category": ""}, "category is empty"),
                ({"unit_number": "3-4"}, "unit_number '3-4' is malformed"),
                ({"number_first": "0"}, "number_first '0' is malformed"),
                ({"number_first": "12A"}, "number_first '12A' is malformed"),
                ({"number_first_suffix": "AB"}, "number_first_suffix 'AB' is malformed"),
                ({"street_type": "STREET WEST"}, "street_type 'STREET WEST' is malformed"),
                ({"latitude": "42.88"}, "latitude '42.88' is malformed"),
                ({"latitude": "-48.1"}, "latitude -48.1 is outside Australia"),
                ({"longitude": "94.2"}, "longitude 94.2 is outside Australia"),
                ({"unit_type": ""}, "unit_number without unit_type"),
                ({"level_type": ""}, "level_number without level_type"),
                ({"number_first": "", "number_first_suffix": ""}, "number_last without number_first"),
                ({"number_first": ""}, "number_first_suffix without number_first"),
                ({"number_last": ""}, "number_last_suffix without number_last"),
                ({"street_name": ""}, "number_first without street_name"),
                ({**nothing, "street_type": "ROAD"}, "street_type without street_name"),
                ({**nothing, "lot": "3"}, "lot without street_name"),
                ({**nothing, "postal_number": "3"}, "postal_number without postal_type"),
                (nothing, "an address has either a street or a postal delivery type"),
                ({"postal_type": "PO BOX"}, "an address has either a street or a postal delivery type"),
                ({"number_last": "10"}, "the range 12A-10B does not rise"),
                ({"number_last": "12", "number_last_suffix": "A"}, "the range 12A-12A does not rise"),
        ):
            with self.subTest(finding):
                status, text = self.check(change)
                self.assertEqual(1, status)
                self.assertIn(f"addresses.csv:2: {finding}\n", text)

    def test_good_variants(self):
        street = {name: "" for name in ADDRESS_COLUMNS[:-3]}
        for change in (
                {"number_last": "12", "number_last_suffix": "C"},
                {"number_last": "", "number_last_suffix": ""},
                {**street, "street_name": "THE ESPLANADE"},
                {**street, "postal_type": "CARE PO"},
                {**street, "postal_type": "GPO BOX", "postal_number": "U1987"},
                {"dpid": "30000000"}, {"dpid": "99999999"},
        ):
            with self.subTest(change):
                self.assertEqual(0, self.check(change)[0])

    def test_repeats(self):
        status, text = self.check({}, {"number_first": "11"}, {"dpid": "30000003"})
        self.assertEqual(1, status)
        self.assertIn("addresses.csv:3: the dpid repeats line 2\n", text)
        self.assertIn("addresses.csv:4: the address repeats line 2\n", text)
        self.assertIn("addresses.csv: 3 rows, 2 findings", text)

    def test_repeated_locality(self):
        localities = self.LOCALITIES + "7000,HOBART,TAS,-42.9,147.3,8\n"
        status, text = self.check_files(self.write("addresses.csv", ",".join(COLUMNS) + "\n"), localities=localities)
        self.assertEqual(1, status)
        self.assertIn("localities.csv:3: the locality repeats line 2", text)

    def test_facts(self):
        for change, finding in (
                ({"postcode": "7002"}, "HOBART TAS is not known with postcode 7002 but with 7000, 7001"),
                ({"locality": "HOBERT"}, "HOBERT TAS is not known with postcode 7000 but with no postcode at all"),
                ({"state": "VIC"}, "HOBART VIC is not known with postcode 7000 but with no postcode at all"),
                ({"latitude": "-42.74"}, "the coordinates lie 15.6 km from HOBART TAS 7000"),
                ({"longitude": "147.53"}, "the coordinates lie 16.3 km from HOBART TAS 7000"),
        ):
            with self.subTest(finding):
                status, text = self.check(change, reference=self.REFERENCE)
                self.assertEqual(1, status)
                self.assertIn(f"addresses.csv:2: {finding}\n", text)

    def test_near_and_unknown_positions_pass(self):
        for change in ({"latitude": "-42.75"}, {"longitude": "147.5"}, {"postcode": "7001", "latitude": "-41.0"}):
            with self.subTest(change):
                self.assertEqual(0, self.check(change, reference=self.REFERENCE)[0])

    def test_broken_files(self):
        header = ",".join(COLUMNS) + "\n"
        for text, finding in (
                ("", "the header row must be dpid,building"),
                ("dpid,locality\n", "the header row must be dpid,building"),
                (header + "30000001,short\n", ":2: wrong number of fields"),
                (header + "x," * len(COLUMNS) + "x\n", ":2: wrong number of fields"),
                (header + '"open\n', "unexpected end of data"),
        ):
            with self.subTest(finding):
                status, output = self.check_files(self.write("addresses.csv", text))
                self.assertEqual(1, status)
                self.assertIn(finding, output)

    def test_missing_files(self):
        status, text = run_check("--sample", self.folder / "none.csv")
        self.assertEqual(1, status)
        self.assertIn("none.csv", text)
        self.assertIn(f"{check_sample.REFERENCE_NAME} is not there: facts are not checked", text)
        self.assertIn("facts are not checked", run_check(self.folder)[1])

    def test_distance(self):
        self.assertAlmostEqual(111.2, check_sample.distance_km(-30.0, 140.0, -31.0, 140.0), delta=0.2)
        self.assertAlmostEqual(55.6, check_sample.distance_km(-60.0, 140.0, -60.0, 141.0), delta=0.2)
        # Melbourne to Sydney.
        self.assertAlmostEqual(713, check_sample.distance_km(-37.814, 144.963, -33.868, 151.207), delta=5)

    def test_program(self):
        self.assertEqual(0, run_script("check_sample.py").returncode)
        self.assertIn("examples:", run_script("check_sample.py", "--help").stdout)
        usage = run_script("check_sample.py", "--nonsense")
        self.assertEqual(2, usage.returncode)
        self.assertIn("unrecognized arguments", usage.stderr)


if __name__ == "__main__":
    unittest.main()
