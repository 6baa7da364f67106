#include "server/log.h"

#include <gtest/gtest.h>

namespace pafd {
namespace {

TEST(Printable, LeavesNoControlCharacters)
{
  EXPECT_EQ(Printable(""), "");
  EXPECT_EQ(Printable("1 High St"), "1 High St");
  EXPECT_EQ(Printable("a\tb\nc\rd"), "a\\tb\\x0Ac\\x0Dd");
  EXPECT_EQ(Printable(std::string_view("\0\x1B\x7F\\", 4)), "\\x00\\x1B\\x7F\\\\");
  EXPECT_EQ(Printable("Caf\xC3\xA9"), "Caf\xC3\xA9");
}

TEST(Printable, IsCut)
{
  EXPECT_EQ(Printable(std::string(1024, 'x')), std::string(1024, 'x'));
  EXPECT_EQ(Printable(std::string(1025, 'x')), std::string(1024, 'x') + "...");
}

}  // namespace
}  // namespace pafd
