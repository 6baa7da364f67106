"""What stands at one street number: from a house to an apartment tower.

A builder takes (rng, number) and returns (numbers used on this side of the street, rows); a row is the text of the CSV
fields from `building` to `number_last_suffix` with a comma after each, and the category. Rows of one property differ.
"""

from addressgen.localities import CORE, RURAL, TOWN, URBAN
from addressgen.weighted import Picker
from addressgen.words import (FACTORY_UNITS, FARM_BUILDINGS, FLAT_UNITS, HOME_BUILDINGS, OFFICE_UNITS, SHOP_BUILDINGS,
                              STREET_NAMES, TOWER_UNITS, VILLA_UNITS, WORK_BUILDINGS)

PICK_VILLA = Picker(VILLA_UNITS)
PICK_FLAT = Picker(FLAT_UNITS)
PICK_TOWER = Picker(TOWER_UNITS)
PICK_FACTORY = Picker(FACTORY_UNITS)
PICK_OFFICE = Picker(OFFICE_UNITS)

NO_UNIT = NO_LEVEL = ","


def between(rng, low, high):
    """A whole number from `low` to `high`, both included."""
    return low + int(rng.random() * (high - low + 1))


def front(number, building="", unit=NO_UNIT, level=NO_LEVEL, lot=""):
    """The fields of one row; `number` as from `single` or `span`, unit and level as "TYPE,number"."""
    return f"{building},{unit},{level},{lot},{number}"


def single(number, suffix=""):
    return f"{number},{suffix},,,"


def span(rng, number, chance, longest=4):
    """With this chance a range of street numbers; returns (numbers used, the four fields)."""
    if rng.random() >= chance:
        return 1, single(number)
    used = between(rng, 2, longest)
    return used, f"{number},,{number + 2 * (used - 1)},,"


def name_building(rng, endings):
    """A building's name, in mixed case and without commas."""
    name = STREET_NAMES[int(rng.random() * len(STREET_NAMES))]
    return f"{name.title()} {endings[int(rng.random() * len(endings))]}"


def maybe_named(rng, endings, chance):
    return name_building(rng, endings) if rng.random() < chance else ""


def house(_rng, number):
    return 1, [(front(single(number)), "house")]


def wide_house(rng, number):
    used, numbers = span(rng, number, 1.0, 3)
    return used, [(front(numbers), "house")]


def divided_house(rng, number):
    """12, 12A, perhaps 12B: or 12A to 12C as one."""
    if rng.random() < 0.1:
        return 1, [(front(f"{number},A,{number},{'BCD'[int(rng.random() * 3)]},"), "house")]
    suffixes = ("", "A", "B") if rng.random() < 0.2 else ("", "A")
    return 1, [(front(single(number, suffix)), "house") for suffix in suffixes]


def named_house(rng, number):
    return 1, [(front(single(number), name_building(rng, HOME_BUILDINGS)), "building")]


def farm(rng, number):
    return 1, [(front(single(number), name_building(rng, FARM_BUILDINGS)), "building")]


def lot(rng, number):
    """A lot, mostly without a street number; the lot has the number that the house would have."""
    numbers = single(number) if rng.random() < 0.3 else single("")
    return 1, [(front(numbers, lot=str(number)), "lot")]


def villas(rng, number):
    used, numbers = span(rng, number, 0.2)
    kind = PICK_VILLA(rng.random())
    rows = [(front(numbers), "building")] if rng.random() < 0.3 else []
    rows.extend((front(numbers, unit=f"{kind},{i}"), "unit") for i in range(1, between(rng, 2, 8) + 1))
    return used, rows


def flats(rng, number):
    used, numbers = span(rng, number, 0.3)
    kind = PICK_FLAT(rng.random())
    name = maybe_named(rng, HOME_BUILDINGS, 0.2)
    flats_by_letter = "ABCDEFGH" if rng.random() < 0.05 else range(1, between(rng, 4, 20) + 1)
    rows = [(front(numbers, name), "building")] if name or rng.random() < 0.4 else []
    rows.extend((front(numbers, name, f"{kind},{i}"), "unit") for i in flats_by_letter)
    return used, rows


def tower(rng, number):
    """Apartments numbered by level, such as 1203 on level 12; the level is written in half of the towers."""
    used, numbers = span(rng, number, 0.5, 6)
    kind = PICK_TOWER(rng.random())
    name = maybe_named(rng, HOME_BUILDINGS, 0.6)
    writes_level = rng.random() < 0.5
    per_level = between(rng, 2, 8)
    rows = [(front(numbers, name), "building")]
    for storey in range(1, between(rng, 5, 30) + 1):
        level = f"LEVEL,{storey}" if writes_level else NO_LEVEL
        rows.extend((front(numbers, name, f"{kind},{storey * 100 + i}", level), "apartment")
                    for i in range(1, per_level + 1))
    return used, rows


def offices(rng, number):
    """An office building: shops at the ground, above them whole levels or several tenants on a level."""
    used, numbers = span(rng, number, 0.4, 6)
    name = maybe_named(rng, WORK_BUILDINGS, 0.5)
    floor = "LEVEL" if rng.random() < 0.85 else "FLOOR"
    rows = [(front(numbers, name), "building")]
    rows.extend((front(numbers, name, f"SHOP,{i}", "GROUND,"), "shop") for i in range(1, between(rng, 0, 3) + 1))
    for storey in range(1, between(rng, 2, 22) + 1):
        level = f"{floor},{storey}"
        if rng.random() < 0.4:
            rows.append((front(numbers, name, level=level), "office"))
            continue
        kind = PICK_OFFICE(rng.random())
        rows.extend((front(numbers, name, f"{kind},{storey * 100 + i}", level), "office")
                    for i in range(1, between(rng, 2, 6) + 1))
    return used, rows


def shops(rng, number):
    used, numbers = span(rng, number, 0.5, 8)
    name = maybe_named(rng, SHOP_BUILDINGS, 0.3)
    rows = [(front(numbers, name), "building")]
    rows.extend((front(numbers, name, f"SHOP,{i}"), "shop") for i in range(1, between(rng, 2, 12) + 1))
    if rng.random() < 0.1:
        rows.append((front(numbers, name, "KIOSK,1"), "shop"))
    return used, rows


def factories(rng, number):
    used, numbers = span(rng, number, 0.35, 5)
    kind = PICK_FACTORY(rng.random())
    rows = [(front(numbers), "building")] if rng.random() < 0.3 else []
    rows.extend((front(numbers, unit=f"{kind},{i}"), "factory") for i in range(1, between(rng, 2, 10) + 1))
    return used, rows


# How often each stands at a street number, in parts of a thousand.
PICK_BUILDER = {
    CORE: Picker(((house, 330), (wide_house, 150), (divided_house, 20), (flats, 120), (tower, 60), (offices, 150),
                  (shops, 130), (named_house, 40))),
    URBAN: Picker(((house, 835), (wide_house, 30), (divided_house, 30), (villas, 60), (flats, 10), (tower, 1),
                   (offices, 2), (shops, 18), (factories, 8), (named_house, 5), (lot, 1))),
    TOWN: Picker(((house, 850), (wide_house, 25), (divided_house, 30), (villas, 40), (flats, 4), (shops, 20),
                  (factories, 10), (named_house, 10), (lot, 11))),
    RURAL: Picker(((house, 786), (divided_house, 20), (villas, 10), (shops, 8), (factories, 4), (farm, 32),
                   (lot, 140))),
}
