#include "paf/csv_rows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "support/random_seed.h"
#include "support/temp_dir.h"
#include "unit/tools/failure_of.h"

namespace tool {
namespace {

using tool_test::FailureOf;
using Texts = std::vector<std::string>;
using namespace std::string_literals;

/** A row that outlives the next. */
struct KeptRow
{
  std::uint64_t line = 0;
  std::string text;
  Texts fields;
  std::string fault;

  bool operator==(const KeptRow&) const = default;
};

std::ostream& operator<<(std::ostream& out, const KeptRow& row)
{
  out << row.line << ": " << testing::PrintToString(row.text) << ' ' << testing::PrintToString(row.fields);
  return out << ' ' << row.fault << '\n';
}

KeptRow Kept(const CsvRow& row)
{
  return {row.line, std::string(row.text), row.fields, row.fault};
}

class CsvRowsTest : public testing::Test
{
 protected:
  /** All rows, the header first. */
  std::vector<KeptRow> RowsOf(const std::string& content, char delimiter = ',')
  {
    CsvRows rows(dir_.Write("in.csv", content), delimiter);
    std::vector<KeptRow> all = {Kept(rows.Header())};
    for (CsvRow row; rows.Next(row);) {
      all.push_back(Kept(row));
    }
    EXPECT_EQ(rows.Offset(), content.size());
    return all;
  }

  std::string HeaderFailure(const std::string& content)
  {
    const std::string path = dir_.Write("in.csv", content);
    const std::string failure = FailureOf([&] { CsvRows(path, ',').Header(); });
    return failure.starts_with(path) ? failure.substr(path.size()) : failure;
  }

  test_support::TempDir dir_;
};

constexpr const char* kUnclosed = "a closing quote is missing";
constexpr const char* kTooLong = "the row is too long, or a closing quote is missing";
constexpr const char* kStray = "a quote stands where none can be";

TEST_F(CsvRowsTest, TakesRowsApartAndKeepsTheirText)
{
  const std::vector<KeptRow> expected = {{1, "a,b", {"a", "b"}, ""},
                                         {2, "1,\"x, \"\"y\"\"\"", {"1", "x, \"y\""}, ""},
                                         {3, " 2 ,\t z \t", {"2", "z"}, ""},
                                         {4, "\" 3 \",", {" 3 ", ""}, ""},
                                         {5, ",", {"", ""}, ""}};
  EXPECT_EQ(RowsOf("a,b\n1,\"x, \"\"y\"\"\"\n 2 ,\t z \t\n\" 3 \",\n,\n"), expected);
}

TEST_F(CsvRowsTest, TheLastLineNeedsNoEnd)
{
  EXPECT_EQ(RowsOf("a,b\n1,2"), (std::vector<KeptRow>{{1, "a,b", {"a", "b"}, ""}, {2, "1,2", {"1", "2"}, ""}}));
  EXPECT_EQ(RowsOf("a,b"), (std::vector<KeptRow>{{1, "a,b", {"a", "b"}, ""}}));
}

TEST_F(CsvRowsTest, ReturnsBelongToTheLineEnd)
{
  const std::vector<KeptRow> expected = {
      {1, "a,b", {"a", "b"}, ""}, {2, "1,\"x\r\ny\"", {"1", "x\r\ny"}, ""}, {4, "2,3", {"2", "3"}, ""}};
  EXPECT_EQ(RowsOf("a,b\r\n1,\"x\r\ny\"\r\n2,3\r\n"), expected);
}

TEST_F(CsvRowsTest, KnowsLineEndsOfTheHeader)
{
  const auto hasReturns = [&](const std::string& content) {
    CsvRows rows(dir_.Write("in.csv", content), ',');
    rows.Header();
    return rows.HasReturns();
  };
  EXPECT_TRUE(hasReturns("a\r\nb\n"));
  EXPECT_TRUE(hasReturns("\xEF\xBB\xBF\r\na\r\n"));
  EXPECT_FALSE(hasReturns("a\nb\r\n"));
  EXPECT_FALSE(hasReturns("a"));
  EXPECT_FALSE(hasReturns("\r\na"));
}

TEST_F(CsvRowsTest, PassesBlankLinesAndCountsThem)
{
  EXPECT_EQ(RowsOf("\n \t\r\na,b\n\n\n1,2\n\n\r\n"),
            (std::vector<KeptRow>{{3, "a,b", {"a", "b"}, ""}, {6, "1,2", {"1", "2"}, ""}}));
}

TEST_F(CsvRowsTest, ABlankLineIsARowWhereThereIsOneColumn)
{
  EXPECT_EQ(RowsOf("\na\n\n1\n \t\r\n\"\"\n\n"), (std::vector<KeptRow>{{2, "a", {"a"}, ""},
                                                                       {3, "", {""}, ""},
                                                                       {4, "1", {"1"}, ""},
                                                                       {5, " \t", {""}, ""},
                                                                       {6, "\"\"", {""}, ""},
                                                                       {7, "", {""}, ""}}));
  EXPECT_EQ(RowsOf("a"), (std::vector<KeptRow>{{1, "a", {"a"}, ""}}));
}

/** Where the delimiter is white space, a line of delimiters is a row of empty fields. */
TEST_F(CsvRowsTest, ALineOfTabsIsARowWhereTabsDelimit)
{
  const std::vector<KeptRow> expected = {
      {1, "a\tb", {"a", "b"}, ""}, {2, "\t", {"", ""}, ""}, {4, "1\t2", {"1", "2"}, ""}};
  EXPECT_EQ(RowsOf("a\tb\n\t\n \n1\t2\n", '\t'), expected);
}

TEST_F(CsvRowsTest, OtherDelimitersLeaveCommasAlone)
{
  EXPECT_EQ(RowsOf("a;b,c\n1;\"2;3\"\n", ';'),
            (std::vector<KeptRow>{{1, "a;b,c", {"a", "b,c"}, ""}, {2, "1;\"2;3\"", {"1", "2;3"}, ""}}));
}

TEST_F(CsvRowsTest, BytesThatAreNoTextStayWhatTheyAre)
{
  const std::string row = "caf\xE9\0x,\x80\xFF\xC3"s;
  EXPECT_EQ(RowsOf("a,b\n" + row + "\n"),
            (std::vector<KeptRow>{{1, "a,b", {"a", "b"}, ""}, {2, row, {"caf\xE9\0x"s, "\x80\xFF\xC3"}, ""}}));
}

TEST_F(CsvRowsTest, AByteOrderMarkIsNoPartOfTheFirstName)
{
  EXPECT_EQ(RowsOf("\xEF\xBB\xBF\"a\",b\n1,2\n"),
            (std::vector<KeptRow>{{1, "\"a\",b", {"a", "b"}, ""}, {2, "1,2", {"1", "2"}, ""}}));
  EXPECT_EQ(HeaderFailure("\xEF\xBB\xBF"), ": is empty; its first row must name the columns");
  // One that is cut off is a name like any other.
  EXPECT_EQ(RowsOf("\xEF\xBB"), (std::vector<KeptRow>{{1, "\xEF\xBB", {"\xEF\xBB"}, ""}}));
}

TEST_F(CsvRowsTest, AHeaderMustBeUsable)
{
  EXPECT_EQ(HeaderFailure(""), ": is empty; its first row must name the columns");
  EXPECT_EQ(HeaderFailure("\n \r\n"), ": is empty; its first row must name the columns");
  EXPECT_EQ(HeaderFailure("\na,\"b\n"), ":2: the row of column names is broken: "s + kUnclosed);
  EXPECT_EQ(HeaderFailure("a,b\"\n"), ":1: the row of column names is broken: "s + kStray);
  EXPECT_EQ(HeaderFailure("a,b\r1,2\r"), ": the lines end with carriage returns alone; write it with line feeds");
  EXPECT_EQ(HeaderFailure("\xFF\xFE"s + "a\0"s), ": is UTF-16; save it as UTF-8");
  EXPECT_EQ(HeaderFailure("\xFE\xFF"s + "\0a"s), ": is UTF-16; save it as UTF-8");
}

TEST_F(CsvRowsTest, AFileMustBeReadable)
{
  EXPECT_EQ(FailureOf([&] { CsvRows(dir_.Path("none"), ','); }), dir_.Path("none") + ": No such file or directory");
  EXPECT_EQ(FailureOf([&] { CsvRows(dir_.Path(), ',').Header(); }), dir_.Path() + ": Is a directory");
}

struct BrokenRow
{
  std::string text;  ///< one line, in a file of two columns
  std::string fault;
};

const BrokenRow kBroken[] = {{"1", "1 field instead of 2"},
                             {"1,2,3", "3 fields instead of 2"},
                             {"\"1,2\"", "1 field instead of 2"},
                             {"1,\"2", kUnclosed},
                             {"\"", kUnclosed},
                             {"1,\"2\"\"", kUnclosed},
                             {"1,2\"", kStray},
                             {"1\"x\",2", kStray},
                             {"1,\"2\"x", kStray},
                             {"1,\"2\" \"3\"", kStray}};

TEST_F(CsvRowsTest, ABrokenRowIsToldAndTakesNoOtherWithIt)
{
  for (const BrokenRow& broken : kBroken) {
    SCOPED_TRACE(broken.text);
    const std::vector<KeptRow> expected = {
        {1, "a,b", {"a", "b"}, ""}, {2, broken.text, {}, broken.fault}, {3, "3,4", {"3", "4"}, ""}};
    EXPECT_EQ(RowsOf("a,b\n" + broken.text + "\n3,4\n"), expected);
    EXPECT_EQ(RowsOf("a,b\r\n" + broken.text + "\r\n3,4"), expected);
  }
}

/** The quote of a later row closes the one that was left open, and makes that row broken too unless it is given up. */
TEST_F(CsvRowsTest, AnOpenQuoteIsGivenUpAfterItsLine)
{
  const std::vector<KeptRow> expected = {
      {1, "a,b", {"a", "b"}, ""}, {2, "1,\"2", {}, kStray}, {3, "3,4", {"3", "4"}, ""}, {4, "5,\"6\"", {"5", "6"}, ""}};
  EXPECT_EQ(RowsOf("a,b\n1,\"2\n3,4\n5,\"6\"\n"), expected);
}

TEST_F(CsvRowsTest, ARowMayBeSoLong)
{
  const std::string line(CsvRows::kMaxRowBytes - 4, 'x');
  const auto rows = RowsOf("a,b\n1,\"" + line.substr(1) + "\"\n1,\"\n" + line + "\"\n2,3\n");
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[1].fault, "");
  EXPECT_EQ(rows[1].fields[1].size(), line.size() - 1);
  EXPECT_EQ(rows[2], (KeptRow{3, "1,\"", {}, kTooLong}));
  EXPECT_EQ(rows[3].fault, kStray);
  EXPECT_EQ(rows[4], (KeptRow{5, "2,3", {"2", "3"}, ""}));
}

TEST_F(CsvRowsTest, ALineThatNeverEndsIsNoCsv)
{
  const std::string path = dir_.Write("in.csv", "a,b\n" + std::string(17 << 20, 'x'));
  CsvRows rows(path, ',');
  rows.Header();
  CsvRow row;
  EXPECT_EQ(FailureOf([&] { rows.Next(row); }), path + ":2: a line of more than 16 MiB; is that a CSV file?");
}

TEST_F(CsvRowsTest, GoesOnAtAPlaceWhereItOnceWas)
{
  const std::string content = "a,b\n1,\"x\ny\"\n\n2,3\n4,\"5\n6,7";
  const std::string path = dir_.Write("in.csv", content);
  const std::vector<KeptRow> all = RowsOf(content);
  for (std::size_t count = 0; count < all.size(); ++count) {
    CsvRows before(path, ',');
    before.Header();
    CsvRow row;
    for (std::size_t i = 0; i < count; ++i) {
      before.Next(row);
    }
    CsvRows after(path, ',');
    after.Header();
    after.Seek(before.Offset(), before.Line());
    for (std::size_t i = count + 1; i < all.size(); ++i) {
      ASSERT_TRUE(after.Next(row));
      EXPECT_EQ(Kept(row), all[i]) << count;
    }
    EXPECT_FALSE(after.Next(row));
  }
}

TEST_F(CsvRowsTest, APlaceBehindTheEndHasNoRows)
{
  CsvRows rows(dir_.Write("in.csv", "a\n1\n"), ',');
  rows.Header();
  rows.Seek(1000, 9);
  CsvRow row;
  EXPECT_FALSE(rows.Next(row));
}

TEST_F(CsvRowsTest, KnowsSizeAndTimeOfTheFile)
{
  const std::string path = dir_.Write("in.csv", "a\n1\n");
  const CsvRows rows(path, ',');
  EXPECT_EQ(rows.Size(), 4U);
  std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + std::chrono::seconds(3));
  EXPECT_EQ(CsvRows(path, ',').Modified() - rows.Modified(), 3'000'000'000);
}

TEST_F(CsvRowsTest, RowsGoOverTheBoundsOfReading)
{
  std::string content = "a,b\n";
  for (int i = 0; content.size() < 700'000; ++i) {
    content += std::to_string(i) + ",\"" + std::string(static_cast<std::size_t>(i % 300), 'x') + "\"\n";
  }
  const auto rows = RowsOf(content);
  for (std::size_t i = 1; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].fields, (Texts{std::to_string(i - 1), std::string((i - 1) % 300, 'x')}));
    ASSERT_EQ(rows[i].line, i + 1);
  }
}

/** The rules of CsvRows once more, with the whole file in a string. */
class PlainReader
{
 public:
  explicit PlainReader(std::string text) : text_(std::move(text)) {}

  std::vector<KeptRow> Rows(std::size_t columns)
  {
    std::vector<KeptRow> rows;
    for (std::size_t begin = 0, line = 1; begin < text_.size();) {
      std::size_t end = LineEnd(begin);
      if (text_.substr(begin, end - begin).find_first_not_of(" \t\r\n") != std::string::npos) {
        rows.push_back(RowAt(begin, end, columns));
        rows.back().line = line;
      }
      const auto first = text_.begin() + static_cast<std::ptrdiff_t>(begin);
      line += static_cast<std::size_t>(std::count(first, text_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
      begin = end;
    }
    return rows;
  }

 private:
  std::size_t LineEnd(std::size_t begin) const { return std::min(text_.find('\n', begin), text_.size() - 1) + 1; }

  static std::string Trimmed(const std::string& text)
  {
    const std::size_t begin = text.find_first_not_of(" \t\r");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
  }

  std::string Text(std::size_t begin, std::size_t end) const
  {
    std::string text = text_.substr(begin, end - begin);
    for (const char last : {'\n', '\r'}) {
      if (!text.empty() && text.back() == last) text.pop_back();
    }
    return text;
  }

  /** Moves `end` behind the row. */
  KeptRow RowAt(std::size_t begin, std::size_t& end, std::size_t columns)
  {
    KeptRow row;
    position_ = begin;
    bool isLast = false;
    while (!isLast && row.fault.empty()) row.fields.push_back(Field(isLast, row.fault));
    if (row.fault.empty() && row.fields.size() != columns) {
      row.fault = std::to_string(row.fields.size()) + (row.fields.size() == 1 ? " field" : " fields") + " instead of " +
                  std::to_string(columns);
    }
    if (row.fault.empty()) {
      end = position_;
    } else {
      row.fields.clear();
    }
    row.text = Text(begin, end);
    return row;
  }

  char At(std::size_t place) const { return place < text_.size() ? text_[place] : '\n'; }

  std::string Field(bool& isLast, std::string& fault)
  {
    std::size_t place = text_.find_first_not_of(" \t\r", position_);
    if (place == std::string::npos) place = text_.size();
    const std::string field = At(place) == '"' ? Quoted(place, fault) : Plain(place, fault);
    isLast = At(place) == '\n';
    position_ = std::min(place + 1, text_.size());
    return field;
  }

  std::string Plain(std::size_t& place, std::string& fault) const
  {
    const std::size_t begin = place;
    while (At(place) != ',' && At(place) != '\n') {
      if (At(place++) == '"') fault = kStray;
    }
    return Trimmed(text_.substr(begin, place - begin));
  }

  std::string Quoted(std::size_t& place, std::string& fault) const
  {
    std::string field;
    for (++place; place < text_.size(); ++place) {
      if (text_[place] != '"') {
        field += text_[place];
      } else if (At(place + 1) == '"') {
        field += text_[++place];
      } else {
        break;
      }
    }
    if (place >= text_.size()) {
      fault = kUnclosed;
      return field;
    }
    place = std::min(text_.find_first_not_of(" \t\r", place + 1), text_.size());
    if (At(place) != ',' && At(place) != '\n') fault = kStray;
    return field;
  }

  std::string text_;
  std::size_t position_ = 0;
};

TEST_F(CsvRowsTest, AgreesWithAPlainReader)
{
  constexpr std::string_view kLetters = "ab,,\"\"\n\n\r \t";
  std::mt19937 random(test_support::RandomSeed());
  for (int round = 0; round < 3000; ++round) {
    std::string content = "a,b\n";
    for (std::size_t left = random() % 40; left > 0; --left) {
      content += kLetters[random() % kLetters.size()];
    }
    SCOPED_TRACE(testing::PrintToString(content));
    ASSERT_EQ(RowsOf(content), PlainReader(content).Rows(2));
  }
}

struct FieldRow
{
  std::string field;
  std::string written;
};

const FieldRow kFields[] = {{"", ""},
                            {"a b", "a b"},
                            {"a;b", "a;b"},
                            {"a,b", "\"a,b\""},
                            {"say \"x\"", "\"say \"\"x\"\"\""},
                            {"\"", "\"\"\"\""},
                            {"a\nb", "\"a\nb\""},
                            {"a\r", "\"a\r\""},
                            {" a", "\" a\""},
                            {"a ", "\"a \""},
                            {"\ta", "\"\ta\""},
                            {"a\t", "\"a\t\""},
                            {"caf\xE9", "caf\xE9"}};

TEST_F(CsvRowsTest, FieldsAreWrittenSoThatTheyAreReadAgain)
{
  std::string header;
  std::string row;
  Texts fields;
  for (const FieldRow& field : kFields) {
    std::string written = "x";
    AppendCsvField(written, field.field, ',');
    EXPECT_EQ(written, "x" + field.written);
    header += fields.empty() ? "h" : ",h";
    row += (fields.empty() ? "" : ",") + written.substr(1);
    fields.push_back(field.field);
  }
  EXPECT_EQ(RowsOf(header + "\n" + row + "\n").at(1).fields, fields);
  std::string other;
  AppendCsvField(other, "a;b,c", ';');
  EXPECT_EQ(other, "\"a;b,c\"");
}

}  // namespace
}  // namespace tool
