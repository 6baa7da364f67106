/** The frame's own promises, for instances here and on a server. */
#include "api/query_frame.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "fakes/scripted_server.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "qxpaf/remote.h"
#include "support/allocations.h"
#include "unit/api/stand_in.h"

namespace {

using test_support::Allocations;
using namespace qxpaf;

/** An idle instance in the table, with a searcher of the test's own or on a server. */
class Instance
{
 public:
  explicit Instance(IArfSearcher* searcher, int serverId = 0)
  {
    PafInfo* info = nullptr;
    EXPECT_EQ(0, NewInstance(&id_, info));
    const DecrementUsageCountWhenFinished guard(info);
    info_ = info;
    info->searcher = searcher;
    info->serverId = serverId;
  }
  ~Instance()
  {
    info_->searcher = nullptr;
    EXPECT_EQ(0, FreeInstance(id_, info_));
  }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  int Id() const { return id_; }
  int UsageCount() const { return info_->usageCount; }

 private:
  int id_ = 0;
  PafInfo* info_ = nullptr;
};

using Call = std::pair<const char*, std::function<int(int id)>>;

/** Every function that needs an instance. */
const std::vector<Call>& Calls()
{
  static char buffer[64];
  static char second[64];
  static const std::vector<Call> calls = {
      {"pafLookupAddress", [](int id) { return pafLookupAddress(id, buffer, sizeof buffer, 0); }},
      {"pafGetDpidId", [](int id) { return pafGetDpidId(id, buffer, sizeof buffer); }},
      {"pafGetDpidNonAmasId", [](int id) { return pafGetDpidNonAmasId(id, buffer, sizeof buffer); }},
      {"pafFixLastLineId", [](int id) { return pafFixLastLineId(id, buffer, sizeof buffer); }},
      {"pafValidatePartialAddressId", [](int id) { return pafValidatePartialAddressId(id, buffer, sizeof buffer); }},
      {"pafGetAddressId", [](int id) { return pafGetAddressId(id, "q", buffer, sizeof buffer); }},
      {"pafGetNextAddressId", [](int id) { return pafGetNextAddressId(id, buffer, sizeof buffer); }},
      {"pafGetPopupHintId", [](int id) { return pafGetPopupHintId(id, "a", "b", 1, buffer, sizeof buffer); }},
      {"pafGetNextPopupHintId", [](int id) { return pafGetNextPopupHintId(id, buffer, sizeof buffer); }},
      {"pafDpidToAddressId", [](int id) { return pafDpidToAddressId(id, 7, buffer, sizeof buffer); }},
      {"pafGetAddressHintId", [](int id) { return pafGetAddressHintId(id, "a", "b", buffer, sizeof buffer); }},
      {"pafGetNextAddressHintId", [](int id) { return pafGetNextAddressHintId(id, buffer, sizeof buffer); }},
      {"pafGetFindStatusId", [](int id) { return pafGetFindStatusId(id); }},
      {"pafGetParsedInputId", [](int id) { return pafGetParsedInputId(id, buffer, sizeof buffer); }},
      {"pafValidateFullAddressId",
       [](int id) { return pafValidateFullAddressId(id, "a", buffer, sizeof buffer, 0, second); }},
      {"pafFormatAddressId", [](int id) { return pafFormatAddressId(id, "a", buffer, 0, sizeof buffer); }},
      {"pafSetGeographicalCodesId", [](int id) { return pafSetGeographicalCodesId(id, "c"); }},
      {"pafBeginPolygonSearch", [](int id) { return pafBeginPolygonSearch(id, "a", "b"); }},
      {"pafGetNextAddressInPolygon", [](int id) { return pafGetNextAddressInPolygon(id, buffer, sizeof buffer); }},
      {"pafGetSearchStatistics",
       [](int id) { return pafGetSearchStatistics(id, "a", "b", "c", "d", buffer, sizeof buffer); }},
      {"pafBeginGifConcordance", [](int id) { return pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6); }},
      {"pafGetNextGifConcordance",
       [](int id) { return pafGetNextGifConcordance(id, buffer, sizeof buffer, second, sizeof second, nullptr); }},
      {"pafBeginAddressSearch", [](int id) { return pafBeginAddressSearch(id, "q"); }},
      {"pafGetNextAddressSearch", [](int id) { return pafGetNextAddressSearch(id, buffer, sizeof buffer); }},
  };
  return calls;
}

bool HasRequest(const std::string& name)
{
  return name.find("Concordance") == std::string::npos && name.find("AddressSearch") == std::string::npos;
}

/** Nobody listens where the requests go. */
void GoWithoutServer()
{
  SetTcpHost("127.0.0.1");
  SetTcpPort("1");
}

TEST(QueryFrame, NeverAsksTheSearcherOfARemoteInstance)
{
  GoWithoutServer();
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  searcher.during = [] { ADD_FAILURE() << "a local answer"; };
  for (IArfSearcher* const any : {static_cast<IArfSearcher*>(nullptr), static_cast<IArfSearcher*>(&searcher)}) {
    const Instance remote(any, 17);
    for (const auto& [name, call] : Calls()) {
      EXPECT_EQ(HasRequest(name) ? PAF_ERR_SOCKET_CONNECT : PAF_ERR_NOT_IMPLEMENTED, call(remote.Id())) << name;
      EXPECT_EQ(0, remote.UsageCount()) << name;
    }
  }
}

TEST(QueryFrame, IsBusyDuringARequestAndIdleAfterIt)
{
  const Instance remote(nullptr, 17);
  int requests = 0;
  fake::ScriptedServer server;
  server.AnswerOthers([&](const std::string&) {
    ++requests;
    EXPECT_EQ(1, remote.UsageCount());
    return fake::Reply::Line("0\tx");
  });
  SetTcpHost("127.0.0.1");
  SetTcpPort(server.Port().c_str());
  for (const auto& [name, call] : Calls()) {
    EXPECT_EQ(HasRequest(name) ? 0 : PAF_ERR_NOT_IMPLEMENTED, call(remote.Id())) << name;
    EXPECT_EQ(0, remote.UsageCount()) << name;
  }
  EXPECT_EQ(20, requests);
}

TEST(QueryFrame, AllocatesNothingForARequestOfFixedLength)
{
  const std::set<std::string> kOthers = {"pafBeginPolygonSearch", "pafGetSearchStatistics",  // are of any length
                                         "pafSetGeographicalCodesId"};                       // is remembered
  const Instance remote(nullptr, 17);
  fake::ScriptedServer server;
  server.AnswerOthers([](const std::string&) { return fake::Reply::Line("0\tx"); });
  SetTcpHost("127.0.0.1");
  SetTcpPort(server.Port().c_str());
  for (const auto& [name, call] : Calls()) {
    if (kOthers.count(name) != 0) continue;
    call(remote.Id());  // the first one connects
    const long before = Allocations();
    call(remote.Id());
    EXPECT_EQ(before, Allocations()) << name;
  }
}

TEST(QueryFrame, IsBusyDuringACallAndIdleAfterIt)
{
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  const Instance instance(&searcher);
  int calls = 0;
  searcher.during = [&] {
    ++calls;
    EXPECT_EQ(1, instance.UsageCount());
    char text[8] = "";
    EXPECT_EQ(PAF_ERR_ID_IN_USE, pafGetParsedInputId(instance.Id(), text, sizeof text));
    EXPECT_EQ(PAF_ERR_ID_IN_USE, pafClosePafId(instance.Id()));
    EXPECT_EQ(-1, pafGetFindStatusId(instance.Id()));
  };
  for (const auto& [name, call] : Calls()) {
    EXPECT_EQ(0, call(instance.Id())) << name;
    EXPECT_EQ(0, instance.UsageCount()) << name;
  }
  EXPECT_GE(calls, 17);
}

TEST(QueryFrame, LetsGoOfTheInstanceWhenAPluginThrows)
{
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  const Instance instance(&searcher);
  char text[8] = "keep";
  searcher.during = [] { throw std::bad_alloc(); };
  EXPECT_EQ(PAF_ERR_OUT_OF_MEMORY, pafLookupAddress(instance.Id(), text, sizeof text, 0));
  searcher.during = [] { throw std::runtime_error("contract broken"); };
  EXPECT_EQ(PAF_ERR_PLUGIN_SYSTEM, pafLookupAddress(instance.Id(), text, sizeof text, 0));
  EXPECT_STREQ("keep", text);
  EXPECT_EQ(0, instance.UsageCount());
}

TEST(QueryFrame, AllocatesNothing)
{
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  searcher.text = "a text that no small string could hold, in case one is made of it on the way";
  const Instance instance(&searcher);
  const auto& calls = Calls();
  for (const int status : {0, 5}) {
    searcher.status = status;
    for (const auto& [name, call] : calls) call(instance.Id());  // the first failure makes the thread's record
    const long before = Allocations();
    for (const auto& [name, call] : calls) call(instance.Id());
    EXPECT_EQ(before, Allocations()) << "status " << status;
  }
}

TEST(QueryFrame, RecordsOnlyWhatTheSearcherReports)
{
  StandInDb db;
  StandInSearcher searcher;
  searcher.db = &db;
  const Instance instance(&searcher);
  searcher.status = 77;
  searcher.text = "text";
  for (const auto& [name, call] : Calls()) {
    SetErrorDescription(1, "before");
    const bool isFindStatus = std::string(name) == "pafGetFindStatusId";
    EXPECT_EQ(77, call(instance.Id())) << name;
    ThreadData* record = nullptr;
    ASSERT_EQ(0, GetThreadData(false, record));
    EXPECT_EQ(isFindStatus ? 1 : 77, record->lastError.code) << name;
    EXPECT_EQ(isFindStatus ? 0 : instance.Id(), record->lastError.id) << name;
    const bool hasDetail = std::string(name) == "pafSetGeographicalCodesId";
    EXPECT_STREQ(isFindStatus ? "before" : hasDetail ? "text" : "", record->lastError.text) << name;
  }
  SetErrorDescription(1, "before");
  for (const auto& [name, call] : Calls()) call(instance.Id() + 1000);
  ThreadData* record = nullptr;
  ASSERT_EQ(0, GetThreadData(false, record));
  EXPECT_EQ(1, record->lastError.code) << "6405 was recorded";
  record->lastError = LastError();
}

TEST(ClosePafId, FreesARemoteInstanceWithoutAServer)
{
  GoWithoutServer();
  int id = 0;
  PafInfo* info = nullptr;
  ASSERT_EQ(0, NewInstance(&id, info));
  info->serverId = 4;
  {
    const DecrementUsageCountWhenFinished guard(info);
  }
  EXPECT_EQ(PAF_ERR_SOCKET_CONNECT, pafClosePafId(id));
  EXPECT_EQ(PAF_ERR_INVALID_ID, pafClosePafId(id));
}

}  // namespace
