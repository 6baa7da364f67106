#include "arf/tables/level_types.h"

namespace arf {
namespace {

constexpr WordRow kRows[] = {
    {"BASEMENT", "B", "BSMT|BASE|BMT"},
    {"FLOOR", "FL", "FLR|F"},
    {"GROUND", "G",
     "GROUND FLOOR|GF|GRD|GND|GROUND LEVEL|GRND|GROUND FLR|GROUND FL|GND FLOOR|GND FLR|GND FL|GRD FLOOR|GRD FLR|GRD "
     "FL|GRND FLOOR|GRND FLR|GD FLOOR|GD FLR|GD FL|GND LEVEL|GRD LEVEL|G FLOOR|G FLR"},
    {"LEVEL", "L", "LVL|LEV|LV"},
    {"LOBBY", "LB", "LBBY"},
    {"LOWER GROUND FLOOR", "LG", "LGF|LOWER GROUND|LOWER GROUND LEVEL"},
    {"LOWER LEVEL", "LL", ""},
    {"MEZZANINE", "M", "MEZZ|MEZ|MEZZANINE FLOOR|MEZZANINE LEVEL"},
    {"OBSERVATION DECK", "OD", "OBSERVATION"},
    {"PARKING", "P", "PARKING LEVEL"},
    {"PENTHOUSE", "PTHS", "PENT HOUSE"},
    {"PLATFORM", "PLF", "PLFM"},
    {"PODIUM", "PDM", "PODIUM LEVEL"},
    {"ROOFTOP", "RT", "ROOF|ROOF TOP|RFTP"},
    {"SUB-BASEMENT", "SB", "SUB BASEMENT|SUBBASEMENT"},
    {"UPPER GROUND FLOOR", "UG", "UGF|UPPER GROUND|UPPER GROUND LEVEL"},
    {"UPPER LEVEL", "UL", ""},
};

const WordTable& Table()
{
  static const WordTable table(kRows);
  return table;
}

}  // namespace

std::span<const WordRow> LevelTypeRows()
{
  return Table().Rows();
}

std::string_view ExpandLevelType(std::string_view upper)
{
  return Table().Expand(upper);
}

std::string_view AbbreviateLevelType(std::string_view full)
{
  return Table().Abbreviate(full);
}

}  // namespace arf
