/** One table of the national address file, read row by row. */
#ifndef QXPAF_ARF_BUILD_REGISTER_TABLE_H
#define QXPAF_ARF_BUILD_REGISTER_TABLE_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/line_reader.h"

namespace arf {

class RegisterTable
{
 public:
  /** @param columns  the columns that At() gives, in upper case; those that the file lacks are empty. */
  RegisterTable(const std::string& path, std::initializer_list<std::string_view> columns);

  /** The next row that is not retired. */
  bool Next();
  /** A field of the row, by the place of its column in the constructor's list. */
  std::string_view At(std::size_t column) const { return FieldAt(places_[column]); }

 private:
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
  std::vector<std::string_view> fields_;
};

/** Whether two names of columns are the same but for letter case; `upper` is in upper case. */
bool IsColumn(std::string_view name, std::string_view upper);

}  // namespace arf

#endif
