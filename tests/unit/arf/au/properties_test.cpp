// Properties of searchers and of the plug-in.
#include <gtest/gtest.h>

#include <string>

#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::Searcher;

constexpr const char* kDefaultFields = "AddressLine1;AddressLine2;AddressLine3;Locality;State;Postcode;Country;DPID";
constexpr const char* kNotice =
    "Not certified for address matching. Identifiers are those of the data that the database was built from.";

constexpr const char* kMintedNotice =
    "Not certified for address matching. Identifiers were minted when the database was built: they are no delivery "
    "point identifiers and must not be printed on mail.";

class Properties : public testing::Test
{
 protected:
  arf_test::DatabasePointer database_ = arf_test::OpenSmall();
  Searcher searcher_{*database_};
};

TEST_F(Properties, Values)
{
  struct Row
  {
    const char* name;
    Answer answer;
  };
  const Row rows[] = {
      {"Delimiter", {0, "\t"}},
      {"delimiter", {0, "\t"}},
      {"DELIMITER", {0, "\t"}},
      {"OutputFields", {0, kDefaultFields}},
      {"PafEngineVersion", {0, "1.0.0"}},
      {"PafLibVersion", {0, "5.10.246"}},
      {"PafVersionInfo", {0, "test data 1"}},
      {"Attribution", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"Notice", {0, kNotice}},
      {"Properties",
       {0,
        "Delimiter;OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;Notice;LatLongSearchRange;"
        "StateFilter;AddressFilter;PointsOfInterest;GeographicalCodes;GeographicalCodesFilter;"
        "GifCommonMinimumPercent;MatchPenalties;PenaltyTable"}},
      {"PropertyName1", {0, "Delimiter"}},
      {"propertyname2", {0, "OutputFields"}},
      {"PropertyName5", {0, "PafVersionInfo"}},
      {"PropertyName6", {0, "Notice"}},
      {"PropertyName7", {0, "LatLongSearchRange"}},
      {"PropertyName14", {0, "MatchPenalties"}},
      {"PropertyName16", {0, ""}},
      {"PropertyName0", {0, ""}},
      {"PropertyName-1", {0, ""}},
      {"PropertyNameX", {0, ""}},
      {"PropertyName99999999999", {0, ""}},
      {"PropertyName", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"Delimiter ", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"CountryCode", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"SortPlanDate", {PAF_AU_ERR_NO_SORT_PLAN, ""}},
      {"Barcode", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"BSP", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"GIFProperty:x", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
      {"", {PAF_AU_ERR_UNKNOWN_PROPERTY, ""}},
  };
  for (const Row& row : rows) EXPECT_EQ(searcher_.Property(row.name), row.answer) << row.name;
  char out[16];
  EXPECT_EQ(searcher_->GetProperties(nullptr, out, sizeof out), PAF_AU_ERR_UNKNOWN_PROPERTY);
}

TEST_F(Properties, Delimiter)
{
  for (const std::string value : {"|", ";", ",", " ", "\t", "\x01", "~", "\r"}) {
    EXPECT_EQ(searcher_.SetProperty("DELIMITER", value), (Answer{0, ""}));
    EXPECT_EQ(searcher_.Property("Delimiter").text, value);
  }
  searcher_.SetProperty("Delimiter", "|");
  for (const std::string value : {"", "a", "Z", "0", "9", "-", ".", "\n", "||", "\xE9", "\xC2\xA7"}) {
    EXPECT_EQ(searcher_.SetProperty("Delimiter", value),
              (Answer{PAF_AU_ERR_PROPERTY_VALUE,
                      "The delimiter must be one ASCII character that is no letter, digit, dash, dot or line feed."}));
    EXPECT_EQ(searcher_.Property("Delimiter").text, "|");
  }
  EXPECT_EQ(searcher_->SetProperties("Delimiter", nullptr, nullptr, 0), PAF_AU_ERR_PROPERTY_VALUE);
}

TEST_F(Properties, OutputFields)
{
  struct Row
  {
    const char* value;
    const char* normalised;
  };
  const Row rows[] = {
      {"DPID", "DPID"},
      {" dpid , postcode;;8; ", "DPID;Postcode;DPID"},
      {"27;zone;MESH_BLOCK;MeshBlock", "27;zone;mesh_block;MeshBlock"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(searcher_.SetProperty("OutputFields", row.value), (Answer{0, ""}));
    EXPECT_EQ(searcher_.Property("OutputFields"), (Answer{0, row.normalised}));
  }
  const std::string before = searcher_.Property("OutputFields").text;
  const std::pair<std::string, std::string> refused[] = {
      {"", "Not a list of fields: no field."},
      {";,;", "Not a list of fields: no field."},
      {"DPID;Nonsense;State", "Not a list of fields: Nonsense."},
      {"49", "Not a list of fields: 49."},
  };
  for (const auto& [value, reason] : refused) {
    EXPECT_EQ(searcher_.SetProperty("OutputFields", value), (Answer{PAF_AU_ERR_PROPERTY_VALUE, reason}));
    EXPECT_EQ(searcher_.Property("OutputFields").text, before);
  }
  std::string many;
  for (int i = 0; i < 97; ++i) many += "8;";
  EXPECT_EQ(searcher_.SetProperty("OutputFields", many),
            (Answer{PAF_AU_ERR_PROPERTY_VALUE, "Not a list of fields: too many fields."}));
  EXPECT_EQ(searcher_.SetProperty("OutputFields", many.substr(2)).status, 0);
}

TEST_F(Properties, OthersCannotBeSet)
{
  for (const std::string name : {"PafLibVersion", "PafEngineVersion", "PafVersionInfo", "SortPlanDate", "Notice",
                                 "Properties", "PropertyName1", "Barcode:30000001", "BSP:2000", "ArfStatus:/x"})
    EXPECT_EQ(searcher_.SetProperty(name, "x"),
              (Answer{PAF_AU_ERR_READ_ONLY_PROPERTY, "The property \"" + name + "\" can only be read."}));
  EXPECT_EQ(searcher_.SetProperty("Nonsense", "x"),
            (Answer{PAF_AU_ERR_UNKNOWN_PROPERTY, "There is no property \"Nonsense\"."}));
  EXPECT_EQ(searcher_.Description(PAF_AU_ERR_UNKNOWN_PROPERTY),
            "There is no property \"Nonsense\". Ask for \"Properties\", which lists them.");
}

TEST_F(Properties, ReasonsAreCutToTheirBuffer)
{
  char reason[8] = "#######";
  EXPECT_EQ(searcher_->SetProperties("Nonsense", "x", reason, sizeof reason), PAF_AU_ERR_UNKNOWN_PROPERTY);
  EXPECT_STREQ(reason, "There i");
  EXPECT_EQ(searcher_->SetProperties("Nonsense", "x", nullptr, 0), PAF_AU_ERR_UNKNOWN_PROPERTY);
  EXPECT_EQ(searcher_.SetProperty(std::string(1000, 'n'), "x").status, PAF_AU_ERR_UNKNOWN_PROPERTY);
}

TEST_F(Properties, AreTakenOver)
{
  searcher_.SetProperty("Delimiter", "|");
  searcher_.SetProperty("OutputFields", "DPID;zone");
  const arf_test::DatabasePointer newer = arf_test::OpenSmall();
  Searcher next(*newer);
  next->TakeOverFrom(&*searcher_);
  EXPECT_EQ(next.Property("Delimiter").text, "|");
  EXPECT_EQ(next.Property("OutputFields").text, "DPID;zone");
  next->TakeOverFrom(nullptr);
  EXPECT_EQ(next.Property("Delimiter").text, "|");
}

TEST_F(Properties, FieldsThatTheNewDatabaseLacksAreNotTakenOver)
{
  const test_support::TempDir dir;
  const std::string csv = dir.Write("in.csv",
                                    "dpid,street_name,locality,state,postcode,number_first\n"
                                    "30000001,GEORGE,SYDNEY,NSW,2000,1\n");
  const std::string directory = arf_test::BuildDatabaseFrom(dir, csv);
  const arf_test::DatabasePointer other(GetDb());
  char error[255];
  ASSERT_EQ(other->Open(directory.c_str(), 1, error, sizeof error), 0) << error;
  Searcher next(*other);
  searcher_.SetProperty("Delimiter", "|");
  searcher_.SetProperty("OutputFields", "DPID;zone");
  next->TakeOverFrom(&*searcher_);
  EXPECT_EQ(next.Property("Delimiter").text, "|");
  EXPECT_EQ(next.Property("OutputFields").text, kDefaultFields);
}

TEST(OtherProperties, AnswerWithoutADatabase)
{
  struct Row
  {
    const char* request;
    Answer answer;
  };
  const Row rows[] = {
      {"PafLibVersion", {0, "5.10.246"}},
      {"paflibversion", {0, "5.10.246"}},
      {"PafEngineVersion", {0, "1.0.0"}},
      {"OutputFields", {0, kDefaultFields}},
      {"outputfields", {0, kDefaultFields}},
      {"PafVersionInfo", {0, ""}},
      {"SORTPLANDATE", {0, ""}},
      {"Notice", {0, kNotice}},
      {"Properties",
       {0, "OutputFields;PafEngineVersion;PafLibVersion;PafVersionInfo;SortPlanDate;Notice;PenaltyTable"}},
      {"PropertyName5", {0, "SortPlanDate"}},
      {"Delimiter", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"Attribution", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"BSP:2000", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"NPSP:2000", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"GIFProperty:x", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"3000000159", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"Barcode", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"Nonsense", {PAF_ERR_NOT_IMPLEMENTED, ""}},
      {"", {PAF_ERR_NOT_IMPLEMENTED, ""}},
  };
  for (const Row& row : rows) {
    char out[128] = "#";
    const int status = GetOtherProperties(row.request, out, sizeof out);
    EXPECT_EQ((Answer{status, out}), row.answer) << row.request;
  }
  char small[8] = "#";
  EXPECT_EQ(GetOtherProperties("PafLibVersion", small, sizeof small), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_STREQ(small, "");
  EXPECT_EQ(GetOtherProperties(nullptr, nullptr, 0), PAF_ERR_NOT_IMPLEMENTED);
}

/** Identifiers that the post office gave and those that were made must not be taken for each other. */
TEST(Notice, TellsWhereIdentifiersComeFrom)
{
  constexpr const char* kRows[][2] = {
      {"dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n", kNotice},
      {"source_identifier,street_name,locality,state,postcode\nX1,A,B,NSW,2000\n", kMintedNotice}};
  for (const auto& [csv, notice] : kRows) {
    const test_support::TempDir dir;
    const std::string directory = arf_test::BuildDatabaseFrom(dir, dir.Write("in.csv", csv));
    const arf_test::DatabasePointer database(GetDb());
    char error[255] = "";
    ASSERT_EQ(database->Open(directory.c_str(), 2, error, sizeof error), 0) << error;
    EXPECT_EQ(Searcher(*database).Property("Notice"), (Answer{0, notice}));
  }
}

}  // namespace
