#!/usr/bin/env python3
"""Addresses as people write them, with the identifiers that are right: test pairs for bench/accuracy.

Reads single-file register extracts (columns divided by "|", the first row names them) and writes a CSV with the columns
id, kind, input, acceptable_pids. The same seed gives the same pairs. Kinds whose name begins with "no_such" have no right
answer.

    noisy_addresses.py --count 200 --seed 1 CORE.psv... > pairs.csv
"""
import argparse
import collections
import csv
import random
import string
import sys

STREET_FORMS = {"STREET": "St", "ROAD": "Rd", "AVENUE": "Ave", "COURT": "Ct", "CRESCENT": "Cres", "DRIVE": "Dr",
                "PLACE": "Pl", "CIRCUIT": "Cct", "TERRACE": "Tce", "CLOSE": "Cl", "HIGHWAY": "Hwy", "PARADE": "Pde"}
SOUNDS = [("PH", "F"), ("CK", "K"), ("LL", "L"), ("TT", "T"), ("NN", "N"), ("SS", "S"), ("EE", "I"), ("OO", "U"),
          ("IE", "Y"), ("Y", "I"), ("C", "K"), ("Z", "S"), ("AY", "AI")]
NOISE_BEFORE = ["Attn Accounts, ", "C/- M Nguyen, ", "The Manager, ", "Corner Cafe, ", "Ms A Brown\n", "Acme Pty Ltd, "]
NOISE_BEHIND = [" ph 08 8981 2345", ", jo@example.org", " (0412 345 678)", " tel: 03 9123 4567"]


def typo(rng, text):
    """One letter missing, added, wrong, or two swapped; digits and the signs of a name stay."""
    places = [i for i, c in enumerate(text) if c.isalpha()]
    i = rng.choice(places[1:] or places)
    letter = rng.choice(string.ascii_uppercase)
    swapped = text[:i - 1] + text[i] + text[i - 1] + text[i + 1:] if i > 0 and text[i - 1].isalpha() else text
    ways = [text[:i] + text[i + 1:], text[:i] + letter + text[i:], text[:i] + letter + text[i + 1:], swapped]
    return rng.choice([way for way in ways if way != text] or [text + letter])


class Address:
    def __init__(self, row):
        self.pid = row["ADDRESS_DETAIL_PID"]
        self.unit_type, self.unit = row["FLAT_TYPE"], row["FLAT_NUMBER"]
        self.level = " ".join(filter(None, (row["LEVEL_TYPE"], row["LEVEL_NUMBER"])))
        self.first, self.last, self.lot = row["NUMBER_FIRST"], row["NUMBER_LAST"], row["LOT_NUMBER"]
        self.street, self.type, self.suffix = row["STREET_NAME"], row["STREET_TYPE"], row["STREET_SUFFIX"]
        self.locality, self.state, self.postcode = row["LOCALITY_NAME"], row["STATE"], row["POSTCODE"]

    def number(self):
        return self.first + ("-" + self.last if self.last else "") if self.first else "LOT " + self.lot

    def copy(self, **changes):
        other = Address.__new__(Address)
        other.__dict__.update(self.__dict__, **changes)
        return other

    def written(self, comma=", ", short=False, slash=False, last_line=None):
        unit = " ".join(filter(None, (self.unit_type.title(), self.unit)))
        street_type = STREET_FORMS.get(self.type, self.type.title()) if short else self.type.title()
        front = f"{self.unit}/{self.number()}" if slash and self.unit else " ".join(filter(None, (unit, self.level.title(),
                                                                                              self.number())))
        line = " ".join(filter(None, (front, self.street.title(), street_type, self.suffix.title())))
        if last_line is None:
            last_line = " ".join(filter(None, (self.locality.title(), self.state, self.postcode)))
        return line + comma + last_line

    def key(self):
        return (self.unit_type, self.unit, self.level, self.first, self.last, self.lot, self.street, self.type, self.suffix,
                self.locality, self.state, self.postcode)


class Register:
    def __init__(self, paths):
        self.addresses = []
        for path in paths:
            with open(path, encoding="utf-8", newline="") as file:
                rows = csv.DictReader(file, delimiter="|", quoting=csv.QUOTE_NONE)
                self.addresses += [Address(row) for row in rows if row["STREET_NAME"] and row["POSTCODE"]]
        self.pids = collections.defaultdict(list)
        self.street_types = collections.defaultdict(set)
        self.numbers = collections.defaultdict(int)
        self.street_names = set()
        for a in self.addresses:
            self.pids[a.key()].append(a.pid)
            self.street_types[a.street, a.locality, a.state].add((a.type, a.suffix))
            self.street_names.add(a.street)
            digits = "".join(c for c in (a.last or a.first) if c.isdigit())
            street = (a.street, a.type, a.suffix, a.state)
            self.numbers[street] = max(self.numbers[street], int(digits or 0))

    def is_alone(self, a):
        """Whether no other street of the locality has the name."""
        return len(self.street_types[a.street, a.locality, a.state]) == 1


def sounding(rng, name):
    ways = [name.replace(a, b, 1) for a, b in SOUNDS if a in name[1:] or name.startswith("PH") and a == "PH"]
    return rng.choice(ways) if ways else None


def rewritten(rng, register, kind, a):
    """The input of a kind for an address, or None where the kind makes no sense for it."""
    if kind == "as_stored":
        return a.written().upper()
    if kind == "abbreviated":
        return a.written(short=True)
    if kind == "case_and_signs":
        return a.written(comma=" ", short=True).lower()
    if kind == "no_postcode":
        return a.written(short=True, last_line=f"{a.locality.title()} {a.state}")
    if kind == "no_state":
        return a.written(short=True, last_line=f"{a.locality.title()} {a.postcode}")
    if kind == "postcode_first":
        return a.written(short=True, last_line=f"{a.locality.title()} {a.postcode} {a.state}")
    if kind == "wrong_postcode":
        digit = rng.choice([d for d in string.digits if d != a.postcode[3]])
        return a.copy(postcode=a.postcode[:3] + digit).written(short=True)
    if kind == "typo_street":
        return a.copy(street=typo(rng, a.street)).written(short=True) if len(a.street) > 3 else None
    if kind == "typo_locality":
        return a.copy(locality=typo(rng, a.locality)).written(short=True) if len(a.locality) > 3 else None
    if kind == "typo_both":
        both = a.copy(street=typo(rng, a.street), locality=typo(rng, a.locality))
        return both.written(short=True) if min(len(a.street), len(a.locality)) > 3 else None
    if kind == "two_typos_street":
        return a.copy(street=typo(rng, typo(rng, a.street))).written(short=True) if len(a.street) > 8 else None
    if kind == "sounding_street":
        name = sounding(rng, a.street)
        return a.copy(street=name).written(short=True) if name and len(name) > 3 else None
    if kind == "no_type":
        return a.copy(type="", suffix="").written() if register.is_alone(a) and a.type else None
    if kind == "wrong_type":
        other = rng.choice([t for t in STREET_FORMS if t != a.type])
        return a.copy(type=other).written(short=True) if register.is_alone(a) and a.type else None
    if kind == "slash_unit":
        return a.written(short=True, slash=True) if a.unit and not a.level else None
    if kind == "noise_before":
        return rng.choice(NOISE_BEFORE) + a.written(short=True)
    if kind == "noise_behind":
        return a.written(short=True) + rng.choice(NOISE_BEHIND)
    if kind == "run_together":
        stuck = f"{a.number()}{a.street.title()} "
        spaced = f"{a.number()} {a.street.title()} "
        return a.written(comma=" ", short=True).replace(spaced, stuck, 1) if len(a.street) > 3 and a.first else None
    if kind == "no_such_number":
        beyond = register.numbers[a.street, a.type, a.suffix, a.state] + rng.randrange(200, 900)
        return a.copy(unit="", unit_type="", level="", lot="", first=str(beyond), last="").written(short=True)
    if kind == "no_such_street":
        name = "".join(rng.choice("BDFGKLMNPRSTVZ" if i % 2 == 0 else "AEIOU") for i in range(8)).upper()
        return a.copy(street=name).written(short=True) if name not in register.street_names else None
    if kind == "no_such_locality":
        name = "".join(rng.choice("BDFGKLMNPRSTVZ" if i % 2 == 0 else "AEIOU") for i in range(9)).upper()
        return a.copy(locality=name, postcode="").written(short=True)
    raise ValueError(kind)


KINDS = ["as_stored", "abbreviated", "case_and_signs", "no_postcode", "no_state", "postcode_first", "wrong_postcode",
         "typo_street", "typo_locality", "typo_both", "two_typos_street", "sounding_street", "no_type", "wrong_type",
         "slash_unit", "noise_before", "noise_behind", "run_together", "no_such_number", "no_such_street",
         "no_such_locality"]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("register", nargs="+", help="single-file register extracts, columns divided by |")
    parser.add_argument("--count", type=int, default=100, help="pairs of each kind")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    register = Register(options.register)
    rng = random.Random(options.seed)
    out = csv.writer(sys.stdout, lineterminator="\n")
    out.writerow(["id", "kind", "input", "acceptable_pids"])
    number = 0
    for kind in KINDS:
        made = 0
        for _ in range(50 * options.count):
            if made == options.count:
                break
            address = rng.choice(register.addresses)
            text = rewritten(rng, register, kind, address)
            if text is None:
                continue
            made += 1
            number += 1
            right = "" if kind.startswith("no_such") else ";".join(register.pids[address.key()])
            out.writerow([number, kind, text, right])


if __name__ == "__main__":
    main()
