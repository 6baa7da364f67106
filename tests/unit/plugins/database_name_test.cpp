/** Each test uses names of its own, because resolved paths are remembered for the life of the process. */
#include "plugins/database_name.h"

#include <gtest/gtest.h>

#include <string>

#include "qxpaf/paf.h"
#include "support/config_sandbox.h"

namespace {

using namespace qxpaf;
using test_support::ConfigSandbox;

struct Resolved
{
  int status;
  std::string path;
  std::string country;
  std::string options;

  bool operator==(const Resolved&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Resolved& r)
{
  return out << r.status << " path '" << r.path << "' country '" << r.country << "' options '" << r.options << "'";
}

/** Resolves with outputs that hold something from before. */
Resolved Resolve(const std::string& name)
{
  Resolved r{0, "before", "before", "before"};
  r.status = GetArfPath(name.c_str(), r.path, r.country, r.options);
  if (r.status != 0) return {r.status, "", "", ""};
  return r;
}

class DatabaseName : public testing::Test
{
 protected:
  void SetUp() override { ExpireArfPaths(); }
  void TearDown() override { ExpireArfPaths(); }

  ConfigSandbox sandbox_;
};

struct Row
{
  const char* name;
  Resolved expected;
};

TEST_F(DatabaseName, IsResolvedThroughTheConfiguration)
{
  sandbox_.Configure(
      "ArfBaseDir=/base\n"
      "PafDir=/default;OPENARF=Ram\n"
      "ARF/AU/Main=/au/main\n"
      "ARF/AU/=/au/plain\n"
      "ARF/AU/x.y=/au/xy\n"
      "ARF/US/m=/us/m\n"
      "ARF/NZ/m=/nz/m;OpenArf=Map\n"
      "ARF/UK/m=/uk/m;a;b\n"
      "ARF/INT/m=/int/m;\n"
      "ARF/Free=/free\n"
      "ARF/abcd=/abcd\n"
      "ARF/Plug=DLL:Other;/other/path\n"
      "ARF/NZ=/nz/all/*\n"
      "ARF/US=/us/all?\n"
      "ARF/UK=/uk/not-a-wildcard\n"
      "ARF/INT=*\n"
      "ARF/=/any/*\n"
      "ARF/AU/empty=\n");
  const Resolved unknown{PAF_ERR_UNKNOWN_COUNTRY, "", "", ""};
  const Resolved notConfigured{PAF_ERR_NOT_CONFIGURED, "", "", ""};
  const Row rows[] = {
      // The form that names a plug-in is not touched.
      {"DLL:Base;/p", {0, "DLL:Base;/p", "", ""}},
      {"dll:Base", {0, "dll:Base", "", ""}},
      {"Dll:", {0, "Dll:", "", ""}},
      // Countries in all their codes, in any case.
      {"au.main", {0, "/au/main", "AU", ""}},
      {"AUS.Main", {0, "/au/main", "AU", ""}},
      {"us.m", {0, "/us/m", "US", ""}},
      {"Usa.m", {0, "/us/m", "US", ""}},
      {"nz.m", {0, "/nz/m", "NZ", ";OpenArf=Map;"}},
      {"NZL.m", {0, "/nz/m", "NZ", ";OpenArf=Map;"}},
      {"uk.m", {0, "/uk/m", "UK", ";a;b;"}},
      {"gb.m", {0, "/uk/m", "UK", ";a;b;"}},
      {"GBR.m", {0, "/uk/m", "UK", ";a;b;"}},
      {"int.m", {0, "/int/m", "INT", ";;"}},
      // A country alone is its unnamed value, and a "." with nothing behind it changes nothing.
      {"AU", {0, "/au/plain", "AU", ""}},
      {"aus", {0, "/au/plain", "AU", ""}},
      {"au.", {0, "/au/plain", "AU", ""}},
      {"US", notConfigured},
      // Only the first "." parts.
      {"au.x.y", {0, "/au/xy", "AU", ""}},
      // Unknown countries.
      {"abcd.x", unknown},
      {"xx.main", unknown},
      {"xyz.main", unknown},
      {"a.b", unknown},
      {".b", unknown},
      {"..", unknown},
      {"austr.main", unknown},
      {"/a.b", unknown},
      {"xx.", {0, "/any/xx.", "", ""}},
      {"Free", {0, "/free", "", ""}},
      {"abcd", {0, "/abcd", "", ""}},
      {"Plug", {0, "DLL:Other;/other/path", "", ""}},
      // Absolute paths are taken as they are, options and all.
      {"/some/where", {0, "/some/where", "", ""}},
      {"/some/where.d/x;OPENARF=Ram", {0, "/some/where.d/x;OPENARF=Ram", "", ""}},
      {"\\some\\where", {0, "\\some\\where", "", ""}},
      {"C:where", {0, "C:where", "", ""}},
      {"au./some/where", {0, "/some/where", "AU", ""}},
      {"gb.c:", {0, "c:", "UK", ""}},
      // Directories below the base directory.
      {"sub/", {0, "/base/sub/", "", ""}},
      {"sub\\", {0, "/base/sub\\", "", ""}},
      {"nz.sub/dir/", {0, "/base/sub/dir/", "NZ", ""}},
      // The default database; what looks like options is part of it.
      {"", {0, "/default;OPENARF=Ram", "", ""}},
      // Wild cards of a country.
      {"nz.new", {0, "/nz/all/new", "NZ", ""}},
      {"us.new", {0, "/us/new", "US", ""}},
      {"uk.new", notConfigured},
      {"int.new", {0, "new", "INT", ""}},
      {"whatever", {0, "/any/whatever", "", ""}},
      {"nz..new", notConfigured},
      {"nz.a\\b", notConfigured},
      {"au.new", notConfigured},
      {"au.empty", {0, "", "AU", ""}},
      // The store refuses such names with its own code.
      {"nz.a/b", {1321, "", "", ""}},
      {"relative/path", {1321, "", "", ""}},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, Resolve(row.name)) << row.name;
  for (const Row& row : rows) EXPECT_EQ(row.expected, Resolve(row.name)) << row.name << " (second time)";
}

TEST_F(DatabaseName, IsRememberedExactlyAsWritten)
{
  sandbox_.Configure("ARF/AU/Main=/one;OpenArf=Ram\nArfBaseDir=/base\nPafDir=/default\n");
  EXPECT_EQ((Resolved{0, "/one", "AU", ";OpenArf=Ram;"}), Resolve("au.Main"));
  EXPECT_EQ("/base/x/", Resolve("x/").path);
  EXPECT_EQ("/default", Resolve("").path);
  sandbox_.Configure("ARF/AU/Main=/two\nArfBaseDir=/base2\nPafDir=/default2\n");
  EXPECT_EQ((Resolved{0, "/one", "AU", ";OpenArf=Ram;"}), Resolve("au.Main"));
  EXPECT_EQ("/base/x/", Resolve("x/").path);
  EXPECT_EQ("/default", Resolve("").path);
  EXPECT_EQ("/two", Resolve("au.main").path) << "another way to write the name is another name";
  ExpireArfPaths();
  EXPECT_EQ((Resolved{0, "/two", "AU", ""}), Resolve("au.Main"));
  EXPECT_EQ("/base2/x/", Resolve("x/").path);
  EXPECT_EQ("/default2", Resolve("").path);
}

/** A name of 1000 characters that only a wild card of the configuration turns into a path. */
std::string LongName(int number)
{
  const std::string digits = std::to_string(number);
  return std::string(1000 - digits.size(), 'n') + digits;
}

TEST_F(DatabaseName, AreRememberedUpToALimit)
{
  constexpr int kFit = 300;       // with their paths 600 kB
  constexpr int kTooMany = 1000;  // 2 MB
  for (const char* const round : {"first", "after an expiry"}) {
    sandbox_.Configure("ARF/=/one/*\n");
    for (int i = 0; i < kTooMany; ++i) ASSERT_EQ("/one/" + LongName(i), Resolve(LongName(i)).path) << round;
    sandbox_.Configure("ARF/=/two/*\n");
    for (int i = 0; i < kFit; ++i) ASSERT_EQ("/one/" + LongName(i), Resolve(LongName(i)).path) << round << i;
    EXPECT_EQ("/two/" + LongName(kTooMany - 1), Resolve(LongName(kTooMany - 1)).path) << round;
    int remembered = 0;
    for (int i = 0; i < kTooMany; ++i) remembered += Resolve(LongName(i)).path.starts_with("/one/");
    EXPECT_LE(remembered, (1 << 20) / 2000) << round;
    ExpireArfPaths();
    EXPECT_EQ("/two/" + LongName(0), Resolve(LongName(0)).path) << round;
    ExpireArfPaths();
  }
}

TEST_F(DatabaseName, FailuresAreNotRemembered)
{
  sandbox_.Configure("Other=1\n");
  for (const char* const name : {"", "au.Main", "x/"}) EXPECT_EQ(PAF_ERR_NOT_CONFIGURED, Resolve(name).status) << name;
  sandbox_.Configure("ARF/AU/Main=/one\nArfBaseDir=/base/\nPafDir=/default\n");
  EXPECT_EQ("/one", Resolve("au.Main").path);
  EXPECT_EQ("/base/x/", Resolve("x/").path);
  EXPECT_EQ("/default", Resolve("").path);
}

TEST_F(DatabaseName, NeedsAConfigurationFile)
{
  if (ConfigSandbox::MachineHasConfig()) GTEST_SKIP() << "this machine has /usr/etc/.morvex";
  for (const char* const name : {"", "au.Main", "AU", "x/"}) {
    EXPECT_EQ(PAF_ERR_CONFIGURATION, Resolve(name).status) << name;
  }
  EXPECT_EQ("/path", Resolve("/path").path);
}

struct ModeRow
{
  int mode;
  const char* options;
  const char* openPaf;
  int expected;
};

TEST_F(DatabaseName, OpeningModeComesFromTheCallerThenTheOptionsThenTheConfiguration)
{
  const ModeRow rows[] = {
      {1, ";OPENARF=Ram;", "Map", 1},
      {2, "", "Map", 2},
      {3, "", "", 3},
      {4, "", "", 4},
      {5, "", "", 1},
      {-1, "", "Ram", 1},
      {2147483647, "", "Ram", 1},
      {0, "", "", 1},
      {0, "", "Ram", 2},
      {0, "", "mem", 2},
      {0, "", "MAP", 3},
      {0, "", "Disk", 1},
      {0, "", "Ramp", 1},
      {0, ";OPENARF=Ram;", "Map", 2},
      {0, ";openarf=mem;", "Map", 2},
      {0, ";x;OpenArf=Map;y;", "Ram", 3},
      {0, ";OpenArf=disk;", "Ram", 1},
      {0, ";OpenArf=;", "Ram", 1},
      {0, ";XOpenArf=Ram;", "Map", 3},
      {0, ";OpenArf=Ram", "Map", 3},
  };
  for (const ModeRow& row : rows) {
    sandbox_.Configure(std::string("OpenPaf=") + row.openPaf + "\n");
    EXPECT_EQ(row.expected, OpeningMode(row.mode, row.options)) << row.mode << row.options << row.openPaf;
  }
  sandbox_.Configure("Other=1\n");
  EXPECT_EQ(1, OpeningMode(0, ""));
}

struct VersionFileRow
{
  const char* content;
  const char* country;
};

TEST_F(DatabaseName, CountryComesFromTheVersionFile)
{
  const VersionFileRow rows[] = {
      {"", "AU"},
      {"DATABASENAME=NZ\n", "NZ"},
      {"DATABASENAME=nz paf\n", "NZ"},
      {"databasename=NewZealand 2026\n", "NZ"},
      {"DatabaseName=New Zealand\n", "NZ"},
      {"DATABASENAME=New  Zealand\n", "AU"},
      {"DATABASENAME=UK\n", "UK"},
      {"DATABASENAME=GBR\n", "UK"},
      {"DATABASENAME=USA\n", "US"},
      {"DATABASENAME=US \n", "US"},
      {"DATABASENAME=US\n", "AU"},
      {"DATABASENAME=US", "AU"},
      {"DATABASENAME=AU\n", "AU"},
      {"DATABASENAME= NZ\n", "AU"},
      {" DATABASENAME=NZ\n", "AU"},
      {"DATABASENAME\n=NZ\n", "AU"},
      {"VERSION=1\r\nDATABASENAME=UK\r\nDATABASENAME=NZ\r\n", "UK"},
  };
  for (const VersionFileRow& row : rows) {
    sandbox_.Dir().Write("db/PAF.ver", row.content);
    std::string country;
    char errText[8] = "keep";
    EXPECT_EQ(0, CountryOfDatabase(sandbox_.Dir().Path("db"), country, errText, sizeof errText));
    EXPECT_EQ(row.country, country) << row.content;
    EXPECT_EQ(0, CountryOfDatabase(sandbox_.Dir().Path("db/"), country, nullptr, 0));
    EXPECT_EQ(row.country, country) << row.content;
    EXPECT_STREQ("keep", errText);
  }
  // Lines are read in pieces of 255 characters; a piece is a line of its own.
  sandbox_.Dir().Write("db/PAF.ver", std::string(255, 'x') + "DATABASENAME=NZ\n");
  std::string country;
  EXPECT_EQ(0, CountryOfDatabase(sandbox_.Dir().Path("db"), country, nullptr, 0));
  EXPECT_EQ("NZ", country);
}

TEST_F(DatabaseName, AMissingVersionFileIsNamed)
{
  const std::string directory = sandbox_.Dir().MakeDirectory("db");
  const std::string file = directory + "/PAF.ver";
  std::string country;
  char errText[512];
  EXPECT_EQ(PAF_ERR_OPEN_FILE, CountryOfDatabase(directory, country, errText, sizeof errText));
  EXPECT_EQ(file, errText);
  EXPECT_EQ(PAF_ERR_OPEN_FILE, CountryOfDatabase(directory, country, errText, 10));
  EXPECT_EQ(file.substr(0, 9), errText);
  EXPECT_EQ(PAF_ERR_OPEN_FILE, CountryOfDatabase(directory, country, nullptr, 0));
}

}  // namespace
