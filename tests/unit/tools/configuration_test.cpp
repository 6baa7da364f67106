#include "paf/configuration.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tool {
namespace {

namespace fs = std::filesystem;

/** Runs in a directory of its own, with an empty HOME there and no configuration of the caller's. */
class Configuration : public testing::Test
{
 protected:
  Configuration()
  {
    std::string name = (fs::temp_directory_path() / "paf-tool-XXXXXX").string();
    root_ = fs::canonical(mkdtemp(name.data()));
    fs::create_directory(root_ / "home");
    fs::current_path(root_);
    setenv("HOME", (root_ / "home").c_str(), 1);
    unsetenv("MORVEX_CONFIG_FILE");
  }

  ~Configuration() override
  {
    fs::current_path("/");
    fs::remove_all(root_);
  }

  void Write(const std::string& name, const std::string& text) { std::ofstream(root_ / name) << text; }

  std::vector<PlaceState> States() const
  {
    std::vector<PlaceState> states;
    for (const Place& place : ConfigurationPlaces()) {
      states.push_back(place.state);
    }
    return states;
  }

  std::vector<std::string> Names() const
  {
    std::vector<std::string> names;
    for (const ConfiguredDatabase& database : ConfiguredDatabases()) {
      names.push_back(database.name);
    }
    return names;
  }

  fs::path root_;
};

using enum PlaceState;

TEST_F(Configuration, WorkingDirectoryComesFirst)
{
  Write(".morvex", "");
  Write("other", "");
  setenv("MORVEX_CONFIG_FILE", "other", 1);
  EXPECT_EQ(States(), (std::vector{Used, NotReached, NotReached, NotReached}));
  EXPECT_EQ(ConfigurationFile()->path, (root_ / ".morvex").string());
}

TEST_F(Configuration, VariableComesSecond)
{
  Write("other", "");
  Write("home/.morvex", "");
  setenv("MORVEX_CONFIG_FILE", "other", 1);
  EXPECT_EQ(States(), (std::vector{NotFound, Used, NotReached, NotReached}));
}

TEST_F(Configuration, HomeComesThirdAndAVariableThatNamesNothingIsPassed)
{
  Write("home/.morvex", "");
  setenv("MORVEX_CONFIG_FILE", "missing", 1);
  EXPECT_EQ(States(), (std::vector{NotFound, NotFound, Used, NotReached}));
  setenv("HOME", (root_ / "home/").c_str(), 1);
  EXPECT_EQ(ConfigurationPlaces()[2].path, (root_ / "home/.morvex").string());
}

TEST_F(Configuration, EmptyVariablesCountAsNotSet)
{
  setenv("MORVEX_CONFIG_FILE", "", 1);
  unsetenv("HOME");
  const std::vector<Place> places = ConfigurationPlaces();
  EXPECT_EQ(places[1].state, NotSet);
  EXPECT_EQ(places[2].state, NotSet);
  EXPECT_EQ(places[3].path, "/usr/etc/.morvex");
}

TEST_F(Configuration, SaysWhyAPlaceIsNotUsable)
{
  EXPECT_EQ(Describe(ConfigurationPlaces()[0]), "not found (No such file or directory)");
  fs::create_directory(".morvex");
  EXPECT_EQ(Describe(ConfigurationPlaces()[0]), "found, and used (it is a directory, not a file)");
}

TEST_F(Configuration, NamesDatabasesOfAllKeysInOrder)
{
  Write(".morvex",
        "PafDir=/data/default\n"
        "ARF/NZ/=/data/nz\n"
        "ARF/AU/Main=/data/main\n"
        "ARF/Plain=/data/plain\n"
        "ARF/au/=/data/au\n"
        "Arf/US/A/B=/not/a/value/of/the/key\n"
        "ARF/XX/Main=/no/such/country\n");
  EXPECT_EQ(Names(), (std::vector<std::string>{"Plain", "AU.Main", "AU", "NZ", ""}));
}

TEST_F(Configuration, SeparatesPathFromOptions)
{
  Write(".morvex", "ARF/AU/Main=/data/main;OPENARF=Map;X=1\nARF/AU/Dll=DLL:Own;/data/own\n");
  const std::vector<ConfiguredDatabase> databases = ConfiguredDatabases();
  ASSERT_EQ(databases.size(), 2U);
  EXPECT_EQ(databases[0].line, "ARF/AU/Main=");
  EXPECT_EQ(databases[0].value, "/data/main;OPENARF=Map;X=1");
  EXPECT_EQ(databases[0].path, "/data/main");
  EXPECT_EQ(databases[0].options, "OPENARF=Map;X=1");
  EXPECT_EQ(databases[1].path, "DLL:Own;/data/own");
  EXPECT_EQ(databases[1].options, "");
}

TEST_F(Configuration, ReplacesWildcardsBySubdirectories)
{
  for (const char* name : {"all/b", "all/a", "all/.hidden"}) {
    fs::create_directories(root_ / name);
  }
  Write("all/file", "");
  Write(".morvex", "ARF/AU=" + (root_ / "all").string() + "/*\nARF/NZ=/does/not/exist/?\n");
  const std::vector<ConfiguredDatabase> databases = ConfiguredDatabases();
  ASSERT_EQ(databases.size(), 2U);
  EXPECT_EQ(databases[0].name, "AU.a");
  EXPECT_EQ(databases[0].path, (root_ / "all/a").string());
  EXPECT_EQ(databases[1].name, "AU.b");
}

TEST_F(Configuration, KnowsNothingWithoutAFile)
{
  EXPECT_FALSE(ConfigurationValue("", "PafDir"));
  EXPECT_TRUE(ConfiguredDatabases().empty());
  EXPECT_FALSE(IsRemoteConfigured());
}

TEST_F(Configuration, SeesRemoteModeInEitherValueUnlessEmpty)
{
  Write(".morvex", "PindleSvr/TcpHost=\nPindleSvr/TcpPort=\n");
  EXPECT_FALSE(IsRemoteConfigured());
  Write(".morvex", "PindleSvr/TcpHost=example\n");
  EXPECT_TRUE(IsRemoteConfigured());
  Write(".morvex", "PindleSvr/TcpPort=4000\n");
  EXPECT_TRUE(IsRemoteConfigured());
}

struct LineRow
{
  const char* name;
  const char* line;
};

constexpr LineRow kLines[] = {{"AU", "ARF/AU/="}, {"aus.Main", "ARF/AU/Main="}, {"Main", "ARF/Main="}, {"", "PafDir="}};

TEST(ConfigurationLine, IsTheOneThatTheLibraryReads)
{
  for (const LineRow& row : kLines) {
    EXPECT_EQ(ConfigurationLine(row.name), row.line);
  }
}

}  // namespace
}  // namespace tool
