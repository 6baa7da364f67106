#include "arf/build/csv_input.h"

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr const char* kBadQuotes = "the quotes of the row are not as they should be";
constexpr const char* kTooLong = "the row is longer than a mebibyte; is a closing quote missing?";
constexpr std::uint64_t kRowsPerReport = 1 << 14;

/** Why a row cannot be used; null when it can. */
const char* FaultOf(CsvReader::Result result)
{
  if (result == CsvReader::Result::BadQuotes) return kBadQuotes;
  return result == CsvReader::Result::TooLong ? kTooLong : nullptr;
}

}  // namespace

bool CsvInput::ReadHeader(ReportWriter& report)
{
  const CsvReader::Result result = csv_.Next();
  if (result == CsvReader::Result::End) throw BuildError(path_ + ": is empty");
  if (const char* fault = FaultOf(result)) {
    report.AddError(path_, csv_.Line(), fault);
    return false;
  }
  const std::vector<std::string> faults = columns_.Read(csv_.Fields());
  for (const std::string& fault : faults) report.AddError(path_, csv_.Line(), fault);
  return faults.empty();
}

void CsvInput::ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read)
{
  table.BeginInput(path_);
  RowParser parser(columns_);
  std::uint64_t rows = 0;
  for (CsvReader::Result result; (result = csv_.Next()) != CsvReader::Result::End;) {
    report.AddRows(1);
    TakeRow(result, parser, table, report);
    if (++rows % kRowsPerReport == 0) read(csv_.BytesRead());
  }
  read(csv_.BytesRead());
  report.AddUnknownTypes(parser.Unknown());
}

void CsvInput::TakeRow(CsvReader::Result result, RowParser& parser, AddressTable& table, ReportWriter& report)
{
  const std::uint32_t line = csv_.Line();
  if (const char* fault = FaultOf(result)) return report.AddFault(path_, {line, fault, fault});
  const ParsedRow* row = parser.Parse(csv_.Fields());
  if (!row) {
    const RowFault fault{line, parser.Fault(), parser.Reason()};
    return parser.IsLeftOut() ? report.AddSkipped(path_, fault) : report.AddFault(path_, fault);
  }
  if (const std::optional<AddressTable::OtherRow> other = table.Add(*row, line)) {
    report.AddFault(path_, RepeatedDpid({row->dpid, line, *other}));
  }
}

}  // namespace arf
