"""The localities that addresses are generated in: reading them, and sharing out the rows among them."""

import csv
import dataclasses
import pathlib
import random
from collections import Counter

from addressgen.layout import GPO_LINES, STATES, is_box_postcode

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILT_IN_FILES = (ROOT / "scripts" / "localities.csv", ROOT / "data" / "sample" / "addresses.csv")

REQUIRED_COLUMNS = ("postcode", "locality", "state")

# Populations where the list has none: a postcode of one locality is taken for a suburb of this many people, and the
# more localities share a postcode, the smaller and the more rural they are.
ESTIMATE_ALONE = 11_000
ESTIMATE_SHARED_EXPONENT = 1.25
ESTIMATE_SIGMA = 0.7
BOX_ONLY_POPULATION = 40
MIN_POPULATION = 30

CORE, URBAN, TOWN, RURAL, BOX_ONLY = "core", "urban", "town", "rural", "box only"
URBAN_FROM = 6000
TOWN_FROM = 1200


class LocalityError(ValueError):
    """A list of localities that cannot be used; the text says where and why."""


@dataclasses.dataclass(slots=True)
class Locality:
    """One locality line. `position` is (latitude, longitude), or None where the list has none."""

    name: str
    state: str
    postcode: str
    position: tuple | None
    population: int

    @property
    def key(self):
        return self.name, self.state, self.postcode

    @property
    def profile(self):
        """Which mix of buildings stands here."""
        if is_box_postcode(self.postcode):
            return BOX_ONLY
        if self.key in GPO_LINES:
            return CORE
        if self.population >= URBAN_FROM:
            return URBAN
        return TOWN if self.population >= TOWN_FROM else RURAL


def parse_position(row):
    """Returns (latitude, longitude), or None when both are empty or missing."""
    latitude, longitude = row.get("latitude"), row.get("longitude")
    if not latitude and not longitude:
        return None
    position = float(latitude or "x"), float(longitude or "x")
    if not (-90 < position[0] < 90 and -180 <= position[1] <= 180):
        raise ValueError("no such place on earth")
    return position


def parse_locality(row):
    """Turns one row, with column names in lower case, into a Locality; ValueError says what is wrong."""
    name, state = row["locality"].upper(), row["state"].upper()
    postcode = row["postcode"].zfill(4)
    if not name.isprintable() or not name:
        raise ValueError(f"locality '{name}' is empty or holds control characters")
    if state not in STATES:
        raise ValueError(f"state '{state}' is none of {' '.join(STATES)}")
    if not (len(postcode) == 4 and postcode.isascii() and postcode.isdigit()):
        raise ValueError(f"postcode '{row['postcode']}' is not four digits")
    try:
        position = parse_position(row)
    except ValueError as error:
        raise ValueError(f"latitude '{row['latitude']}', longitude '{row['longitude']}' are not a position") from error
    population = row.get("population") or "0"
    if not (population.isascii() and population.isdigit()):
        raise ValueError(f"population '{population}' is not a whole number")
    return Locality(name, state, postcode, position, int(population))


def read_columns(reader, path):
    """Reads the header row and returns the column names in lower case."""
    columns = [name.strip().lower() for name in next(reader, ())]
    missing = [name for name in REQUIRED_COLUMNS if name not in columns]
    if missing:
        raise LocalityError(f"{path}: the header row lacks {', '.join(missing)}")
    return columns


def read_file(path, skip=lambda row: False):
    """Yields the localities of a CSV file, `skip` aside; LocalityError names the line of a row that is wrong."""
    with open(path, newline="", encoding="utf-8-sig") as stream:
        reader = csv.reader(stream, strict=True)
        try:
            columns = read_columns(reader, path)
            for fields in filter(None, reader):
                if len(fields) != len(columns):
                    raise ValueError(f"{len(fields)} fields where the header row has {len(columns)}")
                row = dict(zip(columns, map(str.strip, fields)))
                if not skip(row):
                    yield parse_locality(row)
        except LocalityError:
            raise
        except UnicodeDecodeError as error:
            raise LocalityError(f"{path}: not UTF-8 text: {error}") from error
        except (ValueError, csv.Error) as error:
            raise LocalityError(f"{path}:{reader.line_num}: {error}") from error


def estimate_populations(localities):
    """Fills in the populations that the list does not tell. The same list always gets the same estimates."""
    shared_by = Counter(locality.postcode for locality in localities)
    for locality in localities:
        if is_box_postcode(locality.postcode):
            locality.population = BOX_ONLY_POPULATION
        elif not locality.population:
            luck = random.Random("|".join(locality.key)).lognormvariate(0.0, ESTIMATE_SIGMA)
            shared = shared_by[locality.postcode] ** ESTIMATE_SHARED_EXPONENT
            locality.population = max(MIN_POPULATION, int(ESTIMATE_ALONE * luck / shared))


def load(path=None):
    """Returns the localities of the file at `path`, or the built-in ones, each locality line once."""
    if path:
        found = read_file(path)
    else:
        # Boxes of the sample stand under postcodes that have no streets.
        found = (item for file in BUILT_IN_FILES for item in read_file(file, lambda row: row.get("postal_type")))
    unique = {}
    for locality in found:
        unique.setdefault(locality.key, locality)
    if not unique:
        raise LocalityError(f"{path}: holds no localities")
    localities = list(unique.values())
    estimate_populations(localities)
    return localities


def share_out(count, localities, rng):
    """Yields (locality, rows) in random order, rows in proportion to population and `count` in all."""
    order = list(localities)
    rng.shuffle(order)
    total = sum(locality.population for locality in order)
    offset = int(rng.random() * total)
    people, given = 0, 0
    for locality in order:
        people += locality.population
        # Whole numbers throughout: the last division gives exactly `count`.
        due = (people * count + offset) // total
        if due > given:
            yield locality, due - given
        given = due
