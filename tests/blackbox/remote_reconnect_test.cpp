// A connection that breaks takes every instance on the server with it: which calls bring them back, and with what.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

namespace blackbox {
namespace {

using fake::Reply;

/** One instance on "AU.x", memory mode 3, and another that is there to take notice. */
class RemoteReconnect : public RemoteTest
{
 protected:
  void SetUp() override
  {
    RemoteTest::SetUp();
    id = OpenRemote("AU.x", kServerId, 3);
  }

  /** A call that brings its instance back. */
  int Call(int instance)
  {
    char text[16];
    return pafGetNextPopupHintId(instance, text, sizeof text);
  }

  void ExpectReopen(int serverId) { Expect("pafOpenArfId|3|AU.x", "0|" + std::to_string(serverId)); }
  void ExpectCall(int serverId) { Expect("pafGetNextPopupHintId|" + std::to_string(serverId), "0|hint"); }

  /** Sets a property on the server. */
  void Set(const std::string& name, const std::string& value, int serverId = kServerId)
  {
    Expect("pafSetPropertiesId|" + std::to_string(serverId) + "|" + name + "|" + value, "0");
    EXPECT_EQ(pafSetPropertiesId(id, name.c_str(), value.c_str()), 0);
  }

  /** Loses the connection, and expects these settings, "name|value", when the instance comes back. */
  void ExpectReplay(const Lines& settings)
  {
    Break(id);
    Lines expected{"pafOpenArfId|3|AU.x"};
    server.AnswerOthers([](const std::string& request) {
      return Reply::Line(request.rfind("pafOpenArfId", 0) == 0 ? "0\t30" : "0\tx");
    });
    EXPECT_EQ(Call(id), 0);
    for (const std::string& setting : settings) expected.push_back("pafSetPropertiesId|30|" + setting);
    expected.push_back("pafGetNextPopupHintId|30");
    EXPECT_EQ(Sent(), expected);
    server.AnswerOthers(nullptr);
  }

  int id = 0;
};

class ReconnectOf : public RemoteReconnect, public testing::WithParamInterface<RemoteCall>
{
 protected:
  int Run()
  {
    GuardedBuffer buffer(GetParam().input, 64);
    return GetParam().run(id, buffer.data(), buffer.size());
  }

  bool Travels() const { return GetParam().shape != Shape::kNone; }
  int Success() const { return Travels() ? 0 : PAF_ERR_NOT_IMPLEMENTED; }
  void ExpectRequest(int serverId)
  {
    if (Travels()) Expect(GetParam().Request(serverId), "0|x");
  }
};

INSTANTIATE_TEST_SUITE_P(Call, ReconnectOf, testing::ValuesIn(RemoteCalls()), RowName());

TEST_P(ReconnectOf, IsFirstOrNever)
{
  Break(id);
  ASSERT_TRUE(IsSocketBroken());
  if (GetParam().reconnects) {
    ExpectReopen(30);
    ExpectRequest(30);
    EXPECT_EQ(Run(), Success());
    EXPECT_FALSE(IsSocketBroken());
    ExpectRequest(30);
    EXPECT_EQ(Run(), Success()) << "once is enough";
    return;
  }
  const int status = Run();
  if (!Travels()) {
    EXPECT_EQ(status, PAF_ERR_NOT_IMPLEMENTED);
  } else if (std::string(GetParam().name) != "pafGetFindStatusId") {
    EXPECT_EQ(status, 4556);
    EXPECT_EQ(Describe(4556), "ERR_SOC_BROKEN");
  }
  EXPECT_EQ(Sent(), Lines());
  EXPECT_TRUE(IsSocketBroken());
}

TEST_P(ReconnectOf, KeepsAnEnumerationsIdAfterOthersTookNotice)
{
  const int other = OpenRemote("NZ.y", 18);
  Break(other);
  Expect("pafOpenArfId|0|NZ.y", "0|40");
  ExpectCall(40);
  ASSERT_EQ(Call(other), 0);
  if (GetParam().reconnects) ExpectReopen(41);
  ExpectRequest(GetParam().reconnects ? 41 : kServerId);
  EXPECT_EQ(Run(), Success());
}

class ReconnectFirst : public ReconnectOf
{
};

std::vector<RemoteCall> ReconnectingCalls()
{
  std::vector<RemoteCall> calls;
  std::copy_if(RemoteCalls().begin(), RemoteCalls().end(), std::back_inserter(calls),
               [](const RemoteCall& call) { return call.reconnects; });
  return calls;
}

INSTANTIATE_TEST_SUITE_P(Call, ReconnectFirst, testing::ValuesIn(ReconnectingCalls()), RowName());

TEST_P(ReconnectFirst, AFailureIsReturnedAndTheReturnTriedAgain)
{
  Break(id);
  for (int round = 0; round < 2; ++round) {
    Expect("pafOpenArfId|3|AU.x", "6499|words");
    EXPECT_EQ(Run(), 6499);
    EXPECT_EQ(Sent().size(), 1u) << "the call was attempted";
  }
  ExpectReopen(30);
  ExpectRequest(30);
  EXPECT_EQ(Run(), Success());
}

TEST_P(ReconnectOf, WithAServersIdOfMinusOneAfterAFailure)
{
  Break(id);
  Expect("pafOpenArfId|3|AU.x", "6499|words");
  ASSERT_EQ(Call(id), 6499);
  if (GetParam().reconnects) ExpectReopen(30);
  ExpectRequest(GetParam().reconnects ? 30 : -1);
  EXPECT_EQ(Run(), Success());
}

TEST_P(ReconnectFirst, StopsAtAPropertyThatFails)
{
  Set("a", "1");
  Set("b", "2");
  Break(id);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", "12");
  EXPECT_EQ(Run(), 12) << "and the call is not made";
  ExpectRequest(30);
  EXPECT_EQ(Run(), Success()) << "the instance counts as brought back";
}

TEST_F(RemoteReconnect, TakesNoticeForEveryInstance)
{
  const int second = OpenRemote("NZ.y", 18, 1);
  const int third = OpenRemote("", 19, 2);
  Break(second);
  Expect("pafOpenArfId|2|", "0|50");
  ExpectCall(50);
  EXPECT_EQ(Call(third), 0);
  ExpectReopen(51);
  ExpectCall(51);
  EXPECT_EQ(Call(id), 0);
  Expect("pafOpenArfId|1|NZ.y", "0|52");
  ExpectCall(52);
  EXPECT_EQ(Call(second), 0);
  for (const auto& [mine, theirs] : {std::pair{id, 51}, {second, 52}, {third, 50}}) {
    ExpectCall(theirs);
    EXPECT_EQ(Call(mine), 0);
  }
  EXPECT_EQ(server.Connections(), 2);
}

TEST_F(RemoteReconnect, HappensAgainWithEveryBreak)
{
  Set("a", "1");
  for (int serverId = 30; serverId < 33; ++serverId) {
    Break(id);
    ExpectReopen(serverId);
    Expect("pafSetPropertiesId|" + std::to_string(serverId) + "|a|1", "0");
    ExpectCall(serverId);
    EXPECT_EQ(Call(id), 0);
  }
}

TEST_F(RemoteReconnect, ThatBreaksItselfIsTriedAgain)
{
  Set("a", "1");
  Break(id);
  Expect("pafOpenArfId|3|AU.x", TooLong());
  EXPECT_EQ(Call(id), 4555);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", TooLong());
  EXPECT_EQ(Call(id), 4555);
  ExpectReopen(31);
  Expect("pafSetPropertiesId|31|a|1", "0");
  Expect("pafGetNextPopupHintId|31", TooLong());
  EXPECT_EQ(Call(id), 4555);
  ExpectReopen(32);
  Expect("pafSetPropertiesId|32|a|1", "0");
  ExpectCall(32);
  EXPECT_EQ(Call(id), 0);
}

TEST_F(RemoteReconnect, WaitsForAServer)
{
  Set("a", "1");
  Break(id);
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "1"), 0);
  for (int round = 0; round < 3; ++round) EXPECT_EQ(Call(id), 4204);
  EXPECT_FALSE(IsSocketBroken());
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", server.Port().c_str()), 0);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", "0");
  ExpectCall(30);
  EXPECT_EQ(Call(id), 0);
}

TEST_F(RemoteReconnect, GoesToTheServerThatIsSetNow)
{
  fake::ScriptedServer next;
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", next.Port().c_str()), 0);
  ExpectCall(kServerId);
  EXPECT_EQ(Call(id), 0) << "a connection stays until it breaks";
  Break(id);
  next.Expect("pafOpenArfId\t3\tAU.x", Reply::Line("0\t5"));
  next.Expect("pafGetNextPopupHintId\t5", Reply::Line("0\tx"));
  EXPECT_EQ(Call(id), 0);
  EXPECT_EQ(next.StepsLeft(), 0u);
}

TEST_F(RemoteReconnect, IsNotForAnInstanceOpenedAfterwards)
{
  Break(id);
  const int fresh = OpenRemote("NZ.y", 40);
  ExpectCall(40);
  EXPECT_EQ(Call(fresh), 0) << "it was never lost";
  Expect("pafClosePafId|40", "0");
  EXPECT_EQ(pafClosePafId(fresh), 0);
  ExpectReopen(41);
  ExpectCall(41);
  EXPECT_EQ(Call(id), 0) << "the notice reached the other one";
}

TEST_F(RemoteReconnect, LeavesLocalInstancesAlone)
{
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  Fake fake("libfaketwo.so");
  const int here = Open("DLL:FakeTwo;/p");
  Break(id);
  EXPECT_EQ(Call(here), 0);
  EXPECT_EQ(pafSetPropertiesId(here, "a", "b"), 0);
  EXPECT_TRUE(IsSocketBroken()) << "they take no notice";
  ExpectReopen(30);
  ExpectCall(30);
  EXPECT_EQ(Call(id), 0);
  EXPECT_EQ(Call(here), 0);
  EXPECT_EQ(pafClosePafId(here), 0);
}

TEST_F(RemoteReconnect, IsNotForClosing)
{
  const int second = OpenRemote("NZ.y", 18);
  const int third = OpenRemote("UK.z", 19);
  Break(id);
  EXPECT_EQ(pafClosePafId(id), 0) << "before anyone took notice";
  EXPECT_EQ(Sent(), Lines());
  Expect("pafOpenArfId|0|NZ.y", "0|50");
  ExpectCall(50);
  ASSERT_EQ(Call(second), 0);
  Sent();
  EXPECT_EQ(pafClosePafId(third), 0) << "and after it";
  EXPECT_EQ(Sent(), Lines());
  for (const int closed : {id, third}) EXPECT_EQ(pafClosePafId(closed), PAF_ERR_INVALID_ID);
  Expect("pafOpenArfId|0|UK.z", "6499");
  Break(second);
  Expect("pafOpenArfId|0|NZ.y", "6499");
  EXPECT_EQ(pafOpenArfId2(0, "UK.z"), -6499);
  EXPECT_EQ(Call(second), 6499);
  Sent();
  EXPECT_EQ(pafClosePafId(second), 0) << "and after a failed return";
  EXPECT_EQ(Sent(), Lines());
  EXPECT_EQ(pafClosePafId(second), PAF_ERR_INVALID_ID);
}

TEST_F(RemoteReconnect, LeavesTheDatabasesNameToTheInstance)
{
  Break(id);
  EXPECT_EQ(Property(id, "OpenARF"), "AU.x");
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.x;");
  EXPECT_EQ(Sent(), Lines());
  EXPECT_TRUE(IsSocketBroken()) << "nothing was needed from the server";
}

TEST_F(RemoteReconnect, IsNotForRequestsWithoutAnInstance)
{
  Break(id);
  for (int round = 0; round < 2; ++round) {
    for (const int none : {0, -1, 1000}) EXPECT_EQ(Read(none, "anything"), (Answer{4556, ""}));
    char text[32] = "1 High St";
    EXPECT_EQ(pafFormatAddressS(text, 31), 4556);
  }
  EXPECT_EQ(Sent(), Lines());
  AcknowlegeSocketIsBroken();
  Expect("pafGetPropertiesId|0|anything", "0|here");
  EXPECT_EQ(Read(0, "anything"), (Answer{0, "here"}));
}

TEST_F(RemoteReconnect, ReplaysNothingWhereNothingWasSet)
{
  ExpectReplay({});
}

TEST_F(RemoteReconnect, ReplaysInTheOrderOfFirstSetting)
{
  Set("b", "2");
  Set("a", "1");
  Set("c", "");
  Set("b", "3");
  ExpectReplay({"b|3", "a|1", "c|"});
}

struct SettingRow
{
  const char* name;
  Lines set;     // "name|value", in this order
  Lines replay;  // what is set again
};

class Remembering : public RemoteReconnect, public testing::WithParamInterface<SettingRow>
{
};

INSTANTIATE_TEST_SUITE_P(
    Of, Remembering,
    testing::Values(SettingRow{"TheSame", {"a|1", "a|1"}, {"a|1"}},
                    SettingRow{"TheSameValueInAnotherCase", {"a|Yes", "a|YES"}, {"a|Yes"}},
                    SettingRow{"TheSameNameInAnotherCase", {"Name|1", "nAME|2"}, {"nAME|2"}},
                    SettingRow{"NothingNew", {"Name|x", "NAME|X"}, {"Name|x"}},
                    SettingRow{"ALongerName", {"Delim|1", "Delimiter|2"}, {"Delimiter|2"}},
                    SettingRow{"ALongerNameOfTheSameValue", {"Delim|1", "Delimiter|1"}, {"Delim|1"}},
                    SettingRow{"AShorterName", {"Delimiter|1", "Delim|2"}, {"Delimiter|1", "Delim|2"}},
                    SettingRow{"TheFirstThatFits", {"ab|1", "a|2", "abc|3"}, {"abc|3", "a|2"}},
                    SettingRow{"InPlace", {"a|1", "b|2", "c|3", "b|4"}, {"a|1", "b|4", "c|3"}},
                    SettingRow{"BackAgain", {"a|1", "a|2", "a|1"}, {"a|1"}},
                    SettingRow{"AnEmptyValue", {"a|1", "a|"}, {"a|"}},
                    SettingRow{"AValueWithTheSign", {"a|b=c=", "d|=="}, {"a|b=c=", "d|=="}},
                    SettingRow{"AnEmptyNameTakesAll", {"|1", "a|2"}, {"a|2"}},
                    SettingRow{"ANameWithTheSign", {"a=b|c"}, {"a|b=c"}},
                    SettingRow{"BeyondAscii", {"\xc3\xa9|1", "\xc3\x89|2"}, {"\xc3\xa9|1", "\xc3\x89|2"}}),
    RowName());

TEST_P(Remembering, IsOneEntryAName)
{
  for (const std::string& setting : GetParam().set) {
    const size_t bar = setting.find('|');
    Set(setting.substr(0, bar), setting.substr(bar + 1));
  }
  ExpectReplay(GetParam().replay);
}

TEST_F(RemoteReconnect, RemembersOnlyWhatTheServerTook)
{
  Set("a", "1");
  Expect("pafSetPropertiesId|17|a|2", "12");
  EXPECT_EQ(pafSetPropertiesId(id, "a", "2"), 12);
  Expect("pafSetPropertiesId|17|b|2", "6405|words");
  EXPECT_EQ(pafSetPropertiesId(id, "b", "2"), 6405);
  Expect("pafSetGeographicalCodesId|17|LGA", "12");
  EXPECT_EQ(pafSetGeographicalCodesId(id, "LGA"), 12);
  ExpectReplay({"a|1"});
}

TEST_F(RemoteReconnect, ReplaysGeographicalCodesAsAProperty)
{
  Set("a", "1");
  Expect("pafSetGeographicalCodesId|17|LGA", "0");
  EXPECT_EQ(pafSetGeographicalCodesId(id, "LGA"), 0);
  Set("c", "3");
  ExpectReplay({"a|1", "GeographicalCodes|LGA", "c|3"});
  Expect("pafSetGeographicalCodesId|30|SLA", "0");
  EXPECT_EQ(pafSetGeographicalCodesId(id, "SLA"), 0);
  ExpectReplay({"a|1", "GeographicalCodes|SLA", "c|3"});
  Set("geographicalcodes", "CD", 30);
  ExpectReplay({"a|1", "geographicalcodes|CD", "c|3"});
}

TEST_F(RemoteReconnect, ReplaysNullTextsAsEmptyOnes)
{
  Expect("pafSetPropertiesId|17|a|", "0");
  EXPECT_EQ(pafSetPropertiesId(id, "a", nullptr), 0);
  ExpectReplay({"a|"});
}

TEST_F(RemoteReconnect, DoesNotReplayWhatConcernsTheProcess)
{
  EXPECT_EQ(pafSetPropertiesId(id, "UseSockets", "true"), 0);
  EXPECT_EQ(pafSetPropertiesId(id, "TcpHost", "127.0.0.1"), 0);
  EXPECT_EQ(pafSetPropertiesId(id, "OpenARF", "AU.x"), 0);
  EXPECT_EQ(Sent(), Lines());
  ExpectReplay({});
}

TEST_F(RemoteReconnect, KeepsPropertiesThroughFailedReturns)
{
  Set("a", "1");
  Set("b", "2");
  Break(id);
  Expect("pafOpenArfId|3|AU.x", "6499");
  EXPECT_EQ(Call(id), 6499);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", "0");
  Expect("pafSetPropertiesId|30|b|2", "13");
  EXPECT_EQ(Call(id), 13);
  ExpectReplay({"a|1", "b|2"});
}

TEST_F(RemoteReconnect, SetsThePropertyOfTheCallAfterTheOthers)
{
  Set("a", "1");
  Break(id);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", "0");
  Expect("pafSetPropertiesId|30|b|2", "0");
  EXPECT_EQ(pafSetPropertiesId(id, "b", "2"), 0);
  ExpectReplay({"a|1", "b|2"});
}

TEST_F(RemoteReconnect, LeavesPropertiesWithTheirInstance)
{
  Set("a", "1");
  const int second = OpenRemote("NZ.y", 18);
  Expect("pafSetPropertiesId|18|b|2", "0");
  EXPECT_EQ(pafSetPropertiesId(second, "b", "2"), 0);
  Expect("pafClosePafId|18", "0");
  EXPECT_EQ(pafClosePafId(second), 0);
  EXPECT_EQ(OpenRemote("NZ.y", 19), second);
  Break(id);
  Expect("pafOpenArfId|0|NZ.y", "0|40");
  ExpectCall(40);
  EXPECT_EQ(Call(second), 0) << "a closed instance's properties went with it";
  ExpectReplay({"a|1"});
}

TEST_F(RemoteReconnect, IsNoticedByOpeningAndByReadingProperties)
{
  Set("a", "1");
  Break(id);
  ExpectReopen(30);
  Expect("pafSetPropertiesId|30|a|1", "0");
  Expect("pafGetPropertiesId|30|a", "0|1");
  EXPECT_EQ(Property(id, "a"), "1");
  Break(id);
  Expect("pafOpenArfId|0|NZ.y", "6499");
  EXPECT_EQ(pafOpenArfId2(0, "NZ.y"), -6499);
  EXPECT_FALSE(IsSocketBroken()) << "a new instance takes the notice, too";
  ExpectReopen(31);
  Expect("pafSetPropertiesId|31|a|1", "0");
  ExpectCall(31);
  EXPECT_EQ(Call(id), 0);
}

}  // namespace
}  // namespace blackbox
