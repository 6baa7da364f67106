// The C++ wrapper over the fake plug-in: what reaches the plug-in, what comes back, and who closes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.hpp"

namespace blackbox {
namespace {

using qxpaf::Enumeration;
using qxpaf::Result;
using qxpaf::Session;
using testing::ElementsAre;

class CppWrapperTest : public testing::Test
{
 protected:
  Workspace workspace{std::vector<std::string>{}};
  Fake fake{"libfaketwo.so"};
  Session session = Session::Open("DLL:FakeTwo;/wrapper", qxpaf::MemoryMode::Mapped).Value();
};

std::vector<std::string> All(Enumeration&& range)
{
  return {range.begin(), range.end()};
}

TEST_F(CppWrapperTest, OpensInTheGivenMode)
{
  EXPECT_GT(session.Id(), 0);
  EXPECT_TRUE(fake.Last(kFakeDbOpen).arguments.at(1) == 3LL);
}

TEST_F(CppWrapperTest, ClosesItself)
{
  {
    const Session inner = Session::Open("DLL:FakeTwo;/inner").Value();
    EXPECT_EQ(fake->counter(kFakeLiveSearchers), 2);
  }
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
}

TEST_F(CppWrapperTest, MovesWithoutClosing)
{
  static_assert(!std::is_copy_constructible_v<Session>);
  const int id = session.Id();
  Session moved = std::move(session);
  EXPECT_EQ(moved.Id(), id);
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
  Session other = Session::Open("DLL:FakeTwo;/other").Value();
  other = std::move(moved);
  EXPECT_EQ(other.Id(), id);
  EXPECT_EQ(fake->counter(kFakeLiveSearchers), 1);
}

TEST_F(CppWrapperTest, AnswersInvalidIdOnceClosed)
{
  EXPECT_TRUE(session.Close().Ok());
  EXPECT_EQ(session.Close().Code(), PAF_ERR_INVALID_ID);
  const Result<std::string> dpid = session.LookupAddress("1 High St");
  EXPECT_EQ(dpid.Status().Code(), PAF_ERR_INVALID_ID);
  EXPECT_EQ(dpid.Status().Text(), "Invalid Id passed to function");
  EXPECT_EQ(session.FindStatus(), -1);
}

TEST_F(CppWrapperTest, TellsWhyItDidNotOpen)
{
  const Result<Session> failed = Session::Open("no.such.database");
  EXPECT_FALSE(failed);
  EXPECT_EQ(failed.Status().Code(), PAF_ERR_UNKNOWN_COUNTRY);
  EXPECT_EQ(failed.Status().Text(), "ERR_QXARF_UNKNOWN_COUNTRY");
}

TEST_F(CppWrapperTest, ThrowsOnRequestOnly)
{
  fake.Answer(kFakeGetErrorDescription, 0, "the plug-in's words");
  fake.Answer(kFakeLookupAddress, 12);
  Result<std::string> failed = session.LookupAddress("1 High St");
  EXPECT_EQ(failed.Status().Text(), "the plug-in's words");
  EXPECT_EQ(failed.ValueOr("nothing"), "nothing");
  try {
    failed.Value();
    FAIL() << "no exception";
  } catch (const qxpaf::Error& error) {
    EXPECT_STREQ(error.what(), "the plug-in's words");
    EXPECT_EQ(error.Status().Code(), 12);
  }
}

TEST_F(CppWrapperTest, NamesTheCodeWhereThereIsNoText)
{
  EXPECT_STREQ(qxpaf::Error(qxpaf::Status(12345)).what(), "status 12345");
}

TEST_F(CppWrapperTest, LooksUpByEitherRules)
{
  fake.Answer(kFakeLookupAddress, 0, std::string(2047, 'd').c_str());
  EXPECT_EQ(session.LookupAddress("1 High St").Value(), std::string(2047, 'd'));
  EXPECT_TRUE(fake.Last(kFakeLookupAddress).arguments.at(0) == "1 High St");
  EXPECT_TRUE(fake.Last(kFakeLookupAddress).arguments.at(3) == 0LL);
  session.LookupAddress("1 High St", qxpaf::Rules::Amas);
  EXPECT_TRUE(fake.Last(kFakeLookupAddress).arguments.at(3) == 1LL);
}

TEST_F(CppWrapperTest, PassesLongInputWhole)
{
  const std::string address(5000, 'a');
  session.LookupAddress(address);
  EXPECT_TRUE(fake.Last(kFakeLookupAddress).arguments.at(0) == address);
}

TEST_F(CppWrapperTest, AnswersInPlaceFunctionsWhole)
{
  fake.Answer(kFakeFixLastLine, 0, std::string(511, 'l').c_str());
  EXPECT_EQ(session.FixLastLine("sydney").Value(), std::string(511, 'l'));
  fake.Answer(kFakeValidatePartialAddress, 0, "123456789");
  EXPECT_EQ(session.ValidatePartialAddress("1").Value(), "123456789");
}

TEST_F(CppWrapperTest, GivesTheVerdictWithTheAddress)
{
  fake.Answer(kFakeValidateFullAddress, 0, "1 HIGH ST", "", 'G');
  const qxpaf::ValidatedAddress validated = session.ValidateFullAddress("1 high st", 7).Value();
  EXPECT_EQ(validated.address, "1 HIGH ST");
  EXPECT_EQ(validated.verdict, 'G');
  EXPECT_TRUE(fake.Last(kFakeValidateFullAddress).arguments.at(3) == 7LL);
}

TEST_F(CppWrapperTest, AsksAgainWithALargerBuffer)
{
  std::vector<std::string> lines;
  std::string expected;
  for (int i = 1000; i < 1900; ++i) {
    const std::string name = "Database" + std::to_string(i);
    lines.push_back("ARF/" + name + "=/data/" + name);
    expected += (expected.empty() ? "" : ";") + name;
  }
  workspace.Configure(lines);
  EXPECT_EQ(session.Property("ARFs").Value(), expected);
  EXPECT_EQ(qxpaf::Property("ARFs").Value(), expected);
}

TEST_F(CppWrapperTest, GivesUpOnAnAnswerThatNeverFits)
{
  fake.Answer(kFakeFormatAddress, PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(session.FormatAddress("1 High St", 2).Status().Code(), PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_GT(fake.Count(kFakeFormatAddress), 3u);
}

TEST_F(CppWrapperTest, SetsProperties)
{
  EXPECT_TRUE(session.SetProperty("StateFilter", "NSW").Ok());
  EXPECT_TRUE(fake.Last(kFakeSetProperties).arguments.at(0) == "StateFilter");
  EXPECT_TRUE(fake.Last(kFakeSetProperties).arguments.at(1) == "NSW");
  fake.Answer(kFakeSetProperties, 22, "no such state");
  EXPECT_EQ(session.SetProperty("StateFilter", "XX").Text(), "no such state");
}

TEST_F(CppWrapperTest, ChangesTheDatabase)
{
  EXPECT_TRUE(session.ChangeDatabase("DLL:FakeTwo;/elsewhere").Ok());
  EXPECT_EQ(session.Property("OpenARF").Value(), "DLL:FakeTwo;/elsewhere");
}

TEST_F(CppWrapperTest, WalksUntilARecordOfDelimiters)
{
  fake->setProperty("Delimiter", "|", 0);
  fake.Answer(kFakeGetAddress, 0, "1 HIGH ST|SYDNEY");
  fake.Answer(kFakeGetNextAddress, 0, "|||");
  Enumeration addresses = session.Addresses("||||SYDNEY");
  std::vector<std::string> found;
  for (const std::string& record : addresses) found.push_back(record);
  EXPECT_THAT(found, ElementsAre("1 HIGH ST|SYDNEY"));
  EXPECT_TRUE(addresses.Status().Ok());
  EXPECT_TRUE(fake.Last(kFakeGetAddress).arguments.at(0) == "||||SYDNEY");
}

TEST_F(CppWrapperTest, WalksUntilAFailure)
{
  fake.Answer(kFakeGetErrorDescription, 0, "lost");
  fake.Answer(kFakeGetPopupHint, 0, "first");
  fake.Answer(kFakeGetNextPopupHint, 12);
  Enumeration hints = session.PopupHints("a", "b", 3);
  std::vector<std::string> found;
  for (const std::string& hint : hints) found.push_back(hint);
  EXPECT_THAT(found, ElementsAre("first"));
  EXPECT_EQ(hints.Status().Code(), 12);
  EXPECT_EQ(hints.Status().Text(), "lost");
}

TEST_F(CppWrapperTest, IsEmptyWhenTheStartFails)
{
  fake.Answer(kFakeBeginPolygonSearch, 13);
  Enumeration addresses = session.AddressesInPolygon("a", "b");
  EXPECT_EQ(addresses.begin(), addresses.end());
  EXPECT_EQ(addresses.Status().Code(), 13);
  EXPECT_EQ(fake.Count(kFakeGetNextAddressInPolygon), 0u);
}

TEST_F(CppWrapperTest, StartsEveryKindOfEnumeration)
{
  fake.Answer(kFakeGetAddressHint, 0, "hint");
  EXPECT_THAT(All(session.AddressHints("a", "b")), ElementsAre("hint"));
  EXPECT_THAT(All(session.AddressesInPolygon("a", "b")), ElementsAre());
  EXPECT_THAT(All(session.SearchAddresses("high")), ElementsAre());
  for (const FakeOperation operation : {kFakeGetNextAddressHint, kFakeBeginPolygonSearch, kFakeGetNextAddressInPolygon,
                                        kFakeBeginAddressSearch, kFakeGetNextAddressSearch}) {
    EXPECT_EQ(fake.Count(operation), 1u) << fake->operationName(operation);
  }
}

TEST_F(CppWrapperTest, AnswersTheRemainingQuestions)
{
  fake.Answer(kFakeGetAddress, 0, "1 HIGH ST");
  EXPECT_EQ(session.DpidToAddress(12345678).Value(), "1 HIGH ST");
  fake.Answer(kFakeGetParsedInput, 0, "number 1");
  EXPECT_EQ(session.ParsedInput().Value(), "number 1");
  fake.Answer(kFakeGetFindStatus, 5);
  EXPECT_EQ(session.FindStatus(), 5);
  fake.Answer(kFakeGetSearchStatistics, 0, "3");
  EXPECT_EQ(session.SearchStatistics("a", "b", "c", "d").Value(), "3");
  EXPECT_TRUE(session.SetGeographicalCodes("12").Ok());
  EXPECT_TRUE(fake.Last(kFakeSetGeographicalCodes).arguments.at(0) == "12");
}

}  // namespace
}  // namespace blackbox
