#include "arf/build/csv_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "arf/build/build_error.h"
#include "support/temp_dir.h"

namespace {

using arf::CsvReader;
using testing::HasSubstr;

/** "3: a|b|c" for a row that begins on line 3; "3: quotes", "3: long" for one that cannot be taken apart or is too
 * long. */
std::vector<std::string> RowsOf(const std::string& csv, char delimiter = ',')
{
  const test_support::TempDir dir;
  CsvReader reader(dir.Write("in.csv", csv), delimiter);
  std::vector<std::string> rows;
  for (CsvReader::Result result; (result = reader.Next()) != CsvReader::Result::End;) {
    std::string row = std::to_string(reader.Line()) + ": ";
    if (result == CsvReader::Result::BadQuotes) {
      rows.push_back(row + "quotes");
      continue;
    }
    if (result == CsvReader::Result::TooLong) {
      rows.push_back(row + "long");
      continue;
    }
    for (const std::string_view field : reader.Fields()) row.append(field).append("|");
    row.pop_back();
    rows.push_back(row);
  }
  EXPECT_EQ(reader.Next(), CsvReader::Result::End);
  EXPECT_EQ(reader.BytesRead(), reader.FileSize());
  return rows;
}

struct Row
{
  const char* description;
  std::string csv;
  std::vector<std::string> rows;
};

const Row kRows[] = {
    {"empty", "", {}},
    {"blank lines only", "\n \n\t\r\n", {}},
    {"plain", "a,b\nc,d\n", {"1: a|b", "2: c|d"}},
    {"no line end at the end", "a,b\nc,d", {"1: a|b", "2: c|d"}},
    {"quoted field at the end", "a,\"b\"", {"1: a|b"}},
    {"CR LF", "a,b\r\nc,d\r\n", {"1: a|b", "2: c|d"}},
    {"CR", "a,b\rc,d\r", {"1: a|b", "2: c|d"}},
    {"mixed line ends", "a\r\nb\rc\nd\n\re", {"1: a", "2: b", "3: c", "4: d", "6: e"}},
    {"empty fields", ",,\na,,\n", {"1: ||", "2: a||"}},
    {"blank lines between", "\n\na\n \nb\r\n\r\nc\n", {"3: a", "5: b", "7: c"}},
    {"white space around fields", " a , b \n", {"1: a|b"}},
    {"white space inside quotes", "\" a \",b\n", {"1:  a |b"}},
    {"quotes", "\"a,b\",\"c\"\"d\"\"\",\"\"\n", {"1: a,b|c\"d\"|"}},
    {"line ends inside quotes", "\"a\nb\",c\nd,\"e\r\nf\"\ng,h\n", {"1: a\nb|c", "3: d|e\r\nf", "5: g|h"}},
    {"row that begins with a quoted line end", "\"\n\n\",b\nc,d\n", {"1: \n\n|b", "4: c|d"}},
    {"byte order mark",
     "\xEF\xBB\xBF"
     "a,b\n",
     {"1: a|b"}},
    {"byte order mark and quotes", "\xEF\xBB\xBF\"a\",b\n", {"1: a|b"}},
    {"quote inside a field", "a\na\"b,c\nd\n", {"1: a", "2: quotes", "3: d"}},
    {"text behind a quoted field", "\"a\"b,c\nd\n", {"1: quotes", "2: d"}},
    {"text behind a quoted field of two lines", "\"a\nb\"c\nd\n", {"1: quotes", "2: quotes", "3: d"}},
    {"closing quote missing", "a\n\"b\nc\n", {"1: a", "2: quotes", "3: c"}},
    {"closing quote missing, CR LF", "a\r\n\"b\r\nc\r\n", {"1: a", "2: quotes", "3: c"}},
    {"closing quote missing, CR", "a\r\"b\rc\r", {"1: a", "2: quotes", "3: c"}},
    {"closing quote missing on the last line", "a\nb\n\"c\n", {"1: a", "2: b", "3: quotes"}},
    {"closing quote missing at the end", "a\nb\n\"c", {"1: a", "2: b", "3: quotes"}},
    {"closing quote missing before blank lines", "a\n\"b\n\n \nc\n", {"1: a", "2: quotes", "5: c"}},
    {"closing quote missing twice",
     "a,b\n1,\"2\n3,4\n5,\"6\n7,8\n",
     {"1: a|b", "2: quotes", "3: 3|4", "4: quotes", "5: 7|8"}},
    {"closing quote missing before a quoted field",
     "a,b\n1,\"2\n3,\"4\"\n5,6\n",
     {"1: a|b", "2: quotes", "3: 3|4", "4: 5|6"}},
    {"closing quote missing before a quoted field of two lines",
     "a,b\n\"1,2\n\"3\n3\",4\n5,6\n",
     {"1: a|b", "2: quotes", "3: 3\n3|4", "5: 5|6"}},
    {"closing quote missing, another closes it",
     "a,b\n\"1,2\n3\",4,5\n6,7\n",
     {"1: a|b", "2: quotes", "3: quotes", "4: 6|7"}},
    {"another number of fields on one line", "a,b\n1,2,3\n4,5\n", {"1: a|b", "2: 1|2|3", "3: 4|5"}},
    {"zero byte", std::string("a\0b,c\n", 6), {std::string("1: a\0b|c", 8)}},
};

TEST(CsvReader, ReadsEveryKindOfRow)
{
  for (const Row& row : kRows) EXPECT_EQ(RowsOf(row.csv), row.rows) << row.description;
}

TEST(CsvReader, TakesOtherDelimiters)
{
  EXPECT_EQ(RowsOf("a;b,c\n", ';'), std::vector<std::string>{"1: a|b,c"});
  EXPECT_EQ(RowsOf("a\tb\t\n", '\t'), std::vector<std::string>{"1: a|b|"});
}

/** Rows and line numbers do not depend on where the reader's buffer ends. */
TEST(CsvReader, ReadsAcrossItsBuffer)
{
  constexpr std::size_t kBuffer = 1 << 20;
  for (std::size_t shift = 0; shift < 24; ++shift) {
    std::string csv = std::string(kBuffer / 2 - 2 - shift, 'x') + ",1\r\n" + std::string(kBuffer / 2 - 14, 'y');
    csv += ",2\r\n\"a\r\nb\"\"\",c\r\nd,e\r\n";
    const std::vector<std::string> rows = RowsOf(csv);
    ASSERT_EQ(rows.size(), 4U) << shift;
    EXPECT_EQ(rows[1].substr(0, 4), "2: y");
    EXPECT_EQ(rows[2], "3: a\r\nb\"|c");
    EXPECT_EQ(rows[3], "5: d|e");
  }
}

TEST(CsvReader, PassesRowsThatAreTooLong)
{
  const std::string much(CsvReader::kMaxRowBytes + 10, 'x');
  const std::vector<std::string> expected = {"1: a", "2: long", "3: c"};
  EXPECT_EQ(RowsOf("a\n" + much + "\nc\n"), expected);
  EXPECT_EQ(RowsOf("a\n\"" + much + "\"\nc"), expected);
  EXPECT_EQ(RowsOf("a\r\n" + much + much + much + "\r\nc"), expected);
  EXPECT_EQ(RowsOf("a\n" + much), (std::vector<std::string>{"1: a", "2: long"}));
}

/** An unclosed quote takes no other row with it, wherever the reader's buffer ends. */
TEST(CsvReader, LosesOneLineToAnUnclosedQuote)
{
  for (const std::size_t count : {std::size_t{3000}, std::size_t{300000}}) {
    for (const char* end : {"\n", "\r\n", "\r"}) {
      std::string csv = std::string("a,b") + end + "1,\"2" + end;
      for (std::size_t i = 0; i < count; ++i) csv += std::to_string(i) + ",x" + end;
      const std::vector<std::string> rows = RowsOf(csv);
      ASSERT_EQ(rows.size(), count + 2) << count;
      EXPECT_EQ(rows[1], count > 100000 ? "2: long" : "2: quotes");
      EXPECT_EQ(rows[2], "3: 0|x");
      EXPECT_EQ(rows.back(), std::to_string(count + 2) + ": " + std::to_string(count - 1) + "|x");
    }
  }
}

TEST(CsvReader, TakesBlankLinesForNoRow)
{
  EXPECT_EQ(RowsOf("a\n" + std::string(CsvReader::kMaxRowBytes + 10, '\n') + "b\n").size(), 2U);
}

TEST(CsvReader, RefusesFilesItCannotRead)
{
  const test_support::TempDir dir;
  const auto messageFor = [](const std::string& path) -> std::string {
    try {
      CsvReader(path, ',');
    } catch (const arf::BuildError& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(messageFor(dir.Path("none.csv")), dir.Path("none.csv") + ": No such file or directory");
  EXPECT_EQ(messageFor(dir.Path()), dir.Path() + ": Is a directory");
  for (const char* mark : {"\xFF\xFE"
                           "a",
                           "\xFE\xFF"
                           "a"}) {
    EXPECT_THAT(messageFor(dir.Write("wide.csv", mark)), HasSubstr("is UTF-16; save it as UTF-8"));
  }
}

}  // namespace
