#include "arf/build/file_strings.h"

#include <algorithm>
#include <numeric>

#include "arf/build/text_table_writer.h"

namespace arf {
namespace {

/** Adds the texts of a pool in ascending order. Returns their numbers. */
std::vector<std::uint32_t> AddSorted(const StringPool& from, StringPool& to)
{
  std::vector<std::uint32_t> numbers(from.Count());
  for (const std::uint32_t number : from.SortedNumbers()) numbers[number] = to.Intern(from.At(number));
  return numbers;
}

}  // namespace

FileStrings::FileStrings(const AddressTable& table, const OrderedAddresses& ordered)
{
  AddParts(table, ordered);
  ofKey_ = AddSorted(ordered.keys, pool_);
  ofName_ = AddSorted(table.names, pool_);
}

void FileStrings::AddParts(const AddressTable& table, const OrderedAddresses& ordered)
{
  // A stable sort of the natural order: among parts used equally often, that order decides.
  std::vector<std::uint32_t> places(ordered.partOrder.size());
  std::iota(places.begin(), places.end(), 0U);
  const auto uses = [&](std::uint32_t place) { return table.partUses[ordered.partOrder[place]]; };
  std::stable_sort(places.begin(), places.end(), [&](std::uint32_t a, std::uint32_t b) { return uses(a) > uses(b); });
  ofPart_.resize(places.size());
  for (const std::uint32_t place : places) ofPart_[place] = pool_.Intern(table.parts.At(ordered.partOrder[place]));
}

void FileStrings::Write(SectionWriter& writer) const
{
  writer.Begin(layout::SectionId::Strings);
  writer.AppendNumber(pool_.Count());
  AppendTexts(writer, pool_.Count(), [this](std::uint32_t number) { return pool_.At(number); });
  writer.End();
}

}  // namespace arf
