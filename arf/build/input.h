/** One input of a build: rows in a file, or in tables that belong together. */
#ifndef QXPAF_ARF_BUILD_INPUT_H
#define QXPAF_ARF_BUILD_INPUT_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "arf/build/address_table.h"
#include "arf/build/columns.h"
#include "arf/build/report_writer.h"

namespace arf {

/** Told after some rows how many bytes of an input were read. */
using BytesRead = std::function<void(std::uint64_t)>;

class Input
{
 public:
  virtual ~Input() = default;

  /** Reads the first row. False when the columns cannot be used, which the report then tells. */
  virtual bool ReadHeader(ReportWriter& report) = 0;
  virtual ColumnMap& Columns() = 0;
  virtual std::uint64_t Size() const = 0;
  virtual void ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read) = 0;
};

}  // namespace arf

#endif
