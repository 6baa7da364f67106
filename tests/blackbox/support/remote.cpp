#include "blackbox/support/remote.h"

#include <algorithm>
#include <utility>

#include "qxpaf/paf.h"

namespace blackbox {

std::string Tabbed(std::string line)
{
  std::replace(line.begin(), line.end(), '|', '\t');
  return line;
}

void RemoteTest::SetUp()
{
  ASSERT_EQ(pafSetPropertiesId(0, "TcpHost", "127.0.0.1"), 0);
  ASSERT_EQ(pafSetPropertiesId(0, "TcpPort", server.Port().c_str()), 0);
  ASSERT_EQ(pafSetPropertiesId(0, "UseSockets", "True"), 0);
}

void RemoteTest::TearDown()
{
  EXPECT_EQ(server.StepsLeft(), 0u) << "requests that did not come";
  EXPECT_EQ(server.Faults(), Lines());
}

void RemoteTest::Expect(const std::string& request, const std::string& reply)
{
  Expect(request, fake::Reply::Line(Tabbed(reply)));
}

void RemoteTest::Expect(const std::string& request, fake::Reply reply)
{
  server.Expect(Tabbed(request), std::move(reply));
}

int RemoteTest::OpenRemote(const std::string& name, int serverId, int memoryMode)
{
  Expect("pafOpenArfId|" + std::to_string(memoryMode) + "|" + name, "0|" + std::to_string(serverId));
  int id = 0;
  EXPECT_EQ(pafOpenArfId(&id, memoryMode, name.c_str()), 0);
  EXPECT_GT(id, 0);
  Sent();
  return id;
}

void RemoteTest::Break(int id)
{
  server.AnswerOthers([](const std::string&) { return TooLong(); });
  char text[8];
  EXPECT_EQ(pafGetParsedInputId(id, text, sizeof text), 4555);
  server.AnswerOthers(nullptr);
  Sent();
}

Lines RemoteTest::Sent()
{
  Lines sent;
  const Lines all = server.Requests();
  for (; seen_ < all.size(); ++seen_) {
    std::string line = all[seen_].substr(0, all[seen_].find('\n'));
    std::replace(line.begin(), line.end(), '\t', '|');
    sent.push_back(line);
  }
  return sent;
}

std::string RemoteCall::Request(int serverId) const
{
  std::string line = request;
  const std::size_t place = line.find('#');
  return place == std::string::npos ? line : line.replace(place, 1, std::to_string(serverId));
}

namespace {

constexpr const char* kPlace = "1 High St\nBurwood";

void AppendInPlace(std::vector<RemoteCall>& all)
{
  const auto add = [&all](const char* name, int (*run)(int, char*, int), const char* request) {
    all.push_back({name, run, request, Shape::kText, true, kPlace});
  };
  add(
      "pafLookupAddress_1", [](int id, char* text, int size) { return pafLookupAddress(id, text, size, 1); },
      "pafGetDpidId|#|1 High St|Burwood");
  add(
      "pafLookupAddress_minus", [](int id, char* text, int size) { return pafLookupAddress(id, text, size, -1); },
      "pafGetDpidId|#|1 High St|Burwood");
  add(
      "pafLookupAddress_0", [](int id, char* text, int size) { return pafLookupAddress(id, text, size, 0); },
      "pafGetDpidNonAmasId|#|1 High St|Burwood");
  add("pafGetDpidId", pafGetDpidId, "pafGetDpidId|#|1 High St|Burwood");
  add("pafGetDpidNonAmasId", pafGetDpidNonAmasId, "pafGetDpidNonAmasId|#|1 High St|Burwood");
  add("pafFixLastLineId", pafFixLastLineId, "pafFixLastLineId|#|1 High St|Burwood");
  add("pafValidatePartialAddressId", pafValidatePartialAddressId, "pafValidatePartialAddressId|#|1 High St|Burwood");
}

void AppendAddresses(std::vector<RemoteCall>& all)
{
  const auto add = [&all](const RemoteCall& call) { all.push_back(call); };
  add({"pafGetAddressId", [](int id, char* text, int size) { return pafGetAddressId(id, "que\nry", text, size); },
       "pafGetAddressId|#|que|ry", Shape::kText, true});
  add({"pafGetNextAddressId", pafGetNextAddressId, "pafGetNextAddressId|#", Shape::kText, false});
  add({"pafGetPopupHintId",
       [](int id, char* text, int size) { return pafGetPopupHintId(id, "first", "second", -3, text, size); },
       "pafGetPopupHintId|#|first|second|-3", Shape::kText, true});
  add({"pafGetNextPopupHintId", pafGetNextPopupHintId, "pafGetNextPopupHintId|#", Shape::kText, true});
  add({"pafDpidToAddressId",
       [](int id, char* text, int size) { return pafDpidToAddressId(id, 98765432109, text, size); },
       "pafDpidToAddressId|#|98765432109", Shape::kText, true});
  add({"pafGetAddressHintId",
       [](int id, char* text, int size) { return pafGetAddressHintId(id, "first", "second", text, size); },
       "pafGetAddressHintId|#|first|second", Shape::kText, true});
  add({"pafGetNextAddressHintId", pafGetNextAddressHintId, "pafGetNextAddressHintId|#", Shape::kText, false});
  add({"pafGetFindStatusId", [](int id, char*, int) { return pafGetFindStatusId(id); }, "pafGetFindStatusId|#",
       Shape::kNumber, false});
  add({"pafGetParsedInputId", pafGetParsedInputId, "pafGetParsedInputId|#", Shape::kText, false});
  add({"pafValidateFullAddressId",
       [](int id, char* text, int size) {
         char flag = 'q';
         return pafValidateFullAddressId(id, "a\nb", text, size, 5, &flag);
       },
       "pafValidateFullAddressId|#|5|a|b", Shape::kText, true});
  add({"pafFormatAddressId",
       [](int id, char* text, int size) { return pafFormatAddressId(id, "a\nb", text, 1234567890123, size); },
       "pafFormatAddressId|#|1234567890123|a|b", Shape::kText, false});
  add({"pafSetGeographicalCodesId", [](int id, char*, int) { return pafSetGeographicalCodesId(id, "LGA,SLA"); },
       "pafSetGeographicalCodesId|#|LGA,SLA", Shape::kNumber, false});
}

void AppendSearches(std::vector<RemoteCall>& all)
{
  const auto add = [&all](const RemoteCall& call) { all.push_back(call); };
  add({"pafBeginPolygonSearch", [](int id, char*, int) { return pafBeginPolygonSearch(id, "shape", "-33.5,151.25"); },
       "pafBeginPolygonSearch|#|-33.5|151.25|shape", Shape::kNumber, true});
  add({"pafGetNextAddressInPolygon", pafGetNextAddressInPolygon, "pafGetNextAddressInPolygon|#", Shape::kText, false,
       "", true});
  add({"pafGetSearchStatistics",
       [](int id, char* text, int size) { return pafGetSearchStatistics(id, "a", "b", "c", "d", text, size); },
       "pafGetSearchStatistics|#|a|b|c|d", Shape::kText, false, "", true});
  add({"pafBeginGifConcordance", [](int id, char*, int) { return pafBeginGifConcordance(id, 1, 2, 3, 4, 5, 6); }, "",
       Shape::kNone, true});
  add({"pafGetNextGifConcordance",
       [](int id, char* text, int size) { return pafGetNextGifConcordance(id, text, size, text, size, nullptr); }, "",
       Shape::kNone, false, "", true});
  add({"pafBeginAddressSearch", [](int id, char*, int) { return pafBeginAddressSearch(id, "q"); }, "", Shape::kNone,
       true});
  add({"pafGetNextAddressSearch", pafGetNextAddressSearch, "", Shape::kNone, false, "", true});
}

void AppendProperties(std::vector<RemoteCall>& all)
{
  all.push_back({"pafGetPropertiesId",
                 [](int id, char* text, int size) { return pafGetPropertiesId(id, "Some;Name", text, size); },
                 "pafGetPropertiesId|#|Some;Name", Shape::kText, true, "", true, true});
  all.push_back({"pafSetPropertiesId",
                 [](int id, char*, int) { return pafSetPropertiesId(id, "Some Name", "some=value"); },
                 "pafSetPropertiesId|#|Some Name|some=value", Shape::kNumber, true});
}

}  // namespace

const std::vector<RemoteCall>& RemoteCalls()
{
  static const std::vector<RemoteCall> kCalls = [] {
    std::vector<RemoteCall> all;
    AppendInPlace(all);
    AppendAddresses(all);
    AppendSearches(all);
    AppendProperties(all);
    return all;
  }();
  return kCalls;
}

}  // namespace blackbox
