// What the way to the server does to a call: requests that are cut, TABs and line feeds, limits of replies, and the
// server's own statuses. The plug-in of the first half answers with what reaches it.
#include <gtest/gtest.h>
#include <netinet/in.h>

#include <cstring>

#include "blackbox/twin/twin.h"
#include "qxpaf/arf_au.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr std::size_t kLongestRequest = 255;

/** Digits of ten, so that every place can be told from its neighbours. */
std::string Ruler(std::size_t length)
{
  std::string text;
  while (text.size() < length) text += std::to_string(text.size()) + ".";
  return text.substr(0, length);
}

class EchoWire : public testing::Test
{
 protected:
  using InPlace = int (*)(int id, char* text, int size);

  void SetUp() override
  {
    twin.Same("open", [this] { return Number(id = pafOpenArfId2(0, "AU")); });
  }
  TwinCall On(InPlace function, const std::string& in)
  {
    return [=, this] { return InBuffer(kWhole, in, [&](char* text, int size) { return function(id, text, size); }); };
  }
  TwinCall Into(const std::function<int(char* text, int size)>& call)
  {
    return [call] { return IntoBuffer(kWhole, call); };
  }
  /** What was set or begun last. */
  TwinCall Seen()
  {
    return Into([this](char* text, int size) { return pafGetNextAddressInPolygon(id, text, size); });
  }

  Twin twin;
  int id = 0;
};

TEST_F(EchoWire, RequestsAreCutAt255Characters)
{
  const std::pair<const char*, InPlace> kFunctions[] = {
      {"pafGetDpidId", pafGetDpidId},
      {"pafGetDpidNonAmasId", pafGetDpidNonAmasId},
      {"pafFixLastLineId", pafFixLastLineId},
  };
  for (const auto& [name, function] : kFunctions) {
    const std::size_t room = kLongestRequest - std::strlen(name) - std::strlen("\t1\t");
    for (const std::size_t length : {room - 1, room, room + 1, room + 500}) {
      const std::string called = std::string(name) + " of " + std::to_string(length);
      const std::string text = Ruler(length);
      twin.Same(called + " cut", On(function, text.substr(0, room)));
      twin.Like(called, called + " cut", "cut", On(function, text));
    }
  }
  const std::size_t flags = kLongestRequest - std::strlen("pafValidateFullAddressId\t1\t-77\t");
  const auto validate = [this](const std::string& text) {
    return Into([this, text](char* out, int size) {
      char verdict = 'q';
      return pafValidateFullAddressId(id, text.c_str(), out, size, -77, &verdict);
    });
  };
  twin.Same("validation cut", validate(Ruler(flags)));
  twin.Like("validation", "validation cut", "cut", validate(Ruler(400)));
  twin.Check();
}

/** A hint's number stands behind its texts: when they fill the request, there is none. */
TEST_F(EchoWire, HintsThatAreTooLong)
{
  const auto popup = [this](const std::string& a, const std::string& b, int number) {
    return Into(
        [=, this](char* out, int size) { return pafGetPopupHintId(id, a.c_str(), b.c_str(), number, out, size); });
  };
  const std::size_t room = kLongestRequest - std::strlen("pafGetPopupHintId\t1\ta\t");
  twin.Same("cut", popup("a", Ruler(room), 0));
  twin.Like("too long", "cut", "the number is cut off", popup("a", Ruler(room + 9), 7));
  twin.Same("fits", popup("a", Ruler(room - 2), 7));
  twin.Check();
}

TEST_F(EchoWire, FirstTextsOfHintsAreKeptFromTabs)
{
  const auto popup = [this](const std::string& a, const std::string& b) {
    return Into([=, this](char* out, int size) { return pafGetPopupHintId(id, a.c_str(), b.c_str(), 3, out, size); });
  };
  const auto address = [this](const std::string& a, const std::string& b) {
    return Into([=, this](char* out, int size) { return pafGetAddressHintId(id, a.c_str(), b.c_str(), out, size); });
  };
  const auto both = [&](const std::string& name, const std::string& other, const char* why, const auto& in,
                        const auto& as) {
    twin.Same("popup " + other, popup(as.first, as.second));
    twin.Like("popup " + name, "popup " + other, why, popup(in.first, in.second));
    twin.Same("address " + other, address(as.first, as.second));
    twin.Like("address " + name, "address " + other, why, address(in.first, in.second));
  };
  using Pair = std::pair<std::string, std::string>;
  both("TAB in the first", "space in the first", "it becomes a space", Pair("a\tb\t", "c"), Pair("a b ", "c"));
  const std::string longText = Ruler(150);
  both("long with a TAB", "127 of it", "cut at 127", Pair("\t" + longText, "c"),
       Pair(" " + longText.substr(0, 126), "c"));
  both("long without", "whole", "sent whole", Pair(longText, "c"), Pair(longText, "c"));
  both("TAB in the second", "line feed in the second", "it becomes a line", Pair("a", "b\tc"), Pair("a", "b\nc"));
  both("line feed in the first", "lines in the second", "the second has all lines but one", Pair("a\nb", "c"),
       Pair("a", "b\nc"));
  twin.Check();
}

TEST_F(EchoWire, PolygonsHaveTwoNumbers)
{
  const auto begin = [this](const char* a, const char* b) {
    return [=, this] { return Say(pafBeginPolygonSearch(id, a, b)); };
  };
  struct Row
  {
    const char* second;
    const char* arrives;
  };
  int number = 0;
  for (const Row& row : std::initializer_list<Row>{{"-33.5,151.25", "-33.5,151.25"},
                                                   {"-33.5 151.25", "-33.5,151.25"},
                                                   {"-33.5;151.25;9", "-33.5,151.25"},
                                                   {"1e3x2", "1e3,2"},
                                                   {"7", "7,"},
                                                   {" 7, 8", " 7, 8"},
                                                   {"north", ""},
                                                   {"", ""},
                                                   {",5", ""}}) {
    const std::string name = std::to_string(++number);
    twin.Same("begin " + name, begin("shape", row.second));
    twin.Differs("arrived " + name, "two numbers and a comma", Seen(), [row](const Answers&) {
      return Answer{0, std::string("polygon=<shape><") + row.arrives + ">", ""};
    });
  }
  const std::string longShape = Ruler(20000);
  twin.Same("begin whole", [this, longShape] { return Say(pafBeginPolygonSearch(id, longShape.c_str(), "1,2")); });
  twin.Differs("arrived whole", "replies are cut at 1021", Seen(), [](const Answers& local) {
    EXPECT_GT(local["arrived whole"].text.size(), 4000u);
    return Answer{0, local["arrived whole"].text.substr(0, 1021), ""};
  });
  twin.Check();
}

TEST_F(EchoWire, StatisticsAreSentWhole)
{
  const auto ask = [this](std::vector<std::string> texts) {
    return Into([=, this](char* out, int size) {
      return pafGetSearchStatistics(id, texts[0].c_str(), texts[1].c_str(), texts[2].c_str(), texts[3].c_str(), out,
                                    size);
    });
  };
  twin.Same("short", ask({"a", "b", "c", "d"}));
  twin.Same("long", ask({Ruler(200), Ruler(200), Ruler(200), Ruler(200)}));
  twin.Same("lines", ask({"a", "b", "c", "d\ne"}));
  twin.Like("TABs", "lines", "they become lines", ask({"a", "b", "c", "d\te"}));
  twin.Check();
}

TEST_F(EchoWire, SettingsAndCodes)
{
  for (const char* value : {"value", "a\nb", "", "=", "status:22"}) {
    twin.Same(std::string("set ") + value, [this, value] { return Say(pafSetPropertiesId(id, "Name", value)); });
    twin.Same(std::string("seen ") + value, Seen());
    twin.Same(std::string("codes ") + value, [this, value] { return Say(pafSetGeographicalCodesId(id, value)); });
    twin.Same(std::string("seen codes ") + value, Seen());
  }
  twin.Check();
}

/** The server's message travels for failures only. */
TEST_F(EchoWire, VerdictsOfFailuresOnly)
{
  const auto verdict = [this](const char* address) {
    return [=, this] {
      char text[64];
      char flag = 'q';
      const int status = pafValidateFullAddressId(id, address, text, sizeof text, 5, &flag);
      return Say(status, std::string(1, flag));
    };
  };
  twin.Same("failure", verdict("status:8"));
  twin.Differs("success", "no message comes with a success", verdict("1 High St"), [](const Answers& local) {
    EXPECT_EQ(local["success"].text, "V");
    return Answer{0, std::string(1, '\0'), ""};
  });
  twin.Check();
}

// The server's own statuses, with the real plug-in

TwinCall OpenAu(int& id)
{
  return [&id] {
    const int status = pafOpenArfId(&id, 0, "AU");
    return Say(status);
  };
}

Answer Lookup(int id)
{
  return InBuffer(64, "6 macquarie st, sydney", [id](char* text, int size) { return pafGetDpidId(id, text, size); });
}

TEST(TwinServer, LimitsInstances)
{
  Twin twin;
  int id = 0;
  twin.Same("first", OpenAu(id));
  twin.Same("second", OpenAu(id));
  twin.Differs("third", "two are allowed", OpenAu(id), [](const Answers&) {
    return Answer{PAF_ERR_OUT_OF_MEMORY, "", "Out of Memory"};
  });
  twin.Do([] { pafClosePafId(2); });
  twin.Same("second again", OpenAu(id));
  twin.Same("works", [&id] { return Lookup(id); });
  const std::unique_ptr<ServerProcess> server = twin.StartServer({"--max-instances", "2"});
  twin.Check(*server);
}

TEST(TwinServer, LimitsLines)
{
  Twin twin;
  int id = 0;
  twin.Same("open", OpenAu(id));
  const std::string polygon(100000, '1');
  twin.Differs(
      "a polygon", "it is longer than a line may be",
      [&id, polygon] { return Say(pafBeginPolygonSearch(id, polygon.c_str(), "1,2")); },
      [](const Answers&) {
        return Answer{PAF_ERR_SERVER_INPUT_TOO_LONG, "", "ERR_SOCSVR_INPUT_TOO_LONG"};
      });
  twin.Same("goes on", [&id] { return Lookup(id); });
  twin.Check();
}

TEST(TwinServer, LimitsConnections)
{
  Twin twin;
  const std::unique_ptr<ServerProcess> server = twin.StartServer({"--max-connections", "1"});
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(server->Port()));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int other = socket(AF_INET, SOCK_STREAM, 0);
  ASSERT_EQ(connect(other, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  char reply[8] = {};
  ASSERT_EQ(send(other, "x\n", 2, 0), 2);
  ASSERT_GT(recv(other, reply, sizeof reply - 1, 0), 0);
  EXPECT_STREQ(reply, "4500\n");
  int id = 0;
  twin.Differs("open", "one connection is allowed", OpenAu(id), [](const Answers&) {
    return Answer{PAF_ERR_SERVER_THREAD_LIMIT, "", "ERR_SOCSVR_THREAD_LIMIT"};
  });
  twin.Check(*server);
  close(other);
}

/** A server of the remote process's own, which it can end and start again. */
class OwnServer
{
 public:
  explicit OwnServer(const Twin& twin) : twin_(twin) {}

  void Start(int port = 0) { server_ = twin_.StartServer({}, port); }
  void Restart()
  {
    const int port = server_->Port();
    EXPECT_EQ(server_->Stop(), 0);
    Start(port);
  }
  void Stop() { server_.reset(); }
  /** Moves this process from the server that it was given to its own. */
  void Use()
  {
    Start();
    pafSetProperties("TcpPort", std::to_string(server_->Port()).c_str());
  }

 private:
  const Twin& twin_;
  std::unique_ptr<ServerProcess> server_;
};

/** One call is lost with the connection; after it an instance answers as if nothing had been. */
TEST(TwinServer, EndsAndComesBack)
{
  Twin twin;
  OwnServer server(twin);
  int id = 0;
  const std::vector<std::pair<const char*, TwinCall>> kQueries = {
      {"lookup", [&id] { return Lookup(id); }},
      {"record",
       [&id] {
         return IntoBuffer(kWhole, [&](char* text, int size) { return pafDpidToAddressId(id, 30000409, text, size); });
       }},
      {"fields",
       [&id] {
         return IntoBuffer(kWhole,
                           [&](char* text, int size) { return pafGetPropertiesId(id, "OutputFields", text, size); });
       }},
      {"list", [&id] {
         return IntoBuffer(
             kWhole, [&](char* text, int size) { return pafGetAddressId(id, "Coober Pedy SA 5723", text, size); });
       }}};
  twin.Do([&server] { server.Use(); });
  twin.Same("open", OpenAu(id));
  twin.Same("set", [&id] { return Say(pafSetPropertiesId(id, "OutputFields", "AddressLine1;DPID")); });
  twin.Same("set too", [&id] { return Say(pafSetPropertiesId(id, "Delimiter", "|")); });
  for (const auto& [name, query] : kQueries) twin.Same(std::string(name) + " before", query);
  twin.Do([&server] { server.Restart(); });
  twin.Differs(
      "in between", "the connection was reset", [&id] { return Lookup(id); },
      [](const Answers& local) {
        EXPECT_EQ(local["in between"].status, 0);
        return Answer{PAF_ERR_SOCKET_SEND, "6 macquarie st, sydney",
                      "ERR_SOC_SEND. socket send error: (104) Connection reset by peer"};
      });
  for (const auto& [name, query] : kQueries) twin.Same(std::string(name) + " after", query);
  twin.Do([&server] { server.Stop(); });
  twin.Check();
}

}  // namespace
}  // namespace blackbox
