// The tables N and C that the encoder makes by rule, against the tables as they are printed.
#include "arf/barcode/encoding_tables.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "unit/arf/barcode/plain_four_state.h"

namespace {

std::string Bars(unsigned code, std::size_t count)
{
  std::string bars(count, '0');
  for (std::size_t i = count; i > 0; --i, code /= 4) bars[i - 1] = static_cast<char>('0' + code % 4);
  EXPECT_EQ(code, 0U);
  return bars;
}

TEST(EncodingTables, Numeric)
{
  ASSERT_EQ(arf_test::PlainNumericTable().size(), 10U);
  for (const auto& [digit, bars] : arf_test::PlainNumericTable())
    EXPECT_EQ(Bars(arf::NumericCode(static_cast<unsigned>(digit - '0')), 2), bars) << digit;
}

TEST(EncodingTables, Text)
{
  ASSERT_EQ(arf_test::PlainTextTable().size(), 64U);
  std::set<std::string> seen;
  for (int value = -128; value < 128; ++value) {
    const auto c = static_cast<char>(value);
    const auto row = arf_test::PlainTextTable().find(c);
    const bool isThere = row != arf_test::PlainTextTable().end();
    EXPECT_EQ(arf::HasTextCode(c), isThere) << value;
    if (!isThere) continue;
    const std::string bars = Bars(arf::kTextCodes[static_cast<unsigned char>(c)], 3);
    EXPECT_EQ(bars, row->second) << c;
    EXPECT_TRUE(seen.insert(bars).second) << c;
  }
  EXPECT_EQ(seen.size(), 64U);
}

}  // namespace
