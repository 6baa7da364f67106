#include "server/allow_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/failure.h"

namespace pafd {
namespace {

constexpr std::uint32_t Address(unsigned a, unsigned b, unsigned c, unsigned d)
{
  return a << 24 | b << 16 | c << 8 | d;
}

struct Row
{
  const char* network;
  std::uint32_t address;
  bool isAllowed;
};

TEST(AllowList, HoldsNetworks)
{
  const std::vector<Row> rows = {
      {"10.0.0.0/8", Address(10, 0, 0, 0), true},         {"10.0.0.0/8", Address(10, 255, 255, 255), true},
      {"10.0.0.0/8", Address(11, 0, 0, 0), false},        {"10.0.0.0/8", Address(9, 255, 255, 255), false},
      {"10.1.2.3", Address(10, 1, 2, 3), true},           {"10.1.2.3", Address(10, 1, 2, 2), false},
      {"10.1.2.3/32", Address(10, 1, 2, 3), true},        {"10.1.2.3/32", Address(10, 1, 2, 4), false},
      {"10.1.2.2/31", Address(10, 1, 2, 3), true},        {"10.1.2.2/31", Address(10, 1, 2, 4), false},
      {"128.0.0.0/1", Address(255, 255, 255, 255), true}, {"128.0.0.0/1", Address(127, 255, 255, 255), false},
      {"0.0.0.0/0", Address(0, 0, 0, 0), true},           {"0.0.0.0/0", Address(255, 255, 255, 255), true}};
  for (const Row& row : rows) {
    AllowList list;
    list.Add(row.network);
    EXPECT_FALSE(list.IsEmpty());
    EXPECT_EQ(list.Allows(row.address), row.isAllowed) << row.network << ' ' << row.address;
  }
}

TEST(AllowList, HoldsSeveral)
{
  AllowList list;
  list.Add("10.0.0.0/8");
  list.Add("192.168.1.0/24");
  EXPECT_TRUE(list.Allows(Address(10, 1, 1, 1)));
  EXPECT_TRUE(list.Allows(Address(192, 168, 1, 1)));
  EXPECT_FALSE(list.Allows(Address(192, 168, 2, 1)));
}

TEST(AllowList, AllowsAllWhenEmpty)
{
  EXPECT_TRUE(AllowList().IsEmpty());
  EXPECT_TRUE(AllowList().Allows(Address(1, 2, 3, 4)));
}

struct MistakeRow
{
  const char* network;
  const char* said;
};

TEST(AllowList, SaysWhatIsWrong)
{
  const std::vector<MistakeRow> rows = {{"", "no IPv4 network"},
                                        {"10", "no IPv4 network"},
                                        {"10.0.0", "no IPv4 network"},
                                        {"10.0.0.256", "no IPv4 network"},
                                        {"10.0.0.0.0/8", "no IPv4 network"},
                                        {"::1", "no IPv4 network"},
                                        {"localhost", "no IPv4 network"},
                                        {" 10.0.0.0", "no IPv4 network"},
                                        {"10.0.0.0/", "from 0 to 32"},
                                        {"10.0.0.0/33", "from 0 to 32"},
                                        {"10.0.0.0/-1", "from 0 to 32"},
                                        {"10.0.0.0/8x", "from 0 to 32"},
                                        {"10.0.0.0/99999999999", "from 0 to 32"},
                                        {"10.0.0.0/255.0.0.0", "from 0 to 32"},
                                        {"10.0.0.1/8", "did you mean 10.0.0.0/8?"},
                                        {"255.255.255.255/0", "did you mean 0.0.0.0/0?"},
                                        {"10.1.2.3/31", "did you mean 10.1.2.2/31?"}};
  for (const MistakeRow& row : rows) {
    try {
      AllowList list;
      list.Add(row.network);
      ADD_FAILURE() << row.network << " was taken";
    } catch (const Failure& failure) {
      EXPECT_THAT(failure.what(), testing::HasSubstr(row.said));
      EXPECT_THAT(failure.what(), testing::StartsWith(std::string("'") + row.network + "'"));
    }
  }
}

}  // namespace
}  // namespace pafd
