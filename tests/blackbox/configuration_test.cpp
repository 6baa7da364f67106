// Where the configuration file is looked for, and what its absence means.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

class ConfigurationTest : public testing::Test
{
 protected:
  ConfigurationTest() { unsetenv("HOME"); }

  /** The path that the name AU.<name> leads to; the negated status as text when it leads nowhere. */
  std::string PathOf(const std::string& name)
  {
    fake->clearCalls();
    const int id = pafOpenArfId2(0, ("AU." + name).c_str());
    if (id <= 0) return std::to_string(id);
    const std::string path = fake.Last(kFakeDbOpen).arguments.at(0).text;
    EXPECT_EQ(pafClosePafId(id), 0);
    return path;
  }

  /** A file that leads the given name to the given path. */
  void Write(const std::string& file, const std::string& name, const std::string& path)
  {
    workspace.WriteFile(file, "ARF/AU/" + name + "=" + path + "\n");
  }

  Workspace workspace;
  Fake fake{"libqxarfau.so"};
};

TEST_F(ConfigurationTest, NoFileAtAll)
{
  for (const char* name : {"AU.x", "AU", "abcd", "AU.sub/", ""})
    EXPECT_EQ(pafOpenArfId2(0, name), -PAF_ERR_CONFIGURATION) << name;
  EXPECT_EQ(Describe(PAF_ERR_CONFIGURATION), "Cannot open registry or configuration file");
  EXPECT_EQ(pafOpenPafId2(), -PAF_ERR_CONFIGURATION);
}

TEST_F(ConfigurationTest, PathsAndPluginsNamedDirectlyNeedNoFile)
{
  EXPECT_EQ(pafOpenArfId2(0, "AU./p"), 1);
  EXPECT_EQ(pafOpenArfId2(0, "DLL:FakeOne;/p"), 2);
  EXPECT_EQ(fake.Last(kFakeDbOpen).arguments.at(1), 1) << "disk is the default mode";
}

TEST_F(ConfigurationTest, AMissingValueIsNotConfigured)
{
  workspace.Configure({});
  for (const char* name : {"AU.x", "AU", "abcd", "AU.sub/", ""})
    EXPECT_EQ(pafOpenArfId2(0, name), -PAF_ERR_NOT_CONFIGURED) << name;
  EXPECT_EQ(Describe(PAF_ERR_NOT_CONFIGURED), "ARF not installed");
}

TEST_F(ConfigurationTest, TheFirstFileOfTheSearchOrderIsTheOnlyOne)
{
  Write("env/file", "a", "/env");
  Write("home/.morvex", "b", "/home");
  EXPECT_EQ(PathOf("a"), "-6498");
  setenv("HOME", (workspace.Root() + "/home").c_str(), 1);
  EXPECT_EQ(PathOf("b"), "/home");
  EXPECT_EQ(PathOf("a"), "-6499");
  setenv("MORVEX_CONFIG_FILE", (workspace.Root() + "/env/file").c_str(), 1);
  EXPECT_EQ(PathOf("a"), "/env");
  EXPECT_EQ(PathOf("b"), "/home") << "a resolved name is remembered";
  EXPECT_EQ(PathOf("B"), "-6499") << "the home file is not read any more";
  Write(".morvex", "c", "/working");
  EXPECT_EQ(PathOf("c"), "/working");
  EXPECT_EQ(PathOf("A"), "-6499") << "MORVEX_CONFIG_FILE is not read any more";
}

TEST_F(ConfigurationTest, HomeWithATrailingSeparator)
{
  Write("home/.morvex", "x", "/home");
  setenv("HOME", (workspace.Root() + "/home/").c_str(), 1);
  EXPECT_EQ(PathOf("x"), "/home");
}

TEST_F(ConfigurationTest, AVariableThatNamesNoFileIsPassedOver)
{
  Write("home/.morvex", "x", "/home");
  setenv("HOME", (workspace.Root() + "/home").c_str(), 1);
  setenv("MORVEX_CONFIG_FILE", (workspace.Root() + "/none").c_str(), 1);
  EXPECT_EQ(PathOf("x"), "/home");
  setenv("MORVEX_CONFIG_FILE", "", 1);
  EXPECT_EQ(PathOf("X"), "/home");
  setenv("HOME", "", 1);
  EXPECT_EQ(PathOf("y"), "-6498");
}

TEST_F(ConfigurationTest, LinesAreReadInPiecesOf1023Characters)
{
  const std::string line = "ARF/AU/x=/p\n";
  workspace.WriteFile(".morvex", std::string(1023, '#') + line);
  EXPECT_EQ(PathOf("x"), "/p") << "the remainder is a line of its own";
  workspace.WriteFile(".morvex", std::string(1022, '#') + line);
  EXPECT_EQ(PathOf("X"), "-6499");
  workspace.WriteFile(".morvex", "ARF/AU/x=" + std::string(1014, 'p') + "q\n");
  EXPECT_EQ(PathOf("X"), std::string(1014, 'p'));
}

TEST_F(ConfigurationTest, TheLastLineNeedsNoLineFeed)
{
  workspace.WriteFile(".morvex", "ARF/AU/x=/p");
  EXPECT_EQ(PathOf("x"), "/p");
}

}  // namespace
}  // namespace blackbox
