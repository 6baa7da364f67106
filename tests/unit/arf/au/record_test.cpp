// Address records and enumerations.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "arf/au/record_fields.h"
#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

class Records : public testing::Test
{
 protected:
  Records() { EXPECT_EQ(searcher_.SetProperty("Delimiter", "|").status, 0); }

  /** Asks as the library does: seven delimiters and an identifier. */
  Answer ByDpid(const std::string& dpid) { return searcher_.Get("|||||||" + dpid); }

  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  Searcher searcher_{*database_};
};

TEST_F(Records, DefaultFields)
{
  struct Row
  {
    const char* dpid;
    const char* record;
  };
  const Row rows[] = {
      {"30000001", "1 GEORGE STREET|||SYDNEY|NSW|2000|AUSTRALIA|30000001"},
      {"30000013", "UNIT 3 LEVEL 2 12-14 GEORGE STREET|||SYDNEY|NSW|2000|AUSTRALIA|30000013"},
      {"30000002", "SYDNEY TOWN HALL|483 GEORGE STREET||SYDNEY|NSW|2000|AUSTRALIA|30000002"},
      {"30000140", "PARLIAMENT HOUSE|PARLIAMENT DRIVE||CANBERRA|ACT|2600|AUSTRALIA|30000140"},
      {"30000082", "GPO BOX C96|||SYDNEY|NSW|2001|AUSTRALIA|30000082"},
      {"30000070", "LOT 5 SMITH ROAD|||SYDNEY|NSW|2000|AUSTRALIA|30000070"},
      {"30000068", "10 ESPERANÇA STREET|||SYDNEY|NSW|2000|AUSTRALIA|30000068"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ByDpid(row.dpid), (Answer{0, row.record}));
    EXPECT_EQ(searcher_->GetFindStatus(), PAF_AU_FIND_MATCHED);
    EXPECT_EQ(searcher_.Next(), (Answer{0, "|||||||"})) << "the end";
    EXPECT_EQ(searcher_.Next(), (Answer{0, "|||||||"})) << "it stays at the end";
  }
}

TEST_F(Records, WithTheDefaultDelimiter)
{
  Searcher searcher(*database_);
  EXPECT_EQ(searcher.Get("\t\t\t\t\t\t\t30000001"),
            (Answer{0, "1 GEORGE STREET\t\t\tSYDNEY\tNSW\t2000\tAUSTRALIA\t30000001"}));
}

struct FieldsRow
{
  const char* fields;
  const char* dpid;
  const char* record;
};

TEST_F(Records, ChosenFields)
{
  const FieldsRow rows[] = {
      {"DPID", "30000001", "30000001"},
      {"dpid,POSTCODE;state", "30000001", "30000001|2000|NSW"},
      {"8 ; 6 , 5", "30000001", "30000001|2000|NSW"},
      {"8,8,8", "30000001", "30000001|30000001|30000001"},
      {"9", "30000001", "1"},
      {"10;11;12;13;14;15", "30000013", "|UNIT|3|LEVEL|2|"},
      {"Building;Lot;NumberFirst", "30000071", "|6|8"},
      {"16;17;18;19;20;21;22", "30000022", "20|B|22|C|GEORGE|STREET|"},
      {"StreetName,StreetType,StreetSuffix", "30000061", "KING|STREET|WEST"},
      {"16;20;21;23;24", "30000082", "|||GPO BOX|C96"},
      {"PostalType;PostalNumber;StreetType", "30000084", "CARE PO||"},
      {"3;25;26;27;39", "30000001", "||||"},
      {"41", "30000001", "1301011000000000000001322231321110013"},
      {"40", "30000001", ""},
      {"Latitude;Longitude;MeshBlock", "30000001", "-33.860000|151.208000|11205670000"},
      {"43;44;46", "30000003", "||"},
      {"40;42;45;47;48", "30000001", "||||"},
      {"zone;mesh_block", "30000001", "inner|11205670000"},
      {"ZONE", "30000003", ""},
  };
  for (const FieldsRow& row : rows) {
    EXPECT_EQ(searcher_.SetProperty("OutputFields", row.fields), (Answer{0, ""})) << row.fields;
    EXPECT_EQ(ByDpid(row.dpid), (Answer{0, row.record})) << row.fields;
    EXPECT_EQ(
        searcher_.Next().text,
        std::string(static_cast<std::size_t>(std::count(row.record, row.record + std::string(row.record).size(), '|')),
                    '|'));
  }
}

TEST_F(Records, EveryFieldHasItsNameAndNumber)
{
  std::set<std::string_view> names;
  const arf::Database& data = arf_test::SmallEngine().Data();
  for (unsigned number = 1; number <= PAF_AU_FIELD_COUNT; ++number) {
    const std::string_view name = arf::FieldName(number);
    const bool isReserved = number > PAF_AU_FIELD_MATCHED_TEXT && number < PAF_AU_FIELD_SORT_PLAN_NUMBER;
    EXPECT_EQ(name.empty(), isReserved) << number;
    const auto byNumber = arf::FindField(data, std::to_string(number));
    ASSERT_TRUE(byNumber.has_value());
    EXPECT_EQ(byNumber->Number(), number);
    if (isReserved) continue;
    EXPECT_TRUE(names.insert(name).second);
    const auto byName = arf::FindField(data, name);
    ASSERT_TRUE(byName.has_value());
    EXPECT_EQ(byName->Number(), number);
  }
  for (const char* text : {"", "0", "49", "-1", "1x", "Nonsense", "1000"})
    EXPECT_FALSE(arf::FindField(data, text)) << text;
}

TEST_F(Records, DelimitersInsideValuesBecomeSpaces)
{
  EXPECT_EQ(searcher_.SetProperty("Delimiter", "'").status, 0);
  EXPECT_EQ(searcher_.SetProperty("OutputFields", "1;8").status, 0);
  EXPECT_EQ(searcher_.Get("'''''''30000067"), (Answer{0, "10 O CONNELL STREET'30000067"}));
}

/** Wherever in a long record they stand. */
TEST_F(Records, DelimitersInsideValuesOfLongRecords)
{
  EXPECT_EQ(searcher_.SetProperty("Delimiter", "'").status, 0);
  for (std::size_t fields : {6U, 7U, 8U, 9U, 15U, 31U}) {
    std::string names, expected;
    for (std::size_t i = 0; i < fields; ++i) names += "AddressLine1;";
    for (std::size_t i = 0; i < fields; ++i) expected += (i > 0 ? "'10 O CONNELL STREET" : "10 O CONNELL STREET");
    EXPECT_EQ(searcher_.SetProperty("OutputFields", names + "Locality;9;AddressLine1").status, 0);
    EXPECT_EQ(searcher_.Get("'''''''30000067"), (Answer{0, expected + "'SYDNEY'1'10 O CONNELL STREET"}));
    EXPECT_EQ(searcher_.SetProperty("OutputFields", names.substr(0, 12) + ";Locality").status, 0);
    EXPECT_EQ(searcher_.Get("'''''''30000002"), (Answer{0, "SYDNEY TOWN HALL'SYDNEY"}));
  }
}

TEST_F(Records, EnumeratesLocalities)
{
  searcher_.SetProperty("OutputFields", "DPID;AddressLine1");
  const std::string records[] = {"30000130|20 BRIDGE ROAD", "30000132|1 WINDSOR STREET", "|", "|"};
  const char* queries[] = {"Richmond VIC 3121",  "|||richmond|vic|3121",
                           "|||Richmond||3121|", "|||RICHMOND|Victoria||AUSTRALIA|",
                           "|||||3121||",        "3121"};
  for (const char* query : queries) {
    EXPECT_EQ(searcher_.Get(query), (Answer{0, records[0]})) << query;
    for (int i = 1; i < 4; ++i) EXPECT_EQ(searcher_.Next(), (Answer{0, records[i]})) << query;
  }
}

TEST_F(Records, EnumeratesAllLocalitiesOfAName)
{
  searcher_.SetProperty("OutputFields", "DPID;State");
  std::multiset<std::string> found;
  for (Answer answer = searcher_.Get("|||Richmond"); answer.text != "|"; answer = searcher_.Next()) {
    ASSERT_EQ(answer.status, 0);
    found.insert(answer.text);
  }
  EXPECT_EQ(found, (std::multiset<std::string>{"30000130|VIC", "30000131|NSW", "30000132|VIC", "30000133|NSW"}));
}

TEST_F(Records, EnumeratesTheWholeDatabaseByState)
{
  searcher_.SetProperty("OutputFields", "DPID");
  std::set<std::string> found;
  for (const char* state : {"NSW", "VIC", "QLD", "ACT", "NT"})
    for (Answer answer = searcher_.Get(std::string("||||") + state); !answer.text.empty(); answer = searcher_.Next())
      EXPECT_TRUE(found.insert(answer.text).second);
  // Norfolk Island, of the other territories, comes with NSW, as it is written on mail.
  EXPECT_EQ(found.size(), arf_test::SmallEngine().Data().PointCount());
}

struct BadQueryRow
{
  const char* query;
  int status;
  int findStatus;
};

TEST_F(Records, RefusedQueries)
{
  const BadQueryRow rows[] = {
      {"|||||||", PAF_AU_ERR_BAD_QUERY, PAF_AU_FIND_NOT_SEARCHED},
      {"|", PAF_AU_ERR_BAD_QUERY, PAF_AU_FIND_NOT_SEARCHED},
      {"|||||||abc", PAF_AU_ERR_BAD_QUERY, PAF_AU_FIND_NOT_SEARCHED},
      {"|||||||-", PAF_AU_ERR_BAD_QUERY, PAF_AU_FIND_NOT_SEARCHED},
      {"|||||||-5", PAF_AU_ERR_UNKNOWN_DPID, PAF_AU_FIND_NOTHING},
      {"|||||||0", PAF_AU_ERR_UNKNOWN_DPID, PAF_AU_FIND_NOTHING},
      {"|||||||99999999", PAF_AU_ERR_UNKNOWN_DPID, PAF_AU_FIND_NOTHING},
      {"|||||||99999999999999999999999999999999999999999999999999999999999999", PAF_AU_ERR_UNKNOWN_DPID,
       PAF_AU_FIND_NOTHING},
      {"||||||||||||||||||||||||||||||||||||||||||||||||||", PAF_AU_ERR_BAD_QUERY, PAF_AU_FIND_NOT_SEARCHED},
      {"|||Nowhere", PAF_AU_ERR_WRONG_LOCALITY, PAF_AU_FIND_NO_LOCALITY},
      {"|||Sydney|VIC", PAF_AU_ERR_WRONG_LOCALITY, PAF_AU_FIND_NO_LOCALITY},
      {"Nowhere", PAF_AU_ERR_WRONG_LOCALITY, PAF_AU_FIND_NO_LOCALITY},
      {"", PAF_AU_ERR_NOT_FOUND, PAF_AU_FIND_NOTHING},
      {"1 George St|||Sydney", PAF_ERR_NOT_IMPLEMENTED, PAF_AU_FIND_NOT_SEARCHED},
  };
  for (const BadQueryRow& row : rows) {
    searcher_.Lookup("1 George St Sydney");
    EXPECT_EQ(searcher_.Get(row.query), (Answer{row.status, ""})) << row.query;
    EXPECT_EQ(searcher_->GetFindStatus(), row.findStatus) << row.query;
    EXPECT_EQ(searcher_.Next(), (Answer{PAF_AU_ERR_NO_ENUMERATION, ""})) << row.query;
  }
  EXPECT_EQ(searcher_.Get("|||" + std::string(5000, 'a')), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
  EXPECT_EQ(searcher_.Get("|||" + std::string(4000, 'a') + "|" + std::string(4000, 'b')),
            (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
  EXPECT_EQ(searcher_.Get(std::string(5000, 'a')), (Answer{PAF_AU_ERR_INPUT_TOO_LONG, ""}));
}

TEST_F(Records, NoEnumerationYet)
{
  EXPECT_EQ(searcher_.Next(), (Answer{PAF_AU_ERR_NO_ENUMERATION, ""}));
}

TEST_F(Records, AFailedQueryEndsTheEnumeration)
{
  EXPECT_EQ(searcher_.Get("Richmond").status, 0);
  EXPECT_EQ(searcher_.Get("Nowhere").status, PAF_AU_ERR_WRONG_LOCALITY);
  EXPECT_EQ(searcher_.Next().status, PAF_AU_ERR_NO_ENUMERATION);
}

TEST_F(Records, LookupsDoNotDisturbTheEnumeration)
{
  searcher_.SetProperty("OutputFields", "DPID");
  EXPECT_EQ(searcher_.Get("Richmond VIC").text, "30000130");
  searcher_.Lookup("1 George St Sydney");
  searcher_.Fix("Melbourne");
  EXPECT_EQ(searcher_.Next().text, "30000132");
}

TEST_F(Records, AnAddressThatDidNotFitIsGivenAgain)
{
  searcher_.SetProperty("OutputFields", "DPID");
  char small[8];
  EXPECT_EQ(searcher_->GetAddress("Richmond VIC", small, sizeof small), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(small, "");
  EXPECT_EQ(searcher_->GetNextAddress(small, sizeof small), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(searcher_.Next().text, "30000130");
  EXPECT_EQ(searcher_.Next().text, "30000132");
}

/** Fields that tell little of an address are written without decoding it; they must tell the same. */
TEST_F(Records, OfAnAreaTellTheSameInOneFieldAsInAll)
{
  const auto column = [this](const std::string& fields) {
    EXPECT_EQ(searcher_.SetProperty("OutputFields", fields).status, 0);
    EXPECT_EQ(searcher_->BeginPolygonSearch("-33,150;-33,152;-35,152;-35,150", ""), 0);
    std::vector<std::string> records;
    char record[4096];
    while (searcher_->GetNextAddressInPolygon(record, sizeof record) == 0 && records.size() < 1000 &&
           std::string(record).find_first_not_of('|') != std::string::npos)
      records.emplace_back(record);
    return records;
  };
  std::string all = "DPID";
  for (int field = 1; field <= PAF_AU_FIELD_COUNT; ++field) all += ";" + std::to_string(field);
  const std::vector<std::string> whole = column(all + ";mesh_block;zone");
  ASSERT_GT(whole.size(), 1U);
  for (int field = 1; field <= PAF_AU_FIELD_COUNT + 2; ++field) {
    const int attribute = field - PAF_AU_FIELD_COUNT;
    const std::string name = attribute == 1 ? "mesh_block" : attribute == 2 ? "zone" : std::to_string(field);
    const std::vector<std::string> one = column("DPID;" + name);
    ASSERT_EQ(one.size(), whole.size()) << name;
    for (std::size_t i = 0; i < one.size(); ++i) {
      std::size_t start = 0;
      for (int skipped = 0; skipped < field; ++skipped) start = whole[i].find('|', start) + 1;
      const std::string expected = whole[i].substr(start, whole[i].find('|', start) - start);
      EXPECT_EQ(one[i], whole[i].substr(0, 8) + "|" + expected) << name;
    }
  }
}

}  // namespace
