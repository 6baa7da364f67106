#include "arf/tables/word_table.h"

#include <algorithm>

namespace arf {
namespace {

/** Fowler, Noll and Vo's, variant 1a. */
std::uint32_t Hash(std::string_view text)
{
  std::uint32_t hash = 2166136261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash ^ hash >> 15U;  // the low bits of short texts alone are too much alike
}

}  // namespace

WordTable::WordTable(std::span<const WordRow> rows) : rows_(rows)
{
  for (std::size_t row = 0; row < rows.size(); ++row) {
    AddForm(rows[row].full, row);
    if (rows[row].abbreviation != rows[row].full) AddForm(rows[row].abbreviation, row);
    std::string_view rest = rows[row].others;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('|'), rest.size());
      AddForm(rest.substr(0, end), row);
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
}

void WordTable::AddForm(std::string_view written, std::size_t row)
{
  Form& form = slots_[SlotOf(written)];
  if (written.empty() || !form.written.empty() || formCount_ == kMaxForms) return;
  form = {written, static_cast<std::uint16_t>(row)};
  ++formCount_;
  longest_ = std::max(longest_, written.size());
}

std::size_t WordTable::SlotOf(std::string_view written) const
{
  std::size_t slot = Hash(written) % kSlots;
  while (!slots_[slot].written.empty() && slots_[slot].written != written) slot = (slot + 1) % kSlots;
  return slot;
}

const WordRow* WordTable::Find(std::string_view written) const
{
  if (written.empty() || written.size() > longest_) return nullptr;
  const Form& form = slots_[SlotOf(written)];
  return form.written.empty() ? nullptr : &rows_[form.row];
}

std::string_view WordTable::Expand(std::string_view written) const
{
  const WordRow* row = Find(written);
  return row ? row->full : std::string_view();
}

std::string_view WordTable::Abbreviate(std::string_view written) const
{
  const WordRow* row = Find(written);
  return row ? row->abbreviation : written;
}

}  // namespace arf
