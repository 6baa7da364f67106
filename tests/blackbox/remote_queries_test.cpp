// Functions on an instance that lives on a server: the request that travels, and what becomes of the reply.
#include <gtest/gtest.h>

#include <algorithm>
#include <future>

#include "blackbox/support/exported_functions.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/remote.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

using fake::Reply;

constexpr char kLongText[] = "a text that is longer than the buffers of most callers";

std::vector<RemoteCall> CallsOf(Shape shape)
{
  std::vector<RemoteCall> calls;
  std::copy_if(RemoteCalls().begin(), RemoteCalls().end(), std::back_inserter(calls),
               [shape](const RemoteCall& call) { return call.shape == shape; });
  return calls;
}

class RemoteQuery : public RemoteTest, public testing::WithParamInterface<RemoteCall>
{
 protected:
  void SetUp() override
  {
    RemoteTest::SetUp();
    id = OpenRemote();
  }

  int Call(GuardedBuffer& buffer, int size) { return GetParam().run(id, buffer.data(), size); }
  int Call(GuardedBuffer& buffer) { return Call(buffer, buffer.size()); }
  void ExpectRequest(const std::string& reply) { Expect(GetParam().Request(kServerId), reply); }
  void ExpectRequest(Reply reply) { Expect(GetParam().Request(kServerId), std::move(reply)); }

  int id = 0;
};

class RemoteText : public RemoteQuery
{
};

INSTANTIATE_TEST_SUITE_P(Query, RemoteText, testing::ValuesIn(CallsOf(Shape::kText)), RowName());

TEST_P(RemoteText, IsAskedForAndDelivered)
{
  for (const char* answer : {"12345678", "a|b|c", " 1 High St ", "", kLongText}) {
    ExpectRequest(std::string("0|") + answer);
    GuardedBuffer buffer(GetParam().input, 128);
    EXPECT_EQ(Call(buffer), 0);
    EXPECT_EQ(buffer.Text(), Tabbed(answer));
  }
  EXPECT_EQ(Sent(), Lines(5, GetParam().Request(kServerId)));
}

TEST_P(RemoteText, IsCutToTheBuffer)
{
  const std::string whole = kLongText;
  for (const size_t size : {whole.size() + 2, whole.size() + 1, whole.size(), whole.size() - 1, size_t{20}}) {
    ExpectRequest("0|" + whole);
    GuardedBuffer buffer(GetParam().input, size);
    EXPECT_EQ(Call(buffer, static_cast<int>(size)), 0);
    EXPECT_EQ(buffer.Text(), whole.substr(0, size - 1));
  }
}

TEST_P(RemoteText, IsNotWrittenBehindTheSize)
{
  // The buffer may be longer than the size, where the text that the function finds in it is.
  for (const int size : {1, 2, 5}) {
    ExpectRequest(std::string("0|") + kLongText);
    GuardedBuffer buffer(GetParam().input, 32);
    const std::string before = buffer.Bytes();
    EXPECT_EQ(Call(buffer, size), 0);
    EXPECT_EQ(buffer.Text(), std::string(kLongText, static_cast<size_t>(size) - 1));
    EXPECT_EQ(buffer.Bytes().substr(static_cast<size_t>(size)), before.substr(static_cast<size_t>(size)));
  }
}

TEST_P(RemoteText, OfASizeBelowOneIsNotWritten)
{
  for (const int size : {0, -1, INT_MIN}) {
    const bool refused = GetParam().checksSize;
    if (!refused) ExpectRequest("0|text");
    GuardedBuffer buffer(GetParam().input, 32);
    const std::string before = buffer.Bytes();
    EXPECT_EQ(Call(buffer, size), refused ? PAF_ERR_BUFFER_TOO_SMALL : 0);
    EXPECT_EQ(buffer.Bytes(), before);
    EXPECT_EQ(Sent(), refused ? Lines() : Lines{GetParam().Request(kServerId)});
  }
}

TEST_P(RemoteText, OfTheLongestReplyArrives)
{
  const std::string longest(1021, 'x');
  ExpectRequest("0|" + longest);
  GuardedBuffer buffer(GetParam().input, 2048);
  EXPECT_EQ(Call(buffer), 0);
  EXPECT_EQ(buffer.Text(), longest);
}

TEST_P(RemoteText, OfAReplyTooLongBreaksTheConnection)
{
  ExpectRequest(Reply::Line("0\t" + std::string(1022, 'x')));
  GuardedBuffer buffer(GetParam().input, 2048);
  const std::string before = buffer.Text();
  EXPECT_EQ(Call(buffer), 4555);
  EXPECT_EQ(buffer.Text(), GetParam().empties ? "" : before);
  EXPECT_EQ(Describe(4555), "ERR_SOC_RESPONSE_TOO_LONG. socket recv buffer too small: (90) Message too long");
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST_P(RemoteText, OfAFailureIsEmpty)
{
  for (const char* reply : {"6405|a message of the server", "6405|", "6405"}) {
    ExpectRequest(reply);
    GuardedBuffer buffer(GetParam().input, 128);
    EXPECT_EQ(Call(buffer), 6405) << reply;
    EXPECT_EQ(buffer.Text(), "") << reply;
    EXPECT_EQ(Describe(6405), "Invalid Id passed to function") << "the server's words were recorded";
  }
}

TEST_P(RemoteText, OfAServersOwnFailureIsDescribedByTheServer)
{
  ExpectRequest("-12|a message of the server");
  GuardedBuffer buffer(GetParam().input, 128);
  EXPECT_EQ(Call(buffer), -12);
  Expect("pafGetErrorDescription|-12", "0|the database is tired");
  EXPECT_EQ(Describe(-12), "the database is tired");
}

TEST_P(RemoteText, MayBeMissing)
{
  for (const char* reply : {"0", "0|", ""}) {
    ExpectRequest(reply);
    GuardedBuffer buffer(GetParam().input, 32);
    EXPECT_EQ(Call(buffer), 0);
    EXPECT_EQ(buffer.Text(), "");
  }
}

TEST_P(RemoteText, LosesACarriageReturnAtItsEndOnly)
{
  ExpectRequest(Reply::Raw("0\ta\rb\r\n"));
  GuardedBuffer buffer(GetParam().input, 32);
  EXPECT_EQ(Call(buffer), 0);
  EXPECT_EQ(buffer.Text(), "a\rb");
}

TEST_P(RemoteText, StaysWhenTheRequestCannotBeSent)
{
  Expect("pafGetParsedInputId|17", Reply::Close());
  char text[8];
  ASSERT_EQ(pafGetParsedInputId(id, text, sizeof text), 0) << "the end of the connection is an empty reply";
  Sent();
  GuardedBuffer buffer(GetParam().input, 128);
  const std::string before = buffer.Text();
  EXPECT_EQ(Call(buffer), 4551);
  EXPECT_EQ(buffer.Text(), GetParam().empties ? "" : before);
  EXPECT_EQ(Describe(4551), "ERR_SOC_SEND. socket send error: (32) Broken pipe");
  EXPECT_EQ(Describe(4551), "ERR_SOC_SEND") << "told once";
  EXPECT_EQ(Sent(), Lines());
}

TEST_P(RemoteText, IsEmptyWhenTheConnectionEnds)
{
  ExpectRequest(Reply::Reset());
  GuardedBuffer buffer(GetParam().input, 128);
  EXPECT_EQ(Call(buffer), 0);
  EXPECT_EQ(buffer.Text(), "");
}

class RemoteNumber : public RemoteQuery
{
};

INSTANTIATE_TEST_SUITE_P(Query, RemoteNumber, testing::ValuesIn(CallsOf(Shape::kNumber)), RowName());

TEST_P(RemoteNumber, IsTheResult)
{
  const std::pair<const char*, int> kReplies[] = {{"0", 0},
                                                  {"1", 1},
                                                  {"6412", 6412},
                                                  {"-1", -1},
                                                  {" 12", 12},
                                                  {"12|text", 12},
                                                  {"12x", 12},
                                                  {"", 0},
                                                  {"12\r", 12},
                                                  {"x", 0},
                                                  {"+3", 3},
                                                  {"2147483647", INT_MAX},
                                                  {"-2147483648", INT_MIN}};
  for (const auto& [reply, result] : kReplies) {
    ExpectRequest(reply);
    GuardedBuffer buffer(16);
    EXPECT_EQ(Call(buffer), result) << reply;
    EXPECT_TRUE(buffer.IsUntouched()) << reply;
  }
  EXPECT_EQ(Sent(), Lines(std::size(kReplies), GetParam().Request(kServerId)));
}

TEST_P(RemoteNumber, OfTheServerIsNotRecorded)
{
  for (const int status : {6405, 6499, 4207}) {
    ExpectRequest(std::to_string(status));
    GuardedBuffer buffer(16);
    EXPECT_EQ(Call(buffer), status);
    EXPECT_EQ(Describe(status), Describe(status)) << "a second time nothing recorded can be told";
  }
}

class RemoteNothing : public RemoteQuery
{
};

INSTANTIATE_TEST_SUITE_P(Query, RemoteNothing, testing::ValuesIn(CallsOf(Shape::kNone)), RowName());

TEST_P(RemoteNothing, IsAskedFromTheServer)
{
  GuardedBuffer buffer(32);
  EXPECT_EQ(Call(buffer), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_TRUE(buffer.IsUntouched());
  for (const int size : {0, -1}) {
    EXPECT_EQ(Call(buffer, size), GetParam().checksSize ? PAF_ERR_BUFFER_TOO_SMALL : PAF_ERR_NOT_IMPLEMENTED);
  }
  EXPECT_EQ(Sent(), Lines());
}

class RemoteAny : public RemoteQuery
{
};

INSTANTIATE_TEST_SUITE_P(Query, RemoteAny, testing::ValuesIn(RemoteCalls()), RowName());

TEST_P(RemoteAny, IsOneCallAtATime)
{
  std::promise<void> reached;
  std::promise<void> goOn;
  server.AnswerOthers([&, once = goOn.get_future().share()](const std::string&) {
    reached.set_value();
    once.wait();
    return Reply::Line("0\tlate");
  });
  auto waiting = std::async(std::launch::async, [this] {
    char text[8];
    return pafGetParsedInputId(id, text, sizeof text);
  });
  reached.get_future().wait();
  Sent();
  GuardedBuffer buffer(GetParam().input, 32);
  const bool findStatus = std::string(GetParam().name) == "pafGetFindStatusId";
  if (std::string(GetParam().name) != "pafGetPropertiesId") {
    EXPECT_EQ(Call(buffer), findStatus ? -1 : PAF_ERR_ID_IN_USE);
  }
  EXPECT_EQ(pafClosePafId(id), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(Sent(), Lines());
  goOn.set_value();
  EXPECT_EQ(waiting.get(), 0);
}

TEST_P(RemoteAny, NeedsAnInstance)
{
  Expect("pafClosePafId|17", "0");
  ASSERT_EQ(pafClosePafId(id), 0);
  Sent();
  GuardedBuffer buffer(GetParam().input, 32);
  const std::string name = GetParam().name;
  if (name == "pafGetPropertiesId") {
    Expect("pafGetPropertiesId|0|Some;Name", "0|of the server itself");
    EXPECT_EQ(Call(buffer), 0);
    EXPECT_EQ(buffer.Text(), "of the server itself");
    return;
  }
  EXPECT_EQ(Call(buffer), name == "pafGetFindStatusId" ? -1 : PAF_ERR_INVALID_ID);
  EXPECT_EQ(Sent(), Lines());
}

TEST_P(RemoteAny, LeavesALocalModeAlone)
{
  // The instance is the server's, whatever the mode is now.
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  const bool travels = GetParam().shape != Shape::kNone;
  if (travels) ExpectRequest("0|");
  GuardedBuffer buffer(GetParam().input, 32);
  EXPECT_EQ(Call(buffer), travels ? 0 : PAF_ERR_NOT_IMPLEMENTED);
}

class RemoteQueries : public RemoteTest
{
 protected:
  void SetUp() override
  {
    RemoteTest::SetUp();
    id = OpenRemote();
  }

  int id = 0;
};

TEST_F(RemoteQueries, FunctionsWithoutWorkStayHere)
{
  for (const ExportedFunction& function : ExportedFunctions()) {
    const bool workless =
        function.on == On::kNothing && function.run != nullptr && function.operation == kFakeOperationCount;
    if (!workless || function.output == Output::kOwn) continue;
    for (const int any : {id, 0, 1000}) {
      GuardedBuffer buffer(32);
      EXPECT_EQ(function.run(any, "in", buffer.data(), buffer.size()), function.refusals.noInstance) << function.name;
      EXPECT_TRUE(buffer.IsUntouched()) << function.name;
    }
  }
  EXPECT_EQ(Sent(), Lines());
}

struct FlagRow
{
  const char* reply;
  int status;
  char flag;
};

TEST_F(RemoteQueries, TheResultFlagIsTheFirstCharacterOfTheServersMessage)
{
  for (const FlagRow& row : {FlagRow{"0|text", 0, '\0'}, FlagRow{"0", 0, '\0'}, FlagRow{"12|Q", 12, 'Q'},
                             FlagRow{"12|Quite long", 12, 'Q'}, FlagRow{"12|", 12, '\0'}, FlagRow{"12", 12, '\0'}}) {
    for (const bool wanted : {true, false}) {
      Expect("pafValidateFullAddressId|17|-2|a", row.reply);
      GuardedBuffer text(32);
      GuardedBuffer flag(1);
      EXPECT_EQ(pafValidateFullAddressId(id, "a", text.data(), 32, -2, wanted ? flag.data() : nullptr), row.status);
      EXPECT_EQ(text.Text(), row.status == 0 && row.reply[1] == '|' ? "text" : "") << row.reply;
      EXPECT_EQ(*flag.data(), wanted ? row.flag : GuardedBuffer::kFill) << row.reply;
    }
  }
  Expect("pafValidateFullAddressId|17|-2|a", TooLong());
  GuardedBuffer text(32);
  GuardedBuffer flag(1);
  EXPECT_EQ(pafValidateFullAddressId(id, "a", text.data(), 32, -2, flag.data()), 4555);
  EXPECT_TRUE(text.IsUntouched());
  EXPECT_EQ(*flag.data(), '\0');
}

TEST_F(RemoteQueries, RequestsAreCutAt255Characters)
{
  const std::string query(300, 'q');
  for (const size_t length : {254u, 255u, 256u, 300u}) {
    const std::string head = "pafGetAddressId|17|";
    const std::string text = query.substr(0, length - head.size());
    Expect((head + text).substr(0, 255), "0|x");
    GuardedBuffer out(8);
    EXPECT_EQ(pafGetAddressId(id, text.c_str(), out.data(), 8), 0);
    EXPECT_EQ(out.Text(), "x");
  }
}

TEST_F(RemoteQueries, AnInPlaceTextOfAnyLengthIsCutInTheRequestOnly)
{
  const std::string address(600, 'a');
  Expect(("pafGetDpidId|17|" + address).substr(0, 255), TooLong());
  GuardedBuffer text(address, 601);
  EXPECT_EQ(pafGetDpidId(id, text.data(), 601), 4555);
  EXPECT_EQ(text.Text(), address);
}

TEST_F(RemoteQueries, PolygonsAndStatisticsAreNeverCut)
{
  const std::string shape(4000, 's');
  Expect("pafBeginPolygonSearch|17|1|2|" + shape, "0");
  EXPECT_EQ(pafBeginPolygonSearch(id, shape.c_str(), "1,2"), 0);
  Expect("pafGetSearchStatistics|17|" + shape + "|b||" + shape, "0|n");
  GuardedBuffer out(8);
  EXPECT_EQ(pafGetSearchStatistics(id, shape.c_str(), "b", "", shape.c_str(), out.data(), 8), 0);
  EXPECT_EQ(out.Text(), "n");
}

TEST_F(RemoteQueries, APolygonsSecondTextIsTwoNumbers)
{
  const std::pair<const char*, const char*> kRows[] = {
      {"1.5;-2", "1.5|-2"}, {"1 2", "1|2"}, {"x", "|"},    {"", "|"},          {nullptr, "|"},
      {"7", "7|"},          {"7,", "7|"},   {"7,x", "7|"}, {"1e3/0x", "1e3|0"}};
  for (const auto& [text, fields] : kRows) {
    Expect("pafBeginPolygonSearch|17|" + std::string(fields) + "|a", "3");
    EXPECT_EQ(pafBeginPolygonSearch(id, "a", text), 3) << fields;
  }
}

TEST_F(RemoteQueries, TheFirstTextOfAHintHasNoTabs)
{
  const std::string longText = std::string(100, 'a') + "\t" + std::string(100, 'b');
  const std::string sent = (std::string(100, 'a') + " " + std::string(100, 'b')).substr(0, 127);
  GuardedBuffer out(8);
  Expect("pafGetPopupHintId|17|a b |c|d|1", "0|x");
  EXPECT_EQ(pafGetPopupHintId(id, "a\tb\t", "c\td", 1, out.data(), 8), 0);
  Expect("pafGetAddressHintId|17|a b |c|d", "0|x");
  EXPECT_EQ(pafGetAddressHintId(id, "a\tb\t", "c\td", out.data(), 8), 0);
  Expect("pafGetPopupHintId|17|" + sent + "|c|1", "0|x");
  EXPECT_EQ(pafGetPopupHintId(id, longText.c_str(), "c", 1, out.data(), 8), 0);
}

TEST_F(RemoteQueries, TheExtremesOfNumbersTravelWhole)
{
  GuardedBuffer out(8);
  Expect("pafGetPopupHintId|17|||-2147483648", "0|x");
  EXPECT_EQ(pafGetPopupHintId(id, "", "", INT_MIN, out.data(), 8), 0);
  Expect("pafDpidToAddressId|17|-9223372036854775808", "0|x");
  EXPECT_EQ(pafDpidToAddressId(id, LONG_MIN, out.data(), 8), 0);
  Expect("pafFormatAddressId|17|9223372036854775807|a", "0|x");
  EXPECT_EQ(pafFormatAddressId(id, "a", out.data(), LONG_MAX, 8), 0);
}

TEST_F(RemoteQueries, EachInstanceIsAskedUnderItsOwnId)
{
  const int second = OpenRemote("NZ.y", 4);
  const int third = OpenRemote("UK.z", 900);
  for (const auto& [mine, theirs] : {std::pair{third, "900"}, {id, "17"}, {second, "4"}}) {
    Expect(std::string("pafGetNextAddressId|") + theirs, std::string("0|") + theirs);
    GuardedBuffer out(8);
    EXPECT_EQ(pafGetNextAddressId(mine, out.data(), 8), 0);
    EXPECT_EQ(out.Text(), theirs);
  }
  EXPECT_EQ(server.Connections(), 1) << "all share one";
}

TEST_F(RemoteQueries, NullCodesAreTakenAsNone)
{
  Expect("pafSetGeographicalCodesId|17|", "0");
  EXPECT_EQ(pafSetGeographicalCodesId(id, nullptr), 0);
}

}  // namespace
}  // namespace blackbox
