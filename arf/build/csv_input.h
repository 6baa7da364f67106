/** A CSV file as an input. */
#ifndef QXPAF_ARF_BUILD_CSV_INPUT_H
#define QXPAF_ARF_BUILD_CSV_INPUT_H

#include <string>

#include "arf/build/csv_reader.h"
#include "arf/build/input.h"

namespace arf {

class CsvInput : public Input
{
 public:
  /** Throws BuildError when the file cannot be read. */
  CsvInput(const std::string& path, char delimiter) : path_(path), csv_(path, delimiter) {}

  bool ReadHeader(ReportWriter& report) override;
  ColumnMap& Columns() override { return columns_; }
  std::uint64_t Size() const override { return csv_.FileSize(); }
  void ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read) override;

 private:
  void TakeRow(CsvReader::Result result, RowParser& parser, AddressTable& table, ReportWriter& report);

  std::string path_;
  CsvReader csv_;
  ColumnMap columns_;
};

}  // namespace arf

#endif
