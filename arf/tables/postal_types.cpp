#include "arf/tables/postal_types.h"

namespace arf {
namespace {

constexpr WordRow kRows[] = {
    {"CARE PO", "CARE PO",
     "CARE OF POST OFFICE|C O PO|C O POST OFFICE|CARE OF PO|POSTE RESTANTE|CARE POST OFFICE|CPO|C POST OFFICE|C PO"},
    {"CMA", "CMA", "COMMUNITY MAIL AGENT|C M A"},
    {"CMB", "CMB", "COMMUNITY MAIL BAG|C M B"},
    {"CPA", "CPA", "COMMUNITY POSTAL AGENT|C P A"},
    {"GPO BOX", "GPO BOX", "GENERAL POST OFFICE BOX|G P O BOX|GPOBOX|GPO B|GPO"},
    {"LOCKED BAG", "LOCKED BAG", "LOCKED MAIL BAG SERVICE|LOCKED MAIL BAG|LMB|L M B|LOCKEDBAG|LCKD BAG|LB"},
    {"MS", "MS", "MAIL SERVICE|M S"},
    {"PO BOX", "PO BOX",
     "POST OFFICE BOX|P O BOX|POBOX|POST BOX|POSTAL BOX|PO BX|P BOX|POB|P O B|BOX|POST OFFICE B|PO"},
    {"PRIVATE BAG", "PRIVATE BAG", "PRIVATE MAIL BAG SERVICE|PRIVATE MAIL BAG|PMB|P M B|PVT BAG|PRIV BAG"},
    {"RMB", "RMB", "ROADSIDE MAIL BOX OR BAG|ROADSIDE MAIL BOX|ROADSIDE MAIL BAG|ROADSIDE MAILBOX|R M B"},
    {"RMS", "RMS", "ROADSIDE MAIL SERVICE|R M S"},
    {"RSD", "RSD", "ROADSIDE DELIVERY|R S D"},
};

/** A bit for each letter that a written form begins with, A being the lowest. */
constexpr std::uint32_t kFirstLetters = [] {
  std::uint32_t letters = 0;
  for (const WordRow& row : kRows) {
    letters |= 1U << (row.full.front() - 'A');
    for (std::size_t i = 0; i < row.others.size(); ++i)
      if (i == 0 || row.others[i - 1] == '|') letters |= 1U << (row.others[i] - 'A');
  }
  return letters;
}();

const WordTable& Table()
{
  static const WordTable table(kRows);
  return table;
}

}  // namespace

std::span<const WordRow> PostalTypeRows()
{
  return Table().Rows();
}

std::string_view ExpandPostalType(std::string_view upper)
{
  return Table().Expand(upper);
}

bool MayBeginPostalType(char letter)
{
  return letter >= 'A' && letter <= 'Z' && (kFirstLetters >> (letter - 'A') & 1U) != 0;
}

bool PostalTypeTakesNumber(std::string_view type)
{
  return type != "CARE PO" && type != "CPA";
}

}  // namespace arf
