#include "arf/tables/street_suffixes.h"

namespace arf {
namespace {

constexpr WordRow kRows[] = {
    {"CENTRAL", "CN", "CEN|CENT|CNTRL"},
    {"DEVIATION", "DE", "DEVN"},
    {"EAST", "E", ""},
    {"EXTENSION", "EX", "EXTN|EXT"},
    {"INNER", "IN", "INNR"},
    {"LOWER", "LR", "LWR"},
    {"MALL", "ML", ""},
    {"NORTH", "N", "NTH"},
    {"NORTH EAST", "NE", "NORTHEAST|N E|NTH EAST"},
    {"NORTH WEST", "NW", "NORTHWEST|N W|NTH WEST|NTH WST"},
    {"OFF", "OF", ""},
    {"ON", "ON", ""},
    {"OUTER", "OT", "OUTR"},
    {"OVERPASS", "OP", "OVPS"},
    {"SOUTH", "S", "STH"},
    {"SOUTH EAST", "SE", "SOUTHEAST|S E|STH EAST"},
    {"SOUTH WEST", "SW", "SOUTHWEST|S W|STH WEST|STH WST"},
    {"UPPER", "UP", "UPR|UPPR"},
    {"WEST", "W", "WST"},
};

const WordTable& Table()
{
  static const WordTable table(kRows);
  return table;
}

}  // namespace

std::span<const WordRow> StreetSuffixRows()
{
  return Table().Rows();
}

std::string_view ExpandStreetSuffix(std::string_view upper)
{
  return Table().Expand(upper);
}

std::string_view AbbreviateStreetSuffix(std::string_view full)
{
  return Table().Abbreviate(full);
}

}  // namespace arf
