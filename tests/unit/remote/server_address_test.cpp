#include "remote/server_address.h"

#include <gtest/gtest.h>

#include <string>

#include "qxpaf/remote.h"

namespace {

struct Field
{
  const char* name;
  std::size_t longest;
  void (*set)(const char*);
  const char* (*get)();
  std::string (*copy)();
};

class ServerAddress : public testing::TestWithParam<Field>
{
};

INSTANTIATE_TEST_SUITE_P(Fields, ServerAddress,
                         testing::Values(Field{"Host", 255, SetTcpHost, GetTcpHost, qxpaf::TcpHost},
                                         Field{"Port", 31, SetTcpPort, GetTcpPort, qxpaf::TcpPort}),
                         [](const auto& row) { return row.param.name; });

TEST_P(ServerAddress, IsEmptyAtFirst)
{
  EXPECT_STREQ("", GetParam().get());
  EXPECT_EQ("", GetParam().copy());
}

TEST_P(ServerAddress, IsCutToItsField)
{
  const std::size_t longest = GetParam().longest;
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, longest - 1, longest, longest + 1, 2 * longest, std::size_t{100000}}) {
    const std::string text(length, 'x');
    GetParam().set(text.c_str());
    EXPECT_EQ(text.substr(0, longest), GetParam().get()) << length;
    EXPECT_EQ(text.substr(0, longest), GetParam().copy()) << length;
  }
}

TEST_P(ServerAddress, LeavesTheOtherFieldAlone)
{
  SetTcpHost("host");
  SetTcpPort("port");
  GetParam().set(std::string(100000, 'x').c_str());
  const bool isHost = std::string(GetParam().name) == "Host";
  EXPECT_STREQ(isHost ? "port" : "host", isHost ? GetTcpPort() : GetTcpHost());
}

TEST_P(ServerAddress, IsEmptiedByNull)
{
  GetParam().set("something");
  GetParam().set(nullptr);
  EXPECT_STREQ("", GetParam().get());
}

TEST_P(ServerAddress, MayBeSetToItself)
{
  GetParam().set("something");
  const char* const before = GetParam().get();
  const std::string copy = before;
  GetParam().set(copy.c_str());
  EXPECT_EQ(before, GetParam().get()) << "the place stays";
  EXPECT_EQ("something", GetParam().copy());
}

}  // namespace
