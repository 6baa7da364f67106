// From the name of a database to a plug-in and a path. Each row runs in a process of its own, because the library keeps
// resolved names and base directories for the life of the process.
#include <gtest/gtest.h>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kAu = "libqxarfau.so";
constexpr const char* kNz = "libqxarfnz.so";
constexpr const char* kUs = "libqxarfus.so";
constexpr const char* kUk = "libqxarfuk.so";
constexpr const char* kInt = "libqxarfint.so";
constexpr const char* kOne = "libfakeone.so";

/** "@" stands for the workspace; the directories au, nz, us, uk and base/nz in it hold databases of these countries,
    with.dot and plain databases of New Zealand. */
struct Row
{
  std::vector<std::string> configuration;
  const char* name;
  int status;
  const char* library;
  const char* path;
};

Row Opens(std::vector<std::string> configuration, const char* name, const char* library, const char* path)
{
  return {std::move(configuration), name, 0, library, path};
}

Row Fails(std::vector<std::string> configuration, const char* name, int status)
{
  return {std::move(configuration), name, status, "", ""};
}

void PrintTo(const Row& row, std::ostream* out)
{
  *out << "'" << row.name << "'";
}

class DatabaseNamesTest : public testing::TestWithParam<Row>
{
 protected:
  DatabaseNamesTest()
  {
    workspace.MakeDatabase("au", "DATABASENAME=AU\n");
    workspace.MakeDatabase("uk", "DATABASENAME=UK\n");
    workspace.MakeDatabase("us", "DATABASENAME=USA\n");
    for (const char* directory : {"nz", "base/nz", "with.dot", "plain"})
      workspace.MakeDatabase(directory, "DATABASENAME=NZ\n");
  }

  Workspace workspace;
  CountryFakes fakes;
};

TEST_P(DatabaseNamesTest, LeadsToThePluginAndThePath)
{
  const Row& row = GetParam();
  workspace.Configure(row.configuration);
  const std::string name = Expand(row.name, workspace);
  int id = 0;
  ASSERT_EQ(pafOpenArfId(&id, 1, name.c_str()), row.status) << name;
  const Opened opened = fakes.TheOpen();
  EXPECT_EQ(opened.library, row.library);
  EXPECT_EQ(opened.path, Expand(row.path, workspace));
  if (row.status == 0) {
    EXPECT_EQ(pafClosePafId(id), 0);
  }
  EXPECT_EQ(fakes.Counter(kFakeLiveDbs), 0);
}

// A country, "." and a database name: ARF/<country>/<name>=.
INSTANTIATE_TEST_SUITE_P(
    Countries, DatabaseNamesTest,
    testing::Values(Opens({"ARF/AU/main=/p"}, "AU.main", kAu, "/p"), Opens({"ARF/AU/main=/p"}, "au.main", kAu, "/p"),
                    Opens({"ARF/AU/main=/p"}, "aus.main", kAu, "/p"), Opens({"ARF/AU/main=/p"}, "AUS.MAIN", kAu, "/p"),
                    Opens({"ARF/NZ/main=/p"}, "NZ.main", kNz, "/p"), Opens({"ARF/NZ/main=/p"}, "nZl.main", kNz, "/p"),
                    Opens({"ARF/US/main=/p"}, "US.main", kUs, "/p"), Opens({"ARF/US/main=/p"}, "Usa.main", kUs, "/p"),
                    Opens({"ARF/UK/main=/p"}, "UK.main", kUk, "/p"), Opens({"ARF/UK/main=/p"}, "gb.main", kUk, "/p"),
                    Opens({"ARF/UK/main=/p"}, "GBR.main", kUk, "/p"),
                    Opens({"ARF/INT/main=/p"}, "int.main", kInt, "/p"),
                    Fails({"ARF/GB/main=/p"}, "GB.main", PAF_ERR_NOT_CONFIGURED),
                    Fails({"ARF/AUS/main=/p"}, "AUS.main", PAF_ERR_NOT_CONFIGURED)));

INSTANTIATE_TEST_SUITE_P(
    Splitting, DatabaseNamesTest,
    testing::Values(Opens({"ARF/AU/x.y=/p"}, "au.x.y", kAu, "/p"), Opens({"ARF/AU/x.=/p"}, "au.x.", kAu, "/p"),
                    Opens({"ARF/AU/.y=/p"}, "au..y", kAu, "/p"), Opens({"ARF/AU/=/p"}, "AU.", kAu, "/p"),
                    Fails({"ARF/abcd.x=@/nz"}, "abcd.x", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/a.x=@/nz"}, "a.x", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/xx.y=@/nz"}, "xx.y", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/xxx.y=@/nz"}, "xxx.y", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/.x=@/nz"}, ".x", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/australia.x=@/nz"}, "australia.x", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/ZZ/x=@/nz"}, "ZZ.x", PAF_ERR_UNKNOWN_COUNTRY),
                    Fails({"ARF/DE/x=@/nz"}, "DE./abs", PAF_ERR_UNKNOWN_COUNTRY),
                    Opens({"ARF/xx.=@/nz"}, "xx.", kNz, "@/nz"), Opens({"ARF/abcd.=@/nz"}, "abcd.", kNz, "@/nz"),
                    Fails({}, "xx.", PAF_ERR_NOT_CONFIGURED)));

// Without a country the database itself says which it is.
INSTANTIATE_TEST_SUITE_P(NoCountry, DatabaseNamesTest,
                         testing::Values(Opens({"ARF/abcd=@/nz"}, "abcd", kNz, "@/nz"),
                                         Opens({"arf/ABCD=@/uk"}, "abcd", kUk, "@/uk"),
                                         Opens({"ARF/x=@/us"}, "x", kUs, "@/us"),
                                         Opens({"ARF/DE=@/au"}, "DE", kAu, "@/au"),
                                         Fails({"ARF/AU/abcd=@/nz"}, "abcd", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"abcd=@/nz"}, "abcd", PAF_ERR_NOT_CONFIGURED)));

// A country alone names the nameless value of its key.
INSTANTIATE_TEST_SUITE_P(
    CountryAlone, DatabaseNamesTest,
    testing::Values(Opens({"ARF/AU/=/p"}, "AU", kAu, "/p"), Opens({"ARF/AU/=/p"}, "aus", kAu, "/p"),
                    Opens({"ARF/UK/=/p"}, "GB", kUk, "/p"), Opens({"ARF/US/=/p"}, "USA", kUs, "/p"),
                    Opens({"ARF/NZ/=/p"}, "nzl", kNz, "/p"), Opens({"ARF/INT/=/p"}, "Int", kInt, "/p"),
                    Fails({"ARF/AU=/p"}, "AU", PAF_ERR_NOT_CONFIGURED),
                    Fails({"ARF/AU=/p/*"}, "AU", PAF_ERR_NOT_CONFIGURED),
                    Fails({"ARF/AU/main=/p"}, "AU", PAF_ERR_NOT_CONFIGURED)));

// The wild card of a country stands for every name that has no line of its own.
INSTANTIATE_TEST_SUITE_P(WildCards, DatabaseNamesTest,
                         testing::Values(Opens({"ARF/AU=/dir/*"}, "AU.main", kAu, "/dir/main"),
                                         Opens({"ARF/AU=/dir/?"}, "AU.main", kAu, "/dir/main"),
                                         Opens({"ARF/AU=/dir/ab*"}, "aus.Main", kAu, "/dir/Main"),
                                         Opens({"ARF/UK=/dir/*"}, "GBR.x", kUk, "/dir/x"),
                                         Opens({"ARF/AU=/dir/*", "ARF/AU/main=/own"}, "AU.main", kAu, "/own"),
                                         Opens({"ARF/AU/main=/own", "ARF/AU=/dir/*"}, "AU.other", kAu, "/dir/other"),
                                         Opens({"ARF/AU=/dir/*"}, "AU.x.y", kAu, "/dir/x.y"),
                                         Opens({"ARF/=@/*"}, "plain", kNz, "@/plain")));

INSTANTIATE_TEST_SUITE_P(NoWildCards, DatabaseNamesTest,
                         testing::Values(Fails({"ARF/AU=/dir/"}, "AU.main", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/AU="}, "AU.main", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/AU=/dir/*;OpenArf=Ram"}, "AU.main", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/AU=/dir/* "}, "AU.main", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/NZ=/dir/*"}, "AU.main", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/AU=/dir/*"}, "AU..main", PAF_ERR_NOT_CONFIGURED)));

// Names that cannot be names of values.
INSTANTIATE_TEST_SUITE_P(BadValueNames, DatabaseNamesTest,
                         testing::Values(Fails({"ARF/AU=/dir/*"}, "AU.a/b", 1321),
                                         Fails({"ARF/sub/db=@/nz"}, "sub/db", 1321),
                                         Fails({"ARF/AU/a=b=/p"}, "AU.a=b", 1321)));

INSTANTIATE_TEST_SUITE_P(AbsolutePaths, DatabaseNamesTest,
                         testing::Values(Opens({}, "AU./some/path", kAu, "/some/path"),
                                         Opens({}, "au.\\some\\path", kAu, "\\some\\path"),
                                         Opens({}, "NZ.C:\\data", kNz, "C:\\data"), Opens({}, "US.x:", kUs, "x:"),
                                         Opens({}, "AU./", kAu, "/"), Opens({}, "AU./some/path/", kAu, "/some/path/"),
                                         Opens({}, "AU./p;OpenArf=Ram", kAu, "/p;OpenArf=Ram"),
                                         Opens({"ARF/AU//some/path=/other"}, "AU./some/path", kAu, "/some/path"),
                                         Opens({}, "@/nz", kNz, "@/nz"), Opens({}, "@/nz/", kNz, "@/nz/"),
                                         Opens({}, "@/with.dot", kNz, "@/with.dot")));

// A "." at the third or fourth place always splits, also inside what looks like a path.
INSTANTIATE_TEST_SUITE_P(SplitPaths, DatabaseNamesTest,
                         testing::Values(Fails({}, "/ab.c", PAF_ERR_UNKNOWN_COUNTRY),
                                         Fails({}, "/a.c/d", PAF_ERR_UNKNOWN_COUNTRY)));

INSTANTIATE_TEST_SUITE_P(BaseDirectory, DatabaseNamesTest,
                         testing::Values(Opens({"ArfBaseDir=/base"}, "AU.sub/", kAu, "/base/sub/"),
                                         Opens({"ArfBaseDir=/base/"}, "AU.sub/", kAu, "/base/sub/"),
                                         Opens({"arfbasedir=/base"}, "NZ.sub\\", kNz, "/base/sub\\"),
                                         Opens({"ArfBaseDir=/base"}, "AU.a/b/", kAu, "/base/a/b/"),
                                         Opens({"ArfBaseDir=@/base"}, "nz/", kNz, "@/base/nz/"),
                                         Fails({}, "AU.sub/", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"Other/ArfBaseDir=/base"}, "AU.sub/", PAF_ERR_NOT_CONFIGURED)));

INSTANTIATE_TEST_SUITE_P(DefaultDatabase, DatabaseNamesTest,
                         testing::Values(Opens({"PafDir=@/nz"}, "", kNz, "@/nz"),
                                         Opens({"pafdir=@/au"}, "", kAu, "@/au"),
                                         Opens({"PafDir=DLL:FakeOne;/p"}, "", kOne, "/p"),
                                         Fails({}, "", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/=@/nz"}, "", PAF_ERR_NOT_CONFIGURED)));

// Plug-ins named by the application or, instead of a path, by the configuration.
INSTANTIATE_TEST_SUITE_P(
    NamedPlugins, DatabaseNamesTest,
    testing::Values(Opens({}, "DLL:FakeOne;/p", kOne, "/p"), Opens({}, "dll:fakeone;/p", kOne, "/p"),
                    Opens({}, "Dll:FAKEONE;/P/q", kOne, "/P/q"), Opens({}, "DLL:FakeOne", kOne, ""),
                    Opens({}, "DLL:FakeOne;", kOne, ""), Opens({}, "DLL:FakeOne;/p;x", kOne, "/p;x"),
                    Opens({}, "DLL:FakeOne;/p;OpenArf=Ram", kOne, "/p;OpenArf=Ram"),
                    Opens({}, "DLL:qxarfnz;/p", kNz, "/p"), Opens({}, "DLL:FakeOne;au.x", kOne, "au.x"),
                    Opens({"ARF/x=DLL:FakeOne;/p"}, "x", kOne, "/p"),
                    Opens({"ARF/AU/x=dll:FakeOne;/p;q"}, "AU.x", kOne, "/p;q"),
                    Opens({"ARF/AU/x=DLL:FakeOne"}, "AU.x", kOne, ""),
                    Fails({}, "DLL:FakeNowhere;/p", PAF_ERR_LIBRARY_NOT_LOADED),
                    Fails({}, "DLL:", PAF_ERR_LIBRARY_NOT_LOADED), Fails({}, "DLL", PAF_ERR_NOT_CONFIGURED)));

// Options are cut off a configured path.
INSTANTIATE_TEST_SUITE_P(
    Options, DatabaseNamesTest,
    testing::Values(Opens({"ARF/AU/x=/p;OpenArf=Ram"}, "AU.x", kAu, "/p"), Opens({"ARF/AU/x=/p;"}, "AU.x", kAu, "/p"),
                    Opens({"ARF/AU/x=/p;a;b"}, "AU.x", kAu, "/p"), Opens({"ARF/AU/x=;a"}, "AU.x", kAu, ""),
                    Opens({"ARF/x=@/nz;a=b"}, "x", kNz, "@/nz"), Opens({"ARF/AU/x="}, "AU.x", kAu, "")));

// The configuration file's own rules, as far as they show here.
INSTANTIATE_TEST_SUITE_P(ConfigurationLines, DatabaseNamesTest,
                         testing::Values(Opens({"  \t ARF/AU/x=/p"}, "AU.x", kAu, "/p"),
                                         Opens({"ARF/AU/x=/p\r"}, "AU.x", kAu, "/p"),
                                         Opens({"arf/au/X=/P/q"}, "AU.x", kAu, "/P/q"),
                                         Opens({"ARF/AU/x=/p "}, "AU.x", kAu, "/p "),
                                         Opens({"ARF/AU/x=/first", "ARF/AU/x=/second"}, "AU.x", kAu, "/first"),
                                         Opens({"# no comment syntax", "", "   ", "ARF/AU/x=/p"}, "AU.x", kAu, "/p"),
                                         Opens({"ARF/AU/x=/p=q"}, "AU.x", kAu, "/p=q"),
                                         Fails({"ARF/AU/x =/p"}, "AU.x", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF\\AU\\x=/p"}, "AU.x", PAF_ERR_NOT_CONFIGURED),
                                         Fails({"ARF/AU/xy=/p"}, "AU.x", PAF_ERR_NOT_CONFIGURED)));

}  // namespace
}  // namespace blackbox
