// Other ways to say addresses, and the parts of buildings, as the national address file has them.
#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <random>

#include "support/random_seed.h"
#include "unit/arf/build/test_database.h"

namespace {

using arf::BuildOptions;
using arf::BuildOutcome;
using arf::BuildReport;
using arf::Database;
using testing::ElementsAre;

constexpr const char* kHeader =
    "ADDRESS_DETAIL_PID|NUMBER_FIRST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|POSTCODE|ALIAS_PRINCIPAL|PRINCIPAL_"
    "PID|"
    "PRIMARY_SECONDARY|PRIMARY_PID|LATITUDE|LONGITUDE\n";

std::string Row(const std::string& pid, const std::string& number, const std::string& alias = "P",
                const std::string& principal = "", const std::string& primary = "")
{
  return pid + "|" + number + "|QUARTZ|STREET|OPALTON|QLD|4735|" + alias + "|" + principal + "||" + primary +
         "|-23.25|142.5\n";
}

BuildReport Build(const test_support::TempDir& dir, const std::string& rows, bool leaveOutAliases = false)
{
  BuildOptions options;
  options.inputs = {dir.Write("in.psv", kHeader + rows)};
  options.outputDirectory = dir.Path("db");
  options.leaveOutAliases = leaveOutAliases;
  return arf::BuildDatabase(options);
}

std::map<std::string, std::uint64_t> Reasons(const BuildReport& report)
{
  std::map<std::string, std::uint64_t> reasons;
  for (const arf::SkippedRows& skipped : report.skipped) reasons[skipped.reason] = skipped.rows;
  return reasons;
}

std::string Attribute(const Database& database, std::uint32_t ordinal, std::string_view name)
{
  arf::AttributeText text;
  return std::string(database.AttributeOf(ordinal, database.FindAttribute(name).value(), text));
}

/** "1: 12 = 2: 14" for each alias: ordinal and number, then those of the address that it says. */
std::vector<std::string> Aliases(const Database& database)
{
  std::vector<std::string> aliases;
  const auto text = [&](std::uint32_t ordinal) {
    return std::to_string(ordinal) + ": " + std::to_string(database.PointAt(ordinal).numberFirst);
  };
  for (std::uint32_t i = 0; i < database.PointCount(); ++i) {
    if (!database.IsAddressAlias(i)) continue;
    aliases.push_back(text(i));
    aliases.back().append(" = ").append(text(database.PrincipalOf(i)));
  }
  return aliases;
}

TEST(Aliases, BelongToTheirPrincipals)
{
  const test_support::TempDir dir;
  const BuildReport report = Build(dir, Row("GAQLD_5", "50", "A", "GAQLD_9") + Row("GAQLD_9", "9", "P", "GAQLD_9") +
                                            Row("GAQLD_7", "7", "A", "GAQLD_8") + Row("GAQLD_8", "80"));
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(report.rowsSkipped, 0U);
  EXPECT_EQ(report.addresses, 4U);
  EXPECT_EQ(report.aliases, 2U);
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_THAT(Aliases(*database), ElementsAre("0: 7 = 3: 80", "2: 50 = 1: 9"));
  EXPECT_EQ(database->AddressAliasCount(), 2U);
  EXPECT_EQ(database->AddressAliasCount({0, 2}), 1U);
  EXPECT_EQ(database->AddressAliasCount({1, 1}), 0U);
  EXPECT_EQ(database->AddressAliasCount({2, UINT32_MAX}), 1U);
  EXPECT_EQ(database->PrincipalOf(4), arf::kNoIndex);
  EXPECT_EQ(Attribute(*database, 0, "principal_identifier"), "GAQLD_8");
  EXPECT_EQ(Attribute(*database, 1, "principal_identifier"), "") << "its own principal";
  EXPECT_FALSE(database->FindAttribute("primary_identifier"));
}

TEST(Aliases, MustHaveAPrincipalThatIsThere)
{
  const test_support::TempDir dir;
  const BuildReport report =
      Build(dir, Row("GAQLD_1", "1", "A", "GAQLD_2") + Row("GAQLD_2", "2", "A", "GAQLD_3") + Row("GAQLD_3", "3") +
                     Row("GAQLD_4", "4", "A", "GAQLD_40") + Row("GAQLD_5", "5", "ALIAS", "") +
                     Row("GAQLD_6", "6", "A", "GAQLD_6") + Row("GAQLD_7", "7", "A", "ELSEWHERE"));
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(Reasons(report), (std::map<std::string, std::uint64_t>{{"an alias of an address that is not there", 2},
                                                                   {"an alias of an address that is not said", 1},
                                                                   {"an alias of another alias", 2}}));
  EXPECT_EQ(report.aliases, 1U);
  EXPECT_EQ(report.minted.added, 2U);
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_THAT(Aliases(*database), ElementsAre("0: 2 = 1: 3"));
}

TEST(Aliases, AreLeftOutOnRequest)
{
  const test_support::TempDir dir;
  const BuildReport report = Build(dir, Row("GAQLD_1", "1", "A", "GAQLD_2") + Row("GAQLD_2", "2"), true);
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  EXPECT_EQ(Reasons(report), (std::map<std::string, std::uint64_t>{{"an alias of another address", 1}}));
  EXPECT_EQ(report.aliases, 0U);
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_EQ(database->PointCount(), 1U);
  EXPECT_EQ(database->PrincipalOf(0), arf::kNoIndex);
  EXPECT_FALSE(database->FindAttribute("principal_identifier"));
}

TEST(Aliases, OfARepeatedRowAreThoseOfTheFirst)
{
  const test_support::TempDir dir;
  const BuildReport report = Build(dir, Row("GAQLD_2", "2") + Row("GAQLD_1", "1", "A", "GAQLD_2") +
                                            Row("GAQLD_2", "3") + Row("GAQLD_1", "4", "A", "GAQLD_2"));
  ASSERT_EQ(report.outcome, BuildOutcome::Built);
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_THAT(Aliases(*database), ElementsAre("0: 1 = 1: 2"));
}

TEST(Aliases, HaveNoPlaceOfTheirOwn)
{
  const test_support::TempDir dir;
  ASSERT_EQ(Build(dir, Row("GAQLD_1", "1", "A", "GAQLD_2") + Row("GAQLD_2", "2")).outcome, BuildOutcome::Built);
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_EQ(database->Section(arf::layout::SectionId::SpatialTree).U32At(0), 1U);
  EXPECT_EQ(database->PointAt(0).latitude, -23250000);
}

TEST(Aliases, ThatAreBrokenInTheFileReadAsNone)
{
  const test_support::TempDir dir;
  ASSERT_EQ(Build(dir, Row("GAQLD_1", "1", "A", "GAQLD_2") + Row("GAQLD_2", "2")).outcome, BuildOutcome::Built);
  std::vector<std::uint8_t> bytes = arf_test::ReadFile(dir.Path("db/address.arf"));
  const auto intact = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  std::uint64_t offset = 0;
  for (std::uint32_t i = 0; i < intact->SectionCount(); ++i)
    if (intact->SectionAt(i).name == "address aliases") offset = intact->SectionAt(i).offset;
  ASSERT_GT(offset, 0U);
  const arf::layout::SectionId id = arf::layout::SectionId::AddressAliases;
  ASSERT_EQ(intact->Section(id).Size(), 8U);
  // Sections are taken as they are when their checksums were not verified; here the bytes change after opening.
  arf::OpenResult result;
  const auto database = Database::OpenBytes(bytes, "copy", result);
  ASSERT_NE(database, nullptr);
  for (const std::uint32_t principal : {0U, 2U, UINT32_MAX}) {
    std::memcpy(&bytes[offset + 4], &principal, sizeof principal);
    EXPECT_EQ(database->PrincipalOf(0), arf::kNoIndex) << principal;
  }
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 1000; ++i) {
    for (std::uint64_t at = offset; at < offset + 8; ++at) bytes[at] = static_cast<std::uint8_t>(random() % 4 * 85);
    for (const std::uint32_t ordinal : {0U, 1U, 2U, UINT32_MAX}) {
      const std::uint32_t principal = database->PrincipalOf(ordinal);
      EXPECT_TRUE(principal == arf::kNoIndex || (principal < 2 && principal != ordinal));
      EXPECT_LE(database->AddressAliasCount({ordinal, 1}), 1U);
    }
  }
}

TEST(Aliases, OfTheTablesAreJoined)
{
  const test_support::TempDir dir;
  dir.MakeDirectory("gnaf");
  const auto write = [&dir](const std::string& name, const std::string& text) {
    dir.Write("gnaf/QLD_" + name + "_psv.psv", text);
  };
  write("STATE", "STATE_PID|STATE_ABBREVIATION\n3|QLD\n");
  write("LOCALITY", "LOCALITY_PID|LOCALITY_NAME|PRIMARY_POSTCODE|STATE_PID\nL1|OPALTON|4735|3\n");
  write("STREET_LOCALITY",
        "STREET_LOCALITY_PID|STREET_NAME|STREET_TYPE_CODE|STREET_SUFFIX_CODE|LOCALITY_PID\nS1|QUARTZ|STREET||L1\n");
  write("ADDRESS_DETAIL",
        "ADDRESS_DETAIL_PID|DATE_RETIRED|NUMBER_FIRST|STREET_LOCALITY_PID|LOCALITY_PID|ALIAS_PRINCIPAL\n"
        "GAQLD_1||1|S1|L1|P\nGAQLD_2||2|S1|L1|A\nGAQLD_3||3|S1|L1|A\nGAQLD_4||4|S1|L1|A\nGAQLD_5||5|S1|L1|P\n"
        "GAQLD_6|2020-01-01|6|S1|L1|P\nGAQLD_7||7|S1|L1|A\n");
  write("ADDRESS_ALIAS",
        "ADDRESS_ALIAS_PID|DATE_CREATED|DATE_RETIRED|PRINCIPAL_PID|ALIAS_PID|ALIAS_TYPE_CODE\n"
        "1|2020-01-01||GAQLD_1|GAQLD_2|AL\n2|2020-01-01|2021-01-01|GAQLD_1|GAQLD_3|AL\n3|2020-01-01||GAQLD_6|GAQLD_7|"
        "AL\n");
  write("PRIMARY_SECONDARY",
        "PRIMARY_SECONDARY_PID|PRIMARY_PID|SECONDARY_PID|DATE_CREATED|DATE_RETIRED\n"
        "1|GAQLD_1|GAQLD_5|2020-01-01|\n2|GAQLD_5|GAQLD_1|2020-01-01|2020-02-02\n");
  BuildOptions options;
  options.inputs = {dir.Path("gnaf")};
  options.outputDirectory = dir.Path("db");
  const BuildReport report = arf::BuildDatabase(options);
  ASSERT_THAT(report.errors, ElementsAre());
  EXPECT_EQ(Reasons(report), (std::map<std::string, std::uint64_t>{{"an alias of an address that is not there", 1},
                                                                   {"an alias of an address that is not said", 2},
                                                                   {"retired", 1}}));
  const auto database = arf_test::OpenOrFail(dir.Path("db"), arf::OpenMode::Memory);
  EXPECT_THAT(Aliases(*database), ElementsAre("1: 2 = 0: 1"));
  EXPECT_EQ(Attribute(*database, 1, "principal_identifier"), "GAQLD_1");
  EXPECT_EQ(Attribute(*database, 2, "primary_identifier"), "GAQLD_1");
  EXPECT_EQ(Attribute(*database, 0, "primary_identifier"), "");
}

}  // namespace
