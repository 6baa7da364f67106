#!/usr/bin/env python3
"""Writes any number of synthetic, plausible Australian addresses as CSV (layout: docs/data.md).

Localities, states and postcodes are real; streets, numbers, buildings and identifiers are made up. The same arguments
give the same bytes. Identifiers are eight digits that no post office assigned: never print them on mail as a barcode.

examples:
  generate_addresses.py --count 1000 --out demo.csv
  generate_addresses.py --count 1000000 --seed 7 --out million.csv
  generate_addresses.py --count 5000000 --localities ~/geonames/au-localities.csv --out big.csv
  generate_addresses.py --count 20 --out - | column -s, -t

A list for --localities is CSV with a header row; the columns postcode, locality and state are needed, latitude,
longitude and population are used, others are passed over. Without it the localities of data/sample/addresses.csv and
scripts/localities.csv are used.
"""

import argparse
import contextlib
import itertools
import os
import sys

from addressgen import localities as locality_list
from addressgen.layout import COLUMNS
from addressgen.rows import MAX_COUNT, generate

PROGRESS_ROWS = 50_000


def whole_number(low, high):
    """Returns a function that reads a whole number within bounds from the command line."""
    def read(text):
        if not (text.isascii() and text.isdigit() and low <= int(text) <= high):
            raise argparse.ArgumentTypeError(f"'{text}' is not a whole number from {low} to {high}")
        return int(text)
    return read


def parse_arguments(arguments):
    """Returns the parsed command line."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", required=True, type=whole_number(1, MAX_COUNT), metavar="N",
                        help=f"number of rows, 1 to {MAX_COUNT}")
    parser.add_argument("--seed", default=1, type=whole_number(0, 2**63 - 1), metavar="S",
                        help="what the random choices start from (default: %(default)s)")
    parser.add_argument("--out", required=True, metavar="FILE", help="the file to write, or - for standard output")
    parser.add_argument("--localities", metavar="CSV", help="the localities to use")
    parser.add_argument("--without-category", action="store_true", help="leave out the last column, category")
    return parser.parse_args(arguments)


def open_for_writing(path):
    return open(path, "w", encoding="utf-8", newline="", buffering=1 << 20)


@contextlib.contextmanager
def replaced_file(path):
    """Opens a file beside `path` for writing; it takes the name `path` at the end, or disappears on an error."""
    temporary = f"{path}.{os.getpid()}.tmp"
    try:
        with open_for_writing(temporary) as stream:
            yield stream
        os.replace(temporary, path)
    except BaseException:
        with contextlib.suppress(OSError):
            os.unlink(temporary)
        raise


def open_output(path):
    """Returns a context that yields the stream to write to."""
    if path == "-":
        sys.stdout.reconfigure(encoding="utf-8", newline="")
        return contextlib.nullcontext(sys.stdout)
    # A device or a pipe is written to, never replaced by a file.
    special = os.path.exists(path) and not os.path.isfile(path)
    return open_for_writing(path) if special else replaced_file(path)


def write_rows(stream, lines, count):
    """Writes the lines, and progress to standard error where someone watches it."""
    watched = sys.stderr.isatty()
    written = 0
    while written < count:
        stream.writelines(itertools.islice(lines, PROGRESS_ROWS))
        written = min(count, written + PROGRESS_ROWS)
        if watched:
            print(f"\r{written:,} of {count:,} rows ({100 * written // count} %)", end="", file=sys.stderr, flush=True)
    stream.flush()
    if watched:
        print(file=sys.stderr)


def run(options):
    """Generates the file that the command line asks for."""
    columns = COLUMNS[:-1] if options.without_category else COLUMNS
    lines = generate(options.count, options.seed, locality_list.load(options.localities))
    if options.without_category:
        lines = (line.rpartition(",")[0] + "\n" for line in lines)
    with open_output(options.out) as stream:
        stream.write(",".join(columns) + "\n")
        write_rows(stream, lines, options.count)


def main(arguments=None):
    """Runs the program and returns the exit status."""
    options = parse_arguments(arguments)
    try:
        run(options)
    except BrokenPipeError:
        # The reader has seen enough; keep the interpreter from complaining when it flushes at its end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        return 1
    except (OSError, locality_list.LocalityError) as error:
        print(f"generate_addresses.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
