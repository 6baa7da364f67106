// Properties that the library answers itself, whatever the Id.
#include "blackbox/support/properties.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/row_name.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr int kUnknownId = 1000;

constexpr const char* kLibraryNames[] = {
    "OpenARF",         "ClientCount",     "PafMachine",      "CountryCode", "ArfLibVersion", "ArfLibVersionAu",
    "ArfLibVersionNz", "ArfLibVersionUs", "ArfLibVersionUk", "ARFs",        "DefaultArf"};
constexpr const char* kDefaultPluginNames[] = {"OutputFields", "PafEngineVersion", "PafLibVersion", "PafVersionInfo",
                                               "SortPlanDate"};

std::string HostName()
{
  char name[256] = "";
  gethostname(name, sizeof name - 1);
  return name;
}

/** A property and its answer in the fixture below; "@" stands for the workspace's path. */
struct Row
{
  const char* name;
  const char* property;
  std::string answer;
};

void PrintTo(const Row& row, std::ostream* out)
{
  *out << row.property;
}

const Row kRows[] = {
    {"UseSockets", "UseSockets", "False"},
    {"TcpHost", "TcpHost", "paf.example"},
    {"TcpPort", "TcpPort", "4711"},
    {"OpenArfs", "OpenArfs", "AU.one;nz.TWO;DLL:FakeTwo;/two;"},
    {"OpenArfPaths", "OpenArfPaths", "/one;/nz;/two"},
    {"TestProperty", "TestProperty", "Test Property Value"},
    {"ClientCount", "ClientCount", "3"},
    {"ClientCount2", "ClientCount2", "3"},
    {"PafMachine", "PafMachine", HostName()},
    {"ArfLibVersion", "ArfLibVersion", "5.10.246.2"},
    {"ArfLibVersionAu", "ArfLibVersionAu", "1.libqxarfau.so"},
    {"ArfLibVersionNz", "ArfLibVersionNz", "1.libqxarfnz.so"},
    {"ArfLibVersionUs", "ArfLibVersionUs", "1.libqxarfus.so"},
    {"ArfLibVersionUk", "ArfLibVersionUk", "1.libqxarfuk.so"},
    {"ARFs", "ARFs", "AU.a;AU.one;NZ.Two;main"},
    {"DefaultArf", "DefaultArf", "main"},
    {"PropertyName1", "PropertyName1", "OpenARF"},
    {"PropertyName11", "PropertyName11", "DefaultArf"},
    {"SettingOfTheKey", "iPindle:Answer", "forty two"},
    {"SettingBelow", "iPindle:Sub\\Deep\\Value", "at the bottom"},
    {"SettingThatIsANumber", "iPindle:Sub\\Number", "0x1F"},
    {"SubkeysOfTheKey", "iPindle:", "Other\tSub"},
    {"SubkeysBelow", "iPindle:Sub\\", "Deep\tShallow"},
};

class PropertiesTest : public testing::TestWithParam<Row>
{
 protected:
  void SetUp() override
  {
    ids = {Open("AU.one"), Open("nz.TWO"), Open("DLL:FakeTwo;/two")};
    ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "paf.example"), 0);
    ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "4711"), 0);
    for (const char* country : {"au", "nz", "us", "uk"}) {
      const std::string library = std::string("libqxarf") + country + ".so";
      fakes[library].Answer(kFakeGetOtherProperties, 0, ("1." + library).c_str());
    }
    fakes.ClearCalls();
  }

  Workspace workspace{{"PafDir=/main", "ARF/main=/main", "ARF/AU/one=/one", "ARF/NZ/Two=/nz", "ARF/AU/a=/main",
                       "iPindle/Answer=forty two", "iPindle/Sub/Deep/Value=at the bottom", "iPindle/Sub/Number=0x1F",
                       "iPindle/Sub/Shallow/x=1", "iPindle/Other/x=1"}};
  CountryFakes fakes;
  std::vector<int> ids;
};

INSTANTIATE_TEST_SUITE_P(Every, PropertiesTest, testing::ValuesIn(kRows), RowName());

TEST_P(PropertiesTest, IsAnsweredWholeOrNotAtAllForAnyId)
{
  for (int id : {0, -1, kUnknownId, INT_MIN, INT_MAX, ids[0], ids[2]}) {
    SCOPED_TRACE(id);
    ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(id, GetParam().property, out, size); },
                         GetParam().answer);
  }
}

TEST_P(PropertiesTest, IsAnsweredWithoutAnId)
{
  ExpectWholeOrRefused([&](char* out, int size) { return pafGetProperties(GetParam().property, out, size); },
                       GetParam().answer);
  EXPECT_EQ(Property(0, "ClientCount"), "3") << "no default instance was opened for it";
}

TEST_P(PropertiesTest, IgnoresTheCaseOfTheName)
{
  for (const std::string& name : Spellings(GetParam().property)) {
    EXPECT_EQ(Read(ids[1], name), (Answer{0, GetParam().answer})) << name;
    EXPECT_EQ(ReadDefault(name), (Answer{0, GetParam().answer})) << name;
  }
}

TEST_P(PropertiesTest, IsAnsweredWhileTheInstanceIsBusy)
{
  BusyInstance busy(fakes["libfaketwo.so"], ids[2]);
  EXPECT_EQ(Read(ids[2], GetParam().property), (Answer{0, GetParam().answer}));
}

TEST_P(PropertiesTest, AsksNoSearcherAndRemembersNothing)
{
  Fake& two = fakes["libfaketwo.so"];
  two.Answer(kFakeGetParsedInput, 12);
  char out[8];
  ASSERT_EQ(pafGetParsedInputId(ids[2], out, sizeof out), 12);
  two->clearCalls();
  Read(ids[2], GetParam().property);
  EXPECT_EQ(Read(ids[2], GetParam().property, 1).status, GetParam().answer.empty() ? 0 : PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(two.Sequence(), "");
  EXPECT_EQ(Describe(12), "fake text for 12");
}

class LibraryNamesTest : public testing::Test
{
 protected:
  Workspace workspace{{"ARF/AU/one=/one", "ARF/NZ/two=/nz", "PafDir=/main"}};
  CountryFakes fakes;
};

TEST_F(LibraryNamesTest, TheVersionHasTenCharacters)
{
  EXPECT_EQ(Read(0, "ArfLibVersion", 11), (Answer{0, "5.10.246.2"}));
  EXPECT_EQ(Read(0, "ArfLibVersion", 10), (Answer{PAF_ERR_BUFFER_TOO_SMALL, ""}));
}

TEST_F(LibraryNamesTest, NothingIsOpenAtFirst)
{
  for (const char* name : {"OpenArfs", "OpenArfPaths", "TcpHost", "TcpPort", "OpenARF", "DefaultArf"}) {
    ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(0, name, out, size); }, "");
  }
  EXPECT_EQ(Property(0, "ClientCount"), "0");
  EXPECT_EQ(Property(0, "ClientCount2"), "0");
}

TEST_F(LibraryNamesTest, OpenArfsListsTheNamesInTheOrderOfTheIds)
{
  Open("AU.one");
  Open("NZ.two");
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.one;NZ.two;");
  Open("au.ONE");
  EXPECT_EQ(Property(0, "OpenArfs"), "AU.one;NZ.two;au.ONE;") << "each as it was given";
  EXPECT_EQ(Property(0, "OpenArfPaths"), "/one;/nz") << "a shared database once";
  ASSERT_EQ(pafClosePafId(1), 0);
  EXPECT_EQ(Property(0, "OpenArfs"), "NZ.two;au.ONE;");
  Open("NZ./three");
  EXPECT_EQ(Property(0, "OpenArfs"), "NZ./three;NZ.two;au.ONE;") << "in the free slot";
  EXPECT_EQ(Property(0, "OpenArfPaths"), "/one;/nz;/three");
}

TEST_F(LibraryNamesTest, OpenArfsOfInstancesWithoutASearcherHaveNoName)
{
  Open("AU.one");
  Open("NZ.two");
  ASSERT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(Property(0, "OpenArfs"), ";;");
  EXPECT_EQ(Property(0, "OpenArfPaths"), "");
  EXPECT_EQ(Property(0, "ClientCount"), "2");
  EXPECT_EQ(Property(0, "ClientCount2"), "2");
  EXPECT_EQ(Property(1, "OpenARF"), "");
}

TEST_F(LibraryNamesTest, OpenArfAnswersTheNameAsItWasGiven)
{
  const std::string names[] = {"AU.one", "au.ONE", "NZ./three", "DLL:FakeOne;/p"};
  for (const std::string& name : names) {
    const int id = Open(name);
    ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(id, "OpenArf", out, size); }, name);
    for (const std::string& spelling : Spellings("OpenARF")) EXPECT_EQ(Property(id, spelling), name);
  }
  for (int unknown : {0, -1, kUnknownId}) EXPECT_EQ(Read(unknown, "OpenARF", 1), (Answer{0, ""}));
}

TEST_F(LibraryNamesTest, OpenArfOfTheDefaultDatabaseIsEmpty)
{
  workspace.Configure({"PafDir=@/paf"});
  workspace.MakeDatabase("paf", "DATABASENAME=AU\n");
  int id = 0;
  ASSERT_EQ(pafOpenPafId(&id), 0);
  EXPECT_EQ(Read(id, "OpenARF", 1), (Answer{0, ""}));
  EXPECT_EQ(Property(0, "OpenArfs"), ";");
}

TEST_F(LibraryNamesTest, OpenArfOfABusyInstanceIsEmpty)
{
  const int id = Open("DLL:FakeTwo;/p");
  BusyInstance busy(fakes["libfaketwo.so"], id);
  EXPECT_EQ(Read(id, "OpenARF"), (Answer{0, ""}));
}

TEST_F(LibraryNamesTest, ClientCountFollowsOpeningAndClosing)
{
  for (int id = 1; id <= 12; ++id) {
    ASSERT_EQ(Open("AU.one"), id);
    EXPECT_EQ(Property(id, "ClientCount"), std::to_string(id));
    EXPECT_EQ(Property(id, "ClientCount2"), std::to_string(id));
  }
  EXPECT_EQ(pafOpenArfId2(0, "AU.nowhere"), -PAF_ERR_NOT_CONFIGURED);
  EXPECT_EQ(Property(0, "ClientCount"), "12") << "a failed open does not count";
  for (int id = 12; id >= 1; --id) {
    ASSERT_EQ(pafClosePafId(id), 0);
    EXPECT_EQ(Property(id, "ClientCount"), std::to_string(id - 1));
    EXPECT_EQ(Property(id, "ClientCount2"), std::to_string(id - 1));
  }
}

TEST_F(LibraryNamesTest, ThePluginsAreAskedForTheirVersionOnce)
{
  for (const char* country : {"au", "nz", "us", "uk"}) {
    Fake& fake = fakes[std::string("libqxarf") + country + ".so"];
    Property(0, std::string("ArfLibVersion") + country);
    ASSERT_EQ(fake.Count(kFakeGetOtherProperties), 1u) << country;
    EXPECT_EQ(fake.Last(kFakeGetOtherProperties).arguments.at(0), "PafLibVersion") << country;
    EXPECT_EQ(fake.Last(kFakeGetOtherProperties).arguments.at(2), 256) << country;
    EXPECT_EQ(fake.Sequence(), "GetOtherProperties ");
  }
}

TEST_F(LibraryNamesTest, APluginThatFailsHasNoVersion)
{
  for (const char* country : {"au", "nz", "us", "uk"}) {
    const std::string name = std::string("ArfLibVersion") + country;
    Fake& fake = fakes[std::string("libqxarf") + country + ".so"];
    fake.Answer(kFakeGetOtherProperties, 12, "5.5");
    EXPECT_EQ(Read(0, name, 1), (Answer{0, ""})) << country;
    EXPECT_EQ(Describe(12), "") << "and nothing is remembered";
    fake.Behave(kFakeGetOtherProperties, kFakeSilent);
    EXPECT_EQ(Read(0, name, 1), (Answer{0, ""})) << country;
    fake.Behave(kFakeGetOtherProperties, kFakeFill);
    EXPECT_EQ(Property(0, name), std::string(255, 'x')) << country;
  }
}

/** Without fakes of the test's own, so that only the library keeps a plug-in loaded. */
TEST(PluginVersionsTest, OnlyTheDefaultPluginStaysLoaded)
{
  const Workspace workspace{std::vector<std::string>{}};
  for (const char* country : {"au", "nz", "us", "uk"}) {
    const std::string library = std::string("libqxarf") + country + ".so";
    ASSERT_FALSE(IsLibraryLoaded(library.c_str()));
    EXPECT_EQ(Read(0, std::string("ArfLibVersion") + country), (Answer{0, ""}));
    EXPECT_EQ(IsLibraryLoaded(library.c_str()), std::string(country) == "au") << country;
  }
}

TEST(PluginVersionsTest, AskingDoesNotDisturbAnOpenInstance)
{
  const Workspace workspace{std::vector<std::string>{}};
  const int id = Open("NZ./p");
  for (int time = 0; time < 3; ++time) EXPECT_EQ(Read(id, "ArfLibVersionNz"), (Answer{0, ""}));
  EXPECT_TRUE(IsLibraryLoaded("libqxarfnz.so"));
  EXPECT_EQ(pafGetFindStatusId(id), 0);
  EXPECT_EQ(pafClosePafId(id), 0);
}

TEST(PluginVersionsTest, AnUnloadedDefaultPluginIsLoadedAgain)
{
  const Workspace workspace{std::vector<std::string>{}};
  for (int time = 0; time < 3; ++time) {
    EXPECT_EQ(Read(0, "PafLibVersion"), (Answer{0, ""}));
    EXPECT_TRUE(IsLibraryLoaded("libqxarfau.so"));
    ASSERT_EQ(pafUnloadPlugins(), 0);
    EXPECT_FALSE(IsLibraryLoaded("libqxarfau.so"));
  }
}

TEST_F(LibraryNamesTest, ThePropertyNamesAreNumberedFromOne)
{
  for (int n = 1; n <= 11; ++n) {
    EXPECT_EQ(Property(0, "PropertyName" + std::to_string(n)), kLibraryNames[n - 1]);
  }
  for (int n = 12; n <= 16; ++n) {
    EXPECT_EQ(Property(0, "PropertyName" + std::to_string(n)), kDefaultPluginNames[n - 12]);
  }
  for (const char* number : {"0", "17", "18", "1000", "2147483647", "-1", "-11", "", "x", "x5"}) {
    EXPECT_EQ(Read(0, std::string("PropertyName") + number, 1), (Answer{0, ""})) << number;
  }
  EXPECT_EQ(Property(0, "PropertyName12 and more"), "OutputFields") << "the number ends where its digits end";
  EXPECT_EQ(Property(0, "PROPERTYname007"), "ArfLibVersionNz");
  for (int n : {1, 6, 12, 16}) {
    const std::string name = "PropertyName" + std::to_string(n);
    ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(0, name.c_str(), out, size); },
                         n <= 11 ? kLibraryNames[n - 1] : kDefaultPluginNames[n - 12]);
  }
  EXPECT_EQ(fakes["libqxarfau.so"].Sequence(), "") << "no plug-in is asked for a name";
}

TEST_F(LibraryNamesTest, ANumberTooLargeForAnIntNamesNothing)
{
  for (const char* number : {"4294967297", "4294967308", "18446744073709551617", "-4294967284"}) {
    EXPECT_EQ(Read(0, std::string("PropertyName") + number, 1), (Answer{0, ""})) << "no number wraps round: " << number;
  }
}

TEST_F(LibraryNamesTest, PropertiesListsAllNames)
{
  std::string list;
  for (const char* name : kLibraryNames) list.append(name).append(";");
  for (const char* name : kDefaultPluginNames) list.append(name).append(";");
  list.pop_back();
  for (const std::string& spelling : Spellings("Properties")) EXPECT_EQ(Property(0, spelling), list);
  ExpectWholeOrRefused([](char* out, int size) { return pafGetPropertiesId(0, "Properties", out, size); }, list);
  ExpectWholeOrRefused([](char* out, int size) { return pafGetProperties("Properties", out, size); }, list);
  EXPECT_EQ(fakes["libqxarfau.so"].Sequence(), "");
}

TEST_F(LibraryNamesTest, WithoutAConfigurationThereIsNothingToList)
{
  workspace.RemoveConfiguration();
  for (const char* name : {"ARFs", "DefaultArf", "iPindle:", "iPindle:x", "iPindle:a\\b", "iPindle:a\\"}) {
    EXPECT_EQ(Read(0, name, 1), (Answer{0, ""})) << name;
  }
}

/** A setting's name, how it is asked for, and what comes back. */
struct Setting
{
  std::string line;
  std::string asked;
  std::string answer;
};

TEST_F(LibraryNamesTest, SettingsAreReadOnDemand)
{
  const std::string longest(255 - std::string("iPindle\\").size() - 1, 'k');
  const Setting kSettings[] = {
      {"iPindle/x=1", "iPindle:x", "1"},
      {"iPindle/x= 1 ", "iPindle:x", " 1 "},
      {"IPINDLE/X=big", "ipindle:x", "big"},
      {"iPindle/x=", "iPindle:x", ""},
      {"iPindle/x=a=b/c\\d;e", "iPindle:x", "a=b/c\\d;e"},
      {"iPindle/x=1", "iPindle:y", ""},
      {"x=1", "iPindle:x", ""},
      {"iPindle/a/x=1", "iPindle:x", ""},
      {"iPindle/a/x=1", "iPindle:a\\x", "1"},
      {"iPindle/a/x=1", "iPindle:a/x", ""},
      {"iPindle/a/b/x=1", "iPindle:a\\b\\x", "1"},
      {"iPindle/a/b/x=1", "iPindle:a/b\\x", "1"},
      {"iPindle/a/b/x=1", "iPindle:a\\", "b"},
      {"iPindle/a/x=1", "iPindle:a\\", ""},
      {"iPindle/a/x=1", "iPindle:", "a"},
      {"iPindle/b/x=1\niPindle/a/x=1\niPindle/b/y=1", "iPindle:", "a\tb"},
      {"iPindle/x=1", "iPindle:x=1", ""},
      {"iPindle/x=first\niPindle/x=second", "iPindle:x", "first"},
      {"iPindle/" + longest + "/x=1", "iPindle:" + longest + "\\x", "1"},
      {"iPindle/" + std::string(300, 'k') + "/x=1", "iPindle:" + std::string(300, 'k') + "\\x", ""},
      {"iPindle/" + longest + "/x=1", "iPindle:" + std::string(5000, 'k'), ""},
  };
  for (const Setting& setting : kSettings) {
    workspace.Configure({setting.line});
    EXPECT_EQ(Read(0, setting.asked), (Answer{0, setting.answer})) << setting.line << " asked for " << setting.asked;
  }
}

TEST_F(LibraryNamesTest, UnknownNamesAreEmpty)
{
  for (const char* name : {"", " ", "Nothing", "TestProperty ", "ClientCount3", "OpenArfs;", "iPindle", "ARF",
                           "Propertie", "CountryCode", "Delimiter", "Barcode", "Barcode4:x", "GIFProperty",
                           "ArfVersion", "ArfStatus", "XArfVersion:AU.one", "OutputFields2", "ArfLibVersionInt"}) {
    for (int id : {0, kUnknownId}) {
      ExpectWholeOrRefused([&](char* out, int size) { return pafGetPropertiesId(id, name, out, size); }, "");
    }
    EXPECT_EQ(ReadDefault(name), (Answer{0, ""})) << name;
  }
  EXPECT_EQ(fakes["libqxarfau.so"].Sequence(), "");
}

TEST_F(LibraryNamesTest, ANullNameDoesNoHarm)
{
  char out[8] = "full";
  EXPECT_EQ(pafGetPropertiesId(0, nullptr, out, sizeof out), 0);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(pafGetProperties(nullptr, out, sizeof out), 0);
  ExpectRefusesNoBuffer([](char* buffer, int size) { return pafGetPropertiesId(0, nullptr, buffer, size); });
  ExpectRefusesNoBuffer([](char* buffer, int size) { return pafGetProperties(nullptr, buffer, size); });
}

}  // namespace
}  // namespace blackbox
