#include "arf/tables/unit_types.h"

namespace arf {
namespace {

constexpr WordRow kRows[] = {
    {"ANTENNA", "ANT", ""},
    {"APARTMENT", "APT", "APPT|APRT|APMT"},
    {"AUTOMATED TELLER MACHINE", "ATM", "AUTOMATIC TELLER MACHINE"},
    {"BARBEQUE", "BBQ", "BARBECUE"},
    {"BLOCK", "BLCK", "BLK"},
    {"BOATSHED", "BTSD", "BOAT SHED"},
    {"BUILDING", "BLDG", "BLD"},
    {"BUNGALOW", "BNGW", ""},
    {"CAGE", "CAGE", ""},
    {"CARPARK", "CARP", "CAR PARK"},
    {"CARSPACE", "CARS", "CAR SPACE"},
    {"CLUB", "CLUB", ""},
    {"COOLROOM", "COOL", "COOL ROOM"},
    {"COTTAGE", "CTGE", ""},
    {"DUPLEX", "DUPL", "DUP|DPLX"},
    {"FACTORY", "FCTY", "FY|FACT|FTY"},
    {"FLAT", "FLAT", "F|FLT|FL"},
    {"GARAGE", "GRGE", ""},
    {"HALL", "HALL", ""},
    {"HOUSE", "HSE", "HS"},
    {"KIOSK", "KSK", ""},
    {"LEASE", "LSE", ""},
    {"LOBBY", "LBBY", ""},
    {"LOFT", "LOFT", ""},
    {"LOT", "LOT", ""},
    {"MAISONETTE", "MSNT", ""},
    {"MARINE BERTH", "MBTH", "MB"},
    {"OFFICE", "OFFC", "OFF|OFC|OFFICES"},
    {"PENTHOUSE", "PTHS", "PH|PENT HOUSE"},
    {"REAR", "REAR", ""},
    {"RESERVE", "RESV", ""},
    {"ROOM", "ROOM", "RM"},
    {"SECTION", "SEC", ""},
    {"SHED", "SHED", ""},
    {"SHOP", "SHOP", "SHP|SH"},
    {"SHOWROOM", "SHRM", "SHOW ROOM"},
    {"SIGN", "SIGN", ""},
    {"SITE", "SITE", ""},
    {"STALL", "STLL", "SL|STAL"},
    {"STORE", "STOR", ""},
    {"STRATA UNIT", "STR", ""},
    {"STUDIO", "STU", "STD"},
    {"SUBSTATION", "SUBS", ""},
    {"SUITE", "SE", "STE|SUIT"},
    {"TENANCY", "TNCY", "TENY|TEN"},
    {"TOWER", "TWR", ""},
    {"TOWNHOUSE", "TNHS", "TH|TOWN HOUSE|TNHSE"},
    {"UNIT", "UNIT", "U|UN|UNT|UNITS"},
    {"VAULT", "VLT", ""},
    {"VILLA", "VLLA", "VIL|V"},
    {"WARD", "WARD", ""},
    {"WAREHOUSE", "WHSE", "WE|WHS"},
    {"WORKSHOP", "WKSH", "WSHOP"},
};

const WordTable& Table()
{
  static const WordTable table(kRows);
  return table;
}

}  // namespace

std::span<const WordRow> UnitTypeRows()
{
  return Table().Rows();
}

std::string_view ExpandUnitType(std::string_view upper)
{
  return Table().Expand(upper);
}

std::string_view AbbreviateUnitType(std::string_view full)
{
  return Table().Abbreviate(full);
}

}  // namespace arf
