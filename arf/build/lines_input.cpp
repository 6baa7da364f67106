#include "arf/build/lines_input.h"

#include <optional>
#include <utility>

#include "arf/build/ordered_work.h"
#include "arf/build/text_input.h"

namespace arf {
namespace {

struct ParsedBlock
{
  AddressTable table;
  std::vector<RowFault> faults;
  std::vector<RowFault> leftOut;
  std::optional<RowFault> cutOff;
  UnknownTypes unknown;
  std::uint64_t rowsRead = 0;
  std::uint64_t bytesRead = 0;
};

std::vector<std::string> NamesOf(const std::vector<ColumnMap::Attribute>& attributes)
{
  std::vector<std::string> names;
  for (const ColumnMap::Attribute& attribute : attributes) names.push_back(attribute.name);
  return names;
}

/** Says that a register of whose rows most cannot be used is broken, or no register. */
void JudgeRegister(const std::string& path, std::uint64_t rows, std::uint64_t faulty, const RowFault& first,
                   ReportWriter& report)
{
  if (report.SkipsBadRows() || faulty * 2 <= rows) return;
  report.AddBadRows(path, std::to_string(faulty) + " of " + std::to_string(rows) +
                              " rows cannot be used; the first is line " + std::to_string(first.line) + ": " +
                              first.what);
}

/** Takes the lines of blocks apart. May be used by several threads at once. */
class BlockParser
{
 public:
  /** @param fieldCount  of the file's first row */
  BlockParser(const ColumnMap& columns, std::size_t fieldCount, const RowMakerFactory& makeRowMaker)
      : columns_(columns),
        fieldCount_(fieldCount),
        makeRowMaker_(makeRowMaker),
        attributeNames_(NamesOf(columns.Attributes()))
  {
  }

  ParsedBlock Parse(const LineBlock& block) const
  {
    ParsedBlock parsed{AddressTable(attributeNames_), {}, {}, {}, {}, 0, block.bytesRead};
    RowParser parser(columns_);
    const std::unique_ptr<RowMaker> maker = makeRowMaker_ ? makeRowMaker_() : nullptr;
    std::vector<std::string_view> fields;
    std::string_view text = block.text;
    const bool hasOpenEnd = !text.ends_with('\n');
    for (std::uint32_t line = block.firstLine; !text.empty(); ++line) {
      const std::string_view row = TakeLine(text);
      if (row.empty()) continue;
      ++parsed.rowsRead;
      SplitFields(row, fields);
      if (fields.size() != fieldCount_) {
        if (hasOpenEnd && text.empty() && fields.size() < fieldCount_) {
          parsed.cutOff = CutOff(line, fields.size(), fieldCount_);
        } else {
          parsed.faults.push_back(WrongFieldCount(line, fields.size(), fieldCount_));
        }
        continue;
      }
      TakeRow(parser, maker ? maker->Make(fields) : std::span<const std::string_view>(fields), line, parsed);
    }
    parsed.unknown = parser.Unknown();
    return parsed;
  }

 private:
  static void TakeRow(RowParser& parser, std::span<const std::string_view> fields, std::uint32_t line,
                      ParsedBlock& parsed)
  {
    if (const ParsedRow* row = parser.Parse(fields)) {
      const std::optional<AddressTable::OtherRow> other = parsed.table.Add(*row, line);
      if (other) parsed.faults.push_back(RepeatedDpid({row->dpid, line, *other}));
    } else {
      (parser.IsLeftOut() ? parsed.leftOut : parsed.faults).push_back({line, parser.Fault(), parser.Reason()});
    }
  }

  const ColumnMap& columns_;
  std::size_t fieldCount_;
  const RowMakerFactory& makeRowMaker_;
  std::vector<std::string> attributeNames_;
};

}  // namespace

void ReadLines(LineReader& lines, const ColumnMap& columns, const RowMakerFactory& makeRowMaker, unsigned threads,
               AddressTable& table, ReportWriter& report, const BytesRead& read)
{
  const BlockParser parser(columns, lines.Header().size(), makeRowMaker);
  table.BeginInput(lines.Path());
  std::uint64_t rows = 0, faulty = 0;
  RowFault first;
  const auto addFault = [&](const RowFault& fault) {
    if (faulty++ == 0) first = fault;
    columns.IsRegister() ? report.AddSkipped(lines.Path(), fault) : report.AddFault(lines.Path(), fault);
  };
  OrderedWork<LineBlock, ParsedBlock> work(
      threads, [&](LineBlock& block) { return lines.Next(block); },
      [&](LineBlock&& block) { return parser.Parse(block); });
  while (const std::optional<ParsedBlock> block = work.Next()) {
    report.AddRows(block->rowsRead);
    rows += block->rowsRead;
    report.AddUnknownTypes(block->unknown);
    for (const RowFault& fault : block->faults) addFault(fault);
    for (const RowFault& fault : block->leftOut) report.AddSkipped(lines.Path(), fault);
    for (const AddressTable::RepeatedDpid& repeated : table.Append(block->table)) addFault(RepeatedDpid(repeated));
    if (block->cutOff) report.AddFault(lines.Path(), *block->cutOff);
    read(block->bytesRead);
  }
  if (columns.IsRegister()) JudgeRegister(lines.Path(), rows, faulty, first, report);
}

bool LinesInput::ReadHeader(ReportWriter& report)
{
  const std::vector<std::string> faults = columns_.Read(lines_.Header());
  for (const std::string& fault : faults) report.AddError(lines_.Path(), 1, fault);
  return faults.empty();
}

void LinesInput::ReadRows(AddressTable& table, ReportWriter& report, const BytesRead& read)
{
  ReadLines(lines_, columns_, {}, threads_, table, report, read);
}

}  // namespace arf
