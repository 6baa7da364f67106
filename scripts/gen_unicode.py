#!/usr/bin/env python3
"""Writes src/text/unicode_tables.cpp, the constant tables of case, character class and accents.

    scripts/gen_unicode.py DIR                  write the tables of the library
    scripts/gen_unicode.py DIR --output FILE    write them elsewhere
    scripts/gen_unicode.py DIR --check FILE     compare; 1 when FILE is not what the data give

DIR holds the Unicode Character Database in the three versions that the tables are fixed to:

    5.1.0/UnicodeData.txt                                       letter case, accents
    5.2.0/UnicodeData.txt DerivedCoreProperties.txt PropList.txt   character classes
    8.0.0/CaseFolding.txt                                       case folding

Equal data give equal bytes. Whatever the data hold that this script does not know, and every count that differs from
what the tables must have, ends it with a message.
"""
import argparse
import collections
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TARGET = os.path.join(ROOT, "src", "text", "unicode_tables.cpp")

BMP = range(0x10000)
BLOCK = 256
LEADING_PAGES = 6  # kLeadingPages of unicode_tables.h

# Letters, marks, numbers, separators, other, punctuation, symbols; a category's code is 8 * group + place in the group.
CATEGORY_GROUPS = ("Lu Ll Lt Lm Lo", "Mn Me Mc", "Nd Nl No", "Zs Zl Zp", "Cc Cf Co Cs", "Pd Ps Pe Pc Po Pi Pf",
                   "Sm Sc Sk So")
CATEGORY_CODES = {name: 8 * group + minor
                  for group, names in enumerate(CATEGORY_GROUPS) for minor, name in enumerate(names.split())}

FLAG_BITS = {"Alphabetic": 6, "Uppercase": 7, "Lowercase": 8, "White_Space": 9, "Hex_Digit": 10,
             "Noncharacter_Code_Point": 11, "Default_Ignorable_Code_Point": 12}

RECORDS = {"5.1.0": 19336, "5.2.0": 21829}  # lines of UnicodeData.txt, which names its version nowhere

TWO_CHARACTERS = 0xD800  # fold entries that are rows of a list, not characters
THREE_CHARACTERS = 0xDA00
END_OF_LISTS = 0xDC00

Shape = collections.namedtuple("Shape", "pages entries high_bytes")
SHAPES = {
    "kLowerCase": Shape(16, 983, "00-05 10 1E 1F 21 24 2C A6 A7 FF"),
    "kUpperCase": Shape(17, 991, "00-05 1D 1E 1F 21 24 2C 2D A6 A7 FF"),
    "kProperties": Shape(68, None, "00-FF"),
    "kAccents": Shape(9, 778, "00-04 1E 1F 21"),
    "kCaseFold": Shape(19, 1198, "00-05 10 13 1E 1F 21 24 2C A6 A7 AB FB FF"),
}

# Code point and entry; None is no entry.
EXAMPLES = {
    "kLowerCase": {0x0130: 0x0069, 0x1E9E: 0x00DF, 0x0061: None},
    "kUpperCase": {0x0131: 0x0049, 0x017F: 0x0053, 0x03C2: 0x03A3, 0x1F80: 0x1F88, 0x2C65: 0x023A, 0x00DF: None,
                   0x0265: None},
    "kProperties": {0x0041: 0x04C0, 0x0061: 0x0541, 0x0030: 0x0410, 0x0020: 0x0218, 0x000A: 0x0220, 0x005F: 0x002B,
                    0x00AA: 0x0141, 0xFEFF: 0x1021, 0xFDD0: 0x0800},
    "kAccents": {0x00E9: 0x0065, 0x1F80: 0x03B1, 0x0419: 0x0418, 0x0401: 0x0415, 0x212B: 0x0041, 0x2126: 0x03A9,
                 0x212A: 0x004B, 0x1FBE: 0x03B9, 0x00D7: 0x004F, 0x00F7: 0x006F, 0x01C5: 0x01F2,
                 **dict.fromkeys((0x1F88, 0x1F8F, 0x1F98, 0x1F9F, 0x1FA8, 0x1FAF, 0x1FBC, 0x1FCC, 0x1FFC, 0x00C6,
                                  0x00D0, 0x00D8, 0x00DE, 0x00DF, 0x00F8, 0x0131, 0x0132, 0x0133, 0x0152, 0x0153,
                                  0x017F, 0x1E9E))},
    "kCaseFold": {0x0041: 0x0061, 0xFF21: 0xFF41, 0x13F8: 0x13F0, 0x00DF: TWO_CHARACTERS, 0x0130: TWO_CHARACTERS + 1,
                  0x0390: THREE_CHARACTERS, 0xFB04: THREE_CHARACTERS + 15},
}

PAIRS = 88
PAIR_EXAMPLES = {0: (0x0073, 0x0073), 1: (0x0069, 0x0307), 2: (0x02BC, 0x006E), 14: (0x1F02, 0x03B9),
                 87: (0x0574, 0x056D)}
TRIPLES = 16
TRIPLE_EXAMPLES = {0: (0x03B9, 0x0308, 0x0301), 1: (0x03C5, 0x0308, 0x0301), 14: (0x0066, 0x0066, 0x0069),
                   15: (0x0066, 0x0066, 0x006C)}

# Where a letter with a canonical decomposition loses its accents, and what is added to that. The multiplication and the
# division sign stand where O and o with stroke would be expected; callers rely on it.
ACCENT_RANGES = (range(0x00C0, 0x0500), range(0x1E00, 0x2000), range(0x2100, 0x2200))
ACCENT_ADDITIONS = {0x0110: 0x44, 0x0111: 0x64, 0x0126: 0x48, 0x0127: 0x68, 0x0141: 0x4C, 0x0142: 0x6C, 0x0166: 0x54,
                    0x0167: 0x74, 0x01C4: 0x01F1, 0x01C5: 0x01F2, 0x01C6: 0x01F3, 0x00D7: 0x4F, 0x00F7: 0x6F}

# Windows-1252: bytes first to last become the byte, or bytes from the byte on.
ANSI_CASE_PAIRS = ((0x41, 0x5A, 0x61), (0x8A, 0x8A, 0x9A), (0x8C, 0x8C, 0x9C), (0x8E, 0x8E, 0x9E), (0x9F, 0x9F, 0xFF),
                   (0xC0, 0xD6, 0xE0), (0xD8, 0xDE, 0xF8))
ANSI_BASES = ((0x8A, 0x8A, "S"), (0x8E, 0x8E, "Z"), (0x9A, 0x9A, "s"), (0x9E, 0x9E, "z"), (0x9F, 0x9F, "Y"),
              (0xC0, 0xC5, "A"), (0xC7, 0xC7, "C"), (0xC8, 0xCB, "E"), (0xCC, 0xCF, "I"), (0xD0, 0xD0, "D"),
              (0xD1, 0xD1, "N"), (0xD2, 0xD6, "O"), (0xD9, 0xDC, "U"), (0xDD, 0xDD, "Y"), (0xE0, 0xE5, "a"),
              (0xE7, 0xE7, "c"), (0xE8, 0xEB, "e"), (0xEC, 0xEF, "i"), (0xF0, 0xF0, "d"), (0xF1, 0xF1, "n"),
              (0xF2, 0xF6, "o"), (0xF9, 0xFC, "u"), (0xFD, 0xFD, "y"), (0xFF, 0xFF, "y"))
ANSI_ENTRIES = 60

# UTF-8: code points with a base, which is the first letter of the decomposition unless it is given further down.
UTF8_LATIN1 = range(0x00C0, 0x0100)
UTF8_EXTENDED_A = (range(0x0100, 0x0132), range(0x0134, 0x0138), range(0x0139, 0x014A), range(0x014C, 0x0152),
                   range(0x0154, 0x0180))
UTF8_EXTENDED_B = (range(0x01A0, 0x01A2), range(0x01AF, 0x01B1), range(0x01CD, 0x01DD), range(0x01DE, 0x01E4),
                   range(0x01E6, 0x01EE), range(0x01EF, 0x01F1), range(0x01F4, 0x01F6), range(0x01F8, 0x01FE),
                   range(0x0200, 0x021C), range(0x021E, 0x0220), range(0x0226, 0x0234))
UTF8_ADDITIONAL = (range(0x1E00, 0x1E9C), range(0x1EA0, 0x1EFA))
UTF8_BASES = {0x0110: "D", 0x0111: "d", 0x0126: "H", 0x0127: "h", 0x0131: "i", 0x013F: "L", 0x0140: "l", 0x0141: "L",
              0x0142: "l", 0x0149: "n", 0x0166: "T", 0x0167: "t", 0x017F: "s", 0x01E2: "\xC6", 0x01E3: "\xE6",
              0x01EF: "U", 0x01FC: "\xC6", 0x01FD: "\xE6", 0x1E9A: "a", 0x1E9B: "s"}
UTF8_TWO_BYTES = range(0x00C0, 0x0240)
UTF8_THREE_BYTES = range(0x1E00, 0x1F00)


class DataError(Exception):
    """The data are not what the tables are made from."""


def expect(what, actual, expected):
    if actual != expected:
        raise DataError(f"{what}: {actual!r} instead of {expected!r}")


def code_point(text, where):
    if not re.fullmatch("[0-9A-F]{4,6}", text) or int(text, 16) > 0x10FFFF:
        raise DataError(f"{where}: {text!r} is no code point")
    return int(text, 16)


def code_points(text, where):
    return tuple(code_point(part, where) for part in text.split(" "))


# ---- Reading --------------------------------------------------------------------------------------------------------

Character = collections.namedtuple("Character", "category decomposition upper lower")


def read_lines(path):
    with open(path, encoding="utf-8") as data:
        return [(f"{path}:{number}", line.rstrip("\n")) for number, line in enumerate(data, 1)]


def read_rows(path, version):
    """Rows of a file whose first line names its version and where # starts a remark."""
    lines = read_lines(path)
    name = os.path.splitext(os.path.basename(path))[0]
    expect(f"{path}: first line", lines[0][1] if lines else "", f"# {name}-{version}.txt")
    rows = [(where, line.partition("#")[0].strip()) for where, line in lines]
    return [(where, [field.strip() for field in row.split(";")]) for where, row in rows if row]


def parse_character(fields, where):
    expect(f"{where}: number of fields", len(fields), 15)
    category, decomposition, upper, lower = fields[2], fields[5], fields[12], fields[13]
    if category not in CATEGORY_CODES:
        raise DataError(f"{where}: unknown category {category!r}")
    canonical = decomposition and not decomposition.startswith("<")
    return Character(category, code_points(decomposition, where) if canonical else (),
                     code_point(upper, where) if upper else None, code_point(lower, where) if lower else None)


def read_characters(directory, version):
    """UnicodeData.txt: code point to Character, ranges of First and Last lines expanded."""
    path = os.path.join(directory, version, "UnicodeData.txt")
    lines = read_lines(path)
    expect(f"{path}: number of lines", len(lines), RECORDS[version])
    characters, previous, range_open = {}, -1, False
    for where, line in lines:
        fields = line.split(";")
        character = parse_character(fields, where)
        code = code_point(fields[0], where)
        if code <= previous:
            raise DataError(f"{where}: out of order")
        expect(f"{where}: last line of a range", fields[1].endswith(", Last>"), range_open)
        characters.update(dict.fromkeys(range(previous + 1 if range_open else code, code + 1), character))
        range_open = fields[1].endswith(", First>")
        previous = code
    return characters


def read_flags(directory, version):
    """Code point to the bits of the properties in FLAG_BITS."""
    flags, seen = collections.Counter(), set()
    for name in ("PropList.txt", "DerivedCoreProperties.txt"):
        for where, fields in read_rows(os.path.join(directory, version, name), version):
            expect(f"{where}: number of fields", len(fields), 2)
            first, _, last = fields[0].partition("..")
            codes = range(code_point(first, where), code_point(last or first, where) + 1)
            if fields[1] in FLAG_BITS:
                seen.add(fields[1])
                flags.update(dict.fromkeys(codes, 1 << FLAG_BITS[fields[1]]))
    expect("properties", seen, set(FLAG_BITS))
    return flags


def read_folds(directory, version):
    """CaseFolding.txt, statuses C and F: code point to the characters of its fold."""
    folds = {}
    for where, fields in read_rows(os.path.join(directory, version, "CaseFolding.txt"), version):
        expect(f"{where}: number of fields", len(fields), 4)
        if fields[1] not in ("C", "F", "S", "T"):
            raise DataError(f"{where}: unknown status {fields[1]!r}")
        code = code_point(fields[0], where)
        if fields[1] in "CF":
            expect(f"{where}: second fold", folds.get(code), None)
            folds[code] = code_points(fields[2], where)
    return folds


# ---- Tables ---------------------------------------------------------------------------------------------------------


def property_words(characters, flags):
    words = {}
    for code in BMP:
        category = CATEGORY_CODES[characters[code].category] if code in characters else 0
        if category | flags[code]:
            words[code] = category | flags[code]
    return words


def case_mapping(characters, field):
    return {code: getattr(characters[code], field)
            for code in BMP if code in characters and getattr(characters[code], field) is not None}


def decompose(characters, code):
    """The full canonical decomposition."""
    parts = characters[code].decomposition if code in characters else ()
    return [last for part in parts for last in decompose(characters, part)] or [code]


def base_letter(characters, code):
    """The letter that an accented letter starts with, or None. Titlecase letters, which are two in one, have none."""
    if code not in characters or characters[code].category == "Lt":
        return None
    first = decompose(characters, code)[0]
    if first == code or characters[first].category not in ("Lu", "Ll", "Lo"):
        return None
    return first


def accent_bases(characters):
    bases = {code: base_letter(characters, code) for codes in ACCENT_RANGES for code in codes}
    bases = {code: base for code, base in bases.items() if base is not None}
    expect("added accents that follow from the data", bases.keys() & ACCENT_ADDITIONS.keys(), set())
    return {**bases, **ACCENT_ADDITIONS}


def fold_tables(folds):
    """Entries, and the lists of two and of three characters that some of them are rows of."""
    entries, lists = {}, {2: [], 3: []}
    markers = {2: TWO_CHARACTERS, 3: THREE_CHARACTERS}
    for code in sorted(folds.keys() & set(BMP)):
        fold = folds[code]
        if len(fold) == 1:
            expect(f"fold of U+{code:04X} is a list marker", TWO_CHARACTERS <= fold[0] < END_OF_LISTS, False)
            expect(f"fold of U+{code:04X} has a fold", fold[0] in folds, False)
            entries[code] = fold[0]
        else:
            entries[code] = markers[len(fold)] + len(lists[len(fold)])
            lists[len(fold)].append(fold)
    return entries, lists[2], lists[3]


def ansi_table(name, rows):
    table = list(range(BLOCK))
    for first, last, to in rows:
        for byte in range(first, last + 1):
            table[byte] = ord(to) if isinstance(to, str) else to + byte - first
    expect(f"{name}: entries", sum(byte != to for byte, to in enumerate(table)), ANSI_ENTRIES)
    return table


def utf8_bases(characters):
    """Code point to the byte that replaces its UTF-8 sequence."""
    ansi = {code: ord(letter) for first, last, letter in ANSI_BASES for code in range(first, last + 1)}
    bases = {code: ansi[code] for code in UTF8_LATIN1 if code in ansi and code not in (0x00D0, 0x00F0)}
    bases.update({0x00D8: ord("O"), 0x00F8: ord("o")})
    for codes in UTF8_EXTENDED_A + UTF8_EXTENDED_B + UTF8_ADDITIONAL:
        for code in codes:
            derived = base_letter(characters, code)
            base = ord(UTF8_BASES[code]) if code in UTF8_BASES else derived
            expect(f"base of U+{code:04X} is ASCII or an ash", base in range(0x41, 0x7B) or base in (0xC6, 0xE6), True)
            bases[code] = base
    expect("UTF-8 bases outside the ranges", UTF8_BASES.keys() - bases.keys(), set())
    return bases


# ---- Checking -------------------------------------------------------------------------------------------------------


def bytes_of(stretches):
    """The bytes that a text like "00-05 10 1E" names."""
    ends = [[int(end, 16) for end in stretch.split("-")] for stretch in stretches.split()]
    return [byte for end in ends for byte in range(end[0], end[-1] + 1)]


def check_table(name, entries, numbers, pages, expected_entries):
    shape = SHAPES[name]
    expect(f"{name}: leading pages", numbers[:LEADING_PAGES], list(range(LEADING_PAGES)))
    expect(f"{name}: pages", len(pages), shape.pages)
    expect(f"{name}: entries", len(entries), expected_entries)
    expect(f"{name}: high bytes with data", sorted({code >> 8 for code in entries}), bytes_of(shape.high_bytes))
    expect(f"{name}: entries outside 16 bits", [e for e in entries.values() if not 0 < e < 0x10000], [])
    for code, entry in EXAMPLES[name].items():
        expect(f"{name}: entry of U+{code:04X}", entries.get(code), entry)


def check_list(name, rows, length, examples):
    expect(f"{name}: rows", len(rows), length)
    for number, row in examples.items():
        expect(f"{name}: row {number}", rows[number], row)


# ---- Writing --------------------------------------------------------------------------------------------------------

HEADER = """\
// Generated by scripts/gen_unicode.py, do not edit. Written by
//
//     scripts/gen_unicode.py DIR
//
// from a directory with these files of the Unicode Character Database: 5.1.0/UnicodeData.txt (letter case, accents);
// 5.2.0/UnicodeData.txt, DerivedCoreProperties.txt and PropList.txt (classes); 8.0.0/CaseFolding.txt (case folding).
//
// The tables are derived from data files that are Copyright (c) 1991-2015 Unicode, Inc., all rights reserved, and have
// been modified: selected, rearranged and, where scripts/gen_unicode.py says so, added to. The permission notice is in
// LICENSE.unicode.
// clang-format off
#include "text/unicode_tables.h"

namespace qxpaf {
"""

FOOTER = """
}  // namespace qxpaf
"""


def split_pages(entries):
    """Page numbers of the 256 high bytes and the distinct pages, in the order in which they are first used."""
    numbers, pages = [], {}
    for high in range(BLOCK):
        page = tuple(entries.get(high * BLOCK + low, 0) for low in range(BLOCK))
        numbers.append(pages.setdefault(page, len(pages)))
    return numbers, list(pages)


def text_rows(values, indent):
    """Sixteen numbers a line."""
    texts = ["0" if value == 0 else f"0x{value:X}" for value in values]
    return [" " * indent + ",".join(texts[i:i + 16]) + "," for i in range(0, len(texts), 16)]


def text_table(name, numbers, pages):
    lines = ["", f"constinit const BmpTable<{len(pages)}> {name} = {{", "  {"] + text_rows(numbers, 4) + ["  },", "  {"]
    for number, page in enumerate(pages):
        lines += [f"    // page {number}"] + text_rows(page, 4)
    return lines + ["  },", "};"]


def text_list(name, rows):
    inner = [", ".join(f"0x{value:04X}" for value in row) for row in rows]
    return ["", f"constinit const std::uint16_t {name}[{len(rows)}][{len(rows[0])}] = {{",
            *(f"  {{{row}}}," for row in inner), "};"]


def text_bytes(name, values):
    return ["", f"constinit const std::uint8_t {name}[{len(values)}] = {{", *text_rows(values, 2), "};"]


# ---- All of it ------------------------------------------------------------------------------------------------------


def wide_tables(directory):
    """Name to entries, with the two fold lists."""
    characters = read_characters(directory, "5.1.0")
    classes = read_characters(directory, "5.2.0")
    words = property_words(classes, read_flags(directory, "5.2.0"))
    folds, pairs, triples = fold_tables(read_folds(directory, "8.0.0"))
    accents = accent_bases(characters)
    expect("accents of 5.2.0", accent_bases(classes), accents)
    expect("assigned code points without properties", [c for c in BMP if c in classes and c not in words and
                                                       classes[c].category != "Lu"], [])
    tables = {"kLowerCase": case_mapping(characters, "lower"), "kUpperCase": case_mapping(characters, "upper"),
              "kProperties": words, "kAccents": accents, "kCaseFold": folds}
    return tables, pairs, triples, utf8_bases(characters)


def generate(directory, report):
    tables, pairs, triples, utf8 = wide_tables(directory)
    lines = []
    for name, entries in tables.items():
        numbers, pages = split_pages(entries)
        expected = SHAPES[name].entries
        check_table(name, entries, numbers, pages, len(entries) if expected is None else expected)
        report(f"{name}: {len(entries)} entries, {len(pages)} pages")
        lines += text_table(name, numbers, pages)
    check_list("kFoldPairs", pairs, PAIRS, PAIR_EXAMPLES)
    check_list("kFoldTriples", triples, TRIPLES, TRIPLE_EXAMPLES)
    report(f"kFoldPairs: {len(pairs)} rows; kFoldTriples: {len(triples)} rows; UTF-8 bases: {len(utf8)}")
    lines += text_list("kFoldPairs", pairs) + text_list("kFoldTriples", triples)
    lower = [(upper, upper_last, first) for upper, upper_last, first in ANSI_CASE_PAIRS]
    upper = [(first, first + last - start, start) for start, last, first in ANSI_CASE_PAIRS]
    lines += text_bytes("kAnsiUpper", ansi_table("kAnsiUpper", upper))
    lines += text_bytes("kAnsiLower", ansi_table("kAnsiLower", lower))
    lines += text_bytes("kAnsiAccents", ansi_table("kAnsiAccents", ANSI_BASES))
    lines += text_bytes("kUtf8BasesOfTwo", [utf8.get(code, 0) for code in UTF8_TWO_BYTES])
    lines += text_bytes("kUtf8BasesOfThree", [utf8.get(code, 0) for code in UTF8_THREE_BYTES])
    return HEADER + "\n".join(lines) + "\n" + FOOTER


def compare(path, text):
    with open(path, encoding="utf-8") as existing:
        equal = existing.read() == text
    if not equal:
        print(f"{path} is not what the data give: run scripts/gen_unicode.py", file=sys.stderr)
    return 0 if equal else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("directory", metavar="DIR")
    mode = parser.add_mutually_exclusive_group()
    mode.add_argument("--check", metavar="FILE")
    mode.add_argument("--output", metavar="FILE", default=TARGET)
    args = parser.parse_args()
    try:
        text = generate(args.directory, print)
    except (DataError, OSError) as error:
        print(f"gen_unicode: {error}", file=sys.stderr)
        return 2
    if args.check:
        return compare(args.check, text)
    with open(args.output, "w", encoding="utf-8") as output:
        output.write(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
