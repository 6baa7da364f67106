// Random database names, configuration files and plug-in versions. QXPAF_TEST_SEED repeats a run.
#include <gtest/gtest.h>

#include <random>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "support/random_seed.h"

namespace blackbox {
namespace {

constexpr int kRounds = 10000;

class RobustnessTest : public SessionTest
{
 protected:
  void SetUp() override
  {
    SessionTest::SetUp();
    random.seed(test_support::RandomSeed());
  }

  int Number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

  /** Mostly short, sometimes longer than every buffer of the library. */
  std::string Text()
  {
    const int most = Number(0, 9) == 0 ? 5000 : 40;
    std::string text(static_cast<size_t>(Number(0, most)), '\0');
    for (char& c : text) c = static_cast<char>(Number(1, 255));
    return text;
  }

  std::mt19937 random;
};

TEST_F(RobustnessTest, DatabaseNames)
{
  workspace.Configure({"ARF/=@/*", "ARF/AU=/wild/*", "ArfBaseDir=@", "PafDir=@"});
  Fake au("libqxarfau.so");
  const char* const kBeginnings[] = {"", "AU.", "DLL:", "/", "au./", "DLL:FakeTwo;", "xx.", "NZ."};
  for (int round = 0; round < kRounds; ++round) {
    const std::string name = kBeginnings[Number(0, 7)] + Text();
    int opened = 0;
    const int status = pafOpenArfId(&opened, Number(-1, 5), name.c_str());
    if (status == 0) {
      ASSERT_EQ(pafClosePafId(opened), 0);
    } else {
      ASSERT_GT(status, 0);
      Describe(status, Number(1, 600));
    }
    fake->clearCalls();
    au->clearCalls();
  }
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1) << "the fixture's instance";
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(RobustnessTest, Configurations)
{
  Fake au("libqxarfau.so");
  for (int round = 0; round < kRounds / 10; ++round) {
    std::string contents;
    for (int line = Number(0, 8); line > 0; --line) {
      const char* const kKeys[] = {
          "ARF/AU/", "ARF/", "ArfBaseDir=", "OpenPaf=", "PindleSvr/", "", "ARF/AU=", "PafDir="};
      contents += kKeys[Number(0, 7)] + Text() + (Number(0, 5) == 0 ? "" : "\n");
    }
    workspace.WriteFile(".morvex", contents);
    const std::string name = "AU.name" + std::to_string(round);
    const int status = pafOpenArfId2(0, name.c_str());
    ASSERT_TRUE(status > 0 || status == -PAF_ERR_NOT_CONFIGURED) << status;
    if (status > 0) {
      ASSERT_EQ(pafClosePafId(status), 0);
    }
  }
}

TEST_F(RobustnessTest, Versions)
{
  fake->setCountry("AU");
  const std::string alphabet = "0123456789.5.7.8.x -+";
  for (int round = 0; round < kRounds; ++round) {
    std::string version(static_cast<size_t>(Number(0, 40)), '\0');
    for (char& c : version) c = alphabet[static_cast<size_t>(Number(0, static_cast<int>(alphabet.size()) - 1))];
    fake->setProperty("PafLibVersion", version.c_str(), 0);
    const int level1 = pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6);
    const int level2 = pafBeginAddressSearch(id, "q");
    ASSERT_TRUE(level1 == 0 || level1 == PAF_ERR_NOT_IMPLEMENTED) << version;
    ASSERT_TRUE(level2 == 0 || level2 == PAF_ERR_NOT_IMPLEMENTED) << version;
    ASSERT_FALSE(level2 == 0 && level1 != 0) << "newer than 5.8.278 is newer than 5.7.270: " << version;
    fake->clearCalls();
  }
}

}  // namespace
}  // namespace blackbox
