#include "arf/match/penalties.h"

namespace arf {
namespace {

constexpr bool IsInOrder()
{
  for (std::size_t i = 0; i < kDepartureCount; ++i)
    if (static_cast<std::size_t>(kDepartureRows[i].kind) != i || kDepartureRows[i].name.empty()) return false;
  return true;
}
static_assert(IsInOrder());
static_assert(kDepartureCount < 64, "Departures has one bit for each kind");

void AppendRow(BoundedText& text, const DepartureRow& row)
{
  if (text.Length() > 0) text << ';';
  text << row.name << '=' << std::uint32_t{row.penalty};
}

}  // namespace

void AppendDepartures(BoundedText& text, const Departures& departures)
{
  for (const DepartureRow& row : kDepartureRows)
    if (departures.Has(row.kind)) AppendRow(text, row);
}

void AppendPenaltyTable(BoundedText& text)
{
  for (const DepartureRow& row : kDepartureRows) AppendRow(text, row);
}

}  // namespace arf
