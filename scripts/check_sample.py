#!/usr/bin/env python3
"""Checks the hand-written address sample and the list of localities that the generator uses.

Form is always checked: columns, identifiers, states, numbers, coordinates, repeated addresses. When DIR holds the
GeoNames postal codes of Australia as au-localities-geonames.csv (columns postcode, locality, state, latitude,
longitude), every locality, state and postcode must occur there together, and every coordinate must lie near it.

examples:
  check_sample.py                    form only
  check_sample.py ~/geonames         form, and facts against ~/geonames/au-localities-geonames.csv

Every finding is one line "file:line: what is wrong". Exit status 0 without findings, 1 with findings, 2 on bad usage.
"""

import argparse
import csv
import math
import pathlib
import re
import sys

from addressgen.layout import ADDRESS_COLUMNS, COLUMNS, DPID_FIRST, DPID_LAST, STATES

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLE = ROOT / "data" / "sample" / "addresses.csv"
LOCALITIES = ROOT / "scripts" / "localities.csv"
REFERENCE_NAME = "au-localities-geonames.csv"
LOCALITY_COLUMNS = ("postcode", "locality", "state", "latitude", "longitude", "population")

MAX_DISTANCE_KM = 15.0
KM_PER_DEGREE = 111.2
# The external territories are in: Cocos Islands in the west, Norfolk Island in the east.
LATITUDES = (-44.0, -9.0)
LONGITUDES = (96.0, 168.1)

# What a field must look like when it is not empty; the whole field must match.
PATTERNS = {
    "dpid": r"[0-9]{8}",
    "unit_number": r"[A-Z]{0,2}[0-9]{1,5}[A-Z]{0,2}|[A-Z]",
    "level_number": r"[A-Z]?[0-9]{1,3}[A-Z]?",
    "lot": r"[A-Z]?[0-9]{1,5}[A-Z]?",
    "number_first": r"[1-9][0-9]{0,5}",
    "number_first_suffix": r"[A-Z]",
    "number_last": r"[1-9][0-9]{0,5}",
    "number_last_suffix": r"[A-Z]",
    "unit_type": r"[A-Z ]+",
    "level_type": r"[A-Z -]+",
    "street_name": r"[A-Z0-9' -]+",
    "street_type": r"[A-Z]+",
    "street_suffix": r"[A-Z ]+",
    "postal_type": r"[A-Z ]+",
    "postal_number": r"[A-Z]?[0-9]{1,6}",
    "locality": r"[A-Z' -]+",
    "state": "|".join(STATES),
    "postcode": r"[0-9]{4}",
    "latitude": r"-[0-9]{1,2}\.[0-9]{1,6}",
    "longitude": r"[0-9]{2,3}\.[0-9]{1,6}",
    "population": r"[1-9][0-9]*",
}

REQUIRED = {
    COLUMNS: ("dpid", "locality", "state", "postcode", "latitude", "longitude", "category"),
    LOCALITY_COLUMNS: LOCALITY_COLUMNS,
}

# A field on the left makes no sense without the field on the right.
NEEDS = (
    ("unit_number", "unit_type"), ("level_number", "level_type"), ("number_first_suffix", "number_first"),
    ("number_last", "number_first"), ("number_last_suffix", "number_last"), ("number_first", "street_name"),
    ("lot", "street_name"), ("street_type", "street_name"), ("street_suffix", "street_name"),
    ("postal_number", "postal_type"),
)


def read_rows(path, columns):
    """Returns the rows as (line number, dictionary); raises ValueError when the header row is another one."""
    with open(path, newline="", encoding="utf-8") as stream:
        reader = csv.DictReader(stream, strict=True)
        if tuple(reader.fieldnames or ()) != columns:
            raise ValueError(f"{path}: the header row must be {','.join(columns)}")
        return [(reader.line_num, row) for row in reader]


def check_fields(row, required):
    """Yields what is wrong with the fields of one row, each looked at alone."""
    if None in row or None in row.values():
        yield "wrong number of fields"
        return
    for name, value in row.items():
        if value != value.strip():
            yield f"{name} '{value}' has blanks at its ends"
        elif not value and name in required:
            yield f"{name} is empty"
        elif value and name in PATTERNS and not re.fullmatch(PATTERNS[name], value):
            yield f"{name} '{value}' is malformed"


def check_range(row):
    """Yields what is wrong with a range of street numbers."""
    if not row["number_last"]:
        return
    first, last = int(row["number_first"]), int(row["number_last"])
    suffixes_rise = row["number_first_suffix"] < row["number_last_suffix"]
    if last < first or (last == first and not suffixes_rise):
        yield f"the range {first}{row['number_first_suffix']}-{last}{row['number_last_suffix']} does not rise"


def check_combination(row):
    """Yields what is wrong with the fields of one address taken together."""
    for name, needed in NEEDS:
        if row[name] and not row[needed]:
            yield f"{name} without {needed}"
            return
    if bool(row["street_name"]) == bool(row["postal_type"]):
        yield "an address has either a street or a postal delivery type"
    if row["dpid"] and not DPID_FIRST <= int(row["dpid"]) <= DPID_LAST:
        yield f"dpid {row['dpid']} is outside {DPID_FIRST} to {DPID_LAST}"
    yield from check_range(row)


def check_position(row):
    """Yields what is wrong with the coordinates of one row on their own."""
    for name, (low, high) in (("latitude", LATITUDES), ("longitude", LONGITUDES)):
        if not low <= float(row[name]) <= high:
            yield f"{name} {row[name]} is outside Australia"


def check_unique(rows, columns, what):
    """Yields (line, finding) for rows whose `columns` repeat those of an earlier row."""
    seen = {}
    for line, row in rows:
        key = tuple(row[c] for c in columns)
        if key in seen:
            yield line, f"{what} repeats line {seen[key]}"
        seen.setdefault(key, line)


def check_form(rows, columns):
    """Yields (line, finding) for everything that can be seen without other data."""
    sound = []
    for line, row in rows:
        findings = list(check_fields(row, REQUIRED[columns]))
        if not findings:
            sound.append((line, row))
            findings.extend(check_position(row))
            findings.extend(check_combination(row) if columns == COLUMNS else ())
        yield from ((line, finding) for finding in findings)
    if columns == COLUMNS:
        yield from check_unique(sound, ("dpid",), "the dpid")
        yield from check_unique(sound, ADDRESS_COLUMNS, "the address")
    else:
        yield from check_unique(sound, ("postcode", "locality", "state"), "the locality")


def distance_km(lat1, lon1, lat2, lon2):
    """Distance of two points in kilometres; flat, which is exact enough for tens of kilometres."""
    east = (lon2 - lon1) * math.cos(math.radians((lat1 + lat2) / 2))
    return KM_PER_DEGREE * math.hypot(lat2 - lat1, east)


class Reference:
    """The localities of a GeoNames file, to compare with."""

    def __init__(self, path):
        self.points = {}
        self.postcodes = {}
        with open(path, newline="", encoding="utf-8") as stream:
            for row in csv.DictReader(stream):
                points = self.points.setdefault((row["postcode"], row["locality"], row["state"]), [])
                if row["latitude"] and row["longitude"]:
                    points.append((float(row["latitude"]), float(row["longitude"])))
                self.postcodes.setdefault((row["locality"], row["state"]), []).append(row["postcode"])

    def check(self, row):
        """Yields how one row differs."""
        place = f"{row['locality']} {row['state']}"
        points = self.points.get((row["postcode"], row["locality"], row["state"]))
        if points is None:
            known = ", ".join(self.postcodes.get((row["locality"], row["state"]), ())) or "no postcode at all"
            yield f"{place} is not known with postcode {row['postcode']} but with {known}"
            return
        here = float(row["latitude"]), float(row["longitude"])
        away = min((distance_km(*here, *point) for point in points), default=0.0)
        if away > MAX_DISTANCE_KM:
            yield f"the coordinates lie {away:.1f} km from {place} {row['postcode']}"


def check_file(path, columns, reference):
    """Returns the findings of one file as sorted (line, finding)."""
    rows = read_rows(path, columns)
    findings = list(check_form(rows, columns))
    bad_lines = {line for line, _ in findings}
    if reference:
        sound = ((line, row) for line, row in rows if line not in bad_lines)
        findings.extend((line, finding) for line, row in sound for finding in reference.check(row))
    print(f"{path}: {len(rows)} rows, {len(findings)} findings")
    return sorted(findings)


def load_reference(directory):
    """Returns the Reference in `directory`, or None with a message when there is none."""
    path = pathlib.Path(directory) / REFERENCE_NAME if directory else None
    if path and path.is_file():
        return Reference(path)
    print(f"{path or REFERENCE_NAME} is not there: facts are not checked")
    return None


def parse_arguments(arguments):
    """Returns the parsed command line."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("directory", nargs="?", metavar="DIR", help=f"folder that holds {REFERENCE_NAME}")
    parser.add_argument("--sample", default=SAMPLE, help="the sample to check (default: %(default)s)")
    parser.add_argument("--localities", default=LOCALITIES, help="the list to check (default: %(default)s)")
    return parser.parse_args(arguments)


def main(arguments=None):
    """Runs the check and returns the exit status."""
    options = parse_arguments(arguments)
    reference = load_reference(options.directory)
    failed = False
    try:
        for path, columns in ((options.sample, COLUMNS), (options.localities, LOCALITY_COLUMNS)):
            for line, finding in check_file(path, columns, reference):
                print(f"{path}:{line}: {finding}")
                failed = True
    except (OSError, ValueError, csv.Error) as error:
        print(f"check_sample.py: {error}", file=sys.stderr)
        return 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
