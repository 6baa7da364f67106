#include "api/library_properties.h"

#include <gtest/gtest.h>

#include <string>

#include "qxpaf/remote.h"
#include "remote/remote_mode.h"
#include "support/config_sandbox.h"

namespace {

using namespace qxpaf;

constexpr const char* kProcessNames[] = {"UseSockets", "TcpHost", "TcpPort", "OpenArfs", "OpenArfPaths"};
constexpr const char* kLocalNames[] = {
    "TestProperty",    "ClientCount",     "ClientCount2",    "PafMachine",      "ArfLibVersion",
    "ArfLibVersionAu", "ArfLibVersionNz", "ArfLibVersionUs", "ArfLibVersionUk", "ARFs",
    "DefaultArf",      "iPindle:",        "iPindle:x",       "iPindle:a\\b"};
constexpr const char* kOtherNames[] = {
    "",    "OpenARF",      "Properties", "PropertyName1", "CountryCode", "UseSocket", "TcpHost ", "OpenArf",
    "ARF", "ClientCount3", "iPindle",    "OutputFields",  "Default",     "TcpHosts",  "Test",     " TestProperty"};

TEST(LibraryProperties, AreOfTwoKinds)
{
  const test_support::ConfigSandbox sandbox;
  for (const char* name : kProcessNames) {
    EXPECT_TRUE(IsProcessProperty(name)) << name;
    EXPECT_TRUE(ProcessProperty(name).has_value()) << name;
    EXPECT_FALSE(LocalProperty(name).has_value()) << name;
  }
  for (const char* name : kLocalNames) {
    EXPECT_FALSE(IsProcessProperty(name)) << name;
    EXPECT_FALSE(ProcessProperty(name).has_value()) << name;
    EXPECT_TRUE(LocalProperty(name).has_value()) << name;
  }
  for (const char* name : kOtherNames) {
    EXPECT_FALSE(IsProcessProperty(name)) << name;
    EXPECT_FALSE(ProcessProperty(name).has_value()) << name;
    EXPECT_FALSE(LocalProperty(name).has_value()) << name;
  }
}

TEST(LibraryProperties, IgnoreTheCaseOfTheirNames)
{
  EXPECT_TRUE(IsProcessProperty("usesOCKETS"));
  EXPECT_EQ("", ProcessProperty("TCPhost"));
  EXPECT_EQ("Test Property Value", LocalProperty("testPROPERTY"));
  EXPECT_EQ("5.10.246.2", LocalProperty("ARFLIBVERSION"));
}

TEST(LibraryProperties, ThatSetTheConnectionAreThree)
{
  EXPECT_TRUE(SetConnectionProperty("tcpHOST", "host"));
  EXPECT_TRUE(SetConnectionProperty("TCPport", "4711"));
  EXPECT_STREQ("host", GetTcpHost());
  EXPECT_STREQ("4711", GetTcpPort());
  EXPECT_FALSE(IsRemoteModeOn()) << "host and port choose no mode";
  EXPECT_TRUE(SetConnectionProperty("USESockets", "tRUE"));
  EXPECT_TRUE(IsRemoteModeOn());
  EXPECT_EQ("True", ProcessProperty("UseSockets"));
  EXPECT_TRUE(SetConnectionProperty("UseSockets", "1"));
  EXPECT_FALSE(IsRemoteModeOn());
  for (const char* name : {"", "OpenArfs", "OpenArfPaths", "OpenARF", "TcpHost ", "UseSocket", "ClientCount"}) {
    EXPECT_FALSE(SetConnectionProperty(name, "True")) << name;
  }
  EXPECT_FALSE(IsRemoteModeOn());
}

}  // namespace
