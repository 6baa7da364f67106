"""The CSV layout of address files, as documented in docs/data.md."""

COLUMNS = (
    "dpid", "building", "unit_type", "unit_number", "level_type", "level_number", "lot", "number_first",
    "number_first_suffix", "number_last", "number_last_suffix", "street_name", "street_type", "street_suffix",
    "postal_type", "postal_number", "locality", "state", "postcode", "latitude", "longitude", "category",
)

# Everything that is written on the envelope; what remains is identity, position and classification.
ADDRESS_COLUMNS = tuple(c for c in COLUMNS if c not in ("dpid", "latitude", "longitude", "category"))

STATES = ("ACT", "NSW", "NT", "QLD", "SA", "TAS", "VIC", "WA")

# Identifiers of complete delivery points lie in this range, both ends included.
DPID_FIRST = 30_000_000
DPID_LAST = 99_999_999

# Postcodes that only ever stand on post office boxes and large-volume receivers, never on a street address. Adelaide
# Airport's 5950 lies in such a range and has streets all the same.
BOX_POSTCODE_RANGES = (
    (200, 299), (900, 999), (1000, 1999), (5800, 5949), (5951, 5999), (6800, 6999), (7800, 7999), (8000, 9999),
)

# The boxes of a capital's general post office have a locality line of their own.
GPO_LINES = {
    ("SYDNEY", "NSW", "2000"): ("SYDNEY", "2001"),
    ("MELBOURNE", "VIC", "3000"): ("MELBOURNE", "3001"),
    ("BRISBANE CITY", "QLD", "4000"): ("BRISBANE", "4001"),
    ("ADELAIDE", "SA", "5000"): ("ADELAIDE", "5001"),
    ("PERTH", "WA", "6000"): ("PERTH", "6001"),
    ("HOBART", "TAS", "7000"): ("HOBART", "7001"),
    ("DARWIN", "NT", "0800"): ("DARWIN", "0801"),
    ("CITY", "ACT", "2601"): ("CANBERRA", "2601"),
}
GPO_POSTCODES = ("2001", "3001", "4001", "5001", "6001", "7001", "0801")


def is_box_postcode(postcode):
    """True for a postcode without street addresses."""
    number = int(postcode)
    return postcode in GPO_POSTCODES or any(low <= number <= high for low, high in BOX_POSTCODE_RANGES)
