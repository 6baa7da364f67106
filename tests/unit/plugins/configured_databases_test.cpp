/** What the configuration lists as databases, from files written for each row. */
#include "plugins/configured_databases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/config_sandbox.h"

namespace {

using qxpaf::ConfiguredDatabases;
using qxpaf::ConfiguredDefaultDatabase;

using Pairs = std::vector<std::pair<std::string, std::string>>;

class ConfiguredDatabasesTest : public testing::Test
{
 protected:
  static Pairs Listed()
  {
    Pairs pairs;
    for (const auto& database : ConfiguredDatabases()) pairs.emplace_back(database.name, database.path);
    return pairs;
  }

  static Pairs Sorted(Pairs pairs)
  {
    std::sort(pairs.begin(), pairs.end());
    return pairs;
  }

  void Configure(const std::string& content) { sandbox_.Configure(content); }
  std::string Path(const std::string& name) const { return sandbox_.Dir().Path(name); }
  void MakeDirectory(const std::string& name) const { sandbox_.Dir().MakeDirectory(name); }
  void MakeFile(const std::string& name) const { sandbox_.Dir().Write(name, "contents"); }

  test_support::ConfigSandbox sandbox_;
};

struct Row
{
  const char* config;
  Pairs expected;
};

TEST_F(ConfiguredDatabasesTest, AreTheValuesOfTheKeyAndOfItsCountries)
{
  const Row kRows[] = {
      {"", {}},
      {"PafDir=/p\nArfBaseDir=/b\nOther/x=/x\n", {}},
      {"ARF=/x\n", {}},
      {"ARFS/x=/x\nXARF/x=/x\n", {}},
      {"ARF/b=/2\nARF/a=/1\n", {{"b", "/2"}, {"a", "/1"}}},
      {"arf/Mixed=/Path/Mixed\n", {{"Mixed", "/Path/Mixed"}}},
      {"ARF/a=\nARF/=/1\n", {{"a", ""}, {"", "/1"}}},
      {"ARF/a=/x=y;z\n", {{"a", "/x=y;z"}}},
      {"ARF/a=/1\nARF/a=/2\n", {{"a", "/1"}, {"a", "/2"}}},
      {"ARF/AU/a=/1\n", {{"AU.a", "/1"}}},
      {"ARF/AU/=/1\n", {{"AU", "/1"}}},
      {"ARF/AU/=/1\nARF/AU/b=/2\nARF/AU/a=/3\n", {{"AU", "/1"}, {"AU.b", "/2"}, {"AU.a", "/3"}}},
      {"ARF/INT/x=/1\n", {{"INT.x", "/1"}}},
      {"ARF/nz/x=/1\n", {{"nz.x", "/1"}}},
      {"ARF/ZZ/x=/1\n", {{"ZZ.x", "/1"}}},
      {"ARF/A/x=/1\nARF/ABCD/x=/2\nARF//x=/3\n", {}},
      {"ARF/AU/deep/x=/1\n", {}},
      {"ARF/NZ/x=/1\nARF/y=/2\nARF/AU/z=/3\n", {{"y", "/2"}, {"AU.z", "/3"}, {"NZ.x", "/1"}}},
      {"ARF/AU=/1\nARF/AU/x=/2\n", {{"AU", "/1"}, {"AU.x", "/2"}}},
      {"ARF/AU/star=/no/such/*\nARF/AU/mark=/no/such/?\n", {{"AU.star", "/no/such/*"}, {"AU.mark", "/no/such/?"}}},
      {"ARF/a=/x*y\nARF/b=/?/z\n", {{"a", "/x*y"}, {"b", "/?/z"}}},
  };
  for (const Row& row : kRows) {
    Configure(row.config);
    EXPECT_EQ(row.expected, Listed()) << row.config;
  }
}

TEST_F(ConfiguredDatabasesTest, AWildcardStandsForTheDirectoriesThatAreNotHidden)
{
  for (const char* name : {"dbs/one", "dbs/two", "dbs/Three 3", "dbs/.hidden", "dbs/one/deeper"}) MakeDirectory(name);
  for (const char* name : {"dbs/file", "dbs/other.dat", "dbs/.dotfile"}) MakeFile(name);
  const auto expected = [&](const std::string& name) {
    return Sorted(
        {{name + ".one", Path("dbs/one")}, {name + ".two", Path("dbs/two")}, {name + ".Three 3", Path("dbs/Three 3")}});
  };
  for (const char* wildcard : {"*", "?"}) {
    for (const char* name : {"AU", "any", "A.B"}) {
      Configure(std::string("ARF/") + name + "=" + Path("dbs/") + wildcard + "\n");
      EXPECT_EQ(expected(name), Sorted(Listed())) << wildcard;
    }
  }
}

TEST_F(ConfiguredDatabasesTest, AWildcardStandsWhereItsEntryStood)
{
  MakeDirectory("dbs/only");
  Configure("ARF/first=/1\nARF/wild=" + Path("dbs/*") + "\nARF/last=/2\nARF/AU/x=/3\n");
  EXPECT_EQ((Pairs{{"first", "/1"}, {"wild.only", Path("dbs/only")}, {"last", "/2"}, {"AU.x", "/3"}}), Listed());
}

TEST_F(ConfiguredDatabasesTest, OnlyTheDirectoryOfAWildcardCounts)
{
  MakeDirectory("dbs/one");
  MakeDirectory("dbs/two");
  Configure("ARF/w=" + Path("dbs/one*") + "\n");
  EXPECT_EQ((Pairs{{"w.one", Path("dbs/one")}, {"w.two", Path("dbs/two")}}), Sorted(Listed()));
}

TEST_F(ConfiguredDatabasesTest, AWildcardWithoutDirectoriesStandsForNothing)
{
  MakeDirectory("empty");
  MakeFile("file");
  for (const char* wildcard : {"empty/*", "empty/?", "missing/*", "file/*"}) {
    Configure("ARF/w=" + Path(wildcard) + "\nARF/x=/1\n");
    EXPECT_EQ((Pairs{{"x", "/1"}}), Listed()) << wildcard;
  }
}

TEST_F(ConfiguredDatabasesTest, AreReadAfreshEachTime)
{
  Configure("ARF/a=/1\n");
  EXPECT_EQ(1u, Listed().size());
  Configure("ARF/a=/1\nARF/b=/2\n");
  EXPECT_EQ(2u, Listed().size());
}

TEST_F(ConfiguredDatabasesTest, WithoutAFileThereAreNone)
{
  if (test_support::ConfigSandbox::MachineHasConfig()) GTEST_SKIP() << "this machine has a configuration file";
  EXPECT_EQ(Pairs{}, Listed());
  EXPECT_EQ("", ConfiguredDefaultDatabase());
}

TEST_F(ConfiguredDatabasesTest, TheDefaultIsTheFirstOnItsPath)
{
  const struct
  {
    const char* config;
    const char* expected;
  } kRows[] = {
      {"", ""},
      {"PafDir=/p\n", ""},
      {"ARF/a=/p\n", ""},
      {"PafDir=\nARF/a=\n", ""},
      {"PafDir=/p\nARF/a=/p\n", "a"},
      {"PafDir=/p\nARF/a=/q\nARF/b=/p\nARF/c=/p\n", "b"},
      {"PafDir=/p\nARF/AU/x=/p\nARF/z=/p\n", "z"},
      {"PafDir=/p\nARF/NZ/x=/p\nARF/AU/y=/p\n", "AU.y"},
      {"PafDir=/p\nARF/AU/=/p\n", "AU"},
      {"PafDir=/P\nARF/a=/p\n", ""},
      {"PafDir=/p\nARF/a=/p/\nARF/b=/p \nARF/c=/pp\n", ""},
      {"PafDir=/p;OPENARF=Mem\nARF/a=/p\nARF/b=/p;OPENARF=Mem\n", "b"},
      {"pafdir=/p\nARF/a=/p\n", "a"},
      {"ARF/PafDir=/p\nARF/a=/p\n", ""},
  };
  for (const auto& row : kRows) {
    Configure(row.config);
    EXPECT_EQ(row.expected, ConfiguredDefaultDatabase()) << row.config;
  }
}

TEST_F(ConfiguredDatabasesTest, TheDefaultMayComeFromAWildcard)
{
  MakeDirectory("dbs/one");
  MakeDirectory("dbs/two");
  Configure("PafDir=" + Path("dbs/two") + "\nARF/w=" + Path("dbs/*") + "\n");
  EXPECT_EQ("w.two", ConfiguredDefaultDatabase());
}

}  // namespace
