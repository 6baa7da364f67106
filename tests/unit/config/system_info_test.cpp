#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "qxpaf/registry.h"
#include "support/guarded_buffer.h"

namespace {

using std::string;
using test_support::GuardedBuffer;

string HostName()
{
  char name[1024] = "";
  EXPECT_EQ(gethostname(name, sizeof name), 0);
  return name;
}

TEST(ComputerName, IsTheFirstLabelOfTheHostName)
{
  const string host = HostName();
  GuardedBuffer buffer(256);
  GetComputerName_(buffer.Data(), 256);
  EXPECT_EQ(string(buffer.Data()), host.substr(0, host.find('.')));
  EXPECT_TRUE(buffer.Intact());
}

TEST(ComputerName, IsEmptyWhenTheHostNameDoesNotFit)
{
  const string host = HostName();
  ASSERT_FALSE(host.empty());
  for (std::size_t size = 1; size <= host.size(); ++size) {
    GuardedBuffer buffer(size);
    GetComputerName_(buffer.Data(), size);
    EXPECT_EQ(buffer.Data()[0], '\0') << size;
    EXPECT_TRUE(buffer.Intact()) << size;
  }
  GuardedBuffer exact(host.size() + 1);
  GetComputerName_(exact.Data(), host.size() + 1);
  EXPECT_EQ(string(exact.Data()), host.substr(0, host.find('.')));
  EXPECT_TRUE(exact.Intact());
}

TEST(ComputerName, WithoutABufferNothingIsWritten)
{
  GuardedBuffer buffer(0);
  GetComputerName_(buffer.Data(), 0);
  EXPECT_TRUE(buffer.Intact());
  GetComputerName_(nullptr, 256);
}

TEST(NumberOfProcessors, IsThatOfTheSystem)
{
  EXPECT_GE(GetNumberOfProcessors_(), 1);
  EXPECT_EQ(GetNumberOfProcessors_(), static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)));
}

TEST(VersionOfThisFile, LeavesItsArgumentsAlone)
{
  int numbers[4] = {1, 2, 3, 4};
  int module = 5;
  GetVersionOfThisFile(numbers[0], numbers[1], numbers[2], numbers[3], &module);
  GetVersionOfThisFile(numbers[0], numbers[1], numbers[2], numbers[3], nullptr);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(numbers[i], i + 1);
  EXPECT_EQ(module, 5);
}

}  // namespace
