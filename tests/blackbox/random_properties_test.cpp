// Ten thousand random byte strings as names and values of properties. QXPAF_TEST_SEED repeats a run.
#include <gtest/gtest.h>

#include <random>

#include "blackbox/support/default_database.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "support/random_seed.h"

namespace blackbox {
namespace {

constexpr int kRounds = 10000;

class RandomPropertiesTest : public DefaultDatabaseTest
{
 protected:
  void SetUp() override
  {
    DefaultDatabaseTest::SetUp();
    id = Open("AU.one");
  }

  std::string Text()
  {
    std::string text(random() % (random() % 10 == 0 ? 3000 : 40), '\0');
    for (char& c : text) c = static_cast<char>(random() % 255 + 1);
    return text;
  }

  /** A name of the library with a random end, so that prefixes are met too; never one that changes the mode. */
  std::string Name()
  {
    static const char* const kBeginnings[] = {"",
                                              "",
                                              "PropertyName",
                                              "ArfVersion:",
                                              "ArfStatus:",
                                              "iPindle:",
                                              "iPindle:a\\",
                                              "Barcode:",
                                              "GIFProperty:",
                                              "Properties",
                                              "ARFs"};
    return kBeginnings[random() % std::size(kBeginnings)] + Text();
  }

  size_t Size() { return 1 + random() % 300; }

  std::mt19937 random{test_support::RandomSeed()};
  int id = 0;
};

bool IsAnsweredOrRefused(const Answer& answer)
{
  return answer.status == 0 || (answer.status == PAF_ERR_BUFFER_TOO_SMALL && answer.text.empty());
}

TEST_F(RandomPropertiesTest, AnyNameIsAnsweredOrRefused)
{
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  for (int round = 0; round < kRounds; ++round) {
    const std::string name = Name();
    for (const int any : {id, 0}) ASSERT_TRUE(IsAnsweredOrRefused(Read(any, name, Size()))) << name;
    ASSERT_TRUE(IsAnsweredOrRefused(ReadDefault(name, Size()))) << name;
    au->clearCalls();
  }
}

TEST_F(RandomPropertiesTest, NamesAndValuesArriveAsTheyAre)
{
  for (int round = 0; round < kRounds; ++round) {
    const std::string name = "+" + Name();
    const std::string value = Text();
    const size_t size = Size();
    au.Answer(kFakeGetProperties, 0, value.c_str());
    ASSERT_EQ(Read(id, name, size), (Answer{0, value.substr(0, size - 1)}));
    ASSERT_EQ(au.Last(kFakeGetProperties).arguments.at(0), name);
    ASSERT_EQ(pafSetPropertiesId(id, name.c_str(), value.c_str()), 0);
    ASSERT_EQ(au.Last(kFakeSetProperties).arguments.at(0), name);
    ASSERT_EQ(au.Last(kFakeSetProperties).arguments.at(1), value);
    ASSERT_EQ(Read(0, name, size), (Answer{0, ""}));
    au->clearCalls();
  }
}

TEST_F(RandomPropertiesTest, FormattingInPlaceStaysInItsBuffer)
{
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  for (int round = 0; round < kRounds; ++round) {
    const std::string answer = Text();
    const std::string input = Text();
    const int length = static_cast<int>(std::max(input.size(), Size()));
    au.Answer(kFakeFormatAddress, 0, answer.c_str());
    GuardedBuffer buffer(input, static_cast<size_t>(length) + 1);
    ASSERT_EQ(pafFormatAddressS(buffer.data(), length), 0);
    ASSERT_EQ(buffer.Text(), answer.substr(0, std::min<size_t>(255, static_cast<size_t>(length))));
    ASSERT_EQ(au.Last(kFakeFormatAddress).arguments.at(0), input);
    au->clearCalls();
  }
}

}  // namespace
}  // namespace blackbox
