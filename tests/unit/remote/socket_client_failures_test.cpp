/** What a client makes of exchanges that fail. */
#include <fcntl.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <string>

#include "socket_client_fixture.h"

namespace {

using namespace socket_client_tests;

TEST_F(Client, SendsNothingWhileItIsBroken)
{
  server.Expect("question", Reply::Line(std::string(2000, 'x')));
  EXPECT_EQ(4555, Call(*client, "question").status);
  EXPECT_TRUE(client->IsBroken());
  for (int i = 0; i < 3; ++i) {
    const Answer answer = Call(*client, "more\n");
    EXPECT_EQ(4556, answer.status);
    EXPECT_EQ("", answer.errorText);
    EXPECT_EQ("more\n", answer.request);
    EXPECT_TRUE(client->IsBroken());
  }
  EXPECT_EQ(1u, server.Requests().size());
  client->AllowReConnect();
  EXPECT_FALSE(client->IsBroken());
  EXPECT_EQ(1, server.Connections()) << "connected again by a request only";
  ExpectWorks();
  EXPECT_EQ(2, server.Connections());
}

TEST_F(Client, CanBeBrokenAtAnyTime)
{
  client->BreakConnection();
  EXPECT_TRUE(client->IsBroken());
  EXPECT_EQ(4556, Call(*client, "question").status);
  client->AllowReConnect();
  ExpectWorks();
  client->BreakConnection();
  client->BreakConnection();
  EXPECT_EQ(4556, Call(*client, "question").status);
  EXPECT_EQ(-1, DescriptorTo(server.Port()));
}

TEST_F(Client, TakesAClosedConnectionForAnEmptyReplyAndNoticesWithTheNext)
{
  for (const Reply& end : {Reply::Close(), Reply::Reset()}) {
    server.Expect("question", end);
    const Answer answer = Call(*client, "question");
    EXPECT_EQ(0, answer.status);
    EXPECT_EQ("", answer.reply);
    EXPECT_FALSE(client->IsBroken());

    const Answer next = Call(*client, "next\n");
    EXPECT_EQ(4551, next.status);
    EXPECT_EQ("socket send error: (32) Broken pipe", next.errorText);
    EXPECT_EQ("next\t", next.request) << "terminated again";
    EXPECT_TRUE(client->IsBroken());
    client->AllowReConnect();
  }
  ExpectWorks();
}

/** The request is lost that tells: nothing says so before its reply. */
TEST_F(Client, TakesAConnectionThatWasClosedMeanwhileForAnEmptyReply)
{
  server.Expect("question", Reply::Line("last words").ThenClose());
  EXPECT_EQ("last words", Call(*client, "question").reply);
  for (const int status : {0, 4551, 4556}) EXPECT_EQ(status, Call(*client, "next").status);
  EXPECT_EQ(1u, server.Requests().size());
}

TEST_F(Client, GoesOnAfterEmptyReplies)
{
  for (int i = 0; i < 3; ++i) {
    server.Expect("question", Reply::Line(""));
    EXPECT_EQ("", Call(*client, "question").reply);
    EXPECT_FALSE(client->IsBroken());
  }
  ExpectWorks();
  EXPECT_EQ(1, server.Connections());
}

TEST_F(Client, TakesTheBeginningOfAReplyThatIsCutShort)
{
  server.Expect("question", Reply::Raw("0\tbegin").ThenClose());
  const Answer answer = Call(*client, "question");
  EXPECT_EQ(0, answer.status);
  EXPECT_EQ("0\tbegin", answer.reply);
  EXPECT_FALSE(client->IsBroken());
  EXPECT_EQ(4551, Call(*client, "next").status);
}

TEST_F(Client, GivesUpAtItsLimit)
{
  SocketClient hasty(1);
  server.Expect("question", Reply::Never());
  errno = EMSGSIZE;  // no matter what happened before
  const Answer answer = Call(hasty, "question");
  EXPECT_EQ(4550, answer.status);
  EXPECT_EQ("socket timed out", answer.errorText);
  EXPECT_TRUE(hasty.IsBroken());
  EXPECT_EQ(-1, DescriptorTo(server.Port()));
}

TEST_F(Client, ReportsReadingThatFails)
{
  ExpectWorks();
  // A datagram to nobody can be sent; receiving then tells that it was refused.
  const SilentPort silent;
  const int datagram = socket(AF_INET, SOCK_DGRAM, 0);
  const sockaddr_in nobody = Loopback(silent.Number());
  ASSERT_EQ(0, connect(datagram, reinterpret_cast<const sockaddr*>(&nobody), sizeof nobody));
  const int descriptor = DescriptorTo(server.Port());
  ASSERT_GE(descriptor, 0);
  ASSERT_EQ(descriptor, dup2(datagram, descriptor));
  close(datagram);

  const Answer answer = Call(*client, "question");
  EXPECT_EQ(4550, answer.status);
  EXPECT_EQ("socket recv failed: (111) Connection refused", answer.errorText);
  EXPECT_TRUE(client->IsBroken());
}

TEST_F(Client, ReportsSendingThatFailsForOtherReasons)
{
  ExpectWorks();
  const int noSocket = open("/dev/null", O_RDWR);
  const int descriptor = DescriptorTo(server.Port());
  ASSERT_GE(descriptor, 0);
  ASSERT_EQ(descriptor, dup2(noSocket, descriptor));
  close(noSocket);

  const Answer answer = Call(*client, "question\n");
  EXPECT_EQ(4551, answer.status);
  EXPECT_EQ("socket send error: (88) Socket operation on non-socket", answer.errorText);
  EXPECT_EQ("question\t", answer.request);
  EXPECT_TRUE(client->IsBroken());
}

std::atomic<int> signalsSeen = 0;

TEST_F(Client, SparesTheProcessTheSignalOfABrokenPipe)
{
  struct sigaction counting = {};
  struct sigaction before = {};
  counting.sa_handler = [](int) { ++signalsSeen; };
  ASSERT_EQ(0, sigaction(SIGPIPE, &counting, &before));
  ExpectWorks();
  shutdown(DescriptorTo(server.Port()), SHUT_WR);
  EXPECT_EQ(4551, Call(*client, "question").status);
  EXPECT_EQ(0, signalsSeen);

  sigset_t mask;
  sigset_t pending;
  pthread_sigmask(SIG_SETMASK, nullptr, &mask);
  sigpending(&pending);
  EXPECT_EQ(0, sigismember(&mask, SIGPIPE));
  EXPECT_EQ(0, sigismember(&pending, SIGPIPE));
  struct sigaction now = {};
  sigaction(SIGPIPE, &before, &now);
  EXPECT_EQ(counting.sa_handler, now.sa_handler);
}

}  // namespace
