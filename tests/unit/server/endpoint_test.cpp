#include "server/endpoint.h"

#include <gtest/gtest.h>

#include "server/failure.h"

namespace pafd {
namespace {

TEST(Endpoint, IsReadAndDescribed)
{
  for (const char* text : {"127.0.0.1:7070", "0.0.0.0:0", "255.255.255.255:65535", "10.1.2.3:1"}) {
    EXPECT_EQ(Describe(ReadEndpoint(text)), text);
  }
  EXPECT_EQ(ReadEndpoint("1.2.3.4:5").address, 0x01020304u);
  EXPECT_EQ(ReadEndpoint("1.2.3.4:5").port, 5);
  EXPECT_EQ(Describe(ReadEndpoint("localhost:7070")), "127.0.0.1:7070");
}

TEST(Endpoint, MustHaveHostAndPort)
{
  for (const char* text : {"", ":", "7070", ":7070", "127.0.0.1", "127.0.0.1:", "127.0.0.1:65536", "127.0.0.1:-1",
                           "127.0.0.1:7070x", "127.0.0.1: 7070", "127.0.0.1:http", "127.0.0.300:1"}) {
    EXPECT_THROW(ReadEndpoint(text), Failure) << text;
  }
}

TEST(Endpoint, LoopbackIsTheWholeNetwork)
{
  EXPECT_TRUE(IsLoopback(0x7F000001));
  EXPECT_TRUE(IsLoopback(0x7FFFFFFF));
  EXPECT_FALSE(IsLoopback(0x7E000001));
  EXPECT_FALSE(IsLoopback(0x80000001));
  EXPECT_FALSE(IsLoopback(0));
}

}  // namespace
}  // namespace pafd
