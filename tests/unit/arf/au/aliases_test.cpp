// Other ways to say addresses: what finds them, and what passes over them.
#include <gtest/gtest.h>

#include "unit/arf/au/searcher_fixture.h"

namespace {

using arf_test::Answer;
using arf_test::DatabasePointer;
using arf_test::Searcher;

constexpr const char* kHeader =
    "ADDRESS_DETAIL_PID|FLAT_TYPE|FLAT_NUMBER|NUMBER_FIRST|NUMBER_LAST|STREET_NAME|STREET_TYPE|LOCALITY_NAME|STATE|"
    "POSTCODE|ALIAS_PRINCIPAL|PRINCIPAL_PID|PRIMARY_PID|MB_CODE|LATITUDE|LONGITUDE\n";

std::string Row(const std::string& pid, const std::string& premise, const std::string& street,
                const std::string& principal = "", const std::string& place = "-23.25|142.5")
{
  return pid + "|" + premise + "|" + street + "|STREET|OPALTON|QLD|4735|" + (principal.empty() ? "P" : "A") + "|" +
         principal + "||30000000011|" + place + "\n";
}

/** A corner house that has a number in either street, a block that is two numbers, and one in an alley of other name.
 */
class AddressAliases : public testing::Test
{
 protected:
  AddressAliases()
  {
    const std::string rows = Row("G1", "||1|", "QUARTZ") + Row("G2", "||40|", "RUBY", "G1") +
                             Row("G3", "||3|5", "QUARTZ", "G4") + Row("G4", "||3|", "QUARTZ") +
                             Row("G5", "UNIT|2|7|", "AGATE", "G6") + Row("G6", "UNIT|2|7|", "RUBY") +
                             Row("G7", "||9|", "RUBY") + Row("G8", "||9|", "AMBER", "G7");
    arf::BuildOptions options;
    options.inputs = {dir_.Write("in.psv", kHeader + rows)};
    options.outputDirectory = dir_.Path("db");
    const arf::BuildReport report = arf::BuildDatabase(options);
    EXPECT_EQ(report.outcome, arf::BuildOutcome::Built);
    EXPECT_EQ(report.aliases, 4U);
    database_.reset(GetDb());
    char error[255] = "";
    EXPECT_EQ(database_->Open(dir_.Path("db").c_str(), 2, error, sizeof error), 0) << error;
  }

  /** The identifier of an address, by that of the source. */
  std::string Dpid(Searcher& searcher, const std::string& address)
  {
    const Answer answer = searcher.Lookup(address);
    EXPECT_EQ(answer.status, 0) << address << ": " << searcher.Description(answer.status);
    return answer.text;
  }

  test_support::TempDir dir_;
  DatabasePointer database_;
};

TEST_F(AddressAliases, WithTheNumberOfTheirAddressAreFoundByAllRules)
{
  Searcher searcher(*database_);
  for (const int amas : {0, 1}) {
    EXPECT_EQ(searcher.Lookup("2/7 Agate St, Opalton QLD 4735", amas),
              searcher.Lookup("2/7 Ruby St, Opalton QLD 4735", amas));
    EXPECT_EQ(searcher.Lookup("9 Amber St, Opalton QLD 4735", amas),
              searcher.Lookup("9 Ruby St, Opalton QLD 4735", amas));
  }
  EXPECT_EQ(searcher.Lookup("9 Amber St, Opalton QLD 4735").status, 0);
  EXPECT_EQ(searcher.Property("MatchPenalties"), (Answer{0, "address_alias=2"}));
}

TEST_F(AddressAliases, WithAnotherNumberAreFoundLenientlyOnly)
{
  Searcher searcher(*database_);
  const std::string corner = Dpid(searcher, "1 Quartz St, Opalton QLD 4735");
  EXPECT_EQ(searcher.Lookup("40 Ruby St, Opalton QLD 4735", 0), (Answer{0, corner}));
  EXPECT_EQ(searcher.Property("MatchPenalties"), (Answer{0, "renumbered_alias=4"}));
  EXPECT_EQ(searcher->GetFindStatus(), PAF_AU_FIND_CHANGED);
  EXPECT_EQ(searcher.Lookup("40 Ruby St, Opalton QLD 4735"), (Answer{PAF_AU_ERR_WRONG_NUMBER, ""}));
  EXPECT_NE(searcher.Description(PAF_AU_ERR_WRONG_NUMBER)
                .find("40 RUBY STREET, OPALTON QLD 4735 is another way to write 1 QUARTZ STREET, OPALTON QLD 4735."),
            std::string::npos)
      << searcher.Description(PAF_AU_ERR_WRONG_NUMBER);
  EXPECT_EQ(searcher.Lookup("40 Rubi St, Opalton QLD 4735", 0), (Answer{0, corner}));
}

TEST_F(AddressAliases, AndTheirAddressAreOneAnswer)
{
  Searcher searcher(*database_);
  const std::string three = Dpid(searcher, "3 Quartz St, Opalton QLD 4735");
  EXPECT_EQ(searcher.Lookup("3 Quartz St, Opalton QLD 4735", 0), (Answer{0, three}));
  EXPECT_EQ(searcher.Property("MatchPenalties"), (Answer{0, ""}));
  EXPECT_EQ(searcher.Lookup("3-5 Quartz St, Opalton QLD 4735", 0), (Answer{0, three}));
  EXPECT_EQ(searcher.Lookup("4 Quartz St, Opalton QLD 4735", 0), (Answer{0, three})) << "inside the range";
  EXPECT_EQ(searcher.Lookup("3-5 Quartz St, Opalton QLD 4735").status, PAF_AU_ERR_WRONG_NUMBER);
  EXPECT_EQ(searcher.Lookup("2/7 Agat St, Opalton QLD 4735", 0), searcher.Lookup("2/7 Ruby St, Opalton QLD 4735", 0));
}

TEST_F(AddressAliases, AreHintsWithTheIdentifierOfTheirAddress)
{
  Searcher searcher(*database_);
  const std::string corner = Dpid(searcher, "1 Quartz St, Opalton QLD 4735");
  char hint[255];
  ASSERT_EQ(searcher->GetPopupHint("40 ruby st opalt", "", 1, hint, sizeof hint), 0);
  EXPECT_EQ(hint, "40 RUBY STREET, OPALTON QLD 4735\tA\t1\t" + corner + "\t0");
}

TEST_F(AddressAliases, AreNotAmongTheAddressesOfAPlace)
{
  Searcher searcher(*database_);
  const auto count = [&searcher](Answer answer) {
    int addresses = 0;
    for (; answer.status == 0 && answer.text.find_first_not_of('\t') != std::string::npos; answer = searcher.Next())
      ++addresses;
    return addresses;
  };
  ASSERT_EQ(searcher.SetProperty("OutputFields", "DPID").status, 0);
  EXPECT_EQ(count(searcher.Get("Opalton QLD 4735")), 4);
  EXPECT_EQ(count(searcher.Get(std::string(42, '\t') + "-23.25\t142.5")), 4)
      << searcher.Description(PAF_AU_ERR_NOTHING_NEAR);
}

TEST_F(AddressAliases, AreNotCounted)
{
  Searcher searcher(*database_);
  const auto statistics = [&searcher](const char* in, const char* what) {
    char out[256] = "";
    EXPECT_EQ(searcher->GetSearchStatistics(in, what, "", "", out, sizeof out), 0);
    return std::string(out);
  };
  EXPECT_EQ(statistics("Locality", "Opalton QLD 4735"), "4\t2\t1");
  EXPECT_EQ(statistics("Polygon", "-23.3 142.4;-23.3 142.6;-23.2 142.6;-23.2 142.4"), "4\t2\t1");
  ASSERT_EQ(searcher.SetProperty("StateFilter", "QLD").status, 0);
  EXPECT_EQ(statistics("Locality", "Opalton QLD 4735"), "4\t2\t1");
  const auto text = [](const char* t) { return reinterpret_cast<std::intptr_t>(t); };
  for (const char* to : {"MeshBlock", "Postcode"}) {
    ASSERT_EQ(searcher->BeginGifConcordance(text("Locality"), text(""), text(to), 0, 0, 0), 0);
    char from[64] = "", code[64] = "";
    PafAuConcordance weight{};
    ASSERT_EQ(searcher->GetNextGifConcordance(from, sizeof from, code, sizeof code, &weight), 0);
    EXPECT_EQ(weight.addresses, 4U) << to;
  }
}

TEST_F(AddressAliases, AnswerToTheirOwnIdentifiers)
{
  Searcher searcher(*database_);
  ASSERT_EQ(searcher.SetProperty("OutputFields", "source_identifier;principal_identifier").status, 0);
  arf::OpenResult result;
  const auto data = arf::Database::Open(dir_.Path("db"), arf::OpenMode::Memory, result);
  ASSERT_NE(data, nullptr);
  for (std::uint32_t i = 0; i < data->PointCount(); ++i) {
    const Answer answer = searcher.Get(std::string(7, '\t') + std::to_string(data->DpidOf(i)));
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.text.back() == '\t', !data->IsAddressAlias(i)) << answer;
  }
}

}  // namespace
