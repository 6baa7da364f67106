// Addresses in lines: letter case, abbreviations, limits.
#include "arf/print/address_layout.h"

#include <gtest/gtest.h>

#include <string>

#include "arf/match/bounded_text.h"
#include "qxpaf/arf_au.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

using arf::LayoutOptions;

constexpr long Limits(long lines, long width)
{
  return lines << PAF_AU_FORMAT_LINES_SHIFT | width << PAF_AU_FORMAT_WIDTH_SHIFT;
}

const arf::Database& SmallDatabase()
{
  static const test_support::TempDir dir;
  static const std::unique_ptr<arf::Database> database = [] {
    arf::OpenResult result;
    const std::string path = arf_test::BuildDatabaseFrom(dir, arf_test::TestDataFile("lookup_addresses.csv"));
    return arf::Database::Open(path, arf::OpenMode::Memory, result);
  }();
  return *database;
}

/** The layout with "|" between lines; "-" when it does not fit. */
template <class LayOut>
std::string Laid(LayOut layOut)
{
  char out[2048];
  arf::BoundedText text(out, sizeof out);
  return layOut(text) ? std::string(text.View()) : "-";
}

std::string Address(std::uint32_t dpid, long option)
{
  const auto ordinal = SmallDatabase().FindDpid(dpid);
  EXPECT_TRUE(ordinal) << dpid;
  return Laid([&](arf::BoundedText& out) {
    return LayOutAddress(SmallDatabase(), ordinal.value_or(0), LayoutOptions::Of(option), '|', out);
  });
}

std::string Text(const std::string& text, long option = 0)
{
  return Laid([&](arf::BoundedText& out) { return LayOutText(text, LayoutOptions::Of(option), '|', out); });
}

TEST(AddressLayout, ReadsTheOption)
{
  const LayoutOptions none = LayoutOptions::Of(0);
  EXPECT_FALSE(none.upper || none.abbreviate || none.oneLine);
  EXPECT_TRUE(none.lastLineUpper);
  EXPECT_EQ(none.maxLines, 0U);
  EXPECT_EQ(none.maxWidth, 0U);
  const LayoutOptions all = LayoutOptions::Of(15 | Limits(255, 32767));
  EXPECT_TRUE(all.upper && all.abbreviate && all.oneLine);
  EXPECT_FALSE(all.lastLineUpper);
  EXPECT_EQ(all.maxLines, 255U);
  EXPECT_EQ(all.maxWidth, 32767U);
}

TEST(AddressLayout, AddressesOfTheData)
{
  struct Row
  {
    std::uint32_t dpid;
    long option;
    const char* text;
  };
  const Row rows[] = {
      {30000001, 0, "1 George Street|SYDNEY NSW 2000"},
      {30000001, PAF_AU_FORMAT_UPPER, "1 GEORGE STREET|SYDNEY NSW 2000"},
      {30000001, PAF_AU_FORMAT_LAST_LINE_TITLE, "1 George Street|Sydney NSW 2000"},
      {30000001, PAF_AU_FORMAT_ABBREVIATE, "1 George St|SYDNEY NSW 2000"},
      {30000001, PAF_AU_FORMAT_ONE_LINE, "1 George Street, SYDNEY NSW 2000"},
      {30000001, PAF_AU_FORMAT_ONE_LINE | PAF_AU_FORMAT_LAST_LINE_TITLE, "1 George Street, Sydney NSW 2000"},
      {30000002, 0, "Sydney Town Hall|483 George Street|SYDNEY NSW 2000"},
      {30000002, Limits(2, 0), "Sydney Town Hall, 483 George Street|SYDNEY NSW 2000"},
      {30000002, Limits(2, 20), "-"},
      {30000002, Limits(3, 10), "-"},
      {30000002, Limits(0, 10), "Sydney|Town Hall|483 George|Street|SYDNEY NSW|2000"},
      {30000002, Limits(0, 5), "-"},
      {30000013, 0, "Unit 3 Level 2 12-14 George Street|SYDNEY NSW 2000"},
      {30000013, PAF_AU_FORMAT_ABBREVIATE, "Unit 3 L 2 12-14 George St|SYDNEY NSW 2000"},
      {30000016, 0, "Unit G07 12-14 George Street|SYDNEY NSW 2000"},
      {30000022, 0, "20B-22C George Street|SYDNEY NSW 2000"},
      {30000061, PAF_AU_FORMAT_ABBREVIATE, "10 King St W|SYDNEY NSW 2000"},
      {30000065, 0, "5 1st Avenue|SYDNEY NSW 2000"},
  };
  for (const Row& row : rows) EXPECT_EQ(Address(row.dpid, row.option), row.text) << row.dpid << ' ' << row.option;
}

TEST(AddressLayout, OtherTextsKeepTheirWords)
{
  EXPECT_EQ(Text("12a  foo st,  atlantis   nsw 9999"), "12A Foo St|ATLANTIS NSW 9999");
  EXPECT_EQ(Text("po box 7\r\natlantis", PAF_AU_FORMAT_LAST_LINE_TITLE), "PO Box 7|Atlantis");
  EXPECT_EQ(Text("mary o'brien\n12 mcdonald rd\n\nact", PAF_AU_FORMAT_ONE_LINE), "Mary O'Brien, 12 McDonald Rd, ACT");
  EXPECT_EQ(Text("act street, darwin nt", PAF_AU_FORMAT_LAST_LINE_TITLE), "Act Street|Darwin NT");
  EXPECT_EQ(Text(""), "");
  EXPECT_EQ(Text(" , \n,"), "");
  EXPECT_EQ(Text("a\tb"), "A|B");
}

TEST(AddressLayout, UpperCaseBeyondAscii)
{
  struct Row
  {
    const char* text;
    const char* upper;
  };
  const Row rows[] = {
      {"12 ren\u00e9 st, jos\u00e9", "12 REN\u00c9 ST|JOS\u00c9"},
      {"5 k\u00fcche", "5 K\u00dcCHE"},
      {"\u00ff\u0101\u03b1\u0436", "\u0178\u0100\u0391\u0416"},
      {"stra\u00dfe", "STRASSE"},
      {"\u0250\u0131", "\u2c6fI"},  // one byte more, one less
      {"\u20ac \U0001F600 \u4e2d", "\u20ac \U0001F600 \u4e2d"},
      {"caf\xe9 \xf7\xbf\xbf\xbf", "CAF\xe9 \xf7\xbf\xbf\xbf"},
      {"\xc0\xaf\xc3", "\xc0\xaf\xc3"},
  };
  for (const Row& row : rows) EXPECT_EQ(Text(row.text, PAF_AU_FORMAT_UPPER), row.upper) << row.text;
  EXPECT_EQ(Text("caf\u00e9, k\u00fcche"), "Caf\u00e9|K\u00dcCHE");
}

TEST(AddressLayout, UpperCaseThatIsLongerMustFit)
{
  std::string text, upper;
  for (int i = 0; i < 170; ++i) text += "\u0250", upper += "\u2c6f";
  EXPECT_EQ(Text(text, PAF_AU_FORMAT_UPPER), upper) << "510 bytes";
  for (int i = 0; i < 86; ++i) text += "\u0250";
  EXPECT_EQ(Text(text, PAF_AU_FORMAT_UPPER), "-") << "512 bytes, 768 in upper case";
}

TEST(AddressLayout, TextsTooLongDoNotFit)
{
  EXPECT_EQ(Text(std::string(512, 'x')), std::string(512, 'X'));
  EXPECT_EQ(Text(std::string(513, 'x')), "-");
  std::string lines;
  for (int i = 0; i < 33; ++i) lines += "x,";
  EXPECT_EQ(Text(lines), "-");
}

}  // namespace
