/**
 * Reads the inputs of a build, files of different kinds, into one table.
 */
#ifndef QXPAF_ARF_BUILD_INPUT_READER_H
#define QXPAF_ARF_BUILD_INPUT_READER_H

#include <memory>
#include <string>
#include <vector>

#include "arf/build/address_table.h"
#include "arf/build/build_watch.h"
#include "arf/build/builder.h"
#include "arf/build/input.h"
#include "arf/build/report_writer.h"

namespace arf {

class InputReader
{
 public:
  InputReader(const BuildOptions& options, const BuildWatch& watch, ReportWriter& report);
  ~InputReader();

  /**
   * Opens all inputs and reads their first rows. False when one cannot be used, which the report then tells; throws
   * BuildError when one cannot be read.
   */
  bool Open();
  /** Of all inputs, sorted. */
  const std::vector<std::string>& AttributeNames() const { return attributeNames_; }
  /** Reads all rows. The report has what was wrong with some. */
  void Read(AddressTable& table);

 private:
  void OpenInput(const std::string& path);

  const BuildOptions& options_;
  const BuildWatch& watch_;
  ReportWriter& report_;
  std::vector<std::unique_ptr<Input>> inputs_;
  std::vector<std::string> attributeNames_;
};

}  // namespace arf

#endif
