#include "arf/build/register_table.h"

#include <algorithm>

namespace arf {

bool IsColumn(std::string_view name, std::string_view upper)
{
  const auto isSame = [](char a, char b) { return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b; };
  return std::equal(name.begin(), name.end(), upper.begin(), upper.end(), isSame);
}

RegisterTable::RegisterTable(const std::string& path, std::initializer_list<std::string_view> columns)
    : lines_(path), retired_(PlaceOf("DATE_RETIRED"))
{
  for (const std::string_view column : columns) places_.push_back(PlaceOf(column));
}

std::size_t RegisterTable::PlaceOf(std::string_view column) const
{
  const auto& header = lines_.Header();
  const auto place =
      std::find_if(header.begin(), header.end(), [column](std::string_view name) { return IsColumn(name, column); });
  return place == header.end() ? SIZE_MAX : static_cast<std::size_t>(place - header.begin());
}

bool RegisterTable::Next()
{
  do {
    if (!TakeRow()) return false;
  } while (fields_.size() < lines_.Header().size() || !FieldAt(retired_).empty());
  return true;
}

bool RegisterTable::TakeRow()
{
  if (rest_.empty()) {
    if (!lines_.Next(block_)) return false;
    rest_ = block_.text;
    line_ = block_.firstLine;
  }
  const std::string_view row = TakeLine(rest_);
  SplitFields(row, fields_);
  const std::size_t columns = lines_.Header().size();
  if (rest_.empty() && !row.empty() && fields_.size() < columns && !block_.text.ends_with('\n'))
    cutOff_ = CutOff(line_, fields_.size(), columns);
  ++line_;
  return true;
}

}  // namespace arf
