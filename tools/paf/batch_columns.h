/** Which columns of a CSV file make up the address. */
#ifndef PAF_TOOL_BATCH_COLUMNS_H
#define PAF_TOOL_BATCH_COLUMNS_H

#include <string>
#include <vector>

namespace tool {

/** Columns by number, from 0, in the order in which an address is written. */
class AddressColumns
{
 public:
  /**
   * @param header  the names of all columns
   * @param chosen  the names of those to join, in this order; without any they are found by their usual names
   *
   * Throws Failure when a chosen name is not in the header, or when no column has a usual name.
   */
  AddressColumns(const std::vector<std::string>& header, const std::vector<std::string>& chosen);

  const std::vector<std::string>& Names() const { return names_; }

  /** The address of a row: the columns that are not empty, with ", " between them. */
  std::string Join(const std::vector<std::string>& fields) const;

 private:
  struct Column
  {
    std::size_t number = 0;
    std::string_view separator;  ///< to what follows
  };

  void Choose(const std::vector<std::string>& header, const std::vector<std::string>& chosen);
  void Find(const std::vector<std::string>& header);
  void Add(const std::vector<std::string>& header, std::size_t number, std::string_view separator = ", ");

  std::vector<Column> columns_;
  std::vector<std::string> names_;
};

}  // namespace tool

#endif
