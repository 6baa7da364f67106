// That requests allocate nothing but the lines of those that are sent whole, and what happens when those find no
// memory. This program replaces the allocation functions.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "client_fixture.h"
#include "qxpaf/remote.h"

namespace {

thread_local int allocations = 0;
thread_local bool memoryIsOut = false;

}  // namespace

// The forms for arrays are replaced too: a sanitizer's do not lead to the single ones.
// Not inlined, so that the compiler does not take malloc and operator delete for a mismatched pair.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
  ++allocations;
  return memoryIsOut ? nullptr : std::malloc(size == 0 ? 1 : size);
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new[](std::size_t size)
{
  return operator new(size);
}

[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
  return operator new(size, std::nothrow);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept
{
  std::free(memory);
}

namespace {

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
    memoryIsOut = true;
    const int status = request();
    memoryIsOut = false;
    return status;
  }
};

TEST_F(RequestMemory, IsNeededForNoUsualRequest)
{
  int id = 0;
  char text[256] = "1 Main St";
  long number = 0;
  int count = 1;
  allocations = 0;
  EXPECT_EQ(0, WithoutMemory([&] { return OpenArfIdViaSocket(&id, 0, "AU"); }));
  EXPECT_EQ(0, WithoutMemory([&] { return GetDpidIdViaSocket(id, text, sizeof text); }));
  EXPECT_EQ(0, WithoutMemory([&] { return GetAddressHintIdViaSocket(id, "a\tb", "c", text, sizeof text); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ReadLocalityRecordIdViaSocket(id, 1, text, &number, &number); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ReadBorderRecordIdViaSocket(id, 1, &id, &count); }));
  EXPECT_EQ(0, WithoutMemory([&] { return ClosePafIdViaSocket(id); }));
  EXPECT_EQ(0, allocations);
}

TEST_F(RequestMemory, IsNeededOnceForRequestsThatAreSentWhole)
{
  char text[256] = "before";
  allocations = 0;
  EXPECT_EQ(0, BeginPolygonSearchViaSocket(1, "a", "1,2"));
  EXPECT_EQ(1, allocations);
  EXPECT_EQ(0, GetSearchStatisticsViaSocket(1, "a", "b", "c", "d", text, sizeof text));
  EXPECT_EQ(2, allocations);
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
