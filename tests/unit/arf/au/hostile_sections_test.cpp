// Files whose tables of names hold anything: every operation ends, inside its buffers and with a documented status.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "arf/au/status_text.h"
#include "support/random_seed.h"
#include "unit/arf/au/searcher_fixture.h"
#include "unit/arf/build/test_database.h"
#include "unit/arf/hint/spoilt_file.h"
#include "unit/arf/match/other_names_fixture.h"

namespace {

using arf::layout::SectionId;

constexpr SectionId kTables[] = {SectionId::LocalityNameHash, SectionId::StreetNameHash,  SectionId::StreetAliases,
                                 SectionId::Neighbours,       SectionId::LocalityAliases, SectionId::LocalitySignatures,
                                 SectionId::StreetSignatures};

bool IsDocumented(int status)
{
  return status == 0 || (status != PAF_AU_ERR_INTERNAL && arf::FindStatusText(status) != nullptr);
}

class HostileSections : public testing::TestWithParam<SectionId>
{
 protected:
  HostileSections()
  {
    std::filesystem::create_directory(dir_.Path("spoilt"));
    std::filesystem::copy(arf_test::BuildRegister(dir_) + "/PAF.ver", dir_.Path("spoilt/PAF.ver"));
    whole_ = arf_test::ReadFile(dir_.Path("db/address.arf"));
    whole_.resize((whole_.size() + 7) / 8 * 8);
  }

  /** Everything that a client can ask, of names that there are and names that there are not. */
  void AskAll(arf_test::SpoiltFile& file, int mode)
  {
    file.Save(dir_.Path("spoilt/address.arf"));
    const arf_test::DatabasePointer database(GetDb());
    char error[255] = "";
    ASSERT_EQ(database->Open(dir_.Path("spoilt").c_str(), mode, error, sizeof error), 0) << error;
    arf_test::Searcher searcher(*database);
    ASSERT_EQ(searcher.SetProperty("OutputFields", "DPID;AlternativeLocality;Locality").status, 0);
    for (const char* text : {"12 Main Street, Alderton NSW 2991", "5 Old Rd, Bramley", "12 High St, Alder Town",
                             "7 Green Rd, Alderton", "9 Rivr Rd, Cranfrod", "9 River Rd, The Ford NSW 2993",
                             "Cnr Hihg St & Mill La, Alderton", "1 Main St 2991", "xyzzy", "Alder Town", "12 high al"})
      Ask(*searcher, text);
  }

  static void Ask(IArfSearcher& s, const char* text)
  {
    char out[512] = "", verdict = 0;
    const int size = sizeof out;
    const auto expect = [&](int status) {
      EXPECT_TRUE(IsDocumented(status)) << status << ": " << text;
      s.GetErrorDescription(out, status, size);
    };
    for (const int amas : {0, 1}) {
      expect(s.LookupAddress(text, out, size, amas));
      expect(s.GetParsedInput(out, size));
      expect(s.ValidateFullAddress(text, out, size, amas, &verdict));
    }
    expect(s.ValidatePartialAddress(text, out, size));
    expect(s.FixLastLine(text, out, size));
    expect(s.FormatAddress(text, out, 0, size));
    expect(s.GetPopupHint(text, "", 10, out, size));
    expect(s.GetAddressHint(text, "", out, size));
    expect(s.BeginAddressSearch(text));
    for (int i = 0; i < 5; ++i) expect(s.GetNextAddressSearch(out, size));
    expect(s.GetSearchStatistics("Locality", text, "", "", out, size));
    const int status = s.GetAddress(text, out, size);
    expect(status);
    for (int i = 0; status == 0 && i < 5; ++i) expect(s.GetNextAddress(out, size));
    const auto argument = [](const char* name) { return reinterpret_cast<std::intptr_t>(name); };
    expect(s.BeginGifConcordance(argument("Locality"), argument(text), argument("Postcode"), 0, 0, 0));
    expect(s.GetNextGifConcordance(out, size, out, size, nullptr));
  }

  test_support::TempDir dir_;
  std::vector<std::uint8_t> whole_;
};

TEST_P(HostileSections, AnyBytes)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 50 && !HasFatalFailure(); ++i) {
    arf_test::SpoiltFile file(whole_);
    file.Spoil(GetParam(), random);
    AskAll(file, 2 + i % 2);
  }
}

TEST_P(HostileSections, LessThanTheCountsPromise)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 25 && !HasFatalFailure(); ++i) {
    arf_test::SpoiltFile file(whole_);
    file.Shorten(GetParam(), random);
    AskAll(file, 2 + i % 2);
  }
}

INSTANTIATE_TEST_SUITE_P(Tables, HostileSections, testing::ValuesIn(kTables), [](const auto& test) {
  std::string name(arf::layout::kSectionNames[static_cast<std::size_t>(test.param) - 1]);
  std::erase(name, ' ');
  return name;
});

/** All of them at once. */
TEST_F(HostileSections, AnyBytesEverywhere)
{
  std::mt19937 random(test_support::RandomSeed());
  for (int i = 0; i < 50 && !HasFatalFailure(); ++i) {
    arf_test::SpoiltFile file(whole_);
    for (const SectionId id : kTables) {
      if (random() % 4 == 0) file.Shorten(id, random);
      file.Spoil(id, random);
    }
    AskAll(file, 2);
  }
}

}  // namespace
