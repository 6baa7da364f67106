// The national address file as input: the single file divided by bars, the tables, and the identifiers that are made.
#include <gmock/gmock.h>

#include <cstdlib>
#include <map>
#include <set>

#include "arf/build/identifier_minter.h"
#include "unit/arf/build/test_database.h"

namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;
using arf::Database;
using arf_test::OpenOrFail;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kHeader =
    "NEW_COLUMN|ADDRESS_DETAIL_PID|BUILDING_NAME|ADDRESS_SITE_NAME|FLAT_TYPE|FLAT_NUMBER|number_first|NUMBER_LAST|"
    "STREET_NAME|STREET_TYPE|STREET_SUFFIX|LOCALITY_NAME|STATE|POSTCODE|MB_CODE|ALIAS_PRINCIPAL|GEOCODE_TYPE|LONGITUDE|"
    "LATITUDE\n";

/** A row of the single file: identifier, number, street, locality, postcode; the rest is the same in all. */
std::string Row(const std::string& pid, const std::string& number, const std::string& street = "QUARTZ",
                const std::string& locality = "OPALTON", const std::string& postcode = "4735",
                const std::string& alias = "P")
{
  return "x|" + pid + "|||||" + number + "||" + street + "|STREET||" + locality + "|QLD|" + postcode + "|30000000011|" +
         alias + "|PROPERTY CENTROID|142.5|-23.25\n";
}

BuildReport Build(const test_support::TempDir& dir, std::vector<std::string> inputs, const std::string& output,
                  const std::string& previous = {}, unsigned threads = 2, bool skipBadRows = false)
{
  BuildOptions options;
  options.inputs = std::move(inputs);
  options.outputDirectory = dir.Path(output);
  options.previousDirectory = previous.empty() ? "" : dir.Path(previous);
  options.threads = threads;
  options.skipBadRows = skipBadRows;
  return arf::BuildDatabase(options);
}

/** Identifiers by those of the source. */
std::map<std::string, std::uint32_t> Identifiers(const Database& database)
{
  std::map<std::string, std::uint32_t> identifiers;
  arf::AttributeText text;
  const std::uint32_t column = database.FindAttribute("source_identifier").value();
  for (std::uint32_t i = 0; i < database.PointCount(); ++i) {
    identifiers[std::string(database.AttributeOf(i, column, text))] = database.DpidOf(i);
  }
  return identifiers;
}

std::string Attribute(const Database& database, std::uint32_t ordinal, std::string_view name)
{
  arf::AttributeText text;
  return std::string(database.AttributeOf(ordinal, database.FindAttribute(name).value(), text));
}

/** Everything about each point but its identifier, in stored order. */
std::vector<std::string> Contents(const Database& database)
{
  std::vector<std::string> contents;
  for (std::uint32_t i = 0; i < database.PointCount(); ++i) {
    const arf::Point point = database.PointAt(i);
    const arf::Street street = database.StreetAt(point.street);
    const arf::Locality locality = database.LocalityAt(street.locality);
    std::string line;
    for (const std::string_view part :
         {locality.name, locality.state, locality.postcode, street.name, street.type, street.suffix, point.numberPrefix,
          point.numberFirstSuffix, point.numberLastSuffix, point.unitType, point.unitNumber, point.levelType,
          point.levelNumber, point.lot, point.building}) {
      line.append(part) += '|';
    }
    for (const std::int64_t number : {std::int64_t{point.numberFirst}, std::int64_t{point.numberLast},
                                      std::int64_t{point.latitude}, std::int64_t{point.longitude}}) {
      line += std::to_string(number) + "|";
    }
    contents.push_back(line + Attribute(database, i, "source_identifier") + Attribute(database, i, "mesh_block"));
  }
  return contents;
}

TEST(RegisterFile, ChoosesColumnsByName)
{
  const test_support::TempDir dir;
  const std::string row =
      "new|GAQLD_7||QUARTZ HALL|UNIT|4|B12A|B14|OPAL|ROAD|NORTH|OPALTON|QLD|4735|30000000011||PC|142.5|-23.25\r\n";
  const BuildReport report = Build(dir, {dir.Write("in.psv", kHeader + row)}, "db");
  ASSERT_THAT(report.errors, ElementsAre());
  EXPECT_EQ(report.rowsSkipped, 0U);
  const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  ASSERT_NE(database, nullptr);
  EXPECT_THAT(Contents(*database),
              ElementsAre("OPALTON|QLD|4735|OPAL|ROAD|NORTH|B|A||UNIT|4||||QUARTZ HALL|12|14|-23250000|142500000|"
                          "GAQLD_730000000011"));
  EXPECT_EQ(Attribute(*database, 0, "geocode_reliability"), "PC");
  EXPECT_EQ(database->AttributeCount(), 3U);
  EXPECT_EQ(database->Info("identifiers"), "minted");
}

TEST(RegisterFile, CountsWhatItLeavesOut)
{
  const test_support::TempDir dir;
  const std::string rows =
      Row("GAQLD_1", "1") + Row("GAQLD_2", "2", "QUARTZ", "OPALTON", "4735", "A") +
      Row("GAQLD_3", "3", "QUARTZ", "OPALTON", "") + Row("GAQLD_4", "4", "QUARTZ", "OPALTON", "473") +
      Row("GAQLD_5", "5", "QUARTZ", "OPALTON", "") + Row("", "6") + Row("GAQLD_1", "7") + "too|few\n";
  const BuildReport report = Build(dir, {dir.Write("in.psv", kHeader + rows)}, "db", {}, 2, true);
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.rowsRead, 8U);
  EXPECT_EQ(report.rowsSkipped, 7U);
  EXPECT_EQ(report.addresses, 1U);
  std::map<std::string, std::uint64_t> reasons;
  for (const arf::SkippedRows& skipped : report.skipped) reasons[skipped.reason] = skipped.rows;
  const std::map<std::string, std::uint64_t> expected = {
      {"an alias of an address that is not said", 1},
      {"postcode: is empty", 2},
      {"postcode: is not four digits (a leading zero may be lost)", 1},
      {"source_identifier: is empty", 1},
      {"source_identifier: is already that of another line", 1},
      {"the number of fields is not that of the first row", 1}};
  EXPECT_EQ(reasons, expected);
  EXPECT_THAT(report.skipped.front().example, HasSubstr("in.psv:4: postcode: is empty"));
  EXPECT_EQ(OpenOrFail(dir.Path("db"), arf::OpenMode::Memory)->PointAt(0).numberFirst, 1U);
}

TEST(RegisterFile, IsRefusedWhenMostOfItsRowsCannotBeUsed)
{
  const test_support::TempDir dir;
  const std::string bad = Row("GAQLD_3", "3", "QUARTZ", "OPALTON", "473");
  const std::string good = Row("GAQLD_1", "1") + Row("GAQLD_2", "2", "QUARTZ", "OPALTON", "4735", "A");
  dir.Write("half.psv", kHeader + good + bad + bad);
  dir.Write("most.psv", kHeader + good + bad + bad + bad);
  ASSERT_EQ(Build(dir, {dir.Path("half.psv")}, "db").outcome, BuildOutcome::Built);
  const auto before = arf_test::ReadFile(dir.Path("db/address.arf"));
  const BuildReport report = Build(dir, {dir.Path("half.psv"), dir.Path("most.psv")}, "db");
  EXPECT_EQ(report.outcome, BuildOutcome::Failed);
  EXPECT_THAT(report.errors, ElementsAre(dir.Path("most.psv") + ": 3 of 5 rows cannot be used; the first is line 4: "
                                                                "postcode: \"473\" is not four digits (a leading zero "
                                                                "may be lost)"));
  EXPECT_EQ(arf_test::ReadFile(dir.Path("db/address.arf")), before);
  EXPECT_EQ(Build(dir, {dir.Path("most.psv")}, "db", {}, 2, true).outcome, BuildOutcome::Built);
}

TEST(RegisterFile, TellsInWhichFileADpidIsAlready)
{
  const test_support::TempDir dir;
  const std::string head = "dpid|street_name|locality|state|postcode\n", row = "30000001|A|B|NSW|2000\n";
  const std::string one = dir.Write("one.psv", head + row), two = dir.Write("two.psv", head + row + row);
  EXPECT_THAT(Build(dir, {one, two}, "db").errors,
              ElementsAre(two + ":3: dpid: 30000001 is already that of line 2",
                          two + ":2: dpid: 30000001 is already that of line 2 of " + one));
}

TEST(RegisterFile, IsRefusedWhenItWasCutOff)
{
  const test_support::TempDir dir;
  const std::string rows = kHeader + Row("GAQLD_1", "1") + Row("GAQLD_2", "2");
  const std::string last = Row("GAQLD_3", "3");
  const std::string cut = dir.Write("cut.psv", rows + last.substr(0, 20));
  const BuildReport report = Build(dir, {cut}, "db");
  EXPECT_EQ(report.outcome, BuildOutcome::Failed);
  EXPECT_THAT(report.errors,
              ElementsAre(cut + ":4: the last row has 9 of 19 fields and no line end; the file was cut off"));
  EXPECT_FALSE(std::filesystem::exists(dir.Path("db/address.arf")));
  const BuildReport skipped = Build(dir, {cut}, "db", {}, 2, true);
  EXPECT_EQ(skipped.outcome, BuildOutcome::Built);
  EXPECT_EQ(skipped.addresses, 2U);
  EXPECT_EQ(skipped.rowsSkipped, 1U);
  const std::string open = dir.Write("open.psv", rows + last.substr(0, last.size() - 1));
  EXPECT_EQ(Build(dir, {open}, "db").addresses, 3U) << "the last row is whole, it only lacks its line end";
}

TEST(RegisterFile, KeepsNoStreetOfRowsThatAreLeftOut)
{
  const test_support::TempDir dir;
  const std::string rows = Row("GAQLD_1", "1", "QUARTZ") + Row("GAQLD_1", "2", "AGATE", "AGATEVILLE") +
                           Row("GAQLD_2", "3", "RUBY", "RUBYVALE");
  ASSERT_EQ(Build(dir, {dir.Write("in.psv", kHeader + rows)}, "db").outcome, BuildOutcome::Built);
  const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_EQ(database->LocalityCount(), 2U);
  EXPECT_EQ(database->StreetCount(), 2U);
  EXPECT_EQ(database->StreetAt(1).points.count, 1U);
}

TEST(RegisterFile, IsTheSameFileWhateverTheThreadsAndTheOrderOfInputs)
{
  const test_support::TempDir dir;
  std::string first = kHeader, second = kHeader;
  for (int i = 0; i < 30000; ++i) {
    (i % 3 == 0 ? first : second) += Row("GAQLD_" + std::to_string(700000000 + i * 7), std::to_string(i % 400 + 1),
                                         "STREET " + std::to_string(i / 40 % 100), "TOWN " + std::to_string(i % 23));
  }
  ASSERT_GT(second.size(), std::size_t{1} << 21) << "not more than one block";
  dir.Write("a.psv", first);
  dir.Write("b.psv", second);
  ASSERT_EQ(Build(dir, {dir.Path("a.psv"), dir.Path("b.psv")}, "one", {}, 1).outcome, BuildOutcome::Built);
  ASSERT_EQ(Build(dir, {dir.Path("a.psv"), dir.Path("b.psv")}, "many", {}, 5).outcome, BuildOutcome::Built);
  ASSERT_EQ(Build(dir, {dir.Path("b.psv"), dir.Path("a.psv")}, "other", {}, 2).outcome, BuildOutcome::Built);
  EXPECT_EQ(arf_test::ReadFile(dir.Path("one/address.arf")), arf_test::ReadFile(dir.Path("many/address.arf")));
  const auto one = OpenOrFail(dir.Path("one"), arf::OpenMode::Memory);
  const auto other = OpenOrFail(dir.Path("other"), arf::OpenMode::Memory);
  EXPECT_EQ(one->PointCount(), 30000U);
  EXPECT_EQ(Identifiers(*one), Identifiers(*other));
  EXPECT_EQ(Contents(*one), Contents(*other));
}

TEST(Identifiers, AreHashesInTheirRange)
{
  const test_support::TempDir dir;
  std::string rows;
  for (int i = 0; i < 20000; ++i) rows += Row("GAQLD_" + std::to_string(i + 1), std::to_string(i % 999 + 1));
  ASSERT_EQ(Build(dir, {dir.Write("in.psv", kHeader + rows)}, "db").minted.added, 20000U);
  const auto identifiers = Identifiers(*OpenOrFail(dir.Path("db"), arf::OpenMode::Memory));
  std::set<std::uint32_t> distinct;
  std::size_t atFirstPlace = 0;
  for (const auto& [source, dpid] : identifiers) {
    EXPECT_GE(dpid, 30'000'000U);
    EXPECT_LE(dpid, 99'999'999U);
    distinct.insert(dpid);
    atFirstPlace += dpid == arf::MintedCandidate(source, 0);
  }
  EXPECT_EQ(distinct.size(), 20000U);
  EXPECT_GT(atFirstPlace, 19900U);  // some three collisions are expected
}

TEST(Identifiers, AreKeptFromThePreviousDatabase)
{
  const test_support::TempDir dir;
  dir.Write("old.psv", kHeader + Row("GAQLD_1", "1") + Row("GAQLD_2", "2") + Row("GAQLD_3", "3"));
  dir.Write("new.psv", kHeader + Row("GAQLD_9", "9") + Row("GAQLD_3", "33") + Row("GAQLD_1", "1"));
  ASSERT_EQ(Build(dir, {dir.Path("old.psv")}, "old").outcome, BuildOutcome::Built);
  const BuildReport report = Build(dir, {dir.Path("new.psv")}, "new", "old");
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.minted.kept, 2U);
  EXPECT_EQ(report.minted.added, 1U);
  EXPECT_EQ(report.minted.retired, 1U);
  auto before = Identifiers(*OpenOrFail(dir.Path("old"), arf::OpenMode::Memory));
  auto after = Identifiers(*OpenOrFail(dir.Path("new"), arf::OpenMode::Memory));
  EXPECT_EQ(after["GAQLD_1"], before["GAQLD_1"]);
  EXPECT_EQ(after["GAQLD_3"], before["GAQLD_3"]);
  EXPECT_NE(after["GAQLD_9"], before["GAQLD_2"]);
}

TEST(Identifiers, AreNotKeptFromADatabaseThatHasItsOwn)
{
  const test_support::TempDir dir;
  const std::string csv = dir.Write("own.csv", "dpid,street_name,locality,state,postcode\n30000001,A,B,NSW,2000\n");
  ASSERT_EQ(Build(dir, {csv}, "own").outcome, BuildOutcome::Built);
  const std::string psv = dir.Write("in.psv", kHeader + Row("GAQLD_1", "1"));
  const BuildReport report = Build(dir, {psv}, "db", "own");
  EXPECT_EQ(report.outcome, BuildOutcome::Failed);
  ASSERT_EQ(report.errors.size(), 1U);
  EXPECT_THAT(report.errors[0], HasSubstr("were not made from those of a source"));
  EXPECT_THAT(Build(dir, {csv}, "db", "own").errors, ElementsAre(HasSubstr("there are none to keep")));
}

TEST(Identifiers, OfAnOlderFormatCannotBeKept)
{
  const test_support::TempDir dir;
  const std::string psv = dir.Write("in.psv", kHeader + Row("GAQLD_1", "1"));
  ASSERT_EQ(Build(dir, {psv}, "old").outcome, BuildOutcome::Built);
  std::vector<std::uint8_t> bytes = arf_test::ReadFile(dir.Path("old/address.arf"));
  --bytes[arf::layout::header::kMajor];
  arf_test::WriteFile(dir.Path("old/address.arf"), bytes);
  EXPECT_THAT(Build(dir, {psv}, "db", "old").errors,
              ElementsAre(HasSubstr("; build it again from its source with this program first")));
}

/** Tables of two states, with what the ways of publishing them have in common; a test may change some. */
class RegisterTables : public testing::Test
{
 protected:
  RegisterTables()
  {
    dir_.MakeDirectory("gnaf/Standard");
    dir_.MakeDirectory("gnaf/Authority Code");
    Write("Authority Code/Authority_Code_GEOCODE_TYPE_AUT_psv.psv", "CODE|NAME|DESCRIPTION\nPC|PROPERTY CENTROID|\n");
    Write("Standard/QLD_STATE_psv.psv", "STATE_PID|DATE_RETIRED|STATE_NAME|STATE_ABBREVIATION\n3||QUEENSLAND|QLD\n");
    Write(
        "Standard/QLD_LOCALITY_psv.psv",
        "LOCALITY_PID|DATE_RETIRED|LOCALITY_NAME|PRIMARY_POSTCODE|STATE_PID\nL1||OPALTON|4735|3\nL2||AGATEVILLE||3\n");
    Write("Standard/QLD_STREET_LOCALITY_psv.psv",
          "STREET_LOCALITY_PID|DATE_RETIRED|STREET_NAME|STREET_TYPE_CODE|STREET_SUFFIX_CODE|LOCALITY_PID\n"
          "S1||QUARTZ|STREET|N|L1\nS2||RUBY|ROAD||L2\n");
    Write("Standard/QLD_ADDRESS_DETAIL_psv.psv",
          "address_detail_pid|DATE_RETIRED|BUILDING_NAME|LOT_NUMBER|FLAT_TYPE_CODE|FLAT_NUMBER_PREFIX|FLAT_NUMBER|"
          "NUMBER_FIRST|NUMBER_FIRST_SUFFIX|NUMBER_LAST|STREET_LOCALITY_PID|LOCALITY_PID|ALIAS_PRINCIPAL|POSTCODE|"
          "ADDRESS_SITE_PID\n"
          "GAQLD_1||||UNIT|G|4|12|A|14|S1|L1|P||T1\n"
          "GAQLD_2|2020-01-01||||||13|||S1|L1|P|4735|\n"
          "GAQLD_3||||||| 15|||S1|L1|A|4735|\n"
          "GAQLD_4||||||| 16|||S2|L2|P|4736|\n"
          "GAQLD_5||||||| 17|||S9|L1|P|4735|\n"
          "GAQLD_6||||||| 18|||S2|L2|P||\n");
  }

  void Write(const std::string& name, const std::string& text) { dir_.Write("gnaf/" + name, text); }
  BuildReport BuildTables() { return Build(dir_, {dir_.Path("gnaf")}, "db"); }
  std::unique_ptr<Database> Open() { return OpenOrFail(dir_.Path("db"), arf::OpenMode::Memory); }

  test_support::TempDir dir_;
};

TEST_F(RegisterTables, AreJoined)
{
  Write("Standard/QLD_ADDRESS_SITE_psv.psv", "ADDRESS_SITE_PID|DATE_RETIRED|ADDRESS_SITE_NAME\nT1||QUARTZ HALL\n");
  Write("Standard/QLD_ADDRESS_DEFAULT_GEOCODE_psv.psv",
        "ADDRESS_DETAIL_PID|DATE_RETIRED|GEOCODE_TYPE_CODE|LONGITUDE|LATITUDE\nGAQLD_1||PC|142.5000004|-23.25\n");
  Write("Standard/QLD_MB_2016_psv.psv", "MB_2016_PID|DATE_RETIRED|MB_2016_CODE\nMB161||30000000011\n");
  Write("Standard/QLD_ADDRESS_MESH_BLOCK_2016_psv.psv",
        "ADDRESS_DETAIL_PID|DATE_RETIRED|MB_2016_PID\nGAQLD_1||MB161\nGAQLD_4|2019-01-01|MB161\n");
  const BuildReport report = BuildTables();
  ASSERT_THAT(report.errors, ElementsAre());
  EXPECT_EQ(report.rowsRead, 6U);
  EXPECT_EQ(report.rowsSkipped, 4U);
  EXPECT_THAT(
      Contents(*Open()),
      ElementsAre("AGATEVILLE|QLD|4736|RUBY|ROAD||||||||||" + std::string("|16|0|") +
                      std::to_string(arf::kNoCoordinate) + "|" + std::to_string(arf::kNoCoordinate) + "|GAQLD_4",
                  "OPALTON|QLD|4735|QUARTZ|STREET|NORTH||A||UNIT|G4||||QUARTZ HALL|12|14|-23250000|142500000|"
                  "GAQLD_130000000011"));
  EXPECT_EQ(Attribute(*Open(), 1, "geocode_reliability"), "PROPERTY CENTROID");
}

TEST_F(RegisterTables, GiveReasonsForWhatIsLeftOut)
{
  std::map<std::string, std::uint64_t> reasons;
  for (const arf::SkippedRows& skipped : BuildTables().skipped) reasons[skipped.reason] = skipped.rows;
  EXPECT_EQ(reasons, (std::map<std::string, std::uint64_t>{{"retired", 1},
                                                           {"an alias of an address that is not said", 1},
                                                           {"postcode: is empty", 1},
                                                           {"number_first: is given without street_name", 1}}));
}

TEST_F(RegisterTables, AreRefusedWhenOneWasCutOff)
{
  for (const std::string table : {"ADDRESS_DETAIL", "LOCALITY", "STREET_LOCALITY", "STATE"}) {
    const std::string path = dir_.Path("gnaf/Standard/QLD_" + table + "_psv.psv");
    const std::vector<std::uint8_t> whole = arf_test::ReadFile(path);
    std::vector<std::uint8_t> cut = whole;
    cut.push_back('L');
    cut.push_back('|');
    arf_test::WriteFile(path, cut);
    const BuildReport report = BuildTables();
    EXPECT_EQ(report.outcome, BuildOutcome::Failed) << table;
    EXPECT_THAT(report.errors,
                ElementsAre(testing::AllOf(testing::StartsWith(path + ":"), HasSubstr(": the last row has 2 of "))))
        << table;
    EXPECT_EQ(Build(dir_, {dir_.Path("gnaf")}, "db", {}, 2, true).outcome, BuildOutcome::Built) << table;
    arf_test::WriteFile(path, whole);
  }
}

TEST_F(RegisterTables, TellHowManyFieldsARowHas)
{
  std::vector<std::uint8_t> rows = arf_test::ReadFile(dir_.Path("gnaf/Standard/QLD_ADDRESS_DETAIL_psv.psv"));
  for (const char c : std::string("GAQLD_7|x\n")) rows.push_back(static_cast<std::uint8_t>(c));
  arf_test::WriteFile(dir_.Path("gnaf/Standard/QLD_ADDRESS_DETAIL_psv.psv"), rows);
  std::vector<std::string> examples;
  for (const arf::SkippedRows& skipped : BuildTables().skipped) examples.push_back(skipped.example);
  EXPECT_THAT(examples, testing::Contains(HasSubstr(":8: the row has 2 fields where the first row has 15")));
}

TEST_F(RegisterTables, GiveOtherNamesAndNeighbours)
{
  Write("Standard/QLD_STREET_LOCALITY_ALIAS_psv.psv",
        "STREET_LOCALITY_ALIAS_PID|DATE_RETIRED|STREET_LOCALITY_PID|STREET_NAME|STREET_TYPE_CODE|STREET_SUFFIX_CODE\n"
        "1||S1|Miner's|ROAD|\n2||S9|NOWHERE|ROAD|\n3|2020-02-02|S1|OLD|ROAD|\n");
  Write("Standard/QLD_LOCALITY_ALIAS_psv.psv",
        "LOCALITY_ALIAS_PID|DATE_RETIRED|LOCALITY_PID|NAME\n1||L1|OPAL FIELDS\n2||L9|NOWHERE\n");
  Write("Standard/QLD_LOCALITY_NEIGHBOUR_psv.psv",
        "LOCALITY_NEIGHBOUR_PID|DATE_RETIRED|LOCALITY_PID|NEIGHBOUR_LOCALITY_PID\n1||L2|L1\n");
  ASSERT_EQ(BuildTables().outcome, BuildOutcome::Built);
  const auto database = Open();
  ASSERT_EQ(database->StreetAliasCount(), 1U);
  const arf::IndexRange streets = database->StreetAliasesNamed("MINERS");
  ASSERT_EQ(streets.count, 1U);
  const arf::StreetAliasEntry alias = database->StreetAliasAt(streets.first);
  EXPECT_EQ(alias.name, "MINER'S");
  EXPECT_EQ(alias.type, "ROAD");
  EXPECT_EQ(database->StreetAt(alias.street).name, "QUARTZ");
  EXPECT_EQ(database->StreetAliasesNamed("OLD").count, 0U);
  ASSERT_EQ(database->LocalityAliasesNamed("opal fields").count, 1U);
  EXPECT_EQ(database->LocalityAt(database->LocalityAliasAt(0).locality).name, "OPALTON");
  EXPECT_THAT(database->NeighboursOf(0), ElementsAre(1U));
  EXPECT_THAT(database->NeighboursOf(1), ElementsAre(0U));
  EXPECT_THAT(database->NeighboursOf(2), ElementsAre());
  EXPECT_EQ(database->StreetAliasAt(1).street, arf::kNoIndex);
}

TEST_F(RegisterTables, MustHaveWhatIsNeeded)
{
  std::filesystem::remove(dir_.Path("gnaf/Standard/QLD_LOCALITY_psv.psv"));
  EXPECT_THAT(BuildTables().errors, ElementsAre(HasSubstr("has no QLD_LOCALITY_psv.psv")));
}

TEST(Neighbours, ShareCellsOfAGrid)
{
  const test_support::TempDir dir;
  std::string csv = "dpid,number_first,street_name,locality,state,postcode,latitude,longitude\n";
  auto add = [&csv, dpid = 30000000](const char* locality, const char* latitude) mutable {
    csv += std::to_string(dpid++) + ",1,A," + locality + ",NSW,2000," + latitude + ",150.0010\n";
  };
  add("ALPHA", "-33.0010");
  add("BETA", "-33.0015");   // in a cell with ALPHA
  add("GAMMA", "-33.0180");  // in a cell of the next size with both
  add("DELTA", "-36.0000");  // far away
  ASSERT_EQ(arf_test::BuildFrom(dir, csv).outcome, BuildOutcome::Built);
  const auto database = OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_THAT(database->NeighboursOf(0), ElementsAre(1U, 3U));
  EXPECT_THAT(database->NeighboursOf(1), ElementsAre(0U, 3U));
  EXPECT_THAT(database->NeighboursOf(2), ElementsAre());
  EXPECT_THAT(database->NeighboursOf(3), ElementsAre(0U, 1U));
}

/** Files of a register that someone put into QXPAF_TEST_DATA. */
class RealRegister : public testing::Test
{
 protected:
  void SetUp() override
  {
    const char* given = std::getenv("QXPAF_TEST_DATA");
    if (given == nullptr || *given == '\0') GTEST_SKIP() << "QXPAF_TEST_DATA names no directory with address data";
    data_ = given;
  }

  test_support::TempDir dir_;
  std::string data_;
};

TEST_F(RealRegister, SaysTheSameAsOneFileAndAsTables)
{
  ASSERT_EQ(Build(dir_, {data_ + "/gnaf-ot-core.psv"}, "file").outcome, BuildOutcome::Built);
  ASSERT_EQ(Build(dir_, {data_ + "/gnaf-psv-ot"}, "tables").outcome, BuildOutcome::Built);
  const auto file = OpenOrFail(dir_.Path("file"), arf::OpenMode::Memory);
  const auto tables = OpenOrFail(dir_.Path("tables"), arf::OpenMode::Memory);
  EXPECT_EQ(file->PointCount(), 4134U);
  EXPECT_EQ(Contents(*file), Contents(*tables));
  EXPECT_EQ(Identifiers(*file), Identifiers(*tables));
}

TEST_F(RealRegister, IsTakenWhole)
{
  const BuildReport report = Build(dir_, {data_ + "/gnaf-nt-core.psv", data_ + "/gnaf-ot-core.psv"}, "db");
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.rowsRead, 117388U);
  EXPECT_EQ(report.addresses, 117388U);
  EXPECT_LT(report.fileSize / report.addresses, 40U);
}

}  // namespace
