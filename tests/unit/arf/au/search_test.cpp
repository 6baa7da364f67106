// Searches through the plug-in's interface: answers, find statuses, descriptions, parsed inputs.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "arf/au/status_text.h"
#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

class Search : public testing::Test
{
 protected:
  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  Searcher searcher_{*database_};
};

struct LookupRow
{
  const char* written;
  int amas;
  int status;
  const char* dpid;
  int findStatus;
};

TEST_F(Search, Lookup)
{
  const LookupRow rows[] = {
      {"1 George St, Sydney NSW 2000", 1, 0, "30000001", PAF_AU_FIND_MATCHED},
      {"1 George St, Sydney NSW 2000", 0, 0, "30000001", PAF_AU_FIND_MATCHED},
      {"138 Pitt St Sydney", 0, 0, "30000050", PAF_AU_FIND_CHANGED},
      {"138 Pitt St Sydney", 1, PAF_AU_ERR_WRONG_NUMBER, "", PAF_AU_FIND_NO_NUMBER},
      {"138 Pitt St Sydney", 7, PAF_AU_ERR_WRONG_NUMBER, "", PAF_AU_FIND_NO_NUMBER},
      {"1 Windsor St Richmond", 0, PAF_AU_ERR_SEVERAL_FOUND, "", PAF_AU_FIND_SEVERAL},
      {"1 Foo St Sydney", 0, PAF_AU_ERR_WRONG_STREET, "", PAF_AU_FIND_NO_STREET},
      {"1 George St Sydney VIC", 0, PAF_AU_ERR_WRONG_LOCALITY, "", PAF_AU_FIND_NO_LOCALITY},
      {"xyzzy", 0, PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
      {"", 0, PAF_AU_ERR_NOT_FOUND, "", PAF_AU_FIND_NOTHING},
  };
  EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_NONE);
  for (const LookupRow& row : rows) {
    EXPECT_EQ(searcher_.Lookup(row.written, row.amas), (Answer{row.status, row.dpid})) << row.written;
    EXPECT_EQ(searcher_->GetFindStatus(), row.findStatus) << row.written;
  }
  EXPECT_EQ(searcher_.Lookup(std::string(4097, 'a')), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
  EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_NOT_SEARCHED);
  char out[16];
  EXPECT_EQ(searcher_->LookupAddress(nullptr, out, sizeof out, 1), PAF_AU_ERR_NOT_FOUND);
}

TEST_F(Search, SaysInWhatTheAnswerDiffers)
{
  struct Row
  {
    const char* written;
    const char* dpid;
    int findStatus;
    const char* penalties;
  };
  const Row rows[] = {
      {"1 George Street, Sydney NSW 2000", "30000001", PAF_AU_FIND_MATCHED, ""},
      {"138 Pitt Street Sydney", "30000050", PAF_AU_FIND_CHANGED, "inside_range=12"},
      {"1 Goerge Street Sydney", "30000001", PAF_AU_FIND_CHANGED, "street_typo=12"},
      {"Unit 99, 12-14 George St Sydney", "30000010", PAF_AU_FIND_PRIMARY_POINT, "unknown_unit=20"},
      {"900 George Street Sydney", "", PAF_AU_FIND_NO_NUMBER, ""},
  };
  EXPECT_EQ(searcher_.Property("MatchPenalties"), (Answer{0, ""})) << "nothing searched yet";
  for (const Row& row : rows) {
    EXPECT_EQ(searcher_.Lookup(row.written, 0).text, row.dpid) << row.written;
    EXPECT_EQ(searcher_->GetFindStatus(), row.findStatus) << row.written;
    EXPECT_EQ(searcher_.Property("MatchPenalties"), (Answer{0, row.penalties})) << row.written;
  }
  const std::string table = searcher_.Property("PenaltyTable").text;
  for (const Row& row : rows) EXPECT_NE(table.find(row.penalties), std::string::npos) << row.penalties;
}

TEST_F(Search, FixLastLine)
{
  EXPECT_EQ(searcher_.Fix("nsw 2000 sydney"), (Answer{0, "SYDNEY NSW 2000"}));
  EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_MATCHED);
  EXPECT_EQ(searcher_.Fix("Melborne"), (Answer{0, "MELBOURNE VIC 3000"}));
  EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_CHANGED);
  EXPECT_EQ(searcher_.Fix("Richmond"), (Answer{PAF_AU_ERR_SEVERAL_FOUND, ""}));
  EXPECT_EQ(searcher_.Fix("Mount Isa NSW"), (Answer{PAF_AU_ERR_WRONG_LOCALITY, ""}));
  EXPECT_EQ(searcher_.Fix(""), (Answer{PAF_AU_ERR_NOT_FOUND, ""}));
  EXPECT_EQ(searcher_.Fix(std::string(4097, 'a')), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
}

struct DescriptionRow
{
  int status;
  const char* written;  ///< an input that leads to the status
  const char* text;
};

TEST_F(Search, DescriptionsHaveTheDetailOfTheLastFailure)
{
  const DescriptionRow rows[] = {
      {PAF_AU_ERR_NOT_FOUND, "xyzzy",
       "Neither a locality nor a street was recognised. Write number, street, locality, state and postcode."},
      {PAF_AU_ERR_SEVERAL_FOUND, "1 Windsor St Richmond",
       "2 addresses fit: 1 WINDSOR STREET, RICHMOND NSW 2753; 1 WINDSOR STREET, RICHMOND VIC 3121. Add the unit, the "
       "street type, the state or the postcode."},
      {PAF_AU_ERR_WRONG_STREET, "1 Foo St Melbourne",
       "\"FOO ST\" was not found in MELBOURNE VIC 3000. Check the street's name, type and suffix."},
      {PAF_AU_ERR_WRONG_NUMBER, "900 George St, Sydney NSW 2000",
       "No number 900 in GEORGE STREET, SYDNEY NSW 2000; numbers there run from 1 to 812. Check the number and the "
       "unit."},
      {PAF_AU_ERR_WRONG_LOCALITY, "15 West St Mt Isa NSW",
       "MOUNT ISA is QLD 4825, not NSW. Check locality, state and postcode."},
  };
  for (const DescriptionRow& row : rows) {
    EXPECT_EQ(searcher_.Lookup(row.written).status, row.status) << row.written;
    EXPECT_EQ(searcher_.Description(row.status), row.text);
    EXPECT_EQ(searcher_.Description(row.status), row.text) << "asking does not consume it";
  }
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_WRONG_NUMBER),
            "The street is known, but not the number or unit. Check the number and the unit.")
      << "the last failure was another";
  searcher_.Lookup(std::string(4097, 'a'));
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_INPUT_TOO_LONG),
            "The text has more than 4096 bytes or 96 words. Pass one address at a time.");
  searcher_.Get("\t\t\t\t\t\t\t99999999");
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_UNKNOWN_DPID),
            "No address has the identifier 99999999. Check the identifier, and that the right database is open.");
}

TEST_F(Search, AdviceForLastLines)
{
  const DescriptionRow rows[] = {
      {PAF_AU_ERR_NOT_FOUND, "xyzzy", "No locality was recognised. Write locality, state and postcode."},
      {PAF_AU_ERR_NOT_FOUND, "", "No locality was recognised. Write locality, state and postcode."},
      {PAF_AU_ERR_SEVERAL_FOUND, "Richmond",
       "2 localities fit: RICHMOND NSW 2753; RICHMOND VIC 3121. Add the locality, the state or the postcode."},
      {PAF_AU_ERR_WRONG_LOCALITY, "Sydney VIC",
       "SYDNEY is NSW 2000, NSW 2001, not VIC. Check locality, state and postcode."},
  };
  for (const DescriptionRow& row : rows) {
    EXPECT_EQ(searcher_.Fix(row.written).status, row.status) << row.written;
    EXPECT_EQ(searcher_.Description(row.status), row.text);
  }
  EXPECT_EQ(searcher_.Get("").status, PAF_AU_ERR_NOT_FOUND);
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_NOT_FOUND), rows[0].text);
  searcher_.Lookup("xyzzy");
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_NOT_FOUND),
            "Neither a locality nor a street was recognised. Write number, street, locality, state and postcode.")
      << "the advice belongs to one failure";
}

TEST_F(Search, DetailSurvivesLaterSuccesses)
{
  searcher_.Lookup("900 George St, Sydney NSW 2000");
  const std::string text = searcher_.Description(PAF_AU_ERR_WRONG_NUMBER);
  EXPECT_EQ(searcher_.Lookup("1 George St Sydney").status, 0);
  EXPECT_EQ(searcher_.Fix("Melbourne").status, 0);
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_WRONG_NUMBER), text);
}

TEST_F(Search, EveryStatusHasASentence)
{
  const int codes[] = {PAF_AU_ERR_NOT_FOUND,
                       PAF_AU_ERR_SEVERAL_FOUND,
                       PAF_AU_ERR_WRONG_STREET,
                       PAF_AU_ERR_WRONG_NUMBER,
                       PAF_AU_ERR_WRONG_LOCALITY,
                       PAF_AU_ERR_INPUT_TOO_LONG,
                       PAF_AU_ERR_UNKNOWN_DPID,
                       PAF_AU_ERR_BAD_QUERY,
                       PAF_AU_ERR_NO_ENUMERATION,
                       PAF_AU_ERR_UNKNOWN_PROPERTY,
                       PAF_AU_ERR_READ_ONLY_PROPERTY,
                       PAF_AU_ERR_PROPERTY_VALUE,
                       PAF_AU_ERR_NOT_A_DATABASE,
                       PAF_AU_ERR_DATABASE_VERSION,
                       PAF_AU_ERR_DATABASE_TRUNCATED,
                       PAF_AU_ERR_DATABASE_DAMAGED,
                       PAF_AU_ERR_NOT_OPEN,
                       PAF_AU_ERR_INTERNAL,
                       PAF_AU_ERR_BAD_POLYGON,
                       PAF_AU_ERR_BAD_PLACE,
                       PAF_AU_ERR_NO_PLACES,
                       PAF_AU_ERR_NOTHING_NEAR,
                       PAF_AU_ERR_BAD_STATISTICS,
                       PAF_AU_ERR_BAD_CONCORDANCE,
                       PAF_AU_ERR_BARCODE_DPID,
                       PAF_AU_ERR_BARCODE_FORMAT,
                       PAF_AU_ERR_BARCODE_ENCODING,
                       PAF_AU_ERR_CUSTOMER_NOT_TAKEN,
                       PAF_AU_ERR_CUSTOMER_TOO_LONG,
                       PAF_AU_ERR_CUSTOMER_CHARACTER,
                       PAF_AU_ERR_NO_SORT_PLAN,
                       PAF_AU_ERR_BAD_SORT_PLAN,
                       PAF_AU_ERR_NOT_IN_SORT_PLAN,
                       PAF_AU_ERR_BAD_POSTCODE,
                       PAF_AU_ERR_LAYOUT};
  std::set<std::string> texts;
  for (const int code : codes) {
    const std::string text = searcher_.Description(code);
    EXPECT_GT(text.size(), 20U) << code;
    EXPECT_EQ(text.back(), '.') << code;
    EXPECT_TRUE(texts.insert(text).second) << code;
    EXPECT_GT(code, 0);
    EXPECT_LT(code, 200);
  }
  for (int code = -10; code < 7000; ++code) {
    const bool isOwn = std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
    EXPECT_EQ(arf::FindStatusText(code) != nullptr, isOwn) << code;
    EXPECT_EQ(searcher_.Description(code).empty(), !isOwn) << code;
  }
}

std::vector<std::string> Split(const std::string& record, char delimiter)
{
  std::vector<std::string> fields(1);
  for (const char c : record) {
    if (c == delimiter)
      fields.emplace_back();
    else
      fields.back() += c;
  }
  return fields;
}

struct ParsedRow
{
  const char* written;
  std::vector<std::pair<int, std::string>> fields;  ///< all that are not empty
};

TEST_F(Search, ParsedInput)
{
  const ParsedRow rows[] = {
      {"Shop 3 Lvl 2, 12A-14B King St W, Sydney NSW 2000",
       {{PAF_AU_FIELD_LOCALITY, "SYDNEY"},
        {PAF_AU_FIELD_STATE, "NSW"},
        {PAF_AU_FIELD_POSTCODE, "2000"},
        {PAF_AU_FIELD_MATCH_QUALITY, "4"},
        {PAF_AU_FIELD_UNIT_TYPE, "SHOP"},
        {PAF_AU_FIELD_UNIT_NUMBER, "3"},
        {PAF_AU_FIELD_LEVEL_TYPE, "LEVEL"},
        {PAF_AU_FIELD_LEVEL_NUMBER, "2"},
        {PAF_AU_FIELD_NUMBER_FIRST, "12"},
        {PAF_AU_FIELD_NUMBER_FIRST_SUFFIX, "A"},
        {PAF_AU_FIELD_NUMBER_LAST, "14"},
        {PAF_AU_FIELD_NUMBER_LAST_SUFFIX, "B"},
        {PAF_AU_FIELD_STREET_NAME, "KING"},
        {PAF_AU_FIELD_STREET_TYPE, "STREET"},
        {PAF_AU_FIELD_STREET_SUFFIX, "WEST"},
        {PAF_AU_FIELD_MATCHED_TEXT, "SHOP 3 LVL 2 12A 14B KING ST W SYDNEY NSW 2000"}}},
      {"Lot 6 8 Smith Rd Sydney",
       {{PAF_AU_FIELD_LOCALITY, "SYDNEY"},
        {PAF_AU_FIELD_MATCH_QUALITY, "1"},
        {PAF_AU_FIELD_LOT, "6"},
        {PAF_AU_FIELD_NUMBER_FIRST, "8"},
        {PAF_AU_FIELD_STREET_NAME, "SMITH"},
        {PAF_AU_FIELD_STREET_TYPE, "ROAD"},
        {PAF_AU_FIELD_MATCHED_TEXT, "LOT 6 8 SMITH RD SYDNEY"}}},
      {"Opera Court, 11 Smith Rd Sydney",
       {{PAF_AU_FIELD_LOCALITY, "SYDNEY"},
        {PAF_AU_FIELD_MATCH_QUALITY, "1"},
        {PAF_AU_FIELD_BUILDING, "OPERA COURT"},
        {PAF_AU_FIELD_NUMBER_FIRST, "11"},
        {PAF_AU_FIELD_STREET_NAME, "SMITH"},
        {PAF_AU_FIELD_STREET_TYPE, "ROAD"},
        {PAF_AU_FIELD_MATCHED_TEXT, "OPERA COURT 11 SMITH RD SYDNEY"}}},
      {"GPO Box C96 Sydney",
       {{PAF_AU_FIELD_LOCALITY, "SYDNEY"},
        {PAF_AU_FIELD_MATCH_QUALITY, "1"},
        {PAF_AU_FIELD_POSTAL_TYPE, "GPO BOX"},
        {PAF_AU_FIELD_POSTAL_NUMBER, "C96"},
        {PAF_AU_FIELD_MATCHED_TEXT, "GPO BOX C96 SYDNEY"}}},
      {"xyzzy", {{PAF_AU_FIELD_MATCH_QUALITY, "7"}, {PAF_AU_FIELD_MATCHED_TEXT, "XYZZY"}}},
  };
  EXPECT_EQ(searcher_.Parsed(), (Answer{0, std::string(PAF_AU_FIELD_COUNT - 1, '\t')})) << "nothing parsed yet";
  for (const ParsedRow& row : rows) {
    searcher_.Lookup(row.written);
    std::vector<std::string> expected(PAF_AU_FIELD_COUNT);
    for (const auto& [field, value] : row.fields) expected[static_cast<std::size_t>(field) - 1] = value;
    EXPECT_EQ(Split(searcher_.Parsed().text, '\t'), expected) << row.written;
  }
  searcher_.Fix("Melborne 3000 vic");
  const std::vector<std::string> fields = Split(searcher_.Parsed().text, '\t');
  EXPECT_EQ(fields[PAF_AU_FIELD_LOCALITY - 1], "MELBORNE");
  EXPECT_EQ(fields[PAF_AU_FIELD_STATE - 1], "VIC");
  EXPECT_EQ(fields[PAF_AU_FIELD_POSTCODE - 1], "3000");
}

TEST_F(Search, EveryOperationKeepsToItsBuffer)
{
  const auto keepsTo = [](auto operation) {
    char out[9] = "########";
    operation(out, 8);
    EXPECT_EQ(out[8], '\0');
    EXPECT_LT(std::string_view(out).size(), 8U) << "not terminated within its size";
    out[0] = '#';
    EXPECT_NE(operation(out, 0), 0);
    EXPECT_NE(operation(nullptr, 0), 0);
    EXPECT_EQ(out[0], '#');
  };
  IArfSearcher& s = *searcher_;
  const char* address = "1 George St Sydney";
  keepsTo([&](char* out, int size) { return s.ValidatePartialAddress(address, out, size); });
  keepsTo([&](char* out, int size) { return s.ValidateFullAddress(address, out, size, 0, nullptr); });
  keepsTo([&](char* out, int size) { return s.FormatAddress(address, out, 0, size); });
  keepsTo([&](char* out, int size) { return s.GetPopupHint("geo", "syd", 1, out, size); });
  keepsTo([&](char* out, int size) { return s.GetNextPopupHint(out, size); });
  keepsTo([&](char* out, int size) { return s.GetAddressHint("geo", "syd", out, size); });
  keepsTo([&](char* out, int size) { return s.GetNextAddressHint(out, size); });
  keepsTo([&](char* out, int size) { return s.GetNextAddressInPolygon(out, size); });
  keepsTo([&](char* out, int size) { return s.GetSearchStatistics("2000", "", "", "", out, size); });
  keepsTo([&](char* out, int size) { return s.GetNextGifConcordance(out, size, nullptr, 0, nullptr); });
  keepsTo([&](char* out, int size) { return s.GetNextGifConcordance(nullptr, 0, out, size, nullptr); });
  keepsTo([&](char* out, int size) { return s.GetNextAddressSearch(out, size); });
}

}  // namespace
