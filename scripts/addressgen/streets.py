"""Streets of a locality: their names, never the same one twice, and their course on the map."""

import dataclasses
import math
import random

from addressgen.localities import CORE, RURAL, TOWN, URBAN
from addressgen.weighted import Picker
from addressgen.words import (FIXED_STREETS, HIGHWAYS, OTHER_SUFFIXES, STREET_NAMES, STREET_TYPES, SUFFIX_PAIRS)

TYPES = tuple(name for name, _ in STREET_TYPES)
PICK_TYPE = Picker(enumerate(weight for _, weight in STREET_TYPES))
SUFFIXES = ("",) + tuple(s for pair in SUFFIX_PAIRS for s in pair) + OTHER_SUFFIXES
UNPAIRED_SUFFIXES = ("",) + OTHER_SUFFIXES

FIXED_SHARE = 0.05
DIVIDED_SHARE = 0.02
NAMESAKE_SHARE = 0.04

METRES_PER_DEGREE = 111_200.0
SETBACK_METRES = 12.0
# Houses beyond this distance would leave the locality; the course starts again.
MAX_COURSE_METRES = 12_000
RADIUS_METRES = {CORE: 700, URBAN: 1300, TOWN: 1200, RURAL: 3000}
METRES_PER_NUMBER = {CORE: 6.0, URBAN: 8.0, TOWN: 9.0, RURAL: 10.0}


class NamePlan:
    """All forms of one street name in one locality, as a sequence without repeats."""

    def __init__(self, rng):
        self.type_index = PICK_TYPE(rng.random())
        self.pair = SUFFIX_PAIRS[int(rng.random() * len(SUFFIX_PAIRS))] if rng.random() < DIVIDED_SHARE else None
        self.used = 0

    @property
    def is_half_named(self):
        """True after the first of a pair of streets, whose other half must follow."""
        return self.pair is not None and self.used == 1

    @property
    def capacity(self):
        if self.pair:
            return len(UNPAIRED_SUFFIXES) * len(TYPES)
        return len(SUFFIXES) * len(TYPES)

    def take(self):
        """Returns the next (type, suffix)."""
        turn = self.used
        self.used += 1
        if self.pair and turn < 2:
            return TYPES[self.type_index], self.pair[turn]
        # Of a divided street, the form without a suffix (turn 0 here) does not exist; turn 1 was its other half.
        turn -= 1 if self.pair else 0
        suffixes = UNPAIRED_SUFFIXES if self.pair else SUFFIXES
        return TYPES[(self.type_index + turn) % len(TYPES)], suffixes[turn // len(TYPES)]


def fixed_streets(locality, neighbours, rng):
    """Returns the (name, type) of streets that have one form only; in the country, roads to other places come last."""
    streets = list(FIXED_STREETS)
    streets.extend((name, "HIGHWAY") for name in HIGHWAYS[locality.state])
    rng.shuffle(streets)
    if locality.profile == RURAL:
        streets.extend((f"{locality.name}-{other}", "ROAD") for other in neighbours)
    return streets


class StreetNames:
    """Hands out the streets of one locality as (name, type, suffix), each once, None at the end."""

    def __init__(self, locality, neighbours, rng):
        self.rng = rng
        # Taken from the end.
        self.fixed = fixed_streets(locality, neighbours, rng)
        self.plans = {}
        self.position = int(rng.random() * len(STREET_NAMES))
        # A stride without a common factor with the list's length visits every name before any comes again.
        strides = [n for n in range(7, 400) if math.gcd(n, len(STREET_NAMES)) == 1]
        self.stride = strides[int(rng.random() * len(strides))]
        self.current = None

    def next_name(self):
        """Moves on to the next name that still has an unused form; False when there is none."""
        for _ in STREET_NAMES:
            self.position = (self.position + self.stride) % len(STREET_NAMES)
            self.current = self.plans.get(self.position)
            if self.current is None:
                self.current = self.plans[self.position] = NamePlan(self.rng)
            if self.current.used < self.current.capacity:
                return True
        return False

    def stays_on_name(self):
        """Decides whether the next street bears the last one's name."""
        plan = self.current
        if plan is None or plan.used >= plan.capacity:
            return False
        return plan.is_half_named or self.rng.random() < NAMESAKE_SHARE

    def take(self):
        """Returns the next street."""
        stays = self.stays_on_name()
        if not stays and self.fixed and self.rng.random() < FIXED_SHARE:
            return (*self.fixed.pop(), "")
        if stays or self.next_name():
            return (STREET_NAMES[self.position], *self.current.take())
        return (*self.fixed.pop(), "") if self.fixed else None


@dataclasses.dataclass(slots=True)
class Course:
    """Where a street runs: its start and the degrees that one metre along it makes."""

    latitude: float
    longitude: float
    north: float
    east: float
    metres_per_number: float

    def position_text(self, number):
        """Returns "latitude,longitude" of a street number; odd numbers lie to the left."""
        along = number * self.metres_per_number % MAX_COURSE_METRES
        left = SETBACK_METRES if number & 1 else -SETBACK_METRES
        latitude = self.latitude + along * self.north + left * self.east
        longitude = self.longitude + along * self.east - left * self.north
        return f"{latitude:.6f},{longitude:.6f}"


class NoCourse:
    """The course of a street in a locality whose place is not known."""

    @staticmethod
    def position_text(_number):
        return ","


def lay_course(locality, rng):
    """Returns the course of a new street."""
    if locality.position is None:
        return NoCourse
    latitude, longitude = locality.position
    metres_per_degree_east = METRES_PER_DEGREE * math.cos(math.radians(latitude))
    away = RADIUS_METRES[locality.profile] * math.sqrt(rng.random())
    direction, bearing = math.tau * rng.random(), math.tau * rng.random()
    return Course(latitude + away * math.cos(direction) / METRES_PER_DEGREE,
                  longitude + away * math.sin(direction) / metres_per_degree_east,
                  math.cos(bearing) / METRES_PER_DEGREE, math.sin(bearing) / metres_per_degree_east,
                  METRES_PER_NUMBER[locality.profile])
