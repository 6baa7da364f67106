// The tables themselves: their size, what of them no function shows, and what the code that reads them relies on.
#include "text/unicode_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "unit/text/unicode_text.h"

namespace {

using qxpaf::BmpTable;
using unicode_test::Code;

static_assert(sizeof qxpaf::kLowerCase + sizeof qxpaf::kUpperCase + sizeof qxpaf::kProperties + sizeof qxpaf::kAccents +
                      sizeof qxpaf::kCaseFold + sizeof qxpaf::kFoldPairs + sizeof qxpaf::kFoldTriples +
                      sizeof qxpaf::kAnsiUpper + sizeof qxpaf::kAnsiLower + sizeof qxpaf::kAnsiAccents +
                      sizeof qxpaf::kUtf8BasesOfTwo + sizeof qxpaf::kUtf8BasesOfThree <
                  std::size_t{120 * 1024},
              "the tables are to stay small");

bool IsMark(std::uint32_t foldEntry)
{
  const std::uint32_t mark = foldEntry & qxpaf::kListMarkMask;
  return mark == qxpaf::kPairMark || mark == qxpaf::kTripleMark;
}

std::set<unsigned int> Stretches(std::initializer_list<std::pair<unsigned int, unsigned int>> stretches)
{
  std::set<unsigned int> bytes;
  for (const auto& [first, last] : stretches)
    for (unsigned int byte = first; byte <= last; ++byte) bytes.insert(byte);
  return bytes;
}

template <std::size_t kPages>
void ExpectShape(const BmpTable<kPages>& table, int entries, const std::set<unsigned int>& highBytes)
{
  std::set<std::u16string> pages;
  std::set<unsigned int> found;
  int count = 0;
  for (unsigned int high = 0; high < 256; ++high) {
    std::u16string page;
    for (unsigned int low = 0; low < 256; ++low)
      page += static_cast<char16_t>(table.Entry(static_cast<wchar_t>(high << 8 | low)));
    for (const char16_t entry : page) count += entry != 0;
    if (page != std::u16string(256, 0)) found.insert(high);
    pages.insert(page);
  }
  EXPECT_EQ(pages.size(), kPages) << "pages that are equal are to be the same page";
  EXPECT_EQ(count, entries);
  EXPECT_EQ(found, highBytes);
}

TEST(UnicodeTables, Shapes)
{
  ExpectShape(qxpaf::kLowerCase, 983,
              Stretches({{0x00, 0x05},
                         {0x10, 0x10},
                         {0x1E, 0x1F},
                         {0x21, 0x21},
                         {0x24, 0x24},
                         {0x2C, 0x2C},
                         {0xA6, 0xA7},
                         {0xFF, 0xFF}}));
  ExpectShape(
      qxpaf::kUpperCase, 991,
      Stretches({{0x00, 0x05}, {0x1D, 0x1F}, {0x21, 0x21}, {0x24, 0x24}, {0x2C, 0x2D}, {0xA6, 0xA7}, {0xFF, 0xFF}}));
  ExpectShape(qxpaf::kAccents, 778, Stretches({{0x00, 0x04}, {0x1E, 0x1F}, {0x21, 0x21}}));
  ExpectShape(qxpaf::kCaseFold, 1198,
              Stretches({{0x00, 0x05},
                         {0x10, 0x10},
                         {0x13, 0x13},
                         {0x1E, 0x1F},
                         {0x21, 0x21},
                         {0x24, 0x24},
                         {0x2C, 0x2C},
                         {0xA6, 0xA7},
                         {0xAB, 0xAB},
                         {0xFB, 0xFB},
                         {0xFF, 0xFF}}));
}

template <std::size_t kPages>
void ExpectLeadingPages(const BmpTable<kPages>& table)
{
  for (std::size_t high = 0; high < qxpaf::kLeadingPages; ++high) EXPECT_EQ(table.pageOf[high], high);
}

TEST(UnicodeTables, LeadingPagesNeedNoIndex)
{
  ExpectLeadingPages(qxpaf::kLowerCase);
  ExpectLeadingPages(qxpaf::kUpperCase);
  ExpectLeadingPages(qxpaf::kAccents);
  ExpectLeadingPages(qxpaf::kCaseFold);
  ExpectLeadingPages(qxpaf::kProperties);
}

TEST(UnicodeTables, PropertyWords)
{
  const wchar_t rows[][2] = {
      {0x0041, 0x04C0},
      {0x0061, 0x0541},
      {0x0030, 0x0410},
      {0x0020, 0x0218},
      {0x000A, 0x0220},
      {0x005F, 0x002B},
      {0x00AA, 0x0141},
      {0xFEFF, 0x1021},
      {0x0378, 0x0000},
      {0x4E00, 0x0044},
      {0x9FA5, 0x0044},
      {0xAC00, 0x0044},
      {0xD800, 0x0023},
      {0xE000, 0x0022},
      {0x2028, 0x0219},
      {0x2029, 0x021A},
      {0x01C5, 0x0042},
      {0x2160, 0x00D1},
      // Without a category, but not without properties.
      {0xFDD0, 0x0800},
      {0xFFFE, 0x0800},
      {0xFFFF, 0x0800},
      {0x2065, 0x1000},
      {0xFFF0, 0x1000},
  };
  for (const auto& row : rows)
    EXPECT_EQ(qxpaf::kProperties.Entry(row[0]), static_cast<std::uint32_t>(row[1])) << Code(row[0]);
}

TEST(UnicodeTables, PunctuationHasNoFlags)
{
  for (wchar_t c = 0; c < 0x10000; ++c) {
    const std::uint32_t word = qxpaf::kProperties.Entry(c);
    EXPECT_EQ(word >> 13, 0U);
    if ((word >> qxpaf::kGroupShift & 7U) == qxpaf::kPunctuationGroup) {
      EXPECT_EQ(word >> 6, 0U) << Code(c);
    }
  }
}

TEST(UnicodeTables, FoldEntriesAreRowsInOrder)
{
  std::vector<std::uint32_t> marks;
  for (wchar_t c = 0; c < 0x10000; ++c)
    if (IsMark(qxpaf::kCaseFold.Entry(c))) marks.push_back(qxpaf::kCaseFold.Entry(c));
  std::sort(marks.begin(), marks.end());
  std::vector<std::uint32_t> expected;
  for (std::uint32_t row = 0; row < 88; ++row) expected.push_back(qxpaf::kPairMark + row);
  for (std::uint32_t row = 0; row < 16; ++row) expected.push_back(qxpaf::kTripleMark + row);
  EXPECT_EQ(marks, expected);
}

// Expanding elements are looked for after the others were mapped: none may have become one of them.
TEST(UnicodeTables, NothingIsMappedToWhatExpands)
{
  for (wchar_t c = 0; c < 0x10000; ++c) {
    EXPECT_NE(qxpaf::kUpperCase.Entry(c), 0x00DFU);
    const std::uint32_t fold = qxpaf::kCaseFold.Entry(c);
    const bool isMapped = fold != 0 && !IsMark(fold);
    EXPECT_FALSE(isMapped && qxpaf::kCaseFold.Entry(static_cast<wchar_t>(fold)) != 0) << Code(c);
  }
}

}  // namespace
