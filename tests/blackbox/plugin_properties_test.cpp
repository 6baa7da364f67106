// Properties that a searcher or the default plug-in answers, and setting them.
#include <gtest/gtest.h>

#include <climits>
#include <thread>

#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr int kUnknownId = 1000;

/** One instance on the fake of no country, and the Australian fake as default plug-in. */
class PluginPropertiesTest : public SessionTest
{
 protected:
  void SetUp() override
  {
    SessionTest::SetUp();
    workspace.Configure({"PafDir=/paf", "ARF/AU/one=/one", "ARF/AU/opt=/opt;OPENARF=Mem", "ARF/AU=/wild/*",
                         "ARF/plain=/plain", "ArfBaseDir=/base"});
    ClearCalls();
  }

  void ClearCalls()
  {
    fake->clearCalls();
    au->clearCalls();
  }

  /** The request that reached a plug-in last. */
  std::string Request(const Fake& plugin, FakeOperation operation) const
  {
    return plugin.Last(operation).arguments.at(0).text;
  }

  Fake au{"libqxarfau.so"};
};

const char* const kPassedOn[] = {"OutputFields",  "outputFIELDS",  "PafLibVersion", "SortPlanDate",  "Delimiter",
                                 "Barcode:123",   "GIFProperty:x", "BSP:2000",      "anything",      "",
                                 "ArfVersion",    "ArfStatus",     "iPindle",       "Properties2",   "Propertie",
                                 " TestProperty", "CountryCode ",  "UseSockets\t",  "ArfLibVersion2"};

TEST_F(PluginPropertiesTest, OtherNamesGoToTheSearcherAsTheyAre)
{
  fake.Answer(kFakeGetProperties, 0, "an answer");
  for (const char* name : kPassedOn) {
    ClearCalls();
    GuardedBuffer out(24);
    ASSERT_EQ(pafGetPropertiesId(id, name, out.data(), out.size()), 0) << name;
    EXPECT_EQ(out.Text(), "an answer");
    EXPECT_EQ(fake.Sequence(), "GetProperties ") << name;
    const Call call = fake.Last(kFakeGetProperties);
    EXPECT_EQ(call.arguments.at(0), name);
    EXPECT_TRUE(call.arguments.at(1).Is(out.data()));
    EXPECT_EQ(call.arguments.at(2), 24);
    EXPECT_EQ(au.Sequence(), "") << name;
  }
}

TEST_F(PluginPropertiesTest, TheSearchersAnswerIsItsOwnAtEverySize)
{
  fake.Answer(kFakeGetProperties, 0, "an answer");
  for (size_t size = 1; size <= 11; ++size) {
    EXPECT_EQ(Read(id, "anything", size), (Answer{0, std::string("an answer").substr(0, size - 1)}));
  }
  fake.Behave(kFakeGetProperties, kFakeFill);
  for (size_t size : {1u, 2u, 255u, 4096u}) {
    EXPECT_EQ(Read(id, "anything", size), (Answer{0, std::string(size - 1, 'x')}));
  }
  ExpectRefusesNoBuffer([this](char* out, int size) { return pafGetPropertiesId(id, "anything", out, size); });
}

TEST_F(PluginPropertiesTest, TheBufferIsEmptiedBeforeAnybodyIsAsked)
{
  fake.Behave(kFakeGetProperties, kFakeSilent);
  EXPECT_EQ(Read(id, "anything", 8), (Answer{0, ""}));
  fake.Behave(kFakeGetProperties, kFakeSilent, 12);
  EXPECT_EQ(Read(id, "anything", 8), (Answer{12, ""}));
  au.Behave(kFakeGetOtherProperties, kFakeSilent, 12);
  EXPECT_EQ(Read(0, "OutputFields", 8), (Answer{12, ""}));
}

TEST_F(PluginPropertiesTest, ASearchersFailureIsPassedOnAndRemembered)
{
  for (int status : {12, 1, -1, 7777, INT_MAX, INT_MIN}) {
    fake.Answer(kFakeGetProperties, status);
    EXPECT_EQ(Read(id, "anything").status, status);
    EXPECT_EQ(Describe(status), "fake text for " + std::to_string(status));
    EXPECT_EQ(Describe(status), "") << "asking consumes it";
  }
  fake->setProperty("refused", "x", 99);
  for (const char* name : {"ArfVersion:AU.one", "ArfStatus:AU.one"}) {
    fake.Answer(kFakeGetProperties, 12);
    EXPECT_EQ(Read(id, name).status, 12) << name;
    EXPECT_EQ(Describe(12), "fake text for 12") << name;
  }
  EXPECT_EQ(Read(id, "Refused").status, 99);
  EXPECT_EQ(Describe(99), "fake text for 99");
}

TEST_F(PluginPropertiesTest, WhatTheLibraryRefusesIsNotRemembered)
{
  fake.Answer(kFakeGetParsedInput, 12);
  char out[8];
  ASSERT_EQ(pafGetParsedInputId(id, out, sizeof out), 12);
  EXPECT_EQ(Read(id, "ArfLibVersion", 2).status, PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(Read(id, "Properties", 2).status, PAF_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(Read(id, "ArfStatus:AU.nowhere", 2).status, 0);
  EXPECT_EQ(pafSetPropertiesId(kUnknownId, "a", "b"), PAF_ERR_INVALID_ID);
  EXPECT_EQ(Describe(12), "fake text for 12");
}

/** A database's name behind the prefix, and the path it means. */
struct Named
{
  const char* name;
  const char* path;
};

const Named kNamed[] = {{"AU.one", "/one"},  {"aus.ONE", "/one"},    {"AU.opt", "/opt"},
                        {"AU./abs", "/abs"}, {"plain", "/plain"},    {"AU.any", "/wild/any"},
                        {"", "/paf"},        {"dir/", "/base/dir/"}, {"DLL:X;/p", "DLL:X;/p"}};

TEST_F(PluginPropertiesTest, NamesOfDatabasesAreResolvedForThePlugin)
{
  fake.Answer(kFakeGetProperties, 0, "from the searcher");
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  for (const std::string prefix : {"ArfVersion:", "ArfStatus:"}) {
    for (const Named& named : kNamed) {
      for (const std::string& spelling : Spellings(prefix)) {
        SCOPED_TRACE(spelling + named.name);
        EXPECT_EQ(Read(id, spelling + named.name), (Answer{0, "from the searcher"}));
        EXPECT_EQ(Request(fake, kFakeGetProperties), prefix + named.path);
        EXPECT_EQ(Read(0, spelling + named.name), (Answer{0, "from the plug-in"}));
        EXPECT_EQ(Request(au, kFakeGetOtherProperties), prefix + named.path);
      }
    }
  }
}

TEST_F(PluginPropertiesTest, NamesOfNoDatabaseReachNoPlugin)
{
  for (const char* name : {"AU.nowhere/x", "NZ.nowhere", "nowhere", "abcd.x", "NZ", "ZZ.x"}) {
    for (int any : {id, 0, kUnknownId}) {
      SCOPED_TRACE(name);
      EXPECT_EQ(Read(any, std::string("ArfVersion:") + name, 1), (Answer{0, ""}));
      EXPECT_EQ(Read(any, std::string("arfSTATUS:") + name), (Answer{0, "ARF Not Registered"}));
    }
  }
  EXPECT_EQ(fake.Sequence(), "");
  EXPECT_EQ(au.Sequence(), "");
}

TEST_F(PluginPropertiesTest, NotRegisteredIsCutToTheBuffer)
{
  const std::string text = "ARF Not Registered";
  for (size_t size = 1; size <= text.size() + 2; ++size) {
    for (int any : {id, 0}) {
      EXPECT_EQ(Read(any, "ArfStatus:nowhere", size), (Answer{0, text.substr(0, size - 1)}));
    }
    EXPECT_EQ(ReadDefault("ArfStatus:nowhere", size), (Answer{0, text.substr(0, size - 1)}));
  }
}

TEST_F(PluginPropertiesTest, CountryCodeIsThatOfTheSearchersDatabase)
{
  fake->setCountry("Atlantis");
  for (const std::string& spelling : Spellings("CountryCode")) EXPECT_EQ(Read(id, spelling), (Answer{0, "Atlantis"}));
  for (size_t size = 1; size <= 10; ++size) {
    EXPECT_EQ(Read(id, "CountryCode", size), (Answer{0, std::string("Atlantis").substr(0, size - 1)}));
  }
  ClearCalls();
  EXPECT_EQ(Read(id, "CountryCode").text, "Atlantis");
  EXPECT_EQ(fake.Sequence(), "GetArfDb ");
  EXPECT_EQ(fake.Count(kFakeDbGetCountry), 1u);
  EXPECT_EQ(fake.Count(kFakeGetProperties), 0u);
  fake->setCountry("");
  EXPECT_EQ(Read(id, "CountryCode", 1), (Answer{0, ""}));
}

TEST_F(PluginPropertiesTest, PropertyNamesBehindTheLibrarysComeFromTheSearcher)
{
  fake.Answer(kFakeGetProperties, 0, "TheName");
  EXPECT_EQ(Read(id, "PropertyName11"), (Answer{0, "DefaultArf"}));
  EXPECT_EQ(fake.Sequence(), "");
  for (int n : {12, 16, 17, 1000}) {
    ClearCalls();
    EXPECT_EQ(Read(id, "propertyname" + std::to_string(n)), (Answer{0, "TheName"}));
    EXPECT_EQ(Request(fake, kFakeGetProperties), "PropertyName" + std::to_string(n - 11));
    EXPECT_EQ(fake.Count(kFakeGetProperties), 1u);
  }
  for (const char* number : {"0", "-1", "", "x"}) {
    ClearCalls();
    EXPECT_EQ(Read(id, std::string("PropertyName") + number, 1), (Answer{0, ""})) << number;
    EXPECT_EQ(fake.Sequence(), "") << number;
  }
  ExpectWholeOrRefused([this](char* out, int size) { return pafGetPropertiesId(id, "PropertyName12", out, size); },
                       "TheName");
  fake.Answer(kFakeGetProperties, 12, "not this");
  EXPECT_EQ(Read(id, "PropertyName12"), (Answer{12, ""}));
  EXPECT_EQ(Describe(12), "fake text for 12");
}

TEST_F(PluginPropertiesTest, PropertiesListsTheLibrarysAndTheSearchersNames)
{
  const std::string own =
      "OpenARF;ClientCount;PafMachine;CountryCode;ArfLibVersion;ArfLibVersionAu;ArfLibVersionNz;ArfLibVersionUs;"
      "ArfLibVersionUk;ARFs;DefaultArf;";
  fake.Answer(kFakeGetProperties, 0, "One;Two");
  ExpectWholeOrRefused([this](char* out, int size) { return pafGetPropertiesId(id, "Properties", out, size); },
                       own + "One;Two");
  EXPECT_EQ(fake.Last(kFakeGetProperties).arguments.at(0), "Properties");
  EXPECT_EQ(fake.Last(kFakeGetProperties).arguments.at(2), 2048);
  fake.Answer(kFakeGetProperties, 0, "");
  EXPECT_EQ(Read(id, "pROPERTIES"), (Answer{0, own}));
  fake.Behave(kFakeGetProperties, kFakeFill);
  EXPECT_EQ(Read(id, "Properties"), (Answer{0, own + std::string(2047, 'x')}));
  fake.Behave(kFakeGetProperties, kFakeSilent);
  EXPECT_EQ(Read(id, "Properties"), (Answer{0, own}));
  fake.Answer(kFakeGetProperties, 12, "One;Two");
  EXPECT_EQ(Read(id, "Properties"), (Answer{12, ""}));
  EXPECT_EQ(Describe(12), "fake text for 12");
}

const char* const kDefaultPluginRequests[] = {"OutputFields", "PafEngineVersion", "PafLibVersion", "PafVersionInfo",
                                              "SortPlanDate", "outputFIELDS",     "Barcode:1",     "BARCODE:1",
                                              "Barcode2:1,2", "barcode2:",        "Barcode3:x",    "bARCODE3:X",
                                              "GIFProperty:", "gifproperty:Name"};

TEST_F(PluginPropertiesTest, WithoutASearcherTheDefaultPluginAnswersItsNames)
{
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  const int closed = Open("DLL:FakeTwo;/closed");
  ASSERT_EQ(pafClosePafId(closed), 0);
  ClearCalls();
  for (const char* name : kDefaultPluginRequests) {
    for (int none : {0, -1, closed, kUnknownId}) {
      GuardedBuffer out(24);
      ASSERT_EQ(pafGetPropertiesId(none, name, out.data(), out.size()), 0) << name;
      EXPECT_EQ(out.Text(), "from the plug-in") << name;
      const Call call = au.Last(kFakeGetOtherProperties);
      EXPECT_EQ(call.arguments.at(0), name);
      EXPECT_TRUE(call.arguments.at(1).Is(out.data()));
      EXPECT_EQ(call.arguments.at(2), 24);
    }
    EXPECT_EQ(ReadDefault(name), (Answer{0, "from the plug-in"})) << name;
  }
  EXPECT_EQ(fake.Sequence(), "");
  EXPECT_EQ(au->counter(kFakeLiveDbs), 0);
}

TEST_F(PluginPropertiesTest, ABusyInstanceIsAnsweredForByTheDefaultPlugin)
{
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  fake.Answer(kFakeGetProperties, 0, "from the searcher");
  BusyInstance busy(fake, id);
  fake->clearCalls();
  for (const char* name : kDefaultPluginRequests) EXPECT_EQ(Read(id, name), (Answer{0, "from the plug-in"})) << name;
  EXPECT_EQ(Read(id, "ArfStatus:AU.one"), (Answer{0, "from the plug-in"}));
  EXPECT_EQ(Read(id, "PropertyName12"), (Answer{0, "OutputFields"}));
  for (const char* name : {"anything", "CountryCode", "OpenARF"}) EXPECT_EQ(Read(id, name), (Answer{0, ""})) << name;
  EXPECT_EQ(fake.Sequence(), "");
  EXPECT_EQ(busy.Finish(), 0);
  EXPECT_EQ(Read(id, "OutputFields"), (Answer{0, "from the searcher"})) << "idle again";
}

TEST_F(PluginPropertiesTest, AnInstanceWithoutASearcherIsAnsweredForByTheDefaultPlugin)
{
  au.Answer(kFakeGetOtherProperties, 0, "from the plug-in");
  ASSERT_EQ(pafForceCloseAll(), 0);
  ClearCalls();
  for (const char* name : kDefaultPluginRequests) EXPECT_EQ(Read(id, name), (Answer{0, "from the plug-in"})) << name;
  for (const char* name : {"anything", "CountryCode", "OpenARF"}) EXPECT_EQ(Read(id, name), (Answer{0, ""})) << name;
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(pafSetPropertiesId(id, "OpenARF", "AU.one"), PAF_ERR_NO_SEARCHER);
  EXPECT_EQ(fake.Sequence(), "");
  EXPECT_EQ(au.Count(kFakeDbOpen), 0u);
}

TEST_F(PluginPropertiesTest, TheDefaultPluginsFailureIsPassedOnAndNotRemembered)
{
  for (int status : {12, -1, 6406, INT_MAX}) {
    au.Answer(kFakeGetOtherProperties, status);
    EXPECT_EQ(Read(0, "PafLibVersion").status, status);
    EXPECT_EQ(Read(kUnknownId, "ArfVersion:AU.one").status, status);
  }
  au.Answer(kFakeGetOtherProperties, 12);
  EXPECT_EQ(Read(0, "PafLibVersion").status, 12);
  EXPECT_EQ(Describe(12), "");
}

TEST_F(PluginPropertiesTest, TheInstanceIsBusyWhileItsSearcherAnswers)
{
  fake->block(kFakeGetProperties);
  std::thread reader([this] { EXPECT_EQ(Read(id, "anything").status, 0); });
  ASSERT_GT(fake->waitUntilBlocked(kFakeGetProperties, 10000), 0);
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(pafSetPropertiesId(id, "OpenARF", "AU.one"), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(pafGetFindStatusId(id), -1);
  EXPECT_EQ(Property(0, "OpenArfs"), "DLL:FakeTwo;/session;") << "the table is not locked meanwhile";
  fake->unblock(kFakeGetProperties);
  reader.join();
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), 0);
}

TEST_F(PluginPropertiesTest, DatabasesAreOpenedWhileTheDefaultPluginAnswers)
{
  au->block(kFakeGetOtherProperties);
  std::thread reader([] { EXPECT_EQ(Read(0, "PafLibVersion").status, 0); });
  ASSERT_GT(au->waitUntilBlocked(kFakeGetOtherProperties, 10000), 0);
  const int other = Open("AU.one");
  EXPECT_EQ(Property(other, "OpenARF"), "AU.one");
  EXPECT_EQ(pafClosePafId(other), 0);
  au->unblock(kFakeGetOtherProperties);
  reader.join();
}

TEST_F(PluginPropertiesTest, APluginThatThrowsLeavesTheInstanceIdle)
{
  const std::pair<FakeBehaviour, int> kThrows[] = {{kFakeThrowBadAlloc, PAF_ERR_OUT_OF_MEMORY},
                                                   {kFakeThrowError, PAF_ERR_PLUGIN_SYSTEM},
                                                   {kFakeThrowInt, PAF_ERR_PLUGIN_SYSTEM}};
  for (const auto& [behaviour, status] : kThrows) {
    fake.Behave(kFakeGetProperties, behaviour);
    fake.Behave(kFakeSetProperties, behaviour);
    au.Behave(kFakeGetOtherProperties, behaviour);
    for (const char* name : {"anything", "Properties", "PropertyName12", "ArfVersion:AU.one"}) {
      EXPECT_EQ(Read(id, name), (Answer{status, ""})) << name;
    }
    EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), status);
    for (const char* name : {"PafLibVersion", "Barcode:1", "ArfVersion:AU.one"}) {
      EXPECT_EQ(Read(0, name), (Answer{status, ""})) << name;
      EXPECT_EQ(ReadDefault(name), (Answer{status, ""})) << name;
    }
    EXPECT_EQ(pafGetFindStatusId(id), 0);
  }
}

TEST_F(PluginPropertiesTest, SettingPassesNameAndValueOn)
{
  for (const char* name : {"anything", "", "ClientCount", "OpenArfs", "OpenArfPaths", "PropertyName1", "Properties",
                           "CountryCode", "iPindle:x", "UseSockets ", "GeographicalCodes"}) {
    for (const char* value : {"value", "", "True", "a\tb\n"}) {
      ClearCalls();
      EXPECT_EQ(pafSetPropertiesId(id, name, value), 0) << name;
      EXPECT_EQ(fake.Sequence(), "SetProperties ") << name;
      const Call call = fake.Last(kFakeSetProperties);
      EXPECT_EQ(call.arguments.at(0), name);
      EXPECT_EQ(call.arguments.at(1), value);
      EXPECT_EQ(call.arguments.at(2).raw.number, 0) << "the buffer for the reason arrives empty";
      EXPECT_EQ(call.arguments.at(3), 256);
    }
  }
  EXPECT_EQ(au.Sequence(), "");
}

TEST_F(PluginPropertiesTest, SettingNeedsAnInstance)
{
  for (int unknown : {0, -1, kUnknownId, INT_MIN, INT_MAX}) {
    EXPECT_EQ(pafSetPropertiesId(unknown, "anything", "x"), PAF_ERR_INVALID_ID);
    EXPECT_EQ(pafSetPropertiesId(unknown, "OutputFields", "x"), PAF_ERR_INVALID_ID);
    EXPECT_EQ(pafSetPropertiesId(unknown, "OpenARF", "AU.one"), PAF_ERR_INVALID_ID);
  }
  BusyInstance busy(fake, id);
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), PAF_ERR_ID_IN_USE);
  EXPECT_EQ(fake.Count(kFakeSetProperties), 0u);
  EXPECT_EQ(au.Sequence(), "");
}

TEST_F(PluginPropertiesTest, TheReasonOfARefusalIsRemembered)
{
  fake.Answer(kFakeSetProperties, 12, "no such property");
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), 12);
  EXPECT_EQ(Describe(12), "no such property");
  EXPECT_EQ(Describe(12), "");
  fake.Behave(kFakeSetProperties, kFakeFill, 12);
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), 12);
  EXPECT_EQ(Describe(12), std::string(255, 'x'));
  fake.Behave(kFakeSetProperties, kFakeSilent, 12);
  EXPECT_EQ(pafSetPropertiesId(id, "anything", "x"), 12);
  EXPECT_EQ(Describe(12), "fake text for 12") << "without a reason the searcher is asked";
}

TEST_F(PluginPropertiesTest, NullsDoNoHarm)
{
  EXPECT_EQ(pafSetPropertiesId(id, "anything", nullptr), 0);
  EXPECT_EQ(pafSetPropertiesId(id, nullptr, "x"), 0);
  EXPECT_EQ(pafSetPropertiesId(kUnknownId, nullptr, nullptr), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafSetPropertiesId(0, "UseSockets", nullptr), 0);
  EXPECT_EQ(pafSetPropertiesId(0, "TcpHost", nullptr), 0);
  EXPECT_EQ(pafSetPropertiesId(0, "TcpPort", nullptr), 0);
  char out[8] = "full";
  EXPECT_EQ(pafGetPropertiesId(id, nullptr, out, sizeof out), 0);
}

}  // namespace
}  // namespace blackbox
