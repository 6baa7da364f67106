"""The rows of one locality and of the whole file, as CSV text without the identifier."""

import csv
import io
import itertools
import math
import random

from addressgen.layout import DPID_FIRST, DPID_LAST, GPO_LINES
from addressgen.localities import BOX_ONLY, CORE, RURAL, TOWN, URBAN, share_out
from addressgen.properties import PICK_BUILDER, between, front, single
from addressgen.streets import StreetNames, lay_course
from addressgen.weighted import Picker

BOX_SHARE = {CORE: 0.06, URBAN: 0.05, TOWN: 0.08, RURAL: 0.10, BOX_ONLY: 1.0}
PICK_BOX = {
    CORE: Picker((("GPO BOX", 80), ("PO BOX", 12), ("LOCKED BAG", 8))),
    URBAN: Picker((("PO BOX", 96), ("LOCKED BAG", 3), ("PRIVATE BAG", 1))),
    TOWN: Picker((("PO BOX", 93), ("LOCKED BAG", 1), ("PRIVATE BAG", 3), ("RSD", 3))),
    RURAL: Picker((("PO BOX", 55), ("RMB", 25), ("RSD", 8), ("CMB", 5), ("PRIVATE BAG", 5), ("MS", 2))),
    BOX_ONLY: Picker((("PO BOX", 70), ("LOCKED BAG", 25), ("PRIVATE BAG", 5))),
}
LARGEST_FIRST_BOX = {"LOCKED BAG": 4000, "RMB": 900}

MEAN_PROPERTIES = {CORE: 55, URBAN: 42, TOWN: 28, RURAL: 12}
SHORTEST_STREET = 3
# A locality with more rows than this gets longer streets, as there is a limit to its street names.
ROWS_BEFORE_STRETCH = 5_000_000
ONE_SIDED_SHARE = 0.07
GAP_SHARE = 0.08

FEISTEL_LEFT, FEISTEL_RIGHT = 7_000, 10_000


class DpidMixer:
    """Maps row numbers one to one onto all identifiers, without visible order.

    A Feistel network over the two halves of a number below 70,000,000: each round adds to one half a table's entry
    chosen by the other half, which could be taken back, so no two row numbers meet.
    """

    def __init__(self, rng):
        self.rounds = [(self.table(rng, FEISTEL_RIGHT, FEISTEL_LEFT), self.table(rng, FEISTEL_LEFT, FEISTEL_RIGHT))
                       for _ in range(2)]

    @staticmethod
    def table(rng, size, limit):
        return [int(rng.random() * limit) for _ in range(size)]

    def mix(self, row):
        left, right = divmod(row, FEISTEL_RIGHT)
        for by_right, by_left in self.rounds:
            left = (left + by_right[right]) % FEISTEL_LEFT
            right = (right + by_left[left]) % FEISTEL_RIGHT
        return DPID_FIRST + left * FEISTEL_RIGHT + right


MAX_COUNT = FEISTEL_LEFT * FEISTEL_RIGHT
assert MAX_COUNT == DPID_LAST - DPID_FIRST + 1


def csv_text(*fields):
    """The fields as they stand in a CSV row."""
    stream = io.StringIO()
    csv.writer(stream, lineterminator="").writerow(fields)
    return stream.getvalue()


def street_length(locality, rows, rng):
    """How many properties a street has, and at which of them it begins in this locality.

    Where few rows are wanted, streets are shown in part, so that a small file has many streets too.
    """
    stretch = max(1.0, rows / ROWS_BEFORE_STRETCH)
    mean = MEAN_PROPERTIES[locality.profile] * stretch
    length = SHORTEST_STREET + int(-math.log(1.0 - rng.random()) * (mean - SHORTEST_STREET))
    shown = min(length, 1 + rows // 4)
    return shown, int(rng.random() * (length - shown + 1))


def step(locality, rng):
    """How far the next number on the same side of the street is; always even."""
    if locality.profile == RURAL:
        return 2 * between(rng, 1, 30)
    return 2 if rng.random() >= GAP_SHARE else 2 * between(rng, 2, 5)


def street_properties(locality, length, start, rng):
    """Yields (number, rows) of the properties along a street, numbers of each side rising, odd to the left."""
    pick = PICK_BUILDER[locality.profile]
    pace = 16 if locality.profile == RURAL else 1
    odd = start * pace | 1
    following = [odd, odd - 1 if odd > 1 and rng.random() < 0.5 else odd + 1]
    if rng.random() < ONE_SIDED_SHARE:
        following[int(rng.random() * 2)] = math.inf
    for _ in range(length):
        side = following[1] < following[0]
        number = following[side]
        used, rows = pick(rng.random())(rng, number)
        following[side] = number + 2 * (used - 1) + step(locality, rng)
        yield number, rows


def street_rows(locality, neighbours, wanted, rng):
    """Yields rows with a street, without end."""
    names = StreetNames(locality, neighbours, rng)
    place = csv_text(locality.name, locality.state, locality.postcode)
    street = names.take()
    while street:
        following = names.take()
        course = lay_course(locality, rng)
        length, start = street_length(locality, wanted, rng)
        tail = f"{csv_text(*street)},,,{place},"
        for number, rows in street_properties(locality, length if following else wanted, start, rng):
            end = f"{tail}{course.position_text(number)},"
            for fields, category in rows:
                yield f"{fields}{end}{category}\n"
        street = following


def box_rows(locality, rng):
    """Yields rows of postal deliveries without a street, without end."""
    pick = PICK_BOX[locality.profile]
    place = csv_text(locality.name, locality.state, locality.postcode)
    name, postcode = GPO_LINES.get(locality.key, ("", ""))
    gpo_place = csv_text(name, locality.state, postcode)
    position = f"{locality.position[0]:.6f},{locality.position[1]:.6f}" if locality.position else ","
    before = f"{front(single(''))},,"
    last = {}
    while True:
        kind = pick(rng.random())
        previous = last.get(kind) or between(rng, 0, LARGEST_FIRST_BOX.get(kind, 20))
        number = last[kind] = previous + (1 if rng.random() < 0.7 else between(rng, 2, 9))
        yield f"{before},{kind},{number},{gpo_place if kind == 'GPO BOX' else place},{position},box\n"


def locality_rows(locality, neighbours, wanted, rng):
    """Yields the rows of one locality, `wanted` in all."""
    boxes = min(wanted, int(wanted * BOX_SHARE[locality.profile] + rng.random()))
    if wanted > boxes:
        yield from itertools.islice(street_rows(locality, neighbours, wanted - boxes, rng), wanted - boxes)
    yield from itertools.islice(box_rows(locality, rng), boxes)


def choose_neighbours(localities, rng):
    """Returns a function that names two other localities of a locality's state, for the roads to them."""
    by_state = {}
    for locality in localities:
        by_state.setdefault(locality.state, []).append(locality.name)

    def choose(locality):
        names = by_state[locality.state]
        chosen = {names[int(rng.random() * len(names))]: None for _ in range(2)}
        return [name for name in chosen if name != locality.name]

    return choose


def generate(count, seed, localities):
    """Yields `count` CSV lines. Memory grows with the localities and the streets of one of them, not with `count`."""
    mix = DpidMixer(random.Random(f"{seed}|dpid")).mix
    rng = random.Random(f"{seed}|order")
    neighbours = choose_neighbours(localities, rng)
    row = 0
    for locality, wanted in share_out(count, localities, rng):
        own_rng = random.Random("|".join((str(seed), *locality.key)))
        for text in locality_rows(locality, neighbours(locality), wanted, own_rng):
            yield f"{mix(row)},{text}"
            row += 1
