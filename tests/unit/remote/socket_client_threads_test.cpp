/** One client and several threads. */
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "socket_client_fixture.h"

namespace {

using namespace socket_client_tests;

TEST_F(Client, ServesManyThreadsOneExchangeAfterTheOther)
{
  constexpr int kThreads = 8;
  constexpr int kCalls = 200;
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (int i = 0; i < kCalls; ++i) {
        std::string request = std::to_string(thread) + "\t" + std::to_string(i);
        const std::string expected = "to " + request;
        char reply[64];
        char errorText[qxpaf::kSocketErrorTextSize];
        if (client->CallSocSvr(request.data(), reply, sizeof reply, errorText) != 0 || expected != reply) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0, wrong);
  EXPECT_EQ(1, server.Connections());
  EXPECT_EQ(static_cast<std::size_t>(kThreads * kCalls), server.Requests().size());
  EXPECT_TRUE(server.Faults().empty());
}

TEST_F(Client, RefusesThreadsThatWaitedForAnExchangeThatFailed)
{
  SocketClient hasty(1);
  server.Expect("first", Reply::Never());
  Answer first;
  std::thread thread([&] { first = Call(hasty, "first"); });
  while (server.Requests().empty()) std::this_thread::yield();
  EXPECT_EQ(4556, Call(hasty, "second").status);
  thread.join();
  EXPECT_EQ(4550, first.status);
  EXPECT_EQ(1u, server.Requests().size());
}

TEST_F(Client, CanBeAcknowledgedAndAskedWhileAnExchangeRuns)
{
  server.Expect("first", Reply::Line("late").After(std::chrono::milliseconds(100)));
  std::thread thread([&] { EXPECT_EQ("late", Call(*client, "first").reply); });
  while (server.Requests().empty()) std::this_thread::yield();
  EXPECT_FALSE(client->IsBroken());
  client->AllowReConnect();
  SetTcpPort(server.Port().c_str());
  thread.join();
  ExpectWorks();
  EXPECT_EQ(1, server.Connections());
}

/** The reply that a cancelled thread did not wait for must not reach the next. */
TEST_F(Client, IsBrokenByCancellingAThreadInAnExchange)
{
  server.Expect("first", Reply::Line("too late").After(std::chrono::milliseconds(100)));
  pthread_t thread;
  ASSERT_EQ(0, pthread_create(
                   &thread, nullptr,
                   [](void* cancelled) -> void* {
                     char request[] = "first";
                     char reply[64];
                     char errorText[qxpaf::kSocketErrorTextSize];
                     static_cast<SocketClient*>(cancelled)->CallSocSvr(request, reply, sizeof reply, errorText);
                     return nullptr;
                   },
                   client.get()));
  while (server.Requests().empty()) std::this_thread::yield();
  pthread_cancel(thread);
  void* result = nullptr;
  pthread_join(thread, &result);
  EXPECT_EQ(PTHREAD_CANCELED, result);
  EXPECT_TRUE(client->IsBroken());
  client->AllowReConnect();
  ExpectWorks();
  EXPECT_EQ(2, server.Connections());
}

}  // namespace
