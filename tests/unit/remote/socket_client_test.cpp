#include "remote/socket_client.h"

#include <chrono>
#include <string>
#include <vector>

#include "socket_client_fixture.h"

namespace {

using namespace socket_client_tests;

TEST_F(Client, ExchangesLines)
{
  const Answer answer = Call(*client, "pafQuestion\t1\ttext");
  EXPECT_EQ(0, answer.status);
  EXPECT_EQ("to pafQuestion\t1\ttext", answer.reply);
  EXPECT_EQ("", answer.errorText);
  EXPECT_EQ("pafQuestion\t1\ttext\n", server.Requests().at(0));
}

TEST_F(Client, TurnsLineFeedsIntoTabsForGoodAndTerminatesTheRequestAgain)
{
  EXPECT_EQ("\ta\t\tb\t", Call(*client, "\na\n\tb\n").request);
  EXPECT_EQ("\ta\t\tb\t\n", server.Requests().at(0));
  EXPECT_EQ("", Call(*client, "").request);
  EXPECT_EQ("\n", server.Requests().at(1));
  EXPECT_EQ("a\rb", Call(*client, "a\rb").request);
  EXPECT_EQ("a\rb\n", server.Requests().at(2));
}

TEST_F(Client, KeepsOneConnection)
{
  for (int i = 0; i < 5; ++i) ExpectWorks();
  EXPECT_EQ(1, server.Connections());
  EXPECT_TRUE(server.Faults().empty());
}

TEST_F(Client, ConnectsToThisMachineWithoutAHost)
{
  SetTcpHost("");
  ExpectWorks();
}

TEST_F(Client, TakesANewAddressWithTheNextConnection)
{
  ExpectWorks();
  fake::ScriptedServer other;
  other.Expect("question", Reply::Line("from the other"));
  SetTcpPort(other.Port().c_str());
  ExpectWorks();
  client->BreakConnection();
  client->AllowReConnect();
  EXPECT_EQ("from the other", Call(*client, "question").reply);
}

struct ReplyRow
{
  std::vector<std::string> pieces;
  const char* reply;
};

TEST_F(Client, TakesRepliesInWhateverPiecesTheyCome)
{
  std::vector<ReplyRow> rows = {
      {{"\n"}, ""},
      {{"\r\n"}, ""},
      {{"0\tabc\r\n"}, "0\tabc"},
      {{"0\ta\r\rc\r\n"}, "0\ta\r\rc"},
      {{"0\ta\nb\n"}, "0\ta\nb"},  // a line feed inside a piece is text
      {{"0", "\t", "a", "b", "c", "\n"}, "0\tabc"},
      {{"0\tab", "c\r\n"}, "0\tabc"},
  };
  const std::string whole = "0\tthe answer\n";
  for (std::size_t at = 1; at < whole.size(); ++at) {
    rows.push_back({{whole.substr(0, at), whole.substr(at)}, "0\tthe answer"});
  }
  for (const ReplyRow& row : rows) {
    server.Expect("question", Reply::Pieces(row.pieces));
    EXPECT_EQ(row.reply, Call(*client, "question").reply) << testing::PrintToString(row.pieces);
  }
  EXPECT_EQ(0u, server.StepsLeft());
}

TEST_F(Client, WaitsForLateReplies)
{
  for (const unsigned long limit : {0ul, 5ul}) {
    SocketClient patient(limit);
    server.Expect("question", Reply::Line("late").After(std::chrono::milliseconds(50)));
    EXPECT_EQ("late", Call(patient, "question").reply);
    patient.BreakConnection();
  }
}

struct SizeRow
{
  int replySize;
  std::size_t length;
  bool fits;
};

TEST_F(Client, RefusesRepliesThatDoNotFit)
{
  for (const auto& [replySize, length, fits] :
       {SizeRow{8, 7, true}, SizeRow{8, 8, false}, SizeRow{8, 100, false}, SizeRow{1, 0, true}, SizeRow{1, 1, false},
        SizeRow{1024, 1023, true}, SizeRow{1024, 1024, false}, SizeRow{1024, 100000, false}}) {
    const std::string line(length, 'x');
    server.Expect("question", Reply::Line(line));
    const Answer answer = Call(*client, "question", replySize);
    EXPECT_EQ(fits ? 0 : 4555, answer.status) << replySize << " " << length;
    EXPECT_EQ(fits ? line : "", answer.reply);
    EXPECT_EQ(fits ? "" : "socket recv buffer too small: (90) Message too long", answer.errorText);
    EXPECT_EQ(!fits, client->IsBroken());
    client->AllowReConnect();
  }
  ExpectWorks();
}

// Connecting

struct Unreachable
{
  const char* name;
  std::string host;
  std::string port;  // empty: one on which nobody listens
  int status;
  std::string words;  // which the failure's text begins with
};

class UnreachableServer : public Client, public testing::WithParamInterface<Unreachable>
{
};

INSTANTIATE_TEST_SUITE_P(
    Addresses, UnreachableServer,
    testing::Values(
        Unreachable{"Refused", "127.0.0.1", "", 4204, "socket connect error to 127.0.0.1 "},
        Unreachable{"RefusedHere", "", "", 4204, "socket connect error to : (111) Connection refused"},
        Unreachable{"Host", std::string(64, 'x'), "1", 4205, "unknown socket host: " + std::string(64, 'x')},
        Unreachable{"Service", "127.0.0.1", "no such service", 4206, "unknown socket service: no such service"}),
    [](const auto& row) { return row.param.name; });

TEST_P(UnreachableServer, FailsWithoutBreakingTheClient)
{
  const SilentPort silent;
  SetTcpHost(GetParam().host.c_str());
  SetTcpPort(GetParam().port.empty() ? std::to_string(silent.Number()).c_str() : GetParam().port.c_str());
  for (int i = 0; i < 3; ++i) {
    const Answer answer = Call(*client, "question\n");
    EXPECT_EQ(GetParam().status, answer.status);
    EXPECT_EQ(GetParam().words, answer.errorText.substr(0, GetParam().words.size()));
    EXPECT_EQ("question\n", answer.request) << "nothing was prepared for sending";
    EXPECT_FALSE(client->IsBroken());
  }
  SetTcpHost("127.0.0.1");
  SetTcpPort(server.Port().c_str());
  ExpectWorks();
}

TEST_P(UnreachableServer, LeavesNoDescriptorsBehind)
{
  const SilentPort silent;
  SetTcpHost(GetParam().host.c_str());
  SetTcpPort(GetParam().port.empty() ? std::to_string(silent.Number()).c_str() : GetParam().port.c_str());
  const auto lowestFree = [] {
    const int descriptor = dup(0);
    close(descriptor);
    return descriptor;
  };
  Call(*client, "question");
  const int after = lowestFree();
  for (int i = 0; i < 10; ++i) Call(*client, "question");
  EXPECT_EQ(after, lowestFree());
}

TEST(TheSocketClient, IsOneForTheProcess)
{
  SocketClient& client = qxpaf::TheSocketClient();
  EXPECT_EQ(&client, &qxpaf::TheSocketClient());
  EXPECT_FALSE(IsSocketBroken());
  client.BreakConnection();
  EXPECT_TRUE(IsSocketBroken());
  AcknowlegeSocketIsBroken();
  EXPECT_FALSE(IsSocketBroken());
  EXPECT_FALSE(client.IsBroken());
}

}  // namespace
