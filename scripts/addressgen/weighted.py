"""Random choice by weight."""

import bisect
import itertools


class Picker:
    """Picks one of (value, weight) pairs by a random number from 0 up to but not including 1."""

    def __init__(self, pairs):
        pairs = list(pairs)
        self.values = [value for value, _ in pairs]
        cumulative = list(itertools.accumulate(weight for _, weight in pairs))
        self.bounds = [bound / cumulative[-1] for bound in cumulative[:-1]]

    def __call__(self, chance):
        return self.values[bisect.bisect_right(self.bounds, chance)]
