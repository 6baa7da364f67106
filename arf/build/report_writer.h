/** Collects what is wrong with an input, and what was left out of it, for the report of a build. */
#ifndef QXPAF_ARF_BUILD_REPORT_WRITER_H
#define QXPAF_ARF_BUILD_REPORT_WRITER_H

#include <cstdint>
#include <string>

#include "arf/build/address_table.h"
#include "arf/build/builder.h"
#include "arf/build/row_parser.h"

namespace arf {

/** Why a row was not taken. */
struct RowFault
{
  std::uint32_t line = 0;
  std::string what;    ///< "column: what is wrong"
  std::string reason;  ///< the same without the value
};

/** A row has another number of fields than the first row. */
RowFault WrongFieldCount(std::uint32_t line, std::size_t count, std::size_t expected);

/** A row without a line end, the file's last, that has too few fields. */
RowFault CutOff(std::uint32_t line, std::size_t count, std::size_t expected);

/** A row has the DPID of another. */
RowFault RepeatedDpid(const AddressTable::RepeatedDpid& repeated);

class ReportWriter
{
 public:
  ReportWriter(BuildReport& report, bool skipBadRows) : report_(report), skipBadRows_(skipBadRows) {}

  void AddRows(std::uint64_t count) { report_.rowsRead += count; }
  void AddUnknownTypes(const UnknownTypes& types) { unknown_.Add(types); }

  /** Something that ends the build unless bad rows are skipped. */
  void AddError(const std::string& path, std::uint32_t line, const std::string& what);
  /** The same about rows of a file. */
  void AddBadRow(const std::string& path, const RowFault& fault);
  void AddBadRows(const std::string& path, const std::string& what);
  /** A faulty row of a file that someone wrote for this build. */
  void AddFault(const std::string& path, const RowFault& fault);
  /** A row of a register, whose faults nobody here can mend: it is left out and counted. */
  void AddSkipped(const std::string& path, const RowFault& fault);

  /** Puts the warnings and the reasons, most frequent first, into the report. */
  void Finish();

  bool SkipsBadRows() const { return skipBadRows_; }
  std::uint64_t ErrorCount() const { return report_.errorCount; }

 private:
  BuildReport& report_;
  bool skipBadRows_;
  UnknownTypes unknown_;
};

}  // namespace arf

#endif
