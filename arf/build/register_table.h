/** One table of the national address file, read row by row. */
#ifndef QXPAF_ARF_BUILD_REGISTER_TABLE_H
#define QXPAF_ARF_BUILD_REGISTER_TABLE_H

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/line_reader.h"
#include "arf/build/report_writer.h"

namespace arf {

class RegisterTable
{
 public:
  /** @param columns  the columns that At() gives, in upper case; those that the file lacks are empty. */
  RegisterTable(const std::string& path, std::initializer_list<std::string_view> columns);

  /** The next row that is not retired. */
  bool Next();
  /** At the end: what is wrong with the last row, when the file ends in the middle of it. */
  const std::optional<RowFault>& CutOffRow() const { return cutOff_; }
  /** A field of the row, by the place of its column in the constructor's list. */
  std::string_view At(std::size_t column) const { return FieldAt(places_[column]); }

 private:
  bool TakeRow();
  std::size_t PlaceOf(std::string_view column) const;
  std::string_view FieldAt(std::size_t place) const
  {
    return place < fields_.size() ? fields_[place] : std::string_view();
  }

  LineReader lines_;
  std::vector<std::size_t> places_;
  std::size_t retired_;
  LineBlock block_;
  std::string_view rest_;
  std::uint32_t line_ = 0;
  std::optional<RowFault> cutOff_;
  std::vector<std::string_view> fields_;
};

/** Whether two names of columns are the same but for letter case; `upper` is in upper case. */
bool IsColumn(std::string_view name, std::string_view upper);

}  // namespace arf

#endif
