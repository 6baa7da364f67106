// The properties that choose between local and remote mode, and what is still answered here in remote mode.
#include <gtest/gtest.h>

#include <climits>

#include "blackbox/support/country_fakes.h"
#include "blackbox/support/guarded_buffer.h"
#include "blackbox/support/properties.h"
#include "blackbox/support/session.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"

namespace blackbox {
namespace {

/** What every request that has to travel answers: nobody listens at the server's address. */
constexpr int kCannotTravel = PAF_ERR_SOCKET_CONNECT;
constexpr const char* kWhy = "socket connect. socket connect error to 127.0.0.1 1: (111) Connection refused";

const std::vector<std::string> kLocal = {"ARF/AU/x=/x", "ARF/NZ/y=/y", "PafDir=@/paf", "iPindle/z=1"};

class RemotePropertiesTest : public testing::Test
{
 protected:
  void SetUp() override { workspace.MakeDatabase("paf", "DATABASENAME=AU\n"); }

  void Configure(const std::string& line)
  {
    std::vector<std::string> lines = kLocal;
    lines.push_back(line);
    workspace.Configure(lines);
  }

  /** Whether opening is done here; closes what it opened. */
  bool IsLocal()
  {
    const int id = pafOpenArfId2(0, "AU.x");
    if (id > 0) {
      EXPECT_EQ(pafClosePafId(id), 0);
    }
    return id > 0;
  }

  Workspace workspace{kLocal};
  CountryFakes fakes;
};

struct Switch
{
  const char* value;
  bool remote;
};

const Switch kSwitches[] = {{"True", true},   {"true", true},   {"TRUE", true},   {"tRuE", true}, {"False", false},
                            {"yes", false},   {"1", false},     {"", false},      {"Tru", false}, {"Truee", false},
                            {" True", false}, {"True ", false}, {nullptr, false}, {"-1", false},  {"on", false}};

TEST_F(RemotePropertiesTest, UseSocketsSwitchesTheMode)
{
  const std::vector<std::string> spellings = Spellings("UseSockets");
  size_t turn = 0;
  for (const Switch& to : kSwitches) {
    for (const char* before : {"True", "False"}) {
      SCOPED_TRACE(to.value != nullptr ? to.value : "null");
      const char* const name = spellings[turn++ % spellings.size()].c_str();
      EXPECT_EQ(pafSetPropertiesId(0, name, before), 0);
      EXPECT_EQ(pafSetPropertiesId(0, name, to.value), 0);
      EXPECT_EQ(Property(0, name), to.remote ? "True" : "False");
      EXPECT_EQ(IsLocal(), !to.remote);
      EXPECT_EQ(pafSetProperties(name, before), 0);
      EXPECT_EQ(pafSetProperties(name, to.value), 0);
      EXPECT_EQ(ReadDefault(name), (Answer{0, to.remote ? "True" : "False"}));
    }
  }
}

TEST_F(RemotePropertiesTest, TheSwitchLooksNoIdUp)
{
  const int id = Open("DLL:FakeTwo;/p");
  BusyInstance busy(fakes["libfaketwo.so"], id);
  for (int any : {id, 0, -1, 1000, INT_MIN, INT_MAX}) {
    EXPECT_EQ(pafSetPropertiesId(any, "UseSockets", "True"), 0);
    EXPECT_EQ(pafSetPropertiesId(any, "TcpHost", "host"), 0);
    EXPECT_EQ(pafSetPropertiesId(any, "TcpPort", "1"), 0);
    EXPECT_EQ(Property(any, "UseSockets"), "True");
    EXPECT_EQ(pafSetPropertiesId(any, "UseSockets", "False"), 0);
  }
  EXPECT_EQ(fakes["libfaketwo.so"].Count(kFakeSetProperties), 0u);
}

TEST_F(RemotePropertiesTest, UseSocketsIsFalseUntilTheModeIsDecided)
{
  Configure("PindleSvr/TcpPort=1");
  EXPECT_EQ(Property(0, "UseSockets"), "False");
  EXPECT_EQ(Property(0, "TcpPort"), "");
  EXPECT_FALSE(IsLocal());
  EXPECT_EQ(Property(0, "UseSockets"), "True");
  EXPECT_EQ(Property(0, "TcpPort"), "1") << "taken from the configuration";
  EXPECT_EQ(Property(0, "TcpHost"), "");
}

TEST_F(RemotePropertiesTest, ReadingAPropertyDecidesTheMode)
{
  Configure("PindleSvr/TcpHost=paf.example");
  Read(0, "OutputFields");
  EXPECT_EQ(Property(0, "UseSockets"), "True");
  EXPECT_EQ(Property(0, "TcpHost"), "paf.example");
}

TEST_F(RemotePropertiesTest, AHostThatWasSetDoesNotMakeTheModeRemote)
{
  Configure("PindleSvr/TcpHost=configured");
  ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "mine"), 0);
  EXPECT_TRUE(IsLocal()) << "the configured host is not even read";
  EXPECT_EQ(Property(0, "UseSockets"), "False");
  EXPECT_EQ(Property(0, "TcpHost"), "mine");
}

TEST_F(RemotePropertiesTest, AConfiguredPortCountsBesideAHostThatWasSet)
{
  Configure("PindleSvr/TcpHost=configured\nPindleSvr/TcpPort=4711");
  ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "mine"), 0);
  EXPECT_FALSE(IsLocal());
  EXPECT_EQ(Property(0, "TcpHost"), "mine");
  EXPECT_EQ(Property(0, "TcpPort"), "4711");
}

TEST_F(RemotePropertiesTest, SwitchedOffAConfiguredServerIsNotUsed)
{
  Configure("PindleSvr/TcpHost=configured");
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "False"), 0);
  EXPECT_TRUE(IsLocal());
  EXPECT_EQ(Property(0, "TcpHost"), "") << "the decision was never needed";
}

TEST_F(RemotePropertiesTest, HostAndPortAreCutToTheirFields)
{
  for (size_t length : {0u, 1u, 30u, 31u, 32u, 254u, 255u, 256u, 5000u}) {
    const std::string text(length, 'h');
    ASSERT_EQ(pafSetPropertiesId(0, "tcphost", text.c_str()), 0);
    ASSERT_EQ(pafSetPropertiesId(0, "TCPPORT", text.c_str()), 0);
    EXPECT_EQ(Property(0, "TcpHost"), text.substr(0, 255));
    EXPECT_EQ(Property(0, "TcpPort"), text.substr(0, 31));
    EXPECT_EQ(GetTcpHost(), text.substr(0, 255));
    EXPECT_EQ(GetTcpPort(), text.substr(0, 31));
  }
  SetTcpHost("another");
  SetTcpPort("7");
  EXPECT_EQ(Property(0, "TcpHost"), "another");
  EXPECT_EQ(Property(0, "TcpPort"), "7");
}

class SwitchedOnTest : public RemotePropertiesTest
{
 protected:
  void SetUp() override
  {
    RemotePropertiesTest::SetUp();
    local = Open("AU.x");
    ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "127.0.0.1"), 0);
    ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", "1"), 0);
    ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
    fakes.ClearCalls();
  }

  Fake& Au() { return fakes["libqxarfau.so"]; }

  int local = 0;
};

TEST_F(SwitchedOnTest, WhatConcernsTheProcessIsAnsweredHere)
{
  const std::pair<const char*, const char*> kAnswers[] = {{"UseSockets", "True"},
                                                          {"TcpHost", "127.0.0.1"},
                                                          {"TcpPort", "1"},
                                                          {"OpenArfs", "AU.x;"},
                                                          {"OpenArfPaths", "/x"}};
  for (const auto& [name, answer] : kAnswers) {
    for (int id : {0, -1, 1000, local}) {
      ExpectWholeOrRefused(
          [&, property = name](char* out, int size) { return pafGetPropertiesId(id, property, out, size); }, answer);
    }
    ExpectWholeOrRefused([property = name](char* out, int size) { return pafGetProperties(property, out, size); },
                         answer);
  }
}

TEST_F(SwitchedOnTest, WithoutAnInstanceThereIsNoOpenArf)
{
  for (int id : {0, -1, 1000}) EXPECT_EQ(Read(id, "OpenARF", 1), (Answer{0, ""}));
}

TEST_F(SwitchedOnTest, EveryOtherNameIsTheServers)
{
  for (const char* name : {"TestProperty", "ClientCount", "ArfLibVersion", "ARFs", "DefaultArf", "iPindle:z",
                           "Properties", "PropertyName1", "PropertyName12", "CountryCode", "ArfStatus:nowhere",
                           "ArfVersion:AU.x", "PafLibVersion", "Barcode:1", "anything", ""}) {
    for (int id : {0, -1, 1000}) EXPECT_EQ(Read(id, name), (Answer{kCannotTravel, ""})) << name;
    EXPECT_EQ(Describe(kCannotTravel), kWhy);
    EXPECT_EQ(ReadDefault(name), (Answer{kCannotTravel, ""})) << name;
    EXPECT_EQ(Describe(kCannotTravel), kWhy);
  }
  EXPECT_EQ(Au().Sequence(), "") << "and never answered by a plug-in";
  ExpectRefusesNoBuffer([](char* out, int size) { return pafGetPropertiesId(0, "anything", out, size); });
}

TEST_F(SwitchedOnTest, AnInstanceThatWasOpenStaysLocal)
{
  Au().Answer(kFakeGetProperties, 0, "from the searcher");
  EXPECT_EQ(Property(local, "anything"), "from the searcher");
  EXPECT_EQ(Property(local, "ClientCount"), "1");
  EXPECT_EQ(Property(local, "OpenARF"), "AU.x");
  EXPECT_EQ(Property(local, "ArfStatus:nowhere"), "ARF Not Registered");
  EXPECT_EQ(pafSetPropertiesId(local, "anything", "x"), 0);
  EXPECT_EQ(Au().Count(kFakeSetProperties), 1u);
  EXPECT_EQ(pafSetPropertiesId(local, "OpenARF", "NZ.y"), 0);
  EXPECT_EQ(Property(local, "CountryCode"), "NZ");
  EXPECT_EQ(pafClosePafId(local), 0);
}

TEST_F(SwitchedOnTest, ABusyLocalInstanceIsNoInstance)
{
  BusyInstance busy(Au(), local);
  EXPECT_EQ(Read(local, "OpenARF"), (Answer{0, ""}));
  EXPECT_EQ(Read(local, "ClientCount").status, kCannotTravel);
  EXPECT_EQ(pafSetPropertiesId(local, "anything", "x"), PAF_ERR_ID_IN_USE);
}

TEST_F(SwitchedOnTest, SettingNeedsAnInstanceFirst)
{
  EXPECT_EQ(pafSetPropertiesId(1000, "anything", "x"), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafSetPropertiesId(1000, "OpenARF", "AU.x"), PAF_ERR_INVALID_ID);
}

TEST_F(SwitchedOnTest, TheDefaultInstanceIsTheServers)
{
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID) << "there is none";
  EXPECT_EQ(pafOpenPaf(), kCannotTravel);
  EXPECT_EQ(pafOpenPafMem(2), kCannotTravel);
  char out[255] = "1 High St";
  EXPECT_EQ(pafGetAddress("q", out), kCannotTravel);
  EXPECT_EQ(pafGet_FindStatus(), -1);
  EXPECT_EQ(pafSetProperties("anything", "x"), kCannotTravel);
  EXPECT_EQ(pafFormatAddress("a", out, 0L), PAF_ERR_INVALID_ID) << "it creates no instance";
  EXPECT_EQ(pafFormatAddressS(out, 63), kCannotTravel);
  EXPECT_EQ(pafGetBorderPostcodes(2000, out, 8), PAF_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(pafGetLocalityRecordCount(), 0);
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID) << "a failed open leaves none";
  EXPECT_EQ(Property(local, "ClientCount2"), "1");
  EXPECT_EQ(Au().Sequence(), "");
}

TEST_F(SwitchedOnTest, ADefaultInstanceThatWasOpenIsClosedAsAnyInstance)
{
  ASSERT_EQ(pafSetProperties("UseSockets", "False"), 0);
  ASSERT_EQ(pafOpenPaf(), 0);
  ASSERT_EQ(pafGet_FindStatus(), 0);
  ASSERT_EQ(pafSetProperties("UseSockets", "True"), 0);
  EXPECT_EQ(pafGet_FindStatus(), 0) << "it stays local";
  Au()->clearCalls();
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(Au().Sequence(), "GetArfDb Release ");
  char out[255];
  EXPECT_EQ(pafGetAddress("q", out), PAF_ERR_INVALID_ID) << "the thread keeps the closed Id";
  EXPECT_EQ(pafClosePaf(), PAF_ERR_INVALID_ID);
  ASSERT_EQ(pafSetProperties("UseSockets", "False"), 0);
  EXPECT_EQ(pafClosePaf(), 0);
  EXPECT_EQ(Au()->counter(kFakeLiveDbs), 1) << "the instance of the fixture";
  EXPECT_EQ(pafClosePafId(local), 0);
}

}  // namespace
}  // namespace blackbox
