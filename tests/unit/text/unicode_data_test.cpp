// Every code point against the data that the tables come from, read here a second time. Skipped where the data are not.
#include "unit/text/unicode_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "qxpaf/text/unicode.h"
#include "text/unicode_tables.h"
#include "unit/text/unicode_text.h"

namespace {

using unicode_test::Character;
using unicode_test::Code;

constexpr long kPlane = 0x10000;
using Characters = std::map<long, Character>;

class UnicodeData : public testing::Test
{
 protected:
  void SetUp() override
  {
    const auto directory = unicode_test::DataDirectory();
    if (!std::filesystem::is_directory(directory))
      GTEST_SKIP() << "no Unicode data at " << directory << "; QXPAF_UCD_DIR says where they are";
  }
};

void ExpectCase(wchar_t (*map)(wchar_t), const Characters& characters, std::string Character::*field)
{
  for (long c = 0; c < kPlane; ++c) {
    const auto found = characters.find(c);
    const std::string mapped = found == characters.end() ? "" : found->second.*field;
    ASSERT_EQ(map(static_cast<wchar_t>(c)), mapped.empty() ? c : unicode_test::Hexadecimal(mapped)) << Code(c);
  }
}

TEST_F(UnicodeData, Case)
{
  const Characters characters = unicode_test::ReadCharacters("5.1.0");
  ExpectCase(UnicodeToLower, characters, &Character::lower);
  ExpectCase(UnicodeToUpper, characters, &Character::upper);
}

// The first character of the full canonical decomposition: that of the first character, as far as it goes.
long FirstOfDecomposition(const Characters& characters, long c)
{
  while (true) {
    const auto found = characters.find(c);
    if (found == characters.end() || found->second.decomposition.empty() || found->second.decomposition[0] == '<')
      return c;
    c = unicode_test::Sequence(found->second.decomposition).front();
  }
}

long ExpectedAccent(const Characters& characters, long c)
{
  static const std::map<long, long> added = {{0x110, 'D'},   {0x111, 'd'},   {0x126, 'H'},  {0x127, 'h'}, {0x141, 'L'},
                                             {0x142, 'l'},   {0x166, 'T'},   {0x167, 't'},  {0xD7, 'O'},  {0xF7, 'o'},
                                             {0x1C4, 0x1F1}, {0x1C5, 0x1F2}, {0x1C6, 0x1F3}};
  if (const auto found = added.find(c); found != added.end()) return found->second;
  const bool covered = (c >= 0xC0 && c <= 0x4FF) || (c >= 0x1E00 && c <= 0x1FFF) || (c >= 0x2100 && c <= 0x21FF);
  const auto found = characters.find(c);
  if (!covered || found == characters.end() || found->second.category == "Lt") return c;
  const long first = FirstOfDecomposition(characters, c);
  const std::string& category = characters.at(first).category;
  return category == "Lu" || category == "Ll" || category == "Lo" ? first : c;
}

TEST_F(UnicodeData, Accents)
{
  for (const char* version : {"5.1.0", "5.2.0"}) {
    const Characters characters = unicode_test::ReadCharacters(version);
    long count = 0;
    for (long c = 0; c < kPlane; ++c) {
      const long expected = ExpectedAccent(characters, c);
      count += expected != c;
      ASSERT_EQ(UnicodeRemoveAccents(static_cast<wchar_t>(c)), expected) << Code(c);
    }
    EXPECT_EQ(count, 778);
  }
}

TEST_F(UnicodeData, FoldTables)
{
  const auto folds = unicode_test::ReadFolds("8.0.0");
  std::size_t pairs = 0;
  std::size_t triples = 0;
  for (long c = 0; c < kPlane; ++c) {
    const auto found = folds.find(c);
    const std::uint32_t entry = qxpaf::kCaseFold.Entry(static_cast<wchar_t>(c));
    if (found == folds.end()) {
      ASSERT_EQ(entry, 0U) << Code(c);
      continue;
    }
    const std::vector<long>& fold = found->second;
    if (fold.size() == 1) {
      ASSERT_EQ(entry, fold[0]) << Code(c);
    } else if (fold.size() == 2) {
      ASSERT_EQ(entry, 0xD800 + pairs) << Code(c);
      EXPECT_TRUE(std::equal(fold.begin(), fold.end(), qxpaf::kFoldPairs[pairs++])) << Code(c);
    } else {
      ASSERT_EQ(entry, 0xDA00 + triples) << Code(c);
      EXPECT_TRUE(std::equal(fold.begin(), fold.end(), qxpaf::kFoldTriples[triples++])) << Code(c);
    }
  }
  EXPECT_EQ(pairs, 88U);
  EXPECT_EQ(triples, 16U);
}

struct FlagRow
{
  unsigned int bit;
  const char* file;
  const char* property;
  bool (*is)(wchar_t);  // null where no function shows it
};

constexpr FlagRow kFlags[] = {
    {6, "DerivedCoreProperties.txt", "Alphabetic", UnicodeIsAlpha},
    {7, "DerivedCoreProperties.txt", "Uppercase", UnicodeIsUpper},
    {8, "DerivedCoreProperties.txt", "Lowercase", UnicodeIsLower},
    {9, "PropList.txt", "White_Space", UnicodeIsSpace},
    {10, "PropList.txt", "Hex_Digit", UnicodeIsXdigit},
    {11, "PropList.txt", "Noncharacter_Code_Point", nullptr},
    {12, "DerivedCoreProperties.txt", "Default_Ignorable_Code_Point", nullptr},
};

TEST_F(UnicodeData, Flags)
{
  for (const FlagRow& row : kFlags) {
    const std::set<long> expected = unicode_test::ReadProperty(std::string("5.2.0/") + row.file, row.property);
    ASSERT_FALSE(expected.empty()) << row.property;
    for (long c = 0; c < kPlane; ++c) {
      const auto character = static_cast<wchar_t>(c);
      ASSERT_EQ(qxpaf::kProperties.Entry(character) >> row.bit & 1U, expected.count(c))
          << row.property << ' ' << Code(c);
      if (row.is == nullptr) continue;
      ASSERT_EQ(row.is(character), expected.count(c) != 0) << row.property << ' ' << Code(c);
    }
  }
}

TEST_F(UnicodeData, Categories)
{
  static const std::string order[7] = {"LuLlLtLmLo", "MnMeMc",         "NdNlNo",  "ZsZlZp",
                                       "CcCfCoCs",   "PdPsPePcPoPiPf", "SmScSkSo"};
  const Characters characters = unicode_test::ReadCharacters("5.2.0");
  const std::set<long> alphabetic = unicode_test::ReadProperty("5.2.0/DerivedCoreProperties.txt", "Alphabetic");
  for (long c = 0; c < kPlane; ++c) {
    const auto character = static_cast<wchar_t>(c);
    const auto found = characters.find(c);
    const std::string category = found == characters.end() ? "Lu" : found->second.category;
    std::size_t group = 0;
    while (order[group].find(category) == std::string::npos) ++group;
    ASSERT_EQ(qxpaf::kProperties.Entry(character) & 0x3FU, group * 8 + order[group].find(category) / 2) << Code(c);
    ASSERT_EQ(UnicodeIsDigit(character), category == "Nd") << Code(c);
    ASSERT_EQ(UnicodeIsPunct(character), category[0] == 'P') << Code(c);
    ASSERT_EQ(UnicodeIsAlnum(character), category == "Nd" || alphabetic.count(c) != 0) << Code(c);
  }
}

}  // namespace
