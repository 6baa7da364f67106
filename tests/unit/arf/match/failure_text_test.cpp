// The sentence of every fault.
#include "arf/match/failure_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "arf/match/address_text.h"
#include "arf/match/last_line_fixer.h"
#include "arf/match/matcher.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

const arf::Database& Data()
{
  return arf_test::SmallEngine().Data();
}

std::string TextOf(const arf::Failure& failure)
{
  char buffer[1024];
  arf::BoundedText text(buffer, sizeof buffer);
  arf::AppendFailure(text, Data(), failure);
  return buffer;
}

struct FailureRow
{
  const char* written;
  const char* text;
};

TEST(FailureText, OfLookups)
{
  const FailureRow rows[] = {
      {"xyzzy", "Neither a locality nor a street was recognised."},
      {"3 Station St Nowhere NT", "No locality was recognised in \"3 STATION ST NOWHERE\" for NT."},
      {"999 West St, Mount", "No locality was recognised in \"MOUNT\"; there is MOUNT ISA QLD 4825."},
      {"999 West St, Mount QLD", "No locality was recognised in \"MOUNT\" for QLD; there is MOUNT ISA QLD 4825."},
      {"999 West St, Mount NSW", "No locality was recognised in \"MOUNT\" for NSW."},
      {"999 West St, Mou", "No locality was recognised in \"MOU\"."},
      {"3 Station St, Nowhere", "No locality was recognised in \"NOWHERE\"."},
      {"1 George St Sydney VIC 3000", "SYDNEY is NSW 2000, NSW 2001, not VIC 3000."},
      {"Richmond TAS", "RICHMOND is NSW 2753, VIC 3121, not TAS."},
      {"Sydney NSW 2000", "No street was written for SYDNEY NSW 2000."},
      {"1 Foo St Sydney NSW 2000", "\"FOO ST\" was not found in SYDNEY NSW 2000."},
      {"PO Box 5 Melbourne", "\"PO BOX 5\" was not found in MELBOURNE VIC 3000."},
      {"1 George Ave Sydney NSW 2000", "\"GEORGE AVE\" was not found in SYDNEY NSW 2000; there is GEORGE STREET."},
      {"1 King Rd Sydney NSW 2000",
       "\"KING RD\" was not found in SYDNEY NSW 2000; there is KING STREET, KING STREET WEST."},
      {"George St Sydney NSW 2000",
       "No number was written for GEORGE STREET, SYDNEY NSW 2000; numbers there run from 1 to 812."},
      {"900 George St Sydney NSW 2000",
       "No number 900 in GEORGE STREET, SYDNEY NSW 2000; numbers there run from 1 to 812."},
      {"900-902 George St Sydney NSW 2000",
       "No number 900-902 in GEORGE STREET, SYDNEY NSW 2000; numbers there run from 1 to 812."},
      {"7 Park St Sydney NSW 2000", "No number 7 in PARK STREET, SYDNEY NSW 2000; the only number there is 10."},
      {"7 Parliament Dr Canberra",
       "No number 7 in PARLIAMENT DRIVE, CANBERRA ACT 2600; no address there has a number."},
      {"141 Pitt St Sydney NSW 2000", "No number 141 in PITT STREET, SYDNEY NSW 2000; it is part of 138-144."},
      {"Lot 77 Smith Rd Sydney NSW 2000",
       "No number LOT 77 in SMITH ROAD, SYDNEY NSW 2000; numbers there run from 8 to 11."},
      {"PO Box 5 Sydney", "No number 5 in PO BOX, SYDNEY NSW 2001; the only number there is 123."},
      {"Unit 99 Level 2, 12-14 George St Sydney",
       "No UNIT 99 LEVEL 2 at 12 GEORGE STREET, SYDNEY NSW 2000; there is the building, LEVEL 5, UNIT 1, UNIT 2 and 3 "
       "more."},
      {"Stage 2 Works, 1 George St Sydney",
       "No STAGE 2 WORKS at 1 GEORGE STREET, SYDNEY NSW 2000; there is the building."},
      {"99/1 George St Sydney", "No UNIT 99 at 1 GEORGE STREET, SYDNEY NSW 2000; there is the building."},
      {"1 Windsor St Richmond",
       "2 addresses fit: 1 WINDSOR STREET, RICHMOND NSW 2753; 1 WINDSOR STREET, RICHMOND VIC 3121."},
      {"11 Smith Rd Sydney",
       "2 addresses fit: HARBOUR TOWER, 11 SMITH ROAD, SYDNEY NSW 2000; OPERA COURT, 11 SMITH ROAD, "
       "SYDNEY NSW 2000."},
      {"40 George St Sydney NSW 2000", "Only this is there: UNIT 7 40 GEORGE STREET, SYDNEY NSW 2000."},
  };
  const auto matcher = std::make_unique<arf::Matcher>(arf_test::SmallEngine());
  for (const FailureRow& row : rows) {
    EXPECT_NE(matcher->Lookup(row.written, arf::Rules::Strict).verdict, arf::Verdict::Found) << row.written;
    EXPECT_EQ(TextOf(matcher->LastFailure()), row.text) << row.written;
  }
  matcher->Lookup(std::string(5000, 'a'), arf::Rules::Strict);
  EXPECT_EQ(TextOf(matcher->LastFailure()), "The text has more than 4096 bytes or 96 words.");
  matcher->Lookup("1 George Street, Sydney", arf::Rules::Strict);
  EXPECT_EQ(TextOf({}), "");
}

TEST(FailureText, OfLastLines)
{
  const FailureRow rows[] = {
      {"Richmond", "2 localities fit: RICHMOND NSW 2753; RICHMOND VIC 3121."},
      {"Sydney VIC", "SYDNEY is NSW 2000, NSW 2001, not VIC."},
      {"xyzzy NSW 2000", "No locality was recognised in \"XYZZY\" for NSW 2000."},
      {"xyzzy", "Neither a locality nor a street was recognised."},
      {"NSW", "No locality was recognised for NSW."},
      {"2000 xyzzy", "No locality was recognised in \"XYZZY\" for 2000."},
      {"483 gorge st sydney", "No locality was recognised in \"483 GORGE ST SYDNEY\"."},
      {"483 xyzzy nsw 2000", "No locality was recognised in \"483 XYZZY\" for NSW 2000."},
      {"12 xyzzy nsw", "No locality was recognised in \"12 XYZZY\" for NSW."},
  };
  const auto fixer = std::make_unique<arf::LastLineFixer>(arf_test::SmallEngine());
  for (const FailureRow& row : rows) {
    EXPECT_NE(fixer->Fix(row.written).verdict, arf::Verdict::Found) << row.written;
    EXPECT_EQ(TextOf(fixer->LastFailure()), row.text) << row.written;
  }
}

TEST(AddressText, Lines)
{
  struct Row
  {
    std::uint32_t dpid;
    const char* line;
    const char* address;
  };
  const Row rows[] = {
      {30000001, "1 GEORGE STREET", "1 GEORGE STREET, SYDNEY NSW 2000"},
      {30000013, "UNIT 3 LEVEL 2 12-14 GEORGE STREET", "UNIT 3 LEVEL 2 12-14 GEORGE STREET, SYDNEY NSW 2000"},
      {30000014, "SHOP 4 GROUND 12-14 GEORGE STREET", "SHOP 4 GROUND 12-14 GEORGE STREET, SYDNEY NSW 2000"},
      {30000022, "20B-22C GEORGE STREET", "20B-22C GEORGE STREET, SYDNEY NSW 2000"},
      {30000061, "10 KING STREET WEST", "10 KING STREET WEST, SYDNEY NSW 2000"},
      {30000066, "10 BROADWAY", "10 BROADWAY, SYDNEY NSW 2000"},
      {30000070, "LOT 5 SMITH ROAD", "LOT 5 SMITH ROAD, SYDNEY NSW 2000"},
      {30000071, "8 SMITH ROAD", "8 SMITH ROAD, SYDNEY NSW 2000"},
      {30000073, "REAR 9 SMITH ROAD", "REAR 9 SMITH ROAD, SYDNEY NSW 2000"},
      {30000074, "11 SMITH ROAD", "HARBOUR TOWER, 11 SMITH ROAD, SYDNEY NSW 2000"},
      {30000082, "GPO BOX C96", "GPO BOX C96, SYDNEY NSW 2001"},
      {30000084, "CARE PO", "CARE PO, SYDNEY NSW 2001"},
      {30000140, "PARLIAMENT DRIVE", "PARLIAMENT HOUSE, PARLIAMENT DRIVE, CANBERRA ACT 2600"},
  };
  for (const Row& row : rows) {
    const std::uint32_t ordinal = Data().FindDpid(row.dpid).value();
    const arf::Point point = Data().PointAt(ordinal);
    char buffer[256];
    arf::BoundedText line(buffer, sizeof buffer);
    arf::AppendStreetLine(line, point, Data().StreetAt(point.street));
    EXPECT_STREQ(buffer, row.line);
    line.Clear();
    arf::AppendAddress(line, Data(), ordinal);
    EXPECT_STREQ(buffer, row.address);
  }
}

TEST(BoundedText, NeverWritesBeyondItsBuffer)
{
  for (int size = -1; size <= 8; ++size) {
    char buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), '#');
    arf::BoundedText text(buffer, size);
    text << "AB" << std::uint32_t{12} << 'C';
    text.Word("D");
    const std::string whole = "AB12C D";
    EXPECT_EQ(text.IsWhole(), size >= 8) << size;
    for (int i = std::max(size, 0); i < 16; ++i) EXPECT_EQ(buffer[i], '#') << size;
    if (size < 1) continue;
    EXPECT_EQ(std::string(buffer), whole.substr(0, static_cast<std::size_t>(size) - 1));
    text.Clear();
    EXPECT_EQ(buffer[0], '\0');
  }
  arf::BoundedText nowhere(nullptr, 10);
  nowhere << "A";
  EXPECT_FALSE(nowhere.IsWhole());
}

TEST(BoundedText, PartsAreCleaned)
{
  char buffer[32];
  arf::BoundedText text(buffer, sizeof buffer);
  text << "a|b";
  text.StartPart();
  text.Word("c|d\te").Word("").Word("f");
  text.CleanPart('|');
  EXPECT_STREQ(buffer, "a|bc d e f");
  text.Clean(1, 4, 'b');
  EXPECT_STREQ(buffer, "a| c d e f");
  text.Clean(9, 100, 'f');
  EXPECT_STREQ(buffer, "a| c d e  ");
}

}  // namespace
