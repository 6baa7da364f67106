#include "arf/build/csv_input.h"

#include "arf/build/build_error.h"

namespace arf {
namespace {

constexpr const char* kBadQuotes = "the quotes of the row are not as they should be";
constexpr std::uint64_t kRowsPerReport = 1 << 14;

}  // namespace

bool CsvInput::ReadHeader(ReportWriter& report)
{
  const CsvReader::Result result = csv_.Next();
  if (result == CsvReader::Result::End) throw BuildError(path_ + ": is empty");
  if (result == CsvReader::Result::BadQuotes) {
    report.AddError(path_, csv_.Line(), kBadQuotes);
    return false;
  }
  const std::vector<std::string> faults = columns_.Read(csv_.Fields());
  for (const std::string& fault : faults) report.AddError(path_, csv_.Line(), fault);
  return faults.empty();
}

void CsvInput::ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read)
{
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
  if (result == CsvReader::Result::BadQuotes) return report.AddFault(path_, {line, kBadQuotes, kBadQuotes});
  const ParsedRow* row = parser.Parse(csv_.Fields());
  if (!row) {
    const RowFault fault{line, parser.Fault(), parser.Reason()};
    return parser.IsLeftOut() ? report.AddSkipped(path_, fault) : report.AddFault(path_, fault);
  }
  if (const std::optional<std::uint32_t> other = table.Add(*row, line)) {
    report.AddFault(path_, RepeatedDpid(row->dpid, line, *other));
  }
}

}  // namespace arf
