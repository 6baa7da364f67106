#include "arf/tables/states.h"

namespace arf {
namespace {

constexpr WordRow kRows[] = {
    {"AUSTRALIAN CAPITAL TERRITORY", "ACT", "A C T|CAPITAL TERRITORY"},
    {"NEW SOUTH WALES", "NSW", "N S W|NEW STH WALES"},
    {"NORTHERN TERRITORY", "NT", "N T|NTH TERRITORY|NORTH TERRITORY"},
    {"OTHER TERRITORIES", "OT", "O T"},
    {"QUEENSLAND", "QLD", "Q L D|QLND|QNSLD"},
    {"SOUTH AUSTRALIA", "SA", "S A|STH AUSTRALIA|S AUSTRALIA|SOUTH AUST"},
    {"TASMANIA", "TAS", "T A S|TASSIE"},
    {"VICTORIA", "VIC", "V I C|VICT"},
    {"WESTERN AUSTRALIA", "WA", "W A|WEST AUSTRALIA|W AUSTRALIA|WESTERN AUST|WEST AUST"},
};

const WordTable& Table()
{
  static const WordTable table(kRows);
  return table;
}

}  // namespace

std::span<const WordRow> StateRows()
{
  return Table().Rows();
}

std::string_view StateCode(std::string_view upper)
{
  const WordRow* row = Table().Find(upper);
  return row ? row->abbreviation : std::string_view();
}

std::string_view StateName(std::string_view upper)
{
  return Table().Expand(upper);
}

}  // namespace arf
