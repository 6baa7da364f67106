// Instances with and without a server: opening and closing, lists, properties, and what is said of failures.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <thread>

#include "blackbox/support/command_call.h"
#include "blackbox/support/session.h"
#include "blackbox/twin/twin.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kLastLine = "Coober Pedy SA 5723";

class TwinInstances : public testing::Test
{
 protected:
  void OpenFirst()
  {
    twin.Same("open", [this] { return Number(id = pafOpenArfId2(0, "AU")); });
  }
  TwinCall Lookup(const std::string& address, int amas = 0)
  {
    return [this, address, amas] {
      return InBuffer(kWhole, address, [&](char* text, int size) { return pafLookupAddress(id, text, size, amas); });
    };
  }
  /** A lookup of this address fails; the words for it are left to be asked for. */
  TwinCall FailedLookup(const std::string& address)
  {
    return [this, address] {
      char text[256] = {};
      address.copy(text, sizeof text - 1);
      return Number(pafLookupAddress(id, text, sizeof text, 0));
    };
  }
  TwinCall Get(const std::string& name, int size = kWhole)
  {
    return [this, name, size] {
      return IntoBuffer(size, [&](char* text, int s) { return pafGetPropertiesId(id, name.c_str(), text, s); });
    };
  }
  TwinCall Set(const std::string& name, const std::string& value)
  {
    return [this, name, value] { return Say(pafSetPropertiesId(id, name.c_str(), value.c_str())); };
  }
  TwinCall First(const std::string& query, int size = kWhole)
  {
    return [this, query, size] {
      return IntoBuffer(size, [&](char* text, int s) { return pafGetAddressId(id, query.c_str(), text, s); });
    };
  }
  TwinCall Next(int size = kWhole)
  {
    return
        [this, size] { return IntoBuffer(size, [&](char* text, int s) { return pafGetNextAddressId(id, text, s); }); };
  }
  static TwinCall Words(int status, int size = kWhole)
  {
    return [status, size] {
      return IntoBuffer(size, [&](char* text, int s) { return pafGetErrorDescription(text, status, s); });
    };
  }
  /** The text that a failed call leaves as it was becomes empty. */
  static Rule Emptied(const std::string& name)
  {
    return [name](const Answers& local) {
      Answer answer = local[name];
      EXPECT_NE(answer.status, 0) << name;
      answer.text.clear();
      return answer;
    };
  }
  static Rule Always(Answer answer)
  {
    return [answer](const Answers&) { return answer; };
  }

  Twin twin;
  int id = 0;
  int other = 0;
};

Answer OpenNamed(const std::string& name, int memoryMode)
{
  int id = -7;
  const int status = pafOpenArfId(&id, memoryMode, name.c_str());
  return Say(status, std::to_string(id));
}

TEST_F(TwinInstances, OpenAndClose)
{
  for (const int mode : {0, 1, 2, 3, 4, -1}) {
    for (const char* name : {"AU", "au", "AU.Main", "Main", "", "AU.New"}) {
      twin.Same("open " + std::string(name) + " in mode " + std::to_string(mode),
                [name, mode] { return OpenNamed(name, mode); });
    }
  }
  for (const char* name : {"Nowhere", "AU.Nowhere", "Atlantis.Main", "zz.x", "NZ", "abcd.x", ".", ";", " "}) {
    twin.Same("open " + std::string(name), [name] { return OpenNamed(name, 0); });
    twin.Same("open2 " + std::string(name), [name] { return Number(pafOpenArfId2(0, name)); });
  }
  twin.Same("close 2", [] { return Say(pafClosePafId(2)); });
  twin.Same("close 2 again", [] { return Say(pafClosePafId(2)); });
  twin.Same("a closed Id", [] { return Number(pafGetFindStatusId(2)); });
  twin.Same("the lowest free Id", [] { return OpenNamed("AU", 0); });
  twin.Same("open default", [this] { return Number(pafOpenPafId(&id)); });
  twin.Same("its Id", [this] { return Number(id); });
  twin.Same("open default in a mode", [this] { return Number(pafOpenPafMemId(&id, 2)); });
  twin.Same("its Id too", [this] { return Number(id); });
  twin.Same("open default 2", [] { return Number(pafOpenPafId2()); });
  for (int any = 45; any > 0; --any) {
    twin.Same("close all " + std::to_string(any), [any] { return Say(pafClosePafId(any)); });
  }
  twin.Same("first Id again", [] { return OpenNamed("AU", 0); });
  twin.Check();
}

TEST_F(TwinInstances, WordsOfAFailedOpening)
{
  twin.Differs(
      "open Gone", "what the plug-in said in opening stays with the server", [] { return OpenNamed("AU.Gone", 0); },
      [](const Answers& local) {
        Answer answer = local["open Gone"];
        EXPECT_NE(answer.words.find("ERR_QXARF_OPEN_FILE. "), std::string::npos) << answer.words;
        answer.words = "ERR_QXARF_OPEN_FILE";
        return answer;
      });
  OpenFirst();
  twin.Same("move to Gone", Set("OpenARF", "AU.Gone"));
  twin.Same("stays", Get("OpenARF"));
  twin.Check();
}

/** Names that are paths are the server's to refuse, unless it trusts its clients. */
TEST_F(TwinInstances, PathsForTrustedClientsOnly)
{
  const std::vector<std::string> names = {"sample/", twin.Place().Root() + "/sample", "DLL:QxArfAu;sample"};
  OpenFirst();
  for (const std::string& name : names) {
    const Rule refused = Always({PAF_ERR_NOT_CONFIGURED, "2", "ARF not installed"});
    twin.Differs(
        "open " + name, "the server refuses",
        [name] {
          const Answer answer = OpenNamed(name, 0);
          pafClosePafId(2);
          return answer;
        },
        refused);
    twin.Differs("move to " + name, "the server refuses", Set("OpenARF", name),
                 Always({PAF_ERR_NOT_CONFIGURED, "", "ARF not installed"}));
    for (const char* property : {"ArfStatus:", "ArfVersion:"}) {
      twin.Differs(property + name, "the server refuses", Get(property + name),
                   Always({PAF_ERR_NOT_CONFIGURED, "", "ARF not installed"}));
    }
  }
  twin.Check();
}

TEST_F(TwinInstances, PathsForATrustedClient)
{
  OpenFirst();
  for (const std::string name : {"sample/", "DLL:QxArfAu;sample", "DLL:NoSuchPlugIn;sample"}) {
    twin.Same("open " + name, [name] {
      Answer answer = OpenNamed(name, 0);
      pafClosePafId(2);
      answer.words.clear();  // the loader's words stay with the server
      return answer;
    });
    twin.Same("ArfStatus:" + name, Get("ArfStatus:" + name));
  }
  twin.Same("move", Set("OpenARF", "sample/"));
  twin.Same("moved", Get("OpenARF"));
  twin.Same("answers", Lookup("6 macquarie st, sydney"));
  const std::unique_ptr<ServerProcess> server = twin.StartServer({"--trusted"});
  twin.Check(*server);
}

TEST_F(TwinInstances, Lists)
{
  OpenFirst();
  twin.Same("nothing begun", Next());
  for (const std::string query : {"Sydney NSW 2000", kLastLine, "\t\t\tCoober Pedy\tSA\t", "\t\t\t\t\t\t\t30000250",
                                  "\t\t\t\t\tSA\t", "Atlantis NSW", "", "\t\t\t\t\t\t\t99999999", "x\ty\tz"}) {
    twin.Same("first of " + query, First(query));
    for (int i = 0; i < 30; ++i) {
      twin.Same("next " + std::to_string(i) + " of " + query, Next());
    }
  }
  twin.Same("a record with lines", First("\n\n\nCoober Pedy\nSA\n"));
  twin.Same("its next", Next());
  twin.Check();
}

/** The plug-in here refuses a buffer that is too small and offers the same address again; the server has taken it. */
TEST_F(TwinInstances, ListsInSmallBuffers)
{
  OpenFirst();
  twin.Same("first", First(kLastLine));
  twin.Same("second", Next());
  twin.Same("third", Next());
  twin.Same("first again", First(kLastLine));
  twin.Differs("too small", "cut instead of refused", Next(8), [](const Answers& local) {
    EXPECT_EQ(local["too small"].status, PAF_ERR_BUFFER_TOO_SMALL);
    return Answer{0, local["second"].text.substr(0, 7), ""};
  });
  twin.Differs("goes on", "the server went on", Next(), [](const Answers& local) {
    EXPECT_EQ(local["goes on"], local["second"]);
    return local["third"];
  });
  twin.Check();
}

TEST_F(TwinInstances, DoNotDisturbEachOther)
{
  OpenFirst();
  twin.Same("open the other", [this] { return Number(other = pafOpenArfId2(0, "AU.New")); });
  twin.Same("first of one", First(kLastLine));
  twin.Do([this] { std::swap(id, other); });
  twin.Same("set the other", Set("Delimiter", "|"));
  twin.Same("first of the other", First("Sydney NSW 2000"));
  twin.Same("version of the other", Get("PafVersionInfo"));
  twin.Differs("lookup of the other", "a failure empties the buffer", Lookup("900 George St Sydney"),
               Emptied("lookup of the other"));
  twin.Do([this] { std::swap(id, other); });
  twin.Same("next of one", Next());
  twin.Same("version of one", Get("PafVersionInfo"));
  twin.Same("find status of one", [this] { return Number(pafGetFindStatusId(id)); });
  twin.Same("find status of the other", [this] { return Number(pafGetFindStatusId(other)); });
  twin.Same("open databases", Get("OpenArfs"));
  twin.Differs("their paths", "the process has none open", Get("OpenArfPaths"), Always({0, "", ""}));
  twin.Check();
}

TEST_F(TwinInstances, AddressesByDpid)
{
  OpenFirst();
  const long kDpids[] = {30000001, 30000409, 99999999, 0, -1, 1, LONG_MAX, LONG_MIN};
  for (const long dpid : kDpids) {
    for (const int size : {kWhole, 20, 8, 1, 0, -1}) {
      const std::string name = std::to_string(dpid) + " in " + std::to_string(size);
      const std::string whole = std::to_string(dpid) + " in " + std::to_string(kWhole);
      const TwinCall call = [this, dpid, size] {
        return IntoBuffer(size, [&](char* text, int s) { return pafDpidToAddressId(id, dpid, text, s); });
      };
      twin.Differs(name, "cut instead of refused, and emptied after a failure", call,
                   [whole, size](const Answers& local) {
                     Answer answer = local[whole];
                     const std::size_t room = static_cast<std::size_t>(std::max(size, 1)) - 1;
                     answer.text = answer.status == 0 ? answer.text.substr(0, room) : "";
                     if (size < 1) answer.text = kBefore;
                     return answer;
                   });
    }
  }
  twin.Check();
}

std::vector<std::string> Names(const std::string& list)
{
  std::vector<std::string> names;
  std::istringstream stream(list);
  for (std::string name; std::getline(stream, name, ';');) names.push_back(name);
  return names;
}

TEST_F(TwinInstances, Properties)
{
  const std::vector<std::string> kNames = Names(
      "OpenARF;ClientCount;ClientCount2;PafMachine;CountryCode;ArfLibVersion;ArfLibVersionAu;ArfLibVersionNz;"
      "ArfLibVersionUs;ArfLibVersionUk;ARFs;DefaultArf;OutputFields;Delimiter;PafEngineVersion;PafLibVersion;"
      "PafVersionInfo;SortPlanDate;Notice;Attribution;Properties;PropertyName;PropertyName0;PropertyName1;"
      "PropertyName11;PropertyName12;PropertyName16;PropertyName17;PropertyName999;propertyname3;TestProperty;"
      "OpenArfs;ArfStatus:AU;ArfStatus:AU.Main;ArfStatus:AU.Gone;ArfStatus:NZ;ArfStatus:;ArfVersion:AU;"
      "ArfVersion:AU.Gone;ArfVersion:NZ;iPindle:Owner;iPindle:;iPindle:No\\Such;Barcode:30000001;Barcode:nonsense;"
      "Barcode2:3000000159C12345;Barcode2:3000000159NABC;Barcode3:3000000159ABC;BSP:2000;BSP:9999;NPSP:2000;NPSP:2;"
      "GIFProperty:Fields;Weather;weather;");
  for (const bool hasInstance : {false, true}) {
    if (hasInstance) OpenFirst();
    const std::string prefix = hasInstance ? "of an instance: " : "of none: ";
    for (const std::string& name : kNames) {
      twin.Same(prefix + name, Get(name));
      for (const int size : {11, 1}) {
        twin.Differs(prefix + name + " in " + std::to_string(size), "cut instead of refused", Get(name, size),
                     [whole = prefix + name, size, name](const Answers& local) {
                       Answer answer = local[whole];
                       const bool isOwn = name == "OpenARF" || name == "OpenArfs";  // the process itself refuses
                       if (isOwn && answer.text.size() >= static_cast<std::size_t>(size)) {
                         return Answer{PAF_ERR_BUFFER_TOO_SMALL, "", "Buffer too small"};
                       }
                       answer.text = answer.text.substr(0, static_cast<std::size_t>(size) - 1);
                       return answer;
                     });
      }
      for (const int size : {0, -1}) twin.Same(prefix + name + " in " + std::to_string(size), Get(name, size));
    }
    twin.Same(prefix + "nowhere", [this] { return Say(pafGetPropertiesId(id, "PafLibVersion", nullptr, 10)); });
  }
  twin.Check();
}

/** The configuration that these tell of is the server's. */
TEST_F(TwinInstances, ConfigurationIsTheServers)
{
  twin.Same("owner", [this] {
    const Answer answer = Get("iPindle:Owner")();
    EXPECT_EQ(answer.text, "databases");
    return answer;
  });
  twin.Same("databases", Get("ARFs"));
  twin.Check();
}

TEST_F(TwinInstances, ConnectionOfTheProcess)
{
  std::unique_ptr<ServerProcess> server = twin.StartServer();
  for (const char* name : {"UseSockets", "TcpHost", "TcpPort"}) {
    twin.Same(std::string(name) + " before it is needed", Get(name));
  }
  OpenFirst();
  const std::string port = std::to_string(server->Port());
  const char* const why = "where the server is";
  twin.Differs("UseSockets", why, Get("UseSockets"), Always({0, "True", ""}));
  twin.Differs("TcpHost", why, Get("TcpHost"), Always({0, "127.0.0.1", ""}));
  twin.Differs("TcpPort", why, Get("TcpPort"), Always({0, port, ""}));
  twin.Differs("TcpPort in 1", why, Get("TcpPort", 1), Always({6406, "", "Buffer too small"}));
  twin.Same("local from now on", Set("UseSockets", "False"));
  twin.Same("the instance is where it was", Lookup("6 macquarie st, sydney"));
  twin.Differs(
      "no database here", "the client's configuration has none", [] { return OpenNamed("AU", 0); },
      Always({PAF_ERR_NOT_CONFIGURED, "2", "ARF not installed"}));
  twin.Check(*server);
}

TEST_F(TwinInstances, Settings)
{
  OpenFirst();
  const std::pair<const char*, const char*> kSettings[] = {{"OutputFields", "DPID;Latitude;Longitude;category"},
                                                           {"OutputFields", "4,5"},
                                                           {"OutputFields", "Colour"},
                                                           {"OutputFields", ""},
                                                           {"OutputFields", "1;1;1"},
                                                           {"Delimiter", "|"},
                                                           {"Delimiter", "||"},
                                                           {"Delimiter", ""},
                                                           {"Delimiter", ","},
                                                           {"Delimiter", "x"},
                                                           {"delimiter", "~"},
                                                           {"Notice", "Certified"},
                                                           {"Weather", "rain"},
                                                           {"", "nameless"},
                                                           {"Attribution", "me"},
                                                           {"OpenARF", "AU"},
                                                           {"OpenARF", "AU.New"},
                                                           {"OpenARF", "AU.Nowhere"},
                                                           {"OpenARF", "zz.x"},
                                                           {"openarf", "AU.Main"},
                                                           {"OpenARF", ""},
                                                           {"OutputFields", "AddressLine1"}};
  for (const auto& [name, value] : kSettings) {
    const std::string setting = std::string(name) + "=" + value;
    twin.Same(setting, Set(name, value));
    for (const char* property : {"OutputFields", "Delimiter", "OpenARF", "PafVersionInfo"}) {
      twin.Same(setting + " " + property, Get(property));
    }
    twin.Same(setting + " record", First("~~~Coober Pedy~SA~"));
    twin.Same(setting + " list", First(kLastLine));
    twin.Same(setting + " next", Next());
  }
  for (const char* codes : {"NSW", "", "11703", "a,b", "x\ny"}) {
    twin.Same(std::string("codes ") + codes, [this, codes] { return Say(pafSetGeographicalCodesId(id, codes)); });
  }
  // On the way the two cannot be told from each other; a delimiter that looks like a line feed was a TAB.
  twin.Same("Delimiter TAB", Set("Delimiter", "\t"));
  twin.Differs("Delimiter line feed", "it arrives as a TAB", Set("Delimiter", "\n"),
               [](const Answers& local) { return local["Delimiter TAB"]; });
  twin.Same("Delimiter at last", Get("Delimiter"));
  twin.Check();
}

TEST_F(TwinInstances, WordsOfFailures)
{
  OpenFirst();
  twin.Same("fails", FailedLookup("900 George St Sydney"));
  twin.Same("in a small buffer", Words(4, 38));
  twin.Same("told once", Words(4));
  twin.Same("fails again", FailedLookup("900 George St Sydney"));
  twin.Same("whole", Words(4));
  twin.Same("and again", FailedLookup("900 George St Sydney"));
  twin.Same("for no room", Words(4, 0));
  twin.Same("another code of the plug-in", Words(5));
  twin.Same("nothing left", Words(4));
  twin.Same("once more", FailedLookup("900 George St Sydney"));
  twin.Same("a code of the library", Words(6405));
  twin.Same("lost to the thread", FailedLookup("900 George St Sydney"));
  twin.Same("a good call between", Lookup("6 macquarie st, sydney"));
  twin.Same("still told", Words(4));
  for (const int code : {0,    -1,   1,    601,  990,  991,  4100, 4200, 4205,  4470,    4500,
                         4502, 4504, 4551, 4556, 6400, 6412, 6499, 6500, 12345, INT_MAX, INT_MIN}) {
    twin.Same("code " + std::to_string(code), Words(code));
    twin.Same("code " + std::to_string(code) + " cut", Words(code, 6));
  }
  twin.Check();
}

/** What a thread has failed at is remembered by thread; the server has one thread for the whole process. */
TEST_F(TwinInstances, WordsAreRememberedByTheServer)
{
  OpenFirst();
  twin.Same("fails", [this] {
    char text[64] = "900 George St Sydney";
    return Say(pafLookupAddress(id, text, sizeof text, 0));
  });
  twin.Same("fails again", FailedLookup("900 George St Sydney"));
  twin.Same("a code with words of the library", Words(6405));
  twin.Differs("after that", "the library asks the server for codes without words only", Words(4),
               [](const Answers& local) {
                 EXPECT_EQ(local["after that"].text, "");
                 return Answer{0, local["fails"].words, ""};
               });
  twin.Same("fails for another thread", FailedLookup("900 George St Sydney"));
  twin.Differs(
      "on another thread", "one connection",
      [] {
        Answer answer;
        std::thread([&] { answer = Words(4)(); }).join();
        return answer;
      },
      [](const Answers& local) {
        EXPECT_EQ(local["on another thread"].text, "");
        return Answer{0, local["fails"].words, ""};
      });
  twin.Check();
}

TEST_F(TwinInstances, Commands)
{
  for (const char* command : {"OpenArf;Database=AU;",
                              "OpenArf;Database=AU.Nowhere;",
                              "OpenArf;Database=zz.x;",
                              "LookupAddress;Id=1;6 macquarie st, sydney",
                              "LookupAddress;Id=1;6 phillip st, sydney",
                              "lookupaddress;id=1;lenient=true;6 phillip st, sydney",
                              "LookupAddress;Id=9;6 phillip st, sydney",
                              "LookupAddress;Lenient=True;6 phillip st, sydney",
                              "LookupByAddressId;Id=1;30000409",
                              "LookupByAddressId;Id=1;99999999",
                              "LookupByAddressId;Id=9;30000409",
                              "FixLastLine;Id=1;2000 sydney",
                              "FixLastLine;Id=1;Atlantis NSW",
                              "GetProperties;Id=1;PafLibVersion",
                              "GetProperties;Id=1;Weather",
                              "GetProperties;Id=1;ARFs",
                              "GetProperties;Id=0;ArfLibVersion",
                              "PostcodeToBsp;Id=1;2000",
                              "PostcodeToNpsp;Id=1;2000",
                              "PostcodeToBsp;Id=1;9999",
                              "LookupByGeocode;Id=1;LatLong=True;Unique=True;-33.8675,151.2127",
                              "ValidatePartialAddress;Id=1;6 macquarie st",
                              "FormatAddress;Id=1;Options=0;6 macquarie st, sydney",
                              "SetGeographicalCodes;Id=1;11703",
                              "SetPointsOfInterest;Id=1;True",
                              "SetOldPostcodeGif;Id=1;True",
                              "SetGeographicalCodesFilter;Id=1;11703",
                              "SetStateFilter;Id=1;NSW",
                              "SetAddressFilter;Id=1;PO BOX",
                              "SetGifCommonMinimumPercent;Id=1;50",
                              "Sing;A song",
                              ";",
                              "",
                              "CloseArf;Id=1;",
                              "CloseArf;Id=1;again"}) {
    const std::string name = std::string("command ") + command;
    const TwinCall call = [command] {
      CommandCall made(command, 250);
      return Answer{made.Status(), made.Text(), ""};
    };
    twin.Differs(name, "a failure empties the buffer where the data stood", call, [name](const Answers& local) {
      Answer answer = local[name];
      const bool isData = name.size() > answer.text.size() && name.ends_with(answer.text);
      if (isData && answer.status != 0 && answer.status != PAF_ERR_INVALID_ID) answer.text.clear();
      return answer;
    });
  }
  const TwinCall byDpid = [] {
    CommandCall made("DpidToAddress;Dpid=99999999;", 250);
    return Answer{made.Status(), made.Text(), ""};
  };
  twin.Differs("on the default instance", "there it is opened when it is needed", byDpid, [](const Answers& local) {
    EXPECT_EQ(local["on the default instance"].status, PAF_ERR_NOT_OPEN);
    return Answer{PAF_AU_ERR_UNKNOWN_DPID, "", ""};
  });
  twin.Check();
}

TEST_F(TwinInstances, NullTexts)
{
  OpenFirst();
  twin.Same("address", [this] {
    return IntoBuffer(64, [&](char* text, int size) { return pafGetAddressId(id, nullptr, text, size); });
  });
  twin.Same("hint", [this] {
    return IntoBuffer(64, [&](char* text, int size) { return pafGetPopupHintId(id, nullptr, nullptr, 0, text, size); });
  });
  twin.Same("address hint", [this] {
    return IntoBuffer(64, [&](char* text, int size) { return pafGetAddressHintId(id, nullptr, nullptr, text, size); });
  });
  twin.Same("validation without a verdict", [this] {
    return IntoBuffer(
        64, [&](char* text, int size) { return pafValidateFullAddressId(id, nullptr, text, size, 0, nullptr); });
  });
  twin.Same("format", [this] {
    return IntoBuffer(64, [&](char* text, int size) { return pafFormatAddressId(id, nullptr, text, 0, size); });
  });
  twin.Same("codes", [this] { return Say(pafSetGeographicalCodesId(id, nullptr)); });
  twin.Same("polygon", [this] { return Say(pafBeginPolygonSearch(id, nullptr, nullptr)); });
  twin.Same("statistics", [this] {
    return IntoBuffer(64, [&](char* text, int size) {
      return pafGetSearchStatistics(id, nullptr, nullptr, nullptr, nullptr, text, size);
    });
  });
  twin.Check();
}

TEST_F(TwinInstances, ConcordancesWithoutAServerOnly)
{
  OpenFirst();
  const auto begin = [this] { return Say(pafBeginGifConcordance(id, 0, 0, 0, 0, 0, 0)); };
  twin.Differs("begin", "there is no request for it", begin,
               Always({PAF_ERR_NOT_IMPLEMENTED, "", "Functionality not implemented"}));
  twin.Check();
}

TEST_F(TwinInstances, WhatConcernsTheWholeProcess)
{
  OpenFirst();
  twin.Differs(
      "update", "databases are updated where they are", [] { return Say(pafUpdateArfs(nullptr, nullptr)); },
      Always({PAF_ERR_NOT_IMPLEMENTED, "", "Functionality not implemented"}));
  twin.Differs(
      "counts of an update", "nothing is counted",
      [] {
        int databases = 9;
        int instances = 9;
        const int status = pafUpdateArfs(&databases, &instances);
        return Say(status, std::to_string(databases) + " " + std::to_string(instances));
      },
      Always({PAF_ERR_NOT_IMPLEMENTED, "0 0", "Functionality not implemented"}));
  twin.Same("unload", [] { return Say(pafUnloadPlugins()); });
  twin.Same("still there", Lookup("6 macquarie st, sydney"));
  twin.Same("force", [] { return Say(pafForceCloseAll()); });
  twin.Differs("after force", "a remote instance has no search object to lose", Lookup("6 macquarie st, sydney"),
               [](const Answers& local) {
                 EXPECT_EQ(local["after force"].status, PAF_ERR_NO_SEARCHER);
                 return local["still there"];
               });
  twin.Differs(
      "close after force", "it can be closed", [this] { return Say(pafClosePafId(id)); }, Always({}));
  twin.Check();
}

}  // namespace
}  // namespace blackbox
