#include "arf/tables/word_table.h"

#include <algorithm>

namespace arf {

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
  const auto byText = [](const Form& a, const Form& b) { return a.written < b.written; };
  std::sort(forms_.begin(), forms_.begin() + static_cast<std::ptrdiff_t>(formCount_), byText);
}

void WordTable::AddForm(std::string_view written, std::size_t row)
{
  if (formCount_ < kMaxForms) forms_[formCount_++] = {written, static_cast<std::uint16_t>(row)};
}

const WordRow* WordTable::Find(std::string_view written) const
{
  const auto end = forms_.begin() + static_cast<std::ptrdiff_t>(formCount_);
  const auto at = std::lower_bound(forms_.begin(), end, written,
                                   [](const Form& form, std::string_view text) { return form.written < text; });
  return at != end && at->written == written ? &rows_[at->row] : nullptr;
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
