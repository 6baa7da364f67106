// That requests allocate nothing but the lines of those that are sent whole, and what happens when those find no
// memory.
#include <gtest/gtest.h>

#include "client_fixture.h"
#include "qxpaf/remote.h"
#include "support/allocations.h"

namespace {

using test_support::Allocations;

class RequestMemory : public testing::Test, protected WithServer
{
 protected:
  RequestMemory()
  {
    server.AnswerOthers([](const std::string&) { return fake::Reply::Line("0\t5\ttext"); });
  }

  /** Calls with nothing left. @return the result */
  template <class Request>
  static int WithoutMemory(Request request)
  {
    const test_support::MemoryIsOut none;
    return request();
  }
};

TEST_F(RequestMemory, IsNeededForNoUsualRequest)
{
  int id = 0;
  char text[256] = "1 Main St";
  long number = 0;
  int count = 1;
  const long before = Allocations();
  EXPECT_EQ(0, WithoutMemory([&] { return OpenArfIdViaSocket(&id, 0, "AU"); }));
  EXPECT_EQ(0, WithoutMemory([&] { return GetDpidIdViaSocket(id, text, sizeof text); }));
  EXPECT_EQ(0, WithoutMemory([&] { return GetAddressHintIdViaSocket(id, "a\tb", "c", text, sizeof text); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ReadLocalityRecordIdViaSocket(id, 1, text, &number, &number); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ReadBorderRecordIdViaSocket(id, 1, &id, &count); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ClosePafIdViaSocket(id); }));
  EXPECT_EQ(0, Allocations() - before);
}

TEST_F(RequestMemory, IsNeededOnceForRequestsThatAreSentWhole)
{
  char text[256] = "before";
  const long before = Allocations();
  EXPECT_EQ(0, BeginPolygonSearchViaSocket(1, "a", "1,2"));
  EXPECT_EQ(1, Allocations() - before);
  EXPECT_EQ(0, GetSearchStatisticsViaSocket(1, "a", "b", "c", "d", text, sizeof text));
  EXPECT_EQ(2, Allocations() - before);
}

TEST_F(RequestMemory, RunsOutWithAStatus)
{
  char text[256] = "before";
  EXPECT_EQ(539, WithoutMemory([] { return BeginPolygonSearchViaSocket(1, "a", "1,2"); }));
  EXPECT_EQ(539, WithoutMemory([&] { return GetSearchStatisticsViaSocket(1, "a", "b", "c", "d", text, 256); }));
  EXPECT_STREQ("before", text);
  EXPECT_TRUE(server.Requests().empty());
  EXPECT_EQ(0, Recorded().code);
  EXPECT_EQ(0, BeginPolygonSearchViaSocket(1, "a", "1,2"));
}

}  // namespace
