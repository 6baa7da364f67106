// The version gates of the GIF concordance (level 1) and the free-text address search (level 2).
#include <gtest/gtest.h>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

struct Row
{
  const char* country;
  const char* version;
  bool level1;
  bool level2;
};

class VersionGateTest : public SessionTest, public testing::WithParamInterface<Row>
{
 protected:
  int BeginGif() { return pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6); }
  int NextGif() { return pafGetNextGifConcordance(id, text, sizeof text, text2, sizeof text2, nullptr); }
  int BeginSearch() { return pafBeginAddressSearch(id, "query"); }
  int NextSearch() { return pafGetNextAddressSearch(id, text, sizeof text); }

  char text[16] = "";
  char text2[16] = "";
};

void PrintTo(const Row& row, std::ostream* out)
{
  *out << row.country << " '" << row.version << "'";
}

const Row kRows[] = {
    // Australia and New Zealand: 5.7.270 and 5.8.278, both strictly.
    {"AU", "5.7.269", false, false},
    {"AU", "5.7.270", false, false},
    {"AU", "5.7.271", true, false},
    {"AU", "5.7.270.0", false, false},
    {"AU", "5.7.270.0.0", false, false},
    {"AU", "5.7.270.1", true, false},
    {"AU", "5.7.270.0.1", true, false},
    {"AU", "5.8", true, false},
    {"AU", "5.8.0", true, false},
    {"AU", "5.8.277.99", true, false},
    {"AU", "5.8.278", true, false},
    {"AU", "5.8.278.0", true, false},
    {"AU", "5.8.278.1", true, true},
    {"AU", "5.8.279", true, true},
    {"AU", "5.10", true, true},
    {"AU", "5.10.0", true, true},
    {"AU", "6", true, true},
    {"AU", "10", true, true},
    {"AU", "5", false, false},
    {"AU", "5.7", false, false},
    {"AU", "5.7.27", false, false},
    {"AU", "5.7.1000", true, false},
    {"AU", "4.99.999", false, false},
    {"AU", "0", false, false},
    {"AU", "", false, false},
    {"AU", "version", false, false},
    {"AU", "v6.0", false, false},
    {"AU", "5.7.270a", false, false},
    {"AU", "5.7.270a1", true, false},
    {"AU", "5-7-271", true, false},
    {"AU", "5.8.278 (2)", true, true},
    {"AU", "5..271", false, false},
    {"AU", "05.008.0279", true, true},
    {"AU", "6beta", true, true},
    {"NZ", "5.7.270", false, false},
    {"NZ", "5.7.271", true, false},
    {"NZ", "5.8.278", true, false},
    {"NZ", "5.8.279", true, true},
    // United Kingdom: 5.7.0.11 and 5.10.0.14.
    {"UK", "5.7.0.10", false, false},
    {"UK", "5.7.0.11", false, false},
    {"UK", "5.7.0.12", true, false},
    {"UK", "5.7.0", false, false},
    {"UK", "5.7.1", true, false},
    {"UK", "5.9.9.99", true, false},
    {"UK", "5.10.0.14", true, false},
    {"UK", "5.10.0.14.0", true, false},
    {"UK", "5.10.0.15", true, true},
    {"UK", "5.10.1", true, true},
    {"UK", "", false, false},
    // United States: never, and 5.10.8.
    {"US", "5.10.7", false, false},
    {"US", "5.10.8", false, false},
    {"US", "5.10.8.0", false, false},
    {"US", "5.10.9", false, true},
    {"US", "5.11", false, true},
    {"US", "99.0", false, true},
    {"US", "", false, false},
    // Any other country passes whatever the version.
    {"XX", "", true, true},
    {"XX", "0.0.1", true, true},
    {"INT", "1", true, true},
    {"", "", true, true},
    {"au", "1", true, true},
    {"AUS", "1", true, true},
    {"GB", "1", true, true},
};

INSTANTIATE_TEST_SUITE_P(Rows, VersionGateTest, testing::ValuesIn(kRows));

TEST_P(VersionGateTest, OpensForStrictlyNewerPlugins)
{
  fake->setCountry(GetParam().country);
  fake->setProperty("PafLibVersion", GetParam().version, 0);
  const int level1 = GetParam().level1 ? 0 : PAF_ERR_NOT_IMPLEMENTED;
  const int level2 = GetParam().level2 ? 0 : PAF_ERR_NOT_IMPLEMENTED;
  EXPECT_EQ(BeginGif(), level1);
  EXPECT_EQ(NextGif(), level1);
  EXPECT_EQ(BeginSearch(), level2);
  EXPECT_EQ(NextSearch(), level2);
  EXPECT_EQ(fake.Count(kFakeBeginGifConcordance), GetParam().level1 ? 1u : 0u);
  EXPECT_EQ(fake.Count(kFakeGetNextGifConcordance), GetParam().level1 ? 1u : 0u);
  EXPECT_EQ(fake.Count(kFakeBeginAddressSearch), GetParam().level2 ? 1u : 0u);
  EXPECT_EQ(fake.Count(kFakeGetNextAddressSearch), GetParam().level2 ? 1u : 0u);
}

TEST_P(VersionGateTest, IsClosedWhenThePropertyFailsUnlessTheCountryHasNoGate)
{
  fake->setCountry(GetParam().country);
  fake->setProperty("PafLibVersion", "99.99.99", 12);
  const std::string country = GetParam().country;
  const bool gated = country == "AU" || country == "NZ" || country == "UK" || country == "US";
  EXPECT_EQ(BeginGif(), gated ? PAF_ERR_NOT_IMPLEMENTED : 0);
  EXPECT_EQ(BeginSearch(), gated ? PAF_ERR_NOT_IMPLEMENTED : 0);
}

class OneGateTest : public VersionGateTest
{
};

INSTANTIATE_TEST_SUITE_P(Australia, OneGateTest, testing::Values(Row{"AU", "5.8.279", true, true}));

TEST_P(OneGateTest, AsksForTheVersionWithABufferOf32)
{
  fake->setCountry("AU");
  BeginSearch();
  const Call call = fake.Last(kFakeGetProperties);
  ASSERT_EQ(call.arguments.size(), 3u);
  EXPECT_EQ(call.arguments[0], "PafLibVersion");
  EXPECT_EQ(call.arguments[2], 32);
}

TEST_P(OneGateTest, AClosedGateIsNotRemembered)
{
  fake->setCountry("AU");
  fake.Answer(kFakeGetParsedInput, 12);
  ASSERT_EQ(pafGetParsedInputId(id, text, sizeof text), 12);
  EXPECT_EQ(BeginSearch(), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(Describe(12), "fake text for 12");
  EXPECT_EQ(pafClosePafId(id), 0) << "the instance is idle again";
}

TEST_P(OneGateTest, AnUnknownIdAndASizeComeBeforeTheGate)
{
  fake->setCountry("AU");
  EXPECT_EQ(pafBeginAddressSearch(id + 100, "q"), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafGetNextAddressSearch(id, text, 0), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafGetNextGifConcordance(id, text, 0, text2, 1, nullptr), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafGetNextGifConcordance(id, text, 1, text2, 0, nullptr), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(pafBeginGifConcordance(id + 100, 1, 2, 3, 4, 5, 6), PAF_ERR_INVALID_ID);
}

TEST_P(OneGateTest, IsAskedAgainForEachCall)
{
  fake->setCountry("AU");
  fake->setProperty("PafLibVersion", "5.8.278", 0);
  EXPECT_EQ(BeginSearch(), PAF_ERR_NOT_IMPLEMENTED);
  fake->setProperty("PafLibVersion", "5.8.279", 0);
  EXPECT_EQ(BeginSearch(), 0);
}

TEST_P(OneGateTest, AVersionFillingTheBufferIsReadWithinIt)
{
  fake->setCountry("AU");
  fake.Behave(kFakeGetProperties, kFakeFill);
  EXPECT_EQ(BeginSearch(), PAF_ERR_NOT_IMPLEMENTED);
  fake->setProperty("PafLibVersion", "5.8.278.0000000000000000000000000000000000000001", 0);
  EXPECT_EQ(BeginSearch(), PAF_ERR_NOT_IMPLEMENTED) << "the 1 lies behind the 31 characters that fit";
}

}  // namespace
}  // namespace blackbox
