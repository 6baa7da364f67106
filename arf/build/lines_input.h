/** A file of lines with fields divided by vertical bars as an input; its rows are taken apart by several threads. */
#ifndef QXPAF_ARF_BUILD_LINES_INPUT_H
#define QXPAF_ARF_BUILD_LINES_INPUT_H

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arf/build/input.h"
#include "arf/build/line_reader.h"

namespace arf {

/** Makes the fields that a ColumnMap knows out of those of a line. For one thread. */
class RowMaker
{
 public:
  virtual ~RowMaker() = default;
  /** The result lives until the next call, as long as `fields`, which are as many as in the first line. */
  virtual std::span<const std::string_view> Make(std::span<const std::string_view> fields) = 0;
};

/** Null where the fields of a line are used as they are. */
using RowMakerFactory = std::function<std::unique_ptr<RowMaker>()>;

/** Appends the rows of a file, behind its first line, to a table. */
void ReadLines(LineReader& lines, const ColumnMap& columns, const RowMakerFactory& makeRowMaker, unsigned threads,
               AddressTable& table, ReportWriter& report, const BytesRead& read);

class LinesInput : public Input
{
 public:
  /** Throws BuildError when the file cannot be read. */
  LinesInput(const std::string& path, unsigned threads) : lines_(path), threads_(threads) {}

  bool ReadHeader(ReportWriter& report) override;
  ColumnMap& Columns() override { return columns_; }
  std::uint64_t Size() const override { return lines_.FileSize(); }
  void ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read) override;

 private:
  LineReader lines_;
  unsigned threads_;
  ColumnMap columns_;
};

}  // namespace arf

#endif
